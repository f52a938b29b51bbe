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
#include <mutex>
#include <vector>

namespace {

const char defaultPatternC[] =
    "[%{TIME}]%{IF-NOT-INFO}[%{TYPE}]%{ENDIF}%{IF-CATEGORY}[%{CATEGORY}]%{ENDIF}: %{MESSAGE}";

enum class TokenKind {
    Literal,
    Type,
    Category,
    Message,
    File,
    Line,
    Function,
    Pid,
    Thread,
    Time,
    IfNotInfo,
    IfCategory,
    EndIf,
};

struct Placeholder
{
    QLatin1String lexeme;
    TokenKind kind;
};

const QLatin1String timeLexemeStart("%{TIME");

// The four conditions on a level compile to the condition on the category: "%{IF-DEBUG}" shows its contents
// exactly when "%{IF-CATEGORY}" would. Hosts' patterns rely on it.
const Placeholder placeholders[] = {
    {QLatin1String("%{TYPE}"), TokenKind::Type},
    {QLatin1String("%{CATEGORY}"), TokenKind::Category},
    {QLatin1String("%{MESSAGE}"), TokenKind::Message},
    {QLatin1String("%{FILE}"), TokenKind::File},
    {QLatin1String("%{LINE}"), TokenKind::Line},
    {QLatin1String("%{FUNCTION}"), TokenKind::Function},
    {QLatin1String("%{PID}"), TokenKind::Pid},
    {QLatin1String("%{THREAD}"), TokenKind::Thread},
    {QLatin1String("%{IF-NOT-INFO}"), TokenKind::IfNotInfo},
    {QLatin1String("%{IF-CATEGORY}"), TokenKind::IfCategory},
    {QLatin1String("%{IF-DEBUG}"), TokenKind::IfCategory},
    {QLatin1String("%{IF-INFO}"), TokenKind::IfCategory},
    {QLatin1String("%{IF-WARNING}"), TokenKind::IfCategory},
    {QLatin1String("%{IF-CRITICAL}"), TokenKind::IfCategory},
    {QLatin1String("%{ENDIF}"), TokenKind::EndIf},
};

/// A piece of a pattern.
struct Token
{
    explicit Token(TokenKind tokenKind, const QString &tokenText = {})
        : kind(tokenKind)
        , text(tokenText)
    {}

    TokenKind kind;
    /// Of a literal what it prints; of a time the QDateTime format, or nothing for ISO 8601.
    QString text;

    // Of a time: what it printed last. Lines of the same second share the text.
    qint64 second = -1;
    QString secondText;
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
    std::vector<Token> tokens;
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

QLatin1String textOr(const char *text, const char *fallback)
{
    return QLatin1String(text ? text : fallback);
}

qint64 millisecondsSinceEpoch()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

bool isDefaultCategory(const char *category)
{
    return !category || std::strcmp(category, "default") == 0;
}

Token tokenOf(const QString &lexeme)
{
    if (!lexeme.startsWith(QLatin1String("%{")) || !lexeme.endsWith(QLatin1Char('}'))) {
        return Token(TokenKind::Literal, QString::fromLatin1(lexeme.toLatin1().constData()));
    }
    if (lexeme.startsWith(timeLexemeStart)) {
        return Token(TokenKind::Time, timeFormatOf(lexeme));
    }
    for (const Placeholder &placeholder : placeholders) {
        if (lexeme == placeholder.lexeme) {
            return Token(placeholder.kind);
        }
    }
    return Token(TokenKind::Literal);
}

const QString &timeText(Token &token, qint64 milliseconds)
{
    const qint64 second = milliseconds / 1000;
    const bool showsMilliseconds = token.text.contains(QLatin1Char('z'));
    if (second != token.second || showsMilliseconds) {
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(milliseconds);
        token.secondText = token.text.isEmpty() ? time.toString(Qt::ISODate) : time.toString(token.text);
        token.second = second;
    }
    return token.secondText;
}

// Appends the text of a token that is neither the message nor a time nor a condition nor their end.
void appendToken(QString &line, const Token &token, QtMsgType type, const QMessageLogContext &context)
{
    switch (token.kind) {
    case TokenKind::Type:
        line += typeText(type);
        break;
    case TokenKind::Category:
        line += textOr(context.category, "");
        break;
    case TokenKind::File:
        line += textOr(context.file, "unknown");
        break;
    case TokenKind::Line:
        line += QString::number(context.line);
        break;
    case TokenKind::Function:
        line += textOr(context.function, "unknown");
        break;
    case TokenKind::Pid:
        line += QString::number(QCoreApplication::applicationPid());
        break;
    case TokenKind::Thread:
        line += QString::number(reinterpret_cast<quintptr>(QThread::currentThreadId()));
        break;
    default:
        line += token.text;
        break;
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
    const QStringList lexemes = splitIntoLexemes(pattern);
    for (const QString &lexeme : lexemes) {
        tokens.push_back(tokenOf(lexeme));
    }
}

void LogMessagePattern::format(QtMsgType type, const QMessageLogContext &context, const QString &message,
                               qint64 milliseconds, QString &line)
{
    bool skip = false;
    for (Token &token : tokens) {
        if (token.kind == TokenKind::EndIf) {
            skip = false;
        } else if (skip) {
            continue;
        } else if (token.kind == TokenKind::IfNotInfo) {
            skip = type == QtInfoMsg;
        } else if (token.kind == TokenKind::IfCategory) {
            skip = isDefaultCategory(context.category);
        } else if (token.kind == TokenKind::Message) {
            line += message;
        } else if (token.kind == TokenKind::Time) {
            line += timeText(token, milliseconds);
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
