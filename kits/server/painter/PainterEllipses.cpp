// Ellipses, arcs and rounded rectangles as rows of pixels. Both outline and filled shape come from
// one function: how far a row's end lies inside the box around the shape.

#include <server/painter/Painter.h>

#include "server/painter/PainterPaths.h"
#include "server/painter/PainterRaster.h"
#include "server/painter/PainterUnits.h"

namespace server {

namespace {

// A box whose corners are quarters of an ellipse; an ellipse is one whose corners meet.
class RoundBox {
public:
    RoundBox(int64 left, int64 top, int64 right, int64 bottom)
        : RoundBox(left, top, right, bottom, right - left, bottom - top)
    {
    }

    // Corners are cut from ellipses `spanX` and `spanY` (twice the radius) from pixel to pixel.
    RoundBox(int64 left, int64 top, int64 right, int64 bottom, int64 spanX, int64 spanY)
        : fLeft(left), fTop(top), fRight(right), fBottom(bottom)
    {
        fHalfX = std::min(spanX, right - left) / 2.0;
        fHalfY = std::min(spanY, bottom - top) / 2.0;
        // Pixels count whose centre lies in an ellipse through the outer edges of the box.
        fScale = (fHalfX + 0.5) / (fHalfY + 0.5);
        fLimit = (fHalfY + 0.5) * (fHalfY + 0.5);
    }

    clipping_rect Reach() const { return box_of(fLeft, fTop, fRight, fBottom); }

    // Calls run(y, left, right) for each row inside `box`.
    template <class Run>
    void FillRuns(const clipping_rect& box, Run run) const
    {
        const int64 last = std::min<int64>(fBottom, box.bottom);
        for (int64 y = std::max<int64>(fTop, box.top); y <= last; y++) {
            const int64 inset = _Inset(_Depth(y));
            run(int32(y), fLeft + inset, fRight - inset);
        }
    }

    // The same for the runs of the outline. Together they are the rim of the filled shape.
    template <class Run>
    void OutlineRuns(const clipping_rect& box, Run run) const
    {
        const int64 last = std::min<int64>(fBottom, box.bottom);
        int64 y = std::max<int64>(fTop, box.top);
        int64 known = -1, knownInset = 0;  // of the row before
        for (; y <= last; y++) {
            const int64 depth = _Depth(y);
            const int64 inset = depth == known ? knownInset : _Inset(depth);
            const int64 left = fLeft + inset, right = fRight - inset;
            if (depth == 0) {
                run(int32(y), left, right);
            } else {
                const int64 outer = depth - 1 == known ? knownInset : _Inset(depth - 1);
                const int64 length = std::max<int64>(outer - inset, 1);
                if (left + length > right - length) {
                    run(int32(y), left, right);
                } else {
                    run(int32(y), left, left + length - 1);
                    run(int32(y), right - length + 1, right);
                }
            }
            known = depth;
            knownInset = inset;
        }
    }

private:
    int64 _Depth(int64 y) const { return std::min(y - fTop, fBottom - y); }
    int64 _Inset(int64 depth) const
    {
        const double dy = fHalfY - double(depth);
        if (dy <= 0)
            return 0;
        const double reach = fScale * std::sqrt(fLimit - dy * dy);
        const double inset = fHalfX - reach;
        const int64 whole = int64(inset);
        return inset <= 0 ? 0 : whole + (double(whole) < inset);
    }

    int64 fLeft, fTop, fRight, fBottom;
    double fHalfX, fHalfY, fScale, fLimit;
};

RoundBox ellipse_box(const BPoint& center, double xRadius, double yRadius)
{
    return RoundBox(pixel_at(center.x - xRadius), pixel_at(center.y - yRadius),
                    pixel_at(center.x + xRadius), pixel_at(center.y + yRadius));
}

bool is_bad(const BPoint& center, float xRadius, float yRadius)
{
    return is_nan(center) || !(xRadius >= 0) || !(yRadius >= 0);
}

RoundBox round_box(const BRect& rect, float xRadius, float yRadius)
{
    const auto span = [](float radius) { return radius > 0 ? 2 * pixel_at(radius) : 0; };
    return RoundBox(pixel_at(rect.left), pixel_at(rect.top), pixel_at(rect.right),
                    pixel_at(rect.bottom), span(xRadius), span(yRadius));
}

// A sector around a centre: what lies within half a pixel of it belongs to it.
class Sector {
public:
    Sector(const BPoint& center, double xRadius, double yRadius, double start, double arc)
        : fCenterX(center.x), fCenterY(center.y), fWide(arc > 180)
    {
        // The rays go to the ellipse's points of these angles. More than half a turn is what its
        // complement leaves.
        const double from = fWide ? start + arc : start;
        const double sweep = fWide ? 360 - arc : arc;
        const DPoint first = _Ray(xRadius, yRadius, from);
        const DPoint last = _Ray(xRadius, yRadius, from + sweep);
        // The direction half-way between: without it a narrow sector had a twin on the far side.
        const bool narrow = first.x * last.x + first.y * last.y > 0;
        const DPoint middle = narrow ? DPoint{first.x + last.x, first.y + last.y}
                                     : DPoint{first.y - last.y, last.x - first.x};
        const double length = std::hypot(middle.x, middle.y);
        fPlanes[0] = {first.y, -first.x};
        fPlanes[1] = {-last.y, last.x};
        fPlanes[2] = {middle.x / length, middle.y / length};
    }

    // Calls run(left, right) for the parts of a row's run that lie inside.
    template <class Run>
    void Cut(int32 y, int64 left, int64 right, Run run) const
    {
        // For the complement the half pixel counts to the outside.
        double low = double(left), high = double(right);
        const double slack = fWide ? -0.5 : 0.5;
        const double dy = y - fCenterY;
        for (const DPoint& plane : fPlanes) {
            // Inside where plane.x * dx + plane.y * dy + slack >= 0.
            const double rest = plane.y * dy + slack;
            if (std::abs(plane.x) < 1e-9) {
                if (rest < 0)
                    high = low - 1;
            } else if (plane.x > 0) {
                low = std::max(low, fCenterX - rest / plane.x);
            } else {
                high = std::min(high, fCenterX - rest / plane.x);
            }
        }
        const bool none = !(std::ceil(low) <= std::floor(high));
        if (!fWide) {
            if (!none)
                run(int64(std::ceil(low)), int64(std::floor(high)));
        } else if (none) {
            run(left, right);
        } else {
            if (left < std::ceil(low))
                run(left, int64(std::ceil(low)) - 1);
            if (right > std::floor(high))
                run(int64(std::floor(high)) + 1, right);
        }
    }

private:
    static DPoint _Ray(double xRadius, double yRadius, double degrees)
    {
        const double angle = degrees * M_PI / 180;
        // A radius of zero would lose the direction.
        const double x = std::cos(angle) * std::max(xRadius, 1e-3);
        const double y = -std::sin(angle) * std::max(yRadius, 1e-3);
        const double length = std::hypot(x, y);
        return {x / length, y / length};
    }

    double fCenterX, fCenterY;
    bool fWide;
    DPoint fPlanes[3];
};

// A counter-clockwise arc of 0 to 360 degrees.
bool normalize(float* start, float* arc)
{
    if (!std::isfinite(*start) || !std::isfinite(*arc))
        return false;
    *start = std::fmod(*start, 360.0f);
    if (*arc < 0) {
        *arc = std::min(-*arc, 360.0f);
        *start -= *arc;
    }
    *arc = std::min(*arc, 360.0f);
    return true;
}

DPoint to_dpoint(const BPoint& point) { return {point.x, point.y}; }

std::vector<DPoint> round_rect_points(const BRect& rect, double xRadius, double yRadius)
{
    const double rx = std::clamp<double>(xRadius, 0, rect.Width() / 2);
    const double ry = std::clamp<double>(yRadius, 0, rect.Height() / 2);
    const DPoint centers[] = {{rect.right - rx, rect.top + ry},
                              {rect.left + rx, rect.top + ry},
                              {rect.left + rx, rect.bottom - ry},
                              {rect.right - rx, rect.bottom - ry}};
    std::vector<DPoint> points;
    for (int i = 0; i < 4; i++) {
        const std::vector<DPoint> corner = ellipse_points(centers[i], rx, ry, i * 90, 90);
        points.insert(points.end(), corner.begin(), corner.end());
    }
    return points;
}

clipping_rect stroke_curve(const Target& target, const Paint& paint, std::vector<DPoint> points,
                           bool closed)
{
    std::vector<Polyline> lines(1);
    lines[0] = {std::move(points), closed, true};
    return stroke_polylines(target, paint, lines);
}

clipping_rect fill_curve(const Target& target, const Paint& paint,
                         const std::vector<DPoint>& points)
{
    Outline outline;
    for (size_t i = 0; i < points.size(); i++)
        i == 0 ? outline.MoveTo(points[i]) : outline.LineTo(points[i]);
    return fill_corners(target, paint, outline);
}

template <class Runs>
clipping_rect draw_outline(const Target& target, const Paint& paint, const RoundBox& shape,
                           Runs each)
{
    return paint_shape(
        target, Brush(paint), shape.Reach(), [&](const auto& pen, const clipping_rect& box) {
            shape.OutlineRuns(
                box, [&](int32 y, int64 left, int64 right) { each(pen, box, y, left, right); });
        });
}

template <class Runs>
clipping_rect draw_filled(const Target& target, const Paint& paint, const RoundBox& shape,
                          Runs each)
{
    return paint_shape(
        target, Brush(paint), shape.Reach(), [&](const auto& pen, const clipping_rect& box) {
            shape.FillRuns(
                box, [&](int32 y, int64 left, int64 right) { each(pen, box, y, left, right); });
        });
}

const auto kWholeRun = [](const auto& pen, const clipping_rect& box, int32 y, int64 left,
                          int64 right) { draw_run(pen, box, y, left, right); };

auto cut_run(const Sector& sector)
{
    return [&sector](const auto& pen, const clipping_rect& box, int32 y, int64 left, int64 right) {
        sector.Cut(y, left, right, [&](int64 from, int64 to) { draw_run(pen, box, y, from, to); });
    };
}

}  // namespace

clipping_rect StrokeRoundRect(const Target& target, const Paint& paint, BRect rect, float xRadius,
                              float yRadius)
{
    if (is_scaled(target))
        return scaled::StrokeRoundRect(target, paint, rect, xRadius, yRadius);
    if (is_nan(rect) || !rect.IsValid())
        return kNoPixels;
    if (has_transform(paint) || !is_thin(paint))
        return stroke_curve(target, paint, round_rect_points(rect, xRadius, yRadius), true);
    return draw_outline(target, paint, round_box(rect, xRadius, yRadius), kWholeRun);
}

clipping_rect FillRoundRect(const Target& target, const Paint& paint, BRect rect, float xRadius,
                            float yRadius)
{
    if (is_scaled(target))
        return scaled::FillRoundRect(target, paint, rect, xRadius, yRadius);
    if (is_nan(rect) || !rect.IsValid())
        return kNoPixels;
    if (has_transform(paint))
        return fill_curve(target, paint, round_rect_points(rect, xRadius, yRadius));
    return draw_filled(target, paint, round_box(rect, xRadius, yRadius), kWholeRun);
}

clipping_rect StrokeEllipse(const Target& target, const Paint& paint, BPoint center, float xRadius,
                            float yRadius)
{
    if (is_scaled(target))
        return scaled::StrokeEllipse(target, paint, center, xRadius, yRadius);
    if (is_bad(center, xRadius, yRadius))
        return kNoPixels;
    if (has_transform(paint) || !is_thin(paint))
        return stroke_curve(target, paint,
                            ellipse_points(to_dpoint(center), xRadius, yRadius, 0, 360), true);
    return draw_outline(target, paint, ellipse_box(center, xRadius, yRadius), kWholeRun);
}

clipping_rect FillEllipse(const Target& target, const Paint& paint, BPoint center, float xRadius,
                          float yRadius)
{
    if (is_scaled(target))
        return scaled::FillEllipse(target, paint, center, xRadius, yRadius);
    if (is_bad(center, xRadius, yRadius))
        return kNoPixels;
    if (has_transform(paint))
        return fill_curve(target, paint,
                          ellipse_points(to_dpoint(center), xRadius, yRadius, 0, 360));
    return draw_filled(target, paint, ellipse_box(center, xRadius, yRadius), kWholeRun);
}

clipping_rect StrokeArc(const Target& target, const Paint& paint, BPoint center, float xRadius,
                        float yRadius, float startAngle, float arcAngle)
{
    if (is_scaled(target))
        return scaled::StrokeArc(target, paint, center, xRadius, yRadius, startAngle, arcAngle);
    if (is_bad(center, xRadius, yRadius) || !normalize(&startAngle, &arcAngle))
        return kNoPixels;
    if (arcAngle >= 360)
        return StrokeEllipse(target, paint, center, xRadius, yRadius);
    if (has_transform(paint) || !is_thin(paint))
        return stroke_curve(
            target, paint,
            ellipse_points(to_dpoint(center), xRadius, yRadius, startAngle, arcAngle), false);
    const Sector sector(center, xRadius, yRadius, startAngle, arcAngle);
    return draw_outline(target, paint, ellipse_box(center, xRadius, yRadius), cut_run(sector));
}

clipping_rect FillArc(const Target& target, const Paint& paint, BPoint center, float xRadius,
                      float yRadius, float startAngle, float arcAngle)
{
    if (is_scaled(target))
        return scaled::FillArc(target, paint, center, xRadius, yRadius, startAngle, arcAngle);
    if (is_bad(center, xRadius, yRadius) || !normalize(&startAngle, &arcAngle))
        return kNoPixels;
    if (arcAngle >= 360)
        return FillEllipse(target, paint, center, xRadius, yRadius);
    if (has_transform(paint)) {
        std::vector<DPoint> points =
            ellipse_points(to_dpoint(center), xRadius, yRadius, startAngle, arcAngle);
        points.push_back(to_dpoint(center));
        return fill_curve(target, paint, points);
    }
    const Sector sector(center, xRadius, yRadius, startAngle, arcAngle);
    return draw_filled(target, paint, ellipse_box(center, xRadius, yRadius), cut_run(sector));
}

}  // namespace server
