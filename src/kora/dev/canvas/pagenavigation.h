// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtCore/QPointF>

#include <kora/export.h>

class QGraphicsView;
class QMouseEvent;
class QWheelEvent;

namespace KORA {
namespace DEV {

class BenchDocument;

/// Zooms and scrolls a view of the page.
class KORA_EXPORT PageNavigation : public QObject
{
    Q_OBJECT

public:
    static constexpr double smallestZoom = 0.1;
    static constexpr double largestZoom = 16;

    /// Neither is owned.
    PageNavigation(BenchDocument *document, QGraphicsView *view);

    double zoom() const;
    /// What is under @p anchor, a point of the viewport, stays there.
    void setZoom(double zoom, const QPointF &anchor);
    void setZoom(double zoom);
    void zoomIn();
    void zoomOut();
    void zoomByWheel(const QWheelEvent &event);
    void scrollByWheel(const QWheelEvent &event);

    void fitPage();
    void fitSelection();
    /// The page or the viewport has another size.
    void adapt();

    QJsonObject state() const;
    void setState(const QJsonObject &state);

    bool isPanning() const { return m_isPanning; }
    void startPan(const QMouseEvent &event);
    void pan(const QMouseEvent &event);
    void endPan() { m_isPanning = false; }

Q_SIGNALS:
    void zoomChanged(double zoom);

private:
    QPointF viewportCentre() const;
    void updateSceneRect();
    void applyZoom(double zoom, const QPointF &anchor);
    void scrollBy(const QPointF &delta);
    void showRect(const QRectF &rect);

    BenchDocument *m_document;
    QGraphicsView *m_view;
    bool m_fitsPage = true; // until the user looks elsewhere
    bool m_isPanning = false;
    QPointF m_panPosition;
};

} // namespace DEV
} // namespace KORA
