// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QGestureRecognizer>

#include <kora/export.h>

namespace KORA {

/// Recognises a PanGesture of one number of touches; that of one touch also follows the mouse.
class KORA_EXPORT PanGestureRecognizer : public QGestureRecognizer
{
public:
    explicit PanGestureRecognizer(int touches);

    /// The fixed gesture type for 1 to 3 touches, 1256 for any other number.
    static Qt::GestureType type(int touches);

    /// A new gesture without parent, the caller's. The target is not looked at.
    QGesture *create(QObject *target) override;
    /// Takes gestures of create() only. Ignores what is not sent to a QGraphicsObject.
    Result recognize(QGesture *gesture, QObject *watched, QEvent *event) override;

private:
    const int m_touches;
};

} // namespace KORA
