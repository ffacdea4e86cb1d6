#ifndef SERVER_PAINTER_GRADIENT_H
#define SERVER_PAINTER_GRADIENT_H

#include <SupportDefs.h>

class BGradient;

namespace server {

// A gradient's colours, and where on the surface each belongs.
struct GradientColors {
    // Its places are units, each of `unit` pixels.
    GradientColors(const BGradient& gradient, float unit);
    // The colours of `count` pixels of row `y`.
    void Row(uint32* pixels, int32 x, int32 y, int32 count) const;

    static const int32 kSteps = 1024;
    uint32 table[kSteps + 1];
    int32 type;
    // The point (x, y) lies at (x - originX) * acrossX + (y - originY) * acrossY along a linear
    // gradient, or at that distance in the units of the others' radius.
    double originX, originY;
    double acrossX = 0, acrossY = 0;
    double focusX = 0, focusY = 0;  // relative to the origin, in radii
    double angle = 0;               // where a conic one starts, radians
};

}  // namespace server

#endif  // SERVER_PAINTER_GRADIENT_H
