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

// In the order of FieldReader::Key.
const QLatin1String keyNames[] = {
    QLatin1String("id"),
    QLatin1String("type"),
    QLatin1String("display"),
    QLatin1String("description"),
    QLatin1String("tagCanBeAttached"),
    QLatin1String("defaultValue"),
    QLatin1String("readOnly"),
    QLatin1String("group"),
    QLatin1String("private"),
    QLatin1String("requirements"),
    QLatin1String("tagAcceptedTypes"),
    QLatin1String("tagOnDemand"),
    QLatin1String("minimum"),
    QLatin1String("maximum"),
    QLatin1String("options"),
    QLatin1String("multiLanguage"),
    QLatin1String("defaultFont"),
    QLatin1String("displayFontFamily"),
    QLatin1String("displayFontSize"),
    QLatin1String("displayFontBold"),
    QLatin1String("displayFontStyle"),
    QLatin1String("displayFontUnderline"),
};

const QLatin1String optionIndexKey("index");
const QLatin1String optionTextKey("option");
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
    : m_members(membersOf(object))
    , m_pluginId(pluginId)
    , m_texts(texts)
{}

FieldReader::Members FieldReader::membersOf(const QJsonObject &object)
{
    static_assert(std::size(keyNames) == KeyCount);
    return {object, keyNames};
}

int FieldReader::read()
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
    return MetaDataNoError;
}

int FieldReader::readId()
{
    const QJsonValue found = value(Id);
    if (found.isUndefined()) {
        return FieldIdNotPresent;
    }
    m_field.id = found.toString();
    return found.isString() && isIdentifierText(m_field.id) ? MetaDataNoError : FieldIdNotValid;
}

int FieldReader::readType()
{
    const QJsonValue found = value(Type);
    if (found.isUndefined()) {
        return FieldTypeNotPresent;
    }
    m_field.type = WidgetLibraryPluginMetaInformation::fieldTypeFromString(found.toString());
    return m_field.type == FieldTypeUndefined ? FieldTypeNotValid : MetaDataNoError;
}

int FieldReader::readDisplay()
{
    const QJsonValue found = value(Display);
    if (found.isUndefined()) {
        return FieldDisplayNotPresent;
    }
    return takeText(found, m_field.display) ? MetaDataNoError : FieldDisplayNotValid;
}

int FieldReader::readDescription()
{
    const QJsonValue found = value(Description);
    const bool ok = found.isUndefined() || takeText(found, m_field.description);
    return ok ? MetaDataNoError : FieldDescriptionNotValid;
}

int FieldReader::readTagCanBeAttached()
{
    if (m_field.type == FieldTypeTrend && !value(TagCanBeAttached).isUndefined()) {
        return refuse(
            "An error occurred reading field '%1': you can not specify tagCanBeAttached for trend field",
            FieldTagCanBeAttachedNotValid);
    }
    m_field.tagCanBeAttached = m_field.type == FieldTypeTag; // what such a field is there for
    if (!readOptionalFlag(value(TagCanBeAttached), m_field.tagCanBeAttached)) {
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
    const QJsonValue found = value(DefaultValue);
    if (found.isUndefined()) {
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
    const bool isMultiLanguage = traits.isText && value(MultiLanguage).toBool();
    const bool ok = isMultiLanguage ? readTexts(found) : traits.fromJson(found, m_field.defaultValue);
    return ok ? MetaDataNoError : FieldDefaultValueNotValid;
}

int FieldReader::readReadOnly()
{
    return readOptionalFlag(value(ReadOnly), m_field.readOnly) ? MetaDataNoError : FieldReadOnlyNotValid;
}

int FieldReader::readGroup()
{
    const QJsonValue found = value(Group);
    const bool ok = found.isUndefined() || (found.isString() && takeText(found, m_field.group));
    return ok ? MetaDataNoError : FieldGroupNotValid;
}

int FieldReader::readPrivate()
{
    return readOptionalFlag(value(Private), m_field.isPrivate) ? MetaDataNoError : FieldPrivateNotValid;
}

int FieldReader::readRequirements()
{
    const QJsonValue found = value(Requirements);
    if (found.isUndefined()) {
        return MetaDataNoError;
    }
    m_field.requirements = found.toString();
    return isRequirementsText(m_field.requirements) ? MetaDataNoError : FieldRequirementsNotValid;
}

int FieldReader::readTagAcceptedTypes()
{
    const QJsonValue found = value(TagAcceptedTypes);
    if (found.isUndefined()) {
        return MetaDataNoError;
    }
    if (!found.isArray()) {
        return FieldTagAcceptedTypesNotValid;
    }
    const QJsonArray names = found.toArray();
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
    return readOptionalFlag(value(TagOnDemand), m_field.tagOnDemand) ? MetaDataNoError
                                                                     : FieldTagOnDemandNotValid;
}

int FieldReader::readBound(const QJsonValue &value, QVariant &bound, int code) const
{
    const bool ok = value.isUndefined() || fieldTypeTraits(m_field.type).fromJson(value, bound);
    return ok ? MetaDataNoError : code;
}

int FieldReader::readBounds()
{
    if (m_field.type != FieldTypeInteger && m_field.type != FieldTypeDouble) {
        return MetaDataNoError;
    }
    const int error = readBound(value(Minimum), m_field.minimum, FieldMinimumNotValid);
    return error ? error : readBound(value(Maximum), m_field.maximum, FieldMaximumNotValid);
}

int FieldReader::readOptions()
{
    if (m_field.type != FieldTypeOption) {
        return MetaDataNoError;
    }
    const QJsonArray options = value(Options).toArray();
    if (options.isEmpty()) {
        return FieldOptionsNotValid;
    }
    for (const QJsonValue &element : options) {
        const QJsonObject object = element.toObject();
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
    return fieldTypeTraits(m_field.type).isText ? readTextKeys(m_members, m_field)
           : m_field.type == FieldTypeFont      ? readFontKeys()
                                                : MetaDataNoError;
}

// The font that a font field starts with is its default value; "defaultFont" is another way to say it.
int FieldReader::readFontKeys()
{
    if (const int error = readDefaultFont(value(DefaultFont), m_field)) {
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
    return readTextKeys(membersOf(object), field);
}

int FieldReader::readTextKeys(const Members &members, FieldMetaInformationPrivate &field)
{
    bool isMultiLanguage = false;
    if (!readOptionalFlag(members.value(MultiLanguage), isMultiLanguage)) {
        return FieldMultiLanguageNotValid;
    }
    field.isMultiLanguage = isMultiLanguage;
    field.defaultFont = WidgetLibraryPluginUtils::defaultFont();
    return readDefaultFont(members.value(DefaultFont), field);
}

int FieldReader::readDefaultFont(const QJsonValue &value, FieldMetaInformationPrivate &field)
{
    if (value.isUndefined()) {
        return MetaDataNoError;
    }
    field.defaultFontSpecified = fontFromJson(value, field.defaultFont);
    return field.defaultFontSpecified ? MetaDataNoError : FieldDefaultFontNotValid;
}

int FieldReader::readDisplayFont()
{
    const struct
    {
        Key key;
        TranslationStringType &text;
        MetaDataError notPresent;
        MetaDataError notValid;
    } labels[] = {
        {DisplayFontFamily, m_field.displayFontFamily, FieldDisplayFontFamilyNotPresent,
         FieldDisplayFontFamilyNotValid},
        {DisplayFontSize, m_field.displayFontSize, FieldDisplayFontSizeNotPresent,
         FieldDisplayFontSizeNotValid},
        {DisplayFontBold, m_field.displayFontBold, FieldDisplayFontBoldNotPresent,
         FieldDisplayFontBoldNotValid},
        {DisplayFontStyle, m_field.displayFontStyle, FieldDisplayFontStyleNotPresent,
         FieldDisplayFontStyleNotValid},
        {DisplayFontUnderline, m_field.displayFontUnderline, FieldDisplayFontUnderlineNotPresent,
         FieldDisplayFontUnderlineNotValid},
    };
    const bool isRequired =
        m_field.type == FieldTypeFont || (m_field.isMultiLanguage && fieldTypeTraits(m_field.type).isText);
    for (const auto &label : labels) {
        const QJsonValue found = value(label.key);
        if (found.isUndefined()) {
            if (isRequired) {
                return label.notPresent;
            }
        } else if (!takeText(found, label.text)) {
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
    return readTranslatableText(value, m_texts, out);
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
