// SPDX-License-Identifier: Apache-2.0
//
// Valid metadata that test rows change, and short notations for what comes out.
#pragma once

#include <kora/core/translationstringtype.h>
#include <kora/core/widgetlibrarypluginutils.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

/// The QString literal that later versions of Qt have.
inline QString operator""_s(const char *text, size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

namespace MetaData {

using KORA::INTERNAL::TranslationStringType;

inline const auto pluginId = "6f0f4c3e-5d0f-4a5b-9c31-2f7f0c9b1a01"_s;

/// JSON with ' for ".
inline QJsonValue json(QString text)
{
    text = "[%1]"_s.arg(text.replace(QLatin1Char('\''), QLatin1Char('"')));
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("%s in %s", qPrintable(error.errorString()), qPrintable(text));
    return document.array().at(0);
}

/// Adds or replaces the members of @p patch; a member that is null is removed.
inline QJsonObject patched(QJsonObject object, const QString &patch)
{
    const QJsonObject members = json(patch.isEmpty() ? "{}"_s : patch).toObject();
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (member->isNull())
            object.remove(member.key());
        else
            object.insert(member.key(), member.value());
    }
    return object;
}

/// The whole metadata of a plugin, as a plugin loader gives it.
inline QJsonObject plugin(const QString &patch = QString())
{
    const QJsonObject metaData = {
        {"id"_s, pluginId}, {"name"_s, "Plant"_s}, {"author"_s, "Author"_s}, {"version"_s, "1.2.3"_s}};
    return {{"MetaData"_s, patched(metaData, patch)}};
}

inline QJsonObject plugin(const QJsonArray &widgets)
{
    QJsonObject metaData = plugin().value("MetaData"_s).toObject();
    metaData.insert("widgets"_s, widgets);
    return {{"MetaData"_s, metaData}};
}

inline QJsonObject widget(const QString &patch = QString(), const QJsonArray &fields = QJsonArray())
{
    const QJsonObject object = {{"id"_s, "gauge"_s}, {"version"_s, "1.0.0"_s}, {"fields"_s, fields}};
    return patched(object, patch);
}

/// The labels that font fields and multi-language texts must have.
inline const auto fontLabels =
    "'displayFontFamily': 'Family', 'displayFontSize': 'Size', 'displayFontBold': 'Bold',"
    "'displayFontStyle': 'Style', 'displayFontUnderline': 'Underline'"_s;

/// A field with all that its type requires.
inline QJsonObject field(const QString &type, const QString &patch = QString())
{
    QJsonObject object = {{"id"_s, "f"_s}, {"type"_s, type}, {"display"_s, "F"_s}};
    if (type == QLatin1String("font"))
        object = patched(object, "{%1}"_s.arg(fontLabels));
    if (type == QLatin1String("option"))
        object = patched(object, "{'options': [{'index': 1, 'option': 'Off'},"
                                 "{'index': 2, 'option': 'On'}]}"_s);
    return patched(object, patch);
}

/// "en-US=Text & it-IT=Testo | comment" and back.
inline TranslationStringType text(const QString &notation)
{
    TranslationStringType result;
    const QStringList parts = notation.split(" | "_s);
    for (const QString &entry : parts[0].split(" & "_s))
        result.set(entry.section(QLatin1Char('='), 0, 0), entry.section(QLatin1Char('='), 1));
    result.setComment(parts.value(1));
    return result;
}

inline QString notation(const TranslationStringType &text)
{
    QStringList entries;
    const QMap<QString, QString> &translations = text.translations();
    for (auto entry = translations.begin(); entry != translations.end(); ++entry)
        entries << entry.key() + QLatin1Char('=') + entry.value();
    const QString languages = entries.join(" & "_s);
    return text.comment().isEmpty() ? languages : languages + " | "_s + text.comment();
}

/// One text a line.
inline QList<TranslationStringType> texts(const QString &notations)
{
    QList<TranslationStringType> result;
    for (const QString &notation : notations.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        result << text(notation);
    return result;
}

inline QString notation(const QList<TranslationStringType> &texts)
{
    QStringList lines;
    for (const TranslationStringType &text : texts)
        lines << notation(text);
    return lines.join(QLatin1Char('\n'));
}

/// Reads one widget on its own.
inline int parseWidget(const QJsonValue &json, KORA::INTERNAL::WidgetMetaInformation &widget)
{
    QList<KORA::INTERNAL::TranslationStringType> translations;
    return KORA::INTERNAL::WidgetLibraryPluginUtils::infoFromMetaDataParseWidget(json, widget, pluginId,
                                                                                 "en-US"_s, translations);
}

/// Reads one field on its own.
inline int parseField(const QJsonValue &json, KORA::INTERNAL::FieldMetaInformation &field)
{
    QList<KORA::INTERNAL::TranslationStringType> translations;
    return KORA::INTERNAL::WidgetLibraryPluginUtils::infoFromMetaDataParseField(json, field, pluginId,
                                                                                "en-US"_s, translations);
}

} // namespace MetaData
