// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointer>

namespace KORA {

/// Delivers an event to a widget or graphics object: koraEvent() first and, if that returned false, the handler
/// for the event's type. Either may delete the receiver.
template<typename Receiver, typename EventClass>
void deliverEvent(Receiver *receiver, EventClass &event, void (Receiver::*handler)(EventClass *))
{
    const QPointer<Receiver> guard(receiver);
    if (!receiver->koraEvent(&event) && guard) {
        (receiver->*handler)(&event);
    }
}

} // namespace KORA
