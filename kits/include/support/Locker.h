#ifndef _LOCKER_H
#define _LOCKER_H

#include <OS.h>
#include <SupportDefs.h>

#include <atomic>

/* A lock that its holder may take again. Free, it costs no call into the system, unless it is to be
   a semaphore alone. Any thread gives back what another one took. Deleting the locker wakes who
   waits for it, with nothing locked. */
class BLocker {
public:
    BLocker();
    BLocker(const char* name);
    /* Benaphore style, as without it: the semaphore is only for threads that have to wait. */
    BLocker(bool benaphoreStyle);
    BLocker(const char* name, bool benaphoreStyle);
    virtual ~BLocker();

    status_t InitCheck() const;  // B_NO_MORE_SEMS

    bool Lock();  // false: the locker was deleted
    /* `timeout` in microseconds, 0 or less only tries: B_TIMED_OUT. B_BAD_SEM_ID: the locker was
       deleted. */
    status_t LockWithTimeout(bigtime_t timeout);
    void Unlock();  // does nothing while the lock is free

    thread_id LockingThread() const;  // B_ERROR if the lock is free
    bool IsLocked() const;            // by the calling thread
    int32 CountLocks() const;         // of the thread that holds it
    int32 CountLockRequests() const;  // threads that hold or want it
    sem_id Sem() const;

private:
    BLocker(const BLocker&) = delete;
    BLocker& operator=(const BLocker&) = delete;

    void _Init(const char* name, bool benaphoreStyle);
    status_t _Acquire(bigtime_t timeout);
    bool _Withdraw();

    std::atomic<int32> fRequests{0};  // threads that hold or want it
    std::atomic<thread_id> fOwner{0};
    std::atomic<int32> fDepth{0};  // the owner's
    sem_id fSemaphore = -1;
    bool fBenaphore = true;  // only who has to wait acquires the semaphore
};

#endif  // _LOCKER_H
