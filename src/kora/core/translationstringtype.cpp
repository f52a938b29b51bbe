// SPDX-License-Identifier: Apache-2.0
#include <kora/core/translationstringtype.h>

namespace KORA {
namespace INTERNAL {

QString TranslationStringType::get(const QString &language, bool fallback) const
{
    const auto found = m_translations.constFind(language);
    if (found != m_translations.constEnd()) {
        return found.value();
    }
    return fallback ? m_translations.value(defaultLanguage) : QString();
}

void TranslationStringType::clear()
{
    m_translations.clear();
    m_comment.clear();
}

bool TranslationStringType::operator==(const TranslationStringType &other) const
{
    return m_translations == other.m_translations && m_comment == other.m_comment
           && defaultLanguage == other.defaultLanguage;
}

} // namespace INTERNAL
} // namespace KORA
