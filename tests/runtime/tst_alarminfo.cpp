// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/alarminfo.h>
#include <support/testmain.h>

using KORA::AlarmInfo;
using KORA::AlarmInfoData;

namespace {

QDateTime someTime()
{
    return QDateTime(QDate(2024, 5, 17), QTime(9, 3, 11, 123), Qt::UTC);
}

AlarmInfoData fullData()
{
    AlarmInfoData data;
    data.name = QStringLiteral("Overheat");
    data.description = QStringLiteral("Boiler too hot");
    data.severity = AlarmInfo::SeverityHigh;
    data.state = AlarmInfo::StateTriggered;
    data.groups = QStringList{QStringLiteral("boilers"), QStringLiteral("hall 2")};
    data.customFields = QStringList{QStringLiteral("call 112")};
    data.timestamp = someTime();
    data.backgroundColors = {{AlarmInfo::StateTriggered, Qt::red}, {AlarmInfo::StateDisabled, Qt::gray}};
    data.foregroundColors = {{AlarmInfo::StateTriggered, Qt::white}};
    data.acknowledgeEnabled = true;
    data.resetEnabled = true;
    data.tagName = QStringLiteral("boiler.temperature");
    data.tagValue = 412;
    return data;
}

template<typename T>
QString debugText(const T &value)
{
    QString text;
    QDebug(&text).noquote().nospace() << value;
    return text;
}

} // namespace

class TestAlarmInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateTellsWhatIsTrue_data();
    void stateTellsWhatIsTrue();
    void everyFieldOfTheDataCounts_data();
    void everyFieldOfTheDataCounts();
    void validityCountsToo();
    void copiesAreIndependent();
    void coloursComeFromExactlyTheState();
    void emptyMapGivesAValidDefault();
    void mapFillsEveryField();
    void valuesConvertLeniently_data();
    void valuesConvertLeniently();
    void equalAlarmsInVariantsAreEqual();
    void debugForm();
    void debugTimestamps_data();
    void debugTimestamps();
};

void TestAlarmInfo::stateTellsWhatIsTrue_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("triggered");
    QTest::addColumn<bool>("acknowledged");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("disabled") << 0 << false << false << false;
    QTest::newRow("not triggered") << 1 << false << false << true;
    QTest::newRow("triggered") << 2 << true << false << true;
    QTest::newRow("triggered, not acknowledged") << 3 << true << false << true;
    QTest::newRow("triggered, acknowledged") << 4 << true << true << true;
    QTest::newRow("gone, not acknowledged") << 5 << false << false << true;
    QTest::newRow("gone, acknowledged") << 6 << false << true << true;
    QTest::newRow("a number above the states") << 7 << false << false << true;
    QTest::newRow("a negative number") << -1 << false << false << true;
}

void TestAlarmInfo::stateTellsWhatIsTrue()
{
    QFETCH(const int, state);
    AlarmInfoData data;
    data.state = static_cast<AlarmInfo::State>(state);
    const AlarmInfo alarm(data);
    QCOMPARE(static_cast<int>(alarm.state()), state);
    QTEST(alarm.triggered(), "triggered");
    QTEST(alarm.acknowledged(), "acknowledged");
    QTEST(alarm.enabled(), "enabled");
}

void TestAlarmInfo::everyFieldOfTheDataCounts_data()
{
    QTest::addColumn<QVariantMap>("difference");
    const QVariantMap differences{
        {QStringLiteral("name"), QStringLiteral("x")},
        {QStringLiteral("description"), QStringLiteral("x")},
        {QStringLiteral("severity"), 6},
        {QStringLiteral("state"), 6},
        {QStringLiteral("groups"), QStringList{QStringLiteral("x")}},
        {QStringLiteral("customFields"), QStringList{QStringLiteral("x")}},
        {QStringLiteral("timestamp"), someTime().addMSecs(1)},
        {QStringLiteral("backgroundColor"),
         QVariant::fromValue(AlarmInfo::StateColors{{AlarmInfo::StateTriggered, Qt::blue}})},
        {QStringLiteral("foregroundColor"),
         QVariant::fromValue(AlarmInfo::StateColors{{AlarmInfo::StateDisabled, Qt::white}})},
        {QStringLiteral("acknowledgeEnabled"), true},
        {QStringLiteral("blinkEnabled"), true},
        {QStringLiteral("resetEnabled"), true},
        {QStringLiteral("tagName"), QStringLiteral("x")},
        {QStringLiteral("tagValue"), QStringLiteral("x")},
    };
    for (auto i = differences.cbegin(); i != differences.cend(); ++i) {
        QTest::addRow("%s", qPrintable(i.key())) << QVariantMap{{i.key(), i.value()}};
    }
}

void TestAlarmInfo::everyFieldOfTheDataCounts()
{
    QFETCH(const QVariantMap, difference);
    const AlarmInfo plain = AlarmInfo::createAlarmInfo({});
    const AlarmInfo other = AlarmInfo::createAlarmInfo(difference);
    QVERIFY(plain != other);
    QVERIFY(other == AlarmInfo::createAlarmInfo(difference));
}

void TestAlarmInfo::validityCountsToo()
{
    QVERIFY(AlarmInfo() == AlarmInfo());
    QVERIFY(!AlarmInfo().isValid());
    QVERIFY(AlarmInfo(AlarmInfoData()).isValid());
    QVERIFY(AlarmInfo() != AlarmInfo(AlarmInfoData()));
}

void TestAlarmInfo::copiesAreIndependent()
{
    const AlarmInfo full(fullData());
    AlarmInfo copy(full);
    AlarmInfo assigned;
    assigned = copy;
    copy = AlarmInfo();
    QVERIFY(!copy.isValid());
    QVERIFY(copy.name().isEmpty());
    QVERIFY(assigned == full);

    AlarmInfo &self = assigned;
    assigned = self;
    QVERIFY(assigned == full);
}

void TestAlarmInfo::coloursComeFromExactlyTheState()
{
    const AlarmInfo alarm(fullData());
    QCOMPARE(alarm.currentBackgroundColor(), QColor(Qt::red));
    QCOMPARE(alarm.currentForegroundColor(), QColor(Qt::white));
    QCOMPARE(alarm.backgroundColor(AlarmInfo::StateDisabled), QColor(Qt::gray));
    QVERIFY(!alarm.foregroundColor(AlarmInfo::StateDisabled).isValid());

    AlarmInfoData data = fullData();
    data.state = AlarmInfo::StateTriggeredAcknowledged;
    QVERIFY(!AlarmInfo(data).currentBackgroundColor().isValid());
    QVERIFY(!AlarmInfo(data).currentForegroundColor().isValid());
    QCOMPARE(AlarmInfo(data).backgroundColors().size(), 2);
}

void TestAlarmInfo::emptyMapGivesAValidDefault()
{
    const AlarmInfo alarm = AlarmInfo::createAlarmInfo({{QStringLiteral("Name"), QStringLiteral("case")}});
    QVERIFY(alarm == AlarmInfo(AlarmInfoData()));
    QVERIFY(alarm.isValid());
    QCOMPARE(alarm.state(), AlarmInfo::StateNotTriggered);
    QCOMPARE(alarm.severity(), AlarmInfo::SeverityNotImportant);
    QVERIFY(alarm.enabled());
    QVERIFY(!alarm.timestamp().isValid());
    QVERIFY(!alarm.tagValue().isValid());
}

void TestAlarmInfo::mapFillsEveryField()
{
    const AlarmInfoData data = fullData();
    const AlarmInfo alarm = AlarmInfo::createAlarmInfo({
        {QStringLiteral("name"), data.name},
        {QStringLiteral("description"), data.description},
        {QStringLiteral("state"), QVariant::fromValue(data.state)},
        {QStringLiteral("timestamp"), data.timestamp},
        {QStringLiteral("groups"), data.groups},
        {QStringLiteral("customFields"), data.customFields},
        {QStringLiteral("backgroundColor"), QVariant::fromValue(data.backgroundColors)},
        {QStringLiteral("foregroundColor"), QVariant::fromValue(data.foregroundColors)},
        {QStringLiteral("acknowledgeEnabled"), QStringLiteral("true")},
        {QStringLiteral("blinkEnabled"), 0},
        {QStringLiteral("resetEnabled"), 1},
        {QStringLiteral("tagName"), data.tagName},
        {QStringLiteral("tagValue"), data.tagValue},
        {QStringLiteral("severity"), QVariant::fromValue(data.severity)},
        {QStringLiteral("unknown"), 1},
    });
    QVERIFY(alarm == AlarmInfo(data));
}

void TestAlarmInfo::valuesConvertLeniently_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("expected"); // a part of the debug form
    const QString state = QStringLiteral("state");
    const QString severity = QStringLiteral("severity");
    QTest::newRow("a state as number")
        << state << QVariant(4) << QStringLiteral("StateTriggeredAcknowledged,triggered=true,ack");
    QTest::newRow("a state that is no state is the disabled one")
        << state << QVariant(QStringLiteral("hot")) << QStringLiteral("StateDisabled,triggered=false");
    QTest::newRow("a state that is a list is the disabled one")
        << state << QVariant(QStringList{QStringLiteral("2")}) << QStringLiteral("StateDisabled,trig");
    QTest::newRow("an invalid state is the disabled one")
        << state << QVariant() << QStringLiteral("StateDisabled,trig");
    QTest::newRow("a severity as number") << severity << QVariant(6) << QStringLiteral("SeverityCritical,");
    QTest::newRow("a severity that is no severity")
        << severity << QVariant(QStringLiteral("bad")) << QStringLiteral("SeverityNotImportant,");
    QTest::newRow("a time as ISO text")
        << QStringLiteral("timestamp") << QVariant(QStringLiteral("2024-05-17T09:03:11Z"))
        << QStringLiteral(",timestamp=2024-05-17T09:03:11.000Z +0,");
    QTest::newRow("a time that is no time") << QStringLiteral("timestamp") << QVariant(QStringLiteral("noon"))
                                            << QStringLiteral(",timestamp= +0,");
    QTest::newRow("a group that is one text")
        << QStringLiteral("groups") << QVariant(QStringLiteral("one")) << QStringLiteral(",groups=(one),");
    QTest::newRow("colours that are no colours")
        << QStringLiteral("backgroundColor") << QVariant(7) << QStringLiteral(",backgroundColor=QMap(),");
    QTest::newRow("a tag value of no type")
        << QStringLiteral("tagValue") << QVariant() << QStringLiteral(",tagValue=QVariant(Invalid))");
}

void TestAlarmInfo::valuesConvertLeniently()
{
    QFETCH(const QString, key);
    QFETCH(const QVariant, value);
    QFETCH(const QString, expected);
    const AlarmInfo alarm = AlarmInfo::createAlarmInfo({{key, value}});
    QVERIFY(alarm.isValid());
    QVERIFY2(debugText(alarm).contains(expected), qPrintable(debugText(alarm)));
}

// Without a comparison function of ours Qt compares such maps by address.
void TestAlarmInfo::equalAlarmsInVariantsAreEqual()
{
    const auto colours = [](const QColor &colour) {
        return QVariant::fromValue(AlarmInfo::StateColors{{AlarmInfo::StateTriggered, colour}});
    };
    QVERIFY(colours(Qt::red) == colours(Qt::red));
    QVERIFY(colours(Qt::red) != colours(Qt::blue));

    AlarmInfoData one;
    AlarmInfoData other;
    one.tagValue = colours(Qt::red);
    other.tagValue = colours(Qt::red);
    QVERIFY(AlarmInfo(one) == AlarmInfo(other));
}

void TestAlarmInfo::debugForm()
{
    const QString red = debugText(QColor(Qt::red));
    const QString white = debugText(QColor(Qt::white));
    const QString gray = debugText(QColor(Qt::gray));
    const QString triggered = debugText(AlarmInfo::StateTriggered);
    const QString disabled = debugText(AlarmInfo::StateDisabled);
    QVERIFY(triggered.endsWith(QStringLiteral("StateTriggered")));

    // The custom fields stand under the label of the groups.
    const QStringList parts{
        QStringLiteral("KORA::AlarmInfo(isValid=true,name=Overheat,description=Boiler too hot"),
        QStringLiteral("severity=") + debugText(AlarmInfo::SeverityHigh),
        QStringLiteral("groups=(boilers, hall 2),groups=(call 112)"),
        QStringLiteral("state=") + triggered,
        QStringLiteral("triggered=true,acknowledged=false,enabled=true"),
        QStringLiteral("timestamp=2024-05-17T09:03:11.123Z +0"),
        QStringLiteral("currentBackgroundColor=") + red,
        QStringLiteral("currentForegroundColor=") + white,
        QStringLiteral("backgroundColor=QMap((%1, %2)(%3, %4))").arg(disabled, gray, triggered, red),
        QStringLiteral("foregroundColor=QMap((%1, %2))").arg(triggered, white),
        QStringLiteral("acknowledgeEnabled=true,blinkEnabled=false,resetEnabled=true"),
        QStringLiteral("tagName=boiler.temperature,tagValue=QVariant(int, 412))"),
    };
    const AlarmInfo alarm(fullData());
    QCOMPARE(debugText(alarm), parts.join(QLatin1Char(',')));
    QCOMPARE(debugText(&alarm), debugText(alarm));

    QString text;
    QDebug(&text) << alarm << 1 << 2;
    QVERIFY2(text.contains(QStringLiteral("name=\"Overheat\",")), qPrintable(text));
    QVERIFY2(text.endsWith(QStringLiteral(") 1 2 ")) || text.endsWith(QStringLiteral(") 1 2")),
             qPrintable(text));
}

void TestAlarmInfo::debugTimestamps_data()
{
    QTest::addColumn<QDateTime>("timestamp");
    QTest::addColumn<QString>("expected");
    const QDate date(2024, 5, 17);
    const QTime time(9, 3, 11, 5);
    QTest::newRow("none") << QDateTime() << QStringLiteral(" +0");
    QTest::newRow("UTC") << QDateTime(date, time, Qt::UTC) << QStringLiteral("2024-05-17T09:03:11.005Z +0");
    QTest::newRow("an hour east") << QDateTime(date, time, Qt::OffsetFromUTC, 3600)
                                  << QStringLiteral("2024-05-17T09:03:11.005+01:00 +3600");
    QTest::newRow("an hour west") << QDateTime(date, time, Qt::OffsetFromUTC, -3600)
                                  << QStringLiteral("2024-05-17T09:03:11.005-01:00 -3600");
}

void TestAlarmInfo::debugTimestamps()
{
    QFETCH(const QDateTime, timestamp);
    QFETCH(const QString, expected);
    AlarmInfoData data;
    data.timestamp = timestamp;
    const QString text = debugText(AlarmInfo(data));
    QVERIFY2(text.contains(QStringLiteral(",timestamp=%1,").arg(expected)), qPrintable(text));
}

KORA_TEST_MAIN(TestAlarmInfo)

#include "tst_alarminfo.moc"
