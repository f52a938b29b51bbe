// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/providerdelegate_p.h>

#include <kora/dev/providers/providertable.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QCompleter>
#include <QtWidgets/QFileSystemModel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QStyle>

namespace KORA {
namespace DEV {

namespace {

const char isFilled[] = "koraIsFilled";

QWidget *choiceEditor(QWidget *parent, const QModelIndex &index)
{
    auto *combo = new QComboBox(parent);
    combo->addItems(index.data(ProviderTable::ChoicesRole).toStringList());
    return combo;
}

QWidget *numberEditor(QWidget *parent, const QModelIndex &index)
{
    auto *spin = new QSpinBox(parent);
    spin->setLocale(QLocale::c());
    spin->setRange(index.data(ProviderTable::MinimumRole).toInt(),
                   index.data(ProviderTable::MaximumRole).toInt());
    spin->setSuffix(index.data(ProviderTable::SuffixRole).toString());
    spin->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    return spin;
}

QWidget *fileEditor(QWidget *parent)
{
    auto *line = new QLineEdit(parent);
    auto *completer = new QCompleter(line);
    auto *files = new QFileSystemModel(completer);
    files->setRootPath(QString());
    completer->setModel(files);
    line->setCompleter(completer);
    return line;
}

} // namespace

QWidget *ProviderDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                        const QModelIndex &index) const
{
    QWidget *editor = nullptr;
    switch (index.data(ProviderTable::EditorRole).toInt()) {
    case ProviderColumn::ChoiceEditor:
        editor = choiceEditor(parent, index);
        connect(static_cast<QComboBox *>(editor), QOverload<int>::of(&QComboBox::activated), this,
                [this, editor] { const_cast<ProviderDelegate *>(this)->commit(editor); });
        break;
    case ProviderColumn::WholeNumberEditor:
        editor = numberEditor(parent, index);
        break;
    case ProviderColumn::FileEditor:
        editor = fileEditor(parent);
        break;
    case ProviderColumn::TextEditor:
    case ProviderColumn::ValueEditor:
        editor = new QLineEdit(parent);
        break;
    default:
        return nullptr;
    }
    const QString heading = index.model()->headerData(index.column(), Qt::Horizontal).toString();
    const QString row = index.sibling(index.row(), 0).data().toString();
    editor->setObjectName(QStringLiteral("cellEditor"));
    editor->setAccessibleName(tr("%1 of %2").arg(heading, row));
    editor->setToolTip(index.model()->headerData(index.column(), Qt::Horizontal, Qt::ToolTipRole).toString());
    editor->setAutoFillBackground(true);
    return editor;
}

void ProviderDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (editor->property(isFilled).toBool()) {
        return;
    }
    editor->setProperty(isFilled, true);
    const QVariant value = index.data(Qt::EditRole);
    if (auto *combo = qobject_cast<QComboBox *>(editor)) {
        combo->setCurrentIndex(value.toInt());
    } else if (auto *spin = qobject_cast<QSpinBox *>(editor)) {
        spin->setValue(value.toInt());
    } else if (auto *line = qobject_cast<QLineEdit *>(editor)) {
        line->setText(value.toString());
    }
}

void ProviderDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                    const QModelIndex &index) const
{
    if (auto *combo = qobject_cast<QComboBox *>(editor)) {
        model->setData(index, combo->currentIndex());
    } else if (auto *spin = qobject_cast<QSpinBox *>(editor)) {
        spin->interpretText();
        model->setData(index, spin->value());
    } else if (auto *line = qobject_cast<QLineEdit *>(editor)) {
        if (line->isModified()) { // a running value has gone on; leaving the cell is no write
            model->setData(index, line->text());
        }
    }
}

void ProviderDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.column() == 0 && !index.data(ProviderTable::ProblemRole).toString().isEmpty()) {
        const QStyle *style = option->widget ? option->widget->style() : QApplication::style();
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->icon = style->standardIcon(QStyle::SP_MessageBoxWarning);
    }
    // The colours of a state have to be seen on a selected row too.
    const QVariant background = index.data(Qt::BackgroundRole);
    if (background.isValid() && option->state.testFlag(QStyle::State_Selected)) {
        option->state.setFlag(QStyle::State_Selected, false);
    }
}

void ProviderDelegate::commit(QWidget *editor)
{
    Q_EMIT commitData(editor);
    Q_EMIT closeEditor(editor);
}

} // namespace DEV
} // namespace KORA
