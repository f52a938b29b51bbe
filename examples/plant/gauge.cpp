// SPDX-License-Identifier: Apache-2.0
#include "gauge.h"

#include <QtGui/QPainter>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(200, 200);
constexpr qreal ArcEdge = 0.86;
constexpr qreal ArcThickness = 0.17;

} // namespace

Gauge::Gauge(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

GaugeItem::GaugeItem(const KORA::GraphicsObjectData &data)
    : DialItem(data, DesignSize)
{}

void GaugeItem::draw(QPainter &painter, const QRectF &area)
{
    const Dial dial(area);
    drawScale(painter, dial);
    drawLimits(painter, dial);
    drawTexts(painter, dial);
}

void GaugeItem::drawScale(QPainter &painter, const Dial &dial) const
{
    const std::optional<double> reading = value();
    if (!reading) {
        drawHatching(painter, dial.ring(ArcEdge, ArcThickness), scale());
        return;
    }
    dial.drawArc(painter, 0, 1, ArcEdge, ArcThickness, Palette::Track);
    dial.drawArc(painter, 0, fraction(*reading), ArcEdge, ArcThickness,
                 statusColor(status(*reading), color(QStringLiteral("color"))));
}

void GaugeItem::drawLimits(QPainter &painter, const Dial &dial) const
{
    if (!flag(QStringLiteral("limits"))) {
        return;
    }
    for (const QString &limit : {QStringLiteral("lowLimit"), QStringLiteral("highLimit")}) {
        dial.drawMark(painter, fraction(number(limit)), ArcEdge + 0.02, ArcEdge + 0.11, Palette::Line);
    }
}

void GaugeItem::drawTexts(QPainter &painter, const Dial &dial) const
{
    drawReading(painter, isCompact() ? dial.box(0, 1.25, 0.64) : dial.box(0, 1.2, 0.55),
                font(QStringLiteral("valueFont")), Qt::AlignCenter);
    if (isCompact()) {
        return;
    }
    drawLabel(painter, dial.box(0.86, 1.0, 0.24), Qt::AlignCenter);

    const QFont endFont = pixelFont(dial.radius() * 0.13);
    QRectF ends = dial.box(0.72, 1.5, 0.16);
    drawText(painter, takeLeft(ends, dial.radius() * 0.3), Qt::AlignLeft | Qt::AlignVCenter,
             scaleText(number(QStringLiteral("minimum"))), endFont, Palette::FaintText);
    drawText(painter, takeRight(ends, dial.radius() * 0.3), Qt::AlignRight | Qt::AlignVCenter,
             scaleText(number(QStringLiteral("maximum"))), endFont, Palette::FaintText);
}

} // namespace Plant
