#ifndef KERNEL_PROCESS_EXIT_H
#define KERNEL_PROCESS_EXIT_H

// What has to end before the process takes itself down. Handlers of atexit() come too late for
// that: between them run the destructors of what libraries have made since.

namespace BPrivate {

// Calls `callback`, at most once, as soon as a thread of the kit, the main one among them, calls
// exit() or comes back from main(). A thread that the kit did not start gets there without. Any
// thread; there is room for four.
void on_process_exit(void (*callback)());

// Between these two the calling thread is watched: whatever takes it down there is exit().
void watch_for_exit();
void stop_watching_for_exit();

}  // namespace BPrivate

#endif  // KERNEL_PROCESS_EXIT_H
