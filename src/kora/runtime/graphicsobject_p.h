// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointer>
#include <QtCore/QSizeF>

#include <kora/export.h>
#include <kora/runtime/graphicsobject.h>
#include <kora/runtime/widget.h>
#include <kora/runtime/widgetactionmanager.h>

class QTouchEvent;

namespace KORA {

/// A host's hold on a graphics object.
class KORA_EXPORT GraphicsObjectPrivate
{
public:
    static constexpr int noTouchPoint = -1;

    GraphicsObjectPrivate(GraphicsObject *owner, const GraphicsObjectData &data);

    /// Delivers an init event; does nothing when started. The widget's init() calls it.
    void init();
    /// Delivers a deinit event; does nothing when stopped.
    void deinit();
    /// Gives the item a new size and delivers a resize event, unless width and height are (fuzzily) the same.
    void resize(const QSizeF &newSize);

    /// As WidgetPrivate's, on the owning widget.
    QVariant getFieldValue(const QString &fieldId, bool fromHost) const;
    void setFieldValue(const QString &fieldId, const QVariant &value, bool fromHost, bool sendEvent);

    /// Turns the first point of a touch begin, update or end into a mouse event of the item. False, and nothing
    /// done, if the event has no points.
    bool touchToMouse(QTouchEvent *touch);

    bool initialised = false;
    QSizeF size{-1, -1};
    GraphicsObject *owner;
    QString id;
    INTERNAL::VersionType version;
    QPointer<Widget> widget;                           // not owned
    QPointer<WidgetActionManager> widgetActionManager; // not owned
    int trackedTouchPointId = noTouchPoint;
    QFlags<GraphicsObject::OptionFlag> options;
};

namespace INTERNAL {

class KORA_EXPORT GraphicsObjectPrivateAccessor
{
public:
    static GraphicsObjectPrivate *priv(GraphicsObject *object);
};

} // namespace INTERNAL
} // namespace KORA
