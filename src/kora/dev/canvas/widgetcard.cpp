// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/widgetcard.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <cmath>

#include <kora/dev/canvas/findingtext.h>
#include <kora/dev/canvas/severitymark.h>
#include <kora/dev/model/placedwidget.h>

namespace KORA {
namespace DEV {

namespace {

constexpr qreal stripeWidth = 4;
constexpr qreal smallWidth = 200;
constexpr qreal smallHeight = 100;
constexpr qreal smallestTextWidth = 56;

// Stopped on purpose is no error.
Finding::Severity severityOf(const Finding &problem)
{
    return problem.rule == QLatin1String("stopped") ? Finding::Warning : problem.severity;
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

void paintMark(QPainter &painter, const QRectF &rect, Finding::Severity severity)
{
    constexpr qreal largest = 18;
    constexpr qreal smallest = 6;
    const qreal side = std::min({largest, rect.width() - 2, rect.height() - 2});
    if (side >= smallest) {
        QRectF square(0, 0, side, side);
        square.moveCenter(rect.center());
        paintSeverityMark(painter, square, severity);
    }
}

QFont smaller(const QFont &font)
{
    constexpr qreal factor = 0.85;
    QFont result = font;
    if (font.pointSizeF() > 0) {
        result.setPointSizeF(font.pointSizeF() * factor);
    }
    return result;
}

void paintTexts(QPainter &painter, QRectF area, const PlacedWidget &widget, const QPalette &palette,
                const QFont &font)
{
    constexpr qreal distance = 4;
    const QColor &color = palette.color(QPalette::Text);
    QColor quiet = color;
    quiet.setAlpha(170);
    QFont bold = font;
    bold.setBold(true);
    writeText(painter, area, asSentence(widget.problem().message), bold, color);
    area.setTop(area.top() + distance);
    writeText(painter, area, asSentence(widget.problem().hint), font, color);
    area.setTop(area.top() + distance);
    writeText(painter, area, widget.name(), font, quiet);
}

} // namespace

void paintWidgetCard(QPainter &painter, const QRectF &rect, const PlacedWidget &widget,
                     const QPalette &palette, const QFont &font)
{
    const Finding::Severity severity = severityOf(widget.problem());
    const QColor color = severityColor(severity);
    const QRectF card = rect.toRect();
    painter.save();
    painter.setClipRect(card, Qt::IntersectClip);
    painter.fillRect(card, palette.color(QPalette::Base));
    painter.setPen(QPen(color, 1));
    painter.drawRect(card.adjusted(0, 0, -1, -1));
    const bool isSmall = card.height() < smallHeight || card.width() < smallWidth;
    const qreal padding = isSmall ? 4 : 8;
    const QRectF area = card.adjusted(stripeWidth + padding, padding, -padding, -padding);
    if (area.width() < smallestTextWidth || area.height() < QFontMetricsF(font).height()) {
        paintMark(painter, card, severity);
    } else {
        painter.fillRect(QRectF(card.topLeft(), QSizeF(stripeWidth, card.height())), color);
        paintTexts(painter, area, widget, palette, isSmall ? smaller(font) : font);
    }
    painter.restore();
}

QString widgetCardToolTip(const PlacedWidget &widget)
{
    QStringList lines{QStringLiteral("<b>%1</b>").arg(widget.name().toHtmlEscaped())};
    const QStringList texts = linesOf(widget.problem());
    for (const QString &text : texts) {
        lines.append(text.toHtmlEscaped());
    }
    return QStringLiteral("<qt>%1</qt>").arg(lines.join(QStringLiteral("<br>")));
}

} // namespace DEV
} // namespace KORA
