// Windows that open and close at random while input falls on them.

#include <Bitmap.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <random>
#include <thread>

#include "window_harness.h"

using namespace window_test;

namespace {

// Does something disturbing now and then, on the window's thread.
class BusyView : public BView {
public:
    BusyView(BRect frame, uint32 seed)
        : BView(frame, "busy", B_FOLLOW_ALL,
                B_WILL_DRAW | B_FRAME_EVENTS | B_PULSE_NEEDED | B_NAVIGABLE),
          fRandom(seed)
    {
    }
    void Draw(BRect update) override { FillRect(update); }
    void MouseDown(BPoint) override
    {
        SetMouseEventMask(B_POINTER_EVENTS, fRandom() % 2 != 0 ? B_FULL_POINTER_HISTORY : 0);
        BMessage message('drag');
        if (fRandom() % 3 == 0)
            DragMessage(&message, Bounds());
        if (fRandom() % 16 == 0)
            Window()->PostMessage(B_QUIT_REQUESTED);
        if (fRandom() % 16 == 0)
            Window()->Quit();
    }
    void MouseMoved(BPoint, uint32, const BMessage*) override
    {
        if (fRandom() % 8 == 0)
            Invalidate();
        if (fRandom() % 16 == 0)
            Window()->MoveBy(float(fRandom() % 5) - 2, float(fRandom() % 5) - 2);
        if (fRandom() % 16 == 0)
            Window()->ResizeBy(float(fRandom() % 5) - 2, float(fRandom() % 5) - 2);
    }
    void KeyDown(const char*, int32) override
    {
        if (fRandom() % 4 == 0)
            MakeFocus(false);
    }
    void Pulse() override
    {
        if (BView* child = ChildAt(0)) {
            child->RemoveSelf();
            delete child;
        } else {
            AddChild(new BView(BRect(5, 5, 20, 20), "child", B_FOLLOW_LEFT_TOP, B_WILL_DRAW));
        }
    }

private:
    std::mt19937 fRandom;
};

BWindow* open_busy(uint32 seed)
{
    std::mt19937 random(seed);
    const float left = float(random() % 700), top = float(random() % 500);
    auto* window = new BWindow(BRect(left, top, left + 200, top + 150), "busy", B_TITLED_WINDOW,
                               B_ASYNCHRONOUS_CONTROLS);
    auto* view = new BusyView(window->Bounds(), seed);
    window->AddChild(view);
    view->MakeFocus();
    window->SetPulseRate(1000 + seed % 5000);
    window->Show();
    return window;
}

// What the process holds of the machine's memory, in megabytes.
int64 resident_mb()
{
    std::ifstream file("/proc/self/statm");
    int64 all = 0, resident = 0;
    file >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE) / 1000000;
}

// A window and a bitmap, both painted from edge to edge.
struct Painted {
    explicit Painted(BRect frame) : bitmap(frame, B_RGBA32, true)
    {
        window = new BWindow(frame, "painted", B_TITLED_WINDOW, 0);
        auto* view = new BView(window->Bounds(), "", B_FOLLOW_ALL, B_WILL_DRAW);
        window->AddChild(view);
        window->Show();
        if (window->Lock()) {
            view->FillRect(view->Bounds());
            window->Sync();
            window->Unlock();
        }
    }
    ~Painted()
    {
        if (window->Lock())
            window->Quit();
    }

    BBitmap bitmap;
    BWindow* window;
};

}  // namespace

TEST(WindowStress, PixelsOfClosedWindowsGoBackToTheSystem)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "sanitizers keep memory of their own";
#endif
    std::mt19937 random(11);
    std::vector<std::string> kept;
    auto open_and_close = [&](int32 count) {
        std::vector<std::unique_ptr<Painted>> windows;
        for (int32 i = 0; i < count; i++) {
            const BRect frame(0, 0, float(100 + random() % 900), float(100 + random() % 600));
            windows.push_back(std::make_unique<Painted>(frame));
            kept.emplace_back(1000 + random() % 4000, 'x');
        }
        std::shuffle(windows.begin(), windows.end(), random);
    };
    open_and_close(10);
    const int64 before = resident_mb();
    for (int32 round = 0; round < 4; round++)
        open_and_close(50);
    EXPECT_LT(resident_mb() - before, 30);
}

TEST(WindowStress, OpeningAndClosingUnderInput)
{
    std::atomic<bool> ends{false};
    std::vector<std::thread> owners;
    for (uint32 i = 0; i < 4; i++) {
        owners.emplace_back([&, i] {
            std::mt19937 random(100 + i);
            BWindow* window = nullptr;
            while (!ends) {
                if (window == nullptr || !window->Lock()) {
                    window = open_busy(uint32(random()));
                    continue;
                }
                switch (random() % 8) {
                    case 0:
                        window->Quit();
                        window = nullptr;
                        continue;
                    case 1:
                        window->Hide();
                        window->Show();
                        break;
                    case 2:
                        window->SetTitle("another");
                        window->SetLook(B_DOCUMENT_WINDOW_LOOK);
                        break;
                    case 3:
                        window->Minimize(true);
                        window->Activate();
                        break;
                    case 4:
                        window->Zoom();
                        break;
                    default:
                        if (BView* view = window->FindView("busy"))
                            view->Invalidate();
                        break;
                }
                window->Unlock();
                snooze(random() % 2000);
            }
            if (window != nullptr && window->Lock())
                window->Quit();
        });
    }
    std::mt19937 random(7);
    const bigtime_t end = system_time() + 3000000;
    while (system_time() < end) {
        const float x = float(random() % 1024), y = float(random() % 768);
        switch (random() % 10) {
            case 0:
                inject_button(1 << (random() % 2), random() % 2 != 0);
                break;
            case 1:
                inject_text("aQ\t\n");
                break;
            case 2:
                inject_key(kKeyCommand, true);
                inject_text("acw");
                inject_key(kKeyCommand, false);
                break;
            case 3:
                inject_window_close(x, y);
                break;
            case 4:
                inject_window_resize(x, y, float(random() % 400), float(random() % 300));
                break;
            case 5:
                inject_wheel(0, 1);
                break;
            default:
                inject_pointer(x, y);
                break;
        }
        if (random() % 4 == 0)
            snooze(200);
    }
    for (int32_t button : {1, 2, 4})
        inject_button(button, false);
    ends = true;
    for (std::thread& owner : owners)
        owner.join();
    SUCCEED();
}
