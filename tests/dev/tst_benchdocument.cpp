// SPDX-License-Identifier: Apache-2.0
#include "plantbench.h"

#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>

#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/model/plugincall.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/providers/tagtable.h>

#include <sys/stat.h>

#include <limits>

using namespace KORA;
using namespace KORA::DEV;
using namespace KORA::INTERNAL;

namespace {

const QString gauge = QStringLiteral("gauge");
const QString version = QStringLiteral("1.1.0");
const QString decimals = QStringLiteral("decimals");

int intValue(const PlacedWidget *widget, const QString &field)
{
    return widget->fieldValue(field).toInt();
}

} // namespace

class TestBenchDocument : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qRegisterMetaType<PlacedWidget::Origin>();
        m_plant = std::make_unique<PlantLibrary>();
        QVERIFY(m_plant->data());
    }

    void editsAreUndoneAndRedone();
    void geometryStepsOfAGestureAreOneStep();
    void removedWidgetComesBackAtItsPlaceWithItsValues();
    void modeSwitchKeepsWhatThePluginWrote();
    void boundFieldFollowsTheTagBothWays();
    void textsAreKeptPerLanguage();
    void resetRestoresDefaultsInOneStep();
    void scenarioRoundTripsThroughAFile();
    void scenarioFaultsAreAllNamed();
    void unfitValuesAreDroppedAndNamed();
    void brokenInstancesKeepTheirStateAndSayWhy();
    void valuesKeepEveryDigit();
    void valuesOfAWrongKindAreRefused();
    void activityCollapsesRepeatsAndForgetsTheOldest();
    void runningCallsAreReadableFromOutside();

private:
    std::unique_ptr<PlantLibrary> m_plant;
};

void TestBenchDocument::editsAreUndoneAndRedone()
{
    BenchDocument document(m_plant->data());
    PlacedWidget *first = document.place(gauge, version, {400, 240});
    QVERIFY2(first->item() && first->isRunning(), qPrintable(first->problem().message));
    QCOMPARE(first->geometry().center().toPoint(), QPoint(400, 240));
    QCOMPARE(document.current(), first);
    const int id = first->id();

    QCOMPARE(document.setFieldValue(first, decimals, 99).toInt(), 6); // its maximum
    QCOMPARE(intValue(first, decimals), 6);
    QString problem;
    QVERIFY(document.rename(first, QStringLiteral("speed"), problem));
    PlacedWidget *second = document.place(gauge, version, {100, 100});
    QVERIFY(!document.rename(second, QStringLiteral("speed"), problem));
    QVERIFY(problem.contains(QStringLiteral("speed")));
    document.setStackingIndex(second, 0);
    QCOMPARE(document.widgets().first(), second);
    QVERIFY(second->item()->zValue() < first->item()->zValue());

    while (document.undoStack()->canUndo()) {
        document.undoStack()->undo();
    }
    QVERIFY(document.widgets().isEmpty());
    QVERIFY(document.selection().isEmpty());
    while (document.undoStack()->canRedo()) {
        document.undoStack()->redo();
    }
    PlacedWidget *again = document.widgetById(id);
    QVERIFY(again);
    QCOMPARE(again->name(), QStringLiteral("speed"));
    QCOMPARE(intValue(again, decimals), 6);
    QCOMPARE(document.widgets().last(), again);
}

void TestBenchDocument::geometryStepsOfAGestureAreOneStep()
{
    BenchDocument document(m_plant->data());
    PlacedWidget *widget = document.place(gauge, version, {400, 240});
    const QRectF before = widget->geometry();
    const int steps = document.undoStack()->count();
    const int gesture = document.newGesture();
    for (int i = 1; i <= 20; ++i) {
        document.setGeometries({widget}, {before.adjusted(0, 0, i + 0.4, 0)}, gesture);
    }
    QCOMPARE(widget->geometry(), before.adjusted(0, 0, 20, 0));
    QCOMPARE(widget->item()->size(), widget->geometry().size());
    document.setGeometries({widget}, {QRectF(0, 0, 0.1, -5)}, document.newGesture());
    QCOMPARE(widget->geometry(), QRectF(0, 0, 1, 1));
    QCOMPARE(document.undoStack()->count(), steps + 2);
    document.undoStack()->undo();
    document.undoStack()->undo();
    QCOMPARE(widget->item()->size(), before.size());
}

void TestBenchDocument::removedWidgetComesBackAtItsPlaceWithItsValues()
{
    BenchDocument document(m_plant->data());
    PlacedWidget *low = document.place(gauge, version, {100, 100});
    document.place(gauge, version, {200, 100});
    document.setFieldValue(low, decimals, 3);
    document.duplicate({low}, {16, 16});
    QCOMPARE(intValue(document.current(), decimals), 3);
    QCOMPARE(document.current()->name(), QStringLiteral("gauge3"));

    QPointer<GraphicsObject> item = low->item();
    document.remove({low, document.current()});
    QCOMPARE(document.widgets().size(), 1);
    QVERIFY(!item);
    document.undoStack()->undo();
    QCOMPARE(document.widgets().size(), 3);
    QCOMPARE(document.widgets().first()->name(), QStringLiteral("gauge1"));
    QCOMPARE(intValue(document.widgets().first(), decimals), 3);
    QCOMPARE(document.selection().size(), 2);
}

void TestBenchDocument::modeSwitchKeepsWhatThePluginWrote()
{
    BenchDocument document(m_plant->data());
    PlacedWidget *widget = document.place(gauge, version, {400, 240});
    document.setRunning(widget, false);
    QPointer<GraphicsObject> item = widget->item();
    QVERIFY(widget->widget()->widgetActionManager()->isInsideProjectEditor());
    WidgetPrivateAccessor::priv(widget->widget())
        ->setFieldValue(decimals, 4, true, true); // as if the plugin did
    QSignalSpy instances(widget, &PlacedWidget::instanceChanged);

    document.setMode(BenchMode::Runtime);
    QVERIFY(!item);
    QCOMPARE(instances.size(), 1);
    QVERIFY(!widget->widget()->widgetActionManager()->isInsideProjectEditor());
    QVERIFY(!widget->isRunning());
    QCOMPARE(intValue(widget, decimals), 4);
    QVERIFY(widget->isModified(decimals));
}

void TestBenchDocument::boundFieldFollowsTheTagBothWays()
{
    const QString value = QStringLiteral("value");
    const QString tag = QStringLiteral("Speed");
    BenchDocument document(m_plant->data());
    TagTable *tags = document.providers()->tags();
    TagDefinition definition;
    definition.name = tag;
    definition.type = TagTypeDouble;
    definition.value = 12.5;
    QVERIFY(tags->add(definition, nullptr));
    PlacedWidget *widget = document.place(gauge, version, {400, 240});

    document.setBinding(widget, value, tag);
    QCOMPARE(widget->fieldValue(value).toDouble(), 12.5);
    QSignalSpy changes(widget, &PlacedWidget::fieldValueChanged);
    QVERIFY(tags->setValue(tag, 20.0));
    QCOMPARE(widget->fieldValue(value).toDouble(), 20.0);
    QCOMPARE(changes.last().at(2).value<PlacedWidget::Origin>(), PlacedWidget::Tag);

    document.setFieldValue(widget, value, 30.0);
    QCOMPARE(tags->value(tag).toDouble(), 30.0);
    document.undoStack()->undo();
    QCOMPARE(tags->value(tag).toDouble(), 20.0);

    emit WidgetPrivateAccessor::priv(widget->widget())->fieldIsChanged(value, 40.0);
    QCOMPARE(tags->value(tag).toDouble(), 40.0);

    definition = tags->definition(tag);
    definition.name = QStringLiteral("Revolutions");
    QVERIFY(tags->edit(tag, definition, nullptr));
    QCOMPARE(widget->binding(value), definition.name);
    document.undoStack()->undo();
    QCOMPARE(widget->binding(value), tag);
    QVERIFY(tags->contains(tag));

    document.undoStack()->undo();
    QVERIFY(widget->binding(value).isEmpty());
    QVERIFY(tags->setValue(tag, 50.0));
    QVERIFY(widget->fieldValue(value).toDouble() != 50.0);
}

void TestBenchDocument::textsAreKeptPerLanguage()
{
    BenchDocument document(m_plant->data());
    PlacedWidget *widget = nullptr;
    QString field;
    const auto widgets = m_plant->data()->metaInformation()->widgets();
    for (const WidgetMetaInformation &info : widgets) {
        const auto fields = info.fields();
        for (const FieldMetaInformation &candidate : fields) {
            if (!widget && candidate.isMultiLanguageText() && candidate.type() == FieldTypeString) {
                widget = document.place(info.id(), info.version().version(), {300, 200});
                field = candidate.id();
            }
        }
    }
    QVERIFY(widget);
    const QString standard = widget->fieldValue(field).toString();
    const QString italian = QStringLiteral("it-IT");
    document.setFieldText(widget, field, italian, QStringLiteral("Serbatoio 7"));
    QCOMPARE(widget->fieldValue(field).toString(), standard);
    document.setLanguage(italian);
    QCOMPARE(widget->fieldValue(field).toString(), QStringLiteral("Serbatoio 7"));
    document.setMode(BenchMode::Runtime);
    QCOMPARE(widget->fieldValue(field).toString(), QStringLiteral("Serbatoio 7"));
    QVERIFY(widget->isModified(field));
    document.resetFields(widget, {field});
    QVERIFY(!widget->isModified(field));
    QVERIFY(widget->fieldValue(field).toString() != QStringLiteral("Serbatoio 7"));
}

void TestBenchDocument::resetRestoresDefaultsInOneStep()
{
    BenchDocument document(m_plant->data());
    PlacedWidget *widget = document.place(gauge, version, {400, 240});
    document.setFieldValue(widget, decimals, 5);
    document.setFieldValue(widget, QStringLiteral("value"), 7.0);
    const int steps = document.undoStack()->index();
    document.resetFields(widget, fieldIds(widget->info()));
    for (const QString &id : fieldIds(widget->info())) {
        QVERIFY2(!widget->isModified(id), qPrintable(id));
    }
    QCOMPARE(document.undoStack()->index(), steps + 1);
    document.undoStack()->undo();
    QCOMPARE(intValue(widget, decimals), 5);
    QCOMPARE(widget->fieldValue(QStringLiteral("value")).toDouble(), 7.0);
}

void TestBenchDocument::scenarioRoundTripsThroughAFile()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("page.json"));
    BenchDocument document(m_plant->data());
    const auto widgets = m_plant->data()->metaInformation()->widgets();
    for (const WidgetMetaInformation &info : widgets) {
        document.place(info.id(), info.version().version(), {300, 200});
    }
    PlacedWidget *widget = document.place(gauge, version, {400, 240});
    document.setBinding(widget, QStringLiteral("value"), QStringLiteral("Speed"));
    document.setLocked(widget, true);
    PageState page;
    page.size = {1280, 800};
    page.background = QColor();
    document.setPage(page);

    QString problem;
    QVERIFY2(document.toScenario().save(path, problem), qPrintable(problem));
    Scenario scenario;
    QStringList problems;
    QVERIFY2(Scenario::load(path, scenario, problems), qPrintable(problems.join(QLatin1Char('\n'))));
    BenchDocument other(m_plant->data());
    other.load(scenario, problems);
    QCOMPARE(problems, QStringList());
    QCOMPARE(other.toScenario().toJson(), document.toScenario().toJson());
    QVERIFY(!other.undoStack()->canUndo());
}

void TestBenchDocument::scenarioFaultsAreAllNamed()
{
    const QJsonObject widget{{QStringLiteral("name"), QStringLiteral("a")},
                             {QStringLiteral("widget"), gauge},
                             {QStringLiteral("version"), version},
                             {QStringLiteral("x"), 0},
                             {QStringLiteral("y"), 0},
                             {QStringLiteral("width"), 0},
                             {QStringLiteral("height"), 10},
                             {QStringLiteral("colour"), 10}};
    const QJsonObject json{{QStringLiteral("kora"), QStringLiteral("scenario")},
                           {QStringLiteral("schema"), 2},
                           {QStringLiteral("pluginId"), QStringLiteral("p")},
                           {QStringLiteral("mode"), QStringLiteral("panel")},
                           {QStringLiteral("page"), QJsonObject{{QStringLiteral("width"), 1e9}}},
                           {QStringLiteral("widgets"), QJsonArray{widget, widget}}};
    Scenario scenario;
    scenario.pluginId = QStringLiteral("untouched");
    QStringList problems;
    QVERIFY(!Scenario::fromJson(json, scenario, problems));
    QCOMPARE(scenario.pluginId, QStringLiteral("untouched"));
    problems.sort();
    QCOMPARE(problems.size(), 8);
    QCOMPARE(problems.at(0), QStringLiteral("/mode: \"studio\" or \"runtime\" is expected"));
    QCOMPARE(problems.at(1), QStringLiteral("/page/width: a number from 16 to 8192 is expected"));
    QCOMPARE(problems.at(2), QStringLiteral("/schema: this bench reads schema 1"));
    QCOMPARE(problems.at(3), QStringLiteral("/widgets/0/colour: the key is not known"));
    QCOMPARE(problems.at(4), QStringLiteral("/widgets/0/width: a number from 1 to 1e+06 is expected"));
    QCOMPARE(problems.at(6), QStringLiteral("/widgets/1/name: the name \"a\" is taken by another widget"));

    // Each key of a wrong kind, and nothing beside it.
    const struct
    {
        const char *json;
        const char *problem;
    } faults[] = {
        {R"({"kora": "bench"})", "/kora: \"scenario\" is expected"},
        {R"({"widgets": {}})", "/widgets: an array is expected"},
        {R"({"widgets": [1]})", "/widgets/0: an object is expected"},
        {R"({"widgets": [{"name": "a", "visible": 1}]})", "/widgets/0/visible: true or false is expected"},
        {R"({"widgets": [{"name": ""}]})", "/widgets/0/name: a text is expected"},
        {R"({"widgets": [{"values": []}]})", "/widgets/0/values: an object is expected"},
        {R"({"widgets": [{"bindings": {"level": 5}}]})",
         "/widgets/0/bindings/level: the name of a tag or trend is expected"},
        {R"({"page": {"background": "#12"}})",
         "/page/background: a colour such as \"#ffffffff\" or \"checkerboard\" is expected"},
        {R"({"page": {"gridStep": 0}})", "/page/gridStep: a number from 1 to 256 is expected"},
    };
    for (const auto &fault : faults) {
        problems.clear();
        QVERIFY(!Scenario::fromJson(QJsonDocument::fromJson(fault.json).object(), scenario, problems));
        QVERIFY2(problems.contains(QLatin1String(fault.problem)),
                 qPrintable(problems.join(QLatin1Char('\n'))));
    }

    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("broken.json")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\n\"kora\": }");
    file.close();
    problems.clear();
    QVERIFY(!Scenario::load(file.fileName(), scenario, problems));
    QVERIFY2(problems.value(0).startsWith(file.fileName() + QStringLiteral(":2: ")),
             qPrintable(problems.value(0)));

    const QString pipe = dir.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    problems.clear();
    QVERIFY(!Scenario::load(pipe, scenario, problems)); // and does not wait for a writer
    QCOMPARE(problems, QStringList(pipe + QStringLiteral(" cannot be read: it is no regular file")));
}

void TestBenchDocument::unfitValuesAreDroppedAndNamed()
{
    BenchDocument document(m_plant->data());
    document.place(gauge, version, {400, 240});
    Scenario scenario = document.toScenario();
    scenario.widgets[0].values = {{QStringLiteral("speedLimit"), 7},
                                  {decimals, QStringLiteral("many")},
                                  {QStringLiteral("value"), 1.5}};
    scenario.widgets[0].bindings = {{QStringLiteral("gone"), QStringLiteral("Speed")}};
    scenario.language = QStringLiteral("xx-XX");
    QStringList dropped;
    QCOMPARE(document.load(scenario, dropped), 1);
    dropped.sort();
    QCOMPARE(dropped, QStringList({
                          QStringLiteral("gauge1: decimals: a whole number is expected (was \"many\")"),
                          QStringLiteral("gauge1: gone is gone (followed Speed)"),
                          QStringLiteral("gauge1: speedLimit is gone (was 7)"),
                          QStringLiteral("the library has no texts in xx-XX"),
                      }));
    QCOMPARE(document.widgets().first()->fieldValue(QStringLiteral("value")).toDouble(), 1.5);
}

void TestBenchDocument::brokenInstancesKeepTheirStateAndSayWhy()
{
    BenchDocument document(m_plant->data());
    PlacedWidget *unknown = document.place(QStringLiteral("nothing"), version, {10, 10});
    QCOMPARE(unknown->problem().rule, QStringLiteral("widget-unknown"));
    QVERIFY(unknown->problem().hint.contains(QStringLiteral("gauge 1.1.0")));

    PlacedWidget *widget = document.place(gauge, version, {400, 240});
    document.setFieldValue(widget, decimals, 5);
    Scenario scenario = document.toScenario();
    scenario.widgets[0].values = {{QStringLiteral("kept"), 7}};
    QStringList dropped;
    document.load(scenario, dropped, true);
    widget = document.widgets().last();
    QCOMPARE(widget->problem().rule, QStringLiteral("stopped"));
    QVERIFY(!widget->item());
    QCOMPARE(document.toScenario().toJson(), scenario.toJson());
    document.setRunning(widget, true);
    QVERIFY(widget->isRunning());
    QCOMPARE(intValue(widget, decimals), 5);

    delete widget->item(); // as a careless plugin may
    QTRY_COMPARE(widget->problem().rule, QStringLiteral("widget-deleted"));
    QCOMPARE(intValue(widget, decimals), 5);
    document.restart(widget);
    QVERIFY(widget->item());

    BenchDocument withoutPlugin(nullptr);
    QCOMPARE(withoutPlugin.place(gauge, version, {1, 1})->problem().rule,
             QStringLiteral("plugin-not-loaded"));
}

void TestBenchDocument::valuesKeepEveryDigit()
{
    struct Row
    {
        FieldType type;
        QVariant value;
    };
    QFont font(QStringLiteral("Roboto Thin"), 17);
    font.setItalic(true);
    font.setUnderline(true);
    const Row rows[] = {
        {FieldTypeDouble, 0.1 + 0.2},
        {FieldTypeDouble, -std::numeric_limits<double>::infinity()},
        {FieldTypeDouble, std::numeric_limits<double>::denorm_min()},
        {FieldTypeInteger, std::numeric_limits<int>::min()},
        {FieldTypeColor, QColor(1, 2, 3, 4)},
        {FieldTypeFont, font},
        {FieldTypeString, QString::fromUtf8("a\n\"\xE2\x82\xAC\"")},
        {FieldTypeStringList, QStringList({QString(), QStringLiteral(",")})},
        {FieldTypeStringMap,
         QVariant::fromValue(QMap<int, QString>{{-1, QStringLiteral("x")}, {10, QString()}})},
        {FieldTypeImage, QVariant()},
        {FieldTypeImage, QString(QLatin1String(""))},
        {FieldTypeTag, 3},
        {FieldTypeTag, 2.5},
        {FieldTypeTag, true},
    };
    for (const Row &row : rows) {
        const QByteArray text = QJsonDocument(QJsonArray{fieldValueToJson(row.type, row.value)}).toJson();
        QVariant read;
        QString problem;
        QVERIFY2(fieldValueFromJson(row.type, QJsonDocument::fromJson(text).array().first(), read, problem),
                 text);
        QCOMPARE(read.userType(), row.value.userType());
        QCOMPARE(QJsonDocument(QJsonArray{fieldValueToJson(row.type, read)}).toJson(), text);
        if (row.type != FieldTypeStringMap) {
            QCOMPARE(read, row.value);
        }
    }
}

void TestBenchDocument::valuesOfAWrongKindAreRefused()
{
    const struct
    {
        FieldType type;
        const char *json;
    } rows[] = {
        {FieldTypeInteger, "1.5"},
        {FieldTypeInteger, "2147483648"},
        {FieldTypeInteger, "\"1\""},
        {FieldTypeOption, "true"},
        {FieldTypeDouble, "\"1.5\""}, // as a text only what JSON has no number for
        {FieldTypeDouble, "false"},
        {FieldTypeBool, "0"},
        {FieldTypeColor, "\"#12\""},
        {FieldTypeString, "5"},
        {FieldTypeStringList, "\"a\""},
        {FieldTypeStringList, "[\"a\", 1]"},
        {FieldTypeStringMap, "[]"},
        {FieldTypeStringMap, R"({"x": "a"})"},
        {FieldTypeStringMap, R"({"1": 1})"},
        {FieldTypeFont, "\"Roboto\""},
        {FieldTypeFont, R"({"family": "R", "size": 0, "bold": true, "style": 0, "underline": true})"},
        {FieldTypeFont, R"({"family": "R", "size": 9, "bold": true, "style": 3, "underline": true})"},
        {FieldTypeFont, R"({"family": "R", "size": 9, "bold": 1, "style": 0, "underline": true})"},
        {FieldTypeFont, R"({"family": "R", "size": 9, "bold": true, "style": 0})"},
    };
    for (const auto &row : rows) {
        const QJsonValue json = QJsonDocument::fromJson('[' + QByteArray(row.json) + ']').array().first();
        QVERIFY2(!json.isUndefined(), row.json);
        QVariant value = QStringLiteral("untouched");
        QString problem;
        QVERIFY2(!fieldValueFromJson(row.type, json, value, problem), row.json);
        QVERIFY2(problem.endsWith(QStringLiteral(" is expected")), qPrintable(problem));
        QCOMPARE(value, QVariant(QStringLiteral("untouched")));
    }
}

void TestBenchDocument::activityCollapsesRepeatsAndForgetsTheOldest()
{
    ActivityLog log;
    ActivityEntry entry;
    entry.what = QStringLiteral("getTagValue");
    for (int i = 0; i < 3; ++i) {
        entry.result = QString::number(i);
        log.record(entry);
        log.entries(); // also across updates of the view
    }
    QCOMPARE(log.rowCount(), 1);
    QCOMPARE(log.entries().first().count, 3);
    QCOMPARE(log.entries().first().result, QStringLiteral("2"));

    QSignalSpy inserted(&log, &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 10 * ActivityLog::capacity; ++i) {
        entry.arguments = QString::number(i);
        log.record(entry);
    }
    QTRY_COMPARE(log.rowCount(), int(ActivityLog::capacity));
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(log.entries().last().arguments, QString::number(10 * ActivityLog::capacity - 1));
}

void TestBenchDocument::runningCallsAreReadableFromOutside()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("calls"));
    QVERIFY(CallTrace::instance().open(path));
    {
        PluginCall outer(nullptr, ActivityEntry::Event, QStringLiteral("tank1"), QStringLiteral("initEvent"));
        PluginCall inner(nullptr, ActivityEntry::HostWrite, QStringLiteral("tank2"),
                         QString(300, QLatin1Char('x')));
        const QStringList calls = CallTrace::runningCalls(path);
        QCOMPARE(calls.size(), 2);
        QCOMPARE(calls.first(), QStringLiteral("initEvent of tank1"));
        QCOMPARE(calls.last().size(), 255);
    }
    QCOMPARE(CallTrace::runningCalls(path), QStringList());
    QVERIFY(!CallTrace::instance().open(dir.filePath(QStringLiteral("missing/calls"))));
}

KORA_TEST_MAIN(TestBenchDocument)

#include "tst_benchdocument.moc"
