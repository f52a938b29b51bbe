// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QWidget>

#include <kora/export.h>

class QAction;
class QLabel;
class QSplitter;
class QTableView;

namespace KORA {
namespace DEV {

class BenchClock;
class FlowLayout;
class ProviderTable;

/// What the panes of tags, trends and alarms have in common: the clock, the table with buttons and keys to add (Ins),
/// remove (Del) and duplicate (Ctrl+D) rows and to edit cells (F2, or just type), and a line that says what was refused
/// or does not work.
class KORA_EXPORT ProviderPane : public QWidget
{
    Q_OBJECT

public:
    ~ProviderPane() override;

    QTableView *table() const { return m_view; }
    /// The name of the row that has the focus; empty without one.
    QString currentName() const;
    void setCurrentName(const QString &name);

    void addRow();
    void removeRows();
    void duplicateRow();

    QSize sizeHint() const override { return QSize(700, 220); }

protected:
    /// @p prefix makes the object names: "<prefix>Table", "<prefix>Add", "<prefix>Remove", "<prefix>Duplicate",
    /// "<prefix>Problem". @p noun is what a row is called: "tag".
    ProviderPane(ProviderTable *rows, BenchClock *clock, const QString &prefix, const QString &noun,
                 QWidget *parent);

    /// An action of the selected rows, as a button and in the table's menu.
    QAction *addAction(const QString &name, const QString &text, const QString &toolTip,
                       const QKeySequence &shortcut = QKeySequence());
    void addControl(QWidget *control);
    QSplitter *splitter() const { return m_splitter; }
    QStringList selectedNames() const;
    void showProblem(const QString &problem);
    QString prefixed(const char *name) const { return m_prefix + QLatin1String(name); }

    /// Another row has the focus, or its data has changed.
    virtual void currentChanged() {}

private:
    void setUpView();
    void fitColumns();
    void growColumns();
    void setUpActions(const QString &noun);
    void updateState();

    ProviderTable *m_rows;
    const QString m_prefix;
    FlowLayout *m_tools;
    QSplitter *m_splitter;
    QTableView *m_view;
    QLabel *m_problem;
    QVector<QAction *> m_rowActions;
    QString m_refused; ///< stands until the next edit or selection
};

} // namespace DEV
} // namespace KORA
