// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

#include <kora/core/widgetmetainformation.h>

namespace KORA {
namespace DEV {

class Providers;

/// A tag or trend of the simulated plant that a field could follow.
struct FieldSource
{
    QString name;
    QString kind;    ///< "double"
    QString problem; ///< why the field does not accept it; empty if it does
};

/// Those of the field's kind, trends for a trend field and tags for the others; those that fit come first.
QVector<FieldSource> fieldSources(Providers *providers, const INTERNAL::FieldMetaInformation &field);

/// Whether the field may follow a tag or trend at all.
bool canFollowSource(const INTERNAL::FieldMetaInformation &field);

} // namespace DEV
} // namespace KORA
