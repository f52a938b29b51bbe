// SPDX-License-Identifier: Apache-2.0
#include "memorylibrary.h"

#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QToolButton>

using namespace KORA::DEV;
using namespace KORA::INTERNAL;

namespace {

FieldMetaInformation field(const char *id, FieldType type, const QString &requirements = {},
                           const char *group = "Conditions")
{
    TranslationStringType display;
    display.set(QStringLiteral("en-US"), QString::fromLatin1(id));
    TranslationStringType groupName;
    groupName.set(QStringLiteral("en-US"), QString::fromLatin1(group));
    return {
        QString::fromLatin1(id), display, {}, type, false, {}, false, groupName, false, requirements, true};
}

/// Fields to set conditions on, and "subject" in a group of its own.
Fields fieldsWith(const QString &requirements)
{
    return {field("mode", FieldTypeInteger),
            field("text", FieldTypeString),
            field("a", FieldTypeInteger),
            field("b", FieldTypeInteger),
            field("level", FieldTypeString),
            field("ratio", FieldTypeDouble),
            field("enabled", FieldTypeBool),
            field("picture", FieldTypeImage),
            field("subject", FieldTypeString, requirements, "Subject")};
}

using Values = QVariantMap;

} // namespace

class TestFieldRequirements : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastConditionDecides_data();
    void lastConditionDecides();
    void invalidRequirementLeavesTheRowAndIsLogged_data();
    void invalidRequirementLeavesTheRowAndIsLogged();
    void withoutSelectedWidgetValuesAreInvalid();
    void groupIsHiddenWithItsLastRow();
    void everyChangeIsEvaluated();
    void filterHidesFurtherAndLeavesNoTrace();
    void hiddenFieldsAreListedWithReasons();
};

void TestFieldRequirements::lastConditionDecides_data()
{
    QTest::addColumn<QString>("requirements");
    QTest::addColumn<Values>("values");
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<QString>("reason"); // a part of it

    const auto row = [](const char *name, const char *requirements, const Values &values, bool isShown,
                        const char *reason = "") {
        QTest::newRow(name) << QString::fromLatin1(requirements) << values << isShown
                            << QString::fromLatin1(reason);
    };
    const QString mode = QStringLiteral("mode");
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString text = QStringLiteral("text");
    const QString level = QStringLiteral("level");
    const QString ratio = QStringLiteral("ratio");
    const QString enabled = QStringLiteral("enabled");

    row("no requirements", "", {}, true);
    row("equal number", "mode==2", {{mode, 2}}, true);
    row("other number", "mode==2", {{mode, 1}}, false, "condition mode==2 is false (mode is 1)");
    row("compared as text", "text==2", {{text, QStringLiteral("2")}}, true);
    row("equal as numbers only", "text==2", {{text, QStringLiteral("2.0")}}, false, "text is \"2.0\"");
    row("blanks belong to the name", "mode == 2", {{mode, 2}}, false, "blanks belong to the name \"mode \"");
    row("blanks belong to the value", "mode== 2", {{mode, 2}}, false, "blanks belong to the value \" 2\"");
    row("a blank in a number is skipped", "mode> 1", {{mode, 2}}, true);
    row("unknown name", "nobody==1", {}, false, "there is no field \"nobody\"");
    row("&: only the last counts, false", "a==1&b==2", {{a, 1}, {b, 3}}, false,
        "last condition b==2 is false (b is 3)");
    row("&: only the last counts, true", "a==1&b==2", {{a, 3}, {b, 2}}, true, "although a==1 is false");
    row("|: like &, false", "a==1|b==2", {{a, 1}, {b, 3}}, false, "last condition b==2");
    row("|: like &, true", "a==1|b==2", {{a, 3}, {b, 2}}, true);
    row("&& has an empty part between", "a==1&&b==2", {{a, 1}, {b, 2}}, true);
    row("an empty part at the end hides", "a==1&", {{a, 1}}, false, "no field has an empty name");
    row("| stays in a text with &", "a==1&b==2|a", {{a, 1}, {b, 2}}, false, "b==2|a");
    row("greater", "mode>5", {{mode, 6}}, true);
    row("not greater", "mode>5", {{mode, 5}}, false);
    row("less", "ratio<0.5", {{ratio, 0.25}}, true);
    row("not less", "ratio<0.5", {{ratio, 0.5}}, false);
    row("no number is 0, not greater", "level>5", {{level, QStringLiteral("abc")}}, false);
    row("no number is 0, less", "level<5", {{level, QStringLiteral("abc")}}, true);
    row("the value is no number", "mode>x", {{mode, 1}}, true);
    row("== is looked for first", "a<b==c", {}, false, "there is no field \"a<b\"");
    row("< is looked for before >", "a>b<1", {}, true, ""); // no field "a>b": 0 is less than 1
    row("false is a value", "enabled", {{enabled, false}}, true);
    row("no value", "picture", {}, false, "picture has no value");
    row("no value equals an empty text", "picture==", {}, true);
    row("bool as text", "enabled==true", {{enabled, true}}, true);
    row("double as text", "ratio==0.5", {{ratio, 0.5}}, true);
    row("large double as text", "ratio==100000000", {{ratio, 1e8}}, false, "1e+08");
}

void TestFieldRequirements::lastConditionDecides()
{
    QFETCH(QString, requirements);
    QFETCH(Values, values);
    QFETCH(bool, isShown);
    QFETCH(QString, reason);
    ProbeBench bench(fieldsWith(requirements));
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        bench.set(qPrintable(it.key()), it.value());
    }
    QCOMPARE(!bench.isHidden("subject"), isShown);
    QCOMPARE(!bench.pane.groupRows().value(QStringLiteral("Subject"))->isHidden(), isShown);
    const QString told = requirementsReason(bench.manager("subject")->requirementsOutcome(),
                                            bench.widget->info().fields().keys());
    QVERIFY2(told.contains(reason), qPrintable(told));
    QVERIFY2(isShown || !told.isEmpty(), qPrintable(told));
}

void TestFieldRequirements::invalidRequirementLeavesTheRowAndIsLogged_data()
{
    QTest::addColumn<QString>("requirements");
    QTest::addColumn<QString>("part");
    QTest::newRow("twice ==") << QStringLiteral("a==1==2") << QStringLiteral("a==1==2");
    QTest::newRow("twice <") << QStringLiteral("mode==1&a<1<2") << QStringLiteral("a<1<2");
    QTest::newRow("twice > with a quote") << QStringLiteral("a>\">") << QStringLiteral("a>\">");
}

void TestFieldRequirements::invalidRequirementLeavesTheRowAndIsLogged()
{
    QFETCH(QString, requirements);
    QFETCH(QString, part);
    LogRecorder log;
    ProbeBench bench(fieldsWith(requirements));
    log.takeLines();
    QString expected;
    QDebug(&expected) << "critical TESTAPP <probes>: The requirements" << requirements << "of the field"
                      << QStringLiteral("subject") << "is invalid:" << part;
    for (const bool wasShown : {true, false}) {
        bench.manager("subject")->setVisible(wasShown);
        updateFieldsRequirements(&bench.pane);
        QCOMPARE(bench.isHidden("subject"), !wasShown);
        QCOMPARE(log.takeTexts(), QStringList{expected.trimmed()});
    }
    QVERIFY(bench.pane.requirementsReasons().first().contains(part));
}

void TestFieldRequirements::withoutSelectedWidgetValuesAreInvalid()
{
    ProbeBench bench({field("mode", FieldTypeInteger),
                      field("equal", FieldTypeString, QStringLiteral("mode==2")),
                      field("empty", FieldTypeString, QStringLiteral("mode==")),
                      field("less", FieldTypeString, QStringLiteral("mode<1")),
                      field("any", FieldTypeString, QStringLiteral("mode"))});
    bench.set("mode", 2);
    QVERIFY(!bench.isHidden("equal") && bench.isHidden("empty") && bench.isHidden("less")
            && !bench.isHidden("any"));
    const QSignalBlocker blocker(&bench.document); // the rows stay
    bench.document.setSelection({});
    updateFieldsRequirements(&bench.pane);
    QVERIFY(bench.isHidden("equal") && !bench.isHidden("empty") && !bench.isHidden("less")
            && bench.isHidden("any"));
    bench.document.setSelection({bench.widget});
}

void TestFieldRequirements::groupIsHiddenWithItsLastRow()
{
    const QString on = QStringLiteral("enabled==true");
    ProbeBench bench({field("enabled", FieldTypeBool), field("one", FieldTypeString, on, "Some"),
                      field("font", FieldTypeFont, on, "Some"), field("free", FieldTypeString, {}, "Some"),
                      field("only", FieldTypeString, on, "All")});
    const QMap<QString, QTreeWidgetItem *> &groups = bench.pane.groupRows();
    QCOMPARE(groups.keys().join(QLatin1Char(' ')), QStringLiteral("All Conditions Some"));
    const QVector<QTreeWidgetItem *> fontRows = bench.manager("font")->rows();
    QCOMPARE(fontRows.size(), 6);
    for (const bool isOn : {true, false, true}) {
        bench.set("enabled", isOn);
        QCOMPARE(groups.value(QStringLiteral("All"))->isHidden(), !isOn);
        QVERIFY(!groups.value(QStringLiteral("Some"))->isHidden());
        for (const QTreeWidgetItem *row : fontRows) {
            QCOMPARE(row->isHidden(), !isOn);
        }
    }
    QTreeWidgetItem empty(bench.pane.tree());
    updateGroupRows({{QStringLiteral("none"), &empty}});
    QVERIFY(empty.isHidden());
}

void TestFieldRequirements::everyChangeIsEvaluated()
{
    ProbeBench bench(fieldsWith(QStringLiteral("text==on")));
    QVERIFY(bench.isHidden("subject"));

    auto *line = bench.find<QLineEdit>(QStringLiteral("text"));
    QTest::keyClicks(line, QStringLiteral("on"));
    QTest::keyClick(line, Qt::Key_Return);
    QVERIFY(!bench.isHidden("subject"));

    bench.pane.setFieldValue(QStringLiteral("text"), QStringLiteral("off"));
    QVERIFY(bench.isHidden("subject"));

    bench.setFromPlugin("text", QStringLiteral("on"));
    QCoreApplication::processEvents();
    QTRY_VERIFY(!bench.isHidden("subject"));

    bench.document.undoStack()->undo();
    QTRY_VERIFY(!bench.isHidden("subject")); // back to the typed text

    bench.document.place(QStringLiteral("probe"), QStringLiteral("1.0.0"), {300, 100});
    QVERIFY(bench.isHidden("subject"));
    bench.document.setSelection({bench.widget});
    QVERIFY(!bench.isHidden("subject"));
}

void TestFieldRequirements::filterHidesFurtherAndLeavesNoTrace()
{
    ProbeBench bench(fieldsWith(QStringLiteral("enabled==true")));
    const auto hiddenRows = [&bench] {
        QStringList hidden;
        for (const FieldManager *manager : bench.pane.fieldManagers()) {
            hidden += manager->row()->isHidden() ? manager->id() : QString();
        }
        for (const QTreeWidgetItem *group : bench.pane.groupRows()) {
            hidden += group->isHidden() ? group->text(0) : QString();
        }
        return hidden;
    };
    bench.set("enabled", true);
    const QStringList before = hiddenRows();
    auto *filter = bench.pane.findChild<QLineEdit *>(QStringLiteral("fieldsFilter"));
    filter->setText(QStringLiteral("SUBJ"));
    QVERIFY(bench.isHidden("mode") && !bench.isHidden("subject"));
    QVERIFY(bench.pane.groupRows().value(QStringLiteral("Conditions"))->isHidden());
    bench.set("enabled", false); // while the filter is on
    QVERIFY(bench.isHidden("subject"));
    QVERIFY(bench.manager("mode")->isVisible());
    bench.set("enabled", true);
    QVERIFY(!bench.isHidden("subject"));
    filter->clear();
    QCOMPARE(hiddenRows(), before);

    auto *modified = bench.pane.findChild<QToolButton *>(QStringLiteral("fieldsModified"));
    modified->click();
    QVERIFY(bench.isHidden("mode") && !bench.isHidden("enabled"));
    bench.setFromPlugin("mode", 4);
    QTRY_VERIFY(!bench.isHidden("mode"));
    modified->click();
    QCOMPARE(hiddenRows(), before);
}

void TestFieldRequirements::hiddenFieldsAreListedWithReasons()
{
    ProbeBench bench(fieldsWith(QStringLiteral("mode==2")));
    auto *toggle = bench.pane.findChild<QToolButton *>(QStringLiteral("fieldsHidden"));
    QCOMPARE(toggle->text(), QStringLiteral("1 hidden by requirements"));
    toggle->click();
    auto *list = bench.pane.findChild<QListWidget *>(QStringLiteral("fieldsHiddenList"));
    QVERIFY(list->isVisible());
    QCOMPARE(list->item(0)->text(),
             QStringLiteral("subject: condition mode==2 is false (mode has no value)"));
    bench.set("mode", 1);
    QTRY_COMPARE(list->item(0)->text(), QStringLiteral("subject: condition mode==2 is false (mode is 1)"));
    bench.set("mode", 2);
    QVERIFY(!toggle->isVisible() && !list->isVisible());
}

KORA_TEST_MAIN(TestFieldRequirements)

#include "tst_fieldrequirements.moc"
