// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/instancespane.h>

#include <QtGui/QDropEvent>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <functional>

#include <kora/dev/model/benchdocument.h>
#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/theme/theme.h>

namespace KORA {
namespace DEV {

namespace {

enum Column : int { NameColumn, RunningColumn, VisibleColumn, LockedColumn, ColumnCount };

const int idRole = Qt::UserRole;
const int updateInterval = 50; // milliseconds
const int stateColumnWidth = 28;

/// Rows that are dragged inside it are reported, not moved.
class InstanceTree : public QTreeWidget
{
public:
    using QTreeWidget::QTreeWidget;

    std::function<void(int from, int to)> onMove;

protected:
    void dropEvent(QDropEvent *event) override
    {
        const int from = indexOfTopLevelItem(currentItem());
        const QModelIndex target = indexAt(event->pos());
        int to = target.isValid() ? target.row() : topLevelItemCount();
        if (target.isValid() && dropIndicatorPosition() == BelowItem) {
            ++to;
        }
        // A move would make the view remove the row itself.
        event->setDropAction(Qt::CopyAction);
        event->accept();
        if (event->source() == this && from >= 0 && onMove) {
            onMove(from, to > from ? to - 1 : to);
        }
    }
};

} // namespace

InstancesPane::InstancesPane(BenchDocument *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
{
    auto *tree = new InstanceTree(this);
    tree->onMove = [this](int from, int to) { moveRow(from, to); };
    m_tree = tree;
    m_tree->setObjectName(QStringLiteral("instancesTree"));
    m_tree->setAccessibleName(tr("Placed widgets"));
    m_tree->setColumnCount(ColumnCount);
    m_tree->setHeaderHidden(true);
    m_tree->setRootIsDecorated(false);
    m_tree->setUniformRowHeights(true);
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setDragDropMode(QAbstractItemView::InternalMove);
    m_tree->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_tree->header()->setStretchLastSection(false);
    m_tree->header()->setMinimumSectionSize(stateColumnWidth);
    m_tree->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    for (const int column : {RunningColumn, VisibleColumn, LockedColumn}) {
        m_tree->header()->setSectionResizeMode(column, QHeaderView::Fixed);
        m_tree->header()->resizeSection(column, stateColumnWidth);
    }
    QHBoxLayout *bar = paneBar();
    addCommands(bar);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(bar);
    layout->addWidget(m_tree, 1);

    m_updateTimer.setSingleShot(true);
    m_updateTimer.setInterval(updateInterval);
    connect(&m_updateTimer, &QTimer::timeout, this, &InstancesPane::update);
    const auto updateSoon = QOverload<>::of(&QTimer::start);
    connect(document, &BenchDocument::widgetAdded, this, &InstancesPane::watch);
    connect(document, &BenchDocument::widgetAboutToBeRemoved, &m_updateTimer, updateSoon);
    connect(document, &BenchDocument::stackingChanged, &m_updateTimer, updateSoon);
    connect(document, &BenchDocument::loaded, &m_updateTimer, updateSoon);
    connect(document, &BenchDocument::selectionChanged, this, &InstancesPane::updateSelection);
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, &InstancesPane::onSelectionChanged);
    connect(m_tree, &QTreeWidget::itemClicked, this, &InstancesPane::onClicked);
    connect(m_tree, &QTreeWidget::itemChanged, this, &InstancesPane::onEdited);
    connect(m_tree, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem *row, int column) {
        if (column == NameColumn) {
            m_tree->editItem(row, NameColumn);
        }
    });
    for (PlacedWidget *widget : document->widgets()) {
        watch(widget);
    }
    updateSelection();
}

void InstancesPane::addCommands(QLayout *bar)
{
    const auto command = [this, bar](const char *icon, const char *name, const QString &label,
                                     const QString &key, const std::function<void(PlacedWidget *)> &run) {
        QToolButton *button = iconButton(this, icon, {QLatin1String(name), label, {}, QKeySequence(key)});
        connect(button, &QToolButton::clicked, this, [this, run] {
            if (PlacedWidget *widget = current()) {
                run(widget);
            }
        });
        bar->addWidget(button);
        m_commands.append(button);
    };
    command("play", "instanceRun", tr("Start or stop"), QStringLiteral("Ctrl+Return"),
            [this](PlacedWidget *each) { m_document->setRunning(each, !each->isRunning()); });
    command("restart", "instanceRestart", tr("Restart"), QStringLiteral("Ctrl+Shift+Return"),
            [this](PlacedWidget *each) { m_document->restart(each); });
    command("eye", "instanceVisible", tr("Show or hide"), QStringLiteral("Ctrl+H"),
            [this](PlacedWidget *each) { m_document->setVisible(each, !each->isVisible()); });
    command("lock", "instanceLocked", tr("Lock or unlock place and size"), QStringLiteral("Ctrl+K"),
            [this](PlacedWidget *each) { m_document->setLocked(each, !each->isLocked()); });
    command("edit", "instanceRename", tr("Rename"), QString(), [this](PlacedWidget *) { renameCurrent(); });
    static_cast<QBoxLayout *>(bar)->addStretch();
    command("up", "instanceUp", tr("Bring forward"), QStringLiteral("Ctrl+PgUp"),
            [this](PlacedWidget *) { moveCurrent(-1); });
    command("down", "instanceDown", tr("Send backward"), QStringLiteral("Ctrl+PgDown"),
            [this](PlacedWidget *) { moveCurrent(1); });
    command("clear", "instanceRemove", tr("Remove"), QStringLiteral("Del"),
            [this](PlacedWidget *) { m_document->remove(m_document->selection()); });
}

void InstancesPane::watch(PlacedWidget *widget)
{
    const auto updateSoon = QOverload<>::of(&QTimer::start);
    connect(widget, &PlacedWidget::changed, &m_updateTimer, updateSoon);
    connect(widget, &PlacedWidget::instanceChanged, &m_updateTimer, updateSoon);
    m_updateTimer.start();
}

void InstancesPane::renameCurrent()
{
    update();
    if (m_tree->currentItem()) {
        m_tree->setFocus();
        m_tree->editItem(m_tree->currentItem(), NameColumn);
    }
}

PlacedWidget *InstancesPane::widgetOf(const QTreeWidgetItem *row) const
{
    return row ? m_document->widgetById(row->data(NameColumn, idRole).toInt()) : nullptr;
}

PlacedWidget *InstancesPane::current() const
{
    return m_document->current();
}

void InstancesPane::update()
{
    const QVector<PlacedWidget *> &widgets = m_document->widgets();
    bool isSame = widgets.size() == m_tree->topLevelItemCount();
    for (int i = 0; isSame && i < widgets.size(); ++i) {
        isSame = widgetOf(m_tree->topLevelItem(i)) == widgets.at(widgets.size() - 1 - i);
    }
    if (!isSame) {
        rebuild();
    }
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem *row = m_tree->topLevelItem(i);
        if (const PlacedWidget *widget = widgetOf(row)) {
            updateRow(row, *widget);
        }
    }
    updateSelection();
}

void InstancesPane::rebuild()
{
    const bool wasUpdating = std::exchange(m_isUpdating, true);
    m_tree->clear();
    const QVector<PlacedWidget *> &widgets = m_document->widgets();
    for (int i = widgets.size() - 1; i >= 0; --i) {
        auto *row = new QTreeWidgetItem(m_tree);
        row->setData(NameColumn, idRole, widgets.at(i)->id());
        row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsEditable
                      | Qt::ItemNeverHasChildren);
    }
    m_isUpdating = wasUpdating;
}

void InstancesPane::updateRow(QTreeWidgetItem *row, const PlacedWidget &widget)
{
    const bool wasUpdating = std::exchange(m_isUpdating, true);
    const bool hasProblem = !widget.problem().rule.isEmpty();
    row->setText(NameColumn, widget.name());
    row->setIcon(NameColumn, benchIcon(hasProblem ? "error" : "widgets"));
    row->setForeground(NameColumn,
                       hasProblem ? QBrush(BenchTheme::errorColor()) : palette().brush(QPalette::Text));
    row->setToolTip(NameColumn, QStringLiteral("%1 %2\n%3")
                                    .arg(widget.widgetId(), widget.version(),
                                         hasProblem ? widget.problem().message : tr("F2 renames")));
    const auto setState = [row](int column, const char *icon, const QString &text) {
        row->setIcon(column, benchIcon(icon));
        row->setToolTip(column, text);
        row->setData(column, Qt::AccessibleTextRole, text);
    };
    setState(RunningColumn, widget.isRunning() ? "play" : "stop",
             widget.isRunning() ? tr("Running; click to stop") : tr("Stopped; click to start"));
    setState(VisibleColumn, widget.isVisible() ? "eye" : "eyeOff",
             widget.isVisible() ? tr("Shown; click to hide") : tr("Hidden; click to show"));
    setState(LockedColumn, widget.isLocked() ? "lock" : "unlock",
             widget.isLocked() ? tr("Locked; click to unlock") : tr("Not locked; click to lock"));
    m_isUpdating = wasUpdating;
}

void InstancesPane::updateSelection()
{
    for (QToolButton *button : qAsConst(m_commands)) {
        button->setEnabled(current() != nullptr);
    }
    const bool wasUpdating = std::exchange(m_isUpdating, true);
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem *row = m_tree->topLevelItem(i);
        PlacedWidget *widget = widgetOf(row);
        row->setSelected(widget && m_document->selection().contains(widget));
        if (widget && widget == m_document->current()) {
            m_tree->setCurrentItem(row, NameColumn, QItemSelectionModel::NoUpdate);
        }
    }
    m_isUpdating = wasUpdating;
}

void InstancesPane::onSelectionChanged()
{
    if (m_isUpdating) {
        return;
    }
    QVector<PlacedWidget *> selection;
    const QList<QTreeWidgetItem *> rows = m_tree->selectedItems();
    for (QTreeWidgetItem *row : rows) {
        if (PlacedWidget *widget = widgetOf(row)) {
            selection.append(widget);
        }
    }
    // The current row is the one whose fields are shown.
    PlacedWidget *last = widgetOf(m_tree->currentItem());
    if (selection.removeOne(last)) {
        selection.append(last);
    }
    m_document->setSelection(selection);
}

void InstancesPane::onClicked(QTreeWidgetItem *row, int column)
{
    PlacedWidget *widget = widgetOf(row);
    if (!widget) {
        return;
    }
    if (column == RunningColumn) {
        m_document->setRunning(widget, !widget->isRunning());
    } else if (column == VisibleColumn) {
        m_document->setVisible(widget, !widget->isVisible());
    } else if (column == LockedColumn) {
        m_document->setLocked(widget, !widget->isLocked());
    }
}

void InstancesPane::onEdited(QTreeWidgetItem *row, int column)
{
    PlacedWidget *widget = widgetOf(row);
    if (m_isUpdating || column != NameColumn || !widget || row->text(NameColumn) == widget->name()) {
        return;
    }
    QString problem;
    if (!m_document->rename(widget, row->text(NameColumn).trimmed(), problem)) {
        Q_EMIT failed(problem);
    }
    m_updateTimer.start();
}

void InstancesPane::moveRow(int from, int to)
{
    const int last = m_document->widgets().size() - 1;
    PlacedWidget *widget = widgetOf(m_tree->topLevelItem(from));
    if (widget && from != to && to >= 0 && to <= last) {
        m_document->setStackingIndex(widget, last - to);
    }
}

void InstancesPane::moveCurrent(int rows)
{
    const int from = m_document->widgets().size() - 1 - m_document->widgets().indexOf(current());
    moveRow(from, from + rows);
}

} // namespace DEV
} // namespace KORA
