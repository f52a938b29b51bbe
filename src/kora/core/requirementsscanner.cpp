// SPDX-License-Identifier: Apache-2.0
#include <kora/core/requirementsscanner_p.h>

#include <algorithm>

namespace KORA {
namespace INTERNAL {

namespace {

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool isIdentifierCharacter(QChar c)
{
    return isDigit(c) || (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
           || (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) || c == QLatin1Char('_');
}

class Scanner
{
public:
    explicit Scanner(const QString &text)
        : m_text(text)
    {}

    /// @p fieldIds may be null.
    bool scan(QStringList *fieldIds);

private:
    bool atEnd() const { return m_position == m_text.size(); }
    bool accept(QLatin1String token);
    bool acceptDigits();
    bool acceptNumber();
    bool acceptValue();
    bool acceptComparison();
    bool acceptJunction();
    bool acceptIdentifier();
    void skipBlank() { accept(QLatin1String(" ")); }

    const QString &m_text;
    int m_position = 0;
};

bool Scanner::accept(QLatin1String token)
{
    if (m_text.size() - m_position < token.size()) {
        return false;
    }
    for (int i = 0; i < token.size(); ++i) {
        if (m_text.at(m_position + i) != token.at(i)) {
            return false;
        }
    }
    m_position += token.size();
    return true;
}

bool Scanner::acceptDigits()
{
    const int start = m_position;
    while (!atEnd() && isDigit(m_text.at(m_position))) {
        ++m_position;
    }
    return m_position > start;
}

bool Scanner::acceptNumber()
{
    const bool hasSign = accept(QLatin1String("+")) || accept(QLatin1String("-"));
    if (!acceptDigits()) {
        return false;
    }
    // Decimals have no sign.
    return hasSign || !accept(QLatin1String(".")) || acceptDigits();
}

bool Scanner::acceptValue()
{
    return accept(QLatin1String("true")) || accept(QLatin1String("false")) || acceptNumber();
}

bool Scanner::acceptComparison()
{
    return accept(QLatin1String("==")) || accept(QLatin1String("<")) || accept(QLatin1String(">"));
}

bool Scanner::acceptJunction()
{
    return accept(QLatin1String("&&")) || accept(QLatin1String("||"));
}

bool Scanner::acceptIdentifier()
{
    const int start = m_position;
    while (!atEnd() && isIdentifierCharacter(m_text.at(m_position))) {
        ++m_position;
    }
    return m_position > start;
}

bool Scanner::scan(QStringList *fieldIds)
{
    while (true) {
        const int start = m_position;
        if (!acceptIdentifier()) {
            return false;
        }
        if (fieldIds) {
            fieldIds->append(m_text.mid(start, m_position - start));
        }
        skipBlank();
        if (acceptComparison()) {
            skipBlank();
            if (!acceptValue()) {
                return false;
            }
            if (atEnd()) {
                return true;
            }
            skipBlank();
        } else if (atEnd()) {
            return true;
        }
        if (!acceptJunction()) {
            return false;
        }
        skipBlank();
    }
}

} // namespace

bool isRequirementsText(const QString &requirements)
{
    return Scanner(requirements).scan(nullptr);
}

bool scanRequirements(const QString &requirements, QStringList &fieldIds)
{
    return Scanner(requirements).scan(&fieldIds);
}

bool isIdentifierText(const QString &text)
{
    return std::all_of(text.begin(), text.end(), isIdentifierCharacter);
}

} // namespace INTERNAL
} // namespace KORA
