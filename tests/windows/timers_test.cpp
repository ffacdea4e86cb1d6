// The timer of a window. The window's pulses are made faster than a second, so that nobody waits.

#include "support/program.h"

#include <Application.h>
#include <Window.h>

#include <gtest/gtest.h>

#include <atomic>

namespace {

const bigtime_t kFastPulse = 2000;  // microseconds

std::atomic<int> sCalls;

// A program's only window, and the kit's object behind it.
class Timer : public testing::Test {
protected:
    Timer()
    {
        sCalls = 0;
        fWindow.Handle(
            PLINTH_TIMER, +[] { ++sCalls; });
        fKit = be_app->WindowAt(be_app->CountWindows() - 1);
    }
    void Faster() { fKit->SetPulseRate(kFastPulse); }
    bigtime_t Rate() const { return fKit->PulseRate(); }
    // Lets so many pulses go by, and a few more.
    static void Pass(int pulses) { snooze((pulses + 10) * kFastPulse); }

    TestWindow fWindow;
    BWindow* fKit;
};

}  // namespace

TEST_F(Timer, CountsSecondsWhileItRuns)
{
    SetTimerCount(fWindow, 3);
    SetTimerStart(fWindow, 1);
    EXPECT_EQ(1000000, Rate());
    SetTimerStart(fWindow, 0);
    EXPECT_EQ(0, Rate());
    SetTimerStart(fWindow, 255);
    EXPECT_EQ(1000000, Rate());
    SetTimerCount(fWindow, 0);
    EXPECT_EQ(0, Rate());
}

TEST_F(Timer, CallsItsHandlerOncePerPeriod)
{
    SetTimerCount(fWindow, 5);
    const bigtime_t start = system_time();
    SetTimerStart(fWindow, 1);
    Faster();
    ASSERT_TRUE(eventually([] { return sCalls >= 4; }));
    // Pulses come no faster than their rate: twenty of them take at least nineteen of its steps.
    EXPECT_GE(system_time() - start, 19 * kFastPulse);
    SetTimerStart(fWindow, 0);
    fKit->Lock();  // behind the pulse that may be under way
    const int calls = sCalls;
    fKit->Unlock();
    Faster();
    Pass(10);
    EXPECT_EQ(calls, sCalls);
}

TEST_F(Timer, StopsForPeriodNullAndIgnoresNegativeOnes)
{
    SetTimerCount(fWindow, 1);
    SetTimerCount(fWindow, -7);
    SetTimerStart(fWindow, 1);
    Faster();
    ASSERT_TRUE(eventually([] { return sCalls >= 2; }));
    SetTimerCount(fWindow, 0);
    fKit->Lock();
    const int calls = sCalls;
    fKit->Unlock();
    Faster();
    Pass(5);
    EXPECT_EQ(calls, sCalls);
}

TEST_F(Timer, HandlerMayStopItsOwnTimer)
{
    static int32_t sIdent;
    sIdent = fWindow;
    fWindow.Handle(
        PLINTH_TIMER, +[] {
            ++sCalls;
            SetTimerStart(sIdent, 0);
        });
    SetTimerCount(fWindow, 1);
    SetTimerStart(fWindow, 1);
    Faster();
    ASSERT_TRUE(eventually([] { return sCalls >= 1; }));
    fKit->Lock();
    EXPECT_EQ(0, fKit->PulseRate());
    fKit->Unlock();
    Faster();
    Pass(5);
    EXPECT_EQ(1, sCalls);
}

TEST_F(Timer, GoesOnInSecondsBesideCarets)
{
    SetTimerCount(fWindow, 1);
    SetTimerStart(fWindow, 1);
    for (int32_t kind : {3, 26, 29}) {
        CreateGadget(kind, fWindow, 10, 10, 100, 40, nullptr, 0);
        EXPECT_EQ(1000000, Rate()) << "kind " << kind;
    }
    SetTimerStart(fWindow, 0);
    EXPECT_EQ(500000, Rate()) << "for the carets";
    SetTimerStart(fWindow, 1);
    EXPECT_EQ(1000000, Rate());
    SetTimerCount(fWindow, 0);
    EXPECT_EQ(500000, Rate());
}

TEST(TimerCalls, UnknownWindowsChangeNothing)
{
    for (int32_t ident : {0, -1, 12345}) {
        SetTimerStart(ident, 1);
        SetTimerCount(ident, 1);
    }
}
