#ifndef INTERFACE_REGION_ACCESS_H
#define INTERFACE_REGION_ACCESS_H

#include <Region.h>

namespace BPrivate {

// The raw rectangles of a region, for clipping without a copy. The pointer holds until the region
// changes; there are CountRects() of them.
class RegionAccess {
public:
    static const clipping_rect* Rects(const BRegion& region) { return region._Rects(); }
};

}  // namespace BPrivate

#endif  // INTERFACE_REGION_ACCESS_H
