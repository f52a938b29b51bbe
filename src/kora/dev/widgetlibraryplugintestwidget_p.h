// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QVariant>

#include <kora/dev/widgetlibraryplugintestwidget.h>

class QTreeWidgetItem;

namespace KORA {
namespace DEV {

class FieldManager;
class FieldsPane;

class KORA_EXPORT WidgetLibraryPluginTestWidgetPrivate
{
public:
    explicit WidgetLibraryPluginTestWidgetPrivate(WidgetLibraryPluginTestWidget *owner);
    ~WidgetLibraryPluginTestWidgetPrivate();

    /// From now on the rows of this pane are shown and hidden, after each change of a value. It must outlive the
    /// window's use of the functions below.
    void setFieldsPane(FieldsPane *pane);

    /// The selected widget's present value; invalid if no widget is selected.
    QVariant getFieldValue(const QString &fieldId) const;
    /// Sets a field of the selected widget, as its editor would.
    void setFieldValue(const QString &fieldId, const QVariant &value);
    /// Shows and hides the editors of the selected widget's fields by their requirements, then the group rows.
    void updateFieldsRequirements();

    const QMap<QString, FieldManager *> &fieldManagers() const; ///< field id to editor
    const QMap<QString, QTreeWidgetItem *> &groupRows() const;  ///< group name to group row

    WidgetLibraryPluginTestWidget *owner;
    FieldsPane *fieldsPane = nullptr;
};

} // namespace DEV
} // namespace KORA
