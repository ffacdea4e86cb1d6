// Everything at once: windows that open and close at random, handlers that draw on their windows'
// threads, the program's thread drawing into all of them, and input throughout. It passes by
// coming to its end with every window closed; the sanitizers do the rest.
// PLINTH_STRESS_SECONDS says how long (3 if it is not set).

#include "support/program.h"

#include <gtest/gtest.h>

#include <Application.h>

#include <cstdlib>
#include <random>
#include <string>

namespace {

const int kWindows = 4;

std::atomic<int32_t> sIdents[kWindows];
std::atomic<int64_t> sCalls;

int32_t random_window()
{
    static thread_local std::minstd_rand random(find_thread(nullptr));
    return sIdents[random() % kWindows];
}

void draw_into(int32_t window, int32_t seed)
{
    SetForeColor(window, static_cast<uint32_t>(seed) * 2654435761u | 255, 0xFFFFFFFF);
    FRectangle(window, std::abs(seed) % 180, seed % 70, 40, 30);
    Line(window, 0, 0, seed % 300, seed % 200);
    FCircle(window, seed % 200, seed % 150, seed % 40);
    MoveTo(window, seed % 100, 20);
    Text(window, "stress");
    WritePixel(window, seed % 400, seed % 300);
    Blit(window, 0, 0, 50, 50, seed % 100, seed % 100);
}

// Handlers draw into their own window only: it is locked, and to wait for a second lock while
// another handler waits for this one would never end.
template <int place>
struct Handlers {
    static void MouseDown(int32_t x, int32_t y, int32_t button, int32_t)
    {
        sCalls++;
        draw_into(sIdents[place], x * 7 + y);
        if (button == 4)
            CloseWindow(sIdents[place]);
    }
    static void TwoNumbers(int32_t a, int32_t b)
    {
        sCalls++;
        draw_into(sIdents[place], a + b * 3);
    }
    static int32_t Close() { return 1; }
};

template <int place>
void open_at()
{
    using Own = Handlers<place>;
    const int32_t window = OpenWindow(20 + 180 * place, 60 + 40 * place, 220, 160);
    sIdents[place] = window;
    SetHandlerForWindow(window, PLINTH_MOUSE_DOWN, reinterpret_cast<void*>(Own::MouseDown));
    for (int32_t slot : {PLINTH_MOUSE_MOVED, PLINTH_KEY, PLINTH_RESIZED, PLINTH_MOVED})
        SetHandlerForWindow(window, slot, reinterpret_cast<void*>(Own::TwoNumbers));
    SetHandlerForWindow(window, PLINTH_CLOSE_REQUESTED, reinterpret_cast<void*>(Own::Close));
}

void (*const kOpeners[kWindows])() = {open_at<0>, open_at<1>, open_at<2>, open_at<3>};

void inject_something(std::minstd_rand& random)
{
    const auto x = static_cast<float>(random() % 900);
    const auto y = static_cast<float>(random() % 400);
    switch (random() % 12) {
        case 0:
            inject_text("abc");
            break;
        case 1:
            inject_window_resize(x, y, 100 + random() % 300, 80 + random() % 200);
            break;
        case 2:
            inject_window_move(x, y, random() % 500, 30 + random() % 200);
            break;
        case 3:
            inject_window_close(x, y);
            break;
        case 4:
            inject_window_activate(x, y);
            break;
        case 5:
            inject_window_minimize(x, y, true);
            inject_window_minimize(x, y, false);
            break;
        default: {
            inject_pointer(x, y);
            const int32_t button = random() % 8 == 0 ? 4 : 1;
            inject_button(button, true);
            inject_pointer(x + 3, y + 3);
            inject_button(button, false);
        }
    }
}

}  // namespace

TEST(Stress, WindowsThreadsAndInputTogether)
{
    const char* seconds = getenv("PLINTH_STRESS_SECONDS");
    const bigtime_t end = system_time() + (seconds != nullptr ? atoi(seconds) : 3) * 1'000'000LL;
    std::minstd_rand random(4711);
    for (int i = 0; i < kWindows; i++)
        kOpeners[i]();
    int32_t opened = kWindows;
    while (system_time() < end) {
        for (int i = 0; i < 20; i++)
            draw_into(random_window(), static_cast<int32_t>(random() % 1000));
        inject_something(random);
        const int place = static_cast<int>(random() % kWindows);
        if (random() % 16 == 0)
            CloseWindow(sIdents[place]);
        if (!is_window_ident(sIdents[place])) {
            kOpeners[place]();
            opened++;
        }
    }
    for (auto& ident : sIdents)
        CloseWindow(ident);
    EXPECT_TRUE(eventually([] { return be_app->CountWindows() == 0; }));
    EXPECT_GT(sCalls, 0);
    RecordProperty("opened", opened);
}
