#ifndef APP_MESSAGE_ACCESS_H
#define APP_MESSAGE_ACCESS_H

// What the delivery code reads and sets of a message: who it is for, who waits for an answer.

#include <Message.h>
#include <Messenger.h>

namespace BPrivate {

// Targets that are no handler's token.
enum : int32 {
    kNoToken = 0,
    kPreferredToken = -1,  // the looper's preferred handler when the message is dispatched
};

struct MessageAccess {
    enum Flags : uint32 {
        kDelivered = 1,      // came out of a looper's queue
        kReply = 2,          // is an answer
        kSourceWaiting = 4,  // the sender sits in SendMessage() until it is answered
        kReplied = 8,        // one answer was sent
        kDropped = 16,       // came by drag and drop
    };

    static int32& Target(BMessage* message) { return message->fTarget; }
    static uint32& Delivery(BMessage* message) { return message->fDelivery; }
    static uint32 Delivery(const BMessage* message) { return message->fDelivery; }
    static BMessenger& ReturnAddress(BMessage* message) { return message->fReturnAddress; }
    static BMessage*& Previous(BMessage* message) { return message->fPrevious; }

    // Gives a reply to who waited for it, with all that came along; deletes `from`.
    static void MoveReply(BMessage* from, BMessage* to);

    // A copy that is on its way to a handler; answers go to `replyTo`.
    static BMessage* CopyFor(const BMessage* message, int32 target, const BMessenger& replyTo,
                             uint32 flags);
    // Notes that an answer goes out; B_BAD_REPLY or B_DUPLICATE_REPLY if none may.
    static status_t BeginReply(BMessage* message);
};

}  // namespace BPrivate

#endif  // APP_MESSAGE_ACCESS_H
