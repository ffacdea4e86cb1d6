#ifndef _MESSENGER_H
#define _MESSENGER_H

#include <OS.h>
#include <SupportDefs.h>

class BHandler;
class BLooper;
class BMessage;

namespace BPrivate {
struct MessengerAccess;
}

/* Names a handler and its looper without keeping them alive: a messenger whose target is gone
   only fails. A plain value; any thread. */
class BMessenger {
public:
    BMessenger();
    BMessenger(const char* signature, team_id team = -1, status_t* result = nullptr);
    /* Null handler: the looper's preferred handler at the time of delivery. Null looper: the
       handler's. `result`: B_BAD_VALUE for neither, B_BAD_HANDLER for a handler without looper,
       B_MISMATCHED_VALUES for one that belongs to another. */
    BMessenger(const BHandler* handler, const BLooper* looper = nullptr,
               status_t* result = nullptr);
    BMessenger(const BMessenger& other);
    ~BMessenger();

    bool IsTargetLocal() const;
    /* The handler, and the looper in `looper`; null if gone, or for the preferred handler. */
    BHandler* Target(BLooper** looper) const;
    bool LockTarget() const;
    status_t LockTargetWithTimeout(bigtime_t timeout) const;

    /* Sends a copy. B_BAD_PORT_ID if the target is gone. Only another application that stands
       still lets it wait, for `timeout` microseconds, a second at most: B_TIMED_OUT, and
       B_WOULD_BLOCK for a timeout of 0. With `reply`, waits for the answer, of which B_NO_REPLY is
       one (the message was deleted unanswered). B_TIMED_OUT; and B_MESSAGE_TO_SELF where a looper
       would wait for itself for ever. */
    status_t SendMessage(uint32 command, BHandler* replyTo = nullptr) const;
    status_t SendMessage(BMessage* message, BHandler* replyTo = nullptr,
                         bigtime_t timeout = B_INFINITE_TIMEOUT) const;
    status_t SendMessage(BMessage* message, BMessenger replyTo,
                         bigtime_t timeout = B_INFINITE_TIMEOUT) const;
    status_t SendMessage(uint32 command, BMessage* reply) const;
    status_t SendMessage(BMessage* message, BMessage* reply,
                         bigtime_t deliveryTimeout = B_INFINITE_TIMEOUT,
                         bigtime_t replyTimeout = B_INFINITE_TIMEOUT) const;

    status_t SetTo(const char* signature, team_id team = -1);
    status_t SetTo(const BHandler* handler, const BLooper* looper = nullptr);

    BMessenger& operator=(const BMessenger& other);
    bool operator==(const BMessenger& other) const;

    bool IsValid() const;  // the target is there
    team_id Team() const;
    uint32 HashValue() const;

private:
    friend class BLooper;
    friend class BMessage;
    friend struct BPrivate::MessengerAccess;
    friend bool operator<(const BMessenger& a, const BMessenger& b);

    struct Address {
        team_id team;
        int32 looper;
        int32 handler;
    };

    explicit BMessenger(const Address& address);

    team_id fTeam;
    int32 fLooper;   // token of the looper, or of a sender that waits for a reply
    int32 fHandler;  // token, or BPrivate::kPreferredToken
};

bool operator<(const BMessenger& a, const BMessenger& b);
bool operator!=(const BMessenger& a, const BMessenger& b);

// Programs that include this header expect messages, too.
#include <Message.h>

#endif  // _MESSENGER_H
