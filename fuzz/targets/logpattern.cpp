// SPDX-License-Identifier: Apache-2.0
//
// A pattern of log lines, then a message, against a second formatter. Byte 0 chooses level and context.
#include "../fuzztarget.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>

#include <kora/log/logging.h>

namespace {

const char *const categories[] = {nullptr, "default", "KORA", ""};
const char *const levels[] = {"DEBUG", "WARNING", "CRITICAL", "FATAL", "INFO", ""};

struct Line
{
    int level = 0;
    const char *category = nullptr;
    QString message;
};

bool isHidden(const QString &condition, const Line &line)
{
    if (condition == QLatin1String("%{IF-NOT-INFO}")) {
        return line.level == QtInfoMsg;
    }
    return !line.category || qstrcmp(line.category, "default") == 0;
}

QString placeholderText(const QString &name, const Line &line)
{
    const QHash<QString, QString> texts{
        {QStringLiteral("%{TYPE}"), QLatin1String(levels[line.level])},
        {QStringLiteral("%{CATEGORY}"), QLatin1String(line.category)},
        {QStringLiteral("%{MESSAGE}"), line.message},
        {QStringLiteral("%{FILE}"), QStringLiteral("unknown")},
        {QStringLiteral("%{LINE}"), QStringLiteral("7")},
        {QStringLiteral("%{FUNCTION}"), QStringLiteral("unknown")},
        {QStringLiteral("%{PID}"), QString::number(QCoreApplication::applicationPid())},
        {QStringLiteral("%{THREAD}"),
         QString::number(reinterpret_cast<quintptr>(QThread::currentThreadId()))},
    };
    return texts.value(name);
}

QString literalText(const QString &text)
{
    const QByteArray latin1 = text.toLatin1();
    return QString::fromLatin1(latin1.constData()); // up to a NUL
}

// False if the line shows a time.
bool format(const QString &pattern, const Line &line, QString &result)
{
    static const QRegularExpression lexeme(QStringLiteral("%\\{[^}]*\\}|%\\{[^}]*\\z|(?:(?!%\\{).)+"),
                                           QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression condition(
        QStringLiteral("\\A%\\{IF-(NOT-INFO|CATEGORY|DEBUG|INFO|WARNING|CRITICAL)\\}\\z"));
    bool isSkipping = false;
    for (auto i = lexeme.globalMatch(pattern); i.hasNext();) {
        const QString text = i.next().captured();
        const bool isPlaceholder = text.startsWith(QLatin1String("%{")) && text.endsWith(QLatin1Char('}'));
        if (text == QLatin1String("%{ENDIF}")) {
            isSkipping = false;
        } else if (isSkipping) {
            continue;
        } else if (!isPlaceholder) {
            result += literalText(text);
        } else if (text.startsWith(QLatin1String("%{TIME"))) {
            return false;
        } else if (condition.match(text).hasMatch()) {
            isSkipping = isHidden(text, line);
        } else {
            result += placeholderText(text, line);
        }
    }
    return true;
}

} // namespace

KORA_FUZZ_TARGET(logpattern)
{
    FuzzBytes bytes(input);
    const int choice = bytes.take();
    const QString pattern = QString::fromUtf8(bytes.takeLine());
    const Line line{choice % 6, categories[choice / 6 % 4], QString::fromUtf8(bytes.takeRest())};

    KORA::koraSetLogMessagePattern(pattern);
    const QMessageLogContext context(nullptr, 7, nullptr, line.category);
    const QString formatted = koraFormatLogMessage(static_cast<QtMsgType>(line.level), context, line.message);
    QString expected;
    if (format(pattern, line, expected)) {
        expect(formatted == expected, "the second formatter has another line");
    }
    KORA::LogHandler(line.message, nullptr, 7, nullptr, line.category).warning().debug() << line.message;
}
