// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <kora/export.h>

namespace KORA {
namespace INTERNAL {

/// A text that users see, in several languages at once, with a note for translators.
///
/// Languages are codes such as "en-US"; any text is accepted as one. The pair of the text in the working
/// language and the comment is the key under which a text is translated: equal words with different comments
/// are translated separately.
class KORA_EXPORT TranslationStringType
{
public:
    /// Inserts or replaces the text of one language.
    void set(const QString &language, const QString &text) { m_translations.insert(language, text); }
    /// The text of @p language, also when it is empty; if there is none, that of `defaultLanguage` when
    /// @p fallback is set, else an empty text.
    QString get(const QString &language, bool fallback) const;
    /// Whether there is a text for the language; an empty one counts.
    bool contains(const QString &language) const { return m_translations.contains(language); }
    /// The language codes in ascending order.
    QStringList keys() const { return m_translations.keys(); }
    /// Language code to text.
    const QMap<QString, QString> &translations() const { return m_translations; }
    QString comment() const { return m_comment; }
    void setComment(const QString &comment) { m_comment = comment; }
    /// Whether there is no text at all; the comment does not count.
    bool isEmpty() const { return m_translations.isEmpty(); }
    /// Removes texts and comment and keeps `defaultLanguage`: the text stays one of its library.
    void clear();

    bool operator==(const TranslationStringType &other) const;
    bool operator!=(const TranslationStringType &other) const { return !(*this == other); }

    /// The language that get() falls back to.
    QString defaultLanguage = QStringLiteral("en-US");

private:
    QMap<QString, QString> m_translations;
    QString m_comment;
};

} // namespace INTERNAL
} // namespace KORA
