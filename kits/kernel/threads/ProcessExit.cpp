// Notices exit() before anything is taken down: it starts with the calling thread's own objects.

#include "kernel/threads/ProcessExit.h"

#include <atomic>

namespace BPrivate {

static constinit std::atomic<void (*)()> sCallbacks[4] = {};

// A thread that ends by itself stops its watch first, so that only exit() finds one.
struct Watch {
    bool on = false;
    ~Watch()
    {
        if (!on)
            return;
        for (auto& place : sCallbacks) {
            if (auto* callback = place.exchange(nullptr))
                callback();
        }
    }
};

static thread_local Watch tWatch;

void on_process_exit(void (*callback)())
{
    for (auto& place : sCallbacks) {
        void (*known)() = nullptr;
        if (place.compare_exchange_strong(known, callback) || known == callback)
            return;
    }
}

void watch_for_exit() { tWatch.on = true; }

void stop_watching_for_exit() { tWatch.on = false; }

}  // namespace BPrivate
