#ifndef KERNEL_HOST_PROCESS_H
#define KERNEL_HOST_PROCESS_H

#include <OS.h>

namespace BPrivate {

// What the host's process file system tells of a thread.
struct HostProcess {
    char name[64];
    char state;  // the host's letter
    team_id team;
    team_id parent;
    pid_t group;
    pid_t session;
    int32 thread_count;
    int nice;
    bigtime_t user_time;  // microseconds
    bigtime_t kernel_time;
    bigtime_t children_user_time;
    bigtime_t children_kernel_time;
    bigtime_t start_time;  // of system_time()'s base, where the machine never slept
    uid_t uid, effective_uid;
    gid_t gid, effective_gid;

    // A zombie: only its status is left.
    bool HasEnded() const { return state == 'Z' || state == 'X'; }
};

bool read_host_process(pid_t process, pid_t thread, HostProcess* info);

}  // namespace BPrivate

#endif  // KERNEL_HOST_PROCESS_H
