// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/widgetcard.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <cmath>

#include <kora/dev/model/placedwidget.h>

namespace KORA {
namespace DEV {

namespace {

constexpr qreal stripeWidth = 4;
constexpr qreal padding = 8;
constexpr qreal smallestTextWidth = 56;

// Stopped on purpose is no error.
QColor stripeColor(const Finding &problem)
{
    return problem.rule == QLatin1String("stopped") ? QColor(0xc7, 0x82, 0x00) : QColor(0xd3, 0x2f, 0x2f);
}

QString firstLetterRaised(QString text)
{
    if (!text.isEmpty()) {
        text[0] = text.at(0).toUpper();
    }
    return text;
}

QString place(const Finding &problem)
{
    return problem.line > 0 ? QStringLiteral("%1:%2").arg(problem.file, QString::number(problem.line))
                            : problem.file;
}

/// Writes into @p area from its top, wraps, elides what has no room, and takes from the area what it used.
void writeText(QPainter &painter, QRectF &area, const QString &text, const QFont &font, const QColor &color)
{
    const QFontMetricsF metrics(font);
    const qreal lineHeight = metrics.lineSpacing();
    QTextLayout layout(text, font);
    layout.beginLayout();
    painter.setFont(font);
    painter.setPen(color);
    while (area.height() >= lineHeight) {
        QTextLine line = layout.createLine();
        if (!line.isValid()) {
            break;
        }
        line.setLineWidth(area.width());
        const bool isLastThatFits = area.height() < 2 * lineHeight;
        const QString rest = isLastThatFits ? text.mid(line.textStart())
                                            : text.mid(line.textStart(), line.textLength()).trimmed();
        painter.drawText(area, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine,
                         metrics.elidedText(rest, Qt::ElideRight, area.width()));
        area.setTop(area.top() + lineHeight);
        if (isLastThatFits) {
            break;
        }
    }
    layout.endLayout();
}

void paintMark(QPainter &painter, const QRectF &rect, const QColor &color)
{
    const qreal side = std::min({18.0, rect.width() - 2, rect.height() - 2});
    if (side < 6) {
        return;
    }
    QRectF circle(0, 0, side, side);
    circle.moveCenter(rect.center());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(circle);
    QFont font;
    font.setBold(true);
    font.setPixelSize(std::max(4, static_cast<int>(side * 0.7)));
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(circle, Qt::AlignCenter, QStringLiteral("!"));
}

} // namespace

void paintWidgetCard(QPainter &painter, const QRectF &rect, const PlacedWidget &widget,
                     const QPalette &palette, const QFont &font)
{
    const QColor color = stripeColor(widget.problem());
    const QRectF card = rect.toRect();
    painter.save();
    painter.setClipRect(card, Qt::IntersectClip);
    painter.fillRect(card, palette.color(QPalette::Base));
    painter.setPen(QPen(color, 1));
    painter.drawRect(card.adjusted(0, 0, -1, -1));
    QRectF area = card.adjusted(stripeWidth + padding, padding, -padding, -padding);
    if (area.width() < smallestTextWidth || area.height() < QFontMetricsF(font).height()) {
        paintMark(painter, card, color);
        painter.restore();
        return;
    }
    painter.fillRect(QRectF(card.topLeft(), QSizeF(stripeWidth, card.height())), color);
    QColor quiet = palette.color(QPalette::Text);
    quiet.setAlpha(170);
    QFont bold = font;
    bold.setBold(true);
    writeText(painter, area, firstLetterRaised(widget.problem().message), bold,
              palette.color(QPalette::Text));
    area.setTop(area.top() + padding / 2);
    writeText(painter, area, firstLetterRaised(widget.problem().hint), font, palette.color(QPalette::Text));
    area.setTop(area.top() + padding / 2);
    writeText(painter, area, widget.name(), font, quiet);
    painter.restore();
}

QString widgetCardToolTip(const PlacedWidget &widget)
{
    const Finding &problem = widget.problem();
    QStringList lines{
        QStringLiteral("<b>%1: %2</b>").arg(widget.name().toHtmlEscaped(), problem.message.toHtmlEscaped())};
    for (const QString &text : {firstLetterRaised(problem.hint), place(problem)}) {
        if (!text.isEmpty()) {
            lines.append(text.toHtmlEscaped());
        }
    }
    return QStringLiteral("<qt>%1</qt>").arg(lines.join(QStringLiteral("<br>")));
}

} // namespace DEV
} // namespace KORA
