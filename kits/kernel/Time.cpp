// Clocks, sleeping and alarms.

#include <errno.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include "kernel/HostActions.h"
#include "kernel/threads/Threads.h"
#include "support/Futex.h"

using namespace BPrivate;

bigtime_t system_time() { return system_time_nsecs() / 1000; }

nanotime_t system_time_nsecs()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000000000LL + now.tv_nsec;
}

unsigned long real_time_clock()
{
    return static_cast<unsigned long>(host_actions().read_clock() / 1000000);
}

bigtime_t real_time_clock_usecs() { return host_actions().read_clock(); }

void set_real_time_clock(unsigned long secsSinceJan1st1970)
{
    host_actions().set_clock(secsSinceJan1st1970);
}

status_t snooze(bigtime_t amount) { return sleep_until(deadline_after(amount), B_CAN_INTERRUPT); }

status_t snooze_until(bigtime_t time, int timeBase)
{
    return snooze_etc(time, timeBase, B_ABSOLUTE_TIMEOUT | B_CAN_INTERRUPT);
}

status_t snooze_etc(bigtime_t amount, int timeBase, uint32 flags)
{
    if (timeBase != B_SYSTEM_TIMEBASE)
        return B_BAD_VALUE;
    if ((flags & B_ABSOLUTE_TIMEOUT) == 0)
        amount = deadline_after(amount);
    return sleep_until(amount, flags);
}

// The calling thread's alarm.
struct Alarm {
    timer_t timer = {};
    bool made = false;

    ~Alarm()
    {
        if (made)
            timer_delete(timer);
    }

    bool Make()
    {
        if (made)
            return true;
        sigevent event = {};
        event.sigev_notify = SIGEV_THREAD_ID;
        event.sigev_signo = SIGALRM;
        event._sigev_un._tid = gettid();
        made = timer_create(CLOCK_MONOTONIC, &event, &timer) == 0;
        return made;
    }
};

static thread_local Alarm tAlarm;

static timespec to_timespec(bigtime_t time)
{
    return {static_cast<time_t>(time / 1000000), static_cast<long>(time % 1000000 * 1000)};
}

bigtime_t set_alarm(bigtime_t when, uint32 flags)
{
    if (flags < B_ONE_SHOT_ABSOLUTE_ALARM || flags > B_PERIODIC_ALARM)
        return B_BAD_VALUE;
    if (!tAlarm.Make())
        return B_NO_MEMORY;
    itimerspec setting = {};
    if (when != B_INFINITE_TIMEOUT) {
        if (when <= 0 && flags != B_ONE_SHOT_ABSOLUTE_ALARM)
            return B_BAD_VALUE;
        setting.it_value = to_timespec(when > 0 ? when : 1);
        if (flags == B_PERIODIC_ALARM)
            setting.it_interval = setting.it_value;
    }
    itimerspec former = {};
    const int base = flags == B_ONE_SHOT_ABSOLUTE_ALARM ? TIMER_ABSTIME : 0;
    if (timer_settime(tAlarm.timer, base, &setting, &former) != 0)
        return B_BAD_VALUE;
    return former.it_value.tv_sec * 1000000LL + former.it_value.tv_nsec / 1000;
}
