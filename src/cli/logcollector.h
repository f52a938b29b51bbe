// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>

/// A line that the library or a plugin logged.
struct LogLine
{
    int type;
    QString source;
    QString category;
    QString text;
};

/// Takes the process's log lines for as long as it lives; one at a time. Plugins may log from any thread.
class LogCollector
{
public:
    /// Told of each line at once, on the thread that logs it.
    using Listener = std::function<void(const LogLine &)>;

    explicit LogCollector(Listener listener = {});
    ~LogCollector();
    Q_DISABLE_COPY_MOVE(LogCollector)

    /// The lines since the last call, in the order in which they were logged.
    QList<LogLine> takeLines();
    /// The texts of the warnings and worse among takeLines().
    QStringList takeWarnings();

private:
    static void receive(int type, const QString &source, const QString &formatted, void *opaque);

    Listener m_listener;
    QMutex m_mutex;
    QList<LogLine> m_lines;
};

/// Whether the line tells of misuse or of a failure.
bool isWarning(const LogLine &line);
