// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>
#include <kora/gestures/pangesture.h>

namespace KORA {

class KORA_EXPORT PanGesturePrivate
{
public:
    explicit PanGesturePrivate(int touches);

    const Qt::GestureType type;
    QPointF startPoint; // screen position
    QPointF lastOffset;
    QPointF offset;
    int pointCount = 0; // touches that the pan was started with
};

namespace INTERNAL {

class KORA_EXPORT PanGesturePrivateAccessor
{
public:
    static PanGesturePrivate *priv(PanGesture *gesture);
};

} // namespace INTERNAL
} // namespace KORA
