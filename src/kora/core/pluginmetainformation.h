// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <kora/core/translationstringtype.h>
#include <kora/core/versiontype.h>
#include <kora/export.h>

namespace KORA {
namespace INTERNAL {

/// Who and what a plugin is, as its metadata says. PluginUtils::metaInformationFromMetaData() fills it.
class KORA_EXPORT PluginMetaInformation
{
public:
    using VersionType = INTERNAL::VersionType;
    using TranslationStringType = INTERNAL::TranslationStringType;

    PluginMetaInformation() = default;
    PluginMetaInformation(const PluginMetaInformation &) = default;
    PluginMetaInformation &operator=(const PluginMetaInformation &) = default;
    virtual ~PluginMetaInformation();

    /// Assigns all fields.
    void init(const TranslationStringType &name, const QString &id, const QString &author,
              const VersionType &version, const TranslationStringType &copyright,
              const TranslationStringType &description, const TranslationStringType &license,
              const QString &defaultLanguage, const QStringList &translation);

    const TranslationStringType &name() const { return m_name; }
    /// The plugin's UUID as its metadata spells it, without braces; also the name of its folder.
    const QString &id() const { return m_id; }
    const QString &author() const { return m_author; }
    const VersionType &version() const { return m_version; }
    const TranslationStringType &copyright() const { return m_copyright; }
    const TranslationStringType &description() const { return m_description; }
    const TranslationStringType &license() const { return m_license; }
    /// The language that the metadata's texts are written in.
    const QString &defaultLanguage() const { return m_defaultLanguage; }
    /// The languages that the plugin lists translation files for.
    const QStringList &translation() const { return m_translation; }

    /// The texts to be translated, each pair of (text in @p language, comment) once. Here: the name.
    virtual QList<TranslationStringType> translatableStrings(const QString &language) const;

    /// Back to the defaults, but for copyright, description and license, which are deliberately kept.
    virtual void clear();

    /// Appends the text that @p text has in @p language, with its comment and no other language, unless it is
    /// only white space or the list already holds that pair of text and comment.
    static void addTranslatableStringToList(QList<TranslationStringType> &list,
                                            const TranslationStringType &text, const QString &language);

private:
    TranslationStringType m_name;
    QString m_id;
    QString m_author;
    VersionType m_version;
    TranslationStringType m_copyright;
    TranslationStringType m_description;
    TranslationStringType m_license;
    QString m_defaultLanguage = QStringLiteral("en-US");
    QStringList m_translation;
};

} // namespace INTERNAL
} // namespace KORA
