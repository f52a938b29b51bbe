// SPDX-License-Identifier: Apache-2.0
#include "metadatalints.h"

#include <QtCore/QJsonArray>
#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <algorithm>

#include <kora/host.h>

#include "jsonsource.h"
#include "requirementlints.h"

using namespace KORA::INTERNAL;

namespace {

QStringList keysOf(const char *keys)
{
    return QString(QLatin1String(keys)).split(QLatin1Char(' '));
}

const QStringList libraryKeys = keysOf(
    "$schema id name author version copyright description license defaultLanguage translation widgets");
const QStringList widgetKeys = keysOf("id version display description defaultSize galleryGroupName "
                                      "showInPageGallery showInProjectGallery receiveAlarmsEvents fields");
const QStringList fieldKeys =
    keysOf("id type display description tagCanBeAttached defaultValue readOnly group private requirements "
           "tagAcceptedTypes tagOnDemand minimum maximum options multiLanguage defaultFont displayFontFamily "
           "displayFontSize displayFontBold displayFontStyle displayFontUnderline");
const QStringList fontKeys = keysOf("family size bold style underline");
const QStringList optionKeys = keysOf("index option");
const QStringList mapEntryKeys = keysOf("i v");

bool isTextType(FieldType type)
{
    return type == FieldTypeString || type == FieldTypeStringList || type == FieldTypeStringMap;
}

// Keys that the parser reads for some types only.
bool appliesTo(const QString &key, FieldType type)
{
    if (key == QLatin1String("options")) {
        return type == FieldTypeOption;
    }
    if (key == QLatin1String("minimum") || key == QLatin1String("maximum")) {
        return type == FieldTypeInteger || type == FieldTypeDouble;
    }
    if (key == QLatin1String("multiLanguage")) {
        return isTextType(type);
    }
    if (key == QLatin1String("defaultFont") || key.startsWith(QLatin1String("displayFont"))) {
        return isTextType(type) || type == FieldTypeFont;
    }
    return true;
}

int editDistance(const QString &a, const QString &b)
{
    QVector<int> row(b.size() + 1);
    for (int j = 0; j < row.size(); ++j) {
        row[j] = j;
    }
    for (int i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = i;
        for (int j = 1; j <= b.size(); ++j) {
            const int change = diagonal + (a.at(i - 1).toLower() == b.at(j - 1).toLower() ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({change, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.last();
}

bool fitsIntoXml(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            ++i;
            continue;
        }
        const ushort code = c.unicode();
        if ((code < 0x20 && code != '\t' && code != '\n' && code != '\r') || c.isSurrogate()
            || code >= 0xfffe) {
            return false;
        }
    }
    return true;
}

/// Walks the metadata as it stands, beside the repaired one.
class Linter
{
public:
    explicit Linter(QVector<MetadataLint> &lints)
        : m_lints(lints)
    {}

    void library(const QJsonObject &object, const QJsonObject &repaired);
    void xmlTexts(const QJsonValue &value, const QString &pointer);

private:
    void widget(const QJsonObject &object, const QJsonObject &repaired, const QString &pointer);
    void field(const QJsonObject &object, const QJsonObject &repaired, const QString &pointer);
    void languages(const QJsonObject &object);
    void defaultSize(const QJsonObject &object, const QJsonObject &repaired, const QString &pointer);
    void bounds(const FieldMetaInformation &field, const QString &pointer);
    void options(const QJsonObject &object, const QString &pointer);
    void nestedKeys(const QJsonObject &object, FieldType type, const QString &pointer);
    void unknownKeys(const QJsonObject &object, const QStringList &known, const QString &pointer);
    void elementKeys(const QJsonValue &array, const QStringList &known, const QString &pointer);
    void ignoredKeys(const QJsonObject &object, FieldType type, const QString &pointer);
    void add(const char *rule, const QString &pointer, const QString &message, const QString &hint,
             bool atKey = false)
    {
        m_lints.append({rule, pointer, atKey, message, hint});
    }

    QVector<MetadataLint> &m_lints;
};

void Linter::library(const QJsonObject &object, const QJsonObject &repaired)
{
    unknownKeys(object, libraryKeys, QString());
    languages(repaired);
    const QJsonArray widgets = object.value(QLatin1String("widgets")).toArray();
    const QJsonArray repairedWidgets = repaired.value(QLatin1String("widgets")).toArray();
    QSet<QPair<QString, QString>> seen;
    for (int i = 0; i < widgets.size(); ++i) {
        const QString pointer = pointerTo(QStringLiteral("/widgets"), i);
        const QJsonObject element = widgets.at(i).toObject();
        const QString id = element.value(QLatin1String("id")).toString();
        const VersionType version(element.value(QLatin1String("version")).toString());
        if (!id.isEmpty() && version.isValid() && seen.contains({id, version.version()})) {
            add("repeated-widget", pointer,
                QStringLiteral("widget %1 %2 was declared before; this declaration replaces it")
                    .arg(id, version.version()),
                QStringLiteral("give it another id or version, or remove one of the two"));
        }
        seen.insert({id, version.version()});
        if (widgets.at(i).isObject()) {
            widget(element, repairedWidgets.at(i).toObject(), pointer);
        }
    }
}

void Linter::languages(const QJsonObject &object)
{
    QString defaultLanguage = object.value(QLatin1String("defaultLanguage")).toString().trimmed();
    if (defaultLanguage.isEmpty()) {
        defaultLanguage = PluginMetaInformation().defaultLanguage();
    }
    QSet<QString> seen{defaultLanguage};
    const QJsonArray codes = object.value(QLatin1String("translation")).toArray();
    for (int i = 0; i < codes.size(); ++i) {
        const QString code = codes.at(i).toString().trimmed();
        if (seen.contains(code)) {
            add("repeated-language", pointerTo(QStringLiteral("/translation"), i),
                code == defaultLanguage ? QStringLiteral("%1 is the default language").arg(code)
                                        : QStringLiteral("%1 is listed twice").arg(code),
                QStringLiteral("remove it from the list"));
        }
        seen.insert(code);
    }
}

void Linter::widget(const QJsonObject &object, const QJsonObject &repaired, const QString &pointer)
{
    unknownKeys(object, widgetKeys, pointer);
    defaultSize(object, repaired, pointer);
    const QString fieldsPointer = pointer + QLatin1String("/fields");
    const QJsonArray fields = object.value(QLatin1String("fields")).toArray();
    const QJsonArray repairedFields = repaired.value(QLatin1String("fields")).toArray();
    QSet<QString> seen;
    for (int i = 0; i < fields.size(); ++i) {
        if (!fields.at(i).isObject()) {
            continue;
        }
        const QString fieldPointer = pointerTo(fieldsPointer, i);
        const QString id = repairedFields.at(i).toObject().value(QLatin1String("id")).toString();
        if (seen.contains(id)) {
            add("repeated-field", fieldPointer,
                QStringLiteral("field %1 was declared before; this declaration replaces it").arg(id),
                QStringLiteral("give it another id, or remove one of the two"));
        }
        seen.insert(id);
        field(fields.at(i).toObject(), repairedFields.at(i).toObject(), fieldPointer);
    }
    const QVector<RequirementLint> requirements = lintRequirements(fields, repairedFields);
    for (const RequirementLint &lint : requirements) {
        add(lint.rule, pointerTo(fieldsPointer, lint.fieldIndex) + QLatin1String("/requirements"),
            lint.message, lint.hint);
    }
}

void Linter::defaultSize(const QJsonObject &object, const QJsonObject &repaired, const QString &pointer)
{
    const QLatin1String key("defaultSize");
    QSizeF size;
    if (object.contains(key) != repaired.contains(key)) {
        return; // refused by the parser
    }
    const bool isGiven = object.contains(key);
    WidgetLibraryPluginUtils::convertStringTo(repaired.value(key).toString(), size);
    if (isGiven && !size.isEmpty()) {
        return;
    }
    add("no-default-size", isGiven ? pointerTo(pointer, QString(key)) : pointer,
        isGiven ? QStringLiteral("the default size is empty")
                : QStringLiteral("the widget has no default size"),
        QStringLiteral("add \"defaultSize\": \"200x100\" with the width and height in pixels that suit it"));
}

void Linter::field(const QJsonObject &object, const QJsonObject &repaired, const QString &pointer)
{
    unknownKeys(object, fieldKeys, pointer);
    FieldMetaInformation field;
    QList<TranslationStringType> texts;
    WidgetLibraryPluginUtils::infoFromMetaDataParseField(repaired, field, {}, QStringLiteral("en-US"), texts);
    if (field.id().isEmpty()) {
        add("empty-field-id", pointer + QLatin1String("/id"), QStringLiteral("the field's id is empty"),
            QStringLiteral("give the field an id"));
    }
    if (object.value(QLatin1String("type")) == repaired.value(QLatin1String("type"))) {
        ignoredKeys(object, field.type(), pointer);
        nestedKeys(object, field.type(), pointer);
    }
    bounds(field, pointer);
    if (field.type() == FieldTypeOption) {
        options(repaired, pointer);
    }
}

void Linter::bounds(const FieldMetaInformation &field, const QString &pointer)
{
    const QVariant minimum = field.minimum();
    const QVariant maximum = field.maximum();
    const QVariant value = field.defaultValue();
    if (minimum.isValid() && maximum.isValid() && minimum.toDouble() > maximum.toDouble()) {
        add("bounds-reversed", pointer + QLatin1String("/minimum"),
            QStringLiteral("the minimum %1 is greater than the maximum %2")
                .arg(minimum.toString(), maximum.toString()),
            QStringLiteral("swap the two"));
        return;
    }
    if (!value.isValid()) {
        return;
    }
    const bool isBelow = minimum.isValid() && value.toDouble() < minimum.toDouble();
    if (isBelow || (maximum.isValid() && value.toDouble() > maximum.toDouble())) {
        add("default-outside-bounds", pointer + QLatin1String("/defaultValue"),
            QStringLiteral("the default value %1 is %2 %3")
                .arg(value.toString(),
                     isBelow ? QStringLiteral("below the minimum") : QStringLiteral("above the maximum"),
                     isBelow ? minimum.toString() : maximum.toString()),
            QStringLiteral("change the default value or the bound"));
    }
}

void Linter::options(const QJsonObject &object, const QString &pointer)
{
    QSet<int> seen;
    const QJsonArray options = object.value(QLatin1String("options")).toArray();
    for (int i = 0; i < options.size(); ++i) {
        const int index = options.at(i).toObject().value(QLatin1String("index")).toInt();
        if (seen.contains(index)) {
            add("repeated-option-index",
                pointerTo(pointer + QLatin1String("/options"), i) + QLatin1String("/index"),
                QStringLiteral("another option has the index %1").arg(index),
                QStringLiteral("give each option an index of its own"));
        }
        seen.insert(index);
    }
}

void Linter::nestedKeys(const QJsonObject &object, FieldType type, const QString &pointer)
{
    const QString defaultPointer = pointer + QLatin1String("/defaultValue");
    const QJsonValue defaultValue = object.value(QLatin1String("defaultValue"));
    if (type == FieldTypeFont) {
        unknownKeys(defaultValue.toObject(), fontKeys, defaultPointer);
    } else if (type == FieldTypeStringMap) {
        elementKeys(defaultValue, mapEntryKeys, defaultPointer);
    } else if (type == FieldTypeOption) {
        elementKeys(object.value(QLatin1String("options")), optionKeys, pointer + QLatin1String("/options"));
    }
    unknownKeys(object.value(QLatin1String("defaultFont")).toObject(), fontKeys,
                pointer + QLatin1String("/defaultFont"));
}

void Linter::elementKeys(const QJsonValue &array, const QStringList &known, const QString &pointer)
{
    const QJsonArray elements = array.toArray();
    for (int i = 0; i < elements.size(); ++i) {
        unknownKeys(elements.at(i).toObject(), known, pointerTo(pointer, i));
    }
}

void Linter::unknownKeys(const QJsonObject &object, const QStringList &known, const QString &pointer)
{
    const QStringList keys = object.keys();
    for (const QString &key : keys) {
        if (known.contains(key)) {
            continue;
        }
        const QString nearest = nearestOf(key, known);
        QString hint = QStringLiteral("remove it; known here: %1").arg(known.join(QLatin1String(", ")));
        if (!nearest.isEmpty()) {
            hint = QStringLiteral("did you mean \"%1\"?").arg(nearest);
        } else if (pointer.isEmpty() && key == QLatin1String("MetaData")) {
            hint =
                QStringLiteral("the file holds what stands inside \"MetaData\": Qt's moc adds that itself");
        }
        add("unknown-key", pointerTo(pointer, key), QStringLiteral("unknown key \"%1\"").arg(key), hint,
            true);
    }
}

void Linter::ignoredKeys(const QJsonObject &object, FieldType type, const QString &pointer)
{
    const QStringList keys = object.keys();
    for (const QString &key : keys) {
        if (!appliesTo(key, type)) {
            add("ignored-key", pointerTo(pointer, key),
                QStringLiteral("\"%1\" has no effect on a field of type %2")
                    .arg(key, WidgetLibraryPluginMetaInformation::fieldTypeToString(type)),
                QStringLiteral("remove it, or change the type"), true);
        }
    }
}

void Linter::xmlTexts(const QJsonValue &value, const QString &pointer)
{
    if (value.isString() && !fitsIntoXml(value.toString())) {
        add("xml-character", pointer,
            QStringLiteral("the text holds a character that XML documents cannot hold"),
            QStringLiteral(
                "remove control characters and halves of characters (\\u0000 to \\u001f but for \\t, \\n "
                "and \\r; \\ud800 to \\udfff alone; \\ufffe, \\uffff)"));
    }
    const QJsonArray array = value.toArray();
    for (int i = 0; i < array.size(); ++i) {
        xmlTexts(array.at(i), pointerTo(pointer, i));
    }
    const QJsonObject object = value.toObject();
    for (auto member = object.constBegin(); member != object.constEnd(); ++member) {
        xmlTexts(member.value(), pointerTo(pointer, member.key()));
    }
}

} // namespace

QVector<MetadataLint> lintMetadata(const QJsonObject &metaData, const QJsonObject &repaired)
{
    QVector<MetadataLint> lints;
    Linter linter(lints);
    linter.library(metaData, repaired);
    linter.xmlTexts(repaired, QString());
    return lints;
}

QString nearestOf(const QString &text, const QStringList &candidates)
{
    QString nearest;
    int least = std::max(2, text.size() / 3) + 1;
    for (const QString &candidate : candidates) {
        const bool isPart = text.size() > 3
                            && (candidate.startsWith(text, Qt::CaseInsensitive)
                                || text.startsWith(candidate, Qt::CaseInsensitive));
        const int distance = isPart && candidate.size() > 3 ? 1 : editDistance(text, candidate);
        if (distance < least && distance < std::max(text.size(), candidate.size()) / 2 + 1) {
            least = distance;
            nearest = candidate;
        }
    }
    return nearest;
}
