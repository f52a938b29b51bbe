// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPoint>
#include <QtCore/QVector>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

namespace KORA {
namespace TestKit {

/// Fingers on a touch screen. The events pass the window system, Qt's gesture manager and the scene as those of a panel
/// do. Positions are those of the touched widget, for a view its viewport. A finger stays down until release().
class Touch
{
public:
    using Positions = QVector<QPoint>;

    explicit Touch(QWidget *touched)
        : m_touched(touched)
    {}

    void press(const Positions &fingers)
    {
        auto touch = QTest::touchEvent(m_touched, device());
        for (int i = 0; i < fingers.size(); ++i) {
            touch.press(i, fingers.at(i), m_touched);
        }
        m_fingers = fingers;
    }
    void moveTo(const Positions &fingers)
    {
        auto touch = QTest::touchEvent(m_touched, device());
        for (int i = 0; i < fingers.size(); ++i) {
            touch.move(i, fingers.at(i), m_touched);
        }
        m_fingers = fingers;
    }
    void move(const QPoint &by)
    {
        Positions fingers = m_fingers;
        for (QPoint &finger : fingers) {
            finger += by;
        }
        moveTo(fingers);
    }
    void pressOneMore(const QPoint &finger)
    {
        auto touch = QTest::touchEvent(m_touched, device());
        for (int i = 0; i < m_fingers.size(); ++i) {
            touch.stationary(i);
        }
        touch.press(m_fingers.size(), finger, m_touched);
        m_fingers.append(finger);
    }
    void release()
    {
        auto touch = QTest::touchEvent(m_touched, device());
        for (int i = 0; i < m_fingers.size(); ++i) {
            touch.release(i, m_fingers.at(i), m_touched);
        }
        m_fingers.clear();
    }

    void tap(const QPoint &position)
    {
        press({position});
        release();
    }
    /// One or more fingers side by side, the first at @p from. Eight steps by default: slow enough for a pan.
    void drag(const QPoint &from, const QPoint &by, int fingers = 1, int steps = 8)
    {
        press(sideBySide(from, fingers));
        for (int i = 1; i <= steps; ++i) {
            move(by * i / steps - by * (i - 1) / steps);
        }
        release();
    }
    /// A stroke in two steps. Each has to be longer than 50 pixels to be taken for a swipe.
    void swipe(const QPoint &from, const QPoint &by, int fingers = 1) { drag(from, by, fingers, 2); }
    /// Two fingers to the left and right of @p center, from one distance to another.
    void pinch(const QPoint &center, int fromDistance, int toDistance, int steps = 5)
    {
        press(around(center, fromDistance));
        for (int i = 1; i <= steps; ++i) {
            moveTo(around(center, fromDistance + (toDistance - fromDistance) * i / steps));
        }
        release();
    }

    /// The touch screen that all fingers are on.
    static QTouchDevice *device()
    {
        static QTouchDevice *const device = QTest::createTouchDevice();
        return device;
    }

private:
    static Positions sideBySide(const QPoint &first, int count)
    {
        const int gap = 20;
        Positions fingers;
        for (int i = 0; i < count; ++i) {
            fingers.append(first + QPoint(i * gap, 0));
        }
        return fingers;
    }
    static Positions around(const QPoint &center, int distance)
    {
        const QPoint half(distance / 2, 0);
        return {center - half, center + half};
    }

    QWidget *m_touched;
    Positions m_fingers;
};

} // namespace TestKit
} // namespace KORA
