#ifndef KERNEL_THREADS_H
#define KERNEL_THREADS_H

// The kernel kit's own picture of a thread, and how threads wait.

#include <OS.h>

#include <pthread.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "support/Mutex.h"

namespace BPrivate {

struct Thread;

// Threads that wait for one object, first come first served. The object's own mutex guards it.
class WaitList {
public:
    struct Waiter {
        Waiter* previous = nullptr;
        Waiter* next = nullptr;
        Thread* thread = nullptr;
        int32 count = 1;         // what it waits for: so many units
        status_t result = B_OK;  // as Wake() was told
        bool queued = false;
    };

    bool IsEmpty() const { return fFirst == nullptr; }
    Waiter* First() const { return fFirst; }

    // Waits for Wake() until system_time() reaches `deadline`, and returns its result, B_TIMED_OUT,
    // or B_INTERRUPTED. Does not return to a thread that was killed: its stack is unwound from
    // here. A table's slot may be another's then, and is left unlocked; else the lock is held
    // again.
    status_t Wait(std::unique_lock<Mutex>& held, Waiter& waiter, bigtime_t deadline, uint32 flags,
                  thread_state state, sem_id sem = -1);
    status_t Wait(MutexLock& held, Waiter& waiter, bigtime_t deadline, uint32 flags,
                  thread_state state);
    void Wake(Waiter* waiter, status_t result);
    void WakeFirst(status_t result);
    void WakeAll(status_t result);

private:
    template <class Held>
    status_t _Wait(Held& held, Waiter& waiter, bigtime_t deadline, uint32 flags, thread_state state,
                   sem_id sem);
    void _Append(Waiter* waiter);
    void _Remove(Waiter* waiter);

    Waiter* fFirst = nullptr;
    Waiter* fLast = nullptr;
};

struct Thread {
    thread_id id = 0;
    pthread_t handle = {};
    thread_func entry = nullptr;  // null for a thread that the kit did not start
    void* data = nullptr;

    std::atomic<uint32> gate{0};       // 1: the entry function may run
    std::atomic<uint32> suspended{0};  // 1: stays in the signal handler
    std::atomic<uint32> wake{0};       // 1: a wait of this thread is over
    std::atomic<bool> killed{false};
    std::atomic<int32> state{B_THREAD_RUNNING};
    std::atomic<int32> sem{-1};  // that it waits for
    std::atomic<int32> priority{B_NORMAL_PRIORITY};

    // The thread's own.
    std::vector<std::pair<void (*)(void*), void*>> exit_callbacks;
    status_t exit_status = B_OK;
    bool exiting = false;

    Mutex lock;
    char name[B_OS_NAME_LENGTH] GUARDED_BY(lock) = {};
    bool dead GUARDED_BY(lock) = false;
    WaitList waiting_for_end GUARDED_BY(lock);
    bool has_mail GUARDED_BY(lock) = false;
    int32 mail_code GUARDED_BY(lock) = 0;
    thread_id mail_sender GUARDED_BY(lock) = 0;
    std::vector<char> mail GUARDED_BY(lock);
    WaitList readers GUARDED_BY(lock);
    WaitList senders GUARDED_BY(lock);
};

// The calling thread's; registers a thread that the kit did not start.
Thread* current();
// A thread of this process that is alive; null if there is none.
std::shared_ptr<Thread> find(thread_id id);
// Those of this process, by rising id.
std::vector<std::shared_ptr<Thread>> all_threads();

// Ends the calling thread, if it was killed, by unwinding its stack. Never with a lock held.
void end_if_killed();

// Sleeps until system_time() reaches `deadline`: B_OK, or B_INTERRUPTED by a signal.
status_t sleep_until(bigtime_t deadline, uint32 flags);

// Turns the timeout of a call, with its flags, into a time of system_time()'s base. B_BAD_VALUE.
status_t deadline_from(uint32 flags, bigtime_t timeout, bigtime_t* deadline);

// A name as the info structures hold it: cut off, always terminated.
void copy_name(char (&into)[B_OS_NAME_LENGTH], const char* name, const char* unnamed);

}  // namespace BPrivate

#endif  // KERNEL_THREADS_H
