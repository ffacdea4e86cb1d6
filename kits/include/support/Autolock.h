#ifndef _AUTOLOCK_H
#define _AUTOLOCK_H

#include <Locker.h>
#include <Looper.h>

/* Locks in its constructor, and gives back in its destructor what it got. */
class BAutolock {
public:
    BAutolock(BLooper* looper);
    BAutolock(BLocker* locker);
    BAutolock(BLocker& locker);
    ~BAutolock();

    bool IsLocked();  // whether this object holds a lock
    bool Lock();      // again after Unlock(); does nothing while it holds one
    void Unlock();

private:
    BAutolock(const BAutolock&) = delete;
    BAutolock& operator=(const BAutolock&) = delete;

    BLocker* fLocker;
    BLooper* fLooper;
    bool fHeld;
};

inline BAutolock::BAutolock(BLooper* looper)
    : fLocker(nullptr), fLooper(looper), fHeld(looper != nullptr && looper->Lock())
{
}

inline BAutolock::BAutolock(BLocker* locker)
    : fLocker(locker), fLooper(nullptr), fHeld(locker != nullptr && locker->Lock())
{
}

inline BAutolock::BAutolock(BLocker& locker)
    : fLocker(&locker), fLooper(nullptr), fHeld(locker.Lock())
{
}

inline BAutolock::~BAutolock() { Unlock(); }

inline bool BAutolock::IsLocked() { return fHeld; }

inline bool BAutolock::Lock()
{
    if (fHeld)
        return true;
    if (fLocker != nullptr)
        fHeld = fLocker->Lock();
    else if (fLooper != nullptr)
        fHeld = fLooper->Lock();
    return fHeld;
}

inline void BAutolock::Unlock()
{
    if (!fHeld)
        return;
    fHeld = false;
    if (fLocker != nullptr)
        fLocker->Unlock();
    else
        fLooper->Unlock();
}

#endif  // _AUTOLOCK_H
