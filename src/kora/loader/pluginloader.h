// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>
#include <memory>

#include <kora/export.h>
#include <kora/loader/plugindata.h>

namespace KORA {
namespace INTERNAL {

class PluginLoaderPrivate;

/// Loads widget libraries from plugin folders, keeps a record of each, and drives their life-cycle hooks.
///
/// A plugin folder is named by the plugin's UUID and holds a library per platform at `<os>/<arch>/`, on Linux
/// `lib<folder name>.so`. The phases: load folders (not inited), init() (inited), deinit() (not inited again),
/// unload() (empty). Failures come back as false and are logged: "GENERAL" for misuse, "PLUGIN_LOADING" for a
/// plugin. Used from the GUI thread.
class KORA_EXPORT PluginLoader : public QObject
{
    Q_OBJECT

public:
    PluginLoader();
    /// Calls unload().
    ~PluginLoader() override;

    /// Calls aboutToLoad() on every plugin, then load() on every plugin, in plugin-id order. False, and nothing
    /// called, if inited already or if no plugin is loaded.
    bool init();
    /// Calls aboutToUnload(), then unload() on every plugin. False if not inited.
    bool deinit();
    /// deinit(), then releases every plugin. The libraries' code stays mapped: widgets that still live keep
    /// working.
    void unload();
    bool isInit() const;

    /// Plugin id to record; the loader owns the records.
    const QMap<QString, PluginData *> &pluginData() const;
    /// The record of the id, compared to the letter, or null.
    PluginData *pluginDataByPluginId(const QString &id) const;

    /// Loads every plugin folder in @p dirPath but those named in @p disabledIds. One folder's failure does not
    /// stop the others; false if any failed, if the folder does not exist, or if inited.
    bool loadFromDir(const QString &dirPath, const QStringList &disabledIds);
    /// Loads one plugin folder.
    bool loadFromPluginDir(const QString &pluginDir);
    /// Loads one library file. Unless @p expectedId is empty, the id in its metadata must equal it. A record
    /// that the loader already has under the id is replaced and not destroyed.
    bool loadFromPluginPath(const QString &libraryPath, const QString &expectedId);
    /// Whether the folder is named by a UUID and holds the libraries of all platforms, win32/x86, win32/x64,
    /// linux/arm32 and linux/arm64, whatever the platform that asks. Logs nothing.
    bool checkPluginDir(const QString &pluginDir);

    // The design tool's resources --------------------------------------------------------------------------

    /// What the documents of one plugin were generated from.
    struct ExtraResourceData
    {
        QDateTime modification; ///< of the library file
        QString languageId;
        QString libraryVersion; ///< the version of the documents' form, "1.1.0"
    };

    /// What generateStudioExtraResources() does with one folder of the resources, and why.
    struct ExtraResourceAction
    {
        enum Type { Keep, Generate, Remove };
        QString name; ///< the folder's: the plugin id
        Type type;
        QString reason;
    };

    /// Told how many of the plugins whose documents are generated are done.
    using ExtraResourceProgress = std::function<void(int done, int total)>;

    /// Keeps the folder @p dirPath up to date with the loaded plugins: the file index.json, and per plugin a
    /// folder named by its id with the documents that the design tool reads, in @p languageId. The folder is this
    /// function's own: other folders in it are removed. It is created when it does not exist.
    ///
    /// False if anything failed; each failure is logged under "RESOURCES_GENERATION". A plugin whose documents
    /// fail is dropped from the loader, without its hooks, and the others go on. When the call itself is wrong,
    /// before init() or with a path that cannot be a folder, all plugins are unloaded.
    ///
    /// A document folder appears whole or not at all, and the index is replaced at once: a run that is killed is
    /// made good by the next. Call it after init().
    bool generateStudioExtraResources(const QString &dirPath, const QString &languageId);
    /// The same; @p progress is called after each plugin whose documents were generated.
    bool generateStudioExtraResources(const QString &dirPath, const QString &languageId,
                                      const ExtraResourceProgress &progress);
    /// What that call would do, by name; nothing is written or removed.
    QVector<ExtraResourceAction> checkStudioExtraResources(const QString &dirPath,
                                                           const QString &languageId) const;

    /// Replaces @p index by the content of the file, plugin id to record. True, and @p index as it was, if there
    /// is no such file; false, likewise, if it cannot be read or any part of it is not valid.
    static bool readExtraResourcesIndexFile(const QString &indexPath,
                                            QMap<QString, ExtraResourceData> &index);
    /// Replaces the file at once. On failure it is as it was; what is no file and stands in its place is removed.
    static bool writeExtraResourcesIndexFile(const QString &indexPath,
                                             const QMap<QString, ExtraResourceData> &index);

private:
    std::unique_ptr<PluginLoaderPrivate> d;
};

} // namespace INTERNAL
} // namespace KORA
