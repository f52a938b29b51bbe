// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/panetitle.h>

#include <QtWidgets/QDockWidget>
#include <QtWidgets/QLabel>

#include <kora/dev/theme/controls.h>

namespace KORA {
namespace DEV {

namespace {

const int iconSide = 14;

} // namespace

PaneTitle::PaneTitle(QDockWidget *dock)
    : QWidget(dock)
    , m_name(new QLabel(dock->windowTitle(), this))
{
    QFont bold = font();
    bold.setBold(true);
    m_name->setFont(bold);
    QToolButton *floating = iconButton(this, "page",
                                       {dock->objectName() + QLatin1String("Float"),
                                        tr("%1 as a window, or back").arg(dock->windowTitle()),
                                        {},
                                        {}});
    QToolButton *close = iconButton(
        this, "close",
        {dock->objectName() + QLatin1String("Close"), tr("Close %1").arg(dock->windowTitle()), {}, {}});
    connect(floating, &QToolButton::clicked, dock, [dock] { dock->setFloating(!dock->isFloating()); });
    connect(close, &QToolButton::clicked, dock, &QDockWidget::close);
    connect(dock, &QDockWidget::windowTitleChanged, m_name, &QLabel::setText);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 3, 4, 3);
    layout->setSpacing(2);
    layout->addWidget(m_name, 1);
    for (QToolButton *button : {floating, close}) {
        button->setIconSize({iconSide, iconSide});
        layout->addWidget(button);
    }
}

} // namespace DEV
} // namespace KORA
