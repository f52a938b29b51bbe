// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldsources.h>

#include <QtCore/QCoreApplication>

#include <kora/dev/providers/providers.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

QVector<FieldSource> fieldSources(Providers *, const FieldMetaInformation &)
{
    return {};
}

bool canFollowSource(const FieldMetaInformation &field)
{
    return field.tagCanBeAttached() || field.type() == FieldTypeTag || field.type() == FieldTypeTrend;
}

} // namespace DEV
} // namespace KORA
