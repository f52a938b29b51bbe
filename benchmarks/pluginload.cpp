// SPDX-License-Identifier: Apache-2.0
//
// One sample of loading plugins, in a process of its own, as nothing of a plugin is unloaded:
//
//     pluginload make DIR COUNT     makes that many plugins below DIR, and links to their files in DIR/flat
//     pluginload WAY DIR            loads them all in one way, and prints the microseconds per plugin
#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QPluginLoader>
#include <QtCore/QTextStream>

#include <KPluginMetaData>

#include <memory>
#include <vector>

#include <unistd.h>

#include <kora/loader/pluginloader.h>

#include "support/generator.h"
#include "support/plugincopies.h"

namespace {

using Loaders = std::vector<std::unique_ptr<QPluginLoader>>;

/// What a process is told: the plugins and how many there are.
struct Plugins
{
    QString dir;  ///< a folder per plugin
    QString flat; ///< all files in one folder
    QStringList paths;
    int count() const { return paths.size(); }
};

bool make(const QString &dir, int count)
{
    const QString plugins = dir + QStringLiteral("/plugins");
    const QString flat = dir + QStringLiteral("/flat");
    if (!QDir().mkpath(flat)
        || !makeCopies(QStringLiteral(KORA_BENCHMARK_PLUGIN), untranslatedId.toLatin1(), plugins, count)) {
        return false;
    }
    for (int number = 0; number < count; ++number) {
        const QByteArray from = copyPath(plugins, number).toLocal8Bit();
        const QByteArray to = QStringLiteral("%1/lib%2.so").arg(flat, copyId(number)).toLocal8Bit();
        if (link(from.constData(), to.constData()) != 0) {
            return false;
        }
    }
    return true;
}

Plugins pluginsIn(const QString &dir)
{
    Plugins plugins{dir + QStringLiteral("/plugins"), dir + QStringLiteral("/flat"), {}};
    const int count = QDir(plugins.dir).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    for (int number = 0; number < count; ++number) {
        plugins.paths.append(copyPath(plugins.dir, number));
    }
    return plugins;
}

// The ways: each returns how many plugins it has loaded ------------------------------------------------------

int loadRaw(const Plugins &plugins, Loaders &loaders)
{
    int loaded = 0;
    for (const QString &path : plugins.paths) {
        loaders.push_back(std::make_unique<QPluginLoader>(path));
        const QJsonObject metaData = loaders.back()->metaData();
        loaded += !metaData.isEmpty() && loaders.back()->instance() ? 1 : 0;
    }
    return loaded;
}

int loadKCoreAddons(const Plugins &plugins, Loaders &loaders)
{
    int loaded = 0;
    const QVector<KPluginMetaData> found = KPluginMetaData::findPlugins(plugins.flat);
    for (const KPluginMetaData &metaData : found) {
        loaders.push_back(std::make_unique<QPluginLoader>(metaData.fileName()));
        loaded += loaders.back()->instance() ? 1 : 0;
    }
    return loaded;
}

int loadOurs(const Plugins &plugins, KORA::INTERNAL::PluginLoader &loader)
{
    return loader.loadFromDir(plugins.dir, {}) ? loader.pluginData().size() : 0;
}

// All ids are disabled: as many are refused as there are folders, and none is loaded.
int refuseDisabled(const Plugins &plugins, KORA::INTERNAL::PluginLoader &loader, const QStringList &ids)
{
    return loader.loadFromDir(plugins.dir, ids) && loader.pluginData().isEmpty() ? ids.size() : 0;
}

QStringList idsOf(const Plugins &plugins)
{
    QStringList ids;
    for (int number = 0; number < plugins.count(); ++number) {
        ids.append(copyId(number));
    }
    return ids;
}

int load(const QString &way, const Plugins &plugins, Loaders &loaders, KORA::INTERNAL::PluginLoader &loader,
         const QStringList &ids)
{
    return way == QLatin1String("raw")       ? loadRaw(plugins, loaders)
           : way == QLatin1String("kf")      ? loadKCoreAddons(plugins, loaders)
           : way == QLatin1String("ours")    ? loadOurs(plugins, loader)
           : way == QLatin1String("refused") ? refuseDisabled(plugins, loader, ids)
                                             : 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString way = arguments.value(1);
    const QString dir = arguments.value(2);
    if (way == QLatin1String("make")) {
        return make(dir, arguments.value(3).toInt()) ? 0 : 1;
    }
    const Plugins plugins = pluginsIn(dir);
    const QStringList ids = idsOf(plugins);
    // Neither loader is destroyed: taking plugins down is no part of the sample.
    auto *loaders = new Loaders;
    auto *loader = new KORA::INTERNAL::PluginLoader;
    QElapsedTimer timer;
    timer.start();
    const int loaded = load(way, plugins, *loaders, *loader, ids);
    const qint64 nanoseconds = timer.nsecsElapsed();
    if (loaded == 0 || loaded != plugins.count()) {
        QTextStream(stderr) << way << ": " << loaded << " of " << plugins.count() << " plugins\n";
        return 1;
    }
    QTextStream(stdout) << double(nanoseconds) / 1000 / loaded << '\n';
    return 0;
}
