// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <kora/core/fieldtype.h>
#include <kora/export.h>

namespace KORA {
namespace DEV {

/// The values of tags, by tag type: bool; int for byte, short, int, ubyte and ushort; uint, quint64, qint64, float,
/// double, QString; a QVariantList of these for the arrays.
class KORA_EXPORT TagValues
{
    Q_DECLARE_TR_FUNCTIONS(KORA::DEV::TagValues)

public:
    /// Every type that a tag can have, in the order of their numbers.
    static QVector<INTERNAL::TagType> types();
    static bool isArray(INTERNAL::TagType type) { return type >= INTERNAL::TagTypeArrayBool; }
    static INTERNAL::TagType elementType(INTERNAL::TagType type);

    /// false, 0, an empty text; four of them in an array.
    static QVariant initialValue(INTERNAL::TagType type);

    /// Converts what is written to a tag. Numbers are rounded to whole ones where the type has only these; texts are
    /// read as numbers, as "true" or "false", and as array elements between commas or semicolons. Otherwise false,
    /// with the reason, and nothing assigned: a number out of the type's range, a text that is no number, not a
    /// number for a whole one, a list for a single value.
    static bool convert(INTERNAL::TagType type, const QVariant &value, QVariant &result, QString *problem);

    /// What a generator writes: the nearest value that the type has. A number above 0.5 is true. @p type is no array.
    static QVariant nearest(INTERNAL::TagType type, double number);

    /// For the reader, and for convert() back: every digit, array elements joined by ", ".
    static QString text(const QVariant &value);

    /// For the reader alone: seven digits of a real number.
    static QString shortText(const QVariant &value);

    static QJsonValue toJson(const QVariant &value);
    static bool fromJson(INTERNAL::TagType type, const QJsonValue &json, QVariant &value, QString *problem);

    /// A value with its type, for values that have no declared one: {"int": 5}, {"list": [...]}; null for an invalid
    /// value. What no tag can have is kept as its text.
    static QJsonValue typedToJson(const QVariant &value);
    static bool typedFromJson(const QJsonValue &json, QVariant &value);

    /// Equal to the last digit, unlike QVariant's own comparison of doubles; not a number equals itself.
    static bool areSame(const QVariant &first, const QVariant &second);

private:
    static bool convertElement(INTERNAL::TagType type, const QVariant &value, QVariant &result,
                               QString *problem);
    static QString convertTruth(const QVariant &value, QVariant &result);
    static QString convertText(const QVariant &value, QVariant &result);
    static QString convertReal(INTERNAL::TagType type, const QVariant &value, QVariant &result);
    static QString convertWhole(INTERNAL::TagType type, const QVariant &value, QVariant &result);
};

} // namespace DEV
} // namespace KORA
