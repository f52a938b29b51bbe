// SPDX-License-Identifier: Apache-2.0
//
// What mouse, keys, touch and drops do on the canvas: in studio mode to the page, in runtime mode to the widgets.
#include <kora/dev/canvas/canvasview.h>

#include <QtCore/QMetaEnum>
#include <QtCore/QMimeData>
#include <QtWidgets/QApplication>
#include <QtWidgets/QToolTip>

#include <kora/dev/canvas/studiotool.h>
#include <kora/dev/canvas/touchemulator.h>
#include <kora/dev/canvas/widgetcard.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/model/plugincall.h>

namespace KORA {
namespace DEV {

namespace {

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

} // namespace DEV
} // namespace KORA
