// SPDX-License-Identifier: Apache-2.0
#include <kora/core/fieldreader_p.h>

#include <QtCore/QJsonArray>

#include <algorithm>
#include <initializer_list>

#include <kora/core/fieldtypes_p.h>
#include <kora/core/jsonreading_p.h>
#include <kora/core/metatypes_p.h>
#include <kora/core/numbers_p.h>
#include <kora/core/requirementsscanner_p.h>
#include <kora/core/translatablestringlist_p.h>
#include <kora/core/widgetlibrarypluginutils.h>

namespace KORA {
namespace INTERNAL {

namespace {

const QLatin1String idKey("id");
const QLatin1String typeKey("type");
const QLatin1String displayKey("display");
const QLatin1String descriptionKey("description");
const QLatin1String tagCanBeAttachedKey("tagCanBeAttached");
const QLatin1String defaultValueKey("defaultValue");
const QLatin1String readOnlyKey("readOnly");
const QLatin1String groupKey("group");
const QLatin1String privateKey("private");
const QLatin1String requirementsKey("requirements");
const QLatin1String tagAcceptedTypesKey("tagAcceptedTypes");
const QLatin1String tagOnDemandKey("tagOnDemand");
const QLatin1String minimumKey("minimum");
const QLatin1String maximumKey("maximum");
const QLatin1String optionsKey("options");
const QLatin1String optionIndexKey("index");
const QLatin1String optionTextKey("option");
const QLatin1String multiLanguageKey("multiLanguage");
const QLatin1String defaultFontKey("defaultFont");
const QLatin1String mapIndexKey("i");
const QLatin1String mapTextKey("v");

struct TagTypeGroup
{
    QLatin1String name;
    std::initializer_list<TagType> types;
};

const TagTypeGroup tagTypeGroups[] = {
    {QLatin1String("numeric"),
     {TagTypeByte, TagTypeShort, TagTypeInt, TagTypeUByte, TagTypeUShort, TagTypeUInt, TagTypeUInt64,
      TagTypeInt64, TagTypeFloat, TagTypeDouble}},
    {QLatin1String("signednumeric"), {TagTypeByte, TagTypeShort, TagTypeInt, TagTypeInt64}},
    {QLatin1String("unsignednumeric"), {TagTypeUByte, TagTypeUShort, TagTypeUInt, TagTypeUInt64}},
    {QLatin1String("real"), {TagTypeFloat, TagTypeDouble}},
    {QLatin1String("arraynumeric"),
     {TagTypeArrayByte, TagTypeArrayShort, TagTypeArrayInt, TagTypeArrayUByte, TagTypeArrayUShort,
      TagTypeArrayUInt, TagTypeArrayUInt64, TagTypeArrayInt64, TagTypeArrayFloat, TagTypeArrayDouble}},
    {QLatin1String("arraysignednumeric"),
     {TagTypeArrayByte, TagTypeArrayShort, TagTypeArrayInt, TagTypeArrayInt64}},
    {QLatin1String("arrayunsignednumeric"),
     {TagTypeArrayUByte, TagTypeArrayUShort, TagTypeArrayUInt, TagTypeArrayUInt64}},
    {QLatin1String("arrayreal"), {TagTypeArrayFloat, TagTypeArrayDouble}},
};

// The types that a name of "tagAcceptedTypes" stands for; none for an unknown name.
QVector<TagType> tagTypesOf(const QString &name)
{
    for (const TagTypeGroup &group : tagTypeGroups) {
        if (name == group.name) {
            return group.types;
        }
    }
    const TagType type = WidgetLibraryPluginMetaInformation::tagTypeFromString(name);
    return type == TagTypeNone ? QVector<TagType>() : QVector<TagType>{type};
}

void sortUnique(QVector<TagType> &types)
{
    std::sort(types.begin(), types.end());
    types.erase(std::unique(types.begin(), types.end()), types.end());
}

} // namespace

FieldReader::FieldReader(const QJsonObject &object, const QString &pluginId, TranslatableStringList &texts)
    : m_object(object)
    , m_pluginId(pluginId)
    , m_texts(texts)
{}

int FieldReader::read(FieldMetaInformation &field)
{
    using Step = int (FieldReader::*)();
    static const Step steps[] = {
        &FieldReader::readId,
        &FieldReader::readType,
        &FieldReader::readDisplay,
        &FieldReader::readDescription,
        &FieldReader::readTagCanBeAttached,
        &FieldReader::readDefaultValue,
        &FieldReader::readReadOnly,
        &FieldReader::readGroup,
        &FieldReader::readPrivate,
        &FieldReader::readRequirements,
        &FieldReader::readTagAcceptedTypes,
        &FieldReader::readTagOnDemand,
        &FieldReader::readBounds,
        &FieldReader::readOptions,
        &FieldReader::readTypeKeys,
        &FieldReader::readDisplayFont,
    };
    for (const Step step : steps) {
        if (const int error = (this->*step)()) {
            return error;
        }
    }
    m_field.isValid = true;
    field = FieldMetaInformation(m_field);
    return MetaDataNoError;
}

int FieldReader::readId()
{
    const auto found = m_object.constFind(idKey);
    if (found == m_object.constEnd()) {
        return FieldIdNotPresent;
    }
    m_field.id = found.value().toString();
    return found.value().isString() && isIdentifierText(m_field.id) ? MetaDataNoError : FieldIdNotValid;
}

int FieldReader::readType()
{
    const auto found = m_object.constFind(typeKey);
    if (found == m_object.constEnd()) {
        return FieldTypeNotPresent;
    }
    m_field.type = WidgetLibraryPluginMetaInformation::fieldTypeFromString(found.value().toString());
    return m_field.type == FieldTypeUndefined ? FieldTypeNotValid : MetaDataNoError;
}

int FieldReader::readDisplay()
{
    const auto found = m_object.constFind(displayKey);
    if (found == m_object.constEnd()) {
        return FieldDisplayNotPresent;
    }
    return takeText(found.value(), m_field.display) ? MetaDataNoError : FieldDisplayNotValid;
}

int FieldReader::readDescription()
{
    const auto found = m_object.constFind(descriptionKey);
    const bool ok = found == m_object.constEnd() || takeText(found.value(), m_field.description);
    return ok ? MetaDataNoError : FieldDescriptionNotValid;
}

int FieldReader::readTagCanBeAttached()
{
    if (m_field.type == FieldTypeTrend && m_object.contains(tagCanBeAttachedKey)) {
        return refuse(
            "An error occurred reading field '%1': you can not specify tagCanBeAttached for trend field",
            FieldTagCanBeAttachedNotValid);
    }
    m_field.tagCanBeAttached = m_field.type == FieldTypeTag; // what such a field is there for
    if (!readOptionalFlag(m_object, tagCanBeAttachedKey, m_field.tagCanBeAttached)) {
        return FieldTagCanBeAttachedNotValid;
    }
    if (m_field.type == FieldTypeTag && !m_field.tagCanBeAttached) {
        return refuse("An error occurred reading field '%1': you can not specify tagCanBeAttached as 'false' "
                      "for tag field",
                      FieldTagCanBeAttachedNotValid);
    }
    return MetaDataNoError;
}

int FieldReader::readDefaultValue()
{
    const auto found = m_object.constFind(defaultValueKey);
    if (found == m_object.constEnd()) {
        return MetaDataNoError;
    }
    if (m_field.type == FieldTypeTag) {
        return refuse("An error occurred reading field '%1': you can not specify defaultValue for tag field",
                      FieldDefaultValueNotValid);
    }
    if (m_field.type == FieldTypeTrend) {
        return refuse(
            "An error occurred reading field '%1': you can not specify defaultValue for trend field",
            FieldDefaultValueNotValid);
    }
    const FieldTypeTraits &traits = fieldTypeTraits(m_field.type);
    const bool isMultiLanguage = traits.isText && m_object.value(multiLanguageKey).toBool();
    const bool ok =
        isMultiLanguage ? readTexts(found.value()) : traits.fromJson(found.value(), m_field.defaultValue);
    return ok ? MetaDataNoError : FieldDefaultValueNotValid;
}

int FieldReader::readReadOnly()
{
    return readOptionalFlag(m_object, readOnlyKey, m_field.readOnly) ? MetaDataNoError
                                                                     : FieldReadOnlyNotValid;
}

int FieldReader::readGroup()
{
    const auto found = m_object.constFind(groupKey);
    const bool ok =
        found == m_object.constEnd() || (found.value().isString() && takeText(found.value(), m_field.group));
    return ok ? MetaDataNoError : FieldGroupNotValid;
}

int FieldReader::readPrivate()
{
    return readOptionalFlag(m_object, privateKey, m_field.isPrivate) ? MetaDataNoError : FieldPrivateNotValid;
}

int FieldReader::readRequirements()
{
    const auto found = m_object.constFind(requirementsKey);
    if (found == m_object.constEnd()) {
        return MetaDataNoError;
    }
    m_field.requirements = found.value().toString();
    QStringList fieldIds;
    return scanRequirements(m_field.requirements, fieldIds) ? MetaDataNoError : FieldRequirementsNotValid;
}

int FieldReader::readTagAcceptedTypes()
{
    const auto found = m_object.constFind(tagAcceptedTypesKey);
    if (found == m_object.constEnd()) {
        return MetaDataNoError;
    }
    if (!found.value().isArray()) {
        return FieldTagAcceptedTypesNotValid;
    }
    const QJsonArray names = found.value().toArray();
    for (const QJsonValue &name : names) {
        const QVector<TagType> types = tagTypesOf(name.toString());
        if (types.isEmpty()) {
            return FieldTagAcceptedTypesNotValid;
        }
        m_field.tagAcceptedTypes += types;
    }
    sortUnique(m_field.tagAcceptedTypes);
    return MetaDataNoError;
}

int FieldReader::readTagOnDemand()
{
    return readOptionalFlag(m_object, tagOnDemandKey, m_field.tagOnDemand) ? MetaDataNoError
                                                                           : FieldTagOnDemandNotValid;
}

int FieldReader::readBound(QLatin1String key, QVariant &bound, int code) const
{
    const auto found = m_object.constFind(key);
    const bool ok =
        found == m_object.constEnd() || fieldTypeTraits(m_field.type).fromJson(found.value(), bound);
    return ok ? MetaDataNoError : code;
}

int FieldReader::readBounds()
{
    if (m_field.type != FieldTypeInteger && m_field.type != FieldTypeDouble) {
        return MetaDataNoError;
    }
    const int error = readBound(minimumKey, m_field.minimum, FieldMinimumNotValid);
    return error ? error : readBound(maximumKey, m_field.maximum, FieldMaximumNotValid);
}

int FieldReader::readOptions()
{
    if (m_field.type != FieldTypeOption) {
        return MetaDataNoError;
    }
    const QJsonArray options = m_object.value(optionsKey).toArray();
    if (options.isEmpty()) {
        return FieldOptionsNotValid;
    }
    for (const QJsonValue &value : options) {
        const QJsonObject object = value.toObject();
        const QJsonValue text = object.value(optionTextKey);
        OptionType option;
        // The documents join the texts with "," and "=", so neither may occur in one.
        if (!jsonInteger(object.value(optionIndexKey), option.index) || !text.isString()
            || !isIdentifierText(text.toString()) || !takeText(text, option.text)) {
            return FieldOptionsNotValid;
        }
        m_field.options.append(option);
    }
    const bool defaultIsAnOption =
        std::any_of(m_field.options.cbegin(), m_field.options.cend(), [this](const OptionType &option) {
            return option.index == m_field.defaultValue.toInt();
        });
    return !m_field.defaultValue.isValid() || defaultIsAnOption ? MetaDataNoError : FieldDefaultValueNotValid;
}

int FieldReader::readTypeKeys()
{
    return fieldTypeTraits(m_field.type).isText ? readTextKeys(m_object, m_field)
           : m_field.type == FieldTypeFont      ? readFontKeys()
                                                : MetaDataNoError;
}

// The font that a font field starts with is its default value; "defaultFont" is another way to say it.
int FieldReader::readFontKeys()
{
    if (const int error = readDefaultFont(m_object, m_field)) {
        return error;
    }
    if (m_field.defaultValue.isValid()) {
        m_field.defaultFont = m_field.defaultValue.value<QFont>();
        m_field.defaultFontSpecified = true;
    } else if (m_field.defaultFontSpecified) {
        m_field.defaultValue = m_field.defaultFont;
    } else {
        m_field.defaultFont = WidgetLibraryPluginUtils::defaultFont();
    }
    return MetaDataNoError;
}

int FieldReader::readTextKeys(const QJsonObject &object, FieldMetaInformationPrivate &field)
{
    if (!WidgetLibraryPluginUtils::infoFromMetaDataParseStringFieldIsMultiLanguage(object,
                                                                                   field.isMultiLanguage)) {
        return FieldMultiLanguageNotValid;
    }
    field.defaultFont = WidgetLibraryPluginUtils::defaultFont();
    return readDefaultFont(object, field);
}

int FieldReader::readDefaultFont(const QJsonObject &object, FieldMetaInformationPrivate &field)
{
    const auto found = object.constFind(defaultFontKey);
    if (found == object.constEnd()) {
        return MetaDataNoError;
    }
    field.defaultFontSpecified = fontFromJson(found.value(), field.defaultFont);
    return field.defaultFontSpecified ? MetaDataNoError : FieldDefaultFontNotValid;
}

int FieldReader::readDisplayFont()
{
    const struct
    {
        QLatin1String key;
        TranslationStringType &text;
        MetaDataError notPresent;
        MetaDataError notValid;
    } labels[] = {
        {QLatin1String("displayFontFamily"), m_field.displayFontFamily, FieldDisplayFontFamilyNotPresent,
         FieldDisplayFontFamilyNotValid},
        {QLatin1String("displayFontSize"), m_field.displayFontSize, FieldDisplayFontSizeNotPresent,
         FieldDisplayFontSizeNotValid},
        {QLatin1String("displayFontBold"), m_field.displayFontBold, FieldDisplayFontBoldNotPresent,
         FieldDisplayFontBoldNotValid},
        {QLatin1String("displayFontStyle"), m_field.displayFontStyle, FieldDisplayFontStyleNotPresent,
         FieldDisplayFontStyleNotValid},
        {QLatin1String("displayFontUnderline"), m_field.displayFontUnderline,
         FieldDisplayFontUnderlineNotPresent, FieldDisplayFontUnderlineNotValid},
    };
    const bool isRequired =
        m_field.type == FieldTypeFont || (m_field.isMultiLanguage && fieldTypeTraits(m_field.type).isText);
    for (const auto &label : labels) {
        const auto found = m_object.constFind(label.key);
        if (found == m_object.constEnd()) {
            if (isRequired) {
                return label.notPresent;
            }
        } else if (!takeText(found.value(), label.text)) {
            return label.notValid;
        }
    }
    return MetaDataNoError;
}

int FieldReader::refuse(const char *message, int code) const
{
    logMetaDataError(m_pluginId, QString(QLatin1String(message)).arg(m_field.id));
    return code;
}

bool FieldReader::takeText(const QJsonValue &value, TranslationStringType &out)
{
    if (!readTranslatableText(value, m_texts, out)) {
        return false;
    }
    m_texts.add(out);
    return true;
}

bool FieldReader::readTextAt(int index, const QJsonValue &value)
{
    return !m_field.defaultTexts.contains(index) && takeText(value, m_field.defaultTexts[index]);
}

// A default in several languages: as in one language, but each text may be a pair [text, comment].
bool FieldReader::readTexts(const QJsonValue &value)
{
    if (m_field.type == FieldTypeString) {
        const bool ok = readTextAt(0, value);
        m_field.defaultValue = m_field.defaultTexts.value(0).get(m_texts.language(), false);
        return ok;
    }
    const bool isMap = m_field.type == FieldTypeStringMap;
    const QJsonArray array = value.toArray();
    for (int position = 0; position < array.size(); ++position) {
        const QJsonValue element = array.at(position);
        const QJsonObject entry = element.toObject();
        int index = position;
        if (isMap && !jsonInteger(entry.value(mapIndexKey), index)) {
            return false;
        }
        if (!readTextAt(index, isMap ? entry.value(mapTextKey) : element)) {
            return false;
        }
    }
    setDefaultFromTexts();
    return value.isArray();
}

void FieldReader::setDefaultFromTexts()
{
    StringMap map;
    const auto &texts = m_field.defaultTexts;
    for (auto text = texts.constBegin(); text != texts.constEnd(); ++text) {
        map.insert(text.key(), text->get(m_texts.language(), false));
    }
    m_field.defaultValue =
        m_field.type == FieldTypeStringMap ? QVariant::fromValue(map) : QVariant(QStringList(map.values()));
}

} // namespace INTERNAL
} // namespace KORA
