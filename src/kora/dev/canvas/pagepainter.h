// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QRectF>

class QPainter;
class QPalette;

namespace KORA {
namespace DEV {

struct PageState;

/// Draws the page, its grid and the desk that it lies on into @p exposed. The painter and all rectangles are in page
/// coordinates, @p zoom is the viewport's pixels per pixel of the page.
void paintPage(QPainter &painter, const QRectF &exposed, const PageState &page, qreal zoom,
               const QPalette &palette);

/// Draws a line between all pixels of the page; worth it when they are large.
void paintPixelGrid(QPainter &painter, const QRectF &exposed, const PageState &page, qreal zoom);

} // namespace DEV
} // namespace KORA
