// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/panecontrols_p.h>

#include <QtCore/QEvent>
#include <QtWidgets/QAction>
#include <QtWidgets/QToolButton>

namespace KORA {
namespace DEV {

namespace {

class WheelFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Wheel || static_cast<QWidget *>(watched)->hasFocus()) {
            return false;
        }
        event->ignore();
        return true;
    }
};

} // namespace

void describeControl(QWidget *control, const QString &objectName, const QString &accessibleName,
                     const QString &toolTip)
{
    control->setObjectName(objectName);
    control->setAccessibleName(accessibleName);
    control->setToolTip(toolTip);
}

QToolButton *actionButton(QAction *action, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setObjectName(action->objectName());
    button->setAccessibleName(action->text());
    return button;
}

void ignoreWheelWithoutFocus(QWidget *control)
{
    control->setFocusPolicy(Qt::StrongFocus); // without it the wheel would take the focus
    control->installEventFilter(new WheelFilter(control));
}

} // namespace DEV
} // namespace KORA
