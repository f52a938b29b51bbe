// SPDX-License-Identifier: Apache-2.0
#include <kora/core/jsonreading_p.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonValue>

#include <kora/core/translatablestringlist_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

// The two forms of a text in JSON: "text" and ["text", "comment"].
bool splitTextAndComment(const QJsonValue &value, QString &text, QString &comment)
{
    if (value.isString()) {
        text = value.toString();
        return true;
    }
    const QJsonArray pair = value.toArray();
    if (pair.size() != 2 || !pair.at(0).isString() || !pair.at(1).isString()) {
        return false;
    }
    text = pair.at(0).toString();
    comment = pair.at(1).toString();
    return true;
}

} // namespace

bool readOptionalFlag(const QJsonValue &value, bool &flag)
{
    if (value.isUndefined()) {
        return true;
    }
    flag = value.toBool();
    return value.isBool();
}

bool readText(const QJsonValue &value, const QString &language, TranslationStringType &out, bool trim,
              bool notEmpty)
{
    out.clear();
    QString text;
    QString comment;
    if (!splitTextAndComment(value, text, comment)) {
        return false;
    }
    if (trim) {
        text = text.trimmed();
    }
    if (notEmpty && text.isEmpty()) {
        return false;
    }
    out.set(language, text);
    out.setComment(comment);
    out.defaultLanguage = language;
    return true;
}

bool readTranslatableText(const QJsonValue &value, TranslatableStringList &texts, TranslationStringType &out)
{
    out.clear();
    QString text;
    QString comment;
    if (!splitTextAndComment(value, text, comment)) {
        return false;
    }
    out = texts.findOrAdd(text, comment);
    return true;
}

} // namespace INTERNAL
} // namespace KORA
