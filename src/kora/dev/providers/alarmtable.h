// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QVector>

#include <kora/export.h>
#include <kora/runtime/alarminfo.h>

namespace KORA {
namespace DEV {

class KORA_EXPORT AlarmTable : public QObject
{
    Q_OBJECT

public:
    QVector<AlarmInfo> alarms() const { return {}; }
    void reset(const QString &) {}
    void resetAll() {}
    void acknowledge(const QString &) {}
    void acknowledgeAll() {}

Q_SIGNALS:
    void alarmChanged(const KORA::AlarmInfo &alarm);
};

} // namespace DEV
} // namespace KORA
