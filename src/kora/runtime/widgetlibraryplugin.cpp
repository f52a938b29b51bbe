// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/widgetlibraryplugin.h>
#include <kora/runtime/widgetlibraryplugin_p.h>

#include <kora/runtime/nullgraphicsobject.h>
#include <kora/runtime/widget_p.h>
#include <kora/runtime/widgetactionmanager.h>
#include <kora/runtime/widgetdata.h>

namespace KORA {

namespace INTERNAL {

WidgetLibraryPluginPrivate *WidgetLibraryPluginPrivateAccessor::priv(KORA::WidgetLibraryPlugin *plugin)
{
    return plugin->d.get();
}

} // namespace INTERNAL

QObject *WidgetLibraryPluginPrivate::newWidgetInstance(
    const QString &widgetId, const QString &version, const QString &pluginId,
    const QMap<QString, FieldInfo> &fieldInfo,
    KORA::INTERNAL::WidgetActionManagerImpl *actionManagerImpl) const
{
    const auto entry = widgetRegistry.constFind({widgetId, version});
    if (entry == widgetRegistry.constEnd() || !entry->widgetClass) {
        return nullptr;
    }
    WidgetData data;
    data.id = widgetId;
    data.version = entry->version;
    data.pluginId = pluginId;
    data.fieldInfo = fieldInfo;
    data.graphicsObjectClass = entry->graphicsObjectClass;
    // Not deleted when the class has no such constructor: a constructor that failed half way may have handed
    // the pointer on.
    data.widgetActionManager = new WidgetActionManager(actionManagerImpl, nullptr);
    QObject *object = entry->widgetConstructor.construct(&data);
    if (auto *widget = qobject_cast<Widget *>(object)) {
        INTERNAL::WidgetPrivateAccessor::priv(widget)->graphicsObjectConstructor =
            entry->graphicsObjectConstructor;
    }
    return object;
}

WidgetLibraryPlugin::WidgetLibraryPlugin(QObject *parent)
    : Plugin(parent)
    , d(std::make_unique<WidgetLibraryPluginPrivate>())
{}

WidgetLibraryPlugin::~WidgetLibraryPlugin() = default;

void WidgetLibraryPlugin::registerWidget(const QString &id, const QString &version,
                                         const QMetaObject *widgetClass,
                                         const QMetaObject *graphicsObjectClass)
{
    d->widgetRegistry.insert(
        {id, version}, WidgetLibraryPluginPrivate::WidgetMetaInfo(widgetClass, graphicsObjectClass, version));
}

void WidgetLibraryPlugin::registerProjectWidget(const QString &id, const QString &version,
                                                const QMetaObject *widgetClass)
{
    registerWidget(id, version, widgetClass, &NullGraphicsObject::staticMetaObject);
}

bool WidgetLibraryPlugin::event(QEvent *event)
{
    return Plugin::event(event);
}

bool WidgetLibraryPlugin::koraEvent(KORA::Event *)
{
    return false;
}

} // namespace KORA
