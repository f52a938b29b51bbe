// SPDX-License-Identifier: Apache-2.0
#include <kora/log/logging.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QStringList>
#include <QtCore/QThread>

#include <chrono>
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

/// What a time token printed, which the lines of the same second share.
struct SecondText
{
    qint64 second = -1;
    QString text;
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
    /// Appends to @p line. @p milliseconds is the time of the message, since 1970.
    void format(QtMsgType type, const QMessageLogContext &context, const QString &message,
                qint64 milliseconds, QString &line);

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
    QList<QString> timeArgs;           // one entry per time token, in the pattern's order
    std::vector<SecondText> timeTexts; // what each printed last
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

QLatin1String typeText(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QLatin1String("DEBUG");
    case QtWarningMsg:
        return QLatin1String("WARNING");
    case QtCriticalMsg:
        return QLatin1String("CRITICAL");
    case QtFatalMsg:
        return QLatin1String("FATAL");
    case QtInfoMsg:
        return QLatin1String("INFO");
    }
    return {};
}

qint64 millisecondsSinceEpoch()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

const QString &timeText(const QString &format, qint64 milliseconds, SecondText &latest)
{
    const qint64 second = milliseconds / 1000;
    const bool showsMilliseconds = format.contains(QLatin1Char('z'));
    if (second != latest.second || showsMilliseconds) {
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(milliseconds);
        latest.text = format.isEmpty() ? time.toString(Qt::ISODate) : time.toString(format);
        latest.second = second;
    }
    return latest.text;
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

// Appends the text of a token that is neither the message nor a time nor a condition nor their end.
void appendToken(QString &line, const char *token, QtMsgType type, const QMessageLogContext &context)
{
    if (token == typeTokenC) {
        line += typeText(type);
    } else if (token == categoryTokenC) {
        line += textOr(context.category, "");
    } else if (token == fileTokenC) {
        line += textOr(context.file, "unknown");
    } else if (token == lineTokenC) {
        line += QString::number(context.line);
    } else if (token == functionTokenC) {
        line += textOr(context.function, "unknown");
    } else if (token == pidTokenC) {
        line += QString::number(QCoreApplication::applicationPid());
    } else if (token == threadidTokenC) {
        line += QString::number(reinterpret_cast<quintptr>(QThread::currentThreadId()));
    } else {
        line += QLatin1String(token);
    }
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
    timeTexts.assign(static_cast<size_t>(timeArgs.size()), SecondText());
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

void LogMessagePattern::format(QtMsgType type, const QMessageLogContext &context, const QString &message,
                               qint64 milliseconds, QString &line)
{
    bool skip = false;
    int timeArg = 0;
    for (const char *token : tokens) {
        if (!token) {
            break;
        }
        if (token == endifTokenC) {
            skip = false;
        } else if (token == timeTokenC) {
            const int arg = timeArg++; // a skipped time still uses up its format
            if (!skip) {
                line += timeText(timeArgs.at(arg), milliseconds, timeTexts[static_cast<size_t>(arg)]);
            }
        } else if (skip) {
            continue;
        } else if (isCondition(token)) {
            skip = conditionHides(token, type, context);
        } else if (token == messageTokenC) {
            line += message;
        } else {
            appendToken(line, token, type, context);
        }
    }
}

} // namespace

QString koraFormatLogMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    // What needs no lock is done before other threads have to wait.
    const qint64 milliseconds = millisecondsSinceEpoch();
    QString line;
    line.reserve(message.size() + 64);
    const std::lock_guard<QBasicMutex> lock(LogMessagePattern::mutex);
    if (LogMessagePattern::isDestroyed) {
        return message;
    }
    koraLogMessagePattern->format(type, context, message, milliseconds, line);
    return line;
}

void KORA::koraSetLogMessagePattern(const QString &text)
{
    const std::lock_guard<QBasicMutex> lock(LogMessagePattern::mutex);
    if (LogMessagePattern::isDestroyed) {
        return;
    }
    koraLogMessagePattern->setPattern(text);
}
