// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/severitymark.h>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>

namespace KORA {
namespace DEV {

namespace {

QPainterPath shapeOf(const QRectF &square, Finding::Severity severity)
{
    QPainterPath path;
    if (severity == Finding::Warning) {
        path.addPolygon(
            QPolygonF({{square.center().x(), square.top()}, square.bottomRight(), square.bottomLeft()}));
        path.closeSubpath();
    } else {
        path.addEllipse(square);
    }
    return path;
}

} // namespace

QColor severityColor(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Warning:
        return {0xb8, 0x76, 0x00};
    case Finding::Note:
        return {0x19, 0x76, 0xd2};
    default:
        return {0xd3, 0x2f, 0x2f};
    }
}

void paintSeverityMark(QPainter &painter, const QRectF &square, Finding::Severity severity)
{
    constexpr qreal signSize = 0.68;
    constexpr int smallestSign = 4;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shapeOf(square, severity), severityColor(severity));
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(std::max(smallestSign, static_cast<int>(square.height() * signSize)));
    painter.setFont(font);
    painter.setPen(Qt::white);
    const qreal lowered =
        severity == Finding::Warning ? square.height() / 8 : 0; // where the triangle is wide
    painter.drawText(square.translated(0, lowered), Qt::AlignCenter,
                     severity == Finding::Note ? QStringLiteral("i") : QStringLiteral("!"));
    painter.restore();
}

} // namespace DEV
} // namespace KORA
