// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/core/fieldtype.h>

class QFont;
class QJsonValue;
class QString;
class QVariant;

namespace KORA {
namespace INTERNAL {

/// All that varies by field type; a new field type is one more row of the table in fieldtypes.cpp.
struct FieldTypeTraits
{
    const char *name;
    QString (*toText)(const QVariant &value);
    QVariant (*fromText)(const QString &text);
    /// Converts in place to the kind of value; false if it does not convert.
    bool (*convert)(QVariant &value);
    /// Reads a default value of the metadata; false for JSON of another type or out of range. Null where the
    /// metadata may give none.
    bool (*fromJson)(const QJsonValue &json, QVariant &value);
    /// The value is text, in one language or in several.
    bool isText;
    bool canBeUsedInRequirements;
    /// The "attributeType" of the design tool's property, %1 standing for the options; empty for a font, which is
    /// shown by its parts only. Null where a field of the type cannot be shown.
    const char *studioAttributeType;
};

/// The row of a type; for a number that is no type the row of the undefined one.
const FieldTypeTraits &fieldTypeTraits(int type);

/// Reads a font object over the default font; see WidgetLibraryPluginUtils.
bool fontFromJson(const QJsonValue &json, QFont &font);

} // namespace INTERNAL
} // namespace KORA
