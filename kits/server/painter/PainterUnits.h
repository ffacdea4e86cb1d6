#ifndef SERVER_PAINTER_UNITS_H
#define SERVER_PAINTER_UNITS_H

// Drawing on surfaces with a scale: places, pens and transformations in units become those of the
// same surface in pixels, on which the plain functions draw.

#include <server/painter/Painter.h>

#include <cstring>

namespace server {

inline bool is_scaled(const Target& target)
{
    return target.surface != nullptr && target.surface->scale != 1;
}

// Nothing of the paint is a place or a length, as is most often so.
inline bool is_solid(const Paint& paint)
{
    return paint.gradient == nullptr && memcmp(&paint.pattern, &B_SOLID_HIGH, sizeof(pattern)) == 0;
}

// The target without its scale, and what is drawn in its pixels. Whole numbers are the middles of
// pixels and of units, as everywhere in the painter.
class PixelTarget {
public:
    explicit PixelTarget(const Target& target)
        : fSurface(*target.surface), fScale(fSurface.scale), fTarget(target)
    {
        fSurface.scale = 1;
        fTarget.surface = &fSurface;
    }
    PixelTarget(const PixelTarget&) = delete;

    operator const Target&() const { return fTarget; }
    float Scale() const { return fScale; }
    // A thin line's thickness.
    float Line() const;
    BPoint Point(const BPoint& units) const;
    // A place between pixels, 0 at the outer edge of the first one.
    BPoint Edge(const BPoint& units) const { return BPoint(units.x * fScale, units.y * fScale); }
    float First(float unit) const;
    // The pixels of the units from the first to the last one; whole numbers.
    BRect Box(const BRect& units) const;
    // The same edges where they are, between pixels too.
    BRect Edges(const BRect& units) const;
    // The radius of a curve around whose middle half a unit is added.
    float OuterRadius(float units) const;

private:
    Surface fSurface;
    const float fScale;
    Target fTarget;
};

// A paint whose numbers are pixels. Its transformation takes middles of pixels, or their edges.
class PixelPaint {
public:
    enum class Places { Middles, Edges };

    PixelPaint(const Paint& paint, const PixelTarget& target, Places places = Places::Middles);
    PixelPaint(const PixelPaint&) = delete;

    operator const Paint&() const { return fPaint; }
    const Paint* operator->() const { return &fPaint; }
    // For lines that are thin in units: how their corners are filled.
    PixelPaint& WithThinJoin(join_mode join);

private:
    Paint fPaint;
    bool fIsThin;
    BAffineTransform fTransform;
};

// As the functions of these names in Painter.h, for a target with a scale.
namespace scaled {

clipping_rect StrokeLine(const Target& target, const Paint& paint, BPoint from, BPoint to);
clipping_rect StrokeRect(const Target& target, const Paint& paint, BRect rect);
clipping_rect FillRect(const Target& target, const Paint& paint, BRect rect);
clipping_rect FillRegion(const Target& target, const Paint& paint, const BRegion& region);
clipping_rect StrokeRoundRect(const Target& target, const Paint& paint, BRect rect, float xRadius,
                              float yRadius);
clipping_rect FillRoundRect(const Target& target, const Paint& paint, BRect rect, float xRadius,
                            float yRadius);
clipping_rect StrokeEllipse(const Target& target, const Paint& paint, BPoint center, float xRadius,
                            float yRadius);
clipping_rect FillEllipse(const Target& target, const Paint& paint, BPoint center, float xRadius,
                          float yRadius);
clipping_rect StrokeArc(const Target& target, const Paint& paint, BPoint center, float xRadius,
                        float yRadius, float startAngle, float arcAngle);
clipping_rect FillArc(const Target& target, const Paint& paint, BPoint center, float xRadius,
                      float yRadius, float startAngle, float arcAngle);
clipping_rect StrokePolygon(const Target& target, const Paint& paint, const BPoint* points,
                            int32 count, bool closed);
clipping_rect FillPolygon(const Target& target, const Paint& paint, const BPoint* points,
                          int32 count);
clipping_rect StrokePath(const Target& target, const Paint& paint, const PathOps& path);
clipping_rect FillPath(const Target& target, const Paint& paint, const PathOps& path);
clipping_rect DrawBitmap(const Target& target, const Paint& paint, const Surface& source,
                         BRect from, BRect to, uint32 options);
clipping_rect CopyRect(const Target& target, BRect from, BPoint to);

}  // namespace scaled

}  // namespace server

#endif  // SERVER_PAINTER_UNITS_H
