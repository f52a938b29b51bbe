// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/alarmstates.h>

namespace KORA {
namespace DEV {

namespace {

AlarmInfo::State gone(const AlarmInfoData &alarm)
{
    return alarm.resetEnabled ? AlarmInfo::StateNotTriggeredAcknowledged : AlarmInfo::StateNotTriggered;
}

AlarmInfo::State afterRaise(const AlarmInfoData &alarm)
{
    switch (alarm.state) {
    case AlarmInfo::StateNotTriggered:
    case AlarmInfo::StateNotTriggeredNotAcknowledged:
    case AlarmInfo::StateNotTriggeredAcknowledged:
        return alarm.acknowledgeEnabled ? AlarmInfo::StateTriggeredNotAcknowledged
                                        : AlarmInfo::StateTriggered;
    default:
        return alarm.state;
    }
}

AlarmInfo::State afterClear(const AlarmInfoData &alarm)
{
    switch (alarm.state) {
    case AlarmInfo::StateTriggered:
    case AlarmInfo::StateTriggeredAcknowledged:
        return gone(alarm);
    case AlarmInfo::StateTriggeredNotAcknowledged:
        return AlarmInfo::StateNotTriggeredNotAcknowledged;
    default:
        return alarm.state;
    }
}

AlarmInfo::State afterAcknowledge(const AlarmInfoData &alarm)
{
    if (!alarm.acknowledgeEnabled) {
        return alarm.state;
    }
    switch (alarm.state) {
    case AlarmInfo::StateTriggeredNotAcknowledged:
        return AlarmInfo::StateTriggeredAcknowledged;
    case AlarmInfo::StateNotTriggeredNotAcknowledged:
        return gone(alarm);
    default:
        return alarm.state;
    }
}

AlarmInfo::State afterReset(const AlarmInfoData &alarm)
{
    const bool isWaiting =
        alarm.state == AlarmInfo::StateNotTriggeredAcknowledged
        || (alarm.state == AlarmInfo::StateNotTriggeredNotAcknowledged && !alarm.acknowledgeEnabled);
    return alarm.resetEnabled && isWaiting ? AlarmInfo::StateNotTriggered : alarm.state;
}

} // namespace

AlarmInfo::State AlarmStates::after(Action action, const AlarmInfoData &alarm)
{
    switch (action) {
    case Raise:
        return afterRaise(alarm);
    case Clear:
        return afterClear(alarm);
    case Acknowledge:
        return afterAcknowledge(alarm);
    case Reset:
        return afterReset(alarm);
    case Disable:
        return AlarmInfo::StateDisabled;
    case Enable:
        break;
    }
    return alarm.state == AlarmInfo::StateDisabled ? AlarmInfo::StateNotTriggered : alarm.state;
}

} // namespace DEV
} // namespace KORA
