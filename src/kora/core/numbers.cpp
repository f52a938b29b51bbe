// SPDX-License-Identifier: Apache-2.0
#include <kora/core/numbers_p.h>

#include <QtCore/QJsonValue>
#include <QtCore/QVariant>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KORA {
namespace INTERNAL {

namespace {

constexpr qint64 minimumInt = std::numeric_limits<int>::min();
constexpr qint64 maximumInt = std::numeric_limits<int>::max();

IntConversion narrow(qint64 number, int &result)
{
    if (number < minimumInt) {
        return IntConversion::BelowRange;
    }
    if (number > maximumInt) {
        return IntConversion::AboveRange;
    }
    result = static_cast<int>(number);
    return IntConversion::Converted;
}

IntConversion roundToInt(double number, int &result)
{
    if (std::isnan(number)) {
        return IntConversion::Failed;
    }
    constexpr double beyondInt = 1e15; // far outside int, and safe to round to 64 bits
    return narrow(qRound64(std::clamp(number, -beyondInt, beyondInt)), result);
}

bool isIntegerText(const QString &text)
{
    const QStringRef digits = text.startsWith(QLatin1Char('-')) || text.startsWith(QLatin1Char('+'))
                                  ? text.midRef(1)
                                  : text.midRef(0);
    return !digits.isEmpty() && std::all_of(digits.begin(), digits.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
}

IntConversion textToInt(const QString &text, int &result)
{
    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    if (ok) {
        return narrow(number, result);
    }
    const QString trimmed = text.trimmed();
    if (!isIntegerText(trimmed)) {
        return IntConversion::Failed;
    }
    return trimmed.startsWith(QLatin1Char('-')) ? IntConversion::BelowRange : IntConversion::AboveRange;
}

} // namespace

IntConversion convertToInt(const QVariant &value, int &result)
{
    switch (value.userType()) {
    case QMetaType::Double:
    case QMetaType::Float:
        return roundToInt(value.toDouble(), result);
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Long:
        return narrow(value.toLongLong(), result);
    case QMetaType::ULongLong:
    case QMetaType::ULong:
        return narrow(static_cast<qint64>(std::min(value.toULongLong(), quint64(maximumInt) + 1)), result);
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return textToInt(value.toString(), result);
    default:
        break;
    }
    bool ok = false;
    const int number = value.toInt(&ok);
    if (!ok) {
        return IntConversion::Failed;
    }
    result = number;
    return IntConversion::Converted;
}

bool jsonInteger(const QJsonValue &value, int &result)
{
    const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
    return std::trunc(number) == number && roundToInt(number, result) == IntConversion::Converted;
}

} // namespace INTERNAL
} // namespace KORA
