// SPDX-License-Identifier: Apache-2.0
#include <kora/log/logging_p.h>
#include <kora/log/logmacros.h>

#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QMutex>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace KORA;

namespace {

const auto iso = QStringLiteral("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d");

/// A callback of its own, not the test support's: these tests are about installing and calling it.
struct Sink
{
    QMutex mutex;
    QStringList lines; // "type|source|text"

    static void receive(int type, const QString &source, const QString &text, void *opaque)
    {
        auto *sink = static_cast<Sink *>(opaque);
        QMutexLocker lock(&sink->mutex);
        sink->lines << QStringLiteral("%1|%2|%3").arg(QString::number(type), source, text);
    }
    QString take() { return std::exchange(lines, {}).join(QLatin1Char('\n')); }
};

QString format(QtMsgType type, const char *category, const QString &message = QStringLiteral("text"))
{
    const QMessageLogContext context("pump.cpp", 7, "int Pump::run(char)", category);
    return koraFormatLogMessage(type, context, message);
}

bool matches(const QString &text, const QString &expression)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(expression)).match(text).hasMatch();
}

} // namespace

class tst_Logging : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        koraInstallLogMessageHandlerPrivate(Sink::receive, &m_sink);
        koraSetLogMessagePattern(QStringLiteral("%{CATEGORY}|%{FILE}|%{LINE}|%{FUNCTION}|%{MESSAGE}"));
    }
    void cleanup()
    {
        LogRecorder::installUnexpectedLineHandler();
        m_sink.take();
    }

    void eachLevelReachesTheCallbackWithItsNumber();
    void theHandlersContextTravelsWithTheMessage();
    void theMacrosTellWhereTheyStand();
    void whatIsNotEmitted();
    void aCopyAndAMovedToMessageEmitLinesOfTheirOwn();
    void aCallbackThatLogsIsNotCalledAgain();
    void anotherCallbackReplacesTheFirst();
    void pattern_data();
    void pattern();
    void levelConditionsShowTheirTextByCategory_data();
    void levelConditionsShowTheirTextByCategory();
    void timeAndProcessPlaceholders_data();
    void timeAndProcessPlaceholders();
    void anEmptyPatternStillPassesEachMessageOn();
    void threadsLogWhileThePatternChanges();
    void theDefaultPatternAndMessagesAtProcessExit();

private:
    Sink m_sink;
};

void tst_Logging::eachLevelReachesTheCallbackWithItsNumber()
{
    const LogHandler handler(QStringLiteral("id"), nullptr, 0, nullptr, "CAT");
    handler.debug().debug().nospace() << "d";
    handler.info().debug().nospace() << "i";
    handler.warning().debug().nospace() << "w";
    handler.critical().debug().nospace() << "c" << 1;
    QCOMPARE(m_sink.take(), QStringLiteral("0|id|CAT|unknown|0|unknown|d\n4|id|CAT|unknown|0|unknown|i\n"
                                           "1|id|CAT|unknown|0|unknown|w\n2|id|CAT|unknown|0|unknown|c1"));
}

void tst_Logging::theHandlersContextTravelsWithTheMessage()
{
    LogHandler().warning().debug().nospace() << "x";
    LogHandler(QStringLiteral("id"), "f.cpp", 3, "void f()").warning().debug().nospace() << "x";
    LogHandler(QString(), "f.cpp", 3, "void f()", "CAT").warning().debug().nospace() << "x";
    Debug(QtWarningMsg).debug().nospace() << "x";
    QCOMPARE(m_sink.take(), QStringLiteral("1|||unknown|0|unknown|x\n1|id|default|f.cpp|3|void f()|x\n"
                                           "1||CAT|f.cpp|3|void f()|x\n1|||unknown|0|unknown|x"));
}

void tst_Logging::theMacrosTellWhereTheyStand()
{
    const int line = __LINE__ + 1;
    koraCritical(QStringLiteral("id"), "CAT").nospace() << "x";
    const QString text = m_sink.take();
    const auto expected = QStringLiteral("2\\|id\\|CAT\\|.*tst_logging\\.cpp\\|%1\\|.*%2.*\\|x");
    QVERIFY2(matches(text, expected.arg(QString::number(line), QLatin1String(__func__))), qPrintable(text));
}

void tst_Logging::whatIsNotEmitted()
{
    const LogHandler handler;
    handler.warning();
    handler.warning().debug() << "";
    handler.noDebug() << "x";
    QCOMPARE(m_sink.take(), QString());

    Debug uninstalledBeforeItDies = handler.warning();
    uninstalledBeforeItDies.debug() << "x";
    koraUninstallLogMessageHandlerPrivate();
    handler.critical().debug() << "nobody listens";
    QCOMPARE(m_sink.take(), QString());
}

void tst_Logging::aCopyAndAMovedToMessageEmitLinesOfTheirOwn()
{
    {
        Debug original = LogHandler(QStringLiteral("id"), "f", 1, "g", "CAT").warning();
        original.debug().nospace() << "a";
        Debug copy(original);
        copy.debug().nospace() << "b"; // a stream of its own: the original keeps "a"
        Debug moved(std::move(original));
    }
    QCOMPARE(m_sink.take(), QStringLiteral("1|id|CAT|f|1|g|a\n1|id|CAT|f|1|g|ab\n1|id|CAT|f|1|g|a"));
}

void tst_Logging::aCallbackThatLogsIsNotCalledAgain()
{
    static std::atomic<int> calls;
    calls = 0;
    const auto logs = [](int, const QString &, const QString &, void *opaque) {
        ++calls;
        LogHandler().critical().debug() << "from inside";
        if (calls > 1)
            return;
        // Only this thread is inside the callback; what another one logs is delivered.
        std::thread([] { LogHandler().critical().debug() << "from another thread"; }).join();
        koraInstallLogMessageHandlerPrivate(Sink::receive, opaque);
        LogHandler().critical().debug() << "from inside, to the new callback";
    };
    koraInstallLogMessageHandlerPrivate(logs, &m_sink);
    LogHandler().warning().debug() << "outer";
    QCOMPARE(calls.load(), 2);
    QCOMPARE(m_sink.take(), QString());

    LogHandler().warning().debug().nospace() << "later";
    QCOMPARE(m_sink.take(), QStringLiteral("1|||unknown|0|unknown|later"));
}

void tst_Logging::anotherCallbackReplacesTheFirst()
{
    Sink second;
    koraInstallLogMessageHandlerPrivate(Sink::receive, &second);
    LogHandler().info().debug().nospace() << "x";
    QCOMPARE(m_sink.take(), QString());
    QCOMPARE(second.take(), QStringLiteral("4|||unknown|0|unknown|x"));
}

void tst_Logging::pattern_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QString>("line");

    const QByteArray none;
    const QByteArray noCategory("default");
    const QByteArray pump("PUMP");
    QTest::newRow("each value stands in its place")
        << "%{TYPE} %{CATEGORY} %{FILE}:%{LINE} %{FUNCTION}: %{MESSAGE}" << 1 << pump
        << "WARNING PUMP pump.cpp:7 int Pump::run(char): text";
    QTest::newRow("a debug message says so") << "%{TYPE}" << 0 << none << "DEBUG";
    QTest::newRow("a critical message says so") << "%{TYPE}" << 2 << none << "CRITICAL";
    QTest::newRow("a fatal message says so") << "%{TYPE}" << 3 << none << "FATAL";
    QTest::newRow("an information says so") << "%{TYPE}" << 4 << none << "INFO";
    QTest::newRow("an unknown level has no name") << "[%{TYPE}]" << 5 << none << "[]";
    QTest::newRow("no category prints nothing") << "[%{CATEGORY}]" << 1 << none << "[]";
    QTest::newRow("the default category is printed") << "[%{CATEGORY}]" << 1 << noCategory << "[default]";
    QTest::newRow("a category is Latin-1") << "%{CATEGORY}" << 1 << QByteArray("\xe9") << "é";
    QTest::newRow("literal text is Latin-1") << "é€%{TYPE}" << 1 << none << "é?WARNING";
    QTest::newRow("an unknown placeholder vanishes") << "a%{FOO}b%{type}c%{}d" << 1 << none << "abcd";
    QTest::newRow("lone percent signs stay") << "100% %x %%{TYPE}%" << 1 << none << "100% %x %WARNING%";
    QTest::newRow("lone braces stay") << "{a} }{ %{LINE}}" << 1 << none << "{a} }{ 7}";
    QTest::newRow("an open placeholder stays") << "a%{TYPE" << 1 << none << "a%{TYPE";
    QTest::newRow("a placeholder ends at the first brace") << "%{TY%{TYPE}PE}" << 1 << none << "PE}";
    QTest::newRow("a condition on the category hides")
        << "a%{IF-CATEGORY}b%{ENDIF}c" << 1 << noCategory << "ac";
    QTest::newRow("without category too") << "a%{IF-CATEGORY}b%{ENDIF}c" << 1 << none << "ac";
    QTest::newRow("a condition on the category shows") << "a%{IF-CATEGORY}b%{ENDIF}c" << 1 << pump << "abc";
    QTest::newRow("an information hides") << "a%{IF-NOT-INFO}b%{ENDIF}c" << 4 << pump << "ac";
    QTest::newRow("a debug message shows") << "a%{IF-NOT-INFO}b%{ENDIF}c" << 0 << none << "abc";
    QTest::newRow("an end without condition is nothing") << "a%{ENDIF}b" << 1 << none << "ab";
    QTest::newRow("a condition without end hides the rest") << "a%{IF-CATEGORY}b%{TYPE}" << 1 << none << "a";
    QTest::newRow("the first end closes nested conditions")
        << "%{IF-CATEGORY}a%{IF-NOT-INFO}b%{ENDIF}c%{ENDIF}d" << 1 << none << "cd";
    QTest::newRow("a condition inside a shown one hides")
        << "%{IF-NOT-INFO}a%{IF-CATEGORY}b%{ENDIF}c" << 1 << none << "ac";
    QTest::newRow("a time hidden still takes its format")
        << "%{IF-CATEGORY}%{TIME 'one'}%{TIME 'two'}%{ENDIF}%{TIME 'three'}" << 1 << none << "three";
    QTest::newRow("any placeholder that begins with time is one") << "%{TIMES 'x'}" << 1 << none << "x";
}

void tst_Logging::pattern()
{
    QFETCH(QString, pattern);
    QFETCH(int, type);
    QFETCH(QByteArray, category);
    koraSetLogMessagePattern(pattern);
    QTEST(format(QtMsgType(type), category.isNull() ? nullptr : category.constData()), "line");
    // What the message says is never read as a pattern.
    koraSetLogMessagePattern(QStringLiteral("%{MESSAGE}"));
    QCOMPARE(format(QtMsgType(type), "PUMP", pattern), pattern);
}

void tst_Logging::levelConditionsShowTheirTextByCategory_data()
{
    QTest::addColumn<QString>("pattern");
    for (const char *level : {"DEBUG", "INFO", "WARNING", "CRITICAL"})
        QTest::newRow(level) << QStringLiteral("%{IF-%1}[x]%{ENDIF}").arg(QLatin1String(level));
}

// The conditions on a level are deliberately conditions on the category.
void tst_Logging::levelConditionsShowTheirTextByCategory()
{
    QFETCH(QString, pattern);
    koraSetLogMessagePattern(pattern);
    for (const QtMsgType type : {QtDebugMsg, QtWarningMsg, QtCriticalMsg, QtFatalMsg, QtInfoMsg}) {
        QCOMPARE(format(type, "PUMP"), QStringLiteral("[x]"));
        QCOMPARE(format(type, "default"), QString());
        QCOMPARE(format(type, nullptr), QString());
    }
}

void tst_Logging::timeAndProcessPlaceholders_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QString>("expression");

    QTest::newRow("an empty format is ISO") << "%{TIME }" << 1 << QByteArray() << iso;
    QTest::newRow("a longer name is ISO") << "%{TIMESTAMP}" << 1 << QByteArray() << iso;
    QTest::newRow("a format with milliseconds")
        << "%{TIME hh:mm:ss.zzz}" << 1 << QByteArray() << "\\d\\d:\\d\\d:\\d\\d\\.\\d{3}";
    QTest::newRow("process and thread")
        << "%{PID}/%{THREAD}" << 1 << QByteArray()
        << QStringLiteral("%1/%2").arg(QString::number(QCoreApplication::applicationPid()),
                                       QString::number(quintptr(QThread::currentThreadId())));
}

void tst_Logging::timeAndProcessPlaceholders()
{
    QFETCH(QString, pattern);
    QFETCH(int, type);
    QFETCH(QByteArray, category);
    QFETCH(QString, expression);
    koraSetLogMessagePattern(pattern);
    const QString line = format(QtMsgType(type), category.isNull() ? nullptr : category.constData());
    QVERIFY2(matches(line, expression), qPrintable(line));
}

void tst_Logging::anEmptyPatternStillPassesEachMessageOn()
{
    koraSetLogMessagePattern(QString());
    LogHandler(QStringLiteral("id"), nullptr, 0, nullptr).warning().debug() << "x";
    QCOMPARE(m_sink.take(), QStringLiteral("1|id|"));
}

void tst_Logging::threadsLogWhileThePatternChanges()
{
    const int threadCount = 4;
    const int messageCount = 500;
    koraSetLogMessagePattern(QStringLiteral("A%{MESSAGE}A"));
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < messageCount; ++i)
                LogHandler().info().debug().nospace() << "x";
        });
    }
    for (int i = 0; i < messageCount; ++i) {
        koraSetLogMessagePattern(QStringLiteral("B%{TIME 'B'}%{MESSAGE}BB"));
        koraSetLogMessagePattern(QStringLiteral("A%{MESSAGE}A"));
    }
    for (std::thread &thread : threads)
        thread.join();
    QStringList lines = m_sink.take().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), threadCount * messageCount);
    lines.removeAll(QStringLiteral("4||AxA"));
    lines.removeAll(QStringLiteral("4||BBxBB"));
    QCOMPARE(lines, QStringList());
}

void tst_Logging::theDefaultPatternAndMessagesAtProcessExit()
{
    for (int run = 0; run < 10; ++run) { // where the process ends differs from run to run
        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/logatexit"), QStringList());
        QVERIFY(process.waitForFinished(10000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(process.readAllStandardError(), QByteArray());
        const auto expected =
            QStringLiteral("\\[%1\\]\\[WARNING\\]\\[PLUGIN_LOADING\\]: x\n\\[%1\\]: x\n"
                           "\\[thread local\\]\n\\[atexit\\]\n\\[before the pattern\\]\nafter the pattern\n");
        const QString output = QString::fromUtf8(process.readAllStandardOutput());
        QVERIFY2(matches(output, expected.arg(iso)), qPrintable(output));
    }
}

KORA_TEST_MAIN(tst_Logging)

#include "tst_logging.moc"
