// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointF>
#include <QtWidgets/QGesture>

#include <memory>

#include <kora/export.h>

namespace KORA {

class PinchGesturePrivate;

namespace INTERNAL {
class PinchGesturePrivateAccessor;
} // namespace INTERNAL

/// Two fingers that zoom, turn and drag at once.
///
///     grabGesture(pinchGestureType());
///     ...
///     auto *pinch = static_cast<KORA::PinchGesture *>(gestureEvent->gesture(pinchGestureType()));
///     if (pinch) {
///         zoomBy(pinch->scaleFactor(), pinch->centerPoint());
///         turnBy(pinch->rotationAngle() - pinch->lastRotationAngle());
///         moveBy(pinch->centerPoint() - pinch->lastCenterPoint());
///     }
///
/// It starts with the first update of two fingers and ends when one is lifted or a third comes down. Centre
/// points are in the item's coordinates. The item must accept the touch; see PanGesture. The gesture
/// belongs to Qt and is valid during the event.
class KORA_EXPORT PinchGesture : public QGesture
{
    Q_OBJECT

public:
    enum ChangeFlag : int { ScaleFactorChanged = 0x1, RotationAngleChanged = 0x2, CenterPointChanged = 0x4 };
    Q_DECLARE_FLAGS(ChangeFlags, ChangeFlag)
    Q_FLAG(ChangeFlags)

    Q_PROPERTY(ChangeFlags totalChangeFlags READ totalChangeFlags)
    Q_PROPERTY(ChangeFlags changeFlags READ changeFlags)
    Q_PROPERTY(QPointF startCenterPoint READ startCenterPoint)
    Q_PROPERTY(QPointF lastCenterPoint READ lastCenterPoint)
    Q_PROPERTY(QPointF centerPoint READ centerPoint)
    Q_PROPERTY(qreal totalScaleFactor READ totalScaleFactor)
    Q_PROPERTY(qreal lastScaleFactor READ lastScaleFactor)
    Q_PROPERTY(qreal scaleFactor READ scaleFactor)
    Q_PROPERTY(qreal totalRotationAngle READ totalRotationAngle)
    Q_PROPERTY(qreal lastRotationAngle READ lastRotationAngle)
    Q_PROPERTY(qreal rotationAngle READ rotationAngle)

    explicit PinchGesture(QObject *parent = nullptr);
    ~PinchGesture() override;

    Qt::GestureType gestureType() const;

    /// All that changed since the gesture started, and what changed in the latest update.
    ChangeFlags totalChangeFlags() const;
    ChangeFlags changeFlags() const;

    /// The point midway between the fingers: when they came down, before the latest update, and now.
    QPointF startCenterPoint() const;
    QPointF lastCenterPoint() const;
    QPointF centerPoint() const;

    /// The product of all scale factors; the factor of the update before; that of the latest update, from
    /// 0.1 to 2.
    qreal totalScaleFactor() const;
    qreal lastScaleFactor() const;
    qreal scaleFactor() const;

    /// Degrees, clockwise on the screen: the sum of all steps; the rotation before the latest update; the
    /// rotation from where the fingers came down.
    qreal totalRotationAngle() const;
    qreal lastRotationAngle() const;
    qreal rotationAngle() const;

private:
    friend class INTERNAL::PinchGesturePrivateAccessor;

    std::unique_ptr<PinchGesturePrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(PinchGesture::ChangeFlags)

KORA_EXPORT QDebug operator<<(QDebug debug, const PinchGesture *gesture);

} // namespace KORA
