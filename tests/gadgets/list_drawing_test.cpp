// List gadgets on the screen: colours, draw hooks, scroll bars.

#include "gadgets/list_gadgets.h"

#include <Bitmap.h>
#include <Screen.h>
#include <ScrollBar.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <vector>

namespace {

uint32_t pixel_at(BPoint place)
{
    BBitmap* shot = nullptr;
    BRect frame(place.x + 100, place.y + 100, place.x + 100, place.y + 100);
    EXPECT_EQ(BScreen().GetBitmap(&shot, false, &frame), B_OK);
    const std::unique_ptr<BBitmap> owner(shot);
    return *static_cast<const uint32_t*>(shot->Bits()) & 0xFFFFFF;
}

bool becomes(BPoint place, uint32_t color)
{
    return eventually([=] { return pixel_at(place) == color; });
}

std::vector<uint32_t> pixels_of(const BBitmap& bitmap)
{
    std::vector<uint32_t> pixels;
    for (int32 y = 0; y <= bitmap.Bounds().IntegerHeight(); y++) {
        const auto* row = reinterpret_cast<const uint32_t*>(
            static_cast<const char*>(bitmap.Bits()) + y * bitmap.BytesPerRow());
        for (int32 x = 0; x <= bitmap.Bounds().IntegerWidth(); x++)
            pixels.push_back(row[x] & 0xFFFFFF);
    }
    return pixels;
}

std::vector<uint32_t> pixels_on_screen(BRect frame)
{
    BBitmap* shot = nullptr;
    EXPECT_EQ(BScreen().GetBitmap(&shot, false, &frame), B_OK);
    const std::unique_ptr<BBitmap> owner(shot);
    return pixels_of(*shot);
}

rgb_color color_of(uint32_t rgb)
{
    return {uint8_t(rgb >> 16), uint8_t(rgb >> 8), uint8_t(rgb), 255};
}

// A row of that size as it has to look, in colours 0xRRGGBB.
std::vector<uint32_t> drawn_row(BRect bounds, const BFont& font, const char* text, uint32_t ground,
                                uint32_t ink)
{
    bounds.OffsetTo(0, 0);
    BBitmap bitmap(bounds, B_RGB32, true);
    auto* view = new BView(bounds, nullptr, B_FOLLOW_NONE, B_WILL_DRAW);
    bitmap.AddChild(view);
    EXPECT_TRUE(bitmap.Lock());
    view->SetFont(&font);
    view->SetHighColor(color_of(ground));
    view->FillRect(bounds);
    view->SetLowColor(color_of(ground));
    view->SetHighColor(color_of(ink));
    font_height height;
    font.GetHeight(&height);
    const float glyphs = height.ascent + height.descent;
    const float spare = bounds.Height() - (glyphs + height.leading);
    view->DrawString(text, BPoint(10, glyphs + spare / 2 - 2));
    view->Sync();
    bitmap.Unlock();
    return pixels_of(bitmap);
}

int32_t gList;
std::atomic<int32_t> gDrawn;

int32_t draw_below(int32_t a, int32_t b)
{
    gDrawn += a == 0 && b == 0;
    SetForeColor(-1, 0x12AB34FF, 0xFFFFFFFF);
    FRectangle(-1, 100, 90, 20, 10);
    return 0;
}

int32_t change_list(int32_t, int32_t)
{
    if (gDrawn++ > 0)
        return 0;
    AddLvEntry(gList, "more");
    ClearListView(gList);
    AddLvEntry(gList, "last");
    return 0;
}

}  // namespace

TEST_F(ListGadgets, RowsHaveTheColoursOfTheirState)
{
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeList(kind, {"a", "b", "c", "d"});
        EnableItemLv(ident, 2, 0);
        SetSelectEntry(ident, 1);
        EXPECT_TRUE(becomes(PlaceOf(0, 140), 0xE2E2E2)) << kind;
        EXPECT_TRUE(becomes(PlaceOf(1, 140), 0xFFFFFF));
        EXPECT_TRUE(becomes(PlaceOf(2, 140), 0x960A28));
        ChangeLvColor(ident, 0x112233FF, -1, -1, 0x445566FF, 0x778899FF, -1);
        ChangeItemColor(ident, 3, 0x00FF00FF, 0x000000FF, 0x000000FF, 0x0000FFFF);
        EXPECT_TRUE(becomes(PlaceOf(0, 140), 0x112233));
        EXPECT_TRUE(becomes(PlaceOf(1, 140), 0x445566));
        EXPECT_TRUE(becomes(PlaceOf(2, 140), 0x778899));
        EXPECT_TRUE(becomes(PlaceOf(3, 140), 0x00FF00));
        SetSelectEntry(ident, 3);
        EXPECT_TRUE(becomes(PlaceOf(3, 140), 0x0000FF));
        EnableItemLv(ident, 3, 0);
        EXPECT_TRUE(becomes(PlaceOf(3, 140), 0x778899)) << "disabled rows have the list's";
        ChangeLvColor(ident, -1, -1, -1, -1, -1, -1);
        EXPECT_TRUE(becomes(PlaceOf(0, 140), 0x112233));
        KillGadget(0, ident);
    }
}

TEST_F(ListGadgets, TextsHaveThePlaceAndTheColourOfTheirState)
{
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeList(kind, {"plain", "chosen", "disabled", "own"});
        const auto looks = [&](int32_t row, const char* text, uint32_t ground, uint32_t ink) {
            BFont font;
            const BRect frame = WithList([&](BListView& list) {
                list.GetFont(&font);
                return list.ConvertToScreen(list.ItemFrame(row));
            });
            const std::vector<uint32_t> wanted = drawn_row(frame, font, text, ground, ink);
            return eventually([&] { return pixels_on_screen(frame) == wanted; });
        };
        EnableItemLv(ident, 2, 0);
        SetSelectEntry(ident, 1);
        EXPECT_TRUE(looks(0, "plain", 0xE2E2E2, 0x000000)) << kind;
        EXPECT_TRUE(looks(2, "disabled", 0x960A28, 0xDE110A)) << kind;
        ChangeLvColor(ident, -1, 0x112233FF, 0x445566FF, -1, -1, 0x778899FF);
        EXPECT_TRUE(looks(0, "plain", 0xE2E2E2, 0x112233)) << kind;
        EXPECT_TRUE(looks(1, "chosen", 0xFFFFFF, 0x445566)) << kind;
        EXPECT_TRUE(looks(2, "disabled", 0x960A28, 0x778899)) << kind;
        ChangeItemColor(ident, 3, 0x00FF00FF, 0x880000FF, 0x000088FF, 0xFFFF00FF);
        EXPECT_TRUE(looks(3, "own", 0x00FF00, 0x880000)) << kind;
        SetSelectEntry(ident, 3);
        ChangeEntryStr(ident, 3, "another");
        EXPECT_TRUE(looks(3, "another", 0xFFFF00, 0x000088)) << kind;
        KillGadget(0, ident);
    }
}

TEST_F(ListGadgets, OnlyFlatListsFillTheirGroundKept)
{
    const int32_t flat = MakeList(7, {"a"});
    EXPECT_TRUE(becomes(BPoint(60, 110), 0xE2E2E2));
    KillGadget(0, flat);
    MakeList(20, {"a"});
    EXPECT_TRUE(becomes(BPoint(60, 110), 0xFFFFFF));
}

TEST_F(ListGadgets, GroundsOfRowsGoOnBelowTheirLatches)
{
    const int32_t ident = MakeList(20, {"a", "b"});
    AddEntryInSub(ident, 0, "below");
    EXPECT_TRUE(becomes(PlaceOf(0, 1), 0xE2E2E2));
    EXPECT_TRUE(becomes(PlaceOf(1, 1), 0xE2E2E2)) << "left of a row that is moved in";
    EnableItemLv(ident, 2, 0);
    EXPECT_TRUE(becomes(PlaceOf(2, 1), 0x960A28));
    SetSelectEntry(ident, 0);
    EXPECT_TRUE(becomes(PlaceOf(0, 1), 0xFFFFFF));
}

TEST_F(ListGadgets, TextsBeginAtTheSamePlaceOnEachLevelKept)
{
    const int32_t ident = MakeList(20, {"same"});
    AddEntryInSub(ident, 0, "same");
    const auto row_of = [&](int32_t row) {
        std::vector<uint32_t> pixels;
        const BRect frame = WithList([=](BListView& list) {
            return list.ConvertToScreen(list.ItemFrame(row)).OffsetBySelf(-100, -100);
        });
        for (float y = frame.top; y <= frame.bottom; y++) {
            for (float x = 12; x < 50; x++)
                pixels.push_back(pixel_at(BPoint(x, y)));
        }
        return pixels;
    };
    EXPECT_TRUE(eventually([&] {
        const std::vector<uint32_t> top = row_of(0);
        const auto inked =
            std::count_if(top.begin(), top.end(), [](uint32_t pixel) { return pixel != 0xE2E2E2; });
        return inked > 20 && top == row_of(1);
    }));
}

TEST_F(ListGadgets, LatchesHaveTheColourOfTheirText)
{
    const int32_t ident = MakeList(20, {"a", "b"});
    AddEntryInSub(ident, 0, "below");
    EnableItemLv(ident, 2, 0);  // drawn before, in other colours
    const BPoint latch = WithList([](BListView& list) {
        const BRect rect = list.ItemFrame(0);
        return list.ConvertToScreen(BPoint(5, std::floor((rect.top + rect.bottom) / 2))) -
               BPoint(100, 100);
    });
    ChangeLvColor(ident, -1, 0x112233FF, -1, -1, -1, -1);
    EXPECT_TRUE(becomes(latch, 0x112233));
    EnableItemLv(ident, 0, 0);
    EXPECT_TRUE(becomes(latch, 0xDE110A));
}

TEST_F(ListGadgets, ColoursReachTheListInItsScrollView)
{
    const int32_t ident = MakeList(10, {"a"});
    ChangeLvColor(ident, 0x112233FF, -1, -1, -1, -1, -1);
    EXPECT_TRUE(becomes(PlaceOf(0, 100), 0x112233));
}

TEST_F(ListGadgets, DrawHooksDrawIntoTheList)
{
    for (const int32_t kind : {8, 21}) {
        gDrawn = 0;
        const int32_t ident = MakeList(kind, {"a", "b"});
        SetDrawHookLv(ident, 1, reinterpret_cast<void*>(draw_below));
        EXPECT_TRUE(eventually([] { return gDrawn > 0; }));
        EXPECT_TRUE(becomes(BPoint(112, 97), 0x12AB34)) << kind;
        SetDrawHookLv(ident, 1, nullptr);
        KillGadget(0, ident);
    }
}

TEST_F(ListGadgets, DrawHookMayChangeItsListAndThatItselfIsGone)
{
    for (const int32_t kind : {7, 8, 20, 23}) {
        gDrawn = 0;
        gList = MakeList(kind, {"a", "b", "c"});
        SetDrawHookLv(gList, 1, reinterpret_cast<void*>(change_list));
        EXPECT_TRUE(eventually([] { return Rows(gList) == "last"; })) << kind;
        Settle();
        KillGadget(0, gList);
    }
}

TEST_F(ListGadgets, DrawHookMaySortRemoveAndKill)
{
    static int32_t (*const kHooks[])(int32_t, int32_t) = {
        [](int32_t, int32_t) {
            SortLv(gList);
            return int32_t(gDrawn++);
        },
        [](int32_t, int32_t) {
            if (CountEntry(gList) > 1)
                RemoveItem(gList, 0);
            return int32_t(gDrawn++);
        },
        [](int32_t, int32_t) {
            LvSelectNone(gList);
            LvCollapseAll(gList);
            SetDrawHookLv(gList, 1, nullptr);
            return int32_t(gDrawn++);
        },
        [](int32_t, int32_t) {
            KillGadget(0, gList);
            return int32_t(gDrawn++);
        },
    };
    for (const int32_t kind : {7, 10, 20, 23}) {
        for (auto* hook : kHooks) {
            gDrawn = 0;
            gList = MakeList(kind, {"c", "b", "a"});
            AddEntryInSub(gList, 1, "below");
            SetSelectEntry(gList, 1);
            SetDrawHookLv(gList, 1, reinterpret_cast<void*>(hook));
            EXPECT_TRUE(eventually([] { return gDrawn > 0; })) << kind;
            Settle();
            KillGadget(0, gList);
            Settle();
        }
    }
}

TEST_F(ListGadgets, ScrollRangesAreTheListsOwnWithItsFirstRow)
{
    const int32_t ident = Make(8, 0, 0, 150, 120);
    const auto range = [&] {
        return WithList([](BListView& list) {
            float min, max;
            list.ScrollBar(B_VERTICAL)->GetRange(&min, &max);
            return max;
        });
    };
    EXPECT_EQ(range(), 0);
    for (int i = 0; i < 20; i++)
        AddLvEntry(ident, "row");
    EXPECT_GT(range(), 100);
    const float top = WithList([](BListView& list) { return list.LeftTop().y; });
    inject_pointer(window.X(60), window.Y(40));
    inject_wheel(0, 1);
    Settle();
    EXPECT_GT(WithList([](BListView& list) { return list.LeftTop().y; }), top);
}
