// SPDX-License-Identifier: Apache-2.0
#include <support/testmain.h>

#include <support/logrecorder.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryFile>
#include <QtCore/QTextStream>

#include <atomic>

namespace {

std::atomic<int> strayMessages{0};

// In place before and after the test functions, when QTest's own handler is not.
void onStrayMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (message.startsWith(QLatin1String("This plugin does not support "))) {
        return;
    }
    ++strayMessages;
    QTextStream(stderr) << "unexpected Qt message: " << message << '\n';
}

// QTest keeps its message handler to itself; its log shows what reached it and was not ignored. The offscreen
// platform complains of windows that have a smallest size, are raised, or grab the keyboard.
int messagesInLog(QFile &log)
{
    static const QRegularExpression message(
        QStringLiteral("^Q(DEBUG|INFO|WARN|SYSTEM|CRITICAL|FATAL)\\s*:(?!.*This plugin does not support )"),
        QRegularExpression::MultilineOption);
    int count = 0;
    for (auto i = message.globalMatch(QString::fromUtf8(log.readAll())); i.hasNext(); i.next()) {
        ++count;
    }
    return count;
}

} // namespace

int runKoraTest(QObject &test, const QStringList &arguments)
{
    QTemporaryFile log;
    if (!log.open()) {
        QTextStream(stderr) << "cannot make a temporary file: " << log.errorString() << '\n';
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
        QTextStream(stderr) << "FAIL!  : " << messages << " unexpected Qt messages, " << lines
                            << " unexpected log lines\n";
    }
    return failures + messages + lines > 0 ? 1 : 0;
}
