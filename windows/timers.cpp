// The timer of a window. MyView::Pulse counts it, once a second. Any thread.

#include "windows/timers.h"

#include "plinth.h"
#include "windows/drawing_view.h"
#include "windows/window_access.h"

#include <TextView.h>

static const bigtime_t kPulseRate = 1000000;      // microseconds
static const bigtime_t kCaretPulseRate = 500000;  // of a window that only shows a caret

static bool has_text(const BView* view)
{
    if (dynamic_cast<const BTextView*>(view) != nullptr)
        return true;
    for (const BView* child = view->ChildAt(0); child != nullptr; child = child->NextSibling()) {
        if (has_text(child))
            return true;
    }
    return false;
}

// Without a timer nobody needs pulses, but carets.
static void stop_pulse(MyWinClass* window)
{
    window->SetPulseRate(has_text(window->fTopView) ? kCaretPulseRate : 0);
}

void keep_timer_rate(const BView* view)
{
    auto* window = dynamic_cast<MyWinClass*>(view->Window());
    if (window != nullptr && window->fRecord != nullptr && window->fRecord->timer_running != 0)
        window->SetPulseRate(kPulseRate);
}

extern "C" void SetTimerStart(int32_t ident, uint8_t on)
{
    on_window(ident, __func__, [=](WindowAccess& window) {
        window.Record().timer_running = on;
        if (on != 0) {
            window->SetPulseRate(kPulseRate);
            return;
        }
        stop_pulse(window.Window());
        window.Record().pulse_count = 0;
    });
}

extern "C" void SetTimerCount(int32_t ident, int32_t period)
{
    if (period < 0)
        return;
    on_window(ident, __func__, [=](WindowAccess& window) {
        window.Record().period = period;
        window.Record().pulse_count = 0;
        if (period == 0) {
            window.Record().timer_running = 0;
            stop_pulse(window.Window());
        }
    });
}
