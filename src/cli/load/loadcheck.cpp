// SPDX-License-Identifier: Apache-2.0
#include "loadcheck.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

#include "loadcheckreport.h"
#include "loadchecks.h"
#include "output.h"

#include <algorithm>
#include <csignal>
#include <cstdio>

using KORA::DEV::Finding;
using KORA::DEV::Findings;

namespace {

const int pollMs = 50;
const int startMs = 30000;
const int keptOutput = 4096; // bytes of standard error
const int keptLines = 4;     // of what a dying plugin wrote last
const int mostDeaths = 3;    // of one widget; a fourth tells nothing new
const char hangRule[] = "load-hang";

/// Keeps what a run tells: each finding once, whichever check meets it first, and the present step.
class RunRecord : public LoadCheckReport
{
public:
    void begin(const CheckStep &newStep) override
    {
        step = newStep;
        call(QString(), QString(), QString());
        logLines.clear();
        hasBegun = true;
    }
    void call(const QString &text, const QString &newFieldId, const QString &newValue) override
    {
        lastCall = text;
        fieldId = newFieldId;
        value = newValue;
    }
    void log(const QString &line) override
    {
        const QMutexLocker lock(&m_mutex);
        logLines.append(line);
        if (logLines.size() > keptLines) {
            logLines.removeFirst();
        }
    }
    void finding(const Finding &finding) override
    {
        static const QRegularExpression address(QStringLiteral("0x[0-9a-f]+"));
        QString message = finding.message;
        const QStringList key{finding.widgetId, finding.widgetVersion, message.remove(address)};
        if (!m_known.contains(key)) {
            m_known.insert(key);
            findings.append(finding);
        }
    }
    void problem(const QString &text) override { problemText = text; }
    void done() override { isDone = true; }

    CheckStep step;
    QString lastCall;
    QString fieldId; // of the last call
    QString value;
    QStringList logLines;
    Findings findings;
    QString problemText;
    bool hasBegun = false; // since the last process was started
    bool isDone = false;

private:
    QMutex m_mutex;
    QSet<QStringList> m_known;
};

/// How a child process came to its end.
struct Ending
{
    QString rule; // empty if all is well
    QString how;  // "crashed with SIGSEGV"
    QByteArray output;
};

// QCoreApplication knows it too, but wants an object.
QString ownProgram()
{
    return QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget();
}

QString signalName(int number)
{
    // sigabbrev_np() is younger than the C libraries that we run on.
    static const QHash<int, QString> names{
        {SIGSEGV, QStringLiteral("SIGSEGV")}, {SIGABRT, QStringLiteral("SIGABRT")},
        {SIGFPE, QStringLiteral("SIGFPE")},   {SIGBUS, QStringLiteral("SIGBUS")},
        {SIGILL, QStringLiteral("SIGILL")},   {SIGTRAP, QStringLiteral("SIGTRAP")},
        {SIGKILL, QStringLiteral("SIGKILL")}, {SIGTERM, QStringLiteral("SIGTERM")},
    };
    return names.value(number, QStringLiteral("signal %1").arg(number));
}

QStringList childArguments(const LoadCheckPlan &plan, int firstStep)
{
    QStringList arguments{QStringLiteral("check-child"),
                          QStringLiteral("--library"),
                          plan.libraryPath,
                          QStringLiteral("--id"),
                          plan.expectedId,
                          QStringLiteral("--seed"),
                          QString::number(plan.seed),
                          QStringLiteral("--time-limit"),
                          QString::number(plan.timeLimitMs),
                          QStringLiteral("--first-step"),
                          QString::number(firstStep)};
    for (const QString &widget : plan.widgets) {
        arguments << QStringLiteral("--widget") << widget;
    }
    for (const QString &check : plan.checks) {
        arguments << QStringLiteral("--check") << check;
    }
    return arguments;
}

/// One child process from start to end.
class ChildProcess
{
public:
    ChildProcess(const LoadCheckOptions &options, RunRecord &record)
        : m_plan(options.plan)
        , m_program(options.program.isEmpty() ? ownProgram() : options.program)
        , m_record(record)
    {}

    bool start(int firstStep)
    {
        // Until it tells otherwise.
        m_record.begin({0, 1, QLatin1String(loadCheckName), QString(), QString()});
        m_record.call(QStringLiteral("the start of the process"), QString(), QString());
        m_record.hasBegun = false;
        m_record.isDone = false;
        m_process.setStandardInputFile(QProcess::nullDevice());
        m_process.start(m_program, childArguments(m_plan, firstStep));
        m_sinceStep.start();
        return m_process.waitForStarted(startMs);
    }

    Ending waitForEnd()
    {
        bool isHanging = false;
        while (m_process.state() != QProcess::NotRunning && !isHanging) {
            m_process.waitForReadyRead(pollMs);
            readAll();
            isHanging = m_sinceStep.elapsed() > m_plan.timeLimitMs;
        }
        if (isHanging) {
            m_process.kill();
        }
        m_process.waitForFinished(startMs);
        readAll();
        return ending(isHanging);
    }

private:
    void readAll()
    {
        m_output = (m_output + m_process.readAllStandardError()).right(keptOutput);
        while (m_process.canReadLine()) {
            const int before = m_record.step.number;
            const bool hadBegun = m_record.hasBegun;
            readCheckLine(m_process.readLine(), m_record);
            if (m_record.step.number != before || m_record.hasBegun != hadBegun) {
                m_sinceStep.restart();
            }
        }
    }

    Ending ending(bool isHanging) const
    {
        if (isHanging) {
            const double seconds = m_plan.timeLimitMs / 1000.0;
            return {QLatin1String(hangRule), QStringLiteral("hangs and was stopped after %1 s,").arg(seconds),
                    m_output};
        }
        if (m_process.exitStatus() == QProcess::CrashExit) {
            const bool isAbort = m_process.exitCode() == SIGABRT;
            return {isAbort ? QStringLiteral("load-abort") : QStringLiteral("load-crash"),
                    QStringLiteral("%1 with %2")
                        .arg(QLatin1String(isAbort ? "aborts" : "crashes"), signalName(m_process.exitCode())),
                    m_output};
        }
        if (!m_record.isDone && m_record.problemText.isEmpty()) {
            return {QStringLiteral("load-exit"),
                    QStringLiteral("ends the process with exit code %1").arg(m_process.exitCode()), m_output};
        }
        return {};
    }

    const LoadCheckPlan &m_plan;
    QString m_program;
    RunRecord &m_record;
    QProcess m_process;
    QElapsedTimer m_sinceStep;
    QByteArray m_output;
};

QString lastWords(const RunRecord &record, const QByteArray &output)
{
    QStringList lines;
    const QList<QByteArray> outputLines = output.split('\n');
    for (const QByteArray &line : outputLines) {
        if (!line.trimmed().isEmpty()) {
            lines.append(QString::fromUtf8(line.trimmed()));
        }
    }
    const QStringList words = record.logLines + lines.mid(qMax(0, lines.size() - keptLines));
    return words.isEmpty() ? QString()
                           : QStringLiteral("; it wrote last: %1").arg(words.join(QLatin1String(" | ")));
}

QString quotedForShell(const QString &text)
{
    const bool isPlain = std::all_of(text.cbegin(), text.cend(), [](QChar c) {
        return (c.unicode() < 0x80 && c.isLetterOrNumber()) || QStringLiteral("/._-@+").contains(c);
    });
    QString quoted = text;
    return isPlain ? text
                   : QLatin1Char('\'') + quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"))
                         + QLatin1Char('\'');
}

QString commandThatRepeats(const LoadCheckOptions &options, const CheckStep &step)
{
    QString command = QStringLiteral("kora check %1 --load --in-process --seed %2")
                          .arg(quotedForShell(options.path), QString::number(options.plan.seed));
    if (!step.widgetId.isEmpty()) {
        command += QStringLiteral(" --widget %1")
                       .arg(quotedForShell(step.widgetId + QLatin1Char('@') + step.widgetVersion));
    }
    return command + QStringLiteral(" --check %1").arg(step.check);
}

Finding findingOf(const LoadCheckOptions &options, const RunRecord &record, const Ending &ending)
{
    const CheckStep &step = record.step;
    const QString what = step.widgetId.isEmpty() ? QStringLiteral("the plugin") : QStringLiteral("it");
    Finding finding;
    finding.rule = ending.rule;
    finding.message = QStringLiteral("%1 %2 in the check \"%3\", in %4 (seed %5)%6")
                          .arg(what, ending.how, step.check, record.lastCall,
                               QString::number(options.plan.seed), lastWords(record, ending.output));
    finding.hint = QStringLiteral("repeat it in a debugger: %1").arg(commandThatRepeats(options, step));
    finding.file = options.plan.libraryPath;
    finding.widgetId = step.widgetId;
    finding.widgetVersion = step.widgetVersion;
    finding.fieldId = record.fieldId;
    finding.value = record.value;
    return finding;
}

bool isPrecondition(const QString &name)
{
    const QVector<LoadCheck> &checks = widgetChecks();
    return std::any_of(checks.cbegin(), checks.cend(), [&name](const LoadCheck &check) {
        return check.isPrecondition && name == QLatin1String(check.name);
    });
}

bool isKnownCheck(const QString &name)
{
    const QVector<LoadCheck> &checks = widgetChecks();
    return name == QLatin1String(loadCheckName) || name == QLatin1String(registrationCheckName)
           || name == QLatin1String(unloadCheckName)
           || std::any_of(checks.cbegin(), checks.cend(),
                          [&name](const LoadCheck &check) { return name == QLatin1String(check.name); });
}

QString checkProblem(const QStringList &names)
{
    for (const QString &name : names) {
        if (!isKnownCheck(name)) {
            QStringList known{QLatin1String(loadCheckName), QLatin1String(registrationCheckName)};
            for (const LoadCheck &check : widgetChecks()) {
                known.append(QLatin1String(check.name));
            }
            known.append(QLatin1String(unloadCheckName));
            return QStringLiteral("--check %1: there is no such check; there are %2")
                .arg(name, known.join(QLatin1String(", ")));
        }
    }
    return {};
}

/// Children one after the other, until one comes to the end or there is nothing left to check.
class Supervisor
{
public:
    explicit Supervisor(const LoadCheckOptions &options)
        : m_options(options)
    {}

    LoadCheckResult run()
    {
        int firstStep = 0;
        while (firstStep >= 0) {
            ChildProcess child(m_options, m_record);
            if (!child.start(firstStep)) {
                m_record.problem(QStringLiteral("the process for the checks cannot be started"));
                break;
            }
            const Ending ending = child.waitForEnd();
            if (ending.rule.isEmpty()) {
                break;
            }
            firstStep = died(ending);
        }
        return {m_record.findings, m_hasDied, m_record.problemText};
    }

private:
    /// Where the next child is to go on; -1 if it cannot.
    int died(const Ending &ending)
    {
        m_hasDied = true;
        m_record.finding(findingOf(m_options, m_record, ending));
        const CheckStep &step = m_record.step;
        if (!m_record.hasBegun || step.check == QLatin1String(loadCheckName)
            || step.check == QLatin1String(unloadCheckName)) {
            return -1;
        }
        const bool isEnough = ++m_deaths[step.widgetId + QLatin1Char(' ') + step.widgetVersion] >= mostDeaths;
        if (isEnough && !step.widgetId.isEmpty()) {
            m_record.finding(restNotChecked());
        }
        return isEnough || isPrecondition(step.check) ? step.nextWidget : step.number + 1;
    }

    Finding restNotChecked() const
    {
        Finding finding;
        finding.severity = Finding::Note;
        finding.rule = QStringLiteral("load-skipped");
        finding.message =
            QStringLiteral("it died in %1 checks: its further checks were left out").arg(mostDeaths);
        finding.file = m_options.plan.libraryPath;
        finding.widgetId = m_record.step.widgetId;
        finding.widgetVersion = m_record.step.widgetVersion;
        return finding;
    }

    const LoadCheckOptions &m_options;
    RunRecord m_record;
    QHash<QString, int> m_deaths;
    bool m_hasDied = false;
};

/// Tells the person at the debugger how far it is.
class EchoingRecord : public RunRecord
{
public:
    void begin(const CheckStep &newStep) override
    {
        RunRecord::begin(newStep);
        echo(QStringLiteral("%1 %2: %3").arg(newStep.widgetId, newStep.widgetVersion, newStep.check));
    }
    void log(const QString &line) override { echo(QLatin1String("    ") + line); }

private:
    static void echo(const QString &line)
    {
        (void)std::fprintf(stderr, "%s\n", printable(line.trimmed()).toUtf8().constData());
    }
};

LoadCheckResult runInProcess(const LoadCheckPlan &plan)
{
    EchoingRecord record;
    takeCheckSteps(plan, record);
    return {record.findings, false, record.problemText};
}

} // namespace

LoadCheckResult runLoadChecks(const LoadCheckOptions &options)
{
    const QString problem = checkProblem(options.plan.checks);
    if (!problem.isEmpty()) {
        return {{}, false, problem};
    }
    return options.isInProcess ? runInProcess(options.plan) : Supervisor(options).run();
}
