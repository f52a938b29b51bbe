// SPDX-License-Identifier: Apache-2.0
#include <kora/core/translatablestringlist_p.h>

namespace KORA {
namespace INTERNAL {

TranslatableStringList::TranslatableStringList(QList<TranslationStringType> &list, const QString &language)
    : m_list(list)
    , m_language(language)
{
    m_indexes.reserve(list.size());
    for (int i = list.size() - 1; i >= 0; --i) { // backwards, so that the first of equal entries stays
        m_indexes.insert({list.at(i).get(language, false), list.at(i).comment()}, i);
    }
}

int TranslatableStringList::indexOf(const QString &text, const QString &comment) const
{
    return m_indexes.value({text, comment}, -1);
}

void TranslatableStringList::append(const TranslationStringType &entry)
{
    const Key key{entry.get(m_language, false), entry.comment()};
    if (!m_indexes.contains(key)) {
        m_indexes.insert(key, m_list.size());
    }
    m_list.append(entry);
}

void TranslatableStringList::add(const TranslationStringType &text)
{
    const QString words = text.get(m_language, false);
    if (words.simplified().isEmpty() || indexOf(words, text.comment()) >= 0) {
        return;
    }
    TranslationStringType entry;
    entry.set(m_language, words);
    entry.setComment(text.comment());
    entry.defaultLanguage = m_language;
    append(entry);
}

} // namespace INTERNAL
} // namespace KORA
