// SPDX-License-Identifier: Apache-2.0
#include <kora/gestures/pangesture.h>
#include <kora/gestures/pangesture_p.h>

#include <kora/gestures/gesture_p.h>
#include <kora/gestures/gesturetypes.h>

namespace KORA {

PanGesturePrivate::PanGesturePrivate(int touches)
    : type(gestureTypeForTouches(FirstPanGestureType, touches))
{}

PanGesture::PanGesture(int touches, QObject *parent)
    : QGesture(parent)
    , d(std::make_unique<PanGesturePrivate>(touches))
{}

PanGesture::~PanGesture() = default;

// Hides QGesture's, which knows the number only once Qt's gesture manager has adopted the gesture.
Qt::GestureType PanGesture::gestureType() const
{
    return d->type;
}

QPointF PanGesture::startPoint() const
{
    return d->startPoint;
}

QPointF PanGesture::lastOffset() const
{
    return d->lastOffset;
}

QPointF PanGesture::offset() const
{
    return d->offset;
}

QPointF PanGesture::delta() const
{
    return d->offset - d->lastOffset;
}

QDebug operator<<(QDebug debug, const PanGesture *gesture)
{
    const QDebugStateSaver saver(debug);
    if (!gesture) {
        return debug.nospace() << "KORA::PanGesture(0x0)";
    }
    INTERNAL::streamGestureStart(debug, "KORA::PanGesture", gesture);
    return debug << ",startPoint=" << gesture->startPoint() << ",lastOffset=" << gesture->lastOffset()
                 << ",offset=" << gesture->offset() << ",delta=" << gesture->delta() << ')';
}

namespace INTERNAL {

PanGesturePrivate *PanGesturePrivateAccessor::priv(PanGesture *gesture)
{
    return gesture->d.get();
}

} // namespace INTERNAL
} // namespace KORA
