// Tool tips of gadgets, as the user sees them: a window of their own, on and off the screen.

#include "support/program.h"

#include <gtest/gtest.h>

#include <Application.h>
#include <Bitmap.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <Messenger.h>
#include <Screen.h>
#include <StringView.h>
#include <Window.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

namespace {

enum Kind { kButtonKind = 1, kBoxKind = 24 };

const bigtime_t kWaiting = 1'000'000, kShowing = 3'000'000;

// What a window of a tool tip says of itself.
struct Tip {
    BRect frame;
    std::string text;
    bigtime_t rate = -1;
    rgb_color high = {};
    bool has_focus = false;

    bool IsUp() const { return frame.Intersects(BScreen().Frame()); }
};

std::vector<BWindow*> tip_windows()
{
    std::vector<BWindow*> tips;
    BWindow* window;
    for (int32 i = 0; (window = be_app->WindowAt(i)) != nullptr; i++) {
        if (!window->Lock())
            continue;
        if (window->FindView("tt") != nullptr)
            tips.push_back(window);
        window->Unlock();
    }
    return tips;
}

Tip read_tip(BWindow* window)
{
    Tip tip;
    if (window == nullptr || !window->Lock())
        return tip;
    auto* view = dynamic_cast<BStringView*>(window->FindView("tt"));
    tip.frame = window->Frame();
    tip.text = view->Text() != nullptr ? view->Text() : "";
    tip.rate = window->PulseRate();
    tip.high = view->HighColor();
    tip.has_focus = window->IsActive();
    window->Unlock();
    return tip;
}

class ToolTips : public testing::Test {
protected:
    ToolTips()
    {
        inject_pointer(0, 0);
        EXPECT_TRUE(eventually([this] { return Platform()->IsActive(); }));
        fGadget = Button(20, 20);
    }

    BWindow* Platform() const { return reinterpret_cast<BWindow*>(GetAdress(fWindow)); }
    int32_t Button(int32_t x, int32_t y)
    {
        return CreateGadget(kButtonKind, fWindow, x, y, 80, 24, "button", 0);
    }
    static Tip Now()
    {
        const std::vector<BWindow*> tips = tip_windows();
        return read_tip(tips.empty() ? nullptr : tips.back());
    }
    static bool ComesUp()
    {
        return eventually([] { return Now().IsUp(); });
    }
    static bool GoesAway()
    {
        return eventually([] { return !Now().IsUp(); });
    }

    TestWindow fWindow{100, 120, 299, 199};
    int32_t fGadget = 0;
};

}  // namespace

TEST_F(ToolTips, TextShowsBelowThePointerThatRests)
{
    SetTipsWindow(fGadget, "what it does");
    EXPECT_FALSE(Now().IsUp());
    fWindow.Point(30, 30);
    ASSERT_TRUE(ComesUp());
    const Tip tip = Now();
    EXPECT_EQ(tip.text, "what it does");
    EXPECT_EQ(tip.frame.LeftTop(), BPoint(130, 150 + 18));
    EXPECT_GT(tip.frame.Width(), be_plain_font->StringWidth("what it does"));
    EXPECT_EQ(tip.rate, kShowing);
    const rgb_color once = tint_color(ui_color(B_WINDOW_TAB_COLOR), 1.555f);
    EXPECT_EQ(tip.high, once);
    EXPECT_FALSE(tip.has_focus);
    EXPECT_TRUE(Platform()->IsActive());
}

TEST_F(ToolTips, WindowIsBareAndFloatsAboveAll)
{
    SetTipsWindow(fGadget, "what it does");
    BWindow* const window = tip_windows().at(0);
    window->Lock();
    EXPECT_EQ(window->Look(), B_BORDERED_WINDOW_LOOK);
    EXPECT_EQ(window->Feel(), B_FLOATING_ALL_WINDOW_FEEL);
    EXPECT_EQ(window->Flags(), uint32(B_NOT_MOVABLE | B_AVOID_FOCUS));
    EXPECT_EQ(window->Frame().LeftTop(), BPoint(-1000, -1000));
    EXPECT_EQ(window->PulseRate(), 0);
    auto* view = dynamic_cast<BStringView*>(window->FindView("tt"));
    EXPECT_EQ(view->ResizingMode(), uint32(B_FOLLOW_ALL));
    EXPECT_EQ(view->Flags() & (B_WILL_DRAW | B_PULSE_NEEDED), uint32(B_WILL_DRAW | B_PULSE_NEEDED));
    EXPECT_EQ(view->Alignment(), B_ALIGN_CENTER);
    EXPECT_EQ(view->ViewColor(), ui_color(B_WINDOW_TAB_COLOR));
    EXPECT_EQ(view->LowColor(), view->ViewColor());
    window->Unlock();
}

TEST_F(ToolTips, FrameIsLightAboveAndDarkBelow)
{
    SetTipsWindow(fGadget, "what it does");
    fWindow.Point(30, 30);
    ASSERT_TRUE(ComesUp());
    const BRect frame = Now().frame;
    BRect place = frame;
    const rgb_color ground = ui_color(B_WINDOW_TAB_COLOR);
    const auto is_drawn = [&] {
        BBitmap* shot = nullptr;
        if (BScreen().GetBitmap(&shot, false, &place) != B_OK)
            return false;
        const std::unique_ptr<BBitmap> owner(shot);
        const auto at = [&](float x, float y) {
            const auto* pixel = static_cast<const uint8*>(shot->Bits()) +
                                int32(y) * shot->BytesPerRow() + int32(x) * 4;
            return make_color(pixel[2], pixel[1], pixel[0]);
        };
        const float right = frame.Width(), bottom = frame.Height();
        const rgb_color light = tint_color(ground, 0.385f), dark = tint_color(ground, 1.147f);
        return at(0, bottom / 2) == light && at(right / 2, 0) == light && at(0, 0) == light &&
               at(right, bottom / 2) == dark && at(right / 2, bottom) == dark &&
               at(right, bottom) == dark && at(1, 1) == ground;
    };
    EXPECT_TRUE(eventually(is_drawn));
    BStringView plain(BRect(), "", "what it does");
    float width;
    plain.GetPreferredSize(&width, nullptr);
    EXPECT_EQ(frame.Width(), width + 4);
}

// A second of rest begins with the last move; the same place again is no move.
TEST_F(ToolTips, PointerThatStaysWhereItIsWaitsOn)
{
    SetTipsWindow(fGadget, "text");
    fWindow.Point(30, 30);
    ASSERT_TRUE(ComesUp());
    fWindow.Point(30, 30);
    BMessage same('ttSt'), title(B_GET_PROPERTY), reply;
    same.AddPoint("where", BPoint(30, 30));
    title.AddSpecifier("Title");
    BMessenger tip(tip_windows().at(0));
    tip.SendMessage(&same);
    tip.SendMessage(&title, &reply);
    EXPECT_NE(Now().rate, kWaiting);
    fWindow.Point(31, 30);
    EXPECT_TRUE(GoesAway());
}

TEST_F(ToolTips, AfterThreeSecondsTheyGoAndNothingWaits)
{
    SetTipsWindow(fGadget, "text");
    fWindow.Point(30, 30);
    ASSERT_TRUE(ComesUp());
    EXPECT_TRUE(eventually([] { return Now().rate == 0; }));
    EXPECT_FALSE(Now().IsUp());
    EXPECT_EQ(Now().text, "");
}

TEST_F(ToolTips, UseOfThePointerHidesThem)
{
    SetTipsWindow(fGadget, "text");
    const std::vector<void (*)()> uses = {
        [] { inject_pointer(131, 150); },
        [] { inject_button(1, true); },
        [] { inject_button(1, false); },
        [] { inject_wheel(0, 1); },
    };
    fWindow.Point(30, 30);
    for (size_t i = 0; i < uses.size(); i++) {
        ASSERT_TRUE(ComesUp()) << i;
        uses[i]();
        EXPECT_TRUE(GoesAway()) << i;
    }
}

TEST_F(ToolTips, PointerThatLeftTheWindowShowsNone)
{
    SetTipsWindow(fGadget, "text");
    auto* cover = new BWindow(BRect(110, 130, 170, 190), "", B_NO_BORDER_WINDOW_LOOK,
                              B_FLOATING_ALL_WINDOW_FEEL, B_AVOID_FOCUS);
    cover->Show();
    inject_pointer(fWindow.X(85), fWindow.Y(30));
    inject_pointer(fWindow.X(60), fWindow.Y(30));  // in the other one, which lies above
    EXPECT_TRUE(eventually([] { return Now().rate == kShowing; }));
    EXPECT_TRUE(Platform()->IsActive());
    EXPECT_FALSE(Now().IsUp());
    cover->Lock();
    cover->Quit();
}

TEST_F(ToolTips, WindowThatIsNotActiveShowsNone)
{
    SetTipsWindow(fGadget, "text");
    const int32_t other = OpenWindow(500, 400, 60, 60);
    ASSERT_TRUE(eventually([this] { return !Platform()->IsActive(); }));
    fWindow.Point(30, 30);
    EXPECT_TRUE(eventually([] { return Now().rate == kShowing; }));
    EXPECT_FALSE(Now().IsUp());
    CloseWindow(other);
}

TEST_F(ToolTips, NewTextTakesTheOldOnesPlace)
{
    SetTipsWindow(fGadget, "old");
    SetTipsWindow(fGadget, "new");
    EXPECT_EQ(tip_windows().size(), 1u);
    fWindow.Point(30, 30);
    ASSERT_TRUE(ComesUp());
    EXPECT_EQ(Now().text, "new");
    SetTipsWindow(fGadget, nullptr);
    fWindow.Point(31, 30);
    ASSERT_TRUE(eventually([] { return Now().rate == kWaiting; }));
    EXPECT_TRUE(eventually([] { return Now().rate == kShowing; }));
    EXPECT_FALSE(Now().IsUp());
}

TEST_F(ToolTips, GadgetInABoxShowsTheBoxesText)
{
    const int32_t box = CreateGadget(kBoxKind, fWindow, 10, 60, 200, 100, "", 0);
    const int32_t inner = Button(20, 30);
    BBoxAddGadget(box, inner);
    SetTipsWindow(box, "the box");
    fWindow.Point(40, 100);
    ASSERT_TRUE(ComesUp());
    EXPECT_EQ(Now().text, "the box");
}

TEST_F(ToolTips, GoWithTheirGadget)
{
    SetTipsWindow(fGadget, "text");
    fWindow.Point(30, 30);
    ASSERT_TRUE(ComesUp());
    KillGadget(fWindow, fGadget);
    EXPECT_TRUE(GoesAway());
    EXPECT_EQ(Now().text, "");
    fGadget = Button(20, 20);  // perhaps where the other one was
    EXPECT_TRUE(eventually([] { return Now().rate == kShowing; }));
    EXPECT_FALSE(Now().IsUp());
}

TEST_F(ToolTips, GoWithTheirWindow)
{
    const int32_t window = OpenWindow(500, 400, 99, 99);
    SetTipsWindow(CreateGadget(kButtonKind, window, 0, 0, 80, 24, "button", 0), "text");
    inject_pointer(510, 410);
    ASSERT_TRUE(ComesUp());
    CloseWindow(window);
    EXPECT_TRUE(eventually([] { return tip_windows().empty(); }));
}

TEST_F(ToolTips, StayOnTheScreen)
{
    const BRect screen = BScreen().Frame();
    const auto left = static_cast<int32_t>(screen.right) - 40;
    const auto top = static_cast<int32_t>(screen.bottom) - 40;
    const int32_t window = OpenWindow(left, top, 99, 99);
    SetTipsWindow(CreateGadget(kButtonKind, window, 0, 0, 80, 24, "button", 0),
                  "a text that has no room in a corner");
    const BPoint pointer(screen.right - 10, screen.bottom - 20);
    inject_pointer(pointer.x, pointer.y);
    ASSERT_TRUE(ComesUp());
    const Tip tip = Now();
    EXPECT_TRUE(screen.Contains(tip.frame)) << tip.frame.right << " " << tip.frame.bottom;
    EXPECT_FALSE(tip.frame.Contains(pointer));
    CloseWindow(window);
    EXPECT_TRUE(eventually([] { return tip_windows().empty(); }));
}

TEST_F(ToolTips, TurnedOnTwiceTheFormerOnesGoOnKept)
{
    SetTipsWindow(fGadget, "former");
    ToolTipsWindow(fWindow, 1);
    EXPECT_EQ(tip_windows().size(), 2u);
    fWindow.Point(30, 30);
    const auto is_up = [] {
        for (BWindow* window : tip_windows()) {
            if (read_tip(window).IsUp())
                return read_tip(window).text == "former";
        }
        return false;
    };
    EXPECT_TRUE(eventually(is_up));
    ToolTipsWindow(fWindow, 0);
    EXPECT_TRUE(eventually([] { return tip_windows().size() == 1; }));
    ToolTipsWindow(fWindow, 0);
    EXPECT_EQ(tip_windows().size(), 1u);
}

TEST_F(ToolTips, TurnedOffTheyForgetTheTexts)
{
    SetTipsWindow(fGadget, "text");
    ToolTipsWindow(fWindow, 0);
    EXPECT_TRUE(eventually([] { return tip_windows().empty(); }));
    ToolTipsWindow(fWindow, 1);
    fWindow.Point(30, 30);
    EXPECT_TRUE(eventually([] { return Now().rate == kShowing; }));
    EXPECT_FALSE(Now().IsUp());
}

TEST_F(ToolTips, WhatNamesNothingDoesNothing)
{
    for (int32_t none : {0, -1, INT32_MAX, INT32_MIN, fGadget}) {
        ToolTipsWindow(none, 1);
        ToolTipsWindow(none, 0);
    }
    for (int32_t none : {0, -1, INT32_MAX, INT32_MIN, fWindow.Ident()})
        SetTipsWindow(none, "text");
    const int32_t alone = CreateGadget(kButtonKind, -1, 0, 0, 80, 24, "button", 0);
    SetTipsWindow(alone, "text");
    SetTipsWindow(alone, nullptr);
    KillGadget(-1, alone);
    ToolTipsWindow(fWindow, 0);
    EXPECT_TRUE(tip_windows().empty());
}
