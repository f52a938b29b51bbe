// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldmanager.h>

#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeWidget>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/fields/fieldsources.h>
#include <kora/dev/fields/numberbox.h>

#include <algorithm>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

// In a name of an object: "title", "titleItIt", "titleFamily".
QString objectNameOf(const FieldRow &row, const QString &fieldId)
{
    if (row.kind == FieldRow::Language) {
        return fieldId + QString(row.language).remove(QLatin1Char('-'));
    }
    return row.kind == FieldRow::PartOfFont ? fieldId + fontPartName(row.part) : fieldId;
}

QString shortText(FieldType type, const QVariant &value)
{
    return value.isValid() ? WidgetLibraryPluginUtils::fieldValueToString(type, value)
                           : FieldManager::tr("no value");
}

} // namespace

FieldManager::FieldManager(BenchDocument *document, PlacedWidget *widget, const FieldMetaInformation &field,
                           QTreeWidgetItem *group)
    : m_document(document)
    , m_widget(widget)
    , m_field(field)
    , m_label(field.display().get(document->language(), true))
{
    if (m_label.isEmpty()) {
        m_label = field.id();
    }
    addRow(group, Row::Value, m_label);
    addSubRows();
    row()->setToolTip(NameColumn, toolTip());
    refresh();
}

FieldManager::~FieldManager() = default;

// Rows --------------------------------------------------------------------------------------------------------

void FieldManager::addRow(QTreeWidgetItem *parent, Row::Kind kind, const QString &label)
{
    auto row = std::make_unique<Row>();
    row->kind = kind;
    row->label = label;
    row->item = new QTreeWidgetItem(parent, {label});
    setRowHeight(row->item, FieldCell::rowHeight());
    m_rows.push_back(std::move(row));
}

void FieldManager::addSubRows()
{
    if (m_field.isMultiLanguageText()) {
        const QStringList languages = m_document->languages();
        for (const QString &language : languages) {
            if (language != m_document->language()) {
                addRow(row(), Row::Language, language);
                m_rows.back()->language = language;
            }
        }
    }
    if (fontId().isEmpty()) {
        return;
    }
    for (const FontPart part : fontParts) {
        addRow(row(), Row::PartOfFont, fontPartLabel(part, m_field, m_document->language()));
        m_rows.back()->part = part;
    }
}

/// The id of the font that the rows for parts of a font edit; empty if the field has none.
QString FieldManager::fontId() const
{
    if (m_field.isMultiLanguageText()) {
        return m_field.id() + QStringLiteral(".font");
    }
    return m_field.type() == FieldTypeFont ? m_field.id() : QString();
}

QVector<QTreeWidgetItem *> FieldManager::rows() const
{
    QVector<QTreeWidgetItem *> items;
    for (const auto &row : m_rows) {
        items.append(row->item);
    }
    return items;
}

FieldManager::Row *FieldManager::rowOf(const QTreeWidgetItem *item) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [item](const std::unique_ptr<Row> &row) { return row->item == item; });
    return found == m_rows.end() ? nullptr : found->get();
}

bool FieldManager::owns(const QTreeWidgetItem *item) const
{
    return rowOf(item) != nullptr;
}

void FieldManager::setVisible(bool isVisible)
{
    m_isVisible = isVisible;
    updateRowVisibility();
}

void FieldManager::setFilteredOut(bool isFilteredOut)
{
    m_isFilteredOut = isFilteredOut;
    updateRowVisibility();
}

void FieldManager::updateRowVisibility()
{
    const bool isHidden = !m_isVisible || m_isFilteredOut;
    for (const auto &row : m_rows) {
        if (row->item->isHidden() != isHidden) {
            row->item->setHidden(isHidden);
        }
    }
}

void FieldManager::finishEntries()
{
    for (const auto &row : m_rows) {
        if (row->editor) {
            row->editor->leave();
        }
    }
}

void FieldManager::detach()
{
    m_widget = nullptr;
    for (const auto &row : m_rows) {
        if (row->editor) { // lives on until the event loop is back
            row->editor->disconnect(this);
            row->cell->disconnect(this);
        }
    }
    if (!m_rows.empty()) {
        delete row(); // and those below it
        m_rows.clear();
    }
}

QString FieldManager::toolTip() const
{
    const QString description = m_field.description().get(m_document->language(), true);
    return description.isEmpty() ? id() : id() + QLatin1Char('\n') + description;
}

// Editors -----------------------------------------------------------------------------------------------------

FieldEditorContext FieldManager::contextOf(const Row &row) const
{
    FieldEditorContext context;
    if (row.kind == Row::PartOfFont) {
        context = fontPartContext(row.part);
    } else {
        context.type = m_field.type();
        context.minimum = m_field.minimum();
        context.maximum = m_field.maximum();
        const auto options = m_field.options();
        for (const OptionType &option : options) {
            const QString text = option.text.get(m_document->language(), true);
            context.choices.append({option.index, tr("%1 - %2").arg(QString::number(option.index), text)});
        }
    }
    context.objectName = objectNameOf(row, id());
    context.label = row.kind == Row::Value ? m_label : tr("%1, %2").arg(m_label, row.label);
    if (row.kind == Row::Value && m_field.isMultiLanguageText()) {
        context.language = m_document->language();
    }
    context.field = m_field;
    context.providers = m_document->providers();
    return context;
}

FieldEditor *FieldManager::editorIfMade(const QTreeWidgetItem *item) const
{
    const Row *row = rowOf(item);
    return row ? row->editor : nullptr;
}

FieldEditor *FieldManager::editor(const QTreeWidgetItem *item)
{
    Row *row = rowOf(item);
    if (row && !row->editor) {
        makeEditor(*row);
    }
    return row ? row->editor : nullptr;
}

void FieldManager::makeEditor(Row &row)
{
    const FieldEditorContext context = contextOf(row);
    row.editor = makeFieldEditor(context);
    row.cell = new FieldCell(row.editor, context.objectName, context.label);
    connectEditor(row);
    row.item->treeWidget()->setItemWidget(row.item, ValueColumn, row.cell);
    refreshRow(row);
}

void FieldManager::connectEditor(Row &row)
{
    Row *target = &row; // as long as the editor: both go with the item
    FieldEditor *editor = row.editor;
    connect(editor, &FieldEditor::edited, this,
            [this, target](const QVariant &value, bool isFinished) { onEdited(*target, value, isFinished); });
    connect(editor, &FieldEditor::rejected, this, [this, target](const QString &reason) {
        target->rejection = reason;
        target->clamp.clear();
        showNote(*target);
    });
    connect(editor, &FieldEditor::noted, this, [this, target](const QString &text) {
        target->remark = text;
        showNote(*target);
    });
    connect(editor, &FieldEditor::restoreRequested, this, [this, target] { restore(*target); });
    connect(editor, &FieldEditor::focusEntered, this, [this, target] { emit focusEntered(target->item); });
    connect(editor, &FieldEditor::bindingChosen, this, &FieldManager::bind);
    connect(row.cell, &FieldCell::revertRequested, this, &FieldManager::reset);
    connect(row.cell, &FieldCell::linkRequested, this, [this, target] {
        QToolButton *button = target->cell->linkButton();
        auto *menu = new QMenu(button);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        fillBindMenu(menu);
        menu->popup(button->mapToGlobal(QPoint(0, button->height())));
    });
    connect(row.cell, &FieldCell::heightChanged, this, [this, target] {
        setRowHeight(target->item, std::max(FieldCell::rowHeight(), target->cell->sizeHint().height()));
        emit heightChanged();
    });
}

QString FieldManager::note(const QTreeWidgetItem *item) const
{
    const Row *row = rowOf(item);
    return row && row->cell ? row->cell->note() : QString();
}

void FieldManager::showNote(Row &row)
{
    if (!row.cell) {
        return;
    }
    if (!row.rejection.isEmpty()) {
        row.cell->setNote(FieldCell::Note::Error, row.rejection);
    } else if (!row.clamp.isEmpty()) {
        row.cell->setNote(FieldCell::Note::Warning, row.clamp);
    } else if (!row.remark.isEmpty()) {
        const bool isWarning = m_field.type() == FieldTypeImage;
        row.cell->setNote(isWarning ? FieldCell::Note::Warning : FieldCell::Note::Info, row.remark);
    } else {
        const bool isTold = row.kind == Row::Value && hasLinkButton() && !binding().isEmpty();
        row.cell->setNote(FieldCell::Note::Info, isTold ? tr("follows %1").arg(binding()) : QString());
    }
}

/// A tag or trend field has its link for an editor.
bool FieldManager::hasLinkButton() const
{
    return canFollowSource(m_field) && m_field.type() != FieldTypeTag && m_field.type() != FieldTypeTrend;
}

// Values ------------------------------------------------------------------------------------------------------

QVariant FieldManager::value() const
{
    return m_widget ? m_widget->fieldValue(id()) : QVariant();
}

QVariant FieldManager::read(const Row &row) const
{
    if (!m_widget) {
        return {};
    }
    switch (row.kind) {
    case Row::Language:
        return m_widget->fieldText(id(), row.language);
    case Row::PartOfFont:
        return fontPart(m_widget->fieldValue(fontId()).value<QFont>(), row.part);
    default:
        return m_widget->fieldValue(id());
    }
}

QVariant FieldManager::write(const Row &row, const QVariant &value, int gesture)
{
    switch (row.kind) {
    case Row::Language:
        m_document->setFieldText(m_widget, id(), row.language, value, gesture);
        return value;
    case Row::PartOfFont: {
        auto font = m_widget->fieldValue(fontId()).value<QFont>();
        setFontPart(font, row.part, value);
        const QVariant written = fontPart(font, row.part);
        m_document->setFieldValue(m_widget, fontId(), font, gesture);
        return written;
    }
    default:
        return m_document->setFieldValue(m_widget, id(), value, gesture);
    }
}

// The widget's code runs in a write, and may take this widget away.
void FieldManager::onEdited(Row &row, const QVariant &value, bool isFinished)
{
    if (!m_widget) {
        return;
    }
    if (row.gesture == 0) {
        row.gesture = m_document->newGesture();
        row.before = read(row);
    }
    const QVariant written = write(row, value, row.gesture);
    if (!m_widget) {
        return;
    }
    const bool isClamped = NumberBox::numberText(written) != NumberBox::numberText(value)
                           && (m_field.type() == FieldTypeInteger || m_field.type() == FieldTypeDouble
                               || row.kind == Row::PartOfFont);
    row.clamp = isClamped && !isFinished ? tr("becomes %1").arg(NumberBox::numberText(written)) : QString();
    if (isFinished) {
        row.gesture = 0;
    }
    showNote(row);
    refresh();
    emit edited();
}

void FieldManager::restore(Row &row)
{
    row.clamp.clear();
    if (!m_widget) {
        return;
    }
    if (row.gesture != 0) {
        const int index = m_document->undoStack()->index();
        m_document->cancelGesture(row.gesture);
        if (m_widget && m_document->undoStack()->index() == index) { // another step came after it
            write(row, row.before, row.gesture);
        }
        row.gesture = 0;
        emit edited();
    }
    if (m_widget) {
        showNote(row);
        refresh();
    }
}

void FieldManager::refresh()
{
    for (const auto &row : m_rows) {
        refreshRow(*row);
    }
}

void FieldManager::refreshRow(Row &row)
{
    refreshMarks(row);
    if (!row.editor || row.editor->isEditing()) {
        return; // what is being entered is not written over
    }
    row.clamp.clear();
    row.editor->setValue(read(row));
    row.editor->setBinding(binding());
    row.editor->setReadOnly(isLocked() || !m_widget || !m_widget->widget());
}

void FieldManager::refreshMarks(Row &row)
{
    const bool isMainRow = row.kind == Row::Value;
    const bool isMarked = isMainRow && isModified();
    if (row.item->font(NameColumn).bold() != isMarked) {
        QFont font = row.item->font(NameColumn);
        font.setBold(isMarked);
        row.item->setFont(NameColumn, font);
    }
    if (!row.cell || !isMainRow || !m_widget) {
        return;
    }
    const QString standard = shortText(m_field.type(), m_widget->defaultValue(id()));
    row.cell->setRevertable(isMarked, tr("Reset to the default: %1").arg(standard));
    const bool hasLink = hasLinkButton();
    if (isLocked()) {
        row.cell->setLink(FieldCell::Link::Locked, tr("Read-only: only the widget writes it"));
    } else if (!binding().isEmpty() && hasLink) {
        row.cell->setLink(FieldCell::Link::Bound, tr("Follows %1; edits write the tag").arg(binding()));
    } else {
        row.cell->setLink(hasLink ? FieldCell::Link::Free : FieldCell::Link::None, tr("Follow a tag"));
    }
    showNote(row);
}

bool FieldManager::isModified() const
{
    if (!m_widget) {
        return false;
    }
    const bool hasOwnFont = m_field.isMultiLanguageText();
    return m_widget->isModified(id()) || !binding().isEmpty()
           || (hasOwnFont && m_widget->isModified(fontId()));
}

QString FieldManager::binding() const
{
    return m_widget ? m_widget->binding(id()) : QString();
}

void FieldManager::reset()
{
    if (!m_widget) {
        return;
    }
    QStringList ids{id()};
    if (m_field.isMultiLanguageText()) {
        ids.append(fontId());
    }
    m_document->resetFields(m_widget, ids);
    refresh();
    emit edited();
}

void FieldManager::sendValue(const QVariant &value)
{
    if (!m_widget) {
        return;
    }
    m_document->setFieldValue(m_widget, id(), value);
    refresh();
    emit edited();
}

void FieldManager::bind(const QString &source)
{
    if (!m_widget) {
        return;
    }
    m_document->setBinding(m_widget, id(), source);
    refresh();
    emit edited();
}

void FieldManager::fillBindMenu(QMenu *menu)
{
    QAction *none = menu->addAction(tr("Follow nothing"), this, [this] { bind(QString()); });
    none->setEnabled(!binding().isEmpty());
    menu->addSeparator();
    const QVector<FieldSource> sources = fieldSources(m_document->providers(), m_field);
    for (const FieldSource &source : sources) {
        const QString text = source.problem.isEmpty() ? tr("%1 (%2)").arg(source.name, source.kind)
                                                      : tr("%1 - %2").arg(source.name, source.problem);
        QAction *action = menu->addAction(text, this, [this, name = source.name] { bind(name); });
        action->setEnabled(source.problem.isEmpty());
        action->setCheckable(true);
        action->setChecked(source.name == binding());
    }
    if (sources.isEmpty()) {
        menu->addAction(m_field.type() == FieldTypeTrend ? tr("There are no trends")
                                                         : tr("There are no tags"))
            ->setEnabled(false);
    }
}

void FieldManager::unlock()
{
    m_isUnlocked = true;
    refresh();
}

} // namespace DEV
} // namespace KORA
