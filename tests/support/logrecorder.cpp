// SPDX-License-Identifier: Apache-2.0
#include <support/logrecorder.h>

#include <QtCore/QTextStream>
#include <QtTest/QTest>

#include <kora/log/logging.h>

#include <atomic>

namespace {

const QChar separator = QLatin1Char('|'); // in no category

std::atomic<int> unexpectedLines{0};

LogLine lineFrom(int type, const QString &source, const QString &formatted)
{
    const int end = formatted.indexOf(separator);
    return {static_cast<QtMsgType>(type), source, formatted.left(end), formatted.mid(end + 1)};
}

void onUnexpectedLine(int type, const QString &source, const QString &formatted, void *)
{
    ++unexpectedLines;
    QTextStream(stderr) << "unexpected log line: " << toText(lineFrom(type, source, formatted)) << '\n';
}

} // namespace

QString toText(const LogLine &line)
{
    static const char *const names[] = {"debug", "warning", "critical", "fatal", "info"};
    return QStringLiteral("%1 %2 <%3>: %4")
        .arg(QLatin1String(names[line.type]), line.category, line.source, line.message);
}

LogRecorder::LogRecorder()
{
    KORA::koraSetLogMessagePattern(QStringLiteral("%{CATEGORY}|%{MESSAGE}"));
    KORA::koraInstallLogMessageHandlerPrivate(&LogRecorder::record, this);
}

LogRecorder::~LogRecorder()
{
    installUnexpectedLineHandler();
    const QStringList left = takeTexts();
    if (!left.isEmpty()) {
        const QString text = QStringLiteral("unexpected log lines:\n") + left.join(QLatin1Char('\n'));
        QTest::qFail(qPrintable(text), __FILE__, __LINE__);
    }
}

QVector<LogLine> LogRecorder::takeLines()
{
    const QMutexLocker locker(&m_mutex);
    QVector<LogLine> lines;
    lines.swap(m_lines);
    return lines;
}

QStringList LogRecorder::takeTexts()
{
    QStringList texts;
    for (const LogLine &line : takeLines()) {
        texts.append(toText(line));
    }
    return texts;
}

QStringList LogRecorder::takeMessages()
{
    QStringList messages;
    for (const LogLine &line : takeLines()) {
        messages.append(line.message);
    }
    return messages;
}

void LogRecorder::installUnexpectedLineHandler()
{
    KORA::koraSetLogMessagePattern(QStringLiteral("%{CATEGORY}|%{MESSAGE}"));
    KORA::koraInstallLogMessageHandlerPrivate(&onUnexpectedLine, nullptr);
}

int LogRecorder::unexpectedLineCount()
{
    return unexpectedLines;
}

void LogRecorder::record(int type, const QString &source, const QString &formatted, void *recorder)
{
    auto *self = static_cast<LogRecorder *>(recorder);
    const QMutexLocker locker(&self->m_mutex);
    self->m_lines.append(lineFrom(type, source, formatted));
}
