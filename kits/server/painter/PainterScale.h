#ifndef SERVER_PAINTER_SCALE_H
#define SERVER_PAINTER_SCALE_H

// Bitmaps larger or smaller than they are, with colours mixed between pixels.

#include "server/painter/PainterRaster.h"

namespace server {

// Pixels, left and top inclusive, of any size that a coordinate can name.
struct PixelRect {
    int64 left, top, width, height;
};

// Where a target's pixel falls in the bitmap, which starts at `from` and is `size` long, in a
// target from `to` on.
struct Axis {
    int64 from, size, to, to_size;
    int32 first, last;  // the pixels of the bitmap that are drawn

    double Place(int64 at) const
    {
        return (double(at - to) + 0.5) * (double(size) / double(to_size)) + double(from);
    }
    bool Shows(int64 at) const
    {
        const double place = Place(at);
        return place >= first && place < double(last) + 1;
    }
};

// Draws `source`, in B_RGBA32 or B_RGB32. Memory that there is not enough of draws nothing.
clipping_rect draw_smoothly(const Target& target, const Paint& paint, const Surface& source,
                            const Axis& columns, const Axis& rows);

}  // namespace server

#endif  // SERVER_PAINTER_SCALE_H
