// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QGestureRecognizer>

#include <kora/export.h>

namespace KORA {

/// Recognises a PinchGesture, from touch alone.
class KORA_EXPORT PinchGestureRecognizer : public QGestureRecognizer
{
public:
    /// The fixed gesture type.
    static Qt::GestureType type();

    /// A new gesture without parent, the caller's. The target is not looked at.
    QGesture *create(QObject *target) override;
    /// Takes gestures of create() only. Ignores what is not sent to a QGraphicsObject.
    Result recognize(QGesture *gesture, QObject *watched, QEvent *event) override;
    void reset(QGesture *gesture) override;
};

} // namespace KORA
