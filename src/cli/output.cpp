// SPDX-License-Identifier: Apache-2.0
#include "output.h"

#include <cstdio>

namespace {

bool writeFailed = false;

void write(FILE *stream, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    const auto size = static_cast<size_t>(utf8.size());
    if (std::fwrite(utf8.constData(), 1, size, stream) != size && stream == stdout) {
        writeFailed = true;
    }
}

// Controls, separators that break a line, and formatting marks such as the bidirectional overrides.
bool isHarmless(QChar c)
{
    switch (c.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return true;
    }
}

QString escaped(QChar c)
{
    const bool isShort = c.unicode() <= 0xff;
    const QString digits = QString::number(c.unicode(), 16).rightJustified(isShort ? 2 : 4, QLatin1Char('0'));
    return QLatin1String(isShort ? "\\x" : "\\u") + digits;
}

} // namespace

QString textOfArgument(const std::string &argument)
{
    return QString::fromUtf8(argument.data(), static_cast<int>(argument.size()));
}

QString printable(const QString &text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar c : text) {
        if (c == QLatin1Char('\n') || c == QLatin1Char('\t')) {
            line += QLatin1Char(' ');
        } else if (isHarmless(c)) {
            line += c;
        } else {
            line += escaped(c);
        }
    }
    return line;
}

void printResult(const QString &lines)
{
    write(stdout, lines);
}

void printError(const QString &message, const QStringList &details)
{
    // What was found so far comes first where both streams end in one place.
    (void)std::fflush(stdout);
    write(stderr, QLatin1String("kora: ") + printable(message) + QLatin1Char('\n'));
    for (const QString &detail : details) {
        write(stderr, QLatin1String("    ") + printable(detail) + QLatin1Char('\n'));
    }
}

void printWarning(const QString &message)
{
    printError(QLatin1String("warning: ") + message);
}

bool flushResults()
{
    if (std::fflush(stdout) == 0 && !writeFailed) {
        return true;
    }
    printError(QStringLiteral("standard output cannot be written"));
    return false;
}
