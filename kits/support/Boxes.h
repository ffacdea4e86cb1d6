#ifndef SUPPORT_BOXES_H
#define SUPPORT_BOXES_H

// Arithmetic of boxes of pixels. Both ends of a box belong to it; one whose end lies before its
// start holds nothing.

#include <Region.h>

#include <algorithm>

namespace BPrivate {

inline constexpr clipping_rect kEmptyBox = {0, 0, -1, -1};

inline bool is_empty(const clipping_rect& box)
{
    return box.left > box.right || box.top > box.bottom;
}

inline clipping_rect intersect(const clipping_rect& a, const clipping_rect& b)
{
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

// For boxes that are not empty.
inline bool overlap(const clipping_rect& a, const clipping_rect& b)
{
    return a.left <= b.right && b.left <= a.right && a.top <= b.bottom && b.top <= a.bottom;
}

inline bool contains(const clipping_rect& outer, const clipping_rect& inner)
{
    return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
           outer.bottom >= inner.bottom;
}

// The smallest box around both, of which either may be empty.
inline clipping_rect unite(const clipping_rect& a, const clipping_rect& b)
{
    if (is_empty(a))
        return b;
    if (is_empty(b))
        return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

inline clipping_rect moved(const clipping_rect& box, int32 dx, int32 dy)
{
    return {box.left + dx, box.top + dy, box.right + dx, box.bottom + dy};
}

}  // namespace BPrivate

#endif  // SUPPORT_BOXES_H
