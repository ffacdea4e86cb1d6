#ifndef _GRADIENT_RADIAL_H
#define _GRADIENT_RADIAL_H

#include <Gradient.h>
#include <Point.h>

// From a centre outwards to a circle.
class BGradientRadial : public BGradient {
public:
    BGradientRadial() : BGradient(TYPE_RADIAL) {}
    BGradientRadial(const BPoint& center, float radius)
        : BGradientRadial(center.x, center.y, radius)
    {
    }
    BGradientRadial(float cx, float cy, float radius) : BGradient(TYPE_RADIAL)
    {
        SetCenter(cx, cy);
        SetRadius(radius);
    }

    BPoint Center() const { return BPoint(fPlaces[0], fPlaces[1]); }
    void SetCenter(const BPoint& center) { SetCenter(center.x, center.y); }
    void SetCenter(float cx, float cy)
    {
        fPlaces[0] = cx;
        fPlaces[1] = cy;
    }
    float Radius() const { return fPlaces[2]; }
    void SetRadius(float radius) { fPlaces[2] = radius; }
};

#endif  // _GRADIENT_RADIAL_H
