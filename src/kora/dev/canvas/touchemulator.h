// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QVector>
#include <QtGui/QRegion>
#include <QtGui/QTouchDevice>
#include <QtGui/QTouchEvent>

#include <kora/export.h>

class QMouseEvent;
class QPainter;
class QPalette;
class QWidget;

namespace KORA {
namespace DEV {

/// Fingers for a widget, moved with the mouse: it gets the events of a touch screen with up to three points.
///
/// Finger 1 is the left button. While Alt or the right button is held, finger 2 is finger 1 mirrored about the point
/// where the mouse then was: they pinch and turn. With Shift too, finger 2 keeps its distance to finger 1 instead:
/// they pan and swipe. With Ctrl added there is a finger 3, at the centre of the mirrored two, or on the other side
/// of finger 1. Fingers come down and go up with the keys as with the left button.
class KORA_EXPORT TouchEmulator : public QObject
{
    Q_OBJECT

public:
    /// @p target, a viewport that accepts touch, is not owned and must outlive the object.
    explicit TouchEmulator(QWidget *target);

    /// Whether fingers are down and something took the touch.
    bool isTouching() const { return !m_down.isEmpty(); }

    /// Each tells whether the touch screen has the event. Nothing took the touch if not: as on a panel the mouse then
    /// stands in for finger 1.
    bool mousePress(const QMouseEvent &event);
    bool mouseMove(const QMouseEvent &event);
    bool mouseRelease(const QMouseEvent &event);

    void setModifiers(Qt::KeyboardModifiers modifiers);
    /// The fingers are hidden while the mouse is elsewhere.
    void setHovering(bool isHovering);
    /// The touch ends by no will of the fingers: the window lost the focus.
    void cancel();

    void paint(QPainter &painter, const QPalette &palette) const;
    /// What paint() draws on.
    QRegion region() const;

Q_SIGNALS:
    void fingersMoved();

private:
    enum class Companion { None, Mirrored, Parallel };
    using Points = QList<QTouchEvent::TouchPoint>;

    struct Finger
    {
        QPointF start;
        QPointF position;
    };

    QVector<QPointF> fingers() const;
    void moveTo(const QPointF &position, Qt::KeyboardModifiers modifiers);
    void setCompanion(Companion companion);
    /// Whether what is touched took the event.
    bool send();
    bool sendEvent(QEvent::Type type, const Points &points);
    QTouchEvent::TouchPoint point(int id, const Finger &finger, const QPointF &last,
                                  Qt::TouchPointState state) const;

    QWidget *m_target;
    QTouchDevice m_device;
    QElapsedTimer m_clock;
    QPointF m_position;
    QPointF m_centre;   // that finger 2 is mirrored about
    QPointF m_distance; // of a parallel finger 2
    Companion m_companion = Companion::None;
    bool m_hasThird = false;
    bool m_leftIsDown = false;
    bool m_isTaken = false; // by what is touched, since the left button went down
    bool m_rightIsDown = false;
    bool m_isHovering = false;
    QVector<Finger> m_down; // as they were sent last
};

} // namespace DEV
} // namespace KORA
