// BScreen: its frame, its palette and pictures of it.

#include <Bitmap.h>
#include <InterfaceDefs.h>
#include <OS.h>
#include <Screen.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <set>
#include <vector>

static rgb_color pixel(const BBitmap& bitmap, int32 x, int32 y)
{
    const auto* row = static_cast<const uint8*>(bitmap.Bits()) + y * bitmap.BytesPerRow() + x * 4;
    return make_color(row[2], row[1], row[0]);
}

TEST(Screen, ThereIsOne)
{
    BScreen screen;
    EXPECT_TRUE(screen.IsValid());
    EXPECT_EQ(screen.Frame(), BRect(0, 0, 1023, 767));
    EXPECT_NE(screen.ColorSpace(), B_NO_COLOR_SPACE);
    EXPECT_EQ(screen.SetToNext(), B_ERROR);
    EXPECT_TRUE(BScreen(static_cast<BWindow*>(nullptr)).IsValid());
    BScreen none(screen_id{7});
    BBitmap* bitmap = nullptr;
    EXPECT_FALSE(none.IsValid());
    EXPECT_EQ(none.ColorSpace(), B_NO_COLOR_SPACE);
    EXPECT_EQ(none.GetBitmap(&bitmap), B_ERROR);
    EXPECT_EQ(bitmap, nullptr);
}

// The distance by which the platform chooses; the components' low bits count as zero.
static int64_t distance(rgb_color wanted, rgb_color entry)
{
    const int red = wanted.red & 0xF8, green = wanted.green & 0xF8, blue = wanted.blue & 0xF8;
    const int middle = (red + entry.red) / 2;
    const int dr = red - entry.red, dg = green - entry.green, db = blue - entry.blue;
    return ((512 + middle) * dr * dr >> 8) + 4 * dg * dg + ((767 - middle) * db * db >> 8);
}

TEST(Screen, IndexIsTheNearestOfThePaletteWithTheLowestNumber)
{
    BScreen screen;
    for (int red = 0; red < 256; red += 15) {
        for (int green = 0; green < 256; green += 17) {
            for (int blue = 0; blue < 256; blue += 51) {
                const rgb_color color = make_color(uint8(red), uint8(green), uint8(blue));
                int best = 0;
                for (int i = 1; i < 256; i++) {
                    if (distance(color, screen.ColorForIndex(uint8(i))) <
                        distance(color, screen.ColorForIndex(uint8(best))))
                        best = i;
                }
                ASSERT_EQ(screen.IndexForColor(color), best) << red << " " << green << " " << blue;
            }
        }
    }
}

TEST(Screen, PaletteColoursFindThemselvesButForEight)
{
    BScreen screen;
    std::set<std::pair<int, int>> others;
    for (int i = 0; i < 255; i++) {
        const int found = screen.IndexForColor(screen.ColorForIndex(uint8(i)));
        if (found != i)
            others.insert({i, found});
    }
    const std::set<std::pair<int, int>> expected = {{46, 235}, {50, 247}, {60, 223}, {63, 31},
                                                    {97, 25},  {136, 19}, {175, 12}, {214, 6}};
    EXPECT_EQ(others, expected);
    EXPECT_EQ(screen.IndexForColor(B_TRANSPARENT_COLOR), B_TRANSPARENT_8_BIT);
    EXPECT_EQ(screen.IndexForColor(1, 2, 3), screen.IndexForColor(1, 2, 3, 0));
    EXPECT_EQ(screen.ColorMap(), system_colors());
    for (int i = 0; i < 256; i++)
        EXPECT_EQ(screen.InvertIndex(uint8(i)), system_colors()->inversion_map[i]);
}

TEST(Screen, PicturesShowTheDesktopWhereTheyLie)
{
    BScreen screen;
    const rgb_color blue = make_color(10, 20, 200);
    screen.SetDesktopColor(blue);
    EXPECT_EQ(screen.DesktopColor(), blue);
    EXPECT_EQ(screen.DesktopColor(2), blue);
    BBitmap* whole = nullptr;
    ASSERT_EQ(screen.GetBitmap(&whole), B_OK);
    const std::unique_ptr<BBitmap> keep(whole);
    EXPECT_EQ(whole->Bounds(), screen.Frame());
    EXPECT_EQ(pixel(*whole, 1023, 767), blue);

    BRect over_the_corner(-10, -20, 5, 6);
    BBitmap* cut = nullptr;
    ASSERT_EQ(screen.GetBitmap(&cut, false, &over_the_corner), B_OK);
    EXPECT_EQ(cut->Bounds(), BRect(0, 0, 5, 6)) << "what is on the screen";
    EXPECT_EQ(pixel(*cut, 0, 0), blue);
    delete cut;

    BBitmap into(BRect(0, 0, 15, 26), B_RGB32);
    memset(into.Bits(), 0, size_t(into.BitsLength()));
    ASSERT_EQ(screen.ReadBitmap(&into, false, &over_the_corner), B_OK);
    EXPECT_EQ(pixel(into, 9, 26), make_color(0, 0, 0)) << "beside the screen";
    EXPECT_EQ(pixel(into, 10, 19), make_color(0, 0, 0));
    EXPECT_EQ(pixel(into, 10, 20), blue);
    EXPECT_EQ(pixel(into, 15, 26), blue);
}

TEST(Screen, PicturesThatCanNotBeAreRefused)
{
    BScreen screen;
    BBitmap* bitmap = reinterpret_cast<BBitmap*>(1);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (BRect frame : {BRect(2000, 0, 2010, 10), BRect(10, 10, 5, 5), BRect(-20, 0, -1, 5),
                        BRect(nan, nan, nan, nan)}) {
        EXPECT_EQ(screen.GetBitmap(&bitmap, true, &frame), B_BAD_VALUE);
        EXPECT_EQ(bitmap, nullptr);
        BBitmap into(BRect(0, 0, 3, 3), B_RGB32);
        EXPECT_EQ(screen.ReadBitmap(&into, true, &frame), B_BAD_VALUE);
    }
    EXPECT_EQ(screen.GetBitmap(nullptr), B_BAD_VALUE);
    EXPECT_EQ(screen.ReadBitmap(nullptr), B_BAD_VALUE);
    BBitmap broken(BRect(0, 0, -5, -5), B_RGB32);
    EXPECT_EQ(screen.ReadBitmap(&broken), B_BAD_VALUE);
    BBitmap small(BRect(0, 0, 3, 3), B_RGB32);
    EXPECT_EQ(screen.ReadBitmap(&small), B_OK) << "as much as fits";
    EXPECT_EQ(pixel(small, 3, 3), screen.DesktopColor());
    BRect huge(-1e9f, -1e9f, 1e9f, 1e9f);
    EXPECT_EQ(screen.GetBitmap(&bitmap, true, &huge), B_OK);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->Bounds(), screen.Frame());
    delete bitmap;
}

TEST(Screen, PicturesTakeTheBitmapsColourSpace)
{
    BScreen screen;
    screen.SetDesktopColor(make_color(255, 0, 0));
    BBitmap bitmap(BRect(0, 0, 7, 7), B_RGB16);
    ASSERT_EQ(screen.ReadBitmap(&bitmap), B_OK);
    uint16 value;
    memcpy(&value, bitmap.Bits(), sizeof(value));
    EXPECT_EQ(value, 0xF800);
    BBitmap palette(BRect(0, 0, 7, 7), B_CMAP8);
    ASSERT_EQ(screen.ReadBitmap(&palette), B_OK);
    EXPECT_EQ(*static_cast<uint8*>(palette.Bits()), screen.IndexForColor(255, 0, 0));
}

TEST(Screen, WaitingForTheRetraceEnds)
{
    BScreen screen;
    const bigtime_t before = system_time();
    EXPECT_EQ(screen.WaitForRetrace(), B_OK);
    EXPECT_EQ(screen.WaitForRetrace(1'000'000), B_OK);
    EXPECT_EQ(screen.WaitForRetrace(-5), B_ERROR);
    EXPECT_LT(system_time() - before, 15'000'000);
    float brightness;
    EXPECT_EQ(screen.GetBrightness(&brightness), B_UNSUPPORTED);
    EXPECT_EQ(screen.SetDPMS(4), B_UNSUPPORTED);
}

TEST(ScreenModes, ThereIsTheOneOfTheScreen)
{
    BScreen screen;
    display_mode mode, other;
    ASSERT_EQ(screen.GetMode(&mode), B_OK);
    EXPECT_EQ(mode.timing.h_display, 1024);
    EXPECT_EQ(mode.timing.v_display, 768);
    EXPECT_EQ(mode.virtual_width, 1024);
    EXPECT_EQ(mode.space, static_cast<uint32>(screen.ColorSpace()));
    const double frames =
        mode.timing.pixel_clock * 1000.0 / mode.timing.h_total / mode.timing.v_total;
    EXPECT_NEAR(frames, 60, 1);
    EXPECT_EQ(screen.GetMode(static_cast<uint32>(count_workspaces()) - 1, &other), B_OK);
    EXPECT_EQ(memcmp(&mode, &other, sizeof(mode)), 0);
    EXPECT_EQ(screen.GetMode(static_cast<uint32>(count_workspaces()), &other), B_BAD_VALUE);
    EXPECT_EQ(screen.GetMode(nullptr), B_BAD_VALUE);
    EXPECT_EQ(BScreen(screen_id{7}).GetMode(&mode), B_ERROR);

    display_mode* list = nullptr;
    uint32 count = 0;
    ASSERT_EQ(screen.GetModeList(&list, &count), B_OK);
    ASSERT_EQ(count, 1u);
    EXPECT_EQ(list->timing.h_display, 1024);
    free(list);
    EXPECT_EQ(screen.GetModeList(nullptr, &count), B_BAD_VALUE);
}

TEST(ScreenModes, OthersCanNotBeSet)
{
    BScreen screen;
    display_mode mode;
    ASSERT_EQ(screen.GetMode(&mode), B_OK);
    EXPECT_EQ(screen.SetMode(&mode), B_OK);
    EXPECT_EQ(screen.SetMode(0, &mode, true), B_OK);
    EXPECT_EQ(screen.SetMode(99, &mode), B_BAD_VALUE);
    display_mode low = mode, high = mode, target = mode;
    EXPECT_EQ(screen.ProposeMode(&target, &low, &high), B_OK);
    high.timing.h_display = 800;
    target.timing.h_display = 800;
    EXPECT_EQ(screen.ProposeMode(&target, &low, &high), B_BAD_VALUE);
    EXPECT_EQ(target.timing.h_display, 1024) << "what there is";
    mode.timing.h_display = 800;
    EXPECT_EQ(screen.SetMode(&mode), B_UNSUPPORTED);
    EXPECT_EQ(screen.SetMode(nullptr), B_BAD_VALUE);
}

TEST(ScreenModes, MemoryHasNoMonitorAndNoCard)
{
    BScreen screen;
    monitor_info monitor;
    accelerant_device_info device;
    EXPECT_EQ(screen.GetMonitorInfo(&monitor), B_UNSUPPORTED);
    EXPECT_EQ(screen.GetMonitorInfo(nullptr), B_BAD_VALUE);
    EXPECT_EQ(screen.GetDeviceInfo(&device), B_UNSUPPORTED);
}
