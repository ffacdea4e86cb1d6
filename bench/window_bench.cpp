// What the server's thread pays for handing an event to a window, and what the process pays for the
// way of a window's pixels to the screen: on the display in memory, or on that of DISPLAY.

#include <Injection.h>
#include <OS.h>
#include <View.h>
#include <Window.h>

#include <benchmark/benchmark.h>

namespace {

struct OpenWindow {
    OpenWindow() : window(new BWindow(BRect(100, 100, 300, 250), "bench", B_TITLED_WINDOW, 0))
    {
        window->AddChild(new BView(window->Bounds(), "all", B_FOLLOW_ALL, B_WILL_DRAW));
        window->Show();
        inject_pointer(150, 150);
    }
    ~OpenWindow()
    {
        window->Lock();
        window->Quit();
    }

    BWindow* window;
};

// What a move costs whoever delivers it, while the window is busy with other things.
void MoveIntoFullQueue(benchmark::State& state)
{
    OpenWindow open;
    open.window->Lock();
    float x = 150;
    for (auto _ : state) {
        inject_pointer(x, 150);
        x = x < 250 ? x + 1 : 150;
    }
    open.window->Unlock();
}
BENCHMARK(MoveIntoFullQueue);

const bigtime_t kFrame_us = 20000;  // more than one of the screen's

// A frame in which all of a window has changed: drawing it is one fill.
void ShowFrame(benchmark::State& state)
{
    const auto side = float(state.range(0));
    auto* window = new BWindow(BRect(50, 50, 49 + side, 49 + side), "bench", B_TITLED_WINDOW, 0);
    auto* view = new BView(window->Bounds(), "all", B_FOLLOW_ALL, B_WILL_DRAW);
    window->AddChild(view);
    window->Show();
    snooze(10 * kFrame_us);
    uint8 shade = 0;
    for (auto _ : state) {
        window->Lock();
        view->SetHighColor(shade++, 100, 200);
        view->FillRect(view->Bounds());
        window->Unlock();
        snooze(kFrame_us);
    }
    window->Lock();
    window->Quit();
}
BENCHMARK(ShowFrame)->Arg(200)->Arg(700)->MeasureProcessCPUTime()->Iterations(60);

}  // namespace

BENCHMARK_MAIN();
