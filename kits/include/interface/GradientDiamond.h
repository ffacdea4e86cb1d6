#ifndef _GRADIENT_DIAMOND_H
#define _GRADIENT_DIAMOND_H

#include <Gradient.h>
#include <Point.h>

// In squares around a centre, 100 pixels to each side.
class BGradientDiamond : public BGradient {
public:
    BGradientDiamond() : BGradient(TYPE_DIAMOND) {}
    BGradientDiamond(const BPoint& center) : BGradientDiamond(center.x, center.y) {}
    BGradientDiamond(float cx, float cy) : BGradient(TYPE_DIAMOND) { SetCenter(cx, cy); }

    BPoint Center() const { return BPoint(fPlaces[0], fPlaces[1]); }
    void SetCenter(const BPoint& center) { SetCenter(center.x, center.y); }
    void SetCenter(float cx, float cy)
    {
        fPlaces[0] = cx;
        fPlaces[1] = cy;
    }
};

#endif  // _GRADIENT_DIAMOND_H
