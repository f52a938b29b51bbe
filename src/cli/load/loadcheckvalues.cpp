// SPDX-License-Identifier: Apache-2.0
#include "loadcheckvalues.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QMap>
#include <QtCore/QRandomGenerator>
#include <QtGui/QColor>
#include <QtGui/QFont>

#include <kora/core/widgetlibrarypluginutils.h>

#include <limits>

using namespace KORA::INTERNAL;

namespace {

using Ints = std::numeric_limits<int>;
using Doubles = std::numeric_limits<double>;
using StringMap = QMap<int, QString>;

const int longTextLength = 20000;

QVariantList extremeIntegers(const FieldMetaInformation &field)
{
    QVariantList values{Ints::min(), Ints::max(), 0, -1};
    for (const QVariant &bound : {field.minimum(), field.maximum()}) {
        if (bound.isValid()) {
            const qint64 value = bound.toLongLong();
            values << bound << value - 1 << value + 1;
        }
    }
    return values;
}

QVariantList extremeDoubles(const FieldMetaInformation &field)
{
    QVariantList values{Doubles::lowest(), Doubles::max(), Doubles::denorm_min(), 0.0, -1.0};
    for (const QVariant &bound : {field.minimum(), field.maximum()}) {
        if (bound.isValid()) {
            values << bound << bound.toDouble() - 1 << bound.toDouble() + 1;
        }
    }
    return values;
}

QVariantList optionIndexes(const FieldMetaInformation &field)
{
    QVariantList values;
    const QVector<OptionType> options = field.options();
    for (const OptionType &option : options) {
        values.append(option.index);
    }
    return values;
}

QString longText()
{
    return QString(longTextLength, QLatin1Char('W'));
}

// What trips code that takes a text for one unit per character, for a format or for one line.
QString oddText()
{
    return QStringLiteral("%1 %n <b>&amp;\n\t\u202e\u05d0\U0001f6a8");
}

QVariantList extremeLists()
{
    QStringList many;
    for (int i = 0; i < 500; ++i) {
        many.append(QString::number(i));
    }
    return {QStringList(), QStringList(QString()), many};
}

QVariantList extremeMaps()
{
    const StringMap ends{{Ints::min(), QString()}, {Ints::max(), longText()}};
    return {QVariant::fromValue(StringMap()), QVariant::fromValue(ends)};
}

QVariantList extremeFonts()
{
    QFont tiny(QStringLiteral("Roboto"), 1);
    QFont large(QStringLiteral("No such family"), 400, QFont::Black, true);
    return {QFont(), tiny, large};
}

QString randomText(QRandomGenerator &random)
{
    QString text;
    const int length = random.bounded(60);
    for (int i = 0; i < length; ++i) {
        // Mostly what people write, at times anything that is no half of a surrogate pair.
        const bool isCommon = random.bounded(8) != 0;
        text.append(
            QChar(static_cast<ushort>(isCommon ? random.bounded(0x20, 0x17f) : random.bounded(0x1, 0xd800))));
    }
    return text;
}

QStringList randomTexts(QRandomGenerator &random)
{
    QStringList texts;
    const int count = random.bounded(12);
    for (int i = 0; i < count; ++i) {
        texts.append(randomText(random));
    }
    return texts;
}

StringMap randomMap(QRandomGenerator &random)
{
    StringMap map;
    const int count = random.bounded(12);
    for (int i = 0; i < count; ++i) {
        map.insert(random.bounded(-10, 100), randomText(random));
    }
    return map;
}

int randomInteger(const FieldMetaInformation &field, QRandomGenerator &random)
{
    const qint64 low = field.minimum().isValid() ? field.minimum().toLongLong() : Ints::min();
    const qint64 high = field.maximum().isValid() ? field.maximum().toLongLong() : Ints::max();
    const auto span = static_cast<double>(qMax<qint64>(0, high - low));
    return static_cast<int>(low + static_cast<qint64>(random.generateDouble() * span));
}

double randomDouble(const FieldMetaInformation &field, QRandomGenerator &random)
{
    const double low = field.minimum().isValid() ? field.minimum().toDouble() : -1e6;
    const double high = field.maximum().isValid() ? field.maximum().toDouble() : qMax(1e6, low);
    return low + random.generateDouble() * (high - low);
}

QFont randomFont(QRandomGenerator &random)
{
    QFont font(QStringLiteral("Roboto"), random.bounded(1, 100));
    font.setBold(random.bounded(2) != 0);
    font.setItalic(random.bounded(2) != 0);
    font.setUnderline(random.bounded(2) != 0);
    return font;
}

// What a tag or trend may hold.
QVariant randomTagValue(const FieldMetaInformation &field, QRandomGenerator &random)
{
    switch (random.bounded(4)) {
    case 0:
        return random.bounded(2) != 0;
    case 1:
        return static_cast<int>(random.generate());
    case 2:
        return randomDouble(field, random);
    default:
        return randomText(random);
    }
}

} // namespace

QVariantList extremeValues(const FieldMetaInformation &field)
{
    switch (field.type()) {
    case FieldTypeString:
        return {QString(), longText(), oddText()};
    case FieldTypeStringList:
        return extremeLists();
    case FieldTypeStringMap:
        return extremeMaps();
    case FieldTypeInteger:
        return extremeIntegers(field);
    case FieldTypeDouble:
        return extremeDoubles(field);
    case FieldTypeBool:
        return {true, false};
    case FieldTypeOption:
        return optionIndexes(field);
    case FieldTypeColor:
        return {QColor(), QColor(Qt::transparent), QColor(Qt::black)};
    case FieldTypeFont:
        return extremeFonts();
    case FieldTypeImage:
        return {QString(), QStringLiteral("no/such/image.png"), longText()};
    case FieldTypeTag:
        return {0, Ints::min(), Ints::max(), Doubles::lowest(), Doubles::max(), false, true, oddText()};
    case FieldTypeTrend:
        return {QString(), oddText()};
    case FieldTypeUndefined:
        break;
    }
    return {};
}

QVariantList wrongValues()
{
    return {QVariant(),
            QStringLiteral("text"),
            QString(),
            -1,
            Ints::max(),
            Doubles::quiet_NaN(),
            Doubles::infinity(),
            true,
            QByteArray("\xff\x00", 2),
            QVariantList{1, QStringLiteral("a"), QVariant()},
            QVariantMap{{QStringLiteral("key"), 1}},
            QDateTime(),
            QColor(),
            QFont()};
}

QVariant randomValue(const FieldMetaInformation &field, QRandomGenerator &random)
{
    switch (field.type()) {
    case FieldTypeString:
    case FieldTypeImage:
        return randomText(random);
    case FieldTypeStringList:
        return randomTexts(random);
    case FieldTypeStringMap:
        return QVariant::fromValue(randomMap(random));
    case FieldTypeInteger:
        return randomInteger(field, random);
    case FieldTypeDouble:
        return randomDouble(field, random);
    case FieldTypeBool:
        return random.bounded(2) != 0;
    case FieldTypeOption: {
        const QVariantList indexes = optionIndexes(field);
        return indexes.isEmpty() ? QVariant(0) : indexes.at(random.bounded(indexes.size()));
    }
    case FieldTypeColor:
        return QColor::fromRgba(random.generate());
    case FieldTypeFont:
        return randomFont(random);
    case FieldTypeTag:
    case FieldTypeTrend:
        return randomTagValue(field, random);
    case FieldTypeUndefined:
        break;
    }
    return {};
}

QString shortText(const QVariant &value)
{
    const int longest = 80;
    QString text;
    if (value.type() == QVariant::Int || value.type() == QVariant::LongLong) {
        text = value.toString();
    } else if (value.type() == QVariant::Double) {
        text = QString::number(value.toDouble());
    } else {
        QDebug(&text).nospace() << value;
    }
    return text.size() <= longest
               ? text
               : text.left(longest) + QStringLiteral("... (%1 characters)").arg(text.size());
}
