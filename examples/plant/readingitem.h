// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "drawing.h"
#include "plantitem.h"

#include <optional>

namespace Plant {

/// An item around one live number. It reads the fields that such widgets share: "value" (a tag), "decimals",
/// "unit", "label", and the limits "lowLimit" and "highLimit", which count while "limits" is on.
class ReadingItem : public PlantItem
{
    Q_OBJECT

protected:
    using PlantItem::PlantItem;

    /// The live value; nothing while the tag has none or has no number. In the design tool, where no plant is
    /// connected, the example value stands in.
    std::optional<double> value() const;
    virtual double exampleValue() const = 0;
    virtual Status status(double value) const;
    /// The live value with the decimals of the field, or what stands for none.
    QString valueText() const;

    /// The value and a smaller unit behind it; on a filled ground when a limit is passed.
    void drawReading(QPainter &painter, const QRectF &area, const QFont &font, Qt::Alignment alignment) const;
    void drawLabel(QPainter &painter, const QRectF &area, Qt::Alignment alignment) const;
    /// The label's height when the item has room and text for it, else 0.
    qreal labelHeight() const;
};

} // namespace Plant
