// The timer of a window. MyView::Pulse counts it, once a second. Any thread.

#include "plinth.h"
#include "windows/window_access.h"

static const bigtime_t kPulseRate = 1000000;  // microseconds

extern "C" void SetTimerStart(int32_t ident, uint8_t on)
{
    WindowAccess window(ident, __func__);
    if (!window)
        return;
    window.Record().timer_running = on;
    window->SetPulseRate(on != 0 ? kPulseRate : 0);
    if (on == 0)
        window.Record().pulse_count = 0;
}

extern "C" void SetTimerCount(int32_t ident, int32_t period)
{
    if (period < 0)
        return;
    WindowAccess window(ident, __func__);
    if (!window)
        return;
    window.Record().period = period;
    window.Record().pulse_count = 0;
    if (period == 0) {
        window.Record().timer_running = 0;
        window->SetPulseRate(0);
    }
}
