#ifndef _MESSAGEQUEUE_H
#define _MESSAGEQUEUE_H

#include <Locker.h>
#include <Message.h>
#include <SupportDefs.h>

/* Messages, oldest first; a message is in one queue at most. The queue owns what is in it. Any
   thread: each call takes the queue's lock, which Lock() holds over several of them. */
class BMessageQueue {
public:
    BMessageQueue();
    virtual ~BMessageQueue();

    void AddMessage(BMessage* message);
    void RemoveMessage(BMessage* message);  // gives it back to the caller, if it is there
    int32 CountMessages() const;
    bool IsEmpty() const;
    /* Null if there is none; the message stays in the queue. */
    BMessage* FindMessage(int32 index) const;
    BMessage* FindMessage(uint32 what, int32 index = 0) const;  // among those with the code

    bool Lock();
    void Unlock();
    bool IsLocked() const;  // by the calling thread

    BMessage* NextMessage();  // taken out; the caller's
    bool IsNextMessage(const BMessage* message) const;

private:
    BMessageQueue(const BMessageQueue&) = delete;
    BMessageQueue& operator=(const BMessageQueue&) = delete;

    BMessage* _Unlink(BMessage* previous, BMessage* message);

    alignas(8) unsigned char fLock[32];  // a BPrivate::RecursiveLock; guards all below
    BMessage* fHead;
    BMessage* fTail;
    int32 fCount;
};

#endif  // _MESSAGEQUEUE_H
