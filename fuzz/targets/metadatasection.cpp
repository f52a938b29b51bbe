// SPDX-License-Identifier: Apache-2.0
//
// What a library file holds as Qt's metadata: the bytes of the section, behind its magic or, after a first byte FF, with
// it. Qt reads it, our own reading of foreign libraries has to agree, and what comes out goes to the plugin loader.
#include "../fuzztarget.h"
#include "../libraryfile.h"

#include <QtCore/QCborStreamReader>
#include <QtCore/QFile>
#include <QtCore/QPluginLoader>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/diagnosis/plugindiagnosis.h>
#include <kora/loader/elffile_p.h>
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

// Whether each text is as long as it says: for one that is not, Qt first takes the memory that it would need, up to 2 GB.
bool textsAreThere(QCborStreamReader &reader, int size)
{
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        const bool isText = reader.isString() || reader.isByteArray();
        if (isText && (!reader.isLengthKnown() || reader.currentStringChunkSize() > size)) {
            return false;
        }
        if (!reader.isContainer()) {
            reader.next();
        } else if (reader.enterContainer()) {
            if (!textsAreThere(reader, size)) {
                return false;
            }
            reader.leaveContainer();
        }
    }
    return true;
}

bool textsAreThere(const QByteArray &section)
{
    const int start = section.lastIndexOf("QTMETADATA ");
    QCborStreamReader reader(section.mid(start + 16));
    return textsAreThere(reader, section.size());
}

QString writtenLibrary(const QByteArray &section)
{
    const QString path = fuzzFolder() + QStringLiteral("/section.so");
    const QByteArray content = libraryFile(ElfFile::MachineX86_64, section);
    QFile file(path);
    expect(file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush(),
           "no file");
    return path;
}

// Qt takes these out of the header, and again from keys that no compiler of metadata writes.
void removeHeader(QJsonObject &object)
{
    for (const char *key : {"version", "archreq", "debug"}) {
        object.remove(QLatin1String(key));
    }
}

void checkAgreement(const LibraryMetaData &ours, QJsonObject ofQt, bool isMagicFirst)
{
    // By as much as the magic is behind the section's start, Qt reads on behind its end.
    if (!ours.isValid && !isMagicFirst) {
        return;
    }
    expect(ours.isValid == !ofQt.isEmpty(), "valid for one of the two readers");
    QJsonObject object = ours.object;
    removeHeader(object);
    removeHeader(ofQt);
    expect(object == ofQt, "the readers differ");
}

} // namespace

KORA_FUZZ_TARGET(metadatasection)
{
    const bool isWhole = input.startsWith('\xff');
    const QByteArray section = isWhole ? input.mid(1) : "QTMETADATA !" + input;
    const QString path = writtenLibrary(section);
    diagnoseLibrary(path);
    PluginLoader loader; // Qt has nothing to say of what it is given
    expect(!loader.loadFromPluginPath(path, QString()), "a library without code is loaded");
    expect(loader.pluginData().isEmpty(), "a record without a plugin");

    if (!textsAreThere(section)) {
        return;
    }
    const BrokenSectionsAllowed allowed;
    const QJsonObject ofQt = QPluginLoader(path).metaData();
    if (!section.contains("QTMETADATA  ")) { // the form before Qt 5.12, which only Qt itself still reads
        checkAgreement(readLibraryMetaData(path), ofQt, section.lastIndexOf("QTMETADATA ") == 0);
    }
    WidgetLibraryPluginMetaInformation info;
    const int code = WidgetLibraryPluginUtils::metaInformationFromMetaData(ofQt, info);
    expect(code != 0 || info.version().isValid(), "a plugin without a version");
}
