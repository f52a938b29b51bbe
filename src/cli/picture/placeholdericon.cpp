// SPDX-License-Identifier: Apache-2.0
#include "placeholdericon.h"

#include <QtGui/QPainter>

QIcon placeholderIcon()
{
    QPixmap pixmap(256, 256);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0x90, 0xa4, 0xae), 8, Qt::DashLine));
    painter.setBrush(QColor(0xec, 0xef, 0xf1));
    painter.drawRoundedRect(QRectF(12, 12, 232, 232), 24, 24);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x90, 0xa4, 0xae));
    for (const QPointF &corner : {QPointF(68, 68), QPointF(136, 68), QPointF(68, 136), QPointF(136, 136)}) {
        painter.drawRoundedRect(QRectF(corner, QSizeF(52, 52)), 8, 8);
    }
    painter.end();
    return QIcon(pixmap);
}
