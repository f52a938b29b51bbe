// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldspane.h>

#include <QtCore/QScopedValueRollback>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAction>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/fields/elidedlabel.h>
#include <kora/dev/fields/fieldrow_p.h>
#include <kora/dev/fields/geometrystrip.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/theme/icons.h>
#include <kora/loader/plugindata.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

// Values that change by themselves show as soon as the event loop is back, but no more often than this in the long
// run: a widget may write thousands of times a second.
const int updateMs = 50;
const int mostPromptUpdates = 10;

const int groupKeyRole = Qt::UserRole;

} // namespace

FieldsPane::FieldsPane(BenchDocument *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_title(new ElidedLabel)
    , m_geometry(new GeometryStrip(document))
    , m_details(new FieldDetails)
{
    setObjectName(QStringLiteral("fieldsPane"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 4);
    layout->setSpacing(4);
    m_title->setObjectName(QStringLiteral("fieldsTitle"));
    layout->addWidget(m_title);
    layout->addWidget(m_geometry);
    layout->addWidget(makeBar());
    layout->addWidget(makeTree(), 1);
    layout->addWidget(makeHiddenFields());
    layout->addWidget(m_details);

    m_valuesTimer.setSingleShot(true);
    m_rowsTimer.setSingleShot(true);
    connect(&m_valuesTimer, &QTimer::timeout, this, &FieldsPane::flushValues);
    connect(&m_rowsTimer, &QTimer::timeout, this, &FieldsPane::makeVisibleEditors);
    connect(document, &BenchDocument::selectionChanged, this, [this] {
        if (m_document->current() != m_widget || !m_widget) {
            rebuild();
        }
    });
    connect(document, &BenchDocument::languageChanged, this, &FieldsPane::rebuild);
    connect(document, &BenchDocument::loaded, this, &FieldsPane::rebuild);
    connect(document, &BenchDocument::widgetAboutToBeRemoved, this, [this](PlacedWidget *widget) {
        if (widget == m_widget) {
            clearRows();
        }
    });
    lightenOutlines();
    rebuild();
}

FieldsPane::~FieldsPane()
{
    clearRows();
}

QString FieldsPane::pluginId() const
{
    return m_document->plugin() ? m_document->plugin()->metaInformation()->id() : QString();
}

// Rows --------------------------------------------------------------------------------------------------------

void FieldsPane::rebuild()
{
    if (m_isRebuilding) {
        return;
    }
    const QScopedValueRollback<bool> guard(m_isRebuilding, true);
    for (FieldManager *manager : qAsConst(m_managers)) {
        manager->finishEntries();
    }
    clearRows();
    PlacedWidget *widget = m_document->current();
    m_widget = widget;
    m_geometry->setWidget(widget);
    m_writers.clear();
    if (widget) {
        watchWidget(widget);
        m_tree->setUpdatesEnabled(false);
        addFields(widget);
        colorGroups();
        m_tree->setUpdatesEnabled(true);
    }
    showState();
    emit treeRebuilt();
    applyFilter();
    scheduleVisibleRows();
}

void FieldsPane::clearRows()
{
    if (m_widget) {
        m_widget->disconnect(this);
    }
    m_widget = nullptr;
    m_changedFields.clear();
    // Without a view the rows go at once; the managers may stand in a call that has led here.
    for (QTreeWidgetItem *group : qAsConst(m_groups)) {
        m_tree->takeTopLevelItem(m_tree->indexOfTopLevelItem(group));
    }
    for (FieldManager *manager : qAsConst(m_managers)) {
        manager->disconnect(this);
        manager->detach();
        manager->deleteLater();
    }
    qDeleteAll(m_groups);
    m_groups.clear();
    m_managers.clear();
    m_managerOfRow.clear();
    m_details->clear();
}

void FieldsPane::addFields(PlacedWidget *widget)
{
    const auto fields = widget->info().fields();
    for (const FieldMetaInformation &field : fields) {
        if (field.isPrivate() && !m_privateFieldsAreShown) {
            continue;
        }
        auto *manager = new FieldManager(m_document, widget, field, groupRow(field));
        connectManager(manager);
        m_managers.insert(field.id(), manager);
        const auto rows = manager->rows();
        for (const QTreeWidgetItem *row : rows) {
            m_managerOfRow.insert(row, manager);
        }
    }
    for (QTreeWidgetItem *group : qAsConst(m_groups)) {
        group->setExpanded(!m_foldedGroups.contains(groupMemoryKey(group)));
    }
}

QTreeWidgetItem *FieldsPane::groupRow(const FieldMetaInformation &field)
{
    const TranslationStringType name = field.group();
    QString key = name.get(name.defaultLanguage, false);
    QString label = name.get(m_document->language(), true);
    if (key.isEmpty()) {
        key = QStringLiteral("General");
        label = tr("General");
    }
    QTreeWidgetItem *&group = m_groups[key];
    if (!group) {
        group = new QTreeWidgetItem({label.isEmpty() ? key : label});
        group->setData(NameColumn, groupKeyRole, key);
        m_tree->insertTopLevelItem(static_cast<int>(std::distance(m_groups.begin(), m_groups.find(key))),
                                   group);
        group->setFirstColumnSpanned(true);
        QFont font = m_tree->font();
        font.setBold(true);
        group->setFont(NameColumn, font);
        setRowHeight(group, FieldCell::rowHeight() - 4);
    }
    return group;
}

QString FieldsPane::groupMemoryKey(const QTreeWidgetItem *group) const
{
    return m_widget->widgetId() + QLatin1Char('/') + group->data(NameColumn, groupKeyRole).toString();
}

void FieldsPane::connectManager(FieldManager *manager)
{
    connect(manager, &FieldManager::edited, this, [this] {
        emit fieldEdited();
        showDetails();
    });
    connect(manager, &FieldManager::focusEntered, this, [this](QTreeWidgetItem *row) {
        m_tree->setCurrentItem(row);
        m_tree->scrollToItem(row);
    });
    connect(manager, &FieldManager::heightChanged, this,
            [this] { QMetaObject::invokeMethod(m_tree, &QTreeWidget::doItemsLayout, Qt::QueuedConnection); });
}

void FieldsPane::watchWidget(PlacedWidget *widget)
{
    connect(widget, &PlacedWidget::fieldValueChanged, this,
            [this](const QString &fieldId, const QVariant &, PlacedWidget::Origin origin) {
                onValueChanged(fieldId, origin);
            });
    connect(widget, &PlacedWidget::bindingChanged, this,
            [this](const QString &fieldId) { onValueChanged(fieldId, PlacedWidget::Tag); });
    connect(widget, &PlacedWidget::instanceChanged, this, [this] {
        for (const FieldManager *manager : qAsConst(m_managers)) {
            m_changedFields.insert(manager->id());
        }
        showState();
        m_valuesTimer.start(pauseBeforeUpdate());
    });
    connect(widget, &PlacedWidget::changed, this, &FieldsPane::showState);
}

void FieldsPane::showState()
{
    QString empty;
    if (!m_widget) {
        m_title->showText(QString());
        empty = tr("Select a widget on the page to see its fields.");
    } else {
        const QString display = m_widget->info().display().get(m_document->language(), true);
        m_title->showText(tr("%1: %2 %3")
                              .arg(m_widget->name(), display.isEmpty() ? m_widget->widgetId() : display,
                                   m_widget->version()));
        if (!m_widget->widget()) {
            empty = tr("There is no instance: %1.").arg(m_widget->problem().message);
        } else if (m_managers.isEmpty()) {
            empty = tr("This widget declares no fields.");
        }
    }
    m_emptyText->setText(empty);
    m_title->setVisible(m_widget);
    m_stack->setCurrentIndex(empty.isEmpty() ? 0 : 1);
}

void FieldsPane::setPrivateFieldsShown(bool isShown)
{
    if (isShown != m_privateFieldsAreShown) {
        m_privateFieldsAreShown = isShown;
        rebuild();
    }
}

void FieldsPane::resetAll()
{
    if (!m_widget) {
        return;
    }
    QStringList modified;
    const QStringList ids = fieldIds(m_widget->info());
    for (const QString &id : ids) {
        if (m_widget->isModified(id) || !m_widget->binding(id).isEmpty()) {
            modified.append(id);
        }
    }
    m_document->resetFields(m_widget, modified);
    flushValues();
    emit fieldEdited();
}

// Values ------------------------------------------------------------------------------------------------------

QVariant FieldsPane::fieldValue(const QString &fieldId) const
{
    const PlacedWidget *widget = m_document->current();
    return widget ? widget->fieldValue(fieldId) : QVariant();
}

void FieldsPane::setFieldValue(const QString &fieldId, const QVariant &value)
{
    if (PlacedWidget *widget = m_document->current()) {
        m_document->setFieldValue(widget, fieldId, value);
        flushValues();
    }
}

void FieldsPane::onValueChanged(const QString &fieldId, PlacedWidget::Origin origin)
{
    const QString writers[] = {tr("set by the bench"), tr("set by the widget"), tr("set by the tag")};
    m_writers.insert(fieldId, {writers[origin], QTime::currentTime()});
    m_changedFields.insert(fieldId.section(QLatin1Char('.'), 0, 0));
    if (!m_valuesTimer.isActive()) {
        m_valuesTimer.start(pauseBeforeUpdate());
    }
}

int FieldsPane::pauseBeforeUpdate()
{
    const qint64 refilled = m_sinceRefill.isValid() ? m_sinceRefill.elapsed() / updateMs : mostPromptUpdates;
    if (refilled > 0) {
        m_promptUpdates = static_cast<int>(std::min<qint64>(mostPromptUpdates, m_promptUpdates + refilled));
        m_sinceRefill.start();
    }
    if (m_promptUpdates == 0) {
        return updateMs;
    }
    --m_promptUpdates;
    return 0;
}

void FieldsPane::flushValues()
{
    m_valuesTimer.stop();
    const QSet<QString> changed = m_changedFields;
    m_changedFields.clear();
    for (const QString &id : changed) {
        if (FieldManager *manager = m_managers.value(id)) {
            manager->refresh();
        }
    }
    if (m_modifiedOnly->isChecked()) {
        for (const QString &id : changed) { // what has become modified comes in; what is being edited stays
            FieldManager *manager = m_managers.value(id);
            if (manager && matches(*manager)) {
                manager->setFilteredOut(false);
            }
        }
    }
    emit valuesChanged();
    showDetails();
}

// Editors -----------------------------------------------------------------------------------------------------

void FieldsPane::scheduleVisibleRows()
{
    if (!m_rowsTimer.isActive()) {
        m_rowsTimer.start(0);
    }
}

/// Makes the editors of the rows in sight and of a few more, so that the tab key always finds the next one.
void FieldsPane::makeVisibleEditors()
{
    const int pageEnd = m_tree->viewport()->height() + 4 * FieldCell::rowHeight();
    bool isNew = false;
    for (QTreeWidgetItem *row = m_tree->itemAt(0, 1); row; row = m_tree->itemBelow(row)) {
        if (m_tree->visualItemRect(row).top() > pageEnd) {
            break;
        }
        FieldManager *manager = managerOf(row);
        if (manager && !manager->editorIfMade(row)) {
            manager->editor(row);
            isNew = true;
        }
    }
    if (isNew) {
        lightenOutlines();
        chainTabOrder();
    }
}

void FieldsPane::chainTabOrder()
{
    QWidget *previous = m_tree;
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
        FieldManager *manager = managerOf(*it);
        const FieldEditor *editor = manager ? manager->editorIfMade(*it) : nullptr;
        if (!editor) {
            continue;
        }
        for (QWidget *control : editor->controls()) {
            setTabOrder(previous, control);
            previous = control;
        }
    }
    setTabOrder(previous, m_hiddenToggle);
}

FieldManager *FieldsPane::managerOf(const QTreeWidgetItem *item) const
{
    return m_managerOfRow.value(item);
}

void FieldsPane::focusEditor()
{
    QTreeWidgetItem *row = m_tree->currentItem();
    FieldManager *manager = managerOf(row);
    if (!manager) {
        return;
    }
    const FieldEditor *editor = manager->editor(row);
    if (!editor->controls().isEmpty()) {
        editor->controls().first()->setFocus(Qt::TabFocusReason);
    }
}

bool FieldsPane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_tree->viewport() && event->type() == QEvent::Resize) {
        scheduleVisibleRows();
    }
    if (watched == m_tree && event->type() == QEvent::KeyPress && managerOf(m_tree->currentItem())) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2) {
            focusEditor();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FieldsPane::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        lightenOutlines();
        colorGroups();
    }
}

// Filter ------------------------------------------------------------------------------------------------------

bool FieldsPane::hasFilter() const
{
    return m_modifiedOnly->isChecked() || !m_filter->text().trimmed().isEmpty();
}

bool FieldsPane::matches(const FieldManager &manager) const
{
    if (m_modifiedOnly->isChecked() && !manager.isModified()) {
        return false;
    }
    const QString text = m_filter->text().trimmed();
    const QString group = manager.row()->parent()->text(NameColumn);
    for (const QString &place : {manager.id(), manager.label(), group}) {
        if (place.contains(text, Qt::CaseInsensitive)) {
            return true;
        }
    }
    return text.isEmpty();
}

void FieldsPane::applyFilter()
{
    m_isFiltering = hasFilter();
    for (FieldManager *manager : qAsConst(m_managers)) {
        manager->setFilteredOut(m_isFiltering && !matches(*manager));
    }
    updateGroupRows(m_groups);
    const QScopedValueRollback<bool> guard(m_isRebuilding, true); // no folding by hand
    for (QTreeWidgetItem *group : qAsConst(m_groups)) {
        group->setExpanded(m_isFiltering || !m_foldedGroups.contains(groupMemoryKey(group)));
    }
    scheduleVisibleRows();
}

/// Remembers which groups are folded, but not that a filter unfolds them.
void FieldsPane::foldGroups()
{
    scheduleVisibleRows();
    if (m_isRebuilding || m_isFiltering || !m_widget) {
        return;
    }
    for (const QTreeWidgetItem *group : qAsConst(m_groups)) {
        if (group->isExpanded()) {
            m_foldedGroups.remove(groupMemoryKey(group));
        } else {
            m_foldedGroups.insert(groupMemoryKey(group));
        }
    }
}

// What is hidden, and details ---------------------------------------------------------------------------------

void FieldsPane::onRequirementsEvaluated()
{
    showHiddenFields();
    showDetails();
    scheduleVisibleRows();
}

QStringList FieldsPane::requirementsReasons() const
{
    const QStringList ids = m_widget ? m_widget->info().fields().keys() : QStringList();
    QStringList reasons;
    for (const FieldManager *manager : m_managers) {
        const RequirementsOutcome &outcome = manager->requirementsOutcome();
        if (!manager->isVisible() || outcome.isInvalid) {
            reasons.append(tr("%1: %2").arg(manager->label(), requirementsReason(outcome, ids)));
        }
    }
    return reasons;
}

void FieldsPane::showHiddenFields()
{
    int hidden = 0;
    int invalid = 0;
    for (const FieldManager *manager : qAsConst(m_managers)) {
        hidden += manager->isVisible() ? 0 : 1;
        invalid += manager->requirementsOutcome().isInvalid ? 1 : 0;
    }
    QString text = tr("%1 hidden by requirements").arg(hidden);
    if (invalid > 0) {
        text += tr(", %1 invalid").arg(invalid);
    }
    m_hiddenToggle->setText(text);
    m_hiddenToggle->setAccessibleName(text);
    m_hiddenToggle->setVisible(hidden + invalid > 0);
    m_hiddenList->setVisible(m_hiddenToggle->isChecked() && hidden + invalid > 0);
    if (!m_hiddenList->isVisibleTo(this)) {
        return;
    }
    const QStringList reasons = requirementsReasons();
    QStringList shown;
    for (int row = 0; row < m_hiddenList->count(); ++row) {
        shown.append(m_hiddenList->item(row)->text());
    }
    if (shown != reasons) {
        m_hiddenList->clear();
        m_hiddenList->addItems(reasons);
    }
}

void FieldsPane::showDetails()
{
    const FieldManager *manager = managerOf(m_tree->currentItem());
    if (!manager || !m_widget) {
        m_details->clear();
        return;
    }
    m_details->showField(manager, m_writers.value(manager->id()), m_widget->info().fields().keys());
}

void FieldsPane::openMenu(const QPoint &position)
{
    QTreeWidgetItem *row = m_tree->itemAt(position);
    FieldManager *manager = managerOf(row ? row : m_tree->currentItem());
    if (!manager) {
        return;
    }
    m_tree->setCurrentItem(row ? row : m_tree->currentItem());
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("fieldMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillFieldMenu(menu, manager);
    menu->popup(m_tree->viewport()->mapToGlobal(position));
}

} // namespace DEV
} // namespace KORA
