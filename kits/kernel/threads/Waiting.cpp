// How threads wait: for their turn at an object, or for a time.

#include <errno.h>
#include <string.h>

#include "kernel/threads/Threads.h"
#include "support/Futex.h"

namespace BPrivate {

// Notes for thread_info, while a wait lasts, what the thread does.
class StateMark {
public:
    StateMark(Thread* self, thread_state state, sem_id sem) : fSelf(self)
    {
        self->sem.store(sem, std::memory_order_relaxed);
        self->state.store(state, std::memory_order_relaxed);
    }
    ~StateMark()
    {
        fSelf->state.store(B_THREAD_RUNNING, std::memory_order_relaxed);
        fSelf->sem.store(-1, std::memory_order_relaxed);
    }
    StateMark(const StateMark&) = delete;

private:
    Thread* fSelf;
};

// One sleep; true if a signal ended it.
static bool sleep_on(Thread* self, bigtime_t deadline)
{
    // The killer sets its mark before the word: either the mark or the word is seen.
    if (self->killed.load())
        return false;
    errno = 0;
    futex_wait(self->wake, 0, deadline);
    return errno == EINTR;
}

static void lock(std::unique_lock<Mutex>& held) { held.lock(); }
static void unlock(std::unique_lock<Mutex>& held) { held.unlock(); }

// Clang's analysis does not follow a holder that comes from a caller.
static void lock(MutexLock& held) THREAD_SAFETY(no_thread_safety_analysis) { held.Lock(); }
static void unlock(MutexLock& held) THREAD_SAFETY(no_thread_safety_analysis) { held.Unlock(); }

// Leaves `held` unlocked.
template <class Held>
status_t WaitList::_Wait(Held& held, Waiter& waiter, bigtime_t deadline, uint32 flags,
                         thread_state state, sem_id sem)
{
    Thread* self = current();
    waiter.thread = self;
    waiter.result = B_OK;
    self->wake.store(0);
    _Append(&waiter);
    unlock(held);

    status_t outcome;
    {
        StateMark mark(self, state, sem);
        for (;;) {
            const bool interrupted = sleep_on(self, deadline);
            if (self->killed.load())
                outcome = B_INTERRUPTED;
            else if (self->wake.load() != 0)
                return waiter.result;
            else if (deadline != B_INFINITE_TIMEOUT && system_time() >= deadline)
                outcome = B_TIMED_OUT;
            else if (interrupted && (flags & B_CAN_INTERRUPT) != 0)
                outcome = B_INTERRUPTED;
            else
                continue;
            break;
        }
    }
    lock(held);
    const bool woken = !waiter.queued;
    if (!woken)
        _Remove(&waiter);
    unlock(held);
    if (woken)
        return waiter.result;  // a killed thread passes on what it was given, and ends next time
    end_if_killed();
    return outcome;
}

status_t WaitList::Wait(std::unique_lock<Mutex>& held, Waiter& waiter, bigtime_t deadline,
                        uint32 flags, thread_state state, sem_id sem)
{
    return _Wait(held, waiter, deadline, flags, state, sem);
}

status_t WaitList::Wait(MutexLock& held, Waiter& waiter, bigtime_t deadline, uint32 flags,
                        thread_state state)
{
    const status_t status = _Wait(held, waiter, deadline, flags, state, -1);
    lock(held);
    return status;
}

void WaitList::Wake(Waiter* waiter, status_t result)
{
    _Remove(waiter);
    waiter->result = result;
    // After the store the waiter may be gone: the kernel is told the bare address.
    std::atomic<uint32>& word = waiter->thread->wake;
    word.store(1);
    futex_wake(word, 1);
}

void WaitList::WakeFirst(status_t result)
{
    if (fFirst != nullptr)
        Wake(fFirst, result);
}

void WaitList::WakeAll(status_t result)
{
    while (fFirst != nullptr)
        Wake(fFirst, result);
}

void WaitList::_Append(Waiter* waiter)
{
    waiter->queued = true;
    waiter->previous = fLast;
    waiter->next = nullptr;
    (fLast != nullptr ? fLast->next : fFirst) = waiter;
    fLast = waiter;
}

void WaitList::_Remove(Waiter* waiter)
{
    (waiter->previous != nullptr ? waiter->previous->next : fFirst) = waiter->next;
    (waiter->next != nullptr ? waiter->next->previous : fLast) = waiter->previous;
    waiter->queued = false;
}

status_t sleep_until(bigtime_t deadline, uint32 flags)
{
    Thread* self = current();
    self->wake.store(0);
    {
        StateMark mark(self, B_THREAD_ASLEEP, -1);
        while (!self->killed.load() && system_time() < deadline) {
            if (sleep_on(self, deadline) && (flags & B_CAN_INTERRUPT) != 0)
                return B_INTERRUPTED;
        }
    }
    end_if_killed();
    return B_OK;
}

status_t deadline_from(uint32 flags, bigtime_t timeout, bigtime_t* deadline)
{
    const bool relative = (flags & B_RELATIVE_TIMEOUT) != 0;
    const bool absolute = (flags & B_ABSOLUTE_TIMEOUT) != 0;
    if (relative && absolute)
        return B_BAD_VALUE;
    if (!relative && !absolute)
        *deadline = B_INFINITE_TIMEOUT;
    else if (relative)
        *deadline = deadline_after(timeout);
    else if ((flags & B_TIMEOUT_REAL_TIME_BASE) == 0)
        *deadline = timeout;
    else
        *deadline = timeout <= 0 ? 0 : deadline_after(timeout - real_time_clock_usecs());
    return B_OK;
}

void copy_name(char (&into)[B_OS_NAME_LENGTH], const char* name, const char* unnamed)
{
    const char* from = name != nullptr ? name : unnamed;
    const size_t length = strnlen(from, B_OS_NAME_LENGTH - 1);
    memcpy(into, from, length);
    memset(into + length, 0, B_OS_NAME_LENGTH - length);
}

}  // namespace BPrivate
