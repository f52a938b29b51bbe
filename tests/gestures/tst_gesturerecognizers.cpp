// SPDX-License-Identifier: Apache-2.0
#include <QtTest/QtTest>

#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QGraphicsSceneMouseEvent>
#include <QtWidgets/QGraphicsView>

#include <limits>
#include <memory>

#include <kora/gestures/gestures.h>
#include <kora/gestures/pangesture_p.h>
#include <kora/gestures/pangesturerecognizer_p.h>
#include <kora/gestures/pinchgesture_p.h>
#include <kora/gestures/pinchgesturerecognizer_p.h>
#include <kora/gestures/swipegesture_p.h>
#include <kora/gestures/swipegesturerecognizer_p.h>
#include <kora/log/logging.h>

#include "fingers.h"

using KORA::PanGesture;
using KORA::PanGestureRecognizer;
using KORA::PinchGesture;
using KORA::PinchGestureRecognizer;
using KORA::SwipeGesture;
using KORA::SwipeGestureRecognizer;
using KORA::INTERNAL::PanGesturePrivateAccessor;
using KORA::INTERNAL::PinchGesturePrivateAccessor;
using KORA::INTERNAL::SwipeGesturePrivateAccessor;
using Result = QGestureRecognizer::Result;

Q_DECLARE_METATYPE(QTransform)

namespace {

constexpr QEvent::Type Begin = QEvent::TouchBegin;
constexpr QEvent::Type Update = QEvent::TouchUpdate;
constexpr QEvent::Type End = QEvent::TouchEnd;
constexpr QEvent::Type Press = QEvent::GraphicsSceneMousePress;
constexpr QEvent::Type Move = QEvent::GraphicsSceneMouseMove;
constexpr QEvent::Type Release = QEvent::GraphicsSceneMouseRelease;
constexpr QEvent::Type DoubleClick = QEvent::GraphicsSceneMouseDoubleClick;

constexpr Result Ignored = QGestureRecognizer::Ignore;
constexpr Result MayBe = QGestureRecognizer::MayBeGesture;
constexpr Result Trigger = QGestureRecognizer::TriggerGesture;
constexpr Result Cancel = QGestureRecognizer::CancelGesture;

constexpr qreal NotANumber = std::numeric_limits<qreal>::quiet_NaN();

struct Step
{
    QEvent::Type event;
    QVector<QPointF> positions; // of the fingers, or of the mouse
    Result expected;
};
using Steps = QVector<Step>;

class Item : public QGraphicsObject
{
public:
    QRectF boundingRect() const override { return {0, 0, 100, 100}; }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}
};

// A recogniser with one of its gestures, fed with events as Qt's gesture manager does. Nobody sets the gesture's
// state here: it stays NoGesture.
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

    Result send(QEvent::Type type, const QVector<QPointF> &positions)
    {
        if (type == Begin || type == Update || type == End) {
            QTouchEvent event(type, nullptr, Qt::NoModifier, {}, m_fingers.moveTo(positions, type));
            return send(&event);
        }
        QGraphicsSceneMouseEvent event(type);
        event.setScreenPos(positions.value(0).toPoint());
        return send(&event);
    }

    Result send(QEvent *event) { return m_recognizer->recognize(m_gesture.get(), &m_item, event); }

    void run(const Steps &steps)
    {
        for (int i = 0; i < steps.size(); ++i) {
            const Result result = send(steps.at(i).event, steps.at(i).positions);
            QVERIFY2(result == steps.at(i).expected,
                     qPrintable(QStringLiteral("step %1: result %2, expected %3")
                                    .arg(i)
                                    .arg(static_cast<int>(result))
                                    .arg(static_cast<int>(steps.at(i).expected))));
        }
    }

private:
    std::unique_ptr<QGestureRecognizer> m_recognizer;
    std::unique_ptr<QGesture> m_gesture;
    Item m_item;
    Fingers m_fingers;
};

QVector<QPointF> moved(QVector<QPointF> positions, const QPointF &by)
{
    for (QPointF &position : positions) {
        position += by;
    }
    return positions;
}

const QVector<QPointF> one{{100, 100}};
const QVector<QPointF> two{{100, 100}, {200, 100}};
const QVector<QPointF> three{{100, 100}, {200, 100}, {300, 150}};

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
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QVariant value = meta->property(i).read(gesture);
        if (value.userType() == QMetaType::QPointF) {
            numbers << value.toPointF().x() << value.toPointF().y();
        } else {
            numbers << value.toDouble();
        }
    }
    return numbers;
}

} // namespace

Q_DECLARE_METATYPE(Steps)

class TestGestureRecognizers : public QObject
{
    Q_OBJECT

private slots:
    void typesAndProperties_data();
    void typesAndProperties();
    void debugForms();
    void pan_data();
    void pan();
    void swipe_data();
    void swipe();
    void swipeValues();
    void swipeReset();
    void swipeMapping_data();
    void swipeMapping();
    void pinch_data();
    void pinch();
    void pinchValues();
    void pinchJumpKeepsScale();
    void pinchLog();
    void foreignTargetsAreIgnored();
    void randomEventsLeaveNoNaN();
};

void TestGestureRecognizers::typesAndProperties_data()
{
    QTest::addColumn<QGestureRecognizer *>("recognizer");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("properties");
    const QByteArray pan = "startPoint lastOffset offset delta";
    const QByteArray swipe = "startPoint horizontalDirection verticalDirection swipeAngle velocity";
    for (int touches = 1; touches <= 3; ++touches) {
        QTest::addRow("pan %d", touches)
            << static_cast<QGestureRecognizer *>(new PanGestureRecognizer(touches)) << 256 + touches << pan;
        QTest::addRow("swipe %d", touches)
            << static_cast<QGestureRecognizer *>(new SwipeGestureRecognizer(touches)) << 259 + touches
            << swipe;
    }
    QTest::addRow("pan 4") << static_cast<QGestureRecognizer *>(new PanGestureRecognizer(4)) << 1256 << pan;
    QTest::addRow("swipe 0") << static_cast<QGestureRecognizer *>(new SwipeGestureRecognizer(0)) << 1256
                             << swipe;
    QTest::addRow("pinch") << static_cast<QGestureRecognizer *>(new PinchGestureRecognizer) << 263
                           << QByteArray("totalChangeFlags changeFlags startCenterPoint lastCenterPoint "
                                         "centerPoint totalScaleFactor lastScaleFactor scaleFactor "
                                         "totalRotationAngle lastRotationAngle rotationAngle");
}

void TestGestureRecognizers::typesAndProperties()
{
    QFETCH(QGestureRecognizer *, recognizer);
    QFETCH(int, type);
    const std::unique_ptr<QGestureRecognizer> owner(recognizer);
    const std::unique_ptr<QGesture> gesture(recognizer->create(this));
    QVERIFY(!gesture->parent());

    if (auto *pan = qobject_cast<PanGesture *>(gesture.get())) {
        QCOMPARE(static_cast<int>(pan->gestureType()), type);
    } else if (auto *swipe = qobject_cast<SwipeGesture *>(gesture.get())) {
        QCOMPARE(static_cast<int>(swipe->gestureType()), type);
    } else {
        QCOMPARE(static_cast<int>(qobject_cast<PinchGesture *>(gesture.get())->gestureType()), type);
    }
    const QMetaObject *meta = gesture->metaObject();
    QList<QByteArray> properties;
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        QVERIFY(!meta->property(i).isWritable());
        properties.append(meta->property(i).name());
    }
    QTEST(properties.join(' '), "properties");
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
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<QPointF>("delta");

    QTest::newRow("one finger within 10 pixels on both axes")
        << 1 << Steps{{Begin, one, MayBe}, {Update, moved(one, {10, -10}), MayBe}} << QPointF(10, -10)
        << QPointF(10, -10);
    QTest::newRow("one finger beyond 10 pixels to the left")
        << 1
        << Steps{{Begin, one, MayBe},
                 {Update, moved(one, {-10, 0}), MayBe},
                 {Update, moved(one, {-10.5, 0}), Trigger}}
        << QPointF(-10.5, 0) << QPointF(-0.5, 0);
    QTest::newRow("one finger beyond 10 pixels downwards and back")
        << 1
        << Steps{{Begin, one, MayBe},
                 {Update, moved(one, {0, 11}), Trigger},
                 {Update, moved(one, {0, 4}), MayBe}}
        << QPointF(0, 4) << QPointF(0, -7);
    QTest::newRow("two fingers count by their mean") << 2
                                                     << Steps{{Begin, two, MayBe},
                                                              {Update, {{120, 100}, {200, 100}}, MayBe},
                                                              {Update, {{121, 100}, {200, 100}}, Trigger}}
                                                     << QPointF(10.5, 0) << QPointF(0.5, 0);
    QTest::newRow("three fingers") << 3
                                   << Steps{{Begin, three, MayBe}, {Update, moved(three, {12, 3}), Trigger}}
                                   << QPointF(12, 3) << QPointF(12, 3);
    QTest::newRow("other numbers of fingers are ignored") << 2
                                                          << Steps{{Begin, one, MayBe},
                                                                   {Update, moved(one, {90, 0}), Ignored},
                                                                   {Update, three, Ignored},
                                                                   {Update, {}, Ignored}}
                                                          << QPointF() << QPointF();
    QTest::newRow("touch events without points") << 1
                                                 << Steps{{Begin, {}, Ignored},
                                                          {Update, {}, Ignored},
                                                          {End, {}, Cancel},
                                                          {Begin, one, MayBe},
                                                          {End, {}, Cancel}}
                                                 << QPointF() << QPointF();
    QTest::newRow("a position that is no number is ignored") << 1
                                                             << Steps{{Begin, one, MayBe},
                                                                      {Update, moved(one, {5, 0}), MayBe},
                                                                      {Update, {{NotANumber, 0}}, Ignored},
                                                                      {Update, moved(one, {6, 0}), MayBe}}
                                                             << QPointF(6, 0) << QPointF(1, 0);
    QTest::newRow("the mouse pans at its first move") << 1
                                                      << Steps{{Press, one, MayBe},
                                                               {Move, moved(one, {1, 0}), Trigger},
                                                               {Move, moved(one, {3, 2}), Trigger}}
                                                      << QPointF(3, 2) << QPointF(2, 2);
    QTest::newRow("mouse release where it was pressed")
        << 1 << Steps{{Press, one, MayBe}, {Move, moved(one, {5, 0}), Trigger}, {Release, one, Cancel}}
        << QPointF() << QPointF(-5, 0);
    QTest::newRow("mouse release elsewhere without a start")
        << 1 << Steps{{Press, one, MayBe}, {Release, moved(one, {2, 0}), Cancel}} << QPointF(2, 0)
        << QPointF(2, 0);
    QTest::newRow("mouse move without a press") << 1 << Steps{{Move, one, Ignored}} << QPointF() << QPointF();
    QTest::newRow("a double click cancels")
        << 1 << Steps{{DoubleClick, one, Cancel}, {QEvent::MouseButtonDblClick, one, Cancel}} << QPointF()
        << QPointF();
    QTest::newRow("two fingers do not follow the mouse") << 2
                                                         << Steps{{Press, one, Ignored},
                                                                  {Move, two, Ignored},
                                                                  {Release, two, Ignored},
                                                                  {DoubleClick, one, Ignored}}
                                                         << QPointF() << QPointF();
}

void TestGestureRecognizers::pan()
{
    QFETCH(int, touches);
    QFETCH(Steps, steps);
    Driver<PanGesture> driver(new PanGestureRecognizer(touches));
    driver.run(steps);
    QTEST(driver.gesture()->offset(), "offset");
    QTEST(driver.gesture()->delta(), "delta");
}

void TestGestureRecognizers::swipe_data()
{
    QTest::addColumn<int>("touches");
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<int>("horizontal");
    QTest::addColumn<int>("vertical");
    const auto none = static_cast<int>(SwipeGesture::NoDirection);
    const auto left = static_cast<int>(SwipeGesture::Left);
    const auto right = static_cast<int>(SwipeGesture::Right);
    const auto up = static_cast<int>(SwipeGesture::Up);
    const auto down = static_cast<int>(SwipeGesture::Down);

    QTest::newRow("50 pixels on both axes do not swipe")
        << 1 << Steps{{Begin, one, MayBe}, {Update, one, MayBe}, {Update, moved(one, {50, -50}), MayBe}}
        << none << none;
    QTest::newRow("slow strokes swipe: 40 and 40, then 51 from the start")
        << 1
        << Steps{{Begin, one, MayBe},
                 {Update, one, MayBe},
                 {Update, moved(one, {40, 40}), MayBe},
                 {Update, moved(one, {51, 40}), Trigger}}
        << right << down;
    QTest::newRow("a stroke along one axis sets the other direction too")
        << 1 << Steps{{Begin, one, MayBe}, {Update, one, MayBe}, {Update, moved(one, {-51, 0}), Trigger}}
        << left << up;
    // The next steps are measured from where the last one ended.
    const Steps toTheRight{
        {Begin, one, MayBe}, {Update, one, MayBe}, {Update, moved(one, {51, 51}), Trigger}};
    QTest::newRow("6 pixels back do not cancel")
        << 1 << toTheRight + Steps{{Update, moved(one, {45, 102}), Trigger}} << right << down;
    QTest::newRow("7 pixels back cancel")
        << 1 << toTheRight + Steps{{Update, moved(one, {44, 102}), Cancel}} << left << down;
    QTest::newRow("7 pixels up cancel")
        << 1 << toTheRight + Steps{{Update, moved(one, {102, 44}), Cancel}} << right << up;
    for (const auto &fingers : {two, three}) {
        const int count = fingers.size();
        QTest::addRow("%d fingers, 50 and one past it", count)
            << count
            << Steps{{Begin, fingers, MayBe},
                     {Update, fingers, MayBe},
                     {Update, moved(fingers, {0, -50}), MayBe},
                     {Update, moved(fingers, {0.5, -50.5}), Trigger}}
            << right << up;
        QTest::addRow("%d fingers and one more", count)
            << count
            << Steps{{Begin, fingers, MayBe}, {Update, fingers, MayBe}, {Update, fingers + one, Cancel}}
            << none << none;
    }
    QTest::newRow("fingers may come one after the other") << 2
                                                          << Steps{{Begin, one, MayBe},
                                                                   {Update, moved(one, {60, 0}), Ignored},
                                                                   {Update, two, MayBe},
                                                                   {Update, moved(two, {51, 0}), Trigger}}
                                                          << right << up;
    QTest::newRow("a finger lifted while moving is ignored, one put back cancels")
        << 3
        << Steps{{Begin, three, MayBe},
                 {Update, three, MayBe},
                 {Update, one, Ignored},
                 {Update, {}, Ignored},
                 {Update, two, Cancel}}
        << none << none;
    QTest::newRow("an update without a begin") << 1 << Steps{{Update, one, Cancel}} << none << none;
    QTest::newRow("no points at all")
        << 1 << Steps{{Begin, {}, MayBe}, {Update, {}, Ignored}, {End, {}, Cancel}} << none << none;
    QTest::newRow("four fingers are not supported") << 4
                                                    << Steps{{Begin, two + two, MayBe},
                                                             {Update, two + two, Ignored},
                                                             {Update, moved(two + two, {99, 0}), Ignored}}
                                                    << none << none;
    QTest::newRow("a position that is no number is ignored") << 1
                                                             << Steps{{Begin, one, MayBe},
                                                                      {Update, one, MayBe},
                                                                      {Update, {{NotANumber, 100}}, Ignored},
                                                                      {Update, moved(one, {0, 51}), Trigger}}
                                                             << left << down;
    QTest::newRow("the mouse") << 1
                               << Steps{{Press, one, MayBe},
                                        {Move, one, MayBe},
                                        {Move, moved(one, {50, 0}), MayBe},
                                        {Move, moved(one, {51, 0}), Trigger},
                                        {Release, one, Cancel}}
                               << right << up;
    QTest::newRow("mouse move without a press") << 1 << Steps{{Move, one, Cancel}} << none << none;
    QTest::newRow("a double click cancels")
        << 1 << Steps{{DoubleClick, one, Cancel}, {QEvent::MouseButtonDblClick, one, Cancel}} << none << none;
    QTest::newRow("three fingers do not follow the mouse") << 3
                                                           << Steps{{Press, one, Ignored},
                                                                    {Move, two, Ignored},
                                                                    {Release, two, Ignored},
                                                                    {DoubleClick, one, Ignored}}
                                                           << none << none;
}

void TestGestureRecognizers::swipe()
{
    QFETCH(int, touches);
    QFETCH(Steps, steps);
    Driver<SwipeGesture> driver(new SwipeGestureRecognizer(touches));
    driver.run(steps);
    QTEST(static_cast<int>(driver.gesture()->horizontalDirection()), "horizontal");
    QTEST(static_cast<int>(driver.gesture()->verticalDirection()), "vertical");
}

void TestGestureRecognizers::swipeValues()
{
    Driver<SwipeGesture> driver(new SwipeGestureRecognizer(2));
    driver.run({{Begin, two, MayBe}, {Update, two, MayBe}});
    QCOMPARE(driver.gesture()->velocity(), 0.9); // no distance yet: only the decay

    driver.run({{Update, {{160, 40}, {300, 100}}, Trigger}});
    QCOMPARE(driver.gesture()->startPoint(), QPointF(100, 100));
    QCOMPARE(driver.gesture()->hotSpot(), QPointF(100, 100));
    QCOMPARE(driver.gesture()->swipeAngle(), 45.0); // of the first finger
    const qreal distance = std::hypot(80, -30);     // of the mean
    QVERIFY(driver.gesture()->velocity() > 0.81);
    QVERIFY(driver.gesture()->velocity() <= 0.81 + distance + 1e-9);
}

void TestGestureRecognizers::swipeReset()
{
    Driver<SwipeGesture> driver(new SwipeGestureRecognizer(1));
    driver.run({{Begin, one, MayBe}, {Update, one, MayBe}, {Update, moved(one, {60, 0}), Trigger}});
    driver.reset();
    const auto *d = SwipeGesturePrivateAccessor::priv(driver.gesture());
    QCOMPARE(d->horizontalDirection, SwipeGesture::NoDirection);
    QCOMPARE(d->verticalDirection, SwipeGesture::NoDirection);
    QCOMPARE(d->velocity, 0.0);
    QVERIFY(d->lastPositions.at(0).isNull());
    QVERIFY(!d->timer.isValid());
    QCOMPARE(d->startPoint, QPointF(100, 100));
    QCOMPARE(d->touchCount, 1);
    driver.run({{Update, one, Cancel}, {Begin, one, MayBe}, {Update, one, MayBe}});
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

    const auto names = [](SwipeGesture::SwipeDirection horizontal, SwipeGesture::SwipeDirection vertical) {
        const QMetaEnum meta = QMetaEnum::fromType<SwipeGesture::SwipeDirection>();
        return QStringLiteral("%1 %2").arg(QLatin1String(meta.valueToKey(horizontal)),
                                           QLatin1String(meta.valueToKey(vertical)));
    };
    QTEST(swipe.mapSwipeAngleToGraphicsScene(&event), "sceneAngle");
    QTEST(names(swipe.mapHorizontalDirectionToGraphicsScene(&event),
                swipe.mapVerticalDirectionToGraphicsScene(&event)),
          "sceneDirections");
    // Compared from 1 on: 0 is near to no other number.
    QFETCH(qreal, itemAngle);
    QCOMPARE(std::fmod(swipe.mapSwipeAngleToGraphicsObject(&event, item) + 1e-7, 360) + 1,
             itemAngle + 1 + 1e-7);
    QTEST(names(swipe.mapHorizontalDirectionToGraphicsObject(&event, item),
                swipe.mapVerticalDirectionToGraphicsObject(&event, item)),
          "itemDirections");

    d->horizontalDirection = d->verticalDirection = SwipeGesture::NoDirection;
    QCOMPARE(swipe.mapHorizontalDirectionToGraphicsObject(&event, item), SwipeGesture::NoDirection);
    QCOMPARE(swipe.mapVerticalDirectionToGraphicsScene(nullptr), SwipeGesture::NoDirection);
    QCOMPARE(swipe.mapSwipeAngleToGraphicsObject(nullptr, nullptr), 315.0);
}

void TestGestureRecognizers::pinch_data()
{
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<qreal>("totalScale");
    const QPointF left(100, 100);
    const auto apart = [left](qreal distance) { return QVector<QPointF>{left, left + QPointF(distance, 0)}; };
    const Steps start{{Begin, apart(100), MayBe}, {Update, apart(100), Trigger}};

    QTest::newRow("the first update of two fingers starts with scale 1")
        << Steps{{Begin, apart(100), MayBe}, {Update, apart(150), Trigger}} << 1.0 << 1.0;
    QTest::newRow("scales multiply") << start
                                            + Steps{{Update, apart(150), Trigger},
                                                    {Update, apart(75), Trigger}}
                                     << 0.5 << 0.75;
    QTest::newRow("twice as far") << start + Steps{{Update, apart(200), Trigger}} << 2.0 << 2.0;
    QTest::newRow("more than twice as far") << start + Steps{{Update, apart(201), Ignored}} << 1.0 << 1.0;
    QTest::newRow("a tenth") << start + Steps{{Update, apart(10), Trigger}} << 0.1 << 0.1;
    QTest::newRow("less than a tenth") << start + Steps{{Update, apart(9.9), Ignored}} << 1.0 << 1.0;
    QTest::newRow("both fingers on one point, and apart again") << start
                                                                       + Steps{{Update, apart(0), Ignored},
                                                                               {Update, apart(0), Ignored},
                                                                               {Update, apart(100), Ignored},
                                                                               {Update, apart(120), Trigger}}
                                                                << 1.2 << 1.2;
    QTest::newRow("both fingers on one point from the start")
        << Steps{{Begin, apart(0), MayBe}, {Update, apart(0), Trigger}, {Update, apart(0), Ignored}} << 1.0
        << 1.0;
    QTest::newRow("other numbers of fingers begin a new sequence")
        << start
               + Steps{{Update, three, Ignored},
                       {Update, apart(300), Trigger},
                       {Update, {}, Ignored},
                       {Update, one, Ignored},
                       {End, {}, Cancel}}
        << 1.0 << 1.0;
    QTest::newRow("a position that is no number")
        << start + Steps{{Update, {left, {NotANumber, 0}}, Ignored}} << 1.0 << 1.0;
    QTest::newRow("the mouse does not pinch")
        << Steps{{Press, one, Ignored}, {Move, two, Ignored}} << 1.0 << 1.0;
}

void TestGestureRecognizers::pinch()
{
    QFETCH(Steps, steps);
    Driver<PinchGesture> driver(new PinchGestureRecognizer);
    driver.run(steps);
    QTEST(driver.gesture()->scaleFactor(), "scale");
    QTEST(driver.gesture()->totalScaleFactor(), "totalScale");
}

void TestGestureRecognizers::pinchValues()
{
    Driver<PinchGesture> driver(new PinchGestureRecognizer);
    PinchGesture *pinch = driver.gesture();
    const PinchGesture::ChangeFlags all = PinchGesture::ScaleFactorChanged
                                          | PinchGesture::RotationAngleChanged
                                          | PinchGesture::CenterPointChanged;

    // The second finger turns about the first, clockwise on the screen: by 45, then by another 45 degrees.
    driver.run({{Begin, {{0, 0}, {100, 0}}, MayBe}, {Update, {{0, 0}, {100, 100}}, Trigger}});
    QCOMPARE(pinch->rotationAngle(), 45.0);
    QCOMPARE(pinch->lastRotationAngle(), 0.0);
    QCOMPARE(pinch->totalRotationAngle(), 45.0);
    QCOMPARE(pinch->centerPoint(), QPointF(50, 50));
    QCOMPARE(pinch->lastCenterPoint(), QPointF(50, 50));
    QCOMPARE(pinch->startCenterPoint(), QPointF(50, 50));
    QCOMPARE(pinch->changeFlags(), all);

    driver.run({{Update, {{0, 0}, {0, 100}}, Trigger}});
    QCOMPARE(pinch->rotationAngle(), 90.0);
    QCOMPARE(pinch->lastRotationAngle(), 45.0);
    QCOMPARE(pinch->totalRotationAngle(), 90.0);
    QCOMPARE(pinch->centerPoint(), QPointF(0, 50));
    QCOMPARE(pinch->lastCenterPoint(), QPointF(50, 50));
    QCOMPARE(pinch->startCenterPoint(), QPointF(50, 50));

    driver.run({{Update, one, Ignored}});
    QCOMPARE(pinch->changeFlags(), PinchGesture::ChangeFlags());
    QCOMPARE(pinch->totalChangeFlags(), all);

    driver.reset();
    QCOMPARE(debugText(pinch), debugText(std::make_unique<PinchGesture>().get()));
    QVERIFY(PinchGesturePrivateAccessor::priv(pinch)->isNewSequence);
}

void TestGestureRecognizers::pinchJumpKeepsScale()
{
    Driver<PinchGesture> driver(new PinchGestureRecognizer);
    driver.run({{Begin, {{0, 0}, {100, 0}}, MayBe},
                {Update, {{0, 0}, {100, 0}}, Trigger},
                {Update, {{0, 0}, {300, 0}}, Ignored}});
    QCOMPARE(driver.gesture()->changeFlags(), PinchGesture::ChangeFlags(PinchGesture::CenterPointChanged));
    QCOMPARE(driver.gesture()->centerPoint(), QPointF(150, 0));
    QCOMPARE(driver.gesture()->scaleFactor(), 1.0);
}

void TestGestureRecognizers::pinchLog()
{
    struct Line
    {
        int type;
        QString source;
        QString text;
    };
    static QVector<Line> lines;
    lines.clear();
    KORA::koraInstallLogMessageHandlerPrivate(
        [](int type, const QString &source, const QString &text, void *) {
            lines.append({type, source, text});
        },
        nullptr);
    Driver<PinchGesture> driver(new PinchGestureRecognizer);
    driver.send(Begin, two);
    driver.send(Update, one);
    QCOMPARE(lines.size(), 0);
    driver.send(Update, {{100, 100}, {210, 100}});
    KORA::koraUninstallLogMessageHandlerPrivate();

    const QStringList expected{QStringLiteral(": P1 TouchPoint(0 "), QStringLiteral(": P2 TouchPoint(1 "),
                               QStringLiteral(": ANGLE QPointF(100,100) QPointF(210,100)"),
                               QStringLiteral(": START ANGLE QPointF(100,100) QPointF(210,100)")};
    QCOMPARE(lines.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(lines.at(i).type, static_cast<int>(QtDebugMsg));
        QVERIFY(lines.at(i).source.isEmpty());
        QVERIFY2(lines.at(i).text.contains(expected.at(i)), qPrintable(lines.at(i).text));
    }
}

void TestGestureRecognizers::foreignTargetsAreIgnored()
{
    PanGestureRecognizer pan(1);
    SwipeGestureRecognizer swipe(1);
    PinchGestureRecognizer pinch;
    QWidget widget;
    QTouchEvent begin(Begin, nullptr, Qt::NoModifier, {}, Fingers().moveTo(one, Begin));
    for (QGestureRecognizer *recognizer : QVector<QGestureRecognizer *>{&pan, &swipe, &pinch}) {
        const std::unique_ptr<QGesture> gesture(recognizer->create(&widget));
        QCOMPARE(recognizer->recognize(gesture.get(), &widget, &begin), Ignored);
        QCOMPARE(recognizer->recognize(gesture.get(), nullptr, &begin), Ignored);
    }
}

// KORA_TEST_GESTURE_EVENTS sets the number of events, KORA_TEST_SEED the seed.
void TestGestureRecognizers::randomEventsLeaveNoNaN()
{
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

    const QVector<QEvent::Type> types{Begin,
                                      Update,
                                      Update,
                                      Update,
                                      Update,
                                      Update,
                                      End,
                                      Press,
                                      Move,
                                      Release,
                                      Move,
                                      DoubleClick,
                                      QEvent::TouchCancel};
    const qreal infinity = std::numeric_limits<qreal>::infinity();
    const QVector<qreal> odd{
        NotANumber, infinity, -infinity, 1e300, -1e300, std::numeric_limits<qreal>::max(), 0, 0};
    const auto coordinate = [&] {
        return random.bounded(50) == 0 ? odd.at(random.bounded(odd.size())) : random.bounded(100) - 20.0;
    };
    for (int i = 0; i < events; ++i) {
        const QEvent::Type type = types.at(random.bounded(types.size()));
        const bool isTouch = type == Begin || type == Update || type == End;
        QVector<QPointF> positions;
        for (int count = isTouch ? random.bounded(6) : 0; count > 0; --count) {
            positions.append({coordinate(), coordinate()});
        }
        if (!isTouch) {
            positions.append(QPointF(random.bounded(200), random.bounded(200)));
        }
        for (const auto &driver : drivers) {
            driver->send(type, positions);
            if (random.bounded(100) == 0) {
                driver->reset();
            }
            for (const qreal number : numbersOf(driver->gesture())) {
                QVERIFY2(!qIsNaN(number),
                         qPrintable(QStringLiteral("event %1: %2")
                                        .arg(QString::number(i), debugText(driver->gesture()))));
            }
        }
    }
}

QTEST_MAIN(TestGestureRecognizers)
#include "tst_gesturerecognizers.moc"
