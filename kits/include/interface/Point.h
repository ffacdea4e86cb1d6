#ifndef _POINT_H
#define _POINT_H

#include <SupportDefs.h>

class BRect;

// A place, in pixels unless the context says otherwise; y grows downwards.
class BPoint {
public:
    float x;
    float y;

    constexpr BPoint() : x(0), y(0) {}
    constexpr BPoint(float x, float y) : x(x), y(y) {}
    constexpr BPoint(const BPoint& p) = default;
    constexpr BPoint& operator=(const BPoint& other) = default;

    void Set(float newX, float newY)
    {
        x = newX;
        y = newY;
    }
    // Moves the point to the nearest place inside `rect`.
    void ConstrainTo(BRect rect);
    void PrintToStream() const;

    constexpr BPoint operator-() const { return BPoint(-x, -y); }
    constexpr BPoint operator+(const BPoint& other) const
    {
        return BPoint(x + other.x, y + other.y);
    }
    constexpr BPoint operator-(const BPoint& other) const
    {
        return BPoint(x - other.x, y - other.y);
    }
    BPoint& operator+=(const BPoint& other) { return *this = *this + other; }
    BPoint& operator-=(const BPoint& other) { return *this = *this - other; }
    constexpr bool operator!=(const BPoint& other) const { return x != other.x || y != other.y; }
    constexpr bool operator==(const BPoint& other) const { return x == other.x && y == other.y; }
};

extern const BPoint B_ORIGIN;  // (0, 0)

#endif  // _POINT_H
