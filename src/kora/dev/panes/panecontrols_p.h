// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

class QAction;
class QToolButton;
class QWidget;

namespace KORA {
namespace DEV {

/// Object name, accessible name and tooltip: what every control has.
void describeControl(QWidget *control, const QString &objectName, const QString &accessibleName,
                     const QString &toolTip);

/// A button for an action, whose text, tooltip and shortcut it shows. Named like the action.
QToolButton *actionButton(QAction *action, QWidget *parent);

/// Lets the wheel scroll past a control that does not have the focus, instead of changing its value.
void ignoreWheelWithoutFocus(QWidget *control);

} // namespace DEV
} // namespace KORA
