// SPDX-License-Identifier: Apache-2.0
#include <QtTest/QTest>

#include <QtCore/QRandomGenerator>
#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsSceneMouseEvent>
#include <QtWidgets/QGraphicsView>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include <kora/gestures/gestures.h>
#include <kora/gestures/pangesture_p.h>
#include <kora/gestures/pangesturerecognizer_p.h>
#include <kora/gestures/pinchgesture_p.h>
#include <kora/gestures/pinchgesturerecognizer_p.h>
#include <kora/gestures/swipegesture_p.h>
#include <kora/gestures/swipegesturerecognizer_p.h>
#include <support/logrecorder.h>
#include <support/testmain.h>

#include "fingers.h"
#include "silentlog.h"

using KORA::PanGesture;
using KORA::PanGestureRecognizer;
using KORA::PinchGesture;
using KORA::PinchGestureRecognizer;
using KORA::SwipeGesture;
using KORA::SwipeGestureRecognizer;
using KORA::INTERNAL::PanGesturePrivateAccessor;
using KORA::INTERNAL::PinchGesturePrivateAccessor;
using KORA::INTERNAL::SwipeGesturePrivateAccessor;

namespace {

constexpr qreal NotANumber = std::numeric_limits<qreal>::quiet_NaN();

// Positions are measured from here: a swipe takes a finger at (0, 0) for one that it has not seen.
const QPointF origin(1000, 1000);

const QMap<QString, QEvent::Type> eventNames{
    {QStringLiteral("begin"), QEvent::TouchBegin},
    {QStringLiteral("update"), QEvent::TouchUpdate},
    {QStringLiteral("end"), QEvent::TouchEnd},
    {QStringLiteral("press"), QEvent::GraphicsSceneMousePress},
    {QStringLiteral("move"), QEvent::GraphicsSceneMouseMove},
    {QStringLiteral("release"), QEvent::GraphicsSceneMouseRelease},
    {QStringLiteral("doubleclick"), QEvent::GraphicsSceneMouseDoubleClick},
    {QStringLiteral("widgetdoubleclick"), QEvent::MouseButtonDblClick},
};

QString resultName(QGestureRecognizer::Result result)
{
    static const QHash<int, QString> names{{QGestureRecognizer::Ignore, QStringLiteral("ignore")},
                                           {QGestureRecognizer::MayBeGesture, QStringLiteral("maybe")},
                                           {QGestureRecognizer::TriggerGesture, QStringLiteral("trigger")},
                                           {QGestureRecognizer::FinishGesture, QStringLiteral("finish")},
                                           {QGestureRecognizer::CancelGesture, QStringLiteral("cancel")}};
    return names.value(result);
}

class Item : public QGraphicsObject
{
public:
    QRectF boundingRect() const override { return {0, 0, 100, 100}; }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}
};

// A recogniser with one of its gestures, fed with events as Qt's gesture manager does. Nobody sets the
// gesture's state here: it stays NoGesture.
template<typename Gesture>
class Driver
{
public:
    explicit Driver(QGestureRecognizer *recognizer)
        : m_recognizer(recognizer)
        , m_gesture(recognizer->create(nullptr))
    {}

    Gesture *gesture() { return static_cast<Gesture *>(m_gesture.get()); }
    void reset() { m_recognizer->reset(m_gesture.get()); }

    QGestureRecognizer::Result send(QEvent::Type type, const QVector<QPointF> &positions)
    {
        if (type == QEvent::TouchBegin || type == QEvent::TouchUpdate || type == QEvent::TouchEnd) {
            QTouchEvent event(type, nullptr, Qt::NoModifier, {}, m_fingers.moveTo(positions, type));
            return m_recognizer->recognize(m_gesture.get(), &m_item, &event);
        }
        QGraphicsSceneMouseEvent event(type);
        event.setScreenPos((positions.value(0) + origin).toPoint());
        return m_recognizer->recognize(m_gesture.get(), &m_item, &event);
    }

    /// Steps such as "begin 0,0 100,0 maybe": event, position of each finger or of the mouse, expected
    /// result.
    void run(const QStringList &steps)
    {
        for (const QString &step : steps) {
            QStringList words = step.split(QLatin1Char(' '));
            const QString event = words.takeFirst();
            const QString expected = words.takeLast();
            QVERIFY2(eventNames.contains(event), qPrintable(step));
            QVector<QPointF> positions;
            for (const QString &word : words) {
                positions.append({word.section(QLatin1Char(','), 0, 0).toDouble(),
                                  word.section(QLatin1Char(','), 1).toDouble()});
            }
            const QString result = resultName(send(eventNames.value(event), positions));
            QVERIFY2(result == expected, qPrintable(step + QStringLiteral(", but was ") + result));
        }
    }

    void run(const char *steps) { run(QString::fromLatin1(steps).split(QStringLiteral("; "))); }

private:
    std::unique_ptr<QGestureRecognizer> m_recognizer;
    std::unique_ptr<QGesture> m_gesture;
    Item m_item;
    Fingers m_fingers{origin};
};

QString debugText(const QGesture *gesture)
{
    QString text;
    QDebug debug(&text);
    if (auto *pan = qobject_cast<const PanGesture *>(gesture)) {
        debug << pan;
    } else if (auto *swipe = qobject_cast<const SwipeGesture *>(gesture)) {
        debug << swipe;
    } else {
        debug << qobject_cast<const PinchGesture *>(gesture);
    }
    return text.trimmed();
}

// All numbers that the gesture's properties hold.
QVector<qreal> numbersOf(const QGesture *gesture)
{
    QVector<qreal> numbers;
    const QMetaObject *meta = gesture->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QVariant value = meta->property(i).read(gesture);
        if (value.userType() == QMetaType::QPointF) {
            numbers << value.toPointF().x() << value.toPointF().y();
        } else {
            numbers << value.toDouble();
        }
    }
    return numbers;
}

QString directionNames(SwipeGesture::SwipeDirection horizontal, SwipeGesture::SwipeDirection vertical)
{
    const QMetaEnum meta = QMetaEnum::fromType<SwipeGesture::SwipeDirection>();
    return QStringLiteral("%1 %2").arg(QLatin1String(meta.valueToKey(horizontal)),
                                       QLatin1String(meta.valueToKey(vertical)));
}

} // namespace

class TestGestureRecognizers : public QObject
{
    Q_OBJECT

private slots:
    void typesAreFixed();
    void debugForms();
    void pan_data();
    void pan();
    void swipe_data();
    void swipe();
    void swipeValues();
    void swipeReset();
    void swipeMapping_data();
    void swipeMapping();
    void swipesAlongATurnedAxis();
    void pinch_data();
    void pinch();
    void pinchValues();
    void pinchJumpKeepsScale();
    void swipeTellsItsStage();
    void swipesThatTakeLongerAreSlower();
    void noGestureIsStreamed();
    void pinchLog();
    void foreignTargetsAreIgnored();
    void randomEventsLeaveNoNaN();
};

void TestGestureRecognizers::typesAreFixed()
{
    const auto type = [](QGestureRecognizer &&recognizer) {
        const std::unique_ptr<QGesture> gesture(recognizer.create(nullptr));
        const auto *pan = qobject_cast<PanGesture *>(gesture.get());
        const auto *swipe = qobject_cast<SwipeGesture *>(gesture.get());
        const auto *pinch = qobject_cast<PinchGesture *>(gesture.get());
        return static_cast<int>(pan     ? pan->gestureType()
                                : swipe ? swipe->gestureType()
                                        : pinch->gestureType());
    };
    for (int touches = 1; touches <= 3; ++touches) {
        QCOMPARE(type(PanGestureRecognizer(touches)), 256 + touches);
        QCOMPARE(type(SwipeGestureRecognizer(touches)), 259 + touches);
    }
    QCOMPARE(type(PanGestureRecognizer(4)), 1256);
    QCOMPARE(type(SwipeGestureRecognizer(0)), 1256);
    QCOMPARE(type(PinchGestureRecognizer()), 263);
}

void TestGestureRecognizers::debugForms()
{
    PanGesture pan(2);
    PanGesturePrivateAccessor::priv(&pan)->startPoint = {1, 2};
    PanGesturePrivateAccessor::priv(&pan)->offset = {5, 7};
    PanGesturePrivateAccessor::priv(&pan)->lastOffset = {4, 4};
    pan.setHotSpot({8, 9});
    QCOMPARE(debugText(&pan),
             QStringLiteral("KORA::PanGesture(state=NoGesture,hotSpot=QPointF(8,9),startPoint=QPointF(1,2),"
                            "lastOffset=QPointF(4,4),offset=QPointF(5,7),delta=QPointF(1,3))"));

    SwipeGesture swipe(1);
    SwipeGesturePrivateAccessor::priv(&swipe)->horizontalDirection = SwipeGesture::Left;
    SwipeGesturePrivateAccessor::priv(&swipe)->swipeAngle = 180;
    QCOMPARE(
        debugText(&swipe),
        QStringLiteral("KORA::SwipeGesture(state=NoGesture,hotSpot=QPointF(0,0),startPoint=QPointF(0,0),"
                       "horizontalDirection=Left,verticalDirection=NoDirection,swipeAngle=180,velocity=1)"));

    PinchGesture pinch;
    PinchGesturePrivateAccessor::priv(&pinch)->changeFlags = PinchGesture::CenterPointChanged;
    QVERIFY(debugText(&pinch).startsWith(
        QStringLiteral("KORA::PinchGesture(state=NoGesture,hotSpot=QPointF(0,0),totalChangeFlags=")));
    QVERIFY(debugText(&pinch).contains(QStringLiteral("CenterPointChanged),startCenterPoint=")));
    QVERIFY(debugText(&pinch).endsWith(
        QStringLiteral(",startCenterPoint=QPointF(0,0),lastCenterPoint=QPointF(0,0),centerPoint=QPointF(0,0),"
                       "totalScaleFactor=1,lastScaleFactor=1,scaleFactor=1,"
                       "totalRotationAngle=0,lastRotationAngle=0,rotationAngle=0)")));
}

void TestGestureRecognizers::pan_data()
{
    QTest::addColumn<int>("touches");
    QTest::addColumn<QByteArray>("steps");
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<QPointF>("delta");
    const auto row = [](const char *name, int touches, const char *steps, QPointF offset, QPointF delta) {
        QTest::newRow(name) << touches << QByteArray(steps) << offset << delta;
    };

    row("one finger, 10 pixels", 1, "begin 0,0 maybe; update 10,-10 maybe", {10, -10}, {10, -10});
    row("one finger, beyond 10 pixels to the left", 1,
        "begin 0,0 maybe; update -10,0 maybe; update -10.5,0 trigger", {-10.5, 0}, {-0.5, 0});
    row("one finger, beyond 10 pixels down and back", 1,
        "begin 0,0 maybe; update 0,11 trigger; update 0,4 maybe", {0, 4}, {0, -7});
    row("two fingers count by their mean", 2,
        "begin 0,0 100,0 maybe; update 20,0 100,0 maybe; update 21,0 100,0 trigger", {10.5, 0}, {0.5, 0});
    row("three fingers", 3, "begin 0,0 9,0 30,50 maybe; update 12,3 21,3 42,53 trigger", {12, 3}, {12, 3});
    row("other numbers of fingers are ignored", 2,
        "begin 0,0 maybe; update 90,0 ignore; update 0,0 0,0 0,0 ignore; update ignore", {}, {});
    row("events without points", 1, "begin ignore; update ignore; end cancel; begin 0,0 maybe; end cancel",
        {}, {});
    row("a position that is no number is ignored", 1,
        "begin 0,0 maybe; update 5,0 maybe; update nan,0 ignore; update 6,0 maybe", {6, 0}, {1, 0});
    row("the mouse pans at its first move", 1, "press 0,0 maybe; move 1,0 trigger; move 3,2 trigger", {3, 2},
        {2, 2});
    row("release where the mouse was pressed", 1, "press 0,0 maybe; move 5,0 trigger; release 0,0 cancel", {},
        {-5, 0});
    row("release elsewhere without a start", 1, "press 0,0 maybe; release 2,0 cancel", {2, 0}, {2, 0});
    row("mouse move without a press", 1, "move 0,0 ignore", {}, {});
    row("a double click cancels", 1, "doubleclick 0,0 cancel; widgetdoubleclick 0,0 cancel", {}, {});
    row("two fingers do not follow the mouse", 2,
        "press 0,0 ignore; move 9,0 ignore; release 9,0 ignore; doubleclick 0,0 ignore", {}, {});
}

void TestGestureRecognizers::pan()
{
    QFETCH(int, touches);
    QFETCH(QByteArray, steps);
    Driver<PanGesture> driver(new PanGestureRecognizer(touches));
    driver.run(steps);
    QTEST(driver.gesture()->offset(), "offset");
    QTEST(driver.gesture()->delta(), "delta");
}

void TestGestureRecognizers::swipe_data()
{
    QTest::addColumn<int>("touches");
    QTest::addColumn<QByteArray>("steps");
    QTest::addColumn<QString>("directions");
    const auto row = [](const char *name, int touches, const QByteArray &steps, const char *directions) {
        QTest::newRow(name) << touches << steps << QString::fromLatin1(directions);
    };
    const char *none = "NoDirection NoDirection";

    const QByteArray start = "begin 0,0 maybe; update 0,0 maybe; ";
    row("50 pixels on both axes do not swipe", 1, start + "update 50,-50 maybe", none);
    row("slow strokes swipe", 1, start + "update 40,40 maybe; update 51,40 trigger", "Right Down");
    row("a stroke along one axis sets the other direction too", 1, start + "update -51,0 trigger", "Left Up");
    row("6 pixels back do not cancel", 1, start + "update 51,51 trigger; update 45,102 trigger",
        "Right Down");
    row("7 pixels back cancel", 1, start + "update 51,51 trigger; update 44,102 cancel", "Left Down");
    row("7 pixels up cancel", 1, start + "update 51,51 trigger; update 102,44 cancel", "Right Up");
    row("a position that is no number is ignored", 1, start + "update nan,0 ignore; update 0,51 trigger",
        "Left Down");
    row("an update without a begin", 1, "update 0,0 cancel", none);
    row("events without points", 1, "begin maybe; update ignore; end cancel", none);
    row("a begin forgets an unfinished swipe", 1,
        start + "update 51,0 trigger; " + start + "update 0,51 trigger", "Left Down");

    const QByteArray two = "begin 0,0 99,0 maybe; update 0,0 99,0 maybe; ";
    row("two fingers", 2, two + "update 0,50 99,50 maybe; update 1,50 99,51 trigger", "Right Down");
    row("two fingers and one more", 2, two + "update 0,0 99,0 5,5 cancel", none);
    row("fingers may come one after the other", 2,
        "begin 0,0 maybe; update 60,0 ignore; update 0,0 99,0 maybe; update 51,0 150,0 trigger", "Right Up");

    const QByteArray three = "begin 0,0 9,0 30,50 maybe; update 0,0 9,0 30,50 maybe; ";
    row("three fingers", 3, three + "update -50,0 -41,0 -20,50 maybe; update -51,0 -42,0 -21,50 trigger",
        "Left Up");
    row("a finger lifted is ignored, one put back cancels", 3,
        three + "update 0,0 ignore; update ignore; update 0,0 9,0 cancel", none);
    row("four fingers are not supported", 4,
        "begin 0,0 0,0 0,0 0,0 maybe; update 0,0 0,0 0,0 0,0 ignore; update 99,0 99,0 99,0 99,0 ignore",
        none);

    row("the mouse", 1,
        "press 0,0 maybe; move 0,0 maybe; move 50,0 maybe; move 51,0 trigger; release 0,0 cancel",
        "Right Up");
    row("mouse move without a press", 1, "move 0,0 cancel", none);
    row("a double click cancels", 1, "doubleclick 0,0 cancel; widgetdoubleclick 0,0 cancel", none);
    row("three fingers do not follow the mouse", 3,
        "press 0,0 ignore; move 9,0 ignore; release 9,0 ignore; doubleclick 0,0 ignore", none);
}

void TestGestureRecognizers::swipe()
{
    QFETCH(int, touches);
    QFETCH(QByteArray, steps);
    Driver<SwipeGesture> driver(new SwipeGestureRecognizer(touches));
    driver.run(steps);
    QTEST(directionNames(driver.gesture()->horizontalDirection(), driver.gesture()->verticalDirection()),
          "directions");
}

void TestGestureRecognizers::swipeValues()
{
    Driver<SwipeGesture> driver(new SwipeGestureRecognizer(2));
    driver.run("begin 0,0 100,0 maybe; update 0,0 100,0 maybe");
    QCOMPARE(driver.gesture()->velocity(), 0.9); // no distance yet: only the decay

    driver.run("update 60,-60 200,0 trigger");
    QCOMPARE(driver.gesture()->startPoint(), origin);
    QCOMPARE(driver.gesture()->hotSpot(), origin);
    QCOMPARE(driver.gesture()->swipeAngle(), 45.0); // of the first finger
    const qreal distance = std::hypot(80, -30);     // of the mean
    QVERIFY(driver.gesture()->velocity() > 0.81);
    QVERIFY(driver.gesture()->velocity() <= 0.81 + distance + 1e-9);
}

void TestGestureRecognizers::swipeReset()
{
    Driver<SwipeGesture> driver(new SwipeGestureRecognizer(1));
    driver.run("begin 0,0 maybe; update 0,0 maybe; update 60,30 trigger");
    driver.reset();
    const auto *d = SwipeGesturePrivateAccessor::priv(driver.gesture());
    QCOMPARE(directionNames(d->horizontalDirection, d->verticalDirection),
             QStringLiteral("NoDirection NoDirection"));
    QCOMPARE(d->velocity, 0.0);
    QCOMPARE(d->swipeAngle, 0.0);
    QVERIFY(d->lastPositions.at(0).isNull());
    QVERIFY(!d->timer.isValid());
    QCOMPARE(d->startPoint, origin);
    QCOMPARE(d->touchCount, 1);
    driver.run("update 0,0 cancel; begin 0,0 maybe; update 0,0 maybe");
}

void TestGestureRecognizers::swipeMapping_data()
{
    QTest::addColumn<QTransform>("viewTransform");
    QTest::addColumn<QTransform>("itemTransform");
    QTest::addColumn<qreal>("sceneAngle");
    QTest::addColumn<QString>("sceneDirections");
    QTest::addColumn<qreal>("itemAngle");
    QTest::addColumn<QString>("itemDirections");

    // The stroke on the screen: to the right and down, 45 degrees.
    const QTransform same;
    QTest::newRow("aligned") << same << QTransform::fromTranslate(1000, -500) << 315.0 << "Right Down"
                             << 315.0 << "Right Down";
    QTest::newRow("view turned by 90")
        << QTransform().rotate(90) << same << 45.0 << "Right Up" << 45.0 << "Right Up";
    QTest::newRow("item turned by 90")
        << same << QTransform().rotate(90) << 315.0 << "Right Down" << 45.0 << "Right Up";
    QTest::newRow("view and item turned by 90 each")
        << QTransform().rotate(90) << QTransform().rotate(90) << 45.0 << "Right Up" << 135.0 << "Left Up";
    QTest::newRow("view turned by 90, item mirrored")
        << QTransform().rotate(90) << QTransform::fromScale(-1, 1) << 45.0 << "Right Up" << 135.0
        << "Left Up";
    QTest::newRow("item turned by 45: along its own axis")
        << same << QTransform().rotate(45) << 315.0 << "Right Down" << 0.0 << "Right NoDirection";
    QTest::newRow("view turned by -45, item mirrored")
        << QTransform().rotate(-45) << QTransform::fromScale(-1, -1) << 270.0 << "NoDirection Down" << 90.0
        << "NoDirection Up";
    QTest::newRow("mirrored view") << QTransform::fromScale(-1, 1) << same << 225.0 << "Left Down" << 225.0
                                   << "Left Down";
    QTest::newRow("uneven scales that cancel out")
        << QTransform::fromScale(3, 1) << QTransform::fromScale(1, 3) << 288.43494882292201 << "Right Down"
        << 315.0 << "Right Down";
    QTest::newRow("a scale beyond the rounding limit")
        << QTransform::fromScale(1e10, 1e10) << same << 315.0 << "Right Down" << 315.0 << "Right Down";
}

void TestGestureRecognizers::swipeMapping()
{
    QFETCH(QTransform, viewTransform);
    QFETCH(QTransform, itemTransform);
    QGraphicsScene scene(0, 0, 200, 200);
    auto *item = new Item;
    scene.addItem(item);
    item->setTransform(itemTransform);
    QGraphicsView view(&scene);
    view.setTransform(viewTransform);

    SwipeGesture swipe(1);
    auto *d = SwipeGesturePrivateAccessor::priv(&swipe);
    d->swipeAngle = 315;
    d->horizontalDirection = SwipeGesture::Right;
    d->verticalDirection = SwipeGesture::Down;
    QGestureEvent event({&swipe});
    event.setWidget(view.viewport());

    QTEST(swipe.mapSwipeAngleToGraphicsScene(&event), "sceneAngle");
    QTEST(directionNames(swipe.mapHorizontalDirectionToGraphicsScene(&event),
                         swipe.mapVerticalDirectionToGraphicsScene(&event)),
          "sceneDirections");
    // Compared from 1 on: 0 is near to no other number.
    QFETCH(qreal, itemAngle);
    QCOMPARE(std::fmod(swipe.mapSwipeAngleToGraphicsObject(&event, item) + 1e-7, 360) + 1,
             itemAngle + 1 + 1e-7);
    QTEST(directionNames(swipe.mapHorizontalDirectionToGraphicsObject(&event, item),
                         swipe.mapVerticalDirectionToGraphicsObject(&event, item)),
          "itemDirections");

    d->horizontalDirection = d->verticalDirection = SwipeGesture::NoDirection;
    QCOMPARE(swipe.mapHorizontalDirectionToGraphicsObject(&event, item), SwipeGesture::NoDirection);
    QCOMPARE(swipe.mapVerticalDirectionToGraphicsScene(nullptr), SwipeGesture::NoDirection);
    QCOMPARE(swipe.mapSwipeAngleToGraphicsObject(nullptr, nullptr), 315.0);
}

// Both directions weigh the same, whichever they are.
void TestGestureRecognizers::swipesAlongATurnedAxis()
{
    QGraphicsScene scene(0, 0, 200, 200);
    auto *item = new Item;
    scene.addItem(item);
    QGraphicsView view(&scene);
    SwipeGesture swipe(1);
    QGestureEvent event({&swipe});
    event.setWidget(view.viewport());
    auto *d = SwipeGesturePrivateAccessor::priv(&swipe);
    for (const auto horizontal : {SwipeGesture::Left, SwipeGesture::Right}) {
        for (const auto vertical : {SwipeGesture::Up, SwipeGesture::Down}) {
            const bool isFalling = (horizontal == SwipeGesture::Right) == (vertical == SwipeGesture::Down);
            item->setRotation(isFalling ? 45 : -45);
            d->horizontalDirection = horizontal;
            d->verticalDirection = vertical;
            QCOMPARE(swipe.mapHorizontalDirectionToGraphicsObject(&event, item), horizontal);
            QCOMPARE(swipe.mapVerticalDirectionToGraphicsObject(&event, item), SwipeGesture::NoDirection);
        }
    }
}

void TestGestureRecognizers::pinch_data()
{
    QTest::addColumn<QByteArray>("steps");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<qreal>("totalScale");
    const auto row = [](const char *name, const QByteArray &steps, qreal scale, qreal totalScale) {
        QTest::newRow(name) << steps << scale << totalScale;
    };
    const QByteArray start = "begin 0,0 100,0 maybe; update 0,0 100,0 trigger; ";

    row("the first update of two fingers", "begin 0,0 100,0 maybe; update 0,0 150,0 trigger", 1, 1);
    row("scales multiply", start + "update 0,0 150,0 trigger; update 0,0 75,0 trigger", 0.5, 0.75);
    row("twice as far", start + "update 0,0 200,0 trigger", 2, 2);
    row("more than twice as far", start + "update 0,0 201,0 ignore", 1, 1);
    row("a tenth", start + "update 0,0 10,0 trigger", 0.1, 0.1);
    row("less than a tenth", start + "update 0,0 9.9,0 ignore", 1, 1);
    row("both fingers on one point, and apart again",
        start
            + "update 0,0 0,0 ignore; update 0,0 0,0 ignore; update 0,0 100,0 ignore; update 0,0 120,0 "
              "trigger",
        1.2, 1.2);
    row("both fingers on one point from the start",
        "begin 5,5 5,5 maybe; update 5,5 5,5 trigger; update 5,5 5,5 ignore; end 5,5 5,5 cancel", 1, 1);
    row("other numbers of fingers begin a new sequence",
        start
            + "update 0,0 9,0 9,9 ignore; update 0,0 300,0 trigger; update ignore; update 0,0 ignore; end "
              "cancel",
        1, 1);
    row("a position that is no number", start + "update 0,0 nan,0 ignore; update 0,0 100,0 ignore", 1, 1);
    row("a begin forgets an unfinished pinch",
        start + "update 0,0 200,0 trigger; begin 0,0 50,0 maybe; update 0,0 50,0 trigger", 1, 1);
    row("the mouse does not pinch", "press 0,0 ignore; move 9,0 ignore; release 9,0 ignore", 1, 1);
}

void TestGestureRecognizers::pinch()
{
    const SilentLog silence;
    QFETCH(QByteArray, steps);
    Driver<PinchGesture> driver(new PinchGestureRecognizer);
    driver.run(steps);
    QTEST(driver.gesture()->scaleFactor(), "scale");
    QTEST(driver.gesture()->totalScaleFactor(), "totalScale");
}

void TestGestureRecognizers::pinchValues()
{
    const SilentLog silence;
    Driver<PinchGesture> driver(new PinchGestureRecognizer);
    PinchGesture *pinch = driver.gesture();
    const PinchGesture::ChangeFlags all = PinchGesture::ScaleFactorChanged
                                          | PinchGesture::RotationAngleChanged
                                          | PinchGesture::CenterPointChanged;

    // The second finger turns about the first, clockwise on the screen: by 45, then by another 45 degrees.
    driver.run("begin 0,0 100,0 maybe; update 0,0 100,100 trigger");
    QCOMPARE(pinch->rotationAngle(), 45.0);
    QCOMPARE(pinch->lastRotationAngle(), 0.0);
    QCOMPARE(pinch->totalRotationAngle(), 45.0);
    QCOMPARE(pinch->centerPoint(), QPointF(50, 50));
    QCOMPARE(pinch->lastCenterPoint(), QPointF(50, 50));
    QCOMPARE(pinch->startCenterPoint(), QPointF(50, 50));
    QCOMPARE(pinch->changeFlags(), all);

    driver.run("update 0,0 0,100 trigger");
    QCOMPARE(pinch->rotationAngle(), 90.0);
    QCOMPARE(pinch->lastRotationAngle(), 45.0);
    QCOMPARE(pinch->totalRotationAngle(), 90.0);
    QCOMPARE(pinch->centerPoint(), QPointF(0, 50));
    QCOMPARE(pinch->lastCenterPoint(), QPointF(50, 50));
    QCOMPARE(pinch->startCenterPoint(), QPointF(50, 50));

    // Up to 180 degrees, on the left of the first, then beyond, which counts from -180 degrees on.
    driver.run("update 0,0 -100,0 trigger");
    QCOMPARE(pinch->rotationAngle(), -180.0);
    driver.run("update 0,0 -100,-1 trigger");
    QVERIFY(pinch->rotationAngle() < -179 && pinch->rotationAngle() > -180);
    driver.run("update 0,0 -100,1 trigger");
    QVERIFY(pinch->rotationAngle() > 179 && pinch->rotationAngle() < 180);

    driver.run("update 0,0 ignore");
    QCOMPARE(pinch->changeFlags(), PinchGesture::ChangeFlags());
    QCOMPARE(pinch->totalChangeFlags(), all);
    const auto *d = PinchGesturePrivateAccessor::priv(pinch);
    QCOMPARE(d->startPositions[0], origin);
    QCOMPARE(d->startPositions[1], origin + QPointF(100, 100)); // of the first update with both

    driver.reset();
    QCOMPARE(d->startPositions[1], origin + QPointF(100, 100));
    QCOMPARE(debugText(pinch), debugText(std::make_unique<PinchGesture>().get()));
    QVERIFY(PinchGesturePrivateAccessor::priv(pinch)->isNewSequence);
}

// As those that look into a gesture see it.
void TestGestureRecognizers::swipeTellsItsStage()
{
    using Private = KORA::SwipeGesturePrivate;
    Driver<SwipeGesture> driver(new SwipeGestureRecognizer(1));
    const auto *d = SwipeGesturePrivateAccessor::priv(driver.gesture());
    for (const char *steps : {"begin 0,0 maybe; update 9,0 maybe", "press 0,0 maybe; move 9,0 maybe"}) {
        driver.reset();
        QCOMPARE(d->recognitionState, Private::NotRecognizing);
        driver.run(QString::fromLatin1(steps).split(QStringLiteral("; ")).mid(0, 1));
        QCOMPARE(d->recognitionState, Private::Started);
        driver.run(QString::fromLatin1(steps).split(QStringLiteral("; ")).mid(1));
        QCOMPARE(d->recognitionState, Private::Moving);
    }
}

void TestGestureRecognizers::swipesThatTakeLongerAreSlower()
{
    Driver<SwipeGesture> driver(new SwipeGestureRecognizer(1));
    driver.run("begin 0,0 maybe; update 0,0 maybe");
    QTest::qSleep(20);
    driver.run("update 40,0 maybe");
    // 40 pixels in 20 ms or more, and what is left of the velocity of 1 that a swipe begins with.
    QVERIFY2(driver.gesture()->velocity() > 0.8 && driver.gesture()->velocity() < 2.82,
             QByteArray::number(driver.gesture()->velocity()));
}

void TestGestureRecognizers::noGestureIsStreamed()
{
    const auto streamed = [](auto *gesture) {
        QString text;
        QDebug(&text).nospace() << gesture;
        return text.trimmed();
    };
    QCOMPARE(streamed(static_cast<const PanGesture *>(nullptr)), QStringLiteral("KORA::PanGesture(0x0)"));
    QCOMPARE(streamed(static_cast<const PinchGesture *>(nullptr)), QStringLiteral("KORA::PinchGesture(0x0)"));
    QCOMPARE(streamed(static_cast<const SwipeGesture *>(nullptr)), QStringLiteral("KORA::SwipeGesture(0x0)"));
}

void TestGestureRecognizers::pinchJumpKeepsScale()
{
    const SilentLog silence;
    Driver<PinchGesture> driver(new PinchGestureRecognizer);
    driver.run("begin 0,0 100,0 maybe; update 0,0 100,0 trigger; update 0,0 300,0 ignore");
    QCOMPARE(driver.gesture()->changeFlags(), PinchGesture::ChangeFlags(PinchGesture::CenterPointChanged));
    QCOMPARE(driver.gesture()->centerPoint(), QPointF(150, 0));
    QCOMPARE(driver.gesture()->scaleFactor(), 1.0);
}

void TestGestureRecognizers::pinchLog()
{
    LogRecorder log;
    Driver<PinchGesture> driver(new PinchGestureRecognizer);
    driver.run("begin 0,0 99,0 maybe; update 0,0 ignore; update 0,0 99,0 trigger");
    const QStringList texts = log.takeTexts();
    QCOMPARE(texts.size(), 4);
    QVERIFY2(texts.at(0).startsWith(QStringLiteral("debug default <>: P1 TouchPoint(0 ")),
             qPrintable(texts.at(0)));
    QVERIFY2(texts.at(1).startsWith(QStringLiteral("debug default <>: P2 TouchPoint(1 ")),
             qPrintable(texts.at(1)));
    QCOMPARE(texts.at(2), QStringLiteral("debug default <>: ANGLE QPointF(1000,1000) QPointF(1099,1000)"));
    QCOMPARE(texts.at(3),
             QStringLiteral("debug default <>: START ANGLE QPointF(1000,1000) QPointF(1099,1000)"));
}

void TestGestureRecognizers::foreignTargetsAreIgnored()
{
    PanGestureRecognizer pan(1);
    SwipeGestureRecognizer swipe(1);
    PinchGestureRecognizer pinch;
    QWidget widget;
    QTouchEvent begin(QEvent::TouchBegin, nullptr, Qt::NoModifier, {},
                      Fingers().moveTo({{9, 9}}, QEvent::TouchBegin));
    for (QGestureRecognizer *recognizer : QVector<QGestureRecognizer *>{&pan, &swipe, &pinch}) {
        const std::unique_ptr<QGesture> gesture(recognizer->create(&widget));
        QCOMPARE(recognizer->recognize(gesture.get(), &widget, &begin), QGestureRecognizer::Ignore);
        QCOMPARE(recognizer->recognize(gesture.get(), nullptr, &begin), QGestureRecognizer::Ignore);
    }
}

// KORA_TEST_GESTURE_EVENTS sets the number of events, KORA_TEST_SEED the seed.
void TestGestureRecognizers::randomEventsLeaveNoNaN()
{
    const SilentLog silence;
    const int events = qEnvironmentVariableIsSet("KORA_TEST_GESTURE_EVENTS")
                           ? qEnvironmentVariableIntValue("KORA_TEST_GESTURE_EVENTS")
                           : 30000;
    QRandomGenerator random(static_cast<quint32>(qEnvironmentVariableIntValue("KORA_TEST_SEED")) + 1);
    std::vector<std::unique_ptr<Driver<QGesture>>> drivers;
    for (int touches = 1; touches <= 4; ++touches) {
        drivers.push_back(std::make_unique<Driver<QGesture>>(new PanGestureRecognizer(touches)));
        drivers.push_back(std::make_unique<Driver<QGesture>>(new SwipeGestureRecognizer(touches)));
    }
    drivers.push_back(std::make_unique<Driver<QGesture>>(new PinchGestureRecognizer));

    QVector<QEvent::Type> types = eventNames.values().toVector();
    types.append({QEvent::TouchUpdate, QEvent::TouchUpdate, QEvent::TouchUpdate, QEvent::TouchCancel});
    const qreal infinity = std::numeric_limits<qreal>::infinity();
    const QVector<qreal> odd{
        NotANumber, infinity, -infinity, 1e300, -1e300, std::numeric_limits<qreal>::max(), 0, 0};
    const auto coordinate = [&] {
        return random.bounded(50) == 0 ? odd.at(random.bounded(odd.size()))
                                       : random.bounded(100) - origin.x();
    };
    for (int i = 0; i < events; ++i) {
        const QEvent::Type type = types.at(random.bounded(types.size()));
        const bool isTouch =
            type == QEvent::TouchBegin || type == QEvent::TouchUpdate || type == QEvent::TouchEnd;
        QVector<QPointF> positions;
        for (int count = isTouch ? random.bounded(6) : 0; count > 0; --count) {
            positions.append({coordinate(), coordinate()});
        }
        if (!isTouch) {
            positions.append(QPointF(random.bounded(200), random.bounded(200)));
        }
        const auto &driver = drivers.at(random.bounded(static_cast<quint32>(drivers.size())));
        driver->send(type, positions);
        if (random.bounded(100) == 0) {
            driver->reset();
        }
        const QVector<qreal> numbers = numbersOf(driver->gesture());
        if (std::any_of(numbers.cbegin(), numbers.cend(), [](qreal number) { return qIsNaN(number); })) {
            QFAIL(qPrintable(QStringLiteral("event %1: ").arg(i) + debugText(driver->gesture())));
        }
    }
}

KORA_TEST_MAIN(TestGestureRecognizers)
#include "tst_gesturerecognizers.moc"
