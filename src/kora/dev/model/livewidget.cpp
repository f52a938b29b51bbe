// SPDX-License-Identifier: Apache-2.0
#include "livewidget.h"

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/loader/plugindata.h>
#include <kora/runtime/widget_p.h>
#include <kora/runtime/widgetlibraryplugin_p.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

Finding problemOf(const WidgetMetaInformation &info, const char *rule, const QString &message,
                  const QString &hint)
{
    Finding problem;
    problem.rule = QLatin1String(rule);
    problem.widgetId = info.id();
    problem.widgetVersion = info.version().version();
    problem.message = message;
    problem.hint = hint;
    return problem;
}

QString registeredWidgets(const WidgetLibraryPluginPrivate *plugin)
{
    QStringList pairs;
    for (auto it = plugin->widgetRegistry.keyBegin(); it != plugin->widgetRegistry.keyEnd(); ++it) {
        pairs.append(it->first + QLatin1Char(' ') + it->second);
    }
    return pairs.isEmpty() ? QStringLiteral("nothing") : pairs.join(QLatin1String(", "));
}

Finding unregistered(const WidgetLibraryPluginPrivate *plugin, const WidgetMetaInformation &info)
{
    return problemOf(
        info, "widget-not-registered",
        QStringLiteral("the plugin's code does not register this widget in this version"),
        QStringLiteral("call registerWidget(QStringLiteral(\"%1\"), QStringLiteral(\"%2\"), ...) in the "
                       "plugin's constructor; it registers %3")
            .arg(info.id(), info.version().version(), registeredWidgets(plugin)));
}

/// The line that a class lacks, named by its own name without namespaces.
QString constructorHint(const QMetaObject *metaObject, const char *record)
{
    const QString name = QLatin1String(metaObject->className());
    return QStringLiteral(
               "write into the public part of %1: Q_INVOKABLE explicit %2(const KORA::%3 &data); with "
               "the argument's type in full")
        .arg(name, name.section(QLatin1String("::"), -1), QLatin1String(record));
}

Finding noWidget(const WidgetLibraryPluginPrivate *plugin, const WidgetMetaInformation &info)
{
    const auto classes = plugin->widgetRegistry.constFind({info.id(), info.version().version()});
    if (classes == plugin->widgetRegistry.constEnd()) {
        return unregistered(plugin, info);
    }
    if (!classes->widgetClass) {
        return problemOf(info, "widget-constructor",
                         QStringLiteral("it is registered without a widget class"),
                         QStringLiteral("give registerWidget() the address of its staticMetaObject"));
    }
    return problemOf(
        info, "widget-constructor",
        QStringLiteral("its widget class has no invokable constructor taking const KORA::WidgetData &"),
        constructorHint(classes->widgetClass, "WidgetData"));
}

Finding wrongClass(const WidgetMetaInformation &info, const char *rule, const char *what, const char *base,
                   const QObject *object)
{
    const QString name = QLatin1String(object->metaObject()->className());
    return problemOf(info, rule,
                     QStringLiteral("its %1 class %2 is not derived from KORA::%3")
                         .arg(QLatin1String(what), name, QLatin1String(base)),
                     QStringLiteral("derive %1 from KORA::%2").arg(name, QLatin1String(base)));
}

Finding noItem(const QMetaObject *itemClass, const WidgetMetaInformation &info)
{
    if (!itemClass) {
        return problemOf(info, "item-constructor",
                         QStringLiteral("it is registered without a graphics object class"),
                         QStringLiteral("give registerWidget() the address of its staticMetaObject, or use "
                                        "registerProjectWidget()"));
    }
    return problemOf(
        info, "item-constructor",
        QStringLiteral("its item class has no invokable constructor taking const KORA::GraphicsObjectData &"),
        constructorHint(itemClass, "GraphicsObjectData"));
}

} // namespace

LiveWidget::~LiveWidget()
{
    destroy();
}

bool LiveWidget::create(const WidgetLibraryPluginData &plugin, const WidgetMetaInformation &info,
                        WidgetActionManagerImpl *host, Finding &problem)
{
    destroy();
    const auto *factory = WidgetLibraryPluginPrivateAccessor::priv(plugin.instance());
    QObject *object = factory->newWidgetInstance(info.id(), info.version().version(),
                                                 plugin.metaInformation()->id(), info.fieldInfo(), host);
    m_widget = qobject_cast<Widget *>(object);
    if (!m_widget) {
        problem =
            object ? wrongClass(info, "widget-class", "widget", "Widget", object) : noWidget(factory, info);
        delete object;
        return false;
    }
    m_actionManager = m_widget->widgetActionManager();

    object = priv()->newGraphicsObjectInstance();
    m_item = qobject_cast<GraphicsObject *>(object);
    if (!m_item) {
        problem = object ? wrongClass(info, "item-class", "item", "GraphicsObject", object)
                         : noItem(m_widget ? priv()->graphicsObjectClass : nullptr, info);
        delete object;
        destroy();
        return false;
    }
    return true;
}

void LiveWidget::destroy()
{
    delete m_item.data();
    delete m_widget.data();
    delete m_actionManager.data();
}

WidgetPrivate *LiveWidget::priv() const
{
    return m_widget ? WidgetPrivateAccessor::priv(m_widget) : nullptr;
}

} // namespace DEV
} // namespace KORA
