// SPDX-License-Identifier: Apache-2.0
#include <kora/core/widgetlibrarypluginutils.h>

#include <QtCore/QStringList>
#include <QtCore/QXmlStreamWriter>

#include <kora/core/fieldtypes_p.h>
#include <kora/core/metadataerror_p.h>
#include <kora/loader/studio/xmlelement_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

const struct
{
    const char *name;
    const char *label;
    const char *description;
} identityProperties[] = {
    {"krpluginLibraryId", "Plugin id", "Plugin unique id."},
    {"krpluginLibraryName", "Plugin name", "Plugin name."},
    {"krpluginLibraryVersion", "Plugin version", "Plugin version."},
    {"krpluginLibraryAuthor", "Plugin author", "Plugin author."},
    {"krpluginWidgetId", "Widget id", "Widget id."},
    {"krpluginWidgetVersion", "Widget version", "Widget version."},
};

const struct
{
    const char *suffix;
    TranslationStringType (FieldMetaInformation::*display)() const;
    const char *attributeType;
    const char *description; // after the field's display text
    bool isFamily;
} fontProperties[] = {
    {"-font-family", &FieldMetaInformation::displayFontFamily, "fontList", " font family.", true},
    {"-font-size", &FieldMetaInformation::displayFontSize, "integer", " font size.", false},
    {"-font-bold", &FieldMetaInformation::displayFontBold, "bool", " font bold.", false},
    {"-font-style", &FieldMetaInformation::displayFontStyle, "list:normal,italic", " font style.", false},
    {"-font-underline", &FieldMetaInformation::displayFontUnderline, "bool", " font underline.", false},
};

const char *trueFalse(bool flag)
{
    return flag ? "true" : "false";
}

const char *yesNo(bool flag)
{
    return flag ? "yes" : "no";
}

/// Writes the property sheets, one function per element of the document.
class PropertiesWriter
{
public:
    PropertiesWriter(const QString &pluginId, QXmlStreamWriter &writer, const QString &languageId)
        : m_pluginId(pluginId)
        , m_writer(writer)
        , m_languageId(languageId)
    {}

    int writeWidget(const WidgetMetaInformation &widget);

private:
    void writeIdentity();
    int writeField(const FieldMetaInformation &field);
    void writeFieldProperty(const FieldMetaInformation &field);
    void writeFontProperties(const FieldMetaInformation &field);
    void writeDataUpdateEvent();

    void writeAttributeType(const FieldMetaInformation &field);
    void writeRequirements(const FieldMetaInformation &field);
    void writeLayer(const FieldMetaInformation &field);
    QString optionsText(const FieldMetaInformation &field) const;
    QString translated(const TranslationStringType &text) const { return text.get(m_languageId, true); }

    const QString &m_pluginId;
    QXmlStreamWriter &m_writer;
    const QString &m_languageId;
};

int PropertiesWriter::writeWidget(const WidgetMetaInformation &widget)
{
    // No XmlElement here: the group stays open when a field is refused.
    m_writer.writeStartElement(QStringLiteral("g"));
    writeAttributes(m_writer, {
                                  {"id", QStringLiteral("custombuiltwgt_%1_%2_%3_properties")
                                             .arg(m_pluginId, widget.id(), widget.version().version())},
                                  {"inherit", "widget_properties"},
                                  {"attributeName", "CustomBuiltWgt"},
                                  {"display", "CustomBuiltWgt"},
                                  {"showChildNodes", "no"},
                              });
    writeIdentity();
    const auto fields = widget.fields();
    for (const FieldMetaInformation &field : fields) {
        if (field.isPrivate()) {
            continue;
        }
        if (const int error = writeField(field)) {
            return error;
        }
    }
    writeDataUpdateEvent();
    m_writer.writeEndElement();
    return MetaDataNoError;
}

void PropertiesWriter::writeIdentity()
{
    for (const auto &property : identityProperties) {
        const XmlElement text(m_writer, "text",
                              {
                                  {"attributeName", property.name},
                                  {"attributeType", "string"},
                                  {"display", property.label},
                                  {"read_only", "true"},
                                  {"adv", "yes"},
                                  {"attachTag", "no"},
                                  {"layer", "Plugin information"},
                              });
        m_writer.writeCharacters(QLatin1String(property.description));
    }
}

int PropertiesWriter::writeField(const FieldMetaInformation &field)
{
    if (!fieldTypeTraits(field.type()).studioAttributeType) {
        return FieldTypeNotValid;
    }
    if (field.type() != FieldTypeFont) {
        writeFieldProperty(field);
    }
    if (field.type() == FieldTypeFont || field.isMultiLanguageText()) {
        writeFontProperties(field);
    }
    return MetaDataNoError;
}

void PropertiesWriter::writeFieldProperty(const FieldMetaInformation &field)
{
    const XmlElement text(m_writer, "text",
                          {
                              {"attributeName", field.id()},
                              {"display", translated(field.display())},
                              {"read_only", trueFalse(field.readOnly())},
                              {"adv", "no"},
                              {"attachTag", yesNo(field.tagCanBeAttached())},
                          });
    writeRequirements(field);
    writeLayer(field);
    writeAttributeType(field);
    m_writer.writeCharacters(translated(field.description()));
}

void PropertiesWriter::writeFontProperties(const FieldMetaInformation &field)
{
    const QString fieldDisplay = translated(field.display());
    for (const auto &property : fontProperties) {
        const XmlElement text(m_writer, "text",
                              {
                                  {"attributeName", field.id() + QLatin1String(property.suffix)},
                                  {"display", translated((field.*property.display)())},
                                  {"read_only", trueFalse(field.readOnly())},
                                  {"adv", "no"},
                                  {"attachTag", yesNo(!property.isFamily && field.tagCanBeAttached())},
                                  {"attributeType", property.attributeType},
                              });
        if (property.isFamily) {
            writeAttributes(m_writer, {{"sort", "false"}});
        }
        writeRequirements(field);
        writeLayer(field);
        m_writer.writeCharacters(fieldDisplay + QLatin1String(property.description));
    }
}

void PropertiesWriter::writeDataUpdateEvent()
{
    const XmlElement text(m_writer, "text",
                          {
                              {"attributeName", "onDataUpdate"},
                              {"display", "OnDataUpdate Action"},
                              {"inherit", "yes"},
                              {"attributeType", "event"},
                              {"eventName", "onDataUpdate"},
                              {"childPropName", "action"},
                              {"childAttrName", "onDataUpdate.action"},
                              {"menuBtn", "yes"},
                              {"layer", "Events"},
                          });
    m_writer.writeCharacters(
        QStringLiteral("Sets the action to execute when the value of a property changed."));
}

QString tagOptionsText(const FieldMetaInformation &field)
{
    QStringList names;
    const auto types = field.tagAcceptedTypes();
    for (const TagType type : types) {
        names.append(WidgetLibraryPluginMetaInformation::tagTypeToString(type));
    }
    const QString any = QStringLiteral("tabs=tag");
    return names.isEmpty() ? any : any + QLatin1String(",tagtype=") + names.join(QLatin1Char('|'));
}

void PropertiesWriter::writeAttributeType(const FieldMetaInformation &field)
{
    QString type = QLatin1String(fieldTypeTraits(field.type()).studioAttributeType);
    if (field.type() == FieldTypeOption) {
        type = type.arg(optionsText(field));
    } else if (field.isMultiLanguageText()) {
        type = QStringLiteral("mlStringList");
    }
    writeAttributes(m_writer, {{"attributeType", type}});
    switch (field.type()) {
    case FieldTypeStringList:
    case FieldTypeStringMap:
        writeAttributes(m_writer, {{"canBeUsedAsParameter", "false"}});
        break;
    case FieldTypeTag:
        writeAttributes(m_writer, {{"attachToDlgOptions", tagOptionsText(field)}});
        break;
    case FieldTypeTrend:
        writeAttributes(m_writer, {{"attachToDlgOptions",
                                    "tabs=widgets,xforms=!*,rw=r,wgtId=this,onlyDynamicProperties"}});
        break;
    default:
        break;
    }
}

void PropertiesWriter::writeRequirements(const FieldMetaInformation &field)
{
    const QString requirements = field.requirements();
    if (!requirements.isEmpty()) {
        writeAttributes(m_writer, {{"requiredFeatures", requirements}});
    }
}

void PropertiesWriter::writeLayer(const FieldMetaInformation &field)
{
    const QString group = translated(field.group());
    if (!group.isEmpty()) {
        writeAttributes(m_writer, {{"layer", group}});
    }
}

QString PropertiesWriter::optionsText(const FieldMetaInformation &field) const
{
    QStringList texts;
    const auto options = field.options();
    for (const OptionType &option : options) {
        texts.append(QStringLiteral("%1=%2").arg(translated(option.text), QString::number(option.index)));
    }
    return texts.join(QLatin1Char(','));
}

} // namespace

int WidgetLibraryPluginUtils::studioPropertiesFromMetaInformation(
    const WidgetLibraryPluginMetaInformation &meta, QXmlStreamWriter &writer, const QString &languageId)
{
    PropertiesWriter properties(meta.id(), writer, languageId);
    for (const WidgetMetaInformation &widget : meta.widgets()) {
        if (const int error = properties.writeWidget(widget)) {
            return error;
        }
    }
    return MetaDataNoError;
}

} // namespace INTERNAL
} // namespace KORA
