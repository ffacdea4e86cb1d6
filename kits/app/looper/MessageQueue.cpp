// BMessageQueue: a chain through the messages themselves.

#include <MessageQueue.h>

#include <Message.h>

#include <new>
#include <utility>

#include "support/RecursiveLock.h"

using BPrivate::RecursiveLock;

static RecursiveLock& lock_in(const unsigned char* bytes)
{
    static_assert(sizeof(RecursiveLock) <= 32 && alignof(RecursiveLock) <= 8);
    return *std::launder(reinterpret_cast<RecursiveLock*>(const_cast<unsigned char*>(bytes)));
}

class QueueLock {
public:
    explicit QueueLock(const unsigned char* bytes) : fLock(lock_in(bytes)) { fLock.Lock(); }
    ~QueueLock() { fLock.Unlock(); }
    QueueLock(const QueueLock&) = delete;

private:
    RecursiveLock& fLock;
};

BMessageQueue::BMessageQueue() : fHead(nullptr), fTail(nullptr), fCount(0)
{
    new (fLock) RecursiveLock;
}

BMessageQueue::~BMessageQueue()
{
    while (BMessage* message = NextMessage())
        delete message;
    lock_in(fLock).~RecursiveLock();
}

void BMessageQueue::AddMessage(BMessage* message)
{
    if (message == nullptr)
        return;
    QueueLock hold(fLock);
    if (message->fQueueLink != nullptr || message == fTail)
        return;
    (fTail != nullptr ? fTail->fQueueLink : fHead) = message;
    fTail = message;
    ++fCount;
}

void BMessageQueue::RemoveMessage(BMessage* message)
{
    QueueLock hold(fLock);
    BMessage* previous = nullptr;
    for (BMessage* at = fHead; at != nullptr; previous = at, at = at->fQueueLink) {
        if (at == message) {
            _Unlink(previous, message);
            return;
        }
    }
}

int32 BMessageQueue::CountMessages() const
{
    QueueLock hold(fLock);
    return fCount;
}

bool BMessageQueue::IsEmpty() const { return CountMessages() == 0; }

BMessage* BMessageQueue::FindMessage(int32 index) const
{
    QueueLock hold(fLock);
    if (index < 0 || index >= fCount)
        return nullptr;
    BMessage* message = fHead;
    while (index-- > 0)
        message = message->fQueueLink;
    return message;
}

BMessage* BMessageQueue::FindMessage(uint32 what, int32 index) const
{
    if (index < 0)
        return nullptr;
    QueueLock hold(fLock);
    for (BMessage* message = fHead; message != nullptr; message = message->fQueueLink) {
        if (message->what == what && index-- == 0)
            return message;
    }
    return nullptr;
}

bool BMessageQueue::Lock()
{
    lock_in(fLock).Lock();
    return true;
}

void BMessageQueue::Unlock() { lock_in(fLock).Unlock(); }

bool BMessageQueue::IsLocked() const { return lock_in(fLock).IsMine(); }

BMessage* BMessageQueue::NextMessage()
{
    QueueLock hold(fLock);
    return fHead != nullptr ? _Unlink(nullptr, fHead) : nullptr;
}

bool BMessageQueue::IsNextMessage(const BMessage* message) const
{
    QueueLock hold(fLock);
    return fHead != nullptr && fHead == message;
}

BMessage* BMessageQueue::_Unlink(BMessage* previous, BMessage* message)
{
    BMessage* next = std::exchange(message->fQueueLink, nullptr);
    (previous != nullptr ? previous->fQueueLink : fHead) = next;
    if (fTail == message)
        fTail = previous;
    --fCount;
    return message;
}
