// SPDX-License-Identifier: Apache-2.0
#include <kora/core/widgetmetainformation.h>
#include <kora/core/widgetmetainformation_p.h>

#include <utility>

#include <kora/core/fieldtypes_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

const QLatin1String fontSuffix(".font");

} // namespace

FieldMetaInformation::FieldMetaInformation()
    : d(new FieldMetaInformationPrivate)
{}

FieldMetaInformation::FieldMetaInformation(const QString &id, const TranslationStringType &display,
                                           const TranslationStringType &description, FieldType type,
                                           bool tagCanBeAttached, const QVariant &defaultValue, bool readOnly,
                                           const TranslationStringType &group, bool isPrivate,
                                           const QString &requirements, bool isValid)
    : FieldMetaInformation()
{
    d->isValid = isValid;
    d->id = id;
    d->display = display;
    d->description = description;
    d->type = type;
    d->tagCanBeAttached = tagCanBeAttached;
    d->defaultValue = defaultValue;
    d->readOnly = readOnly;
    d->group = group;
    d->isPrivate = isPrivate;
    d->requirements = requirements;
}

FieldMetaInformation::FieldMetaInformation(const FieldMetaInformationPrivate &data)
    : d(new FieldMetaInformationPrivate(data))
{}

FieldMetaInformation::FieldMetaInformation(FieldMetaInformationPrivate &&data)
    : d(new FieldMetaInformationPrivate(std::move(data)))
{}

FieldMetaInformation::FieldMetaInformation(const FieldMetaInformation &other) = default;
FieldMetaInformation &FieldMetaInformation::operator=(const FieldMetaInformation &other) = default;
FieldMetaInformation::~FieldMetaInformation() = default;

bool FieldMetaInformation::isValid() const
{
    return d->isValid;
}

QString FieldMetaInformation::id() const
{
    return d->id;
}

TranslationStringType FieldMetaInformation::display() const
{
    return d->display;
}

TranslationStringType FieldMetaInformation::description() const
{
    return d->description;
}

FieldType FieldMetaInformation::type() const
{
    return d->type;
}

bool FieldMetaInformation::tagCanBeAttached() const
{
    return d->tagCanBeAttached;
}

QVariant FieldMetaInformation::defaultValue() const
{
    return d->defaultValue;
}

bool FieldMetaInformation::readOnly() const
{
    return d->readOnly;
}

TranslationStringType FieldMetaInformation::group() const
{
    return d->group;
}

bool FieldMetaInformation::isPrivate() const
{
    return d->isPrivate;
}

QString FieldMetaInformation::requirements() const
{
    return d->requirements;
}

QVariant FieldMetaInformation::minimum() const
{
    return d->minimum;
}

QVariant FieldMetaInformation::maximum() const
{
    return d->maximum;
}

QFont FieldMetaInformation::defaultFont() const
{
    return d->defaultFont;
}

bool FieldMetaInformation::defaultFontSpecified() const
{
    return d->defaultFontSpecified;
}

bool FieldMetaInformation::isMultiLanguage() const
{
    return d->isMultiLanguage;
}

QVector<OptionType> FieldMetaInformation::options() const
{
    return d->options;
}

TranslationStringType FieldMetaInformation::displayFontFamily() const
{
    return d->displayFontFamily;
}

TranslationStringType FieldMetaInformation::displayFontSize() const
{
    return d->displayFontSize;
}

TranslationStringType FieldMetaInformation::displayFontBold() const
{
    return d->displayFontBold;
}

TranslationStringType FieldMetaInformation::displayFontStyle() const
{
    return d->displayFontStyle;
}

TranslationStringType FieldMetaInformation::displayFontUnderline() const
{
    return d->displayFontUnderline;
}

QVector<TagType> FieldMetaInformation::tagAcceptedTypes() const
{
    return d->tagAcceptedTypes;
}

bool FieldMetaInformation::tagOnDemand() const
{
    return d->tagOnDemand;
}

QMap<int, TranslationStringType> FieldMetaInformation::defaultTexts() const
{
    return d->defaultTexts;
}

bool FieldMetaInformation::isMultiLanguageText() const
{
    return d->isMultiLanguage && fieldTypeTraits(d->type).isText;
}

WidgetMetaInformation::WidgetMetaInformation()
    : d(new WidgetMetaInformationPrivate)
{}

WidgetMetaInformation::WidgetMetaInformation(const WidgetMetaInformationPrivate &data)
    : d(new WidgetMetaInformationPrivate(data))
{}

WidgetMetaInformation::WidgetMetaInformation(WidgetMetaInformationPrivate &&data)
    : d(new WidgetMetaInformationPrivate(std::move(data)))
{}

WidgetMetaInformation::WidgetMetaInformation(const WidgetMetaInformation &other) = default;
WidgetMetaInformation &WidgetMetaInformation::operator=(const WidgetMetaInformation &other) = default;
WidgetMetaInformation::~WidgetMetaInformation() = default;

bool WidgetMetaInformation::isValid() const
{
    return d->isValid;
}

QString WidgetMetaInformation::id() const
{
    return d->id;
}

VersionType WidgetMetaInformation::version() const
{
    return d->version;
}

TranslationStringType WidgetMetaInformation::display() const
{
    return d->display;
}

TranslationStringType WidgetMetaInformation::description() const
{
    return d->description;
}

QSizeF WidgetMetaInformation::defaultSize() const
{
    return d->defaultSize;
}

TranslationStringType WidgetMetaInformation::galleryGroupName() const
{
    return d->galleryGroupName;
}

bool WidgetMetaInformation::showInPageGallery() const
{
    return d->showInPageGallery;
}

bool WidgetMetaInformation::showInProjectGallery() const
{
    return d->showInProjectGallery;
}

bool WidgetMetaInformation::receiveAlarmsEvents() const
{
    return d->receiveAlarmsEvents;
}

QMap<QString, FieldMetaInformation> WidgetMetaInformation::fields() const
{
    return d->fields;
}

QMap<QString, FieldInfo> WidgetMetaInformation::fieldInfo() const
{
    QMap<QString, FieldInfo> table;
    for (auto field = d->fields.constBegin(); field != d->fields.constEnd(); ++field) {
        // The host owns a text that is kept per language: a widget cannot set it, but can read its font.
        const bool hostOwnsValue = field->isMultiLanguageText();
        table.insert(field.key(),
                     FieldInfo(!hostOwnsValue, true, false, field->type(), QMetaType::UnknownType));
        if (hostOwnsValue) {
            table.insert(field.key() + fontSuffix,
                         FieldInfo(false, true, true, field->type(), QMetaType::QFont));
        }
    }
    return table;
}

} // namespace INTERNAL
} // namespace KORA
