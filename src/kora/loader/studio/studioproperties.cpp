// SPDX-License-Identifier: Apache-2.0
#include <kora/core/widgetlibrarypluginutils.h>

#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtCore/QXmlStreamWriter>

#include <kora/core/fieldtypes_p.h>
#include <kora/core/metadataerror_p.h>
#include <kora/loader/studio/xmlelement_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

struct IdentityProperty
{
    QString name;
    QString label;
    QString description;
};

struct FontProperty
{
    QString suffix;
    TranslationStringType (FieldMetaInformation::*display)() const;
    QString attributeType;
    QString description; // after the field's display text
    bool isFamily;
};

const QVector<IdentityProperty> &identityProperties()
{
    static const QVector<IdentityProperty> properties{
        {QStringLiteral("krpluginLibraryId"), QStringLiteral("Plugin id"),
         QStringLiteral("Plugin unique id.")},
        {QStringLiteral("krpluginLibraryName"), QStringLiteral("Plugin name"),
         QStringLiteral("Plugin name.")},
        {QStringLiteral("krpluginLibraryVersion"), QStringLiteral("Plugin version"),
         QStringLiteral("Plugin version.")},
        {QStringLiteral("krpluginLibraryAuthor"), QStringLiteral("Plugin author"),
         QStringLiteral("Plugin author.")},
        {QStringLiteral("krpluginWidgetId"), QStringLiteral("Widget id"), QStringLiteral("Widget id.")},
        {QStringLiteral("krpluginWidgetVersion"), QStringLiteral("Widget version"),
         QStringLiteral("Widget version.")},
    };
    return properties;
}

const QVector<FontProperty> &fontProperties()
{
    using Field = FieldMetaInformation;
    static const QVector<FontProperty> properties{
        {QStringLiteral("-font-family"), &Field::displayFontFamily, QStringLiteral("fontList"),
         QStringLiteral(" font family."), true},
        {QStringLiteral("-font-size"), &Field::displayFontSize, QStringLiteral("integer"),
         QStringLiteral(" font size."), false},
        {QStringLiteral("-font-bold"), &Field::displayFontBold, QStringLiteral("bool"),
         QStringLiteral(" font bold."), false},
        {QStringLiteral("-font-style"), &Field::displayFontStyle, QStringLiteral("list:normal,italic"),
         QStringLiteral(" font style."), false},
        {QStringLiteral("-font-underline"), &Field::displayFontUnderline, QStringLiteral("bool"),
         QStringLiteral(" font underline."), false},
    };
    return properties;
}

QString trueFalse(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

QString yesNo(bool flag)
{
    return flag ? QStringLiteral("yes") : QStringLiteral("no");
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
    writeAttributes(m_writer,
                    {
                        {QStringLiteral("id"), QStringLiteral("custombuiltwgt_%1_%2_%3_properties")
                                                   .arg(m_pluginId, widget.id(), widget.version().version())},
                        {QStringLiteral("inherit"), QStringLiteral("widget_properties")},
                        {QStringLiteral("attributeName"), QStringLiteral("CustomBuiltWgt")},
                        {QStringLiteral("display"), QStringLiteral("CustomBuiltWgt")},
                        {QStringLiteral("showChildNodes"), QStringLiteral("no")},
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
    for (const auto &property : identityProperties()) {
        const XmlElement text(m_writer, QStringLiteral("text"),
                              {
                                  {QStringLiteral("attributeName"), property.name},
                                  {QStringLiteral("attributeType"), QStringLiteral("string")},
                                  {QStringLiteral("display"), property.label},
                                  {QStringLiteral("read_only"), QStringLiteral("true")},
                                  {QStringLiteral("adv"), QStringLiteral("yes")},
                                  {QStringLiteral("attachTag"), QStringLiteral("no")},
                                  {QStringLiteral("layer"), QStringLiteral("Plugin information")},
                              });
        m_writer.writeCharacters(property.description);
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
    const XmlElement text(m_writer, QStringLiteral("text"),
                          {
                              {QStringLiteral("attributeName"), field.id()},
                              {QStringLiteral("display"), translated(field.display())},
                              {QStringLiteral("read_only"), trueFalse(field.readOnly())},
                              {QStringLiteral("adv"), QStringLiteral("no")},
                              {QStringLiteral("attachTag"), yesNo(field.tagCanBeAttached())},
                          });
    writeRequirements(field);
    writeLayer(field);
    writeAttributeType(field);
    m_writer.writeCharacters(translated(field.description()));
}

void PropertiesWriter::writeFontProperties(const FieldMetaInformation &field)
{
    const QString fieldDisplay = translated(field.display());
    for (const auto &property : fontProperties()) {
        const XmlElement text(
            m_writer, QStringLiteral("text"),
            {
                {QStringLiteral("attributeName"), field.id() + property.suffix},
                {QStringLiteral("display"), translated((field.*property.display)())},
                {QStringLiteral("read_only"), trueFalse(field.readOnly())},
                {QStringLiteral("adv"), QStringLiteral("no")},
                {QStringLiteral("attachTag"), yesNo(!property.isFamily && field.tagCanBeAttached())},
                {QStringLiteral("attributeType"), property.attributeType},
            });
        if (property.isFamily) {
            writeAttributes(m_writer, {{QStringLiteral("sort"), QStringLiteral("false")}});
        }
        writeRequirements(field);
        writeLayer(field);
        m_writer.writeCharacters(fieldDisplay + property.description);
    }
}

void PropertiesWriter::writeDataUpdateEvent()
{
    const XmlElement text(m_writer, QStringLiteral("text"),
                          {
                              {QStringLiteral("attributeName"), QStringLiteral("onDataUpdate")},
                              {QStringLiteral("display"), QStringLiteral("OnDataUpdate Action")},
                              {QStringLiteral("inherit"), QStringLiteral("yes")},
                              {QStringLiteral("attributeType"), QStringLiteral("event")},
                              {QStringLiteral("eventName"), QStringLiteral("onDataUpdate")},
                              {QStringLiteral("childPropName"), QStringLiteral("action")},
                              {QStringLiteral("childAttrName"), QStringLiteral("onDataUpdate.action")},
                              {QStringLiteral("menuBtn"), QStringLiteral("yes")},
                              {QStringLiteral("layer"), QStringLiteral("Events")},
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
    writeAttributes(m_writer, {{QStringLiteral("attributeType"), type}});
    switch (field.type()) {
    case FieldTypeStringList:
    case FieldTypeStringMap:
        writeAttributes(m_writer, {{QStringLiteral("canBeUsedAsParameter"), QStringLiteral("false")}});
        break;
    case FieldTypeTag:
        writeAttributes(m_writer, {{QStringLiteral("attachToDlgOptions"), tagOptionsText(field)}});
        break;
    case FieldTypeTrend:
        writeAttributes(m_writer,
                        {{QStringLiteral("attachToDlgOptions"),
                          QStringLiteral("tabs=widgets,xforms=!*,rw=r,wgtId=this,onlyDynamicProperties")}});
        break;
    default:
        break;
    }
}

void PropertiesWriter::writeRequirements(const FieldMetaInformation &field)
{
    const QString requirements = field.requirements();
    if (!requirements.isEmpty()) {
        writeAttributes(m_writer, {{QStringLiteral("requiredFeatures"), requirements}});
    }
}

void PropertiesWriter::writeLayer(const FieldMetaInformation &field)
{
    const QString group = translated(field.group());
    if (!group.isEmpty()) {
        writeAttributes(m_writer, {{QStringLiteral("layer"), group}});
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
