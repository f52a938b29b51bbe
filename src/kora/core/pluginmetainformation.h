// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <kora/core/translationstringtype.h>
#include <kora/core/versiontype.h>
#include <kora/export.h>

namespace KORA {
namespace INTERNAL {

class PluginMetaInformationPrivate;

/// Who and what a plugin is, as its metadata says. PluginUtils::metaInformationFromMetaData() fills it.
class KORA_EXPORT PluginMetaInformation
{
public:
    using VersionType = INTERNAL::VersionType;
    using TranslationStringType = INTERNAL::TranslationStringType;

    PluginMetaInformation();
    PluginMetaInformation(const PluginMetaInformation &other);
    PluginMetaInformation &operator=(const PluginMetaInformation &other);
    virtual ~PluginMetaInformation();

    /// Assigns all fields.
    void init(const TranslationStringType &name, const QString &id, const QString &author,
              const VersionType &version, const TranslationStringType &copyright,
              const TranslationStringType &description, const TranslationStringType &license,
              const QString &defaultLanguage, const QStringList &translation);

    const TranslationStringType &name() const;
    /// The plugin's UUID as its metadata spells it, without braces; also the name of its folder.
    const QString &id() const;
    const QString &author() const;
    const VersionType &version() const;
    const TranslationStringType &copyright() const;
    const TranslationStringType &description() const;
    const TranslationStringType &license() const;
    /// The language that the metadata's texts are written in.
    const QString &defaultLanguage() const;
    /// The languages that the plugin lists translation files for.
    const QStringList &translation() const;

    /// The texts to be translated, each pair of (text in @p language, comment) once. Here: the name.
    virtual QList<TranslationStringType> translatableStrings(const QString &language) const;

    /// Back to the defaults, but for copyright, description and license, which are deliberately kept.
    virtual void clear();

    /// Appends the text that @p text has in @p language, with its comment and no other language, unless it is
    /// only white space or the list already holds that pair of text and comment.
    static void addTranslatableStringToList(QList<TranslationStringType> &list,
                                            const TranslationStringType &text, const QString &language);

private:
    QSharedDataPointer<PluginMetaInformationPrivate> d;
};

} // namespace INTERNAL
} // namespace KORA
