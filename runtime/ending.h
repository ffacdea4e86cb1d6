#ifndef RUNTIME_ENDING_H
#define RUNTIME_ENDING_H

// How the process ends. Its application's loop runs on one thread, the program's code on another,
// the handlers on those of the windows; whichever of them says that it is enough, what was written
// gets where it belongs, and the status is the program's own.

// Once, before the program's code begins; on the thread that the loop will run on.
void prepare_ending();
// What a call has brought up since then is taken down after our own exit handler. Any thread.
void watch_exit();

// The program's code begins, and came to its end. Its thread.
void program_begins();
void program_ended();
// Waits a moment for that; false if the code goes on. The loop's thread, behind the loop.
bool program_has_ended();
// Behind the loop: the process belongs to who called PlinthStart again, unless a signal ends it.
void loop_ended();

// True when the application is to quit whatever else it has to do. Any thread.
bool must_quit();
// The application is about to quit: if it has not within some seconds, the process ends anyway.
void limit_quitting();

#endif  // RUNTIME_ENDING_H
