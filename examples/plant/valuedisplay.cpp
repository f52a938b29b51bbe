// SPDX-License-Identifier: Apache-2.0
#include "valuedisplay.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(180, 80);

} // namespace

ValueDisplay::ValueDisplay(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

ValueDisplayItem::ValueDisplayItem(const KORA::GraphicsObjectData &data)
    : ReadingItem(data, DesignSize)
{}

void ValueDisplayItem::draw(QPainter &painter, const QRectF &area)
{
    QRectF readingArea = area;
    drawLabel(painter, takeTop(readingArea, labelHeight()), alignment() | Qt::AlignVCenter);
    if (!value()) {
        QPainterPath shape;
        shape.addRoundedRect(readingArea, 3 * scale(), 3 * scale());
        drawHatching(painter, shape, scale());
    }
    drawReading(painter, readingArea, font(QStringLiteral("valueFont")), alignment());
}

double ValueDisplayItem::exampleValue() const
{
    return (number(QStringLiteral("lowLimit")) + number(QStringLiteral("highLimit"))) / 2;
}

Qt::Alignment ValueDisplayItem::alignment() const
{
    switch (integer(QStringLiteral("alignment"))) {
    case AlignLeft:
        return Qt::AlignLeft;
    case AlignRight:
        return Qt::AlignRight;
    default:
        return Qt::AlignHCenter;
    }
}

} // namespace Plant
