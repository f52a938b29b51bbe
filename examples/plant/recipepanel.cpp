// SPDX-License-Identifier: Apache-2.0
#include "recipepanel.h"

#include "drawing.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(280, 180);

} // namespace

RecipePanel::RecipePanel(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

int RecipePanel::pageCount() const
{
    return getFieldValue(QStringLiteral("recipes")).toStringList().size();
}

int RecipePanel::page() const
{
    return qBound(0, getFieldValue(QStringLiteral("page")).toInt(), qMax(0, pageCount() - 1));
}

void RecipePanel::turn(int pages)
{
    const int next = qBound(0, page() + pages, qMax(0, pageCount() - 1));
    if (next != page()) {
        setFieldValue(QStringLiteral("page"), next);
    }
}

RecipePanelItem::RecipePanelItem(const KORA::GraphicsObjectData &data)
    : TouchItem(data, DesignSize)
{
    grabGesture(swipe1TouchGestureType());
}

void RecipePanelItem::swiped(KORA::SwipeGesture::SwipeDirection direction)
{
    if (panel() && direction != KORA::SwipeGesture::NoDirection) {
        panel()->turn(direction == KORA::SwipeGesture::Left ? 1 : -1);
    }
}

RecipePanel *RecipePanelItem::panel() const
{
    return qobject_cast<RecipePanel *>(widget());
}

void RecipePanelItem::draw(QPainter &painter, const QRectF &area)
{
    const QStringList recipes = textList(QStringLiteral("recipes"));
    if (!panel() || recipes.isEmpty()) {
        drawEmptyPanel(painter, area, noValueText(), textFont(QStringLiteral("recipes")), scale());
        return;
    }
    const QFont titleFont = textFont(QStringLiteral("recipes"));
    if (isCompact()) {
        drawText(painter, area, Qt::AlignCenter, recipes.at(panel()->page()), titleFont, Palette::Text);
        return;
    }
    QRectF linesArea = area;
    drawText(painter, takeTop(linesArea, QFontMetricsF(titleFont).height() * 1.5),
             Qt::AlignLeft | Qt::AlignVCenter, recipes.at(panel()->page()), titleFont, Palette::Text);
    drawPageDots(painter, takeBottom(linesArea, 14 * scale()));
    drawLines(painter, linesArea);
}

void RecipePanelItem::drawLines(QPainter &painter, const QRectF &area) const
{
    const QStringList lines =
        mappedText(QStringLiteral("parameters"), panel()->page()).split(QLatin1Char(';'));
    const QFont lineFont = textFont(QStringLiteral("parameters"));
    const qreal height = qMin(QFontMetricsF(lineFont).height() * 1.7, area.height() / lines.size());
    for (int i = 0; i < lines.size(); ++i) {
        const QString &line = lines.at(i);
        QRectF row(area.left(), area.top() + i * height, area.width(), height);
        painter.setPen(QPen(Palette::Track, qMax(1.0, scale())));
        painter.drawLine(row.topLeft(), row.topRight());
        drawText(painter, takeLeft(row, row.width() * 0.6), Qt::AlignLeft | Qt::AlignVCenter,
                 line.section(QLatin1Char(':'), 0, 0).trimmed(), lineFont, Palette::FaintText);
        drawText(painter, row, Qt::AlignRight | Qt::AlignVCenter, line.section(QLatin1Char(':'), 1).trimmed(),
                 lineFont, Palette::Text);
    }
}

void RecipePanelItem::drawPageDots(QPainter &painter, const QRectF &area) const
{
    const int count = panel()->pageCount();
    const qreal radius = area.height() * 0.22;
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < count; ++i) {
        painter.setBrush(i == panel()->page() ? Palette::Accent : Palette::Border);
        const qreal x = area.center().x() + (i - (count - 1) / 2.0) * radius * 4;
        painter.drawEllipse(QPointF(x, area.bottom() - radius), radius, radius);
    }
}

} // namespace Plant
