// SPDX-License-Identifier: Apache-2.0
#include "hostservices.h"

#include <QtCore/QDateTime>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/model/plugincall.h>
#include <kora/dev/providers/alarmtable.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/dev/providers/trendtable.h>

namespace KORA {
namespace DEV {

namespace {

QString timeText(const QDateTime &time)
{
    return time.toString(Qt::ISODateWithMs);
}

} // namespace

/// Times a call of the widget and records it when it is answered.
class HostServices::Call
{
public:
    Call(const HostServices *services, const char *what, const QString &arguments)
        : m_log(services->m_log)
    {
        m_entry.kind = ActivityEntry::Call;
        m_entry.instance = services->m_instance;
        m_entry.what = QLatin1String(what);
        m_entry.arguments = arguments;
        m_entry.time = QDateTime::currentDateTimeUtc();
        m_timer.start();
    }
    ~Call()
    {
        m_entry.nanoseconds = m_timer.nsecsElapsed();
        if (m_log) {
            m_log->record(std::move(m_entry));
        }
    }
    Q_DISABLE_COPY_MOVE(Call)

    void setResult(const QString &result) { m_entry.result = result; }

private:
    ActivityLog *m_log;
    ActivityEntry m_entry;
    QElapsedTimer m_timer;
};

HostServices::HostServices(Providers *providers, ActivityLog *log, QObject *parent)
    : WidgetActionManagerImpl(parent)
    , m_providers(providers)
    , m_log(log)
{}

QVariant HostServices::getTagValue(const QString &tag) const
{
    Call call(this, "getTagValue", tag);
    const QVariant value = m_providers ? m_providers->tags()->value(tag) : QVariant();
    call.setResult(variantText(value));
    return value;
}

QVariant HostServices::getTrendValue(const QString &tag, const QDateTime &from, const QDateTime &to,
                                     unsigned int count, WidgetActionManager::TrendTimeFormat format) const
{
    Call call(
        this, "getTrendValue",
        QStringLiteral("%1, %2, %3, %4").arg(tag, timeText(from), timeText(to), QString::number(count)));
    const QVariant value =
        m_providers ? m_providers->trends()->trendValue(tag, from, to, count, format) : QVariant();
    call.setResult(value.isValid() ? QStringLiteral("%1 values").arg(value.toList().size())
                                   : QStringLiteral("no value"));
    return value;
}

QVector<AlarmInfo> HostServices::getAlarms() const
{
    Call call(this, "getAlarms", QString());
    const QVector<AlarmInfo> alarms = m_providers ? m_providers->alarms()->alarms() : QVector<AlarmInfo>();
    call.setResult(QStringLiteral("%1 alarms").arg(alarms.size()));
    return alarms;
}

void HostServices::resetAlarm(const QString &alarm)
{
    Call call(this, "resetAlarm", alarm);
    if (m_providers) {
        m_providers->alarms()->reset(alarm);
    }
}

void HostServices::resetAllAlarms()
{
    Call call(this, "resetAllAlarms", QString());
    if (m_providers) {
        m_providers->alarms()->resetAll();
    }
}

void HostServices::acknowAlarm(const QString &alarm)
{
    Call call(this, "acknowAlarm", alarm);
    if (m_providers) {
        m_providers->alarms()->acknowledge(alarm);
    }
}

void HostServices::acknowAllAlarms()
{
    Call call(this, "acknowAllAlarms", QString());
    if (m_providers) {
        m_providers->alarms()->acknowledgeAll();
    }
}

} // namespace DEV
} // namespace KORA
