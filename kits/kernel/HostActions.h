#ifndef KERNEL_HOST_ACTIONS_H
#define KERNEL_HOST_ACTIONS_H

// What the kernel kit does to the machine and to other processes, and its clock. A test puts its
// own functions in.

#include <SupportDefs.h>

#include <sys/types.h>

namespace BPrivate {

struct HostActions {
    int (*set_clock)(unsigned long seconds);     // since 1970; 0, or -1 with errno
    bigtime_t (*read_clock)();                   // microseconds since 1970
    int (*signal_team)(pid_t team, int signal);  // 0, or -1 with errno
};

HostActions& host_actions();

}  // namespace BPrivate

#endif  // KERNEL_HOST_ACTIONS_H
