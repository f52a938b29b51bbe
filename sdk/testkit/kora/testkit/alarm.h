// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/runtime/alarminfo.h>

namespace KORA {
namespace TestKit {

/// Builds an alarm for a test. It is triggered, not acknowledged, and from a fixed time, so that pictures come out the
/// same every day:
///
///     widget.deliver(Alarm("Level1.High").severity(KORA::AlarmInfo::SeverityHigh).acknowledgeable());
class Alarm
{
public:
    explicit Alarm(const QString &name)
    {
        m_data.name = name;
        m_data.state = AlarmInfo::StateTriggeredNotAcknowledged;
        m_data.timestamp = QDateTime(QDate(2024, 3, 4), QTime(12, 0), Qt::UTC);
    }

    Alarm &description(const QString &text) { return set(&AlarmInfoData::description, text); }
    Alarm &state(AlarmInfo::State state) { return set(&AlarmInfoData::state, state); }
    Alarm &severity(AlarmInfo::Severity severity) { return set(&AlarmInfoData::severity, severity); }
    Alarm &groups(const QStringList &groups) { return set(&AlarmInfoData::groups, groups); }
    Alarm &customFields(const QStringList &fields) { return set(&AlarmInfoData::customFields, fields); }
    Alarm &time(const QDateTime &time) { return set(&AlarmInfoData::timestamp, time); }
    Alarm &acknowledgeable(bool on = true) { return set(&AlarmInfoData::acknowledgeEnabled, on); }
    Alarm &resettable(bool on = true) { return set(&AlarmInfoData::resetEnabled, on); }
    Alarm &blinking(bool on = true) { return set(&AlarmInfoData::blinkEnabled, on); }
    /// The colors of one state.
    Alarm &colors(AlarmInfo::State state, const QColor &background, const QColor &foreground)
    {
        m_data.backgroundColors.insert(state, background);
        m_data.foregroundColors.insert(state, foreground);
        return *this;
    }
    /// The tag that raised the alarm, and its value then.
    Alarm &tag(const QString &name, const QVariant &value)
    {
        m_data.tagValue = value;
        return set(&AlarmInfoData::tagName, name);
    }

    operator AlarmInfo() const { return AlarmInfo(m_data); }

private:
    template<typename Value>
    Alarm &set(Value AlarmInfoData::*member, const Value &value)
    {
        m_data.*member = value;
        return *this;
    }

    AlarmInfoData m_data;
};

} // namespace TestKit
} // namespace KORA
