// SPDX-License-Identifier: Apache-2.0
#include "benchsupervisor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSocketNotifier>

#include <unistd.h>

#include <kora/dev/session/benchsession.h>

#include "command.h"
#include "crashtrace.h"
#include "endsignals.h"
#include "output.h"
#include "pluginfolder.h"

using KORA::DEV::BenchSession;

namespace {

const int handOverMs = 2000;      // for a window to put its session on disk; it may hang in the plugin
const int readyMs = 20000;        // for a window to take over
const int closeMs = 3000;         // for a window to end
const qint64 repeatedEndMs = 500; // who asks again after that will not wait
const qint64 repeatMs = 60000;    // two crashes within this time are one too many

} // namespace

BenchSupervisor::BenchSupervisor(const BenchStart &start, const QString &sessionPath, QObject *parent)
    : QObject(parent)
    , m_start(start)
{
    chooseSession(sessionPath);
    m_handOverTimer.setSingleShot(true);
    m_handOverTimer.setInterval(handOverMs);
    connect(&m_handOverTimer, &QTimer::timeout, this, &BenchSupervisor::startReload);
    auto *signalsToEnd = new EndSignals(this);
    connect(signalsToEnd, &EndSignals::endRequested, this, &BenchSupervisor::endAll);
}

BenchSupervisor::~BenchSupervisor() = default;

// Windows hand over by way of the session file, so that there always is one.
void BenchSupervisor::chooseSession(const QString &sessionPath)
{
    m_sessionPath = m_dir.filePath(QStringLiteral("session.json"));
    if (sessionPath.isEmpty()) {
        return;
    }
    if (!QDir().mkpath(QFileInfo(sessionPath).path())) {
        printWarning(QStringLiteral("the folder %1 cannot be made: what is open is lost at the end")
                         .arg(QFileInfo(sessionPath).path()));
        return;
    }
    m_sessionLock = std::make_unique<QLockFile>(sessionPath + QLatin1String(".lock"));
    m_sessionLock->setStaleLockTime(0);
    if (!m_sessionLock->tryLock()) {
        printWarning(QStringLiteral("another bench has this plugin open: this one begins afresh and what is "
                                    "open here is lost at the end"));
        return;
    }
    m_sessionPath = sessionPath;
    if (!m_start.scenario.isEmpty() && !BenchSession::setAside(sessionPath)) {
        printWarning(
            QStringLiteral("the last session %1 cannot be put aside and will be replaced").arg(sessionPath));
    }
}

bool BenchSupervisor::reportTo(const QString &path)
{
    if (path != QLatin1String("-")) {
        m_report.setFileName(path);
        return m_report.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
    }
    auto *notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &BenchSupervisor::onCommands);
    return m_report.open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool BenchSupervisor::begin()
{
    if (!m_dir.isValid()) {
        printError(QStringLiteral("no temporary folder: %1").arg(m_dir.errorString()));
        return false;
    }
    m_start.session = m_sessionPath;
    m_watcher = std::make_unique<PluginWatcher>(m_start.folder, PluginFolder(m_start.folder).libraryPath());
    connect(m_watcher.get(), &PluginWatcher::libraryChanged, this, [this] { requestReload(true); });
    connect(m_watcher.get(), &PluginWatcher::libraryBroken, this,
            [this](const QString &problem) { refuseReload(problem, QString()); });
    m_current = startWindow(m_start);
    return m_current != nullptr;
}

// Windows ---------------------------------------------------------------------------------------------------------

WindowProcess *BenchSupervisor::startWindow(BenchStart start)
{
    start.traceFolder = m_dir.filePath(QStringLiteral("window%1").arg(++m_windowCount));
    QDir().mkpath(start.traceFolder);
    m_watcher->noteKnown();
    auto *window = new WindowProcess(start, this);
    connect(window, &WindowProcess::received, this,
            [this, window](const QString &event, const QJsonObject &message) {
                onEvent(window, event, message);
            });
    connect(window, &WindowProcess::ended, this, [this, window] { onEnded(window); });
    connect(window, &WindowProcess::answersNoMore, this, [this, window] {
        const QString call =
            CrashTrace::read(window->what().traceFolder, QString()).calls.join(QLatin1String(" > "));
        printWarning(QStringLiteral("the window has not answered for %1 s%2; to see where it is: gdb -p %3")
                         .arg(QString::number(WindowProcess::answerMs / 1000),
                              call.isEmpty() ? QString() : QStringLiteral(" (in %1)").arg(call),
                              QString::number(window->processId())));
        report(QStringLiteral("hangs"), {{QStringLiteral("call"), call}});
    });
    connect(window, &WindowProcess::answersAgain, this, [this] {
        printWarning(QStringLiteral("the window answers again"));
        report(QStringLiteral("answersAgain"));
    });
    if (window->begin()) {
        return window;
    }
    printError(QStringLiteral("the window's process cannot be started: %1").arg(window->errorString()));
    window->deleteLater();
    return nullptr;
}

void BenchSupervisor::onEvent(WindowProcess *window, const QString &event, const QJsonObject &message)
{
    if (event == QLatin1String("ready")) {
        onReady(window, message);
    } else if (event == QLatin1String("refused") && window == m_next) {
        onNextEnded(window, message[QLatin1String("reason")].toString());
    } else if (event == QLatin1String("handedOver") && window == m_current && m_handOverIsAwaited) {
        startReload();
    } else if (event == QLatin1String("reloadRequested") && window == m_current) {
        requestReload(message[QLatin1String("keepsState")].toBool(true));
    } else if (event == QLatin1String("openRequested") && window == m_current) {
        openOther(message[QLatin1String("folder")].toString());
    } else if (event == QLatin1String("startedAgain")) {
        report(event, message);
    }
}

void BenchSupervisor::onReady(WindowProcess *window, QJsonObject message)
{
    message.insert(QStringLiteral("pid"), window->processId());
    message.insert(QStringLiteral("reload"), window->what().isReload());
    message.insert(QStringLiteral("stopped"), window->what().isStopped);
    if (window == m_next) {
        m_next = nullptr;
        if (m_current) {
            m_current->close(closeMs);
        }
        m_current = window;
    }
    // What is open is in the session now; what the command line said has been done.
    const BenchStart done = m_start;
    m_start = BenchStart();
    m_start.folder = done.folder;
    m_start.session = done.session;
    m_start.theme = done.theme;
    report(QStringLiteral("ready"), message);
    if (m_reloadIsWanted) {
        requestReload(m_reloadKeepsState);
    }
}

void BenchSupervisor::onEnded(WindowProcess *window)
{
    window->deleteLater();
    const QString cause = window->cause();
    if (window == m_next) {
        const BenchCrash crash = CrashTrace::read(window->what().traceFolder, cause);
        m_next = nullptr;
        refuseReload(cause.isEmpty() ? QStringLiteral("the new window ended") : crash.summary(),
                     crash.details);
        return;
    }
    if (window->isClosing() && !cause.isEmpty()) {
        const BenchCrash crash = CrashTrace::read(window->what().traceFolder, cause);
        const QString call = crash.calls.isEmpty() ? QStringLiteral("the plugin") : crash.calls.last();
        printWarning(window->isKilled()
                         ? QStringLiteral("the window hung in %1 and was killed").arg(call)
                         : QStringLiteral("the window did not end well. %1").arg(crash.summary()));
        report(QStringLiteral("crashedAtEnd"), crash.toJson());
    }
    if (window == m_current) {
        m_current = nullptr;
        onCurrentEnded(window);
    } else if (m_isEnding && !m_current) {
        finish(m_exitCode);
    }
}

void BenchSupervisor::onCurrentEnded(WindowProcess *window)
{
    if (window->isClosing() || m_isEnding) {
        if (m_next) {
            m_next->close(closeMs);
        }
        finish(m_exitCode);
        return;
    }
    const QString cause = window->cause();
    if (!window->hasOpened()) {
        printError(QStringLiteral("the window cannot be opened (%1)").arg(cause));
        finish(ExitFindings);
        return;
    }
    restartAfterCrash(window, cause);
}

void BenchSupervisor::restartAfterCrash(const WindowProcess *window, const QString &cause)
{
    BenchCrash crash = CrashTrace::read(window->what().traceFolder, cause);
    const qint64 now = monotonicMs();
    crash.isRepeated = m_lastCrashMs >= 0 && now - m_lastCrashMs < repeatMs;
    m_lastCrashMs = now;
    printWarning(crash.summary());
    report(QStringLiteral("crashed"), crash.toJson());
    if (window->what().withoutPlugin) {
        printError(QStringLiteral("the window crashed without the plugin"));
        finish(ExitFindings);
        return;
    }
    m_start.withoutPlugin = window->what().isStopped && !window->isReady();
    m_start.isStopped = true;
    m_start.crash = crash;
    if (m_next) {
        return; // takes over anyway
    }
    m_reloadIsWanted = false; // so does this one
    m_current = startWindow(m_start);
    if (!m_current) {
        finish(ExitFindings);
    }
}

// Reload ----------------------------------------------------------------------------------------------------------

void BenchSupervisor::requestReload(bool keepsState)
{
    m_reloadKeepsState = keepsState;
    m_reloadIsWanted = m_next || m_handOverIsAwaited || !m_current || !m_current->isReady();
    if (m_reloadIsWanted || m_isEnding) {
        return;
    }
    m_reloadSinceMs = monotonicMs();
    m_handOverIsAwaited = true;
    m_handOverTimer.start();
    m_current->send(QStringLiteral("handOver"));
}

void BenchSupervisor::startReload()
{
    m_handOverTimer.stop();
    m_handOverIsAwaited = false;
    BenchStart start;
    start.folder = m_start.folder;
    start.session = m_start.session;
    start.theme = m_start.theme;
    start.reloadSinceMs = m_reloadSinceMs;
    start.isFresh = !m_reloadKeepsState;
    m_next = startWindow(start);
    if (!m_next) {
        refuseReload(QStringLiteral("the new window's process cannot be started"), QString());
        return;
    }
    QTimer::singleShot(readyMs, m_next, [this, window = m_next] {
        if (window == m_next) {
            onNextEnded(window,
                        QStringLiteral("the new window was not ready after %1 s").arg(readyMs / 1000));
        }
    });
}

void BenchSupervisor::onNextEnded(WindowProcess *window, const QString &cause)
{
    m_next = nullptr;
    window->close(closeMs);
    refuseReload(cause, QString());
}

/// The old window stays, and says why.
void BenchSupervisor::refuseReload(const QString &reason, const QString &details)
{
    report(QStringLiteral("reloadRefused"), {{QStringLiteral("reason"), reason}});
    if (m_current) {
        m_current->send(QStringLiteral("reloadRefused"),
                        {{QStringLiteral("reason"), reason}, {QStringLiteral("details"), details}});
    } else if (!m_isEnding) {
        m_start.isStopped = true;
        m_current = startWindow(m_start);
    }
    if (m_reloadIsWanted) {
        requestReload(m_reloadKeepsState);
    }
}

/// Another plugin is another bench; it has a session of its own.
void BenchSupervisor::openOther(const QString &folder)
{
    QStringList arguments{QStringLiteral("bench"), folder};
    if (!m_start.theme.isEmpty()) {
        arguments << QStringLiteral("--theme") << m_start.theme;
    }
    if (!QProcess::startDetached(QCoreApplication::applicationFilePath(), arguments)) {
        printError(QStringLiteral("the bench for %1 cannot be started").arg(folder));
    }
}

// End -------------------------------------------------------------------------------------------------------------

void BenchSupervisor::endAll()
{
    const qint64 now = monotonicMs();
    if (m_isEnding && now - m_endRequestMs < repeatedEndMs) {
        return; // one end that is told twice, to the process and to its group
    }
    const int patience = m_isEnding ? 0 : closeMs;
    m_endRequestMs = now;
    m_isEnding = true;
    const auto windows = findChildren<WindowProcess *>();
    for (WindowProcess *window : windows) {
        window->close(patience);
    }
    if (windows.isEmpty()) {
        finish(m_exitCode);
    }
}

void BenchSupervisor::finish(int exitCode)
{
    m_isEnding = true;
    m_exitCode = exitCode;
    const auto windows = findChildren<WindowProcess *>();
    for (const WindowProcess *window : windows) {
        if (window->state() != QProcess::NotRunning) {
            return; // its end comes here again
        }
    }
    report(QStringLiteral("ended"), {{QStringLiteral("exitCode"), exitCode}});
    QCoreApplication::exit(exitCode);
}

void BenchSupervisor::report(const QString &event, QJsonObject more)
{
    if (m_report.isOpen()) {
        more.insert(QStringLiteral("event"), event);
        m_report.write(QJsonDocument(more).toJson(QJsonDocument::Compact) + '\n');
    }
}

void BenchSupervisor::onCommands()
{
    char bytes[4096];
    const auto count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) {
        sender()->deleteLater();
        return;
    }
    const auto lines = QByteArray(bytes, static_cast<int>(count)).split('\n');
    for (const QByteArray &line : lines) {
        const QJsonObject command = QJsonDocument::fromJson(line).object();
        if (m_current && !command.isEmpty()) {
            m_current->send(command[QLatin1String("do")].toString(), command);
        }
    }
}
