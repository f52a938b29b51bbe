// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/Qt>

#include <kora/export.h>

class QPainter;
class QPalette;

namespace KORA {
namespace DEV {

/// The part of a widget's frame that is dragged: an edge, two edges that meet, or none.
using Handle = Qt::Edges;

/// The eight resize handles round an object, in pixels of the viewport: they have the same size at every zoom, and
/// stand outside an object that is too small to hold them and a place to grab the object itself.
class KORA_EXPORT HandleFrame
{
public:
    static constexpr int visibleSide = 8;
    static constexpr int grabSide = 16;
    static constexpr int smallObject = 24;

    explicit HandleFrame(const QRectF &object);

    /// The handle at a point; no edge if there is none.
    Handle handleAt(const QPointF &point) const;
    QPointF position(Handle handle) const;
    /// All that paint() draws on.
    QRectF boundingRect() const;
    void paint(QPainter &painter, const QPalette &palette) const;

    static Qt::CursorShape cursorShape(Handle handle);

private:
    QRectF m_frame; // the handles' centres are its corners and the middles of its sides
};

/// What the modifier keys make of a resize.
struct ResizeOptions
{
    bool keepsRatio = false;
    bool fromCentre = false;
};

/// @p start with the edges of @p handle moved by @p delta: in whole pixels, at least 1 x 1, with the other edges, or
/// the centre, where they were. With the ratio kept, one edge grows the object to both of its sides.
KORA_EXPORT QRectF resized(const QRectF &start, Handle handle, const QPointF &delta, ResizeOptions options);

} // namespace DEV
} // namespace KORA
