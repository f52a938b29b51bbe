// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dial.h"
#include "readingitem.h"

namespace Plant {

/// What both versions of the gauge share: a scale from the field "minimum" to the field "maximum".
class DialItem : public ReadingItem
{
    Q_OBJECT

protected:
    using ReadingItem::ReadingItem;

    double exampleValue() const override;
    /// Where a value stands on the dial.
    qreal fraction(double value) const;
};

} // namespace Plant
