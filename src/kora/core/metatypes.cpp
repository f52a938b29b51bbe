// SPDX-License-Identifier: Apache-2.0
#include <kora/core/metatypes_p.h>

#include <QtCore/QMetaType>

namespace {

// Without a comparator two variants that hold equal maps differ: Qt compares their addresses. It registers the
// maps before any host or plugin code can put one into a variant.
void registerMetaTypes()
{
    qRegisterMetaType<KORA::INTERNAL::StringMap>();
    QMetaType::registerEqualsComparator<KORA::INTERNAL::StringMap>();
}

} // namespace

Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)
