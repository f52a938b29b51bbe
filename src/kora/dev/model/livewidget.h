// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointer>

#include <kora/dev/diagnosis/finding.h>
#include <kora/export.h>
#include <kora/runtime/graphicsobject.h>
#include <kora/runtime/widget.h>
#include <kora/runtime/widgetactionmanager.h>

namespace KORA {

class WidgetPrivate;

namespace INTERNAL {
class WidgetActionManagerImpl;
class WidgetLibraryPluginData;
class WidgetMetaInformation;
} // namespace INTERNAL

namespace DEV {

/// A widget with its one item and its action manager. They are the host's to delete, in the order item, widget,
/// manager; the plugin's code may have deleted any of them before.
class KORA_EXPORT LiveWidget
{
public:
    LiveWidget() = default;
    ~LiveWidget();
    Q_DISABLE_COPY_MOVE(LiveWidget)

    /// Makes them, without values, not started, the item on no scene. False with the reason in @p problem: rules
    /// "widget-not-registered", "widget-constructor", "widget-class", "item-constructor" and "item-class". What was
    /// there before is deleted.
    bool create(const INTERNAL::WidgetLibraryPluginData &plugin, const INTERNAL::WidgetMetaInformation &info,
                INTERNAL::WidgetActionManagerImpl *host, Finding &problem);
    void destroy();

    KORA::Widget *widget() const { return m_widget; }
    KORA::GraphicsObject *item() const { return m_item; }
    /// Null if the plugin deleted the widget.
    WidgetPrivate *priv() const;

private:
    QPointer<KORA::GraphicsObject> m_item;
    QPointer<KORA::Widget> m_widget;
    QPointer<KORA::WidgetActionManager> m_actionManager;
};

} // namespace DEV
} // namespace KORA
