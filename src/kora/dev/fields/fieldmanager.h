// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVector>

#include <memory>
#include <vector>

#include <kora/core/widgetmetainformation.h>
#include <kora/dev/fields/fieldeditor.h>
#include <kora/dev/fields/fieldrow_p.h>
#include <kora/dev/fields/requirements.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/export.h>

class QMenu;
class QTreeWidgetItem;

namespace KORA {
namespace DEV {

/// One field of the selected widget in the pane: its row and the rows below it, for the other languages of a text
/// and for the parts of a font. Editors are made when their row comes into sight.
class KORA_EXPORT FieldManager : public QObject
{
    Q_OBJECT

public:
    /// The rows are added to @p group, which stands in a tree. @p document and @p widget are not owned.
    FieldManager(BenchDocument *document, PlacedWidget *widget, const INTERNAL::FieldMetaInformation &field,
                 QTreeWidgetItem *group);
    ~FieldManager() override;

    QString id() const { return m_field.id(); }
    QString label() const { return m_label; }
    const INTERNAL::FieldMetaInformation &field() const { return m_field; }
    QString requirements() const { return m_field.requirements(); }

    /// Hides or shows every row of the field, as its requirements want it. A filter may hide shown ones further.
    void setVisible(bool isVisible);
    /// What was set last, whatever a filter hides.
    bool isVisible() const { return m_isVisible; }
    /// Hides the rows on top of what the requirements hide.
    void setFilteredOut(bool isFilteredOut);
    bool isFilteredOut() const { return m_isFilteredOut; }
    bool isModified() const;
    QString binding() const;
    QVariant value() const;

    void setRequirementsOutcome(const RequirementsOutcome &outcome) { m_outcome = outcome; }
    const RequirementsOutcome &requirementsOutcome() const { return m_outcome; }

    QTreeWidgetItem *row() const { return m_rows.front()->item; }
    /// The field's row first.
    QVector<QTreeWidgetItem *> rows() const;
    bool owns(const QTreeWidgetItem *item) const;
    /// The editor of a row, made if it was not yet.
    FieldEditor *editor(const QTreeWidgetItem *item);
    FieldEditor *editor() { return editor(row()); }
    /// Null while the row has no editor.
    FieldEditor *editorIfMade(const QTreeWidgetItem *item) const;
    /// What is said below the editor of the row.
    QString note(const QTreeWidgetItem *item) const;

    /// Shows the present value and state in all rows.
    void refresh();
    void reset();
    /// Sends a value past the editors, as one step.
    void sendValue(const QVariant &value);
    void bind(const QString &source);
    /// Adds the tags or trends to choose from.
    void fillBindMenu(QMenu *menu);
    /// Lets a read-only field be edited until the pane shows another widget.
    void unlock();
    bool isLocked() const { return m_field.readOnly() && !m_isUnlocked; }

    /// Sends what was entered and not sent yet.
    void finishEntries();
    /// Forgets widget and rows; the manager may live on until the event loop is back.
    void detach();

Q_SIGNALS:
    void edited();
    void focusEntered(QTreeWidgetItem *item);
    void heightChanged();

private:
    using Row = FieldRow;

    void addRow(QTreeWidgetItem *parent, Row::Kind kind, const QString &label);
    void addSubRows();
    Row *rowOf(const QTreeWidgetItem *item) const;
    FieldEditorContext contextOf(const Row &row) const;
    void makeEditor(Row &row);
    void connectEditor(Row &row);
    QVariant read(const Row &row) const;
    QVariant write(const Row &row, const QVariant &value, int gesture);
    void onEdited(Row &row, const QVariant &value, bool isFinished);
    void restore(Row &row);
    void refreshRow(Row &row);
    void refreshMarks(Row &row);
    void showNote(Row &row);
    void updateRowVisibility();
    QString fontId() const;
    bool hasLinkButton() const;
    QString toolTip() const;

    QPointer<BenchDocument> m_document;
    QPointer<PlacedWidget> m_widget;
    INTERNAL::FieldMetaInformation m_field;
    QString m_label;
    std::vector<std::unique_ptr<Row>> m_rows;
    RequirementsOutcome m_outcome;
    bool m_isVisible = true;
    bool m_isFilteredOut = false;
    bool m_isUnlocked = false;
};

} // namespace DEV
} // namespace KORA
