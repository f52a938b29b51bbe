// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fontparts.h>

#include <QtCore/QCoreApplication>

namespace KORA {
namespace DEV {

namespace {

using INTERNAL::FieldMetaInformation;
using INTERNAL::TranslationStringType;

const int largestFontSize = 999;
const int boldFrom = 58; // as in a font's text form

// All that varies by part.
struct PartRow
{
    FontPart part;
    const char *name;
    const char *label;
    INTERNAL::FieldType type;
    TranslationStringType (FieldMetaInformation::*fieldLabel)() const;
    QVariant (*get)(const QFont &font);
    void (*set)(QFont &font, const QVariant &value);
};

const PartRow partTable[] = {
    {FontPart::Family, "Family", QT_TRANSLATE_NOOP("KORA::DEV::FontPart", "Family"),
     INTERNAL::FieldTypeOption, &FieldMetaInformation::displayFontFamily,
     [](const QFont &font) { return QVariant(font.family()); },
     [](QFont &font, const QVariant &value) { font.setFamily(value.toString()); }},
    {FontPart::Size, "Size", QT_TRANSLATE_NOOP("KORA::DEV::FontPart", "Size"), INTERNAL::FieldTypeInteger,
     &FieldMetaInformation::displayFontSize, [](const QFont &font) { return QVariant(font.pointSize()); },
     [](QFont &font, const QVariant &value) {
         font.setPointSize(qBound(1, value.toInt(), largestFontSize));
     }},
    {FontPart::Bold, "Bold", QT_TRANSLATE_NOOP("KORA::DEV::FontPart", "Bold"), INTERNAL::FieldTypeBool,
     &FieldMetaInformation::displayFontBold,
     [](const QFont &font) { return QVariant(font.weight() >= boldFrom); },
     [](QFont &font, const QVariant &value) { font.setBold(value.toBool()); }},
    {FontPart::Style, "Style", QT_TRANSLATE_NOOP("KORA::DEV::FontPart", "Style"), INTERNAL::FieldTypeOption,
     &FieldMetaInformation::displayFontStyle,
     [](const QFont &font) { return QVariant(font.style() == QFont::StyleItalic); },
     [](QFont &font, const QVariant &value) { font.setItalic(value.toBool()); }},
    {FontPart::Underline, "Underline", QT_TRANSLATE_NOOP("KORA::DEV::FontPart", "Underline"),
     INTERNAL::FieldTypeBool, &FieldMetaInformation::displayFontUnderline,
     [](const QFont &font) { return QVariant(font.underline()); },
     [](QFont &font, const QVariant &value) { font.setUnderline(value.toBool()); }},
};

const PartRow &rowOf(FontPart part)
{
    return partTable[static_cast<int>(part)];
}

} // namespace

QVariant fontPart(const QFont &font, FontPart part)
{
    return rowOf(part).get(font);
}

void setFontPart(QFont &font, FontPart part, const QVariant &value)
{
    rowOf(part).set(font, value);
}

QString fontPartName(FontPart part)
{
    return QLatin1String(rowOf(part).name);
}

QString fontPartLabel(FontPart part, const FieldMetaInformation &field, const QString &language)
{
    const QString label = (field.*rowOf(part).fieldLabel)().get(language, true);
    return label.isEmpty() ? QCoreApplication::translate("KORA::DEV::FontPart", rowOf(part).label) : label;
}

FieldEditorContext fontPartContext(FontPart part)
{
    FieldEditorContext context;
    context.type = rowOf(part).type;
    if (part == FontPart::Family) {
        for (const char *family :
             {"Roboto", "Roboto Black", "Roboto Light", "Roboto Medium", "Roboto Thin"}) {
            context.choices.append({QLatin1String(family), QLatin1String(family)});
        }
    } else if (part == FontPart::Style) {
        context.choices = {{false, QCoreApplication::translate("KORA::DEV::FontPart", "normal")},
                           {true, QCoreApplication::translate("KORA::DEV::FontPart", "italic")}};
    } else if (part == FontPart::Size) {
        context.minimum = 1; // no maximum: a slider is of no use here
    }
    return context;
}

} // namespace DEV
} // namespace KORA
