#ifndef _LOCKER_H
#define _LOCKER_H

#include <OS.h>
#include <SupportDefs.h>

class BLocker {
public:
    BLocker();
    BLocker(const char* name);
    BLocker(bool benaphoreStyle);
    BLocker(const char* name, bool benaphoreStyle);
    virtual ~BLocker();
    status_t InitCheck() const;
    bool Lock();
    status_t LockWithTimeout(bigtime_t timeout);
    void Unlock();
    thread_id LockingThread() const;
    bool IsLocked() const;
    int32 CountLocks() const;
    int32 CountLockRequests() const;
    sem_id Sem() const;

private:
};

#endif  // _LOCKER_H
