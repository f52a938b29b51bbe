// SPDX-License-Identifier: Apache-2.0
#include <kora/core/fieldtypes_p.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtGui/QColor>
#include <QtGui/QFont>

#include <iterator>

#include <kora/core/jsontext_p.h>
#include <kora/core/metatypes_p.h>
#include <kora/core/numbers_p.h>
#include <kora/core/widgetlibrarypluginutils.h>

namespace KORA {
namespace INTERNAL {

namespace {

QJsonDocument parseJson(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8());
}

template<QMetaType::Type type>
bool convertByQt(QVariant &value)
{
    return value.convert(static_cast<int>(type));
}

// No value: undefined, and what is bound to a tag or trend -------------------------------------------------

QString noText(const QVariant &)
{
    return {};
}

QVariant noValue(const QString &)
{
    return {};
}

bool convertNothing(QVariant &)
{
    return true;
}

bool failToConvert(QVariant &)
{
    return false;
}

// string ---------------------------------------------------------------------------------------------------

QString stringToText(const QVariant &value)
{
    return value.toString();
}

QVariant stringFromText(const QString &text)
{
    return text;
}

bool stringFromJson(const QJsonValue &json, QVariant &value)
{
    value = json.toString();
    return json.isString();
}

// stringList -----------------------------------------------------------------------------------------------

QString stringListToText(const QVariant &value)
{
    QString json;
    const QStringList list = value.toStringList();
    for (const QString &text : list) {
        json += json.isEmpty() ? QLatin1Char('[') : QLatin1Char(',');
        appendJsonString(json, text);
    }
    return list.isEmpty() ? QStringLiteral("[]") : json + QLatin1Char(']');
}

QVariant stringListFromText(const QString &text)
{
    QStringList list;
    const QJsonArray array = parseJson(text).array();
    for (const QJsonValue &element : array) {
        list.append(element.toString());
    }
    return list;
}

bool stringListFromJson(const QJsonValue &json, QVariant &value)
{
    QStringList list;
    const QJsonArray array = json.toArray();
    for (const QJsonValue &element : array) {
        if (!element.isString()) {
            return false;
        }
        list.append(element.toString());
    }
    value = list;
    return json.isArray();
}

// stringMap ------------------------------------------------------------------------------------------------

const QLatin1String mapIndexKey("i");
const QLatin1String mapTextKey("v");

QString stringMapToText(const QVariant &value)
{
    QString json;
    const auto map = value.value<StringMap>();
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        json += json.isEmpty() ? QLatin1Char('[') : QLatin1Char(',');
        json += QLatin1String("{\"i\":") + QString::number(entry.key()) + QLatin1String(",\"v\":");
        appendJsonString(json, entry.value());
        json += QLatin1Char('}');
    }
    return map.isEmpty() ? QStringLiteral("[]") : json + QLatin1Char(']');
}

QVariant stringMapFromText(const QString &text)
{
    StringMap map;
    const QJsonArray array = parseJson(text).array();
    for (const QJsonValue &element : array) {
        const QJsonObject entry = element.toObject();
        map.insert(entry.value(mapIndexKey).toInt(), entry.value(mapTextKey).toString());
    }
    return QVariant::fromValue(map);
}

bool stringMapFromJson(const QJsonValue &json, QVariant &value)
{
    StringMap map;
    const QJsonArray array = json.toArray();
    for (const QJsonValue &element : array) {
        const QJsonObject entry = element.toObject();
        const QJsonValue text = entry.value(mapTextKey);
        int index = 0;
        if (!jsonInteger(entry.value(mapIndexKey), index) || !text.isString() || map.contains(index)) {
            return false;
        }
        map.insert(index, text.toString());
    }
    value = QVariant::fromValue(map);
    return json.isArray();
}

// A map is not converted, only checked: what a variant can make of it is looked up when it is read.
bool convertToStringMap(QVariant &value)
{
    return value.canConvert<StringMap>();
}

// integer, option ------------------------------------------------------------------------------------------

QString integerToText(const QVariant &value)
{
    return QString::number(value.toInt());
}

QVariant integerFromText(const QString &text)
{
    return text.toInt();
}

bool convertToInteger(QVariant &value)
{
    if (value.userType() == QMetaType::Int) {
        return true;
    }
    int number = 0;
    if (convertToInt(value, number) != IntConversion::Converted) {
        return false;
    }
    value = number;
    return true;
}

bool integerFromJson(const QJsonValue &json, QVariant &value)
{
    int number = 0;
    const bool ok = jsonInteger(json, number);
    value = number;
    return ok;
}

// double ---------------------------------------------------------------------------------------------------

QString doubleToText(const QVariant &value)
{
    return QString::number(value.toDouble(), 'g', 6);
}

QVariant doubleFromText(const QString &text)
{
    return text.toDouble();
}

bool doubleFromJson(const QJsonValue &json, QVariant &value)
{
    value = json.toDouble();
    return json.isDouble();
}

// bool -----------------------------------------------------------------------------------------------------

QString boolToText(const QVariant &value)
{
    return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
}

QVariant boolFromText(const QString &text)
{
    return text == QLatin1String("true");
}

bool boolFromJson(const QJsonValue &json, QVariant &value)
{
    value = json.toBool();
    return json.isBool();
}

// color ----------------------------------------------------------------------------------------------------

QString colorToText(const QVariant &value)
{
    return value.value<QColor>().name();
}

QVariant colorFromText(const QString &text)
{
    QColor color;
    color.setNamedColor(text);
    return color;
}

bool colorFromJson(const QJsonValue &json, QVariant &value)
{
    const QString name = json.toString();
    value = colorFromText(name);
    return QColor::isValidColor(name);
}

// font -----------------------------------------------------------------------------------------------------

// Qt prints a warning when it is given a font description that it does not know the form of.
bool isFontDescription(const QString &text)
{
    const int parts = text.count(QLatin1Char(',')) + 1;
    return !text.isEmpty() && (parts <= 2 || (parts >= 9 && parts <= 11));
}

bool convertToFont(QVariant &value)
{
    if (value.userType() == QMetaType::QString && !isFontDescription(value.toString())) {
        return false;
    }
    return value.convert(QMetaType::QFont);
}

QString fontToText(const QVariant &value)
{
    QVariant font = value;
    return WidgetLibraryPluginUtils::fieldFontToString(convertToFont(font) ? font.value<QFont>() : QFont());
}

QVariant fontFromText(const QString &text)
{
    return WidgetLibraryPluginUtils::fieldFontFromString(text, nullptr);
}

bool fontValueFromJson(const QJsonValue &json, QVariant &value)
{
    QFont font;
    const bool ok = fontFromJson(json, font);
    value = font;
    return ok;
}

// image ----------------------------------------------------------------------------------------------------

const QLatin1String imageIsValidKey("isValid");
const QLatin1String imageValueKey("value");

QString imageToText(const QVariant &value)
{
    QString json = QLatin1String("{\"isValid\":") + jsonBool(value.isValid()) + QLatin1String(",\"value\":");
    appendJsonString(json, value.toString());
    return json + QLatin1Char('}');
}

QVariant imageFromText(const QString &text)
{
    const QJsonObject object = parseJson(text).object();
    return object.value(imageIsValidKey).toBool() ? object.value(imageValueKey).toVariant() : QVariant();
}

bool convertToImage(QVariant &value)
{
    return !value.isValid() || value.convert(QMetaType::QString);
}

const FieldTypeTraits traitsTable[] = {
    {"undefined", noText, noValue, failToConvert, nullptr, false, false, nullptr},
    {"string", stringToText, stringFromText, convertByQt<QMetaType::QString>, stringFromJson, true, false,
     "string"},
    {"stringList", stringListToText, stringListFromText, convertByQt<QMetaType::QStringList>,
     stringListFromJson, true, false, "mlStringList"},
    {"stringMap", stringMapToText, stringMapFromText, convertToStringMap, stringMapFromJson, true, false,
     "mlStringList"},
    {"integer", integerToText, integerFromText, convertToInteger, integerFromJson, false, true, "integer"},
    {"double", doubleToText, doubleFromText, convertByQt<QMetaType::Double>, doubleFromJson, false, true,
     "float"},
    {"bool", boolToText, boolFromText, convertByQt<QMetaType::Bool>, boolFromJson, false, true, "bool"},
    {"option", integerToText, integerFromText, convertToInteger, integerFromJson, false, true, "mapidx:%1"},
    {"color", colorToText, colorFromText, convertByQt<QMetaType::QColor>, colorFromJson, false, false,
     "color"},
    {"font", fontToText, fontFromText, convertToFont, fontValueFromJson, false, false, ""},
    {"image", imageToText, imageFromText, convertToImage, stringFromJson, false, false, "image"},
    {"tag", noText, noValue, convertNothing, nullptr, false, false, "datalinkOnly"},
    {"trend", noText, noValue, convertNothing, nullptr, false, false, "datalinkOnly"},
};

} // namespace

const FieldTypeTraits &fieldTypeTraits(int type)
{
    const bool isType = type >= 0 && type < static_cast<int>(std::size(traitsTable));
    return traitsTable[isType ? type : FieldTypeUndefined];
}

} // namespace INTERNAL
} // namespace KORA
