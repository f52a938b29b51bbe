// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QString>

#include <kora/dev/model/activitylog.h>

namespace KORA {
namespace DEV {

/// Names the call into the plugin that is running, in a file that outlives the process: after a crash the bench can
/// say in which call of which instance the plugin died. A process has one.
class KORA_EXPORT CallTrace
{
public:
    static CallTrace &instance();

    /// Starts to write into @p path; false if it cannot be created. Without a file nothing is traced.
    bool open(const QString &path);

    /// The calls that were running when the process that wrote @p path ended, outermost first, such as
    /// "initEvent of tank1".
    static QStringList runningCalls(const QString &path);

private:
    friend class PluginCall;

    void enter(const QString &call);
    void leave();

    QFile m_file;
    uchar *m_page = nullptr; // the mapped file
    int m_depth = 0;
};

/// Stands round one call into the plugin: traces it, and records it with its duration when it is over.
class KORA_EXPORT PluginCall
{
public:
    PluginCall(ActivityLog *log, ActivityEntry::Kind kind, const QString &instance, const QString &what,
               const QString &arguments = {});
    ~PluginCall();
    Q_DISABLE_COPY_MOVE(PluginCall)

    void setResult(const QString &result) { m_entry.result = result; }

private:
    ActivityLog *m_log; // may be null
    ActivityEntry m_entry;
    QElapsedTimer m_timer;
};

} // namespace DEV
} // namespace KORA
