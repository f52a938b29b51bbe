// SPDX-License-Identifier: Apache-2.0
#include <kora/core/translatablestringlist_p.h>

#include <algorithm>

namespace KORA {
namespace INTERNAL {

namespace {

bool isBlank(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

} // namespace

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
    findOrAdd(text.get(m_language, false), text.comment());
}

TranslationStringType TranslatableStringList::findOrAdd(const QString &text, const QString &comment)
{
    const Key key{text, comment};
    const auto known = m_indexes.constFind(key);
    if (known != m_indexes.constEnd()) {
        return m_list.at(*known);
    }
    TranslationStringType entry;
    entry.set(m_language, text);
    entry.setComment(comment);
    entry.defaultLanguage = m_language;
    if (!isBlank(text)) {
        m_indexes.insert(key, m_list.size());
        m_list.append(entry);
    }
    return entry;
}

} // namespace INTERNAL
} // namespace KORA
