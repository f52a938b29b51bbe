// SPDX-License-Identifier: Apache-2.0
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>

#include <kora/dev/panes/consolepane.h>
#include <kora/dev/panes/logview.h>
#include <kora/log/logmacros.h>

#include <thread>
#include <vector>

using namespace KORA::DEV;

namespace {

const QString noSource;

void appendNumbered(ConsoleModel &console, int from, int count)
{
    for (int i = from; i < from + count; ++i) {
        console.append(ConsoleLine::Info, noSource, QStringLiteral("line %1").arg(i));
    }
    console.flush();
}

QStringList shown(const ConsoleFilter &filter)
{
    QStringList texts;
    for (int row = 0; row < filter.rowCount(); ++row) {
        texts.append(filter.index(row, ConsoleModel::TextColumn).data().toString());
    }
    return texts;
}

// Of the first row in sight.
QString topLine(const LogView *view)
{
    const QModelIndex top = view->indexAt({5, 5});
    return top.sibling(top.row(), ConsoleModel::TextColumn).data().toString();
}

} // namespace

class TestConsole : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { LogRecorder::installUnexpectedLineHandler(); }
    void takesLinesOfAllThreadsInOrder();
    void takesQtsMessagesAndPassesThemOn();
    void keepsTheLatestLines();
    void filters_data();
    void filters();
    void followsOnlyAtTheEnd();

private:
    QTemporaryDir m_settings;
};

void TestConsole::initTestCase()
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_settings.path());
}

void TestConsole::takesLinesOfAllThreadsInOrder()
{
    ConsoleModel console;
    QSignalSpy batches(&console, &ConsoleModel::rowsInserted);
    {
        const LogCapture capture(&console);
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([i] {
                for (int line = 0; line < 1000; ++line) {
                    koraWarning(QString::number(i), "TEST") << line;
                }
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
    }
    koraWarning(noSource, "TEST") << "after the capture";
    QTRY_COMPARE(console.rowCount(), 4000);
    QCOMPARE(batches.size(), 1);
    QCOMPARE(console.count(ConsoleLine::Warning), 4000);
    int next[4] = {};
    for (int row = 0; row < console.rowCount(); ++row) {
        const ConsoleLine &line = console.line(row);
        // The time stands in a column of its own.
        QCOMPARE(line.text, QString::number(next[line.source.toInt()]++));
    }
}

void TestConsole::takesQtsMessagesAndPassesThemOn()
{
    ConsoleModel console;
    {
        const LogCapture capture(&console);
        QTest::ignoreMessage(QtWarningMsg, "to both");
        qWarning("to both");
    }
    QTest::ignoreMessage(QtDebugMsg, "to the handler from before alone");
    qDebug("to the handler from before alone");
    console.flush();
    QCOMPARE(console.rowCount(), 1);
    QCOMPARE(console.line(0).source, QStringLiteral("Qt"));
    QCOMPARE(console.line(0).text, QStringLiteral("to both"));
    QCOMPARE(console.line(0).level, ConsoleLine::Warning);
}

void TestConsole::keepsTheLatestLines()
{
    ConsoleModel console;
    console.append(ConsoleLine::Error, noSource, QStringLiteral("the oldest"));
    appendNumbered(console, 0, ConsoleModel::capacity - 1);
    QCOMPARE(console.rowCount(), ConsoleModel::capacity);
    QCOMPARE(console.count(ConsoleLine::Error), 1);
    appendNumbered(console, ConsoleModel::capacity - 1, 500);
    QCOMPARE(console.rowCount(), ConsoleModel::capacity);
    QCOMPARE(console.count(ConsoleLine::Error), 0);
    QCOMPARE(console.line(0).text, QStringLiteral("line 499"));
    // More than the ring holds at once.
    appendNumbered(console, 0, 3 * ConsoleModel::capacity);
    QCOMPARE(console.rowCount(), ConsoleModel::capacity);
    QCOMPARE(console.count(ConsoleLine::Info), ConsoleModel::capacity);
    console.clear();
    QCOMPARE(console.rowCount(), 0);
    QCOMPARE(console.count(ConsoleLine::Info), 0);
}

void TestConsole::filters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    const QString open = QStringLiteral("valve A opens");
    const QString shut = QStringLiteral("Valve B shuts");
    const QString pump = QStringLiteral("pump 7 runs");
    QTest::newRow("nothing") << QString() << QStringList{open, shut, pump};
    QTest::newRow("a word in any case") << "VALVE" << QStringList{open, shut};
    QTest::newRow("all words") << "valve opens" << QStringList{open};
    QTest::newRow("not a word") << "-valve" << QStringList{pump};
    QTest::newRow("a word and not another") << "valve -shuts" << QStringList{open};
    QTest::newRow("the source") << "plant" << QStringList{pump};
    QTest::newRow("an expression") << "/[ab] |\\d/" << QStringList{open, shut, pump};
    QTest::newRow("an anchored expression") << "/^pump/" << QStringList{pump};
    QTest::newRow("a blank") << " " << QStringList{open, shut, pump};
}

void TestConsole::filters()
{
    QFETCH(QString, text);
    ConsoleModel console;
    console.append(ConsoleLine::Info, noSource, QStringLiteral("valve A opens"));
    console.append(ConsoleLine::Warning, noSource, QStringLiteral("Valve B shuts"));
    console.append(ConsoleLine::Debug, QStringLiteral("plant"), QStringLiteral("pump 7 runs"));
    console.flush();
    ConsoleFilter filter;
    filter.setSourceModel(&console);
    QString problem;
    QVERIFY(filter.setText(text, problem));
    QTEST(shown(filter), "expected");
    QVERIFY(!filter.setText(QStringLiteral("/(/"), problem));
    QVERIFY(problem.contains(QLatin1String("regular expression")));
    QTEST(shown(filter), "expected");
    filter.setLevelShown(ConsoleLine::Warning, false);
    filter.setLevelShown(ConsoleLine::Debug, false);
    filter.setLevelShown(ConsoleLine::Info, false);
    QCOMPARE(filter.rowCount(), 0);
}

void TestConsole::followsOnlyAtTheEnd()
{
    ConsoleModel console;
    ConsolePane pane(&console);
    pane.resize(700, 220);
    pane.show();
    auto *view = pane.findChild<LogView *>(QStringLiteral("consoleLines"));
    auto *chip = pane.findChild<QToolButton *>(QStringLiteral("newLines"));
    auto *follow = pane.findChild<QToolButton *>(QStringLiteral("consoleFollow"));
    QScrollBar *bar = view->verticalScrollBar();
    appendNumbered(console, 0, 200);
    QCOMPARE(bar->value(), bar->maximum());
    QVERIFY(follow->isChecked() && !chip->isVisible());

    bar->setValue(50);
    QVERIFY(!follow->isChecked());
    const QString top = topLine(view);
    appendNumbered(console, 200, 12);
    QCOMPARE(topLine(view), top);
    QVERIFY(chip->isVisible());
    QVERIFY(chip->text().contains(QLatin1String("12")));
    // Lines leave at the top: what is read stays in its place.
    appendNumbered(console, 212, ConsoleModel::capacity - 212 + 30);
    QCOMPARE(console.rowCount(), ConsoleModel::capacity);
    QCOMPARE(topLine(view), top);

    chip->click();
    QCOMPARE(bar->value(), bar->maximum());
    QVERIFY(follow->isChecked() && !chip->isVisible());
    appendNumbered(console, 0, 5);
    QCOMPARE(bar->value(), bar->maximum());

    auto *warnings = pane.findChild<QToolButton *>(QStringLiteral("consoleWarnings"));
    console.append(ConsoleLine::Warning, noSource, QStringLiteral("careful"));
    console.flush();
    QCOMPARE(warnings->text(), QStringLiteral("1"));
    pane.findChild<QToolButton *>(QStringLiteral("consoleInfo"))->click();
    QCOMPARE(view->model()->rowCount(), 1);
}

KORA_TEST_MAIN(TestConsole)

#include "tst_console.moc"
