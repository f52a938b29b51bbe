// SPDX-License-Identifier: Apache-2.0
//
// A host's map of an alarm, from JSON: texts "state:3", "severity:2", "color:red", "time:2024-..." become what they name.
#include "../fuzztarget.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtGui/QColor>

#include <kora/runtime/alarminfo.h>

using KORA::AlarmInfo;

namespace {

QVariant decoded(const QVariant &value)
{
    const QString text = value.toString();
    const QString argument = text.section(QLatin1Char(':'), 1);
    if (text.startsWith(QLatin1String("state:"))) {
        return QVariant::fromValue(static_cast<AlarmInfo::State>(argument.toInt()));
    }
    if (text.startsWith(QLatin1String("severity:"))) {
        return QVariant::fromValue(static_cast<AlarmInfo::Severity>(argument.toInt()));
    }
    if (text.startsWith(QLatin1String("time:"))) {
        return QDateTime::fromString(argument, Qt::ISODateWithMs);
    }
    if (text.startsWith(QLatin1String("color:"))) {
        AlarmInfo::StateColors colors;
        colors.insert(AlarmInfo::StateTriggered, QColor(0x12, 0x34, argument.size() % 256));
        return QVariant::fromValue(colors);
    }
    return value;
}

void checkState(const AlarmInfo &alarm)
{
    const int state = alarm.state();
    if (state >= 0 && state <= 6) {
        expect(alarm.triggered() == (state >= 2 && state <= 4), "triggered");
        expect(alarm.acknowledged() == (state == 4 || state == 6), "acknowledged");
    }
    expect(alarm.enabled() == (state != 0), "enabled");
}

} // namespace

KORA_FUZZ_TARGET(alarm)
{
    const QVariantMap plain = jsonObject(input).toVariantMap();
    QVariantMap map;
    for (auto entry = plain.constBegin(); entry != plain.constEnd(); ++entry) {
        map.insert(entry.key(), decoded(entry.value()));
    }
    const AlarmInfo alarm = AlarmInfo::createAlarmInfo(map);
    expect(alarm.isValid(), "an alarm of a map is valid");
    checkState(alarm);
    const bool hasState = map.contains(QStringLiteral("state"));
    expect(hasState || alarm.state() == AlarmInfo::StateNotTriggered, "no state is not triggered");
    expect(alarm.name() == map.value(QStringLiteral("name")).toString(), "the name");
    expect(alarm.currentBackgroundColor() == alarm.backgroundColors().value(alarm.state()), "the colour");

    AlarmInfo copy;
    copy = alarm;
    QString text;
    QString textOfCopy;
    QDebug(&text) << alarm;
    QDebug(&textOfCopy) << copy;
    expect(text == textOfCopy && text.startsWith(QLatin1String("KORA::AlarmInfo(isValid=true")), "the text");
    const QVariant value = alarm.tagValue(); // NaN in it is never equal
    expect(copy == alarm || value != value, "a copy differs");
}
