// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QObject>

#include <kora/dev/providers/alarmtable.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/dev/providers/trendtable.h>

namespace KORA {
namespace DEV {

class KORA_EXPORT Providers : public QObject
{
    Q_OBJECT

public:
    TagTable *tags() { return &m_tags; }
    TrendTable *trends() { return &m_trends; }
    AlarmTable *alarms() { return &m_alarms; }
    QJsonObject toJson() const { return {}; }
    bool fromJson(const QJsonObject &, QStringList &) { return true; }

Q_SIGNALS:
    void edited();

private:
    TagTable m_tags;
    TrendTable m_trends;
    AlarmTable m_alarms;
};

} // namespace DEV
} // namespace KORA
