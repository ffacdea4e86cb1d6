#ifndef SERVER_PAINTER_H
#define SERVER_PAINTER_H

// Drawing into memory. Every function runs on the calling thread and touches nothing but the
// surface, so it may be used by whoever holds the lock of the surface's owner. Coordinates are
// those of the surface (the view has already applied origin, scale and its place in the window).
// Shapes are not anti-aliased; rectangles include their right and bottom pixels. Coordinates are
// rounded to whole pixels, halves upwards; NaN draws nothing, and any other number is fine. A
// function paints no pixel twice, and exactly those of its unclipped picture that the clip holds.
//
// On a surface with a scale coordinates, pens and patterns count its units, while the clipping and
// the boxes that come back are pixels. Rectangles, lines along an axis and the places of bitmaps
// cover the units that they would cover without the scale, to the pixel; other lines have the
// nearest whole number of pixels as their thickness, and curves and text are as smooth as the
// pixels allow.
//
// Modes: B_OP_OVER, ERASE, INVERT and SELECT paint only where the pattern has the high colour, and
// where a bitmap is not transparent. ADD, SUBTRACT, BLEND, MIN and MAX work on each component; the
// greater alpha stays. B_OP_COPY writes a colour's alpha as it is.

#include <AffineTransform.h>
#include <Point.h>
#include <Rect.h>
#include <Region.h>
#include <InterfaceDefs.h>
#include <Shape.h>

#include <server/screen/Surface.h>

class BGradient;

namespace server {

// The part of a drawing state that reaches the pixels.
struct Paint {
    rgb_color high = {0, 0, 0, 255};
    rgb_color low = {255, 255, 255, 255};
    ::pattern pattern = B_SOLID_HIGH;
    drawing_mode mode = B_OP_COPY;
    source_alpha alphaSource = B_PIXEL_ALPHA;
    alpha_function alphaFunction = B_ALPHA_OVERLAY;
    float penSize = 1.0f;  // pixels; 0 and 1 are both the thinnest line
    cap_mode cap = B_BUTT_CAP;
    join_mode join = B_MITER_JOIN;
    float miterLimit = B_DEFAULT_MITER_LIMIT;
    int32 fillRule = B_NONZERO;
    const BGradient* gradient = nullptr;          // instead of the pattern; in surface coordinates
    const BAffineTransform* transform = nullptr;  // null stands for the identity
    BPoint patternPhase;  // where the 8 x 8 pattern starts, surface coordinates
    float unit = 1;       // pixels; the painter's own, for surfaces with a scale
};

// A surface and the part of it that may be written: `count` disjoint rectangles inside `bounds`,
// all of them inside the surface.
struct Target {
    Surface* surface = nullptr;
    const clipping_rect* clip = nullptr;
    int32 count = 0;
    clipping_rect bounds = {0, 0, -1, -1};
};

// Every function returns the box of the pixels it may have changed, empty (right < left) if none.
clipping_rect StrokeLine(const Target& target, const Paint& paint, BPoint from, BPoint to);
clipping_rect StrokeRect(const Target& target, const Paint& paint, BRect rect);
clipping_rect FillRect(const Target& target, const Paint& paint, BRect rect);
clipping_rect FillRegion(const Target& target, const Paint& paint, const BRegion& region);
clipping_rect InvertRect(const Target& target, BRect rect);
clipping_rect StrokeRoundRect(const Target& target, const Paint& paint, BRect rect, float xRadius,
                              float yRadius);
clipping_rect FillRoundRect(const Target& target, const Paint& paint, BRect rect, float xRadius,
                            float yRadius);
clipping_rect StrokeEllipse(const Target& target, const Paint& paint, BPoint center, float xRadius,
                            float yRadius);
clipping_rect FillEllipse(const Target& target, const Paint& paint, BPoint center, float xRadius,
                          float yRadius);
// Angles in degrees, counter-clockwise from three o'clock. A filled arc is a pie.
clipping_rect StrokeArc(const Target& target, const Paint& paint, BPoint center, float xRadius,
                        float yRadius, float startAngle, float arcAngle);
clipping_rect FillArc(const Target& target, const Paint& paint, BPoint center, float xRadius,
                      float yRadius, float startAngle, float arcAngle);
clipping_rect StrokePolygon(const Target& target, const Paint& paint, const BPoint* points,
                            int32 count, bool closed);
// The pixels inside, by the paint's fill rule, and those of the thin closed outline.
clipping_rect FillPolygon(const Target& target, const Paint& paint, const BPoint* points,
                          int32 count);
clipping_rect StrokeBezier(const Target& target, const Paint& paint, const BPoint points[4]);
clipping_rect FillBezier(const Target& target, const Paint& paint, const BPoint points[4]);

// A path as BShape holds it, already moved to `origin`.
struct PathOps {
    const uint8* ops = nullptr;  // one PathOp each
    int32 opCount = 0;
    const BPoint* points = nullptr;
    int32 pointCount = 0;
};
enum PathOp : uint8 { kPathMoveTo, kPathLineTo, kPathBezierTo, kPathClose };  // 1, 1, 3, 0 points
clipping_rect StrokePath(const Target& target, const Paint& paint, const PathOps& path);
clipping_rect FillPath(const Target& target, const Paint& paint, const PathOps& path);

// Copies `source` (any colour space) from `from` to `to`, scaling when the sizes differ (with
// B_FILTER_BITMAP_BILINEAR in `options` smoothly). Follows the paint's drawing mode; in
// B_OP_COPY alpha is copied along, in B_OP_OVER and B_OP_ALPHA transparent pixels are left out
// or blended.
clipping_rect DrawBitmap(const Target& target, const Paint& paint, const Surface& source,
                         BRect from, BRect to, uint32 options);

// Moves pixels inside one surface, right also when the rectangles overlap. `from` and `to` have
// the same size; what lies outside the surface or clip stays as it is.
clipping_rect CopyRect(const Target& target, BRect from, BPoint to);

// Lays the paint through an 8-bit coverage mask whose left top pixel falls on (x, y): text.
clipping_rect FillMask(const Target& target, const Paint& paint, const uint8* coverage,
                       int32 bytesPerRow, int32 x, int32 y, int32 width, int32 height);

// Pixel formats. `count` pixels are turned from one colour space into another; both are rows.
// Returns B_BAD_VALUE for a space that no bitmap can have.
status_t ConvertPixels(const void* source, color_space sourceSpace, void* target,
                       color_space targetSpace, int32 count);
// Bytes of one row of `width` pixels without padding, 0 for an unsupported space.
int32 BytesPerRow(color_space space, int32 width);

// The 256-colour system palette.
const rgb_color* SystemPalette();
uint8 PaletteIndexFor(uint8 red, uint8 green, uint8 blue, uint8 alpha);
const color_map* SystemColorMap();

}  // namespace server

#endif  // SERVER_PAINTER_H
