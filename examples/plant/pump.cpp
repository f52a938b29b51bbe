// SPDX-License-Identifier: Apache-2.0
#include "pump.h"

#include "drawing.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(120, 140);
constexpr qreal QuarterTurn = 90;

} // namespace

Pump::Pump(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

PumpItem::PumpItem(const KORA::GraphicsObjectData &data)
    : PlantItem(data, DesignSize)
{}

void PumpItem::draw(QPainter &painter, const QRectF &area)
{
    QRectF symbolArea = area;
    if (!isCompact()) {
        drawText(painter, takeTop(symbolArea, area.height() * 0.15), Qt::AlignCenter,
                 text(QStringLiteral("label")), textFont(QStringLiteral("label")), Palette::FaintText);
        drawStateText(painter, takeBottom(symbolArea, area.height() * 0.17));
    }
    drawSymbol(painter, centredSquare(symbolArea.adjusted(0, 2 * scale(), 0, -3 * scale())));
}

std::optional<int> PumpItem::state() const
{
    const QVariant state = getFieldValue(QStringLiteral("state"));
    if (state.isValid()) {
        return state.toInt();
    }
    return isInEditor() ? std::optional<int>(Running) : std::nullopt;
}

QColor PumpItem::bodyColor(int state) const
{
    switch (state) {
    case Running:
        return color(QStringLiteral("color"));
    case Fault:
        return Palette::Alarm;
    default:
        return Palette::Panel;
    }
}

void PumpItem::drawSymbol(QPainter &painter, const QRectF &area) const
{
    const qreal line = qMax(1.2, area.width() * 0.03);
    const QRectF body = area.adjusted(line, line, -line, -line);
    QPainterPath circle;
    circle.addEllipse(body);
    const std::optional<int> current = state();
    if (current) {
        painter.fillPath(circle, bodyColor(*current));
    } else {
        drawHatching(painter, circle, scale());
    }

    painter.save();
    painter.translate(body.center());
    painter.rotate(QuarterTurn * integer(QStringLiteral("direction")));
    const qreal r = body.width() / 2;
    painter.setPen(
        QPen(current ? Palette::Text : Palette::Line, line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(), r, r);
    // The triangle that points to the discharge side, its corners on the circle.
    painter.setBrush(current && *current == Running ? QColor(Qt::white) : QColor(Qt::transparent));
    painter.drawPolygon(
        QVector<QPointF>{QPointF(r, 0), QPointF(-0.5 * r, -0.866 * r), QPointF(-0.5 * r, 0.866 * r)});
    painter.restore();
    drawBadge(painter, body);
}

/// A sign beside the symbol, so that the state does not depend on colour alone.
void PumpItem::drawBadge(QPainter &painter, const QRectF &symbol) const
{
    const std::optional<int> current = state();
    if (!current || (*current != Fault && *current != Maintenance)) {
        return;
    }
    QRectF badge(0, 0, symbol.width() * 0.36, symbol.height() * 0.36);
    badge.moveTopRight(symbol.topRight());
    const QColor ground = *current == Fault ? QColor(Qt::white) : Palette::Warning;
    painter.setPen(QPen(Palette::Text, qMax(1.0, badge.width() * 0.06)));
    painter.setBrush(ground);
    painter.drawEllipse(badge);
    drawText(painter, badge, Qt::AlignCenter, *current == Fault ? QStringLiteral("!") : QStringLiteral("M"),
             pixelFont(badge.height() * 0.7, true), *current == Fault ? Palette::Alarm : Palette::Text);
}

void PumpItem::drawStateText(QPainter &painter, const QRectF &area) const
{
    const std::optional<int> current = state();
    const bool isFault = current && *current == Fault;
    drawText(painter, area, Qt::AlignCenter,
             current ? mappedText(QStringLiteral("stateTexts"), *current) : noValueText(),
             textFont(QStringLiteral("stateTexts")), isFault ? Palette::Alarm : Palette::Text);
}

} // namespace Plant
