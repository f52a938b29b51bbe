// SPDX-License-Identifier: Apache-2.0
#include <kora/core/pluginmetainformation.h>

#include <kora/core/translatablestringlist_p.h>

namespace KORA {
namespace INTERNAL {

PluginMetaInformation::~PluginMetaInformation() = default;

void PluginMetaInformation::init(const TranslationStringType &name, const QString &id, const QString &author,
                                 const VersionType &version, const TranslationStringType &copyright,
                                 const TranslationStringType &description,
                                 const TranslationStringType &license, const QString &defaultLanguage,
                                 const QStringList &translation)
{
    m_name = name;
    m_id = id;
    m_author = author;
    m_version = version;
    m_copyright = copyright;
    m_description = description;
    m_license = license;
    m_defaultLanguage = defaultLanguage;
    m_translation = translation;
}

QList<PluginMetaInformation::TranslationStringType>
PluginMetaInformation::translatableStrings(const QString &language) const
{
    QList<TranslationStringType> list;
    addTranslatableStringToList(list, m_name, language);
    return list;
}

void PluginMetaInformation::clear()
{
    m_name.clear();
    m_id.clear();
    m_author.clear();
    m_version = VersionType();
    m_defaultLanguage = QStringLiteral("en-US");
    m_translation.clear();
}

void PluginMetaInformation::addTranslatableStringToList(QList<TranslationStringType> &list,
                                                        const TranslationStringType &text,
                                                        const QString &language)
{
    TranslatableStringList(list, language).add(text);
}

} // namespace INTERNAL
} // namespace KORA
