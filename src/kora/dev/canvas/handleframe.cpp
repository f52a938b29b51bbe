// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/handleframe.h>

#include <QtCore/QSizeF>
#include <QtGui/QPainter>
#include <QtGui/QPalette>

#include <algorithm>
#include <cmath>

namespace KORA {
namespace DEV {

namespace {

// The corners first: where handles overlap, a corner does what both of its edges do.
constexpr Qt::Edge horizontalEdges[] = {Qt::LeftEdge, Qt::RightEdge};
constexpr Qt::Edge verticalEdges[] = {Qt::TopEdge, Qt::BottomEdge};

QVector<Handle> makeHandles()
{
    QVector<Handle> handles;
    for (const Qt::Edge horizontal : horizontalEdges) {
        for (const Qt::Edge vertical : verticalEdges) {
            handles.append(Handle(horizontal) | vertical);
        }
    }
    return handles << Qt::LeftEdge << Qt::RightEdge << Qt::TopEdge << Qt::BottomEdge;
}

const QVector<Handle> &allHandles()
{
    static const QVector<Handle> handles = makeHandles();
    return handles;
}

QRectF squareAt(const QPointF &centre, int side)
{
    return {centre.x() - side / 2.0, centre.y() - side / 2.0, qreal(side), qreal(side)};
}

// Room for the object's own pixels between the handles of a small object.
QRectF roomyFrame(const QRectF &object)
{
    constexpr qreal roomySide = HandleFrame::smallObject + HandleFrame::grabSide;
    const qreal x = object.width() < HandleFrame::smallObject ? (roomySide - object.width()) / 2 : 0;
    const qreal y = object.height() < HandleFrame::smallObject ? (roomySide - object.height()) / 2 : 0;
    return object.adjusted(-x, -y, x, y);
}

// -1 for the edge at smaller coordinates, 1 for the other, 0 for none.
int direction(Handle handle, Qt::Edge smaller, Qt::Edge larger)
{
    return handle.testFlag(smaller) ? -1 : handle.testFlag(larger) ? 1 : 0;
}

struct Side
{
    qreal start; // of the object before
    qreal end;
    int direction; // of the edge that is dragged

    qreal length() const { return end - start; }
};

// From the centre both edges move: an even change keeps the centre exactly.
qreal wholeLength(qreal oldLength, qreal wanted, bool fromCentre)
{
    if (!fromCentre) {
        return std::max(1.0, std::round(wanted));
    }
    const qreal length = oldLength + 2 * std::round((wanted - oldLength) / 2);
    return length >= 1 ? length : std::fmod(oldLength, 2) == 0 ? 2 : 1;
}

qreal newStart(const Side &side, qreal length, bool fromCentre)
{
    if (fromCentre || side.direction == 0) {
        return std::floor((side.start + side.end - length) / 2);
    }
    return side.direction < 0 ? side.end - length : side.start;
}

QSizeF wantedSize(const Side &x, const Side &y, const QPointF &delta, ResizeOptions options)
{
    const int share = options.fromCentre ? 2 : 1;
    const qreal width = std::max(1.0, x.length() + x.direction * share * delta.x());
    const qreal height = std::max(1.0, y.length() + y.direction * share * delta.y());
    if (!options.keepsRatio || x.length() <= 0 || y.length() <= 0) {
        return {width, height};
    }
    const qreal horizontal = width / x.length();
    const qreal vertical = height / y.length();
    const qreal wanted = x.direction == 0   ? vertical
                         : y.direction == 0 ? horizontal
                                            : std::max(horizontal, vertical);
    const qreal factor = std::max(wanted, 1 / std::min(x.length(), y.length()));
    return {x.length() * factor, y.length() * factor};
}

} // namespace

QRectF resized(const QRectF &start, Handle handle, const QPointF &delta, ResizeOptions options)
{
    const Side x{start.left(), start.right(), direction(handle, Qt::LeftEdge, Qt::RightEdge)};
    const Side y{start.top(), start.bottom(), direction(handle, Qt::TopEdge, Qt::BottomEdge)};
    const QSizeF wanted = wantedSize(x, y, delta, options);
    const qreal width = wholeLength(x.length(), wanted.width(), options.fromCentre);
    const qreal height = wholeLength(y.length(), wanted.height(), options.fromCentre);
    return {newStart(x, width, options.fromCentre), newStart(y, height, options.fromCentre), width, height};
}

// HandleFrame ----------------------------------------------------------------------------------------------

HandleFrame::HandleFrame(const QRectF &object)
    : m_frame(roomyFrame(object))
{}

Handle HandleFrame::handleAt(const QPointF &point) const
{
    for (const Handle handle : allHandles()) {
        if (squareAt(position(handle), grabSide).contains(point)) {
            return handle;
        }
    }
    return {};
}

QPointF HandleFrame::position(Handle handle) const
{
    const QPointF centre = m_frame.center();
    const int x = direction(handle, Qt::LeftEdge, Qt::RightEdge);
    const int y = direction(handle, Qt::TopEdge, Qt::BottomEdge);
    return {centre.x() + x * m_frame.width() / 2, centre.y() + y * m_frame.height() / 2};
}

QRectF HandleFrame::boundingRect() const
{
    constexpr qreal margin = visibleSide / 2.0 + 2;
    return m_frame.adjusted(-margin, -margin, margin, margin);
}

void HandleFrame::paint(QPainter &painter, const QPalette &palette) const
{
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const Handle handle : allHandles()) {
        const QRect square = squareAt(position(handle), visibleSide).toRect();
        // A rim in the handle's own colour keeps it visible on an object in the frame's colour.
        painter.fillRect(square.adjusted(-1, -1, 1, 1), Qt::white);
        painter.fillRect(square, palette.color(QPalette::Highlight));
        painter.fillRect(square.adjusted(1, 1, -1, -1), Qt::white);
    }
}

Qt::CursorShape HandleFrame::cursorShape(Handle handle)
{
    const int x = direction(handle, Qt::LeftEdge, Qt::RightEdge);
    const int y = direction(handle, Qt::TopEdge, Qt::BottomEdge);
    if (x == 0 && y == 0) {
        return Qt::ArrowCursor;
    }
    if (x == 0) {
        return Qt::SizeVerCursor;
    }
    return y == 0 ? Qt::SizeHorCursor : x == y ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

} // namespace DEV
} // namespace KORA
