// SPDX-License-Identifier: Apache-2.0
#include "dialitem.h"

namespace Plant {

double DialItem::exampleValue() const
{
    constexpr double Share = 0.64;
    const double minimum = number(QStringLiteral("minimum"));
    return minimum + (number(QStringLiteral("maximum")) - minimum) * Share;
}

qreal DialItem::fraction(double value) const
{
    return fractionOf(value, number(QStringLiteral("minimum")), number(QStringLiteral("maximum")));
}

} // namespace Plant
