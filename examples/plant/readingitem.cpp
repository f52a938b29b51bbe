// SPDX-License-Identifier: Apache-2.0
#include "readingitem.h"

#include <QtCore/QLocale>
#include <QtCore/QtMath>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

namespace Plant {

std::optional<double> ReadingItem::value() const
{
    bool isNumber = false;
    const double number = getFieldValue(QStringLiteral("value")).toDouble(&isNumber);
    if (!isNumber || !qIsFinite(number))
        return std::nullopt;
    return number;
}

Status ReadingItem::status(double value) const
{
    if (!flag(QStringLiteral("limits")))
        return Status::Normal;
    const bool isInside =
        value >= number(QStringLiteral("lowLimit")) && value <= number(QStringLiteral("highLimit"));
    return isInside ? Status::Normal : Status::Alarm;
}

QString ReadingItem::numberText(double number) const
{
    return QLocale().toString(number, 'f', integer(QStringLiteral("decimals")));
}

QString ReadingItem::valueText() const
{
    const std::optional<double> number = value();
    return number ? numberText(*number) : noValueText();
}

void ReadingItem::drawReading(QPainter &painter, const QRectF &area, const QFont &font,
                              Qt::Alignment alignment) const
{
    constexpr qreal UnitSize = 0.55;
    const QString reading = valueText();
    const QString unit = isCompact() ? QString() : text(QStringLiteral("unit"));
    const std::optional<double> number = value();
    const Status state = number ? status(*number) : Status::Normal;

    // A unit takes about as much room as its letters at full size would, times its smaller size.
    const qreal padding = area.height() * 0.12;
    const QRectF inner = area.adjusted(padding, 0, -padding, 0);
    const QFont valueFont = fittedFont(font, unit.isEmpty() ? reading : reading + unit, inner.size());
    const QFont unitFont = pixelFont(valueFont.pixelSize() * UnitSize);
    const qreal valueWidth = QFontMetricsF(valueFont).horizontalAdvance(reading) + 1;
    const qreal gap = unit.isEmpty() ? 0 : valueFont.pixelSize() * 0.2;
    const qreal unitWidth = unit.isEmpty() ? 0 : QFontMetricsF(unitFont).horizontalAdvance(unit) + 1;

    QRectF row(0, 0, qMin(inner.width(), valueWidth + gap + unitWidth),
               qMin(inner.height(), QFontMetricsF(valueFont).height()));
    row.moveCenter(inner.center());
    if (alignment & Qt::AlignLeft)
        row.moveLeft(inner.left());
    else if (alignment & Qt::AlignRight)
        row.moveRight(inner.right());

    if (state != Status::Normal) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(statusColor(state));
        painter.drawRoundedRect(row.adjusted(-padding, 0, padding, 0), padding, padding);
    }
    const QColor ink = state != Status::Normal ? textColorOn(statusColor(state))
                       : number                ? QColor(Palette::Text)
                                               : QColor(Palette::FaintText);
    const QRectF unitArea = takeRight(row, unitWidth);
    drawText(painter, row.adjusted(0, 0, -gap, 0), Qt::AlignLeft | Qt::AlignVCenter, reading, valueFont, ink);
    // The unit stands on the baseline of the value.
    const qreal drop = QFontMetricsF(valueFont).descent() - QFontMetricsF(unitFont).descent();
    drawText(painter, unitArea.adjusted(0, 0, 0, -drop), Qt::AlignLeft | Qt::AlignBottom, unit, unitFont,
             state != Status::Normal ? ink : QColor(Palette::FaintText));
}

void ReadingItem::drawLabel(QPainter &painter, const QRectF &area, Qt::Alignment alignment) const
{
    drawText(painter, area, alignment, text(QStringLiteral("label")), textFont(QStringLiteral("label")),
             Palette::FaintText);
}

qreal ReadingItem::labelHeight() const
{
    if (isCompact() || text(QStringLiteral("label")).isEmpty())
        return 0;
    return qMin(QFontMetricsF(textFont(QStringLiteral("label"))).height() * 1.15, size().height() * 0.25);
}

} // namespace Plant
