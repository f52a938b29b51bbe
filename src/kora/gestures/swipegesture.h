// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointF>
#include <QtWidgets/QGesture>

#include <memory>

#include <kora/export.h>

class QGraphicsObject;
class QGestureEvent;

namespace KORA {

class SwipeGesturePrivate;

namespace INTERNAL {
class SwipeGesturePrivateAccessor;
} // namespace INTERNAL

/// A stroke of one to three fingers, or of the pressed mouse for one: what turns pages.
///
/// It starts with a step of more than 50 pixels on either axis and is cancelled when a later step turns
/// back. Both directions are set from then on. They are those of the screen; the map functions turn them
/// and the angle into those of the scene or of an item, on views and items that are rotated, mirrored or
/// scaled as well:
///
///     grabGesture(swipe3TouchesGestureType());
///     ...
///     auto *swipe = static_cast<KORA::SwipeGesture *>(gestureEvent->gesture(swipe3TouchesGestureType()));
///     if (swipe && swipe->state() == Qt::GestureFinished
///         && swipe->mapHorizontalDirectionToGraphicsObject(gestureEvent, this) == KORA::SwipeGesture::Left) {
///         showNextPage();
///     }
///
/// The item must accept the touch; see PanGesture. The gesture belongs to Qt and is valid during the event.
class KORA_EXPORT SwipeGesture : public QGesture
{
    Q_OBJECT
    Q_PROPERTY(QPointF startPoint READ startPoint)
    Q_PROPERTY(SwipeDirection horizontalDirection READ horizontalDirection)
    Q_PROPERTY(SwipeDirection verticalDirection READ verticalDirection)
    Q_PROPERTY(qreal swipeAngle READ swipeAngle)
    Q_PROPERTY(qreal velocity READ velocity)

public:
    enum SwipeDirection : int { NoDirection = 0, Left = 1, Right = 2, Up = 3, Down = 4 };
    Q_ENUM(SwipeDirection)

    explicit SwipeGesture(int touches, QObject *parent = nullptr);
    ~SwipeGesture() override;

    /// The swipe type of the number of touches; 1256 for a number that is not supported.
    Qt::GestureType gestureType() const;

    /// Where the first finger or the mouse went down, in screen pixels.
    QPointF startPoint() const;
    /// Left, Right or, before the swipe starts, NoDirection.
    SwipeDirection horizontalDirection() const;
    /// Up, Down or, before the swipe starts, NoDirection.
    SwipeDirection verticalDirection() const;
    /// The way of the first finger since the start, in degrees from 0 to 360, counter-clockwise from the
    /// right.
    qreal swipeAngle() const;
    /// The smoothed speed: the larger, the faster. No physical unit.
    qreal velocity() const;

    /// The angle and the directions as they are in the scene. @p event is the event that carries the
    /// gesture; without it, or when its widget is not the viewport of a QGraphicsView, scene and screen
    /// count as aligned.
    qreal mapSwipeAngleToGraphicsScene(QGestureEvent *event) const;
    SwipeDirection mapHorizontalDirectionToGraphicsScene(QGestureEvent *event) const;
    SwipeDirection mapVerticalDirectionToGraphicsScene(QGestureEvent *event) const;

    /// The same in the coordinates of an item; without an item those of the scene. A direction is NoDirection
    /// when the stroke runs along the item's other axis.
    qreal mapSwipeAngleToGraphicsObject(QGestureEvent *event, QGraphicsObject *item) const;
    SwipeDirection mapHorizontalDirectionToGraphicsObject(QGestureEvent *event, QGraphicsObject *item) const;
    SwipeDirection mapVerticalDirectionToGraphicsObject(QGestureEvent *event, QGraphicsObject *item) const;

private:
    friend class INTERNAL::SwipeGesturePrivateAccessor;

    std::unique_ptr<SwipeGesturePrivate> d;
};

KORA_EXPORT QDebug operator<<(QDebug debug, const SwipeGesture *gesture);

} // namespace KORA
