// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

namespace KORA {
namespace DEV {

// Controls as every pane has them: named for tests and for assistive technology, with a tooltip that tells the key.

struct ControlText
{
    QString name;     ///< of the object: "consoleClear"
    QString label;    ///< accessible name
    QString toolTip;  ///< what it does; the label if empty
    QKeySequence key; ///< works while the pane has the focus; may be empty
};

void describe(QWidget *control, const ControlText &text);
/// A flat button with one of the bench's icons.
QToolButton *iconButton(QWidget *pane, const char *icon, const ControlText &text);
/// The same, checkable.
QToolButton *toggleButton(QWidget *pane, const char *icon, const ControlText &text);
QLineEdit *filterEdit(QWidget *pane, const ControlText &text);
/// The row of buttons above a pane's content.
QHBoxLayout *paneBar();

} // namespace DEV
} // namespace KORA
