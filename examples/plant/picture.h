// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantitem.h"
#include "plantwidget.h"

#include <QtGui/QPixmap>

namespace Plant {

/// Shows an image; the default one is an overview of the plant.
class Picture : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit Picture(const KORA::WidgetData &data);
};

class PictureItem : public PlantItem
{
    Q_OBJECT

public:
    /// The indexes of the option field "fit".
    enum Fit { Contain = 0, Cover = 1, Stretch = 2 };

    Q_INVOKABLE explicit PictureItem(const KORA::GraphicsObjectData &data);

    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override;

protected:
    void draw(QPainter &painter, const QRectF &area) override;

private:
    QSizeF imageSize(const QSizeF &original, const QSizeF &space) const;
    const QPixmap &pixmap(const QSize &space);

    QPixmap m_pixmap;
};

} // namespace Plant
