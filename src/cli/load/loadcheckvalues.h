// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <kora/core/widgetmetainformation.h>

class QRandomGenerator;

/// The ends of what a field may hold: of a number its bounds, what lies beyond them and the ends of its type; of
/// an option every index; of a text nothing and very much.
QVariantList extremeValues(const KORA::INTERNAL::FieldMetaInformation &field);

/// Values that are wrong for most types, the invalid variant among them.
QVariantList wrongValues();

/// A value of the field's type; the same for the same state of @p random.
QVariant randomValue(const KORA::INTERNAL::FieldMetaInformation &field, QRandomGenerator &random);

/// A value as it is shown to a person: short, on one line.
QString shortText(const QVariant &value);
