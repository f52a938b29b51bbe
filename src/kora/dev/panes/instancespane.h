// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

#include <kora/export.h>

class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace KORA {
namespace DEV {

class BenchDocument;
class PlacedWidget;

/// The placed widgets, the topmost first: names, what runs, what is hidden or locked. Their order is that on the page.
class KORA_EXPORT InstancesPane : public QWidget
{
    Q_OBJECT

public:
    /// @p document is not owned and outlives the pane.
    explicit InstancesPane(BenchDocument *document, QWidget *parent = nullptr);

    /// Lets the user type another name for the current widget.
    void renameCurrent();

Q_SIGNALS:
    /// Something could not be done.
    void failed(const QString &message);

private:
    void addCommands(QLayout *bar);
    void watch(PlacedWidget *widget);
    void update();
    void rebuild();
    void updateRow(QTreeWidgetItem *row, const PlacedWidget &widget);
    void updateSelection();
    void onSelectionChanged();
    void onClicked(QTreeWidgetItem *row, int column);
    void onEdited(QTreeWidgetItem *row, int column);
    void moveRow(int from, int to);
    void moveCurrent(int rows);
    PlacedWidget *widgetOf(const QTreeWidgetItem *row) const;
    PlacedWidget *current() const;

    BenchDocument *m_document;
    QTreeWidget *m_tree;
    QVector<QToolButton *> m_commands; // of the selected widget
    QTimer m_updateTimer;
    bool m_isUpdating = false;
};

} // namespace DEV
} // namespace KORA
