// What is known about threads, here and, as far as the host tells, in other processes.

#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "kernel/programs/HostProcess.h"
#include "kernel/threads/Priorities.h"
#include "kernel/threads/Threads.h"

using namespace BPrivate;

static thread_state state_of(const Thread& thread)
{
    if (thread.gate == 0 || thread.suspended != 0)
        return B_THREAD_SUSPENDED;
    return static_cast<thread_state>(thread.state.load());
}

static void fill_stack(Thread& thread, thread_info* info)
{
    pthread_attr_t attributes;
    if (pthread_getattr_np(thread.handle, &attributes) != 0)
        return;
    void* base = nullptr;
    size_t size = 0;
    if (pthread_attr_getstack(&attributes, &base, &size) == 0) {
        info->stack_base = base;
        info->stack_end = static_cast<char*>(base) + size;
    }
    pthread_attr_destroy(&attributes);
}

static void fill_times(Thread& thread, thread_info* info)
{
    clockid_t clock;
    timespec used;
    if (pthread_getcpuclockid(thread.handle, &clock) != 0 || clock_gettime(clock, &used) != 0)
        return;
    HostProcess host;
    const bigtime_t total = used.tv_sec * 1000000LL + used.tv_nsec / 1000;
    if (read_host_process(getpid(), thread.id, &host))
        info->kernel_time = std::min(host.kernel_time, total);
    info->user_time = total - info->kernel_time;
}

static status_t fill_info(Thread& thread, thread_info* info)
{
    MutexLock hold(thread.lock);
    if (thread.dead)
        return B_BAD_THREAD_ID;
    *info = {};
    info->thread = thread.id;
    info->team = getpid();
    memcpy(info->name, thread.name, sizeof(info->name));
    info->state = state_of(thread);
    info->priority = thread.priority;
    info->sem = thread.sem;
    fill_times(thread, info);
    fill_stack(thread, info);
    return B_OK;
}

// A thread that the kit did not start, or another process's.
static status_t fill_from_host(thread_id id, thread_info* info)
{
    HostProcess host;
    if (id <= 0 || !read_host_process(id, id, &host) || host.HasEnded())
        return B_BAD_THREAD_ID;
    *info = {};
    info->thread = id;
    info->team = host.team;
    copy_name(info->name, host.name, "");
    info->state = host.state == 'R'                        ? B_THREAD_RUNNING
                  : host.state == 'T' || host.state == 't' ? B_THREAD_SUSPENDED
                                                           : B_THREAD_WAITING;
    info->priority = host_priority(id, host.start_time, host.nice);
    info->sem = -1;
    info->user_time = host.user_time;
    info->kernel_time = host.kernel_time;
    return B_OK;
}

status_t _get_thread_info(thread_id id, thread_info* info, size_t size)
{
    if (info == nullptr || size != sizeof(thread_info))
        return B_BAD_VALUE;
    std::shared_ptr<Thread> thread = find(id);
    return thread != nullptr ? fill_info(*thread, info) : fill_from_host(id, info);
}

// The cookie is the last thread that was told of.
static status_t next_from_host(team_id team, int32* cookie, thread_info* info)
{
    char path[40];
    snprintf(path, sizeof(path), "/proc/%d/task", team);
    DIR* threads = team > 0 ? opendir(path) : nullptr;
    if (threads == nullptr)
        return B_BAD_TEAM_ID;
    std::vector<thread_id> later;
    while (const dirent* entry = readdir(threads)) {
        const thread_id thread = static_cast<thread_id>(strtol(entry->d_name, nullptr, 10));
        if (thread > *cookie)
            later.push_back(thread);
    }
    closedir(threads);
    std::sort(later.begin(), later.end());
    for (const thread_id thread : later) {
        *cookie = thread;
        if (fill_from_host(thread, info) == B_OK)
            return B_OK;
    }
    return B_BAD_VALUE;
}

status_t _get_next_thread_info(team_id team, int32* cookie, thread_info* info, size_t size)
{
    if (cookie == nullptr || info == nullptr || size != sizeof(thread_info))
        return B_BAD_VALUE;
    if (team != B_CURRENT_TEAM && team != getpid())
        return next_from_host(team, cookie, info);
    for (const auto& thread : all_threads()) {
        if (thread->id <= *cookie)
            continue;
        *cookie = thread->id;
        if (fill_info(*thread, info) == B_OK)
            return B_OK;
    }
    return B_BAD_VALUE;
}
