// SPDX-License-Identifier: Apache-2.0
#include "support/livewidget.h"
#include "support/program.h"

#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>

#include <private/qapplication_p.h>
#include <private/qgesturemanager_p.h>
#include <qpa/qwindowsysteminterface.h>

#include <memory>
#include <vector>

namespace {

// Qt's recognisers are not for others to call; they are found where Qt's gesture manager keeps them.
using Recognizers = QMultiMap<Qt::GestureType, QGestureRecognizer *>;
Recognizers &recognizersOf(QGestureManager &manager);
template<Recognizers QGestureManager::*member>
struct Expose
{
    friend Recognizers &recognizersOf(QGestureManager &manager) { return manager.*member; }
};
template struct Expose<&QGestureManager::m_recognizers>;

QGestureRecognizer *recognizerOf(Qt::GestureType type)
{
    QGestureManager *manager = static_cast<QApplicationPrivate *>(QObjectPrivate::get(qApp))->gestureManager;
    return manager ? recognizersOf(*manager).value(type) : nullptr;
}

class Item : public QGraphicsObject
{
public:
    QRectF boundingRect() const override { return {0, 0, 400, 400}; }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}

    qint64 gestures = 0;

protected:
    bool sceneEvent(QEvent *event) override
    {
        if (event->type() == QEvent::Gesture) {
            ++gestures;
            return true;
        }
        return event->type() == QEvent::TouchBegin || QGraphicsObject::sceneEvent(event);
    }
};

// A recogniser alone ----------------------------------------------------------------------------------------

QTouchEvent touch(QEvent::Type type, int fingers, int step)
{
    QList<QTouchEvent::TouchPoint> points;
    for (int finger = 0; finger < fingers; ++finger) {
        QTouchEvent::TouchPoint point(finger);
        const QPointF start(100 + 150 * finger, 100);
        const QPointF way(finger % 2 ? 3 : 2, 2);
        const QPointF position = start + way * step;
        const QPointF last = start + way * qMax(0, step - 1);
        point.setState(type == QEvent::TouchBegin ? Qt::TouchPointPressed : Qt::TouchPointMoved);
        for (const auto set : {&QTouchEvent::TouchPoint::setPos, &QTouchEvent::TouchPoint::setScreenPos,
                               &QTouchEvent::TouchPoint::setScenePos}) {
            (point.*set)(position);
        }
        point.setStartPos(start);
        point.setStartScreenPos(start);
        point.setLastPos(last);
        point.setLastScreenPos(last);
        points.append(point);
    }
    static QTouchDevice device;
    return QTouchEvent(type, &device, Qt::NoModifier, Qt::TouchPointMoved, points);
}

/// Feeds one recogniser with the updates of a stroke, over and over.
void recognize(benchmark::State &state, Qt::GestureType type, int fingers)
{
    QGestureRecognizer *recognizer = recognizerOf(type);
    Item item;
    if (!require(state, recognizer, "no recogniser")) {
        return;
    }
    const std::unique_ptr<QGesture> gesture(recognizer->create(&item));
    std::vector<QTouchEvent> stroke;
    for (int step = 0; step < 64; ++step) {
        stroke.push_back(touch(QEvent::TouchUpdate, fingers, step));
    }
    QTouchEvent begin = touch(QEvent::TouchBegin, fingers, 0);
    recognizer->recognize(gesture.get(), &item, &begin);
    QGestureRecognizer::Result all;
    for (QTouchEvent &update : stroke) {
        all |= recognizer->recognize(gesture.get(), &item, &update);
    }
    if (!require(state, all & QGestureRecognizer::TriggerGesture, "not recognised")) {
        return;
    }
    size_t step = 0;
    measure(state, [&] {
        step = (step + 1) % stroke.size();
        benchmark::DoNotOptimize(recognizer->recognize(gesture.get(), &item, &stroke[step]));
    });
}

void panOurs(benchmark::State &state)
{
    recognize(state, KORA::GraphicsObject::pan2TouchesGestureType(), 2);
}

void panQt(benchmark::State &state)
{
    recognize(state, Qt::PanGesture, 2);
}

void pinchOurs(benchmark::State &state)
{
    recognize(state, KORA::GraphicsObject::pinchGestureType(), 2);
}

void pinchQt(benchmark::State &state)
{
    recognize(state, Qt::PinchGesture, 2);
}

void swipeOurs(benchmark::State &state)
{
    recognize(state, KORA::GraphicsObject::swipe3TouchesGestureType(), 3);
}

void swipeQt(benchmark::State &state)
{
    recognize(state, Qt::SwipeGesture, 3);
}

// Making an event and calling a virtual function: in all of the above.
void nothing(benchmark::State &state)
{
    measure(state, [] { benchmark::ClobberMemory(); });
}

// An update of two fingers through a view -------------------------------------------------------------------

/// A shown view with one item that grabs gestures, and two fingers on it.
class Touched
{
public:
    explicit Touched(const std::vector<Qt::GestureType> &types)
        : m_view(&m_scene)
    {
        item = new Item;
        item->setAcceptTouchEvents(true);
        for (const Qt::GestureType type : types) {
            item->grabGesture(type);
        }
        m_scene.setSceneRect(0, 0, 400, 400);
        m_scene.addItem(item);
        m_view.viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
        m_view.resize(420, 420);
        m_view.show();
        QCoreApplication::processEvents();
        send(Qt::TouchPointPressed);
    }

    ~Touched() { send(Qt::TouchPointReleased); }

    void update()
    {
        m_step = (m_step + 1) % 64;
        send(Qt::TouchPointMoved);
    }

    Item *item;

private:
    // As the platform does, and delivered at once.
    void send(Qt::TouchPointState state)
    {
        QList<QWindowSystemInterface::TouchPoint> points;
        for (int finger = 0; finger < 2; ++finger) {
            QWindowSystemInterface::TouchPoint point;
            point.id = finger;
            point.state = state;
            point.area.setSize({8, 8});
            point.area.moveCenter(
                m_view.mapToGlobal(QPoint(100 + 100 * finger + (finger ? 2 : 1) * m_step, 100 + m_step)));
            points.append(point);
        }
        QWindowSystemInterface::handleTouchEvent<QWindowSystemInterface::SynchronousDelivery>(
            m_view.windowHandle(), device(), points);
    }

    static QTouchDevice *device()
    {
        static QTouchDevice *registered = [] {
            auto *screen = new QTouchDevice;
            screen->setType(QTouchDevice::TouchScreen);
            QWindowSystemInterface::registerTouchDevice(screen);
            return screen;
        }();
        return registered;
    }

    QGraphicsScene m_scene;
    QGraphicsView m_view;
    int m_step = 0;
};

void update(benchmark::State &state, const std::vector<Qt::GestureType> &types)
{
    Touched touched(types);
    for (int i = 0; i < 40; ++i) {
        touched.update();
    }
    if (require(state, types.empty() || touched.item->gestures > 0, "no gesture delivered")) {
        measure(state, [&] { touched.update(); });
    }
}

void updateOurs(benchmark::State &state)
{
    using Object = KORA::GraphicsObject;
    update(state, {Object::pan1TouchGestureType(), Object::pan2TouchesGestureType(),
                   Object::pan3TouchesGestureType(), Object::swipe1TouchGestureType(),
                   Object::swipe2TouchesGestureType(), Object::swipe3TouchesGestureType(),
                   Object::pinchGestureType()});
}

void updateQt(benchmark::State &state)
{
    update(state, {Qt::PanGesture, Qt::PinchGesture, Qt::SwipeGesture});
}

void updateAlone(benchmark::State &state)
{
    update(state, {});
}

} // namespace

int main(int argc, char **argv)
{
    Program program(argc, argv);
    KORA::INTERNAL::koraInit(QIcon());
    program.add("pan/ours", panOurs);
    program.add("pan/qt", panQt);
    program.add("pinch/ours", pinchOurs);
    program.add("pinch/qt", pinchQt);
    program.add("swipe/ours", swipeOurs);
    program.add("swipe/qt", swipeQt);
    program.add("recognizing/nothing", nothing);
    program.add("touch/ours", updateOurs);
    program.add("touch/qt", updateQt);
    program.add("touch/alone", updateAlone);
    return program.run();
}
