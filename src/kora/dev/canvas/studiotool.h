// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QRectF>
#include <QtCore/QVector>
#include <QtGui/QRegion>

#include <kora/dev/canvas/handleframe.h>
#include <kora/dev/canvas/snapper.h>

class QGraphicsView;
class QMouseEvent;
class QPainter;

namespace KORA {
namespace DEV {

class BenchDocument;
class PlacedWidget;

/// The mouse in studio mode: selects, moves and resizes the placed widgets, and draws what shows that on top of the
/// canvas, in pixels of the viewport.
///
/// - A click selects, with Ctrl it adds or takes away; a drag on the empty page selects all that it touches.
/// - A drag moves the selected widgets. With Ctrl nothing snaps.
/// - A handle resizes the one selected widget: with Shift the ratio is kept, with Alt the centre. A double-click on a
///   handle restores the widget's default size.
///
/// A drag is one undo step, and none if it is cancelled. Locked widgets can be selected but stay; hidden ones are not
/// there for the mouse.
class StudioTool : public QObject
{
    Q_OBJECT

public:
    /// Neither is owned.
    StudioTool(BenchDocument *document, QGraphicsView *view);

    /// Whether the mouse is held on something.
    bool isActive() const { return m_state != State::Idle; }
    void press(const QMouseEvent &event);
    void move(const QMouseEvent &event);
    void release(const QMouseEvent &event);
    void doubleClick(const QMouseEvent &event);
    /// Other modifier keys, the mouse where it was.
    void setModifiers(Qt::KeyboardModifiers modifiers);
    /// Puts everything back as it was before the drag.
    void cancel();

    /// The topmost visible widget there; null if none. A point of the viewport.
    PlacedWidget *widgetAt(const QPointF &position) const;
    Qt::CursorShape cursorAt(const QPointF &position) const;
    /// By how much to move a new widget at @p rect of the page to bring it into line.
    QPointF snapOffset(const QRectF &rect) const;

    void paint(QPainter &painter) const;
    /// What paint() draws on.
    QRegion region() const;

Q_SIGNALS:
    /// region() or what is in it is another.
    void overlayChanged();
    void message(const QString &text);
    /// A double-click on a widget.
    void activated(KORA::DEV::PlacedWidget *widget);

private:
    enum class State { Idle, PressedWidget, Moving, PressedHandle, Resizing, PressedPage, Marquee };

    QPointF toPage(const QPointF &position) const;
    QRectF toViewport(const QRectF &rect) const;
    qreal snapTolerance() const;

    /// The widget that has handles: selected alone, and neither locked nor hidden.
    PlacedWidget *resizable() const;
    Handle handleAt(const QPointF &position) const;

    void pressWidget(PlacedWidget *widget);
    void update(const QPointF &position);
    Snapper snapperWithout(const QVector<PlacedWidget *> &widgets) const;
    void begin(State state, const QVector<PlacedWidget *> &widgets);
    void beginMove();
    void updateMove();
    void updateResize();
    void updateMarquee();
    void applyGeometries(const QVector<QRectF> &geometries);
    void finish();
    void clickWidget();
    void restoreDefaultSize(PlacedWidget *widget);
    void forget(PlacedWidget *widget);

    QRectF draggedRect() const;
    QString label() const;
    QRectF labelRect() const;
    void paintFrames(QPainter &painter) const;
    void paintGuides(QPainter &painter) const;
    void paintMarquee(QPainter &painter) const;
    void paintLabel(QPainter &painter) const;

    BenchDocument *m_document;
    QGraphicsView *m_view;
    State m_state = State::Idle;
    QPointF m_pressPosition; // on the page, as all below
    QPointF m_position;
    Qt::KeyboardModifiers m_pressModifiers;
    Qt::KeyboardModifiers m_modifiers;
    PlacedWidget *m_pressed = nullptr;
    bool m_pressedWasSelected = false;
    Handle m_handle;
    QVector<PlacedWidget *> m_dragged;
    QVector<QRectF> m_startGeometries;
    QRectF m_startRect; // round all that is dragged
    QVector<PlacedWidget *> m_startSelection;
    int m_gesture = 0;
    Snapper m_snapper;
    QVector<Guide> m_guides;
};

} // namespace DEV
} // namespace KORA
