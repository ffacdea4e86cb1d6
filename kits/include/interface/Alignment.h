#ifndef _ALIGNMENT_H
#define _ALIGNMENT_H

#include <InterfaceDefs.h>

// Where a thing lies in a space larger than itself.
class BAlignment {
public:
    alignment horizontal;
    vertical_alignment vertical;

    BAlignment() : horizontal(B_ALIGN_HORIZONTAL_UNSET), vertical(B_ALIGN_VERTICAL_UNSET) {}
    BAlignment(const BAlignment& other) = default;
    BAlignment(alignment horizontal, vertical_alignment vertical)
        : horizontal(horizontal), vertical(vertical)
    {
    }

    alignment Horizontal() const { return horizontal; }
    vertical_alignment Vertical() const { return vertical; }
    // 0 for left or top, 0.5 for the middle, 1 for right or bottom; any other value as a number.
    float RelativeHorizontal() const;
    float RelativeVertical() const;
    void SetHorizontal(alignment newHorizontal) { horizontal = newHorizontal; }
    void SetVertical(vertical_alignment newVertical) { vertical = newVertical; }
    bool IsHorizontalSet() const { return horizontal != B_ALIGN_HORIZONTAL_UNSET; }
    bool IsVerticalSet() const { return vertical != B_ALIGN_VERTICAL_UNSET; }

    bool operator==(const BAlignment& other) const
    {
        return horizontal == other.horizontal && vertical == other.vertical;
    }
    bool operator!=(const BAlignment& other) const { return !(*this == other); }
    BAlignment& operator=(const BAlignment& other) = default;
};

#endif  // _ALIGNMENT_H
