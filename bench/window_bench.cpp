// What the server's thread pays for handing an event to a window.

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

}  // namespace

BENCHMARK_MAIN();
