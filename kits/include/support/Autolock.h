#ifndef _AUTOLOCK_H
#define _AUTOLOCK_H

class BLocker;
class BLooper;

class BAutolock {
public:
    BAutolock(BLooper* looper);
    BAutolock(BLocker* locker);
    BAutolock(BLocker& locker);
    ~BAutolock();
    bool IsLocked();
    bool Lock();
    void Unlock();

private:
};

#endif  // _AUTOLOCK_H
