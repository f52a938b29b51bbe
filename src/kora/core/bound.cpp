// SPDX-License-Identifier: Apache-2.0
#include <kora/core/bound.h>

#include <QtCore/QVariant>

#include <cmath>
#include <limits>

#include <kora/core/numbers_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

template<typename T>
T convertForBound(const QVariant &value);

template<>
int convertForBound<int>(const QVariant &value)
{
    int number = 0;
    switch (convertToInt(value, number)) {
    case IntConversion::BelowRange:
        return std::numeric_limits<int>::min();
    case IntConversion::AboveRange:
        return std::numeric_limits<int>::max();
    case IntConversion::Failed:
        return 0;
    case IntConversion::Converted:
        break;
    }
    return number;
}

template<>
double convertForBound<double>(const QVariant &value)
{
    const double number = value.toDouble(); // infinite for a text beyond the range, as QString reads it
    return std::isnan(number) ? 0 : number;
}

} // namespace

template<typename T>
void koraBound(const QVariant &minimum, QVariant &value, const QVariant &maximum)
{
    T number = convertForBound<T>(value);
    if (minimum.isValid()) {
        number = qMax(number, convertForBound<T>(minimum));
    }
    if (maximum.isValid()) {
        number = qMin(number, convertForBound<T>(maximum));
    }
    value = QVariant(number);
}

template KORA_EXPORT void koraBound<int>(const QVariant &, QVariant &, const QVariant &);
template KORA_EXPORT void koraBound<double>(const QVariant &, QVariant &, const QVariant &);

} // namespace INTERNAL
} // namespace KORA
