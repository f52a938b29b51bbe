// SPDX-License-Identifier: Apache-2.0
#include <kora/gestures/pangesturerecognizer_p.h>

#include <QtWidgets/QGraphicsObject>

#include <kora/gestures/gesture_p.h>
#include <kora/gestures/gesturetypes.h>
#include <kora/gestures/pangesture_p.h>

namespace KORA {

namespace {

using Result = QGestureRecognizer::Result;
using INTERNAL::TouchPoints;

// A touch that stays this near to its start, on both axes, is no pan. Pixels.
constexpr qreal TouchTolerance = 10;

void start(PanGesturePrivate *d, const QPointF &position, int pointCount)
{
    d->startPoint = position;
    d->lastOffset = d->offset = QPointF();
    d->pointCount = pointCount;
}

void moveTo(PanGesturePrivate *d, const QPointF &offset)
{
    d->lastOffset = d->offset;
    d->offset = offset;
}

// False, and nothing moved, when these are not the fingers that the pan was started with.
bool moveWith(PanGesturePrivate *d, const TouchPoints &points)
{
    if (points.isEmpty() || points.size() != d->pointCount || !INTERNAL::areOnScreen(points)) {
        return false;
    }
    moveTo(d, INTERNAL::meanPosition(d->pointCount, [&points](int i) {
               return points.at(i).screenPos() - points.at(i).startScreenPos();
           }));
    return true;
}

Result touchBegin(PanGesturePrivate *d, const TouchPoints &points, int touches)
{
    if (points.isEmpty() || !INTERNAL::areOnScreen(points)) {
        return QGestureRecognizer::Ignore;
    }
    start(d, points.first().screenPos(), touches);
    return QGestureRecognizer::MayBeGesture;
}

Result touchUpdate(PanGesture *pan, PanGesturePrivate *d, const TouchPoints &points)
{
    if (!moveWith(d, points)) {
        return QGestureRecognizer::Ignore;
    }
    if (qAbs(d->offset.x()) <= TouchTolerance && qAbs(d->offset.y()) <= TouchTolerance) {
        return QGestureRecognizer::MayBeGesture;
    }
    pan->setHotSpot(points.first().startScreenPos());
    return QGestureRecognizer::TriggerGesture;
}

Result touchEnd(const PanGesture *pan, PanGesturePrivate *d, const TouchPoints &points)
{
    if (pan->state() == Qt::NoGesture) {
        return QGestureRecognizer::CancelGesture;
    }
    moveWith(d, points);
    return QGestureRecognizer::FinishGesture;
}

Result mousePress(PanGesture *pan, PanGesturePrivate *d, const QPointF &position)
{
    pan->setHotSpot(position);
    start(d, position, 1);
    return QGestureRecognizer::MayBeGesture;
}

Result mouseMove(PanGesturePrivate *d, const QPointF &position)
{
    moveTo(d, position - d->startPoint);
    return QGestureRecognizer::TriggerGesture;
}

Result mouseRelease(const PanGesture *pan, PanGesturePrivate *d, const QPointF &position)
{
    moveTo(d, position - d->startPoint);
    const bool isClick = position == d->startPoint;
    return isClick || pan->state() == Qt::NoGesture ? QGestureRecognizer::CancelGesture
                                                    : QGestureRecognizer::FinishGesture;
}

Result recognizeMouse(PanGesture *pan, PanGesturePrivate *d, const QEvent *event)
{
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
        return d->type == PanGestureRecognizer::type(1) ? mousePress(pan, d, INTERNAL::mousePositionOf(event))
                                                        : QGestureRecognizer::Ignore;
    case QEvent::GraphicsSceneMouseMove:
        return d->pointCount == 1 ? mouseMove(d, INTERNAL::mousePositionOf(event))
                                  : QGestureRecognizer::Ignore;
    case QEvent::GraphicsSceneMouseRelease:
        return d->pointCount == 1 ? mouseRelease(pan, d, INTERNAL::mousePositionOf(event))
                                  : QGestureRecognizer::Ignore;
    case QEvent::GraphicsSceneMouseDoubleClick:
    case QEvent::MouseButtonDblClick:
        return QGestureRecognizer::CancelGesture;
    default:
        return QGestureRecognizer::Ignore;
    }
}

} // namespace

PanGestureRecognizer::PanGestureRecognizer(int touches)
    : m_touches(touches)
{}

Qt::GestureType PanGestureRecognizer::type(int touches)
{
    return gestureTypeForTouches(FirstPanGestureType, touches);
}

QGesture *PanGestureRecognizer::create(QObject *)
{
    return new PanGesture(m_touches);
}

QGestureRecognizer::Result PanGestureRecognizer::recognize(QGesture *gesture, QObject *watched, QEvent *event)
{
    if (!qobject_cast<QGraphicsObject *>(watched)) {
        return Ignore;
    }
    auto *pan = static_cast<PanGesture *>(gesture);
    PanGesturePrivate *d = INTERNAL::PanGesturePrivateAccessor::priv(pan);
    switch (event->type()) {
    case QEvent::TouchBegin:
        return touchBegin(d, INTERNAL::touchPointsOf(event), m_touches);
    case QEvent::TouchUpdate:
        return touchUpdate(pan, d, INTERNAL::touchPointsOf(event));
    case QEvent::TouchEnd:
        return touchEnd(pan, d, INTERNAL::touchPointsOf(event));
    default:
        return m_touches == 1 ? recognizeMouse(pan, d, event) : Ignore;
    }
}

} // namespace KORA
