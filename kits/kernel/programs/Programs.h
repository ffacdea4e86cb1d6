#ifndef KERNEL_PROGRAMS_H
#define KERNEL_PROGRAMS_H

// Programs that load_image() started, by their main thread.

#include <OS.h>

namespace BPrivate {

// load_image(), in the folder of that name; null: the caller's own.
thread_id load_program(int32 argc, const char** argv, const char** environment, const char* folder);

bool is_loaded_program(thread_id id);

// Lets the program run, if it was not resumed yet, and waits for its end. A program that a signal
// ended counts as killed: B_INTERRUPTED. Its status is told once; B_BAD_THREAD_ID after that.
status_t wait_for_program(thread_id id, bigtime_t deadline, uint32 flags, status_t* exit_status);

// Notes that the program was told to run.
void program_resumed(thread_id id);

}  // namespace BPrivate

#endif  // KERNEL_PROGRAMS_H
