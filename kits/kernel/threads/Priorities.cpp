// Priorities. Any thread.

#include "kernel/threads/Priorities.h"

#include <errno.h>
#include <sys/resource.h>

#include <algorithm>
#include <map>

#include "kernel/programs/HostProcess.h"
#include "support/Mutex.h"

namespace BPrivate {

static const size_t kMaxRemembered = 512;

// Ids come again: a number holds for the thread that began at that time.
struct Remembered {
    bigtime_t start_time;
    int32 priority;
};

struct Priorities {
    BPrivate::Mutex lock;
    std::map<thread_id, Remembered> of_others GUARDED_BY(lock);
};

static Priorities& priorities()
{
    static Priorities* const the = new Priorities;
    return *the;
}

int32 clamp_priority(int32 priority)
{
    return std::clamp<int32>(priority, B_IDLE_PRIORITY, B_REAL_TIME_PRIORITY);
}

static int nice_for(int32 priority)
{
    if (priority <= B_NORMAL_PRIORITY)
        return std::min(19, 2 * (B_NORMAL_PRIORITY - priority));
    if (priority < B_FIRST_REAL_TIME_PRIORITY)
        return -std::min(10, (priority - B_NORMAL_PRIORITY + 3) / 4);
    return -std::min(20, 11 + (priority - B_FIRST_REAL_TIME_PRIORITY) / 5);
}

// The lowest priority that is not nicer than that.
static int32 priority_for(int nice)
{
    int32 priority = B_IDLE_PRIORITY;
    while (priority < B_REAL_TIME_PRIORITY && nice_for(priority) > nice)
        ++priority;
    return priority;
}

status_t apply_priority(thread_id id, int32 priority)
{
    errno = 0;
    const int former = getpriority(PRIO_PROCESS, id);
    if (errno != 0)
        return B_BAD_THREAD_ID;
    const int nice = nice_for(priority);
    if (nice == former || setpriority(PRIO_PROCESS, id, nice) == 0 || errno == EACCES)
        return B_OK;
    return errno == EPERM ? B_NOT_ALLOWED : B_BAD_THREAD_ID;
}

int32 host_priority(thread_id id, bigtime_t start_time, int nice)
{
    Priorities& list = priorities();
    BPrivate::MutexLock hold(list.lock);
    const auto found = list.of_others.find(id);
    if (found != list.of_others.end() && found->second.start_time == start_time)
        return found->second.priority;
    return priority_for(nice);
}

static void remember(thread_id id, bigtime_t start_time, int32 priority)
{
    Priorities& list = priorities();
    BPrivate::MutexLock hold(list.lock);
    if (list.of_others.size() >= kMaxRemembered && !list.of_others.contains(id))
        list.of_others.erase(list.of_others.begin());
    list.of_others[id] = {start_time, priority};
}

status_t set_host_priority(thread_id id, int32 priority)
{
    HostProcess host;
    if (id <= 0 || !read_host_process(id, id, &host))
        return B_BAD_THREAD_ID;
    priority = clamp_priority(priority);
    const int32 former = host_priority(id, host.start_time, host.nice);
    if (former != priority) {
        if (status_t status = apply_priority(id, priority); status != B_OK)
            return status;
    }
    remember(id, host.start_time, priority);
    return former;
}

void begin_with_normal_priority(thread_id id)
{
    HostProcess host;
    if (read_host_process(id, id, &host))
        remember(id, host.start_time, B_NORMAL_PRIORITY);
}

void forget_priority(thread_id id)
{
    Priorities& list = priorities();
    BPrivate::MutexLock hold(list.lock);
    list.of_others.erase(id);
}

}  // namespace BPrivate
