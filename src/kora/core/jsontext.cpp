// SPDX-License-Identifier: Apache-2.0
#include <kora/core/jsontext_p.h>

#include <algorithm>

namespace KORA {
namespace INTERNAL {

namespace {

bool needsEscape(QChar c)
{
    return c.unicode() < 0x20 || c == QLatin1Char('"') || c == QLatin1Char('\\') || c.isSurrogate();
}

// The letter that stands for a character behind a backslash; 0 if none does.
char shortEscape(QChar c)
{
    switch (c.unicode()) {
    case '"':
    case '\\':
        return static_cast<char>(c.unicode());
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

void appendEscaped(QString &json, QChar c)
{
    json += QLatin1Char('\\');
    if (const char letter = shortEscape(c)) {
        json += QLatin1Char(letter);
    } else {
        json += QLatin1Char('u') + QString::number(c.unicode(), 16).rightJustified(4, QLatin1Char('0'));
    }
}

} // namespace

void appendJsonString(QString &json, const QString &text)
{
    json += QLatin1Char('"');
    if (std::none_of(text.begin(), text.end(), needsEscape)) {
        json += text;
    } else {
        for (int i = 0; i < text.size(); ++i) {
            const QChar c = text.at(i);
            if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
                json += c;
                json += text.at(++i);
            } else if (needsEscape(c)) {
                appendEscaped(json, c); // also half of a pair, which UTF-8 cannot hold
            } else {
                json += c;
            }
        }
    }
    json += QLatin1Char('"');
}

} // namespace INTERNAL
} // namespace KORA
