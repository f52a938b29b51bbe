// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGui/QColor>

#include <kora/dev/diagnosis/finding.h>

class QPainter;
class QRectF;

namespace KORA {
namespace DEV {

/// Told apart on light and on dark; white is legible on it.
QColor severityColor(Finding::Severity severity);

/// Draws a disc, or for a warning a triangle, with a sign: no severity is told by its colour alone.
void paintSeverityMark(QPainter &painter, const QRectF &square, Finding::Severity severity);

} // namespace DEV
} // namespace KORA
