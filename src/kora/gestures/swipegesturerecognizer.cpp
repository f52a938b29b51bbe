// SPDX-License-Identifier: Apache-2.0
#include <kora/gestures/swipegesturerecognizer_p.h>

#include <QtCore/QLineF>
#include <QtWidgets/QGraphicsObject>

#include <kora/gestures/gesture_p.h>
#include <kora/gestures/swipegesture_p.h>

namespace KORA {

namespace {

using Result = QGestureRecognizer::Result;
using Direction = SwipeGesture::SwipeDirection;
using INTERNAL::TouchPoint;
using INTERNAL::TouchPoints;

constexpr qreal StepLength = 50;     // pixels on one axis; a longer step swipes
constexpr qreal ReversalLength = 6;  // pixels on one axis; a step that goes further back cancels
constexpr qreal InitialVelocity = 1; // so that a swipe never starts from standstill
constexpr qreal VelocityDecay = 0.9;

void clear(SwipeGesturePrivate *d)
{
    d->horizontalDirection = SwipeGesture::NoDirection;
    d->verticalDirection = SwipeGesture::NoDirection;
    d->swipeAngle = 0;
    d->lastPositions.fill(QPointF());
}

// Items are not told of a cancelled touch, and then nobody resets the swipe that it left behind.
Result start(SwipeGesturePrivate *d, int touchCount)
{
    clear(d);
    d->velocity = InitialVelocity;
    d->timer.start();
    d->recognitionState = SwipeGesturePrivate::Started;
    d->touchCount = touchCount;
    return QGestureRecognizer::MayBeGesture;
}

Result end(const SwipeGesture *swipe)
{
    return swipe->state() == Qt::NoGesture ? QGestureRecognizer::CancelGesture
                                           : QGestureRecognizer::FinishGesture;
}

void updateVelocity(SwipeGesturePrivate *d, qreal distance)
{
    const qint64 elapsed = qMax<qint64>(d->timer.restart(), 1);
    d->velocity = distance / static_cast<qreal>(elapsed) + VelocityDecay * d->velocity;
}

// Takes a step over into the direction of its axis. True when the swipe turned back. A first step without
// length on this axis counts as Up or Left: once a swipe has started both directions are set.
bool turn(Direction *direction, qreal length, Direction negative, Direction positive)
{
    const bool isFirst = *direction == SwipeGesture::NoDirection;
    if (!isFirst && qAbs(length) <= ReversalLength) {
        return false;
    }
    const Direction previous = *direction;
    *direction = length > 0 ? positive : negative;
    return !isFirst && *direction != previous;
}

// The fingers (or the mouse) are at the positions now. The step is measured from the latest step that
// counted, so that slow strokes swipe too.
Result move(const SwipeGesture *swipe, SwipeGesturePrivate *d, const QPointF *positions)
{
    const auto first = d->lastPositions.begin();
    const auto last = first + d->touchCount;
    if (std::all_of(first, last, [](const QPointF &position) { return position.isNull(); })) {
        std::copy_n(positions, d->touchCount, first);
    }
    // The mean of the differences: exact for fingers that move alike, as the difference of the means is not.
    const QPointF step = INTERNAL::meanPosition(
        d->touchCount, [&](int i) { return positions[i] - d->lastPositions[static_cast<size_t>(i)]; });
    updateVelocity(d, QLineF(QPointF(), step).length());
    d->swipeAngle = QLineF(d->startPoint, d->currentPoint).angle();
    if (qAbs(step.x()) <= StepLength && qAbs(step.y()) <= StepLength) {
        return swipe->state() == Qt::NoGesture ? QGestureRecognizer::MayBeGesture
                                               : QGestureRecognizer::TriggerGesture;
    }
    std::copy_n(positions, d->touchCount, first);
    const bool reversedVertically =
        turn(&d->verticalDirection, step.y(), SwipeGesture::Up, SwipeGesture::Down);
    const bool reversedHorizontally =
        turn(&d->horizontalDirection, step.x(), SwipeGesture::Left, SwipeGesture::Right);
    return reversedVertically || reversedHorizontally ? QGestureRecognizer::CancelGesture
                                                      : QGestureRecognizer::TriggerGesture;
}

// Fingers are missing: they may still come, but not once the swipe moves.
Result waitForFingers(const SwipeGesturePrivate *d, const TouchPoints &points)
{
    const bool fingerWasAdded = std::any_of(points.cbegin(), points.cend(), [](const TouchPoint &point) {
        return point.state() == Qt::TouchPointPressed;
    });
    return d->recognitionState == SwipeGesturePrivate::Moving && fingerWasAdded
               ? QGestureRecognizer::CancelGesture
               : QGestureRecognizer::Ignore;
}

Result touchUpdate(SwipeGesture *swipe, SwipeGesturePrivate *d, const TouchPoints &points)
{
    if (d->recognitionState == SwipeGesturePrivate::NotRecognizing || points.size() > d->touchCount) {
        return QGestureRecognizer::CancelGesture;
    }
    const bool isSupported = d->touchCount >= 1 && d->touchCount <= MaximumGestureTouches;
    if (points.size() < d->touchCount || !isSupported) {
        return waitForFingers(d, points);
    }
    if (!INTERNAL::areOnScreen(points)) {
        return QGestureRecognizer::Ignore;
    }
    d->recognitionState = SwipeGesturePrivate::Moving;
    swipe->setHotSpot(points.first().startScreenPos());
    d->startPoint = points.first().startScreenPos();
    d->currentPoint = points.first().screenPos();
    std::array<QPointF, MaximumGestureTouches> positions;
    std::transform(points.cbegin(), points.cend(), positions.begin(),
                   [](const TouchPoint &point) { return point.screenPos(); });
    return move(swipe, d, positions.data());
}

Result mousePress(SwipeGesture *swipe, SwipeGesturePrivate *d, const QPointF &position)
{
    swipe->setHotSpot(position);
    d->startPoint = position;
    return start(d, 1);
}

Result mouseMove(const SwipeGesture *swipe, SwipeGesturePrivate *d, const QPointF &position)
{
    if (d->recognitionState == SwipeGesturePrivate::NotRecognizing) {
        return QGestureRecognizer::CancelGesture;
    }
    d->recognitionState = SwipeGesturePrivate::Moving;
    d->currentPoint = position;
    const std::array<QPointF, MaximumGestureTouches> positions{position};
    return move(swipe, d, positions.data());
}

Result recognizeMouse(SwipeGesture *swipe, SwipeGesturePrivate *d, const QEvent *event)
{
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
        return mousePress(swipe, d, INTERNAL::mousePositionOf(event));
    case QEvent::GraphicsSceneMouseMove:
        return mouseMove(swipe, d, INTERNAL::mousePositionOf(event));
    case QEvent::GraphicsSceneMouseRelease:
        return end(swipe);
    case QEvent::GraphicsSceneMouseDoubleClick:
    case QEvent::MouseButtonDblClick:
        return QGestureRecognizer::CancelGesture;
    default:
        return QGestureRecognizer::Ignore;
    }
}

} // namespace

SwipeGestureRecognizer::SwipeGestureRecognizer(int touches)
    : m_touches(touches)
{}

Qt::GestureType SwipeGestureRecognizer::type(int touches)
{
    return gestureTypeForTouches(FirstSwipeGestureType, touches);
}

QGesture *SwipeGestureRecognizer::create(QObject *)
{
    return new SwipeGesture(m_touches);
}

QGestureRecognizer::Result SwipeGestureRecognizer::recognize(QGesture *gesture, QObject *watched,
                                                             QEvent *event)
{
    if (!qobject_cast<QGraphicsObject *>(watched)) {
        return Ignore;
    }
    auto *swipe = static_cast<SwipeGesture *>(gesture);
    SwipeGesturePrivate *d = INTERNAL::SwipeGesturePrivateAccessor::priv(swipe);
    switch (event->type()) {
    case QEvent::TouchBegin:
        return start(d, m_touches);
    case QEvent::TouchUpdate:
        return touchUpdate(swipe, d, INTERNAL::touchPointsOf(event));
    case QEvent::TouchEnd:
        return end(swipe);
    default:
        return m_touches == 1 ? recognizeMouse(swipe, d, event) : Ignore;
    }
}

// Start point and touch count stay: the next press or touch sets them.
void SwipeGestureRecognizer::reset(QGesture *gesture)
{
    SwipeGesturePrivate *d =
        INTERNAL::SwipeGesturePrivateAccessor::priv(static_cast<SwipeGesture *>(gesture));
    clear(d);
    d->recognitionState = SwipeGesturePrivate::NotRecognizing;
    d->velocity = 0;
    d->timer.invalidate();
    QGestureRecognizer::reset(gesture);
}

} // namespace KORA
