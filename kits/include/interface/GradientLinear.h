#ifndef _GRADIENT_LINEAR_H
#define _GRADIENT_LINEAR_H

#include <Gradient.h>
#include <Point.h>

// Along a line from one point to another.
class BGradientLinear : public BGradient {
public:
    BGradientLinear() : BGradient(TYPE_LINEAR) {}
    BGradientLinear(const BPoint& start, const BPoint& end)
        : BGradientLinear(start.x, start.y, end.x, end.y)
    {
    }
    BGradientLinear(float x1, float y1, float x2, float y2) : BGradient(TYPE_LINEAR)
    {
        SetStart(x1, y1);
        SetEnd(x2, y2);
    }

    BPoint Start() const { return BPoint(fPlaces[0], fPlaces[1]); }
    void SetStart(const BPoint& start) { SetStart(start.x, start.y); }
    void SetStart(float x1, float y1)
    {
        fPlaces[0] = x1;
        fPlaces[1] = y1;
    }
    BPoint End() const { return BPoint(fPlaces[2], fPlaces[3]); }
    void SetEnd(const BPoint& end) { SetEnd(end.x, end.y); }
    void SetEnd(float x2, float y2)
    {
        fPlaces[2] = x2;
        fPlaces[3] = y2;
    }
};

#endif  // _GRADIENT_LINEAR_H
