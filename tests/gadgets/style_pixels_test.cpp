// What the setters of styles change on the screen.

#include "gadgets/gadget_window.h"

#include <Bitmap.h>
#include <Application.h>
#include <Screen.h>
#include <Window.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

const BRect kPlace(20, 20, 219, 119);  // of the gadget, in the window

using Pixels = std::vector<uint32_t>;

Pixels pixels_shown()
{
    BBitmap* shot = nullptr;
    BRect frame = kPlace.OffsetByCopy(100, 100);
    EXPECT_EQ(BScreen().GetBitmap(&shot, false, &frame), B_OK);
    const std::unique_ptr<BBitmap> owner(shot);
    Pixels pixels;
    for (int32 y = 0; y <= shot->Bounds().IntegerHeight(); y++) {
        const auto* row = reinterpret_cast<const uint32_t*>(
            static_cast<const uint8_t*>(shot->Bits()) + y * shot->BytesPerRow());
        for (int32 x = 0; x <= shot->Bounds().IntegerWidth(); x++)
            pixels.push_back(row[x] & 0xFFFFFF);
    }
    return pixels;
}

int64_t count_of(uint32_t color)
{
    const Pixels pixels = pixels_shown();
    return std::count(pixels.begin(), pixels.end(), color);
}

class StylePixels : public GadgetTest {
protected:
    int32_t Show(int32_t kind, const void* text = "Label", int32_t value = 100)
    {
        return Make(kind, 20, 20, 180, 60, text, value);
    }
    // Until all that there is to be drawn is on the screen.
    static bool IsDrawn()
    {
        for (int32 i = 0; i < be_app->CountWindows(); i++) {
            BWindow* const window = be_app->WindowAt(i);
            if (window == nullptr || !window->Lock())
                continue;
            const bool waits = window->NeedsUpdate();
            window->Sync();
            window->Unlock();
            if (waits)
                return false;
        }
        return true;
    }
    static void DrawAnew(int32_t ident)
    {
        HideGadget(0, ident);
        SetGadget(0, ident);
    }
    // What an action makes of the picture, once it is another one.
    template <class Act>
    static bool Changes(Act act)
    {
        Settle();
        EXPECT_TRUE(eventually(IsDrawn));
        const Pixels before = pixels_shown();
        act();
        return eventually([&] { return pixels_shown() != before; });
    }
    static bool Appears(uint32_t color, int64_t at_least = 20)
    {
        return eventually([=] { return count_of(color) >= at_least; });
    }
};

}  // namespace

TEST_F(StylePixels, BarsAndFillsOfSlidersHaveTheirColours)
{
    const int32_t slider = Show(15);
    SetSliderPosition(slider, 50);
    SetBarColor(slider, 0x12AB34FF);
    EXPECT_TRUE(Appears(0x12AB34));
    SetFillColor(slider, 0x5634CDFF);
    EXPECT_TRUE(Appears(0x5634CD));
    const int64_t half = count_of(0x5634CD);
    SetSliderPosition(slider, 100);
    EXPECT_TRUE(eventually([=] { return count_of(0x5634CD) > half + half / 2; }));
}

TEST_F(StylePixels, SlidersShowThumbsMarksAndLimits)
{
    const int32_t slider = Show(15);
    EXPECT_TRUE(Changes([=] { SetStyle(slider, 0); }));
    EXPECT_TRUE(Changes([=] { SetStyle(slider, 1); }));
    EXPECT_TRUE(Changes([=] {
        SetHashCount(slider, 11);
        SetHashType(slider, 1);
    }));
    EXPECT_TRUE(Changes([=] { SetHashType(slider, 2); }));
    EXPECT_TRUE(Changes([=] { SetHashCount(slider, 3); }));
    EXPECT_TRUE(Changes([=] { SetLimitsLabel(slider, "low", "high"); }));
    EXPECT_TRUE(Changes([=] { SetLabel(slider, "Other"); }));
    EXPECT_TRUE(Changes([=] { SetEnabled(slider, 0); }));
}

TEST_F(StylePixels, StatusBarsShowColourHeightAndTexts)
{
    const int32_t bar = Show(17);
    SetStatusValue(bar, 50);
    SetStatusBarColor(bar, 0x12AB34FF);
    EXPECT_TRUE(Appears(0x12AB34));
    const int64_t low = count_of(0x12AB34);
    SetStatusBarHeight(bar, 30);
    EXPECT_TRUE(eventually([=] { return count_of(0x12AB34) > low; }));
    EXPECT_TRUE(Changes([=] { SetStatusLabel(bar, "Label"); }));
    EXPECT_TRUE(Changes([=] { SetStatusTrail(bar, "Trail"); }));
}

TEST_F(StylePixels, TextsAndGroundsHaveTheirColours)
{
    const int32_t check = Show(2);
    EXPECT_TRUE(Appears(0, 5));
    SetForeColorGadget(check, static_cast<int32_t>(0xC01020FF), -1);
    DrawAnew(check);
    EXPECT_TRUE(Appears(0xC01020, 5));
    SetBackColorGadget(check, 0x12AB34FF);
    DrawAnew(check);
    EXPECT_TRUE(Appears(0x12AB34, 100));
    EXPECT_TRUE(Changes([=] { SetEnabled(check, 0); }));
}

TEST_F(StylePixels, FontsShow)
{
    const int32_t check = Show(2);
    const int32_t large = OpenFont(nullptr, nullptr, 24);
    EXPECT_TRUE(Changes([=] {
        SetFontGadget(check, large);
        DrawAnew(check);
    }));
    CloseFont(large);
}

TEST_F(StylePixels, StylesWaitForTheNextRedrawKept)
{
    const int32_t check = Show(2);
    const int32_t large = OpenFont(nullptr, nullptr, 24);
    EXPECT_TRUE(Appears(0, 5));
    EXPECT_TRUE(eventually(IsDrawn));
    const Pixels before = pixels_shown();
    SetForeColorGadget(check, static_cast<int32_t>(0xC01020FF), -1);
    SetBackColorGadget(check, 0x12AB34FF);
    SetFontGadget(check, large);
    SetAntiliasingGadget(check, 0);
    WithView(0, [](BView* view) {
        EXPECT_FALSE(view->Window()->NeedsUpdate());
        return 0;
    });
    Settle();
    EXPECT_EQ(pixels_shown(), before);
    EXPECT_TRUE(Changes([=] { DrawAnew(check); }));
    CloseFont(large);
}

TEST_F(StylePixels, BoxesShowTheirBordersAndLabels)
{
    const int32_t box = Show(24, "Box");
    for (const int32_t border : {2, 0, 1})
        EXPECT_TRUE(Changes([=] { SetBorder(box, border); })) << border;
    EXPECT_TRUE(Changes([=] { SetLabelBBox(box, "Another label"); }));
}

TEST_F(StylePixels, ColourControlsFollowCellsAndLayout)
{
    const int32_t control = Show(30);
    EXPECT_TRUE(Changes([=] { SetCellSize(control, 12); }));
    EXPECT_TRUE(Changes([=] { SetLayout(control, 32); }));
    EXPECT_TRUE(Changes([=] { SetColorRgb(control, 0x12AB34FF); }));
}

TEST_F(StylePixels, ScrollBarsShowProportionAndValue)
{
    const int32_t bar = Make(13, 20, 20, 180, 14);
    EXPECT_TRUE(Changes([=] { SetProportion(bar, 50); }));
    EXPECT_TRUE(Changes([=] { SetValue(bar, 60); }));
    EXPECT_TRUE(Changes([=] { SetRange(bar, 0, 0); }));
}
