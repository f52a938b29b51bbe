// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <memory>

#include <kora/export.h>
#include <kora/runtime/plugin.h>

namespace KORA {

class Event;
class WidgetLibraryPluginPrivate;

namespace INTERNAL {
class WidgetLibraryPluginPrivateAccessor;
} // namespace INTERNAL

/// The root object of a widget library. Derive it, name the metadata, and register a class pair for every
/// widget and version that the metadata declares:
///
///     class Plant : public KORA::WidgetLibraryPlugin
///     {
///         Q_OBJECT
///         Q_PLUGIN_METADATA(IID "org.Vako.KORA.WidgetLibrary" FILE "plant.json")
///         Q_INTERFACES(KORA::WidgetLibraryPlugin)
///     public:
///         Plant()
///         {
///             registerWidget(QStringLiteral("gauge"), QStringLiteral("1.0.0"),
///                            &Gauge::staticMetaObject, &GaugeItem::staticMetaObject);
///         }
///     };
class KORA_EXPORT WidgetLibraryPlugin : public Plugin
{
    Q_OBJECT

public:
    explicit WidgetLibraryPlugin(QObject *parent = nullptr);
    ~WidgetLibraryPlugin() override;

    /// Registers the classes of a widget, Widget and GraphicsObject subclasses. Id and version are the texts of
    /// the metadata ("1.0.0", not "1.0"); the last registration of a pair counts. Nothing is checked here.
    void registerWidget(const QString &id, const QString &version, const QMetaObject *widgetClass,
                        const QMetaObject *graphicsObjectClass);
    /// Registers a widget that draws nothing on a panel; its items are NullGraphicsObjects.
    void registerProjectWidget(const QString &id, const QString &version, const QMetaObject *widgetClass);

    bool event(QEvent *event) override;

    /// For events that concern the whole library; true means handled.
    virtual bool koraEvent(KORA::Event *event);

private:
    friend class INTERNAL::WidgetLibraryPluginPrivateAccessor;

    std::unique_ptr<WidgetLibraryPluginPrivate> d;
};

} // namespace KORA

Q_DECLARE_INTERFACE(KORA::WidgetLibraryPlugin, "org.Vako.KORA.WidgetLibrary/1.0.0")
