// Place and size, asked for by the program and by the user.

#include <cmath>
#include <limits>

#include <MessageQueue.h>

#include "window_harness.h"

using namespace window_test;

namespace {

class WindowFrame : public WindowTest {
protected:
    void OpenFilled()
    {
        Make(199, 149);
        Add(BRect(0, 0, 199, 149), "all", B_WILL_DRAW | B_FRAME_EVENTS, B_FOLLOW_ALL);
        Start();
    }
    std::string FrameLines()
    {
        Settle();
        return log.Lines({"moved", "resized", "zoom"});
    }
};

}  // namespace

TEST_F(WindowFrame, ProgramsChangeHoldsAtOnceAndItsHookComesOnce)
{
    OpenFilled();
    WhileBusy([&] {
        window->MoveTo(130, 140);
        EXPECT_EQ(window->Frame(), BRect(130, 140, 329, 289));
        window->ResizeTo(99, 79);
        EXPECT_EQ(window->Frame(), BRect(130, 140, 229, 219));
        EXPECT_EQ(window->Bounds(), BRect(0, 0, 99, 79));
        EXPECT_EQ(window->FindView("all")->Bounds(), BRect(0, 0, 99, 79));
        EXPECT_EQ(log.Lines({"moved", "resized"}), "");
    });
    EXPECT_EQ(FrameLines(), "moved 130,140; resized 99,79");
    const BMessage moved = log.Message("moved");
    EXPECT_EQ(moved.what, uint32(B_WINDOW_MOVED));
    EXPECT_EQ(moved.FindPoint("where"), BPoint(130, 140));
    EXPECT_TRUE(moved.HasInt64("when"));
    const BMessage resized = log.Message("resized");
    EXPECT_EQ(resized.what, uint32(B_WINDOW_RESIZED));
    EXPECT_EQ(resized.FindInt32("width"), 99);
    EXPECT_EQ(resized.FindInt32("height"), 79);

    window->MoveTo(130, 140);
    window->ResizeTo(99, 79);
    EXPECT_EQ(FrameLines(), "moved 130,140; resized 99,79");  // nothing changed: no more hooks
    window->MoveBy(-10, 5);
    window->ResizeBy(1, -1);
    EXPECT_EQ(FrameLines(), "moved 130,140; resized 99,79; moved 120,145; resized 100,78");
}

TEST_F(WindowFrame, MovesByTheThousandFillNoQueueAndEndAtTheLast)
{
    OpenFilled();
    WhileBusy([&] {
        for (int32 i = 1; i <= 10000; i++)
            window->MoveTo(static_cast<float>(i), 7);
        EXPECT_LT(window->MessageQueue()->CountMessages(), 100);
    });
    const std::string lines = FrameLines();
    EXPECT_EQ(lines.substr(0, 24), "moved 1,7; moved 2,7; mo") << "a few are told one by one";
    EXPECT_EQ(lines.substr(lines.rfind("moved")), "moved 10000,7");
    window->MoveTo(5, 6);
    EXPECT_EQ(FrameLines().substr(lines.size()), "; moved 5,6");
}

TEST_F(WindowFrame, UsersChangeArrivesAsHooksAndMovesTheViews)
{
    OpenFilled();
    inject_window_move(150, 150, 200, 210);
    inject_window_resize(250, 250, 299, 249);
    EXPECT_EQ(FrameLines(), "moved 200,210; resized 299,249");
    EXPECT_EQ(window->Frame(), BRect(200, 210, 499, 459));
    EXPECT_TRUE(log.Wait("all resized 299,249"));
    EXPECT_GE(log.Count("all draw"), 1);
}

TEST_F(WindowFrame, QueuedSizesCollapseToTheNewest)
{
    OpenFilled();
    WhileBusy([] {
        for (int i = 0; i < 20; i++)
            inject_window_resize(150, 150, float(200 + i), 150);
    });
    EXPECT_EQ(FrameLines(), "resized 219,150");
}

TEST_F(WindowFrame, ProgramsLaterWordWins)
{
    OpenFilled();
    WhileBusy([&] {
        inject_window_move(150, 150, 300, 300);
        inject_window_resize(350, 350, 120, 120);
        window->MoveTo(50, 60);
        window->ResizeTo(180, 170);
    });
    Settle();
    EXPECT_EQ(window->Frame(), BRect(50, 60, 230, 230));
    EXPECT_EQ(log.Lines({"resized"}), "resized 180,170");
    WhileBusy([&] {
        window->MoveTo(70, 80);
        inject_window_move(100, 100, 90, 95);
    });
    Settle();
    EXPECT_EQ(window->Frame().LeftTop(), BPoint(90, 95));
}

TEST_F(WindowFrame, HookThatMovesBackEndsThere)
{
    OpenFilled();
    window->onMoved = [&] { window->MoveTo(100, 100); };
    window->onResized = [&] { window->ResizeTo(199, 149); };
    inject_window_move(150, 150, 300, 300);
    for (int round = 0; round < 5; round++)
        Settle();
    inject_window_resize(150, 150, 400, 300);
    for (int round = 0; round < 5; round++)
        Settle();
    EXPECT_EQ(window->Frame(), BRect(100, 100, 299, 249));
    EXPECT_EQ(log.Count("moved 100,100"), 1);
    EXPECT_EQ(log.Count("resized 199,149"), 1);
    EXPECT_LE(log.Count("moved"), 2);
}

TEST_F(WindowFrame, LimitsBindProgramAndUser)
{
    OpenFilled();
    window->SetSizeLimits(100, 300, 80, 200);
    window->ResizeTo(10, 1000);
    EXPECT_EQ(window->Bounds(), BRect(0, 0, 100, 200));
    inject_window_resize(150, 150, 5000, 10);
    Settle();
    EXPECT_EQ(window->Bounds(), BRect(0, 0, 300, 80));
    log.Clear();
    window->SetSizeLimits(350, 400, 90, 90);  // moves the size as well
    EXPECT_EQ(window->Bounds(), BRect(0, 0, 350, 90));
    EXPECT_EQ(FrameLines(), "resized 350,90");
    window->SetSizeLimits(50, 40, 0, 100);  // no limits at all
    float low_width, high_width, low_height, high_height;
    window->GetSizeLimits(&low_width, &high_width, &low_height, &high_height);
    EXPECT_EQ(low_width, 350);
    EXPECT_EQ(high_width, 400);
    EXPECT_EQ(low_height, 90);
    EXPECT_EQ(high_height, 90);
    window->GetSizeLimits(nullptr, nullptr, nullptr, nullptr);
}

TEST_F(WindowFrame, FramesAreWholePixels)
{
    OpenFilled();
    window->MoveTo(10.4f, 20.6f);
    window->ResizeTo(99.5f, 49.4f);
    EXPECT_EQ(window->Frame(), BRect(10, 21, 110, 70));
    auto* fractional = new TestWindow(log, BRect(0.2f, 0, 199.7f, 99.2f));
    EXPECT_EQ(fractional->Frame(), BRect(0, 0, 200, 99));
    Close(fractional);
    auto* inverted = new TestWindow(log, BRect(50, 50, 10, 10));
    EXPECT_EQ(inverted->Frame(), BRect(50, 50, 50, 50));
    Close(inverted);
}

TEST_F(WindowFrame, WildNumbersDoNoHarm)
{
    OpenFilled();
    const float kInfinity = std::numeric_limits<float>::infinity();
    const BRect before = window->Frame();
    window->MoveTo(NAN, 5);
    window->ResizeTo(5, NAN);
    window->MoveBy(NAN, NAN);
    EXPECT_EQ(window->Frame(), before);
    for (float wild : {kInfinity, -kInfinity, 2147483648.0f, -2147483648.0f}) {
        window->MoveTo(wild, wild);
        window->ResizeTo(100, -std::fabs(wild));
        window->SetZoomLimits(wild, wild);
        EXPECT_EQ(window->Bounds(), BRect(0, 0, 100, 0));
        EXPECT_TRUE(std::isfinite(window->Frame().left));
    }
    window->SetSizeLimits(NAN, NAN, NAN, NAN);
    window->CenterIn(BRect(NAN, NAN, NAN, NAN));
    window->MoveTo(10, 10);
    window->ResizeTo(50, 60);
    EXPECT_EQ(window->Frame(), BRect(10, 10, 60, 70));
    auto* wild = new TestWindow(log, BRect(NAN, -1e30f, kInfinity, NAN));
    EXPECT_TRUE(wild->Frame().IsValid());
    Close(wild);
}

TEST_F(WindowFrame, ZoomFillsTheScreenAndComesBack)
{
    OpenFilled();
    inject_window_zoom(150, 150);
    Settle();
    ASSERT_EQ(log.Count("zoom"), 1);
    EXPECT_EQ(log.Message("zoom").what, uint32(B_ZOOM));
    const BRect border = window->DecoratorFrame();
    EXPECT_EQ(border, BRect(0, 0, 1023, 767));
    inject_window_zoom(500, 500);
    Settle();
    EXPECT_EQ(window->Frame(), BRect(100, 100, 299, 249));

    window->SetZoomLimits(400, 300);
    window->Zoom();
    EXPECT_EQ(window->Frame(), BRect(100, 100, 500, 400));
    window->MoveTo(90, 90);  // no longer the zoomed frame: it zooms again
    window->Zoom();
    EXPECT_EQ(window->Frame(), BRect(90, 90, 490, 390));
}

TEST_F(WindowFrame, CentresOnTheScreen)
{
    OpenFilled();
    window->CenterOnScreen();
    EXPECT_EQ(window->Frame(), BRect(412, 309, 611, 458));
    window->CenterIn(BRect(0, 0, 299, 249));
    EXPECT_EQ(window->Frame(), BRect(50, 50, 249, 199));
    window->MoveTo(5000, -3000);
    window->MoveOnScreen();
    EXPECT_TRUE(BRect(0, 0, 1023, 767).Contains(window->DecoratorFrame()));
    const BPoint corner = window->Frame().RightBottom();
    EXPECT_EQ(window->ConvertToScreen(BPoint(199, 149)), corner);
    EXPECT_EQ(window->ConvertFromScreen(corner), BPoint(199, 149));
}

TEST_F(WindowFrame, MessagesMoveTheWindow)
{
    OpenFilled();
    BMessage move(B_WINDOW_MOVE_TO);
    move.AddPoint("data", BPoint(10, 20));
    window->PostMessage(&move);
    BMessage by(B_WINDOW_MOVE_BY);
    by.AddPoint("data", BPoint(3, -4));
    window->PostMessage(&by);
    Settle();
    EXPECT_EQ(window->Frame().LeftTop(), BPoint(13, 16));
}
