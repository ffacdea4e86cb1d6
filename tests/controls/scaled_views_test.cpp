// Windows on a screen of finer pixels: views fill whole pixels, edges are even, text is sharp, and
// all that a program is told stays in units.

#include <Bitmap.h>
#include <Button.h>
#include <Messenger.h>
#include <OS.h>
#include <Region.h>
#include <StringView.h>
#include <Window.h>

#include <Injection.h>
#include <gtest/gtest.h>

#include <interface/drawing/SharpPicture.h>
#include <interface/view/ViewPrivate.h>

#include <cmath>
#include <vector>

#include "server/screen/Screen.h"

namespace {

const float kScales[] = {1, 1.25f, 1.5f, 1.75f, 2, 2.5f, 3, 4};

// A shown window of 120 x 80 units on a screen of some scale; the screen is plain afterwards.
class ScaledWindow {
public:
    explicit ScaledWindow(float scale)
    {
        inject_display_scale(scale);
        fWindow = new BWindow(BRect(100, 100, 219, 179), "scaled", B_TITLED_WINDOW, 0);
    }
    ~ScaledWindow()
    {
        fWindow->Lock();
        fWindow->Quit();
        inject_display_scale(1);
    }
    BWindow* operator->() const { return fWindow; }
    void Add(BView* view)
    {
        fWindow->Lock();
        fWindow->AddChild(view);
        fWindow->Unlock();
    }
    // Returns when the window has done what was asked of it until here.
    void Settle()
    {
        BMessage reply;
        BMessenger(fWindow).SendMessage(B_GET_SUPPORTED_SUITES, &reply);
    }
    void SetScale(float scale)
    {
        inject_display_scale(scale);
        if (!fWindow->IsHidden())
            Settle();
    }

    // The pixels as they are drawn.
    struct Picture {
        int32 width, height;
        std::vector<uint32> pixels;
        uint32 At(int32 x, int32 y) const { return pixels[size_t(y) * width + x] & 0xFFFFFF; }
        bool operator==(const Picture& other) const
        {
            bool same = width == other.width && height == other.height;
            for (size_t i = 0; same && i < pixels.size(); i++)
                same = ((pixels[i] ^ other.pixels[i]) & 0xFFFFFF) == 0;
            return same;
        }
    };
    Picture Draw()
    {
        if (fWindow->IsHidden())
            fWindow->Show();
        Settle();
        const bigtime_t deadline = system_time() + 20000000;
        fWindow->Lock();
        while (fWindow->NeedsUpdate() && system_time() < deadline) {
            fWindow->Unlock();
            snooze(1000);
            fWindow->Lock();
        }
        fWindow->Sync();
        const server::Surface& surface =
            BPrivate::ViewPrivate::Data(fWindow->ChildAt(0)).canvas->Pixels();
        Picture picture{surface.width, surface.height, {}};
        for (int32 y = 0; y < surface.height; y++) {
            auto* row = reinterpret_cast<const uint32*>(surface.bits + y * surface.bytesPerRow);
            picture.pixels.insert(picture.pixels.end(), row, row + surface.width);
        }
        fWindow->Unlock();
        return picture;
    }

private:
    BWindow* fWindow;
};

// A view of one colour that counts its drawings.
class ColorView : public BView {
public:
    ColorView(BRect frame, uint8 red, uint8 green, uint8 blue)
        : BView(frame, "color", B_FOLLOW_LEFT_TOP, B_WILL_DRAW)
    {
        SetViewColor(red, green, blue);
    }
    void Draw(BRect update) override
    {
        drawings++;
        lastUpdate = update;
    }

    int drawings = 0;
    BRect lastUpdate;
};

// Lines and text that move when the view scrolls.
class Paper : public BView {
public:
    explicit Paper(BRect frame) : BView(frame, "paper", B_FOLLOW_LEFT_TOP, B_WILL_DRAW) {}
    void Draw(BRect) override
    {
        for (int32 i = 0; i < 60; i++) {
            SetHighColor(uint8(i * 4), uint8(255 - i * 4), uint8(i % 2 * 255));
            StrokeLine(BPoint(0, float(i * 3)), BPoint(200, float(i * 3)));
        }
        SetHighColor(0, 0, 0);
        DrawString("Scrolled text", BPoint(5, 40));
    }
};

// As a view draws them.
class Letters : public BView {
public:
    Letters() : BView(BRect(0, 0, 119, 79), "letters", B_FOLLOW_LEFT_TOP, B_WILL_DRAW) {}
    void Draw(BRect) override
    {
        SetFontSize(14);
        DrawString("Sharp letters", BPoint(10, 40));
    }
};

// A bitmap that is drawn on, and shown.
class Raster : public BView {
public:
    Raster()
        : BView(BRect(0, 0, 119, 79), "raster", B_FOLLOW_LEFT_TOP, B_WILL_DRAW),
          bitmap(BRect(0, 0, 119, 79), B_BITMAP_ACCEPTS_VIEWS, B_RGBA32),
          board(new BView(bitmap.Bounds(), "board", B_FOLLOW_NONE, B_WILL_DRAW))
    {
        bitmap.AddChild(board);
    }
    void Draw(BRect update) override { DrawBitmap(&bitmap, update, update); }

    uint32* Pixel(int32 x, int32 y)
    {
        return reinterpret_cast<uint32*>(static_cast<uint8*>(bitmap.Bits()) +
                                         y * bitmap.BytesPerRow()) +
               x;
    }
    std::vector<uint32> Pixels()
    {
        std::vector<uint32> pixels;
        for (int32 y = 0; y < 80; y++)
            pixels.insert(pixels.end(), Pixel(0, y), Pixel(0, y) + 120);
        return pixels;
    }
    // A little of everything that changes pixels.
    void Scribble()
    {
        ASSERT_TRUE(bitmap.Lock());
        board->SetHighColor(200, 30, 30);
        board->FillRect(BRect(5, 5, 40, 30));
        board->SetHighColor(0, 0, 0);
        board->DrawString("Exact text", BPoint(10, 20));
        board->StrokeEllipse(BRect(50, 10, 90, 40));
        board->FillTriangle(BPoint(60, 50), BPoint(100, 60), BPoint(70, 75));
        *Pixel(3, 70) = 0xFF00FF00;
        board->CopyBits(BRect(5, 5, 40, 30), BRect(11, 44, 46, 69));
        board->CopyBits(BRect(5, 5, 20, 12), BRect(80, 2, 110, 20));
        board->DrawBitmap(&bitmap, BRect(5, 5, 15, 15), BRect(100, 40, 110, 50));
        BRegion region(BRect(2, 60, 8, 64));
        region.Include(BRect(6, 62, 12, 68));
        board->SetDrawingMode(B_OP_INVERT);
        board->FillRegion(&region);
        board->InvertRect(BRect(30, 25, 60, 30));
        board->SetDrawingMode(B_OP_COPY);
        bitmap.Unlock();
    }

    BBitmap bitmap;
    BView* board;
};

}  // namespace

TEST(ScaledViews, MeetWithoutGapOrOverlap)
{
    for (float scale : kScales) {
        ScaledWindow window(scale);
        window.Add(new ColorView(BRect(0, 0, 36, 79), 255, 0, 0));
        window.Add(new ColorView(BRect(37, 0, 119, 40), 0, 255, 0));
        window.Add(new ColorView(BRect(37, 41, 119, 79), 0, 0, 255));
        const auto picture = window.Draw();
        ASSERT_EQ(picture.width, std::lround(120 * scale));
        ASSERT_EQ(picture.height, std::lround(80 * scale));
        const int32 column = server::first_pixel(37, scale), row = server::first_pixel(41, scale);
        int wrong = 0;
        for (int32 y = 0; y < picture.height; y++) {
            for (int32 x = 0; x < picture.width; x++) {
                const uint32 wanted = x < column ? 0xFF0000 : y < row ? 0x00FF00 : 0x0000FF;
                wrong += picture.At(x, y) != wanted;
            }
        }
        EXPECT_EQ(wrong, 0) << scale;
    }
}

TEST(ScaledViews, EdgesOfAButtonAreEqualOnAllSides)
{
    for (float scale : kScales) {
        for (float left : {10.0f, 11.0f, 12.0f, 13.0f}) {
            ScaledWindow window(scale);
            window.Add(new BButton(BRect(left, 21, left + 61, 55), "b", "", new BMessage('push')));
            const auto picture = window.Draw();
            const clipping_rect box =
                server::pixels_of({int32(left), 21, int32(left) + 61, 55}, scale);
            const int32 x = (box.left + box.right) / 2, y = (box.top + box.bottom) / 2;
            // Runs of one colour from the edges inwards: the outline and the bevel.
            auto run = [&](int32 atX, int32 atY, int32 stepX, int32 stepY, int32* length) {
                const uint32 color = picture.At(atX, atY);
                for (*length = 0; picture.At(atX, atY) == color; atX += stepX, atY += stepY)
                    ++*length;
            };
            int32 sides[4], bevels[4];
            run(box.left, y, 1, 0, &sides[0]);
            run(box.right, y, -1, 0, &sides[1]);
            run(x, box.top, 0, 1, &sides[2]);
            run(x, box.bottom, 0, -1, &sides[3]);
            run(box.left + sides[0], y, 1, 0, &bevels[0]);
            run(box.right - sides[1], y, -1, 0, &bevels[1]);
            run(x, box.top + sides[2], 0, 1, &bevels[2]);
            run(x, box.bottom - sides[3], 0, -1, &bevels[3]);
            for (int i = 0; i < 4; i++) {
                EXPECT_EQ(sides[i], std::lround(scale)) << scale << " side " << i << " at " << left;
                EXPECT_EQ(bevels[i], std::lround(scale)) << scale << " bevel " << i;
            }
        }
    }
}

TEST(ScaledViews, TextIsDrawnInTheScreensPixels)
{
    ScaledWindow plain(1), scaled(1);
    for (ScaledWindow* window : {&plain, &scaled})
        window->Add(new BStringView(BRect(0, 0, 119, 79), "text", "Sharp letters"));
    const auto small = plain.Draw();
    scaled.SetScale(2);
    const auto large = scaled.Draw();
    ASSERT_EQ(large.width, small.width * 2);
    int same = 0, drawn = 0;
    for (int32 y = 0; y < small.height; y++) {
        for (int32 x = 0; x < small.width; x++) {
            const bool letter = small.At(x, y) != small.At(0, 0);
            drawn += letter;
            same += letter && large.At(2 * x, 2 * y) == large.At(2 * x + 1, 2 * y) &&
                    large.At(2 * x, 2 * y) == large.At(2 * x, 2 * y + 1);
        }
    }
    ASSERT_GT(drawn, 50);
    EXPECT_LT(same, drawn * 3 / 4) << "pixels twice as large";
}

TEST(ScaledViews, AreDrawnAnewWhenTheirScreenChanges)
{
    ScaledWindow window(1);
    auto* view = new ColorView(BRect(0, 0, 119, 79), 255, 128, 0);
    window.Add(view);
    const auto before = window.Draw();
    for (float scale : {2.0f, 1.5f, 4.0f, 1.0f}) {
        const int drawings = view->drawings;
        window.SetScale(scale);
        const auto picture = window.Draw();
        EXPECT_EQ(picture.width, std::lround(120 * scale));
        for (uint32 pixel : picture.pixels)
            ASSERT_EQ(pixel & 0xFFFFFF, 0xFF8000u);
        EXPECT_GT(view->drawings, drawings);
        EXPECT_EQ(view->lastUpdate, BRect(0, 0, 119, 79));
        EXPECT_EQ(window->Bounds(), BRect(0, 0, 119, 79));
        // The screen has it too, in whatever pixels it is asked for.
        std::vector<uint32> screen;
        int32 width, height;
        ASSERT_EQ(server::ReadScreen(BRect(150, 130, 151, 131), &screen, &width, &height), B_OK);
        EXPECT_EQ(width, 2);
        EXPECT_EQ(screen[3], 0xFFFF8000u);
    }
    EXPECT_TRUE(window.Draw() == before);
}

TEST(ScaledViews, ScrollAndMoveToTheSamePixelsAsDrawnAnew)
{
    for (float scale : kScales) {
        for (float step : {1.0f, 2.0f, 7.0f}) {
            ScaledWindow scrolled(scale), drawn(scale);
            auto* moving = new Paper(BRect(10, 10, 100, 70));
            auto* still = new Paper(BRect(10, 10, 100, 70));
            scrolled.Add(moving);
            drawn.Add(still);
            scrolled.Draw();
            scrolled->Lock();
            moving->ScrollBy(0, step);
            moving->MoveBy(step, 0);
            scrolled->Unlock();
            drawn->Lock();
            still->ScrollTo(0, step);
            still->MoveBy(step, 0);
            drawn->Unlock();
            EXPECT_TRUE(scrolled.Draw() == drawn.Draw()) << scale << " by " << step;
        }
    }
}

TEST(ScaledViews, AreToldUnits)
{
    ScaledWindow window(2.5f);
    auto* view = new ColorView(BRect(20, 10, 59, 39), 0, 0, 0);
    window.Add(view);
    window.Draw();
    window->Lock();
    BRegion clip;
    view->GetClippingRegion(&clip);
    EXPECT_EQ(clip.Frame(), BRect(0, 0, 39, 29));
    EXPECT_EQ(view->Bounds(), BRect(0, 0, 39, 29));
    EXPECT_EQ(view->StringWidth("units"), be_plain_font->StringWidth("units"));
    window->Unlock();
}

TEST(ScaledBitmaps, KeepOnePixelAUnit)
{
    Raster plain;
    plain.Scribble();
    for (float scale : {1.5f, 2.0f, 3.0f}) {
        ScaledWindow window(scale);
        auto* raster = new Raster;
        raster->Scribble();
        EXPECT_EQ(raster->Pixels(), plain.Pixels()) << scale;
        window.Add(raster);
        window.Draw();
        EXPECT_EQ(raster->Pixels(), plain.Pixels()) << scale << ", shown";
    }
}

TEST(ScaledBitmaps, ShowTextInTheScreensPixels)
{
    for (float scale : {1.5f, 2.0f, 4.0f}) {
        ScaledWindow window(scale), direct(scale);
        auto* raster = new Raster;
        ASSERT_TRUE(raster->bitmap.Lock());
        raster->board->SetFontSize(14);
        raster->board->DrawString("Sharp letters", BPoint(10, 40));
        raster->bitmap.Unlock();
        window.Add(raster);
        direct.Add(new Letters);
        EXPECT_TRUE(window.Draw() == direct.Draw()) << scale;
    }
}

TEST(ScaledBitmaps, ShowWhatWasWrittenToTheirBits)
{
    for (float scale : kScales) {
        ScaledWindow window(scale);
        auto* raster = new Raster;
        window.Add(raster);
        raster->Scribble();
        window.Draw();
        window->Lock();
        *raster->Pixel(12, 17) = 0xFF123456;
        *raster->Pixel(13, 17) = 0xFF654321;
        raster->Invalidate();
        window->Unlock();
        const auto picture = window.Draw();
        for (int32 x : {12, 13}) {
            const clipping_rect box = server::pixels_of({x, 17, x, 17}, scale);
            for (int32 y = box.top; y <= box.bottom; y++) {
                for (int32 column = box.left; column <= box.right; column++)
                    EXPECT_EQ(picture.At(column, y), x == 12 ? 0x123456u : 0x654321u) << scale;
            }
        }
        EXPECT_EQ(*raster->Pixel(12, 17), 0xFF123456u);
    }
}

TEST(ScaledBitmaps, FollowTheScreenOfTheirWindow)
{
    ScaledWindow window(1);
    auto* raster = new Raster;
    raster->Scribble();
    window.Add(raster);
    window.Draw();
    const auto before = raster->Pixels();
    for (float scale : {2.0f, 1.25f, 3.0f, 1.0f}) {
        window.SetScale(scale);
        const auto picture = window.Draw();
        EXPECT_EQ(picture.width, std::lround(120 * scale));
        const clipping_rect box = server::pixels_of({6, 6, 8, 8}, scale);
        EXPECT_EQ(picture.At(box.left, box.top), 0xC81E1Eu);
        EXPECT_EQ(picture.At(box.right, box.bottom), 0xC81E1Eu);
        EXPECT_EQ(raster->Pixels(), before);
    }
}

TEST(ScaledBitmaps, BecomeSharpOnAFinerScreen)
{
    ScaledWindow window(1);
    auto* raster = new Raster;
    window.Add(raster);
    window.Draw();
    window.SetScale(2);
    window.Draw();
    ASSERT_TRUE(raster->bitmap.Lock());
    raster->board->SetFontSize(14);
    raster->board->DrawString("Sharp letters", BPoint(10, 40));
    raster->bitmap.Unlock();
    window->Lock();
    raster->Invalidate();
    window->Unlock();
    const auto picture = window.Draw();
    ScaledWindow direct(2);
    direct.Add(new Letters);
    EXPECT_TRUE(picture == direct.Draw());
}

// Bits that were asked for long before they are written to.
TEST(ScaledBitmaps, ShowWhatIsWrittenBetweenDrawings)
{
    ScaledWindow window(2);
    auto* raster = new Raster;
    window.Add(raster);
    uint32* const pixel = raster->Pixel(30, 30);
    for (uint32 color : {0xFF112233u, 0xFF445566u}) {
        ASSERT_TRUE(raster->bitmap.Lock());
        raster->board->SetHighColor(200, 30, 30);
        raster->board->FillRect(BRect(20, 20, 40, 40));
        *pixel = color;
        raster->board->StrokeLine(BPoint(0, 60), BPoint(119, 61));
        raster->bitmap.Unlock();
        window->Lock();
        raster->Invalidate();
        window->Unlock();
        const auto picture = window.Draw();
        EXPECT_EQ(picture.At(60, 60), color & 0xFFFFFF);
        EXPECT_EQ(picture.At(61, 61), color & 0xFFFFFF);
        EXPECT_EQ(picture.At(62, 61), 0xC81E1Eu);
    }
}

namespace {

// A bitmap of 10 x 10 that is the left half of itself, and finer than that where it can be.
class Halves : public BView {
public:
    Halves() : BView(BRect(0, 0, 119, 79), "halves", B_FOLLOW_LEFT_TOP, B_WILL_DRAW)
    {
        const auto make = [](int32 width, int32 height, std::vector<uint32>* pixels) {
            for (int32 i = 0; i < width * height; i++)
                pixels->push_back(i % width < width * 11 / 20 ? 0xFFFF0000 : 0xFF0000FF);
            return true;
        };
        std::vector<uint32> own;
        make(10, 10, &own);
        bitmap.ImportBits(own.data(), 400, 40, 0, B_RGBA32);
        BPrivate::keep_maker(bitmap, make);
    }
    void Draw(BRect) override { DrawBitmap(&bitmap, BPoint(10, 10)); }

    BBitmap bitmap{BRect(0, 0, 9, 9), B_RGBA32};
};

}  // namespace

TEST(ScaledDrawings, AreMadeInTheScreensPixels)
{
    ScaledWindow window(2);
    auto* halves = new Halves;
    window.Add(halves);
    auto picture = window.Draw();
    EXPECT_EQ(picture.At(30, 30), 0xFF0000u);
    EXPECT_EQ(picture.At(31, 30), 0x0000FFu);  // half a unit further on, with nothing between them
    const BBitmap copy(halves->bitmap);
    EXPECT_NE(BPrivate::sharp_pixels(copy, 20, 20), nullptr);

    // What is written to the bitmap counts more.
    window->Lock();
    static_cast<uint32*>(halves->bitmap.Bits())[0] = 0xFF00FF00;
    halves->Invalidate();
    window->Unlock();
    picture = window.Draw();
    EXPECT_EQ(picture.At(20, 20), 0x00FF00u);
    EXPECT_EQ(BPrivate::sharp_pixels(halves->bitmap, 20, 20), nullptr);
    EXPECT_NE(BPrivate::sharp_pixels(copy, 20, 20), nullptr);
}

TEST(ScaledDrawings, TakeNoMemoryOnAPlainScreen)
{
    const Halves halves;
    EXPECT_EQ(BPrivate::sharp_pixels(halves.bitmap, 20, 20), nullptr);
}
