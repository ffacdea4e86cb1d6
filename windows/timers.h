#ifndef WINDOWS_TIMERS_H
#define WINDOWS_TIMERS_H

// The pulse that windows' timers count.

class BView;

// A text view has come into a window, and had the pulse made faster for its caret: a timer goes on
// in seconds. Its window's thread or lock.
void keep_timer_rate(const BView* view);

#endif  // WINDOWS_TIMERS_H
