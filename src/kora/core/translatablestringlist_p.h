// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QPair>

#include <kora/core/translationstringtype.h>

namespace KORA {
namespace INTERNAL {

/// Finds entries of a list by (text in the working language, comment) in constant time; where several entries
/// share the pair, the first is found. A library of 500 widgets holds some 17,000 texts: a linear search per
/// text would take seconds.
///
/// Refers to a list that outlives it and that only append() changes meanwhile.
class TranslatableStringList
{
public:
    TranslatableStringList(QList<TranslationStringType> &list, const QString &language);

    /// The index of the first entry with this text and comment, or -1.
    int indexOf(const QString &text, const QString &comment) const;
    const TranslationStringType &at(int index) const { return m_list.at(index); }
    TranslationStringType &entry(int index) { return m_list[index]; }
    void append(const TranslationStringType &entry);
    /// Appends under the rule of PluginMetaInformation::addTranslatableStringToList().
    void add(const TranslationStringType &text);
    /// The first entry with this text and comment, or a new text in the working language, added under the same rule.
    TranslationStringType findOrAdd(const QString &text, const QString &comment);
    const QString &language() const { return m_language; }

private:
    using Key = QPair<QString, QString>;

    QList<TranslationStringType> &m_list;
    QString m_language;
    QHash<Key, int> m_indexes;
};

} // namespace INTERNAL
} // namespace KORA
