// Teams, the machine, and the way out to the debugger.

#include <OS.h>

#include <dirent.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/sysinfo.h>
#include <sys/time.h>
#include <sys/utsname.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

#include "kernel/HostActions.h"
#include "kernel/programs/HostProcess.h"
#include "kernel/threads/Threads.h"
#include "kernel/threads/WaitableObjects.h"

using namespace BPrivate;

static int set_host_clock(unsigned long seconds)
{
    const timespec time = {static_cast<time_t>(seconds), 0};
    return clock_settime(CLOCK_REALTIME, &time);
}

static bigtime_t read_host_clock()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * 1000000LL + now.tv_nsec / 1000;
}

// Ids of 1 and less are the whole machine, or groups of processes, to the host.
static int signal_host_team(pid_t team, int signal)
{
    return team > B_SYSTEM_TEAM ? kill(team, signal) : -1;
}

HostActions& BPrivate::host_actions()
{
    static HostActions actions = {set_host_clock, read_host_clock, signal_host_team};
    return actions;
}

status_t kill_team(team_id team)
{
    if (team == B_CURRENT_TEAM)
        team = getpid();
    if (team == B_SYSTEM_TEAM)
        return B_NOT_ALLOWED;
    return host_actions().signal_team(team, SIGKILL) == 0 ? B_OK : B_BAD_TEAM_ID;
}

// The program and its arguments, with blanks between them.
static int32 read_arguments(team_id team, char* into, size_t size)
{
    char path[40];
    snprintf(path, sizeof(path), "/proc/%d/cmdline", team);
    FILE* file = fopen(path, "re");
    if (file == nullptr)
        return 0;
    int32 count = 0;
    size_t length = 0;
    bool ended = false;
    for (int c; (c = fgetc(file)) != EOF; ended = c == '\0') {
        if (ended && length < size - 1)
            into[length++] = ' ';
        if (c == '\0')
            ++count;
        else if (length < size - 1)
            into[length++] = static_cast<char>(c);
    }
    into[length] = '\0';
    fclose(file);
    return count;
}

status_t _get_team_info(team_id id, team_info* info, size_t size)
{
    if (info == nullptr || size != sizeof(team_info))
        return B_BAD_VALUE;
    if (id == B_CURRENT_TEAM)
        id = getpid();
    HostProcess host;
    if (id <= 0 || !read_host_process(id, id, &host) || host.team != id || host.HasEnded())
        return B_BAD_TEAM_ID;
    *info = {};
    info->team = id;
    info->thread_count = host.thread_count;
    info->debugger_nub_thread = -1;
    info->debugger_nub_port = -1;
    info->argc = read_arguments(id, info->args, sizeof(info->args));
    info->uid = host.effective_uid;
    info->gid = host.effective_gid;
    info->real_uid = host.uid;
    info->real_gid = host.gid;
    info->group_id = host.group;
    info->session_id = host.session;
    info->parent = host.parent;
    copy_name(info->name, host.name, "");
    info->start_time = host.start_time;
    return B_OK;
}

// The cookie is the last team that was told of.
status_t _get_next_team_info(int32* cookie, team_info* info, size_t size)
{
    if (cookie == nullptr || info == nullptr || size != sizeof(team_info))
        return B_BAD_VALUE;
    DIR* processes = opendir("/proc");
    if (processes == nullptr)
        return B_BAD_TEAM_ID;
    team_id next = INT32_MAX;
    while (const dirent* entry = readdir(processes)) {
        const team_id team = static_cast<team_id>(strtol(entry->d_name, nullptr, 10));
        if (team > *cookie)
            next = std::min(next, team);
    }
    closedir(processes);
    if (next == INT32_MAX)
        return B_BAD_VALUE;
    *cookie = next;
    if (_get_team_info(next, info, size) == B_OK)
        return B_OK;
    return _get_next_team_info(cookie, info, size);  // it ended meanwhile
}

status_t _get_team_usage_info(team_id team, int32 who, team_usage_info* info, size_t size)
{
    if (info == nullptr || size != sizeof(team_usage_info) ||
        (who != B_TEAM_USAGE_SELF && who != static_cast<int32>(B_TEAM_USAGE_CHILDREN)))
        return B_BAD_VALUE;
    if (team == B_CURRENT_TEAM)
        team = getpid();
    HostProcess host;
    if (team <= 0 || !read_host_process(team, team, &host) || host.team != team)
        return B_BAD_TEAM_ID;
    if (team == getpid()) {
        rusage used;
        getrusage(who == B_TEAM_USAGE_SELF ? RUSAGE_SELF : RUSAGE_CHILDREN, &used);
        info->user_time = used.ru_utime.tv_sec * 1000000LL + used.ru_utime.tv_usec;
        info->kernel_time = used.ru_stime.tv_sec * 1000000LL + used.ru_stime.tv_usec;
        return B_OK;
    }
    const bool self = who == B_TEAM_USAGE_SELF;
    info->user_time = self ? host.user_time : host.children_user_time;
    info->kernel_time = self ? host.kernel_time : host.children_kernel_time;
    return B_OK;
}

// The value of a line "label:  123 kB", in pages.
static uint64 memory_pages(const char* text, const char* label)
{
    const char* line = strstr(text, label);
    return line != nullptr ? strtoull(line + strlen(label), nullptr, 10) * 1024 / B_PAGE_SIZE : 0;
}

static uint32 count_processes()
{
    uint32 count = 0;
    if (DIR* processes = opendir("/proc")) {
        while (const dirent* entry = readdir(processes))
            count += entry->d_name[0] >= '1' && entry->d_name[0] <= '9';
        closedir(processes);
    }
    return count;
}

status_t get_system_info(system_info* info)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    *info = {};
    info->boot_time = real_time_clock_usecs() - system_time();
    info->cpu_count = static_cast<uint32>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
    char text[4096] = {};
    if (FILE* file = fopen("/proc/meminfo", "re")) {
        text[fread(text, 1, sizeof(text) - 1, file)] = '\0';
        fclose(file);
    }
    const uint64 free_pages = memory_pages(text, "MemFree:");
    info->max_pages = memory_pages(text, "MemTotal:");
    info->cached_pages = memory_pages(text, "\nCached:");
    info->block_cache_pages = memory_pages(text, "\nBuffers:");
    const uint64 idle = free_pages + info->cached_pages + info->block_cache_pages;
    info->used_pages = info->max_pages > idle ? info->max_pages - idle : 0;
    info->free_memory = free_pages * B_PAGE_SIZE;
    info->max_swap_pages = memory_pages(text, "SwapTotal:");
    info->free_swap_pages = memory_pages(text, "SwapFree:");
    rusage used;
    getrusage(RUSAGE_SELF, &used);
    info->page_faults = static_cast<uint32>(used.ru_majflt + used.ru_minflt);
    info->max_sems = 1 << 16;
    info->used_sems = count_semaphores();
    info->max_ports = 1 << 16;
    info->used_ports = count_ports();
    struct sysinfo host;
    rlimit limit;
    if (sysinfo(&host) == 0)
        info->used_threads = host.procs;
    if (getrlimit(RLIMIT_NPROC, &limit) == 0)
        info->max_threads = static_cast<uint32>(std::min<rlim_t>(limit.rlim_cur, INT32_MAX));
    info->max_teams = info->max_threads;
    info->used_teams = count_processes();
    utsname names;
    if (uname(&names) == 0) {
        snprintf(info->kernel_name, sizeof(info->kernel_name), "%s", names.sysname);
        snprintf(info->kernel_build_date, sizeof(info->kernel_build_date), "%.31s", names.release);
        int major = 0, minor = 0;
        sscanf(names.release, "%d.%d", &major, &minor);
        info->kernel_version = major * 100 + minor;
    }
    return B_OK;
}

status_t _get_cpu_info_etc(uint32 firstCPU, uint32 cpuCount, cpu_info* info, size_t size)
{
    const uint32 online = static_cast<uint32>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
    if (info == nullptr || size != sizeof(cpu_info) || firstCPU >= online ||
        cpuCount > online - firstCPU)
        return B_BAD_VALUE;
    std::fill_n(info, cpuCount, cpu_info{0, true, 0});
    const bigtime_t tick = 1000000 / std::max(1L, sysconf(_SC_CLK_TCK));
    char line[512];
    if (FILE* file = fopen("/proc/stat", "re")) {
        while (fgets(line, sizeof(line), file) != nullptr) {
            unsigned cpu;
            unsigned long long user, nice, system;
            if (sscanf(line, "cpu%u %llu %llu %llu", &cpu, &user, &nice, &system) == 4 &&
                cpu >= firstCPU && cpu - firstCPU < cpuCount)
                info[cpu - firstCPU].active_time = (user + nice + system) * tick;
        }
        fclose(file);
    }
    if (FILE* file = fopen("/proc/cpuinfo", "re")) {
        unsigned cpu = 0;
        double mhz;
        while (fgets(line, sizeof(line), file) != nullptr) {
            if (sscanf(line, "processor : %u", &cpu) == 1)
                continue;
            if (sscanf(line, "cpu MHz : %lf", &mhz) == 1 && cpu >= firstCPU &&
                cpu - firstCPU < cpuCount)
                info[cpu - firstCPU].current_frequency = static_cast<uint64>(mhz * 1000000);
        }
        fclose(file);
    }
    return B_OK;
}

static std::atomic<int> sDebuggerDisabled{0};

static bool is_traced()
{
    bool traced = false;
    if (FILE* file = fopen("/proc/self/status", "re")) {
        char line[256];
        int tracer;
        while (fgets(line, sizeof(line), file) != nullptr) {
            if (sscanf(line, "TracerPid: %d", &tracer) == 1)
                traced = tracer != 0;
        }
        fclose(file);
    }
    return traced;
}

void debugger(const char* message)
{
    fprintf(stderr, "debugger: %s\n", message != nullptr ? message : "");
    if (sDebuggerDisabled == 0 && is_traced())
        raise(SIGTRAP);
}

int disable_debugger(int state) { return sDebuggerDisabled.exchange(state); }

int debug_printf(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const int written = debug_vprintf(format, args);
    va_end(args);
    return written;
}

int debug_vprintf(const char* format, va_list args)
{
    return format != nullptr ? vfprintf(stderr, format, args) : 0;
}

// The host keeps no trace buffer for us.
void ktrace_printf(const char*, ...) {}

void ktrace_vprintf(const char*, va_list) {}

int32 is_computer_on() { return 1; }

double is_computer_on_fire() { return 0.63739; }

int send_signal(thread_id threadID, unsigned int signal)
{
    std::shared_ptr<Thread> thread = find(threadID);
    if (thread == nullptr)
        return host_actions().signal_team(threadID, static_cast<int>(signal)) == 0
                   ? B_OK
                   : B_BAD_THREAD_ID;
    if (threadID == find_thread(nullptr))
        return raise(static_cast<int>(signal)) == 0 ? B_OK : B_BAD_VALUE;
    BPrivate::MutexLock hold(thread->lock);
    if (thread->dead)
        return B_BAD_THREAD_ID;
    return pthread_kill(thread->handle, static_cast<int>(signal)) == 0 ? B_OK : B_BAD_VALUE;
}

void set_signal_stack(void* base, size_t size)
{
    stack_t stack = {};
    stack.ss_sp = base;
    stack.ss_size = size;
    stack.ss_flags = base == nullptr ? SS_DISABLE : 0;
    sigaltstack(&stack, nullptr);
}
