// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantitem.h"
#include "plantwidget.h"

#include <optional>

namespace Plant {

/// The symbol of a pump, with its state as colour, shape and text.
class Pump : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit Pump(const KORA::WidgetData &data);
};

class PumpItem : public PlantItem
{
    Q_OBJECT

public:
    /// The indexes of the option field "state".
    enum State { Stopped = 0, Running = 1, Fault = 2, Maintenance = 3 };

    Q_INVOKABLE explicit PumpItem(const KORA::GraphicsObjectData &data);

protected:
    void draw(QPainter &painter, const QRectF &area) override;

private:
    std::optional<int> state() const;
    QColor bodyColor(int state) const;
    void drawSymbol(QPainter &painter, const QRectF &area) const;
    void drawBadge(QPainter &painter, const QRectF &symbol) const;
    void drawStateText(QPainter &painter, const QRectF &area) const;
};

} // namespace Plant
