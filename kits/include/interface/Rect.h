#ifndef _RECT_H
#define _RECT_H

#include <Point.h>
#include <Size.h>
#include <SupportDefs.h>

#include <math.h>

// A rectangle whose right and bottom edges belong to it: (0, 0, 10, 10) covers 11 x 11 pixels and
// has a width of 10. It is valid if it covers at least one pixel.
class BRect {
public:
    float left;
    float top;
    float right;
    float bottom;

    constexpr BRect() : left(0), top(0), right(-1), bottom(-1) {}  // invalid
    constexpr BRect(const BRect& other) = default;
    constexpr BRect(float left, float top, float right, float bottom)
        : left(left), top(top), right(right), bottom(bottom)
    {
    }
    constexpr BRect(BPoint leftTop, BPoint rightBottom)
        : left(leftTop.x), top(leftTop.y), right(rightBottom.x), bottom(rightBottom.y)
    {
    }
    constexpr BRect(BPoint leftTop, BSize size)
        : left(leftTop.x),
          top(leftTop.y),
          right(leftTop.x + size.width),
          bottom(leftTop.y + size.height)
    {
    }
    // At the origin, `side` or `width` x `height` pixels large.
    constexpr BRect(float side) : BRect(side, side) {}
    constexpr BRect(float width, float height)
        : left(0), top(0), right(width - 1), bottom(height - 1)
    {
    }
    constexpr BRect& operator=(const BRect& other) = default;

    void Set(float newLeft, float newTop, float newRight, float newBottom)
    {
        left = newLeft;
        top = newTop;
        right = newRight;
        bottom = newBottom;
    }
    void PrintToStream() const;

    constexpr BPoint LeftTop() const { return BPoint(left, top); }
    constexpr BPoint RightBottom() const { return BPoint(right, bottom); }
    constexpr BPoint LeftBottom() const { return BPoint(left, bottom); }
    constexpr BPoint RightTop() const { return BPoint(right, top); }
    // A corner moves; the opposite one stays.
    void SetLeftTop(const BPoint point);
    void SetRightBottom(const BPoint point);
    void SetLeftBottom(const BPoint point);
    void SetRightTop(const BPoint point);

    // Moves every edge inwards by the distance (outwards if it is negative).
    void InsetBy(BPoint inset) { InsetBy(inset.x, inset.y); }
    void InsetBy(float dx, float dy)
    {
        left += dx;
        top += dy;
        right -= dx;
        bottom -= dy;
    }
    void OffsetBy(BPoint delta) { OffsetBy(delta.x, delta.y); }
    void OffsetBy(float dx, float dy)
    {
        left += dx;
        top += dy;
        right += dx;
        bottom += dy;
    }
    void OffsetTo(BPoint offset) { OffsetTo(offset.x, offset.y); }
    void OffsetTo(float x, float y)
    {
        right = (right - left) + x;
        left = x;
        bottom = (bottom - top) + y;
        top = y;
    }

    BRect& InsetBySelf(BPoint inset) { return InsetBySelf(inset.x, inset.y); }
    BRect& InsetBySelf(float dx, float dy)
    {
        InsetBy(dx, dy);
        return *this;
    }
    BRect InsetByCopy(BPoint inset) const { return BRect(*this).InsetBySelf(inset); }
    BRect InsetByCopy(float dx, float dy) const { return BRect(*this).InsetBySelf(dx, dy); }
    BRect& OffsetBySelf(BPoint offset) { return OffsetBySelf(offset.x, offset.y); }
    BRect& OffsetBySelf(float dx, float dy)
    {
        OffsetBy(dx, dy);
        return *this;
    }
    BRect OffsetByCopy(BPoint offset) const { return BRect(*this).OffsetBySelf(offset); }
    BRect OffsetByCopy(float dx, float dy) const { return BRect(*this).OffsetBySelf(dx, dy); }
    BRect& OffsetToSelf(BPoint offset) { return OffsetToSelf(offset.x, offset.y); }
    BRect& OffsetToSelf(float x, float y)
    {
        OffsetTo(x, y);
        return *this;
    }
    BRect OffsetToCopy(BPoint offset) const { return BRect(*this).OffsetToSelf(offset); }
    BRect OffsetToCopy(float x, float y) const { return BRect(*this).OffsetToSelf(x, y); }

    constexpr bool operator==(BRect other) const
    {
        return left == other.left && top == other.top && right == other.right &&
               bottom == other.bottom;
    }
    constexpr bool operator!=(BRect other) const { return !(*this == other); }
    // The common part; invalid if there is none.
    constexpr BRect operator&(BRect other) const
    {
        return BRect(left > other.left ? left : other.left, top > other.top ? top : other.top,
                     right < other.right ? right : other.right,
                     bottom < other.bottom ? bottom : other.bottom);
    }
    // The smallest rectangle around both. An invalid one does not count.
    constexpr BRect operator|(BRect other) const
    {
        if (!IsValid())
            return other;
        if (!other.IsValid())
            return *this;
        return BRect(left < other.left ? left : other.left, top < other.top ? top : other.top,
                     right > other.right ? right : other.right,
                     bottom > other.bottom ? bottom : other.bottom);
    }

    constexpr bool IsValid() const { return left <= right && top <= bottom; }
    constexpr float Width() const { return right - left; }
    // Rounded up; what no int32 can hold becomes its nearest limit, NaN becomes 0.
    int32 IntegerWidth() const;
    constexpr float Height() const { return bottom - top; }
    int32 IntegerHeight() const;
    constexpr BSize Size() const { return BSize(right - left, bottom - top); }

    constexpr bool Intersects(BRect rect) const
    {
        return IsValid() && rect.IsValid() && rect.left <= right && rect.top <= bottom &&
               rect.right >= left && rect.bottom >= top;
    }
    constexpr bool Contains(BPoint point) const
    {
        return point.x >= left && point.x <= right && point.y >= top && point.y <= bottom;
    }
    constexpr bool Contains(BRect rect) const
    {
        return rect.left >= left && rect.right <= right && rect.top >= top && rect.bottom <= bottom;
    }
};

#endif  // _RECT_H
