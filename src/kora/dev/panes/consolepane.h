// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QWidget>

#include <array>

#include <kora/dev/panes/consolemodel.h>
#include <kora/export.h>

class QLabel;
class QLineEdit;
class QToolButton;

namespace KORA {
namespace DEV {

class LogView;

/// The console: level buttons with counters, a filter, and the lines.
class KORA_EXPORT ConsolePane : public QWidget
{
    Q_OBJECT

public:
    /// @p console is not owned and outlives the pane.
    explicit ConsolePane(ConsoleModel *console, QWidget *parent = nullptr);

private:
    void addLevelButtons(QLayout *bar);
    void addCommands(QLayout *bar);
    void updateCounts();
    void setFilter(const QString &text);
    void mark();
    void copySelected();
    void copyAll();
    void save();
    QString textOf(bool onlySelected) const;

    ConsoleModel *m_console;
    ConsoleFilter m_filter;
    LogView *m_view;
    QLineEdit *m_filterEdit;
    QLabel *m_problem;
    QToolButton *m_follow = nullptr;
    std::array<QToolButton *, ConsoleLine::LevelCount> m_levels{};
    int m_marks = 0;
};

} // namespace DEV
} // namespace KORA
