// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/touchemulator.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <algorithm>

namespace KORA {
namespace DEV {

namespace {

constexpr qreal fingerRadius = 14;
constexpr qreal centreRadius = 5;
constexpr qreal leastDistance = 24;
const QPointF usualDistance(80, 0); // of two fingers side by side

QRect squareRound(const QPointF &centre, qreal radius)
{
    return QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius)
        .toAlignedRect()
        .adjusted(-2, -2, 2, 2);
}

} // namespace

TouchEmulator::TouchEmulator(QWidget *target)
    : QObject(target)
    , m_target(target)
{
    m_device.setName(QStringLiteral("mouse as fingers"));
    m_device.setType(QTouchDevice::TouchScreen);
    m_device.setCapabilities(QTouchDevice::Position);
    m_device.setMaximumTouchPoints(3);
    m_clock.start();
}

// Mouse and keys -------------------------------------------------------------------------------------------

bool TouchEmulator::mousePress(const QMouseEvent &event)
{
    if (event.button() == Qt::RightButton) {
        m_rightIsDown = true;
        moveTo(event.localPos(), event.modifiers());
        return true;
    }
    if (event.button() != Qt::LeftButton) {
        return false;
    }
    moveTo(event.localPos(), event.modifiers());
    m_leftIsDown = true;
    m_isTaken = true;
    m_isTaken = send();
    if (!m_isTaken) {
        m_down.clear();
    }
    emit fingersMoved();
    return m_isTaken;
}

bool TouchEmulator::mouseMove(const QMouseEvent &event)
{
    moveTo(event.localPos(), event.modifiers());
    return m_isTaken || !m_leftIsDown;
}

bool TouchEmulator::mouseRelease(const QMouseEvent &event)
{
    moveTo(event.localPos(), event.modifiers());
    if (event.button() == Qt::RightButton) {
        m_rightIsDown = false;
        setModifiers(event.modifiers());
        return true;
    }
    if (event.button() != Qt::LeftButton) {
        return false;
    }
    const bool wasTaken = m_isTaken;
    m_leftIsDown = false;
    send();
    m_isTaken = false;
    emit fingersMoved();
    return wasTaken;
}

void TouchEmulator::moveTo(const QPointF &position, Qt::KeyboardModifiers modifiers)
{
    if (m_companion == Companion::None) {
        m_position = position; // where Alt finds it
    }
    setModifiers(modifiers);
    m_position = position;
    send();
    emit fingersMoved();
}

void TouchEmulator::setModifiers(Qt::KeyboardModifiers modifiers)
{
    const bool isHeld = modifiers.testFlag(Qt::AltModifier) || m_rightIsDown;
    const bool isParallel = modifiers.testFlag(Qt::ShiftModifier);
    setCompanion(!isHeld ? Companion::None : isParallel ? Companion::Parallel : Companion::Mirrored);
    m_hasThird = isHeld && modifiers.testFlag(Qt::ControlModifier);
    send();
    emit fingersMoved();
}

// Finger 2 stays where it is when Shift changes what moves it.
void TouchEmulator::setCompanion(Companion companion)
{
    if (companion == m_companion) {
        return;
    }
    const bool isAlone = m_companion == Companion::None;
    const QPointF second = isAlone ? m_position : fingers().at(1);
    if (companion == Companion::Mirrored) {
        m_centre = (m_position + second) / 2;
    } else if (companion == Companion::Parallel) {
        const QPointF distance = second - m_position;
        m_distance = distance.manhattanLength() < leastDistance ? usualDistance : distance;
    }
    m_companion = companion;
}

void TouchEmulator::setHovering(bool isHovering)
{
    m_isHovering = isHovering;
    emit fingersMoved();
}

void TouchEmulator::cancel()
{
    m_leftIsDown = m_rightIsDown = m_isTaken = m_hasThird = false;
    m_companion = Companion::None;
    if (!m_down.isEmpty()) {
        m_down.clear();
        sendEvent(QEvent::TouchCancel, {});
    }
    emit fingersMoved();
}

// Fingers --------------------------------------------------------------------------------------------------

QVector<QPointF> TouchEmulator::fingers() const
{
    QVector<QPointF> result{m_position};
    if (m_companion == Companion::Mirrored) {
        result.append(2 * m_centre - m_position);
    } else if (m_companion == Companion::Parallel) {
        result.append(m_position + m_distance);
    }
    if (m_hasThird) {
        result.append(m_companion == Companion::Mirrored ? m_centre : m_position - m_distance);
    }
    return result;
}

bool TouchEmulator::send()
{
    if (!m_isTaken) {
        return false;
    }
    const QVector<QPointF> wanted = m_leftIsDown ? fingers() : QVector<QPointF>();
    Points points;
    QVector<Finger> down;
    Qt::TouchPointStates states;
    for (int i = 0; i < std::max(wanted.size(), m_down.size()); ++i) {
        const bool wasDown = i < m_down.size();
        const bool isDown = i < wanted.size();
        const QPointF last = wasDown ? m_down.at(i).position : wanted.at(i);
        const Finger finger{wasDown ? m_down.at(i).start : last, isDown ? wanted.at(i) : last};
        const Qt::TouchPointState state = !wasDown                  ? Qt::TouchPointPressed
                                          : !isDown                 ? Qt::TouchPointReleased
                                          : finger.position == last ? Qt::TouchPointStationary
                                                                    : Qt::TouchPointMoved;
        points.append(point(i, finger, last, state));
        states |= state;
        if (isDown) {
            down.append(finger);
        }
    }
    if (!(states & ~Qt::TouchPointStationary)) {
        return true;
    }
    const QEvent::Type type = m_down.isEmpty() ? QEvent::TouchBegin
                              : down.isEmpty() ? QEvent::TouchEnd
                                               : QEvent::TouchUpdate;
    m_down = down;
    return sendEvent(type, points);
}

bool TouchEmulator::sendEvent(QEvent::Type type, const Points &points)
{
    Qt::TouchPointStates states;
    for (const QTouchEvent::TouchPoint &point : points) {
        states |= point.state();
    }
    // The keys that stand for fingers are not held on a panel.
    QTouchEvent event(type, &m_device, Qt::NoModifier, states, points);
    event.setWindow(m_target->window()->windowHandle());
    event.setTarget(m_target);
    event.setTimestamp(static_cast<ulong>(m_clock.elapsed()));
    QApplication::sendEvent(m_target, &event);
    return event.isAccepted();
}

QTouchEvent::TouchPoint TouchEmulator::point(int id, const Finger &finger, const QPointF &last,
                                             Qt::TouchPointState state) const
{
    const QPointF origin = m_target->mapToGlobal(QPoint());
    QTouchEvent::TouchPoint point(id);
    point.setState(state);
    point.setPos(finger.position);
    point.setStartPos(finger.start);
    point.setLastPos(last);
    // Recognisers compare screen positions.
    point.setScreenPos(finger.position + origin);
    point.setStartScreenPos(finger.start + origin);
    point.setLastScreenPos(last + origin);
    point.setPressure(state == Qt::TouchPointReleased ? 0 : 1);
    return point;
}

// Drawing --------------------------------------------------------------------------------------------------

QRegion TouchEmulator::region() const
{
    if (!m_isHovering && !m_leftIsDown) {
        return {};
    }
    QRegion result;
    const QVector<QPointF> positions = fingers();
    for (const QPointF &position : positions) {
        result += squareRound(position, fingerRadius);
    }
    if (m_companion == Companion::Mirrored) {
        result += squareRound(m_centre, centreRadius);
    }
    return result;
}

void TouchEmulator::paint(QPainter &painter, const QPalette &palette) const
{
    if (!m_isHovering && !m_leftIsDown) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_companion == Companion::Mirrored) {
        painter.setPen(QPen(palette.color(QPalette::Highlight), 1.5));
        painter.drawLine(m_centre - QPointF(centreRadius, 0), m_centre + QPointF(centreRadius, 0));
        painter.drawLine(m_centre - QPointF(0, centreRadius), m_centre + QPointF(0, centreRadius));
    }
    QFont font = m_target->font();
    font.setBold(true);
    painter.setFont(font);
    const QVector<QPointF> positions = fingers();
    for (int i = 0; i < positions.size(); ++i) {
        QColor fill = palette.color(QPalette::Highlight);
        painter.setPen(QPen(fill.darker(140), 1.5));
        fill.setAlpha(m_leftIsDown ? 230 : 120);
        painter.setBrush(fill);
        painter.drawEllipse(positions.at(i), fingerRadius - 1, fingerRadius - 1);
        painter.setPen(palette.color(QPalette::HighlightedText));
        painter.drawText(squareRound(positions.at(i), fingerRadius), Qt::AlignCenter, QString::number(i + 1));
    }
    painter.restore();
}

} // namespace DEV
} // namespace KORA
