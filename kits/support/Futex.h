#ifndef SUPPORT_FUTEX_H
#define SUPPORT_FUTEX_H

// Waiting on a 32-bit word of this process. Any thread; a wait may end early, so look again.

#include <OS.h>

#include <atomic>

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace BPrivate {

// Sleeps while `word` holds `expected`, until system_time() reaches `deadline` at the latest.
inline void futex_wait(std::atomic<uint32>& word, uint32 expected, bigtime_t deadline)
{
    timespec left;
    timespec* timeout = nullptr;
    if (deadline != B_INFINITE_TIMEOUT) {
        const bigtime_t now = system_time();
        if (deadline <= now)
            return;
        const bigtime_t wait = deadline - now;
        left.tv_sec = wait / 1000000;
        left.tv_nsec = wait % 1000000 * 1000;
        timeout = &left;
    }
    syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, expected, timeout, nullptr, 0);
}

inline void futex_wake(std::atomic<uint32>& word, int32 count)
{
    syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, count, nullptr, nullptr, 0);
}

// The system_time() that a relative timeout ends at; negative ones are over already.
inline bigtime_t deadline_after(bigtime_t timeout)
{
    if (timeout == B_INFINITE_TIMEOUT)
        return B_INFINITE_TIMEOUT;
    const bigtime_t now = system_time();
    if (timeout <= 0)
        return now;
    return timeout < B_INFINITE_TIMEOUT - now ? now + timeout : B_INFINITE_TIMEOUT;
}

}  // namespace BPrivate

#endif  // SUPPORT_FUTEX_H
