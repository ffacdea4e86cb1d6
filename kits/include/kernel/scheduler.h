#ifndef _SCHEDULER_H
#define _SCHEDULER_H

#include <SupportDefs.h>

#include <OS.h>

// What a thread is for: a set.
enum be_task_flags {
    B_DEFAULT_MEDIA_PRIORITY = 0x000,
    B_OFFLINE_PROCESSING = 0x001,
    B_STATUS_RENDERING = 0x002,
    B_USER_INPUT_HANDLING = 0x004,
    B_LIVE_VIDEO_MANIPULATION = 0x008,
    B_VIDEO_PLAYBACK = 0x010,
    B_VIDEO_RECORDING = 0x020,
    B_LIVE_AUDIO_MANIPULATION = 0x040,
    B_AUDIO_PLAYBACK = 0x080,
    B_AUDIO_RECORDING = 0x100,
    B_LIVE_3D_RENDERING = 0x200,
    B_NUMBER_CRUNCHING = 0x400,
    B_MIDI_PROCESSING = 0x800
};

enum scheduler_mode { SCHEDULER_MODE_LOW_LATENCY = 0, SCHEDULER_MODE_POWER_SAVING = 1 };

extern "C" {
/* A priority for a thread that does this work: that of its most urgent part, more if it has to come
   round soon. `period`, `jitter` and `length` in microseconds, 0: not known. Any thread. */
int32 suggest_thread_priority(uint32 task_flags = B_DEFAULT_MEDIA_PRIORITY, int32 period = 0,
                              bigtime_t jitter = 0, bigtime_t length = 0);
/* Microseconds that a thread which could run may have to wait, as far as the host tells: one turn
   of the others. -1 is the calling thread; B_BAD_THREAD_ID. Any thread. */
bigtime_t estimate_max_scheduling_latency(thread_id th = -1);
/* The host's scheduler is made for low latency; another mode is B_UNSUPPORTED, what is none
   B_BAD_VALUE. Any thread. */
status_t set_scheduler_mode(int32 mode);
int32 get_scheduler_mode();
}

#endif  // _SCHEDULER_H
