// SPDX-License-Identifier: Apache-2.0
//
// The tables of tags, trends and alarms as a view uses them.
#include "stillplant.h"

#include <support/testmain.h>

#include <QtCore/QJsonArray>
#include <QtGui/QBrush>
#include <QtTest/QtTest>

namespace {

QVariant cell(const ProviderTable *table, int row, int column, int role = Qt::DisplayRole)
{
    return table->index(row, column).data(role);
}

} // namespace

class TestProviderTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsEnteredIsShownAndKept_data();
    void whatIsEnteredIsShownAndKept();
    void whatDoesNotFitIsRefused_data();
    void whatDoesNotFitIsRefused();
    void editorsSuitTheRow();
    void rowsAreMadeCopiedAndRenamed();
    void alarmsShowTheirColours();
    void trendsTellOfTagsThatAreMissing();
};

// One row of each, of which the cells are edited; "-" stands for no remark.
void TestProviderTables::whatIsEnteredIsShownAndKept_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("entered");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char *table, int column, const QVariant &entered,
                        const char *shown) {
        QTest::newRow(name) << QString::fromLatin1(table) << column << entered << QString::fromLatin1(shown);
    };
    const auto text = [](const char *value) { return QVariant(QString::fromLatin1(value)); };
    row("a tag's name", "tags", TagTable::NameColumn, text(" flow "), "flow");
    row("a tag's value", "tags", TagTable::ValueColumn, text("7.5"), "7.5");
    row("a tag's type", "tags", TagTable::TypeColumn, TagTypeInt - 1, "int");
    row("a tag's generator", "tags", TagTable::GeneratorColumn, int(Generator::Ramp), "Ramp");
    row("a tag's period", "tags", TagTable::GeneratorColumn + 1, 5000, "5000 ms");
    row("a tag's minimum", "tags", TagTable::GeneratorColumn + 2, text("-2.5"), "-2.5");
    row("a tag's maximum", "tags", TagTable::GeneratorColumn + 3, text("200"), "200");
    row("a trend's name", "trends", TrendTable::NameColumn, text("flows"), "flows");
    row("a trend's source", "trends", TrendTable::SourceColumn, int(TrendDefinition::FromTag), "Tag");
    row("a trend's interval", "trends", TrendTable::IntervalColumn, 250, "250 ms");
    row("a trend's delay", "trends", TrendTable::DelayColumn, 1500, "1500 ms");
    row("a trend's generator", "trends", TrendTable::GeneratorColumn, int(Generator::Square), "Square");
    row("a trend's period", "trends", TrendTable::GeneratorColumn + 1, 60000, "60000 ms");
    row("a trend's minimum", "trends", TrendTable::MinimumColumn, text("1e-3"), "0.001");
    row("a trend's seed", "trends", TrendTable::GeneratorColumn + 4, text("42"), "42");
    row("an alarm's name", "alarms", AlarmTable::NameColumn, text("high"), "high");
    row("an alarm's state", "alarms", AlarmTable::StateColumn, int(KORA::AlarmInfo::StateTriggered),
        "Triggered");
    row("an alarm's severity", "alarms", AlarmTable::SeverityColumn, int(KORA::AlarmInfo::SeverityCritical),
        "Critical");
    row("an alarm's description", "alarms", AlarmTable::DescriptionColumn, text(" %1 "), " %1 ");
}

/// A tag with a walk, a trend with a walk of its own, and an alarm; the first row of each table.
struct TablePlant : Plant
{
    TablePlant()
    {
        tags()->add(tag("level", TagTypeDouble, 1, generator(Generator::RandomWalk, 1000, 0, 100)));
        TrendDefinition trend;
        trend.name = QStringLiteral("levels");
        trend.tag = QStringLiteral("level");
        trend.source = TrendDefinition::FromGenerator;
        trend.generator = generator(Generator::RandomWalk);
        trends()->add(trend);
        alarms()->add(alarm("first", true, true));
    }

    ProviderTable *table(const QString &name)
    {
        return name == QLatin1String("tags")     ? static_cast<ProviderTable *>(tags())
               : name == QLatin1String("trends") ? static_cast<ProviderTable *>(trends())
                                                 : alarms();
    }
};

void TestProviderTables::whatIsEnteredIsShownAndKept()
{
    QFETCH(QString, table);
    QFETCH(int, column);
    QFETCH(QVariant, entered);
    QFETCH(QString, shown);
    TablePlant plant;
    ProviderTable *model = plant.table(table);
    QSignalSpy edits(&plant, &Providers::edited);
    QSignalSpy refusals(model, &ProviderTable::refused);
    QVERIFY(model->index(0, column).flags() & Qt::ItemIsEditable);
    QVERIFY(model->setData(model->index(0, column), entered, Qt::EditRole));
    QCOMPARE(cell(model, 0, column).toString(), shown);
    QCOMPARE(cell(model, 0, column, Qt::ToolTipRole).toString(), shown);
    QCOMPARE(edits.count(), 1);
    QCOMPARE(refusals.count(), 0);
    // What is shown for editing is what can be entered: once more it is no change.
    QVERIFY(model->setData(model->index(0, column), cell(model, 0, column, Qt::EditRole), Qt::EditRole));
    QCOMPARE(edits.count(), 1);
    // It is part of the state.
    Plant copy;
    QStringList problems;
    QVERIFY2(copy.fromJson(plant.toJson(), problems), qPrintable(problems.join(QLatin1Char('\n'))));
    ProviderTable *copied = table == QLatin1String("tags")     ? static_cast<ProviderTable *>(copy.tags())
                            : table == QLatin1String("trends") ? static_cast<ProviderTable *>(copy.trends())
                                                               : copy.alarms();
    QCOMPARE(cell(copied, 0, column).toString(), shown);
}

void TestProviderTables::whatDoesNotFitIsRefused_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("entered");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *table, int column, const QVariant &entered, const char *problem) {
        QTest::newRow(problem) << QString::fromLatin1(table) << column << entered
                               << QString::fromLatin1(problem);
    };
    const auto text = [](const char *value) { return QVariant(QString::fromLatin1(value)); };
    row("tags", TagTable::NameColumn, text(" "), "Tag \"\": the name is empty");
    row("tags", TagTable::ValueColumn, text("high"), "Tag \"level\": \"high\" is no number");
    row("tags", TagTable::GeneratorColumn + 1, 3, "Tag \"level\": the period 3 ms is not between");
    row("tags", TagTable::GeneratorColumn + 2, text("low"),
        "Tag \"level\": \"low\" is no number for Minimum");
    row("tags", TagTable::GeneratorColumn + 2, text("101"), "Tag \"level\": the minimum 101 is above");
    row("tags", TagTable::GeneratorColumn + 4, text("-1"), "Tag \"level\": \"-1\" is no number for Seed");
    row("trends", TrendTable::NameColumn, text(""), "Trend \"\": the name is empty");
    row("trends", TrendTable::IntervalColumn, 1, "Trend \"levels\": Interval: 1 ms is not between");
    row("trends", TrendTable::DelayColumn, -1, "Trend \"levels\": Delay: -1 ms is not between 0 ms");
    row("trends", TrendTable::GeneratorColumn + 3, text("x"),
        "Trend \"levels\": \"x\" is no number for Maximum");
    row("alarms", AlarmTable::NameColumn, text("\t"), "Alarm \"\": the name is empty");
    row("alarms", AlarmTable::StateColumn, 99, "Alarm \"first\": there is no state 99");
    row("alarms", AlarmTable::SeverityColumn, -1, "Alarm \"first\": there is no severity -1");
}

void TestProviderTables::whatDoesNotFitIsRefused()
{
    QFETCH(QString, table);
    QFETCH(int, column);
    QFETCH(QVariant, entered);
    QFETCH(QString, problem);
    TablePlant plant;
    ProviderTable *model = plant.table(table);
    const QJsonObject before = plant.toJson();
    QSignalSpy refusals(model, &ProviderTable::refused);
    QSignalSpy edits(&plant, &Providers::edited);
    QVERIFY(!model->setData(model->index(0, column), entered, Qt::EditRole));
    QCOMPARE(refusals.count(), 1);
    const QString told = refusals.first().first().toString();
    QVERIFY2(told.startsWith(problem), qPrintable(told));
    QCOMPARE(plant.toJson(), before);
    QCOMPARE(edits.count(), 0);
    // Nor does a cell take another role, or have cells below.
    QVERIFY(!model->setData(model->index(0, column), entered, Qt::DisplayRole));
    QCOMPARE(model->rowCount(model->index(0, 0)) + model->columnCount(model->index(0, 0)), 0);
    QVERIFY(!model->headerData(model->columnCount(), Qt::Horizontal, Qt::DisplayRole).isValid());
    QVERIFY(!model->headerData(column, Qt::Vertical, Qt::DisplayRole).isValid());
    QVERIFY(!model->headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString().isEmpty());
}

// A cell that means nothing for the row is empty and has no editor.
void TestProviderTables::editorsSuitTheRow()
{
    TablePlant plant;
    const auto editor = [](const ProviderTable *table, int column) {
        return cell(table, 0, column, ProviderTable::EditorRole).toInt();
    };
    const auto isUnused = [&](const ProviderTable *table, int column) {
        return editor(table, column) == ProviderColumn::NoEditor
               && cell(table, 0, column).toString().isEmpty()
               && !(table->index(0, column).flags() & Qt::ItemIsEditable);
    };
    TagTable *tags = plant.tags();
    TrendTable *trends = plant.trends();
    const int file = TagTable::GeneratorColumn + 5;
    QCOMPARE(editor(tags, TagTable::GeneratorColumn), int(ProviderColumn::ChoiceEditor));
    QCOMPARE(editor(tags, TagTable::GeneratorColumn + 1), int(ProviderColumn::WholeNumberEditor));
    QVERIFY(isUnused(tags, file));
    QVERIFY(tags->setData(tags->index(0, TagTable::GeneratorColumn), Generator::CsvReplay, Qt::EditRole));
    QCOMPARE(editor(tags, file), int(ProviderColumn::FileEditor));
    QVERIFY(isUnused(tags, file - 1) && isUnused(tags, file - 4));
    QVERIFY(tags->setData(tags->index(0, file), QStringLiteral("none.csv"), Qt::EditRole));
    QVERIFY(cell(tags, 0, 0, ProviderTable::ProblemRole).toString().contains(QStringLiteral("none.csv")));
    QCOMPARE(cell(tags, 0, 0, Qt::ToolTipRole), cell(tags, 0, 0, ProviderTable::ProblemRole));
    QVERIFY(tags->setData(tags->index(0, TagTable::TypeColumn), TagTypeBool - 1, Qt::EditRole));
    QCOMPARE(editor(tags, TagTable::ValueColumn), int(ProviderColumn::ChoiceEditor));
    QCOMPARE(cell(tags, 0, TagTable::ValueColumn, ProviderTable::ChoicesRole).toStringList(),
             (QStringList{QStringLiteral("false"), QStringLiteral("true")}));
    QVERIFY(tags->setData(tags->index(0, TagTable::ValueColumn), 1, Qt::EditRole));
    QCOMPARE(tags->definition(QStringLiteral("level")).value, QVariant(true));
    QVERIFY(tags->setData(tags->index(0, TagTable::KnownColumn), Qt::Unchecked, Qt::CheckStateRole));
    QVERIFY(!tags->definition(QStringLiteral("level")).isKnown);
    QCOMPARE(cell(tags, 0, TagTable::KnownColumn, Qt::CheckStateRole).toInt(), int(Qt::Unchecked));

    QVERIFY(isUnused(trends, TrendTable::TagColumn));
    QVERIFY(
        trends->setData(trends->index(0, TrendTable::SourceColumn), TrendDefinition::FromTag, Qt::EditRole));
    QVERIFY(isUnused(trends, TrendTable::GeneratorColumn) && isUnused(trends, TrendTable::MinimumColumn));
    QCOMPARE(cell(trends, 0, TrendTable::TagColumn).toString(), QStringLiteral("level"));
    QCOMPARE(cell(trends, 0, TrendTable::TagColumn, ProviderTable::ChoicesRole).toStringList(),
             tags->names());
    QCOMPARE(cell(trends, 0, TrendTable::IntervalColumn, ProviderTable::MinimumRole).toInt(),
             int(TrendDefinition::MinimumInterval));
    QCOMPARE(cell(trends, 0, TrendTable::DelayColumn, ProviderTable::MinimumRole).toInt(), 0);
    QCOMPARE(cell(trends, 0, TrendTable::DelayColumn, ProviderTable::MaximumRole).toInt(),
             int(TrendDefinition::MaximumDelay));
    for (const int column : {TrendTable::GapsColumn, TrendTable::TooManyColumn, TrendTable::EmptyColumn}) {
        QCOMPARE(cell(trends, 0, column, Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
        QVERIFY(trends->index(0, column).flags() & Qt::ItemIsUserCheckable);
        QVERIFY(trends->setData(trends->index(0, column), Qt::Checked, Qt::CheckStateRole));
        QCOMPARE(cell(trends, 0, column, Qt::CheckStateRole).toInt(), int(Qt::Checked));
    }
    const TrendDefinition trend = trends->definition(QStringLiteral("levels"));
    QVERIFY(trend.hasGaps && trend.hasTooMany && trend.answersEmpty);
    QVERIFY(!cell(trends, 0, TrendTable::NameColumn, Qt::CheckStateRole).isValid());

    QVERIFY(!(plant.alarms()->index(0, AlarmTable::TimeColumn).flags() & Qt::ItemIsEditable));
    QCOMPARE(
        cell(plant.alarms(), 0, AlarmTable::StateColumn, ProviderTable::ChoicesRole).toStringList().size(),
        7);
    QCOMPARE(cell(plant.alarms(), 0, AlarmTable::SeverityColumn, ProviderTable::ChoicesRole)
                 .toStringList()
                 .value(6),
             QStringLiteral("Critical"));
}

void TestProviderTables::rowsAreMadeCopiedAndRenamed()
{
    TablePlant plant;
    for (const char *name : {"tags", "trends", "alarms"}) {
        ProviderTable *table = plant.table(QLatin1String(name));
        const QString first = table->nameOf(0);
        const QString made = table->addNew();
        QVERIFY(!made.isEmpty() && made != first);
        QCOMPARE(table->addNew(), made + QLatin1Char('2'));
        QCOMPARE(table->duplicate(first), first + QLatin1Char('2'));
        QCOMPARE(table->rowCount(), 4);
        for (int column = 1; column < table->columnCount(); ++column) {
            QCOMPARE(cell(table, 3, column, Qt::EditRole), cell(table, 0, column, Qt::EditRole));
        }
        QVERIFY(table->remove(made) && !table->remove(made));
        QCOMPARE(table->rowOf(made), -1);
        QCOMPARE(table->rowProblem(-1), QString());
        QCOMPARE(table->rowProblem(99), QString());
    }
    // What names a tag follows it.
    AlarmInfoData alarm = plant.alarms()->definition(QStringLiteral("first"));
    alarm.tagName = QStringLiteral("level");
    QVERIFY(plant.alarms()->edit(alarm.name, alarm));
    QVERIFY(plant.tags()->setData(plant.tags()->index(0, 0), QStringLiteral("fill"), Qt::EditRole));
    QCOMPARE(plant.alarms()->definition(alarm.name).tagName, QStringLiteral("fill"));
    QCOMPARE(plant.trends()->definition(QStringLiteral("levels")).tag, QStringLiteral("fill"));
}

void TestProviderTables::alarmsShowTheirColours()
{
    TablePlant plant;
    AlarmTable *alarms = plant.alarms();
    AlarmInfoData data = alarms->definition(QStringLiteral("first"));
    data.backgroundColors.insert(KORA::AlarmInfo::StateTriggeredNotAcknowledged, Qt::red);
    data.foregroundColors.insert(KORA::AlarmInfo::StateTriggeredNotAcknowledged, Qt::white);
    data.groups = QStringList{QStringLiteral("a"), QStringLiteral("b")};
    QVERIFY(alarms->edit(data.name, data));
    const int state = AlarmTable::StateColumn;
    QVERIFY(!cell(alarms, 0, state, Qt::BackgroundRole).isValid());
    QVERIFY(alarms->raise(data.name));
    QCOMPARE(cell(alarms, 0, state, Qt::BackgroundRole).value<QBrush>().color(), QColor(Qt::red));
    QCOMPARE(cell(alarms, 0, state, Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::white));
    QVERIFY(!cell(alarms, 0, 0, Qt::BackgroundRole).isValid());
    QCOMPARE(cell(alarms, 0, AlarmTable::TimeColumn).toString(),
             noon.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")));
    QCOMPARE(cell(alarms, 0, AlarmTable::GroupsColumn).toString(), QStringLiteral("a, b"));
    QCOMPARE(AlarmTable::stateText(static_cast<KORA::AlarmInfo::State>(9)), QString());
    QCOMPARE(AlarmTable::severityText(static_cast<KORA::AlarmInfo::Severity>(-1)), QString());
}

void TestProviderTables::trendsTellOfTagsThatAreMissing()
{
    TablePlant plant;
    TrendTable *trends = plant.trends();
    QVERIFY(
        trends->setData(trends->index(0, TrendTable::SourceColumn), TrendDefinition::FromTag, Qt::EditRole));
    QCOMPARE(trends->rowProblem(0), QString());
    QVERIFY(plant.tags()->remove(QStringLiteral("level")));
    QCOMPARE(trends->rowProblem(0), QStringLiteral("Trend \"levels\": there is no tag \"level\""));
    QCOMPARE(cell(trends, 0, 0, Qt::ToolTipRole).toString(), trends->rowProblem(0));
    // Without tags a new trend has a generator.
    const QString made = trends->addNew();
    QCOMPARE(trends->definition(made).source, TrendDefinition::FromGenerator);
    QVERIFY(trends->presentValue(made).isValid());
}

KORA_TEST_MAIN(TestProviderTables)

#include "tst_providertables.moc"
