// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// One message of the library.
struct LogLine
{
    QtMsgType type;
    QString source;
    QString category;
    QString message;
};

/// "critical METADATA <source>: message", for comparing and for QCOMPARE's report.
QString toText(const LogLine &line);

/// Records the library's log lines while it lives. Lines that the test has not taken by then fail the test
/// function.
///
///     LogRecorder log;
///     QVERIFY(!loader.loadFromDir(dir, {}));
///     QCOMPARE(log.takeMessages(), QStringList{QStringLiteral("The plugin loader is already inited")});
///
/// One recorder at a time; it owns the callback and the pattern, and puts both back to the tests' own.
class LogRecorder
{
public:
    LogRecorder();
    LogRecorder(const LogRecorder &) = delete;
    LogRecorder &operator=(const LogRecorder &) = delete;
    ~LogRecorder();

    /// All lines since the last call, oldest first.
    QVector<LogLine> takeLines();
    /// The same, each as by toText().
    QStringList takeTexts();
    /// The same, only the messages.
    QStringList takeMessages();

    /// What tests run under without a recorder: each line of the library fails the program.
    static void installUnexpectedLineHandler();
    static int unexpectedLineCount();

private:
    static void record(int type, const QString &source, const QString &formatted, void *recorder);

    QMutex m_mutex;
    QVector<LogLine> m_lines;
};
