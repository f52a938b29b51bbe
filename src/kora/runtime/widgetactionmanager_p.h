// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/runtime/widgetactionmanager.h>

namespace KORA {

namespace INTERNAL {

/// The services that a host implements for its widgets; see WidgetActionManager for what each answers. It must
/// outlive the action managers made on it. Called on the GUI thread.
class KORA_EXPORT WidgetActionManagerImpl : public QObject
{
    Q_OBJECT

public:
    explicit WidgetActionManagerImpl(QObject *parent = nullptr);
    ~WidgetActionManagerImpl() override;

    virtual QVariant getTagValue(const QString &tag) const = 0;
    virtual QVariant getTrendValue(const QString &tag, const QDateTime &from, const QDateTime &to,
                                   unsigned int count,
                                   KORA::WidgetActionManager::TrendTimeFormat format) const = 0;
    virtual QVector<KORA::AlarmInfo> getAlarms() const = 0;
    virtual void resetAlarm(const QString &alarm) = 0;
    virtual void resetAllAlarms() = 0;
    virtual void acknowAlarm(const QString &alarm) = 0;
    virtual void acknowAllAlarms() = 0;
    virtual bool isInsideProjectEditor() const = 0;
    /// Whether the host is a test bench: field access errors of widgets are then logged. Widgets cannot ask.
    virtual bool isInsideDevProject() const = 0;
};

} // namespace INTERNAL

class KORA_EXPORT WidgetActionManagerPrivate
{
public:
    explicit WidgetActionManagerPrivate(INTERNAL::WidgetActionManagerImpl *impl);

    bool isInsideDevProject() const;

    INTERNAL::WidgetActionManagerImpl *impl;
};

namespace INTERNAL {

class KORA_EXPORT WidgetActionManagerPrivateAccessor
{
public:
    static WidgetActionManagerPrivate *priv(WidgetActionManager *manager);
};

} // namespace INTERNAL
} // namespace KORA
