// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QVariant>
#include <QtGui/QFont>

#include <kora/dev/fields/fieldeditor.h>

namespace KORA {
namespace DEV {

/// The parts of a font that the design tool shows in rows of their own.
enum class FontPart { Family, Size, Bold, Style, Underline };

const FontPart fontParts[] = {FontPart::Family, FontPart::Size, FontPart::Bold, FontPart::Style,
                              FontPart::Underline};

QVariant fontPart(const QFont &font, FontPart part);
void setFontPart(QFont &font, FontPart part, const QVariant &value);

/// The word for the part that object names end with: "Family".
QString fontPartName(FontPart part);
/// The label that the field gives the part, or else a common one.
QString fontPartLabel(FontPart part, const INTERNAL::FieldMetaInformation &field, const QString &language);
/// What the part's editor must know; the names are the caller's to set.
FieldEditorContext fontPartContext(FontPart part);

} // namespace DEV
} // namespace KORA
