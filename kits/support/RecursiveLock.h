#ifndef SUPPORT_RECURSIVE_LOCK_H
#define SUPPORT_RECURSIVE_LOCK_H

#include <OS.h>

#include <atomic>

#include <linux/membarrier.h>
#include <sched.h>

#include "support/Futex.h"

namespace BPrivate {

// The calling thread's id, as find_thread(nullptr) gives it, from a word of the thread's own.
inline constinit thread_local thread_id tThread
    __attribute__((visibility("hidden"), tls_model("initial-exec"))) = 0;

inline thread_id current_thread()
{
    if (__builtin_expect(tThread == 0, 0))
        tThread = find_thread(nullptr);
    return tThread;
}

// Returns after every running thread of the process has passed a memory fence; false if the host
// can not do that.
inline bool all_threads_barrier()
{
    static const bool sRegistered =
        syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0, 0) == 0;
    return sRegistered && syscall(SYS_membarrier, MEMBARRIER_CMD_PRIVATE_EXPEDITED, 0, 0) == 0;
}

// A moment that leaves the processor to its other thread.
inline void pause_thread()
{
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

// Whether a lock may be freed while a thread is still on its way out of Unlock().
enum class LockLife { Any, Forever };

// A lock that its holder may take again. Free, a pair costs two locked memory operations, or one
// if the lock lives for ever; contended, the waiting threads sleep in the kernel. It needs no
// construction beyond zeroes.
template <LockLife kLife>
class BasicRecursiveLock {
public:
    constexpr BasicRecursiveLock() = default;
    BasicRecursiveLock(const BasicRecursiveLock&) = delete;
    BasicRecursiveLock& operator=(const BasicRecursiveLock&) = delete;

    void Lock() { LockUntil(B_INFINITE_TIMEOUT); }

    // False if another thread has the lock, or the calling one never asked for its id.
    bool TakeFree()
    {
        const thread_id me = tThread;
        const thread_id owner = Owner();
        if (owner == me && me != 0) {
            ++fDepth;
            return true;
        }
        uint32 state = kFree;
        if (me == 0 || !fState.compare_exchange_strong(state, kHeld, std::memory_order_acquire,
                                                       std::memory_order_relaxed))
            return false;
        fOwner.store(me, std::memory_order_relaxed);
        fDepth = 1;
        return true;
    }

    // False if the lock was not free before system_time() reached `deadline`. 0 only tries.
    bool LockUntil(bigtime_t deadline)
    {
        const thread_id me = current_thread();
        if (fOwner.load(std::memory_order_relaxed) == me) {
            ++fDepth;
            return true;
        }
        uint32 state = kFree;
        if (!fState.compare_exchange_strong(state, kHeld, std::memory_order_acquire,
                                            std::memory_order_relaxed) &&
            (deadline == 0 || !_LockTaken(deadline)))
            return false;
        fOwner.store(me, std::memory_order_relaxed);
        fDepth = 1;
        return true;
    }

    // Does nothing if the calling thread does not hold the lock.
    void Unlock()
    {
        if (IsMine() && --fDepth == 0)
            _Release();
    }

    // Gives all levels back; returns how many there were, for LockTimes().
    int32 UnlockAll()
    {
        if (!IsMine())
            return 0;
        const int32 depth = fDepth;
        fDepth = 0;
        _Release();
        return depth;
    }

    void LockTimes(int32 depth)
    {
        if (depth <= 0)
            return;
        Lock();
        fDepth += depth - 1;
    }

    // Unlocks, and lets a thread that waits have its turn before the caller comes back for the
    // lock: a loop that takes it again and again would starve the others.
    void UnlockAllFairly()
    {
        const bool others = fWaiting.load(std::memory_order_relaxed) > 0;
        const uint32 grants = fGrants.load(std::memory_order_relaxed);
        UnlockAll();
        if (!others)
            return;
        const bigtime_t limit = system_time() + kTurn;
        while (fGrants.load(std::memory_order_relaxed) == grants &&
               fWaiting.load(std::memory_order_relaxed) > 0 && system_time() < limit)
            sched_yield();
    }

    bool IsMine() const
    {
        const thread_id owner = Owner();
        return owner != 0 && owner == tThread;  // which who took a lock has asked for
    }
    // 0 if the lock is free.
    thread_id Owner() const { return fOwner.load(std::memory_order_relaxed); }
    // Levels of the calling thread.
    int32 Depth() const { return IsMine() ? fDepth : 0; }
    // Threads that hold or want the lock.
    int32 Requests() const
    {
        return static_cast<int32>(fWaiting.load(std::memory_order_relaxed)) + (Owner() != 0);
    }

private:
    enum : uint32 { kFree, kHeld, kContended };  // contended: somebody may sleep
    static constexpr int kSpins = 50;
    static constexpr bigtime_t kTurn = 2000;  // microseconds, for a waiting thread to come

    void _Release()
    {
        fOwner.store(0, std::memory_order_relaxed);
        if constexpr (kLife == LockLife::Forever) {
            // Without a fence between the two: a thread that begins to wait makes one happen
            // here, by its all_threads_barrier().
            fState.store(kFree, std::memory_order_release);
            std::atomic_signal_fence(std::memory_order_seq_cst);
            if (__builtin_expect(fWaiting.load(std::memory_order_relaxed) != 0, 0))
                _WakeOne();
        } else if (fState.exchange(kFree, std::memory_order_release) == kContended)
            _WakeOne();
    }

    // Apart, so that who finds nobody in the way pays nothing for them.
    [[gnu::cold, gnu::noinline]] void _WakeOne() { futex_wake(fState, 1); }
    [[gnu::cold, gnu::noinline]] bool _LockTaken(bigtime_t deadline)
    {
        return _Spin() || _Wait(deadline);
    }

    // Most holders are soon done. True if the lock could be taken without going to sleep for it,
    // which costs as much as several such turns; where others sleep already, they come first.
    bool _Spin()
    {
        for (int i = 0; i < kSpins; i++) {
            if (fState.load(std::memory_order_relaxed) == kContended ||
                fWaiting.load(std::memory_order_relaxed) != 0)
                return false;
            uint32 state = kFree;
            if (fState.load(std::memory_order_relaxed) == kFree &&
                fState.compare_exchange_weak(state, kHeld, std::memory_order_acquire,
                                             std::memory_order_relaxed))
                return true;
            pause_thread();
        }
        return false;
    }

    bool _Wait(bigtime_t deadline)
    {
        fWaiting.fetch_add(1);
        const bool seen = kLife == LockLife::Any || all_threads_barrier();
        bool locked = true;
        while (fState.exchange(kContended, std::memory_order_acquire) != kFree) {
            const bigtime_t now = deadline != B_INFINITE_TIMEOUT || !seen ? system_time() : 0;
            if (now >= deadline) {
                locked = false;
                break;
            }
            // Where the host has no such barrier, a wake-up may be missed.
            futex_wait(fState, kContended, seen ? deadline : min_c(deadline, now + kTurn));
        }
        fWaiting.fetch_sub(1, std::memory_order_relaxed);
        if (locked)
            fGrants.fetch_add(1, std::memory_order_relaxed);
        return locked;
    }

    std::atomic<uint32> fState{kFree};
    std::atomic<thread_id> fOwner{0};
    int32 fDepth = 0;  // the owner's
    std::atomic<uint32> fWaiting{0};
    std::atomic<uint32> fGrants{0};  // how often somebody who had to wait got the lock
};

using RecursiveLock = BasicRecursiveLock<LockLife::Any>;

}  // namespace BPrivate

#endif  // SUPPORT_RECURSIVE_LOCK_H
