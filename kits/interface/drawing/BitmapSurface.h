#ifndef INTERFACE_BITMAP_SURFACE_H
#define INTERFACE_BITMAP_SURFACE_H

#include <Bitmap.h>

#include <server/screen/Surface.h>

namespace BPrivate {

// A flag for bitmaps whose maker writes every byte of them: it is not zeroed, and forgets the flag.
const uint32 kPixelsUnset = 0x80000000;

// The bits for who draws on them as views do, or only reads: nobody is told.
struct BitmapBits {
    static uint8* Of(const BBitmap& bitmap) { return bitmap.fBits; }
};

// The pixels of a bitmap; without bits for an invalid one. Holds while the bitmap lives.
inline server::Surface surface_of(const BBitmap& bitmap)
{
    server::Surface surface;
    if (!bitmap.IsValid())
        return surface;
    surface.bits = BitmapBits::Of(bitmap);
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

// How a bitmap is drawn larger or smaller. A program's own raster keeps its pixels as squares where
// the screen has a whole number for each; what else a picture is made of is smoothed.
inline uint32 filter_options(const BBitmap& bitmap, uint32 options, float scale)
{
    const bool isRaster = (bitmap.Flags() & B_BITMAP_ACCEPTS_VIEWS) != 0;
    if (scale != 1 && !isRaster)
        options |= B_FILTER_BITMAP_BILINEAR;
    return options & B_FILTER_BITMAP_BILINEAR;
}

}  // namespace BPrivate

#endif  // INTERFACE_BITMAP_SURFACE_H
