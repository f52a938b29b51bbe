// SPDX-License-Identifier: Apache-2.0
#include <kora/gestures/pinchgesturerecognizer_p.h>

#include <QtCore/QLineF>
#include <QtWidgets/QGraphicsObject>

#include <kora/gestures/gesture_p.h>
#include <kora/gestures/gesturetypes.h>
#include <kora/gestures/pinchgesture_p.h>
#include <kora/log/logging_p.h>

namespace KORA {

namespace {

using Result = QGestureRecognizer::Result;
using INTERNAL::TouchPoint;
using INTERNAL::TouchPoints;

// A finger distance that changes by more than this in one update is a jump of the device, not a pinch.
constexpr qreal LargestScaleStep = 2.0;
constexpr qreal SmallestScaleStep = 0.1;

Debug debugLine()
{
    return LogHandler(QString(), nullptr, 0, nullptr).debug();
}

// Streaming a touch point costs as much as Qt's delivery of the event: not for a log that nobody reads.
void logPoints(const TouchPoint &p1, const TouchPoint &p2)
{
    if (!koraLogMessageHandlerIsInstalled()) {
        return;
    }
    debugLine().debug() << "P1" << p1;
    debugLine().debug() << "P2" << p2;
    debugLine().debug() << "ANGLE" << p1.screenPos() << p2.screenPos();
    debugLine().debug() << "START ANGLE" << p1.startScreenPos() << p2.startScreenPos();
}

// Without this check one NaN or infinity would stay in the totals for the rest of the gesture.
bool isUsable(const TouchPoint &point)
{
    return INTERNAL::isScreenPosition(point.screenPos()) && INTERNAL::isScreenPosition(point.startScreenPos())
           && INTERNAL::isScreenPosition(point.lastScreenPos()) && qIsFinite(point.pos().x())
           && qIsFinite(point.pos().y());
}

// From -180 to 180 degrees.
qreal signedAngle(const QPointF &from, const QPointF &to)
{
    const qreal angle = QLineF(from, to).angle();
    return angle > 180 ? angle - 360 : angle;
}

// The start positions stay: they mean nothing before the next sequence sets them.
void clear(PinchGesturePrivate *d)
{
    const auto startPositions = d->startPositions;
    *d = {};
    d->startPositions = startPositions;
}

void startSequence(PinchGesturePrivate *d, const TouchPoint &p1, const TouchPoint &p2, const QPointF &center)
{
    d->startPositions = {p1.screenPos(), p2.screenPos()};
    d->changeFlags |= PinchGesture::CenterPointChanged;
    d->startCenterPoint = d->lastCenterPoint = d->centerPoint = center;
    d->scaleFactor = d->lastScaleFactor = 1.0;
}

// False when the fingers jumped; the new centre counts all the same.
bool continueSequence(PinchGesturePrivate *d, const TouchPoint &p1, const TouchPoint &p2,
                      const QPointF &center)
{
    d->changeFlags |= PinchGesture::CenterPointChanged;
    d->lastCenterPoint = d->centerPoint;
    d->centerPoint = center;
    d->lastScaleFactor = d->scaleFactor;
    const qreal scale = QLineF(p1.screenPos(), p2.screenPos()).length()
                        / QLineF(p1.lastScreenPos(), p2.lastScreenPos()).length();
    // Both fingers on one point make 0/0: written so that NaN fails too.
    if (!(scale >= SmallestScaleStep && scale <= LargestScaleStep)) {
        return false;
    }
    d->scaleFactor = scale;
    return true;
}

// The rotation jumps by 360 degrees where a finger crosses the left of the other; so do step and total.
void rotate(PinchGesturePrivate *d, const TouchPoint &p1, const TouchPoint &p2)
{
    const qreal rotation =
        signedAngle(p1.startScreenPos(), p2.startScreenPos()) - signedAngle(p1.screenPos(), p2.screenPos());
    d->lastRotationAngle = d->isNewSequence ? 0 : d->rotationAngle;
    d->rotationAngle = rotation;
    d->totalRotationAngle += rotation - d->lastRotationAngle;
    d->changeFlags |= PinchGesture::RotationAngleChanged;
}

Result end(const PinchGesture *pinch, Result withoutStart)
{
    return pinch->state() == Qt::NoGesture ? withoutStart : QGestureRecognizer::FinishGesture;
}

// Items are not told of a cancelled touch, and then nobody resets the pinch that it left behind.
Result touchBegin(PinchGesturePrivate *d)
{
    clear(d);
    return QGestureRecognizer::MayBeGesture;
}

Result touchUpdate(PinchGesture *pinch, PinchGesturePrivate *d, const TouchPoints &points)
{
    d->changeFlags = {};
    if (points.size() != 2) {
        d->isNewSequence = true;
        return end(pinch, QGestureRecognizer::Ignore);
    }
    const TouchPoint &p1 = points.at(0);
    const TouchPoint &p2 = points.at(1);
    logPoints(p1, p2);
    if (!isUsable(p1) || !isUsable(p2)) {
        return QGestureRecognizer::Ignore;
    }
    pinch->setHotSpot(p1.startScreenPos());
    const QPointF center = QLineF(p1.pos(), p2.pos()).center();
    if (d->isNewSequence) {
        startSequence(d, p1, p2, center);
    } else if (!continueSequence(d, p1, p2, center)) {
        return QGestureRecognizer::Ignore;
    }
    d->changeFlags |= PinchGesture::ScaleFactorChanged;
    d->totalScaleFactor *= d->scaleFactor;
    rotate(d, p1, p2);
    d->isNewSequence = false;
    d->totalChangeFlags |= d->changeFlags;
    return QGestureRecognizer::TriggerGesture;
}

} // namespace

Qt::GestureType PinchGestureRecognizer::type()
{
    return static_cast<Qt::GestureType>(PinchGestureType);
}

QGesture *PinchGestureRecognizer::create(QObject *)
{
    return new PinchGesture;
}

QGestureRecognizer::Result PinchGestureRecognizer::recognize(QGesture *gesture, QObject *watched,
                                                             QEvent *event)
{
    if (!qobject_cast<QGraphicsObject *>(watched)) {
        return Ignore;
    }
    auto *pinch = static_cast<PinchGesture *>(gesture);
    PinchGesturePrivate *d = INTERNAL::PinchGesturePrivateAccessor::priv(pinch);
    switch (event->type()) {
    case QEvent::TouchBegin:
        return touchBegin(d);
    case QEvent::TouchUpdate:
        return touchUpdate(pinch, d, INTERNAL::touchPointsOf(event));
    case QEvent::TouchEnd:
        return end(pinch, CancelGesture);
    default:
        return Ignore;
    }
}

void PinchGestureRecognizer::reset(QGesture *gesture)
{
    clear(INTERNAL::PinchGesturePrivateAccessor::priv(static_cast<PinchGesture *>(gesture)));
    QGestureRecognizer::reset(gesture);
}

} // namespace KORA
