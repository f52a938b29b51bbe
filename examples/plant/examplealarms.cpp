// SPDX-License-Identifier: Apache-2.0
#include "examplealarms.h"

#include "drawing.h"

namespace Plant {

namespace {

KORA::AlarmInfo exampleAlarm(const QString &name, const QString &description, KORA::AlarmInfo::State state,
                             KORA::AlarmInfo::Severity severity, const QTime &time)
{
    KORA::AlarmInfoData data;
    data.name = name;
    data.description = description;
    data.state = state;
    data.severity = severity;
    data.timestamp = QDateTime(QDate(2024, 3, 4), time);
    data.acknowledgeEnabled = true;
    // An acknowledged alarm stays visible and steps back.
    if (state == KORA::AlarmInfo::StateTriggeredAcknowledged) {
        data.backgroundColors.insert(state, Palette::Track);
    }
    return KORA::AlarmInfo(data);
}

} // namespace

QVector<KORA::AlarmInfo> exampleAlarms()
{
    using KORA::AlarmInfo;
    return {exampleAlarm(QStringLiteral("P101.Fault"), QStringLiteral("Pump P-101 fault"),
                         AlarmInfo::StateTriggeredNotAcknowledged, AlarmInfo::SeverityCritical,
                         QTime(11, 58, 12)),
            exampleAlarm(QStringLiteral("T2.High"), QStringLiteral("Tank T-2 level high"),
                         AlarmInfo::StateTriggeredNotAcknowledged, AlarmInfo::SeverityNormal,
                         QTime(11, 52, 40)),
            exampleAlarm(QStringLiteral("F1.Low"), QStringLiteral("Feed flow F-1 low"),
                         AlarmInfo::StateTriggeredAcknowledged, AlarmInfo::SeverityLow, QTime(11, 31, 5))};
}

} // namespace Plant
