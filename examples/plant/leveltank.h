// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantwidget.h"
#include "readingitem.h"

#include <QtGui/QPainterPath>

namespace Plant {

/// A vessel that shows how full it is.
class LevelTank : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit LevelTank(const KORA::WidgetData &data);
};

class LevelTankItem : public ReadingItem
{
    Q_OBJECT

public:
    /// The indexes of the option field "shape".
    enum Shape { FlatShape = 0, DishedShape = 1, ConeShape = 2 };

    Q_INVOKABLE explicit LevelTankItem(const KORA::GraphicsObjectData &data);

protected:
    void draw(QPainter &painter, const QRectF &area) override;
    double exampleValue() const override;

private:
    QPainterPath vessel(const QRectF &area) const;
    qreal levelY(const QRectF &area, double value) const;
    void drawVessel(QPainter &painter, const QRectF &area) const;
    void drawScale(QPainter &painter, const QRectF &strip) const;
    void drawLimits(QPainter &painter, const QRectF &area) const;
};

} // namespace Plant
