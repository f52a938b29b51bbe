// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/tagvalues.h>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/providers/jsonvalues_p.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace KORA::INTERNAL;

namespace KORA {
namespace DEV {

namespace {

/// A number of any kind, without loss.
struct Number
{
    enum Kind { None, Signed, Unsigned, Real } kind = None;
    qint64 whole = 0;
    quint64 large = 0; ///< for Unsigned: above what a qint64 holds
    double real = 0;
};

Number realNumber(double real)
{
    return {Number::Real, 0, 0, real};
}

Number unsignedNumber(quint64 number)
{
    if (number <= static_cast<quint64>(std::numeric_limits<qint64>::max())) {
        return {Number::Signed, static_cast<qint64>(number), 0, 0};
    }
    return {Number::Unsigned, 0, number, 0};
}

Number numberOfText(const QString &text)
{
    bool isGood = false;
    const QString trimmed = text.trimmed();
    const qint64 whole = trimmed.toLongLong(&isGood);
    if (isGood) {
        return {Number::Signed, whole, 0, 0};
    }
    const quint64 large = trimmed.toULongLong(&isGood);
    if (isGood) {
        return unsignedNumber(large);
    }
    const double real = QString(trimmed).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isGood);
    return isGood ? realNumber(real) : Number();
}

Number numberOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::SChar:
        return {Number::Signed, value.toLongLong(), 0, 0};
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::UChar:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return unsignedNumber(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return realNumber(value.toDouble());
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return numberOfText(value.toString());
    default:
        return {};
    }
}

struct WholeRange
{
    qint64 minimum;
    quint64 maximum;
};

template<typename T>
constexpr WholeRange rangeOf()
{
    return {static_cast<qint64>(std::numeric_limits<T>::min()),
            static_cast<quint64>(std::numeric_limits<T>::max())};
}

WholeRange wholeRange(TagType type)
{
    switch (type) {
    case TagTypeByte:
        return rangeOf<qint8>();
    case TagTypeShort:
        return rangeOf<qint16>();
    case TagTypeUByte:
        return rangeOf<quint8>();
    case TagTypeUShort:
        return rangeOf<quint16>();
    case TagTypeUInt:
        return rangeOf<quint32>();
    case TagTypeUInt64:
        return rangeOf<quint64>();
    case TagTypeInt64:
        return rangeOf<qint64>();
    default:
        return rangeOf<qint32>();
    }
}

/// Rounds as QVariant does, halves upwards.
Number rounded(const Number &number)
{
    constexpr double TwoTo63 = 9223372036854775808.0;
    constexpr double TwoTo64 = 18446744073709551616.0;
    const double whole = std::floor(number.real + 0.5);
    if (std::isnan(whole) || whole < -TwoTo63 || whole >= TwoTo64) {
        return {};
    }
    if (whole < TwoTo63) {
        return {Number::Signed, static_cast<qint64>(whole), 0, 0};
    }
    return unsignedNumber(static_cast<quint64>(whole));
}

bool isWithin(const WholeRange &range, const Number &number)
{
    if (number.kind == Number::Unsigned) {
        return number.large <= range.maximum;
    }
    return number.kind == Number::Signed && number.whole >= range.minimum
           && (number.whole < 0 || static_cast<quint64>(number.whole) <= range.maximum);
}

QVariant wholeValue(TagType type, const Number &number)
{
    const quint64 large = number.kind == Number::Unsigned ? number.large : static_cast<quint64>(number.whole);
    switch (type) {
    case TagTypeUInt:
        return static_cast<quint32>(large);
    case TagTypeUInt64:
        return large;
    case TagTypeInt64:
        return number.whole;
    default:
        return static_cast<int>(number.whole);
    }
}

double realOf(const Number &number)
{
    switch (number.kind) {
    case Number::Signed:
        return static_cast<double>(number.whole);
    case Number::Unsigned:
        return static_cast<double>(number.large);
    default:
        return number.real;
    }
}

bool isTruth(const QString &text, bool &truth)
{
    const QString lower = text.trimmed().toLower();
    truth = lower == QLatin1String("true") || lower == QLatin1String("on");
    return truth || lower == QLatin1String("false") || lower == QLatin1String("off");
}

bool isText(const QVariant &value)
{
    return value.userType() == QMetaType::QString || value.userType() == QMetaType::QByteArray;
}

/// Of a value in an error text.
QString quoted(const QVariant &value)
{
    if (!value.isValid()) {
        return QCoreApplication::translate("KORA::DEV::TagValues", "no value");
    }
    constexpr int Longest = 40;
    const QString text = TagValues::text(value);
    const QString shortened = text.size() > Longest ? text.left(Longest) + QChar(0x2026) : text;
    return isText(value) ? QLatin1Char('"') + shortened + QLatin1Char('"') : shortened;
}

QVariantList elementsOf(const QVariant &value)
{
    if (value.userType() == QMetaType::QVariantList || value.userType() == QMetaType::QStringList) {
        return value.toList();
    }
    if (!isText(value)) {
        return {value};
    }
    QString text = value.toString().trimmed();
    if (text.startsWith(QLatin1Char('[')) && text.endsWith(QLatin1Char(']')) && text.size() > 1) {
        text = text.mid(1, text.size() - 2).trimmed();
    }
    QVariantList elements;
    const QStringList parts = text.isEmpty()
                                  ? QStringList()
                                  : text.replace(QLatin1Char(';'), QLatin1Char(',')).split(QLatin1Char(','));
    for (const QString &part : parts) {
        elements.append(part.trimmed());
    }
    return elements;
}

/// Of a value that stands alone; string for what no tag can have.
TagType typeOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return TagTypeBool;
    case QMetaType::Int:
        return TagTypeInt;
    case QMetaType::UInt:
        return TagTypeUInt;
    case QMetaType::LongLong:
        return TagTypeInt64;
    case QMetaType::ULongLong:
        return TagTypeUInt64;
    case QMetaType::Float:
        return TagTypeFloat;
    case QMetaType::Double:
        return TagTypeDouble;
    default:
        return TagTypeString;
    }
}

/// As many digits as tell it from other floats: 0.1f is no 0.10000000149.
QString floatText(float number)
{
    constexpr int Most = std::numeric_limits<float>::max_digits10;
    const double real = static_cast<double>(number);
    for (int digits = std::numeric_limits<float>::digits10; digits < Most; ++digits) {
        const QString text = QString::number(real, 'g', digits);
        if (std::equal_to<float>()(text.toFloat(), number)) {
            return text;
        }
    }
    return QString::number(real, 'g', Most);
}

QVariant realValue(TagType type, double real)
{
    return type == TagTypeFloat ? QVariant(static_cast<float>(real)) : QVariant(real);
}

} // namespace

QVector<TagType> TagValues::types()
{
    QVector<TagType> types;
    for (int type = TagTypeBool; type <= TagTypeArrayDouble; ++type) {
        types.append(static_cast<TagType>(type));
    }
    return types;
}

TagType TagValues::elementType(TagType type)
{
    return isArray(type) ? static_cast<TagType>(type - TagTypeArrayBool + TagTypeBool) : type;
}

QVariant TagValues::initialValue(TagType type)
{
    if (isArray(type)) {
        constexpr int Elements = 4;
        const QVariant element = initialValue(elementType(type));
        QVariantList list;
        for (int i = 0; i < Elements; ++i) {
            list.append(element);
        }
        return list;
    }
    return type == TagTypeString ? QVariant(QString()) : nearest(type, 0);
}

bool TagValues::convert(TagType type, const QVariant &value, QVariant &result, QString *problem)
{
    if (!isArray(type)) {
        return convertElement(type, value, result, problem);
    }
    QVariantList converted;
    const QVariantList elements = elementsOf(value);
    for (const QVariant &element : elements) {
        QVariant one;
        QString reason;
        if (!convertElement(elementType(type), element, one, &reason)) {
            if (problem) {
                *problem = tr("element %1: %2").arg(QString::number(converted.size()), reason);
            }
            return false;
        }
        converted.append(one);
    }
    result = converted;
    return true;
}

bool TagValues::convertElement(TagType type, const QVariant &value, QVariant &result, QString *problem)
{
    QString reason;
    switch (type) {
    case TagTypeBool:
        reason = convertTruth(value, result);
        break;
    case TagTypeString:
        reason = convertText(value, result);
        break;
    case TagTypeFloat:
    case TagTypeDouble:
        reason = convertReal(type, value, result);
        break;
    default:
        reason = convertWhole(type, value, result);
    }
    if (problem && !reason.isEmpty()) {
        *problem = reason;
    }
    return reason.isEmpty();
}

// Each gives the reason why a value does not convert, or an empty text.

QString TagValues::convertTruth(const QVariant &value, QVariant &result)
{
    bool truth = false;
    const Number number = numberOf(value);
    if (isText(value) && isTruth(value.toString(), truth)) {
        result = truth;
    } else if (number.kind == Number::None || std::isnan(number.real)) {
        return tr("%1 is neither true nor false").arg(quoted(value));
    } else {
        result = std::not_equal_to<double>()(realOf(number), 0);
    }
    return QString();
}

QString TagValues::convertText(const QVariant &value, QVariant &result)
{
    if (!isText(value) && numberOf(value).kind == Number::None) {
        return tr("%1 is no text").arg(quoted(value));
    }
    result = text(value);
    return QString();
}

QString TagValues::convertReal(TagType type, const QVariant &value, QVariant &result)
{
    constexpr double LargestFloat = std::numeric_limits<float>::max();
    const Number number = numberOf(value);
    if (number.kind == Number::None) {
        return tr("%1 is no number").arg(quoted(value));
    }
    const double real = realOf(number);
    if (type == TagTypeFloat && std::isfinite(real) && std::abs(real) > LargestFloat) {
        return tr("%1 is out of the range of float").arg(quoted(value));
    }
    result = realValue(type, real);
    return QString();
}

QString TagValues::convertWhole(TagType type, const QVariant &value, QVariant &result)
{
    const Number number = numberOf(value);
    if (number.kind == Number::None || std::isnan(number.real)) {
        return tr("%1 is no number").arg(quoted(value));
    }
    const Number whole = number.kind == Number::Real ? rounded(number) : number;
    const WholeRange range = wholeRange(type);
    if (!isWithin(range, whole)) {
        return tr("%1 is out of the range of %2, %3 to %4")
            .arg(quoted(value), WidgetLibraryPluginMetaInformation::tagTypeToString(type),
                 QString::number(range.minimum), QString::number(range.maximum));
    }
    result = wholeValue(type, whole);
    return QString();
}

QVariant TagValues::nearest(TagType type, double number)
{
    switch (type) {
    case TagTypeBool:
        return number > 0.5;
    case TagTypeString:
        return text(number);
    case TagTypeDouble:
    case TagTypeFloat: {
        constexpr double LargestFloat = std::numeric_limits<float>::max();
        return realValue(type,
                         type == TagTypeFloat ? std::clamp(number, -LargestFloat, LargestFloat) : number);
    }
    default:
        break;
    }
    const Number whole = rounded(realNumber(number));
    const WholeRange range = wholeRange(type);
    if (isWithin(range, whole)) {
        return wholeValue(type, whole);
    }
    return wholeValue(type, number > 0 ? unsignedNumber(range.maximum)
                                       : Number{Number::Signed, range.minimum, 0, 0});
}

QString TagValues::text(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QVariantList: {
        QStringList texts;
        const QVariantList list = value.toList();
        for (const QVariant &element : list) {
            texts.append(text(element));
        }
        return texts.join(QStringLiteral(", "));
    }
    case QMetaType::Float:
        return floatText(value.toFloat());
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    default:
        return value.toString();
    }
}

QString TagValues::shortText(const QVariant &value)
{
    constexpr int Digits = 7;
    if (value.userType() == QMetaType::QVariantList) {
        QStringList texts;
        const QVariantList list = value.toList();
        for (const QVariant &element : list) {
            texts.append(shortText(element));
        }
        return texts.join(QStringLiteral(", "));
    }
    return value.userType() == QMetaType::Double ? QString::number(value.toDouble(), 'g', Digits)
                                                 : text(value);
}

QJsonValue TagValues::toJson(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QVariantList: {
        QJsonArray array;
        const QVariantList list = value.toList();
        for (const QVariant &element : list) {
            array.append(toJson(element));
        }
        return array;
    }
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
        return value.toInt();
    case QMetaType::UInt:
        return static_cast<qint64>(value.toUInt());
    case QMetaType::Float:
    case QMetaType::Double:
        return numberToJson(value.toDouble());
    default:
        return value.toString(); // 64-bit numbers too: a JSON number would lose digits
    }
}

bool TagValues::fromJson(TagType type, const QJsonValue &json, QVariant &value, QString *problem)
{
    const QVariant variant = json.toVariant();
    if (!variant.isValid()) {
        if (problem) {
            *problem = tr("%1 is no value").arg(QStringLiteral("null"));
        }
        return false;
    }
    return convert(type, variant, value, problem);
}

QJsonValue TagValues::typedToJson(const QVariant &value)
{
    if (!value.isValid()) {
        return QJsonValue::Null;
    }
    if (value.userType() == QMetaType::QVariantList) {
        QJsonArray array;
        const QVariantList list = value.toList();
        for (const QVariant &element : list) {
            array.append(typedToJson(element));
        }
        return QJsonObject{{QStringLiteral("list"), array}};
    }
    const QString name = WidgetLibraryPluginMetaInformation::tagTypeToString(typeOf(value));
    return QJsonObject{{name, toJson(value)}};
}

bool TagValues::typedFromJson(const QJsonValue &json, QVariant &value)
{
    const QJsonObject object = json.toObject();
    if (object.size() != 1) {
        value = QVariant();
        return json.isNull();
    }
    const QString name = object.begin().key();
    if (name != QLatin1String("list")) {
        return fromJson(WidgetLibraryPluginMetaInformation::tagTypeFromString(name), object.begin().value(),
                        value, nullptr);
    }
    QVariantList list;
    const QJsonArray array = object.begin().value().toArray();
    for (const QJsonValue &entry : array) {
        list.append(QVariant());
        if (!typedFromJson(entry, list.last())) {
            return false;
        }
    }
    value = list;
    return object.begin().value().isArray();
}

bool TagValues::areSame(const QVariant &first, const QVariant &second)
{
    if (first.userType() != second.userType()) {
        return false;
    }
    if (first.userType() == QMetaType::Double || first.userType() == QMetaType::Float) {
        const double a = first.toDouble();
        const double b = second.toDouble();
        return std::equal_to<double>()(a, b) || (std::isnan(a) && std::isnan(b));
    }
    if (first.userType() != QMetaType::QVariantList) {
        return first == second;
    }
    const QVariantList a = first.toList();
    const QVariantList b = second.toList();
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), areSame);
}

} // namespace DEV
} // namespace KORA
