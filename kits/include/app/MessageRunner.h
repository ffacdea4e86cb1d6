#ifndef _MESSAGERUNNER_H
#define _MESSAGERUNNER_H

#include <Message.h>
#include <Messenger.h>
#include <SupportDefs.h>

/* Sends copies of a message again and again. One thread serves all runners. */
class BMessageRunner {
public:
    /* `interval` in microseconds, 1000 at least; `count` -1 for ever. Replies go to `replyTo`, by
       default to the application. */
    BMessageRunner(BMessenger target, const BMessage* message, bigtime_t interval,
                   int32 count = -1);
    BMessageRunner(BMessenger target, const BMessage& message, bigtime_t interval,
                   int32 count = -1);
    BMessageRunner(BMessenger target, const BMessage* message, bigtime_t interval, int32 count,
                   BMessenger replyTo);
    BMessageRunner(BMessenger target, const BMessage& message, bigtime_t interval, int32 count,
                   BMessenger replyTo);
    /* No message is sent once this returns. */
    virtual ~BMessageRunner();

    /* B_BAD_VALUE for a null message, a count of 0 or an interval of 0 and less. */
    status_t InitCheck() const;

    /* B_BAD_VALUE once all messages are sent or the target is gone, too. */
    status_t SetInterval(bigtime_t interval);                   // counts from now
    status_t SetCount(int32 count);                             // 0 ends it
    status_t GetInfo(bigtime_t* interval, int32* count) const;  // count: messages left

    /* A runner without object: it ends by its count, or when the target is gone. */
    static status_t StartSending(BMessenger target, const BMessage* message, bigtime_t interval,
                                 int32 count);
    static status_t StartSending(BMessenger target, const BMessage* message, bigtime_t interval,
                                 int32 count, BMessenger replyTo);

private:
    BMessageRunner(const BMessageRunner&) = delete;
    BMessageRunner& operator=(const BMessageRunner&) = delete;

    int32 fToken;  // names the runner to the timer's thread; a status if below 0
};

#endif  // _MESSAGERUNNER_H
