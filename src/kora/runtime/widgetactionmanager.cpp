// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/widgetactionmanager.h>
#include <kora/runtime/widgetactionmanager_p.h>

#include <QtCore/QDateTime>

namespace KORA {

namespace INTERNAL {

WidgetActionManagerImpl::WidgetActionManagerImpl(QObject *parent)
    : QObject(parent)
{}

WidgetActionManagerImpl::~WidgetActionManagerImpl() = default;

WidgetActionManagerPrivate *WidgetActionManagerPrivateAccessor::priv(WidgetActionManager *manager)
{
    return manager->d.get();
}

} // namespace INTERNAL

WidgetActionManagerPrivate::WidgetActionManagerPrivate(INTERNAL::WidgetActionManagerImpl *implementation)
    : impl(implementation)
{}

bool WidgetActionManagerPrivate::isInsideDevProject() const
{
    return impl->isInsideDevProject();
}

WidgetActionManager::WidgetActionManager(INTERNAL::WidgetActionManagerImpl *impl, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<WidgetActionManagerPrivate>(impl))
{}

WidgetActionManager::~WidgetActionManager() = default;

QVariant WidgetActionManager::getTagValue(const QString &tag) const
{
    return d->impl->getTagValue(tag);
}

QVariant WidgetActionManager::getTrendValue(const QString &tag, const QDateTime &from, const QDateTime &to,
                                            unsigned int count, TrendTimeFormat format) const
{
    return d->impl->getTrendValue(tag, from, to, count, format);
}

QVector<AlarmInfo> WidgetActionManager::getAlarms() const
{
    return d->impl->getAlarms();
}

void WidgetActionManager::resetAlarm(const QString &alarm) const
{
    d->impl->resetAlarm(alarm);
}

void WidgetActionManager::resetAllAlarms() const
{
    d->impl->resetAllAlarms();
}

void WidgetActionManager::acknowAlarm(const QString &alarm) const
{
    d->impl->acknowAlarm(alarm);
}

void WidgetActionManager::acknowAllAlarms() const
{
    d->impl->acknowAllAlarms();
}

bool WidgetActionManager::isInsideProjectEditor() const
{
    return d->impl->isInsideProjectEditor();
}

} // namespace KORA
