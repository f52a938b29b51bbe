// SPDX-License-Identifier: Apache-2.0
#include <kora/log/logging.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QStringList>
#include <QtCore/QThread>

#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

namespace {

// A token is one of these arrays, recognised by its address, or a literal run of text.
const char typeTokenC[] = "%{TYPE}";
const char categoryTokenC[] = "%{CATEGORY}";
const char messageTokenC[] = "%{MESSAGE}";
const char fileTokenC[] = "%{FILE}";
const char lineTokenC[] = "%{LINE}";
const char functionTokenC[] = "%{FUNCTION}";
const char pidTokenC[] = "%{PID}";
const char threadidTokenC[] = "%{THREAD}";
const char timeTokenC[] = "%{TIME";
const char ifNotInfoTokenC[] = "%{IF-NOT-INFO}";
const char ifCategoryTokenC[] = "%{IF-CATEGORY}";
const char ifDebugTokenC[] = "%{IF-DEBUG}";
const char ifInfoTokenC[] = "%{IF-INFO}";
const char ifWarningTokenC[] = "%{IF-WARNING}";
const char ifCriticalTokenC[] = "%{IF-CRITICAL}";
const char endifTokenC[] = "%{ENDIF}";
const char emptyTokenC[] = "";

const char defaultPatternC[] =
    "[%{TIME}]%{IF-NOT-INFO}[%{TYPE}]%{ENDIF}%{IF-CATEGORY}[%{CATEGORY}]%{ENDIF}: %{MESSAGE}";

struct Placeholder
{
    const char *lexeme;
    const char *token;
};

// The four conditions on a level compile to the condition on the category: "%{IF-DEBUG}" shows its contents
// exactly when "%{IF-CATEGORY}" would. Hosts' patterns rely on it.
const Placeholder placeholders[] = {
    {typeTokenC, typeTokenC},
    {categoryTokenC, categoryTokenC},
    {messageTokenC, messageTokenC},
    {fileTokenC, fileTokenC},
    {lineTokenC, lineTokenC},
    {functionTokenC, functionTokenC},
    {pidTokenC, pidTokenC},
    {threadidTokenC, threadidTokenC},
    {ifNotInfoTokenC, ifNotInfoTokenC},
    {ifCategoryTokenC, ifCategoryTokenC},
    {ifDebugTokenC, ifCategoryTokenC},
    {ifInfoTokenC, ifCategoryTokenC},
    {ifWarningTokenC, ifCategoryTokenC},
    {ifCriticalTokenC, ifCategoryTokenC},
    {endifTokenC, endifTokenC},
};

/// The compiled pattern.
class LogMessagePattern
{
public:
    LogMessagePattern();
    ~LogMessagePattern();
    Q_DISABLE_COPY_MOVE(LogMessagePattern)

    /// The caller holds the mutex.
    void setPattern(const QString &pattern);
    QString format(QtMsgType type, const QMessageLogContext &context, const QString &message) const;

    /// Guards building, replacing and reading the pattern. Not a QMutex: Qt prints when one is destroyed while
    /// a thread holds it, and a thread may log during the exit of the process.
    static QBasicMutex mutex;
    /// Set under the mutex when the process's pattern is destroyed. The global static's own state changes later.
    static bool isDestroyed;

private:
    const char *tokenOf(const QString &lexeme);
    const char *literal(const QString &text);

    std::vector<const char *> tokens; // ends with a null entry
    std::vector<std::unique_ptr<char[]>> literals;
    QList<QString> timeArgs; // one entry per time token, in the pattern's order
    QElapsedTimer timer;
};

QBasicMutex LogMessagePattern::mutex;
bool LogMessagePattern::isDestroyed = false;

Q_GLOBAL_STATIC(LogMessagePattern, koraLogMessagePattern)

QStringList splitIntoLexemes(const QString &pattern)
{
    QStringList lexemes;
    QString lexeme;
    bool insidePlaceholder = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        const bool startsPlaceholder = c == QLatin1Char('%') && !insidePlaceholder && i + 1 < pattern.size()
                                       && pattern.at(i + 1) == QLatin1Char('{');
        if (startsPlaceholder) {
            if (!lexeme.isEmpty()) {
                lexemes.append(lexeme);
                lexeme.clear();
            }
            insidePlaceholder = true;
        }
        lexeme.append(c);
        if (insidePlaceholder && c == QLatin1Char('}')) {
            lexemes.append(lexeme);
            lexeme.clear();
            insidePlaceholder = false;
        }
    }
    if (!lexeme.isEmpty()) {
        lexemes.append(lexeme);
    }
    return lexemes;
}

// "%{TIME hh:mm}" -> "hh:mm"; "%{TIME}" and "%{TIMESTAMP}" -> "".
QString timeFormatOf(const QString &lexeme)
{
    const int blank = lexeme.indexOf(QLatin1Char(' '));
    return blank > 0 ? lexeme.mid(blank + 1, lexeme.size() - blank - 2) : QString();
}

QString typeText(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("DEBUG");
    case QtWarningMsg:
        return QStringLiteral("WARNING");
    case QtCriticalMsg:
        return QStringLiteral("CRITICAL");
    case QtFatalMsg:
        return QStringLiteral("FATAL");
    case QtInfoMsg:
        return QStringLiteral("INFO");
    }
    return {};
}

QString timeText(const QString &format)
{
    const QDateTime now = QDateTime::currentDateTime();
    return format.isEmpty() ? now.toString(Qt::ISODate) : now.toString(format);
}

QLatin1String textOr(const char *text, const char *fallback)
{
    return QLatin1String(text ? text : fallback);
}

// Whether what follows the condition is left out; false for a token that is no condition.
bool conditionHides(const char *token, QtMsgType type, const QMessageLogContext &context)
{
    if (token == ifCategoryTokenC) {
        return !context.category || std::strcmp(context.category, "default") == 0;
    }
    if (token == ifNotInfoTokenC) {
        return type == QtInfoMsg;
    }
    return (token == ifDebugTokenC && type != QtDebugMsg) || (token == ifInfoTokenC && type != QtInfoMsg)
           || (token == ifWarningTokenC && type != QtWarningMsg)
           || (token == ifCriticalTokenC && type != QtCriticalMsg);
}

bool isCondition(const char *token)
{
    return token == ifCategoryTokenC || token == ifNotInfoTokenC || token == ifDebugTokenC
           || token == ifInfoTokenC || token == ifWarningTokenC || token == ifCriticalTokenC;
}

// The text of a token that is neither a time nor a condition nor their end.
QString tokenText(const char *token, QtMsgType type, const QMessageLogContext &context)
{
    if (token == typeTokenC) {
        return typeText(type);
    }
    if (token == categoryTokenC) {
        return textOr(context.category, "");
    }
    if (token == fileTokenC) {
        return textOr(context.file, "unknown");
    }
    if (token == lineTokenC) {
        return QString::number(context.line);
    }
    if (token == functionTokenC) {
        return textOr(context.function, "unknown");
    }
    if (token == pidTokenC) {
        return QString::number(QCoreApplication::applicationPid());
    }
    if (token == threadidTokenC) {
        return QString::number(reinterpret_cast<quintptr>(QThread::currentThreadId()));
    }
    return QLatin1String(token);
}

LogMessagePattern::LogMessagePattern()
{
    timer.start();
    setPattern(QLatin1String(defaultPatternC));
}

LogMessagePattern::~LogMessagePattern()
{
    const std::lock_guard<QBasicMutex> lock(mutex);
    isDestroyed = true;
}

void LogMessagePattern::setPattern(const QString &pattern)
{
    tokens.clear();
    literals.clear();
    timeArgs.clear();
    const QStringList lexemes = splitIntoLexemes(pattern);
    tokens.reserve(static_cast<size_t>(lexemes.size()) + 1);
    for (const QString &lexeme : lexemes) {
        tokens.push_back(tokenOf(lexeme));
    }
    tokens.push_back(nullptr);
}

const char *LogMessagePattern::tokenOf(const QString &lexeme)
{
    if (!lexeme.startsWith(QLatin1String("%{")) || !lexeme.endsWith(QLatin1Char('}'))) {
        return literal(lexeme);
    }
    if (lexeme.startsWith(QLatin1String(timeTokenC))) {
        timeArgs.append(timeFormatOf(lexeme));
        return timeTokenC;
    }
    for (const Placeholder &placeholder : placeholders) {
        if (lexeme == QLatin1String(placeholder.lexeme)) {
            return placeholder.token;
        }
    }
    return emptyTokenC;
}

const char *LogMessagePattern::literal(const QString &text)
{
    const QByteArray latin1 = text.toLatin1();
    const size_t size = static_cast<size_t>(latin1.size()) + 1;
    literals.push_back(std::make_unique<char[]>(size));
    std::memcpy(literals.back().get(), latin1.constData(), size);
    return literals.back().get();
}

QString LogMessagePattern::format(QtMsgType type, const QMessageLogContext &context,
                                  const QString &message) const
{
    QString line;
    line.reserve(message.size() + 64);
    bool skip = false;
    int timeArg = 0;
    for (const char *token : tokens) {
        if (!token) {
            break;
        }
        if (token == endifTokenC) {
            skip = false;
        } else if (token == timeTokenC) {
            // A skipped time still uses up its format.
            const QString &format = timeArgs.at(timeArg++);
            if (!skip) {
                line += timeText(format);
            }
        } else if (skip) {
            continue;
        } else if (isCondition(token)) {
            skip = conditionHides(token, type, context);
        } else if (token == messageTokenC) {
            line += message;
        } else {
            line += tokenText(token, type, context);
        }
    }
    return line;
}

} // namespace

QString koraFormatLogMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const std::lock_guard<QBasicMutex> lock(LogMessagePattern::mutex);
    if (LogMessagePattern::isDestroyed) {
        return message;
    }
    return koraLogMessagePattern->format(type, context, message);
}

void KORA::koraSetLogMessagePattern(const QString &text)
{
    const std::lock_guard<QBasicMutex> lock(LogMessagePattern::mutex);
    if (LogMessagePattern::isDestroyed) {
        return;
    }
    koraLogMessagePattern->setPattern(text);
}
