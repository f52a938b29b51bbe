// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include <kora/dev/fields/fielddetails.h>
#include <kora/dev/fields/fieldmanager.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/export.h>

class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QStackedWidget;
class QToolButton;
class QTreeWidget;

namespace KORA {
namespace DEV {

class ElidedLabel;
class GeometryStrip;

/// The fields of the widget that was selected last, each in a row of its group, with an editor.
///
/// Which rows are shown is for the receiver of treeRebuilt(), fieldEdited() and valuesChanged() to say, through
/// FieldManager::setVisible(); the pane's own filter only hides further.
class KORA_EXPORT FieldsPane : public QWidget
{
    Q_OBJECT

public:
    /// @p document is not owned and must outlive the pane.
    explicit FieldsPane(BenchDocument *document, QWidget *parent = nullptr);
    ~FieldsPane() override;

    BenchDocument *document() const { return m_document; }
    QString pluginId() const;
    QTreeWidget *tree() const { return m_tree; }

    /// Field id to its rows, of the fields that are offered: private ones only on request.
    const QMap<QString, FieldManager *> &fieldManagers() const { return m_managers; }
    /// The group's name in the library's default language, "General" for none, to the row of the group.
    const QMap<QString, QTreeWidgetItem *> &groupRows() const { return m_groups; }

    /// The selected widget's present value; invalid if none is selected.
    QVariant fieldValue(const QString &fieldId) const;
    /// Sets a field of the selected widget, as its editor would.
    void setFieldValue(const QString &fieldId, const QVariant &value);

    void setPrivateFieldsShown(bool isShown);
    bool privateFieldsAreShown() const { return m_privateFieldsAreShown; }
    void resetAll();

    /// To be called when the rows were shown and hidden by their requirements.
    void onRequirementsEvaluated();
    /// The fields that are hidden by their requirements, and those whose requirements are invalid, each with the
    /// reason.
    QStringList requirementsReasons() const;

Q_SIGNALS:
    /// There are other rows, with the values of another widget.
    void treeRebuilt();
    /// A value was set from an editor, or reset, or bound.
    void fieldEdited();
    /// Values changed in another way; at most twenty times a second.
    void valuesChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QWidget *makeBar();
    QWidget *makeTree();
    QWidget *makeHiddenFields();
    QToolButton *makeTextButton(const QString &name, const QString &text, const QString &toolTip);

    void rebuild();
    void clearRows();
    void addFields(PlacedWidget *widget);
    QTreeWidgetItem *groupRow(const INTERNAL::FieldMetaInformation &field);
    void connectManager(FieldManager *manager);
    void watchWidget(PlacedWidget *widget);
    void showState();
    QString groupMemoryKey(const QTreeWidgetItem *group) const;
    void lightenOutlines();
    void colorGroups();

    void onValueChanged(const QString &fieldId, PlacedWidget::Origin origin);
    int pauseBeforeUpdate();
    void flushValues();
    void scheduleVisibleRows();
    void makeVisibleEditors();
    void chainTabOrder();

    bool matches(const FieldManager &manager) const;
    bool hasFilter() const;
    void applyFilter();
    void foldGroups();

    FieldManager *managerOf(const QTreeWidgetItem *item) const;
    void showDetails();
    void showHiddenFields();
    void openMenu(const QPoint &position);
    void focusEditor();

    BenchDocument *m_document;
    QPointer<PlacedWidget> m_widget;
    QMap<QString, FieldManager *> m_managers;
    QHash<const QTreeWidgetItem *, FieldManager *> m_managerOfRow;
    QMap<QString, QTreeWidgetItem *> m_groups;
    QSet<QString> m_foldedGroups; ///< by widget and group
    bool m_privateFieldsAreShown = false;
    bool m_isFiltering = false;
    bool m_isRebuilding = false;

    QSet<QString> m_changedFields;
    QHash<QString, FieldWriter> m_writers;
    QTimer m_valuesTimer;
    QElapsedTimer m_sinceRefill;
    int m_promptUpdates = 0; ///< that may still follow each other without a pause
    QTimer m_rowsTimer;

    ElidedLabel *m_title;
    GeometryStrip *m_geometry;
    QLineEdit *m_filter;
    QToolButton *m_modifiedOnly;
    QStackedWidget *m_stack;
    QLabel *m_emptyText;
    QTreeWidget *m_tree;
    QToolButton *m_hiddenToggle;
    QListWidget *m_hiddenList;
    FieldDetails *m_details;
};

/// Adds what can be done with a field from its row.
KORA_EXPORT void fillFieldMenu(QMenu *menu, FieldManager *manager);

} // namespace DEV
} // namespace KORA
