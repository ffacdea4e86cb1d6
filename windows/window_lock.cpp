// Locks of windows, taken so that threads which want one another's all get them. Any thread.
//
// A handler runs with its window locked, on that window's thread or on that of the call which led
// to it. If it wants a window whose handler wants, perhaps over others in between, the first one's,
// all of them would wait for ever. So whoever waits says for what, and looks now and then whether
// the circle closes at a window that it holds: then it gives that one up until it can have both.
// The handler goes on with both, as ever, but others may have drawn into its window meanwhile.

#include "windows/window_lock.h"

#include "runtime/guarded.h"
#include "runtime/lasting_locker.h"
#include "windows/window.h"

#include <Bitmap.h>
#include <View.h>

#include <utility>

static const bigtime_t kLookAgain_us = 10'000;

// One thread that waits, on its own stack.
struct Wait {
    thread_id thread;
    BLooper* looper;
    Wait* next;
};

static LastingLocker sWaitsLock("waits");
static Wait* sWaits GUARDED_BY(sWaitsLock);

namespace {

class Waiting {
public:
    explicit Waiting(BLooper* looper) : fWait{find_thread(nullptr), looper, nullptr}
    {
        Autolock lock(sWaitsLock);
        fWait.next = std::exchange(sWaits, &fWait);
    }
    ~Waiting()
    {
        Autolock lock(sWaitsLock);
        Wait** place = &sWaits;
        while (*place != &fWait)
            place = &(*place)->next;
        *place = fWait.next;
    }
    Waiting(const Waiting&) = delete;

    // The looper of this thread that what it waits for is waiting for, in the end; null for none.
    BLooper* CircleClosesAt() const;

private:
    Wait fWait;
};

}  // namespace

static const Wait* wait_of(thread_id thread) REQUIRES(sWaitsLock)
{
    const Wait* wait = sWaits;
    while (wait != nullptr && wait->thread != thread)
        wait = wait->next;
    return wait;
}

BLooper* Waiting::CircleClosesAt() const
{
    Autolock lock(sWaitsLock);
    const Wait* wait = &fWait;
    // A circle that this thread is not in has no end.
    for (int steps = 0; wait != nullptr && steps < 1000; steps++) {
        const thread_id holder = wait->looper->LockingThread();
        if (holder == fWait.thread)
            return wait->looper;
        wait = wait_of(holder);
    }
    return nullptr;
}

static bool is_taken(status_t status) { return status == B_TIMED_OUT || status == B_WOULD_BLOCK; }

namespace {

// Gives up a looper that the calling thread holds, with the bitmap of a window, and takes all of it
// back at its end, once the looper is held again.
class GivenUp {
public:
    explicit GivenUp(BLooper* looper) : fLooper(looper), fLevels(looper->CountLocks())
    {
        auto* window = dynamic_cast<MyWinClass*>(looper);
        if (window != nullptr && window->fRaster != nullptr && window->fRaster->IsLocked()) {
            fRaster = window->fRaster;
            fRaster->Unlock();
        }
        for (int32 i = 0; i < fLevels; i++)
            fLooper->Unlock();
    }
    ~GivenUp()
    {
        for (int32 i = 1; i < fLevels; i++)
            fLooper->Lock();
        if (fRaster != nullptr)
            fRaster->Lock();
    }
    GivenUp(const GivenUp&) = delete;

private:
    BLooper* const fLooper;
    const int32 fLevels;
    BBitmap* fRaster = nullptr;
};

}  // namespace

static bool lock_looper(BLooper* looper);

// Takes both, one of which is held already, without waiting for either while it holds the other.
// False, with `held` alone, if the window is gone.
static bool take_both(BLooper* held, BLooper* wanted)
{
    const GivenUp given_up(held);
    BLooper* first = wanted;
    BLooper* second = held;
    bool both = false;
    while (lock_looper(first)) {
        both = second->LockWithTimeout(0) == B_OK;
        if (both)
            break;
        first->Unlock();
        std::swap(first, second);
    }
    if (!both)
        lock_looper(held);
    return both;
}

// The thread may hold more than one: each is given up where a circle closes at it.
static bool wait_for(BLooper* wanted)
{
    const Waiting waiting(wanted);
    for (;;) {
        const status_t status = wanted->LockWithTimeout(kLookAgain_us);
        if (!is_taken(status))
            return status == B_OK;
        if (BLooper* const held = waiting.CircleClosesAt())
            return take_both(held, wanted);
    }
}

static bool lock_looper(BLooper* looper)
{
    const status_t status = looper->LockWithTimeout(0);
    return status == B_OK || (is_taken(status) && wait_for(looper));
}

bool lock_window(BWindow* window)
{
    return window != nullptr && guarded(false, [=] { return lock_looper(window); });
}

WindowLock::WindowLock(BWindow* window) : fWindow(lock_window(window) ? window : nullptr) {}

WindowLock::WindowLock(const BView* view) : WindowLock(view != nullptr ? view->Window() : nullptr)
{
}

WindowLock::WindowLock(WindowLock&& other) noexcept : fWindow(std::exchange(other.fWindow, nullptr))
{
}

WindowLock& WindowLock::operator=(WindowLock&& other) noexcept
{
    std::swap(fWindow, other.fWindow);
    return *this;
}
