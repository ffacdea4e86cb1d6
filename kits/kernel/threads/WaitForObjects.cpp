// wait_for_objects(): one wait for files, semaphores, ports and threads.

#include <errno.h>
#include <limits.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include "kernel/threads/ObjectWatch.h"
#include "kernel/threads/Threads.h"
#include "kernel/threads/WaitableObjects.h"
#include "support/Mutex.h"

namespace BPrivate {

std::atomic<int> gObjectWatchers{0};

static Mutex sWatchLock;
static std::vector<int>* sWatchers GUARDED_BY(sWatchLock);  // their event descriptors

void wake_object_watchers()
{
    MutexLock hold(sWatchLock);
    if (sWatchers == nullptr)
        return;
    for (int descriptor : *sWatchers)
        eventfd_write(descriptor, 1);
}

// Hears of every change of an object while it lives.
class ObjectWatcher {
public:
    ObjectWatcher() : fDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        MutexLock hold(sWatchLock);
        if (sWatchers == nullptr)
            sWatchers = new std::vector<int>;
        sWatchers->push_back(fDescriptor);
        gObjectWatchers.store(static_cast<int>(sWatchers->size()));
    }

    ~ObjectWatcher()
    {
        MutexLock hold(sWatchLock);
        std::erase(*sWatchers, fDescriptor);
        gObjectWatchers.store(static_cast<int>(sWatchers->size()));
        close(fDescriptor);
    }

    int Descriptor() const { return fDescriptor; }

    void Clear()
    {
        eventfd_t value;
        eventfd_read(fDescriptor, &value);
    }

private:
    int fDescriptor;
};

static short poll_events(uint16 events)
{
    short wanted = 0;
    if (events & B_EVENT_READ)
        wanted |= POLLIN;
    if (events & B_EVENT_WRITE)
        wanted |= POLLOUT;
    if (events & B_EVENT_PRIORITY_READ)
        wanted |= POLLPRI;
    return wanted;
}

static uint16 object_events(short found)
{
    uint16 events = 0;
    if (found & POLLIN)
        events |= B_EVENT_READ;
    if (found & POLLOUT)
        events |= B_EVENT_WRITE;
    if (found & POLLPRI)
        events |= B_EVENT_PRIORITY_READ;
    if (found & POLLERR)
        events |= B_EVENT_ERROR;
    if (found & POLLHUP)
        events |= B_EVENT_DISCONNECTED;
    if (found & POLLNVAL)
        events |= B_EVENT_INVALID;
    return events;
}

static const uint16 kAlwaysTold = B_EVENT_ERROR | B_EVENT_DISCONNECTED | B_EVENT_INVALID;

// What holds now of an object other than a file.
static uint16 events_of(const object_wait_info& info)
{
    bool valid = true;
    switch (info.type) {
        case B_OBJECT_TYPE_SEMAPHORE: {
            const bool ready = semaphore_is_ready(info.object, &valid);
            if (!valid)
                return B_EVENT_INVALID;
            return ready ? uint16(B_EVENT_ACQUIRE_SEMAPHORE) : uint16(0);
        }
        case B_OBJECT_TYPE_PORT:
            return port_events(info.object);
        case B_OBJECT_TYPE_THREAD:
            return find(info.object) == nullptr ? uint16(B_EVENT_INVALID) : uint16(0);
        default:
            return B_EVENT_INVALID;
    }
}

}  // namespace BPrivate

using namespace BPrivate;

ssize_t wait_for_objects(object_wait_info* infos, int numInfos)
{
    return wait_for_objects_etc(infos, numInfos, 0, 0);
}

ssize_t wait_for_objects_etc(object_wait_info* infos, int numInfos, uint32 flags, bigtime_t timeout)
{
    bigtime_t deadline;
    if (numInfos < 0 || (infos == nullptr && numInfos > 0) ||
        deadline_from(flags, timeout, &deadline) != B_OK)
        return B_BAD_VALUE;
    ObjectWatcher watcher;
    if (watcher.Descriptor() < 0)
        return B_NO_MORE_FDS;
    std::vector<pollfd> files{{watcher.Descriptor(), POLLIN, 0}};
    std::vector<object_wait_info> wanted(infos, infos + numInfos);
    for (const object_wait_info& info : wanted) {
        if (info.type == B_OBJECT_TYPE_FD)
            files.push_back({info.object, poll_events(info.events), 0});
    }
    for (;;) {
        watcher.Clear();
        end_if_killed();
        const bigtime_t now = system_time();
        const bigtime_t left = deadline > now ? deadline - now : 0;
        ssize_t ready = 0;
        bool polled = false;
        for (int i = 0; i < numInfos; ++i) {
            infos[i].events = 0;
            if (wanted[i].type != B_OBJECT_TYPE_FD)
                infos[i].events = events_of(wanted[i]) & (wanted[i].events | kAlwaysTold);
            else if (wanted[i].object < 0)
                infos[i].events = B_EVENT_INVALID;  // the host would not look at it
            ready += infos[i].events != 0;
        }
        // With something ready the files are only looked at.
        int wait_ms = 0;
        if (ready == 0 && deadline == B_INFINITE_TIMEOUT)
            wait_ms = -1;
        else if (ready == 0 && left > 0)
            wait_ms = static_cast<int>(std::min<bigtime_t>((left + 999) / 1000, INT_MAX));
        if (poll(files.data(), files.size(), wait_ms) < 0) {
            if (errno == EINTR && (flags & B_CAN_INTERRUPT) != 0)
                return B_INTERRUPTED;
            if (errno != EINTR)
                return B_NO_MEMORY;
        } else {
            polled = true;
        }
        for (int i = 0, file = 1; polled && i < numInfos; ++i) {
            if (wanted[i].type != B_OBJECT_TYPE_FD)
                continue;
            const uint16 events = object_events(files[file++].revents);
            ready += events != 0;
            infos[i].events |= events;
        }
        if (ready > 0)
            return ready;
        if (deadline != B_INFINITE_TIMEOUT && system_time() >= deadline)
            return (flags & B_RELATIVE_TIMEOUT) != 0 && timeout <= 0 ? B_WOULD_BLOCK : B_TIMED_OUT;
    }
}
