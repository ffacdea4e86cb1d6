// Threads that open and close windows until the display takes no more, which is while they do so.

#include <OS.h>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

#include "server/screen/ScreenWindow.h"

using namespace server;

namespace {

const int kThreads = 3;
const int kWindowsBefore = 12;  // of all threads

struct Sink : public EventSink {
    void Deliver(const Event&) override {}
};

std::atomic<int> sOpened{0};

ScreenWindow* open_window(Sink* sink)
{
    WindowSpec spec;
    spec.frame.Set(50, 50, 199, 149);
    return ScreenWindow::Create(spec, sink);
}

void open_and_close()
{
    Sink sink;
    ScreenWindow* kept = nullptr;
    while (ScreenWindow* window = open_window(&sink)) {
        window->Show();
        window->MoveTo(BPoint(60, 60));
        sOpened++;
        if (kept != nullptr)
            kept->Destroy();
        kept = window;
        snooze(2000);  // the display has to come to its end in between
    }
    if (kept != nullptr)
        kept->Destroy();
}

}  // namespace

int main()
{
    const BRect screen = ScreenFrame();
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; i++)
        threads.emplace_back(open_and_close);
    while (sOpened < kWindowsBefore)
        std::this_thread::yield();
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
