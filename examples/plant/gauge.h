// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dialitem.h"
#include "plantwidget.h"

namespace Plant {

/// Round gauge, version 1.0.0: an arc that fills, with the value in its middle and two limits.
class Gauge : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit Gauge(const KORA::WidgetData &data);
};

class GaugeItem : public DialItem
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit GaugeItem(const KORA::GraphicsObjectData &data);

protected:
    void draw(QPainter &painter, const QRectF &area) override;

private:
    void drawScale(QPainter &painter, const Dial &dial) const;
    void drawLimits(QPainter &painter, const Dial &dial) const;
    void drawTexts(QPainter &painter, const Dial &dial) const;
};

} // namespace Plant
