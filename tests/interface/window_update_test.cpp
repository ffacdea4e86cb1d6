// The update cycle, the screen and pulses.

#include <Bitmap.h>
#include <Screen.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "window_harness.h"

using namespace window_test;

namespace {

class WindowUpdate : public WindowTest {
protected:
    void OpenOne(uint32 flags = B_WILL_DRAW)
    {
        Make(99, 79);
        view = Add(BRect(0, 0, 99, 79), "a", flags, B_FOLLOW_ALL);
        Start();
    }
    // A pixel of the window on the screen.
    static uint32 PixelAt(float x, float y)
    {
        BBitmap* shot = nullptr;
        BRect frame(x, y, x, y);
        EXPECT_EQ(BScreen().GetBitmap(&shot, false, &frame), B_OK);
        std::unique_ptr<BBitmap> owner(shot);
        return *static_cast<const uint32*>(shot->Bits()) & 0xffffff;
    }
    // Waits until the screen shows a colour there.
    static bool WaitForPixel(float x, float y, uint32 color)
    {
        const bigtime_t end = system_time() + 20000000;
        while (system_time() < end) {
            if (PixelAt(x, y) == color)
                return true;
            snooze(2000);
        }
        return false;
    }

    TestView* view = nullptr;
};

}  // namespace

TEST_F(WindowUpdate, FirstShowDrawsEverythingOnce)
{
    Make(99, 79);
    Add(BRect(0, 0, 99, 79), "a");
    window->Show();
    Settle();
    EXPECT_EQ(log.Lines({"a draw"}), "a draw 0,0,99,79");
    EXPECT_FALSE(window->NeedsUpdate());
}

TEST_F(WindowUpdate, ManyInvalidationsAreOneDraw)
{
    OpenOne();
    WhileBusy([&] {
        for (int i = 0; i < 100; i++)
            view->Invalidate(BRect(10, 10, 19, float(10 + i % 10)));
        EXPECT_TRUE(window->NeedsUpdate());
    });
    Settle();
    EXPECT_EQ(log.Lines({"a draw"}), "a draw 10,10,19,19");
}

TEST_F(WindowUpdate, InvalidationInDrawComesBackLater)
{
    OpenOne();
    int rounds = 0;
    view->onDraw = [&] {
        if (++rounds < 5)
            view->Invalidate();
    };
    window->Lock();
    view->Invalidate();
    window->Unlock();
    EXPECT_TRUE(log.Wait("a draw", 5));
    Settle();
    EXPECT_EQ(rounds, 5);
}

TEST_F(WindowUpdate, LongDrawsThatKeepOthersWaitingLeaveThemMoreTime)
{
    OpenOne();
    Settle();
    std::mutex lock;
    std::vector<std::pair<bigtime_t, bigtime_t>> draws;
    view->onDraw = [&] {
        const bigtime_t began = system_time();
        while (window->CountLockRequests() < 2 && system_time() < began + 20000000)
            snooze(1000);  // until this test waits for the window
        snooze(5000);
        std::lock_guard<std::mutex> held(lock);
        draws.emplace_back(began, system_time());
    };
    const auto count = [&] {
        std::lock_guard<std::mutex> held(lock);
        return draws.size();
    };
    const bigtime_t end = system_time() + 30000000;
    while (count() < 3 && system_time() < end) {
        window->Lock();
        view->Invalidate();
        window->Unlock();
    }
    window->Lock();
    view->onDraw = nullptr;
    window->Unlock();
    ASSERT_GE(count(), 3u);
    for (size_t i = 1; i < draws.size(); i++) {
        const bigtime_t took = draws[i - 1].second - draws[i - 1].first;
        EXPECT_GE(draws[i].first - draws[i - 1].second, std::min<bigtime_t>(took * 4, 250000));
    }
}

TEST_F(WindowUpdate, DisabledUpdatesWait)
{
    OpenOne();
    window->DisableUpdates();
    window->DisableUpdates();
    window->Lock();
    view->Invalidate();
    window->Unlock();
    Settle();
    window->EnableUpdates();
    Settle();
    EXPECT_EQ(log.Count("a draw"), 0);
    EXPECT_TRUE(window->NeedsUpdate());
    window->EnableUpdates();
    Settle();
    EXPECT_EQ(log.Lines({"a draw"}), "a draw 0,0,99,79");
    window->EnableUpdates();  // one too many
    window->Lock();
    view->Invalidate();
    window->Unlock();
    Settle();
    EXPECT_EQ(log.Count("a draw"), 2);
}

TEST_F(WindowUpdate, UpdateIfNeededDrawsOnTheSpot)
{
    OpenOne();
    view->onDown = [&] {
        view->Invalidate(BRect(1, 1, 2, 2));
        window->UpdateIfNeeded();
        EXPECT_EQ(log.Lines({"a draw"}), "a draw 1,1,2,2");
        window->UpdateIfNeeded();
    };
    Click(110, 110);
    Settle();
    EXPECT_EQ(log.Count("a draw"), 1);
    window->UpdateIfNeeded();  // another thread's call does nothing
}

TEST_F(WindowUpdate, HiddenWindowsDrawWhenTheyAreShown)
{
    OpenOne();
    window->Hide();
    window->Lock();
    view->Invalidate(BRect(3, 3, 5, 5));
    window->Unlock();
    Settle();
    EXPECT_EQ(log.Count("a draw"), 0);
    window->Show();
    EXPECT_TRUE(log.Wait("a draw"));
}

TEST_F(WindowUpdate, DrawingReachesTheScreenByItself)
{
    OpenOne();
    view->onDraw = [&] {
        view->SetHighColor(10, 200, 30);
        view->FillRect(view->Bounds());
    };
    window->Lock();
    view->Invalidate();
    window->Unlock();
    EXPECT_TRUE(WaitForPixel(150, 150, 0x0ac81e));
    // From another thread, without Draw().
    window->Lock();
    view->SetHighColor(250, 20, 30);
    view->FillRect(view->Bounds());
    window->Unlock();
    EXPECT_TRUE(WaitForPixel(150, 150, 0xfa141e));
    // A transaction holds it back; Sync() does not wait for a frame.
    window->BeginViewTransaction();
    window->Lock();
    view->SetHighColor(1, 2, 3);
    view->FillRect(view->Bounds());
    window->Sync();
    EXPECT_TRUE(window->InViewTransaction());
    EXPECT_EQ(PixelAt(150, 150), 0xfa141eu);
    window->EndViewTransaction();
    window->Sync();
    EXPECT_EQ(PixelAt(150, 150), 0x010203u);
    window->Unlock();
}

TEST_F(WindowUpdate, LiveResizeShowsNothingUndrawn)
{
    OpenOne(B_WILL_DRAW | B_FULL_UPDATE_ON_RESIZE);
    view->onDraw = [&] {
        view->SetHighColor(0, 0, 255);
        view->FillRect(view->Bounds());
    };
    inject_window_resize(150, 150, 199, 179);
    Settle();
    EXPECT_EQ(log.Lines({"a draw"}), "a draw 0,0,199,179");
    EXPECT_TRUE(WaitForPixel(290, 270, 0x0000ff));
}

TEST_F(WindowUpdate, PulsesGoToThoseWhoNeedThem)
{
    OpenOne(B_WILL_DRAW | B_PULSE_NEEDED);
    auto* inner = new TestView(log, BRect(0, 0, 9, 9), "inner", B_PULSE_NEEDED);
    window->Lock();
    view->AddChild(inner);
    view->AddChild(new TestView(log, BRect(20, 0, 29, 9), "quiet", B_WILL_DRAW));
    window->Unlock();
    EXPECT_EQ(window->PulseRate(), 500000);
    snooze(30000);
    EXPECT_EQ(log.Count("a pulse"), 0);  // none before a rate is set

    const bigtime_t start = system_time();
    window->SetPulseRate(20000);
    ASSERT_TRUE(log.Wait("inner pulse", 5));
    EXPECT_GE(system_time() - start, 5 * 20000);
    EXPECT_EQ(log.Message("a pulse").what, uint32(B_PULSE));
    EXPECT_EQ(log.Lines({"a pulse", "inner pulse"}).substr(0, 36),
              "a pulse; inner pulse; a pulse; inner");
    EXPECT_EQ(log.Count("quiet pulse"), 0);

    window->SetPulseRate(0);
    Settle();
    const int count = log.Count("a pulse");
    snooze(60000);
    EXPECT_EQ(log.Count("a pulse"), count);
    EXPECT_EQ(window->PulseRate(), 0);
    window->SetPulseRate(-5);
    EXPECT_EQ(window->PulseRate(), 0);
    window->SetPulseRate(INT64_MAX);
    Settle();
    EXPECT_EQ(log.Count("a pulse"), count);
}

TEST_F(WindowUpdate, PulsesThatTheWindowKeepsGoOn)
{
    struct Keeper : BWindow {
        explicit Keeper(Log& log)
            : BWindow(BRect(400, 100, 499, 199), "keeper", B_TITLED_WINDOW, 0), fLog(log)
        {
        }
        void DispatchMessage(BMessage* message, BHandler* handler) override
        {
            if (message->what == B_PULSE)
                fLog.Add(message, "kept");
            else
                BWindow::DispatchMessage(message, handler);
        }
        Log& fLog;
    };
    auto* keeper = new Keeper(log);
    keeper->SetPulseRate(1000);
    keeper->Show();
    EXPECT_TRUE(log.Wait("kept", 3));
    keeper->Lock();
    keeper->Quit();
}

TEST_F(WindowUpdate, PulsesMissedAreLeftOut)
{
    OpenOne(B_WILL_DRAW | B_PULSE_NEEDED);
    window->SetPulseRate(10000);
    ASSERT_TRUE(log.Wait("a pulse"));
    bigtime_t end = 0;
    WhileBusy([&] {
        log.Clear();
        snooze(150000);
        end = system_time();
    });
    Settle();
    const int count = log.Count("a pulse");
    EXPECT_LE(count, 3 + (system_time() - end) / 10000);
    window->SetPulseRate(0);
}
