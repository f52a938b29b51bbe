// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFile>
#include <QtCore/QObject>
#include <QtCore/QString>

#include "benchstart.h"

namespace KORA {
namespace DEV {
class ActivityLog;
} // namespace DEV
} // namespace KORA

/// What a window process leaves behind in a folder so that another can tell how it died: the running calls into the
/// plugin, a backtrace, the latest crossings and log lines. A process has one.
class CrashTrace : public QObject
{
    Q_OBJECT

public:
    /// Begins; what cannot be written is left out of the story.
    explicit CrashTrace(const QString &folder, QObject *parent = nullptr);

    /// Writes the log's entries from now on. Not owned.
    void follow(KORA::DEV::ActivityLog *activity);
    void addLogLine(const QString &line);

    /// What a process left in @p folder that died of @p cause.
    static BenchCrash read(const QString &folder, const QString &cause);

private:
    void append(QFile &file, const QString &line);

    QFile m_activity;
    QFile m_log;
};

/// "SIGSEGV" of 11
QString signalName(int number);
