// The drawing calls, pixel for pixel: into a plain view of a bitmap, where all pixels can be read,
// and into windows, where what reaches the screen counts.

#include "support/program.h"

#include <gtest/gtest.h>

#include <Application.h>
#include <Bitmap.h>
#include <Font.h>
#include <Screen.h>
#include <View.h>
#include <Window.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

namespace {

const uint32_t kWhite = 0xFFFFFFFF;
const uint32_t kRed = 0xFF0000FF;
const uint32_t kBlue = 0x0000FFFF;

// A bitmap with one plain view, drawn into by the view's address.
class Paper {
public:
    explicit Paper(int32_t side = 24)
        : fBitmap(BRect(0, 0, side - 1, side - 1), B_RGBA32, true),
          fView(new BView(fBitmap.Bounds(), "", B_FOLLOW_NONE, B_WILL_DRAW))
    {
        fBitmap.Lock();
        fBitmap.AddChild(fView);
        fView->SetViewColor(255, 255, 255);
        Clear(*this);
        SetForeColor(*this, kRed, kWhite);
    }
    ~Paper() { fBitmap.Unlock(); }

    operator intptr_t() const { return reinterpret_cast<intptr_t>(fView); }
    BView* View() const { return fView; }

    // 0xRRGGBBAA, as the calls take it.
    uint32_t At(int32_t x, int32_t y) const
    {
        const auto* pixel =
            static_cast<const uint8*>(fBitmap.Bits()) + y * fBitmap.BytesPerRow() + 4 * x;
        return static_cast<uint32_t>(pixel[2]) << 24 | pixel[1] << 16 | pixel[0] << 8 | pixel[3];
    }

    // The left top corner as text: "." for white, "#" for red, "o" for blue, "?" for another.
    std::string Picture(int32_t width, int32_t height) const
    {
        std::string picture;
        for (int32_t y = 0; y < height; y++) {
            for (int32_t x = 0; x < width; x++) {
                const uint32_t color = At(x, y);
                picture += color == kWhite ? '.' : color == kRed ? '#' : color == kBlue ? 'o' : '?';
            }
            picture += '\n';
        }
        return picture;
    }

    int32_t Count(uint32_t color) const
    {
        int32_t count = 0;
        const auto side = static_cast<int32_t>(fBitmap.Bounds().right) + 1;
        for (int32_t y = 0; y < side; y++)
            for (int32_t x = 0; x < side; x++)
                count += At(x, y) == color;
        return count;
    }

private:
    BBitmap fBitmap;
    BView* fView;
};

rgb_color screen_pixel(int32_t x, int32_t y)
{
    BBitmap pixel(BRect(0, 0, 0, 0), B_RGB32);
    BRect frame(x, y, x, y);
    BScreen().ReadBitmap(&pixel, false, &frame);
    const auto* bits = static_cast<const uint8*>(pixel.Bits());
    return {bits[2], bits[1], bits[0], 255};
}

bool is_color(rgb_color color, uint8 red, uint8 green, uint8 blue)
{
    return color.red == red && color.green == green && color.blue == blue;
}

// What the screen shows of a test's window, at (100, 100) with 200 by 150 pixels, once all that was
// drawn so far is there: after a mark that is drawn last.
std::vector<uint32> screen_behind(const TestWindow& window)
{
    static uint32_t mark = 0x102030FF;
    mark += 0x01000000;
    SetForeColor(window, mark, kWhite);
    FRectangle(window, 0, 149, 1, 1);
    EXPECT_TRUE(eventually([] { return screen_pixel(100, 249).red == mark >> 24; }));
    BBitmap picture(BRect(0, 0, 199, 148), B_RGB32);
    BRect frame(100, 100, 299, 248);
    BScreen().ReadBitmap(&picture, false, &frame);
    const auto* bits = static_cast<const uint32*>(picture.Bits());
    return {bits, bits + 200 * 149};
}

}  // namespace

TEST(Primitives, RectanglesIncludeTheirFarEdges)
{
    Paper paper;
    FRectangle(paper, 1, 1, 2, 1);
    Rectangle(paper, 5, 1, 3, 3);
    EXPECT_EQ(paper.Picture(10, 6),
              "..........\n"
              ".###.####.\n"
              ".###.#..#.\n"
              ".....#..#.\n"
              ".....####.\n"
              "..........\n");
}

TEST(Primitives, LinesCoverBothEnds)
{
    Paper paper;
    Line(paper, 1, 0, 6, 0);
    Line(paper, 0, 6, 0, 2);
    Line(paper, 2, 2, 6, 6);
    Line(paper, 9, 2, 9, 2);
    EXPECT_EQ(paper.Picture(11, 8),
              ".######....\n"
              "...........\n"
              "#.#......#.\n"
              "#..#.......\n"
              "#...#......\n"
              "#....#.....\n"
              "#.....#....\n"
              "...........\n");
}

TEST(Primitives, LineToGoesOnFromThePen)
{
    Paper paper;
    int32_t pen[2] = {-1, -1};
    MoveTo(paper, 2, 3);
    GetCurrentPos(paper, pen);
    EXPECT_EQ(pen[0], 2);
    EXPECT_EQ(pen[1], 3);
    LineTo(paper, 5, 3);
    LineTo(paper, 5, 6);
    GetCurrentPos(paper, pen);
    EXPECT_EQ(pen[0], 5);
    EXPECT_EQ(pen[1], 6);
    EXPECT_EQ(paper.Picture(7, 8),
              ".......\n.......\n.......\n..####.\n.....#.\n.....#.\n.....#.\n.......\n");
}

TEST(Primitives, EllipsesAreSymmetricAndReachTheirRadii)
{
    for (const bool filled : {false, true}) {
        Paper paper;
        if (filled)
            FEllipse(paper, 11, 11, 9, 5);
        else
            Ellipse(paper, 11, 11, 9, 5);
        for (int32_t dy = 0; dy <= 6; dy++)
            for (int32_t dx = 0; dx <= 10; dx++) {
                const uint32_t color = paper.At(11 + dx, 11 + dy);
                EXPECT_EQ(color, paper.At(11 - dx, 11 + dy)) << dx << "," << dy;
                EXPECT_EQ(color, paper.At(11 + dx, 11 - dy)) << dx << "," << dy;
            }
        EXPECT_EQ(paper.At(20, 11), kRed);
        EXPECT_EQ(paper.At(11, 16), kRed);
        EXPECT_EQ(paper.At(21, 11), kWhite);
        EXPECT_EQ(paper.At(11, 17), kWhite);
        EXPECT_EQ(paper.At(11, 11), filled ? kRed : kWhite);
    }
}

TEST(Primitives, CirclesAreEllipsesOfOneRadiusAndArcsTheirParts)
{
    Paper circle, ellipse, arc;
    Circle(circle, 11, 11, 8);
    Ellipse(ellipse, 11, 11, 8, 8);
    EXPECT_EQ(circle.Picture(24, 24), ellipse.Picture(24, 24));
    Arc(arc, 11, 11, 8, 8, 0, 90);
    EXPECT_EQ(arc.At(19, 11), kRed);
    EXPECT_EQ(arc.At(11, 3), kRed);
    for (int32_t y = 0; y < 24; y++)
        for (int32_t x = 0; x < 24; x++)
            if (x < 10 || y > 12) {
                EXPECT_EQ(arc.At(x, y), kWhite) << x << "," << y;
            }
    Paper pie;
    FArc(pie, 11, 11, 8, 8, 180, 90);
    EXPECT_EQ(pie.At(8, 14), kRed);
    EXPECT_EQ(pie.At(14, 14), kWhite);
    EXPECT_EQ(pie.At(8, 8), kWhite);
}

TEST(Primitives, PolygonsFillTheirInsideAndStrokeOpenOrClosed)
{
    const int16_t square[] = {2, 2, 8, 2, 8, 8, 2, 8};
    Paper filled, open, closed, lines;
    FillPolygon(filled, 4, square);
    EXPECT_EQ(filled.Count(kRed), 49);
    StrokePolygon(open, 4, square, 0);
    StrokePolygon(closed, 4, square, 1);
    PolyDraw(lines, 4, square);
    EXPECT_EQ(open.At(2, 5), kWhite);
    EXPECT_EQ(closed.At(2, 5), kRed);
    EXPECT_EQ(closed.Count(kRed), 24);
    EXPECT_EQ(lines.Picture(12, 12), open.Picture(12, 12));
    Paper corner;
    FTriangle(corner, 0, 0, 10, 0, 0, 10);
    EXPECT_EQ(corner.At(3, 3), kRed);
    EXPECT_EQ(corner.At(8, 8), kWhite);
    Paper outline;
    Triangle(outline, 0, 0, 10, 0, 0, 10);
    EXPECT_EQ(outline.At(3, 3), kWhite);
    EXPECT_EQ(outline.At(5, 5), kRed);
}

TEST(Primitives, CurvesStartAndEndAtTheirOuterPoints)
{
    const int16_t curve[] = {1, 20, 4, 0, 18, 0, 21, 20};
    Paper stroked, filled;
    StrokeBezier(stroked, curve);
    FillBezier(filled, curve);
    EXPECT_EQ(stroked.At(1, 20), kRed);
    EXPECT_EQ(stroked.At(21, 20), kRed);
    EXPECT_EQ(stroked.At(11, 18), kWhite);
    EXPECT_EQ(filled.At(11, 18), kRed);
}

TEST(Primitives, RoundRectanglesLoseTheirCorners)
{
    Paper filled, stroked;
    SetStrokeFill(filled, 2, 2, 18, 18, 6, 6);
    SetStrokeRectangle(stroked, 2, 2, 18, 18, 6, 6);
    for (const Paper* paper : {&filled, &stroked}) {
        EXPECT_EQ(paper->At(2, 2), kWhite);
        EXPECT_EQ(paper->At(2, 11), kRed);
        EXPECT_EQ(paper->At(11, 20), kRed);
    }
    EXPECT_EQ(filled.At(11, 11), kRed);
    EXPECT_EQ(stroked.At(11, 11), kWhite);
}

TEST(Primitives, PenAndModesShapeWhatFollows)
{
    Paper paper;
    SetPenWidth(paper, 3);
    EXPECT_EQ(GetPenWidth(paper), 3);
    SetLineMode(paper, B_BUTT_CAP, B_MITER_JOIN);
    EXPECT_EQ(paper.View()->LineMiterLimit(), 10);
    Line(paper, 2, 10, 20, 10);
    EXPECT_EQ(paper.At(10, 9), kRed);
    EXPECT_EQ(paper.At(10, 11), kRed);
    EXPECT_EQ(paper.At(10, 7), kWhite);
    SetLineMode(paper, 77, 0);
    SetLineMode(paper, 0, -1);
    EXPECT_EQ(paper.View()->LineCapMode(), B_BUTT_CAP);
    SetDrawMode(paper, B_OP_INVERT);
    SetDrawMode(paper, 11);
    SetDrawMode(paper, INT32_MIN);
    EXPECT_EQ(paper.View()->DrawingMode(), B_OP_INVERT);
    FRectangle(paper, 0, 0, 23, 23);
    EXPECT_EQ(paper.At(10, 10), 0x00FFFFFFu);
    EXPECT_EQ(paper.At(0, 0) & 0xFFFFFF00u, 0u);
    SetDrawMode(paper, B_OP_COPY);
    SetAlphaMode(paper, B_CONSTANT_ALPHA, B_ALPHA_COMPOSITE);
    SetAlphaMode(paper, 2, 9);
    source_alpha source;
    alpha_function function;
    paper.View()->GetBlendingMode(&source, &function);
    EXPECT_EQ(source, B_CONSTANT_ALPHA);
    EXPECT_EQ(function, B_ALPHA_COMPOSITE);
}

TEST(Primitives, ClippingLimitsAllDrawingUntilItIsLifted)
{
    Paper paper;
    SetClipping(paper, 4, 4, 3, 3);
    FRectangle(paper, 0, 0, 23, 23);
    EXPECT_EQ(paper.Count(kRed), 16);
    EXPECT_EQ(paper.At(7, 7), kRed);
    SetClippingAll(paper);
    FRectangle(paper, 0, 0, 0, 0);
    EXPECT_EQ(paper.At(0, 0), kRed);
    SetClipping(paper, 10, 10, -4, -4);
    FRectangle(paper, 0, 0, 23, 23);
    EXPECT_EQ(paper.Count(kRed), 17);
    DrawAcces(paper, 1);
    FRectangle(paper, 0, 0, 23, 23);
    EXPECT_EQ(paper.Count(kRed), 24 * 24);
}

TEST(Primitives, BlitCopiesOverlappingRectangles)
{
    Paper paper;
    FRectangle(paper, 0, 0, 3, 3);
    SetForeColor(paper, kBlue, kWhite);
    FRectangle(paper, 1, 1, 1, 1);
    Blit(paper, 0, 0, 3, 3, 2, 2);
    EXPECT_EQ(paper.Picture(7, 7),
              "####...\n#oo#...\n#o####.\n###oo#.\n..#oo#.\n..####.\n.......\n");
}

TEST(Primitives, ClearFillsWithTheBackgroundAndKeepsThePen)
{
    Paper paper;
    SetBackColor(paper, kBlue);
    Clear(paper);
    EXPECT_EQ(paper.Count(kBlue), 24 * 24);
    FRectangle(paper, 0, 0, 1, 1);
    EXPECT_EQ(paper.At(1, 1), kRed);
}

TEST(Primitives, SeparatorsAreBlackOverWhiteAndLeaveThePenAlone)
{
    Paper paper;
    SetBackColor(paper, kBlue);
    Clear(paper);
    SetDrawMode(paper, B_OP_INVERT);
    MoveTo(paper, 7, 9);
    DrawSeparatorHoriz(paper, 2, 3, 5);
    DrawSeparatorVert(paper, 12, 3, 5);
    for (int32_t i = 0; i <= 5; i++) {
        EXPECT_EQ(paper.At(2 + i, 3), 0x000000FFu);
        EXPECT_EQ(paper.At(2 + i, 4), kWhite);
        EXPECT_EQ(paper.At(12, 3 + i), 0x000000FFu);
        EXPECT_EQ(paper.At(13, 3 + i), kWhite);
    }
    EXPECT_EQ(paper.At(8, 3), kBlue);
    int32_t pen[2];
    GetCurrentPos(paper, pen);
    EXPECT_EQ(pen[0], 7);
    EXPECT_EQ(paper.View()->DrawingMode(), B_OP_INVERT);
    EXPECT_EQ(paper.View()->HighColor().red, 255);
}

TEST(Primitives, TextWritesLineUnderLine)
{
    Paper paper(80);
    font_height height;
    be_plain_font->GetHeight(&height);
    const float line = height.ascent + height.descent + height.leading;
    MoveTo(paper, 4, 2);
    Text(paper, "Hg");
    BPoint pen = paper.View()->PenLocation();
    EXPECT_FLOAT_EQ(pen.x, 4);
    EXPECT_FLOAT_EQ(pen.y, 2 + line);
    EXPECT_GT(80 * 80 - paper.Count(kWhite), 20);
    Text(paper, "");
    Text(paper, nullptr);
    EXPECT_FLOAT_EQ(paper.View()->PenLocation().y, 2 + line);
    Text(paper, "Hg");
    EXPECT_FLOAT_EQ(paper.View()->PenLocation().y, 2 + 2 * line);
    EXPECT_EQ(GetTextWidth(paper, ""), 0);
    EXPECT_EQ(GetTextWidth(paper, nullptr), 0);
    EXPECT_GT(GetTextWidth(paper, "Hgg"), GetTextWidth(paper, "Hg"));
}

TEST(Primitives, PixelsReadBackAsTheirOwnColourThoughExchangedKept)
{
    TestWindow window;
    BScreen screen;
    for (uint32_t color : {0xFF0000FFu, 0x0000FFFFu, 0x336698FFu, 0x12C83AFFu}) {
        SetForeColor(window, color, kWhite);
        WritePixel(window, 10, 20);
        EXPECT_EQ(GetPixel(window, 10, 20),
                  screen.IndexForColor(color >> 24, color >> 16 & 255, color >> 8 & 255, 255));
    }
    // A fill is not exchanged, so that it reads back with red for blue.
    SetForeColor(window, kRed, kWhite);
    FRectangle(window, 0, 0, 5, 5);
    EXPECT_EQ(GetPixel(window, 2, 2), screen.IndexForColor(0, 0, 255, 255));
}

TEST(Primitives, PixelsOutsideTheBitmapAreNeitherWrittenNorRead)
{
    TestWindow window;
    const struct {
        int32_t x, y;
    } outside[] = {{-1, 0},
                   {0, -1},
                   {200, 0},
                   {0, 150},
                   {INT32_MIN, 0},
                   {0, INT32_MAX},
                   {INT32_MAX, INT32_MAX}};
    for (const auto& place : outside) {
        WritePixel(window, place.x, place.y);
        EXPECT_EQ(GetPixel(window, place.x, place.y), 0);
    }
    SetForeColor(window, kRed, kWhite);
    WritePixel(window, 199, 149);
    EXPECT_NE(GetPixel(window, 199, 149), 0);
}

TEST(Primitives, WithoutRefreshOnlyTheBitmapChanges)
{
    TestWindow window;
    SetForeColor(window, 0x00FF00FF, kWhite);
    FRectangle(window, 0, 0, 199, 149);
    EXPECT_TRUE(eventually([] { return is_color(screen_pixel(150, 150), 0, 255, 0); }));
    SetRefreshWindowMode(window, 0);
    SetForeColor(window, kRed, kWhite);
    FRectangle(window, 0, 0, 199, 149);
    snooze(60'000);
    EXPECT_TRUE(is_color(screen_pixel(150, 150), 0, 255, 0));
    SetRefreshWindowMode(window, 1);
    EXPECT_TRUE(eventually([] { return is_color(screen_pixel(150, 150), 255, 0, 0); }));
    SetForeColor(window, kBlue, kWhite);
    FRectangle(window, 40, 40, 20, 20);
    EXPECT_TRUE(eventually([] { return is_color(screen_pixel(150, 150), 0, 0, 255); }));
    EXPECT_TRUE(is_color(screen_pixel(105, 105), 255, 0, 0));
}

TEST(Primitives, TextShowsWhatPixelsWereWrittenKept)
{
    TestWindow window;
    screen_behind(window);
    SetForeColor(window, kRed, kWhite);
    WritePixel(window, 150, 130);
    WritePixel(window, 190, 3);
    EXPECT_NE(screen_behind(window)[3 * 200 + 190] & 0xffffff, 0x0000ffu);
    SetForeColor(window, kRed, kWhite);
    MoveTo(window, 5, 50);
    Text(window, "x");
    const std::vector<uint32> shown = screen_behind(window);
    EXPECT_EQ(shown[3 * 200 + 190] & 0xffffff, 0x0000ffu);
    EXPECT_EQ(shown[130 * 200 + 150] & 0xffffff, 0x0000ffu);
}

TEST(Primitives, TextOfAnyFontAndAngleIsShownWhole)
{
    TestWindow window;
    screen_behind(window);
    const struct {
        int32_t size, angle, shear;
    } fonts[] = {{12, 0, 90}, {30, 0, 60}, {20, 45, 90}, {20, 200, 120}, {48, 0, 90}};
    for (const auto& font : fonts) {
        SetFontSize(window, font.size);
        SetRotation(window, font.angle);
        SetShear(window, font.shear);
        MoveTo(window, 90, 40);
        Text(window, "f\u00c5g\u1ea4j");
    }
    const std::vector<uint32> shown = screen_behind(window);
    SetRefreshWindowMode(window, 1);  // all of it
    EXPECT_EQ(screen_behind(window), shown);
}

TEST(Primitives, TheDefaultTargetIsTheWindowNamedUntilItCloses)
{
    FRectangle(-1, 0, 0, 10, 10);
    EXPECT_EQ(GetTextWidth(-1, "x"), 0);
    {
        TestWindow window;
        SetDefaultGfx(window);
        EXPECT_GT(GetTextWidth(-1, "x"), 0);
        SetForeColor(-1, kRed, kWhite);
        FRectangle(-1, 0, 0, 10, 10);
        EXPECT_TRUE(eventually([] { return is_color(screen_pixel(105, 105), 255, 0, 0); }));
        SetDefaultGfx(window.Ident() + 5000);
        EXPECT_EQ(GetTextWidth(-1, "x"), 0);
        SetDefaultGfx(window);
    }
    EXPECT_TRUE(eventually([] { return GetTextWidth(-1, "x") == 0; }));
}

TEST(Primitives, TargetsOfWrongKindsDrawNothing)
{
    class Derived : public BView {
    public:
        Derived() : BView(BRect(0, 0, 9, 9), "", B_FOLLOW_NONE, B_WILL_DRAW) {}
    };
    BBitmap bitmap(BRect(0, 0, 9, 9), B_RGBA32, true);
    auto* derived = new Derived;
    bitmap.Lock();
    bitmap.AddChild(derived);
    FRectangle(reinterpret_cast<intptr_t>(derived), 0, 0, 9, 9);
    bitmap.Unlock();
    for (intptr_t target : {intptr_t{0}, intptr_t{-2}, intptr_t{INT32_MIN}, intptr_t{INT32_MAX},
                            INTPTR_MIN, intptr_t{0x14041968}}) {
        FRectangle(target, 0, 0, 5, 5);
        Text(target, "text");
        Clear(target);
        SetDefaultGfx(target);
        SetRefreshWindowMode(target, 1);
        EXPECT_EQ(GetPixel(target, 0, 0), 0);
        EXPECT_EQ(GetPenWidth(target), 0);
    }
    const auto* bits = static_cast<const uint32*>(bitmap.Bits());
    EXPECT_EQ(bits[0], bits[33]);
}

TEST(Primitives, AbsurdNumbersHarmNothing)
{
    TestWindow window;
    const int32_t numbers[] = {INT32_MIN, -1, 0, 1, INT32_MAX};
    const int16_t points[] = {INT16_MIN, INT16_MAX, INT16_MAX, INT16_MIN, 0, 0, INT16_MIN, 0};
    Paper paper;
    for (const intptr_t target : {static_cast<intptr_t>(window.Ident()), intptr_t{paper}})
        for (int32_t a : numbers)
            for (int32_t b : numbers) {
                FRectangle(target, a, b, b, a);
                Rectangle(target, a, a, b, b);
                SetStrokeRectangle(target, 5, 5, 20, 20, a, b);
                SetStrokeFill(target, a, b, 20, 20, b, a);
                Ellipse(target, a, b, a, b);
                FEllipse(target, 10, 10, a, b);
                Circle(target, a, b, 30);
                FCircle(target, 10, 10, a);
                Arc(target, 10, 10, a, b, b, a);
                FArc(target, a, b, 20, 20, a, b);
                Triangle(target, a, b, b, a, 10, 10);
                FTriangle(target, a, b, b, a, 10, 10);
                Line(target, a, b, b, a);
                LineTo(target, a, b);
                Blit(target, a, b, a, b, b, a);
                Blit(target, 0, 0, 50, 50, a, b);
                DrawSeparatorHoriz(target, a, b, a);
                DrawSeparatorVert(target, b, a, b);
                SetPenWidth(target, a);
                SetClipping(target, a, b, b, a);
                SetClippingAll(target);
                FillPolygon(target, a <= 4 ? a : 4, points);
                StrokePolygon(target, b <= 4 ? b : 4, points, a);
                PolyDraw(target, a <= 4 ? a : 4, points);
                StrokeBezier(target, points);
                FillBezier(target, points);
                MoveTo(target, a, b);
                Text(target, "edge");
                DrawIcon(target, a, b, 0, 0);
                SetPenWidth(target, 1);
            }
    FillPolygon(window, 3, nullptr);
    StrokeBezier(window, nullptr);
    GetCurrentPos(window, nullptr);
    SetForeColor(window, kRed, kWhite);
    SetDrawMode(window, B_OP_COPY);
    FRectangle(window, 0, 0, 5, 5);
    EXPECT_NE(GetPixel(window, 3, 3), 0);
}
