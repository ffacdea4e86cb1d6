// From units to pixels. What lies along the axes is cut at the edges of units, so that neighbours
// meet; what does not is placed by the middles of units.

#include "server/painter/PainterUnits.h"

#include <InterfaceDefs.h>

#include <interface/geometry/RegionAccess.h>

#include <cmath>
#include <vector>

#include "server/painter/PainterPaths.h"
#include "server/painter/PainterRaster.h"

namespace server {

float PixelTarget::Line() const { return std::max(1.0f, std::floor(fScale + 0.5f)); }

BPoint PixelTarget::Point(const BPoint& units) const
{
    return BPoint((units.x + 0.5f) * fScale - 0.5f, (units.y + 0.5f) * fScale - 0.5f);
}

float PixelTarget::First(float unit) const { return float(nearest_edge(unit, fScale)); }

BRect PixelTarget::Box(const BRect& units) const
{
    return BRect(First(units.left), First(units.top), First(units.right + 1) - 1,
                 First(units.bottom + 1) - 1);
}

BRect PixelTarget::Edges(const BRect& units) const
{
    return BRect(units.left * fScale, units.top * fScale, (units.right + 1) * fScale - 1,
                 (units.bottom + 1) * fScale - 1);
}

float PixelTarget::OuterRadius(float units) const
{
    return units >= 0 ? (units + 0.5f) * fScale - 0.5f : units;
}

PixelPaint::PixelPaint(const Paint& paint, const PixelTarget& target, Places places)
    : fPaint(paint), fIsThin(is_thin(paint))
{
    const double scale = target.Scale();
    fPaint.unit = target.Scale();
    fPaint.penSize = fIsThin ? target.Line() : paint.penSize * target.Scale();
    if (fIsThin) {
        fPaint.cap = B_BUTT_CAP;
        fPaint.join = B_SQUARE_JOIN;
    }
    if (!has_transform(paint))
        return;
    const double shift = places == Places::Middles ? (scale - 1) / 2 : 0;
    const BAffineTransform& t = *paint.transform;
    // Back to units, transformed, and to pixels again.
    const auto place = [&](double x, double y) {
        double unitX = (x - shift) / scale, unitY = (y - shift) / scale;
        t.Apply(&unitX, &unitY);
        return DPoint{unitX * scale + shift, unitY * scale + shift};
    };
    const DPoint origin = place(0, 0);
    fTransform = BAffineTransform(t.sx, t.shy, t.shx, t.sy, origin.x, origin.y);
    fPaint.transform = &fTransform;
}

PixelPaint& PixelPaint::WithThinJoin(join_mode join)
{
    if (fIsThin)
        fPaint.join = join;
    return *this;
}

namespace scaled {

namespace {

// The units of a frame: those inside `outer` and not inside `inner`, each once.
clipping_rect fill_frame(const Target& target, const Paint& paint, const BRect& outer,
                         const BRect& inner)
{
    if (!(inner.left <= inner.right && inner.top <= inner.bottom))
        return server::FillRect(target, paint, outer);
    clipping_rect changed = kNoPixels;
    for (const BRect& side : {BRect(outer.left, outer.top, outer.right, inner.top - 1),
                              BRect(outer.left, inner.bottom + 1, outer.right, outer.bottom),
                              BRect(outer.left, inner.top, inner.left - 1, inner.bottom),
                              BRect(inner.right + 1, inner.top, outer.right, inner.bottom)})
        changed = unite(changed, server::FillRect(target, paint, side));
    return changed;
}

// Mapped points.
std::vector<BPoint> in_pixels(const PixelTarget& target, const BPoint* points, int32 count)
{
    std::vector<BPoint> result;
    result.reserve(size_t(count));
    for (int32 i = 0; i < count; i++)
        result.push_back(target.Point(points[i]));
    return result;
}

bool has_points(const BPoint* points, int32 count)
{
    const int32 kMost = 1 << 24;
    return points != nullptr && count > 0 && count <= kMost;
}

// The middle of a thin line around a shape: its outer edge is that of the filled shape.
float thin_radius(const PixelTarget& pixels, float units)
{
    return std::max(0.0f, (units + 0.5f) * pixels.Scale() - pixels.Line() / 2);
}

float pen_radius(const Paint& paint, const PixelTarget& pixels, float units)
{
    return is_thin(paint) ? thin_radius(pixels, units) : units * pixels.Scale();
}

}  // namespace

clipping_rect StrokeLine(const Target& target, const Paint& paint, BPoint from, BPoint to)
{
    if (is_nan(from) || is_nan(to))
        return kNoPixels;
    if (is_thin(paint) && !has_transform(paint) && (from.x == to.x || from.y == to.y)) {
        return server::FillRect(target, paint,
                                BRect(std::min(from.x, to.x), std::min(from.y, to.y),
                                      std::max(from.x, to.x), std::max(from.y, to.y)));
    }
    const PixelTarget pixels(target);
    return server::StrokeLine(pixels, PixelPaint(paint, pixels), pixels.Point(from),
                              pixels.Point(to));
}

clipping_rect StrokeRect(const Target& target, const Paint& paint, BRect rect)
{
    if (is_nan(rect) || !rect.IsValid())
        return kNoPixels;
    const bool thin = is_thin(paint);
    if (has_transform(paint) || (!thin && paint.join != B_MITER_JOIN)) {
        const BPoint corners[] = {rect.LeftTop(), rect.RightTop(), rect.RightBottom(),
                                  rect.LeftBottom()};
        return server::StrokePolygon(target, paint, corners, 4, true);
    }
    if (thin)
        return fill_frame(target, paint, rect, rect.InsetByCopy(1, 1));
    const PenReach pen(paint.penSize);
    const float before = float(pen.before), after = float(pen.after);
    return fill_frame(
        target, paint,
        BRect(rect.left - before, rect.top - before, rect.right + after, rect.bottom + after),
        BRect(rect.left + after + 1, rect.top + after + 1, rect.right - before - 1,
              rect.bottom - before - 1));
}

clipping_rect FillRect(const Target& target, const Paint& paint, BRect rect)
{
    if (is_nan(rect))
        return kNoPixels;
    const PixelTarget pixels(target);
    if (has_transform(paint))
        return fill_transformed_rect(pixels, PixelPaint(paint, pixels, PixelPaint::Places::Edges),
                                     pixels.Edges(rect));
    const BRect box = pixels.Box(rect);
    if (!box.IsValid())
        return kNoPixels;
    if (is_solid(paint))
        return server::FillRect(pixels, paint, box);
    return server::FillRect(pixels, PixelPaint(paint, pixels), box);
}

clipping_rect FillRegion(const Target& target, const Paint& paint, const BRegion& region)
{
    clipping_rect changed = kNoPixels;
    const clipping_rect* rects = BPrivate::RegionAccess::Rects(region);
    for (int32 i = 0; i < region.CountRects(); i++) {
        const clipping_rect& rect = rects[i];
        changed = unite(
            changed,
            server::FillRect(target, paint, BRect(rect.left, rect.top, rect.right, rect.bottom)));
    }
    return changed;
}

clipping_rect StrokeRoundRect(const Target& target, const Paint& paint, BRect rect, float xRadius,
                              float yRadius)
{
    if (is_nan(rect) || !rect.IsValid())
        return kNoPixels;
    if (!(xRadius > 0) || !(yRadius > 0))
        return server::StrokeRect(target, paint, rect);
    const PixelTarget pixels(target);
    const PixelPaint pen(paint, pixels);
    BRect middle(pixels.Point(rect.LeftTop()), pixels.Point(rect.RightBottom()));
    if (is_thin(paint) && !has_transform(paint)) {
        const float inset = (pixels.Line() - 1) / 2;
        middle = pixels.Box(rect).InsetByCopy(inset, inset);
    }
    return server::StrokeRoundRect(pixels, pen, middle, pen_radius(paint, pixels, xRadius),
                                   pen_radius(paint, pixels, yRadius));
}

clipping_rect FillRoundRect(const Target& target, const Paint& paint, BRect rect, float xRadius,
                            float yRadius)
{
    if (is_nan(rect) || !rect.IsValid())
        return kNoPixels;
    if (!(xRadius > 0) || !(yRadius > 0))
        return server::FillRect(target, paint, rect);
    const PixelTarget pixels(target);
    const PixelPaint brush(paint, pixels);
    if (has_transform(paint)) {
        return server::FillRoundRect(
            pixels, brush, BRect(pixels.Point(rect.LeftTop()), pixels.Point(rect.RightBottom())),
            xRadius * pixels.Scale(), yRadius * pixels.Scale());
    }
    return server::FillRoundRect(pixels, brush, pixels.Box(rect), pixels.OuterRadius(xRadius),
                                 pixels.OuterRadius(yRadius));
}

clipping_rect StrokeEllipse(const Target& target, const Paint& paint, BPoint center, float xRadius,
                            float yRadius)
{
    const PixelTarget pixels(target);
    if (!(xRadius >= 0) || !(yRadius >= 0))
        return kNoPixels;
    return server::StrokeEllipse(pixels, PixelPaint(paint, pixels), pixels.Point(center),
                                 pen_radius(paint, pixels, xRadius),
                                 pen_radius(paint, pixels, yRadius));
}

clipping_rect FillEllipse(const Target& target, const Paint& paint, BPoint center, float xRadius,
                          float yRadius)
{
    const PixelTarget pixels(target);
    const bool rims = has_transform(paint);  // which add the half unit
    return server::FillEllipse(pixels, PixelPaint(paint, pixels), pixels.Point(center),
                               rims ? xRadius * pixels.Scale() : pixels.OuterRadius(xRadius),
                               rims ? yRadius * pixels.Scale() : pixels.OuterRadius(yRadius));
}

clipping_rect StrokeArc(const Target& target, const Paint& paint, BPoint center, float xRadius,
                        float yRadius, float startAngle, float arcAngle)
{
    const PixelTarget pixels(target);
    if (!(xRadius >= 0) || !(yRadius >= 0))
        return kNoPixels;
    return server::StrokeArc(pixels, PixelPaint(paint, pixels), pixels.Point(center),
                             pen_radius(paint, pixels, xRadius), pen_radius(paint, pixels, yRadius),
                             startAngle, arcAngle);
}

clipping_rect FillArc(const Target& target, const Paint& paint, BPoint center, float xRadius,
                      float yRadius, float startAngle, float arcAngle)
{
    const PixelTarget pixels(target);
    const bool rims = has_transform(paint);
    return server::FillArc(pixels, PixelPaint(paint, pixels), pixels.Point(center),
                           rims ? xRadius * pixels.Scale() : pixels.OuterRadius(xRadius),
                           rims ? yRadius * pixels.Scale() : pixels.OuterRadius(yRadius),
                           startAngle, arcAngle);
}

clipping_rect StrokePolygon(const Target& target, const Paint& paint, const BPoint* points,
                            int32 count, bool closed)
{
    if (!has_points(points, count))
        return kNoPixels;
    const PixelTarget pixels(target);
    return server::StrokePolygon(pixels, PixelPaint(paint, pixels),
                                 in_pixels(pixels, points, count).data(), count, closed);
}

clipping_rect FillPolygon(const Target& target, const Paint& paint, const BPoint* points,
                          int32 count)
{
    if (!has_points(points, count))
        return kNoPixels;
    const PixelTarget pixels(target);
    return server::FillPolygon(pixels, PixelPaint(paint, pixels),
                               in_pixels(pixels, points, count).data(), count);
}

clipping_rect StrokePath(const Target& target, const Paint& paint, const PathOps& path)
{
    if (path.points == nullptr)
        return kNoPixels;
    const PixelTarget pixels(target);
    const std::vector<BPoint> points = in_pixels(pixels, path.points, path.pointCount);
    return server::StrokePath(pixels, PixelPaint(paint, pixels).WithThinJoin(B_ROUND_JOIN),
                              {path.ops, path.opCount, points.data(), path.pointCount});
}

clipping_rect FillPath(const Target& target, const Paint& paint, const PathOps& path)
{
    if (path.points == nullptr)
        return kNoPixels;
    const PixelTarget pixels(target);
    const std::vector<BPoint> points = in_pixels(pixels, path.points, path.pointCount);
    return server::FillPath(pixels, PixelPaint(paint, pixels),
                            {path.ops, path.opCount, points.data(), path.pointCount});
}

clipping_rect DrawBitmap(const Target& target, const Paint& paint, const Surface& source,
                         BRect from, BRect to, uint32 options)
{
    if (is_nan(to) || !to.IsValid())
        return kNoPixels;
    const PixelTarget pixels(target);
    // Some pixels would be repeated once more than others.
    if (pixels.Scale() != std::floor(pixels.Scale()))
        options |= B_FILTER_BITMAP_BILINEAR;
    const BRect place = has_transform(paint) ? pixels.Edges(to) : pixels.Box(to);
    return server::DrawBitmap(pixels, PixelPaint(paint, pixels, PixelPaint::Places::Edges), source,
                              from, place, options);
}

clipping_rect CopyRect(const Target& target, BRect from, BPoint to)
{
    if (is_nan(from) || !from.IsValid() || is_nan(to))
        return kNoPixels;
    const PixelTarget pixels(target);
    return server::CopyRect(pixels, pixels.Box(from),
                            BPoint(pixels.First(to.x), pixels.First(to.y)));
}

}  // namespace scaled

}  // namespace server
