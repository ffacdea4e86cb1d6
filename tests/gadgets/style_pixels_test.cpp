// What the setters of styles change on the screen.

#include "gadgets/gadget_window.h"

#include <Bitmap.h>
#include <Application.h>
#include <Control.h>
#include <List.h>
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

// --- picture buttons

namespace {

const uint32_t kRed = 0xFF0000, kGround = 0xD8D8D8;

// Where a button of 16 by 16 pixels and its frame of two differ from what they have to be.
std::string faults(uint32_t light, uint32_t dark)
{
    const Pixels pixels = pixels_shown();
    const size_t width = kPlace.IntegerWidth() + 1;
    std::string faults;
    for (size_t y = 0; y <= 21; y++) {
        for (size_t x = 0; x <= 21; x++) {
            const bool edge_x = x == 0 || x == 20, edge_y = y == 0 || y == 20;
            uint32_t wanted = kGround;
            if (x > 20 || y > 20 || (edge_x && edge_y))
                wanted = kGround;
            else if (edge_x || edge_y)
                wanted = 0;
            else if ((x == 1 && y <= 18) || (y == 1 && x >= 2))
                wanted = light;
            else if ((x == 19 && y >= 2) || y == 19)
                wanted = dark;
            else if (x <= 17 && y <= 17)
                wanted = kRed;
            if (pixels[y * width + x] != wanted)
                faults += std::to_string(x) + "," + std::to_string(y) + " ";
        }
    }
    return faults;
}

bool looks(uint32_t light, uint32_t dark)
{
    return eventually([=] { return faults(light, dark).empty(); });
}
bool looks_released() { return looks(0xFFFFFF, 0x7F7F7F); }
bool looks_pressed() { return looks(0x606060, 0xC8C8C8); }

}  // namespace

TEST_F(StylePixels, PictureButtonsStandOutUntilTheyArePressed)
{
    const int32_t icon = CreateImage(16, 16);
    SetForeColor(icon, static_cast<int32_t>(0xFF0000FF), 0);
    FRectangle(icon, 0, 0, 15, 15);
    const int32_t button = Make(33, 20, 20, 16, 16, nullptr, icon);
    CloseIcon(icon);  // it has a copy
    EXPECT_TRUE(looks_released()) << faults(0xFFFFFF, 0x7F7F7F);
    // It is told by a message that the program's own gadgets do not have.
    auto* message = new BMessage(753);
    message->AddPointer("gd", static_cast<BList*>(gRegistry[4])->LastItem());
    WithView(0, [=](BView* view) {
        static_cast<BControl*>(view)->SetMessage(message);
        return 0;
    });
    Press(30, 30);
    EXPECT_TRUE(looks_pressed()) << faults(0x606060, 0xC8C8C8);
    window.Point(150, 150);
    EXPECT_TRUE(looks_pressed()) << "wherever the pointer goes";
    Release();
    EXPECT_TRUE(looks_released());
    EXPECT_EQ(Calls(), "");
    window.Point(30, 30);
    Release();
    EXPECT_EQ(Calls(), "") << "it was not down";
    Press(30, 30);
    EXPECT_TRUE(looks_pressed());
    Release();
    EXPECT_TRUE(looks_released());
    EXPECT_EQ(Calls(), "action");
    KillGadget(0, button);
}
