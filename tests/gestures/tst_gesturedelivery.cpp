// SPDX-License-Identifier: Apache-2.0
//
// Touch events of a device, through a view, Qt's gesture manager and the registered recognisers, to an item.
#include <QtTest/QTest>

#include <QtCore/QRandomGenerator>
#include <QtGui/QWindow>
#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsView>

#include <functional>

#include <kora/gestures/gestures.h>
#include <kora/gestures/pangesturerecognizer_p.h>
#include <kora/gestures/pinchgesturerecognizer_p.h>
#include <kora/gestures/swipegesturerecognizer_p.h>
#include <kora/testkit/scene.h>
#include <support/testmain.h>

#include "fingers.h"
#include "silentlog.h"

using KORA::PanGesture;
using KORA::PanGestureRecognizer;
using KORA::PinchGesture;
using KORA::PinchGestureRecognizer;
using KORA::SwipeGesture;
using KORA::SwipeGestureRecognizer;

Q_DECLARE_METATYPE(QVector<QPoint>)

namespace {

using States = QVector<Qt::GestureState>;

constexpr Qt::GestureState Started = Qt::GestureStarted;
constexpr Qt::GestureState Updated = Qt::GestureUpdated;
constexpr Qt::GestureState Finished = Qt::GestureFinished;
constexpr Qt::GestureState Canceled = Qt::GestureCanceled;

/// Covers the scene, takes touch and mouse and keeps the states of the gestures that arrive.
class GrabbingItem : public QGraphicsObject
{
public:
    GrabbingItem() { setAcceptTouchEvents(true); }

    QRectF boundingRect() const override { return {-1000, -1000, 2000, 2000}; }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}

    States states;
    std::function<void(QGestureEvent *, QGesture *)> look = [](QGestureEvent *, QGesture *) {};

protected:
    bool sceneEvent(QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::TouchBegin:
        case QEvent::GraphicsSceneMousePress:
        case QEvent::GraphicsSceneMouseMove:
        case QEvent::GraphicsSceneMouseRelease:
        case QEvent::GraphicsSceneMouseDoubleClick:
            event->accept();
            return true;
        case QEvent::Gesture:
            take(static_cast<QGestureEvent *>(event));
            return true;
        default:
            return QGraphicsObject::sceneEvent(event);
        }
    }

private:
    void take(QGestureEvent *event)
    {
        for (QGesture *gesture : event->gestures()) {
            states.append(gesture->state());
            look(event, gesture);
        }
    }
};

/// A page with one item on it, and fingers.
class Panel : public KORA::TestKit::Scene
{
public:
    explicit Panel(const QTransform &transform = {})
        : Scene(QSizeF(600, 400))
    {
        scene.setSceneRect(-150, -150, 300, 300);
        scene.addItem(item);
        view.setTransform(transform);
        exposed = isExposed();
        m_sent = Fingers(view.viewport()->mapToGlobal({}));
    }

    /// Past the window system: any event is possible, and nothing waits.
    void send(QEvent::Type type, const QVector<QPointF> &fingers)
    {
        QTouchEvent event(type, touch.device(), Qt::NoModifier, Qt::TouchPointMoved,
                          m_sent.moveTo(fingers, type));
        QApplication::sendEvent(view.viewport(), &event);
    }

    GrabbingItem *item = new GrabbingItem;
    bool exposed = false;

private:
    Fingers m_sent;
};

const QVector<QPoint> positions{{200, 200}, {300, 200}, {400, 250}};

QVector<QPoint> fingers(int count)
{
    return positions.mid(0, count);
}

struct NamedTransform
{
    const char *name;
    QTransform transform;
};

QVector<NamedTransform> viewTransforms()
{
    return {{"plain view", {}},
            {"turned and scaled view", QTransform().rotate(90).scale(2, 2)},
            {"mirrored view", QTransform::fromScale(-1, 1)}};
}

void addFingersAndViews()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QTransform>("transform");
    for (int count = 1; count <= 3; ++count) {
        for (const NamedTransform &view : viewTransforms()) {
            QTest::addRow("%d fingers, %s", count, view.name) << count << view.transform;
        }
    }
}

} // namespace

class TestGestureDelivery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pan_data();
    void pan();
    void panByMouse();
    void swipe_data();
    void swipe();
    void swipeBackIsCancelled_data();
    void swipeBackIsCancelled();
    void pinch_data();
    void pinch();
    void thirdFingerEndsPinch();
    void touchAfterCancelledTouch();
    void randomTouchesLeaveRecognizersUsable();
};

void TestGestureDelivery::initTestCase()
{
    QVERIFY(KORA::koraGesturesInit());
}

void TestGestureDelivery::pan_data()
{
    addFingersAndViews();
}

void TestGestureDelivery::pan()
{
    QFETCH(int, count);
    QFETCH(QTransform, transform);
    Panel panel(transform);
    QVERIFY(panel.exposed);
    panel.item->grabGesture(PanGestureRecognizer::type(count));
    QPointF start;
    QPointF offset;
    QPointF sumOfDeltas;
    panel.item->look = [&](QGestureEvent *event, QGesture *gesture) {
        QCOMPARE(event->gesture(PanGestureRecognizer::type(count)), gesture);
        const auto *pan = qobject_cast<PanGesture *>(gesture);
        QVERIFY(pan);
        start = pan->startPoint();
        offset = pan->offset();
        sumOfDeltas += pan->delta();
    };

    panel.touch.press(fingers(count));
    panel.touch.move({10, 10});
    QCOMPARE(panel.item->states, States{});
    panel.touch.move({1, 0});
    panel.touch.move({30, -20});
    QCOMPARE(panel.item->states, (States{Started, Updated}));
    QCOMPARE(offset, QPointF(41, -10));
    panel.touch.release();
    QCOMPARE(panel.item->states, (States{Started, Updated, Finished}));
    QCOMPARE(start, QPointF(panel.view.viewport()->mapToGlobal(positions.first())));
    QCOMPARE(offset, QPointF(41, -10));
    QCOMPARE(sumOfDeltas, QPointF(31, -20)); // the first 10 pixels were used up by the tolerance
}

void TestGestureDelivery::panByMouse()
{
    Panel panel;
    QVERIFY(panel.exposed);
    panel.item->grabGesture(PanGestureRecognizer::type(1));
    QPointF offset;
    panel.item->look = [&](QGestureEvent *, QGesture *gesture) {
        offset = static_cast<PanGesture *>(gesture)->offset();
    };
    QWindow *window = panel.view.windowHandle();

    QTest::mousePress(window, Qt::LeftButton, {}, {100, 100});
    QTest::mouseMove(window, {101, 100});
    QTest::mouseMove(window, {140, 90});
    QTest::mouseRelease(window, Qt::LeftButton, {}, {140, 90});
    QCOMPARE(panel.item->states, (States{Started, Updated, Finished}));
    QCOMPARE(offset, QPointF(40, -10));

    panel.item->states.clear();
    QTest::mousePress(window, Qt::LeftButton, {}, {300, 300});
    QTest::mouseMove(window, {340, 300});
    QTest::mouseMove(window, {300, 300});
    QTest::mouseRelease(window, Qt::LeftButton, {}, {300, 300});
    QCOMPARE(panel.item->states, (States{Started, Updated, Canceled}));
}

void TestGestureDelivery::swipe_data()
{
    addFingersAndViews();
}

void TestGestureDelivery::swipe()
{
    QFETCH(int, count);
    QFETCH(QTransform, transform);
    Panel panel(transform);
    QVERIFY(panel.exposed);
    panel.item->grabGesture(SwipeGestureRecognizer::type(count));
    const auto direction = [](qreal component, auto negative, auto positive) {
        return component < 0 ? negative : positive;
    };
    // The stroke on the screen, and as the scene sees it.
    const QPointF stroke(60, -20);
    const QPointF inScene = transform.inverted().map(stroke);
    panel.item->look = [&](QGestureEvent *event, QGesture *gesture) {
        const auto *swipe = qobject_cast<SwipeGesture *>(gesture);
        QVERIFY(swipe);
        if (swipe->state() == Finished) {
            return; // its angle is checked while it moves
        }
        QCOMPARE(swipe->horizontalDirection(), SwipeGesture::Right);
        QCOMPARE(swipe->verticalDirection(), SwipeGesture::Up);
        QCOMPARE(swipe->swipeAngle(), QLineF(QPointF(), stroke).angle());
        QCOMPARE(swipe->mapSwipeAngleToGraphicsObject(event, panel.item), QLineF(QPointF(), inScene).angle());
        QCOMPARE(swipe->mapHorizontalDirectionToGraphicsScene(event),
                 direction(inScene.x(), SwipeGesture::Left, SwipeGesture::Right));
        QCOMPARE(swipe->mapVerticalDirectionToGraphicsObject(event, panel.item),
                 direction(inScene.y(), SwipeGesture::Up, SwipeGesture::Down));
    };

    panel.touch.press(fingers(count));
    panel.touch.move({0, 0});
    panel.touch.move({30, -10});
    QCOMPARE(panel.item->states, States{});
    panel.touch.move({30, -10});
    panel.touch.move({3, -1}); // a short step of a running swipe is an update
    panel.touch.release();
    QCOMPARE(panel.item->states, (States{Started, Updated, Finished}));
}

void TestGestureDelivery::swipeBackIsCancelled_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("one finger") << 1;
    QTest::newRow("two fingers") << 2;
    QTest::newRow("three fingers") << 3;
}

void TestGestureDelivery::swipeBackIsCancelled()
{
    QFETCH(int, count);
    Panel panel;
    QVERIFY(panel.exposed);
    panel.item->grabGesture(SwipeGestureRecognizer::type(count));
    const auto stroke = [&panel, count](const QPoint &second) {
        panel.item->states.clear();
        panel.touch.press(fingers(count));
        panel.touch.move({0, 0});
        panel.touch.move({60, 0});
        panel.touch.move(second);
        panel.touch.release();
        return panel.item->states;
    };
    QCOMPARE(stroke({-51, 0}), (States{Started, Canceled}));
    QCOMPARE(stroke({60, 0}), (States{Started, Updated, Finished})); // and the next touch swipes again
}

void TestGestureDelivery::pinch_data()
{
    QTest::addColumn<QTransform>("transform");
    for (const NamedTransform &view : viewTransforms()) {
        QTest::addRow("%s", view.name) << view.transform;
    }
}

void TestGestureDelivery::pinch()
{
    QFETCH(QTransform, transform);
    const SilentLog silence;
    Panel panel(transform);
    QVERIFY(panel.exposed);
    panel.item->grabGesture(PinchGestureRecognizer::type());
    QVector<qreal> scales;
    QVector<qreal> rotations;
    QPointF center;
    panel.item->look = [&](QGestureEvent *, QGesture *gesture) {
        const auto *pinch = qobject_cast<PinchGesture *>(gesture);
        QVERIFY(pinch);
        scales.append(pinch->totalScaleFactor());
        rotations.append(pinch->rotationAngle());
        center = pinch->centerPoint();
    };

    panel.touch.press({{200, 200}, {300, 200}});
    panel.touch.moveTo({{200, 200}, {300, 200}});
    panel.touch.moveTo({{200, 200}, {350, 200}});
    panel.touch.moveTo({{200, 200}, {200, 350}});
    panel.touch.release();
    QCOMPARE(panel.item->states, (States{Started, Updated, Updated, Finished}));
    QCOMPARE(scales, (QVector<qreal>{1, 1.5, 1.5, 1.5}));
    QCOMPARE(rotations, (QVector<qreal>{0, 0, 90, 90}));
    const QPointF expected = panel.item->mapFromScene(panel.view.mapToScene(QPoint(200, 275)));
    QVERIFY2(QLineF(center, expected).length() < 1, qPrintable(QString::number(center.x())));
}

void TestGestureDelivery::thirdFingerEndsPinch()
{
    const SilentLog silence;
    Panel panel;
    QVERIFY(panel.exposed);
    panel.item->grabGesture(PinchGestureRecognizer::type());
    panel.touch.press(fingers(2));
    panel.touch.move({5, 5});
    panel.touch.pressOneMore(positions.at(2));
    QCOMPARE(panel.item->states, (States{Started, Finished}));
    panel.touch.release();
    QCOMPARE(panel.item->states.size(), 2);
}

// Items are not told of a cancelled touch: what it left behind must not spoil the next one.
void TestGestureDelivery::touchAfterCancelledTouch()
{
    const SilentLog silence;
    Panel panel;
    QVERIFY(panel.exposed);
    for (const Qt::GestureType type :
         {PanGestureRecognizer::type(2), SwipeGestureRecognizer::type(2), PinchGestureRecognizer::type()}) {
        panel.item->grabGesture(type);
    }
    QHash<Qt::GestureType, States> states;
    qreal totalScale = 0;
    QPointF centerStep;
    panel.item->look = [&](QGestureEvent *, QGesture *gesture) {
        states[gesture->gestureType()].append(gesture->state());
        if (const auto *pinch = qobject_cast<PinchGesture *>(gesture)) {
            totalScale = pinch->totalScaleFactor();
            centerStep = pinch->centerPoint() - pinch->lastCenterPoint();
        }
    };

    const QVector<QPointF> first{{300, 300}, {350, 300}};
    panel.send(QEvent::TouchBegin, first);
    panel.send(QEvent::TouchUpdate, first);
    panel.send(QEvent::TouchUpdate, {{200, 300}, {280, 300}});
    panel.send(QEvent::TouchCancel, {{200, 300}, {280, 300}});
    states.clear();

    const QVector<QPointF> second{{50, 50}, {150, 50}};
    panel.send(QEvent::TouchBegin, second);
    panel.send(QEvent::TouchUpdate, second);
    QCOMPARE(totalScale, 1.0);
    QCOMPARE(centerStep, QPointF());
    panel.send(QEvent::TouchUpdate, {{150, 50}, {250, 50}});
    panel.send(QEvent::TouchEnd, {{150, 50}, {250, 50}});
    QCOMPARE(states.value(PanGestureRecognizer::type(2)), (States{Started, Finished}));
    QCOMPARE(states.value(SwipeGestureRecognizer::type(2)), (States{Started, Updated, Finished}));
    QCOMPARE(states.value(PinchGestureRecognizer::type()), (States{Started, Updated, Finished}));
}

// KORA_TEST_GESTURE_EVENTS sets the number of events, KORA_TEST_SEED the seed.
void TestGestureDelivery::randomTouchesLeaveRecognizersUsable()
{
    const int events = qEnvironmentVariableIsSet("KORA_TEST_GESTURE_EVENTS")
                           ? qEnvironmentVariableIntValue("KORA_TEST_GESTURE_EVENTS")
                           : 20000;
    QRandomGenerator random(static_cast<quint32>(qEnvironmentVariableIntValue("KORA_TEST_SEED")) + 1);
    const SilentLog silence;
    Panel panel;
    QVERIFY(panel.exposed);
    for (int touches = 1; touches <= 3; ++touches) {
        panel.item->grabGesture(PanGestureRecognizer::type(touches));
        panel.item->grabGesture(SwipeGestureRecognizer::type(touches));
    }
    panel.item->grabGesture(PinchGestureRecognizer::type());

    const QVector<QEvent::Type> types{QEvent::TouchBegin,  QEvent::TouchUpdate, QEvent::TouchUpdate,
                                      QEvent::TouchUpdate, QEvent::TouchUpdate, QEvent::TouchUpdate,
                                      QEvent::TouchEnd,    QEvent::TouchCancel};
    QVector<QPointF> last{{100, 100}};
    for (int i = 0; i < events; ++i) {
        // Mostly small steps of the same fingers, or no gesture would ever run.
        if (random.bounded(8) == 0) {
            last.resize(random.bounded(1, 5)); // Qt itself needs a point
        }
        for (QPointF &position : last) {
            position += QPointF(random.bounded(80) - 40, random.bounded(80) - 40);
            if (!panel.view.viewport()->rect().contains(position.toPoint(), true)) {
                position = QPointF(random.bounded(1, 390), random.bounded(1, 390));
            }
        }
        panel.send(types.at(random.bounded(types.size())), last);
    }
    const int seen = panel.item->states.size();
    QVERIFY2(seen > events / 100, qPrintable(QString::number(seen)));
    QVERIFY(panel.item->states.contains(Canceled) && panel.item->states.contains(Finished));

    // Two plain touches of every number of fingers: what the first still has to clean up, the second has not.
    for (int count = 1; count <= 3; ++count) {
        const QVector<QPointF> start = QVector<QPointF>{{50, 50}, {150, 50}, {250, 50}}.mid(0, count);
        QHash<Qt::GestureType, States> states;
        for (int touch = 0; touch < 2; ++touch) {
            states.clear();
            panel.item->look = [&states](QGestureEvent *, QGesture *gesture) {
                states[gesture->gestureType()].append(gesture->state());
            };
            QVector<QPointF> now = start;
            panel.send(QEvent::TouchBegin, now);
            panel.send(QEvent::TouchUpdate, now);
            for (int step = 0; step < 3; ++step) {
                for (QPointF &position : now) {
                    position += QPointF(60, 60);
                }
                panel.send(QEvent::TouchUpdate, now);
            }
            panel.send(QEvent::TouchEnd, now);
        }
        const States whole{Started, Updated, Updated, Finished};
        QCOMPARE(states.value(PanGestureRecognizer::type(count)), whole);
        QCOMPARE(states.value(SwipeGestureRecognizer::type(count)), whole);
        QCOMPARE(states.value(PinchGestureRecognizer::type()),
                 count == 2 ? States{Started} + whole.mid(1, 1) + whole.mid(1) : States{});
    }
}

KORA_TEST_MAIN(TestGestureDelivery)
#include "tst_gesturedelivery.moc"
