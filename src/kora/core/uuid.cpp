// SPDX-License-Identifier: Apache-2.0
#include <kora/core/uuid_p.h>

#include <QtCore/QString>
#include <QtCore/QUuid>

namespace KORA {
namespace INTERNAL {

bool isUuid(const QString &text)
{
    const QUuid uuid = QUuid::fromString(text);
    return !uuid.isNull() && uuid.toString(QUuid::WithoutBraces).compare(text, Qt::CaseInsensitive) == 0;
}

bool isUuidFolderName(const QString &name)
{
    const bool hasBraces = name.startsWith(QLatin1Char('{')) && name.endsWith(QLatin1Char('}'));
    return isUuid(hasBraces ? name.mid(1, name.size() - 2) : name);
}

} // namespace INTERNAL
} // namespace KORA
