#ifndef _LOCKER_H
#define _LOCKER_H

#include <OS.h>
#include <SupportDefs.h>

/* A lock that its holder may take again, giving it back as often. Free, it costs no call into the
   system. Nobody may hold or want a locker that is deleted. */
class BLocker {
public:
    BLocker();
    BLocker(const char* name);
    BLocker(bool benaphoreStyle);  // every locker is a quick one, whatever is asked for
    BLocker(const char* name, bool benaphoreStyle);
    virtual ~BLocker();

    status_t InitCheck() const;

    bool Lock();
    /* `timeout` in microseconds. B_TIMED_OUT; 0 or less only tries. */
    status_t LockWithTimeout(bigtime_t timeout);
    void Unlock();  // does nothing for a thread that does not hold the lock

    thread_id LockingThread() const;  // B_ERROR if the lock is free
    bool IsLocked() const;            // by the calling thread
    int32 CountLocks() const;         // of the thread that holds it
    int32 CountLockRequests() const;  // threads that hold or want it
    sem_id Sem() const;               // none stands behind: B_BAD_SEM_ID

private:
    BLocker(const BLocker&) = delete;
    BLocker& operator=(const BLocker&) = delete;

    alignas(8) unsigned char fLock[32];  // a BPrivate::RecursiveLock
};

#endif  // _LOCKER_H
