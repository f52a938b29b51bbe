// SPDX-License-Identifier: Apache-2.0
#include "leveltank.h"

#include <QtGui/QPainter>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(150, 220);
constexpr int ScaleDivisions = 4;
constexpr qreal WidestVessel = 0.9; // as a share of its height

} // namespace

LevelTank::LevelTank(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

LevelTankItem::LevelTankItem(const KORA::GraphicsObjectData &data)
    : ReadingItem(data, DesignSize)
{}

void LevelTankItem::draw(QPainter &painter, const QRectF &area)
{
    QRectF vesselArea = area;
    QRectF readingArea;
    if (isCompact()) {
        readingArea = takeRight(vesselArea, area.width() * 0.55);
    } else {
        drawLabel(painter, takeTop(vesselArea, labelHeight()), Qt::AlignCenter);
        readingArea = takeBottom(vesselArea, area.height() * 0.16);
        vesselArea.adjust(0, 3 * scale(), 0, -3 * scale());
        const qreal surplus = qMax(0.0, vesselArea.width() - vesselArea.height() * WidestVessel);
        vesselArea.adjust(surplus / 2, 0, -surplus / 2, 0);
        if (flag(QStringLiteral("showScale"))) {
            drawScale(painter, takeRight(vesselArea, vesselArea.width() * 0.25));
        }
    }
    drawVessel(painter, vesselArea);
    drawReading(painter, readingArea, font(QStringLiteral("valueFont")), Qt::AlignCenter);
}

double LevelTankItem::exampleValue() const
{
    return number(QStringLiteral("capacity")) * 0.6;
}

void LevelTankItem::drawVessel(QPainter &painter, const QRectF &area) const
{
    const QPainterPath outline = vessel(area);
    const std::optional<double> reading = value();
    if (reading) {
        painter.fillPath(outline, Qt::white);
        painter.save();
        painter.setClipPath(outline, Qt::IntersectClip);
        QRectF liquid = area;
        liquid.setTop(levelY(area, *reading));
        painter.fillRect(liquid, statusColor(status(*reading), color(QStringLiteral("color"))));
        painter.restore();
    } else {
        drawHatching(painter, outline, scale());
    }
    drawLimits(painter, area);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Palette::Line, qMax(1.0, 1.6 * scale())));
    painter.drawPath(outline);
}

QPainterPath LevelTankItem::vessel(const QRectF &area) const
{
    const qreal cap = qMin(area.width() * 0.22, area.height() * 0.2);
    QPainterPath path;
    switch (integer(QStringLiteral("shape"))) {
    case DishedShape:
        path.addRoundedRect(area, area.width() / 2, cap);
        break;
    case ConeShape:
        path.addPolygon(QVector<QPointF>{area.topLeft(), area.topRight(),
                                         QPointF(area.right(), area.bottom() - 2 * cap),
                                         QPointF(area.center().x() + cap / 3, area.bottom()),
                                         QPointF(area.center().x() - cap / 3, area.bottom()),
                                         QPointF(area.left(), area.bottom() - 2 * cap)});
        path.closeSubpath();
        break;
    default:
        path.addRoundedRect(area, cap / 5, cap / 5);
    }
    return path;
}

qreal LevelTankItem::levelY(const QRectF &area, double value) const
{
    return area.bottom() - area.height() * fractionOf(value, 0, number(QStringLiteral("capacity")));
}

void LevelTankItem::drawScale(QPainter &painter, const QRectF &strip) const
{
    const QFont font = pixelFont(qMin(strip.width() * 0.42, strip.height() * 0.07));
    const qreal lineHeight = font.pixelSize() * 1.3;
    const double capacity = number(QStringLiteral("capacity"));
    for (int i = 0; i <= ScaleDivisions; ++i) {
        const double mark = capacity * i / ScaleDivisions;
        const qreal y = levelY(strip, mark);
        painter.setPen(QPen(Palette::Line, qMax(1.0, scale())));
        painter.drawLine(QPointF(strip.left() + strip.width() * 0.1, y),
                         QPointF(strip.left() + strip.width() * 0.25, y));
        // The outermost numbers stay inside the strip.
        const qreal top = qBound(strip.top(), y - lineHeight / 2, strip.bottom() - lineHeight);
        drawText(painter, QRectF(strip.left() + strip.width() * 0.32, top, strip.width() * 0.68, lineHeight),
                 Qt::AlignLeft | Qt::AlignVCenter, scaleText(mark), font, Palette::FaintText);
    }
}

void LevelTankItem::drawLimits(QPainter &painter, const QRectF &area) const
{
    if (!flag(QStringLiteral("limits"))) {
        return;
    }
    painter.save();
    painter.setClipPath(vessel(area), Qt::IntersectClip);
    painter.setPen(QPen(Palette::Text, qMax(1.0, scale()), Qt::DashLine));
    for (const QString &limit : {QStringLiteral("lowLimit"), QStringLiteral("highLimit")}) {
        const qreal y = levelY(area, number(limit));
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
    painter.restore();
}

} // namespace Plant
