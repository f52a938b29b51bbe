// SPDX-License-Identifier: Apache-2.0
//
// The canvas under a real mouse, keyboard and touch, with the example library on the page.
#include "plantbench.h"

#include <support/testmain.h>

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QAction>
#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolTip>

#include <kora/dev/canvas/canvasview.h>
#include <kora/dev/canvas/errorcard.h>
#include <kora/dev/canvas/handleframe.h>
#include <kora/dev/canvas/snapper.h>
#include <kora/kora.h>

#include <cmath>

using namespace KORA;
using namespace KORA::DEV;

Q_DECLARE_METATYPE(Qt::Edges)
Q_DECLARE_METATYPE(Qt::KeyboardModifiers)

namespace {

const QString gauge = QStringLiteral("gauge");
const QString version = QStringLiteral("1.1.0");

/// What the probes got since it was cleared.
struct Received
{
    QVector<QEvent::Type> events;
    QVector<int> fingers; // of each touch event
    qreal scale = 1;      // of the latest pinch
    bool takesTouch = true;

    bool has(QEvent::Type type) const { return events.contains(type); }
};
Received received;

/// Takes all input there is.
class ProbeItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ProbeItem(const KORA::GraphicsObjectData &data)
        : KORA::GraphicsObject(data)
    {
        setAcceptTouchAndMouseEvents(true);
        setAcceptHoverEvents(true);
        grabGesture(pinchGestureType());
    }

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        painter->fillRect(boundingRect(), Qt::darkGreen);
    }

protected:
    bool sceneEvent(QEvent *event) override
    {
        received.events.append(event->type());
        switch (event->type()) {
        case QEvent::TouchBegin:
            event->setAccepted(received.takesTouch);
            Q_FALLTHROUGH();
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
            received.fingers.append(static_cast<QTouchEvent *>(event)->touchPoints().size());
            return true;
        case QEvent::GraphicsSceneMousePress:
            event->accept();
            return true;
        case QEvent::Gesture: {
            auto *gesture = static_cast<QGestureEvent *>(event)->gesture(pinchGestureType());
            received.scale = static_cast<KORA::PinchGesture *>(gesture)->totalScaleFactor();
            return true;
        }
        default:
            return KORA::GraphicsObject::sceneEvent(event);
        }
    }
};

class ProbeWidget : public KORA::Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ProbeWidget(const KORA::WidgetData &data)
        : KORA::Widget(data)
    {}
};

const QString probe = QStringLiteral("picture"); // the example that the probe stands in for
const QString probeVersion = QStringLiteral("1.0.0");

} // namespace

class TestCanvas : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void dropPlacesAWidgetInLine();
    void handleDragIsLiveAndOneStep_data();
    void handleDragIsLiveAndOneStep();
    void escapeLeavesNoTraceOfADrag();
    void handlesStayOutsideSmallObjects();
    void defaultSizeByDoubleClick();
    void dragSnapsAndShowsGuides();
    void selectionByClickAndMarquee();
    void lockedAndHiddenWidgetsStay();
    void nudgesMerge();
    void keyboardEdits();
    void modesDecideWhoGetsTheInput();
    void runtimeKeysGoToTheWidgetButForAFew();
    void twoFingersPinch();
    void fingersFollowTheKeysAndAreCancelled();
    void untakenTouchBecomesTheMouse();
    void zoomKeepsThePointUnderTheCursor();
    void pageIsDrawnAsItIs();
    void touchIsSeen();
    void spaceAndDragMoveThePage();
    void menusAreOfWhatIsThere();
    void cardsSayWhyThereIsNoInstance();

private:
    QPoint at(const QPointF &page) const { return m_view->viewportTransform().map(page).toPoint(); }
    QWidget *viewport() const { return m_view->viewport(); }
    PlacedWidget *place(const QString &widget, const QString &widgetVersion, const QRectF &geometry);
    void send(QEvent::Type type, const QPoint &position, Qt::MouseButton button, Qt::MouseButtons buttons,
              Qt::KeyboardModifiers modifiers = {});
    void press(const QPoint &position, Qt::KeyboardModifiers modifiers = {});
    void moveTo(const QPoint &position, Qt::KeyboardModifiers modifiers = {});
    void release(const QPoint &position, Qt::KeyboardModifiers modifiers = {});
    void hover(const QPoint &position, Qt::KeyboardModifiers modifiers = {});
    void drag(const QPoint &from, const QPoint &to, Qt::KeyboardModifiers modifiers = {});
    void drop(const QByteArray &json, const QPoint &position);
    int steps() const { return m_document->undoStack()->count(); }

    std::unique_ptr<PlantLibrary> m_plant;
    std::unique_ptr<BenchDocument> m_document;
    std::unique_ptr<CanvasView> m_view;
};

void TestCanvas::initTestCase()
{
    qRegisterMetaType<PlacedWidget *>("KORA::DEV::PlacedWidget*");
    m_plant = std::make_unique<PlantLibrary>();
    QVERIFY(m_plant->data());
    m_plant->data()->instance()->registerWidget(probe, probeVersion, &ProbeWidget::staticMetaObject,
                                                &ProbeItem::staticMetaObject);
}

void TestCanvas::init()
{
    m_document = std::make_unique<BenchDocument>(m_plant->data());
    m_view = std::make_unique<CanvasView>(m_document.get());
    m_view->resize(960, 640);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_view->setFocus();
    m_view->setZoom(1);
    received = Received();
}

void TestCanvas::cleanup()
{
    m_view.reset();
    m_document.reset();
}

PlacedWidget *TestCanvas::place(const QString &widget, const QString &widgetVersion, const QRectF &geometry)
{
    PlacedWidget *placed = m_document->place(widget, widgetVersion, geometry.center());
    m_document->setGeometries({placed}, {geometry});
    m_document->undoStack()->clear();
    return placed;
}

// Not QTest's: those move the real cursor, which a display may not have.
void TestCanvas::send(QEvent::Type type, const QPoint &position, Qt::MouseButton button,
                      Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    QMouseEvent event(type, position, viewport()->mapToGlobal(position), button, buttons, modifiers);
    QApplication::sendEvent(viewport(), &event);
}

void TestCanvas::press(const QPoint &position, Qt::KeyboardModifiers modifiers)
{
    send(QEvent::MouseButtonPress, position, Qt::LeftButton, Qt::LeftButton, modifiers);
}

void TestCanvas::moveTo(const QPoint &position, Qt::KeyboardModifiers modifiers)
{
    send(QEvent::MouseMove, position, Qt::NoButton, Qt::LeftButton, modifiers);
}

void TestCanvas::release(const QPoint &position, Qt::KeyboardModifiers modifiers)
{
    send(QEvent::MouseButtonRelease, position, Qt::LeftButton, Qt::NoButton, modifiers);
}

void TestCanvas::hover(const QPoint &position, Qt::KeyboardModifiers modifiers)
{
    send(QEvent::MouseMove, position, Qt::NoButton, Qt::NoButton, modifiers);
}

void TestCanvas::drag(const QPoint &from, const QPoint &to, Qt::KeyboardModifiers modifiers)
{
    press(from, modifiers);
    moveTo((2 * from + to) / 3, modifiers);
    moveTo((from + 2 * to) / 3, modifiers);
    moveTo(to, modifiers);
    release(to, modifiers);
}

void TestCanvas::drop(const QByteArray &json, const QPoint &position)
{
    QMimeData data;
    data.setData(CanvasView::widgetMimeType(), json);
    QDragEnterEvent enter(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport(), &enter);
    QDragMoveEvent move(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport(), &move);
    QDropEvent event(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport(), &event);
}

void TestCanvas::dropPlacesAWidgetInLine()
{
    for (const BenchMode mode : {BenchMode::Studio, BenchMode::Runtime}) {
        m_document->setMode(mode);
        drop(R"({"widget": "gauge", "version": "1.1.0"})", at({300, 203}));
        PlacedWidget *placed = m_document->current();
        QVERIFY(placed && placed->item());
        QCOMPARE(placed->geometry(), QRectF(192, 96, 220, 220)); // on the grid
        m_document->remove({placed});
    }
    QSignalSpy message(m_view.get(), &CanvasView::message);
    drop("{}", at({300, 200}));
    QVERIFY(m_document->widgets().isEmpty());
    QCOMPARE(message.size(), 1);
}

// Studio mode: mouse ---------------------------------------------------------------------------------------

void TestCanvas::handleDragIsLiveAndOneStep_data()
{
    QTest::addColumn<Qt::Edges>("handle");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<QRectF>("expected");
    using Edges = Qt::Edges;
    using Keys = Qt::KeyboardModifiers;
    const Edges bottomRight = Edges(Qt::BottomEdge) | Qt::RightEdge;
    const Edges topLeft = Edges(Qt::TopEdge) | Qt::LeftEdge;
    const Edges right = Qt::RightEdge;
    const Edges left = Qt::LeftEdge;
    const Keys free = Qt::ControlModifier; // from the grid
    const Keys ratio = free | Qt::ShiftModifier;
    const Keys centre = free | Qt::AltModifier;
    QTest::newRow("corner") << bottomRight << free << QPoint(33, -17) << QRectF(80, 80, 193, 63);
    QTest::newRow("grid") << bottomRight << Keys() << QPoint(33, -17) << QRectF(80, 80, 192, 64);
    QTest::newRow("edge") << left << free << QPoint(-13, 50) << QRectF(67, 80, 173, 80);
    QTest::newRow("ratio") << bottomRight << ratio << QPoint(41, 3) << QRectF(80, 80, 201, 101);
    QTest::newRow("ratio by an edge") << right << ratio << QPoint(40, 0) << QRectF(80, 70, 200, 100);
    QTest::newRow("centre") << topLeft << centre << QPoint(-11, -6) << QRectF(69, 74, 182, 92);
    QTest::newRow("ratio and centre")
        << bottomRight << (ratio | centre) << QPoint(20, 0) << QRectF(60, 70, 200, 100);
    QTest::newRow("not less than a pixel") << topLeft << free << QPoint(300, 300) << QRectF(239, 159, 1, 1);
}

void TestCanvas::handleDragIsLiveAndOneStep()
{
    QFETCH(Qt::Edges, handle);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QPoint, by);
    QFETCH(QRectF, expected);
    const QRectF before(80, 80, 160, 80);
    PlacedWidget *widget = place(gauge, version, before);
    for (const int zoom : {1, 2}) {
        m_view->setZoom(zoom, at(before.center()));
        const QRectF shown = m_view->viewportTransform().mapRect(before);
        // Beside the handle's centre: the offset is kept.
        const QPoint grabbed = HandleFrame(shown).position(handle).toPoint() + QPoint(3, -4);
        press(grabbed);
        moveTo(grabbed + by * zoom / 2, modifiers);
        moveTo(grabbed + by * zoom, modifiers);
        QCOMPARE(widget->item()->size(), expected.size());
        release(grabbed + by * zoom, modifiers);
        QCOMPARE(widget->geometry(), expected);
        QCOMPARE(steps(), 1);
        m_document->undoStack()->undo();
        QCOMPARE(widget->geometry(), before);
        QCOMPARE(widget->item()->size(), before.size());
    }
}

void TestCanvas::escapeLeavesNoTraceOfADrag()
{
    const QRectF before(80, 80, 160, 80);
    PlacedWidget *widget = place(gauge, version, before);
    PlacedWidget *other = place(gauge, version, {400, 80, 100, 100});
    m_document->setSelection({widget});
    QSignalSpy deselected(m_document.get(), &BenchDocument::selectionChanged);
    for (const QPointF &from : {before.bottomRight(), before.center()}) {
        press(at(from));
        moveTo(at(from + QPointF(100, 40)));
        QVERIFY(widget->geometry() != before);
        QTest::keyClick(m_view.get(), Qt::Key_Escape);
        QCOMPARE(widget->geometry(), before);
        moveTo(at(from + QPointF(50, 50)));
        release(at(from));
        QCOMPARE(widget->geometry(), before);
        QCOMPARE(steps(), 0);
    }
    QCOMPARE(deselected.size(), 0);

    press(at(before.center()));
    moveTo(at(before.center() + QPointF(100, 40)));
    m_document->remove({widget}); // as an undo, or the widget itself, may do
    moveTo(at(before.center() + QPointF(120, 40)));
    release(at(before.center()));
    QCOMPARE(other->geometry(), QRectF(400, 80, 100, 100));
}

void TestCanvas::handlesStayOutsideSmallObjects()
{
    PlacedWidget *widget = place(gauge, version, {200, 200, 6, 6});
    drag(at({203, 203}), at({243, 243}), Qt::ControlModifier);
    QCOMPARE(widget->geometry(), QRectF(240, 240, 6, 6)); // moved, not resized
    const QRectF shown = m_view->viewportTransform().mapRect(widget->geometry());
    const QPointF corner = HandleFrame(shown).position(Qt::Edges(Qt::RightEdge) | Qt::BottomEdge);
    QVERIFY(!shown.adjusted(-4, -4, 4, 4).contains(corner));
    drag(corner.toPoint(), corner.toPoint() + QPoint(10, 20), Qt::ControlModifier);
    QCOMPARE(widget->geometry(), QRectF(240, 240, 16, 26));
}

void TestCanvas::defaultSizeByDoubleClick()
{
    PlacedWidget *widget = place(gauge, version, {80, 80, 100, 50});
    send(QEvent::MouseButtonDblClick, at({180, 130}), Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(widget->geometry(), QRectF(80, 80, 220, 220));
    QCOMPARE(steps(), 1);
    QSignalSpy activated(m_view.get(), &CanvasView::activated);
    send(QEvent::MouseButtonDblClick, at({190, 190}), Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(activated.size(), 1);
}

void TestCanvas::dragSnapsAndShowsGuides()
{
    place(gauge, version, {83, 301, 100, 100});
    PlacedWidget *moved = place(gauge, version, {400, 50, 60, 60});
    const QPointF grabbed = moved->geometry().center();
    const QPointF nearNeighbour = grabbed + QPointF(83 + 4 - 400, 107);
    drag(at(grabbed), at(nearNeighbour));
    QCOMPARE(moved->geometry().topLeft(), QPointF(83, 160)); // neighbour's edge, and the grid
    QCOMPARE(steps(), 1);
    m_document->undoStack()->undo();
    drag(at(grabbed), at(nearNeighbour), Qt::ControlModifier);
    QCOMPARE(moved->geometry().topLeft(), QPointF(87, 157));
    m_document->undoStack()->undo();
    drag(at(grabbed), at(grabbed + QPointF(-33, 7)), Qt::ShiftModifier | Qt::ControlModifier);
    QCOMPARE(moved->geometry().topLeft(), QPointF(367, 50));

    PageState page;
    page.gridIsShown = false;
    const Snapper snapper(page, {{83, 301, 100, 100}});
    QCOMPARE(snapper.offsetOfObject({372, 200, 60, 60}, 6), QPointF(-2, 0));
    const QVector<Guide> guides = snapper.guides({370, 301, 60, 60}); // centred on the page, above the edge
    QCOMPARE(guides.size(), 2);
    QCOMPARE(guides.at(0).orientation, Qt::Vertical);
    QCOMPARE(guides.at(0).position, 400.0);
    QCOMPARE(guides.at(0).to, 480.0);
    QCOMPARE(guides.at(1).position, 301.0);
    QCOMPARE(guides.at(1).from, 83.0);
    QCOMPARE(guides.at(1).to, 430.0);
}

void TestCanvas::selectionByClickAndMarquee()
{
    using Widgets = QVector<PlacedWidget *>;
    PlacedWidget *low = place(gauge, version, {40, 40, 100, 100});
    PlacedWidget *high = place(gauge, version, {90, 90, 100, 100});
    PlacedWidget *far = place(gauge, version, {400, 300, 100, 100});
    const auto click = [this](const QPointF &point, Qt::KeyboardModifiers modifiers = {}) {
        drag(at(point), at(point), modifiers);
        return m_document->selection();
    };
    QCOMPARE(click({120, 120}), Widgets{high});
    QCOMPARE(click({60, 60}, Qt::ControlModifier), (Widgets{high, low}));
    QCOMPARE(click({450, 350}, Qt::ControlModifier), (Widgets{high, low, far}));
    QCOMPARE(click({60, 60}, Qt::ControlModifier), (Widgets{high, far}));
    QCOMPARE(click({450, 350}), Widgets{far}); // was selected with others
    QCOMPARE(click({700, 30}), Widgets{});

    drag(at({10, 10}), at({130, 80}));
    QCOMPARE(m_document->selection(), Widgets{low});
    drag(at({390, 400}), at({410, 290}), Qt::ControlModifier);
    QCOMPARE(m_document->selection(), (Widgets{low, far}));
    drag(at({60, 60}), at({76, 76}), Qt::ControlModifier); // both move, the one between stays
    QCOMPARE(low->geometry().topLeft(), QPointF(56, 56));
    QCOMPARE(far->geometry().topLeft(), QPointF(416, 316));
    QCOMPARE(high->geometry().topLeft(), QPointF(90, 90));
    QCOMPARE(steps(), 1);

    QSignalSpy menu(m_view.get(), &CanvasView::contextMenuRequested);
    send(QEvent::MouseButtonPress, at({150, 150}), Qt::RightButton, Qt::RightButton);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at({150, 150}), QPoint(1, 1));
    QApplication::sendEvent(viewport(), &event);
    QCOMPARE(m_document->selection(), Widgets{high});
    QCOMPARE(menu.size(), 1);
    QCOMPARE(menu.at(0).at(0).value<PlacedWidget *>(), high);
}

void TestCanvas::lockedAndHiddenWidgetsStay()
{
    PlacedWidget *locked = place(gauge, version, {0, 0, 800, 480});
    PlacedWidget *free = place(gauge, version, {80, 80, 100, 100});
    PlacedWidget *hidden = place(gauge, version, {300, 80, 100, 100});
    m_document->setLocked(locked, true);
    m_document->setVisible(hidden, false);
    m_document->undoStack()->clear();
    QSignalSpy message(m_view.get(), &CanvasView::message);

    m_document->setSelection({locked});
    drag(at({800, 480}), at({700, 400})); // where its handle would be
    drag(at({350, 130}), at({170, 110})); // from it: selects what lies on it
    QCOMPARE(m_document->selection(), QVector<PlacedWidget *>{free});
    m_document->setSelection({locked});
    QTest::keyClick(m_view.get(), Qt::Key_Right);
    QCOMPARE(steps(), 0);
    QVERIFY(message.size() >= 2);
    QVERIFY(message.last().at(0).toString().contains(locked->name()));
    QTest::keyClick(m_view.get(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_document->selection(), (QVector<PlacedWidget *>{locked, free}));
    QTest::keyClick(m_view.get(), Qt::Key_Right);
    QCOMPARE(free->geometry().x(), 81.0);
    QCOMPARE(locked->geometry().x(), 0.0);
}

// Studio mode: keys ----------------------------------------------------------------------------------------

void TestCanvas::nudgesMerge()
{
    PlacedWidget *widget = place(gauge, version, {80, 80, 100, 50});
    QTest::keyClick(m_view.get(), Qt::Key_Right);
    QTest::keyClick(m_view.get(), Qt::Key_Right);
    QTest::keyClick(m_view.get(), Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(widget->geometry(), QRectF(82, 90, 100, 50));
    QCOMPARE(steps(), 1);
    QTest::keyClick(m_view.get(), Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(m_view.get(), Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(widget->geometry(), QRectF(82, 90, 99, 60));
    QCOMPARE(steps(), 2);
    QTest::qWait(350);
    QTest::keyClick(m_view.get(), Qt::Key_Up, Qt::ControlModifier | Qt::KeypadModifier);
    QCOMPARE(steps(), 3);
    m_document->undoStack()->setIndex(0);
    QCOMPARE(widget->geometry(), QRectF(80, 80, 100, 50));
}

void TestCanvas::keyboardEdits()
{
    const QString decimals = QStringLiteral("decimals");
    PlacedWidget *first = place(gauge, version, {80, 80, 100, 100});
    PlacedWidget *second = place(gauge, version, {300, 80, 100, 100});
    m_document->setFieldValue(first, decimals, 4);
    m_document->setSelection({first});
    QTest::keyClick(m_view.get(), Qt::Key_D, Qt::ControlModifier);
    PlacedWidget *copy = m_document->current();
    QCOMPARE(m_document->widgets().size(), 3);
    QCOMPARE(copy->geometry(), QRectF(88, 88, 100, 100));
    QCOMPARE(copy->fieldValue(decimals).toInt(), 4);

    m_document->setSelection({first, second});
    QTest::keyClick(m_view.get(), Qt::Key_C, Qt::ControlModifier);
    QVERIFY(QGuiApplication::clipboard()->text().contains(QStringLiteral("\"scenario\"")));
    QTest::keyClick(m_view.get(), Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(m_view.get(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_document->widgets().size(), 7);
    QCOMPARE(m_document->selection().first()->geometry().topLeft(), QPointF(96, 96));
    QCOMPARE(m_document->selection().first()->fieldValue(decimals).toInt(), 4);
    QTest::keyClick(m_view.get(), Qt::Key_Delete);
    m_document->undoStack()->undo();
    QCOMPARE(m_document->widgets().size(), 7);

    QSignalSpy message(m_view.get(), &CanvasView::message);
    QGuiApplication::clipboard()->setText(QStringLiteral("not a scenario"));
    QTest::keyClick(m_view.get(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_document->widgets().size(), 7);
    QCOMPARE(message.size(), 1);

    m_document->undoStack()->clear();
    m_document->setSelection({second, first}); // at the bottom: 0 and 1
    QTest::keyClick(m_view.get(), Qt::Key_PageUp, Qt::ControlModifier);
    QCOMPARE(m_document->widgets().mid(0, 3), (QVector<PlacedWidget *>{copy, first, second}));
    QCOMPARE(steps(), 1);
    QTest::keyClick(m_view.get(), Qt::Key_PageDown, Qt::ControlModifier);
    QTest::keyClick(m_view.get(), Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(m_document->widgets().mid(0, 3), (QVector<PlacedWidget *>{first, second, copy}));
    QCOMPARE(steps(), 2);
}

// Runtime mode ---------------------------------------------------------------------------------------------

void TestCanvas::modesDecideWhoGetsTheInput()
{
    place(probe, probeVersion, {100, 100, 200, 200});
    QTouchDevice *device = QTest::createTouchDevice();
    const auto useEverything = [&] {
        received = Received();
        QPoint inside = at({150, 150});
        hover(inside);
        drag(inside, inside + QPoint(1, 1));
        send(QEvent::MouseButtonDblClick, inside, Qt::LeftButton, Qt::LeftButton);
        release(inside);
        QWheelEvent wheel(inside, viewport()->mapToGlobal(inside), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &wheel);
        inside = at({150, 150}); // it was not taken, but scrolled
        QTest::keyClick(m_view.get(), Qt::Key_X);
        QTest::touchEvent(viewport(), device).press(0, inside, viewport());
        QTest::touchEvent(viewport(), device).release(0, inside, viewport());
        received.events.removeAll(QEvent::WindowActivate);
    };
    useEverything();
    QCOMPARE(received.events, QVector<QEvent::Type>());

    m_document->setMode(BenchMode::Runtime);
    useEverything();
    for (const QEvent::Type type :
         {QEvent::GraphicsSceneHoverEnter, QEvent::GraphicsSceneMousePress, QEvent::GraphicsSceneMouseRelease,
          QEvent::GraphicsSceneWheel, QEvent::KeyPress, QEvent::TouchBegin, QEvent::TouchEnd}) {
        QVERIFY2(received.has(type), qPrintable(QString::number(type)));
    }
    QCOMPARE(m_document->widgets().first()->geometry(), QRectF(100, 100, 200, 200));
    QCOMPARE(steps(), 0);
    m_document->setMode(BenchMode::Studio);
    useEverything();
    QCOMPARE(received.events, QVector<QEvent::Type>());
}

void TestCanvas::runtimeKeysGoToTheWidgetButForAFew()
{
    m_view.reset();
    QWidget window;
    auto *view = new CanvasView(m_document.get(), &window);
    view->resize(400, 300);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    view->setFocus();
    QStringList triggered;
    for (const char *shortcut : {"Del", "F5", "F6", "Ctrl+R"}) {
        const QString keys = QLatin1String(shortcut);
        auto *action = new QAction(&window);
        action->setShortcut(QKeySequence(keys));
        connect(action, &QAction::triggered, view, [&triggered, keys] { triggered.append(keys); });
        window.addAction(action);
    }
    const auto typeAll = [&] {
        triggered.clear();
        QTest::keyClick(view, Qt::Key_Delete);
        QTest::keyClick(view, Qt::Key_F5);
        QTest::keyClick(view, Qt::Key_F6);
        QTest::keyClick(view, Qt::Key_R, Qt::ControlModifier);
        return triggered.join(QLatin1Char(' '));
    };
    QCOMPARE(typeAll(), QStringLiteral("Del F5 F6 Ctrl+R"));
    m_document->setMode(BenchMode::Runtime);
    QCOMPARE(typeAll(), QStringLiteral("F5 F6 Ctrl+R"));
    view->setKeepsNoKeys(true);
    QCOMPARE(typeAll(), QStringLiteral("F5"));
}

void TestCanvas::twoFingersPinch()
{
    LogRecorder log; // what the recogniser tells of each move
    place(probe, probeVersion, {100, 100, 300, 300});
    m_document->setMode(BenchMode::Runtime);
    m_view->setTouchEmulation(true);
    const QPoint centre = at({250, 250});
    hover(centre);
    hover(centre, Qt::AltModifier);
    hover(centre + QPoint(30, 0), Qt::AltModifier);
    press(centre + QPoint(30, 0), Qt::AltModifier);
    for (int distance = 32; distance <= 60; distance += 4) {
        moveTo(centre + QPoint(distance, 0), Qt::AltModifier);
    }
    QVERIFY2(received.scale > 1.8 && received.scale < 2.1, qPrintable(QString::number(received.scale)));
    QCOMPARE(received.fingers.last(), 2);
    release(centre + QPoint(60, 0), Qt::AltModifier);
    QCOMPARE(received.events.count(QEvent::TouchBegin), 1);
    QCOMPARE(received.events.count(QEvent::TouchEnd), 1);
    QVERIFY(!received.has(QEvent::GraphicsSceneMousePress));
    log.takeLines();
}

void TestCanvas::fingersFollowTheKeysAndAreCancelled()
{
    LogRecorder log;
    PlacedWidget *widget = place(probe, probeVersion, {100, 100, 300, 300});
    m_document->setMode(BenchMode::Runtime);
    m_view->setTouchEmulation(true);
    const QPoint inside = at({200, 200});
    hover(inside);
    press(inside);
    // The events of a modifier key tell what was held before.
    QKeyEvent altPress(QEvent::KeyPress, Qt::Key_Alt, Qt::NoModifier);
    QApplication::sendEvent(m_view.get(), &altPress);
    QCOMPARE(received.fingers.last(), 2);
    QKeyEvent altRelease(QEvent::KeyRelease, Qt::Key_Alt, Qt::AltModifier);
    QApplication::sendEvent(m_view.get(), &altRelease);
    moveTo(inside + QPoint(10, 0));
    QCOMPARE(received.fingers.last(), 1);
    moveTo(inside + QPoint(20, 0), Qt::AltModifier);
    moveTo(inside + QPoint(30, 0), Qt::AltModifier | Qt::ShiftModifier);
    moveTo(inside + QPoint(40, 0), Qt::AltModifier | Qt::ShiftModifier | Qt::ControlModifier);
    moveTo(inside + QPoint(50, 0));
    moveTo(inside + QPoint(60, 0));
    QCOMPARE(received.fingers.first(), 1);
    QVERIFY(received.fingers.contains(3));
    QCOMPARE(received.fingers.last(), 1);
    // The right button is another Alt.
    send(QEvent::MouseButtonPress, inside, Qt::RightButton, Qt::LeftButton | Qt::RightButton);
    moveTo(inside + QPoint(10, 0));
    QCOMPARE(received.fingers.last(), 2);

    QFocusEvent lost(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(m_view.get(), &lost);
    const int sent = received.events.size();
    moveTo(inside + QPoint(20, 0));
    release(inside + QPoint(20, 0));
    QCOMPARE(received.events.size(), sent);
    received = Received();
    press(inside); // a new touch
    QVERIFY(received.has(QEvent::TouchBegin));
    QCOMPARE(received.fingers, QVector<int>{1});

    m_document->setMode(BenchMode::Studio); // in the middle of it
    moveTo(inside + QPoint(50, 50));
    release(inside + QPoint(50, 50));
    QCOMPARE(widget->geometry(), QRectF(100, 100, 300, 300));
    log.takeLines();
}

void TestCanvas::untakenTouchBecomesTheMouse()
{
    place(probe, probeVersion, {100, 100, 300, 300});
    m_document->setMode(BenchMode::Runtime);
    m_view->setTouchEmulation(true);
    received.takesTouch = false;
    const QPoint inside = at({200, 200});
    drag(inside, inside + QPoint(20, 0));
    QCOMPARE(received.events.count(QEvent::TouchBegin), 1);
    QVERIFY(!received.has(QEvent::TouchUpdate));
    QCOMPARE(received.events.count(QEvent::GraphicsSceneMousePress), 1);
    QVERIFY(received.has(QEvent::GraphicsSceneMouseMove));
    QCOMPARE(received.events.count(QEvent::GraphicsSceneMouseRelease), 1);
}

// View -----------------------------------------------------------------------------------------------------

void TestCanvas::zoomKeepsThePointUnderTheCursor()
{
    const QPoint cursor(700, 130);
    const auto wheel = [&](int delta, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(cursor, viewport()->mapToGlobal(cursor), {}, {0, delta}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &event);
    };
    const QPointF point = m_view->mapToScene(cursor);
    QSignalSpy zoomed(m_view.get(), &CanvasView::zoomChanged);
    for (int i = 0; i < 5; ++i) {
        wheel(120, Qt::ControlModifier);
        QVERIFY(QLineF(m_view->viewportTransform().map(point), cursor).length() < 3);
    }
    QCOMPARE(m_view->zoom(), std::pow(1.25, 5));
    QCOMPARE(zoomed.size(), 5);
    for (int i = 0; i < 40; ++i) {
        wheel(-120, Qt::ControlModifier);
    }
    QCOMPARE(m_view->zoom(), CanvasView::smallestZoom);
    m_view->zoomIn();
    QCOMPARE(m_view->zoom(), 0.25);
    m_view->setZoom(1);
    m_view->zoomOut();
    QCOMPARE(m_view->zoom(), 0.75);

    const QPointF middle = m_view->mapToScene(cursor);
    wheel(-120, {});
    QVERIFY(m_view->mapToScene(cursor).y() > middle.y());
    wheel(-120, Qt::ShiftModifier);
    QVERIFY(m_view->mapToScene(cursor).x() > middle.x());
    const QPointF grabbed = m_view->mapToScene({300, 300});
    send(QEvent::MouseButtonPress, {300, 300}, Qt::MiddleButton, Qt::MiddleButton);
    send(QEvent::MouseMove, {340, 320}, Qt::NoButton, Qt::MiddleButton);
    send(QEvent::MouseButtonRelease, {340, 320}, Qt::MiddleButton, Qt::NoButton);
    QVERIFY(QLineF(m_view->mapToScene({340, 320}), grabbed).length() < 2);

    const QJsonObject state = m_view->viewState();
    m_view->fitPage();
    QVERIFY(viewport()->rect().contains(QRect(at({0, 0}), at({800, 480}))));
    m_view->resize(400, 300);
    QVERIFY(viewport()->rect().contains(QRect(at({0, 0}), at({800, 480}))));
    m_view->setViewState(state);
    QCOMPARE(m_view->zoom(), 0.75);
}

// Clear parts are chequered; the grid is there when it is wanted, and never closer than eye can tell.
void TestCanvas::pageIsDrawnAsItIs()
{
    const auto colorsOfALine = [this] {
        const QImage picture = viewport()->grab(QRect(at({100, 105}), QSize(64, 1))).toImage();
        QSet<QRgb> colors;
        for (int x = 0; x < picture.width(); ++x) {
            colors.insert(picture.pixel(x, 0));
        }
        return colors;
    };
    PageState page = m_document->page();
    page.gridIsShown = false;
    page.background = QColor();
    m_document->setPage(page);
    QCOMPARE(colorsOfALine(), (QSet<QRgb>{qRgb(0xff, 0xff, 0xff), qRgb(0xd8, 0xd8, 0xd8)}));
    page.background = QColor(0, 0, 255, 0);
    m_document->setPage(page);
    QCOMPARE(colorsOfALine(), (QSet<QRgb>{qRgb(0xff, 0xff, 0xff), qRgb(0xd8, 0xd8, 0xd8)}));
    for (const QColor &color : {QColor(Qt::white), QColor(Qt::black)}) {
        page.background = color;
        page.gridIsShown = false;
        m_document->setPage(page);
        QCOMPARE(colorsOfALine(), QSet<QRgb>{color.rgb()});
        page.gridIsShown = true;
        page.gridStep = 10;
        m_document->setPage(page);
        QCOMPARE(colorsOfALine().size(), 2);
        QVERIFY(colorsOfALine().contains(color.rgb()));
        page.gridStep = 1;
        m_document->setPage(page);
        QCOMPARE(colorsOfALine().size(), 2);
    }
}

void TestCanvas::touchIsSeen()
{
    const LogRecorder log;
    PageState page = m_document->page();
    page.background = Qt::white;
    page.gridIsShown = false;
    m_document->setPage(page);
    m_document->setMode(BenchMode::Runtime);
    m_view->setTouchEmulation(true);
    const auto isMarked = [this](const QPoint &place) {
        const QImage picture = viewport()->grab(QRect(place - QPoint(8, 8), QSize(17, 17))).toImage();
        return picture.pixelColor(0, 8) != QColor(Qt::white) || picture.pixelColor(4, 8) != QColor(Qt::white);
    };
    const QPoint finger = at({200, 200});
    QVERIFY(!isMarked(finger));
    QEnterEvent enter(finger, finger, viewport()->mapToGlobal(finger));
    QApplication::sendEvent(viewport(), &enter);
    hover(finger);
    QVERIFY(isMarked(finger));
    // A second finger mirrors the first at the point where it came.
    hover(finger, Qt::AltModifier);
    hover(finger + QPoint(60, 0), Qt::AltModifier);
    QVERIFY(isMarked(finger + QPoint(60, 0)) && isMarked(finger - QPoint(60, 0)));
    hover(finger);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(viewport(), &leave);
    QVERIFY(!isMarked(finger) && !isMarked(finger - QPoint(60, 0)));
}

void TestCanvas::spaceAndDragMoveThePage()
{
    PlacedWidget *widget = place(probe, probeVersion, {100, 100, 300, 300});
    m_document->setSelection({widget});
    m_view->setZoom(2);
    const QPoint inside = at({150, 150});
    const QPointF grabbed = m_view->mapToScene(inside);
    QTest::keyPress(m_view.get(), Qt::Key_Space);
    drag(inside, inside + QPoint(-30, -20));
    QTest::keyRelease(m_view.get(), Qt::Key_Space);
    QVERIFY(QLineF(m_view->mapToScene(inside + QPoint(-30, -20)), grabbed).length() < 2);
    QCOMPARE(widget->geometry(), QRectF(100, 100, 300, 300));
    QCOMPARE(steps(), 0);
    drag(inside, inside + QPoint(40, 40)); // without it the widget
    QCOMPARE(steps(), 1);
    QTest::keyClick(m_view.get(), Qt::Key_Escape);
    QVERIFY(m_document->selection().isEmpty());
}

// By the mouse that of what is below it, by the key that of the selection; none while fingers are emulated.
void TestCanvas::menusAreOfWhatIsThere()
{
    PlacedWidget *widget = place(probe, probeVersion, {100, 100, 300, 300});
    QSignalSpy menus(m_view.get(), &CanvasView::contextMenuRequested);
    const auto ask = [&](QContextMenuEvent::Reason reason, const QPoint &position) {
        QContextMenuEvent event(reason, position, viewport()->mapToGlobal(position));
        QApplication::sendEvent(viewport(), &event);
        return menus.isEmpty() ? QVariantList() : menus.takeFirst();
    };
    const QPoint inside = at({200, 200});
    const QPoint beside = at({50, 50});
    QCOMPARE(ask(QContextMenuEvent::Mouse, inside).value(0).value<PlacedWidget *>(), widget);
    QCOMPARE(ask(QContextMenuEvent::Mouse, beside).value(0).value<PlacedWidget *>(), nullptr);
    m_document->setSelection({widget});
    const QVariantList byKey = ask(QContextMenuEvent::Keyboard, beside);
    QCOMPARE(byKey.value(0).value<PlacedWidget *>(), widget);
    QCOMPARE(byKey.value(1).toPoint(), viewport()->mapToGlobal(at({250, 250})));
    m_document->setMode(BenchMode::Runtime);
    m_view->setTouchEmulation(true);
    QVERIFY(ask(QContextMenuEvent::Mouse, inside).isEmpty());
    m_view->setTouchEmulation(false);
    QCOMPARE(ask(QContextMenuEvent::Mouse, beside).size(), 2);
}

void TestCanvas::cardsSayWhyThereIsNoInstance()
{
    PlacedWidget *card = place(gauge, QStringLiteral("1.0"), {100, 100, 300, 140});
    const QImage with = viewport()->grab().toImage();
    m_document->setVisible(card, false);
    QVERIFY(viewport()->grab().toImage() != with);
    m_document->setVisible(card, true);
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    }
    QHelpEvent help(QEvent::ToolTip, at({150, 150}), viewport()->mapToGlobal(at({150, 150})));
    QApplication::sendEvent(viewport(), &help);
    QVERIFY(QToolTip::text().contains(QStringLiteral("gauge 1.0.0")));
    drag(at({250, 170}), at({290, 210}), Qt::ControlModifier); // it is moved as any other
    QCOMPARE(card->geometry().topLeft(), QPointF(140, 140));

    Finding finding;
    finding.message = QStringLiteral("the id <b>a</b> is no UUID");
    finding.hint = QStringLiteral("libQt5Svg.so.5 is missing");
    finding.file = QStringLiteral("metadata.json");
    finding.line = 3;
    ErrorCard page;
    page.setFindings(QStringLiteral("Not loaded"), {finding, finding});
    page.setFindings(QStringLiteral("Not loaded"), {finding}); // replaces
    QAction retry(QStringLiteral("Try again"));
    retry.setObjectName(QStringLiteral("retry"));
    QSignalSpy retried(&retry, &QAction::triggered);
    page.addButton(&retry);
    page.findChild<QPushButton *>(QStringLiteral("retryButton"))->click();
    QCOMPARE(retried.size(), 1);
    page.findChild<QPushButton *>(QStringLiteral("errorCardCopy"))->click();
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QStringLiteral("Not loaded\n\nThe id <b>a</b> is no UUID\nmetadata.json:3\n"
                            "libQt5Svg.so.5 is missing\n"));
}

KORA_TEST_MAIN(TestCanvas)

#include "tst_canvas.moc"
