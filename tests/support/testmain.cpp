// SPDX-License-Identifier: Apache-2.0
#include <support/testmain.h>

#include <support/logrecorder.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryFile>

#include <atomic>
#include <cstdio>

namespace {

std::atomic<int> strayMessages{0};

// In place before and after the test functions, when QTest's own handler is not.
void onStrayMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    ++strayMessages;
    std::fprintf(stderr, "unexpected Qt message: %s\n", qPrintable(message));
}

// QTest keeps its message handler to itself; its log shows what reached it and was not ignored.
int messagesInLog(QFile &log)
{
    static const QRegularExpression message(QStringLiteral("^Q(DEBUG|INFO|WARN|SYSTEM|CRITICAL|FATAL)\\s*:"),
                                            QRegularExpression::MultilineOption);
    int count = 0;
    for (auto i = message.globalMatch(QString::fromUtf8(log.readAll())); i.hasNext(); i.next()) {
        ++count;
    }
    return count;
}

} // namespace

void useOffscreenPlatform()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

int runKoraTest(QObject &test, const QStringList &arguments)
{
    QTemporaryFile log;
    if (!log.open()) {
        std::fprintf(stderr, "cannot make a temporary file: %s\n", qPrintable(log.errorString()));
        return 1;
    }
    QStringList withLog = arguments;
    if (!arguments.contains(QStringLiteral("-o"))) {
        withLog << QStringLiteral("-o") << QStringLiteral("-,txt");
    }
    withLog << QStringLiteral("-o") << log.fileName() + QStringLiteral(",txt");

    qInstallMessageHandler(onStrayMessage);
    LogRecorder::installUnexpectedLineHandler();
    const int failures = QTest::qExec(&test, withLog);

    const int messages = messagesInLog(log) + strayMessages;
    const int lines = LogRecorder::unexpectedLineCount();
    if (messages + lines > 0) {
        std::fprintf(stderr, "FAIL!  : %d unexpected Qt messages, %d unexpected log lines\n", messages,
                     lines);
    }
    return failures + messages + lines > 0 ? 1 : 0;
}
