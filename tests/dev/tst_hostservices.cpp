// SPDX-License-Identifier: Apache-2.0
//
// What a widget gets from the bench, and what becomes of widgets whose classes do not fit.
#include "stillplant.h"

#include <kora/dev/model/hostservices.h>
#include <kora/dev/model/livewidget.h>
#include <kora/host.h>

#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

#include <kora/dev/panes/activitypane.h>
#include <kora/dev/panes/logview.h>

using KORA::AlarmInfo;
using KORA::WidgetActionManager;
using KORA::INTERNAL::PluginLoader;

class TestHostServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void callsReachThePlantAndAreRecorded();
    void activityIsFilteredAndCopied();
    void widgetsThatCannotBeMadeAreExplained_data();
    void widgetsThatCannotBeMadeAreExplained();

private:
    QTemporaryDir m_settings;
    PluginLoader m_loader;
};

void TestHostServices::initTestCase()
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_settings.path());
    LogRecorder log;
    KORA::INTERNAL::koraInit(QIcon());
    QVERIFY(m_loader.loadFromPluginPath(QStringLiteral(KORA_TEST_LIBRARY_fixture_badwidgets), QString()));
    QVERIFY(m_loader.init());
    log.takeLines();
}

void TestHostServices::callsReachThePlantAndAreRecorded()
{
    Plant plant;
    plant.addDefaults();
    ActivityLog log;
    HostServices host(&plant, &log);
    host.setInstanceName(QStringLiteral("gauge1"));
    const auto latest = [&log] {
        const ActivityEntry &entry = log.entries().last();
        return QStringList{entry.instance, entry.what, entry.arguments, entry.result};
    };
    const auto entry = [](const char *what, const QString &arguments, const QString &result) {
        return QStringList{QStringLiteral("gauge1"), QLatin1String(what), arguments, result};
    };
    QCOMPARE(host.getTagValue(QStringLiteral("pump")), QVariant(true));
    QCOMPARE(latest(), entry("getTagValue", QStringLiteral("pump"), variantText(true)));
    QVERIFY(!host.getTagValue(QStringLiteral("none")).isValid());

    plant.clock()->advance(3000);
    const QVariant trend = host.getTrendValue(QStringLiteral("levelTrend"), noon, noon.addSecs(2), 3,
                                              WidgetActionManager::UtcTime);
    QCOMPARE(trend.toList().size(), 3);
    QCOMPARE(latest(),
             entry("getTrendValue",
                   QStringLiteral("levelTrend, %1, %2, 3")
                       .arg(noon.toString(Qt::ISODateWithMs), noon.addSecs(2).toString(Qt::ISODateWithMs)),
                   QStringLiteral("3 values")));
    QVERIFY(
        !host.getTrendValue(QStringLiteral("none"), noon, noon, 1, WidgetActionManager::UtcTime).isValid());
    QCOMPARE(latest().last(), QStringLiteral("no value"));

    const QString fault = QStringLiteral("pumpFault");
    const auto state = [&plant](const QString &name) { return plant.alarms()->definition(name).state; };
    QCOMPARE(host.getAlarms().size(), 3);
    QCOMPARE(latest(), entry("getAlarms", QString(), QStringLiteral("3 alarms")));
    QVERIFY(plant.alarms()->raise(fault) && plant.alarms()->raise(QStringLiteral("levelHigh")));
    host.acknowAlarm(fault);
    QCOMPARE(latest(), entry("acknowAlarm", fault, QString()));
    QCOMPARE(state(fault), AlarmInfo::StateTriggeredAcknowledged);
    QCOMPARE(state(QStringLiteral("levelHigh")), AlarmInfo::StateTriggeredNotAcknowledged);
    host.acknowAllAlarms();
    QCOMPARE(latest(), entry("acknowAllAlarms", QString(), QString()));
    QCOMPARE(state(QStringLiteral("levelHigh")), AlarmInfo::StateTriggeredAcknowledged);
    QVERIFY(plant.alarms()->clear(fault));
    QVERIFY(state(fault) != AlarmInfo::StateNotTriggered); // it has to be reset
    host.resetAlarm(fault);
    QCOMPARE(latest(), entry("resetAlarm", fault, QString()));
    QCOMPARE(state(fault), AlarmInfo::StateNotTriggered);
    QVERIFY(plant.alarms()->raise(fault));
    host.acknowAllAlarms();
    QVERIFY(plant.alarms()->clear(fault));
    host.resetAllAlarms();
    QCOMPARE(state(fault), AlarmInfo::StateNotTriggered);
    QVERIFY(host.isInsideProjectEditor());
    host.setMode(BenchMode::Runtime);
    QVERIFY(!host.isInsideProjectEditor() && host.isInsideDevProject());

    // As pictures are drawn: nothing behind it, and nobody who records.
    HostServices none(nullptr, nullptr);
    QVERIFY(!none.getTagValue(QStringLiteral("pump")).isValid());
    QVERIFY(!none.getTrendValue(QStringLiteral("levelTrend"), noon, noon, 1, WidgetActionManager::UtcTime)
                 .isValid());
    QVERIFY(none.getAlarms().isEmpty());
    none.acknowAlarm(fault);
    none.acknowAllAlarms();
    none.resetAlarm(fault);
    none.resetAllAlarms();
}

void TestHostServices::activityIsFilteredAndCopied()
{
    Plant plant;
    plant.addDefaults();
    ActivityLog log;
    ActivityPane pane(&log);
    pane.resize(800, 300);
    pane.show();
    HostServices host(&plant, &log);
    for (const char *instance : {"gauge1", "pump1"}) {
        host.setInstanceName(QLatin1String(instance));
        host.getTagValue(QStringLiteral("pump"));
        host.acknowAlarm(QStringLiteral("levelHigh"));
    }
    ActivityEntry written;
    written.kind = ActivityEntry::PluginWrite;
    written.instance = QStringLiteral("gauge1");
    written.what = QStringLiteral("setFieldValue");
    log.record(written);
    QCOMPARE(log.entries().size(), 5);

    const auto copied = [&pane] {
        pane.findChild<QToolButton *>(QStringLiteral("activityCopyJson"))->click();
        QStringList lines;
        const QJsonArray array =
            QJsonDocument::fromJson(QGuiApplication::clipboard()->text().toUtf8()).array();
        for (const QJsonValue &entry : array) {
            lines.append(entry[QLatin1String("kind")].toString() + QLatin1Char(' ')
                         + entry[QLatin1String("instance")].toString() + QLatin1Char(' ')
                         + entry[QLatin1String("what")].toString());
        }
        return lines;
    };
    QCOMPARE(copied().size(), 5);
    auto *filter = pane.findChild<QLineEdit *>(QStringLiteral("activityFilter"));
    filter->setText(QStringLiteral("PUMP1"));
    QCOMPARE(copied(), (QStringList{QStringLiteral("Call pump1 getTagValue"),
                                    QStringLiteral("Call pump1 acknowAlarm")}));
    filter->setText(QStringLiteral("levelhigh"));
    QCOMPARE(copied().size(), 2);
    filter->clear();
    auto *calls = pane.findChild<QToolButton *>(QStringLiteral("activityCall"));
    calls->click();
    QCOMPARE(copied(), QStringList{QStringLiteral("PluginWrite gauge1 setFieldValue")});
    calls->click();

    // Of a selection that alone.
    auto *view = pane.findChild<LogView *>();
    QVERIFY(view);
    view->setCurrentIndex(view->model()->index(3, 0));
    QCOMPARE(copied(), QStringList{QStringLiteral("Call pump1 acknowAlarm")});
    pane.findChild<QToolButton *>(QStringLiteral("activityCopyText"))->click();
    const QString text = QGuiApplication::clipboard()->text();
    QVERIFY2(text.contains(QStringLiteral("acknowAlarm")) && !text.contains(QStringLiteral("getTagValue")),
             qPrintable(text));
    QCOMPARE(view->model()->index(3, ActivityLog::WhatColumn).data(Qt::ToolTipRole).toString(),
             QStringLiteral("acknowAlarm"));
    pane.findChild<QToolButton *>(QStringLiteral("activityClear"))->click();
    QCOMPARE(log.entries().size(), 0);
}

void TestHostServices::widgetsThatCannotBeMadeAreExplained_data()
{
    QTest::addColumn<QString>("rule"); // empty: it can be made
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("hint");
    const auto row = [](const char *widget, const char *rule, const char *message, const char *hint) {
        QTest::newRow(widget) << QString::fromLatin1(rule) << QString::fromLatin1(message)
                              << QString::fromLatin1(hint);
    };
    row("good", "", "", "");
    row("unregistered", "widget-not-registered", "does not register this widget in this version",
        "registerWidget(QStringLiteral(\"unregistered\"), QStringLiteral(\"1.0.0\"), ...) in the plugin's "
        "constructor; it registers abort 1.0.0, ");
    row("short_version", "widget-not-registered", "does not register", "short_version 1.0, ");
    row("null_class", "widget-constructor", "registered without a widget class", "its staticMetaObject");
    row("short_argument", "widget-constructor",
        "its widget class has no invokable constructor taking const KORA::WidgetData &",
        "public part of ShortArgument: Q_INVOKABLE explicit ShortArgument(const KORA::WidgetData &data)");
    row("no_widget", "widget-constructor", "its widget class has no invokable constructor", "NoWidget");
    row("other_class", "widget-class", "its widget class OtherClass is not derived from KORA::Widget",
        "derive OtherClass from KORA::Widget");
    row("short_item_argument", "item-constructor",
        "its item class has no invokable constructor taking const KORA::GraphicsObjectData &",
        "Q_INVOKABLE explicit ShortItemArgument(const KORA::GraphicsObjectData &data)");
    row("null_item", "item-constructor", "registered without a graphics object class",
        "registerProjectWidget()");
    row("other_item", "item-class", "its item class OtherItem is not derived from KORA::GraphicsObject",
        "derive OtherItem from KORA::GraphicsObject");
}

void TestHostServices::widgetsThatCannotBeMadeAreExplained()
{
    QFETCH(QString, rule);
    QFETCH(QString, message);
    QFETCH(QString, hint);
    const auto *library = m_loader.pluginData().first()->toWidgetLibraryPluginData();
    const auto info = library->metaInformation()->widgetsLatestVersion().value(
        QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(info.isValid());
    HostServices host(nullptr, nullptr);
    LogRecorder log;
    LiveWidget live;
    Finding problem;
    QCOMPARE(live.create(*library, info, &host, problem), rule.isEmpty());
    log.takeLines();
    QCOMPARE(live.widget() && live.item(), rule.isEmpty());
    QCOMPARE(problem.rule, rule);
    QVERIFY2(problem.message.contains(message), qPrintable(problem.message));
    QVERIFY2(problem.hint.contains(hint), qPrintable(problem.hint));
    QVERIFY(rule.isEmpty() || problem.widgetId == QLatin1String(QTest::currentDataTag()));
}

KORA_TEST_MAIN(TestHostServices)

#include "tst_hostservices.moc"
