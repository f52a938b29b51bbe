// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <kora/core/widgetmetainformation.h>

namespace KORA {
class WidgetPrivate;
} // namespace KORA

/// "field=value" of the command line.
struct FieldSetting
{
    QString fieldId;
    QString text;
};

/// Reads "field=value"; the value may be empty and may hold further "=". False if there is no field id.
bool readFieldSetting(const QString &argument, FieldSetting &setting);

/// Whether the widget has the field, or the font told along with it ("<field>.font").
bool hasField(const KORA::INTERNAL::WidgetMetaInformation &widget, const QString &fieldId);

struct FieldValue
{
    QString fieldId;
    QVariant value;
};

/// The values that the settings stand for, each in the kind of its field and within the field's bounds; settings
/// that name no field of the widget are passed over.
///
/// Text forms: those of the design tool's documents (true, 12.5, #ff0000, ["a","b"], [{"i":1,"v":"a"}],
/// {"family":"Roboto","size":12}); besides, an option by its text, an image by its plain reference, and for a
/// tag a number, true, false or any other text. False with the reason in @p problem if a text is none of its
/// field. @p remarks tells which values were moved into their bounds.
bool valuesOfSettings(const KORA::INTERNAL::WidgetMetaInformation &widget,
                      const QList<FieldSetting> &settings, QList<FieldValue> &values, QStringList &remarks,
                      QString &problem);

/// Sets all default values, as a host does before it starts a widget; multi-language texts in @p language.
void setDefaultValues(KORA::WidgetPrivate *widget, const KORA::INTERNAL::WidgetMetaInformation &info,
                      const QString &language);
