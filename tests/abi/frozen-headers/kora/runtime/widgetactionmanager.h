// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <memory>

#include <kora/export.h>
#include <kora/runtime/alarminfo.h>

class QDateTime;

namespace KORA {

class WidgetActionManagerPrivate;

namespace INTERNAL {
class WidgetActionManagerImpl;
class WidgetActionManagerPrivateAccessor;
} // namespace INTERNAL

/// The services of the host that a widget runs in. Every widget instance has its own; all calls are answered by
/// the host at once, on the GUI thread, and its answers reach the widget as they are.
class KORA_EXPORT WidgetActionManager : public QObject
{
    Q_OBJECT

public:
    /// The clock that the times of a trend are given and wanted in.
    enum TrendTimeFormat : int { LocalTime = 0, UtcTime = 1 };
    Q_ENUM(TrendTimeFormat)

    /// @p impl is the host's, must not be null and must outlive the object.
    explicit WidgetActionManager(INTERNAL::WidgetActionManagerImpl *impl, QObject *parent = nullptr);
    ~WidgetActionManager() override;

    /// The present value of a tag; invalid for a tag that the host does not know or that has no value.
    QVariant getTagValue(const QString &tag) const;
    /// Past values of a trend: a QVariantList of QVariantMap {"time": QDateTime, "value": QVariant}, oldest
    /// first, from @p from to @p to, at most @p count entries. Invalid for an unknown trend.
    QVariant getTrendValue(const QString &tag, const QDateTime &from, const QDateTime &to, unsigned int count,
                           TrendTimeFormat format) const;
    /// All alarms of the host.
    QVector<AlarmInfo> getAlarms() const;

    /// Alarms are named by AlarmInfo::name().
    void resetAlarm(const QString &alarm) const;
    void resetAllAlarms() const;
    void acknowAlarm(const QString &alarm) const;
    void acknowAllAlarms() const;

    /// Whether the widget is shown in the design tool's editor rather than running on a panel.
    bool isInsideProjectEditor() const;

private:
    friend class INTERNAL::WidgetActionManagerPrivateAccessor;

    std::unique_ptr<WidgetActionManagerPrivate> d;
};

} // namespace KORA
