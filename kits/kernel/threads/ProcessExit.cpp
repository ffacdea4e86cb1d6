// Notices exit() before anything is taken down: it starts with the calling thread's own objects.

#include "kernel/threads/ProcessExit.h"

#include <atomic>

namespace BPrivate {

static constinit std::atomic<void (*)()> sCallback = nullptr;

// A thread that ends by itself stops its watch first, so that only exit() finds one.
struct Watch {
    bool on = false;
    ~Watch()
    {
        if (!on)
            return;
        if (auto* callback = sCallback.exchange(nullptr))
            callback();
    }
};

static thread_local Watch tWatch;

void on_process_exit(void (*callback)()) { sCallback = callback; }

void watch_for_exit() { tWatch.on = true; }

void stop_watching_for_exit() { tWatch.on = false; }

}  // namespace BPrivate
