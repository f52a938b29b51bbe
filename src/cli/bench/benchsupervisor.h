// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFile>
#include <QtCore/QLockFile>
#include <QtCore/QObject>
#include <QtCore/QTemporaryDir>

#include "benchstart.h"
#include "pluginwatcher.h"
#include "windowprocess.h"

#include <memory>

/// Keeps the bench's window open over rebuilds and crashes of the plugin. It runs no code of the plugin itself.
///
/// The window is a process of its own, because a process that has loaded a library keeps running its old code. When the
/// library is another, a second window takes over what is open, and the first one ends; if the second one cannot load
/// the library, the first one stays. When a window crashes, another one opens with the plugin stopped.
class BenchSupervisor : public QObject
{
    Q_OBJECT

public:
    /// @p sessionPath is the file that is restored and kept; empty for none beyond this run.
    BenchSupervisor(const BenchStart &start, const QString &sessionPath, QObject *parent = nullptr);
    ~BenchSupervisor() override;

    /// Writes what happens to @p path as JSON objects, one per line; "-" is standard output, and lines that come from
    /// standard input then are commands to the window. False if it cannot be written.
    bool reportTo(const QString &path);
    /// Opens the first window; the event loop is to run then. False, after a message, if that is not possible.
    bool begin();

private:
    void chooseSession(const QString &sessionPath);
    WindowProcess *startWindow(BenchStart start);
    void onEvent(WindowProcess *window, const QString &event, const QJsonObject &message);
    void onReady(WindowProcess *window, QJsonObject message);
    void onEnded(WindowProcess *window);
    void onCurrentEnded(WindowProcess *window);
    void onNextEnded(WindowProcess *window, const QString &cause);
    void onCommands();

    void requestReload(bool keepsState);
    void startReload();
    void refuseReload(const QString &reason, const QString &details);
    void restartAfterCrash(const WindowProcess *window, const QString &cause);
    void openOther(const QString &folder);

    void endAll();
    void finish(int exitCode);
    void report(const QString &event, QJsonObject more = {});

    BenchStart m_start; ///< of the next window that is no reload
    QString m_sessionPath;
    std::unique_ptr<QLockFile> m_sessionLock;
    std::unique_ptr<PluginWatcher> m_watcher;
    QTemporaryDir m_dir;
    QFile m_report;

    WindowProcess *m_current = nullptr;
    WindowProcess *m_next = nullptr; ///< takes over when it is ready
    bool m_reloadIsWanted = false;   ///< when the present one is over
    bool m_reloadKeepsState = true;
    bool m_handOverIsAwaited = false;
    QTimer m_handOverTimer;
    qint64 m_reloadSinceMs = 0;
    qint64 m_lastCrashMs = -1;
    qint64 m_endRequestMs = 0;
    int m_windowCount = 0;
    int m_exitCode = 0;
    bool m_isEnding = false;
};
