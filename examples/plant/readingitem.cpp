// SPDX-License-Identifier: Apache-2.0
#include "readingitem.h"

#include <QtCore/QtMath>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

namespace Plant {

namespace {

/// Where a value and its unit stand in one row.
struct ReadingRow
{
    ReadingRow(const QString &reading, const QString &unitText, const QFont &font, const QRectF &area,
               Qt::Alignment alignment)
        : valueFont(fittedFont(font, reading + unitText, area.size() * 0.9))
        , unitFont(pixelFont(valueFont.pixelSize() * 0.55))
        , padding(valueFont.pixelSize() * 0.2)
    {
        const QFontMetricsF valueMetrics(valueFont);
        const QFontMetricsF unitMetrics(unitFont);
        const qreal valueWidth = valueMetrics.horizontalAdvance(reading) + 1;
        const qreal unitWidth = unitText.isEmpty() ? 0 : unitMetrics.horizontalAdvance(unitText) + 1;
        const qreal gap = unitText.isEmpty() ? 0 : padding;

        ground = QRectF(0, 0, qMin(area.width(), valueWidth + gap + unitWidth + 2 * padding),
                        qMin(area.height(), valueMetrics.height()));
        ground.moveCenter(area.center());
        if (alignment & Qt::AlignLeft) {
            ground.moveLeft(area.left());
        } else if (alignment & Qt::AlignRight) {
            ground.moveRight(area.right());
        }

        value = ground.adjusted(padding, 0, -padding, 0);
        unit = takeRight(value, unitWidth);
        value.setWidth(value.width() - gap);
        // The unit stands on the baseline of the value.
        unit.translate(0, unitMetrics.descent() - valueMetrics.descent());
    }

    QFont valueFont;
    QFont unitFont;
    qreal padding;
    QRectF ground;
    QRectF value;
    QRectF unit;
};

} // namespace

std::optional<double> ReadingItem::value() const
{
    bool isNumber = false;
    const double number = getFieldValue(QStringLiteral("value")).toDouble(&isNumber);
    if (isNumber && qIsFinite(number)) {
        return number;
    }
    return isInEditor() ? std::optional<double>(exampleValue()) : std::nullopt;
}

Status ReadingItem::status(double value) const
{
    if (!flag(QStringLiteral("limits"))) {
        return Status::Normal;
    }
    const bool isInside =
        value >= number(QStringLiteral("lowLimit")) && value <= number(QStringLiteral("highLimit"));
    return isInside ? Status::Normal : Status::Alarm;
}

QString ReadingItem::valueText() const
{
    const std::optional<double> number = value();
    return number ? numberText(*number, integer(QStringLiteral("decimals"))) : noValueText();
}

void ReadingItem::drawReading(QPainter &painter, const QRectF &area, const QFont &font,
                              Qt::Alignment alignment) const
{
    const std::optional<double> number = value();
    const Status state = number ? status(*number) : Status::Normal;
    const QString reading = valueText();
    const QString unit = isCompact() ? QString() : text(QStringLiteral("unit"));
    const QFont wantedFont = isCompact() ? pixelFont(area.height(), font.bold()) : font;
    const ReadingRow row(reading, unit, wantedFont, area, alignment);

    QColor ink = number ? Palette::Text : Palette::FaintText;
    QColor unitInk = Palette::FaintText;
    if (state != Status::Normal) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(statusColor(state));
        painter.drawRoundedRect(row.ground, row.padding, row.padding);
        ink = unitInk = textColorOn(statusColor(state));
    }
    drawText(painter, row.value, Qt::AlignLeft | Qt::AlignVCenter, reading, row.valueFont, ink);
    drawText(painter, row.unit, Qt::AlignLeft | Qt::AlignBottom, unit, row.unitFont, unitInk);
}

void ReadingItem::drawLabel(QPainter &painter, const QRectF &area, Qt::Alignment alignment) const
{
    drawText(painter, area, alignment, text(QStringLiteral("label")), textFont(QStringLiteral("label")),
             Palette::FaintText);
}

qreal ReadingItem::labelHeight() const
{
    if (isCompact() || text(QStringLiteral("label")).isEmpty()) {
        return 0;
    }
    return qMin(QFontMetricsF(textFont(QStringLiteral("label"))).height() * 1.15, size().height() * 0.25);
}

} // namespace Plant
