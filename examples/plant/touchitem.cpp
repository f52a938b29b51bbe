// SPDX-License-Identifier: Apache-2.0
#include "touchitem.h"

#include <QtCore/QtMath>
#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QGraphicsSceneMouseEvent>
#include <QtWidgets/QGraphicsView>

namespace Plant {

void TouchItem::panned(const QPointF &) {}

void TouchItem::zoomed(qreal, const QPointF &) {}

void TouchItem::turned(qreal, const QPointF &) {}

void TouchItem::swiped(KORA::SwipeGesture::SwipeDirection) {}

bool TouchItem::sceneEvent(QEvent *event)
{
    if (isInEditor()) {
        return PlantItem::sceneEvent(event);
    }
    switch (event->type()) {
    case QEvent::TouchBegin:
        // Without this the rest of the touch goes elsewhere.
        event->accept();
        return true;
    case QEvent::Gesture:
        gestureEvent(static_cast<QGestureEvent *>(event));
        return true;
    default:
        return PlantItem::sceneEvent(event);
    }
}

void TouchItem::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    // As with a touch: who does not accept the press sees no move.
    event->setAccepted(!isInEditor());
}

void TouchItem::wheelEvent(QGraphicsSceneWheelEvent *event)
{
    constexpr qreal DeltaPerDoubling = 480; // four clicks of a common wheel
    if (isInEditor()) {
        event->ignore();
    } else {
        zoomed(qPow(2, event->delta() / DeltaPerDoubling), event->pos());
    }
}

void TouchItem::gestureEvent(QGestureEvent *event)
{
    if (QGesture *const gesture = event->gesture(pinchGestureType())) {
        pinchEvent(*static_cast<KORA::PinchGesture *>(gesture));
    }

    if (QGesture *const gesture = event->gesture(pan1TouchGestureType())) {
        panned(mappedFromScreen(static_cast<KORA::PanGesture *>(gesture)->delta(), *event));
    }

    QGesture *const gesture = event->gesture(swipe1TouchGestureType());
    if (gesture && gesture->state() == Qt::GestureFinished) {
        swipeEvent(*static_cast<KORA::SwipeGesture *>(gesture), event);
    }
}

void TouchItem::swipeEvent(const KORA::SwipeGesture &swipe, QGestureEvent *event)
{
    // A stroke up or down has a horizontal direction too: the angle says which way it went.
    const qreal angle = qDegreesToRadians(swipe.mapSwipeAngleToGraphicsObject(event, this));
    if (qAbs(qCos(angle)) > qAbs(qSin(angle))) {
        swiped(swipe.mapHorizontalDirectionToGraphicsObject(event, this));
    }
}

void TouchItem::pinchEvent(const KORA::PinchGesture &pinch)
{
    if (pinch.state() != Qt::GestureStarted && pinch.state() != Qt::GestureUpdated) {
        return;
    }
    panned(pinch.centerPoint() - pinch.lastCenterPoint());
    zoomed(pinch.scaleFactor(), pinch.centerPoint());
    turned(pinch.rotationAngle() - pinch.lastRotationAngle(), pinch.centerPoint());
}

QPointF TouchItem::mappedFromScreen(const QPointF &vector, const QGestureEvent &event) const
{
    const QWidget *const viewport = event.widget();
    const auto *const view =
        viewport ? qobject_cast<const QGraphicsView *>(viewport->parentWidget()) : nullptr;
    if (!view) {
        return vector;
    }
    const QTransform toItem = (sceneTransform() * view->viewportTransform()).inverted();
    return toItem.map(vector) - toItem.map(QPointF());
}

} // namespace Plant
