// SPDX-License-Identifier: Apache-2.0
//
// A run over the resource folder of 500 plugins when nothing has changed.
#include "support/generator.h"
#include "support/plugincopies.h"
#include "support/program.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>

#include <kora/loader/plugindata.h>
#include <kora/loader/pluginloader.h>

using namespace KORA::INTERNAL;

namespace {

const QString language = QStringLiteral("en-US");
constexpr int pluginCount = 500;

/// 500 loaded plugins and a resource folder that is up to date; made once.
struct Folder
{
    Folder()
    {
        isReady = makeCopies(QStringLiteral(KORA_BENCHMARK_PLUGIN), untranslatedId.toLatin1(), plugins.path(),
                             pluginCount)
                  && loader.loadFromDir(plugins.path(), {}) && loader.init() && run()
                  && loader.pluginData().size() == pluginCount;
    }

    bool run() { return loader.generateStudioExtraResources(resources.path(), language); }

    QTemporaryDir plugins;
    QTemporaryDir resources;
    PluginLoader loader;
    bool isReady;
};

Folder &folder()
{
    static Folder made;
    return made;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void secondRunOurs(benchmark::State &state)
{
    const QString index = folder().resources.filePath(QStringLiteral("index.json"));
    const QByteArray before = contentOf(index);
    if (require(state,
                folder().isReady && folder().run() && before.size() > 500 * 100 && contentOf(index) == before,
                "something has changed")) {
        measure(state, [] { benchmark::DoNotOptimize(folder().run()); });
    }
}

// What no run can do without: list the folder, look at each library's time, read the index and write it.
bool rawRun()
{
    const QString path = folder().resources.path();
    const QStringList folders = QDir(path).entryList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    const QString index = path + QStringLiteral("/index.json");
    const QJsonDocument document = QJsonDocument::fromJson(contentOf(index));
    bool isSame = folders.size() == pluginCount;
    for (const QJsonValue &value : document.object().value(QStringLiteral("extraResourceInfo")).toArray()) {
        const QJsonObject entry = value.toObject();
        const PluginData *plugin =
            folder().loader.pluginDataByPluginId(entry.value(QStringLiteral("id")).toString());
        const QDateTime time =
            QDateTime::fromString(entry.value(QStringLiteral("modification")).toString(), Qt::ISODateWithMs);
        isSame = isSame && plugin && QFileInfo(plugin->libraryPath()).lastModified() == time;
    }
    QFile file(index);
    return isSame && file.open(QIODevice::WriteOnly) && file.write(document.toJson()) > 0;
}

void secondRunRaw(benchmark::State &state)
{
    if (require(state, folder().isReady && rawRun(), "something has changed")) {
        measure(state, [] { benchmark::DoNotOptimize(rawRun()); });
    }
}

} // namespace

int main(int argc, char **argv)
{
    Program program(argc, argv);
    program.add("secondrun/ours", secondRunOurs);
    program.add("secondrun/raw", secondRunRaw);
    return program.run();
}
