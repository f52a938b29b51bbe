// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDebug>
#include <QtCore/QObject>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

#include <kora/export.h>
#include <kora/runtime/alarminfo.h>

namespace KORA {

class EventData;
class EventPrivate;

/// What the framework tells a widget and its graphics objects. Not a QEvent: events are delivered directly, on
/// the GUI thread, and die when the delivery ends, so a receiver must not keep the pointer.
///
/// A receiver gets each event in koraEvent() first and, if that returned false, in the handler for its type.
class KORA_EXPORT Event
{
    Q_GADGET

public:
    enum Type : quint16 {
        InitEvent = 0,
        DeinitEvent = 1,
        Resize = 2,
        FieldIsChanged = 3,
        AlarmStatusIsChanged = 4
    };
    Q_ENUM(Type)

    explicit Event(const EventData &data);
    Event(const Event &) = delete;
    Event &operator=(const Event &) = delete;
    virtual ~Event();

    Event::Type type() const;

private:
    std::unique_ptr<EventPrivate> d;
};

class KORA_EXPORT EventData
{
public:
    Event::Type type = Event::InitEvent;
};

class KORA_EXPORT InitEventData
{};

class InitEventPrivate;

/// The widget or graphics object starts.
class KORA_EXPORT InitEvent : public Event
{
public:
    explicit InitEvent(const InitEventData &data);
    ~InitEvent() override;

private:
    std::unique_ptr<InitEventPrivate> d;
};

class KORA_EXPORT DeinitEventData
{};

class DeinitEventPrivate;

/// The widget or graphics object stops; it may be started again.
class KORA_EXPORT DeinitEvent : public Event
{
public:
    explicit DeinitEvent(const DeinitEventData &data);
    ~DeinitEvent() override;

private:
    std::unique_ptr<DeinitEventPrivate> d;
};

class KORA_EXPORT ResizeEventData
{
public:
    QSizeF size;
    QSizeF oldSize;
};

class ResizeEventPrivate;

/// The graphics object has a new size, in pixels of the item. The first one's old size is (-1, -1).
class KORA_EXPORT ResizeEvent : public Event
{
public:
    explicit ResizeEvent(const ResizeEventData &data);
    ~ResizeEvent() override;

    QSizeF size() const;
    QSizeF oldSize() const;

private:
    std::unique_ptr<ResizeEventPrivate> d;
};

class KORA_EXPORT FieldIsChangedEventData
{
public:
    QString fieldId;
    QVariant value;
    QVariant oldValue;
};

class FieldIsChangedEventPrivate;

/// A field has a new value, already stored and of the field's kind.
class KORA_EXPORT FieldIsChangedEvent : public Event
{
public:
    explicit FieldIsChangedEvent(const FieldIsChangedEventData &data);
    ~FieldIsChangedEvent() override;

    QString fieldId() const;
    QVariant value() const;
    /// Invalid for the first value that the field gets.
    QVariant oldValue() const;

private:
    std::unique_ptr<FieldIsChangedEventPrivate> d;
};

class KORA_EXPORT AlarmStatusIsChangedEventData
{
public:
    AlarmInfo alarmInfo;
};

class AlarmStatusIsChangedEventPrivate;

/// An alarm has a new state. Widgets get it whose metadata says "receiveAlarmsEvents".
class KORA_EXPORT AlarmStatusIsChangedEvent : public Event
{
public:
    explicit AlarmStatusIsChangedEvent(const AlarmStatusIsChangedEventData &data);
    ~AlarmStatusIsChangedEvent() override;

    AlarmInfo alarmInfo() const;

private:
    std::unique_ptr<AlarmStatusIsChangedEventPrivate> d;
};

KORA_EXPORT QDebug operator<<(QDebug debug, const InitEvent *event);
KORA_EXPORT QDebug operator<<(QDebug debug, const DeinitEvent *event);
KORA_EXPORT QDebug operator<<(QDebug debug, const ResizeEvent *event);
KORA_EXPORT QDebug operator<<(QDebug debug, const FieldIsChangedEvent *event);
KORA_EXPORT QDebug operator<<(QDebug debug, const AlarmStatusIsChangedEvent *event);

} // namespace KORA
