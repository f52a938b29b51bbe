// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/event.h>

namespace KORA {

class EventPrivate
{
public:
    Event::Type type;
};

class InitEventPrivate
{};

class DeinitEventPrivate
{};

class ResizeEventPrivate
{
public:
    ResizeEventData data;
};

class FieldIsChangedEventPrivate
{
public:
    FieldIsChangedEventData data;
};

class AlarmStatusIsChangedEventPrivate
{
public:
    AlarmStatusIsChangedEventData data;
};

Event::Event(const EventData &data)
    : d(new EventPrivate{data.type})
{}

Event::~Event() = default;

Event::Type Event::type() const
{
    return d->type;
}

InitEvent::InitEvent(const InitEventData &)
    : Event(EventData{Event::InitEvent})
    , d(new InitEventPrivate)
{}

InitEvent::~InitEvent() = default;

DeinitEvent::DeinitEvent(const DeinitEventData &)
    : Event(EventData{Event::DeinitEvent})
    , d(new DeinitEventPrivate)
{}

DeinitEvent::~DeinitEvent() = default;

ResizeEvent::ResizeEvent(const ResizeEventData &data)
    : Event(EventData{Event::Resize})
    , d(new ResizeEventPrivate{data})
{}

ResizeEvent::~ResizeEvent() = default;

QSizeF ResizeEvent::size() const
{
    return d->data.size;
}

QSizeF ResizeEvent::oldSize() const
{
    return d->data.oldSize;
}

FieldIsChangedEvent::FieldIsChangedEvent(const FieldIsChangedEventData &data)
    : Event(EventData{Event::FieldIsChanged})
    , d(new FieldIsChangedEventPrivate{data})
{}

FieldIsChangedEvent::~FieldIsChangedEvent() = default;

QString FieldIsChangedEvent::fieldId() const
{
    return d->data.fieldId;
}

QVariant FieldIsChangedEvent::value() const
{
    return d->data.value;
}

QVariant FieldIsChangedEvent::oldValue() const
{
    return d->data.oldValue;
}

AlarmStatusIsChangedEvent::AlarmStatusIsChangedEvent(const AlarmStatusIsChangedEventData &data)
    : Event(EventData{Event::AlarmStatusIsChanged})
    , d(new AlarmStatusIsChangedEventPrivate{data})
{}

AlarmStatusIsChangedEvent::~AlarmStatusIsChangedEvent() = default;

AlarmInfo AlarmStatusIsChangedEvent::alarmInfo() const
{
    return d->data.alarmInfo;
}

QDebug operator<<(QDebug debug, const InitEvent *)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "KORA::InitEvent"
                    << "("
                    << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const DeinitEvent *)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "KORA::DeinitEvent"
                    << "("
                    << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const ResizeEvent *event)
{
    const QDebugStateSaver saver(debug);
    const QSizeF size = event->size();
    const QSizeF oldSize = event->oldSize();
    debug.nospace() << "KORA::ResizeEvent"
                    << "("
                    << "size=" << size.width() << ", " << size.height() << ",oldSize=" << oldSize.width()
                    << ", " << oldSize.height() << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const FieldIsChangedEvent *event)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "KORA::FieldIsChangedEvent"
                    << "("
                    << "fieldId=" << event->fieldId() << ",value=" << event->value()
                    << ",oldValue=" << event->oldValue() << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const AlarmStatusIsChangedEvent *event)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "KORA::AlarmStatusIsChangedEvent"
                    << "("
                    << "alarmInfo=" << event->alarmInfo() << ")";
    return debug;
}

} // namespace KORA
