// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QLatin1String>

class QJsonValue;

namespace KORA {
namespace INTERNAL {

class TranslatableStringList;
class TranslationStringType;

/// Reads an optional boolean: true, with @p flag as it was, when the key is absent.
bool readOptionalFlag(const QJsonObject &object, QLatin1String key, bool &flag);

/// Reads a text or a pair [text, comment] in @p language, without looking for translations.
bool readText(const QJsonValue &value, const QString &language, TranslationStringType &out, bool trim,
              bool notEmpty);

/// Reads a text in the language of @p texts and takes the translations that they hold for it.
bool readTranslatableText(const QJsonValue &value, const TranslatableStringList &texts,
                          TranslationStringType &out);

} // namespace INTERNAL
} // namespace KORA
