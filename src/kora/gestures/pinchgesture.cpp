// SPDX-License-Identifier: Apache-2.0
#include <kora/gestures/pinchgesture.h>
#include <kora/gestures/pinchgesture_p.h>

#include <kora/gestures/gesture_p.h>
#include <kora/gestures/gesturetypes.h>

namespace KORA {

PinchGesture::PinchGesture(QObject *parent)
    : QGesture(parent)
    , d(std::make_unique<PinchGesturePrivate>())
{}

PinchGesture::~PinchGesture() = default;

// Hides QGesture's, which knows the number only once Qt's gesture manager has adopted the gesture.
Qt::GestureType PinchGesture::gestureType() const
{
    return static_cast<Qt::GestureType>(PinchGestureType);
}

PinchGesture::ChangeFlags PinchGesture::totalChangeFlags() const
{
    return d->totalChangeFlags;
}

PinchGesture::ChangeFlags PinchGesture::changeFlags() const
{
    return d->changeFlags;
}

QPointF PinchGesture::startCenterPoint() const
{
    return d->startCenterPoint;
}

QPointF PinchGesture::lastCenterPoint() const
{
    return d->lastCenterPoint;
}

QPointF PinchGesture::centerPoint() const
{
    return d->centerPoint;
}

qreal PinchGesture::totalScaleFactor() const
{
    return d->totalScaleFactor;
}

qreal PinchGesture::lastScaleFactor() const
{
    return d->lastScaleFactor;
}

qreal PinchGesture::scaleFactor() const
{
    return d->scaleFactor;
}

qreal PinchGesture::totalRotationAngle() const
{
    return d->totalRotationAngle;
}

qreal PinchGesture::lastRotationAngle() const
{
    return d->lastRotationAngle;
}

qreal PinchGesture::rotationAngle() const
{
    return d->rotationAngle;
}

QDebug operator<<(QDebug debug, const PinchGesture *gesture)
{
    const QDebugStateSaver saver(debug);
    if (!gesture) {
        return debug.nospace() << "KORA::PinchGesture(0x0)";
    }
    INTERNAL::streamGestureStart(debug, "KORA::PinchGesture", gesture);
    return debug << ",totalChangeFlags=" << gesture->totalChangeFlags()
                 << ",changeFlags=" << gesture->changeFlags()
                 << ",startCenterPoint=" << gesture->startCenterPoint()
                 << ",lastCenterPoint=" << gesture->lastCenterPoint()
                 << ",centerPoint=" << gesture->centerPoint()
                 << ",totalScaleFactor=" << gesture->totalScaleFactor()
                 << ",lastScaleFactor=" << gesture->lastScaleFactor()
                 << ",scaleFactor=" << gesture->scaleFactor()
                 << ",totalRotationAngle=" << gesture->totalRotationAngle()
                 << ",lastRotationAngle=" << gesture->lastRotationAngle()
                 << ",rotationAngle=" << gesture->rotationAngle() << ')';
}

namespace INTERNAL {

PinchGesturePrivate *PinchGesturePrivateAccessor::priv(PinchGesture *gesture)
{
    return gesture->d.get();
}

} // namespace INTERNAL
} // namespace KORA
