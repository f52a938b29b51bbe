// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QStyledItemDelegate>

namespace KORA {
namespace DEV {

/// The editors of a ProviderTable's cells. An editor is filled once: a value that goes on running does not overwrite
/// what is being typed.
class ProviderDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    void commit(QWidget *editor);
};

} // namespace DEV
} // namespace KORA
