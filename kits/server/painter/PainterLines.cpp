// Thin lines: Bresenham's pixels in closed form, so that a clipped line has exactly the pixels
// that the whole one would have there.

#include <server/painter/Painter.h>

#include "server/painter/PainterLines.h"
#include "server/painter/PainterPaths.h"
#include "server/painter/PainterUnits.h"

namespace server {

clipping_rect StrokeLine(const Target& target, const Paint& paint, BPoint from, BPoint to)
{
    if (is_scaled(target))
        return scaled::StrokeLine(target, paint, from, to);
    if (is_nan(from) || is_nan(to))
        return kNoPixels;
    if (has_transform(paint) || !is_thin(paint)) {
        const BPoint points[] = {from, to};
        return StrokePolygon(target, paint, points, 2, false);
    }
    const ThinLine line(pixel_at(from.x), pixel_at(from.y), pixel_at(to.x), pixel_at(to.y));
    return paint_shape(target, Brush(paint), line.Reach(),
                       [&](const auto& pen, const clipping_rect& box) { line.Draw(pen, box); });
}

}  // namespace server
