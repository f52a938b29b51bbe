// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QVector>

#include <kora/export.h>

namespace KORA {
namespace DEV {

struct PageState;

/// A line that shows what an object is in line with; page coordinates.
struct Guide
{
    Qt::Orientation orientation = Qt::Vertical;
    qreal position = 0; ///< x of a vertical line, y of a horizontal one
    qreal from = 0;     ///< ends of the line
    qreal to = 0;
};

/// Brings an object that is dragged into line: with the edges and centres of the page and of its neighbours, and
/// where none is near, with the grid if that is shown. Page coordinates.
class KORA_EXPORT Snapper
{
public:
    Snapper() = default;
    Snapper(const PageState &page, const QVector<QRectF> &neighbours);

    /// By how much to move an object that is dragged to @p object; lines within @p tolerance attract.
    QPointF offsetOfObject(const QRectF &object, qreal tolerance) const;
    /// By how much to move those edges of an object that are dragged.
    QPointF offsetOfEdges(const QRectF &object, Qt::Edges edges, qreal tolerance) const;
    /// The lines that the object is in line with, by its edges and centres, or by @p edges only.
    QVector<Guide> guides(const QRectF &object, Qt::Edges edges = {}) const;

private:
    struct Line
    {
        qreal position;
        qreal from;
        qreal to;
    };
    using Lines = QVector<Line>;

    void addLines(const QRectF &rect);
    static void addGuide(QVector<Guide> &guides, Guide guide, const Lines &lines);
    qreal offset(const Lines &lines, const QVector<qreal> &positions, qreal gridded, qreal tolerance) const;

    Lines m_vertical;
    Lines m_horizontal;
    int m_gridStep = 0; // 0 for none
};

} // namespace DEV
} // namespace KORA
