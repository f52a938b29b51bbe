// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

class QFont;
class QPainter;
class QPalette;
class QRectF;

namespace KORA {
namespace DEV {

class PlacedWidget;

/// Draws in place of a widget without an instance why there is none: the cause first, then what to do. The text keeps
/// its size at every zoom; what has no room is left to the tooltip. @p rect is in pixels of the viewport.
void paintWidgetCard(QPainter &painter, const QRectF &rect, const PlacedWidget &widget,
                     const QPalette &palette, const QFont &font);

/// The whole text of the card.
QString widgetCardToolTip(const PlacedWidget &widget);

} // namespace DEV
} // namespace KORA
