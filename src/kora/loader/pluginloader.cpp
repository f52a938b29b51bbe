// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/pluginloader.h>
#include <kora/loader/pluginloader_p.h>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>
#include <QtCore/QPluginLoader>

#include <algorithm>
#include <memory>

#include <kora/core/uuid_p.h>
#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/loader/libraryfile_p.h>
#include <kora/log/logging.h>
#include <kora/runtime/widgetlibraryplugin.h>

namespace KORA {
namespace INTERNAL {

namespace {

const QLatin1String pluginIid("org.Vako.KORA.WidgetLibrary");

struct Platform
{
    QLatin1String os;
    QLatin1String arch;
};

const Platform allPlatforms[] = {
    {QLatin1String("win32"), QLatin1String("x86")},
    {QLatin1String("win32"), QLatin1String("x64")},
    {QLatin1String("linux"), QLatin1String("arm32")},
    {QLatin1String("linux"), QLatin1String("arm64")},
};

// <os>/<arch>/<file> inside a plugin folder of that name.
QString libraryPath(const QString &os, const QString &arch, const QString &folderName)
{
    const bool isWindows = os == QLatin1String("win32");
    const QString file = isWindows ? folderName + QLatin1String(".dll")
                                   : QLatin1String("lib") + folderName + QLatin1String(".so");
    return os + QDir::separator() + arch + QDir::separator() + file;
}

// The library that this build can open.
QString ownLibraryPath(const QDir &folder)
{
    static const QString os = QStringLiteral(KORA_PLATFORM_OS).toLower();
    static const QString arch = QStringLiteral(KORA_PLATFORM_ARCH).toLower();
    const QString path = folder.absoluteFilePath(libraryPath(os, arch, folder.dirName()));
    return QFileInfo(path).absoluteFilePath();
}

Debug generalWarning()
{
    return LogHandler(QString(), nullptr, 0, nullptr, "GENERAL").warning();
}

void logInfo(const QString &source, const QString &message)
{
    LogHandler(source, nullptr, 0, nullptr, "PLUGIN_LOADING").info().debug().noquote() << message;
}

void logCritical(const QString &source, const QString &message)
{
    LogHandler(source, nullptr, 0, nullptr, "PLUGIN_LOADING").critical().debug().noquote() << message;
}

/// Opens one library file and checks it step by step. What it holds when a check fails is released: the library
/// first, then Qt's loader, then the metadata.
class LibraryOpener
{
public:
    explicit LibraryOpener(const QString &path)
        : m_path(path)
    {}
    ~LibraryOpener();
    Q_DISABLE_COPY_MOVE(LibraryOpener)

    /// Returns an empty text, or why the library is refused.
    QString open(const QString &expectedId);
    /// The record of an opened library; the caller owns it.
    WidgetLibraryPluginData *takeRecord(double loadingTimeMs);

private:
    bool hasMetaData();
    QString checkIid();
    QString loadInstance();
    QString readMetaInformation(const QString &expectedId);
    QString error(const QString &reason) const;

    QString m_path;
    std::unique_ptr<WidgetLibraryPluginMetaInformation> m_metaInformation;
    std::unique_ptr<QPluginLoader> m_loader;
    KORA::WidgetLibraryPlugin *m_instance = nullptr;
    bool m_isWhole = false;
};

LibraryOpener::~LibraryOpener()
{
    if (m_loader) {
        m_loader->unload(); // a library that has no root object is open, but not "loaded"
    }
}

QString LibraryOpener::open(const QString &expectedId)
{
    QString reason = checkIid();
    if (reason.isEmpty()) {
        reason = loadInstance();
    }
    return reason.isEmpty() ? readMetaInformation(expectedId) : reason;
}

WidgetLibraryPluginData *LibraryOpener::takeRecord(double loadingTimeMs)
{
    return new WidgetLibraryPluginData(m_path, m_loader.release(), m_instance, m_metaInformation.release(),
                                       loadingTimeMs);
}

QString LibraryOpener::error(const QString &reason) const
{
    return QStringLiteral("Error loading the plugin %1: %2").arg(m_path, reason);
}

bool LibraryOpener::hasMetaData()
{
    const LibraryFile file(m_path);
    m_isWhole = file.isWhole();
    return file.hasMetaData();
}

QString LibraryOpener::checkIid()
{
    QString iid;
    // For a file that is not there Qt's loader would try others of a similar name.
    if (QFileInfo(m_path).isFile() && hasMetaData()) {
        m_loader = std::make_unique<QPluginLoader>(m_path);
        // An unresolved symbol is an error now, not a crash later; and the code stays mapped when the plugin is
        // unloaded, as widgets of it may still live.
        m_loader->setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
        iid = m_loader->metaData().value(QLatin1String("IID")).toString();
    }
    if (iid.isEmpty()) {
        return error(QStringLiteral("the IID is not specified"));
    }
    return iid == pluginIid ? QString() : error(QStringLiteral("the IID %1 is not valid").arg(iid));
}

QString LibraryOpener::loadInstance()
{
    if (!m_isWhole) { // loading it would end the process
        return error(QStringLiteral("the file is cut off: its headers announce more than it holds"));
    }
    // load() counts this loader among the users of the file: two folders may link the same one.
    QObject *instance = m_loader->load() ? m_loader->instance() : nullptr;
    if (!instance || !m_loader->isLoaded()) {
        return error(m_loader->errorString());
    }
    m_instance = static_cast<KORA::WidgetLibraryPlugin *>(
        instance->qt_metacast(qobject_interface_iid<KORA::WidgetLibraryPlugin *>()));
    return m_instance ? QString() : error(QStringLiteral("invalid interface"));
}

QString LibraryOpener::readMetaInformation(const QString &expectedId)
{
    m_metaInformation = std::make_unique<WidgetLibraryPluginMetaInformation>();
    const int code =
        WidgetLibraryPluginUtils::metaInformationFromMetaData(m_loader->metaData(), *m_metaInformation);
    if (code != 0) {
        return error(WidgetLibraryPluginUtils::errorToString(code));
    }
    if (!expectedId.isEmpty() && m_metaInformation->id() != expectedId) {
        return error(QStringLiteral("the id %1 is not equal to the folder name %2")
                         .arg(m_metaInformation->id(), expectedId));
    }
    return {};
}

bool loadFolder(PluginLoader &loader, const QDir &folder, const QStringList &disabledIds)
{
    const QString path = folder.absolutePath();
    const QString id = folder.dirName();
    if (!isUuidFolderName(id)) {
        logCritical(QString(), QStringLiteral("The name of the folder %1 is not a valid UUID").arg(path));
        return false;
    }
    if (disabledIds.contains(id)) {
        logInfo(id, QStringLiteral("The plugin with the id %1 (%2) will not be loaded (disabled by user)")
                        .arg(id, path));
        return true;
    }
    if (const PluginData *loaded = loader.pluginDataByPluginId(id)) {
        logCritical(id,
                    QStringLiteral("A plugin with the id %1 is already loaded from path %2. The folder %3 "
                                   "has not been loaded")
                        .arg(id, loaded->libraryPath(), path));
        return false;
    }
    return loader.loadFromPluginPath(ownLibraryPath(folder), id);
}

} // namespace

void PluginLoaderPrivate::callHooks(void (Plugin::*first)(), void (Plugin::*second)())
{
    // Two passes: every plugin has seen the first hook before any sees the second.
    for (PluginData *plugin : qAsConst(pluginData)) {
        (plugin->instance()->*first)();
    }
    for (PluginData *plugin : qAsConst(pluginData)) {
        (plugin->instance()->*second)();
    }
}

bool PluginLoaderPrivate::refuseWhenInit() const
{
    if (isInit) {
        generalWarning().debug().noquote() << QStringLiteral("The plugin loader is already inited");
    }
    return isInit;
}

bool PluginLoaderPrivate::enterDir(const QString &dirPath, QDir &dir) const
{
    dir = QDir(QDir::currentPath());
    const QString path = dir.absoluteFilePath(dirPath);
    const bool exists = dir.cd(path);
    if (!exists) {
        generalWarning().debug() << "The folder" << path << "doesn't exists";
    }
    return exists;
}

PluginLoader::PluginLoader()
    : d(std::make_unique<PluginLoaderPrivate>())
{}

PluginLoader::~PluginLoader()
{
    unload();
}

bool PluginLoader::init()
{
    if (d->isInit || d->pluginData.isEmpty()) {
        return false;
    }
    d->callHooks(&Plugin::aboutToLoad, &Plugin::load);
    d->isInit = true;
    return true;
}

bool PluginLoader::deinit()
{
    if (!d->isInit || d->pluginData.isEmpty()) {
        return false;
    }
    d->callHooks(&Plugin::aboutToUnload, &Plugin::unload);
    d->isInit = false;
    return true;
}

void PluginLoader::unload()
{
    deinit();
    qDeleteAll(d->pluginData);
    d->pluginData.clear();
}

bool PluginLoader::isInit() const
{
    return d->isInit;
}

const QMap<QString, PluginData *> &PluginLoader::pluginData() const
{
    return d->pluginData;
}

PluginData *PluginLoader::pluginDataByPluginId(const QString &id) const
{
    return d->pluginData.value(id);
}

bool PluginLoader::loadFromDir(const QString &dirPath, const QStringList &disabledIds)
{
    QDir dir;
    if (d->refuseWhenInit() || !d->enterDir(dirPath, dir)) {
        return false;
    }
    bool result = true;
    const QStringList folders = dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &folder : folders) {
        if (!loadFolder(*this, QDir(dir.absoluteFilePath(folder)), disabledIds)) {
            result = false;
        }
    }
    return result;
}

bool PluginLoader::loadFromPluginDir(const QString &pluginDir)
{
    QDir dir;
    return !d->refuseWhenInit() && d->enterDir(pluginDir, dir) && loadFolder(*this, dir, {});
}

bool PluginLoader::loadFromPluginPath(const QString &libraryPath, const QString &expectedId)
{
    QElapsedTimer timer;
    timer.start();
    if (d->refuseWhenInit()) {
        return false;
    }
    const QString path = QFileInfo(libraryPath).absoluteFilePath();
    LibraryOpener library(path);
    const QString error = library.open(expectedId);
    if (!error.isEmpty()) {
        logCritical(path, error);
        return false;
    }
    const double loadingTimeMs = static_cast<double>(timer.nsecsElapsed()) * 1e-6;
    PluginData *plugin = library.takeRecord(loadingTimeMs);
    const PluginMetaInformation &meta = *plugin->metaInformation();
    // A record that stood under the id is deliberately not destroyed: its widgets may be in use. The folder
    // loaders refuse duplicates before.
    d->pluginData.insert(meta.id(), plugin);
    logInfo(meta.id(), QStringLiteral("Plugin %1 (v%2) loaded, author %3")
                           .arg(meta.id(), meta.version().version(), meta.author()));
    return true;
}

bool PluginLoader::checkPluginDir(const QString &pluginDir)
{
    const QDir dir(pluginDir);
    const QString name = dir.dirName();
    return isUuidFolderName(name)
           && std::all_of(std::begin(allPlatforms), std::end(allPlatforms), [&](const Platform &platform) {
                  return QFileInfo(dir.absoluteFilePath(libraryPath(platform.os, platform.arch, name)))
                      .isFile();
              });
}

} // namespace INTERNAL
} // namespace KORA
