// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/theme/controls.h>

#include <QtWidgets/QShortcut>

#include <kora/dev/theme/icons.h>

namespace KORA {
namespace DEV {

namespace {

void click(QWidget *control)
{
    if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        button->click();
        return;
    }
    control->setFocus(Qt::ShortcutFocusReason);
}

} // namespace

void describe(QWidget *control, const ControlText &text)
{
    control->setObjectName(text.name);
    control->setAccessibleName(text.label);
    const QString toolTip = text.toolTip.isEmpty() ? text.label : text.toolTip;
    if (text.key.isEmpty()) {
        control->setToolTip(toolTip);
        return;
    }
    control->setToolTip(QStringLiteral("%1 (%2)").arg(toolTip, text.key.toString(QKeySequence::NativeText)));
    auto *shortcut = new QShortcut(text.key, control->parentWidget());
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(shortcut, &QShortcut::activated, control, [control] { click(control); });
}

QToolButton *iconButton(QWidget *pane, const char *icon, const ControlText &text)
{
    auto *button = new QToolButton(pane);
    button->setIcon(benchIcon(icon));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    describe(button, text);
    return button;
}

QToolButton *toggleButton(QWidget *pane, const char *icon, const ControlText &text)
{
    QToolButton *button = iconButton(pane, icon, text);
    button->setCheckable(true);
    return button;
}

QLineEdit *filterEdit(QWidget *pane, const ControlText &text)
{
    auto *edit = new QLineEdit(pane);
    edit->setPlaceholderText(text.label);
    edit->setClearButtonEnabled(true);
    edit->addAction(benchIcon("search"), QLineEdit::LeadingPosition);
    describe(edit, text);
    return edit;
}

QHBoxLayout *paneBar()
{
    auto *bar = new QHBoxLayout;
    bar->setContentsMargins(6, 4, 6, 4);
    bar->setSpacing(2);
    return bar;
}

} // namespace DEV
} // namespace KORA
