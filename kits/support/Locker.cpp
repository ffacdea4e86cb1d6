// BLocker: a count of those who hold or want it, and a semaphore for those who have to wait.

#include <Locker.h>

#include "support/RecursiveLock.h"

BLocker::BLocker() { _Init(nullptr, true); }

BLocker::BLocker(const char* name) { _Init(name, true); }

BLocker::BLocker(bool benaphoreStyle) { _Init(nullptr, benaphoreStyle); }

BLocker::BLocker(const char* name, bool benaphoreStyle) { _Init(name, benaphoreStyle); }

BLocker::~BLocker() { delete_sem(fSemaphore); }

void BLocker::_Init(const char* name, bool benaphoreStyle)
{
    fBenaphore = benaphoreStyle;
    fSemaphore = create_sem(benaphoreStyle ? 0 : 1, name != nullptr ? name : "a locker");
}

status_t BLocker::InitCheck() const { return fSemaphore >= 0 ? B_OK : fSemaphore; }

bool BLocker::Lock() { return LockWithTimeout(B_INFINITE_TIMEOUT) == B_OK; }

// By a thread whose first lock it is.
[[gnu::cold, gnu::noinline]] static status_t lock_first(BLocker* locker, bigtime_t timeout)
{
    BPrivate::current_thread();
    return locker->LockWithTimeout(timeout);
}

// The way through a free lock is short, and calls nothing.
status_t BLocker::LockWithTimeout(bigtime_t timeout)
{
    const thread_id me = BPrivate::tThread;
    if (me == 0)
        return lock_first(this, timeout);
    if (fOwner.load(std::memory_order_relaxed) == me) {
        fDepth.fetch_add(1, std::memory_order_relaxed);
        return B_OK;
    }
    if (fRequests.fetch_add(1, std::memory_order_acquire) > 0 || !fBenaphore)
        return _Acquire(timeout);
    fOwner.store(me, std::memory_order_relaxed);
    fDepth.store(1, std::memory_order_relaxed);
    return B_OK;
}

// A locker whose semaphore went while this thread waited is gone: nothing of it is read then.
status_t BLocker::_Acquire(bigtime_t timeout)
{
    const sem_id semaphore = fSemaphore;
    const status_t status =
        timeout == B_INFINITE_TIMEOUT
            ? acquire_sem(semaphore)
            : acquire_sem_etc(semaphore, 1, B_RELATIVE_TIMEOUT, max_c(timeout, 0));
    if (status == B_BAD_SEM_ID)
        return status;
    if (status != B_OK && _Withdraw())
        return B_TIMED_OUT;
    fOwner.store(BPrivate::current_thread(), std::memory_order_relaxed);
    fDepth.store(1, std::memory_order_relaxed);
    return B_OK;
}

// Ends a request that was not granted in time. False if there is nobody left who holds or wants the
// lock: then it is on its way to this thread.
bool BLocker::_Withdraw()
{
    if (!fBenaphore) {
        fRequests.fetch_sub(1, std::memory_order_relaxed);
        return true;
    }
    int32 requests = fRequests.load(std::memory_order_relaxed);
    while (requests > 1) {
        if (fRequests.compare_exchange_weak(requests, requests - 1, std::memory_order_relaxed))
            return true;
    }
    return acquire_sem(fSemaphore) != B_OK;
}

void BLocker::Unlock()
{
    if (fOwner.load(std::memory_order_relaxed) == 0 ||
        (fDepth.load(std::memory_order_relaxed) > 1 &&
         fDepth.fetch_sub(1, std::memory_order_relaxed) > 1))
        return;
    fDepth.store(0, std::memory_order_relaxed);
    fOwner.store(0, std::memory_order_relaxed);
    // The next one may delete the locker as soon as it has it.
    const sem_id semaphore = fSemaphore;
    const bool always = !fBenaphore;
    if (fRequests.fetch_sub(1, std::memory_order_release) > 1 || always)
        release_sem(semaphore);
}

thread_id BLocker::LockingThread() const
{
    const thread_id owner = fOwner.load(std::memory_order_relaxed);
    return owner != 0 ? owner : B_ERROR;
}

bool BLocker::IsLocked() const
{
    return fOwner.load(std::memory_order_relaxed) == BPrivate::current_thread();
}

int32 BLocker::CountLocks() const { return fDepth.load(std::memory_order_relaxed); }

int32 BLocker::CountLockRequests() const { return fRequests.load(std::memory_order_relaxed); }

sem_id BLocker::Sem() const { return fSemaphore; }
