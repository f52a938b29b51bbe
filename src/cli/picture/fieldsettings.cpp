// SPDX-License-Identifier: Apache-2.0
#include "fieldsettings.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QColor>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/runtime/widget_p.h>

#include <algorithm>
#include <cmath>

using namespace KORA::INTERNAL;
using Utils = WidgetLibraryPluginUtils;

namespace {

const QLatin1String fontSuffix(".font");

bool isInteger(const FieldMetaInformation &, const QString &text)
{
    bool ok = false;
    (void)text.toInt(&ok);
    return ok;
}

bool isDouble(const FieldMetaInformation &, const QString &text)
{
    bool ok = false;
    return std::isfinite(text.toDouble(&ok)) && ok;
}

bool isBool(const FieldMetaInformation &, const QString &text)
{
    return text == QLatin1String("true") || text == QLatin1String("false");
}

bool isOptionIndex(const FieldMetaInformation &field, const QString &text)
{
    bool ok = false;
    const int index = text.toInt(&ok);
    const QVector<OptionType> options = field.options();
    return ok && std::any_of(options.cbegin(), options.cend(), [index](const OptionType &option) {
               return option.index == index;
           });
}

bool isColor(const FieldMetaInformation &, const QString &text)
{
    return QColor::isValidColor(text);
}

bool isStringList(const FieldMetaInformation &, const QString &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    const QJsonArray array = document.array();
    return document.isArray()
           && std::all_of(array.begin(), array.end(), [](const QJsonValue &item) { return item.isString(); });
}

bool isStringMap(const FieldMetaInformation &, const QString &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    const QJsonArray array = document.array();
    return document.isArray() && std::all_of(array.begin(), array.end(), [](const QJsonValue &item) {
               return item[QLatin1String("i")].isDouble() && item[QLatin1String("v")].isString();
           });
}

bool isImageObject(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).isObject();
}

// What the text of a field type must look like: reading itself gives a zero for a text that it cannot read.
struct TextForm
{
    FieldType type;
    bool (*accepts)(const FieldMetaInformation &field, const QString &text);
    const char *expected;
};

const TextForm textForms[] = {
    {FieldTypeStringList, isStringList, "a JSON array of texts such as [\"a\",\"b\"]"},
    {FieldTypeStringMap, isStringMap, "a JSON array such as [{\"i\":1,\"v\":\"a\"}]"},
    {FieldTypeInteger, isInteger, "a whole number"},
    {FieldTypeDouble, isDouble, "a number"},
    {FieldTypeBool, isBool, "true or false"},
    {FieldTypeOption, isOptionIndex, "one of the options"},
    {FieldTypeColor, isColor, "a colour such as #ff0000 or red"},
};

const TextForm *textFormOf(FieldType type)
{
    const auto *form = std::find_if(std::begin(textForms), std::end(textForms),
                                    [type](const TextForm &candidate) { return candidate.type == type; });
    return form == std::end(textForms) ? nullptr : form;
}

bool fontFromText(const QString &text, QVariant &value, QString &expected)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    QFont font = Utils::defaultFont();
    if (!document.isObject() || !Utils::infoFromMetaDataParseFontObject(document.object(), font)) {
        expected = QStringLiteral("a font such as {\"family\":\"Roboto\",\"size\":12,\"bold\":true}");
        return false;
    }
    value = font;
    return true;
}

QVariant tagValueFromText(const QString &text)
{
    if (text == QLatin1String("true") || text == QLatin1String("false")) {
        return text == QLatin1String("true");
    }
    bool ok = false;
    const int integer = text.toInt(&ok);
    if (ok) {
        return integer;
    }
    const double number = text.toDouble(&ok);
    return ok ? QVariant(number) : QVariant(text);
}

// An option may be given by its text too.
QString optionIndexText(const FieldMetaInformation &field, const QString &text)
{
    const QVector<OptionType> options = field.options();
    for (const OptionType &option : options) {
        if (option.text.get(option.text.defaultLanguage, false) == text) {
            return QString::number(option.index);
        }
    }
    return text;
}

bool valueFromText(const FieldMetaInformation &field, const QString &given, QVariant &value,
                   QString &expected)
{
    const FieldType type = field.type();
    if (type == FieldTypeFont) {
        return fontFromText(given, value, expected);
    }
    if (type == FieldTypeTag || type == FieldTypeTrend) {
        value = type == FieldTypeTag ? tagValueFromText(given) : QVariant(given);
        return true;
    }
    if (type == FieldTypeImage && !isImageObject(given)) {
        value = given;
        return true;
    }
    const QString text = type == FieldTypeOption ? optionIndexText(field, given) : given;
    const TextForm *form = textFormOf(type);
    if (form && !form->accepts(field, text)) {
        expected = QLatin1String(form->expected);
        return false;
    }
    value = Utils::fieldValueFromString(type, text);
    return true;
}

bool valueOfSetting(const WidgetMetaInformation &widget, const FieldSetting &setting, QVariant &value,
                    QString &expected)
{
    const auto fields = widget.fields();
    const bool isFontOfText = !fields.contains(setting.fieldId) && setting.fieldId.endsWith(fontSuffix);
    return isFontOfText ? fontFromText(setting.text, value, expected)
                        : valueFromText(fields.value(setting.fieldId), setting.text, value, expected);
}

QVariant withinBounds(const WidgetMetaInformation &widget, const FieldSetting &setting, const QVariant &given,
                      QStringList &remarks)
{
    const FieldType type = widget.fields().value(setting.fieldId).type();
    const QVariant value = Utils::fieldValueCheckBeforeSet(type, given, setting.fieldId, widget);
    const bool isNumber = type == FieldTypeInteger || type == FieldTypeDouble;
    if (isNumber && value != given) {
        remarks.append(QStringLiteral("field %1: %2 is outside its bounds, %3 is set")
                           .arg(setting.fieldId, setting.text, Utils::fieldValueToString(type, value)));
    }
    return value;
}

} // namespace

bool readFieldSetting(const QString &argument, FieldSetting &setting)
{
    const int end = argument.indexOf(QLatin1Char('='));
    if (end <= 0) {
        return false;
    }
    setting = {argument.left(end), argument.mid(end + 1)};
    return true;
}

bool hasField(const WidgetMetaInformation &widget, const QString &fieldId)
{
    return widget.fieldInfo().contains(fieldId);
}

bool valuesOfSettings(const WidgetMetaInformation &widget, const QList<FieldSetting> &settings,
                      QList<FieldValue> &values, QStringList &remarks, QString &problem)
{
    for (const FieldSetting &setting : settings) {
        if (!hasField(widget, setting.fieldId)) {
            continue;
        }
        QVariant given;
        if (!valueOfSetting(widget, setting, given, problem)) {
            problem = QStringLiteral("field %1: \"%2\" is no value for it, %3 is expected")
                          .arg(setting.fieldId, setting.text, problem);
            return false;
        }
        values.append({setting.fieldId, withinBounds(widget, setting, given, remarks)});
    }
    return true;
}

void setDefaultValues(KORA::WidgetPrivate *widget, const WidgetMetaInformation &info, const QString &language)
{
    const QStringList ids = KORA::DEV::fieldIds(info);
    for (const QString &id : ids) {
        const QVariant value = KORA::DEV::fieldDefault(info, id, language);
        if (value.isValid()) {
            widget->setFieldValue(id, value, true, true);
        }
    }
}
