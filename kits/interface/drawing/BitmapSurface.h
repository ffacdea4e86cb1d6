#ifndef INTERFACE_BITMAP_SURFACE_H
#define INTERFACE_BITMAP_SURFACE_H

#include <Bitmap.h>

#include <server/screen/Surface.h>

namespace BPrivate {

// The pixels of a bitmap; without bits for an invalid one. Holds while the bitmap lives.
inline server::Surface surface_of(const BBitmap& bitmap)
{
    server::Surface surface;
    if (!bitmap.IsValid())
        return surface;
    surface.bits = static_cast<uint8*>(bitmap.Bits());
    surface.bytesPerRow = bitmap.BytesPerRow();
    surface.width = bitmap.Bounds().IntegerWidth() + 1;
    surface.height = bitmap.Bounds().IntegerHeight() + 1;
    surface.space = bitmap.ColorSpace();
    return surface;
}

// The colour space with a number that may come from anywhere.
inline color_space space_of(int32 number)
{
    return number > 0 && number <= 0xFFFF ? color_space(number) : B_NO_COLOR_SPACE;
}

}  // namespace BPrivate

#endif  // INTERFACE_BITMAP_SURFACE_H
