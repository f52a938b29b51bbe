// SPDX-License-Identifier: Apache-2.0
#include "drawing.h"

#include <QtCore/QLocale>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace Plant {

namespace {

constexpr int MinimumFontPixels = 7;

QPen hairline(const QColor &color, qreal scale)
{
    return QPen(color, qMax(1.0, scale));
}

} // namespace

QColor statusColor(Status status, const QColor &normal)
{
    switch (status) {
    case Status::Warning:
        return Palette::Warning;
    case Status::Alarm:
        return Palette::Alarm;
    case Status::Normal:
        break;
    }
    return normal;
}

QColor textColorOn(const QColor &background)
{
    return qGray(background.rgb()) > 140 ? Palette::Text : QColor(Qt::white);
}

QColor mixed(const QColor &ground, const QColor &color, qreal strength)
{
    const auto mix = [strength](qreal from, qreal to) { return from + (to - from) * strength; };
    return QColor::fromRgbF(mix(ground.redF(), color.redF()), mix(ground.greenF(), color.greenF()),
                            mix(ground.blueF(), color.blueF()));
}

QFont pixelFont(qreal pixels, bool bold)
{
    QFont font(QStringLiteral("Roboto"));
    font.setPixelSize(qMax(MinimumFontPixels, qRound(pixels)));
    font.setBold(bold);
    return font;
}

QFont fittedFont(const QFont &font, const QString &text, const QSizeF &space, qreal smallest)
{
    const QFontMetricsF metrics(font);
    const qreal width = qMax(1.0, metrics.horizontalAdvance(text));
    const qreal factor = qMin(space.width() / width, space.height() / metrics.height());
    if (factor >= 1.0) {
        return font;
    }
    QFont smaller(font);
    const qreal pixels = font.pixelSize() * qMax(factor, smallest);
    smaller.setPixelSize(qMax(MinimumFontPixels, static_cast<int>(pixels)));
    return smaller;
}

void drawText(QPainter &painter, const QRectF &area, Qt::Alignment alignment, const QString &text,
              const QFont &font, const QColor &color)
{
    if (text.isEmpty() || area.height() < MinimumFontPixels) {
        return;
    }
    constexpr qreal Smallest = 0.8; // beyond that the line looks out of place beside its neighbours
    const QFont fitted = fittedFont(font, text, area.size(), Smallest);
    const QString line = QFontMetricsF(fitted).elidedText(text, Qt::ElideRight, area.width() + 0.5);
    painter.setFont(fitted);
    painter.setPen(color);
    painter.drawText(area, static_cast<int>(alignment) | Qt::TextSingleLine | Qt::TextDontClip, line);
}

void drawPanel(QPainter &painter, const QRectF &area, qreal scale)
{
    const qreal radius = qBound(2.0, 6 * scale, 12.0);
    painter.setPen(hairline(Palette::Border, scale));
    painter.setBrush(Palette::Panel);
    const qreal inset = painter.pen().widthF() / 2;
    painter.drawRoundedRect(area.adjusted(inset, inset, -inset, -inset), radius, radius);
}

void drawHatching(QPainter &painter, const QPainterPath &shape, qreal scale)
{
    painter.save();
    painter.fillPath(shape, mixed(Palette::Panel, Palette::Track, 0.6));
    painter.setClipPath(shape, Qt::IntersectClip);
    painter.setPen(QPen(Palette::Border, qMax(1.0, 1.5 * scale)));
    const QRectF area = shape.boundingRect();
    const qreal step = qMax(5.0, 9 * scale);
    for (qreal x = area.left() - area.height(); x < area.right(); x += step) {
        painter.drawLine(QPointF(x, area.bottom()), QPointF(x + area.height(), area.top()));
    }
    painter.restore();
}

void drawEmptyPanel(QPainter &painter, const QRectF &area, const QString &reason, const QFont &font,
                    qreal scale)
{
    QPainterPath shape;
    shape.addRoundedRect(area, 3 * scale, 3 * scale);
    drawHatching(painter, shape, scale);

    const QSizeF space(area.width() * 0.8, area.height() * 0.5);
    const QFont fitted = fittedFont(font, reason, space);
    const QFontMetricsF metrics(fitted);
    const qreal width = qMin(area.width(), metrics.horizontalAdvance(reason) + metrics.height());
    QRectF label(0, 0, width, qMin(area.height(), metrics.height() * 1.3));
    label.moveCenter(area.center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(Palette::Panel);
    painter.drawRoundedRect(label, label.height() / 4, label.height() / 4);
    drawText(painter, label.adjusted(1, 0, -1, 0), Qt::AlignCenter, reason, fitted, Palette::FaintText);
}

QString noValueText()
{
    return QStringLiteral("\u2014");
}

QString numberText(double number, int decimals)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(number, 'f', decimals);
}

QString scaleText(double number)
{
    constexpr int Digits = 4;
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(number, 'g', Digits);
}

qreal fractionOf(double value, double minimum, double maximum)
{
    if (!(maximum > minimum)) {
        return 0;
    }
    return qBound(0.0, (value - minimum) / (maximum - minimum), 1.0);
}

QRectF centredSquare(const QRectF &area)
{
    const qreal side = qMin(area.width(), area.height());
    return QRectF(area.center().x() - side / 2, area.center().y() - side / 2, side, side);
}

QRectF takeTop(QRectF &area, qreal height)
{
    const QRectF strip(area.left(), area.top(), area.width(), height);
    area.setTop(strip.bottom());
    return strip;
}

QRectF takeBottom(QRectF &area, qreal height)
{
    const QRectF strip(area.left(), area.bottom() - height, area.width(), height);
    area.setBottom(strip.top());
    return strip;
}

QRectF takeLeft(QRectF &area, qreal width)
{
    const QRectF strip(area.left(), area.top(), width, area.height());
    area.setLeft(strip.right());
    return strip;
}

QRectF takeRight(QRectF &area, qreal width)
{
    const QRectF strip(area.right() - width, area.top(), width, area.height());
    area.setRight(strip.left());
    return strip;
}

} // namespace Plant
