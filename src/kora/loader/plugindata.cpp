// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/plugindata.h>

#include <QtCore/QFileInfo>
#include <QtCore/QPluginLoader>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/runtime/widgetlibraryplugin.h>

namespace KORA {
namespace INTERNAL {

class PluginDataPrivate
{
public:
    PluginData::Type type;
    QString libraryPath;
    std::unique_ptr<QPluginLoader> loader;
    KORA::Plugin *instance; // Qt's loader deletes it
    std::unique_ptr<PluginMetaInformation> metaInformation;
    double loadingTimeMs;
};

PluginData::PluginData(Type type, const QString &libraryPath, QPluginLoader *loader, KORA::Plugin *instance,
                       PluginMetaInformation *metaInformation, double loadingTimeMs)
    : d(new PluginDataPrivate{type, libraryPath, std::unique_ptr<QPluginLoader>(loader), instance,
                              std::unique_ptr<PluginMetaInformation>(metaInformation), loadingTimeMs})
{}

PluginData::~PluginData()
{
    d->metaInformation.reset();
    if (d->loader && d->loader->isLoaded()) {
        d->loader->unload();
    }
}

PluginData::Type PluginData::type() const
{
    return d->type;
}

const QString &PluginData::libraryPath() const
{
    return d->libraryPath;
}

KORA::Plugin *PluginData::instance() const
{
    return d->instance;
}

PluginMetaInformation *PluginData::metaInformation() const
{
    return d->metaInformation.get();
}

double PluginData::loadingTimeMs() const
{
    return d->loadingTimeMs;
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
