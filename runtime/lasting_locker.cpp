// Locks that are made by their first use. Any thread.

#include "runtime/lasting_locker.h"

BLocker& LastingLocker::_Make()
{
    auto* made = new BLocker(fName);
    BLocker* first = nullptr;
    if (fLocker.compare_exchange_strong(first, made, std::memory_order_acq_rel))
        return *made;
    delete made;
    return *first;
}
