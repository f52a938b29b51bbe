// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QRandomGenerator>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtTest/QSignalSpy>

#include <support/logrecorder.h>
#include <support/testmain.h>

#include "recording.h"

using namespace KORA;
using INTERNAL::FieldInfo;

Q_DECLARE_METATYPE(KORA::INTERNAL::FieldType)

namespace {

using StringMap = QMap<int, QString>;

FieldInfo field(INTERNAL::FieldType type)
{
    return FieldInfo(true, true, false, type, QMetaType::UnknownType);
}

QMap<QString, FieldInfo> fieldTable()
{
    return {
        {QStringLiteral("speed"), field(INTERNAL::FieldTypeInteger)},
        {QStringLiteral("level"), field(INTERNAL::FieldTypeDouble)},
        {QStringLiteral("texts"), field(INTERNAL::FieldTypeStringMap)},
        {QStringLiteral("names"), field(INTERNAL::FieldTypeStringList)},
        {QStringLiteral("on"), field(INTERNAL::FieldTypeBool)},
        {QStringLiteral("mode"), field(INTERNAL::FieldTypeOption)},
        {QStringLiteral("ink"), field(INTERNAL::FieldTypeColor)},
        {QStringLiteral("face"), field(INTERNAL::FieldTypeFont)},
        {QStringLiteral("picture"), field(INTERNAL::FieldTypeImage)},
        {QStringLiteral("source"), field(INTERNAL::FieldTypeTag)},
        {QStringLiteral("nothing"), field(INTERNAL::FieldTypeUndefined)},
        {QStringLiteral("label"),
         FieldInfo(false, true, false, INTERNAL::FieldTypeString, QMetaType::UnknownType)},
        {QStringLiteral("label.font"),
         FieldInfo(false, true, true, INTERNAL::FieldTypeString, QMetaType::QFont)},
        {QStringLiteral("secret"),
         FieldInfo(true, false, false, INTERNAL::FieldTypeString, QMetaType::UnknownType)},
    };
}

const QString speed = QStringLiteral("speed");

QString fieldChangeText(const QString &fieldId, const QString &value, const QString &oldValue)
{
    return QStringLiteral(
               "KORA::FieldIsChangedEvent(fieldId=\"%1\",value=QVariant(%2),oldValue=QVariant(%3))")
        .arg(fieldId, value, oldValue);
}

QStringList lines(const QStringList &receivers, const QString &handler)
{
    QStringList expected;
    for (const QString &receiver : receivers) {
        expected << receiver + QStringLiteral(".koraEvent") << receiver + QLatin1Char('.') + handler;
    }
    return expected;
}

const QStringList allReceivers{QStringLiteral("widget"), QStringLiteral("item1"), QStringLiteral("item2"),
                               QStringLiteral("item3")};

/// One of the deliveries to a widget and its items.
struct Delivery
{
    const char *handler;
    void (*start)(WidgetPrivate *priv);
};

const Delivery deliveries[] = {
    {"initEvent", [](WidgetPrivate *priv) { priv->init(); }},
    {"deinitEvent", [](WidgetPrivate *priv) { priv->deinit(); }},
    {"fieldIsChangedEvent", [](WidgetPrivate *priv) { priv->setFieldValue(speed, 5, true, true); }},
    {"alarmStatusIsChangedEvent",
     [](WidgetPrivate *priv) {
         priv->alarmEvent(AlarmInfo::createAlarmInfo({{QStringLiteral("name"), QStringLiteral("Overheat")}}));
     }},
};

} // namespace

class TestWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesAreAnnounced_data();
    void writesAreAnnounced();
    void valuesConvertToTheFieldsKind_data();
    void valuesConvertToTheFieldsKind();
    void equalValuesAreNoChange_data();
    void equalValuesAreNoChange();
    void changeReachesWidgetThenItems();
    void invalidImageIsAValue();
    void refusedAccessIsSilentButInTheTestBench_data();
    void refusedAccessIsSilentButInTheTestBench();
    void hostReadsPastTheFieldTable();
    void hostWritesPastTheEnablement();
    void widgetIsToldBeforeItsItems();
    void startAndStopCountOnce();
    void valuesOutliveAStop();
    void alarmsAreNotFiltered();
    void grabbedEventsReachNoHandler_data();
    void grabbedEventsReachNoHandler();
    void deletedItemsLeaveTheList();
    void whatIsGoneGetsNothingMore_data();
    void whatIsGoneGetsNothingMore();
    void hostMayDeleteTheWidgetOnASignal();
    void writtenIdAndValueMayGoDuringTheSignal();
    void writesNestInsideADelivery();
    void itemsMayBeMadeDuringADelivery();
    void anySequenceOfCallsFromHandlers();
    void widgetOutlivesItsActionManager();
};

void TestWidget::writesAreAnnounced_data()
{
    QTest::addColumn<bool>("fromHost");
    QTest::addColumn<bool>("sendEvent");
    QTest::addColumn<bool>("isFirst");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("signalled");
    QTest::addColumn<QString>("event");
    const QString changed = fieldChangeText(speed, QStringLiteral("int, 2"), QStringLiteral("int, 1"));
    const QString first = fieldChangeText(speed, QStringLiteral("int, 2"), QStringLiteral("Invalid"));
    QTest::newRow("plugin, other value, event wanted") << false << true << false << 2 << true << changed;
    QTest::newRow("plugin, other value, no event wanted")
        << false << false << false << 2 << true << QString();
    QTest::newRow("plugin, same value, event wanted") << false << true << false << 1 << true << QString();
    QTest::newRow("plugin, same value, no event wanted") << false << false << false << 1 << true << QString();
    QTest::newRow("plugin, first value, event wanted") << false << true << true << 2 << true << first;
    QTest::newRow("host, other value, event wanted") << true << true << false << 2 << false << changed;
    QTest::newRow("host, other value, no event wanted") << true << false << false << 2 << false << QString();
    QTest::newRow("host, same value, event wanted") << true << true << false << 1 << false << QString();
    QTest::newRow("host, same value, no event wanted") << true << false << false << 1 << false << QString();
    QTest::newRow("host, first value, event wanted") << true << true << true << 2 << false << first;
}

void TestWidget::writesAreAnnounced()
{
    QFETCH(const bool, fromHost);
    QFETCH(const bool, sendEvent);
    QFETCH(const bool, isFirst);
    QFETCH(const int, value);
    QFETCH(const bool, signalled);
    QFETCH(const QString, event);
    const Panel panel(0, fieldTable());
    WidgetPrivate *priv = panel.widget->priv();
    if (!isFirst) {
        priv->setFieldValue(speed, 1, true, false);
        QVERIFY(panel.journal->lines.isEmpty());
    }
    QSignalSpy spy(priv, &WidgetPrivate::fieldIsChanged);
    priv->setFieldValue(speed, QString::number(value), fromHost, sendEvent);

    QCOMPARE(spy.count(), signalled ? 1 : 0);
    if (signalled) {
        QCOMPARE(spy.first(), (QVariantList{speed, QVariant::fromValue(QVariant(value))}));
    }
    QCOMPARE(panel.journal->texts.mid(1).join(QString()), event);
    QCOMPARE(panel.widget->getFieldValue(speed), QVariant(value));
}

void TestWidget::valuesConvertToTheFieldsKind_data()
{
    QTest::addColumn<QString>("fieldId");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("stored"); // a null pointer: the write is refused
    const QVariant refused = QVariant::fromValue(static_cast<void *>(nullptr));
    const QVariant map = QVariant::fromValue(StringMap{{3, QStringLiteral("three")}});
    QTest::newRow("text to integer") << speed << QVariant(QStringLiteral("12")) << QVariant(12);
    QTest::newRow("word to integer") << speed << QVariant(QStringLiteral("fast")) << refused;
    QTest::newRow("text beyond int") << speed << QVariant(QStringLiteral("99999999999")) << refused;
    QTest::newRow("number beyond int") << speed << QVariant(Q_INT64_C(4294967297)) << refused;
    QTest::newRow("double beyond int") << speed << QVariant(1e300) << refused;
    QTest::newRow("smallest int") << speed << QVariant(-2147483648.0) << QVariant(INT_MIN);
    QTest::newRow("option index beyond int") << QStringLiteral("mode") << QVariant(2147483648.0) << refused;
    QTest::newRow("integer to double") << QStringLiteral("level") << QVariant(3) << QVariant(3.0);
    QTest::newRow("text to bool") << QStringLiteral("on") << QVariant(QStringLiteral("false"))
                                  << QVariant(false);
    QTest::newRow("name to colour") << QStringLiteral("ink") << QVariant(QStringLiteral("#102030"))
                                    << QVariant(QColor(0x10, 0x20, 0x30));
    QTest::newRow("list to list") << QStringLiteral("names") << QVariant(QVariantList{1, 2})
                                  << QVariant(QStringList{QStringLiteral("1"), QStringLiteral("2")});
    QTest::newRow("map to map") << QStringLiteral("texts") << map << map;
    QTest::newRow("text to map") << QStringLiteral("texts") << QVariant(QStringLiteral("three")) << refused;
    QTest::newRow("number to image") << QStringLiteral("picture") << QVariant(5)
                                     << QVariant(QStringLiteral("5"));
    QTest::newRow("anything to tag") << QStringLiteral("source") << map << map;
    QTest::newRow("anything to undefined") << QStringLiteral("nothing") << QVariant(1) << refused;
    QTest::newRow("a font told along")
        << QStringLiteral("label.font") << QVariant(QFont()) << QVariant(QFont());
    QTest::newRow("a number as font told along") << QStringLiteral("label.font") << QVariant(1.5) << refused;
}

void TestWidget::valuesConvertToTheFieldsKind()
{
    QFETCH(const QString, fieldId);
    QFETCH(const QVariant, value);
    QFETCH(const QVariant, stored);
    const Panel panel(0, fieldTable());
    WidgetPrivate *priv = panel.widget->priv();
    QSignalSpy spy(priv, &WidgetPrivate::fieldIsChanged);
    priv->setFieldValue(fieldId, value, true, true);
    const QVariant result = priv->getFieldValue(fieldId, true);
    if (stored.userType() == QMetaType::VoidStar) {
        QVERIFY2(!result.isValid(), result.typeName());
        QVERIFY(panel.journal->lines.isEmpty());
        return;
    }
    QCOMPARE(result, stored);
    QCOMPARE(result.userType(), stored.userType());
}

void TestWidget::equalValuesAreNoChange_data()
{
    QTest::addColumn<QString>("fieldId");
    QTest::addColumn<QVariant>("first");
    QTest::addColumn<QVariant>("second");
    QTest::addColumn<int>("events");
    const auto map = [](const QString &text) { return QVariant::fromValue(StringMap{{1, text}}); };
    const auto word = [](const char *text) { return QVariant(QString::fromLatin1(text)); };
    QTest::newRow("maps that were built apart")
        << QStringLiteral("texts") << map(QStringLiteral("a")) << map(QStringLiteral("a")) << 1;
    QTest::newRow("maps that differ")
        << QStringLiteral("texts") << map(QStringLiteral("a")) << map(QStringLiteral("b")) << 2;
    QTest::newRow("lists") << QStringLiteral("names") << QVariant(QStringList{QStringLiteral("a")})
                           << QVariant(QStringList{QStringLiteral("a")}) << 1;
    QTest::newRow("a number and its text") << speed << QVariant(5) << word("5") << 1;
    QTest::newRow("doubles that differ by rounding")
        << QStringLiteral("level") << QVariant(1.0) << QVariant(1.0 + 1e-13) << 1;
    QTest::newRow("a colour and its name")
        << QStringLiteral("ink") << QVariant(QColor(255, 0, 0)) << word("red") << 1;
    QTest::newRow("an invalid and an empty image")
        << QStringLiteral("picture") << QVariant() << word("") << 2;
}

void TestWidget::equalValuesAreNoChange()
{
    QFETCH(const QString, fieldId);
    QFETCH(const QVariant, first);
    QFETCH(const QVariant, second);
    QFETCH(const int, events);
    const Panel panel(0, fieldTable());
    QSignalSpy spy(panel.widget->priv(), &WidgetPrivate::fieldIsChanged);
    panel.widget->setFieldValue(fieldId, first);
    panel.widget->setFieldValue(fieldId, second);
    QCOMPARE(panel.journal->lines.count(QStringLiteral("widget.fieldIsChangedEvent")), events);
    QCOMPARE(spy.count(), 2);
}

void TestWidget::changeReachesWidgetThenItems()
{
    const Panel panel(3, fieldTable());
    panel.items.first()->setFieldValue(speed, 7);
    QCOMPARE(panel.journal->lines, lines(allReceivers, QStringLiteral("fieldIsChangedEvent")));
    QCOMPARE(panel.items.last()->getFieldValue(speed), QVariant(7));
    for (const KORA::Event *event : qAsConst(panel.journal->events)) {
        QCOMPARE(event, panel.journal->events.first());
    }
}

void TestWidget::invalidImageIsAValue()
{
    const Panel panel(0, fieldTable());
    const QString picture = QStringLiteral("picture");
    panel.widget->setFieldValue(picture, QVariant());
    QCOMPARE(panel.journal->lines.size(), 2);
    panel.widget->setFieldValue(picture, QVariant());
    QCOMPARE(panel.journal->lines.size(), 2);
    QVERIFY(!panel.widget->getFieldValue(picture).isValid());
}

void TestWidget::refusedAccessIsSilentButInTheTestBench_data()
{
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<bool>("fromHost");
    QTest::addColumn<QString>("fieldId");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("message");
    QTest::newRow("reading an unknown field")
        << true << false << QStringLiteral("nope") << QVariant()
        << QStringLiteral("getFieldValue called with an invalid fieldId: \"nope\"");
    QTest::newRow("reading a field that cannot be read")
        << true << false << QStringLiteral("secret") << QVariant()
        << QStringLiteral("getFieldValue can not be used for the field \"secret\"");
    QTest::newRow("writing an unknown field")
        << false << false << QStringLiteral("nope") << QVariant(1)
        << QStringLiteral("setFieldValue called with an invalid fieldId: \"nope\"");
    QTest::newRow("the host writing an unknown field")
        << false << true << QStringLiteral("nope %1") << QVariant(1)
        << QStringLiteral("setFieldValue called with an invalid fieldId: \"nope %1\"");
    QTest::newRow("writing a field that cannot be written")
        << false << false << QStringLiteral("label") << QVariant(QStringLiteral("x"))
        << QStringLiteral("setFieldValue can not be used for the field \"label\"");
    QTest::newRow("writing a text's font")
        << false << false << QStringLiteral("label.font") << QVariant(QFont())
        << QStringLiteral("setFieldValue can not be used for the field \"label.font\"");
    QTest::newRow("writing a value of another kind")
        << false << false << speed << QVariant(QStringLiteral("fast"))
        << QStringLiteral("setFieldValue called with wrong value for the field \"speed\": value is "
                          "QVariant(QString, \"fast\")");
    QTest::newRow("the host writing a value of another kind")
        << false << true << speed << QVariant(1e300)
        << QStringLiteral("setFieldValue called with wrong value for the field \"speed\": value is "
                          "QVariant(double, 1e+300)");
}

void TestWidget::refusedAccessIsSilentButInTheTestBench()
{
    QFETCH(const bool, isRead);
    QFETCH(const bool, fromHost);
    QFETCH(const QString, fieldId);
    QFETCH(const QVariant, value);
    QFETCH(const QString, message);
    Panel panel(1, fieldTable());
    WidgetPrivate *priv = panel.widget->priv();
    priv->setFieldValue(speed, 1, true, false);
    QSignalSpy spy(priv, &WidgetPrivate::fieldIsChanged);
    LogRecorder log;
    for (const bool insideBench : {false, true}) {
        panel.host.insideDevProject = insideBench;
        if (isRead) {
            QVERIFY(!priv->getFieldValue(fieldId, fromHost).isValid());
        } else {
            priv->setFieldValue(fieldId, value, fromHost, true);
        }
        const QStringList expected{QStringLiteral("warning KORA <plugin>: ") + message};
        QCOMPARE(log.takeTexts(), insideBench ? expected : QStringList());
    }
    QCOMPARE(spy.count(), 0);
    QVERIFY(panel.journal->lines.isEmpty());
    QCOMPARE(priv->getFieldValue(speed, true), QVariant(1));
}

void TestWidget::hostReadsPastTheFieldTable()
{
    Panel panel(0, fieldTable());
    panel.host.insideDevProject = true;
    panel.widget->setFieldValue(QStringLiteral("secret"), QStringLiteral("s"));
    QCOMPARE(panel.widget->priv()->getFieldValue(QStringLiteral("secret"), true),
             QVariant(QStringLiteral("s")));
    QVERIFY(!panel.widget->priv()->getFieldValue(QStringLiteral("nope"), true).isValid());
    QVERIFY(!panel.widget->getFieldValue(speed).isValid());
}

void TestWidget::hostWritesPastTheEnablement()
{
    Panel panel(1, fieldTable());
    panel.host.insideDevProject = true;
    panel.widget->priv()->setFieldValue(QStringLiteral("label"), QStringLiteral("Tank"), true, true);
    QCOMPARE(panel.items.first()->getFieldValue(QStringLiteral("label")), QVariant(QStringLiteral("Tank")));
    QCOMPARE(panel.journal->lines.size(), 4);
}

void TestWidget::widgetIsToldBeforeItsItems()
{
    for (const Delivery &delivery : deliveries) {
        const Panel panel(3, fieldTable());
        if (qstrcmp(delivery.handler, "deinitEvent") == 0) {
            panel.widget->priv()->init();
            panel.journal->takeLines();
        }
        delivery.start(panel.widget->priv());
        QCOMPARE(panel.journal->lines, lines(allReceivers, QLatin1String(delivery.handler)));
    }
}

void TestWidget::startAndStopCountOnce()
{
    const Panel panel(1);
    WidgetPrivate *priv = panel.widget->priv();
    const QStringList receivers{QStringLiteral("widget"), QStringLiteral("item1")};
    priv->deinit();
    QCOMPARE(panel.journal->takeLines(), QStringList());
    priv->init();
    priv->init();
    QCOMPARE(panel.journal->takeLines(), lines(receivers, QStringLiteral("initEvent")));
    QVERIFY(priv->initialised);
    priv->deinit();
    priv->deinit();
    QCOMPARE(panel.journal->takeLines(), lines(receivers, QStringLiteral("deinitEvent")));
    QVERIFY(!priv->initialised);

    // An item that was started on its own is not started again with its widget.
    panel.items.first()->priv()->init();
    panel.journal->takeLines();
    priv->init();
    QCOMPARE(panel.journal->takeLines(), lines({QStringLiteral("widget")}, QStringLiteral("initEvent")));
}

void TestWidget::valuesOutliveAStop()
{
    const Panel panel(0, fieldTable());
    panel.widget->priv()->setFieldValue(speed, 3, true, false);
    panel.widget->priv()->init();
    panel.widget->priv()->deinit();
    QCOMPARE(panel.widget->getFieldValue(speed), QVariant(3));
}

void TestWidget::alarmsAreNotFiltered()
{
    const Panel panel(2);
    const AlarmInfo alarm =
        AlarmInfo::createAlarmInfo({{QStringLiteral("name"), QStringLiteral("Overheat")}});
    QVERIFY(!panel.widget->priv()->initialised);
    panel.widget->priv()->alarmEvent(alarm);
    panel.widget->priv()->alarmEvent(alarm);
    QCOMPARE(panel.journal->lines.count(QStringLiteral("item2.alarmStatusIsChangedEvent")), 2);
    QCOMPARE(panel.journal->texts.at(1), QStringLiteral("Overheat"));
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(panel.journal->events.at(i), panel.journal->events.first());
    }
}

void TestWidget::grabbedEventsReachNoHandler_data()
{
    QTest::addColumn<int>("delivery");
    QTest::addColumn<QString>("grabber");
    for (int i = 0; i < 4; ++i) {
        for (const QString &receiver : {QStringLiteral("widget"), QStringLiteral("item2")}) {
            QTest::addRow("%s of %s", deliveries[i].handler, qPrintable(receiver)) << i << receiver;
        }
    }
}

void TestWidget::grabbedEventsReachNoHandler()
{
    QFETCH(const int, delivery);
    QFETCH(const QString, grabber);
    const Panel panel(3, fieldTable());
    panel.widget->priv()->initialised = true;
    for (const QPointer<RecordingItem> &item : panel.items) {
        item->priv()->initialised = true;
    }
    if (delivery == 0) {
        panel.widget->priv()->deinit();
        panel.journal->takeLines();
    }
    panel.journal->grabber = grabber;
    deliveries[delivery].start(panel.widget->priv());

    QStringList expected = lines(allReceivers, QLatin1String(deliveries[delivery].handler));
    expected.removeOne(grabber + QLatin1Char('.') + QLatin1String(deliveries[delivery].handler));
    QCOMPARE(panel.journal->lines, expected);
}

void TestWidget::deletedItemsLeaveTheList()
{
    const Panel panel(3, fieldTable());
    const QList<GraphicsObject *> all = panel.widget->graphicsObjectsList();
    QCOMPARE(all, (QList<GraphicsObject *>{panel.items[0], panel.items[1], panel.items[2]}));
    delete panel.items[1];
    QCOMPARE(panel.widget->graphicsObjectsList(), (QList<GraphicsObject *>{all[0], all[2]}));
    panel.widget->priv()->init();
    QCOMPARE(panel.journal->lines,
             lines({QStringLiteral("widget"), QStringLiteral("item1"), QStringLiteral("item3")},
                   QStringLiteral("initEvent")));
}

void TestWidget::whatIsGoneGetsNothingMore_data()
{
    QTest::addColumn<int>("delivery");
    QTest::addColumn<QString>("actor");
    QTest::addColumn<bool>("inKoraEvent");
    QTest::addColumn<QString>("victim");
    struct Case
    {
        const char *actor;
        bool inKoraEvent;
        const char *victim;
    };
    const Case cases[] = {
        {"widget", true, "item2"},   {"widget", false, "item1"}, {"widget", true, "widget"},
        {"widget", false, "widget"}, {"item1", true, "item1"},   {"item1", false, "item1"},
        {"item1", false, "item2"},   {"item2", true, "item1"},   {"item2", true, "widget"},
        {"item2", false, "widget"},  {"item3", false, "item3"},  {"item1", true, "item3"},
    };
    for (int i = 0; i < 4; ++i) {
        for (const Case &c : cases) {
            QTest::addRow("%s deletes %s in %s (%s)", c.actor, c.victim,
                          c.inKoraEvent ? "koraEvent" : "the handler", deliveries[i].handler)
                << i << QString::fromLatin1(c.actor) << c.inKoraEvent << QString::fromLatin1(c.victim);
        }
    }
}

void TestWidget::whatIsGoneGetsNothingMore()
{
    QFETCH(const int, delivery);
    QFETCH(const QString, actor);
    QFETCH(const bool, inKoraEvent);
    QFETCH(const QString, victim);
    const QString handler = QLatin1String(deliveries[delivery].handler);
    const Panel panel(3, fieldTable());
    if (handler == QLatin1String("deinitEvent")) {
        panel.widget->priv()->init();
        panel.journal->takeLines();
    }
    const QString trigger = actor + QLatin1Char('.') + (inKoraEvent ? QStringLiteral("koraEvent") : handler);
    panel.journal->onLine = [&panel, &trigger, &victim](const QString &line) {
        if (line == trigger) {
            delete panel.receiver(victim);
        }
    };
    deliveries[delivery].start(panel.widget->priv());

    const QStringList all = lines(allReceivers, handler);
    const int last = all.indexOf(trigger);
    QCOMPARE(panel.journal->lines.mid(0, last + 1), all.mid(0, last + 1));
    QStringList rest = all.mid(last + 1);
    QStringList actual = panel.journal->lines.mid(last + 1);
    rest.erase(std::remove_if(rest.begin(), rest.end(),
                              [&victim](const QString &line) { return line.startsWith(victim); }),
               rest.end());
    if (victim == QLatin1String("widget")) {
        // Whether items still hear of it when their widget is gone is left open; the widget does not.
        QVERIFY(actual.filter(victim).isEmpty());
        return;
    }
    QCOMPARE(actual, rest);
    QCOMPARE(panel.widget->graphicsObjectsList().size(), 2);
}

void TestWidget::hostMayDeleteTheWidgetOnASignal()
{
    const Panel panel(2, fieldTable());
    connect(panel.widget->priv(), &WidgetPrivate::fieldIsChanged, this,
            [&panel](const QString &, const QVariant &) { delete panel.widget.data(); });
    panel.items.first()->setFieldValue(speed, 1);
    QVERIFY(!panel.widget);
    QVERIFY(panel.journal->lines.filter(QStringLiteral("widget")).isEmpty());

    // What is left of the widget answers with nothing.
    RecordingItem *item = panel.items.first();
    QVERIFY(!item->widget());
    item->setFieldValue(speed, 2);
    QVERIFY(!item->getFieldValue(speed).isValid());
    IconDataRole role;
    item->data(&role);
    item->priv()->init();
    QCOMPARE(item->version(), QStringLiteral("1.20.3"));
}

// They may belong to the item that writes and that a handler deletes.
void TestWidget::writtenIdAndValueMayGoDuringTheSignal()
{
    const Panel panel(1, fieldTable());
    auto id = std::make_unique<QString>(QString::fromLatin1("speed"));
    auto value = std::make_unique<QVariant>(QString::fromLatin1("12"));
    connect(panel.widget->priv(), &WidgetPrivate::fieldIsChanged, this,
            [&id, &value](const QString &, const QVariant &) {
                *id = QStringLiteral("level");
                id.reset();
                value.reset();
            });
    panel.widget->setFieldValue(*id, *value);
    QCOMPARE(panel.journal->texts.at(1),
             fieldChangeText(speed, QStringLiteral("int, 12"), QStringLiteral("Invalid")));
    QCOMPARE(panel.journal->texts.at(3), panel.journal->texts.at(1));
}

void TestWidget::writesNestInsideADelivery()
{
    const Panel panel(1, fieldTable());
    RecordingWidget *widget = panel.widget;
    panel.journal->onLine = [&panel, widget](const QString &line) {
        if (line == QLatin1String("widget.fieldIsChangedEvent")) {
            const int value = widget->getFieldValue(speed).toInt();
            widget->setFieldValue(speed, qMin(value + 1, 2)); // settles at 2
        }
        Q_UNUSED(panel)
    };
    widget->setFieldValue(speed, 1);
    QCOMPARE(widget->getFieldValue(speed), QVariant(2));

    const QString first = fieldChangeText(speed, QStringLiteral("int, 1"), QStringLiteral("Invalid"));
    const QString second = fieldChangeText(speed, QStringLiteral("int, 2"), QStringLiteral("int, 1"));
    QStringList texts = panel.journal->texts;
    texts.removeAll(QString());
    QCOMPARE(texts, (QStringList{first, second, second, first}));
    QCOMPARE(panel.journal->lines.filter(QStringLiteral("Changed")),
             (QStringList{
                 QStringLiteral("widget.fieldIsChangedEvent"), QStringLiteral("widget.fieldIsChangedEvent"),
                 QStringLiteral("item1.fieldIsChangedEvent"), QStringLiteral("item1.fieldIsChangedEvent")}));
}

void TestWidget::itemsMayBeMadeDuringADelivery()
{
    for (const Delivery &delivery : deliveries) {
        Panel panel(1, fieldTable());
        int made = 0;
        panel.journal->onLine = [&panel, &made](const QString &) {
            if (made++ < 20) {
                panel.items.append(
                    qobject_cast<RecordingItem *>(panel.widget->priv()->newGraphicsObjectInstance()));
            }
        };
        panel.widget->priv()->initialised = qstrcmp(delivery.handler, "deinitEvent") == 0;
        delivery.start(panel.widget->priv());
        QCOMPARE(panel.journal->lines.mid(0, 2),
                 lines({QStringLiteral("widget")}, QLatin1String(delivery.handler)));
        QCOMPARE(panel.widget->graphicsObjectsList().size(), panel.items.size());
        panel.journal->onLine = nullptr;
    }
}

// Every handler may call back into the widget; whatever it does, the list holds the living items in their order.
void TestWidget::anySequenceOfCallsFromHandlers()
{
    for (quint32 seed = 1; seed <= 300; ++seed) {
        QRandomGenerator random(seed);
        Panel panel(4, fieldTable());
        int calls = 0;
        const auto act = [&panel, &random] {
            WidgetPrivate *priv = panel.widget->priv();
            const int choice = static_cast<int>(random.bounded(10));
            const int victim = static_cast<int>(random.bounded(panel.items.size()));
            if (choice < 4) {
                deliveries[choice].start(priv);
            } else if (choice < 6) {
                priv->setFieldValue(speed, static_cast<int>(random.bounded(3)), choice == 4, true);
            } else if (choice == 6) {
                panel.items.append(qobject_cast<RecordingItem *>(priv->newGraphicsObjectInstance()));
            } else if (choice == 7 && random.bounded(40) == 0) {
                delete panel.widget;
            } else if (RecordingItem *item = panel.items.at(victim)) {
                if (choice == 8) {
                    item->priv()->resize(QSizeF(random.bounded(3), 1));
                } else {
                    delete item;
                }
            }
        };
        panel.journal->onLine = [&panel, &calls, &act](const QString &) {
            if (panel.widget && ++calls < 100) {
                act();
            }
        };
        for (int i = 0; i < 20 && panel.widget; ++i) {
            act();
        }
        panel.journal->onLine = nullptr;
        if (panel.widget) {
            QList<GraphicsObject *> alive;
            for (const QPointer<RecordingItem> &item : qAsConst(panel.items)) {
                if (item) {
                    alive.append(item);
                }
            }
            QCOMPARE(panel.widget->graphicsObjectsList(), alive);
        }
    }
}

void TestWidget::widgetOutlivesItsActionManager()
{
    Panel panel(1, fieldTable());
    panel.manager.reset();
    panel.widget->setFieldValue(QStringLiteral("nope"), 1);
    panel.widget->priv()->init();
    QVERIFY(!panel.widget->widgetActionManager());
    QVERIFY(!panel.items.first()->widgetActionManager());
}

KORA_TEST_MAIN(TestWidget)

#include "tst_widget.moc"
