// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/studiotool.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsView>

#include <algorithm>
#include <cmath>

#include <kora/dev/model/benchdocument.h>

namespace KORA {
namespace DEV {

namespace {

constexpr qreal snapPixels = 6; // of the viewport
// Seen on every page, and in no other use: neither the palette's nor a usual plant colour.
const QColor guideColor(0xe0, 0x1e, 0x8c);

QString signedNumber(qreal number)
{
    const int whole = qRound(number);
    return (whole > 0 ? QStringLiteral("+") : QString()) + QString::number(whole);
}

QString numbers(qreal first, const QString &separator, qreal second)
{
    return QString::number(qRound(first)) + separator + QString::number(qRound(second));
}

QPointF alongOneAxis(const QPointF &offset)
{
    return std::abs(offset.x()) >= std::abs(offset.y()) ? QPointF(offset.x(), 0) : QPointF(0, offset.y());
}

QRectF united(const QVector<QRectF> &rects)
{
    QRectF result;
    for (const QRectF &rect : rects) {
        result |= rect;
    }
    return result;
}

QVector<QRectF> geometriesOf(const QVector<PlacedWidget *> &widgets)
{
    QVector<QRectF> result;
    for (const PlacedWidget *widget : widgets) {
        result.append(widget->geometry());
    }
    return result;
}

} // namespace

StudioTool::StudioTool(BenchDocument *document, QGraphicsView *view)
    : QObject(view)
    , m_document(document)
    , m_view(view)
{
    connect(document, &BenchDocument::widgetAboutToBeRemoved, this, &StudioTool::forget);
    connect(document, &BenchDocument::loaded, this, &StudioTool::finish);
}

// Mouse ----------------------------------------------------------------------------------------------------

void StudioTool::press(const QMouseEvent &event)
{
    m_pressPosition = m_position = toPage(event.localPos());
    m_pressModifiers = m_modifiers = event.modifiers();
    m_startSelection = m_document->selection();
    const Handle handle = handleAt(event.localPos());
    if (handle) {
        m_state = State::PressedHandle;
        m_handle = handle;
        m_pressed = resizable();
    } else if (PlacedWidget *widget = widgetAt(event.localPos())) {
        pressWidget(widget);
    } else {
        m_state = State::PressedPage;
    }
}

void StudioTool::pressWidget(PlacedWidget *widget)
{
    m_state = State::PressedWidget;
    m_pressed = widget;
    m_pressedWasSelected = m_startSelection.contains(widget);
    if (m_pressedWasSelected) {
        return; // what a click means is known when it is no drag
    }
    const bool adds = m_pressModifiers.testFlag(Qt::ControlModifier);
    m_document->setSelection((adds ? m_startSelection : QVector<PlacedWidget *>()) << widget);
}

void StudioTool::move(const QMouseEvent &event)
{
    m_modifiers = event.modifiers();
    update(toPage(event.localPos()));
}

void StudioTool::setModifiers(Qt::KeyboardModifiers modifiers)
{
    m_modifiers = modifiers;
    if (m_state == State::Moving || m_state == State::Resizing) {
        update(m_position);
    }
}

void StudioTool::update(const QPointF &position)
{
    m_position = position;
    const QPointF travelled =
        m_view->viewportTransform().map(m_position) - m_view->viewportTransform().map(m_pressPosition);
    // A click that trembles is no drag.
    const bool isDrag = travelled.manhattanLength() >= QApplication::startDragDistance();
    if (isDrag && m_state == State::PressedWidget) {
        beginMove();
    } else if (isDrag && m_state == State::PressedPage) {
        m_state = State::Marquee;
    } else if (isDrag && m_state == State::PressedHandle) {
        begin(State::Resizing, {m_pressed});
    }
    switch (m_state) {
    case State::Moving:
        updateMove();
        break;
    case State::Resizing:
        updateResize();
        break;
    case State::Marquee:
        updateMarquee();
        break;
    default:
        break;
    }
}

void StudioTool::release(const QMouseEvent &event)
{
    if (m_state == State::PressedWidget) {
        clickWidget();
    } else if (m_state == State::PressedPage && !event.modifiers().testFlag(Qt::ControlModifier)) {
        m_document->setSelection({});
    }
    finish();
}

void StudioTool::clickWidget()
{
    QVector<PlacedWidget *> selection = m_document->selection();
    if (!m_pressModifiers.testFlag(Qt::ControlModifier)) {
        m_document->setSelection({m_pressed});
    } else if (m_pressedWasSelected) {
        selection.removeAll(m_pressed);
        m_document->setSelection(selection);
    }
}

void StudioTool::doubleClick(const QMouseEvent &event)
{
    finish();
    if (handleAt(event.localPos())) {
        restoreDefaultSize(resizable());
    } else if (PlacedWidget *widget = widgetAt(event.localPos())) {
        emit activated(widget);
    }
}

void StudioTool::restoreDefaultSize(PlacedWidget *widget)
{
    const QSizeF size = m_document->sizeOfNew(widget->widgetId(), widget->version());
    m_document->setGeometries({widget}, {QRectF(widget->geometry().topLeft(), size)});
}

// Drags ----------------------------------------------------------------------------------------------------

void StudioTool::begin(State state, const QVector<PlacedWidget *> &widgets)
{
    m_state = state;
    m_dragged = widgets;
    m_startGeometries = geometriesOf(widgets);
    m_startRect = united(m_startGeometries);
    m_gesture = m_document->newGesture();
    m_snapper = snapperWithout(widgets);
}

Snapper StudioTool::snapperWithout(const QVector<PlacedWidget *> &widgets) const
{
    QVector<QRectF> neighbours;
    for (PlacedWidget *widget : m_document->widgets()) {
        if (widget->isVisible() && !widgets.contains(widget)) {
            neighbours.append(widget->geometry());
        }
    }
    return Snapper(m_document->page(), neighbours);
}

QPointF StudioTool::snapOffset(const QRectF &rect) const
{
    return snapperWithout({}).offsetOfObject(rect, snapTolerance());
}

void StudioTool::beginMove()
{
    if (m_pressed->isLocked()) {
        emit message(tr("%1 is locked").arg(m_pressed->name()));
        m_state = State::Marquee; // as on the page itself: a locked widget may cover all of it
        return;
    }
    QVector<PlacedWidget *> widgets{m_pressed};
    for (PlacedWidget *widget : m_document->selection()) {
        if (!widget->isLocked() && widget != m_pressed) {
            widgets.append(widget);
        }
    }
    begin(State::Moving, widgets);
}

void StudioTool::updateMove()
{
    QPointF offset = m_position - m_pressPosition;
    if (m_modifiers.testFlag(Qt::ShiftModifier)) {
        offset = alongOneAxis(offset);
    }
    if (!m_modifiers.testFlag(Qt::ControlModifier)) {
        const QPointF snapped =
            offset + m_snapper.offsetOfObject(m_startRect.translated(offset), snapTolerance());
        offset = m_modifiers.testFlag(Qt::ShiftModifier) ? alongOneAxis(snapped) : snapped;
    }
    QVector<QRectF> geometries;
    for (const QRectF &start : qAsConst(m_startGeometries)) {
        geometries.append(start.translated(QPointF(offset.toPoint())));
    }
    applyGeometries(geometries);
}

void StudioTool::updateResize()
{
    const ResizeOptions options{m_modifiers.testFlag(Qt::ShiftModifier),
                                m_modifiers.testFlag(Qt::AltModifier)};
    QPointF delta = m_position - m_pressPosition;
    if (!m_modifiers.testFlag(Qt::ControlModifier)) {
        const QRectF edges = m_startRect.adjusted(delta.x(), delta.y(), delta.x(), delta.y());
        delta += m_snapper.offsetOfEdges(edges, m_handle, snapTolerance());
    }
    applyGeometries({resized(m_startRect, m_handle, delta, options)});
}

void StudioTool::applyGeometries(const QVector<QRectF> &geometries)
{
    if (geometriesOf(m_dragged) != geometries) {
        m_document->setGeometries(m_dragged, geometries, m_gesture);
    }
    if (m_state != State::Idle) { // the widget may have been removed by what it does when it is resized
        m_guides = m_modifiers.testFlag(Qt::ControlModifier) ? QVector<Guide>()
                                                             : m_snapper.guides(draggedRect(), m_handle);
    }
    emit overlayChanged();
}

void StudioTool::updateMarquee()
{
    const QRectF marquee = QRectF(m_pressPosition, m_position).normalized();
    QVector<PlacedWidget *> selection;
    if (m_pressModifiers.testFlag(Qt::ControlModifier)) {
        selection = m_startSelection;
    }
    for (PlacedWidget *widget : m_document->widgets()) {
        const bool isHit =
            widget->isVisible() && !widget->isLocked() && marquee.intersects(widget->geometry());
        if (isHit && !selection.contains(widget)) {
            selection.append(widget);
        }
    }
    if (selection != m_document->selection()) {
        m_document->setSelection(selection);
    }
    emit overlayChanged();
}

void StudioTool::cancel()
{
    const State state = m_state;
    if (state == State::Moving || state == State::Resizing) {
        m_document->cancelGesture(m_gesture);
    } else if (state == State::Marquee) {
        m_document->setSelection(m_startSelection);
    }
    finish();
}

void StudioTool::finish()
{
    m_state = State::Idle;
    m_pressed = nullptr;
    m_handle = {};
    m_dragged.clear();
    m_startGeometries.clear();
    m_startSelection.clear();
    m_guides.clear();
    emit overlayChanged();
}

void StudioTool::forget(PlacedWidget *widget)
{
    if (m_pressed == widget || m_dragged.contains(widget) || m_startSelection.contains(widget)) {
        finish();
    }
}

// What is where --------------------------------------------------------------------------------------------

QPointF StudioTool::toPage(const QPointF &position) const
{
    return m_view->viewportTransform().inverted().map(position);
}

QRectF StudioTool::toViewport(const QRectF &rect) const
{
    return m_view->viewportTransform().mapRect(rect);
}

qreal StudioTool::snapTolerance() const
{
    return snapPixels / m_view->viewportTransform().m11();
}

PlacedWidget *StudioTool::widgetAt(const QPointF &position) const
{
    const QPointF point = toPage(position);
    const QVector<PlacedWidget *> &widgets = m_document->widgets();
    const auto found = std::find_if(widgets.crbegin(), widgets.crend(), [&point](const PlacedWidget *widget) {
        return widget->isVisible() && widget->geometry().contains(point);
    });
    return found == widgets.crend() ? nullptr : *found;
}

PlacedWidget *StudioTool::resizable() const
{
    PlacedWidget *widget = m_document->selection().size() == 1 ? m_document->current() : nullptr;
    return widget && widget->isVisible() && !widget->isLocked() ? widget : nullptr;
}

Handle StudioTool::handleAt(const QPointF &position) const
{
    const PlacedWidget *widget = resizable();
    return widget ? HandleFrame(toViewport(widget->geometry())).handleAt(position) : Handle();
}

Qt::CursorShape StudioTool::cursorAt(const QPointF &position) const
{
    if (m_state == State::Resizing || m_state == State::PressedHandle) {
        return HandleFrame::cursorShape(m_handle);
    }
    if (m_state == State::Moving) {
        return Qt::SizeAllCursor;
    }
    const Handle handle = m_state == State::Idle ? handleAt(position) : Handle();
    return HandleFrame::cursorShape(handle);
}

// Overlay --------------------------------------------------------------------------------------------------

QRectF StudioTool::draggedRect() const
{
    return united(geometriesOf(m_dragged));
}

QString StudioTool::label() const
{
    const QRectF rect = draggedRect();
    const QRectF &start = m_startRect;
    const bool isResize = m_state == State::Resizing;
    const QString now = isResize ? numbers(rect.width(), QStringLiteral(" x "), rect.height())
                                 : numbers(rect.x(), QStringLiteral(", "), rect.y());
    const QPointF change = isResize ? QPointF(rect.width() - start.width(), rect.height() - start.height())
                                    : rect.topLeft() - start.topLeft();
    return QStringLiteral("%1 (%2, %3)").arg(now, signedNumber(change.x()), signedNumber(change.y()));
}

QRectF StudioTool::labelRect() const
{
    if (m_state != State::Moving && m_state != State::Resizing) {
        return {};
    }
    constexpr qreal distance = 6;
    constexpr qreal padding = 5;
    const QFontMetricsF metrics(m_view->font());
    const QRectF object = HandleFrame(toViewport(draggedRect())).boundingRect();
    const QRectF area(m_view->viewport()->rect());
    QRectF rect(0, 0, std::ceil(metrics.horizontalAdvance(label())) + 2 * padding,
                std::ceil(metrics.height()) + padding);
    rect.moveCenter(object.center());
    rect.moveTop(object.bottom() + distance);
    rect.moveLeft(qBound(area.left(), rect.left(), std::max(area.left(), area.right() - rect.width())));
    rect.moveTop(qBound(area.top(), rect.top(), std::max(area.top(), area.bottom() - rect.height())));
    return rect.toAlignedRect();
}

QRegion StudioTool::region() const
{
    QRegion result;
    for (const PlacedWidget *widget : m_document->selection()) {
        result += HandleFrame(toViewport(widget->geometry())).boundingRect().toAlignedRect();
    }
    for (const Guide &guide : m_guides) {
        const bool isVertical = guide.orientation == Qt::Vertical;
        const QPointF from =
            isVertical ? QPointF(guide.position, guide.from) : QPointF(guide.from, guide.position);
        const QPointF to = isVertical ? QPointF(guide.position, guide.to) : QPointF(guide.to, guide.position);
        result += toViewport(QRectF(from, to)).toAlignedRect().adjusted(-2, -2, 2, 2);
    }
    if (m_state == State::Marquee) {
        const QRectF marquee = QRectF(m_pressPosition, m_position).normalized();
        result += toViewport(marquee).toAlignedRect().adjusted(-2, -2, 2, 2);
    }
    return result + labelRect().toAlignedRect();
}

void StudioTool::paint(QPainter &painter) const
{
    painter.save();
    paintGuides(painter);
    paintFrames(painter);
    if (m_state == State::Marquee) {
        paintMarquee(painter);
    } else if (m_state == State::Moving || m_state == State::Resizing) {
        paintLabel(painter);
    }
    painter.restore();
}

void StudioTool::paintFrames(QPainter &painter) const
{
    const QColor color = m_view->palette().color(QPalette::Highlight);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    const QVector<PlacedWidget *> &selection = m_document->selection();
    for (int i = 0; i < selection.size(); ++i) {
        const PlacedWidget *widget = selection.at(i);
        const bool isMarked = i > 0 && i == selection.size() - 1; // its fields are shown
        const bool isFixed = widget->isLocked() || !widget->isVisible();
        painter.setPen(QPen(color, isMarked ? 2 : 1, isFixed ? Qt::DashLine : Qt::SolidLine));
        painter.drawRect(toViewport(widget->geometry()).toRect().adjusted(-1, -1, 0, 0));
    }
    if (const PlacedWidget *widget = resizable()) {
        HandleFrame(toViewport(widget->geometry())).paint(painter, m_view->palette());
    }
}

void StudioTool::paintGuides(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(guideColor, 1));
    for (const Guide &guide : m_guides) {
        if (guide.orientation == Qt::Vertical) {
            const QRectF line = toViewport({guide.position, guide.from, 0, guide.to - guide.from});
            painter.drawLine(qRound(line.x()), qRound(line.top()), qRound(line.x()), qRound(line.bottom()));
        } else {
            const QRectF line = toViewport({guide.from, guide.position, guide.to - guide.from, 0});
            painter.drawLine(qRound(line.left()), qRound(line.y()), qRound(line.right()), qRound(line.y()));
        }
    }
}

void StudioTool::paintMarquee(QPainter &painter) const
{
    QColor color = m_view->palette().color(QPalette::Highlight);
    painter.setPen(QPen(color, 1));
    color.setAlpha(40);
    painter.setBrush(color);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.drawRect(toViewport(QRectF(m_pressPosition, m_position).normalized()).toRect());
}

void StudioTool::paintLabel(QPainter &painter) const
{
    constexpr qreal radius = 3;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_view->palette().color(QPalette::Highlight));
    painter.drawRoundedRect(labelRect(), radius, radius);
    painter.setFont(m_view->font());
    painter.setPen(m_view->palette().color(QPalette::HighlightedText));
    painter.drawText(labelRect(), Qt::AlignCenter, label());
}

} // namespace DEV
} // namespace KORA
