// SPDX-License-Identifier: Apache-2.0
#include <kora/host.h>

int main()
{
    return KORA::INTERNAL::VersionType(QStringLiteral("1.2.3")).version() == QLatin1String("1.2.3") ? 0 : 1;
}
