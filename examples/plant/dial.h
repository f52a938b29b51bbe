// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtGui/QPainterPath>

class QColor;
class QPainter;

namespace Plant {

/// The geometry of a round scale: three quarters of a circle, open at the bottom, from 0 at the lower left
/// clockwise to 1 at the lower right.
class Dial
{
public:
    /// The largest dial in the middle of @p area.
    explicit Dial(const QRectF &area);

    QPointF center() const { return m_center; }
    qreal radius() const { return m_radius; }
    /// The point of the scale at @p fraction, at a share of the radius.
    QPointF point(qreal fraction, qreal share) const;
    /// A rectangle around the centre; offset and size are shares of the radius.
    QRectF box(qreal offset, qreal width, qreal height) const;

    /// A piece of ring; @p share is the outer edge and @p thickness the width, in shares of the radius.
    void drawArc(QPainter &painter, qreal from, qreal to, qreal share, qreal thickness,
                 const QColor &color) const;
    /// A short line across the scale, between two shares of the radius.
    void drawMark(QPainter &painter, qreal fraction, qreal from, qreal to, const QColor &color) const;
    /// The outline of the whole scale.
    QPainterPath ring(qreal share, qreal thickness) const;

private:
    QPointF m_center;
    qreal m_radius;
};

} // namespace Plant
