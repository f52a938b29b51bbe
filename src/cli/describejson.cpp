// SPDX-License-Identifier: Apache-2.0
#include "describe.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <kora/core/widgetlibrarypluginutils.h>

using namespace KORA::INTERNAL;

namespace {

using Model = WidgetLibraryPluginMetaInformation;
using Utils = WidgetLibraryPluginUtils;

QString key(const char *name)
{
    return QLatin1String(name);
}

QJsonValue jsonOf(const TranslationStringType &text)
{
    if (text.isEmpty()) {
        return QJsonValue::Null;
    }
    return QJsonObject{{key("text"), text.get(text.defaultLanguage, true)}, {key("comment"), text.comment()}};
}

QJsonValue jsonOf(const QSizeF &size)
{
    if (!size.isValid()) {
        return QJsonValue::Null;
    }
    return QJsonObject{{key("width"), size.width()}, {key("height"), size.height()}};
}

QJsonObject jsonOf(const QFont &font)
{
    return QJsonDocument::fromJson(Utils::fieldFontToString(font).toUtf8()).object();
}

// Numbers and booleans as such, lists, maps and fonts in the JSON of their text form, anything else as text.
QJsonValue jsonOfValue(FieldType type, const QVariant &value)
{
    if (!value.isValid()) {
        return QJsonValue::Null;
    }
    switch (type) {
    case FieldTypeInteger:
    case FieldTypeOption:
        return value.toInt();
    case FieldTypeDouble:
        return value.toDouble();
    case FieldTypeBool:
        return value.toBool();
    case FieldTypeFont:
        return jsonOf(value.value<QFont>());
    case FieldTypeStringList:
    case FieldTypeStringMap:
        return QJsonDocument::fromJson(Utils::fieldValueToString(type, value).toUtf8()).array();
    case FieldTypeImage:
        return value.toString();
    default:
        return Utils::fieldValueToString(type, value);
    }
}

QJsonArray jsonOf(const QVector<OptionType> &options)
{
    QJsonArray array;
    for (const OptionType &option : options) {
        array.append(QJsonObject{{key("index"), option.index}, {key("text"), jsonOf(option.text)}});
    }
    return array;
}

QJsonArray jsonOf(const QVector<TagType> &types)
{
    QJsonArray array;
    for (const TagType type : types) {
        array.append(Model::tagTypeToString(type));
    }
    return array;
}

// Position or index to text, of multi-language texts.
QJsonArray jsonOf(const QMap<int, TranslationStringType> &texts)
{
    QJsonArray array;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        array.append(QJsonObject{{key("index"), text.key()}, {key("text"), jsonOf(text.value())}});
    }
    return array;
}

QJsonArray jsonOf(const QList<TranslationStringType> &texts)
{
    QJsonArray array;
    for (const TranslationStringType &text : texts) {
        array.append(jsonOf(text));
    }
    return array;
}

QJsonObject jsonOf(const FieldMetaInformation &field)
{
    return {
        {key("id"), field.id()},
        {key("type"), Model::fieldTypeToString(field.type())},
        {key("display"), jsonOf(field.display())},
        {key("description"), jsonOf(field.description())},
        {key("group"), jsonOf(field.group())},
        {key("defaultValue"), jsonOfValue(field.type(), field.defaultValue())},
        {key("defaultTexts"), jsonOf(field.defaultTexts())},
        {key("minimum"), jsonOfValue(field.type(), field.minimum())},
        {key("maximum"), jsonOfValue(field.type(), field.maximum())},
        {key("options"), jsonOf(field.options())},
        {key("tagCanBeAttached"), field.tagCanBeAttached()},
        {key("tagAcceptedTypes"), jsonOf(field.tagAcceptedTypes())},
        {key("tagOnDemand"), field.tagOnDemand()},
        {key("readOnly"), field.readOnly()},
        {key("private"), field.isPrivate()},
        {key("requirements"), field.requirements()},
        {key("multiLanguage"), field.isMultiLanguage()},
        {key("defaultFont"), field.defaultFontSpecified() ? QJsonValue(jsonOf(field.defaultFont()))
                                                          : QJsonValue(QJsonValue::Null)},
        {key("displayFontFamily"), jsonOf(field.displayFontFamily())},
        {key("displayFontSize"), jsonOf(field.displayFontSize())},
        {key("displayFontBold"), jsonOf(field.displayFontBold())},
        {key("displayFontStyle"), jsonOf(field.displayFontStyle())},
        {key("displayFontUnderline"), jsonOf(field.displayFontUnderline())},
    };
}

QJsonObject jsonOf(const Model &plugin, const WidgetMetaInformation &widget)
{
    QJsonArray fields;
    const auto fieldMap = widget.fields();
    for (const FieldMetaInformation &field : fieldMap) {
        fields.append(jsonOf(field));
    }
    return {
        {key("id"), widget.id()},
        {key("version"), widget.version().version()},
        {key("latest"), isLatest(plugin, widget)},
        {key("display"), jsonOf(widget.display())},
        {key("description"), jsonOf(widget.description())},
        {key("defaultSize"), jsonOf(widget.defaultSize())},
        {key("galleryGroupName"), jsonOf(widget.galleryGroupName())},
        {key("showInPageGallery"), widget.showInPageGallery()},
        {key("showInProjectGallery"), widget.showInProjectGallery()},
        {key("receiveAlarmsEvents"), widget.receiveAlarmsEvents()},
        {key("fields"), fields},
    };
}

} // namespace

QJsonObject describeAsJson(const Model &plugin, const QString &libraryPath)
{
    QJsonArray widgets;
    for (const WidgetMetaInformation &widget : plugin.widgets()) {
        widgets.append(jsonOf(plugin, widget));
    }
    return {
        {key("formatVersion"), 1},
        {key("library"), libraryPath},
        {key("id"), plugin.id()},
        {key("version"), plugin.version().version()},
        {key("author"), plugin.author()},
        {key("name"), jsonOf(plugin.name())},
        {key("description"), jsonOf(plugin.description())},
        {key("copyright"), jsonOf(plugin.copyright())},
        {key("license"), jsonOf(plugin.license())},
        {key("defaultLanguage"), plugin.defaultLanguage()},
        {key("translation"), QJsonArray::fromStringList(plugin.translation())},
        {key("pageGalleryGroups"), jsonOf(plugin.pageWidgetsGalleryGroups())},
        {key("projectGalleryGroups"), jsonOf(plugin.projectWidgetsGalleryGroups())},
        {key("widgets"), widgets},
    };
}
