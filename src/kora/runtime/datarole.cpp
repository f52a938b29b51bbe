// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/datarole.h>

namespace KORA {

class DataRolePrivate
{
public:
    DataRole::Type type;
};

class IconDataRolePrivate
{};

DataRole::DataRole(DataRole::Type type)
    : d(new DataRolePrivate{type})
{}

DataRole::~DataRole() = default;

DataRole::Type DataRole::type() const
{
    return d->type;
}

IconDataRole::IconDataRole()
    : DataRole(DataRole::Icon)
    , d(new IconDataRolePrivate)
{}

IconDataRole::~IconDataRole() = default;

QDebug operator<<(QDebug debug, const IconDataRole *)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "KORA::IconDataRole"
                    << "("
                    << ")";
    return debug;
}

} // namespace KORA
