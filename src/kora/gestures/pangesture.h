// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointF>
#include <QtWidgets/QGesture>

#include <memory>

#include <kora/export.h>

namespace KORA {

class PanGesturePrivate;

namespace INTERNAL {
class PanGesturePrivateAccessor;
} // namespace INTERNAL

/// Fingers that move together: one to three of them, or the pressed mouse for one.
///
/// The item grabs the gesture for its number of fingers, accepts the touch and reads the gesture:
///
///     grabGesture(pan2TouchesGestureType());
///
///     bool Trend::sceneEvent(QEvent *event)
///     {
///         if (event->type() == QEvent::TouchBegin) {
///             event->accept();
///             return true;
///         }
///         if (event->type() == QEvent::Gesture) {
///             auto *gestures = static_cast<QGestureEvent *>(event);
///             if (QGesture *gesture = gestures->gesture(pan2TouchesGestureType())) {
///                 scrollBy(static_cast<KORA::PanGesture *>(gesture)->delta());
///             }
///             return true;
///         }
///         return KORA::GraphicsObject::sceneEvent(event);
///     }
///
/// A touch starts the gesture beyond 10 pixels on either axis, the mouse at its first move. All values are
/// screen pixels. Items are not told when the system cancels a touch: the gesture then ends without an
/// event, and the next one begins with Qt::GestureStarted. The gesture belongs to Qt and is valid during the
/// event.
class KORA_EXPORT PanGesture : public QGesture
{
    Q_OBJECT
    Q_PROPERTY(QPointF startPoint READ startPoint)
    Q_PROPERTY(QPointF lastOffset READ lastOffset)
    Q_PROPERTY(QPointF offset READ offset)
    Q_PROPERTY(QPointF delta READ delta)

public:
    explicit PanGesture(int touches, QObject *parent = nullptr);
    ~PanGesture() override;

    /// The pan type of the number of touches; 1256 for a number that is not supported.
    Qt::GestureType gestureType() const;

    /// Where the first finger or the mouse went down.
    QPointF startPoint() const;
    /// The offset before the latest update.
    QPointF lastOffset() const;
    /// The way from the start; the mean over the fingers.
    QPointF offset() const;
    /// What the latest update added: offset() - lastOffset().
    QPointF delta() const;

private:
    friend class INTERNAL::PanGesturePrivateAccessor;

    std::unique_ptr<PanGesturePrivate> d;
};

KORA_EXPORT QDebug operator<<(QDebug debug, const PanGesture *gesture);

} // namespace KORA
