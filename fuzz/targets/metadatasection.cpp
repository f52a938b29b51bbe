// SPDX-License-Identifier: Apache-2.0
//
// What a library file holds as Qt's metadata: the bytes of the section, behind its magic or, after a first byte FF, with
// it. Qt reads it, our own reading of foreign libraries has to agree, and what comes out goes to the plugin loader.
#include "../fuzztarget.h"
#include "../libraryfile.h"

#include <QtCore/QFile>
#include <QtCore/QPluginLoader>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/diagnosis/elffile.h>
#include <kora/dev/diagnosis/plugindiagnosis.h>
#include <kora/loader/pluginloader.h>

using namespace KORA::INTERNAL;
using namespace KORA::DEV;

namespace {

QtMessageHandler handlerOfAll = nullptr;

// Qt's own words for a section that it cannot read.
void exceptBrokenSections(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith(QLatin1String("Found invalid metadata in lib"))) {
        handlerOfAll(type, context, message);
    }
}

class BrokenSectionsAllowed
{
public:
    BrokenSectionsAllowed() { handlerOfAll = qInstallMessageHandler(exceptBrokenSections); }
    ~BrokenSectionsAllowed() { qInstallMessageHandler(handlerOfAll); }
    Q_DISABLE_COPY_MOVE(BrokenSectionsAllowed)
};

QString writtenLibrary(const QByteArray &section)
{
    const QString path = fuzzFolder() + QStringLiteral("/section.so");
    const QByteArray content = libraryFile(ElfFile::MachineX86_64, section);
    QFile file(path);
    expect(file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush(),
           "no file");
    return path;
}

void checkAgreement(const LibraryMetaData &ours, const QJsonObject &ofQt)
{
    expect(ours.isValid == !ofQt.isEmpty(), "valid for one of the two readers");
    for (const char *key : {"IID", "className", "MetaData"}) {
        const QLatin1String name(key);
        expect(ours.object.value(name) == ofQt.value(name), "the readers differ");
    }
    const int version = ofQt.value(QLatin1String("version")).toInt();
    expect(!ours.isValid || (ours.qtMajor << 16 | ours.qtMinor << 8) == version, "the versions differ");
    expect(ours.isDebug == ofQt.value(QLatin1String("debug")).toBool(), "debug for one of the two readers");
}

} // namespace

KORA_FUZZ_TARGET(metadatasection)
{
    const BrokenSectionsAllowed allowed;
    const bool isWhole = input.startsWith('\xff');
    const QString path = writtenLibrary(isWhole ? input.mid(1) : "QTMETADATA !" + input);
    const QJsonObject ofQt = QPluginLoader(path).metaData();
    checkAgreement(readLibraryMetaData(path), ofQt);

    WidgetLibraryPluginMetaInformation info;
    const int code = WidgetLibraryPluginUtils::metaInformationFromMetaData(ofQt, info);
    expect(code != 0 || info.version().isValid(), "a plugin without a version");
    diagnoseLibrary(path);

    PluginLoader loader;
    expect(!loader.loadFromPluginPath(path, QString()), "a library without code is loaded");
    expect(loader.pluginData().isEmpty(), "a record without a plugin");
}
