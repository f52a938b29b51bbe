// SPDX-License-Identifier: Apache-2.0
#include <kora/gestures/swipegesture.h>
#include <kora/gestures/swipegesture_p.h>

#include <QtCore/QLineF>
#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsView>

#include <kora/gestures/gesture_p.h>

namespace KORA {

namespace {

using Direction = SwipeGesture::SwipeDirection;

// Of a vector of length 1: a component up to it is rounding, not a direction.
constexpr qreal SmallestComponent = 1e-9;

QTransform screenToScene(const QGestureEvent *event)
{
    const QWidget *viewport = event ? event->widget() : nullptr;
    const auto *view = viewport ? qobject_cast<const QGraphicsView *>(viewport->parentWidget()) : nullptr;
    return view ? view->viewportTransform().inverted() : QTransform();
}

QTransform screenToItem(const QGestureEvent *event, const QGraphicsObject *item)
{
    const QTransform toScene = screenToScene(event);
    return item ? toScene * item->sceneTransform().inverted() : toScene;
}

// Vectors are not moved by a translation.
QLineF carry(const QTransform &transform, const QPointF &vector)
{
    const QTransform linear(transform.m11(), transform.m12(), transform.m21(), transform.m22(), 0, 0);
    return {QPointF(), linear.map(vector)};
}

qreal mapAngle(const QTransform &transform, qreal angle)
{
    return carry(transform, QLineF::fromPolar(1, angle).p2()).angle();
}

// Both directions as one vector, carried over. It is the null vector when neither is set.
QLineF carryDirections(const QTransform &transform, const SwipeGesturePrivate &d)
{
    const qreal x = d.horizontalDirection == SwipeGesture::NoDirection ? 0
                    : d.horizontalDirection == SwipeGesture::Right     ? 1
                                                                       : -1;
    const qreal y = d.verticalDirection == SwipeGesture::NoDirection ? 0
                    : d.verticalDirection == SwipeGesture::Down      ? 1
                                                                     : -1;
    return carry(transform, {x, y});
}

// Measured against the length, so that scales make no difference.
bool isDirection(qreal component, const QLineF &vector)
{
    return qAbs(component) > SmallestComponent * vector.length();
}

Direction mapHorizontal(const QTransform &transform, const SwipeGesturePrivate &d)
{
    const QLineF vector = carryDirections(transform, d);
    if (!isDirection(vector.dx(), vector)) {
        return SwipeGesture::NoDirection;
    }
    return vector.dx() > 0 ? SwipeGesture::Right : SwipeGesture::Left;
}

Direction mapVertical(const QTransform &transform, const SwipeGesturePrivate &d)
{
    const QLineF vector = carryDirections(transform, d);
    if (!isDirection(vector.dy(), vector)) {
        return SwipeGesture::NoDirection;
    }
    return vector.dy() > 0 ? SwipeGesture::Down : SwipeGesture::Up;
}

} // namespace

SwipeGesturePrivate::SwipeGesturePrivate(int touches)
    : type(gestureTypeForTouches(FirstSwipeGestureType, touches))
{
    timer.invalidate();
}

SwipeGesture::SwipeGesture(int touches, QObject *parent)
    : QGesture(parent)
    , d(std::make_unique<SwipeGesturePrivate>(touches))
{}

SwipeGesture::~SwipeGesture() = default;

// Hides QGesture's, which knows the number only once Qt's gesture manager has adopted the gesture.
Qt::GestureType SwipeGesture::gestureType() const
{
    return d->type;
}

QPointF SwipeGesture::startPoint() const
{
    return d->startPoint;
}

SwipeGesture::SwipeDirection SwipeGesture::horizontalDirection() const
{
    return d->horizontalDirection;
}

SwipeGesture::SwipeDirection SwipeGesture::verticalDirection() const
{
    return d->verticalDirection;
}

qreal SwipeGesture::swipeAngle() const
{
    return d->swipeAngle;
}

qreal SwipeGesture::velocity() const
{
    return d->velocity;
}

qreal SwipeGesture::mapSwipeAngleToGraphicsScene(QGestureEvent *event) const
{
    return mapAngle(screenToScene(event), d->swipeAngle);
}

SwipeGesture::SwipeDirection SwipeGesture::mapHorizontalDirectionToGraphicsScene(QGestureEvent *event) const
{
    return mapHorizontal(screenToScene(event), *d);
}

SwipeGesture::SwipeDirection SwipeGesture::mapVerticalDirectionToGraphicsScene(QGestureEvent *event) const
{
    return mapVertical(screenToScene(event), *d);
}

qreal SwipeGesture::mapSwipeAngleToGraphicsObject(QGestureEvent *event, QGraphicsObject *item) const
{
    return mapAngle(screenToItem(event, item), d->swipeAngle);
}

SwipeGesture::SwipeDirection SwipeGesture::mapHorizontalDirectionToGraphicsObject(QGestureEvent *event,
                                                                                  QGraphicsObject *item) const
{
    return mapHorizontal(screenToItem(event, item), *d);
}

SwipeGesture::SwipeDirection SwipeGesture::mapVerticalDirectionToGraphicsObject(QGestureEvent *event,
                                                                                QGraphicsObject *item) const
{
    return mapVertical(screenToItem(event, item), *d);
}

QDebug operator<<(QDebug debug, const SwipeGesture *gesture)
{
    const QDebugStateSaver saver(debug);
    if (!gesture) {
        return debug.nospace() << "KORA::SwipeGesture(0x0)";
    }
    INTERNAL::streamGestureStart(debug, "KORA::SwipeGesture", gesture);
    return debug << ",startPoint=" << gesture->startPoint()
                 << ",horizontalDirection=" << INTERNAL::enumeratorName(gesture->horizontalDirection())
                 << ",verticalDirection=" << INTERNAL::enumeratorName(gesture->verticalDirection())
                 << ",swipeAngle=" << gesture->swipeAngle() << ",velocity=" << gesture->velocity() << ')';
}

namespace INTERNAL {

SwipeGesturePrivate *SwipeGesturePrivateAccessor::priv(SwipeGesture *gesture)
{
    return gesture->d.get();
}

} // namespace INTERNAL
} // namespace KORA
