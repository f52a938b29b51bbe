// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QAbstractTableModel>
#include <QtCore/QSet>
#include <QtCore/QTimer>
#include <QtCore/QVector>

#include <kora/export.h>

namespace KORA {
namespace DEV {

/// A column of a provider's table and how its cells are edited.
struct ProviderColumn
{
    enum Editor : int {
        NoEditor,
        TextEditor,
        ValueEditor,
        ChoiceEditor,
        WholeNumberEditor,
        FileEditor,
        CheckEditor
    };

    QString title;
    QString help; ///< the tooltip of the heading
    Editor editor = NoEditor;
};

/// What the tables of tags, trends and alarms have in common: named rows, edits that may be refused, and changes of
/// running values that reach the views at most twenty times a second, however often they happen.
class KORA_EXPORT ProviderTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role : int {
        EditorRole = Qt::UserRole, ///< ProviderColumn::Editor of the cell
        ChoicesRole,               ///< texts of a ChoiceEditor; the cell's edit value is the index
        MinimumRole,
        MaximumRole, ///< of a WholeNumberEditor
        SuffixRole,
        ProblemRole ///< rowProblem()
    };

    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

    /// How most cells of a column are edited.
    ProviderColumn::Editor columnEditor(int column) const { return m_columns.at(column).editor; }

    virtual QStringList names() const = 0;
    virtual bool remove(const QString &name) = 0;
    /// Adds a row as the user starts it, with a name of its own, which is returned.
    virtual QString addNew() = 0;
    /// Adds the same with a name of its own, which is returned; empty for an unknown one.
    virtual QString duplicate(const QString &name) = 0;
    /// What does not work about a row, such as a replay file that is missing; empty if all is well.
    virtual QString rowProblem(int row) const = 0;

    int rowOf(const QString &name) const { return names().indexOf(name); }
    QString nameOf(int row) const { return names().value(row); }
    /// @p base, or with the first number that makes it unused.
    QString unusedName(const QString &base) const;

    /// All edits that @p act makes count as one: edited() comes once, after it. What changes a value or a state but is
    /// no edit by itself, such as raising an alarm, counts if @p act returns true.
    template<typename Act>
    void editByUser(Act act)
    {
        ++m_openEdits;
        if (act()) {
            m_isEdited = true;
        }
        --m_openEdits;
        finishEdit();
    }

Q_SIGNALS:
    /// Rows were added, changed or removed, or the user has changed a value or a state. Not for what a widget, the
    /// clock or a scenario does.
    void edited();
    /// An edit in the table did not happen: what, and why.
    void refused(const QString &problem);

protected:
    explicit ProviderTable(const QVector<ProviderColumn> &columns, QObject *parent);

    /// The editor that a cell has at present.
    virtual ProviderColumn::Editor editorOf(int row, int column) const;
    /// Takes what the user entered. False with the reason.
    virtual bool setCell(int row, int column, const QVariant &value, QString *problem) = 0;
    /// Adding, changing and removing rows are edits.
    void noteEdit();
    /// Lets the views know, soon.
    void touchRow(int row);
    /// Lets the views know at once.
    void rowChanged(int row);

    const QVector<ProviderColumn> m_columns;

private:
    void announceTouchedRows();
    void finishEdit();

    int m_openEdits = 0;
    bool m_isEdited = false;

    QTimer m_announcement;
    int m_firstTouched = -1;
    int m_lastTouched = -1;
};

} // namespace DEV
} // namespace KORA
