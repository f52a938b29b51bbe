// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QSettings>
#include <QtGui/QPalette>

#include <kora/export.h>

class QWidget;

namespace KORA {
namespace DEV {

enum class Theme : int { System, Light, Dark };

/// What the bench remembers per user: layout, theme, states of buttons.
class KORA_EXPORT BenchSettings : public QSettings
{
public:
    BenchSettings();
};

/// The look of the bench. Style and palette are the application's.
namespace BenchTheme {

KORA_EXPORT Theme remembered();
KORA_EXPORT void remember(Theme theme);
/// Gives the application the style and palette, and @p window the style sheet of the bench's docks and bars.
KORA_EXPORT void apply(Theme theme, QWidget *window);
/// What widgets on the page are drawn with, whatever the bench looks like.
KORA_EXPORT QPalette pagePalette();

// Colours that a palette has no role for, legible on the base colour of the present theme.
KORA_EXPORT QColor errorColor();
KORA_EXPORT QColor warningColor();
KORA_EXPORT QColor successColor();
KORA_EXPORT QColor mutedColor();

} // namespace BenchTheme

} // namespace DEV
} // namespace KORA
