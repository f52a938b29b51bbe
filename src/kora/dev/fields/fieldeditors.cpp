// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldeditors_p.h>

#include <QtWidgets/QLabel>

namespace KORA {
namespace DEV {

namespace {

class UndefinedEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit UndefinedEditor(const FieldEditorContext &context)
        : FieldEditor(context)
    {
        auto *label = new QLabel(tr("unsupported type"));
        label->setEnabled(false);
        addPassive(label, 1);
    }

    void setValue(const QVariant &) override {}
};

struct EditorOfType
{
    INTERNAL::FieldType type;
    FieldEditor *(*make)(const FieldEditorContext &);
};

const EditorOfType editorTable[] = {
    {INTERNAL::FieldTypeString, makeStringEditor},
    {INTERNAL::FieldTypeStringList, makeStringListEditor},
    {INTERNAL::FieldTypeStringMap, makeStringMapEditor},
    {INTERNAL::FieldTypeInteger, makeNumberEditor},
    {INTERNAL::FieldTypeDouble, makeNumberEditor},
    {INTERNAL::FieldTypeBool, makeBoolEditor},
    {INTERNAL::FieldTypeOption, makeChoiceEditor},
    {INTERNAL::FieldTypeColor, makeColorEditor},
    {INTERNAL::FieldTypeFont, makeFontEditor},
    {INTERNAL::FieldTypeImage, makeImageEditor},
    {INTERNAL::FieldTypeTag, makeSourceEditor},
    {INTERNAL::FieldTypeTrend, makeSourceEditor},
};

} // namespace

FieldEditor *makeUndefinedEditor(const FieldEditorContext &context)
{
    return new UndefinedEditor(context);
}

FieldEditor *makeFieldEditor(const FieldEditorContext &context)
{
    for (const EditorOfType &row : editorTable) {
        if (row.type == context.type) {
            return row.make(context);
        }
    }
    return makeUndefinedEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "fieldeditors.moc"
