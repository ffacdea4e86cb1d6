#ifndef _SIZE_H
#define _SIZE_H

#include <SupportDefs.h>

constexpr float B_SIZE_UNSET = -2;
constexpr float B_SIZE_UNLIMITED = 1024 * 1024 * 1024;

// Width and height of a rectangle in BRect's sense: a width of 10 covers 11 pixels.
class BSize {
public:
    float width;
    float height;

    constexpr BSize() : width(B_SIZE_UNSET), height(B_SIZE_UNSET) {}
    constexpr BSize(const BSize& other) = default;
    constexpr BSize(float width, float height) : width(width), height(height) {}

    float Width() const { return width; }
    float Height() const { return height; }
    void Set(float newWidth, float newHeight)
    {
        width = newWidth;
        height = newHeight;
    }
    void SetWidth(float newWidth) { width = newWidth; }
    void SetHeight(float newHeight) { height = newHeight; }
    // Rounded up; what no int32 can hold becomes its nearest limit, NaN becomes 0.
    int32 IntegerWidth() const;
    int32 IntegerHeight() const;
    bool IsWidthSet() const { return width != B_SIZE_UNSET; }
    bool IsHeightSet() const { return height != B_SIZE_UNSET; }

    constexpr bool operator==(const BSize& other) const
    {
        return width == other.width && height == other.height;
    }
    constexpr bool operator!=(const BSize& other) const { return !(*this == other); }
    constexpr BSize& operator=(const BSize& other) = default;
};

#endif  // _SIZE_H
