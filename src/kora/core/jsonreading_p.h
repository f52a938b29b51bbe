// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QLatin1String>

#include <array>

namespace KORA {
namespace INTERNAL {

class TranslatableStringList;
class TranslationStringType;

/// The members of an object under a reader's keys, found in one pass: to look each key up, of many that may stand in an
/// object, takes several times as long.
template<size_t count>
class JsonMembers
{
public:
    JsonMembers(const QJsonObject &object, const QLatin1String (&keys)[count])
        : m_object(object)
    {
        m_positions.fill(-1);
        int position = 0;
        for (auto member = m_object.constBegin(); member != m_object.constEnd(); ++member, ++position) {
            const QString name = member.key();
            for (size_t key = 0; key < count; ++key) {
                if (keys[key].size() == name.size() && keys[key] == name) {
                    m_positions[key] = position;
                    break;
                }
            }
        }
    }

    /// Undefined when the object has no such key.
    QJsonValue value(size_t key) const
    {
        const int position = m_positions[key];
        return position < 0 ? QJsonValue(QJsonValue::Undefined) : (m_object.constBegin() + position).value();
    }

private:
    const QJsonObject m_object;
    std::array<int, count> m_positions;
};

/// Reads an optional boolean: true, with @p flag as it was, when the value is undefined.
bool readOptionalFlag(const QJsonValue &value, bool &flag);

/// Reads a text or a pair [text, comment] in @p language, without looking for translations.
bool readText(const QJsonValue &value, const QString &language, TranslationStringType &out, bool trim,
              bool notEmpty);

/// Reads a text in the language of @p texts and takes the translations that they hold for it, or adds it to them.
bool readTranslatableText(const QJsonValue &value, TranslatableStringList &texts, TranslationStringType &out);

} // namespace INTERNAL
} // namespace KORA
