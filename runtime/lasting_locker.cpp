// Locks that are made by their first use. Any thread.

#include "runtime/lasting_locker.h"

#include <mutex>
#include <new>

static constinit std::mutex sMaking;  // one at a time

BLocker& LastingLocker::_Make()
{
    const std::lock_guard<std::mutex> lock(sMaking);
    BLocker* locker = fLocker.load(std::memory_order_acquire);
    if (locker == nullptr) {
        locker = new (fRoom) BLocker(fName);
        fLocker.store(locker, std::memory_order_release);
    }
    return *locker;
}
