// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/pagenavigation.h>

#include <QtCore/QJsonArray>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QScrollBar>

#include <algorithm>
#include <cmath>

#include <kora/dev/model/benchdocument.h>

namespace KORA {
namespace DEV {

namespace {

constexpr double zoomSteps[] = {0.1, 0.25, 0.33, 0.5, 0.67, 0.75, 1, 1.25, 1.5, 2, 3, 4, 8, 16};
constexpr double zoomPerNotch = 1.25;
constexpr qreal wheelNotch = 120;
constexpr qreal scrollPerNotch = 60;
constexpr qreal fitMargin = 24;

} // namespace

PageNavigation::PageNavigation(BenchDocument *document, QGraphicsView *view)
    : QObject(view)
    , m_document(document)
    , m_view(view)
{}

// Zoom -----------------------------------------------------------------------------------------------------

double PageNavigation::zoom() const
{
    return m_view->transform().m11();
}

void PageNavigation::applyZoom(double zoom, const QPointF &anchor)
{
    const double wanted = qBound(smallestZoom, zoom, largestZoom);
    const bool isOther = !qFuzzyCompare(wanted, this->zoom());
    const QPointF point = m_view->viewportTransform().inverted().map(anchor);
    m_view->setTransform(QTransform::fromScale(wanted, wanted));
    updateSceneRect();
    scrollBy(m_view->viewportTransform().map(point) - anchor);
    m_view->viewport()->update(); // what is painted over the scene too
    if (isOther) {
        emit zoomChanged(wanted);
    }
}

void PageNavigation::setZoom(double zoom, const QPointF &anchor)
{
    m_fitsPage = false;
    applyZoom(zoom, anchor);
}

void PageNavigation::setZoom(double zoom)
{
    setZoom(zoom, viewportCentre());
}

void PageNavigation::zoomIn()
{
    constexpr double sameStep = 1.001;
    const auto *next = std::upper_bound(std::cbegin(zoomSteps), std::cend(zoomSteps), zoom() * sameStep);
    setZoom(next == std::cend(zoomSteps) ? largestZoom : *next);
}

void PageNavigation::zoomOut()
{
    constexpr double sameStep = 0.999;
    const auto *next = std::lower_bound(std::cbegin(zoomSteps), std::cend(zoomSteps), zoom() * sameStep);
    setZoom(next == std::cbegin(zoomSteps) ? smallestZoom : *(next - 1));
}

void PageNavigation::zoomByWheel(const QWheelEvent &event)
{
    setZoom(zoom() * std::pow(zoomPerNotch, event.angleDelta().y() / wheelNotch), event.position());
}

void PageNavigation::fitPage()
{
    m_fitsPage = true;
    showRect(QRectF(QPointF(), m_document->page().size));
}

void PageNavigation::fitSelection()
{
    QRectF rect;
    for (const PlacedWidget *widget : m_document->selection()) {
        rect |= widget->geometry();
    }
    if (rect.isEmpty()) {
        fitPage();
    } else {
        m_fitsPage = false;
        showRect(rect);
    }
}

void PageNavigation::showRect(const QRectF &rect)
{
    const QRectF room =
        QRectF(m_view->viewport()->rect()).adjusted(fitMargin, fitMargin, -fitMargin, -fitMargin);
    if (!room.isEmpty()) {
        applyZoom(std::min(room.width() / rect.width(), room.height() / rect.height()), viewportCentre());
        scrollBy(m_view->viewportTransform().map(rect.center()) - viewportCentre());
    }
}

void PageNavigation::adapt()
{
    updateSceneRect();
    if (m_fitsPage) {
        fitPage();
    }
}

// Scrolling ------------------------------------------------------------------------------------------------

QPointF PageNavigation::viewportCentre() const
{
    return QRectF(m_view->viewport()->rect()).center();
}

/// Leaves room round the page, so that every point of it can be brought to every point of the view.
void PageNavigation::updateSceneRect()
{
    const QSizeF room = QSizeF(m_view->viewport()->size()) / zoom();
    m_view->setSceneRect(QRectF(QPointF(), m_document->page().size)
                             .adjusted(-room.width(), -room.height(), room.width(), room.height()));
}

void PageNavigation::scrollBy(const QPointF &delta)
{
    QScrollBar *horizontal = m_view->horizontalScrollBar();
    QScrollBar *vertical = m_view->verticalScrollBar();
    horizontal->setValue(horizontal->value() + qRound(delta.x()));
    vertical->setValue(vertical->value() + qRound(delta.y()));
}

void PageNavigation::scrollByWheel(const QWheelEvent &event)
{
    QPointF delta = event.pixelDelta().isNull() ? QPointF(event.angleDelta()) / wheelNotch * scrollPerNotch
                                                : QPointF(event.pixelDelta());
    if (event.modifiers().testFlag(Qt::ShiftModifier) && delta.x() == 0) {
        delta = {delta.y(), 0};
    }
    m_fitsPage = false;
    scrollBy(-delta);
}

void PageNavigation::startPan(const QMouseEvent &event)
{
    m_isPanning = true;
    m_fitsPage = false;
    m_panPosition = event.localPos();
}

void PageNavigation::pan(const QMouseEvent &event)
{
    scrollBy(m_panPosition - event.localPos());
    m_panPosition = event.localPos();
}

// Session --------------------------------------------------------------------------------------------------

QJsonObject PageNavigation::state() const
{
    const QPointF centre = m_view->viewportTransform().inverted().map(viewportCentre());
    return {{QStringLiteral("fit"), m_fitsPage},
            {QStringLiteral("zoom"), zoom()},
            {QStringLiteral("centre"), QJsonArray{centre.x(), centre.y()}}};
}

void PageNavigation::setState(const QJsonObject &state)
{
    if (state.value(QStringLiteral("fit")).toBool(true)) {
        fitPage();
        return;
    }
    const QJsonArray centre = state.value(QStringLiteral("centre")).toArray();
    const QPointF point(centre.at(0).toDouble(), centre.at(1).toDouble());
    setZoom(state.value(QStringLiteral("zoom")).toDouble(1));
    scrollBy(m_view->viewportTransform().map(point) - viewportCentre());
}

} // namespace DEV
} // namespace KORA
