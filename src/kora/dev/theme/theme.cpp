// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/theme/theme.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QToolTip>

namespace KORA {
namespace DEV {

namespace {

struct Colors
{
    const char *window;
    const char *base;
    const char *alternate;
    const char *text;
    const char *muted;
    const char *disabled;
    const char *button;
    const char *border;
    const char *scroll; // handles of scroll bars
    const char *accent;
    const char *link;
    const char *error;
    const char *warning;
    const char *success;
};

const Colors lightColors = {"#f3f4f6", "#ffffff", "#f8f9fb", "#1b2430", "#5c6675", "#9aa3af", "#fcfcfd",
                            "#d3d8df", "#b4bbc6", "#1f66d1", "#1a5bbd", "#b42318", "#8f5600", "#166b3a"};
const Colors darkColors = {"#1d2026", "#272b33", "#2b3039", "#e3e7ed", "#98a2b1", "#646e7c", "#323843",
                           "#3a414d", "#4b5462", "#3d7fe0", "#7db0ff", "#ff8a80", "#f5bd4f", "#6fd394"};

QColor color(const char *name)
{
    return QColor(QLatin1String(name));
}

QPalette paletteOf(const Colors &colors)
{
    QPalette palette(color(colors.text), color(colors.button), color(colors.base), color(colors.border),
                     color(colors.border).darker(130), color(colors.text), color(colors.text),
                     color(colors.base), color(colors.window));
    palette.setColor(QPalette::AlternateBase, color(colors.alternate));
    palette.setColor(QPalette::Highlight, color(colors.accent));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, color(colors.button));
    palette.setColor(QPalette::ToolTipText, color(colors.text));
    palette.setColor(QPalette::PlaceholderText, color(colors.muted));
    palette.setColor(QPalette::Link, color(colors.link));
    palette.setColor(QPalette::LinkVisited, color(colors.link));
    palette.setColor(QPalette::Dark, color(colors.scroll));
    palette.setColor(QPalette::Mid, color(colors.border));
    palette.setColor(QPalette::Midlight, color(colors.border).lighter(108));
    palette.setColor(QPalette::Light, color(colors.button));
    palette.setColor(QPalette::Shadow, color(colors.muted));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, color(colors.disabled));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, color(colors.border));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, color(colors.muted));
    return palette;
}

// As the platform gives it, before the bench sets its own.
const QPalette &systemPalette()
{
    static const QPalette palette = QGuiApplication::palette();
    return palette;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

const Colors &presentColors()
{
    return isDark(QGuiApplication::palette()) ? darkColors : lightColors;
}

const char *const styleSheet = R"(
QMainWindow::separator { background: palette(window); width: 5px; height: 5px; }
QMainWindow::separator:hover { background: palette(highlight); }
QToolBar { border: none; border-bottom: 1px solid palette(mid); background: palette(window);
           padding: 3px 6px; spacing: 3px; }
QToolBar::separator { background: palette(mid); width: 1px; margin: 5px 5px; }
QToolButton { padding: 3px; border: 1px solid transparent; border-radius: 4px; background: transparent; }
QToolButton:hover { background: palette(button); border-color: palette(mid); }
QToolButton:checked { background: palette(midlight); border-color: palette(highlight); }
QToolButton:pressed { background: palette(mid); }
QToolButton:focus { border-color: palette(highlight); }
#qt_toolbar_ext_button { padding: 0; }
#commandPalette { border: 1px solid palette(highlight); }
QScrollBar { background: transparent; border: none; }
QScrollBar:vertical { width: 11px; }
QScrollBar:horizontal { height: 11px; }
QScrollBar::handle { background: palette(dark); border-radius: 4px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 28px; }
QScrollBar::handle:horizontal { min-width: 28px; }
QScrollBar::handle:hover { background: palette(shadow); }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QAbstractScrollArea::corner { background: transparent; border: none; }
QStatusBar { border-top: 1px solid palette(mid); background: palette(window); }
QStatusBar::item { border: none; }
QTabBar::tab { padding: 5px 10px; border: none; border-bottom: 2px solid transparent;
               background: transparent; }
QTabBar::tab:selected { border-bottom-color: palette(highlight); }
QTabBar::tab:!selected { color: palette(placeholder-text); }
QTabBar::tab:hover:!selected { border-bottom-color: palette(mid); }
QHeaderView::section { padding: 4px 6px; border: none; border-bottom: 1px solid palette(mid);
                       border-right: 1px solid palette(mid); background: palette(window); }
QTreeView, QTableView, QListView { border: 1px solid palette(mid); }
QToolTip { border: 1px solid palette(mid); padding: 3px; }
)";

} // namespace

BenchSettings::BenchSettings()
    : QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("kora"), QStringLiteral("bench"))
{}

namespace BenchTheme {

Theme remembered()
{
    const QString name = BenchSettings().value(QStringLiteral("theme")).toString();
    if (name == QLatin1String("light")) {
        return Theme::Light;
    }
    return name == QLatin1String("dark") ? Theme::Dark : Theme::System;
}

void remember(Theme theme)
{
    const char *const names[] = {"system", "light", "dark"};
    BenchSettings().setValue(QStringLiteral("theme"), QLatin1String(names[static_cast<int>(theme)]));
}

void apply(Theme theme, QWidget *window)
{
    const bool dark = theme == Theme::Dark || (theme == Theme::System && isDark(systemPalette()));
    if (QApplication::style()->objectName() != QLatin1String("fusion")) {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    }
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QPalette palette = paletteOf(dark ? darkColors : lightColors);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
    window->setStyleSheet(QLatin1String(styleSheet));
}

QPalette pagePalette()
{
    return paletteOf(lightColors);
}

QColor errorColor()
{
    return color(presentColors().error);
}

QColor warningColor()
{
    return color(presentColors().warning);
}

QColor successColor()
{
    return color(presentColors().success);
}

QColor mutedColor()
{
    return color(presentColors().muted);
}

} // namespace BenchTheme

} // namespace DEV
} // namespace KORA
