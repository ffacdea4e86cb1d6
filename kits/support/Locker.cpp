// BLocker over the lock that all of the kits share.

#include <Locker.h>

#include <new>

#include "support/RecursiveLock.h"

using BPrivate::RecursiveLock;

static RecursiveLock& lock_in(const unsigned char* bytes)
{
    static_assert(sizeof(RecursiveLock) <= 32 && alignof(RecursiveLock) <= 8);
    return *std::launder(reinterpret_cast<RecursiveLock*>(const_cast<unsigned char*>(bytes)));
}

BLocker::BLocker() { new (fLock) RecursiveLock; }

BLocker::BLocker(const char*) : BLocker() {}

BLocker::BLocker(bool) : BLocker() {}

BLocker::BLocker(const char*, bool) : BLocker() {}

BLocker::~BLocker() { lock_in(fLock).~RecursiveLock(); }

status_t BLocker::InitCheck() const { return B_OK; }

bool BLocker::Lock()
{
    lock_in(fLock).Lock();
    return true;
}

status_t BLocker::LockWithTimeout(bigtime_t timeout)
{
    return lock_in(fLock).LockUntil(BPrivate::deadline_after(timeout)) ? B_OK : B_TIMED_OUT;
}

void BLocker::Unlock() { lock_in(fLock).Unlock(); }

thread_id BLocker::LockingThread() const
{
    const thread_id owner = lock_in(fLock).Owner();
    return owner != 0 ? owner : B_ERROR;
}

bool BLocker::IsLocked() const { return lock_in(fLock).IsMine(); }

int32 BLocker::CountLocks() const { return lock_in(fLock).Depth(); }

int32 BLocker::CountLockRequests() const { return lock_in(fLock).Requests(); }

sem_id BLocker::Sem() const { return B_BAD_SEM_ID; }
