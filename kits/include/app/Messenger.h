#ifndef _MESSENGER_H
#define _MESSENGER_H

#include <OS.h>
#include <SupportDefs.h>

class BHandler;
class BLooper;
class BMessage;

class BMessenger {
public:
    BMessenger();
    BMessenger(const char* signature, team_id team = -1, status_t* result = nullptr);
    BMessenger(const BHandler* handler, const BLooper* looper = nullptr, status_t* result = nullptr);
    BMessenger(const BMessenger& other);
    ~BMessenger();
    bool IsTargetLocal() const;
    BHandler* Target(BLooper** looper) const;
    bool LockTarget() const;
    status_t LockTargetWithTimeout(bigtime_t timeout) const;
    status_t SendMessage(uint32 command, BHandler* replyTo = nullptr) const;
    status_t SendMessage(BMessage* message, BHandler* replyTo = nullptr, bigtime_t timeout = B_INFINITE_TIMEOUT) const;
    status_t SendMessage(BMessage* message, BMessenger replyTo, bigtime_t timeout = B_INFINITE_TIMEOUT) const;
    status_t SendMessage(uint32 command, BMessage* reply) const;
    status_t SendMessage(BMessage* message, BMessage* reply, bigtime_t deliveryTimeout = B_INFINITE_TIMEOUT, bigtime_t replyTimeout = B_INFINITE_TIMEOUT) const;
    status_t SetTo(const char* signature, team_id team = -1);
    status_t SetTo(const BHandler* handler, const BLooper* looper = nullptr);
    BMessenger& operator=(const BMessenger& other);
    bool operator==(const BMessenger& other) const;
    bool IsValid() const;
    team_id Team() const;
    uint32 HashValue() const;

private:
};

bool operator<(const BMessenger& a, const BMessenger& b);
bool operator!=(const BMessenger& a, const BMessenger& b);

#endif  // _MESSENGER_H
