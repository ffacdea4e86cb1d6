// Threads that hold windows, and open and close more of them, until the display takes no more,
// which is while they do so. Then all threads close what they hold at once, while the display is
// taking its own side of the same windows down.

#include <OS.h>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <xcb/xcb.h>

#include "server/screen/ScreenWindow.h"

using namespace server;

namespace {

const int kThreads = 4;
const int kHeld = 10;           // windows of a thread as the display ends
const int kWindowsBefore = 12;  // opened and closed by all threads

struct Sink : public EventSink {
    void Deliver(const Event&) override {}
};

std::atomic<int> sOpened{0};
std::atomic<bool> sEnding{false};

ScreenWindow* open_window(Sink* sink)
{
    WindowSpec spec;
    spec.frame.Set(50, 50, 199, 149);
    ScreenWindow* window = ScreenWindow::Create(spec, sink);
    if (window != nullptr) {
        window->Show();
        window->MoveTo(BPoint(60, 60));
    }
    return window;
}

void open_and_close()
{
    Sink sink;
    std::vector<ScreenWindow*> held;
    while (ScreenWindow* window = open_window(&sink)) {
        held.push_back(window);
        if (held.size() > kHeld && !sEnding) {
            held.front()->Destroy();
            held.erase(held.begin());
            sOpened++;
        }
        snooze(2000);  // the display has to come to its end in between
    }
    for (ScreenWindow* window : held)
        window->Destroy();
}

}  // namespace

// The X server's windows go slowly at the end, so that all threads run while they do.
extern "C" [[gnu::visibility("default")]] xcb_void_cookie_t xcb_destroy_window(
    xcb_connection_t* connection, xcb_window_t window)
{
    if (sEnding)
        snooze(5000);
    static const auto destroy =
        reinterpret_cast<decltype(&xcb_destroy_window)>(dlsym(RTLD_NEXT, "xcb_destroy_window"));
    return destroy(connection, window);
}

int main()
{
    const BRect screen = ScreenFrame();
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; i++)
        threads.emplace_back(open_and_close);
    while (sOpened < kWindowsBefore)
        snooze(100);
    sEnding = true;
    Shutdown();
    for (std::thread& thread : threads)
        thread.join();
    Sink sink;
    if (open_window(&sink) != nullptr || ScreenFrame() != screen) {
        puts("there is another display");
        return 1;
    }
    return 0;
}
