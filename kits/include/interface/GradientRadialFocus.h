#ifndef _GRADIENT_RADIAL_FOCUS_H
#define _GRADIENT_RADIAL_FOCUS_H

#include <Gradient.h>
#include <Point.h>

// From a point inside a circle outwards to it.
class BGradientRadialFocus : public BGradient {
public:
    BGradientRadialFocus() : BGradient(TYPE_RADIAL_FOCUS) {}
    BGradientRadialFocus(const BPoint& center, float radius, const BPoint& focal)
        : BGradientRadialFocus(center.x, center.y, radius, focal.x, focal.y)
    {
    }
    BGradientRadialFocus(float cx, float cy, float radius, float fx, float fy)
        : BGradient(TYPE_RADIAL_FOCUS)
    {
        SetCenter(cx, cy);
        SetRadius(radius);
        SetFocal(fx, fy);
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
    BPoint Focal() const { return BPoint(fPlaces[3], fPlaces[4]); }
    void SetFocal(const BPoint& focal) { SetFocal(focal.x, focal.y); }
    void SetFocal(float fx, float fy)
    {
        fPlaces[3] = fx;
        fPlaces[4] = fy;
    }
};

#endif  // _GRADIENT_RADIAL_FOCUS_H
