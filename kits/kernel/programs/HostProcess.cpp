// Reads /proc.

#include "kernel/programs/HostProcess.h"

#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

namespace BPrivate {

static size_t read_file(const char* path, char* into, size_t size)
{
    FILE* file = fopen(path, "re");
    if (file == nullptr)
        return 0;
    const size_t length = fread(into, 1, size - 1, file);
    fclose(file);
    into[length] = '\0';
    return length;
}

// The number behind "\nlabel:\t", and with `second` the one that follows.
static void status_numbers(const char* text, const char* label, uint32* first, uint32* second)
{
    const char* line = strstr(text, label);
    if (line != nullptr)
        sscanf(line + strlen(label), "%u %u", first, second);
}

bool read_host_process(pid_t process, pid_t thread, HostProcess* info)
{
    *info = {};
    char path[80];
    char text[4096];
    snprintf(path, sizeof(path), "/proc/%d/task/%d/stat", process, thread);
    if (read_file(path, text, sizeof(text)) == 0)
        return false;
    // "id (name) state ...": the name may hold anything, its end is the last parenthesis.
    const char* open = strchr(text, '(');
    const char* close = strrchr(text, ')');
    if (open == nullptr || close == nullptr || close < open)
        return false;
    memcpy(info->name, open + 1, std::min<size_t>(close - open - 1, sizeof(info->name) - 1));
    unsigned long user = 0, kernel = 0;
    long children_user = 0, children_kernel = 0, nice = 0, threads = 0;
    unsigned long long start = 0;
    sscanf(close + 2,
           "%c %d %d %d %*d %*d %*u %*u %*u %*u %*u %lu %lu %ld %ld %*d %ld %ld %*d %llu",
           &info->state, &info->parent, &info->group, &info->session, &user, &kernel,
           &children_user, &children_kernel, &nice, &threads, &start);
    const bigtime_t tick = 1000000 / std::max(1L, sysconf(_SC_CLK_TCK));
    info->user_time = user * tick;
    info->kernel_time = kernel * tick;
    info->children_user_time = children_user * tick;
    info->children_kernel_time = children_kernel * tick;
    info->nice = static_cast<int>(nice);
    info->thread_count = static_cast<int32>(threads);
    info->start_time = static_cast<bigtime_t>(start) * tick;

    uint32 team = process;
    snprintf(path, sizeof(path), "/proc/%d/task/%d/status", process, thread);
    if (read_file(path, text, sizeof(text)) != 0) {
        uint32 unused;
        status_numbers(text, "\nTgid:", &team, &unused);
        status_numbers(text, "\nUid:", &info->uid, &info->effective_uid);
        status_numbers(text, "\nGid:", &info->gid, &info->effective_gid);
    }
    info->team = static_cast<team_id>(team);
    return true;
}

}  // namespace BPrivate
