// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtWidgets/QDockWidget>

#include <kora/export.h>

class QMainWindow;
class QMenu;

namespace KORA {
namespace DEV {

class ActivityPane;
class AlarmsPane;
class BenchDocument;
class ConsoleModel;
class ConsolePane;
class FieldsPane;
class InstancesPane;
class ProblemsPane;
class TagsPane;
class TrendsPane;
class WidgetsPane;

/// The window's docks with a pane each, and their layout.
class KORA_EXPORT PaneSet : public QObject
{
    Q_OBJECT

public:
    enum Pane : int {
        Widgets,
        Instances,
        Fields,
        Console,
        Activity,
        Tags,
        Trends,
        Alarms,
        History,
        Problems,
        PaneCount
    };

    /// Below this width of the window Widgets and Instances are tabs.
    static constexpr int narrowWidth = 1100;

    PaneSet(QMainWindow *window, ConsoleModel *console);

    /// Makes the panes anew, for this document. It is not owned.
    void setDocument(BenchDocument *document);
    /// Deletes the panes that use the document.
    void dropDocument();

    QDockWidget *dock(Pane pane) const { return m_docks.at(pane); }
    WidgetsPane *widgets() const { return m_widgets; }
    InstancesPane *instances() const { return m_instances; }
    FieldsPane *fields() const { return m_fields; }
    ProblemsPane *problems() const { return m_problems; }

    void resetLayout();
    void adaptToWidth(int width);
    /// All panes away, or as they were before.
    void setCanvasOnly(bool isCanvasOnly);
    /// Shows a pane and gives it the keys.
    void show(Pane pane);
    /// Gives the next pane that can be seen the keys, after the last one the page.
    void focusNext(bool isForward);
    /// Of the pane that has the keys.
    void closeFocused();
    void floatFocused();
    /// What shows and hides each pane.
    void fill(QMenu *menu) const;

private:
    void addDock(Pane pane, const QString &name, const QString &title, Qt::DockWidgetArea area);
    void setPane(Pane pane, QWidget *widget);
    void applyNarrow();
    void updateTitleBars();
    QDockWidget *focusedDock() const;

    QMainWindow *m_window;
    QVector<QDockWidget *> m_docks;
    ConsoleModel *m_console;
    WidgetsPane *m_widgets = nullptr;
    InstancesPane *m_instances = nullptr;
    FieldsPane *m_fields = nullptr;
    ProblemsPane *m_problems = nullptr;
    QTimer m_titleBarTimer;
    bool m_isNarrow = false;
    QByteArray m_layoutBeforeCanvasOnly;
};

} // namespace DEV
} // namespace KORA
