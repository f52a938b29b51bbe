// SPDX-License-Identifier: Apache-2.0
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeWidget>

#include <kora/dev/panes/consolepane.h>
#include <kora/dev/panes/logview.h>
#include <kora/dev/panes/problemspane.h>
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
    void linesAreCopiedMarkedAndSaved();
    void problemsAreOrderedAndOpened();

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

void TestConsole::linesAreCopiedMarkedAndSaved()
{
    ConsoleModel console;
    ConsolePane pane(&console);
    pane.resize(700, 300);
    pane.show();
    const auto button = [&pane](const char *name) {
        return pane.findChild<QToolButton *>(QLatin1String(name));
    };
    for (const char *level : {"consoleErrors", "consoleInfo", "consoleDebug"}) {
        button(level)->setChecked(true); // as no earlier pane left them
    }
    console.append(ConsoleLine::Error, QStringLiteral("boiler"), QStringLiteral("too hot"));
    console.append(ConsoleLine::Debug, QStringLiteral("pump"), QStringLiteral("turns"));
    console.flush();
    const auto copied = [&] {
        button("consoleCopyAll")->click();
        return QGuiApplication::clipboard()->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    };
    QCOMPARE(copied().size(), 2);
    QVERIFY(copied().first().contains(QStringLiteral("too hot")));
    button("consoleMark")->click();
    QVERIFY(copied().last().contains(QStringLiteral("---- mark 1 ----")));
    button("consoleDebug")->click();
    QCOMPARE(copied().filter(QStringLiteral("turns")).size(), 0);
    QCOMPARE(copied().size(), 2);

    // Of a selection that alone; of none nothing.
    auto *view = pane.findChild<LogView *>(QStringLiteral("consoleLines"));
    button("consoleCopy")->click();
    QCOMPARE(copied().size(), 2);
    view->setCurrentIndex(view->model()->index(0, 0));
    button("consoleCopy")->click();
    QCOMPARE(QGuiApplication::clipboard()->text().count(QLatin1Char('\n')), 1);

    auto *filter = pane.findChild<QLineEdit *>(QStringLiteral("consoleFilter"));
    auto *problem = pane.findChild<QLabel *>(QStringLiteral("consoleFilterProblem"));
    filter->setText(QStringLiteral("/(/"));
    QVERIFY(problem->isVisible() && !problem->text().isEmpty());
    filter->setText(QStringLiteral("hot"));
    QVERIFY(!problem->isVisible());
    QCOMPARE(copied().size(), 1);

    const auto save = [&](const QString &path) {
        QTimer::singleShot(0, &pane, [path] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
            static_cast<QDialog *>(dialog)->done(path.isEmpty() ? QDialog::Rejected : QDialog::Accepted);
        });
        button("consoleSave")->click();
        console.flush();
    };
    const QString path = m_settings.filePath(QStringLiteral("console.log"));
    save(QString());
    QVERIFY(!QFile::exists(path));
    save(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY(content.contains("too hot") && content.count('\n') == 1);
    QVERIFY(console.line(console.rowCount() - 1).text.startsWith(QStringLiteral("Saved as ")));
    filter->clear();
    button("consoleClear")->click();
    QCOMPARE(console.rowCount(), 0);
    QCOMPARE(button("consoleErrors")->text(), QStringLiteral("0"));
}

void TestConsole::problemsAreOrderedAndOpened()
{
    const auto finding = [](Finding::Severity severity, const char *message, const QString &file, int line) {
        Finding finding;
        finding.severity = severity;
        finding.rule = QStringLiteral("rule");
        finding.message = QLatin1String(message);
        finding.file = file;
        finding.line = line;
        return finding;
    };
    // An editor that writes down what it is asked to open.
    const QString asked = m_settings.filePath(QStringLiteral("asked"));
    const auto editor = [&](const char *name) {
        QFile script(m_settings.filePath(QLatin1String(name)));
        if (script.open(QIODevice::WriteOnly)) {
            script.write("#!/bin/sh\necho \"$@\" > '" + asked.toUtf8() + ".new' && mv '" + asked.toUtf8()
                         + ".new' '" + asked.toUtf8() + "'\n");
            script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        }
        qputenv("VISUAL", script.fileName().toUtf8());
    };
    const auto told = [&asked] {
        QFile file(asked);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    };
    ProblemsPane pane;
    pane.resize(700, 300);
    pane.show();
    QSignalSpy failures(&pane, &ProblemsPane::failed);
    auto *tree = pane.findChild<QTreeWidget *>(QStringLiteral("problemsList"));
    auto *detail = pane.findChild<QLabel *>(QStringLiteral("problemsDetail"));
    QCOMPARE(detail->text(), QStringLiteral("No problems found."));
    Findings findings{finding(Finding::Note, "a note", {}, 0),
                      finding(Finding::Warning, "a < b", QStringLiteral("/w/tank.json"), 0),
                      finding(Finding::Error, "an error", QStringLiteral("/w/tank.json"), 12)};
    findings[0].pointer = QStringLiteral("/widgets/0");
    findings[1].hint = QStringLiteral("first line\nsecond line");
    pane.setFindings(findings);
    QCOMPARE(tree->topLevelItemCount(), 3);
    QCOMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("An error"));
    QCOMPARE(tree->topLevelItem(0)->text(2), QStringLiteral("tank.json:12:1"));
    QCOMPARE(tree->topLevelItem(1)->text(2), QStringLiteral("tank.json"));
    QCOMPARE(tree->topLevelItem(2)->text(2), QStringLiteral("/widgets/0"));
    QCOMPARE(tree->topLevelItem(1)->data(0, Qt::AccessibleTextRole).toString(),
             QStringLiteral("Warning: a < b"));
    QCOMPARE(tree->topLevelItem(2)->data(0, Qt::AccessibleTextRole).toString(),
             QStringLiteral("Note: a note"));
    tree->setCurrentItem(tree->topLevelItem(1));
    QVERIFY2(detail->text().contains(QStringLiteral("A &lt; b"))
                 && detail->text().contains(QStringLiteral("line<br>second")),
             qPrintable(detail->text()));

    const struct
    {
        const char *editor;
        const char *arguments;
    } editors[] = {{"vi", "+12 /w/tank.json"},
                   {"code", "--goto /w/tank.json:12"},
                   {"kate", "--line 12 /w/tank.json"},
                   {"subl", "/w/tank.json:12"}};
    for (const auto &each : editors) {
        QFile::remove(asked);
        editor(each.editor);
        tree->setCurrentItem(tree->topLevelItem(0));
        Q_EMIT tree->itemActivated(tree->topLevelItem(0), 0);
        QTRY_COMPARE(told(), QLatin1String(each.arguments));
    }
    QCOMPARE(failures.size(), 0);
    tree->setCurrentItem(tree->topLevelItem(2));
    Q_EMIT tree->itemActivated(tree->topLevelItem(2), 0);
    QCOMPARE(failures.takeFirst().first().toString(), QStringLiteral("This problem has no file to open"));
    qputenv("VISUAL", "/nowhere/editor");
    tree->setCurrentItem(tree->topLevelItem(0));
    Q_EMIT tree->itemActivated(tree->topLevelItem(0), 0);
    QCOMPARE(failures.takeFirst().first().toString(),
             QStringLiteral("/w/tank.json cannot be opened; name an editor in $VISUAL"));
    qunsetenv("VISUAL");
}

KORA_TEST_MAIN(TestConsole)

#include "tst_console.moc"
