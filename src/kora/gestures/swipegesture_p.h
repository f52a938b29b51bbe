// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QElapsedTimer>

#include <array>

#include <kora/export.h>
#include <kora/gestures/gesturetypes.h>
#include <kora/gestures/swipegesture.h>

namespace KORA {

class KORA_EXPORT SwipeGesturePrivate
{
public:
    enum RecognitionState : int { NotRecognizing = 0, Started = 1, Moving = 2 };

    explicit SwipeGesturePrivate(int touches);

    const Qt::GestureType type;
    SwipeGesture::SwipeDirection horizontalDirection = SwipeGesture::NoDirection;
    SwipeGesture::SwipeDirection verticalDirection = SwipeGesture::NoDirection;
    qreal swipeAngle = 0;
    /// Of each finger at the latest step that counted for the directions; (0, 0) is not yet set.
    std::array<QPointF, MaximumGestureTouches> lastPositions;
    RecognitionState recognitionState = NotRecognizing;
    qreal velocity = 1.0;
    QElapsedTimer timer; // since the latest move
    QPointF startPoint;
    QPointF currentPoint;
    int touchCount = 0; // of the recogniser that started the swipe
};

namespace INTERNAL {

class KORA_EXPORT SwipeGesturePrivateAccessor
{
public:
    static SwipeGesturePrivate *priv(SwipeGesture *gesture);
};

} // namespace INTERNAL
} // namespace KORA
