// SPDX-License-Identifier: Apache-2.0
//
// How the library looks: one palette and the few shapes that its widgets share. Colour is kept for what an
// operator must notice; everything in its normal range is grey.
#pragma once

#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>

class QPainter;
class QPainterPath;

namespace Plant {

namespace Palette {
constexpr QColor Panel(0xf1, 0xf3, 0xf4);
constexpr QColor Border(0xc6, 0xcc, 0xd1);
constexpr QColor Track(0xd9, 0xde, 0xe2);
constexpr QColor Line(0x7d, 0x89, 0x92);
constexpr QColor Text(0x26, 0x30, 0x38);
constexpr QColor FaintText(0x62, 0x6e, 0x78);
constexpr QColor Process(0x6f, 0x87, 0x99);
constexpr QColor Accent(0x2f, 0x6f, 0x9f);
constexpr QColor Warning(0xe3, 0xa0, 0x08);
constexpr QColor Alarm(0xc6, 0x28, 0x28);
} // namespace Palette

/// Where a value stands against its limits.
enum class Status { Normal, Warning, Alarm };

/// The colour of a status; @p normal while nothing is wrong.
QColor statusColor(Status status, const QColor &normal = Palette::Process);
/// Black or white, whichever reads better on @p background.
QColor textColorOn(const QColor &background);
/// @p strength of 0 gives @p ground, 1 gives @p color.
QColor mixed(const QColor &ground, const QColor &color, qreal strength);

/// Roboto of a height in pixels.
QFont pixelFont(qreal pixels, bool bold = false);
/// The font, made smaller until the text fits; no smaller than what can be read, nor than @p smallest times its
/// size.
QFont fittedFont(const QFont &font, const QString &text, const QSizeF &space, qreal smallest = 0);
/// Draws one line of text inside @p area: shrunk a little to fit, elided when that is not enough, left out when
/// there is no room for a readable line.
void drawText(QPainter &painter, const QRectF &area, Qt::Alignment alignment, const QString &text,
              const QFont &font, const QColor &color);

/// The ground that every widget stands on.
void drawPanel(QPainter &painter, const QRectF &area, qreal scale);
/// Fills a shape in the way that says "nothing is known here".
void drawHatching(QPainter &painter, const QPainterPath &shape, qreal scale);
/// Hatches a panel and writes the reason on it.
void drawEmptyPanel(QPainter &painter, const QRectF &area, const QString &reason, const QFont &font,
                    qreal scale);

/// What stands for a number that is not known.
QString noValueText();
/// A number in the form of the panel's language, without group separators.
QString numberText(double number, int decimals);
/// A number at a scale, in as few digits as it needs.
QString scaleText(double number);

/// Where @p value stands between the two ends, 0 to 1; 0 when the ends are not in order.
qreal fractionOf(double value, double minimum, double maximum);
/// A square of the largest size, centred in @p area.
QRectF centredSquare(const QRectF &area);
/// Takes a strip of the given height from the top or bottom of @p area and returns it.
QRectF takeTop(QRectF &area, qreal height);
QRectF takeBottom(QRectF &area, qreal height);
/// Takes a strip of the given width from the left or right of @p area and returns it.
QRectF takeLeft(QRectF &area, qreal width);
QRectF takeRight(QRectF &area, qreal width);

} // namespace Plant
