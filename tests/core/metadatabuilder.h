// SPDX-License-Identifier: Apache-2.0
//
// Valid metadata that test rows change, and short notations for what comes out.
#pragma once

#include <kora/core/translationstringtype.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

namespace MetaData {

using KORA::INTERNAL::TranslationStringType;

inline const auto pluginId = QStringLiteral("6f0f4c3e-5d0f-4a5b-9c31-2f7f0c9b1a01");

/// JSON with ' for ".
inline QJsonValue json(QString text)
{
    text = QStringLiteral("[%1]").arg(text.replace(QLatin1Char('\''), QLatin1Char('"')));
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("%s in %s", qPrintable(error.errorString()), qPrintable(text));
    return document.array().at(0);
}

/// Adds or replaces the members of @p patch; a member that is null is removed.
inline QJsonObject patched(QJsonObject object, const QString &patch)
{
    const QJsonObject members = json(patch.isEmpty() ? QStringLiteral("{}") : patch).toObject();
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
    const QJsonObject metaData = {{QStringLiteral("id"), pluginId},
                                  {QStringLiteral("name"), QStringLiteral("Plant")},
                                  {QStringLiteral("author"), QStringLiteral("Author")},
                                  {QStringLiteral("version"), QStringLiteral("1.2.3")}};
    return {{QStringLiteral("MetaData"), patched(metaData, patch)}};
}

inline QJsonObject plugin(const QJsonArray &widgets)
{
    QJsonObject metaData = plugin().value(QStringLiteral("MetaData")).toObject();
    metaData.insert(QStringLiteral("widgets"), widgets);
    return {{QStringLiteral("MetaData"), metaData}};
}

inline QJsonObject widget(const QString &patch = QString(), const QJsonArray &fields = QJsonArray())
{
    const QJsonObject object = {{QStringLiteral("id"), QStringLiteral("gauge")},
                                {QStringLiteral("version"), QStringLiteral("1.0.0")},
                                {QStringLiteral("fields"), fields}};
    return patched(object, patch);
}

/// The labels that font fields and multi-language texts must have.
inline const auto fontLabels =
    QStringLiteral("'displayFontFamily': 'Family', 'displayFontSize': 'Size', 'displayFontBold': 'Bold',"
                   "'displayFontStyle': 'Style', 'displayFontUnderline': 'Underline'");

/// A field with all that its type requires.
inline QJsonObject field(const QString &type, const QString &patch = QString())
{
    QJsonObject object = {{QStringLiteral("id"), QStringLiteral("f")},
                          {QStringLiteral("type"), type},
                          {QStringLiteral("display"), QStringLiteral("F")}};
    if (type == QLatin1String("font"))
        object = patched(object, QStringLiteral("{%1}").arg(fontLabels));
    if (type == QLatin1String("option"))
        object = patched(object, QStringLiteral("{'options': [{'index': 1, 'option': 'Off'},"
                                                "{'index': 2, 'option': 'On'}]}"));
    return patched(object, patch);
}

/// "en-US=Text & it-IT=Testo | comment" and back.
inline TranslationStringType text(const QString &notation)
{
    TranslationStringType result;
    const QStringList parts = notation.split(QStringLiteral(" | "));
    for (const QString &entry : parts[0].split(QStringLiteral(" & ")))
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
    const QString languages = entries.join(QStringLiteral(" & "));
    return text.comment().isEmpty() ? languages : languages + QStringLiteral(" | ") + text.comment();
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

} // namespace MetaData
