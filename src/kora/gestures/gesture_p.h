// SPDX-License-Identifier: Apache-2.0
//
// What the gestures and their recognisers share.
#pragma once

#include <QtCore/QDebug>
#include <QtCore/QMetaEnum>
#include <QtGui/QTouchEvent>
#include <QtWidgets/QGesture>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <algorithm>

namespace KORA {
namespace INTERNAL {

using TouchPoint = QTouchEvent::TouchPoint;
using TouchPoints = QList<QTouchEvent::TouchPoint>;

/// Farther out than any screen. A touch point beyond it, or at NaN, is a fault of the device and is not used:
/// its sums and quotients would spoil a gesture up to its end.
constexpr qreal LargestScreenCoordinate = 1e9;

inline bool isScreenPosition(const QPointF &position)
{
    // False for NaN.
    return qAbs(position.x()) <= LargestScreenCoordinate && qAbs(position.y()) <= LargestScreenCoordinate;
}

inline bool areOnScreen(const TouchPoints &points)
{
    return std::all_of(points.cbegin(), points.cend(), [](const TouchPoint &point) {
        return isScreenPosition(point.screenPos()) && isScreenPosition(point.startScreenPos());
    });
}

/// The mean of positionAt(0) to positionAt(count - 1); count is at least 1.
template<typename PositionAt>
QPointF meanPosition(int count, PositionAt positionAt)
{
    QPointF sum;
    for (int i = 0; i < count; ++i) {
        sum += positionAt(i);
    }
    return sum / count;
}

inline const TouchPoints &touchPointsOf(const QEvent *event)
{
    return static_cast<const QTouchEvent *>(event)->touchPoints();
}

inline QPointF mousePositionOf(const QEvent *event)
{
    return static_cast<const QGraphicsSceneMouseEvent *>(event)->screenPos();
}

template<typename Enumeration>
const char *enumeratorName(Enumeration value)
{
    const char *name = QMetaEnum::fromType<Enumeration>().valueToKey(static_cast<int>(value));
    return name ? name : "";
}

/// Starts the debug form that all gestures share and leaves the stream without spaces.
inline void streamGestureStart(QDebug &debug, const char *className, const QGesture *gesture)
{
    debug.nospace() << className << "(state=" << enumeratorName(gesture->state())
                    << ",hotSpot=" << gesture->hotSpot();
}

} // namespace INTERNAL
} // namespace KORA
