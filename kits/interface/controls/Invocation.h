#ifndef INTERFACE_CONTROLS_INVOCATION_H
#define INTERFACE_CONTROLS_INVOCATION_H

#include <Invoker.h>
#include <Message.h>
#include <Messenger.h>

namespace BPrivate {

// Sends `message`, which may be null, to the sender's target, and a notice of this kind to those
// who watch it. `add` puts in what only senders of this class tell.
template <class Sender, class Add>
status_t send_invocation(Sender* sender, uint32 kind, const BMessage* message, Add add)
{
    if (message == nullptr && !sender->IsWatched())
        return B_BAD_VALUE;
    BMessage event(kind);
    if (message != nullptr)
        event = *message;
    event.AddInt64("when", system_time());
    event.AddPointer("source", sender);
    event.AddMessenger("be:sender", BMessenger(sender));
    add(&event);
    const status_t status =
        message != nullptr ? sender->BInvoker::Invoke(&event) : static_cast<status_t>(B_BAD_VALUE);
    sender->SendNotices(kind, &event);
    return status;
}

}  // namespace BPrivate

#endif  // INTERFACE_CONTROLS_INVOCATION_H
