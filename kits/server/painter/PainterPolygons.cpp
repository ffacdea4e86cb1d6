// Polygons, open and closed, thin and filled.

#include <server/painter/Painter.h>

#include "server/painter/PainterPaths.h"
#include "server/painter/PainterScan.h"
#include "server/painter/PainterUnits.h"

#include <new>

namespace server {

namespace {

const int32 kFewSides = 16;  // on the stack

bool all_finite(const BPoint* points, int32 count)
{
    float sum = 0;
    for (int32 i = 0; i < count; i++)
        sum += points[i].x * 0 + points[i].y * 0;
    return sum == 0;
}

// The sides of a polygon while they are gathered and drawn.
class Sides {
public:
    explicit Sides(int32 capacity)
        : fSides(capacity), fOrder(capacity), fActive(capacity), fRuns(capacity * 2)
    {
    }
    bool Valid() const
    {
        return fSides.Valid() && fOrder.Valid() && fActive.Valid() && fRuns.Valid();
    }

    void Add(int64 x0, int64 y0, int64 x1, int64 y1)
    {
        Side side(x0, y0, x1, y1);
        fLeft = std::min(fLeft, side.Left());
        fRight = std::max(fRight, side.Right());
        fTop = std::min(fTop, side.Top());
        fBottom = std::max(fBottom, side.Bottom());
        fSides[fCount++] = side;
    }
    clipping_rect Reach() const { return box_of(fLeft, fTop, fRight, fBottom); }

    clipping_rect Draw(const Target& target, const Paint& paint)
    {
        _Sort();
        return paint_shape(target, Brush(paint), Reach(),
                           [this, &paint](const auto& pen, const clipping_rect& box) {
                               PolygonScan(pen, box, fSides.Begin(), fOrder.Begin(), fCount,
                                           paint.fillRule == B_EVEN_ODD, fActive.Begin(),
                                           fRuns.Begin())
                                   .Draw();
                           });
    }

private:
    void _Sort()
    {
        for (int32 i = 0; i < fCount; i++)
            fOrder[i] = i;
        const auto higher = [this](int32 a, int32 b) { return fSides[a].Top() < fSides[b].Top(); };
        if (fCount > kFewSides) {
            std::sort(fOrder.Begin(), fOrder.Begin() + fCount, higher);
            return;
        }
        for (int32 i = 1; i < fCount; i++) {
            int32 k = i;
            for (; k > 0 && higher(i, fOrder[k - 1]); k--)
                fOrder[k] = fOrder[k - 1];
            fOrder[k] = i;
        }
    }

    SmallArray<Side, kFewSides> fSides;
    SmallArray<int32, kFewSides> fOrder, fActive;
    SmallArray<Run, kFewSides * 2> fRuns;
    int32 fCount = 0;
    int64 fLeft = INT64_MAX, fTop = INT64_MAX, fRight = INT64_MIN, fBottom = INT64_MIN;
};

const int32 kMostPoints = 1 << 24;

// Adds the closed polygon of points given by at(i).
template <class At>
void add_polygon(Sides& sides, int32 count, At at)
{
    const auto last = at(count - 1);
    int64 x = pixel_at(last.x), y = pixel_at(last.y);
    for (int32 i = 0; i < count; i++) {
        const auto point = at(i);
        const int64 nextX = pixel_at(point.x), nextY = pixel_at(point.y);
        sides.Add(x, y, nextX, nextY);
        x = nextX;
        y = nextY;
    }
}

}  // namespace

clipping_rect FillPolygon(const Target& target, const Paint& paint, const BPoint* points,
                          int32 count)
{
    if (is_scaled(target))
        return scaled::FillPolygon(target, paint, points, count);
    if (points == nullptr || count < 1 || count > kMostPoints || !all_finite(points, count))
        return kNoPixels;
    if (has_transform(paint) || paint.unit != 1) {
        Outline outline;
        for (int32 i = 0; i < count; i++) {
            const DPoint point = {points[i].x, points[i].y};
            i == 0 ? outline.MoveTo(point) : outline.LineTo(point);
        }
        return fill_corners(target, paint, outline);
    }
    Sides sides(count);
    if (!sides.Valid())
        return kNoPixels;
    add_polygon(sides, count, [points](int32 i) { return points[i]; });
    return sides.Draw(target, paint);
}

clipping_rect fill_corners(const Target& target, const Paint& paint, const Outline& outline)
{
    if (paint.unit != 1)
        return fill_with_rim(target, paint, outline);
    int64 total = 0;
    for (int32 part = 0; part < outline.CountParts(); part++) {
        int32 count;
        outline.Part(part, &count);
        total += count;
    }
    if (total < 1 || total > kMostPoints)
        return kNoPixels;
    Sides sides{int32(total)};
    if (!sides.Valid())
        return kNoPixels;
    for (int32 part = 0; part < outline.CountParts(); part++) {
        int32 count;
        const DPoint* points = outline.Part(part, &count);
        add_polygon(sides, count,
                    [&](int32 i) { return transformed(paint, points[i].x, points[i].y); });
    }
    return sides.Draw(target, paint);
}

clipping_rect StrokePolygon(const Target& target, const Paint& paint, const BPoint* points,
                            int32 count, bool closed)
{
    if (is_scaled(target))
        return scaled::StrokePolygon(target, paint, points, count, closed);
    if (points == nullptr || count < 1 || count > kMostPoints || !all_finite(points, count))
        return kNoPixels;
    if (has_transform(paint) || !is_thin(paint)) {
        std::vector<Polyline> lines(1);
        for (int32 i = 0; i < count; i++)
            lines[0].points.push_back({points[i].x, points[i].y});
        lines[0].closed = closed && count > 2;
        return stroke_polylines(target, paint, lines);
    }
    const auto line = [points](int32 from, int32 to) {
        return ThinLine(pixel_at(points[from].x), pixel_at(points[from].y), pixel_at(points[to].x),
                        pixel_at(points[to].y));
    };
    clipping_rect reach = line(0, 0).Reach();
    for (int32 i = 1; i < count; i++)
        reach = unite(reach, line(i, i).Reach());
    const auto draw = [&](const auto& pen, const clipping_rect& box) {
        for (int32 i = 1; i < count; i++)
            line(i - 1, i).Draw(pen, box);
        if (closed || count == 1)
            line(count - 1, 0).Draw(pen, box);
    };
    return paint_parts(target, Brush(paint), reach, draw);
}

}  // namespace server
