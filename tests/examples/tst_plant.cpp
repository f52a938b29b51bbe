// SPDX-License-Identifier: Apache-2.0
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtTest/QTest>

#include <kora/host.h>
#include <kora/testkit/testkit.h>

#include <memory>

using namespace KORA::INTERNAL;
using namespace KORA::TestKit;

namespace {

KORA::AlarmInfo alarmInState(KORA::AlarmInfo::State state)
{
    return Alarm(QStringLiteral("T1.High")).state(state).acknowledgeable();
}

const QString gauge = QStringLiteral("gauge");
const QString valueSwitch = QStringLiteral("value_switch");

QString pluginFolder()
{
    return QFileInfo(QStringLiteral(KORA_TEST_LIBRARY_plant)).absoluteDir().filePath(QStringLiteral("../.."));
}

} // namespace

class TestPlant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void everyDeclaredWidgetIsMade();
    void allFieldTypesAreUsed();
    void everyTextIsTranslated();
    void noValueLooksDifferent_data();
    void noValueLooksDifferent();
    void switchWritesItsValue();
    void pushButtonIsOnWhilePressed();
    void alarmListAcknowledgesAndForgets();
    void gaugeRemembersItsPeak();
    void trendFollowsTheMouse();
    void pictureFollowsTwoFingers();
    void recipePageTurnsBySwipe();

private:
    std::unique_ptr<Library> m_library;
    Host m_host;
};

void TestPlant::initTestCase()
{
    LogRecorder log; // loading is told at info level
    m_library = std::make_unique<Library>(QDir::cleanPath(pluginFolder()));
    const QStringList lines = log.takeTexts();
    QVERIFY2(m_library->isValid(), qPrintable(lines.join(QLatin1Char('\n'))));
}

void TestPlant::init()
{
    m_host.takeCalls();
}

void TestPlant::everyDeclaredWidgetIsMade()
{
    const auto widgets = m_library->metaData().widgets();
    QCOMPARE(widgets.size(), 12);
    for (const WidgetMetaInformation &widget : widgets) {
        WidgetFixture live(*m_library, m_host, widget.id(), widget.version().version());
        QVERIFY2(live.isValid(), qPrintable(live.problem()));
        QVERIFY2(!live.widget->icon().pixmap(48, 48).isNull(), qPrintable(widget.id()));
        live.picture();
    }
}

void TestPlant::allFieldTypesAreUsed()
{
    QSet<int> types;
    const auto widgets = m_library->metaData().widgets();
    for (const WidgetMetaInformation &widget : widgets) {
        const auto fields = widget.fields();
        for (const FieldMetaInformation &field : fields) {
            types.insert(field.type());
        }
    }
    QCOMPARE(types.size(), static_cast<int>(FieldTypeTrend));
}

void TestPlant::everyTextIsTranslated()
{
    const WidgetLibraryPluginMetaInformation &library = m_library->metaData();
    QVector<TranslationStringType> texts{library.name(), library.description(), library.copyright()};
    const auto widgets = library.widgets();
    for (const WidgetMetaInformation &widget : widgets) {
        texts << widget.display() << widget.description() << widget.galleryGroupName();
        const auto fields = widget.fields();
        for (const FieldMetaInformation &field : fields) {
            texts << field.display() << field.description() << field.group() << field.displayFontSize();
            const auto options = field.options();
            for (const OptionType &option : options) {
                texts << option.text;
            }
            texts << field.defaultTexts().values().toVector();
        }
    }
    for (const TranslationStringType &text : qAsConst(texts)) {
        const QString original = text.get(QStringLiteral("en-US"), false);
        for (const QString &language : {QStringLiteral("it-IT"), QStringLiteral("de-DE")}) {
            QVERIFY2(original.isEmpty() || text.contains(language), qPrintable(language + original));
        }
    }
    const WidgetFixture live(*m_library, m_host, gauge, {}, QStringLiteral("it-IT"));
    QCOMPARE(live.get("label"), QVariant(QStringLiteral("Pressione")));
}

void TestPlant::noValueLooksDifferent_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("gauge") << "1.0.0"
                           << "value" << QVariant(0.0);
    QTest::newRow("gauge") << "1.1.0"
                           << "value" << QVariant(0.0);
    QTest::newRow("level_tank") << "1.0.0"
                                << "value" << QVariant(0);
    QTest::newRow("value_display") << "1.0.0"
                                   << "value" << QVariant(70.0f);
    QTest::newRow("value_switch") << "1.0.0"
                                  << "value" << QVariant(false);
    QTest::newRow("pump") << "1.0.0"
                          << "state" << QVariant(0);
}

void TestPlant::noValueLooksDifferent()
{
    QFETCH(QString, version);
    QFETCH(QString, field);
    QFETCH(QVariant, value);
    WidgetFixture live(*m_library, m_host, QString::fromLatin1(QTest::currentDataTag()), version);
    const QImage without = live.picture();
    QVERIFY(without == live.picture());
    live.set(field, value);
    QVERIFY(without != live.picture());
}

void TestPlant::switchWritesItsValue()
{
    WidgetFixture live(*m_library, m_host, valueSwitch);
    live.page.click({40, 35});
    QVERIFY2(live.takeWrites().isEmpty(), "operated although its state is unknown");

    live.set("value", false);
    live.page.click({40, 35});
    QCOMPARE(live.takeWrites(), (WidgetFixture::Writes{{QStringLiteral("value"), true}}));

    live.set("enabled", false);
    live.page.click({40, 35});
    QVERIFY(live.takeWrites().isEmpty());
}

void TestPlant::pushButtonIsOnWhilePressed()
{
    WidgetFixture live(*m_library, m_host, valueSwitch);
    live.set("mode", 1);
    live.set("value", false);
    live.page.mouse(QEvent::MouseButtonPress, {40, 35});
    QCOMPARE(live.get("value"), QVariant(true));
    live.item->ungrabMouse(); // as when a window opens under the finger
    QCOMPARE(live.get("value"), QVariant(false));
}

void TestPlant::alarmListAcknowledgesAndForgets()
{
    m_host.alarms = {alarmInState(KORA::AlarmInfo::StateTriggeredNotAcknowledged)};
    WidgetFixture live(*m_library, m_host, QStringLiteral("alarm_list"));
    QCOMPARE(live.get("count"), QVariant(1));
    QCOMPARE(m_host.takeCalls(), QStringList{QStringLiteral("getAlarms")});
    const QPoint firstRow(100, 40);
    live.page.click({100, 180});
    QVERIFY(m_host.calls.isEmpty());
    live.page.click(firstRow);
    QCOMPARE(m_host.takeCalls(), QStringList{QStringLiteral("acknowAlarm T1.High")});

    live.deliver(alarmInState(KORA::AlarmInfo::StateTriggeredAcknowledged));
    QCOMPARE(live.get("count"), QVariant(1));
    live.page.click(firstRow);
    QVERIFY(m_host.calls.isEmpty());
    live.deliver(alarmInState(KORA::AlarmInfo::StateNotTriggeredAcknowledged));
    QCOMPARE(live.get("count"), QVariant(0));
}

void TestPlant::gaugeRemembersItsPeak()
{
    WidgetFixture live(*m_library, m_host, gauge, QStringLiteral("1.1.0"));
    QVERIFY(!live.get("peak").isValid());
    for (const double value : {-3.0, 7.0, 5.0}) {
        live.set("value", value);
    }
    QCOMPARE(live.get("peak"), QVariant(7.0));
}

void TestPlant::trendFollowsTheMouse()
{
    WidgetFixture live(*m_library, m_host, QStringLiteral("trend_chart"));
    m_host.trends[QStringLiteral("Level")] = [](const QDateTime &time) {
        return double(time.toSecsSinceEpoch());
    };
    const QImage without = live.picture();
    live.set("trend", QStringLiteral("Level"));
    QVERIFY(live.page.isExposed());
    QVERIFY(live.picture() != without);
    const QDateTime end = m_host.trendRequests.last().to;
    live.page.drag({150, 100}, {10, 0}, 8);
    const qint64 movedMs = m_host.trendRequests.last().to.msecsTo(end);
    // 80 of about 340 pixels, on a chart of 60 minutes.
    QVERIFY2(movedMs > 12 * 60000 && movedMs < 17 * 60000, qPrintable(QString::number(movedMs)));
    live.page.drag({250, 100}, {-40, 0}, 4);
    QVERIFY2(m_host.trendRequests.last().to >= end, "dragged into the future, it follows the present again");
}

void TestPlant::pictureFollowsTwoFingers()
{
    LogRecorder log; // a pinch writes its points at debug level
    WidgetFixture live(*m_library, m_host, QStringLiteral("picture"));
    QVERIFY(live.page.isExposed());
    const QImage before = live.picture();
    live.page.touch.pinch({160, 100}, 80, 130);
    QVERIFY(live.picture() != before);

    live.page.mouse(QEvent::MouseButtonDblClick, {160, 100});
    QVERIFY(live.picture() == before);
    log.takeLines();
}

void TestPlant::recipePageTurnsBySwipe()
{
    WidgetFixture live(*m_library, m_host, QStringLiteral("recipe_panel"));
    QVERIFY(live.page.isExposed());
    live.page.drag({220, 90}, {-60, 0}, 2);
    QCOMPARE(live.get("page"), QVariant(1));
    live.page.drag({60, 90}, {60, 0}, 2);
    QCOMPARE(live.get("page"), QVariant(0));
    live.page.drag({60, 90}, {60, 0}, 2);
    QCOMPARE(live.get("page"), QVariant(0));
}

KORA_TEST_MAIN(TestPlant)
#include "tst_plant.moc"
