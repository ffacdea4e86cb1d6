// The end of the process: after the loop, by exit(), by a signal, and as a last resort.
//
// Threads may still be inside of calls then. Nothing is taken down under their feet: either they
// are held where they do no harm, or the process leaves at once and the system frees what it had.

#include "runtime/ending.h"

#include "runtime/registry.h"

#include <AppDefs.h>
#include <Application.h>
#include <OS.h>
#include <Window.h>

#include <atomic>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

static const bigtime_t kGrace_us = 200'000;       // for code that called End to come to its end
static const bigtime_t kPatience_us = 5'000'000;  // for handlers, once the application quits
static const bigtime_t kMoment_us = 500'000;      // for locks, and for streams to be flushed

// Those that ask a program to end.
static const int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

static std::atomic<bool> sProgramRuns;
static std::atomic<bool> sLoopEnded;
static std::atomic<bool> sExiting;  // exit() was called by the program itself
static std::atomic<bool> sLeaving;
static std::atomic<bool> sIsLimited;
static std::atomic<thread_id> sProgramThread;
static std::atomic<int> sSignal;  // that ends the process, 0 for none
// Set once, before other threads are.
static pid_t sProcess;
static thread_id sLoopThread;
static sem_id sProgramEnded;
static int sSignalPipe[2] = {-1, -1};

[[noreturn]] static void wait_for_the_end()
{
    for (;;)
        snooze(1'000'000'000);
}

// --- leaving at once

static status_t flush_all(void* done)
{
    fflush(stdout);
    fflush(nullptr);
    release_sem(static_cast<sem_id>(reinterpret_cast<intptr_t>(done)));
    return B_OK;
}

// A stream may be kept for long by a thread that reads from it: what the program has said goes
// before all others.
static void flush_streams()
{
    const sem_id done = create_sem(0, "flushed");
    const thread_id thread = spawn_thread(flush_all, "flush", B_NORMAL_PRIORITY,
                                          reinterpret_cast<void*>(static_cast<intptr_t>(done)));
    if (thread >= B_OK && resume_thread(thread) == B_OK)
        acquire_sem_etc(done, 1, B_RELATIVE_TIMEOUT, kMoment_us);
}

static void end_by_signal(int number)
{
    signal(number, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, number);
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    kill(getpid(), number);
}

[[noreturn]] static void leave()
{
    if (sLeaving.exchange(true))
        wait_for_the_end();
    if (flush_channels())
        flush_streams();
    if (sSignal != 0)
        end_by_signal(sSignal);
    _exit(EXIT_SUCCESS);
}

// --- exit()

// Keeps handlers from running on while what they use is taken down. For good.
static void hold_everything()
{
    const bigtime_t deadline = system_time() + kMoment_us;
    const auto hold = [=](BLooper* looper) {
        if (looper != nullptr)
            looper->LockWithTimeout(max_c(deadline - system_time(), 0));
    };
    hold(be_app);
    for (int32 i = 0; be_app != nullptr && i < be_app->CountWindows(); i++)
        hold(be_app->WindowAt(i));
}

// The host's way out, behind the loop, or the program's own out of its code or of a handler: that
// one ends as any C program does, with its own status.
static void at_exit()
{
    if (getpid() != sProcess)
        return;
    if (sLoopEnded && find_thread(nullptr) == sLoopThread) {
        if (sProgramRuns)
            leave();
    } else if (!sExiting.exchange(true)) {
        hold_everything();
        if (find_thread(nullptr) != sProgramThread)  // which may be writing
            flush_channels();
    }
}

void watch_exit() { atexit(at_exit); }

// --- signals

static void on_signal(int number)
{
    if (getpid() != sProcess) {  // a copy of the process, before it becomes another program
        end_by_signal(number);
        return;
    }
    const int saved = errno;
    const auto byte = static_cast<unsigned char>(number);
    static_cast<void>(write(sSignalPipe[1], &byte, 1) == 1);
    errno = saved;
}

static status_t wait_for_signal(void*)
{
    unsigned char number = 0;
    while (read(sSignalPipe[0], &number, 1) != 1) {
        if (errno != EINTR)
            return B_ERROR;
    }
    sSignal = number;
    set_ending();
    limit_quitting();
    if (be_app != nullptr)
        be_app->PostMessage(B_QUIT_REQUESTED);
    return B_OK;
}

// Signals that a host or whoever started us has a mind of its own about are left to it.
static void watch_signals()
{
    if (pipe(sSignalPipe) != 0)
        return;
    for (int end : sSignalPipe)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    const thread_id thread = spawn_thread(wait_for_signal, "signals", B_NORMAL_PRIORITY, nullptr);
    if (thread < B_OK || resume_thread(thread) != B_OK)
        return;
    for (int number : kSignals) {
        struct sigaction action;
        if (sigaction(number, nullptr, &action) != 0 || action.sa_handler != SIG_DFL)
            continue;
        action.sa_handler = on_signal;
        action.sa_flags = SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

// --- the loop and the program

void prepare_ending()
{
    sProcess = getpid();
    sLoopThread = find_thread(nullptr);
    sProgramEnded = create_sem(0, "program ended");
    sProgramRuns = true;
    watch_exit();
    watch_signals();
}

void program_begins() { sProgramThread = find_thread(nullptr); }

void program_ended()
{
    sProgramRuns = false;
    release_sem(sProgramEnded);
}

bool program_has_ended()
{
    if (sProgramRuns)
        acquire_sem_etc(sProgramEnded, 1, B_RELATIVE_TIMEOUT, kGrace_us);
    if (sExiting)
        wait_for_the_end();
    return !sProgramRuns;
}

void loop_ended()
{
    sLoopEnded = true;
    if (sExiting)
        wait_for_the_end();
    if (sSignal != 0)
        leave();
}

bool must_quit() { return sSignal != 0 || (is_ending() && !is_tracker()); }

static status_t leave_in_the_end(void*)
{
    snooze(kPatience_us);
    if (!sLoopEnded && !sExiting)
        leave();
    return B_OK;
}

void limit_quitting()
{
    if (sProcess == 0 || sIsLimited.exchange(true))
        return;
    const thread_id thread =
        spawn_thread(leave_in_the_end, "last resort", B_NORMAL_PRIORITY, nullptr);
    if (thread >= B_OK)
        resume_thread(thread);
}
