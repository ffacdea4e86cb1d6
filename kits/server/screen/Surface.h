#ifndef SERVER_SURFACE_H
#define SERVER_SURFACE_H

#include <GraphicsDefs.h>
#include <Region.h>
#include <SupportDefs.h>

#include <algorithm>
#include <cmath>

namespace server {

// Pixels somebody owns: a window's back buffer or the bits of a BBitmap. It owns nothing itself;
// whoever holds the owner's lock may read and write the pixels.
//
// Coordinates count units, of which each is `scale` pixels wide and high. Where a unit ends the
// next one begins, on a whole pixel: between whole scales some have a pixel more than others.
struct Surface {
    uint8* bits = nullptr;
    int32 bytesPerRow = 0;
    int32 width = 0;   // pixels
    int32 height = 0;  // rows
    color_space space = B_RGBA32;
    float scale = 1;
};

constexpr float kLargestScale = 4;

// The nearest scale that a surface can have; 1 for what is no number. A display's scale never
// changes the size of anything in units.
inline float sensible_scale(double scale)
{
    return scale > 1 ? float(std::min(scale, double(kLargestScale))) : 1;
}

// The pixel that begins nearest to a place, which may be a part of a unit. Halves go upwards, with
// a little that makes up for what floats have lost.
inline double nearest_edge(double unit, float scale)
{
    return std::floor(unit * double(scale) + 0.5 + 1.0 / 512);
}

// Where a unit's first pixel is.
inline int32 first_pixel(int32 unit, float scale)
{
    const int32 limit = 1 << 30;
    if (scale == 1)
        return unit;
    if (const int32 whole = int32(scale); float(whole) == scale)
        return int32(std::clamp<int64>(int64(unit) * whole, -limit, limit));
    return int32(std::clamp<double>(nearest_edge(unit, scale), -limit, limit));
}

// The pixels of a box of units.
inline clipping_rect pixels_of(const clipping_rect& units, float scale)
{
    if (scale == 1)
        return units;
    auto after = [=](int32 last) { return first_pixel(last < INT32_MAX ? last + 1 : last, scale); };
    return {first_pixel(units.left, scale), first_pixel(units.top, scale), after(units.right) - 1,
            after(units.bottom) - 1};
}

}  // namespace server

#endif  // SERVER_SURFACE_H
