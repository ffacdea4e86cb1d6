#ifndef KERNEL_OBJECT_WATCH_H
#define KERNEL_OBJECT_WATCH_H

// Tells threads in wait_for_objects() that a semaphore, port or thread may have become ready.

#include <atomic>

namespace BPrivate {

extern std::atomic<int> gObjectWatchers;
void wake_object_watchers();

// After the change, with its object unlocked. A watcher counts itself before it looks at objects.
inline void objects_changed()
{
    if (gObjectWatchers.load(std::memory_order_relaxed) != 0)
        wake_object_watchers();
}

}  // namespace BPrivate

#endif  // KERNEL_OBJECT_WATCH_H
