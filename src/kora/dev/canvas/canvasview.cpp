// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/canvasview.h>

#include <QtCore/QMetaEnum>
#include <QtCore/QMimeData>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleOptionGraphicsItem>
#include <QtWidgets/QToolTip>

#include <algorithm>

#include <kora/dev/canvas/pagepainter.h>
#include <kora/dev/canvas/studiotool.h>
#include <kora/dev/canvas/touchemulator.h>
#include <kora/dev/canvas/widgetcard.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/model/plugincall.h>

namespace KORA {
namespace DEV {

namespace {

constexpr double pixelGridZoom = 8;

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::Leave:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::Gesture:
    case QEvent::GestureOverride:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::DragLeave:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

// Moves come by the hundred and say little.
bool isWorthRecording(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::TouchEnd:
    case QEvent::KeyPress:
        return true;
    default:
        return false;
    }
}

// An item may put others on the page.
QString nameOf(const PlacedWidget *widget)
{
    return widget ? widget->name() : QStringLiteral("page");
}

QString eventName(QEvent::Type type)
{
    return QString::fromLatin1(QMetaEnum::fromType<QEvent::Type>().valueToKey(type));
}

QPointF eventPosition(const QEvent &event, const QPointF &otherwise)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return static_cast<const QMouseEvent &>(event).localPos();
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd: {
        const auto &points = static_cast<const QTouchEvent &>(event).touchPoints();
        return points.isEmpty() ? otherwise : points.constFirst().pos();
    }
    default:
        return otherwise;
    }
}

// Of a modifier key itself, its events tell the keys that were held before.
Qt::KeyboardModifiers modifiersAfter(const QKeyEvent &event)
{
    const Qt::KeyboardModifier own = event.key() == Qt::Key_Alt       ? Qt::AltModifier
                                     : event.key() == Qt::Key_Shift   ? Qt::ShiftModifier
                                     : event.key() == Qt::Key_Control ? Qt::ControlModifier
                                                                      : Qt::NoModifier;
    Qt::KeyboardModifiers modifiers = event.modifiers();
    return modifiers.setFlag(own, event.type() == QEvent::KeyPress);
}

} // namespace

CanvasView::CanvasView(BenchDocument *document, QWidget *parent)
    : QGraphicsView(document->scene(), parent)
    , m_document(document)
    , m_edits(document)
    , m_navigation(new PageNavigation(document, this))
    , m_studio(new StudioTool(document, this))
    , m_touch(new TouchEmulator(viewport()))
{
    setObjectName(QStringLiteral("canvas"));
    setAccessibleName(tr("Canvas"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setTransformationAnchor(QGraphicsView::NoAnchor);
    setResizeAnchor(QGraphicsView::NoAnchor);
    setViewportUpdateMode(QGraphicsView::SmartViewportUpdate);
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    setOptimizationFlag(QGraphicsView::IndirectPainting); // drawItems() tells whose paint() runs
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_AcceptTouchEvents);

    connectTools();
    connectDocument();
    applyMode();
}

CanvasView::~CanvasView()
{
    // The viewport, and the emulator with it, outlives this class's own part.
    m_touch->disconnect(this);
    m_studio->disconnect(this);
}

void CanvasView::connectTools()
{
    m_overlayTimer.setSingleShot(true);
    m_overlayTimer.setInterval(0);
    connect(&m_overlayTimer, &QTimer::timeout, this, &CanvasView::updateOverlay);
    connect(m_navigation, &PageNavigation::zoomChanged, this, &CanvasView::zoomChanged);
    connect(m_studio, &StudioTool::overlayChanged, this, &CanvasView::updateOverlay);
    connect(m_studio, &StudioTool::message, this, &CanvasView::message);
    connect(m_studio, &StudioTool::activated, this, &CanvasView::activated);
    connect(m_touch, &TouchEmulator::fingersMoved, this, &CanvasView::updateOverlay);
    connect(&m_edits, &SelectionEdits::message, this, &CanvasView::message);
}

void CanvasView::connectDocument()
{
    connect(m_document, &BenchDocument::widgetAdded, this, &CanvasView::watch);
    connect(m_document, &BenchDocument::widgetAboutToBeRemoved, this, [this] { m_overlayTimer.start(); });
    connect(m_document, &BenchDocument::selectionChanged, this, [this] { m_overlayTimer.start(); });
    connect(m_document, &BenchDocument::modeChanged, this, &CanvasView::applyMode);
    connect(m_document, &BenchDocument::loaded, this, &CanvasView::applyMode);
    connect(m_document, &BenchDocument::pageChanged, this, [this] {
        m_navigation->adapt();
        viewport()->update();
    });
    for (PlacedWidget *widget : m_document->widgets()) {
        watch(widget);
    }
}

void CanvasView::watch(PlacedWidget *widget)
{
    connect(widget, &PlacedWidget::changed, &m_overlayTimer, QOverload<>::of(&QTimer::start));
    connect(widget, &PlacedWidget::instanceChanged, &m_overlayTimer, QOverload<>::of(&QTimer::start));
    m_overlayTimer.start();
}

bool CanvasView::isStudio() const
{
    return m_document->mode() == BenchMode::Studio;
}

void CanvasView::applyMode()
{
    cancelGesture();
    m_navigation->endPan();
    m_spaceIsDown = false;
    setInteractive(!isStudio());
    m_touch->setHovering(emulatesTouch() && viewport()->underMouse());
    updateCursor(mousePosition());
    viewport()->update();
}

void CanvasView::setTouchEmulation(bool isOn)
{
    m_touch->cancel();
    m_touchIsEmulated = isOn;
    m_touch->setHovering(emulatesTouch() && viewport()->underMouse());
    updateCursor(mousePosition());
    if (emulatesTouch()) {
        emit message(tr("The left button is a finger. Alt or the right button: a second one, mirrored; with "
                        "Shift parallel; with Ctrl a third"));
    }
}

void CanvasView::cancelGesture()
{
    m_studio->cancel();
    m_touch->cancel();
}

// View -----------------------------------------------------------------------------------------------------

void CanvasView::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    m_navigation->adapt();
}

void CanvasView::scrollContentsBy(int dx, int dy)
{
    QGraphicsView::scrollContentsBy(dx, dy);
    // What was painted over the scene moved with it; fingers, labels and elided cards do not belong there.
    viewport()->update();
}

void CanvasView::wheelEvent(QWheelEvent *event)
{
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        m_navigation->zoomByWheel(*event);
    } else if (isStudio()) {
        m_navigation->scrollByWheel(*event);
    } else {
        event->ignore();
        QGraphicsView::wheelEvent(event);
        return;
    }
    event->accept();
}

bool CanvasView::panPress(const QMouseEvent &event)
{
    const bool isPan =
        event.button() == Qt::MiddleButton || (event.button() == Qt::LeftButton && m_spaceIsDown);
    if (isPan) {
        m_navigation->startPan(event);
        updateCursor(event.localPos());
    }
    return isPan;
}

QPointF CanvasView::mousePosition() const
{
    return viewport()->mapFromGlobal(QCursor::pos());
}

void CanvasView::updateCursor(const QPointF &position)
{
    if (m_navigation->isPanning()) {
        viewport()->setCursor(Qt::ClosedHandCursor);
    } else if (m_spaceIsDown) {
        viewport()->setCursor(Qt::OpenHandCursor);
    } else if (isStudio()) {
        viewport()->setCursor(m_studio->cursorAt(position));
    } else if (emulatesTouch()) {
        viewport()->setCursor(Qt::BlankCursor); // finger 1 is drawn there
    } else {
        viewport()->unsetCursor();
    }
}

// Mouse ----------------------------------------------------------------------------------------------------

void CanvasView::mousePressEvent(QMouseEvent *event)
{
    if (panPress(*event)) {
        return;
    }
    if (isStudio()) {
        if (event->button() == Qt::LeftButton) {
            m_studio->press(*event);
        } else if (event->button() == Qt::RightButton && !m_studio->isActive()) {
            selectUnderMouse(*event);
        }
        return;
    }
    if (event->button() == Qt::LeftButton) {
        selectUnderMouse(*event);
    }
    if (!m_touchIsEmulated || !m_touch->mousePress(*event)) {
        QGraphicsView::mousePressEvent(event);
    }
}

/// The fields shown are those of the widget that is used.
void CanvasView::selectUnderMouse(const QMouseEvent &event)
{
    PlacedWidget *widget = m_studio->widgetAt(event.localPos());
    if (widget && !m_document->selection().contains(widget)) {
        m_document->setSelection({widget});
    }
}

void CanvasView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_navigation->isPanning()) {
        m_navigation->pan(*event);
        return;
    }
    if (isStudio()) {
        if (m_studio->isActive()) {
            m_studio->move(*event);
        }
        updateCursor(event->localPos());
        return;
    }
    if (!m_touchIsEmulated || !m_touch->mouseMove(*event)) {
        QGraphicsView::mouseMoveEvent(event);
    }
}

void CanvasView::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_navigation->isPanning()) {
        m_navigation->endPan();
        updateCursor(event->localPos());
        return;
    }
    if (isStudio()) {
        if (event->button() == Qt::LeftButton && m_studio->isActive()) {
            m_studio->release(*event);
        }
        updateCursor(event->localPos());
        return;
    }
    if (!m_touchIsEmulated || !m_touch->mouseRelease(*event)) {
        QGraphicsView::mouseReleaseEvent(event);
    }
}

void CanvasView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (panPress(*event)) {
        return;
    }
    if (isStudio()) {
        if (event->button() == Qt::LeftButton) {
            m_studio->doubleClick(*event);
        }
        return;
    }
    PlacedWidget *widget = m_studio->widgetAt(event->localPos());
    if (widget && !widget->item()) {
        emit activated(widget);
    } else if (!m_touchIsEmulated || !m_touch->mousePress(*event)) { // a finger knows no double-click
        QGraphicsView::mouseDoubleClickEvent(event);
    }
}

void CanvasView::contextMenuEvent(QContextMenuEvent *event)
{
    if (emulatesTouch() && event->reason() == QContextMenuEvent::Mouse) {
        return; // the right button is a key of the fingers
    }
    if (!isStudio()) {
        event->ignore();
        QGraphicsView::contextMenuEvent(event);
        if (event->isAccepted()) {
            return;
        }
    }
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    PlacedWidget *widget = isByKey ? m_document->current() : m_studio->widgetAt(event->pos());
    const QPoint position = isByKey && widget
                                ? viewport()->mapToGlobal(toViewport(widget->geometry()).center().toPoint())
                                : event->globalPos();
    event->accept();
    emit contextMenuRequested(widget, position);
}

// Events ---------------------------------------------------------------------------------------------------

bool CanvasView::event(QEvent *event)
{
    // Who accepts this gets the key even if it is a shortcut of the window.
    if (event->type() == QEvent::ShortcutOverride) {
        const bool isTaken = isStudio() ? m_studio->isActive() : !keepsKey(*static_cast<QKeyEvent *>(event));
        if (isTaken) {
            event->accept();
            return true;
        }
    }
    return QGraphicsView::event(event);
}

bool CanvasView::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::Leave:
        m_touch->setHovering(emulatesTouch() && event->type() == QEvent::Enter);
        updateCursor(mousePosition());
        break;
    case QEvent::ToolTip:
        showToolTip(*static_cast<QHelpEvent *>(event));
        if (isStudio() || QToolTip::isVisible()) {
            return true;
        }
        break;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::Gesture:
    case QEvent::GestureOverride:
        if (isStudio()) {
            event->ignore(); // a finger on a real screen then becomes the mouse
            return false;
        }
        break;
    default:
        break;
    }
    return isStudio() || !isInput(event->type()) ? QGraphicsView::viewportEvent(event) : runtimeEvent(event);
}

bool CanvasView::runtimeEvent(QEvent *event)
{
    const PlacedWidget *widget = receiver(*event);
    const bool isRecorded = widget && isWorthRecording(event->type());
    PluginCall call(isRecorded ? m_document->activity() : nullptr, ActivityEntry::Event, nameOf(widget),
                    eventName(event->type()));
    switch (event->type()) {
    case QEvent::KeyPress:
        QGraphicsView::keyPressEvent(static_cast<QKeyEvent *>(event));
        return true;
    case QEvent::KeyRelease:
        QGraphicsView::keyReleaseEvent(static_cast<QKeyEvent *>(event));
        return true;
    case QEvent::FocusIn:
        QGraphicsView::focusInEvent(static_cast<QFocusEvent *>(event));
        return true;
    case QEvent::FocusOut:
        QGraphicsView::focusOutEvent(static_cast<QFocusEvent *>(event));
        return true;
    default:
        return QGraphicsView::viewportEvent(event);
    }
}

/// Whose code an event will most likely run.
PlacedWidget *CanvasView::receiver(const QEvent &event) const
{
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        return m_document->widgetOfItem(scene()->focusItem());
    default:
        break;
    }
    if (PlacedWidget *grabber = m_document->widgetOfItem(scene()->mouseGrabberItem())) {
        return grabber;
    }
    // By geometry: to ask the items what is there would run their code.
    return m_studio->widgetAt(eventPosition(event, mousePosition()));
}

void CanvasView::showToolTip(const QHelpEvent &event)
{
    const PlacedWidget *widget = m_studio->widgetAt(event.pos());
    if (widget && !widget->item()) {
        QToolTip::showText(event.globalPos(), widgetCardToolTip(*widget), viewport(),
                           toViewport(widget->geometry()).toAlignedRect());
    } else {
        QToolTip::hideText();
    }
}

void CanvasView::changeEvent(QEvent *event)
{
    QGraphicsView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        viewport()->update();
    }
}

// In studio mode past QGraphicsView, which tells the scene.
// NOLINTBEGIN(bugprone-parent-virtual-call)

void CanvasView::focusInEvent(QFocusEvent *event)
{
    if (isStudio()) {
        QAbstractScrollArea::focusInEvent(event);
    } else {
        runtimeEvent(event);
    }
    event->accept();
    viewport()->update();
}

void CanvasView::focusOutEvent(QFocusEvent *event)
{
    m_spaceIsDown = false;
    if (event->reason() != Qt::PopupFocusReason) {
        cancelGesture();
    }
    if (isStudio()) {
        QAbstractScrollArea::focusOutEvent(event);
    } else {
        runtimeEvent(event);
    }
    viewport()->update();
}

bool CanvasView::focusNextPrevChild(bool next)
{
    return isStudio() ? QAbstractScrollArea::focusNextPrevChild(next)
                      : QGraphicsView::focusNextPrevChild(next);
}

// NOLINTEND(bugprone-parent-virtual-call)

// Keys -----------------------------------------------------------------------------------------------------

/// The keys of the window that work in runtime mode too.
bool CanvasView::keepsKey(const QKeyEvent &event) const
{
    const int key = event.key() | int(event.modifiers() & ~Qt::KeypadModifier);
    if (key == Qt::Key_F5 || key == (Qt::ShiftModifier | Qt::Key_F5)) {
        return true;
    }
    static const int kept[] = {Qt::Key_F6,
                               Qt::ShiftModifier | Qt::Key_F6,
                               Qt::Key_F11,
                               Qt::ControlModifier | Qt::Key_R,
                               Qt::ControlModifier | Qt::ShiftModifier | Qt::Key_R,
                               Qt::ControlModifier | Qt::ShiftModifier | Qt::Key_P};
    return !m_keepsNoKeys && std::find(std::cbegin(kept), std::cend(kept), key) != std::cend(kept);
}

void CanvasView::keyPressEvent(QKeyEvent *event)
{
    if (isStudio()) {
        if (!studioKeyPress(*event)) {
            // Scrolls.
            QAbstractScrollArea::keyPressEvent(event); // NOLINT(bugprone-parent-virtual-call)
        }
        return;
    }
    if (m_touchIsEmulated) {
        m_touch->setModifiers(modifiersAfter(*event));
    }
    runtimeEvent(event);
}

bool CanvasView::studioKeyPress(const QKeyEvent &event)
{
    if (m_studio->isActive()) {
        m_studio->setModifiers(modifiersAfter(event));
    }
    switch (event.key()) {
    case Qt::Key_Escape:
        if (m_studio->isActive()) {
            m_studio->cancel();
        } else {
            m_document->setSelection({});
        }
        updateCursor(mousePosition());
        return true;
    case Qt::Key_Space:
        m_spaceIsDown = true;
        updateCursor(mousePosition());
        return true;
    default:
        // In the middle of a drag its widgets are not edited otherwise.
        return m_studio->isActive() || m_edits.keyPress(event);
    }
}

void CanvasView::keyReleaseEvent(QKeyEvent *event)
{
    if (!isStudio()) {
        if (m_touchIsEmulated) {
            m_touch->setModifiers(modifiersAfter(*event));
        }
        runtimeEvent(event);
        return;
    }
    if (m_studio->isActive()) {
        m_studio->setModifiers(modifiersAfter(*event));
    }
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        m_spaceIsDown = false;
        updateCursor(mousePosition());
    }
}

// Drop -----------------------------------------------------------------------------------------------------

/// Where the widget comes to lie: under the cursor, in line with the grid and its neighbours.
QRectF CanvasView::dropRect(const QDropEvent &event) const
{
    QRectF rect = m_drop.rectAt(viewportTransform().inverted().map(event.posF()));
    if (!event.keyboardModifiers().testFlag(Qt::ControlModifier)) {
        rect.translate(m_studio->snapOffset(rect));
    }
    rect.moveTopLeft(QPointF(rect.topLeft().toPoint()));
    return rect;
}

void CanvasView::setDropRect(const QRectF &rect)
{
    m_dropRect = rect;
    updateOverlay();
}

void CanvasView::dragEnterEvent(QDragEnterEvent *event)
{
    m_isWidgetDrag = event->mimeData()->hasFormat(widgetMimeType());
    if (m_isWidgetDrag) {
        m_drop = WidgetDrop(*event->mimeData(), *m_document);
        event->acceptProposedAction();
    } else {
        QGraphicsView::dragEnterEvent(event);
    }
}

void CanvasView::dragMoveEvent(QDragMoveEvent *event)
{
    if (!m_isWidgetDrag) {
        QGraphicsView::dragMoveEvent(event);
        return;
    }
    event->acceptProposedAction();
    setDropRect(dropRect(*event));
}

void CanvasView::dragLeaveEvent(QDragLeaveEvent *event)
{
    setDropRect({});
    if (!m_isWidgetDrag) {
        QGraphicsView::dragLeaveEvent(event);
    }
}

void CanvasView::dropEvent(QDropEvent *event)
{
    if (!m_isWidgetDrag) {
        QGraphicsView::dropEvent(event);
        return;
    }
    const QRectF rect = dropRect(*event);
    setDropRect({});
    if (!m_drop.isValid()) {
        emit message(tr("What was dropped names no widget and version"));
        return;
    }
    event->acceptProposedAction();
    m_document->place(m_drop.widgetId(), m_drop.version(), rect.center());
    setFocus(Qt::MouseFocusReason);
}

// Painting -------------------------------------------------------------------------------------------------

QRectF CanvasView::toViewport(const QRectF &rect) const
{
    return viewportTransform().mapRect(rect);
}

void CanvasView::drawBackground(QPainter *painter, const QRectF &rect)
{
    paintPage(*painter, rect, m_document->page(), zoom(), palette());
}

void CanvasView::drawForeground(QPainter *painter, const QRectF &rect)
{
    if (zoom() >= pixelGridZoom && m_document->page().gridIsShown) {
        paintPixelGrid(*painter, rect, m_document->page());
    }
}

/// One by one, so that a crash in paint() leaves the name of the widget behind.
void CanvasView::drawItems(QPainter *painter, int numItems, QGraphicsItem *items[],
                           const QStyleOptionGraphicsItem options[])
{
    const QGraphicsItem *drawn = nullptr;
    for (int i = 0; i < numItems; ++i) {
        const QGraphicsItem *top = items[i]->topLevelItem();
        if (top == drawn) {
            continue; // drawn with its parent
        }
        drawn = top;
        const PlacedWidget *widget = m_document->widgetOfItem(top);
        PluginCall call(nullptr, ActivityEntry::Event, nameOf(widget), QStringLiteral("paint"));
        QGraphicsView::drawItems(painter, 1, items + i, options + i);
    }
}

void CanvasView::paintEvent(QPaintEvent *event)
{
    QGraphicsView::paintEvent(event);
    QPainter painter(viewport());
    paintCards(painter, event->region());
    if (isStudio()) {
        m_studio->paint(painter);
    } else if (m_touchIsEmulated) {
        m_touch->paint(painter, palette());
    }
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
    }
    if (!m_dropRect.isEmpty()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(toViewport(m_dropRect).toRect().adjusted(0, 0, -1, -1));
    }
}

void CanvasView::paintCards(QPainter &painter, const QRegion &exposed)
{
    for (const PlacedWidget *widget : m_document->widgets()) {
        const QRectF rect = toViewport(widget->geometry());
        if (!widget->item() && widget->isVisible() && exposed.intersects(rect.toAlignedRect())) {
            paintWidgetCard(painter, rect, *widget, palette(), font());
        }
    }
}

QRegion CanvasView::overlayRegion() const
{
    QRegion result = isStudio() ? m_studio->region() : m_touchIsEmulated ? m_touch->region() : QRegion();
    for (const PlacedWidget *widget : m_document->widgets()) {
        if (!widget->item()) {
            result += toViewport(widget->geometry()).toAlignedRect();
        }
    }
    return m_dropRect.isEmpty() ? result : result + toViewport(m_dropRect).toAlignedRect();
}

void CanvasView::updateOverlay()
{
    const QRegion before = m_overlay;
    m_overlay = overlayRegion();
    viewport()->update(before + m_overlay);
}

} // namespace DEV
} // namespace KORA
