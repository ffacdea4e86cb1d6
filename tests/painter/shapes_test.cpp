// Which pixels a shape has: against closed formulas, against its own unclipped picture, and
// against the picture of another mode.

#include "painter/board.h"

#include <cmath>
#include <limits>

using namespace server;

namespace {

const uint32 kInk = 0xFF102030;

Paint ink()
{
    Paint paint;
    paint.high = {0x10, 0x20, 0x30, 0xFF};
    return paint;
}

// A banded random clip.
BRegion random_clip(std::mt19937& random)
{
    const auto in = [&](int high) { return int32(random() % high); };
    BRegion region;
    for (int i = 0; i < 5; i++) {
        const int32 x = in(Board::kWidth), y = in(Board::kHeight);
        region.Include(clipping_rect{x, y, x + in(40), y + in(30)});
    }
    BRegion whole(BRect(0, 0, Board::kWidth - 1, Board::kHeight - 1));
    region.IntersectWith(&whole);
    return region;
}

struct Clip {
    Clip(Board& board, const BRegion& region)
    {
        for (int32 i = 0; i < region.CountRects(); i++)
            rects.push_back(region.RectAtInt(i));
        target = {&board.surface, rects.data(), int32(rects.size()), region.FrameInt()};
    }
    std::vector<clipping_rect> rects;
    Target target;
};

float pen_of(int round) { return round % 3 == 2 ? float(2 + round % 7) : 1.0f; }

void set_joins(Paint& paint, int round)
{
    const cap_mode caps[] = {B_BUTT_CAP, B_ROUND_CAP, B_SQUARE_CAP};
    const join_mode joins[] = {B_MITER_JOIN, B_ROUND_JOIN, B_BEVEL_JOIN, B_BUTT_JOIN,
                               B_SQUARE_JOIN};
    paint.penSize = pen_of(round);
    paint.cap = caps[round % 3 == 2 ? round / 3 % 3 : 0];
    paint.join = joins[round / 9 % 5];
    paint.fillRule = round % 2 == 0 ? B_NONZERO : B_EVEN_ODD;
}

// The angle from an ellipse's point at `start` degrees on to (x, y), 0 to 2 pi.
double turn_from(double start, double rx, double ry, double x, double y)
{
    const double from =
        std::atan2(ry * std::sin(start * M_PI / 180), rx * std::cos(start * M_PI / 180));
    const double turn = std::atan2(y, x) - from;
    return turn - 2 * M_PI * std::floor(turn / (2 * M_PI));
}

}  // namespace

TEST(Shapes, ClippedPictureIsThePartOfTheWholeOne)
{
    std::mt19937 random(1);
    for (int round = 0; round < 150; round++) {
        Paint paint = ink();
        set_joins(paint, round);
        for (const Shape& shape : random_shapes(random)) {
            Board whole, part, expected;
            shape.draw(whole.Whole(), paint);
            const BRegion region = random_clip(random);
            const Clip clip(part, region);
            const clipping_rect changed = shape.draw(clip.target, paint);
            for (int y = 0; y < Board::kHeight; y++) {
                for (int x = 0; x < Board::kWidth; x++) {
                    expected.At(x, y) = region.Contains(x, y) ? whole.At(x, y) : 0;
                    EXPECT_TRUE(part.At(x, y) == 0 || is_inside(changed, x, y)) << shape.name;
                }
            }
            expect_same(part, expected, shape.name);
            if (HasFailure())
                FAIL() << "round " << round;
        }
    }
}

TEST(Shapes, NoPixelIsPaintedTwice)
{
    std::mt19937 random(2);
    for (int round = 0; round < 150; round++) {
        Paint paint = ink();
        set_joins(paint, round);
        for (const Shape& shape : random_shapes(random)) {
            Board copied(0xFF000000), inverted(0xFF000000), expected(0xFF000000);
            shape.draw(copied.Whole(), paint);
            paint.mode = B_OP_INVERT;
            shape.draw(inverted.Whole(), paint);
            paint.mode = B_OP_COPY;
            for (int y = 0; y < Board::kHeight; y++) {
                for (int x = 0; x < Board::kWidth; x++) {
                    if (copied.At(x, y) == kInk)
                        expected.At(x, y) = 0xFFFFFFFF;
                }
            }
            expect_same(inverted, expected, shape.name);
            if (HasFailure())
                FAIL() << "round " << round;
        }
    }
}

TEST(Lines, PixelsAreThoseOfTheRoundedLineFromBothEnds)
{
    std::mt19937 random(3);
    const auto in = [&](int64 low, int64 high) {
        return std::uniform_int_distribution<int64>(low, high)(random);
    };
    for (int round = 0; round < 3000; round++) {
        // From lines on the board to ones whose ends are as far away as floats can tell exactly.
        const int64 far = round % 3 == 0 ? 100 : round % 3 == 1 ? 5000 : int64(1) << 24;
        int64 x0 = in(-far, far), y0 = in(-far, far), x1 = in(-far, far), y1 = in(-far, far);
        if (round % 2 == 0) {  // through the board
            x1 = Board::kWidth - x0;
            y1 = Board::kHeight - y0;
        }
        Board board, reversed, expected;
        StrokeLine(board.Whole(), ink(), BPoint(x0, y0), BPoint(x1, y1));
        StrokeLine(reversed.Whole(), ink(), BPoint(x1, y1), BPoint(x0, y0));
        const bool steep = std::abs(y1 - y0) > std::abs(x1 - x0);
        if (steep ? y0 > y1 : x0 > x1) {
            std::swap(x0, x1);
            std::swap(y0, y1);
        }
        const int64 length = steep ? y1 - y0 : x1 - x0, rise = steep ? x1 - x0 : y1 - y0;
        const int64 start = steep ? y0 : x0;
        const int64 limit = steep ? Board::kHeight : Board::kWidth;
        for (int64 at = std::max<int64>(start, 0); at <= std::min(start + length, limit - 1);
             at++) {
            const int64 i = at - start;
            const __int128 value = __int128(2) * rise * i + length;
            int64 side = 0;
            if (length > 0) {
                side = int64(value / (2 * length));
                side -= value % (2 * length) < 0;
            }
            const int64 x = steep ? x0 + side : at, y = steep ? at : y0 + side;
            if (x >= 0 && x < Board::kWidth && y >= 0 && y < Board::kHeight)
                expected.At(int(x), int(y)) = kInk;
        }
        expect_same(board, expected, "forth");
        expect_same(reversed, expected, "back");
        if (HasFailure())
            FAIL() << x0 << "," << y0 << " - " << x1 << "," << y1;
    }
}

TEST(Lines, HugeOnesKeepTheirSlope)
{
    const float huge = 2147483648.0f;
    Board board, expected;
    StrokeLine(board.Whole(), ink(), BPoint(-huge, -huge), BPoint(huge, huge));
    for (int i = 0; i < Board::kHeight; i++)
        expected.At(i, i) = kInk;
    expect_same(board, expected, "diagonal");

    Board rows, wanted;
    StrokeLine(rows.Whole(), ink(), BPoint(-huge, 7), BPoint(huge, 7));
    StrokeLine(rows.Whole(), ink(), BPoint(9, -huge), BPoint(9, huge));
    for (int x = 0; x < Board::kWidth; x++)
        wanted.At(x, 7) = kInk;
    for (int y = 0; y < Board::kHeight; y++)
        wanted.At(9, y) = kInk;
    expect_same(rows, wanted, "row and column");
}

TEST(Shapes, EndlessAndSenselessNumbersDoNoHarm)
{
    const float values[] = {0,
                            -1,
                            5.5f,
                            1e9f,
                            -3e9f,
                            2147483648.0f,
                            -2147483648.0f,
                            std::numeric_limits<float>::max(),
                            std::numeric_limits<float>::lowest(),
                            std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity(),
                            std::numeric_limits<float>::quiet_NaN()};
    std::mt19937 random(4);
    const auto any = [&] { return values[random() % std::size(values)]; };
    const auto point = [&] { return BPoint(any(), any()); };
    const uint8 ops[] = {kPathMoveTo, kPathLineTo, kPathBezierTo, kPathClose};
    for (int round = 0; round < 4000; round++) {
        Board board;
        Paint paint;
        set_joins(paint, round);
        paint.penSize = round % 4 == 0 ? any() : 1;
        paint.mode = drawing_mode(round % 12);
        paint.patternPhase = point();
        if (round % 5 == 0)
            paint.pattern = B_MIXED_COLORS;
        const BAffineTransform turn(any(), any(), any(), any(), any(), any());
        if (round % 7 == 0)
            paint.transform = &turn;
        const Target target = board.Whole();
        const BPoint points[] = {point(), point(), point(), point(), point()};
        const BRect rect(any(), any(), any(), any());
        StrokeLine(target, paint, points[0], points[1]);
        StrokeRect(target, paint, rect);
        FillRect(target, paint, rect);
        InvertRect(target, rect);
        StrokeRoundRect(target, paint, rect, any(), any());
        FillRoundRect(target, paint, rect, any(), any());
        StrokeEllipse(target, paint, points[0], any(), any());
        FillEllipse(target, paint, points[0], any(), any());
        StrokeArc(target, paint, points[0], any(), any(), any(), any());
        FillArc(target, paint, points[0], any(), any(), any(), any());
        StrokePolygon(target, paint, points, 5, true);
        FillPolygon(target, paint, points, 5);
        StrokeBezier(target, paint, points);
        FillBezier(target, paint, points);
        StrokePath(target, paint, {ops, 4, points, 5});
        FillPath(target, paint, {ops, 4, points, 5});
        FillPath(target, paint, {ops, 4, points, 2});
        FillRegion(target, paint, BRegion(rect));
        CopyRect(target, rect, point());
        DrawBitmap(target, paint, board.surface, rect, BRect(any(), any(), any(), any()),
                   round % 2 == 0 ? B_FILTER_BITMAP_BILINEAR : 0);
    }
}

TEST(Shapes, EmptyArgumentsPaintNothing)
{
    Board board, untouched;
    const Target target = board.Whole();
    FillRect(target, ink(), BRect());
    StrokeRect(target, ink(), BRect(10, 10, 9, 20));
    FillPolygon(target, ink(), nullptr, 5);
    const BPoint points[3];
    FillPolygon(target, ink(), points, 0);
    StrokePolygon(target, ink(), points, -1, true);
    StrokeEllipse(target, ink(), BPoint(5, 5), -1, 3);
    FillMask(target, ink(), nullptr, 1, 0, 0, 5, 5);
    StrokeBezier(target, ink(), nullptr);
    const Target none;
    EXPECT_GT(FillRect(none, ink(), BRect(0, 0, 5, 5)).left,
              FillRect(none, ink(), BRect(0, 0, 5, 5)).right);
    expect_same(board, untouched, "nothing");
}

TEST(Ellipses, AreSymmetricAndTheOutlineIsTheRim)
{
    for (int rx = 0; rx <= 40; rx++) {
        for (int ry : {0, 1, 2, 3, rx, 17, 40}) {
            Board line, area;
            const BPoint center(48, 41);
            StrokeEllipse(line.Whole(), ink(), center, rx, ry);
            FillEllipse(area.Whole(), ink(), center, rx, ry);
            EXPECT_EQ(area.At(48 + rx, 41), kInk);
            EXPECT_EQ(area.At(48, 41 - ry), kInk);
            EXPECT_EQ(area.At(48 + rx + 1, 41), 0u);
            EXPECT_EQ(area.At(48, 41 + ry + 1), 0u);
            for (int dy = 0; dy <= 41; dy++) {
                for (int dx = 0; dx <= 47; dx++) {
                    const uint32 pixel = line.At(48 + dx, 41 + dy);
                    EXPECT_EQ(pixel, line.At(48 - dx, 41 + dy));
                    EXPECT_EQ(pixel, line.At(48 + dx, 41 - dy));
                    if (rx == ry && dx <= 41 && dy <= 41) {
                        EXPECT_EQ(area.At(48 + dx, 41 + dy), area.At(48 + dy, 41 + dx));
                    }
                    if (dx > 45 || dy > 40)
                        continue;
                    // A pixel of the area whose four neighbours belong to it is no rim, one with
                    // a missing upper or lower neighbour is.
                    const bool inside = area.At(48 + dx, 41 + dy) != 0;
                    const bool vertical = inside && (area.At(48 + dx, 40 + dy) == 0 ||
                                                     area.At(48 + dx, 42 + dy) == 0);
                    const bool horizontal = inside && (area.At(47 + dx, 41 + dy) == 0 ||
                                                       area.At(49 + dx, 41 + dy) == 0);
                    EXPECT_EQ(pixel != 0, vertical || horizontal)
                        << rx << " x " << ry << " at " << dx << ", " << dy;
                }
            }
            if (HasFailure())
                return;
        }
    }
}

TEST(Ellipses, StayCloseToTheTrueCurve)
{
    for (int r = 1; r <= 40; r++) {
        Board area;
        FillEllipse(area.Whole(), ink(), BPoint(48, 41), r, r);
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++)
                EXPECT_EQ(area.At(x, y) == kInk, std::hypot(x - 48, y - 41) <= r + 0.5);
        }
    }
}

TEST(Arcs, PartsMakeTheWholeAndStayInTheirSector)
{
    std::mt19937 random(5);
    for (int round = 0; round < 400; round++) {
        const float rx = 5 + random() % 35, ry = 5 + random() % 35;
        const float start = int(random() % 720) - 360, arc = 1 + random() % 359;
        const BPoint center(48, 41);
        for (bool filled : {false, true}) {
            const auto draw = filled ? FillArc : StrokeArc;
            Board first, second, both, whole;
            draw(first.Whole(), ink(), center, rx, ry, start, arc);
            draw(second.Whole(), ink(), center, rx, ry, start + arc, 360 - arc);
            draw(whole.Whole(), ink(), center, rx, ry, 0, 360);
            int shared = 0, total = 0;
            for (int y = 0; y < Board::kHeight; y++) {
                for (int x = 0; x < Board::kWidth; x++) {
                    both.At(x, y) = first.At(x, y) | second.At(x, y);
                    shared += first.At(x, y) != 0 && second.At(x, y) != 0;
                    total += whole.At(x, y) != 0;
                    if (first.At(x, y) == 0)
                        continue;
                    // As seen from the centre, the way to the ends' points on the ellipse.
                    const double pixel = turn_from(start, rx, ry, x - 48, 41 - y);
                    const double end = (start + arc) * M_PI / 180;
                    const double sweep =
                        turn_from(start, rx, ry, rx * std::cos(end), ry * std::sin(end));
                    const double reach = std::hypot(41 - y, x - 48);
                    const double slack = reach < 1 ? 7 : std::asin(0.51 / reach);
                    EXPECT_TRUE(pixel <= sweep + slack || pixel >= 2 * M_PI - slack)
                        << pixel << " of " << sweep;
                }
            }
            expect_same(both, whole, filled ? "pie" : "arc");
            EXPECT_LE(shared, filled ? 120 : 8) << "of " << total;
            if (HasFailure())
                FAIL() << rx << " x " << ry << " from " << start << " by " << arc;
        }
    }
}

TEST(Polygons, CoverTheirInsideAndTheirThinOutline)
{
    std::mt19937 random(6);
    for (int round = 0; round < 600; round++) {
        const int count = 3 + round % 9;
        std::vector<BPoint> points(count);
        for (BPoint& point : points)
            point = BPoint(int(random() % 120) - 10, int(random() % 100) - 10);
        Paint paint = ink();
        paint.fillRule = round % 2 == 0 ? B_NONZERO : B_EVEN_ODD;
        Board area, expected;
        FillPolygon(area.Whole(), paint, points.data(), count);
        StrokePolygon(expected.Whole(), paint, points.data(), count, true);
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++) {
                int winding = 0;
                for (int i = 0; i < count; i++) {
                    BPoint a = points[i], b = points[(i + 1) % count];
                    const int direction = a.y <= b.y ? 1 : -1;
                    if (direction < 0)
                        std::swap(a, b);
                    if (y < a.y || y >= b.y)
                        continue;
                    const int64 side =
                        int64(x - a.x) * int64(b.y - a.y) - int64(b.x - a.x) * int64(y - a.y);
                    winding += side > 0 ? direction : 0;
                }
                if (round % 2 == 0 ? winding != 0 : (winding & 1) != 0)
                    expected.At(x, y) = kInk;
            }
        }
        expect_same(area, expected, "polygon");
        if (HasFailure())
            FAIL() << "round " << round;
    }
}

// A million corners at random: rows that would have to be sorted anew take no hours.
TEST(Polygons, RowsThatNeighboursSayNothingOfAreSortedQuickly)
{
    std::mt19937 random(7);
    std::vector<BPoint> points(1'000'000);
    for (BPoint& point : points)
        point.Set(int16(random()), int16(random()));
    Board board;
    Clip clip(board, BRegion(BRect(0, 0, Board::kWidth - 1, 3)));
    const int32 count = int32(points.size());
    FillPolygon(clip.target, ink(), points.data(), count);
    EXPECT_GT(board.Count(kInk), Board::kWidth * 2);
    StrokePolygon(
        clip.target,
        [] {
            Paint wide = ink();
            wide.penSize = 3;
            return wide;
        }(),
        points.data(), count / 50, true);
}

TEST(WidePens, AxisAlignedLinesAndFramesCoverWholeRows)
{
    for (int size = 2; size <= 9; size++) {
        Paint paint = ink();
        paint.penSize = size;
        Board line, rows, frame, hollow;
        StrokeLine(line.Whole(), paint, BPoint(20, 40), BPoint(60, 40));
        const int top = 40 - size / 2;
        FillRect(rows.Whole(), ink(), BRect(20, top, 60, top + size - 1));
        expect_same(line, rows, "row");

        StrokeRect(frame.Whole(), paint, BRect(20, 20, 60, 60));
        const int from = 20 - size / 2, to = 60 - size / 2 + size - 1;
        FillRect(hollow.Whole(), ink(), BRect(from, from, to, to));
        Paint empty;
        empty.high = {0, 0, 0, 0};
        FillRect(hollow.Whole(), empty, BRect(from + size, from + size, to - size, to - size));
        expect_same(frame, hollow, "frame");
    }
}

TEST(WidePens, CoverWhatIsNearTheLine)
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; round++) {
        Paint paint = ink();
        paint.penSize = 3 + round % 20;
        paint.cap = B_ROUND_CAP;
        paint.join = B_ROUND_JOIN;
        const BPoint points[] = {BPoint(random() % 97, random() % 83),
                                 BPoint(random() % 97, random() % 83),
                                 BPoint(random() % 97, random() % 83)};
        Board board;
        StrokePolygon(board.Whole(), paint, points, 3, false);
        const auto distance = [](BPoint p, BPoint a, BPoint b) {
            const BPoint d = b - a;
            const float length = d.x * d.x + d.y * d.y;
            float t = length > 0 ? ((p.x - a.x) * d.x + (p.y - a.y) * d.y) / length : 0;
            t = std::clamp(t, 0.0f, 1.0f);
            return std::hypot(p.x - a.x - t * d.x, p.y - a.y - t * d.y);
        };
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++) {
                const BPoint p(x, y);
                const float near =
                    std::min(distance(p, points[0], points[1]), distance(p, points[1], points[2]));
                if (std::abs(near - paint.penSize / 2) > 0.25f) {
                    EXPECT_EQ(board.At(x, y) == kInk, near < paint.penSize / 2) << x << ", " << y;
                }
            }
        }
        if (HasFailure())
            FAIL() << "round " << round;
    }
}

TEST(Transforms, MoveAndStretchLikeNumbersDo)
{
    std::mt19937 random(8);
    BAffineTransform move;
    move.TranslateBy(7, -5);
    Paint moved = ink();
    moved.transform = &move;
    Board a, b;
    FillRect(a.Whole(), moved, BRect(10, 20, 40, 50));
    StrokeLine(a.Whole(), moved, BPoint(3, 9), BPoint(70, 31));
    FillRect(b.Whole(), ink(), BRect(17, 15, 47, 45));
    StrokeLine(b.Whole(), ink(), BPoint(10, 4), BPoint(77, 26));
    expect_same(a, b, "moved");

    BAffineTransform twice = BAffineTransform::AffineScaling(2);
    Paint large = ink();
    large.transform = &twice;
    Board c, d;
    FillRect(c.Whole(), large, BRect(5, 6, 14, 20));
    FillRect(d.Whole(), ink(), BRect(10, 12, 29, 41));
    expect_same(c, d, "twice as large");
}
