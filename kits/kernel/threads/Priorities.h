#ifndef KERNEL_PRIORITIES_H
#define KERNEL_PRIORITIES_H

// BeOS priorities on a host that knows nice values.

#include <OS.h>

namespace BPrivate {

int32 clamp_priority(int32 priority);

// Gives a thread the nice value of a priority. The host takes raised ones from privileged
// processes only; others keep what they have, which counts as done. Else B_NOT_ALLOWED or
// B_BAD_THREAD_ID.
status_t apply_priority(thread_id id, int32 priority);

// For threads of other teams, which have no record here: the number that was set, as long as the
// thread lives, else one that has the thread's nice value. A program that was started here begins
// with the normal one, however nice this one is.
int32 host_priority(thread_id id, bigtime_t start_time, int nice);
status_t set_host_priority(thread_id id, int32 priority);  // the former one, or an error
void begin_with_normal_priority(thread_id id);
void forget_priority(thread_id id);

}  // namespace BPrivate

#endif  // KERNEL_PRIORITIES_H
