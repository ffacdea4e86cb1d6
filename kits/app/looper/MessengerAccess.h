#ifndef APP_MESSENGER_ACCESS_H
#define APP_MESSENGER_ACCESS_H

// Messengers made from tokens, and the sending of messages that need no copy.

#include <Messenger.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

struct MessengerAccess {
    struct Parts {
        team_id team;
        int32 looper;
        int32 handler;
    };
    static Parts PartsOf(const BMessenger& messenger)
    {
        return {messenger.fTeam, messenger.fLooper, messenger.fHandler};
    }
    // Of any team.
    static BMessenger MakeFor(team_id team, int32 looper, int32 handler);
    // A messenger to a looper, or to a sender that waits, and one of the looper's handlers.
    static BMessenger Make(int32 looper, int32 handler);
    // To a handler where it is at the moment; invalid if it is gone or has no looper.
    static BMessenger ForHandler(int32 handler);
    static bool IsSet(const BMessenger& messenger) { return messenger.fLooper != 0; }

    // Queues the message itself, whose access data are set. Adopts it, even when it fails.
    static status_t Deliver(const BMessenger& target, BMessage* message);
    // Sends a copy; as the reply to `previous`, if there is one. Only another team's queue can
    // be full for so long.
    static status_t Send(const BMessenger& target, const BMessage* message,
                         const BMessenger& replyTo, const BMessage* previous,
                         bigtime_t timeout = B_INFINITE_TIMEOUT);
    // Sends without waiting: a team whose queue is full misses it. False once the target is
    // gone.
    static bool Notify(const BMessenger& target, const BMessage& message,
                       const BMessenger& replyTo);
    static bool Notify(const BMessenger& target, const BMessage& message)
    {
        return Notify(target, message, ReplyAddress(&message));
    }
    static status_t SendAndWait(const BMessenger& target, const BMessage* message, BMessage* reply,
                                bigtime_t replyTimeout, const BMessage* previous);
    // Has a looper of this team answer a delivered message instead of its receiver, which has no
    // answer left to give.
    static status_t PassOn(const BMessenger& target, BMessage* message);
    // Where an answer goes when the sender of `message` named nobody: to who waits for it
    // already, if it is passed on, else to the application.
    static BMessenger ReplyAddress(const BMessage* message);
};

team_id current_team();

}  // namespace BPrivate

#endif  // APP_MESSENGER_ACCESS_H
