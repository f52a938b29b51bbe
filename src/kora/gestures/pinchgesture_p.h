// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include <kora/export.h>
#include <kora/gestures/pinchgesture.h>

namespace KORA {

class KORA_EXPORT PinchGesturePrivate
{
public:
    PinchGesture::ChangeFlags totalChangeFlags;
    PinchGesture::ChangeFlags changeFlags;
    QPointF startCenterPoint;
    QPointF lastCenterPoint;
    QPointF centerPoint;
    qreal totalScaleFactor = 1.0;
    qreal lastScaleFactor = 1.0;
    qreal scaleFactor = 1.0;
    qreal totalRotationAngle = 0;
    qreal lastRotationAngle = 0;
    qreal rotationAngle = 0;
    bool isNewSequence = true;             // until the first update of two fingers
    std::array<QPointF, 2> startPositions; // on the screen, when the sequence began
};

namespace INTERNAL {

class KORA_EXPORT PinchGesturePrivateAccessor
{
public:
    static PinchGesturePrivate *priv(PinchGesture *gesture);
};

} // namespace INTERNAL
} // namespace KORA
