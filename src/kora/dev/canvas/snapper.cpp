// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/snapper.h>

#include <algorithm>
#include <cmath>

#include <kora/dev/model/scenario.h>

namespace KORA {
namespace DEV {

namespace {

// Centres of odd sizes lie between two pixels.
constexpr qreal sameLine = 0.51;

/// Where an object can be in line: both edges and the centre, or those edges that are named.
QVector<qreal> lineUps(qreal start, qreal end, Qt::Edge startEdge = Qt::LeftEdge,
                       Qt::Edge endEdge = Qt::RightEdge, Qt::Edges edges = {})
{
    if (!edges) {
        return {start, (start + end) / 2, end};
    }
    QVector<qreal> result;
    if (edges.testFlag(startEdge)) {
        result.append(start);
    }
    if (edges.testFlag(endEdge)) {
        result.append(end);
    }
    return result;
}

} // namespace

Snapper::Snapper(const PageState &page, const QVector<QRectF> &neighbours)
    : m_gridStep(page.gridIsShown ? page.gridStep : 0)
{
    addLines(QRectF(QPointF(), page.size));
    for (const QRectF &neighbour : neighbours) {
        addLines(neighbour);
    }
}

void Snapper::addLines(const QRectF &rect)
{
    const QVector<qreal> xs = lineUps(rect.left(), rect.right());
    for (const qreal x : xs) {
        m_vertical.append({x, rect.top(), rect.bottom()});
    }
    const QVector<qreal> ys = lineUps(rect.top(), rect.bottom());
    for (const qreal y : ys) {
        m_horizontal.append({y, rect.left(), rect.right()});
    }
}

qreal Snapper::offset(const Lines &lines, const QVector<qreal> &positions, qreal gridded,
                      qreal tolerance) const
{
    qreal nearest = tolerance;
    qreal result = 0;
    bool isFound = false;
    for (const Line &line : lines) {
        for (const qreal position : positions) {
            const qreal distance = line.position - position;
            if (std::abs(distance) < nearest) {
                nearest = std::abs(distance);
                result = distance;
                isFound = true;
            }
        }
    }
    if (isFound || m_gridStep < 2) {
        return result;
    }
    return std::round(gridded / m_gridStep) * m_gridStep - gridded;
}

QPointF Snapper::offsetOfObject(const QRectF &object, qreal tolerance) const
{
    return {offset(m_vertical, lineUps(object.left(), object.right()), object.x(), tolerance),
            offset(m_horizontal, lineUps(object.top(), object.bottom()), object.y(), tolerance)};
}

QPointF Snapper::offsetOfEdges(const QRectF &object, Qt::Edges edges, qreal tolerance) const
{
    QPointF result;
    if (edges & (Qt::LeftEdge | Qt::RightEdge)) {
        const qreal x = edges.testFlag(Qt::LeftEdge) ? object.left() : object.right();
        result.setX(offset(m_vertical, {x}, x, tolerance));
    }
    if (edges & (Qt::TopEdge | Qt::BottomEdge)) {
        const qreal y = edges.testFlag(Qt::TopEdge) ? object.top() : object.bottom();
        result.setY(offset(m_horizontal, {y}, y, tolerance));
    }
    return result;
}

QVector<Guide> Snapper::guides(const QRectF &object, Qt::Edges edges) const
{
    QVector<Guide> result;
    const QVector<qreal> xs = lineUps(object.left(), object.right(), Qt::LeftEdge, Qt::RightEdge, edges);
    for (const qreal x : xs) {
        addGuide(result, {Qt::Vertical, x, object.top(), object.bottom()}, m_vertical);
    }
    const QVector<qreal> ys = lineUps(object.top(), object.bottom(), Qt::TopEdge, Qt::BottomEdge, edges);
    for (const qreal y : ys) {
        addGuide(result, {Qt::Horizontal, y, object.left(), object.right()}, m_horizontal);
    }
    return result;
}

/// Adds @p guide, as long as all that it is in line with; not if that is nothing.
void Snapper::addGuide(QVector<Guide> &guides, Guide guide, const Lines &lines)
{
    const qreal position = guide.position;
    bool isInLine = false;
    for (const Line &line : lines) {
        if (std::abs(line.position - position) < sameLine) {
            guide.position = line.position;
            guide.from = std::min(guide.from, line.from);
            guide.to = std::max(guide.to, line.to);
            isInLine = true;
        }
    }
    if (isInLine) {
        guides.append(guide);
    }
}

} // namespace DEV
} // namespace KORA
