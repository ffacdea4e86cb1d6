#ifndef _GRADIENT_CONIC_H
#define _GRADIENT_CONIC_H

#include <Gradient.h>
#include <Point.h>

// Once around a centre, counter-clockwise from an angle in degrees.
class BGradientConic : public BGradient {
public:
    BGradientConic() : BGradient(TYPE_CONIC) {}
    BGradientConic(const BPoint& center, float angle) : BGradientConic(center.x, center.y, angle) {}
    BGradientConic(float cx, float cy, float angle) : BGradient(TYPE_CONIC)
    {
        SetCenter(cx, cy);
        SetAngle(angle);
    }

    BPoint Center() const { return BPoint(fPlaces[0], fPlaces[1]); }
    void SetCenter(const BPoint& center) { SetCenter(center.x, center.y); }
    void SetCenter(float cx, float cy)
    {
        fPlaces[0] = cx;
        fPlaces[1] = cy;
    }
    float Angle() const { return fPlaces[2]; }
    void SetAngle(float angle) { fPlaces[2] = angle; }
};

#endif  // _GRADIENT_CONIC_H
