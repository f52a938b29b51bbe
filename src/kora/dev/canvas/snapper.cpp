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

QVector<qreal> lineUps(qreal start, qreal length)
{
    return {start, start + length / 2, start + length};
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
    for (const qreal x : lineUps(rect.x(), rect.width())) {
        m_vertical.append({x, rect.top(), rect.bottom()});
    }
    for (const qreal y : lineUps(rect.y(), rect.height())) {
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
    return {offset(m_vertical, lineUps(object.x(), object.width()), object.x(), tolerance),
            offset(m_horizontal, lineUps(object.y(), object.height()), object.y(), tolerance)};
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

QVector<Guide> Snapper::guides(const QRectF &object) const
{
    QVector<Guide> result;
    const auto add = [&result](Qt::Orientation orientation, const Lines &lines,
                               const QVector<qreal> &positions, qreal from, qreal to) {
        for (const qreal position : positions) {
            Guide guide{orientation, 0, from, to};
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
                result.append(guide);
            }
        }
    };
    add(Qt::Vertical, m_vertical, lineUps(object.x(), object.width()), object.top(), object.bottom());
    add(Qt::Horizontal, m_horizontal, lineUps(object.y(), object.height()), object.left(), object.right());
    return result;
}

} // namespace DEV
} // namespace KORA
