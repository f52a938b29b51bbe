// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtWidgets/QGraphicsView>

#include <kora/dev/canvas/pagenavigation.h>
#include <kora/dev/canvas/selectionedits.h>
#include <kora/dev/canvas/widgetdrop.h>
#include <kora/export.h>

namespace KORA {
namespace DEV {

class BenchDocument;
class PlacedWidget;
class StudioTool;
class TouchEmulator;

/// Shows the page of a document and hands it the mouse, the keyboard and touch.
///
/// In studio mode they edit: see StudioTool and SelectionEdits. The items get no input at all. In runtime mode they
/// belong to the items as on a panel; keys that are shortcuts of the window go to the items too, but for a few
/// (setKeepsNoKeys()). In both modes Ctrl+wheel zooms at the cursor, the wheel scrolls, with Shift sideways, the middle
/// button, and in studio mode the space bar with the left one, drags the page; a widget of the gallery can be
/// dropped (widgetMimeType()). A widget without an instance is shown as a card that says why.
///
/// Handles, guides, cards and fingers are painted over the scene in pixels of the viewport; they are no items, so a
/// plugin does not meet them. GUI thread.
class KORA_EXPORT CanvasView : public QGraphicsView
{
    Q_OBJECT

public:
    static constexpr double smallestZoom = PageNavigation::smallestZoom;
    static constexpr double largestZoom = PageNavigation::largestZoom;

    /// Carries {"widget": id, "version": version} as JSON.
    static QString widgetMimeType() { return WidgetDrop::mimeType(); }

    /// @p document is not owned and must outlive the view.
    explicit CanvasView(BenchDocument *document, QWidget *parent = nullptr);
    ~CanvasView() override;

    /// Pixels of the viewport per pixel of the page.
    double zoom() const { return m_navigation->zoom(); }
    /// What is under @p anchor, a point of the viewport, stays there. Zoom beyond the limits becomes the limit.
    void setZoom(double zoom, const QPointF &anchor) { m_navigation->setZoom(zoom, anchor); }
    void setZoom(double zoom) { m_navigation->setZoom(zoom); }

    /// Zoom and centre, for a session.
    QJsonObject viewState() const { return m_navigation->state(); }
    void setViewState(const QJsonObject &state) { m_navigation->setState(state); }

    bool touchEmulation() const { return m_touchIsEmulated; }
    /// Edits of the selection, for menus.
    SelectionEdits *edits() { return &m_edits; }

    /// In runtime mode, whether even F6, F11, Ctrl+R and Ctrl+Shift+P go to the items. F5 never does.
    void setKeepsNoKeys(bool keepsNone) { m_keepsNoKeys = keepsNone; }

public Q_SLOTS:
    /// To the next of the usual steps between 10 % and 1600 %.
    void zoomIn() { m_navigation->zoomIn(); }
    void zoomOut() { m_navigation->zoomOut(); }
    /// Shows the whole page, also after the view is resized, until it is scrolled or zoomed.
    void fitPage() { m_navigation->fitPage(); }
    /// As fitPage() if nothing is selected.
    void fitSelection() { m_navigation->fitSelection(); }
    /// In runtime mode, whether the mouse makes touch events.
    void setTouchEmulation(bool isOn);
    /// Of a drag or a touch: as if it had not been.
    void cancelGesture();

Q_SIGNALS:
    void zoomChanged(double zoom);
    /// For the status bar.
    void message(const QString &text);
    /// @p widget is the one that the menu was asked for, null for the page.
    void contextMenuRequested(KORA::DEV::PlacedWidget *widget, const QPoint &globalPosition);
    /// A double-click on a widget in studio mode, or on a card in any mode.
    void activated(KORA::DEV::PlacedWidget *widget);

protected:
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void drawBackground(QPainter *painter, const QRectF &rect) override;
    void drawForeground(QPainter *painter, const QRectF &rect) override;
    void drawItems(QPainter *painter, int numItems, QGraphicsItem *items[],
                   const QStyleOptionGraphicsItem options[]) override;
    void dropEvent(QDropEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void connectTools();
    void connectDocument();
    void watch(PlacedWidget *widget);
    void applyMode();
    bool isStudio() const;
    bool emulatesTouch() const { return m_touchIsEmulated && !isStudio(); }

    bool panPress(const QMouseEvent &event);
    QPointF mousePosition() const;
    void updateCursor(const QPointF &position);

    // Input
    bool runtimeEvent(QEvent *event);
    /// Who is named as the one that a call goes to; an item may put others on the page.
    static QString nameOf(const PlacedWidget *widget);
    PlacedWidget *receiver(const QEvent &event) const;
    void showToolTip(const QHelpEvent &event);
    bool keepsKey(const QKeyEvent &event) const;
    bool studioKeyPress(const QKeyEvent &event);
    void selectUnderMouse(const QMouseEvent &event);

    // Drop
    QRectF dropRect(const QDropEvent &event) const;
    void setDropRect(const QRectF &rect);

    // Overlay
    QRectF toViewport(const QRectF &rect) const;
    QRegion overlayRegion() const;
    void updateOverlay();
    void paintCards(QPainter &painter, const QRegion &exposed);

    BenchDocument *m_document;
    SelectionEdits m_edits;
    PageNavigation *m_navigation;
    StudioTool *m_studio;
    TouchEmulator *m_touch;
    QTimer m_overlayTimer;
    QRegion m_overlay; // as it was painted last
    WidgetDrop m_drop;
    QRectF m_dropRect; // on the page
    bool m_touchIsEmulated = false;
    bool m_keepsNoKeys = false;
    bool m_spaceIsDown = false;
    bool m_isWidgetDrag = false;
};

} // namespace DEV
} // namespace KORA
