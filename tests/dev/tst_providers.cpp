// SPDX-License-Identifier: Apache-2.0
#include "stillplant.h"

#include <kora/dev/providers/tagvalues.h>

#include <support/testmain.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <limits>

namespace {

QString written(const QTemporaryDir &folder, const QByteArray &content)
{
    QFile file(folder.filePath(QStringLiteral("replay.csv")));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName()
                                                                                    : QString();
}

QVector<qint64> secondsOf(const QVariant &answer)
{
    QVector<qint64> seconds;
    const QVariantList list = answer.toList();
    for (const QVariant &point : list) {
        seconds.append(noon.secsTo(point.toMap().value(QStringLiteral("time")).toDateTime()));
    }
    return seconds;
}

} // namespace

class TestProviders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theClockAloneDecides();
    void generatorsGiveTheirValues_data();
    void generatorsGiveTheirValues();
    void chanceRepeats();
    void replayFilesPlayAndAreRefused();
    void writtenValuesConvert_data();
    void writtenValuesConvert();
    void tagsAreReadAndWritten();
    void trendsAnswer();
    void alarmsFollowTheirStates();
    void burstsRepeat();
    void stateRoundTrips();
    void undoingLeavesRunningValues();
    void faultyStateIsRefused_data();
    void faultyStateIsRefused();
    void unusableDefinitionsAreRefused();
    void manyWritesReachViewsSeldom();
};

void TestProviders::theClockAloneDecides()
{
    Plant once;
    Plant bitByBit;
    for (Plant *plant : {&once, &bitByBit}) {
        plant->addDefaults();
        plant->clock()->setSeed(7);
    }
    once.clock()->advance(12345);
    for (int ms : {1, 99, 100, 145, 2000, 10000}) {
        bitByBit.clock()->advance(ms);
    }
    QCOMPARE(bitByBit.toJson(), once.toJson());
    QCOMPARE(once.clock()->now(), noon.addMSecs(12345));
    const auto &samples = once.tags()->history(QStringLiteral("speed"))->samples();
    const auto &others = bitByBit.tags()->history(QStringLiteral("speed"))->samples();
    QVERIFY(samples.size() > 50);
    QCOMPARE(samples.size(), others.size());
    QCOMPARE(samples.back().value, others.back().value);
    QCOMPARE(samples[30].time, others[30].time);

    // Running by itself, at the speed that is set; standing still when paused; a step pauses.
    BenchClock clock;
    clock.setSpeed(1e9);
    QCOMPARE(clock.speed(), BenchClock::MaximumSpeed);
    QTRY_VERIFY(clock.elapsed() > 5000);
    clock.step();
    QVERIFY(clock.isPaused());
    const qint64 stopped = clock.elapsed();
    QTest::qWait(120);
    QCOMPARE(clock.elapsed(), stopped);
    clock.advance(-5);
    QCOMPARE(clock.elapsed(), stopped);
}

void TestProviders::generatorsGiveTheirValues_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<double>("value");
    const auto row = [](const char *name, Generator::Kind kind, qint64 ms, double value) {
        QTest::newRow(name) << static_cast<int>(kind) << ms << value;
    };
    row("a ramp starts at the minimum", Generator::Ramp, 3000, 2);
    row("a ramp rises evenly", Generator::Ramp, 3250, 4);
    row("before the start it is the same ramp", Generator::Ramp, -250, 8);
    row("a sine starts in the middle", Generator::Sine, 0, 6);
    row("a sine's crest", Generator::Sine, 250, 10);
    row("a sine's trough", Generator::Sine, 750, 2);
    row("a square is low first", Generator::Square, 499, 2);
    row("a square is high then", Generator::Square, 500, 10);
    row("a toggle stays for a period", Generator::Toggle, 999, 2);
    row("a toggle changes after it", Generator::Toggle, 1000, 10);
    row("a toggle before the start", Generator::Toggle, -1, 10);
    row("a counter counts", Generator::Counter, 3000, 5);
    row("a counter starts over after the maximum", Generator::Counter, 9000, 2);
    row("a counter before the start", Generator::Counter, -1, 10);
    row("a constant is the minimum", Generator::Constant, 77, 2);
}

void TestProviders::generatorsGiveTheirValues()
{
    QFETCH(int, kind);
    QFETCH(qint64, ms);
    QFETCH(double, value);
    QCOMPARE(generator(static_cast<Generator::Kind>(kind), 1000, 2, 10).valueAt(ms, 1), value);
}

void TestProviders::chanceRepeats()
{
    const Generator walk = generator(Generator::RandomWalk);
    Generator otherWalk = walk;
    otherWalk.seed = 2;
    const Generator spikes = generator(Generator::Spikes);
    int differences = 0;
    double lowest = 10;
    double highest = 0;
    for (qint64 ms = -20000; ms < 200000; ms += 100) {
        const double value = walk.valueAt(ms, 5);
        QVERIFY(value >= 0 && value <= 10);
        QCOMPARE(walk.valueAt(ms, 5), value);
        QVERIFY(std::abs(walk.valueAt(ms + 100, 5) - value) < 2); // no leaps
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
        differences +=
            !qFuzzyCompare(otherWalk.valueAt(ms, 5), value) + !qFuzzyCompare(walk.valueAt(ms, 6), value);
    }
    QVERIFY(differences > 4000);
    QVERIFY(highest - lowest > 5); // it gets about
    for (qint64 period = 0; period < 50; ++period) {
        int high = 0;
        for (qint64 ms = 0; ms < 1000; ++ms) {
            high += spikes.valueAt(period * 1000 + ms, 5) > 5;
        }
        QVERIFY2(high >= 99 && high <= 101, QByteArray::number(high));
    }
}

void TestProviders::replayFilesPlayAndAreRefused()
{
    QTemporaryDir folder;
    Plant plant;
    plant.setFolder(folder.path());
    QVERIFY(!written(folder, "time_ms,value\n# morning\n100,1\n\n300, 2.5 \r\n600,3\n").isEmpty());
    Generator replay = generator(Generator::CsvReplay);
    replay.csvFile = QStringLiteral("replay.csv");
    QVERIFY(plant.tags()->add(tag("flow", TagTypeDouble, 0, replay)));
    QCOMPARE(plant.tags()->rowProblem(0), QString());
    QVariantList played;
    for (int i = 0; i < 10; ++i) {
        played.append(plant.tags()->value(QStringLiteral("flow")));
        plant.clock()->advance(100);
    }
    // The last value holds as long as the one before it; the loop is 900 ms long.
    QCOMPARE(played, (QVariantList{1.0, 1.0, 1.0, 2.5, 2.5, 2.5, 3.0, 3.0, 3.0, 1.0}));

    const struct
    {
        QByteArray content;
        TagType type;
        const char *reason;
    } faulty[] = {{"1,2\n1,3\n", TagTypeDouble, "line 2: the time 1 does not come after 1"},
                  {"x,2\n", TagTypeDouble, "line 1: \"x\" is no time in milliseconds"},
                  {"5\n", TagTypeDouble, "line 1: no comma between time and value"},
                  {"0,1\n5,\n", TagTypeDouble, "line 2: the value is missing"},
                  {"# nothing\n", TagTypeDouble, "line 1: no line with a time and a value"},
                  {"0,1\n5,300\n", TagTypeByte, "line 2: \"300\" is out of the range of byte, -128 to 127"}};
    for (const auto &fault : faulty) {
        QVERIFY(!written(folder, fault.content).isEmpty());
        QVERIFY(plant.tags()->edit(QStringLiteral("flow"), tag("flow", TagTypeDouble, 7)));
        QVERIFY(plant.tags()->edit(QStringLiteral("flow"), tag("flow", fault.type, 7, replay)));
        const QString problem = plant.tags()->rowProblem(0);
        QVERIFY2(problem.contains(QLatin1String(fault.reason))
                     && problem.contains(QLatin1String("replay.csv"))
                     && problem.startsWith(QLatin1String("Tag \"flow\"")),
                 problem.toUtf8());
        plant.clock()->advance(1000);
        QCOMPARE(plant.tags()->value(QStringLiteral("flow")).toInt(), 7);
    }
    ReplayFile file;
    QString problem;
    for (const QString &path : {folder.path(), folder.filePath(QStringLiteral("none.csv")), QString()}) {
        QVERIFY(!file.read(path, &problem));
        QVERIFY(!problem.isEmpty() && problem.contains(path));
    }
}

void TestProviders::writtenValuesConvert_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("expected"); // invalid: refused
    const auto row = [](const char *name, TagType type, const QVariant &value, const QVariant &expected) {
        QTest::newRow(name) << static_cast<int>(type) << value << expected;
    };
    const QVariant refused;
    const auto text = [](const char *value) { return QVariant(QString::fromUtf8(value)); };
    row("byte at its end", TagTypeByte, -128, -128);
    row("byte beyond", TagTypeByte, 128, refused);
    row("ubyte below", TagTypeUByte, -1, refused);
    row("ushort at its end", TagTypeUShort, text("65535"), 65535);
    row("short beyond", TagTypeShort, 32767.5, refused);
    row("int rounds", TagTypeInt, 2.5, 3);
    row("int of a huge number", TagTypeInt, 1e300, refused);
    row("int of not a number", TagTypeInt, qQNaN(), refused);
    row("int of a text", TagTypeInt, text("twelve"), refused);
    row("uint at its end", TagTypeUInt, 4294967295.0, 4294967295U);
    row("uint64 at its end", TagTypeUInt64, text("18446744073709551615"),
        std::numeric_limits<quint64>::max());
    row("uint64 beyond", TagTypeUInt64, 18446744073709551616.0, refused);
    row("int64 keeps every digit", TagTypeInt64, text("-9223372036854775807"), -9223372036854775807LL);
    row("int64 of an unsigned one", TagTypeInt64, 4294967295U, 4294967295LL);
    row("int of a float", TagTypeInt, 2.5F, 3);
    row("uint64 of a real one beyond 63 bits", TagTypeUInt64, 9223372036854775808.0, 9223372036854775808ULL);
    row("double of an unsigned one beyond 63 bits", TagTypeDouble, 9223372036854775808ULL,
        9223372036854775808.0);
    row("int64 beyond", TagTypeInt64, std::numeric_limits<quint64>::max(), refused);
    row("float rounds to a float", TagTypeFloat, 0.1, 0.1F);
    row("float beyond", TagTypeFloat, 1e39, refused);
    row("double of a comma", TagTypeDouble, text("1,5"), 1.5);
    row("bool of a number", TagTypeBool, 0.1, true);
    row("bool of a word", TagTypeBool, text("Off"), false);
    row("bool of another word", TagTypeBool, text("abc"), refused);
    row("string of a number", TagTypeString, 0.1, text("0.1"));
    row("string of a list", TagTypeString, QVariantList{1}, refused);
    row("no value", TagTypeDouble, QVariant(), refused);
    row("array of a text", TagTypeArrayUByte, text("[1, 2;255]"), QVariantList{1, 2, 255});
    row("array with a wrong element", TagTypeArrayUByte, text("1,256"), refused);
    row("array of one value", TagTypeArrayBool, 1, QVariantList{true});
}

void TestProviders::writtenValuesConvert()
{
    QFETCH(int, type);
    QFETCH(QVariant, value);
    QFETCH(QVariant, expected);
    Plant plant;
    QVERIFY(plant.tags()->add(tag("t", static_cast<TagType>(type))));
    const QVariant before = plant.tags()->value(QStringLiteral("t"));
    QString problem;
    QCOMPARE(plant.tags()->setValue(QStringLiteral("t"), value, &problem), expected.isValid());
    QCOMPARE(problem.startsWith(QLatin1String("Tag \"t\": ")), !expected.isValid());
    const QVariant after = plant.tags()->value(QStringLiteral("t"));
    QVERIFY2(TagValues::areSame(after, expected.isValid() ? expected : before),
             qPrintable(TagValues::text(after)));
    // What is shown can be entered, what is stored can be read.
    QVariant again;
    QVERIFY(TagValues::convert(static_cast<TagType>(type), TagValues::text(after), again, nullptr));
    QVERIFY(TagValues::areSame(again, after));
    QVERIFY(TagValues::fromJson(static_cast<TagType>(type), TagValues::toJson(after), again, nullptr));
    QVERIFY(TagValues::areSame(again, after));
}

void TestProviders::tagsAreReadAndWritten()
{
    Plant plant;
    TagTable *tags = plant.tags();
    QSignalSpy changes(tags, &TagTable::valueChanged);
    QSignalSpy unknown(tags, &TagTable::lastUnknownAsked);
    QSignalSpy edits(&plant, &Providers::edited);
    QVERIFY(tags->add(tag("count", TagTypeUByte, 250, generator(Generator::Counter, 1000, 250, 260))));
    QVERIFY(tags->add(
        tag("bars", TagTypeArrayInt, QVariantList{0, 0}, generator(Generator::Ramp, 1000, 0, 100))));
    QVERIFY(tags->add(tag("speed", TagTypeInt, 5)));
    QCOMPARE(tags->value(QStringLiteral("bars")).toList(), (QVariantList{0, 50}));
    QCOMPARE(edits.count(), 3);

    // A generator keeps to the type's range, and writes only when its value changes.
    plant.clock()->advance(7000);
    QCOMPARE(tags->value(QStringLiteral("count")), QVariant(255));
    QVERIFY(tags->setValue(QStringLiteral("count"), 3));
    plant.clock()->advance(900);
    QCOMPARE(tags->value(QStringLiteral("count")), QVariant(3));

    // Equal writes are no change; an unknown tag has no value and refuses writes; so does a tag that is not there.
    changes.clear();
    QVERIFY(tags->setValue(QStringLiteral("speed"), 5.2));
    QCOMPARE(changes.count(), 0);
    TagDefinition speed = tags->definition(QStringLiteral("speed"));
    speed.isKnown = false;
    QVERIFY(tags->edit(speed.name, speed));
    QCOMPARE(changes.takeFirst(), (QVariantList{QStringLiteral("speed"), QVariant()}));
    QVERIFY(!tags->value(QStringLiteral("speed")).isValid());
    QVERIFY(!tags->setValue(QStringLiteral("speed"), 6));
    QCOMPARE(unknown.count(), 0);
    QVERIFY(!tags->value(QStringLiteral("nothing")).isValid());
    QCOMPARE(unknown.count(), 1);
    QVERIFY(!tags->setValue(QStringLiteral("nothing"), 6));

    // Editing: a value that does not fit another type is the initial one; names are unique; a name is followed.
    TrendDefinition trend;
    trend.name = QStringLiteral("trend");
    trend.tag = QStringLiteral("speed");
    QVERIFY(plant.trends()->add(trend));
    QVERIFY(tags->edit(QStringLiteral("speed"), tag("text", TagTypeString, 5)));
    QCOMPARE(tags->value(QStringLiteral("text")), QVariant(QStringLiteral("5")));
    QCOMPARE(plant.trends()->definition(trend.name).tag, QStringLiteral("text"));
    TagDefinition text = tags->definition(QStringLiteral("text"));
    text.value = QStringLiteral("abc");
    text.type = TagTypeInt;
    QVERIFY(tags->edit(text.name, text));
    QCOMPARE(tags->value(text.name), QVariant(0));
    QString problem;
    QVERIFY(!tags->edit(text.name, tag("bars", TagTypeInt), &problem));
    QCOMPARE(problem, QStringLiteral("Tag \"bars\": there is a tag of that name"));
    QVERIFY(!tags->add(tag("new", TagTypeInt, 0, generator(Generator::Ramp, 1000, 5, 1)), &problem));
    QCOMPARE(problem, QStringLiteral("Tag \"new\": the minimum 5 is above the maximum 1"));
    QVERIFY(!tags->add(tag(" ", TagTypeInt)));
    QVERIFY(tags->accepts(QStringLiteral("bars"), {TagTypeInt, TagTypeArrayInt}));
    QVERIFY(!tags->accepts(QStringLiteral("bars"), {TagTypeInt}) && !tags->accepts(QStringLiteral("x"), {}));
}

void TestProviders::trendsAnswer()
{
    Plant plant;
    QVERIFY(plant.tags()->add(tag("level", TagTypeInt, 1)));
    TrendDefinition trend;
    trend.name = QStringLiteral("levels");
    trend.tag = QStringLiteral("level");
    trend.interval = 1000;
    QVERIFY(plant.trends()->add(trend));
    plant.clock()->advance(2500);
    QVERIFY(plant.tags()->setValue(QStringLiteral("level"), 2));
    plant.clock()->advance(57500);
    const auto ask = [&](int from, int to, unsigned int count) {
        return plant.trends()->trendValue(trend.name, noon.addSecs(from), noon.addSecs(to), count,
                                          WidgetActionManager::UtcTime);
    };
    QSignalSpy asked(plant.trends(), &TrendTable::asked);
    const QVariantList first = ask(-5, 4, 100).toList();
    QCOMPARE(secondsOf(first), (QVector<qint64>{0, 1, 2, 3, 4})); // the tag has no past before it was added
    QCOMPARE(first.at(2).toMap().value(QStringLiteral("value")), QVariant(1));
    QCOMPARE(first.at(3).toMap().value(QStringLiteral("value")), QVariant(2));
    QCOMPARE(asked.count(), 1);
    QCOMPARE(plant.trends()->presentValue(trend.name), QVariant(2));
    QCOMPARE(plant.trends()->lastQuestion(trend.name)->answered, 5);

    // The count is kept to, on places that stay when the window moves; nothing lies in the future.
    QCOMPARE(secondsOf(ask(0, 59, 4)), (QVector<qint64>{0, 15, 30, 45}));
    QCOMPARE(secondsOf(ask(1, 60, 4)), (QVector<qint64>{15, 30, 45, 60}));
    QCOMPARE(secondsOf(ask(58, 900, 100)), (QVector<qint64>{58, 59, 60}));
    QVERIFY(secondsOf(ask(10, 5, 100)).isEmpty() && secondsOf(ask(0, 60, 0)).isEmpty());
    QVERIFY(ask(10, 5, 100).isValid());
    QVERIFY(!plant.trends()
                 ->trendValue(QStringLiteral("x"), noon, noon, 1, WidgetActionManager::UtcTime)
                 .isValid());
    QCOMPARE(ask(0, 60, std::numeric_limits<unsigned int>::max()).toList().size(), 61);

    // The time format.
    const auto timeOf = [](const QVariant &answer) {
        return answer.toList().value(0).toMap().value(QStringLiteral("time")).toDateTime();
    };
    QCOMPARE(timeOf(ask(3, 4, 1)).timeSpec(), Qt::UTC);
    const QDateTime local = timeOf(plant.trends()->trendValue(trend.name, noon.toLocalTime(), noon.addSecs(1),
                                                              1, WidgetActionManager::LocalTime));
    QCOMPARE(local.timeSpec(), Qt::LocalTime);
    QCOMPARE(local, noon);

    // Faults on purpose.
    trend.hasGaps = true;
    trend.delay = 20000;
    QVERIFY(plant.trends()->edit(trend.name, trend));
    QCOMPARE(secondsOf(ask(12, 60, 100)),
             (QVector<qint64>{12, 13, 14, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 40}));
    trend.hasGaps = false;
    trend.hasTooMany = true;
    QVERIFY(plant.trends()->edit(trend.name, trend));
    QCOMPARE(ask(0, 30, 10).toList().size(), 20);
    trend.answersEmpty = true;
    QVERIFY(plant.trends()->edit(trend.name, trend));
    QVERIFY(ask(0, 30, 10).isValid() && ask(0, 30, 10).toList().isEmpty());

    // A generator has a past of any length; a tag's generator has one from the beginning.
    TrendDefinition ramp;
    ramp.name = QStringLiteral("ramp");
    ramp.source = TrendDefinition::FromGenerator;
    ramp.generator = generator(Generator::Ramp, 100000, 0, 100);
    QVERIFY(plant.trends()->add(ramp));
    const QVariantMap past = plant.trends()
                                 ->trendValue(ramp.name, noon.addSecs(-3600 - 1), noon.addSecs(-3600), 1,
                                              WidgetActionManager::UtcTime)
                                 .toList()
                                 .value(0)
                                 .toMap();
    QCOMPARE(past.value(QStringLiteral("value")).toDouble(), 0.0);
    QString problem;
    ramp.interval = 5;
    QVERIFY(!plant.trends()->edit(ramp.name, ramp, &problem));
    QVERIFY2(problem.startsWith(QLatin1String("Trend \"ramp\": Interval: 5 ms is not between")),
             qPrintable(problem));
}

void TestProviders::alarmsFollowTheirStates()
{
    Plant plant;
    AlarmTable *alarms = plant.alarms();
    QSignalSpy changes(alarms, &AlarmTable::alarmChanged);
    // Acknowledged and reset; the letters are the actions, the digits the states that follow.
    const struct
    {
        bool isAcknowledged;
        bool isReset;
        const char *course;
    } courses[] = {
        {true, true, "r3a4c6a6r3c5x5a6x1"}, {true, false, "r3r3c5r3a4x4c1"}, {true, false, "r3c5a1"},
        {false, false, "r2a2x2c1"},         {false, true, "r2x2c6r2c6x1"},   {true, true, "r3d0r0c0a0x0e1"}};
    for (const auto &course : courses) {
        const QString name = QStringLiteral("a");
        AlarmInfoData data = alarm("a", course.isAcknowledged, course.isReset);
        QVERIFY(alarms->add(data));
        changes.clear();
        int before = AlarmInfo::StateNotTriggered;
        for (const char *step = course.course; *step; step += 2) {
            const int count = changes.count();
            const bool isChanged = *step == 'r'   ? alarms->raise(name)
                                   : *step == 'c' ? alarms->clear(name)
                                   : *step == 'a' ? alarms->acknowledge(name)
                                   : *step == 'x' ? alarms->reset(name)
                                                  : alarms->setDisabled(name, *step == 'd');
            const int after = alarms->definition(name).state;
            QVERIFY2(after == step[1] - '0', step);
            QCOMPARE(isChanged, after != before);
            QCOMPARE(changes.count() - count, isChanged ? 1 : 0);
            before = after;
        }
        QVERIFY(alarms->remove(name));
    }
    QVERIFY(!alarms->raise(QStringLiteral("none")));

    // Raising takes the time and the tag's value; acknowledging keeps them.
    QVERIFY(plant.tags()->add(tag("level", TagTypeInt, 93)));
    AlarmInfoData high = alarm("high", true, false);
    high.tagName = QStringLiteral("level");
    QVERIFY(alarms->add(high));
    plant.clock()->advance(1500);
    QVERIFY(alarms->raise(high.name));
    plant.clock()->advance(1500);
    alarms->acknowledgeAll();
    const AlarmInfo shown = changes.last().first().value<AlarmInfo>();
    QCOMPARE(shown.state(), AlarmInfo::StateTriggeredAcknowledged);
    QCOMPARE(shown.timestamp(), noon.addMSecs(1500));
    QCOMPARE(shown.tagValue(), QVariant(93));
    QCOMPARE(alarms->alarms().size(), 1);
}

void TestProviders::burstsRepeat()
{
    Plant once;
    Plant bitByBit;
    for (Plant *plant : {&once, &bitByBit}) {
        plant->addDefaults();
        plant->alarms()->burst(30);
    }
    QSignalSpy changes(once.alarms(), &AlarmTable::alarmChanged);
    once.clock()->advance(1000);
    for (int i = 0; i < 50; ++i) {
        bitByBit.clock()->advance(20);
    }
    QCOMPARE(changes.count(), 30);
    for (const QString &name : once.alarms()->names()) {
        QCOMPARE(once.alarms()->definition(name).state, bitByBit.alarms()->definition(name).state);
    }
    once.alarms()->burst(0);
    once.clock()->advance(1000);
    QCOMPARE(changes.count(), 30);
}

void TestProviders::stateRoundTrips()
{
    Plant plant;
    plant.addDefaults();
    QVERIFY(plant.tags()->add(tag("exact", TagTypeDouble, 0.1 + 0.2)));
    QVERIFY(plant.tags()->add(tag("large", TagTypeInt64, 9007199254740993LL)));
    QVERIFY(plant.tags()->add(tag("none", TagTypeDouble, qQNaN())));
    QVERIFY(plant.tags()->add(tag("floats", TagTypeArrayFloat, QVariantList{0.1F, -1e-30F})));
    AlarmInfoData full = alarm("full", true, true);
    full.description = QStringLiteral("\u00fcber \"100 %1\"");
    full.groups = QStringList{QStringLiteral("a, b"), QStringLiteral("c")};
    full.customFields = QStringList{QStringLiteral("x")};
    full.timestamp = noon.addMSecs(7);
    full.backgroundColors.insert(AlarmInfo::StateDisabled, QColor(1, 2, 3, 4));
    full.foregroundColors.insert(AlarmInfo::StateTriggered, Qt::red);
    full.tagValue = QVariantList{1, 2.5, QStringLiteral("t")};
    QVERIFY(plant.alarms()->add(full));
    plant.clock()->setSpeed(2.5);
    plant.clock()->advance(4321);
    plant.alarms()->burst(3);

    const QByteArray text = QJsonDocument(plant.toJson()).toJson();
    Providers copy;
    QSignalSpy edits(&copy, &Providers::edited);
    QStringList problems;
    QVERIFY2(copy.fromJson(QJsonDocument::fromJson(text).object(), problems),
             qPrintable(problems.join(QLatin1Char('\n'))));
    QCOMPARE(QJsonDocument(copy.toJson()).toJson(), text);
    QCOMPARE(edits.count(), 0);
    QCOMPARE(copy.tags()->value(QStringLiteral("large")), QVariant(9007199254740993LL));
    QCOMPARE(copy.alarms()->definition(full.name), plant.alarms()->definition(full.name));
    plant.clock()->advance(2000);
    copy.clock()->advance(2000);
    QCOMPARE(copy.toJson(), plant.toJson()); // both go on in the same way

    // A copy that has the state already notices nothing.
    QSignalSpy values(copy.tags(), &TagTable::valueChanged);
    QSignalSpy tagsChanged(copy.tags(), &TagTable::tagsChanged);
    QSignalSpy alarmChanges(copy.alarms(), &AlarmTable::alarmChanged);
    QSignalSpy resets(copy.tags(), &QAbstractItemModel::modelReset);
    QVERIFY(copy.fromJson(copy.toJson(), problems));
    QCOMPARE(values.count() + tagsChanged.count() + alarmChanges.count() + resets.count(), 0);
    // Nothing but the clock is left of an empty state.
    QVERIFY(copy.fromJson(QJsonObject(), problems));
    QCOMPARE(copy.tags()->rowCount() + copy.trends()->rowCount() + copy.alarms()->rowCount(), 0);
}

void TestProviders::undoingLeavesRunningValues()
{
    Plant plant;
    plant.addDefaults();
    const QString message = QStringLiteral("message");
    const QJsonObject before = plant.toJson(Providers::EditsOnly);
    QVERIFY(plant.tags()->edit(message, tag("message", TagTypeString, QStringLiteral("Stopped"))));
    plant.clock()->advance(5000);
    const QVariant level = plant.tags()->value(QStringLiteral("level"));
    const std::size_t samples = plant.tags()->history(QStringLiteral("level"))->samples().size();
    QStringList problems;
    QVERIFY(plant.fromJson(before, problems));
    QCOMPARE(plant.tags()->value(message), QVariant(QStringLiteral("Running")));
    QCOMPARE(plant.tags()->value(QStringLiteral("level")), level);
    QCOMPARE(plant.tags()->history(QStringLiteral("level"))->samples().size(), samples);
    QCOMPARE(plant.clock()->elapsed(), 5000LL);
}

void TestProviders::faultyStateIsRefused_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *name, const char *json, const char *problem) {
        QTest::newRow(name) << QByteArray(json) << QString::fromUtf8(problem);
    };
    row("an entry that does not exist", R"({"tag": []})", "\"tag\": there is no such entry");
    row("no list", R"({"tags": {}})", "\"tags\": not a list");
    row("no name", R"({"tags": [{"type": "int"}]})",
        "tags[0] \"\": \"name\": empty, or longer than 200 characters");
    row("a type that does not exist", R"({"tags": [{"name": "a", "type": "Int"}]})",
        "tags[0] \"a\": \"type\": not one of bool, byte, short");
    row("a value out of range", R"({"tags": [{"name": "b", "type": "byte", "value": 300}]})",
        "tags[0] \"b\": \"value\": 300 is out of the range of byte, -128 to 127");
    row("a name twice", R"({"tags": [{"name": "a"}, {"name": "a"}]})",
        "tags[1] \"a\": \"name\": two tags have this name");
    row("a generator", R"({"tags": [{"name": "a", "generator": {"period": 1.5}}]})",
        "tags[0] \"a\": \"generator\": \"period\": not a whole number");
    row("a trend", R"({"trends": [{"name": "t", "interval": 1}]})",
        "trends[0] \"t\": \"interval\": Interval: 1 ms is not between 100 ms and 3600000 ms");
    row("an alarm's state", R"({"alarms": [{"name": "x", "state": "On"}]})",
        "alarms[0] \"x\": \"state\": not one of StateDisabled");
    row("an alarm's colour", R"({"alarms": [{"name": "x", "backgroundColors": {"StateDisabled": "red"}}]})",
        "alarms[0] \"x\": \"backgroundColors\": StateDisabled has no colour like #ffcc0000");
    row("an alarm's time", R"({"alarms": [{"name": "x", "timestamp": "2024-05-17T09:03:11.123 more"}]})",
        "alarms[0] \"x\": \"timestamp\": \"2024-05-17T09:03:11.123 more\" is no time");
    row("a speed", R"({"clock": {"speed": 1000}})", "clock: \"speed\": not a number from 0.1 to 100");
    row("a clock that is a list", R"({"clock": []})", "\"clock\": not an object");
    row("a clock's seed", R"({"clock": {"seed": -1}})",
        "clock: \"seed\": -1 is not between 0 and 4294967295");
    row("a clock's pause", R"({"clock": {"paused": 1}})", "clock: \"paused\": neither true nor false");
    row("a clock's start", R"({"clock": {"start": "2024-05-17T09:03:11.123Z more"}})",
        "clock: \"start\": \"2024-05-17T09:03:11.123Z more\" is no time like");
    row("a time before the clock's start", R"({"clock": {"elapsed": -1}})",
        "clock: \"elapsed\": not between 0 and");
    row("a negative burst", R"({"burst": -1})", "\"burst\": not between 0 and");
    row("a generator that does not exist", R"({"tags": [{"name": "a", "generator": {"kind": "saw"}}]})",
        "tags[0] \"a\": \"generator\": \"kind\": not one of constant, ramp");
    row("a generator's large period", R"({"tags": [{"name": "a", "generator": {"period": 3000000000}}]})",
        "tags[0] \"a\": \"generator\": \"period\": 3000000000 is too large a number");
    row("a generator's short period", R"({"tags": [{"name": "a", "generator": {"period": 1}}]})",
        "tags[0] \"a\": \"generator\": the period 1 ms is not between");
    row("a generator's minimum", R"({"tags": [{"name": "a", "generator": {"minimum": "low"}}]})",
        "tags[0] \"a\": \"generator\": \"minimum\": not a number");
    row("a generator without a maximum", R"({"tags": [{"name": "a", "generator": {"maximum": "inf"}}]})",
        "tags[0] \"a\": \"generator\": minimum and maximum have to be finite numbers");
    row("an alarm's description", R"({"alarms": [{"name": "x", "description": 5}]})",
        "alarms[0] \"x\": \"description\": not a text");
    row("an alarm's groups", R"({"alarms": [{"name": "x", "groups": "a"}]})",
        "alarms[0] \"x\": \"groups\": not a list of texts");
    row("an alarm's custom fields", R"({"alarms": [{"name": "x", "customFields": ["a", 1]}]})",
        "alarms[0] \"x\": \"customFields\": not a list of texts");
    row("a colour of a state that does not exist",
        R"({"alarms": [{"name": "x", "foregroundColors": {"StateOn": "#112233"}}]})",
        "alarms[0] \"x\": \"foregroundColors\": there is no state StateOn");
    row("an alarm's value without its type", R"({"alarms": [{"name": "x", "tagValue": 5}]})",
        "alarms[0] \"x\": \"tagValue\": not a value with its type");
}

void TestProviders::faultyStateIsRefused()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, problem);
    Plant plant;
    plant.addDefaults();
    const QJsonObject before = plant.toJson();
    const QJsonDocument document = QJsonDocument::fromJson(json);
    QVERIFY(document.isObject());
    QStringList problems;
    QVERIFY(!plant.fromJson(document.object(), problems));
    QCOMPARE(problems.size(), 1);
    QVERIFY2(problems.first().startsWith(problem), qPrintable(problems.first()));
    QCOMPARE(plant.toJson(), before);
}

void TestProviders::unusableDefinitionsAreRefused()
{
    Plant plant;
    plant.addDefaults();
    const QJsonObject before = plant.toJson();
    QStringList problems;
    const auto refuses = [&problems](bool isDone, const QString &problem) {
        problems.append(problem.section(QStringLiteral(": "), 1));
        return !isDone;
    };
    QString problem;
    const auto tagIsRefused = [&](const TagDefinition &definition) {
        return refuses(plant.tags()->add(definition, &problem), problem);
    };
    const auto trendIsRefused = [&](const TrendDefinition &definition) {
        return refuses(plant.trends()->add(definition, &problem), problem);
    };
    const auto alarmIsRefused = [&](const AlarmInfoData &definition) {
        return refuses(plant.alarms()->add(definition, &problem), problem);
    };
    for (const QString &name :
         {QStringLiteral(" "), QString(TagTable::LongestName + 1, QLatin1Char('n')), QStringLiteral("level"),
          QStringLiteral("levelTrend"), QStringLiteral("levelHigh")}) {
        TrendDefinition trend;
        trend.name = name;
        TagDefinition sameName = tag("", TagTypeInt);
        sameName.name = name;
        AlarmInfoData sameAlarm = alarm("", true, true);
        sameAlarm.name = name;
        const bool isTag = name == QLatin1String("level");
        const bool isTrend = name == QLatin1String("levelTrend");
        const bool isAlarm = name == QLatin1String("levelHigh");
        QVERIFY(isTrend || isAlarm || tagIsRefused(sameName));
        QVERIFY(isTag || isAlarm || trendIsRefused(trend));
        QVERIFY(isTag || isTrend || alarmIsRefused(sameAlarm));
    }
    QCOMPARE(problems.count(QStringLiteral("the name is empty")), 3);
    QCOMPARE(problems.count(QStringLiteral("the name is longer than 200 characters")), 3);
    QCOMPARE(problems.filter(QStringLiteral("of that name")).size(), 3);

    problems.clear();
    QVERIFY(tagIsRefused(tag("t", static_cast<TagType>(99))));
    QVERIFY(tagIsRefused(tag("t", TagTypeInt, 0, generator(static_cast<Generator::Kind>(99)))));
    TrendDefinition trend;
    trend.name = QStringLiteral("t");
    trend.source = static_cast<TrendDefinition::Source>(9);
    QVERIFY(trendIsRefused(trend));
    trend.source = TrendDefinition::FromTag;
    trend.delay = -1;
    QVERIFY(trendIsRefused(trend));
    AlarmInfoData wrong = alarm("a", true, true);
    wrong.state = static_cast<AlarmInfo::State>(7);
    QVERIFY(alarmIsRefused(wrong));
    wrong.state = AlarmInfo::StateDisabled;
    wrong.severity = static_cast<AlarmInfo::Severity>(99);
    QVERIFY(alarmIsRefused(wrong));
    QCOMPARE(problems.filter(QRegularExpression(QStringLiteral("there is no .* 9?[79]$"))).size(), 5);

    // Nor is changed what is not there.
    const QString none = QStringLiteral("none");
    QVERIFY(!plant.tags()->edit(none, tag("t", TagTypeInt), &problem));
    QCOMPARE(problem, QStringLiteral("Tag \"none\": there is no such tag"));
    QVERIFY(!plant.alarms()->edit(none, alarm("a", true, true), &problem));
    QCOMPARE(problem, QStringLiteral("Alarm \"none\": there is no such alarm"));
    QVERIFY(!plant.tags()->remove(none) && !plant.trends()->remove(none) && !plant.alarms()->remove(none));
    QVERIFY(plant.tags()->duplicate(none).isEmpty() && plant.alarms()->duplicate(none).isEmpty());
    QVERIFY(!plant.tags()->pastValue(none, 0).isValid() && !plant.trends()->presentValue(none).isValid());
    QCOMPARE(plant.toJson(), before);
}

void TestProviders::manyWritesReachViewsSeldom()
{
    Plant plant;
    QVERIFY(plant.tags()->add(tag("a", TagTypeInt, 0)));
    QSignalSpy values(plant.tags(), &TagTable::valueChanged);
    QSignalSpy views(plant.tags(), &QAbstractItemModel::dataChanged);
    QElapsedTimer timer;
    timer.start();
    int written = 0;
    while (timer.elapsed() < 500) {
        for (int i = 0; i < 100; ++i) {
            QVERIFY(plant.tags()->setValue(QStringLiteral("a"), ++written));
        }
        QTest::qWait(1);
    }
    QTRY_COMPARE(plant.tags()->index(0, TagTable::ValueColumn).data().toInt(), written);
    QCOMPARE(values.count(), written);
    QVERIFY2(views.count() > 1 && views.count() <= 12, QByteArray::number(views.count()));
}

KORA_TEST_MAIN(TestProviders)

#include "tst_providers.moc"
