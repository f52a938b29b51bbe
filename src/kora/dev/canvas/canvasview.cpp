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
        paintPixelGrid(*painter, rect, m_document->page(), zoom());
    }
}

/// One by one, so that a crash in paint() leaves the name of the widget behind.
QString CanvasView::nameOf(const PlacedWidget *widget)
{
    return widget ? widget->name() : QStringLiteral("page");
}

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
