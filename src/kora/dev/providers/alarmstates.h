// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>
#include <kora/runtime/alarminfo.h>

namespace KORA {
namespace DEV {

/// The life of an alarm:
///
/// | state                         | raise | clear    | acknowledge | reset |
/// | disabled                      | -     | -        | -           | -     |
/// | not triggered                 | 3, 2  | -        | -           | -     |
/// | 2 triggered                   | -     | 6, n     | -           | -     |
/// | 3 triggered, not acknowledged | -     | 5        | 4           | -     |
/// | 4 triggered, acknowledged     | -     | 6, n     | -           | -     |
/// | 5 gone, not acknowledged      | 3, 2  | -        | 6, n        | -     |
/// | 6 gone, acknowledged          | 3, 2  | -        | -           | n     |
///
/// Raised, an alarm that can be acknowledged comes to 3, another to 2. Gone, one that can be reset comes to 6 and waits
/// for it; another is not triggered (n) at once. An alarm in 5 that cannot be acknowledged is reset directly.
class KORA_EXPORT AlarmStates
{
public:
    enum Action : int { Raise, Clear, Acknowledge, Reset, Disable, Enable };

    /// The state that follows; the present one if the action has no effect.
    static AlarmInfo::State after(Action action, const AlarmInfoData &alarm);
    static bool hasEffect(Action action, const AlarmInfoData &alarm)
    {
        return after(action, alarm) != alarm.state;
    }
};

} // namespace DEV
} // namespace KORA
