// SPDX-License-Identifier: Apache-2.0
#include "dial.h"

#include "drawing.h"

#include <QtCore/QtMath>
#include <QtGui/QPainter>

namespace Plant {

namespace {

// Degrees counter-clockwise from three o'clock, as QPainter counts.
constexpr qreal StartAngle = 225;
constexpr qreal Span = 270;

qreal angleOf(qreal fraction)
{
    return StartAngle - Span * fraction;
}

} // namespace

Dial::Dial(const QRectF &area)
    : m_center(area.center())
    , m_radius(centredSquare(area).width() / 2)
{}

QPointF Dial::point(qreal fraction, qreal share) const
{
    const qreal radians = qDegreesToRadians(angleOf(fraction));
    return m_center + m_radius * share * QPointF(qCos(radians), -qSin(radians));
}

QRectF Dial::box(qreal offset, qreal width, qreal height) const
{
    QRectF box(0, 0, width * m_radius, height * m_radius);
    box.moveCenter(m_center + QPointF(0, offset * m_radius));
    return box;
}

void Dial::drawArc(QPainter &painter, qreal from, qreal to, qreal share, qreal thickness,
                   const QColor &color) const
{
    const qreal radius = (share - thickness / 2) * m_radius;
    const QRectF circle(m_center.x() - radius, m_center.y() - radius, 2 * radius, 2 * radius);
    constexpr int QPainterDegree = 16;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, thickness * m_radius, Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(circle, qRound(angleOf(from) * QPainterDegree),
                    qRound((angleOf(to) - angleOf(from)) * QPainterDegree));
}

void Dial::drawMark(QPainter &painter, qreal fraction, qreal from, qreal to, const QColor &color) const
{
    constexpr qreal Width = 0.04;
    painter.setPen(QPen(color, qMax(1.0, Width * m_radius), Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(point(fraction, from), point(fraction, to));
}

QPainterPath Dial::ring(qreal share, qreal thickness) const
{
    const qreal outer = share * m_radius;
    const qreal inner = outer - thickness * m_radius;
    const auto circle = [this](qreal radius) {
        return QRectF(m_center.x() - radius, m_center.y() - radius, 2 * radius, 2 * radius);
    };
    QPainterPath path;
    path.arcMoveTo(circle(outer), StartAngle);
    path.arcTo(circle(outer), StartAngle, -Span);
    path.arcTo(circle(inner), StartAngle - Span, Span);
    path.closeSubpath();
    return path;
}

} // namespace Plant
