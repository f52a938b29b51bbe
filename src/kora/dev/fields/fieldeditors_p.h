// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/dev/fields/fieldeditor.h>

namespace KORA {
namespace DEV {

// One function for each family of editors; makeFieldEditor() picks by type.

FieldEditor *makeStringEditor(const FieldEditorContext &context);
FieldEditor *makeStringListEditor(const FieldEditorContext &context);
FieldEditor *makeStringMapEditor(const FieldEditorContext &context);
FieldEditor *makeNumberEditor(const FieldEditorContext &context);
FieldEditor *makeBoolEditor(const FieldEditorContext &context);
FieldEditor *makeChoiceEditor(const FieldEditorContext &context);
FieldEditor *makeColorEditor(const FieldEditorContext &context);
FieldEditor *makeFontEditor(const FieldEditorContext &context);
FieldEditor *makeImageEditor(const FieldEditorContext &context);
FieldEditor *makeSourceEditor(const FieldEditorContext &context);
FieldEditor *makeUndefinedEditor(const FieldEditorContext &context);

} // namespace DEV
} // namespace KORA
