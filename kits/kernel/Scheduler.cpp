// Advice about priorities, and what the host's scheduler tells. Any thread.

#include <scheduler.h>

#include <errno.h>
#include <sched.h>
#include <time.h>

struct TaskRow {
    uint32 flag;
    int32 priority;
};

static const TaskRow kTasks[] = {
    {B_OFFLINE_PROCESSING, B_LOWEST_ACTIVE_PRIORITY},
    {B_NUMBER_CRUNCHING, B_LOW_PRIORITY},
    {B_STATUS_RENDERING, B_NORMAL_PRIORITY},
    {B_USER_INPUT_HANDLING, B_DISPLAY_PRIORITY},
    {B_LIVE_3D_RENDERING, B_URGENT_DISPLAY_PRIORITY},
    {B_VIDEO_PLAYBACK, B_URGENT_DISPLAY_PRIORITY},
    {B_VIDEO_RECORDING, B_URGENT_DISPLAY_PRIORITY},
    {B_LIVE_VIDEO_MANIPULATION, B_REAL_TIME_DISPLAY_PRIORITY},
    {B_AUDIO_PLAYBACK, B_URGENT_PRIORITY},
    {B_AUDIO_RECORDING, B_URGENT_PRIORITY},
    {B_LIVE_AUDIO_MANIPULATION, B_REAL_TIME_PRIORITY},
    {B_MIDI_PROCESSING, B_REAL_TIME_PRIORITY},
};

static const bigtime_t kShortPeriod = 10'000;  // of work that can not wait for a turn of the others

int32 suggest_thread_priority(uint32 task_flags, int32 period, bigtime_t jitter, bigtime_t length)
{
    int32 priority = B_NORMAL_PRIORITY;
    bool known = false;
    for (const TaskRow& row : kTasks) {
        if ((task_flags & row.flag) != 0) {
            priority = known ? max_c(priority, row.priority) : row.priority;
            known = true;
        }
    }
    const bool is_tight = (period > 0 && period < kShortPeriod) ||
                          (jitter > 0 && jitter < kShortPeriod && length > 0);
    return is_tight ? max_c(priority, B_URGENT_DISPLAY_PRIORITY) : priority;
}

bigtime_t estimate_max_scheduling_latency(thread_id th)
{
    timespec turn;
    if (th == 0 || th < -1 || sched_rr_get_interval(th == -1 ? 0 : th, &turn) != 0)
        return B_BAD_THREAD_ID;
    return turn.tv_sec * 1'000'000LL + turn.tv_nsec / 1000;
}

status_t set_scheduler_mode(int32 mode)
{
    if (mode == SCHEDULER_MODE_LOW_LATENCY)
        return B_OK;
    return mode == SCHEDULER_MODE_POWER_SAVING ? B_UNSUPPORTED : B_BAD_VALUE;
}

int32 get_scheduler_mode() { return SCHEDULER_MODE_LOW_LATENCY; }
