// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <functional>

#include <kora/runtime/widgetactionmanager_p.h>

namespace KORA {
namespace TestKit {

/// The host that widgets run in during a test. Set what it shall answer, then look at what it was asked and told:
///
///     Host host;
///     host.tags["Level1"] = 42.5;
///     host.trends["LevelTrend"] = [](const QDateTime &time) { return time.time().minute(); };
///     host.alarms.append(Alarm("Level1.High").state(KORA::AlarmInfo::StateTriggered));
///     ...
///     QCOMPARE(host.calls, QStringList{"acknowAlarm Level1.High"});
///
/// Must outlive the widgets.
class Host : public KORA::INTERNAL::WidgetActionManagerImpl
{
public:
    /// The value of a trend at a moment.
    using Trend = std::function<QVariant(const QDateTime &time)>;

    /// What a widget asked a trend for.
    struct TrendRequest
    {
        QString trend;
        QDateTime from;
        QDateTime to;
        unsigned int count;
        KORA::WidgetActionManager::TrendTimeFormat format;
    };

    QHash<QString, QVariant> tags;
    QHash<QString, Trend> trends;
    QVector<KORA::AlarmInfo> alarms;
    bool insideProjectEditor = false; ///< whether the widgets are shown in the design tool
    bool insideDevProject = true;     ///< whether the library logs wrong field accesses of widgets

    /// Each question and command in words, such as "getTagValue Level1" and "acknowAlarm Level1.High". Whether it is
    /// the design tool is asked too often to be noted.
    mutable QStringList calls;
    mutable QVector<TrendRequest> trendRequests;

    QStringList takeCalls() const
    {
        QStringList taken;
        taken.swap(calls);
        return taken;
    }

    QVariant getTagValue(const QString &tag) const override
    {
        note("getTagValue", tag);
        return tags.value(tag);
    }
    /// As many evenly spaced samples as asked for, the first at @p from and the last at @p to.
    QVariant getTrendValue(const QString &trend, const QDateTime &from, const QDateTime &to,
                           unsigned int count,
                           KORA::WidgetActionManager::TrendTimeFormat format) const override
    {
        note("getTrendValue", trend);
        trendRequests.append({trend, from, to, count, format});
        const Trend valueAt = trends.value(trend);
        if (!valueAt) {
            return {};
        }
        QVariantList samples;
        const qint64 span = from.msecsTo(to);
        for (unsigned int i = 0; i < count; ++i) {
            const QDateTime time = from.addMSecs(count > 1 ? span * i / (count - 1) : 0);
            const bool isUtc = format == KORA::WidgetActionManager::UtcTime;
            samples.append(QVariantMap{{QStringLiteral("time"), isUtc ? time.toUTC() : time.toLocalTime()},
                                       {QStringLiteral("value"), valueAt(time)}});
        }
        return samples;
    }
    QVector<KORA::AlarmInfo> getAlarms() const override
    {
        note("getAlarms");
        return alarms;
    }
    void resetAlarm(const QString &alarm) override { note("resetAlarm", alarm); }
    void resetAllAlarms() override { note("resetAllAlarms"); }
    void acknowAlarm(const QString &alarm) override { note("acknowAlarm", alarm); }
    void acknowAllAlarms() override { note("acknowAllAlarms"); }
    bool isInsideProjectEditor() const override { return insideProjectEditor; }
    bool isInsideDevProject() const override { return insideDevProject; }

private:
    void note(const char *call, const QString &argument = QString()) const
    {
        const QString name = QString::fromLatin1(call);
        calls.append(argument.isEmpty() ? name : name + QLatin1Char(' ') + argument);
    }
};

} // namespace TestKit
} // namespace KORA
