// The timer of a window. MyView::Pulse counts it, once a second. Any thread.

#include "plinth.h"
#include "windows/window.h"

static const bigtime_t kPulseRate = 1000000;  // microseconds

template <class Action>
static void on_timer(int32_t ident, const char* call, Action act)
{
    MyWinClass* window = LLFindWindowLocked(ident, call);
    if (window == nullptr)
        return;
    act(*LLFindWindow(ident, call), *window);
    window->MyUpdate(BRect(), false);
}

extern "C" void SetTimerStart(int32_t ident, uint8_t on)
{
    on_timer(ident, __func__, [=](WindowRecord& record, MyWinClass& window) {
        record.timer_running = on;
        window.SetPulseRate(on != 0 ? kPulseRate : 0);
        if (on == 0)
            record.pulse_count = 0;
    });
}

extern "C" void SetTimerCount(int32_t ident, int32_t period)
{
    if (period < 0)
        return;
    on_timer(ident, __func__, [=](WindowRecord& record, MyWinClass& window) {
        record.period = period;
        record.pulse_count = 0;
        if (period == 0) {
            record.timer_running = 0;
            window.SetPulseRate(0);
        }
    });
}
