// SPDX-License-Identifier: Apache-2.0
#include "shiftcalendar.h"

#include <QtCore/QTime>

namespace Plant {

namespace {

constexpr int CheckMs = 10 * 1000;
constexpr int MinutesPerDay = 24 * 60;

} // namespace

ShiftCalendar::ShiftCalendar(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

void ShiftCalendar::initEvent(KORA::InitEvent *)
{
    publish();
    m_timer.start(CheckMs, this);
}

void ShiftCalendar::deinitEvent(KORA::DeinitEvent *)
{
    m_timer.stop();
}

void ShiftCalendar::fieldIsChangedEvent(KORA::FieldIsChangedEvent *event)
{
    // Its own writes come back as events too.
    if (!event->fieldId().startsWith(QLatin1String("shift"))) {
        publish();
    }
}

void ShiftCalendar::timerEvent(QTimerEvent *)
{
    publish();
}

int ShiftCalendar::shiftAt(const QTime &time, int firstStart, int hours)
{
    const int minutes = time.hour() * 60 + time.minute() - firstStart * 60;
    return (minutes + MinutesPerDay) % MinutesPerDay / (qMax(1, hours) * 60);
}

void ShiftCalendar::publish()
{
    const int shift = shiftAt(QTime::currentTime(), getFieldValue(QStringLiteral("firstStart")).toInt(),
                              getFieldValue(QStringLiteral("hours")).toInt());
    if (getFieldValue(QStringLiteral("shift")) != QVariant(shift)) {
        setFieldValue(QStringLiteral("shift"), shift);
    }
    const QString name = getFieldValue(QStringLiteral("names")).toStringList().value(shift);
    if (getFieldValue(QStringLiteral("shiftName")) != QVariant(name)) {
        setFieldValue(QStringLiteral("shiftName"), name);
    }
}

} // namespace Plant
