// SPDX-License-Identifier: Apache-2.0
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QStyleOptionGraphicsItem>

#include <cmath>
#include <limits>

#include <kora/runtime/nullgraphicsobject.h>
#include <kora/testkit/scene.h>
#include <support/testmain.h>

#include "recording.h"

using namespace KORA;

Q_DECLARE_METATYPE(QEvent::Type)

namespace {

QIcon plainIcon(const QColor &colour)
{
    QPixmap pixmap(64, 64);
    pixmap.fill(colour);
    return QIcon(pixmap);
}

QTouchEvent::TouchPoint touchPoint(int id, const QPointF &pos = QPointF(3, 4))
{
    QTouchEvent::TouchPoint point(id);
    point.setPos(pos);
    point.setScenePos(pos + QPointF(10, 10));
    point.setScreenPos(pos + QPointF(100.6, 100.4));
    point.setLastPos(pos - QPointF(1, 1));
    point.setLastScenePos(pos + QPointF(9, 9));
    point.setLastScreenPos(pos + QPointF(99.5, 99.4));
    return point;
}

/// Sends the item a touch event of one point and returns what sceneEvent() returns.
bool touch(RecordingItem *item, QEvent::Type type, int id, bool *accepted = nullptr)
{
    QTouchEvent event(type, nullptr, Qt::NoModifier, Qt::TouchPointPressed, {touchPoint(id)});
    const bool handled = item->sceneEvent(&event);
    if (accepted) {
        *accepted = event.isAccepted();
    }
    return handled;
}

QVector<QEvent::Type> takeMouseTypes(RecordingItem *item)
{
    QVector<QEvent::Type> types;
    for (const RecordingItem::Mouse &mouse : qAsConst(item->mouse)) {
        types.append(mouse.type);
    }
    item->mouse.clear();
    return types;
}

using Types = QVector<QEvent::Type>;

/// An item at (20, 20) of the scene, shown in a view.
class Window : public KORA::TestKit::Scene
{
public:
    Window()
        : Scene(QSizeF(200, 200))
        , panel(1)
        , item(panel.items.first())
    {
        item->setOption(GraphicsObject::OptionTouchToMouse, true);
        item->priv()->resize(QSizeF(100, 100));
        item->setPos(20, 20);
        scene.addItem(item);
    }
    ~Window()
    {
        if (item) {
            scene.removeItem(item);
        }
    }

    /// As the mouse would: through the window.
    void click(const QPoint &pos) { QTest::mouseClick(view.windowHandle(), Qt::LeftButton, {}, pos); }

    Panel panel;
    QPointer<RecordingItem> item;
};

/// An image that the placeholder item of a widget painted into, on white.
class Placeholder
{
public:
    Placeholder()
        : panel(0)
    {
        panel.host.insideProjectEditor = true;
        GraphicsObjectData data;
        data.widget = panel.widget;
        data.widgetActionManager = panel.manager.get();
        item = std::make_unique<NullGraphicsObject>(data);
        resize(QSizeF(40, 30));
    }

    void resize(const QSizeF &size)
    {
        INTERNAL::GraphicsObjectPrivateAccessor::priv(item.get())->resize(size);
    }

    QImage paint(const QRect &clip = QRect(0, 0, 60, 60))
    {
        QImage image(60, 60, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setClipRect(0, 0, 1, 1); // the item sets a clip of its own
        QStyleOptionGraphicsItem option;
        option.rect = clip;
        item->paint(&painter, &option, nullptr);
        isAntialiased = painter.testRenderHint(QPainter::Antialiasing);
        return image;
    }

    bool paintsNothing()
    {
        QImage white(60, 60, QImage::Format_ARGB32_Premultiplied);
        white.fill(Qt::white);
        return paint() == white;
    }

    Panel panel;
    std::unique_ptr<NullGraphicsObject> item;
    bool isAntialiased = false; // of the last paint()
};

} // namespace

class TestGraphicsObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemsAreSeenAsQtSeesThem();
    void startsWithoutSize();
    void resizeTellsOldAndNewSize();
    void resizeToTheSameSizeIsNone_data();
    void resizeToTheSameSizeIsNone();
    void resizeHandlerMayDeleteOrResize();
    void startsAndStopsOnce();
    void options();
    void acceptTouchAndMouseEventsLeavesButtonsAlone();
    void gestureTypesAreFixed();
    void fieldsAreThoseOfTheWidget();
    void touchBecomesMouse();
    void mouseEventCarriesTheTouchPoint();
    void acceptanceGoesBackToTheTouch();
    void secondBeginOfTheTrackedPointIsSwallowed();
    void onlyTheFirstPointCounts();
    void hugePositionsDoNoHarm_data();
    void hugePositionsDoNoHarm();
    void touchWithoutPointsIsNotHandled_data();
    void touchWithoutPointsIsNotHandled();
    void touchIsLeftAloneWithoutTheOption();
    void spontaneousPressDuringATouchIsSuppressed();
    void touchInAViewBecomesMouse();
    void pressInAViewDuringATouchIsSuppressed();
    void refusedTouchInAView();
    void hiddenItemForgetsTheTouch();
    void itemMayGoDuringATouch();
    void placeholderPaintsTheIconInTheEditorOnly();
    void placeholderKeepsToTheOptionsRectangle();
    void placeholderSizesDoNoHarm_data();
    void placeholderSizesDoNoHarm();
    void firstDefaultIconCounts();
};

void TestGraphicsObject::startsWithoutSize()
{
    const Panel panel(1);
    const RecordingItem *item = panel.items.first();
    QCOMPARE(item->boundingRect(), QRectF(0, 0, -1, -1));
    QCOMPARE(item->size(), QSizeF(-1, -1));
    QVERIFY(item->acceptTouchEvents());
    QCOMPARE(item->type(), item->QGraphicsItem::type());
    QVERIFY(!item->options());
}

void TestGraphicsObject::resizeTellsOldAndNewSize()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->priv()->resize(QSizeF(100, 50));
    item->priv()->resize(QSizeF(200, 80));
    QCOMPARE(panel.journal->texts.at(1), QStringLiteral("KORA::ResizeEvent(size=100, 50,oldSize=-1, -1)"));
    QCOMPARE(panel.journal->texts.at(3), QStringLiteral("KORA::ResizeEvent(size=200, 80,oldSize=100, 50)"));
    QCOMPARE(item->boundingRect(), QRectF(0, 0, 200, 80));

    panel.journal->takeLines();
    panel.journal->grabber = item->name;
    item->priv()->resize(QSizeF(1, 1));
    QCOMPARE(panel.journal->lines, QStringList{QStringLiteral("item1.koraEvent")});
    QCOMPARE(item->size(), QSizeF(1, 1));
}

void TestGraphicsObject::resizeToTheSameSizeIsNone_data()
{
    QTest::addColumn<QSizeF>("from");
    QTest::addColumn<QSizeF>("to");
    QTest::addColumn<bool>("resized");
    QTest::newRow("the same") << QSizeF(100, 50) << QSizeF(100, 50) << false;
    QTest::newRow("within the tolerance") << QSizeF(100, 50) << QSizeF(100 + 5e-11, 50 - 2e-11) << false;
    QTest::newRow("width beyond it") << QSizeF(100, 50) << QSizeF(100 + 2e-10, 50) << true;
    QTest::newRow("height beyond it") << QSizeF(100, 50) << QSizeF(100, 50 + 2e-10) << true;
    QTest::newRow("only the width") << QSizeF(100, 50) << QSizeF(101, 50) << true;
    QTest::newRow("nothing to nothing") << QSizeF(0, 0) << QSizeF(0, 0) << false;
    QTest::newRow("nothing to nearly nothing") << QSizeF(0, 0) << QSizeF(0, 1e-15) << true;
}

void TestGraphicsObject::resizeToTheSameSizeIsNone()
{
    QFETCH(const QSizeF, from);
    QFETCH(const QSizeF, to);
    QFETCH(const bool, resized);
    const Panel panel(1);
    panel.items.first()->priv()->resize(from);
    panel.journal->takeLines();
    panel.items.first()->priv()->resize(to);
    QCOMPARE(panel.journal->lines.size(), resized ? 2 : 0);
    // Bit by bit: an ignored size is not stored either.
    QVERIFY(std::equal_to<double>()(panel.items.first()->size().width(), (resized ? to : from).width()));
    QVERIFY(std::equal_to<double>()(panel.items.first()->size().height(), (resized ? to : from).height()));
}

void TestGraphicsObject::resizeHandlerMayDeleteOrResize()
{
    const Panel panel(2);
    RecordingItem *item = panel.items.first();
    panel.journal->onLine = [item](const QString &line) {
        if (line == QLatin1String("item1.resizeEvent")) {
            item->priv()->resize(QSizeF(30, 30));
        }
    };
    item->priv()->resize(QSizeF(10, 10));
    QCOMPARE(item->size(), QSizeF(30, 30));
    QCOMPARE(panel.journal->lines.count(QStringLiteral("item1.resizeEvent")), 2);

    for (const char *when : {"item1.koraEvent", "item2.resizeEvent"}) {
        panel.journal->takeLines();
        panel.journal->onLine = [&panel, when](const QString &line) {
            if (line == QLatin1String(when)) {
                delete panel.receiver(line.left(5));
            }
        };
        const QPointer<RecordingItem> victim = panel.items.at(when[4] - '1');
        victim->priv()->resize(QSizeF(50, 50));
        QVERIFY(!victim);
        QCOMPARE(panel.journal->lines.last(), QLatin1String(when));
    }
}

void TestGraphicsObject::startsAndStopsOnce()
{
    const Panel panel(1);
    GraphicsObjectPrivate *priv = panel.items.first()->priv();
    priv->deinit();
    priv->init();
    priv->init();
    priv->deinit();
    priv->deinit();
    QCOMPARE(panel.journal->lines,
             (QStringList{QStringLiteral("item1.koraEvent"), QStringLiteral("item1.initEvent"),
                          QStringLiteral("item1.koraEvent"), QStringLiteral("item1.deinitEvent")}));
}

void TestGraphicsObject::options()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    QCOMPARE(static_cast<int>(GraphicsObject::OptionTouchToMouse), 1);
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    QCOMPARE(item->options(), GraphicsObject::Options(GraphicsObject::OptionTouchToMouse));
    item->setOption(GraphicsObject::OptionTouchToMouse, false);
    QVERIFY(!item->options());
    item->setOptions(GraphicsObject::OptionTouchToMouse);
    QVERIFY(item->options().testFlag(GraphicsObject::OptionTouchToMouse));
    item->setOptions({});
    QVERIFY(!item->options());
}

void TestGraphicsObject::acceptTouchAndMouseEventsLeavesButtonsAlone()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->setAcceptedMouseButtons(Qt::MiddleButton);
    item->setFlag(QGraphicsItem::ItemIsMovable);
    for (const bool on : {true, false, true}) {
        item->setAcceptTouchAndMouseEvents(on);
        QCOMPARE(item->flags().testFlag(QGraphicsItem::ItemIsSelectable), on);
        QCOMPARE(item->flags().testFlag(QGraphicsItem::ItemIsFocusable), on);
        QVERIFY(item->flags().testFlag(QGraphicsItem::ItemIsMovable));
        QCOMPARE(item->acceptTouchEvents(), on);
        QCOMPARE(item->acceptedMouseButtons(), Qt::MouseButtons(Qt::MiddleButton));
    }
}

void TestGraphicsObject::gestureTypesAreFixed()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    const QVector<uint> types{item->pan1TouchGestureType(),     item->pan2TouchesGestureType(),
                              item->pan3TouchesGestureType(),   item->swipe1TouchGestureType(),
                              item->swipe2TouchesGestureType(), item->swipe3TouchesGestureType(),
                              item->pinchGestureType()};
    QCOMPARE(types, (QVector<uint>{257, 258, 259, 260, 261, 262, 263}));
}

void TestGraphicsObject::fieldsAreThoseOfTheWidget()
{
    const INTERNAL::FieldInfo info(true, true, false, INTERNAL::FieldTypeInteger, QMetaType::UnknownType);
    const INTERNAL::FieldInfo closed(false, false, false, INTERNAL::FieldTypeInteger, QMetaType::UnknownType);
    const QString speed = QStringLiteral("speed");
    const QString hidden = QStringLiteral("hidden");
    const Panel panel(2, {{speed, info}, {hidden, closed}});
    RecordingItem *item = panel.items.first();
    QSignalSpy spy(panel.widget->priv(), &WidgetPrivate::fieldIsChanged);
    item->setFieldValue(speed, 4);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(panel.widget->getFieldValue(speed), QVariant(4));
    QVERIFY(panel.journal->lines.contains(QStringLiteral("item2.fieldIsChangedEvent")));

    item->setFieldValue(hidden, 4);
    item->priv()->setFieldValue(hidden, 5, true, false);
    QCOMPARE(spy.count(), 1);
    QVERIFY(!item->getFieldValue(hidden).isValid());
    QCOMPARE(item->priv()->getFieldValue(hidden, true), QVariant(5));
}

void TestGraphicsObject::touchBecomesMouse()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    QVERIFY(touch(item, QEvent::TouchBegin, 7));
    QCOMPARE(item->priv()->trackedTouchPointId, 7);
    QVERIFY(touch(item, QEvent::TouchUpdate, 7));
    QVERIFY(touch(item, QEvent::TouchEnd, 7));
    QCOMPARE(item->priv()->trackedTouchPointId, -1);
    QCOMPARE(takeMouseTypes(item), (Types{QEvent::GraphicsSceneMousePress, QEvent::GraphicsSceneMouseMove,
                                          QEvent::GraphicsSceneMouseRelease}));
}

void TestGraphicsObject::mouseEventCarriesTheTouchPoint()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    touch(item, QEvent::TouchBegin, 0);
    touch(item, QEvent::TouchUpdate, 0);
    touch(item, QEvent::TouchEnd, 0);
    QCOMPARE(item->mouse.size(), 3);

    const Qt::MouseButton button[] = {Qt::LeftButton, Qt::NoButton, Qt::LeftButton};
    const Qt::MouseButtons buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::NoButton};
    for (int i = 0; i < 3; ++i) {
        const RecordingItem::Mouse &mouse = item->mouse.at(i);
        QCOMPARE(mouse.button, button[i]);
        QCOMPARE(mouse.buttons, buttons[i]);
        QCOMPARE(mouse.pos, QPointF(3, 4));
        QCOMPARE(mouse.scenePos, QPointF(13, 14));
        QCOMPARE(mouse.screenPos, QPoint(104, 104));
        QCOMPARE(mouse.lastPos, QPointF(2, 3));
        QCOMPARE(mouse.lastScenePos, QPointF(12, 13));
        QCOMPARE(mouse.lastScreenPos, QPoint(103, 103));
        QVERIFY(!mouse.spontaneous);
    }
}

void TestGraphicsObject::acceptanceGoesBackToTheTouch()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    for (const bool accept : {true, false}) {
        item->acceptMouse = accept;
        for (const QEvent::Type type : {QEvent::TouchBegin, QEvent::TouchUpdate, QEvent::TouchEnd}) {
            bool accepted = !accept;
            QVERIFY(touch(item, type, 3, &accepted));
            QCOMPARE(accepted, accept);
        }
    }
}

void TestGraphicsObject::secondBeginOfTheTrackedPointIsSwallowed()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    touch(item, QEvent::TouchBegin, 0);
    QVERIFY(touch(item, QEvent::TouchBegin, 0));
    QCOMPARE(takeMouseTypes(item), Types{QEvent::GraphicsSceneMousePress});

    touch(item, QEvent::TouchBegin, 1);
    QCOMPARE(item->priv()->trackedTouchPointId, 1);
    QCOMPARE(takeMouseTypes(item), Types{QEvent::GraphicsSceneMousePress});

    touch(item, QEvent::TouchEnd, 1);
    touch(item, QEvent::TouchBegin, 1);
    QCOMPARE(takeMouseTypes(item),
             (Types{QEvent::GraphicsSceneMouseRelease, QEvent::GraphicsSceneMousePress}));
}

void TestGraphicsObject::onlyTheFirstPointCounts()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    QTouchEvent event(QEvent::TouchBegin, nullptr, Qt::NoModifier, Qt::TouchPointPressed,
                      {touchPoint(4, QPointF(1, 1)), touchPoint(5, QPointF(9, 9))});
    QVERIFY(item->sceneEvent(&event));
    QCOMPARE(item->mouse.size(), 1);
    QCOMPARE(item->mouse.first().pos, QPointF(1, 1));
    QCOMPARE(item->priv()->trackedTouchPointId, 4);
}

void TestGraphicsObject::hugePositionsDoNoHarm_data()
{
    QTest::addColumn<double>("x");
    QTest::newRow("beyond int") << 1e300;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
}

void TestGraphicsObject::hugePositionsDoNoHarm()
{
    QFETCH(const double, x);
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    QTouchEvent event(QEvent::TouchBegin, nullptr, Qt::NoModifier, Qt::TouchPointPressed,
                      {touchPoint(4, QPointF(x, -x))});
    QVERIFY(item->sceneEvent(&event));
    QCOMPARE(item->mouse.size(), 1);
    if (x > 0) {
        QVERIFY(item->mouse.first().screenPos.x() > 1000000000);
        QVERIFY(item->mouse.first().screenPos.y() < -1000000000);
    }
}

void TestGraphicsObject::touchWithoutPointsIsNotHandled_data()
{
    QTest::addColumn<QEvent::Type>("type");
    QTest::newRow("begin") << QEvent::TouchBegin;
    QTest::newRow("update") << QEvent::TouchUpdate;
    QTest::newRow("end") << QEvent::TouchEnd;
}

void TestGraphicsObject::touchWithoutPointsIsNotHandled()
{
    QFETCH(const QEvent::Type, type);
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    QTouchEvent event(type);
    QVERIFY(!item->sceneEvent(&event));
    QVERIFY(item->mouse.isEmpty());
    QCOMPARE(item->priv()->trackedTouchPointId, -1);
}

void TestGraphicsObject::touchIsLeftAloneWithoutTheOption()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    QVERIFY(!touch(item, QEvent::TouchBegin, 1));
    QVERIFY(!touch(item, QEvent::TouchEnd, 1));
    QVERIFY(item->mouse.isEmpty());
}

void TestGraphicsObject::spontaneousPressDuringATouchIsSuppressed()
{
    const Panel panel(1);
    RecordingItem *item = panel.items.first();
    QGraphicsScene scene;
    scene.addItem(item);
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    const auto send = [item](QEvent::Type type, bool spontaneous) {
        QGraphicsSceneMouseEvent event(type);
        QSpontaneKeyEvent::setSpontaneous(&event);
        if (!spontaneous) {
            QGraphicsSceneMouseEvent posted(type);
            return item->sceneEvent(&posted) && posted.isAccepted();
        }
        return item->sceneEvent(&event) && event.isAccepted();
    };

    QVERIFY(send(QEvent::GraphicsSceneMousePress, true));
    touch(item, QEvent::TouchBegin, 0);
    takeMouseTypes(item);
    QVERIFY(!send(QEvent::GraphicsSceneMousePress, true));
    QCOMPARE(takeMouseTypes(item), Types());

    QVERIFY(send(QEvent::GraphicsSceneMousePress, false));
    QVERIFY(send(QEvent::GraphicsSceneMouseMove, true));
    QVERIFY(send(QEvent::GraphicsSceneMouseRelease, true));
    QCOMPARE(item->mouse.size(), 3);

    touch(item, QEvent::TouchEnd, 0);
    QVERIFY(send(QEvent::GraphicsSceneMousePress, true));
    scene.removeItem(item);
}

void TestGraphicsObject::touchInAViewBecomesMouse()
{
    Window window;
    QVERIFY(window.isExposed());
    window.touch.press({QPoint(30, 40)});
    window.touch.moveTo({QPoint(50, 60)});
    window.touch.release();
    QCOMPARE(window.item->mouse.size(), 3);
    QCOMPARE(window.item->mouse.at(0).pos, QPointF(10, 20));
    QCOMPARE(window.item->mouse.at(1).scenePos, QPointF(50, 60));
    QCOMPARE(window.item->mouse.at(1).lastPos, QPointF(10, 20));
    QCOMPARE(takeMouseTypes(window.item),
             (Types{QEvent::GraphicsSceneMousePress, QEvent::GraphicsSceneMouseMove,
                    QEvent::GraphicsSceneMouseRelease}));
}

void TestGraphicsObject::pressInAViewDuringATouchIsSuppressed()
{
    Window window;
    QVERIFY(window.isExposed());
    window.touch.press({QPoint(30, 40)});
    QCOMPARE(takeMouseTypes(window.item), Types{QEvent::GraphicsSceneMousePress});
    window.click(QPoint(30, 40));
    QVERIFY(!takeMouseTypes(window.item).contains(QEvent::GraphicsSceneMousePress));
    window.touch.release();
    QVERIFY(takeMouseTypes(window.item).contains(QEvent::GraphicsSceneMouseRelease));

    window.click(QPoint(30, 40));
    QCOMPARE(takeMouseTypes(window.item),
             (Types{QEvent::GraphicsSceneMousePress, QEvent::GraphicsSceneMouseRelease}));
}

// Qt then makes a mouse press of its own from the touch; the item has seen the press already.
void TestGraphicsObject::refusedTouchInAView()
{
    Window window;
    QVERIFY(window.isExposed());
    window.item->acceptMouse = false;
    window.touch.press({QPoint(30, 40)});
    window.touch.release();
    QCOMPARE(takeMouseTypes(window.item).count(QEvent::GraphicsSceneMousePress), 1);
}

void TestGraphicsObject::hiddenItemForgetsTheTouch()
{
    Window window;
    QVERIFY(window.isExposed());
    window.touch.press({QPoint(30, 40)});
    QVERIFY(window.item->priv()->trackedTouchPointId != -1);
    window.item->hide();
    window.touch.release();
    QCOMPARE(window.item->priv()->trackedTouchPointId, -1);
    window.item->show();
    takeMouseTypes(window.item);
    window.touch.press({QPoint(30, 40)});
    QCOMPARE(takeMouseTypes(window.item), Types{QEvent::GraphicsSceneMousePress});
    window.touch.release();
}

void TestGraphicsObject::itemMayGoDuringATouch()
{
    class SelfDeletingItem : public RecordingItem
    {
    public:
        using RecordingItem::RecordingItem;

    protected:
        void mousePressEvent(QGraphicsSceneMouseEvent *event) override
        {
            event->accept();
            delete this;
        }
    };
    const Panel panel(0);
    GraphicsObjectData data;
    data.widget = panel.widget;
    data.widgetActionManager = panel.manager.get();
    QPointer<RecordingItem> item = new SelfDeletingItem(data);
    item->setOption(GraphicsObject::OptionTouchToMouse, true);
    bool accepted = false;
    QVERIFY(touch(item, QEvent::TouchBegin, 0, &accepted));
    QVERIFY(accepted);
    QVERIFY(!item);
}

void TestGraphicsObject::placeholderPaintsTheIconInTheEditorOnly()
{
    Placeholder placeholder;
    placeholder.panel.widget->ownIcon = plainIcon(Qt::red);
    const QImage image = placeholder.paint();
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(image.pixelColor(39, 29), QColor(Qt::red));
    QCOMPARE(image.pixelColor(40, 10), QColor(Qt::white));
    QCOMPARE(image.pixelColor(10, 30), QColor(Qt::white));

    QVERIFY(placeholder.isAntialiased);

    placeholder.panel.host.insideProjectEditor = false;
    QVERIFY(placeholder.paintsNothing());
}

void TestGraphicsObject::placeholderKeepsToTheOptionsRectangle()
{
    Placeholder placeholder;
    placeholder.panel.widget->ownIcon = plainIcon(Qt::red);
    const QImage image = placeholder.paint(QRect(10, 0, 10, 60));
    QCOMPARE(image.pixelColor(9, 5), QColor(Qt::white));
    QCOMPARE(image.pixelColor(10, 5), QColor(Qt::red));
    QCOMPARE(image.pixelColor(19, 5), QColor(Qt::red));
    QCOMPARE(image.pixelColor(20, 5), QColor(Qt::white));
}

void TestGraphicsObject::placeholderSizesDoNoHarm_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("none") << QSizeF(-1, -1);
    QTest::newRow("empty") << QSizeF(0, 0);
    QTest::newRow("less than a pixel") << QSizeF(0.2, 0.2);
    QTest::newRow("beyond int") << QSizeF(1e300, 1);
    QTest::newRow("infinite") << QSizeF(std::numeric_limits<double>::infinity(), 10);
    QTest::newRow("no number") << QSizeF(std::numeric_limits<double>::quiet_NaN(), 10);
}

// Fails on any message of Qt, and under the sanitizers on a conversion out of range.
void TestGraphicsObject::placeholderSizesDoNoHarm()
{
    QFETCH(const QSizeF, size);
    Placeholder placeholder;
    placeholder.panel.widget->ownIcon = plainIcon(Qt::red);
    placeholder.resize(size);
    QCOMPARE(placeholder.paint().pixelColor(59, 59), QColor(Qt::white));
}

// The default icon belongs to the process: last, and in one function.
void TestGraphicsObject::firstDefaultIconCounts()
{
    Placeholder placeholder;
    QVERIFY(koraDefaultGalleryIcon().isNull());
    QVERIFY(placeholder.panel.widget->icon().isNull());
    QVERIFY(placeholder.paintsNothing());

    koraGraphicsObjectInit(plainIcon(Qt::red));
    koraGraphicsObjectInit(plainIcon(Qt::blue));
    QVERIFY(!koraDefaultGalleryIcon().isNull());
    QCOMPARE(placeholder.panel.widget->icon().cacheKey(), koraDefaultGalleryIcon().cacheKey());
    QCOMPARE(placeholder.paint().pixelColor(5, 5), QColor(Qt::red));

    placeholder.panel.widget->ownIcon = plainIcon(Qt::green);
    QCOMPARE(placeholder.paint().pixelColor(5, 5), QColor(Qt::green));
}

// What the class overrides only so that plugins link to it does what Qt's own does.
void TestGraphicsObject::itemsAreSeenAsQtSeesThem()
{
    Window window;
    Panel other(1);
    RecordingItem *item = window.item;
    RecordingItem *neighbour = other.items.first();
    neighbour->priv()->resize(QSizeF(50, 50));
    window.scene.addItem(neighbour);
    neighbour->setZValue(1);

    QVERIFY(item->collidesWithItem(neighbour, Qt::IntersectsItemShape));
    QVERIFY(
        neighbour->collidesWithPath(neighbour->mapFromItem(item, item->shape()), Qt::IntersectsItemShape));
    QVERIFY(!item->isObscuredBy(neighbour)); // it is not opaque
    QVERIFY(item->opaqueArea().isEmpty());
    QCOMPARE(item->shape().boundingRect(), item->boundingRect());
    QVERIFY(item->contains(QPointF(99, 99)) && !item->contains(QPointF(101, 50)));
    neighbour->setPos(150, 150);
    QVERIFY(!item->collidesWithItem(neighbour, Qt::IntersectsItemShape));

    // Events of the one pass by the other, which lets them through.
    item->installSceneEventFilter(neighbour);
    window.scene.advance();
    bool accepted = false;
    QVERIFY(touch(item, QEvent::TouchBegin, 1, &accepted) && accepted);
    QCOMPARE(takeMouseTypes(item), Types{QEvent::GraphicsSceneMousePress});
    window.scene.removeItem(neighbour);
}

KORA_TEST_MAIN(TestGraphicsObject)

#include "tst_graphicsobject.moc"
