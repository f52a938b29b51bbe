// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantwidget.h"
#include "readingitem.h"

namespace Plant {

/// A number with its label and unit.
class ValueDisplay : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ValueDisplay(const KORA::WidgetData &data);
};

class ValueDisplayItem : public ReadingItem
{
    Q_OBJECT

public:
    /// The indexes of the option field "alignment".
    enum Alignment { AlignLeft = 0, AlignCenter = 1, AlignRight = 2 };

    Q_INVOKABLE explicit ValueDisplayItem(const KORA::GraphicsObjectData &data);

protected:
    void draw(QPainter &painter, const QRectF &area) override;
    double exampleValue() const override;

private:
    Qt::Alignment alignment() const;
};

} // namespace Plant
