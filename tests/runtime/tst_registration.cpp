// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/nullgraphicsobject.h>
#include <kora/runtime/plugin_p.h>
#include <kora/runtime/widgetlibraryplugin_p.h>
#include <support/testmain.h>

#include "recording.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

using namespace KORA;

Q_DECLARE_METATYPE(const QMetaObject *)

// Classes that register but make no instance. -----------------------------------------------------------

class NotInvokable : public Widget
{
    Q_OBJECT

public:
    explicit NotInvokable(const KORA::WidgetData &data)
        : Widget(data)
    {}
};

class NotPublic : public Widget
{
    Q_OBJECT

protected:
    Q_INVOKABLE explicit NotPublic(const KORA::WidgetData &data)
        : Widget(data)
    {}
};

class ShortName : public Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ShortName(const WidgetData &data)
        : Widget(data)
    {}
};

class NotConst : public Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit NotConst(KORA::WidgetData &data)
        : Widget(data)
    {}
};

class NotInvokableItem : public GraphicsObject
{
    Q_OBJECT

public:
    explicit NotInvokableItem(const KORA::GraphicsObjectData &data)
        : GraphicsObject(data)
    {}
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}
};

class ShortNameItem : public GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ShortNameItem(const GraphicsObjectData &data)
        : GraphicsObject(data)
    {}
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}
};

class OtherWidget : public RecordingWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit OtherWidget(const KORA::WidgetData &data)
        : RecordingWidget(data)
    {}
};

namespace {

const QString gauge = QStringLiteral("gauge");
const QString pluginId = QStringLiteral("7f3c1c52-0000-4000-8000-000000000001");

/// A library, and instances made from it.
class Library
{
public:
    ~Library()
    {
        if (widget) {
            const WidgetActionManager *manager = widget->widgetActionManager();
            delete widget;
            delete manager;
        }
    }

    Widget *make(const QString &version)
    {
        QObject *object = INTERNAL::WidgetLibraryPluginPrivateAccessor::priv(&plugin)->newWidgetInstance(
            gauge, version, pluginId, {{QStringLiteral("speed"), speed}}, &host);
        widget = qobject_cast<Widget *>(object);
        return widget;
    }

    const INTERNAL::FieldInfo speed{true, true, false, INTERNAL::FieldTypeInteger, QMetaType::UnknownType};
    KORA::TestKit::Host host;
    WidgetLibraryPlugin plugin{nullptr};
    QPointer<Widget> widget;
};

} // namespace

class TestRegistration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void instanceGetsAllThatTheHostTells();
    void everyInstanceHasItsOwnActionManager();
    void versionsAreFoundToTheLetter_data();
    void versionsAreFoundToTheLetter();
    void lastRegistrationCounts();
    void projectWidgetHasPlaceholderItems();
    void wrongWidgetClassMakesNoInstance_data();
    void wrongWidgetClassMakesNoInstance();
    void wrongGraphicsObjectClassMakesNoItem_data();
    void wrongGraphicsObjectClassMakesNoItem();
    void instancesOutliveThePlugin();
    void actionManagerForwardsToTheHost();
    void pluginDefaults();
};

void TestRegistration::instanceGetsAllThatTheHostTells()
{
    Library library;
    library.plugin.registerWidget(gauge, QStringLiteral("1.20.3"), &RecordingWidget::staticMetaObject,
                                  &RecordingItem::staticMetaObject);
    Widget *widget = library.make(QStringLiteral("1.20.3"));
    QVERIFY(widget);
    QVERIFY(!widget->parent());
    QCOMPARE(widget->metaObject(), &RecordingWidget::staticMetaObject);
    QCOMPARE(widget->id(), gauge);
    QCOMPARE(widget->version(), QStringLiteral("1.20.3"));
    QCOMPARE(widget->versionMajor(), 1);
    QCOMPARE(widget->versionMinor(), 20);
    QCOMPARE(widget->versionPatch(), 3);
    QVERIFY(widget->widgetActionManager());
    QVERIFY(!widget->widgetActionManager()->parent());

    WidgetPrivate *priv = INTERNAL::WidgetPrivateAccessor::priv(widget);
    QCOMPARE(priv->pluginId, pluginId);
    widget->setFieldValue(QStringLiteral("speed"), 4);
    QCOMPARE(widget->getFieldValue(QStringLiteral("speed")), QVariant(4));

    const std::unique_ptr<QObject> object(priv->newGraphicsObjectInstance());
    auto *item = qobject_cast<RecordingItem *>(object.get());
    QVERIFY(item);
    QCOMPARE(item->widget(), widget);
    QCOMPARE(item->widgetActionManager(), widget->widgetActionManager());
    QCOMPARE(item->id(), gauge);
    QCOMPARE(item->version(), QStringLiteral("1.20.3"));
    QCOMPARE(item->versionMajor(), 1);
    QCOMPARE(item->versionMinor(), 20);
    QCOMPARE(item->versionPatch(), 3);
    QVERIFY(!item->parentItem());
}

void TestRegistration::everyInstanceHasItsOwnActionManager()
{
    Library library;
    library.plugin.registerWidget(gauge, QStringLiteral("1.0.0"), &RecordingWidget::staticMetaObject,
                                  &RecordingItem::staticMetaObject);
    const std::unique_ptr<Widget> first(library.make(QStringLiteral("1.0.0")));
    const std::unique_ptr<WidgetActionManager> manager(first->widgetActionManager());
    Widget *second = library.make(QStringLiteral("1.0.0"));
    QVERIFY(second->widgetActionManager() != manager.get());
}

void TestRegistration::versionsAreFoundToTheLetter_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<bool>("found");
    QTest::newRow("the text that was registered") << QStringLiteral("1.0.0") << true;
    QTest::newRow("a text without the last number") << QStringLiteral("1.0") << false;
    QTest::newRow("the same numbers written otherwise") << QStringLiteral("01.0.0") << false;
    QTest::newRow("a later version") << QStringLiteral("1.0.1") << false;
    QTest::newRow("no text") << QString() << false;
}

void TestRegistration::versionsAreFoundToTheLetter()
{
    QFETCH(const QString, asked);
    QFETCH(const bool, found);
    Library library;
    library.plugin.registerWidget(gauge, QStringLiteral("1.0.0"), &RecordingWidget::staticMetaObject,
                                  &RecordingItem::staticMetaObject);
    library.plugin.registerWidget(gauge, QStringLiteral("1.1.0"), &OtherWidget::staticMetaObject,
                                  &RecordingItem::staticMetaObject);
    const Widget *widget = library.make(asked);
    QCOMPARE(widget != nullptr, found);
    if (found) {
        QCOMPARE(widget->metaObject(), &RecordingWidget::staticMetaObject);
    }
}

void TestRegistration::lastRegistrationCounts()
{
    Library library;
    library.plugin.registerProjectWidget(gauge, QStringLiteral("beta"), &RecordingWidget::staticMetaObject);
    library.plugin.registerWidget(gauge, QStringLiteral("beta"), &OtherWidget::staticMetaObject,
                                  &RecordingItem::staticMetaObject);
    const auto &registry =
        INTERNAL::WidgetLibraryPluginPrivateAccessor::priv(&library.plugin)->widgetRegistry;
    QCOMPARE(registry.size(), 1);
    QCOMPARE(registry.first().graphicsObjectClass, &RecordingItem::staticMetaObject);

    // A text that is no version is stored as given; the instance's version is then invalid.
    const Widget *widget = library.make(QStringLiteral("beta"));
    QVERIFY(widget);
    QCOMPARE(widget->metaObject(), &OtherWidget::staticMetaObject);
    QCOMPARE(widget->version(), QString());
    QCOMPARE(widget->versionMajor(), 0);
}

void TestRegistration::projectWidgetHasPlaceholderItems()
{
    Library library;
    library.plugin.registerProjectWidget(gauge, QStringLiteral("1.0.0"), &RecordingWidget::staticMetaObject);
    Widget *widget = library.make(QStringLiteral("1.0.0"));
    QVERIFY(widget);
    const std::unique_ptr<QObject> item(
        INTERNAL::WidgetPrivateAccessor::priv(widget)->newGraphicsObjectInstance());
    QVERIFY(item);
    QCOMPARE(item->metaObject(), &NullGraphicsObject::staticMetaObject);
}

void TestRegistration::wrongWidgetClassMakesNoInstance_data()
{
    QTest::addColumn<const QMetaObject *>("widgetClass");
    QTest::newRow("a constructor that is not invokable") << &NotInvokable::staticMetaObject;
    QTest::newRow("a constructor that is not public") << &NotPublic::staticMetaObject;
    QTest::newRow("an argument type without its namespace") << &ShortName::staticMetaObject;
    QTest::newRow("a reference that is not const") << &NotConst::staticMetaObject;
    QTest::newRow("a graphics object class") << &RecordingItem::staticMetaObject;
    QTest::newRow("no class") << static_cast<const QMetaObject *>(nullptr);
}

void TestRegistration::wrongWidgetClassMakesNoInstance()
{
    QFETCH(const QMetaObject *, widgetClass);
#if defined(__SANITIZE_ADDRESS__)
    const __lsan::ScopedDisabler theActionManagerOfAFailedInstanceIsLost;
#endif
    Library library;
    library.plugin.registerWidget(gauge, QStringLiteral("1.0.0"), widgetClass,
                                  &RecordingItem::staticMetaObject);
    QVERIFY(!INTERNAL::WidgetLibraryPluginPrivateAccessor::priv(&library.plugin)
                 ->newWidgetInstance(gauge, QStringLiteral("1.0.0"), pluginId, {}, &library.host));
}

void TestRegistration::wrongGraphicsObjectClassMakesNoItem_data()
{
    QTest::addColumn<const QMetaObject *>("itemClass");
    QTest::newRow("a constructor that is not invokable") << &NotInvokableItem::staticMetaObject;
    QTest::newRow("an argument type without its namespace") << &ShortNameItem::staticMetaObject;
    QTest::newRow("a widget class") << &RecordingWidget::staticMetaObject;
    QTest::newRow("no class") << static_cast<const QMetaObject *>(nullptr);
}

void TestRegistration::wrongGraphicsObjectClassMakesNoItem()
{
    QFETCH(const QMetaObject *, itemClass);
    const Panel panel(0, {}, itemClass);
    QVERIFY(!panel.widget->priv()->newGraphicsObjectInstance());
    QVERIFY(panel.widget->graphicsObjectsList().isEmpty());
}

void TestRegistration::instancesOutliveThePlugin()
{
    KORA::TestKit::Host host;
    std::unique_ptr<Widget> widget;
    {
        WidgetLibraryPlugin plugin(nullptr);
        plugin.registerWidget(gauge, QStringLiteral("1.0.0"), &RecordingWidget::staticMetaObject,
                              &RecordingItem::staticMetaObject);
        widget.reset(qobject_cast<Widget *>(
            INTERNAL::WidgetLibraryPluginPrivateAccessor::priv(&plugin)->newWidgetInstance(
                gauge, QStringLiteral("1.0.0"), pluginId, {}, &host)));
    }
    QVERIFY(widget);
    const std::unique_ptr<WidgetActionManager> manager(widget->widgetActionManager());
    INTERNAL::WidgetPrivateAccessor::priv(widget.get())->init();
    QVERIFY(!manager->isInsideProjectEditor());
}

void TestRegistration::actionManagerForwardsToTheHost()
{
    KORA::TestKit::Host host;
    host.tags.insert(QStringLiteral("t"), 7);
    host.alarms.append(KORA::AlarmInfo::createAlarmInfo({}));
    host.trends[QStringLiteral("r")] = [](const QDateTime &) { return 1; };
    const QDateTime from = QDateTime::fromMSecsSinceEpoch(1);
    const QDateTime to = QDateTime::fromMSecsSinceEpoch(2);
    {
        const WidgetActionManager manager(&host);
        QCOMPARE(manager.getTagValue(QStringLiteral("t")), QVariant(7));
        QVERIFY(!manager.getTagValue(QStringLiteral("unknown")).isValid());
        QCOMPARE(manager.getTrendValue(QStringLiteral("r"), from, to, 9, WidgetActionManager::UtcTime)
                     .toList()
                     .size(),
                 9);
        QCOMPARE(manager.getAlarms(), host.alarms);
        manager.resetAlarm(QStringLiteral("a"));
        manager.resetAllAlarms();
        manager.acknowAlarm(QStringLiteral("b"));
        manager.acknowAllAlarms();
        QVERIFY(!manager.isInsideProjectEditor());
    }
    QCOMPARE(host.calls.join(QLatin1Char(';')),
             QStringLiteral(
                 "getTagValue t;getTagValue unknown;getTrendValue r;getAlarms;resetAlarm a;resetAllAlarms;"
                 "acknowAlarm b;acknowAllAlarms"));
    const KORA::TestKit::Host::TrendRequest &request = host.trendRequests.first();
    QVERIFY(request.from == from && request.to == to && request.count == 9);
    QCOMPARE(request.format, WidgetActionManager::UtcTime);

    WidgetActionManager another(&host);
    QVERIFY(INTERNAL::WidgetActionManagerPrivateAccessor::priv(&another)->isInsideDevProject());
}

void TestRegistration::pluginDefaults()
{
    WidgetLibraryPlugin plugin(nullptr);
    plugin.aboutToLoad();
    plugin.load();
    plugin.aboutToUnload();
    plugin.unload();
    const InitEventData data;
    InitEvent event(data);
    QVERIFY(!plugin.koraEvent(&event));
    QVERIFY(INTERNAL::PluginPrivateAccessor::priv(&plugin));
    QVERIFY(INTERNAL::WidgetLibraryPluginPrivateAccessor::priv(&plugin)->widgetRegistry.isEmpty());
}

KORA_TEST_MAIN(TestRegistration)

#include "tst_registration.moc"
