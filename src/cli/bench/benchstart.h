// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// How a window process of the bench ended that was not asked to.
struct BenchCrash
{
    QString cause;     ///< "SIGSEGV", or "exit status 3" if the plugin ended the process
    QStringList calls; ///< that were running, outermost first: "initEvent of tank1"
    QString details;   ///< backtrace, activity and log lines, for the author to read
    bool isRepeated = false;

    bool isCrash() const { return !cause.isEmpty(); }
    /// The placed widget that the last call was made to; empty if there was none.
    QString instance() const;
    /// "Crashed in initEvent of tank1 (SIGSEGV)."
    QString summary() const;

    QJsonObject toJson() const;
    static BenchCrash fromJson(const QJsonObject &json);
};

/// What a window process of the bench is to open.
struct BenchStart
{
    QString folder;      ///< plugin folder, absolute
    QString scenario;    ///< file to begin with; empty for the session
    QString session;     ///< file to begin with, if it exists, and to keep
    QString traceFolder; ///< for what tells of a crash; empty for none

    // Empty: as scenario, session or the window have it.
    QString mode;
    QString language;
    QString page;
    QString theme;

    bool isStopped = false;     ///< no instances are made
    bool withoutPlugin = false; ///< it crashed even so
    bool isFresh = false;       ///< the session is kept, but not restored
    qint64 reloadSinceMs = -1;  ///< on the system's monotonic clock; -1 if this is no reload
    BenchCrash crash;

    bool isReload() const { return reloadSinceMs >= 0; }

    QJsonObject toJson() const;
    static BenchStart fromJson(const QJsonObject &json);
};

/// Now, on the clock of BenchStart::reloadSinceMs.
qint64 monotonicMs();
