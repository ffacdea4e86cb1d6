#ifndef _ROSTER_H
#define _ROSTER_H

#include <Entry.h>
#include <OS.h>
#include <SupportDefs.h>

// How a program wants to be launched, in app_info::flags.
#define B_SINGLE_LAUNCH 0
#define B_MULTIPLE_LAUNCH 1
#define B_EXCLUSIVE_LAUNCH 2
#define B_LAUNCH_MASK 3
#define B_BACKGROUND_APP 4
#define B_ARGV_ONLY 8

/* A running program, as BApplication::GetAppInfo() tells. */
struct app_info {
    app_info();
    ~app_info();

    thread_id thread;  // of the application's loop
    team_id team;
    port_id port;      // -1: messages do not travel through ports here
    uint32 flags;      // launch mode and the bits above
    entry_ref ref;     // the executable
    char signature[240];
};

#endif  // _ROSTER_H
