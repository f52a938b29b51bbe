// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dialitem.h"
#include "plantwidget.h"

#include <QtCore/QVector>

namespace Plant {

/// Round gauge, version 1.1.0: a needle over a scale with warning and alarm bands. It remembers the highest
/// value since it started, in the private field "peak".
class BandGauge : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit BandGauge(const KORA::WidgetData &data);

    void initEvent(KORA::InitEvent *event) override;
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override;

private:
    void raisePeak(const QVariant &value);
};

class BandGaugeItem : public DialItem
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit BandGaugeItem(const KORA::GraphicsObjectData &data);

protected:
    void draw(QPainter &painter, const QRectF &area) override;
    Status status(double value) const override;

private:
    struct Band
    {
        double from;
        double to;
        Status status;
    };

    QVector<Band> bands() const;
    void drawBands(QPainter &painter, const Dial &dial) const;
    void drawTicks(QPainter &painter, const Dial &dial) const;
    void drawPeak(QPainter &painter, const Dial &dial) const;
    void drawNeedle(QPainter &painter, const Dial &dial, double value) const;
};

} // namespace Plant
