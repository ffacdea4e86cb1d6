// From the hand to the handler: the time between an injected click and the program's handler on
// the in-memory display. Reports the median and the worst of the hundredths.

#include "program_main.h"

#include <Injection.h>
#include <OS.h>

#include <algorithm>
#include <atomic>
#include <vector>

namespace {

std::atomic<nanotime_t> sHeard;

void on_mouse_down(int32_t, int32_t, int32_t, int32_t)
{
    sHeard.store(system_time_nsecs(), std::memory_order_release);
}

void click_to_handler(benchmark::State& state)
{
    const int32_t window = OpenWindow(100, 100, 200, 150);
    SetHandlerForWindow(window, PLINTH_MOUSE_DOWN, reinterpret_cast<void*>(on_mouse_down));
    inject_pointer(150, 150);
    std::vector<nanotime_t> delays;
    for (auto _ : state) {
        sHeard = 0;
        snooze(300);  // as between two events of a hand: the window's thread sleeps
        const nanotime_t pressed = system_time_nsecs();
        inject_button(1, true);
        while (sHeard.load(std::memory_order_acquire) == 0) {
        }
        delays.push_back(sHeard - pressed);
        inject_button(1, false);
        state.SetIterationTime(static_cast<double>(delays.back()) * 1e-9);
    }
    CloseWindow(window);
    std::sort(delays.begin(), delays.end());
    state.counters["median_us"] = static_cast<double>(delays[delays.size() / 2]) / 1000;
    state.counters["p99_us"] = static_cast<double>(delays[delays.size() * 99 / 100]) / 1000;
}
BENCHMARK(click_to_handler)->UseManualTime()->Iterations(2000);

}  // namespace

int main(int argc, char** argv) { return bench_main(argc, argv); }
