// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QVariant>

#include <kora/core/widgetmetainformation.h>
#include <kora/export.h>

namespace KORA {
namespace DEV {

/// The JSON form of a field value in scenarios. Unlike the text forms of the design tool's documents it keeps every
/// digit and a colour's alpha: numbers as numbers, colours as "#aarrggbb", a string map as an object of index to
/// text, a font as an object. An invalid value is null.
KORA_EXPORT QJsonValue fieldValueToJson(INTERNAL::FieldType type, const QVariant &value);

/// The value of a JSON form, in the kind of @p type. False with the reason in @p problem if it is none.
KORA_EXPORT bool fieldValueFromJson(INTERNAL::FieldType type, const QJsonValue &json, QVariant &value,
                                    QString &problem);

/// The type of the values under @p id: a field, or under "<id>.font" the font of a multi-language text; undefined
/// for an unknown id.
KORA_EXPORT INTERNAL::FieldType fieldTypeOf(const INTERNAL::WidgetMetaInformation &info, const QString &id);

/// The default under @p id as a host sets it before a widget starts, texts in @p language; invalid if the metadata
/// gives none.
KORA_EXPORT QVariant fieldDefault(const INTERNAL::WidgetMetaInformation &info, const QString &id,
                                  const QString &language);

/// What a field without a default is reset to: the type's zero; invalid for images, tags and trends, which may have no
/// value.
KORA_EXPORT QVariant emptyFieldValue(INTERNAL::FieldType type);

/// All ids that hold values: the fields, and the fonts of multi-language texts.
KORA_EXPORT QStringList fieldIds(const INTERNAL::WidgetMetaInformation &info);

} // namespace DEV
} // namespace KORA
