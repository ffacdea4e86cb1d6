// Icons and images: loaded, made, drawn, drawn into, saved and freed.

#include "support/desktop_folder.h"
#include "support/program.h"

#include <gtest/gtest.h>

#include <Bitmap.h>
#include <BitmapStream.h>
#include <File.h>
#include <Screen.h>
#include <TranslationUtils.h>
#include <TranslatorRoster.h>
#include <View.h>

#include <atomic>
#include <climits>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "graphics/icons.h"

namespace {

const uint32_t kRed = 0xFF0000FF;
const uint32_t kGreen = 0x00FF00FF;
const uint32_t kClear = 0xFFFFFF00;

// An image of the test's own.
class Image {
public:
    explicit Image(int32_t ident) : fIdent(ident) {}
    Image(int32_t width, int32_t height) : fIdent(CreateImage(width, height)) {}
    ~Image() { CloseIcon(fIdent); }
    Image(const Image&) = delete;

    operator int32_t() const { return fIdent; }

    const BBitmap* Bitmap() const
    {
        const BList* icons = reinterpret_cast<BList**>(gRegistry)[kIcons];
        for (int32 i = 0; i < icons->CountItems(); i++) {
            const auto* icon = static_cast<const IconRecord*>(icons->ItemAt(i));
            if (icon->ident == fIdent)
                return icon->image;
        }
        return nullptr;
    }
    // 0xRRGGBBAA of the first picture.
    uint32_t At(int32_t x, int32_t y) const
    {
        const BBitmap* bitmap = Bitmap();
        if (bitmap == nullptr || !bitmap->Bounds().Contains(BPoint(float(x), float(y))))
            return 0;
        const auto* pixel =
            static_cast<const uint8*>(bitmap->Bits()) + y * bitmap->BytesPerRow() + 4 * x;
        return static_cast<uint32_t>(pixel[2]) << 24 | pixel[1] << 16 | pixel[0] << 8 | pixel[3];
    }
    // The same of the second one.
    uint32_t SecondAt(int32_t x, int32_t y) const
    {
        const Image paper(x + 1, y + 1);
        DrawIcon(paper, fIdent, 0, 0, 1);
        return paper.At(x, y);
    }

private:
    int32_t fIdent;
};

// Writes a picture of one colour, 0xAARRGGBB, as PNG.
std::string put_png(const TempFolder& folder, const std::string& leaf, int32_t width,
                    int32_t height, uint32_t pixel)
{
    auto* bitmap = new BBitmap(BRect(0, 0, float(width - 1), float(height - 1)), B_RGBA32);
    for (int32_t y = 0; y < height; y++) {
        auto* row = reinterpret_cast<uint32_t*>(static_cast<uint8*>(bitmap->Bits()) +
                                                y * bitmap->BytesPerRow());
        std::fill(row, row + width, pixel);
    }
    const std::string path = folder.At(leaf);
    BBitmapStream stream(bitmap);
    BFile file(path.c_str(), B_WRITE_ONLY | B_CREATE_FILE | B_ERASE_FILE);
    EXPECT_EQ(
        BTranslatorRoster::Default()->Translate(&stream, nullptr, nullptr, &file, B_PNG_FORMAT),
        B_OK);
    return path;
}

rgb_color screen_pixel(int32_t x, int32_t y)
{
    BBitmap pixel(BRect(0, 0, 0, 0), B_RGB32);
    BRect frame(x, y, x, y);
    BScreen().ReadBitmap(&pixel, false, &frame);
    const auto* bits = static_cast<const uint8*>(pixel.Bits());
    return {bits[2], bits[1], bits[0], 255};
}

}  // namespace

TEST(Images, LoadedOneHasTheFilesPixelsAndADarkerSecond)
{
    const TempFolder folder;
    const Image image(LoadImage(put_png(folder, "/a.png", 30, 20, 0xFF80C0FE).c_str()));
    ASSERT_NE(image, 0);
    EXPECT_EQ(GetImageWidth(image), 30);
    EXPECT_EQ(GetImageHeight(image), 20);
    EXPECT_EQ(image.At(29, 19), 0x80C0FEFFu);
    EXPECT_EQ(image.SecondAt(29, 19), 0x40607FFFu);
    const Image clear(LoadImage(put_png(folder, "/b.png", 3, 2, 0x80FF0000).c_str()));
    EXPECT_EQ(clear.At(1, 1), 0xFF000080u);
    EXPECT_EQ(clear.SecondAt(1, 1), 0x7F000080u);
}

TEST(Images, WhatIsNoPictureLoadsNothing)
{
    const TempFolder folder;
    EXPECT_EQ(LoadImage(nullptr), 0);
    EXPECT_EQ(LoadImage(""), 0);
    EXPECT_EQ(LoadImage("/nowhere/a.png"), 0);
    EXPECT_EQ(LoadImage(folder.At("").c_str()), 0);
    EXPECT_EQ(LoadImage(folder.Put("/a.png", "not a picture").c_str()), 0);
    EXPECT_EQ(LoadImage(folder.Put("/b.png", "").c_str()), 0);
}

TEST(Images, HostileDrawingsLoadNothing)
{
    const TempFolder folder;
    const std::string root = "<svg xmlns='http://www.w3.org/2000/svg' ";
    const std::string inside = "width='20' height='20'><text font-size='1e30'>x</text></svg>";
    const std::string drawings[] = {root + inside, root + "width='1e9' height='1e9'/>",
                                    root + "viewBox='0 0 1e20 1e20'/>", root + "width='20'",
                                    "\x1f\x8b\x08" + root + inside};
    for (const std::string& drawing : drawings) {
        const std::string path = folder.Put("/a.svg", drawing);
        EXPECT_EQ(LoadImage(path.c_str()), 0) << drawing;
        EXPECT_EQ(BTranslationUtils::GetBitmapFile(path.c_str()), nullptr) << drawing;
    }
    const Image good(
        LoadImage(folder.Put("/b.svg", root + "width='20' height='10'><rect/></svg>").c_str()));
    EXPECT_EQ(GetImageWidth(good), 20);
}

TEST(Images, NewOneIsTransparentAndBounded)
{
    const Image image(2, 3);
    EXPECT_EQ(GetImageWidth(image), 2);
    EXPECT_EQ(GetImageHeight(image), 3);
    EXPECT_EQ(image.At(1, 2) & 0xFF, 0u);
    for (const int32_t size : {0, -1, INT32_MIN, INT32_MAX, 100000}) {
        EXPECT_EQ(CreateImage(size, size), 0) << size;
        EXPECT_EQ(CreateImage(0, size), 0) << size;
    }
    EXPECT_EQ(CreateImage(1 << 26, 2), 0);
}

TEST(Images, UnknownIdentsDoNothing)
{
    const Image other(4, 4);
    const TestWindow window;
    for (const int32_t ident : {0, -1, 1, INT32_MAX, INT32_MIN, int32_t(window)}) {
        EXPECT_EQ(GetImageWidth(ident), 0);
        EXPECT_EQ(GetImageHeight(ident), 0);
        EXPECT_FALSE(LoadSecondImage(ident, "/nowhere"));
        DrawIcon(other, ident, 0, 0, 0);
        DrawImage(other, ident, 0, 0, 0, 0);
        CloseIcon(ident);
    }
    EXPECT_TRUE(is_window_ident(window));
    EXPECT_EQ(other.At(0, 0) & 0xFF, 0u);
    EXPECT_EQ(ImageFromWindow(1, 0, 0, 5, 5), 0);
    const int32_t closed = CreateImage(4, 4);
    CloseIcon(closed);
    CloseIcon(closed);
    EXPECT_EQ(GetImageWidth(closed), 0);
    FRectangle(closed, 0, 0, 3, 3);
    EXPECT_EQ(ImageFromWindow(closed, 0, 0, 3, 3), 0);
}

TEST(Images, OneIsATargetAsAWindowIs)
{
    const Image image(20, 20);
    SetForeColor(image, kRed, kGreen);
    FRectangle(image, 2, 2, 3, 3);
    EXPECT_EQ(image.At(2, 2), kRed);
    EXPECT_EQ(image.At(5, 5), kRed);
    EXPECT_EQ(image.At(6, 5) & 0xFF, 0u);
    MoveTo(image, 3, 4);
    LineTo(image, 19, 4);
    int32_t pen[2] = {};
    GetCurrentPos(image, pen);
    EXPECT_EQ(pen[0], 19);
    EXPECT_EQ(image.At(19, 4), kRed);
    Blit(image, 2, 2, 3, 3, 10, 10);
    EXPECT_EQ(image.At(13, 13), kRed);
    WritePixel(image, 0, 19);
    EXPECT_EQ(image.At(0, 19), 0x0000FFFFu);  // red and blue exchanged
    EXPECT_EQ(GetPixel(image, 0, 19), BScreen().IndexForColor(255, 0, 0));
    EXPECT_GT(GetTextWidth(image, "Wide"), 5);
    SetPenWidth(image, 4);
    EXPECT_EQ(GetPenWidth(image), 4);
    SetClipping(image, 0, 0, 1, 1);
    SetForeColor(image, kGreen, kRed);
    FRectangle(image, 0, 0, 19, 19);
    EXPECT_EQ(image.At(1, 1), kGreen);
    EXPECT_EQ(image.At(2, 2), kRed);
    SetClippingAll(image);
    Clear(image);
    EXPECT_EQ(image.At(2, 2), kClear);
    SetBackColor(image, kGreen);
    Clear(image);
    EXPECT_EQ(image.At(19, 19), kGreen);
    SetRefreshWindowMode(image, 1);
}

TEST(Images, TextIsDrawnInTheImagesOwnFont)
{
    const Image small(200, 100), large(200, 100);
    SetFontSize(large, 40);
    EXPECT_EQ(GetFontSize(large), 40);
    EXPECT_NE(GetFontSize(small), 40);
    EXPECT_GT(GetTextWidth(large, "Text"), GetTextWidth(small, "Text") * 2);
}

TEST(Images, DefaultTargetMayBeOne)
{
    {
        const Image image(8, 8);
        SetDefaultGfx(image);
        SetForeColor(-1, kRed, kRed);
        FRectangle(-1, 0, 0, 7, 7);
        EXPECT_EQ(image.At(7, 7), kRed);
        SetDefaultGfx(-1);
        FRectangle(-1, 0, 0, 7, 7);
        const TestWindow window;
        SetDefaultGfx(window);
        SetForeColor(-1, kGreen, kGreen);
        FRectangle(-1, 0, 0, 7, 7);
        EXPECT_EQ(image.At(7, 7), kRed);
        SetDefaultGfx(image);
    }
    FRectangle(-1, 0, 0, 7, 7);  // the image is gone
    SetDefaultGfx(0);
}

TEST(Images, LoadedOneMayBeDrawnIntoAndItsSecondFollows)
{
    const TempFolder folder;
    const Image image(LoadImage(put_png(folder, "/a.png", 8, 8, 0xFFFFFFFF).c_str()));
    EXPECT_EQ(image.SecondAt(0, 0), 0x7F7F7FFFu);
    SetForeColor(image, kRed, kRed);
    FRectangle(image, 0, 0, 3, 7);
    EXPECT_EQ(image.At(0, 0), kRed);
    EXPECT_EQ(image.At(7, 7), 0xFFFFFFFFu);
    EXPECT_EQ(image.SecondAt(0, 0), 0x7F0000FFu);
    ASSERT_TRUE(LoadSecondImage(image, put_png(folder, "/b.png", 5, 5, 0xFF00FF00).c_str()));
    EXPECT_EQ(image.SecondAt(4, 4), kGreen);
    FRectangle(image, 0, 0, 7, 7);
    EXPECT_EQ(image.SecondAt(4, 4), kGreen);
    EXPECT_FALSE(LoadSecondImage(image, "/nowhere"));
    EXPECT_FALSE(LoadSecondImage(image, nullptr));
    EXPECT_EQ(image.SecondAt(4, 4), kGreen);
}

TEST(Images, PartOfAWindowBecomesOne)
{
    const TestWindow window;
    SetForeColor(window, kRed, kRed);
    FRectangle(window, 10, 10, 9, 9);
    const Image part(ImageFromWindow(window, 15, 12, 24, 18));
    EXPECT_EQ(GetImageWidth(part), 10);
    EXPECT_EQ(GetImageHeight(part), 7);
    EXPECT_EQ(part.At(0, 0), kRed);
    EXPECT_EQ(part.At(4, 6), kRed);
    EXPECT_NE(part.At(5, 0), kRed);
    EXPECT_EQ(part.At(5, 0) & 0xFF, 0xFFu);
    const Image turned(ImageFromWindow(window, 24, 18, 15, 12));
    EXPECT_EQ(turned.At(0, 0), kRed);
    const Image cut(ImageFromWindow(window, INT32_MIN, -5, 4, 2));
    EXPECT_EQ(GetImageWidth(cut), 5);
    EXPECT_EQ(GetImageHeight(cut), 3);
    EXPECT_EQ(ImageFromWindow(window, 5000, 0, 6000, 10), 0);
    EXPECT_EQ(ImageFromWindow(window, INT32_MIN, INT32_MIN, -1, -1), 0);
    const Image again(ImageFromWindow(part, 0, 0, 3, 3));
    EXPECT_EQ(again.At(3, 3), kRed);
}

TEST(Images, DrawnIntoAWindowReachesTheScreen)
{
    const Image image(40, 10);
    SetForeColor(image, kGreen, kGreen);
    FRectangle(image, 0, 0, 39, 9);
    const TestWindow window(300, 200);
    DrawIcon(window, image, 50, 60, 0);
    EXPECT_TRUE(eventually([&] { return screen_pixel(389, 269).green == 255; }));
    EXPECT_NE(screen_pixel(390, 269).red, 0);
    DrawImage(window, image, 10, 100, 20, 0);
    EXPECT_TRUE(eventually([&] { return screen_pixel(329, 309).red == 0; }));
    EXPECT_NE(screen_pixel(330, 309).red, 0);
}

TEST(Images, DrawImageKeepsToItsSizeAndBlends)
{
    const Image paper(40, 40), sprite(4, 4);
    SetForeColor(sprite, 0xFF000080, 0);
    SetDrawMode(sprite, 0);
    FRectangle(sprite, 0, 0, 3, 3);
    SetForeColor(paper, 0xFFFFFFFF, 0);
    FRectangle(paper, 0, 0, 39, 19);
    DrawImage(paper, sprite, 1, 1, 0, 0);
    EXPECT_EQ(paper.At(0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(paper.At(5, 5), 0xFFFFFFFFu);
    EXPECT_NEAR(int(paper.At(4, 4) >> 16 & 0xFF), 127, 2);
    EXPECT_EQ(paper.At(4, 4) & 0xFF, 0xFFu);
    DrawImage(paper, sprite, 10, 1, 8, 4);
    EXPECT_NEAR(int(paper.At(17, 4) >> 16 & 0xFF), 127, 2);
    EXPECT_EQ(paper.At(18, 4), 0xFFFFFFFFu);
    EXPECT_EQ(paper.At(17, 5), 0xFFFFFFFFu);
    // On a transparent ground it stays as transparent as it is.
    DrawImage(paper, sprite, 1, 30, 0, 0);
    EXPECT_NEAR(int(paper.At(2, 31) >> 24), 255, 2);
    EXPECT_NEAR(int(paper.At(2, 31) & 0xFF), 128, 2);
    DrawImage(paper, sprite, 20, 30, -1, 4);
    DrawImage(paper, sprite, 20, 30, 4, INT32_MIN);
    EXPECT_EQ(paper.At(20, 30) & 0xFF, 0u);
    for (const int32_t odd : {INT32_MIN, INT32_MAX, -3})
        DrawImage(paper, sprite, odd, odd, odd < 0 ? 2 : odd, 2);
}

TEST(Images, ScalingIsSmooth)
{
    const Image paper(64, 8), bars(2, 1);
    SetForeColor(bars, 0x000000FF, 0);
    FRectangle(bars, 0, 0, 0, 0);
    SetForeColor(bars, 0xFFFFFFFF, 0);
    FRectangle(bars, 1, 0, 0, 0);
    DrawImage(paper, bars, 0, 0, 64, 8);
    EXPECT_EQ(paper.At(0, 0) >> 24, 0u);
    EXPECT_EQ(paper.At(63, 7) >> 24, 255u);
    EXPECT_NEAR(int(paper.At(32, 4) >> 24), 128, 8);
    for (int32_t x = 1; x < 64; x++)
        EXPECT_GE(paper.At(x, 3) >> 24, paper.At(x - 1, 3) >> 24);
    // Colours of transparent pixels do not show at the edge.
    const Image sheet(64, 8), dot(2, 1);
    SetForeColor(dot, 0xFFFFFFFF, 0);
    FRectangle(dot, 0, 0, 0, 0);
    DrawImage(sheet, dot, 0, 0, 64, 8);
    EXPECT_GE(sheet.At(32, 4) >> 24, 250u);
    EXPECT_NEAR(int(sheet.At(32, 4) & 0xFF), 128, 8);
}

TEST(Images, IconsLeaveOutTransparentPixels)
{
    const Image paper(40, 40), icon(16, 16);
    SetForeColor(icon, kRed, 0);
    FRectangle(icon, 4, 4, 7, 7);
    SetForeColor(paper, kGreen, 0);
    FRectangle(paper, 0, 0, 39, 39);
    SetDrawMode(paper, B_OP_ALPHA);
    DrawIcon(paper, icon, 10, 10, 0);
    EXPECT_EQ(paper.At(10, 10), kGreen);
    EXPECT_EQ(paper.At(14, 14), kRed);
    DrawIcon(paper, icon, 10, 10, 1);
    EXPECT_EQ(paper.At(14, 14), 0x7F0000FFu);
    DrawIcon(paper, paper, 20, 20, 0);  // onto itself
    EXPECT_EQ(paper.At(34, 34), 0x7F0000FFu);
}

TEST(Images, IconOfAFileIsItsTypes)
{
    const DesktopFolder folder;
    const Image html(LoadIcon(folder.Put("/page.html", "<html></html>").c_str()));
    const Image home(LoadIcon(folder.At("").c_str()));
    for (const int32_t icon : {int32_t(html), int32_t(home)}) {
        ASSERT_NE(icon, 0);
        EXPECT_EQ(GetImageWidth(icon), 16);
        const Image paper(40, 40);
        DrawIcon(paper, icon, 0, 0, 1);
        int32_t covered = 0;
        for (int32_t i = 16; i < 32; i++)
            covered += (paper.At(i, 16) & 0xFF) != 0;
        EXPECT_GT(covered, 0);
    }
    bool differ = false;
    for (int32_t i = 0; i < 16; i++)
        differ = differ || html.At(i, i) != home.At(i, i);
    EXPECT_TRUE(differ);
    EXPECT_EQ(LoadIcon("/nowhere/at/all"), 0);
    EXPECT_EQ(LoadIcon(nullptr), 0);
    EXPECT_EQ(LoadIcon(""), 0);
}

TEST(Images, SavedFilesHaveTheFormatOfTheirNumber)
{
    const TempFolder folder;
    const Image image(30, 20);
    SetForeColor(image, kRed, 0);
    FRectangle(image, 0, 0, 29, 19);
    const struct {
        int32_t format;
        uint32_t type;
    } rows[] = {{0, B_TGA_FORMAT}, {1, B_PPM_FORMAT}, {2, B_PNG_FORMAT}, {3, B_JPEG_FORMAT},
                {4, B_BMP_FORMAT}, {5, B_GIF_FORMAT}, {6, B_TIFF_FORMAT}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format);
        const std::string path = folder.At("/saved");
        std::ofstream(path) << std::string(100000, 'x');
        SaveImageFile(path.c_str(), image, row.format);
        BFile file(path.c_str(), B_READ_ONLY);
        translator_info info;
        ASSERT_EQ(BTranslatorRoster::Default()->Identify(&file, nullptr, &info), B_OK);
        EXPECT_EQ(info.type, row.type);
        const Image loaded(LoadImage(path.c_str()));
        EXPECT_EQ(GetImageWidth(loaded), 30);
        EXPECT_EQ(GetImageHeight(loaded), 20);
        EXPECT_GE(loaded.At(15, 10) >> 24, 250u);
        EXPECT_LE(loaded.At(15, 10) >> 16 & 0xFF, 5u);
    }
}

TEST(Images, SavingWithoutIconFormatOrPlaceMakesNoFile)
{
    const TempFolder folder;
    const Image image(4, 4);
    const std::string path = folder.At("/saved");
    for (const int32_t format : {-1, 7, INT32_MAX, INT32_MIN})
        SaveImageFile(path.c_str(), image, format);
    SaveImageFile(path.c_str(), 1, 0);
    SaveImageFile(nullptr, image, 0);
    SaveImageFile("", image, 0);
    SaveImageFile(folder.At("/none/saved").c_str(), image, 0);
    SaveImageFile(folder.At("").c_str(), image, 0);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(Images, ThreadsDrawAndCloseAtTheSameTime)
{
    const Image first(50, 50), second(50, 50);
    const TestWindow window;
    std::atomic<bool> end = false;
    std::vector<std::thread> threads;
    const auto draw = [&](int32_t target, int32_t source) {
        threads.emplace_back([&end, target, source] {
            while (!end) {
                FRectangle(target, 5, 5, 10, 10);
                DrawImage(target, source, 10, 10, 30, 30);
                DrawIcon(target, source, 0, 0, 1);
            }
        });
    };
    draw(first, second);
    draw(second, first);
    draw(window, first);
    for (int i = 0; i < 300; i++) {
        const int32_t passing = CreateImage(9, 9);
        DrawImage(first, passing, 0, 0, 20, 20);
        const int32_t part = ImageFromWindow(second, 0, 0, 20, 20);
        CloseIcon(passing);
        CloseIcon(part);
    }
    end = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(GetImageWidth(first), 50);
}
