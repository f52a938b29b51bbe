// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <memory>

#include <kora/export.h>

class QPluginLoader;

namespace KORA {

class Plugin;
class WidgetLibraryPlugin;

namespace INTERNAL {

class PluginDataPrivate;
class PluginMetaInformation;
class WidgetLibraryPluginData;
class WidgetLibraryPluginMetaInformation;

/// The record of one loaded plugin. Owned by the PluginLoader that made it.
///
/// It owns the metadata and Qt's loader, and destroying it releases both; the plugin's instance belongs to Qt's
/// loader.
class KORA_EXPORT PluginData
{
public:
    enum Type : int { WidgetLibrary = 1 };

    PluginData(Type type, const QString &libraryPath, QPluginLoader *loader, KORA::Plugin *instance,
               PluginMetaInformation *metaInformation, double loadingTimeMs);
    PluginData(const PluginData &) = delete;
    PluginData &operator=(const PluginData &) = delete;
    virtual ~PluginData();

    Type type() const;
    /// The absolute path of the plugin's library file.
    const QString &libraryPath() const;
    KORA::Plugin *instance() const;
    PluginMetaInformation *metaInformation() const;
    /// What loading took, in milliseconds.
    double loadingTimeMs() const;

    /// The same record; nothing is checked, every record of a loader is one of a widget library.
    WidgetLibraryPluginData *toWidgetLibraryPluginData();
    const WidgetLibraryPluginData *toWidgetLibraryPluginData() const;

private:
    std::unique_ptr<PluginDataPrivate> d;
};

class KORA_EXPORT WidgetLibraryPluginData : public PluginData
{
public:
    WidgetLibraryPluginData(const QString &libraryPath, QPluginLoader *loader,
                            KORA::WidgetLibraryPlugin *instance,
                            WidgetLibraryPluginMetaInformation *metaInformation, double loadingTimeMs);
    ~WidgetLibraryPluginData() override;

    /// Null if the instance is null or of another class.
    KORA::WidgetLibraryPlugin *instance() const;
    WidgetLibraryPluginMetaInformation *metaInformation() const;

    /// Where the design tool's documents of this plugin lie inside the resource folder @p dirPath; absolute.
    QString studioPropertiesPath(const QString &dirPath) const;
    QString studioDefaultsPath(const QString &dirPath) const;
};

} // namespace INTERNAL
} // namespace KORA
