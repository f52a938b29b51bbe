// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>

class QVariant;

namespace KORA {
namespace INTERNAL {

/// Clamps @p value in place to [@p minimum, @p maximum] and makes it a variant of type T (int or double).
///
/// A bound that is an invalid variant does not apply. What does not convert to T counts as 0, NaN too; a number
/// beyond the range of T saturates before the bounds apply. A minimum above the maximum gives the maximum.
template<typename T>
void koraBound(const QVariant &minimum, QVariant &value, const QVariant &maximum);

extern template KORA_EXPORT void koraBound<int>(const QVariant &, QVariant &, const QVariant &);
extern template KORA_EXPORT void koraBound<double>(const QVariant &, QVariant &, const QVariant &);

} // namespace INTERNAL
} // namespace KORA
