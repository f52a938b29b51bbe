// SPDX-License-Identifier: Apache-2.0
#include <kora/core/widgetlibrarypluginutils.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <iterator>

#include <kora/core/fieldreader_p.h>
#include <kora/core/jsonreading_p.h>
#include <kora/core/metadataerror_p.h>
#include <kora/core/pluginutils.h>
#include <kora/core/requirementsscanner_p.h>
#include <kora/core/translatablestringlist_p.h>
#include <kora/core/widgetmetainformation_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

const QLatin1String widgetsKey("widgets");
const QLatin1String idKey("id");
const QLatin1String versionKey("version");
const QLatin1String displayKey("display");
const QLatin1String descriptionKey("description");
const QLatin1String defaultSizeKey("defaultSize");
const QLatin1String galleryGroupNameKey("galleryGroupName");
const QLatin1String showInPageGalleryKey("showInPageGallery");
const QLatin1String showInProjectGalleryKey("showInProjectGallery");
const QLatin1String receiveAlarmsEventsKey("receiveAlarmsEvents");
const QLatin1String fieldsKey("fields");
const QLatin1String multiLanguageKey("multiLanguage");

const char *const errorTexts[] = {
    "MetaData/widgets attribute is not valid",
    "MetaData/widgets/id attribute is not present",
    "MetaData/widgets/id attribute is not valid",
    "MetaData/widgets/display attribute is not valid",
    "MetaData/widgets/description attribute is not valid",
    "MetaData/widgets/version attribute is not present",
    "MetaData/widgets/version attribute is not valid",
    "MetaData/widgets/defaultSize attribute is not valid",
    "MetaData/widgets/galleryGroupName attribute is not valid",
    "MetaData/widgets/showInPageGallery attribute is not valid",
    "MetaData/widgets/showInProjectGallery attribute is not valid",
    "MetaData/widgets/receiveAlarmsEvents attribute is not valid",
    "MetaData/widgets/fields attribute is not valid",
    "MetaData/widgets/fields/id attribute is not present",
    "MetaData/widgets/fields/id attribute is not valid",
    "MetaData/widgets/fields/display attribute is not present",
    "MetaData/widgets/fields/display attribute is not valid",
    "MetaData/widgets/fields/displayFontFamily attribute is not present",
    "MetaData/widgets/fields/displayFontFamily attribute is not valid",
    "MetaData/widgets/fields/displayFontSize attribute is not present",
    "MetaData/widgets/fields/displayFontSize attribute is not valid",
    "MetaData/widgets/fields/displayFontBold attribute is not present",
    "MetaData/widgets/fields/displayFontBold attribute is not valid",
    "MetaData/widgets/fields/displayFontStyle attribute is not present",
    "MetaData/widgets/fields/displayFontStyle attribute is not valid",
    "MetaData/widgets/fields/displayFontUnderline attribute is not present",
    "MetaData/widgets/fields/displayFontUnderline attribute is not valid",
    "MetaData/widgets/fields/description attribute is not valid",
    "MetaData/widgets/fields/type attribute is not present",
    "MetaData/widgets/fields/type attribute is not valid",
    "MetaData/widgets/fields/tagCanBeAttached attribute is not valid",
    "MetaData/widgets/fields/defaultValue attribute is not valid",
    "MetaData/widgets/fields/readOnly attribute is not valid",
    "MetaData/widgets/fields/group attribute is not valid",
    "MetaData/widgets/fields/minimum attribute is not valid",
    "MetaData/widgets/fields/maximum attribute is not valid",
    "MetaData/widgets/fields/options attribute is not valid",
    "MetaData/widgets/fields/private attribute is not valid",
    "MetaData/widgets/fields/requirements attribute is not valid",
    "MetaData/widgets/fields/defaultFont attribute is not valid",
    "MetaData/widgets/fields/multiLanguage attribute is not valid",
    "MetaData/widgets/fields/tagAcceptedTypes attribute is not valid",
    "MetaData/widgets/fields/tagOnDemand} is not valid", // as hosts know it, stray brace included
};

/// Reads one element of "widgets", key by key; each step returns 0 or its code.
class WidgetReader
{
public:
    WidgetReader(const QJsonObject &object, const QString &pluginId, TranslatableStringList &texts)
        : m_object(object)
        , m_pluginId(pluginId)
        , m_texts(texts)
    {}

    int read(WidgetMetaInformation &widget);

private:
    int readId();
    int readVersion();
    int readTexts();
    int readDefaultSize();
    int readGalleryGroupName();
    int readFlags();
    int readFields();
    int checkRequirements();

    bool readOptionalText(QLatin1String key, TranslationStringType &out);
    bool canBeRequired(const QString &fieldId) const;

    const QJsonObject &m_object;
    const QString &m_pluginId;
    TranslatableStringList &m_texts;
    WidgetMetaInformationPrivate m_widget;
};

int WidgetReader::read(WidgetMetaInformation &widget)
{
    using Step = int (WidgetReader::*)();
    static const Step steps[] = {
        &WidgetReader::readId,          &WidgetReader::readVersion,          &WidgetReader::readTexts,
        &WidgetReader::readDefaultSize, &WidgetReader::readGalleryGroupName, &WidgetReader::readFlags,
        &WidgetReader::readFields,      &WidgetReader::checkRequirements,
    };
    for (const Step step : steps) {
        if (const int error = (this->*step)()) {
            return error;
        }
    }
    m_widget.isValid = true;
    widget = WidgetMetaInformation(std::move(m_widget));
    return MetaDataNoError;
}

int WidgetReader::readId()
{
    const auto found = m_object.constFind(idKey);
    if (found == m_object.constEnd()) {
        return WidgetIdNotPresent;
    }
    m_widget.id = found.value().toString();
    return !m_widget.id.isEmpty() && isIdentifierText(m_widget.id) ? MetaDataNoError : WidgetIdNotValid;
}

int WidgetReader::readVersion()
{
    const auto found = m_object.constFind(versionKey);
    if (found == m_object.constEnd()) {
        return WidgetVersionNotPresent;
    }
    m_widget.version = VersionType(found.value().toString());
    return m_widget.version.isValid() ? MetaDataNoError : WidgetVersionNotValid;
}

int WidgetReader::readTexts()
{
    if (!readOptionalText(displayKey, m_widget.display)) {
        return WidgetDisplayNotValid;
    }
    return readOptionalText(descriptionKey, m_widget.description) ? MetaDataNoError
                                                                  : WidgetDescriptionNotValid;
}

int WidgetReader::readDefaultSize()
{
    const auto found = m_object.constFind(defaultSizeKey);
    const bool ok =
        found == m_object.constEnd()
        || WidgetLibraryPluginUtils::convertStringTo(found.value().toString(), m_widget.defaultSize);
    return ok ? MetaDataNoError : WidgetDefaultSizeNotValid;
}

int WidgetReader::readGalleryGroupName()
{
    return readOptionalText(galleryGroupNameKey, m_widget.galleryGroupName) ? MetaDataNoError
                                                                            : WidgetGalleryGroupNameNotValid;
}

int WidgetReader::readFlags()
{
    if (!readOptionalFlag(m_object.value(showInPageGalleryKey), m_widget.showInPageGallery)) {
        return WidgetShowInPageGalleryNotValid;
    }
    if (!readOptionalFlag(m_object.value(showInProjectGalleryKey), m_widget.showInProjectGallery)) {
        return WidgetShowInProjectGalleryNotValid;
    }
    return readOptionalFlag(m_object.value(receiveAlarmsEventsKey), m_widget.receiveAlarmsEvents)
               ? MetaDataNoError
               : WidgetReceiveAlarmsEventsNotValid;
}

int WidgetReader::readFields()
{
    const auto found = m_object.constFind(fieldsKey);
    if (found == m_object.constEnd()) {
        return MetaDataNoError;
    }
    if (!found.value().isArray()) {
        return FieldsNotValid;
    }
    const QJsonArray fields = found.value().toArray();
    for (const QJsonValue &value : fields) {
        if (!value.isObject()) {
            return FieldsNotValid;
        }
        FieldReader reader(value.toObject(), m_pluginId, m_texts);
        if (const int error = reader.read()) {
            return error;
        }
        const FieldMetaInformation field = reader.takeField();
        m_widget.fields.insert(field.id(), field);
    }
    return MetaDataNoError;
}

int WidgetReader::checkRequirements()
{
    for (const FieldMetaInformation &field : qAsConst(m_widget.fields)) {
        QStringList fieldIds;
        scanRequirements(field.requirements(), fieldIds); // an empty text names none, others are valid by now
        for (const QString &fieldId : qAsConst(fieldIds)) {
            if (!canBeRequired(fieldId)) {
                return FieldRequirementsNotValid;
            }
        }
    }
    return MetaDataNoError;
}

bool WidgetReader::readOptionalText(QLatin1String key, TranslationStringType &out)
{
    const auto found = m_object.constFind(key);
    return found == m_object.constEnd() || readTranslatableText(found.value(), m_texts, out);
}

bool WidgetReader::canBeRequired(const QString &fieldId) const
{
    const auto field = m_widget.fields.constFind(fieldId);
    return field != m_widget.fields.constEnd()
           && WidgetLibraryPluginMetaInformation::fieldTypeCanBeUsedInARequirementsExpression(field->type());
}

int readWidget(const QJsonValue &value, const QString &pluginId, TranslatableStringList &texts,
               WidgetMetaInformation &widget)
{
    if (!value.isObject()) {
        return WidgetsNotValid;
    }
    const QJsonObject object = value.toObject();
    return WidgetReader(object, pluginId, texts).read(widget);
}

int readWidgets(const QJsonObject &metaData, const QString &pluginId, TranslatableStringList &texts,
                WidgetLibraryPluginMetaInformation::WidgetMap &widgets)
{
    const auto found = metaData.constFind(widgetsKey);
    if (found == metaData.constEnd()) {
        return MetaDataNoError;
    }
    if (!found.value().isArray()) {
        logMetaDataError(pluginId, QStringLiteral("The 'widgets' item must be an array"));
        return WidgetsNotValid;
    }
    const QJsonArray array = found.value().toArray();
    for (int i = 0; i < array.size(); ++i) {
        WidgetMetaInformation widget;
        if (const int error = readWidget(array.at(i), pluginId, texts, widget)) {
            logMetaDataError(pluginId,
                             QStringLiteral("An error occurred reading the widget at index %1").arg(i));
            return error;
        }
        widgets.insert({widget.id(), widget.version().version()}, widget);
    }
    return MetaDataNoError;
}

} // namespace

int WidgetLibraryPluginUtils::metaInformationFromMetaData(const QJsonObject &pluginMetaData,
                                                          WidgetLibraryPluginMetaInformation &info)
{
    // The generic part stays in the record when a widget is refused: callers can say whose it was.
    QJsonObject metaData;
    QList<TranslationStringType> translations;
    if (const int error =
            PluginUtils::metaInformationFromMetaData(pluginMetaData, info, metaData, translations)) {
        return error;
    }
    TranslatableStringList texts(translations, info.defaultLanguage());
    WidgetLibraryPluginMetaInformation::WidgetMap widgets;
    if (const int error = readWidgets(metaData, info.id(), texts, widgets)) {
        return error;
    }
    info.init(widgets);
    return MetaDataNoError;
}

int WidgetLibraryPluginUtils::infoFromMetaDataParseWidget(const QJsonValue &value,
                                                          WidgetMetaInformation &widget,
                                                          const QString &pluginId,
                                                          const QString &defaultLanguage,
                                                          QList<TranslationStringType> &translations)
{
    TranslatableStringList texts(translations, defaultLanguage);
    return readWidget(value, pluginId, texts, widget);
}

int WidgetLibraryPluginUtils::infoFromMetaDataParseField(const QJsonValue &value, FieldMetaInformation &field,
                                                         const QString &pluginId,
                                                         const QString &defaultLanguage,
                                                         QList<TranslationStringType> &translations)
{
    if (!value.isObject()) {
        return FieldsNotValid;
    }
    TranslatableStringList texts(translations, defaultLanguage);
    FieldReader reader(value.toObject(), pluginId, texts);
    const int error = reader.read();
    if (error == MetaDataNoError) {
        field = reader.takeField();
    }
    return error;
}

int WidgetLibraryPluginUtils::infoFromMetaDataParseStringFieldCommon(const QJsonObject &object,
                                                                     FieldMetaInformation &field)
{
    FieldMetaInformationPrivate data = *field.d;
    if (const int error = FieldReader::readTextKeys(object, data)) {
        return error;
    }
    field = FieldMetaInformation(data);
    return MetaDataNoError;
}

bool WidgetLibraryPluginUtils::infoFromMetaDataParseStringFieldIsMultiLanguage(const QJsonObject &object,
                                                                               bool &multiLanguage)
{
    bool flag = false;
    if (!readOptionalFlag(object.value(multiLanguageKey), flag)) {
        return false;
    }
    multiLanguage = flag;
    return true;
}

QString WidgetLibraryPluginUtils::errorToString(int code)
{
    const int index = code - WidgetsNotValid;
    if (index < 0 || index >= static_cast<int>(std::size(errorTexts))) {
        return PluginUtils::errorToString(code);
    }
    return QLatin1String(errorTexts[index]);
}

} // namespace INTERNAL
} // namespace KORA
