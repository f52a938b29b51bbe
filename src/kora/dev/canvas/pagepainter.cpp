// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/pagepainter.h>

#include <QtGui/QPainter>
#include <QtGui/QPalette>

#include <algorithm>
#include <cmath>

#include <kora/dev/model/scenario.h>

namespace KORA {
namespace DEV {

namespace {

constexpr int checkerSide = 8; // of the viewport, as a picture editor's
constexpr qreal leastGridPixels = 8;

QBrush checkerboard(qreal zoom)
{
    QPixmap tile(2 * checkerSide, 2 * checkerSide);
    tile.fill(QColor(0xff, 0xff, 0xff));
    QPainter painter(&tile);
    const QColor grey(0xd8, 0xd8, 0xd8);
    painter.fillRect(0, 0, checkerSide, checkerSide, grey);
    painter.fillRect(checkerSide, checkerSide, checkerSide, checkerSide, grey);
    painter.end();
    QBrush brush(tile);
    brush.setTransform(QTransform::fromScale(1 / zoom, 1 / zoom));
    return brush;
}

// Seen on the page, but behind everything on it.
QColor lineColor(const PageState &page, int alpha)
{
    const bool isDark = page.background.isValid() && page.background.lightness() < 128;
    QColor color(isDark ? Qt::white : Qt::black);
    color.setAlpha(alpha);
    return color;
}

/// One pixel wide, as rectangles: the raster engine fills those far faster than it draws lines. Not round the area, which is the page
/// or a part of it.
QVector<QRectF> lines(const QRectF &area, qreal step, qreal pixel)
{
    QVector<QRectF> result;
    const auto firstLine = [step](qreal start) { return std::max(1, static_cast<int>(start / step)); };
    const auto lastLine = [step](qreal end) { return static_cast<int>(std::ceil(end / step)); };
    for (int i = firstLine(area.left()); i < lastLine(area.right() + 1); ++i) {
        result.append({i * step, area.top(), pixel, area.height()});
    }
    for (int i = firstLine(area.top()); i < lastLine(area.bottom() + 1); ++i) {
        result.append({area.left(), i * step, area.width(), pixel});
    }
    return result;
}

void paintGrid(QPainter &painter, const QRectF &area, const PageState &page, qreal step, qreal zoom,
               int alpha)
{
    const QColor color = lineColor(page, alpha);
    const QVector<QRectF> rects = lines(area, step, 1 / zoom);
    for (const QRectF &line : rects) {
        painter.fillRect(line, color);
    }
}

} // namespace

void paintPage(QPainter &painter, const QRectF &exposed, const PageState &page, qreal zoom,
               const QPalette &palette)
{
    constexpr int deskShade = 115;
    constexpr int gridAlpha = 22;
    const QRectF rect(QPointF(), page.size);
    const QRectF visible = rect & exposed;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(exposed, palette.color(QPalette::Window).darker(deskShade));
    if (page.background.alpha() < 255 || !page.background.isValid()) {
        painter.fillRect(visible, checkerboard(zoom));
    }
    if (page.background.isValid()) {
        painter.fillRect(visible, page.background);
    }
    if (page.gridIsShown) {
        qreal step = page.gridStep;
        while (step * zoom < leastGridPixels) {
            step *= 2;
        }
        paintGrid(painter, visible, page, step, zoom, gridAlpha);
    }
    QColor border = palette.color(QPalette::WindowText);
    border.setAlpha(90);
    painter.setPen(QPen(border, 0));
    painter.drawRect(rect);
    painter.restore();
}

void paintPixelGrid(QPainter &painter, const QRectF &exposed, const PageState &page, qreal zoom)
{
    constexpr int alpha = 40;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    paintGrid(painter, QRectF(QPointF(), page.size) & exposed, page, 1, zoom, alpha);
    painter.restore();
}

} // namespace DEV
} // namespace KORA
