// SPDX-License-Identifier: Apache-2.0
#include "loadcheckinput.h"

#include <QtGui/QTouchEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsView>

#include "loadcheckrun.h"
#include "loadcheckstage.h"

namespace {

const int mostFingers = 3;
const int moves = 6;

/// A person at the view.
class Operator
{
public:
    explicit Operator(QGraphicsView &view)
        : m_viewport(*view.viewport())
        , m_view(view)
    {
        m_device.setType(QTouchDevice::TouchScreen);
    }

    /// A stroke of some fingers from the middle in the direction; they part as they move if @p spread.
    void stroke(int fingers, const QPointF &direction, bool spread)
    {
        m_fingers = fingers;
        touch(QEvent::TouchBegin, Qt::TouchPointPressed, {}, 0);
        for (int i = 1; i <= moves; ++i) {
            touch(QEvent::TouchUpdate, Qt::TouchPointMoved, direction * i, spread ? i : 0);
        }
        touch(QEvent::TouchEnd, Qt::TouchPointReleased, direction * moves, spread ? moves : 0);
    }

    void cancelledTouch()
    {
        m_fingers = 1;
        touch(QEvent::TouchBegin, Qt::TouchPointPressed, {}, 0);
        QTouchEvent cancel(QEvent::TouchCancel, &m_device);
        QApplication::sendEvent(&m_viewport, &cancel);
    }

    void click(Qt::MouseButton button)
    {
        mouse(QEvent::MouseMove, center(), Qt::NoButton, Qt::NoButton);
        mouse(QEvent::MouseButtonPress, center(), button, button);
        mouse(QEvent::MouseMove, center() + QPointF(5, 5), Qt::NoButton, button);
        mouse(QEvent::MouseButtonRelease, center() + QPointF(5, 5), button, Qt::NoButton);
        mouse(QEvent::MouseButtonDblClick, center(), button, button);
        mouse(QEvent::MouseButtonRelease, center(), button, Qt::NoButton);
        mouse(QEvent::MouseMove, QPointF(1, 1), Qt::NoButton, Qt::NoButton);
    }

    void turnWheel(int delta)
    {
        QWheelEvent event(center(), m_view.viewport()->mapToGlobal(center().toPoint()), QPoint(),
                          QPoint(0, delta), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&m_viewport, &event);
    }

    void press(Qt::Key key, const QString &text)
    {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&m_viewport, &down);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QApplication::sendEvent(&m_viewport, &up);
    }

private:
    QPointF center() const { return QRectF(m_viewport.rect()).center(); }

    void mouse(QEvent::Type type, const QPointF &position, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, position, m_viewport.mapToGlobal(position.toPoint()), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(&m_viewport, &event);
    }

    void touch(QEvent::Type type, Qt::TouchPointState state, const QPointF &offset, int spread)
    {
        QList<QTouchEvent::TouchPoint> points;
        for (int i = 0; i < m_fingers; ++i) {
            points.append(point(i, state, center() + offset + QPointF((i - 1) * (10 + 4 * spread), 0)));
        }
        QTouchEvent event(type, &m_device, Qt::NoModifier, state, points);
        event.setTimestamp(m_time += 16); // as fast as a panel's screen
        QApplication::sendEvent(&m_viewport, &event);
    }

    QTouchEvent::TouchPoint point(int id, Qt::TouchPointState state, const QPointF &position)
    {
        const bool isNew = state == Qt::TouchPointPressed;
        m_start[id] = isNew ? position : m_start[id];
        m_last[id] = isNew ? position : m_last[id];
        QTouchEvent::TouchPoint point(id);
        const QPointF origin = m_viewport.mapToGlobal(QPoint());
        point.setState(state);
        point.setPos(position);
        point.setStartPos(m_start[id]);
        point.setLastPos(m_last[id]);
        point.setScreenPos(position + origin);
        point.setStartScreenPos(m_start[id] + origin);
        point.setLastScreenPos(m_last[id] + origin);
        m_last[id] = position;
        return point;
    }

    QWidget &m_viewport;
    QGraphicsView &m_view;
    QTouchDevice m_device;
    int m_fingers = 1;
    ulong m_time = 1000;
    QPointF m_start[mostFingers];
    QPointF m_last[mostFingers];
};

} // namespace

void giveInput(CheckRun &run, CheckStage &stage)
{
    QGraphicsView view(&stage.scene());
    view.resize(400, 300);
    view.centerOn(stage.item());
    view.show();
    stage.settle();
    Operator person(view);
    for (int fingers = 1; fingers <= mostFingers; ++fingers) {
        run.call(QStringLiteral("touch of %1 fingers").arg(fingers));
        person.stroke(fingers, {}, false);
        person.stroke(fingers, QPointF(12, 0), false);
        person.stroke(fingers, QPointF(0, -12), false);
        person.stroke(fingers, QPointF(3, 3), true);
        stage.settle();
    }
    run.call(QStringLiteral("a touch that is cancelled"));
    person.cancelledTouch();
    run.call(QStringLiteral("mouse press, move, release and double click"));
    person.click(Qt::LeftButton);
    person.click(Qt::RightButton);
    run.call(QStringLiteral("mouse wheel"));
    person.turnWheel(120);
    person.turnWheel(-100000);
    run.call(QStringLiteral("keys and focus"));
    if (stage.item()) {
        stage.item()->setFocus();
    }
    person.press(Qt::Key_A, QStringLiteral("a"));
    person.press(Qt::Key_Return, QStringLiteral("\r"));
    person.press(Qt::Key_Escape, QString());
    if (stage.item()) {
        stage.item()->clearFocus();
    }
    stage.settle();
}
