// SPDX-License-Identifier: Apache-2.0
#include "fieldvaluejson.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtGui/QColor>
#include <QtGui/QFont>

#include <kora/core/widgetlibrarypluginutils.h>

#include <cmath>
#include <limits>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

using StringMap = QMap<int, QString>;

const QLatin1String fontSuffix(".font");

bool isWholeNumber(const QJsonValue &json)
{
    return json.isDouble() && std::nearbyint(json.toDouble()) == json.toDouble()
           && json.toDouble() >= std::numeric_limits<int>::min()
           && json.toDouble() <= std::numeric_limits<int>::max();
}

QJsonValue doubleToJson(double number)
{
    if (std::isfinite(number)) {
        return number;
    }
    return std::isnan(number) ? QStringLiteral("nan")
           : number > 0       ? QStringLiteral("inf")
                              : QStringLiteral("-inf");
}

bool doubleFromJson(const QJsonValue &json, QVariant &value)
{
    bool ok = json.isDouble();
    const double number = ok ? json.toDouble() : json.toString().toDouble(&ok);
    if (!ok || (json.isString() && std::isfinite(number))) {
        return false;
    }
    value = number;
    return true;
}

QJsonValue stringMapToJson(const StringMap &map)
{
    QJsonObject object;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        object.insert(QString::number(it.key()), it.value());
    }
    return object;
}

bool stringMapFromJson(const QJsonValue &json, QVariant &value)
{
    const QJsonObject object = json.toObject();
    StringMap map;
    for (auto it = object.begin(); it != object.end(); ++it) {
        bool ok = false;
        const int index = it.key().toInt(&ok);
        if (!ok || !it.value().isString()) {
            return false;
        }
        map.insert(index, it.value().toString());
    }
    value = QVariant::fromValue(map);
    return json.isObject();
}

bool stringListFromJson(const QJsonValue &json, QVariant &value)
{
    QStringList list;
    const QJsonArray array = json.toArray();
    for (const QJsonValue &item : array) {
        if (!item.isString()) {
            return false;
        }
        list.append(item.toString());
    }
    value = list;
    return json.isArray();
}

QJsonValue fontToJson(const QFont &font)
{
    return QJsonObject{{QStringLiteral("family"), font.family()},
                       {QStringLiteral("size"), font.pointSize()},
                       {QStringLiteral("bold"), font.bold()},
                       {QStringLiteral("style"), static_cast<int>(font.style())},
                       {QStringLiteral("underline"), font.underline()}};
}

bool fontFromJson(const QJsonValue &json, QVariant &value)
{
    const QJsonObject object = json.toObject();
    const QJsonValue style = object.value(QLatin1String("style"));
    const QJsonValue size = object.value(QLatin1String("size"));
    if (!object.value(QLatin1String("family")).isString() || !isWholeNumber(size) || size.toInt() < 1
        || !isWholeNumber(style) || style.toInt() < QFont::StyleNormal || style.toInt() > QFont::StyleOblique
        || !object.value(QLatin1String("bold")).isBool()
        || !object.value(QLatin1String("underline")).isBool()) {
        return false;
    }
    QFont font(object.value(QLatin1String("family")).toString(), size.toInt());
    font.setBold(object.value(QLatin1String("bold")).toBool());
    font.setStyle(static_cast<QFont::Style>(style.toInt()));
    font.setUnderline(object.value(QLatin1String("underline")).toBool());
    value = font;
    return true;
}

QJsonValue colorToJson(const QColor &color)
{
    return color.isValid() ? QJsonValue(color.name(QColor::HexArgb)) : QJsonValue();
}

bool colorFromJson(const QJsonValue &json, QVariant &value)
{
    if (!QColor::isValidColor(json.toString())) {
        return false;
    }
    value = QColor(json.toString());
    return true;
}

bool intFromJson(const QJsonValue &json, QVariant &value)
{
    value = json.toInt();
    return isWholeNumber(json);
}

/// A tag's value has no type of its own: a whole number is an int, other JSON what it is in Qt.
bool tagFromJson(const QJsonValue &json, QVariant &value)
{
    value = isWholeNumber(json) ? QVariant(json.toInt()) : json.toVariant();
    return true;
}

bool textFromJson(const QJsonValue &json, QVariant &value)
{
    value = json.toString();
    return json.isString();
}

bool boolFromJson(const QJsonValue &json, QVariant &value)
{
    value = json.toBool();
    return json.isBool();
}

struct JsonForm
{
    FieldType type;
    bool (*read)(const QJsonValue &json, QVariant &value);
    const char *expected;
};

const JsonForm jsonForms[] = {
    {FieldTypeString, textFromJson, "a text"},
    {FieldTypeStringList, stringListFromJson, "an array of texts"},
    {FieldTypeStringMap, stringMapFromJson, "an object of whole number to text"},
    {FieldTypeInteger, intFromJson, "a whole number"},
    {FieldTypeDouble, doubleFromJson, "a number, \"nan\", \"inf\" or \"-inf\""},
    {FieldTypeBool, boolFromJson, "true or false"},
    {FieldTypeOption, intFromJson, "the index of an option, a whole number"},
    {FieldTypeColor, colorFromJson, "a colour such as \"#ff336699\""},
    {FieldTypeFont, fontFromJson,
     "an object with \"family\", \"size\", \"bold\", \"style\" and \"underline\""},
    {FieldTypeImage, textFromJson, "a text"},
    {FieldTypeTag, tagFromJson, "any value"},
    {FieldTypeTrend, textFromJson, "the name of a trend"},
};

QVariant textsInLanguage(const FieldMetaInformation &field, const QString &language)
{
    const QMap<int, TranslationStringType> texts = field.defaultTexts();
    if (field.type() == FieldTypeString) {
        return texts.value(0).get(language, true);
    }
    QStringList list;
    StringMap map;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        list.append(text->get(language, true));
        map.insert(text.key(), text->get(language, true));
    }
    return field.type() == FieldTypeStringList ? QVariant(list) : QVariant::fromValue(map);
}

/// The field whose text's font @p id names; invalid if it names none.
FieldMetaInformation fieldOfFont(const WidgetMetaInformation &info, const QString &id)
{
    if (!id.endsWith(fontSuffix)) {
        return {};
    }
    const FieldMetaInformation field = info.fields().value(id.left(id.size() - fontSuffix.size()));
    return field.isMultiLanguageText() ? field : FieldMetaInformation();
}

} // namespace

QJsonValue fieldValueToJson(FieldType type, const QVariant &value)
{
    if (!value.isValid()) {
        return {};
    }
    switch (type) {
    case FieldTypeStringMap:
        return stringMapToJson(value.value<StringMap>());
    case FieldTypeDouble:
        return doubleToJson(value.toDouble());
    case FieldTypeColor:
        return colorToJson(value.value<QColor>());
    case FieldTypeFont:
        return fontToJson(value.value<QFont>());
    case FieldTypeTag:
        return value.type() == QVariant::Double ? doubleToJson(value.toDouble())
                                                : QJsonValue::fromVariant(value);
    default:
        return QJsonValue::fromVariant(value);
    }
}

bool fieldValueFromJson(FieldType type, const QJsonValue &json, QVariant &value, QString &problem)
{
    if (json.isNull()) {
        value = QVariant();
        return true;
    }
    for (const JsonForm &form : jsonForms) {
        if (form.type != type) {
            continue;
        }
        QVariant read;
        if (!form.read(json, read)) {
            problem = QStringLiteral("%1 is expected").arg(QLatin1String(form.expected));
            return false;
        }
        value = read;
        return true;
    }
    problem = QStringLiteral("the field's type is not supported");
    return false;
}

FieldType fieldTypeOf(const WidgetMetaInformation &info, const QString &id)
{
    const auto fields = info.fields();
    const auto field = fields.constFind(id);
    if (field != fields.constEnd()) {
        return field->type();
    }
    return fieldOfFont(info, id).isValid() ? FieldTypeFont : FieldTypeUndefined;
}

QVariant fieldDefault(const WidgetMetaInformation &info, const QString &id, const QString &language)
{
    const auto fields = info.fields();
    const auto field = fields.constFind(id);
    if (field == fields.constEnd()) {
        const FieldMetaInformation text = fieldOfFont(info, id);
        return text.isValid() ? QVariant(text.defaultFont()) : QVariant();
    }
    if (!field->defaultValue().isValid()) {
        return {};
    }
    const QVariant value =
        field->defaultTexts().isEmpty() ? field->defaultValue() : textsInLanguage(*field, language);
    return WidgetLibraryPluginUtils::fieldValueCheckBeforeSet(field->type(), value, id, info);
}

QVariant emptyFieldValue(FieldType type)
{
    const bool mayHaveNoValue = type == FieldTypeImage || type == FieldTypeTag || type == FieldTypeTrend;
    return mayHaveNoValue ? QVariant() : WidgetLibraryPluginUtils::fieldValueFromString(type, QString());
}

QStringList fieldIds(const WidgetMetaInformation &info)
{
    return info.fieldInfo().keys();
}

} // namespace DEV
} // namespace KORA
