// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtWidgets/QTreeWidgetItem>

#include <kora/dev/fields/fieldcell.h>
#include <kora/dev/fields/fieldeditor.h>
#include <kora/dev/fields/fontparts.h>

namespace KORA {
namespace DEV {

/// The columns of the pane's tree.
enum FieldColumn : int { NameColumn, ValueColumn, ColumnCount };

/// In all columns: the view would lay out the text of any that has no height, of all rows, to know where they end.
inline void setRowHeight(QTreeWidgetItem *row, int height)
{
    for (int column = 0; column < ColumnCount; ++column) {
        row->setSizeHint(column, {0, height});
    }
}

/// One row of a field.
struct FieldRow
{
    enum Kind : int { Value, Language, PartOfFont };

    QTreeWidgetItem *item = nullptr;
    Kind kind = Value;
    QString label;
    QString language;                 ///< of a Language row
    FontPart part = FontPart::Family; ///< of a PartOfFont row
    QPointer<FieldEditor> editor;     ///< null until the row comes into sight
    QPointer<FieldCell> cell;

    // The entry under way; 0 if none.
    int gesture = 0;
    QVariant before;

    QString rejection; ///< what stands in the editor is no value
    QString clamp;     ///< what became of the value that was entered
    QString remark;    ///< of the editor, about the value
};

} // namespace DEV
} // namespace KORA
