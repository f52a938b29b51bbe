// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QWidget>

class QDockWidget;
class QLabel;

namespace KORA {
namespace DEV {

/// The title of a dock that is no tab: its name, and buttons to make it a window and to close it.
class PaneTitle : public QWidget
{
    Q_OBJECT

public:
    explicit PaneTitle(QDockWidget *dock);

private:
    QLabel *m_name;
};

} // namespace DEV
} // namespace KORA
