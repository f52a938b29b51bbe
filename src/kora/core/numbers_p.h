// SPDX-License-Identifier: Apache-2.0
#pragma once

class QJsonValue;
class QVariant;

namespace KORA {
namespace INTERNAL {

enum class IntConversion { Failed, Converted, BelowRange, AboveRange };

/// Converts as QVariant does, by rounding, but sees numbers outside int, which QVariant wraps or zeroes, and
/// takes NaN for no number.
IntConversion convertToInt(const QVariant &value, int &result);

/// A JSON number that is integral and in the range of int; QJsonValue::toInt() takes others for 0.
bool jsonInteger(const QJsonValue &value, int &result);

} // namespace INTERNAL
} // namespace KORA
