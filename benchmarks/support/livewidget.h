// SPDX-License-Identifier: Apache-2.0
//
// A host, a widget and an item that do as little as possible: what is measured is the framework.
#pragma once

#include <kora/host.h>
#include <kora/kora.h>

/// A panel without tags, trends and alarms.
class NoServices : public KORA::INTERNAL::WidgetActionManagerImpl
{
    Q_OBJECT

public:
    QVariant getTagValue(const QString &) const override { return {}; }
    QVariant getTrendValue(const QString &, const QDateTime &, const QDateTime &, unsigned int,
                           KORA::WidgetActionManager::TrendTimeFormat) const override
    {
        return {};
    }
    QVector<KORA::AlarmInfo> getAlarms() const override { return {}; }
    void resetAlarm(const QString &) override {}
    void resetAllAlarms() override {}
    void acknowAlarm(const QString &) override {}
    void acknowAllAlarms() override {}
    bool isInsideProjectEditor() const override { return false; }
    bool isInsideDevProject() const override { return false; }
};

/// Counts what reaches it.
class CountingWidget : public KORA::Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit CountingWidget(const KORA::WidgetData &data)
        : KORA::Widget(data)
    {}

    void initEvent(KORA::InitEvent *) override { ++events; }
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *) override { ++events; }

    qint64 events = 0;
};

class CountingItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit CountingItem(const KORA::GraphicsObjectData &data)
        : KORA::GraphicsObject(data)
    {}

    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *) override { ++events; }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}

    qint64 events = 0;
};

constexpr int fieldCount = 20;

inline QString fieldName(int number)
{
    return QStringLiteral("field%1").arg(number);
}

/// What a widget of the benchmarks is made of: 20 integer fields.
inline KORA::WidgetData widgetData()
{
    KORA::WidgetData data;
    data.id = QStringLiteral("gauge");
    data.version = KORA::INTERNAL::VersionType(1, 0, 0);
    data.pluginId = QStringLiteral("5b5e9c10-0000-4000-8000-00000000f00d");
    for (int i = 0; i < fieldCount; ++i) {
        data.fieldInfo.insert(fieldName(i),
                              KORA::INTERNAL::FieldInfo(true, true, false, KORA::INTERNAL::FieldTypeInteger,
                                                        QMetaType::UnknownType));
    }
    data.graphicsObjectClass = &CountingItem::staticMetaObject;
    return data;
}
