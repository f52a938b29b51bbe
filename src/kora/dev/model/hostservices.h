// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/dev/model/activitylog.h>
#include <kora/dev/model/scenario.h>
#include <kora/runtime/widgetactionmanager_p.h>

namespace KORA {
namespace DEV {

class Providers;

/// The services that one placed widget gets: answered by the simulated plant, and recorded in the activity log.
class KORA_EXPORT HostServices : public INTERNAL::WidgetActionManagerImpl
{
    Q_OBJECT

public:
    /// @p providers and @p log are not owned, must outlive the object, and may be null.
    HostServices(Providers *providers, ActivityLog *log, QObject *parent = nullptr);

    /// The name that calls are recorded under.
    void setInstanceName(const QString &name) { m_instance = name; }
    void setMode(BenchMode mode) { m_mode = mode; }

    QVariant getTagValue(const QString &tag) const override;
    QVariant getTrendValue(const QString &tag, const QDateTime &from, const QDateTime &to, unsigned int count,
                           KORA::WidgetActionManager::TrendTimeFormat format) const override;
    QVector<KORA::AlarmInfo> getAlarms() const override;
    void resetAlarm(const QString &alarm) override;
    void resetAllAlarms() override;
    void acknowAlarm(const QString &alarm) override;
    void acknowAllAlarms() override;
    bool isInsideProjectEditor() const override { return m_mode == BenchMode::Studio; }
    bool isInsideDevProject() const override { return true; }

private:
    class Call;

    Providers *m_providers;
    ActivityLog *m_log;
    QString m_instance;
    BenchMode m_mode = BenchMode::Studio;
};

} // namespace DEV
} // namespace KORA
