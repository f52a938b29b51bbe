// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantwidget.h"
#include "touchitem.h"

#include <QtGui/QPixmap>
#include <QtGui/QTransform>

namespace Plant {

/// Shows an image; the default one is an overview of the plant.
class Picture : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit Picture(const KORA::WidgetData &data);
};

/// Two fingers zoom, turn and move the image, the mouse wheel zooms, a double click puts it back.
class PictureItem : public TouchItem
{
    Q_OBJECT

public:
    /// The indexes of the option field "fit".
    enum Fit { Contain = 0, Cover = 1, Stretch = 2 };

    Q_INVOKABLE explicit PictureItem(const KORA::GraphicsObjectData &data);

    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override;

protected:
    void draw(QPainter &painter, const QRectF &area) override;
    void panned(const QPointF &delta) override;
    void zoomed(qreal factor, const QPointF &center) override;
    void turned(qreal angle, const QPointF &center) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;

private:
    QSizeF imageSize(const QSizeF &original, const QSizeF &space) const;
    const QPixmap &pixmap(const QSize &space);

    void setView(const QTransform &view);

    QPixmap m_pixmap;
    QSize m_pixmapSpace; // that m_pixmap was read for; invalid when it is to be read again
    QTransform m_view;   // of the image inside the item, as the fingers left it
};

} // namespace Plant
