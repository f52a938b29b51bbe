// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/providerpane.h>

#include <kora/dev/panes/clockbar.h>
#include <kora/dev/panes/flowlayout_p.h>
#include <kora/dev/panes/panecontrols_p.h>
#include <kora/dev/panes/providerdelegate_p.h>
#include <kora/dev/providers/providertable.h>

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QAction>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTableView>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

namespace KORA {
namespace DEV {

namespace {

constexpr int Margin = 4;
constexpr int CellMargin = 8;

} // namespace

ProviderPane::ProviderPane(ProviderTable *rows, BenchClock *clock, const QString &prefix, const QString &noun,
                           QWidget *parent)
    : QWidget(parent)
    , m_rows(rows)
    , m_prefix(prefix)
    , m_tools(new FlowLayout)
    , m_splitter(new QSplitter(this))
    , m_view(new QTableView(this))
    , m_problem(new QLabel(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Margin, Margin, Margin, Margin);
    layout->setSpacing(Margin);
    layout->addLayout(m_tools);
    layout->addWidget(m_splitter, 1);
    layout->addWidget(m_problem);
    m_problem->setWordWrap(true);
    m_problem->setTextInteractionFlags(Qt::TextSelectableByMouse);
    describeControl(m_problem, prefixed("Problem"), tr("What does not work"), QString());
    m_problem->hide();
    describeControl(m_splitter, prefixed("Splitter"), QString(), QString());
    m_splitter->setChildrenCollapsible(false);
    m_tools->addWidget(new ClockBar(clock, prefix, this));
    setUpView();
    setUpActions(noun);
    connect(rows, &ProviderTable::refused, this, &ProviderPane::showProblem);
    connect(rows, &ProviderTable::edited, this, [this] { showProblem(QString()); });
    connect(rows, &QAbstractItemModel::dataChanged, this, &ProviderPane::updateState);
    connect(rows, &QAbstractItemModel::rowsRemoved, this, &ProviderPane::updateState);
    connect(rows, &QAbstractItemModel::modelReset, this, [this] {
        m_view->setCurrentIndex(m_view->model()->index(0, 0));
        updateState();
    });
    m_view->setCurrentIndex(rows->index(0, 0));
}

// An open editor would hand over its text while the pane is already going.
ProviderPane::~ProviderPane()
{
    m_rows->disconnect(this);
    m_view->selectionModel()->disconnect(this);
    m_view->setModel(nullptr);
}

void ProviderPane::setUpView()
{
    describeControl(m_view, prefixed("Table"), m_prefix, QString());
    m_view->setModel(m_rows);
    m_view->setItemDelegate(new ProviderDelegate(m_view));
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                            | QAbstractItemView::AnyKeyPressed);
    m_view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_view->setTabKeyNavigation(false); // Tab leaves the table, the arrow keys move in it
    m_view->setAlternatingRowColors(true);
    m_view->setWordWrap(false);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_view->setMinimumHeight(m_view->fontMetrics().height() * 4);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setMinimumSectionSize(0);
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + CellMargin);
    m_view->horizontalHeader()->setHighlightSections(false);
    m_view->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    fitColumns();
    m_splitter->addWidget(m_view);
    connect(m_rows, &QAbstractItemModel::rowsInserted, this, &ProviderPane::growColumns);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { showProblem(QString()); });
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ProviderPane::updateState);
}

void ProviderPane::fitColumns()
{
    const QFontMetrics metrics = m_view->fontMetrics();
    const int least = metrics.horizontalAdvance(QLatin1Char('0')) * 8;
    const int number = metrics.horizontalAdvance(QStringLiteral("86400000 ms")) + CellMargin;
    m_view->resizeColumnsToContents();
    for (int column = 0; column < m_rows->columnCount(); ++column) {
        const bool isNumber = m_rows->columnEditor(column) == ProviderColumn::WholeNumberEditor;
        m_view->setColumnWidth(column,
                               qMax(isNumber ? number : least, m_view->columnWidth(column) + CellMargin));
    }
}

/// Makes room for what is new. Columns never shrink under the eyes of who looks at them.
void ProviderPane::growColumns()
{
    const int most = m_view->fontMetrics().averageCharWidth() * 30;
    for (int column = 0; column < m_rows->columnCount(); ++column) {
        const int width = m_view->columnWidth(column);
        m_view->resizeColumnToContents(column);
        const int wanted = qMin(most, m_view->columnWidth(column) + CellMargin);
        m_view->setColumnWidth(column, qMax(width, wanted));
    }
}

void ProviderPane::setUpActions(const QString &noun)
{
    QAction *add = addAction(QStringLiteral("Add"), tr("Add"), tr("Add a new %1").arg(noun), Qt::Key_Insert);
    connect(add, &QAction::triggered, this, &ProviderPane::addRow);
    add->setIconText(QStringLiteral("+"));
    m_rowActions.removeOne(add);
    QAction *remove = addAction(QStringLiteral("Remove"), tr("Remove"), tr("Remove the selected rows"),
                                QKeySequence::Delete);
    remove->setIconText(QStringLiteral("\u2212"));
    connect(remove, &QAction::triggered, this, &ProviderPane::removeRows);
    QAction *duplicate = addAction(QStringLiteral("Duplicate"), tr("Duplicate"),
                                   tr("Add the same %1 under another name").arg(noun), Qt::CTRL + Qt::Key_D);
    connect(duplicate, &QAction::triggered, this, &ProviderPane::duplicateRow);
}

QAction *ProviderPane::addAction(const QString &name, const QString &text, const QString &toolTip,
                                 const QKeySequence &shortcut)
{
    auto *action = new QAction(text, this);
    action->setObjectName(m_prefix + name);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WidgetShortcut);
    const QString keys = shortcut.toString(QKeySequence::NativeText);
    action->setToolTip(keys.isEmpty() ? toolTip : tr("%1 (%2)").arg(toolTip, keys));
    m_view->addAction(action);
    m_rowActions.append(action);
    m_tools->addWidget(actionButton(action, this));
    return action;
}

void ProviderPane::addControl(QWidget *control)
{
    m_tools->addWidget(control);
}

QString ProviderPane::currentName() const
{
    return m_rows->nameOf(m_view->currentIndex().row());
}

void ProviderPane::setCurrentName(const QString &name)
{
    m_view->setCurrentIndex(m_rows->index(m_rows->rowOf(name), 0));
}

QStringList ProviderPane::selectedNames() const
{
    QStringList names;
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        names.append(m_rows->nameOf(row.row()));
    }
    return names;
}

void ProviderPane::addRow()
{
    const QString name = m_rows->addNew();
    if (name.isEmpty()) {
        return;
    }
    setCurrentName(name);
    m_view->setFocus();
    m_view->edit(m_view->currentIndex());
}

void ProviderPane::removeRows()
{
    const QStringList names = selectedNames();
    m_rows->editByUser([&] {
        bool isRemoved = false;
        for (const QString &name : names) {
            isRemoved = m_rows->remove(name) || isRemoved;
        }
        return isRemoved;
    });
}

void ProviderPane::duplicateRow()
{
    const QString name = m_rows->duplicate(currentName());
    if (!name.isEmpty()) {
        setCurrentName(name);
    }
}

void ProviderPane::showProblem(const QString &problem)
{
    m_refused = problem;
    updateState();
}

void ProviderPane::updateState()
{
    const bool hasRows = m_view->selectionModel()->hasSelection();
    for (QAction *action : qAsConst(m_rowActions)) {
        action->setEnabled(hasRows);
    }
    const QString problem =
        m_refused.isEmpty() ? m_rows->rowProblem(m_view->currentIndex().row()) : m_refused;
    if (m_problem->text() != problem) {
        m_problem->setText(problem);
        m_problem->setVisible(!problem.isEmpty());
    }
    currentChanged();
}

} // namespace DEV
} // namespace KORA
