// SPDX-License-Identifier: Apache-2.0
#include <kora/core/widgetlibrarypluginutils.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

#include <kora/core/fieldtypes_p.h>
#include <kora/core/jsontext_p.h>
#include <kora/core/numbers_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

const QLatin1String familyKey("family");
const QLatin1String sizeKey("size");
const QLatin1String boldKey("bold");
const QLatin1String styleKey("style");
const QLatin1String underlineKey("underline");

const QLatin1String normalStyle("normal");
const QLatin1String italicStyle("italic");

constexpr int defaultPointSize = 10;
constexpr int leastBoldWeight = 58;

// Qt prints a warning for a size of 0 or less and leaves the font as it is.
void setPointSize(QFont &font, int size)
{
    if (size > 0) {
        font.setPointSize(size);
    }
}

void setBold(QFont &font, bool bold)
{
    font.setWeight(bold ? QFont::Bold : QFont::Normal);
}

void setItalic(QFont &font, bool italic)
{
    font.setStyle(italic ? QFont::StyleItalic : QFont::StyleNormal);
}

bool passesStrictFontCheck(const QJsonObject &object)
{
    return object.value(familyKey).isString() && object.value(sizeKey).isDouble()
           && object.value(boldKey).isDouble() && object.value(styleKey).isString()
           && object.value(underlineKey).isDouble();
}

bool readFamily(const QJsonValue &value, QFont &font)
{
    if (!WidgetLibraryPluginUtils::fontFamilyIsValid(value.toString())) {
        return false;
    }
    font.setFamily(value.toString());
    return true;
}

bool readSize(const QJsonValue &value, QFont &font)
{
    int size = 0;
    if (!jsonInteger(value, size) || size <= 0) {
        return false;
    }
    font.setPointSize(size);
    return true;
}

bool readBold(const QJsonValue &value, QFont &font)
{
    setBold(font, value.toBool());
    return value.isBool();
}

bool readStyle(const QJsonValue &value, QFont &font)
{
    const QString style = value.toString();
    setItalic(font, style == italicStyle);
    return style == normalStyle || style == italicStyle;
}

bool readUnderline(const QJsonValue &value, QFont &font)
{
    font.setUnderline(value.toBool());
    return value.isBool();
}

} // namespace

bool fontFromJson(const QJsonValue &json, QFont &font)
{
    return json.isObject()
           && WidgetLibraryPluginUtils::infoFromMetaDataParseFontObject(json.toObject(), font);
}

QString WidgetLibraryPluginUtils::fieldValueToString(int fieldType, const QVariant &value)
{
    return fieldTypeTraits(fieldType).toText(value);
}

QVariant WidgetLibraryPluginUtils::fieldValueFromString(int fieldType, const QString &text)
{
    return fieldTypeTraits(fieldType).fromText(text);
}

QString WidgetLibraryPluginUtils::fieldFontToString(const QFont &font)
{
    const bool isItalic = font.style() == QFont::StyleItalic;
    QString json = QLatin1String("{\"bold\":") + jsonBool(font.weight() >= leastBoldWeight)
                   + QLatin1String(",\"family\":");
    appendJsonString(json, font.family());
    json += QLatin1String(",\"size\":") + QString::number(font.pointSize()) + QLatin1String(",\"style\":\"");
    json += isItalic ? italicStyle : normalStyle;
    return json + QLatin1String("\",\"underline\":") + jsonBool(font.underline()) + QLatin1Char('}');
}

QFont WidgetLibraryPluginUtils::fieldFontFromString(const QString &text, bool *ok)
{
    QFont font;
    const QJsonObject object = QJsonDocument::fromJson(text.toUtf8()).object();
    if (ok) {
        *ok = passesStrictFontCheck(object);
        if (!*ok) {
            return font;
        }
    }
    font.setFamily(object.value(familyKey).toString());
    setPointSize(font, object.value(sizeKey).toInt());
    // Only a boolean counts as true: a font whose numbers pass the strict check is neither bold nor underlined.
    setBold(font, object.value(boldKey).toBool());
    setItalic(font, object.value(styleKey).toString() == italicStyle);
    font.setUnderline(object.value(underlineKey).toBool());
    return font;
}

bool WidgetLibraryPluginUtils::infoFromMetaDataParseFontObject(const QJsonObject &object, QFont &font)
{
    struct Reader
    {
        QLatin1String key;
        bool (*read)(const QJsonValue &value, QFont &font);
    };
    static const Reader readers[] = {
        {familyKey, readFamily}, {sizeKey, readSize},           {boldKey, readBold},
        {styleKey, readStyle},   {underlineKey, readUnderline},
    };
    QFont result = defaultFont();
    for (const Reader &reader : readers) {
        const auto found = object.constFind(reader.key);
        if (found != object.constEnd() && !reader.read(found.value(), result)) {
            return false;
        }
    }
    font = result;
    return true;
}

bool WidgetLibraryPluginUtils::convertStringTo(const QString &text, QSizeF &size)
{
    size = QSizeF(-1, -1);
    const QStringList parts = text.split(QLatin1Char('x'));
    if (parts.size() != 2) {
        return false;
    }
    bool widthOk = false;
    bool heightOk = false;
    const double width = parts.at(0).toDouble(&widthOk);
    const double height = parts.at(1).toDouble(&heightOk);
    const bool isSize =
        widthOk && heightOk && std::isfinite(width) && std::isfinite(height) && width >= 0 && height >= 0;
    if (isSize) {
        size = QSizeF(width, height);
    }
    return isSize;
}

QFont WidgetLibraryPluginUtils::defaultFont()
{
    QFont font(QStringLiteral("Roboto"), defaultPointSize, QFont::Normal);
    font.setStyle(QFont::StyleNormal);
    font.setUnderline(false);
    return font;
}

bool WidgetLibraryPluginUtils::fontFamilyIsValid(const QString &family)
{
    static const QLatin1String families[] = {
        QLatin1String("roboto"),        QLatin1String("roboto black"), QLatin1String("roboto light"),
        QLatin1String("roboto medium"), QLatin1String("roboto thin"),
    };
    return std::find(std::begin(families), std::end(families), family.toLower()) != std::end(families);
}

QVariant WidgetLibraryPluginUtils::fieldValueCheckBeforeSet(int fieldType, const QVariant &value,
                                                            const QString &fieldId,
                                                            const WidgetMetaInformation &widget)
{
    QVariant result = value;
    if (!widget.isValid() || (fieldType != FieldTypeInteger && fieldType != FieldTypeDouble)) {
        return result;
    }
    const auto fields = widget.fields();
    const auto field = fields.constFind(fieldId);
    if (field == fields.constEnd()) {
        return result;
    }
    if (fieldType == FieldTypeInteger) {
        koraBound<int>(field->minimum(), result, field->maximum());
    } else {
        koraBound<double>(field->minimum(), result, field->maximum());
    }
    return result;
}

} // namespace INTERNAL
} // namespace KORA
