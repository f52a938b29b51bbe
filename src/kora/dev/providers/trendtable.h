// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QVariant>

#include <kora/export.h>
#include <kora/runtime/widgetactionmanager.h>

namespace KORA {
namespace DEV {

class KORA_EXPORT TrendTable : public QObject
{
    Q_OBJECT

public:
    QVariant trendValue(const QString &, const QDateTime &, const QDateTime &, unsigned int,
                        WidgetActionManager::TrendTimeFormat) const
    {
        return {};
    }
};

} // namespace DEV
} // namespace KORA
