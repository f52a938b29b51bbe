// SPDX-License-Identifier: Apache-2.0
#include "crashtrace.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

#include <kora/dev/model/activitylog.h>
#include <kora/dev/model/plugincall.h>

using namespace KORA::DEV;

namespace {

const int frameCount = 64;
const int lineCount = 40;          // of each kind that a crash's details show
const qint64 largestFile = 262144; // of lines; then it is begun anew

int backtraceFile = -1;

// Only what is allowed in a handler of signals; backtrace() has been called before, so that it loads nothing here.
extern "C" void onCrash(int number)
{
    void *frames[frameCount];
    const int count = ::backtrace(frames, frameCount);
    ::backtrace_symbols_fd(frames, count, backtraceFile);
    (void)::raise(number); // the default action follows, with its core file
}

void installCrashHandler(const QString &path)
{
// Sanitizers have their own.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    backtraceFile =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    void *frame = nullptr;
    if (backtraceFile < 0 || ::backtrace(&frame, 1) < 1) {
        return;
    }
    // The stack may be what is used up.
    static char stack[128 * 1024];
    stack_t alternative = {};
    alternative.ss_sp = stack;
    alternative.ss_size = sizeof stack;
    ::sigaltstack(&alternative, nullptr);
    struct sigaction action = {};
    action.sa_handler = onCrash;
    action.sa_flags = static_cast<int>(SA_ONSTACK | SA_RESETHAND);
    for (const int number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
        ::sigaction(number, &action, nullptr);
    }
#else
    Q_UNUSED(path)
    Q_UNUSED(onCrash)
#endif
}

QString lineOf(const ActivityEntry &entry)
{
    const QString times = entry.count > 1 ? QStringLiteral(" x%1").arg(entry.count) : QString();
    const QString result = entry.result.isEmpty() ? QString() : QStringLiteral(" = %1").arg(entry.result);
    return QStringLiteral("%1 %2 %3(%4)%5%6")
        .arg(entry.time.toString(QStringLiteral("hh:mm:ss.zzz")), entry.instance, entry.what, entry.arguments,
             result, times);
}

QStringList linesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList lastLines(const QString &path)
{
    const QStringList lines = linesOf(path);
    return lines.mid(qMax(0, lines.size() - lineCount));
}

// "/path/lib.so(_ZN4Tank4initEv+0x12)[0x7f]" as "lib.so: Tank::init()+0x12"
QString readableFrame(const QString &frame)
{
    static const QRegularExpression form(QStringLiteral("\\A(.*)\\((.*)(\\+0x[0-9a-f]+)\\)\\[.*\\]\\z"));
    const QRegularExpressionMatch match = form.match(frame);
    if (!match.hasMatch()) {
        return frame;
    }
    int status = -1;
    const QString mangled = match.captured(2);
    char *name = abi::__cxa_demangle(mangled.toLatin1().constData(), nullptr, nullptr, &status);
    const QString function = name ? QString::fromLatin1(name) : mangled;
    std::free(name);
    return QStringLiteral("%1: %2%3")
        .arg(QFileInfo(match.captured(1)).fileName(), function, match.captured(3));
}

// Innermost first; the handler's own frames are of no interest.
QStringList backtraceOf(const QString &path)
{
    const int ownFrames = 2;
    QStringList frames;
    const QStringList lines = linesOf(path).mid(ownFrames, lineCount);
    for (const QString &line : lines) {
        frames.append(readableFrame(line));
    }
    return frames;
}

void addSection(QStringList &details, const QString &title, const QStringList &lines)
{
    if (!lines.isEmpty()) {
        details += QStringList{title} + lines + QStringList{QString()};
    }
}

} // namespace

CrashTrace::CrashTrace(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_activity(QDir(folder).filePath(QStringLiteral("activity")))
    , m_log(QDir(folder).filePath(QStringLiteral("log")))
{
    CallTrace::instance().open(QDir(folder).filePath(QStringLiteral("calls")));
    installCrashHandler(QDir(folder).filePath(QStringLiteral("backtrace")));
    m_activity.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    m_log.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

void CrashTrace::follow(ActivityLog *activity)
{
    connect(activity, &ActivityLog::rowsInserted, this,
            [this, activity](const QModelIndex &, int first, int last) {
                for (int i = first; i <= last; ++i) {
                    append(m_activity, lineOf(activity->entries().at(i)));
                }
            });
}

void CrashTrace::addLogLine(const QString &line)
{
    append(m_log, line);
}

void CrashTrace::append(QFile &file, const QString &line)
{
    if (!file.isOpen()) {
        return;
    }
    if (file.size() > largestFile) {
        file.resize(0);
        file.seek(0);
    }
    file.write(line.toUtf8() + '\n');
}

BenchCrash CrashTrace::read(const QString &folder, const QString &cause)
{
    const QDir dir(folder);
    BenchCrash crash;
    crash.cause = cause;
    crash.calls = CallTrace::runningCalls(dir.filePath(QStringLiteral("calls")));
    QStringList details{crash.summary(), QString()};
    addSection(details, QStringLiteral("Running calls, outermost first:"), crash.calls);
    addSection(details, QStringLiteral("Backtrace, innermost first:"),
               backtraceOf(dir.filePath(QStringLiteral("backtrace"))));
    addSection(details, QStringLiteral("Last activity:"),
               lastLines(dir.filePath(QStringLiteral("activity"))));
    addSection(details, QStringLiteral("Last log lines:"), lastLines(dir.filePath(QStringLiteral("log"))));
    crash.details = details.join(QLatin1Char('\n'));
    return crash;
}

QString signalName(int number)
{
    const char *name = ::sigabbrev_np(number);
    return name ? QLatin1String("SIG") + QLatin1String(name) : QStringLiteral("signal %1").arg(number);
}
