#ifndef KERNEL_WAITABLE_OBJECTS_H
#define KERNEL_WAITABLE_OBJECTS_H

#include <OS.h>

namespace BPrivate {

// Whether acquire_sem() would not wait; says as well whether the semaphore is there.
bool semaphore_is_ready(sem_id id, bool* valid);
int32 count_semaphores();

// The B_EVENT bits of a port that hold now.
uint16 port_events(port_id id);
int32 count_ports();

}  // namespace BPrivate

#endif  // KERNEL_WAITABLE_OBJECTS_H
