// SPDX-License-Identifier: Apache-2.0
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>

#include <kora/host.h>

using namespace KORA::INTERNAL;

namespace {

/// A panel with one alarm and a trend that rises by one per second since 1970.
class Panel : public WidgetActionManagerImpl
{
public:
    QVariant getTagValue(const QString &) const override { return {}; }
    QVariant getTrendValue(const QString &, const QDateTime &from, const QDateTime &to, unsigned int,
                           KORA::WidgetActionManager::TrendTimeFormat) const override
    {
        trendFrom = from;
        trendTo = to;
        const auto sample = [](const QDateTime &time) {
            return QVariantMap{{QStringLiteral("time"), time},
                               {QStringLiteral("value"), double(time.toSecsSinceEpoch())}};
        };
        return QVariantList{sample(from), sample(to)};
    }
    QVector<KORA::AlarmInfo> getAlarms() const override { return {alarm}; }
    void resetAlarm(const QString &) override {}
    void resetAllAlarms() override {}
    void acknowAlarm(const QString &name) override { acknowledged.append(name); }
    void acknowAllAlarms() override {}
    bool isInsideProjectEditor() const override { return false; }
    bool isInsideDevProject() const override { return true; } // wrong field accesses are logged and fail

    KORA::AlarmInfo alarm;
    QStringList acknowledged;
    mutable QDateTime trendFrom;
    mutable QDateTime trendTo;
};

KORA::AlarmInfo alarmInState(KORA::AlarmInfo::State state)
{
    KORA::AlarmInfoData data;
    data.name = QStringLiteral("T1.High");
    data.state = state;
    data.timestamp = QDateTime(QDate(2024, 3, 4), QTime(12, 0));
    data.acknowledgeEnabled = true;
    return KORA::AlarmInfo(data);
}

/// A widget of the library on a view, with its default values, started.
class LiveWidget
{
public:
    LiveWidget(const WidgetLibraryPluginData &plugin, const WidgetMetaInformation &info, Panel *panel)
        : widget(qobject_cast<KORA::Widget *>(WidgetLibraryPluginPrivateAccessor::priv(plugin.instance())
                                                  ->newWidgetInstance(info.id(), info.version().version(),
                                                                      plugin.metaInformation()->id(),
                                                                      info.fieldInfo(), panel)))
    {
        if (!widget) {
            return;
        }
        const auto fields = info.fields();
        for (const FieldMetaInformation &field : fields) {
            if (field.defaultValue().isValid()) {
                set(field.id(), field.defaultValue());
            }
        }
        item = qobject_cast<KORA::GraphicsObject *>(host()->newGraphicsObjectInstance());
        if (!item) {
            return;
        }
        scene.addItem(item); // the scene owns it now
        scene.setSceneRect(QRectF(QPointF(), info.defaultSize()));
        GraphicsObjectPrivateAccessor::priv(item)->resize(info.defaultSize());
        host()->init();
        view.setScene(&scene);
        view.setFrameStyle(QFrame::NoFrame);
        view.viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
        view.resize(info.defaultSize().toSize());
        view.show();
    }
    ~LiveWidget()
    {
        scene.clear();
        KORA::WidgetActionManager *const manager = widget ? widget->widgetActionManager() : nullptr;
        delete widget;
        delete manager;
    }
    Q_DISABLE_COPY(LiveWidget)

    KORA::WidgetPrivate *host() const { return WidgetPrivateAccessor::priv(widget); }
    void set(const QString &field, const QVariant &value) { host()->setFieldValue(field, value, true, true); }
    QVariant get(const char *field) const { return host()->getFieldValue(QString::fromLatin1(field), true); }
    QImage picture()
    {
        QImage image(scene.sceneRect().size().toSize(), QImage::Format_ARGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        scene.render(&painter);
        return image;
    }
    void mouse(QEvent::Type type, const QPoint &position)
    {
        const bool isDown = type != QEvent::MouseButtonRelease;
        QMouseEvent event(type, position, view.viewport()->mapToGlobal(position),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          isDown ? Qt::LeftButton : Qt::NoButton, {});
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    void click(const QPoint &position)
    {
        mouse(QEvent::MouseButtonPress, position);
        mouse(QEvent::MouseButtonRelease, position);
    }
    void drag(const QPoint &from, const QPoint &step, int steps)
    {
        mouse(QEvent::MouseButtonPress, from);
        for (int i = 1; i <= steps; ++i) {
            mouse(QEvent::MouseMove, from + i * step);
        }
        mouse(QEvent::MouseButtonRelease, from + steps * step);
    }

    KORA::Widget *widget;
    KORA::GraphicsObject *item = nullptr;
    QGraphicsScene scene;
    QGraphicsView view;
};

} // namespace

class TestPlant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
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
    const WidgetLibraryPluginData &plugin() const;
    WidgetMetaInformation info(const char *id, const char *version = "1.0.0") const;

    Panel m_panel;
    PluginLoader m_loader;
};

void TestPlant::initTestCase()
{
    LogRecorder log; // loading is told at info level
    koraInit(QIcon());
    QDir folder = QFileInfo(QStringLiteral(KORA_TEST_LIBRARY_plant)).dir();
    QVERIFY(folder.cd(QStringLiteral("../..")));
    const bool isLoaded = m_loader.loadFromPluginDir(folder.absolutePath());
    QVERIFY2(isLoaded, qPrintable(log.takeTexts().join(QLatin1Char('\n'))));
    QVERIFY(m_loader.init());
    log.takeLines();
}

const WidgetLibraryPluginData &TestPlant::plugin() const
{
    return *m_loader.pluginData().first()->toWidgetLibraryPluginData();
}

WidgetMetaInformation TestPlant::info(const char *id, const char *version) const
{
    return plugin().metaInformation()->widgets().value(
        {QString::fromLatin1(id), QString::fromLatin1(version)});
}

void TestPlant::everyDeclaredWidgetIsMade()
{
    const auto widgets = plugin().metaInformation()->widgets();
    QCOMPARE(widgets.size(), 12);
    for (const WidgetMetaInformation &widget : widgets) {
        LiveWidget live(plugin(), widget, &m_panel);
        QVERIFY2(live.widget && live.item, qPrintable(widget.id()));
        QVERIFY2(!live.widget->icon().pixmap(48, 48).isNull(), qPrintable(widget.id()));
        live.picture();
    }
}

void TestPlant::allFieldTypesAreUsed()
{
    QSet<int> types;
    const auto widgets = plugin().metaInformation()->widgets();
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
    const WidgetLibraryPluginMetaInformation &library = *plugin().metaInformation();
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
    LiveWidget live(plugin(), info(QTest::currentDataTag(), qPrintable(version)), &m_panel);
    const QImage without = live.picture();
    QVERIFY(without == live.picture());
    live.set(field, value);
    QVERIFY(without != live.picture());
}

void TestPlant::switchWritesItsValue()
{
    LiveWidget live(plugin(), info("value_switch"), &m_panel);
    QSignalSpy written(live.host(), &KORA::WidgetPrivate::fieldIsChanged);
    live.click({40, 35});
    QVERIFY2(written.isEmpty(), "operated although its state is unknown");

    live.set(QStringLiteral("value"), false);
    live.click({40, 35});
    QCOMPARE(written.size(), 1);
    QCOMPARE(written.first(), (QVariantList{QStringLiteral("value"), true}));

    live.set(QStringLiteral("enabled"), false);
    live.click({40, 35});
    QCOMPARE(written.size(), 1);
}

void TestPlant::pushButtonIsOnWhilePressed()
{
    LiveWidget live(plugin(), info("value_switch"), &m_panel);
    live.set(QStringLiteral("mode"), 1);
    live.set(QStringLiteral("value"), false);
    live.mouse(QEvent::MouseButtonPress, {40, 35});
    QCOMPARE(live.get("value"), QVariant(true));
    live.item->ungrabMouse(); // as when a window opens under the finger
    QCOMPARE(live.get("value"), QVariant(false));
}

void TestPlant::alarmListAcknowledgesAndForgets()
{
    m_panel.alarm = alarmInState(KORA::AlarmInfo::StateTriggeredNotAcknowledged);
    LiveWidget live(plugin(), info("alarm_list"), &m_panel);
    QCOMPARE(live.get("count"), QVariant(1));
    const QPoint firstRow(100, 40);
    live.click({100, 180});
    QVERIFY(m_panel.acknowledged.isEmpty());
    live.click(firstRow);
    QCOMPARE(m_panel.acknowledged, QStringList{QStringLiteral("T1.High")});

    live.host()->alarmEvent(alarmInState(KORA::AlarmInfo::StateTriggeredAcknowledged));
    QCOMPARE(live.get("count"), QVariant(1));
    live.click(firstRow);
    QCOMPARE(m_panel.acknowledged.size(), 1);
    live.host()->alarmEvent(alarmInState(KORA::AlarmInfo::StateNotTriggeredAcknowledged));
    QCOMPARE(live.get("count"), QVariant(0));
}

void TestPlant::gaugeRemembersItsPeak()
{
    LiveWidget live(plugin(), info("gauge", "1.1.0"), &m_panel);
    QVERIFY(!live.get("peak").isValid());
    for (const double value : {-3.0, 7.0, 5.0}) {
        live.set(QStringLiteral("value"), value);
    }
    QCOMPARE(live.get("peak"), QVariant(7.0));
}

void TestPlant::trendFollowsTheMouse()
{
    LiveWidget live(plugin(), info("trend_chart"), &m_panel);
    QVERIFY(QTest::qWaitForWindowExposed(&live.view));
    const QDateTime end = m_panel.trendTo;
    live.drag({150, 100}, {10, 0}, 8);
    const qint64 movedMs = m_panel.trendTo.msecsTo(end);
    // 80 of about 340 pixels, on a chart of 60 minutes.
    QVERIFY2(movedMs > 12 * 60000 && movedMs < 17 * 60000, qPrintable(QString::number(movedMs)));
    live.drag({250, 100}, {-40, 0}, 4);
    QVERIFY2(m_panel.trendTo >= end, "dragged into the future, it follows the present again");
}

void TestPlant::pictureFollowsTwoFingers()
{
    LogRecorder log; // a pinch writes its points at debug level
    LiveWidget live(plugin(), info("picture"), &m_panel);
    QVERIFY(QTest::qWaitForWindowExposed(&live.view));
    QTouchDevice *const device = QTest::createTouchDevice();
    const QImage before = live.picture();
    QWidget *const viewport = live.view.viewport();
    QTest::touchEvent(viewport, device).press(1, {120, 100}, viewport).press(2, {200, 100}, viewport);
    for (int i = 1; i <= 5; ++i) {
        QTest::touchEvent(viewport, device)
            .move(1, {120 - 5 * i, 100}, viewport)
            .move(2, {200 + 5 * i, 100}, viewport);
    }
    QTest::touchEvent(viewport, device).release(1, {95, 100}, viewport).release(2, {225, 100}, viewport);
    QVERIFY(live.picture() != before);

    live.mouse(QEvent::MouseButtonDblClick, {160, 100});
    QVERIFY(live.picture() == before);
    log.takeLines();
}

void TestPlant::recipePageTurnsBySwipe()
{
    LiveWidget live(plugin(), info("recipe_panel"), &m_panel);
    QVERIFY(QTest::qWaitForWindowExposed(&live.view));
    live.drag({220, 90}, {-60, 0}, 2);
    QCOMPARE(live.get("page"), QVariant(1));
    live.drag({60, 90}, {60, 0}, 2);
    QCOMPARE(live.get("page"), QVariant(0));
    live.drag({60, 90}, {60, 0}, 2);
    QCOMPARE(live.get("page"), QVariant(0));
}

KORA_TEST_MAIN(TestPlant)
#include "tst_plant.moc"
