// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantitem.h"

namespace Plant {

/// An item that fingers move: it turns the framework's gestures, and their counterparts on the mouse, into the
/// handlers below. A subclass grabs the gestures that it wants and overrides what they call:
///
/// | gesture           | mouse | handlers                  |
/// |-------------------|-------|---------------------------|
/// | pan, one finger   | drag  | panned()                  |
/// | pinch             | wheel | panned(), zoomed(), turned() |
/// | swipe, one finger | drag  | swiped()                  |
///
/// All values are in the item's coordinates, so they hold on rotated and scaled items and views.
class TouchItem : public PlantItem
{
    Q_OBJECT

protected:
    using PlantItem::PlantItem;

    virtual void panned(const QPointF &delta);
    virtual void zoomed(qreal factor, const QPointF &center);
    /// Degrees, clockwise.
    virtual void turned(qreal angle, const QPointF &center);
    /// Left or Right, once per swipe to the side.
    virtual void swiped(KORA::SwipeGesture::SwipeDirection direction);

    bool sceneEvent(QEvent *event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void wheelEvent(QGraphicsSceneWheelEvent *event) override;

private:
    void gestureEvent(QGestureEvent *event);
    void swipeEvent(const KORA::SwipeGesture &swipe, QGestureEvent *event);
    void pinchEvent(const KORA::PinchGesture &pinch);
    QPointF mappedFromScreen(const QPointF &vector, const QGestureEvent &event) const;
};

} // namespace Plant
