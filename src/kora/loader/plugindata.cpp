// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/plugindata.h>

#include <QtCore/QFileInfo>
#include <QtCore/QPluginLoader>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/runtime/widgetlibraryplugin.h>

namespace KORA {
namespace INTERNAL {

PluginData::PluginData(Type type, const QString &libraryPath, QPluginLoader *loader, KORA::Plugin *instance,
                       PluginMetaInformation *metaInformation, double loadingTimeMs)
    : m_type(type)
    , m_libraryPath(libraryPath)
    , m_loader(loader)
    , m_loadingTimeMs(loadingTimeMs)
    , m_instance(instance)
    , m_metaInformation(metaInformation)
{}

PluginData::~PluginData()
{
    m_metaInformation.reset();
    m_instance = nullptr; // Qt's loader deletes it
    if (m_loader && m_loader->isLoaded()) {
        m_loader->unload();
    }
}

WidgetLibraryPluginData *PluginData::toWidgetLibraryPluginData()
{
    return static_cast<WidgetLibraryPluginData *>(this);
}

const WidgetLibraryPluginData *PluginData::toWidgetLibraryPluginData() const
{
    return static_cast<const WidgetLibraryPluginData *>(this);
}

WidgetLibraryPluginData::WidgetLibraryPluginData(const QString &libraryPath, QPluginLoader *loader,
                                                 KORA::WidgetLibraryPlugin *instance,
                                                 WidgetLibraryPluginMetaInformation *metaInformation,
                                                 double loadingTimeMs)
    : PluginData(WidgetLibrary, libraryPath, loader, instance, metaInformation, loadingTimeMs)
{}

WidgetLibraryPluginData::~WidgetLibraryPluginData() = default;

KORA::WidgetLibraryPlugin *WidgetLibraryPluginData::instance() const
{
    return dynamic_cast<KORA::WidgetLibraryPlugin *>(PluginData::instance());
}

WidgetLibraryPluginMetaInformation *WidgetLibraryPluginData::metaInformation() const
{
    return dynamic_cast<WidgetLibraryPluginMetaInformation *>(PluginData::metaInformation());
}

QString WidgetLibraryPluginData::studioPropertiesPath(const QString &dirPath) const
{
    const QString path = dirPath + QLatin1Char('/') + metaInformation()->id();
    return QFileInfo(path + QLatin1String("/studio_properties.xml")).absoluteFilePath();
}

QString WidgetLibraryPluginData::studioDefaultsPath(const QString &dirPath) const
{
    const QString path = dirPath + QLatin1Char('/') + metaInformation()->id();
    return QFileInfo(path + QLatin1String("/studio_defaults.krx")).absoluteFilePath();
}

} // namespace INTERNAL
} // namespace KORA
