// SPDX-License-Identifier: Apache-2.0
//
// Streams of touches and mouse events through all recognisers, against a second model of them.
#include "../fuzztarget.h"

#include <QtCore/QDebug>
#include <QtGui/QTouchEvent>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <limits>
#include <memory>

#include <kora/gestures/gestures.h>
#include <kora/gestures/pangesturerecognizer_p.h>
#include <kora/gestures/pinchgesturerecognizer_p.h>
#include <kora/gestures/swipegesturerecognizer_p.h>

#include "../gesturemodel.h"

using namespace KORA;
using GestureModel::Finger;
using GestureModel::Input;
using GestureModel::Point;

namespace {

class Item : public QGraphicsObject
{
public:
    QRectF boundingRect() const override { return {0, 0, 100, 100}; }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}
};

bool isNear(double a, double b)
{
    return a == b || std::fabs(a - b) <= 1e-9 * std::fmax(1, std::fmax(std::fabs(a), std::fabs(b)));
}

bool isNear(const QPointF &a, const Point &b)
{
    return isNear(a.x(), b.x) && isNear(a.y(), b.y);
}

void compare(const PanGesture &gesture, const GestureModel::Pan &model)
{
    expect(isNear(gesture.startPoint(), model.start), "pan: start point");
    expect(isNear(gesture.offset(), model.offset) && isNear(gesture.lastOffset(), model.lastOffset),
           "pan: offset");
}

void compare(const SwipeGesture &gesture, const GestureModel::Swipe &model)
{
    expect(gesture.horizontalDirection() == model.horizontal && gesture.verticalDirection() == model.vertical,
           "swipe: direction");
    expect(isNear(gesture.startPoint(), model.start), "swipe: start point");
    expect(std::isfinite(gesture.velocity()) && gesture.velocity() >= 0, "swipe: velocity");
    expect(gesture.swipeAngle() >= 0 && gesture.swipeAngle() <= 360, "swipe: angle");
}

void compare(const PinchGesture &gesture, const GestureModel::Pinch &model)
{
    expect(isNear(gesture.centerPoint(), model.center), "pinch: centre");
    expect(isNear(gesture.totalScaleFactor(), model.totalScale), "pinch: scale");
    // Where the one angle is 180 degrees the other may be -180 by rounding.
    const double turns = (gesture.rotationAngle() - model.rotation) / 360;
    expect(isNear(turns, std::round(turns)), "pinch: rotation");
    expect(std::isfinite(gesture.totalRotationAngle()), "pinch: total rotation");
}

// A recogniser with a gesture of it, and the model of both.
template<typename Recognizer, typename Gesture, typename Model>
class Pair
{
public:
    template<typename... Arguments>
    explicit Pair(Arguments... arguments)
        : m_recognizer(arguments...)
        , m_gesture(m_recognizer.create(nullptr))
        , m_model(arguments...)
    {}

    void take(QEvent &event, const Input &input)
    {
        static Item item;
        const auto result = m_recognizer.recognize(m_gesture.get(), &item, &event);
        expect(result == m_model.take(input), "another result");
        compare(gesture(), m_model);
    }

    void reset()
    {
        m_recognizer.reset(m_gesture.get());
        m_model.reset();
        compare(gesture(), m_model);
    }

    void print() const
    {
        QString text;
        QDebug(&text) << &gesture();
        expect(text.trimmed().endsWith(QLatin1Char(')')), "the text");
    }

private:
    const Gesture &gesture() const { return static_cast<const Gesture &>(*m_gesture); }

    Recognizer m_recognizer;
    std::unique_ptr<QGesture> m_gesture;
    Model m_model;
};

using Pan = Pair<PanGestureRecognizer, PanGesture, GestureModel::Pan>;
using Swipe = Pair<SwipeGestureRecognizer, SwipeGesture, GestureModel::Swipe>;
using Pinch = Pair<PinchGestureRecognizer, PinchGesture, GestureModel::Pinch>;

// Fingers that move by a few pixels an event; -128 makes a coordinate what only a broken device sends.
class Hand
{
public:
    std::vector<Finger> fingers(FuzzBytes &bytes, GestureModel::Kind kind, int count)
    {
        m_fingers.resize(kind == GestureModel::Begin ? 0 : std::min<size_t>(m_fingers.size(), size_t(count)));
        for (int i = 0; i < count; ++i) {
            const Point step{coordinate(bytes.takeSigned()), coordinate(bytes.takeSigned())};
            const bool isNew = static_cast<size_t>(i) >= m_fingers.size();
            Finger finger = isNew ? Finger() : m_fingers[static_cast<size_t>(i)];
            finger.isNew = isNew;
            finger.last = isNew ? step : finger.now;
            finger.now = isNew ? step : Point{base(finger.now.x) + step.x, base(finger.now.y) + step.y};
            finger.start = isNew ? step : finger.start;
            finger.inItem = {finger.now.x / 2, finger.now.y / 2};
            isNew ? m_fingers.push_back(finger) : void(m_fingers[static_cast<size_t>(i)] = finger);
        }
        return m_fingers;
    }

private:
    static double coordinate(int byte)
    {
        return byte == -128 ? std::numeric_limits<double>::quiet_NaN() : byte == 127 ? 1e12 : byte;
    }
    // A broken coordinate does not stay.
    static double base(double coordinate) { return std::fabs(coordinate) < 1e9 ? coordinate : 0; }

    std::vector<Finger> m_fingers;
};

QPointF toPoint(const Point &point)
{
    return {point.x, point.y};
}

QList<QTouchEvent::TouchPoint> touchPoints(const std::vector<Finger> &fingers)
{
    QList<QTouchEvent::TouchPoint> points;
    for (const Finger &finger : fingers) {
        QTouchEvent::TouchPoint point(points.size());
        point.setState(finger.isNew ? Qt::TouchPointPressed : Qt::TouchPointMoved);
        point.setScreenPos(toPoint(finger.now));
        point.setStartScreenPos(toPoint(finger.start));
        point.setLastScreenPos(toPoint(finger.last));
        point.setPos(toPoint(finger.inItem));
        points.append(point);
    }
    return points;
}

class Recognizers
{
public:
    void take(QEvent &event, const Input &input)
    {
        for (Pan &pan : m_pans) {
            pan.take(event, input);
        }
        for (Swipe &swipe : m_swipes) {
            swipe.take(event, input);
        }
        m_pinch.take(event, input);
    }
    // A pan keeps what it holds.
    void reset()
    {
        for (Swipe &swipe : m_swipes) {
            swipe.reset();
        }
        m_pinch.reset();
    }
    void print() const
    {
        m_pans[0].print();
        m_swipes[0].print();
        m_pinch.print();
    }

private:
    Pan m_pans[3]{Pan(1), Pan(2), Pan(3)};
    Swipe m_swipes[3]{Swipe(1), Swipe(2), Swipe(3)};
    Pinch m_pinch;
};

} // namespace

KORA_FUZZ_TARGET(gestures)
{
    static const QEvent::Type types[] = {
        QEvent::TouchBegin,
        QEvent::TouchUpdate,
        QEvent::TouchEnd,
        QEvent::GraphicsSceneMousePress,
        QEvent::GraphicsSceneMouseMove,
        QEvent::GraphicsSceneMouseRelease,
        QEvent::GraphicsSceneMouseDoubleClick,
    };
    FuzzBytes bytes(input);
    Recognizers recognizers;
    Hand hand;
    while (!bytes.atEnd()) {
        const int first = bytes.take();
        const auto kind = static_cast<GestureModel::Kind>(first % 8);
        Input step;
        step.kind = kind;
        if (first % 8 == 7) {
            recognizers.reset();
        } else if (kind <= GestureModel::End) {
            step.fingers = hand.fingers(bytes, kind, first / 8 % 5);
            QTouchEvent event(types[kind], nullptr, Qt::NoModifier, {}, touchPoints(step.fingers));
            recognizers.take(event, step);
        } else {
            step.mouse = {double(bytes.takeSigned()), double(bytes.takeSigned())};
            QGraphicsSceneMouseEvent event(types[kind]);
            event.setScreenPos(toPoint(step.mouse).toPoint());
            recognizers.take(event, step);
        }
    }
    recognizers.print();
}
