// Surfaces with a scale: what lies along the axes covers exactly the units that it would cover
// without, and what does not is drawn in the surface's own pixels.

#include "board.h"

using namespace server;

namespace {

const float kScales[] = {1.25f, 1.5f, 1.75f, 2, 2.5f, 3, 4, 1.1f, 4.0f / 3};
const int kWide = 24, kHigh = 20;

// A board of kWide x kHigh units.
struct UnitBoard : Board {
    explicit UnitBoard(float scale, uint32 color = 0xFFD8D8D8) : Board(color)
    {
        surface.width = first_pixel(kWide, scale);
        surface.height = first_pixel(kHigh, scale);
        surface.scale = scale;
    }
    // Clipped to rectangles of units.
    Target Clipped(std::vector<clipping_rect> units)
    {
        fClip = std::move(units);
        clipping_rect bounds = {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
        for (clipping_rect& rect : fClip) {
            rect = pixels_of(rect, surface.scale);
            bounds = {std::min(bounds.left, rect.left), std::min(bounds.top, rect.top),
                      std::max(bounds.right, rect.right), std::max(bounds.bottom, rect.bottom)};
        }
        return {&surface, fClip.data(), int32(fClip.size()), bounds};
    }
    Target Whole() { return Clipped({{0, 0, kWide - 1, kHigh - 1}}); }
    // The pixels of one unit are all of `color`.
    bool Is(int x, int y, uint32 color) const
    {
        const clipping_rect box = pixels_of({x, y, x, y}, surface.scale);
        for (int row = box.top; row <= box.bottom; row++) {
            for (int column = box.left; column <= box.right; column++) {
                if (At(column, row) != color)
                    return false;
            }
        }
        return true;
    }
    clipping_rect Changed(uint32 color = 0xFFD8D8D8) const
    {
        clipping_rect box = {INT32_MAX, INT32_MAX, -1, -1};
        for (int y = 0; y < surface.height; y++) {
            for (int x = 0; x < surface.width; x++) {
                if (At(x, y) != color)
                    box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
                           std::max(box.bottom, y)};
            }
        }
        return box;
    }

private:
    std::vector<clipping_rect> fClip;
};

int units_that_differ(const UnitBoard& plain, const UnitBoard& scaled)
{
    int count = 0;
    for (int y = 0; y < kHigh; y++) {
        for (int x = 0; x < kWide; x++)
            count += !scaled.Is(x, y, plain.At(x, y));
    }
    return count;
}

bool operator==(const clipping_rect& a, const clipping_rect& b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

void expect_same_units(const char* what, const Paint& paint, const Draw& draw)
{
    const std::vector<clipping_rect> clip = {{1, 0, 11, 18}, {12, 2, 22, 9}, {14, 10, 23, 19}};
    UnitBoard plain(1);
    draw(plain.Clipped(clip), paint);
    for (float scale : kScales) {
        UnitBoard scaled(scale);
        draw(scaled.Clipped(clip), paint);
        EXPECT_EQ(units_that_differ(plain, scaled), 0) << what << " at " << scale;
    }
}

Paint red(drawing_mode mode = B_OP_COPY)
{
    Paint paint;
    paint.high = {255, 0, 0, 255};
    paint.mode = mode;
    return paint;
}

}  // namespace

TEST(Units, BeginAndEndOnWholePixelsWithoutGap)
{
    for (float scale : kScales) {
        for (int32 unit = -50; unit < 50; unit++) {
            const clipping_rect box = pixels_of({unit, unit, unit, unit + 2}, scale);
            EXPECT_EQ(box.right + 1, first_pixel(unit + 1, scale));
            EXPECT_GE(box.right, box.left);
            EXPECT_EQ(box.bottom + 1, pixels_of({0, unit + 3, 0, unit + 9}, scale).top);
        }
    }
    EXPECT_LT(pixels_of({INT32_MIN, 0, INT32_MAX, 0}, 4).left, -100000000);
    EXPECT_GT(pixels_of({INT32_MIN, 0, INT32_MAX, 0}, 4).right, 100000000);
}

TEST(Units, ScaleThatNoSurfaceCanHaveBecomesTheNearest)
{
    EXPECT_EQ(sensible_scale(0), 1);
    EXPECT_EQ(sensible_scale(-3), 1);
    EXPECT_EQ(sensible_scale(0.5), 1);
    EXPECT_EQ(sensible_scale(NAN), 1);
    EXPECT_EQ(sensible_scale(-INFINITY), 1);
    EXPECT_EQ(sensible_scale(INFINITY), 4);
    EXPECT_EQ(sensible_scale(100), 4);
    EXPECT_EQ(sensible_scale(1.25), 1.25f);
}

TEST(Units, RectanglesFramesAndStraightLinesAreExact)
{
    std::mt19937 random(7);
    auto place = [&] { return float(int(random() % 30) - 3); };
    for (int round = 0; round < 60; round++) {
        Paint paint = red(drawing_mode(random() % (B_OP_ALPHA + 1)));
        paint.high.alpha = 128;
        paint.patternPhase = BPoint(place(), place());
        if (round % 3 == 0)
            paint.pattern = B_MIXED_COLORS;
        BRect rect(place(), place(), place(), place());
        expect_same_units("fill", paint,
                          [&](auto& target, auto& with) { return FillRect(target, with, rect); });
        expect_same_units("frame", paint,
                          [&](auto& target, auto& with) { return StrokeRect(target, with, rect); });
        const BPoint end = round % 2 == 0 ? rect.LeftBottom() : rect.RightTop();
        expect_same_units("line", paint, [&](auto& target, auto& with) {
            return StrokeLine(target, with, rect.LeftTop(), end);
        });
        paint.penSize = float(1 + random() % 5);
        expect_same_units("wide frame", paint,
                          [&](auto& target, auto& with) { return StrokeRect(target, with, rect); });
    }
}

TEST(Units, RegionsAndBitmapsCoverTheirUnits)
{
    BRegion region(BRect(2, 2, 9, 6));
    region.Include(BRect(6, 5, 15, 15));
    expect_same_units("region", red(),
                      [&](auto& target, auto& paint) { return FillRegion(target, paint, region); });
    Board picture;
    for (int y = 0; y < 8; y++) {
        for (int x = 0; x < 8; x++)
            picture.At(x, y) = 0xFF000000 | uint32(x * 30) << 8 | uint32(y * 30);
    }
    for (float scale : {2.0f, 3.0f, 4.0f}) {
        UnitBoard plain(1), scaled(scale);
        for (UnitBoard* board : {&plain, &scaled})
            DrawBitmap(board->Whole(), Paint(), picture.surface, BRect(0, 0, 7, 7),
                       BRect(3, 4, 10, 11), 0);
        EXPECT_EQ(units_that_differ(plain, scaled), 0) << scale;
    }
    for (float scale : kScales) {
        UnitBoard scaled(scale);
        DrawBitmap(scaled.Whole(), Paint(), picture.surface, BRect(0, 0, 7, 7), BRect(3, 4, 10, 11),
                   0);
        EXPECT_TRUE(scaled.Changed() == pixels_of({3, 4, 10, 11}, scale)) << scale;
    }
}

TEST(Units, FilledRoundShapesReachTheEdgesOfTheirUnits)
{
    for (float scale : kScales) {
        const clipping_rect box = pixels_of({3, 2, 18, 15}, scale);
        UnitBoard ellipse(scale), round(scale), ring(scale);
        FillEllipse(ellipse.Whole(), red(), BPoint(10.5f, 8.5f), 7.5f, 6.5f);
        EXPECT_TRUE(ellipse.Changed() == box) << scale;
        FillRoundRect(round.Whole(), red(), BRect(3, 2, 18, 15), 4, 4);
        EXPECT_TRUE(round.Changed() == box) << scale;
        EXPECT_TRUE(round.Is(10, 2, 0xFFFF0000));
        EXPECT_FALSE(round.Is(3, 2, 0xFFFF0000));
        StrokeEllipse(ring.Whole(), red(), BPoint(10.5f, 8.5f), 7.5f, 6.5f);
        const clipping_rect around = ring.Changed();
        EXPECT_LE(std::abs(around.left - box.left), 1) << scale;
        EXPECT_LE(std::abs(around.right - box.right), 1) << scale;
        EXPECT_LE(std::abs(around.bottom - box.bottom), 1) << scale;
        EXPECT_TRUE(ring.Is(10, 8, 0xFFD8D8D8)) << "the inside of a ring";
    }
}

TEST(Units, CurvesAndSlopesHaveTheSurfacesOwnSteps)
{
    const BPoint corners[] = {BPoint(2, 15), BPoint(20, 15), BPoint(11, 2)};
    const BPoint curve[] = {BPoint(2, 15), BPoint(8, 1), BPoint(14, 1), BPoint(20, 15)};
    const Draw draws[] = {
        [](auto& target, auto& paint) {
            return StrokeLine(target, paint, BPoint(2, 2), BPoint(20, 9));
        },
        [](auto& target, auto& paint) { return FillEllipse(target, paint, BPoint(10, 8), 8, 6); },
        [&](auto& target, auto& paint) { return FillPolygon(target, paint, corners, 3); },
        [&](auto& target, auto& paint) { return StrokePolygon(target, paint, corners, 3, true); },
        [&](auto& target, auto& paint) { return FillBezier(target, paint, curve); },
        [&](auto& target, auto& paint) { return StrokeBezier(target, paint, curve); },
    };
    for (const Draw& draw : draws) {
        UnitBoard plain(1), scaled(3);
        draw(plain.Whole(), red());
        draw(scaled.Whole(), red());
        const int differ = units_that_differ(plain, scaled);
        EXPECT_GT(differ, 4) << &draw - draws << ": only larger pixels";
        const int least = plain.Count(0xFFFF0000) * 9;
        EXPECT_NEAR(scaled.Count(0xFFFF0000), least, least / 4) << &draw - draws;
        const clipping_rect box = pixels_of(plain.Changed(), 3), drawn = scaled.Changed();
        for (int off : {drawn.left - box.left, drawn.top - box.top, drawn.right - box.right,
                        drawn.bottom - box.bottom})
            EXPECT_LE(std::abs(off), 2) << &draw - draws;
    }
}

TEST(Units, PolygonsAlongTheAxesAreExactAtWholeScales)
{
    const BPoint corners[] = {BPoint(3, 2), BPoint(18, 2), BPoint(18, 12), BPoint(3, 12)};
    for (float scale : {2.0f, 3.0f, 4.0f}) {
        for (bool fill : {true, false}) {
            UnitBoard plain(1), scaled(scale);
            for (UnitBoard* board : {&plain, &scaled}) {
                if (fill)
                    FillPolygon(board->Whole(), red(), corners, 4);
                else
                    StrokePolygon(board->Whole(), red(), corners, 4, true);
            }
            EXPECT_EQ(units_that_differ(plain, scaled), 0) << scale << fill;
        }
    }
}

TEST(Units, NoPixelIsPaintedTwice)
{
    const BPoint corners[] = {BPoint(2, 15), BPoint(20, 14), BPoint(3, 3), BPoint(19, 2)};
    for (float scale : kScales) {
        UnitBoard copied(scale), inverted(scale);
        for (UnitBoard* board : {&copied, &inverted}) {
            Paint paint = red(board == &copied ? B_OP_COPY : B_OP_INVERT);
            paint.high = {0x27, 0x27, 0x27, 255};  // what inverting makes of the ground
            FillPolygon(board->Whole(), paint, corners, 4);
        }
        int differ = 0;
        for (int y = 0; y < copied.surface.height; y++) {
            for (int x = 0; x < copied.surface.width; x++)
                differ += copied.At(x, y) != inverted.At(x, y);
        }
        EXPECT_EQ(differ, 0) << scale;
        StrokePolygon(inverted.Whole(), red(B_OP_INVERT), corners, 4, true);
        StrokePolygon(inverted.Whole(), red(B_OP_INVERT), corners, 4, true);
        differ = 0;
        for (int y = 0; y < copied.surface.height; y++) {
            for (int x = 0; x < copied.surface.width; x++)
                differ += copied.At(x, y) != inverted.At(x, y);
        }
        EXPECT_EQ(differ, 0) << scale << ": twice inverted is as before";
    }
}

TEST(Units, TurnedShapesKeepTheirPlace)
{
    BAffineTransform turn;
    turn.RotateBy(BPoint(12, 10), M_PI / 2);
    Paint paint = red();
    paint.transform = &turn;
    for (float scale : {2.0f, 3.0f}) {
        UnitBoard plain(1), scaled(scale);
        for (UnitBoard* board : {&plain, &scaled})
            FillRect(board->Whole(), paint, BRect(8, 7, 13, 9));
        const clipping_rect box = pixels_of(plain.Changed(), scale), drawn = scaled.Changed();
        EXPECT_LE(std::abs(drawn.left - box.left), 1);
        EXPECT_LE(std::abs(drawn.top - box.top), 1);
        EXPECT_LE(std::abs(drawn.right - box.right), 1);
        EXPECT_LE(std::abs(drawn.bottom - box.bottom), 1);
    }
}

TEST(Units, PlacesThatAreNoneDrawNothing)
{
    const float kBad[] = {NAN, INFINITY, -INFINITY, 1e30f};
    for (float bad : kBad) {
        UnitBoard board(1.5f);
        const Target target = board.Whole();
        StrokeLine(target, red(), BPoint(bad, bad), BPoint(bad, bad));
        FillRect(target, red(), BRect(bad, bad, bad, bad));
        StrokeRect(target, red(), BRect(bad, 0, bad, 5));
        FillEllipse(target, red(), BPoint(bad, bad), 5, 5);
        StrokeEllipse(target, red(), BPoint(bad, bad), 3, 3);
        CopyRect(target, BRect(bad, bad, bad, bad), BPoint(bad, bad));
        EXPECT_EQ(board.Count(0xFFFF0000), 0) << bad;
    }
}

TEST(Units, CopiedPixelsMoveByWholeUnits)
{
    for (float scale : {1.5f, 2.0f, 2.5f, 3.0f}) {
        UnitBoard plain(1), scaled(scale);
        for (UnitBoard* board : {&plain, &scaled}) {
            FillRect(board->Whole(), red(), BRect(2, 2, 5, 6));
            FillRect(board->Whole(), Paint(), BRect(4, 4, 8, 9));
            CopyRect(board->Whole(), BRect(2, 2, 9, 9), BPoint(10, 8));
        }
        EXPECT_EQ(units_that_differ(plain, scaled), 0) << scale;
    }
}
