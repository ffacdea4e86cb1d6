// Bitmaps onto surfaces, straight, scaled and turned, and pixels moved inside one surface.

#include <server/painter/Painter.h>

#include <cstring>
#include <new>

#include "server/painter/PainterPaths.h"
#include "server/painter/PainterRows.h"
#include "server/painter/PainterScale.h"
#include "server/painter/PainterUnits.h"

namespace server {

namespace {

const int32 kChunk = 256;

PixelRect rounded(const BRect& rect)
{
    const int64 left = pixel_at(rect.left), top = pixel_at(rect.top);
    return {left, top, pixel_at(rect.right) - left + 1, pixel_at(rect.bottom) - top + 1};
}

bool is_straight(const PixelRect& from, const PixelRect& to, const Paint& paint)
{
    return from.width == to.width && from.height == to.height && !has_transform(paint);
}

// Picks the bitmap's pixel for every pixel of the target. Unless it is straight, the bitmap has
// to be in B_RGBA32.
class Sampler {
public:
    Sampler(const Surface& source, const PixelRect& from, const PixelRect& to, const Paint& paint,
            uint32 options)
        : fSource(source),
          fFrom(from),
          fTo(to),
          fUsed(intersect(
              box_of(from.left, from.top, from.left + from.width - 1, from.top + from.height - 1),
              {0, 0, source.width - 1, source.height - 1})),
          fPaint(paint),
          fScaleX(double(from.width) / double(to.width)),
          fScaleY(double(from.height) / double(to.height)),
          fSmooth((options & B_FILTER_BITMAP_BILINEAR) != 0),
          fStraight(is_straight(from, to, paint))
    {
        if (has_transform(paint)) {
            fInverse = *paint.transform;
            fInverse.Invert();
        }
    }

    // What of the target the bitmap covers, and the part of it that has pixels.
    clipping_rect Reach() const
    {
        if (!has_transform(fPaint))
            return box_of(fTo.left, fTo.top, fTo.left + fTo.width - 1, fTo.top + fTo.height - 1);
        double left = INFINITY, top = INFINITY, right = -INFINITY, bottom = -INFINITY;
        for (int corner = 0; corner < 4; corner++) {
            const DPoint point = transformed(fPaint, double(fTo.left + (corner & 1) * fTo.width),
                                             double(fTo.top + (corner >> 1) * fTo.height));
            left = std::min(left, point.x), right = std::max(right, point.x);
            top = std::min(top, point.y), bottom = std::max(bottom, point.y);
        }
        return box_of(pixel_at(left) - 1, pixel_at(top) - 1, pixel_at(right), pixel_at(bottom));
    }

    // Narrows [x, end) to the pixels of row `y` that show a pixel of the bitmap.
    void Cut(int32 y, int32* x, int32* end) const
    {
        while (*x < *end && !_Shows(*x, y))
            ++*x;
        while (*x < *end && !_Shows(*end - 1, y))
            --*end;
    }

    // The pixels from `x` on, where they are or read into `room`. Lowers `count` to what it has.
    const uint32* Row(int32 x, int32 y, int32* count, uint32* room) const
    {
        const int32 column = int32(x - fTo.left + fFrom.left);
        const int32 row = int32(y - fTo.top + fFrom.top);
        if (fStraight && fSource.space == B_RGBA32 && can_draw_directly(fSource))
            return reinterpret_cast<const uint32*>(fSource.bits +
                                                   ptrdiff_t(row) * fSource.bytesPerRow) +
                   column;
        *count = std::min(*count, kChunk);
        if (fStraight) {
            read_pixels(fSource, column, row, *count, room);
            return room;
        }
        for (int32 i = 0; i < *count; i++) {
            const DPoint place = _Place(x + i, y);
            room[i] = fSmooth ? _Mixed(place) : _Pixel(_Floor(place.x), _Floor(place.y));
        }
        return room;
    }

private:
    static int64 _Floor(double value) { return pixel_at(value - 0.5); }

    // Where the centre of the target's pixel falls in the bitmap, whose first pixel is from 0 to 1.
    DPoint _Place(int32 x, int32 y) const
    {
        double targetX = x + 0.5, targetY = y + 0.5;
        if (has_transform(fPaint))
            fInverse.Apply(&targetX, &targetY);
        return {(targetX - double(fTo.left)) * fScaleX + double(fFrom.left),
                (targetY - double(fTo.top)) * fScaleY + double(fFrom.top)};
    }
    bool _Shows(int32 x, int32 y) const
    {
        const DPoint place = _Place(x, y);
        const int64 column = _Floor(place.x), row = _Floor(place.y);
        return column >= fUsed.left && column <= fUsed.right && row >= fUsed.top &&
               row <= fUsed.bottom;
    }
    // The nearest pixel of the part that is drawn.
    uint32 _Pixel(int64 x, int64 y) const
    {
        x = std::clamp<int64>(x, fUsed.left, fUsed.right);
        y = std::clamp<int64>(y, fUsed.top, fUsed.bottom);
        uint32 pixel;
        memcpy(&pixel, fSource.bits + y * fSource.bytesPerRow + x * 4, 4);
        return pixel;
    }
    uint32 _Mixed(const DPoint& place) const
    {
        const double x = place.x - 0.5, y = place.y - 0.5;
        const int64 column = _Floor(x), row = _Floor(y);
        const uint32 weightX = uint32((x - double(column)) * 255 + 0.5) & 255;
        const uint32 weightY = uint32((y - double(row)) * 255 + 0.5) & 255;
        const uint32 above = mix_pixels(_Pixel(column, row), _Pixel(column + 1, row), weightX);
        const uint32 below =
            mix_pixels(_Pixel(column, row + 1), _Pixel(column + 1, row + 1), weightX);
        return mix_pixels(above, below, weightY);
    }

    const Surface& fSource;
    const PixelRect fFrom, fTo;
    const clipping_rect fUsed;  // the part of the bitmap that is drawn
    const Paint& fPaint;
    const double fScaleX, fScaleY;
    const bool fSmooth, fStraight;
    BAffineTransform fInverse;
};

// Rows can be copied: in the same space, or where alpha at most is lost or added.
bool is_plain_copy(const Surface& from, const Surface& to)
{
    return from.space == to.space ? from.space != B_GRAY1
                                  : can_draw_directly(from) && can_draw_directly(to);
}

// The straight copy of rows of bytes.
clipping_rect copy_rows(const Target& target, const Surface& source, const PixelRect& from,
                        const PixelRect& to)
{
    const Surface& surface = *target.surface;
    const int64 left = std::max(-from.left, int64(0)), top = std::max(-from.top, int64(0));
    const int64 right = std::min(from.width, source.width - from.left);
    const int64 bottom = std::min(from.height, source.height - from.top);
    const clipping_rect reach =
        box_of(to.left + left, to.top + top, to.left + right - 1, to.top + bottom - 1);
    if (left >= right || top >= bottom)
        return kNoPixels;
    const int32 size = BytesPerRow(surface.space, 1);
    const bool adds_alpha = source.space == B_RGB32 && surface.space == B_RGBA32;
    const clipping_rect touched = touched_box(target, reach);
    return for_each_box(target, touched, [&](const clipping_rect& box) {
        const size_t bytes = size_t(box.right - box.left + 1) * size;
        for (int32 y = box.top; y <= box.bottom; y++) {
            uint8* row =
                surface.bits + ptrdiff_t(y) * surface.bytesPerRow + ptrdiff_t(box.left) * size;
            const uint8* pixels = source.bits +
                                  ptrdiff_t(y - to.top + from.top) * source.bytesPerRow +
                                  ptrdiff_t(box.left - to.left + from.left) * size;
            if (adds_alpha)
                row_code().copyOpaque(reinterpret_cast<const uint32*>(pixels),
                                      reinterpret_cast<uint32*>(row), box.right - box.left + 1);
            else
                memcpy(row, pixels, bytes);
        }
    });
}

clipping_rect draw_sampled(const Target& target, const Paint& paint, const Sampler& sampler)
{
    // The bitmap stands for the pattern, which only has to be one that needs a row writer.
    Paint bitmapPaint = paint;
    bitmapPaint.pattern = B_MIXED_COLORS;
    bitmapPaint.gradient = nullptr;
    const Brush brush(bitmapPaint);
    if (uint32(paint.mode) > B_OP_ALPHA)
        return kNoPixels;
    const clipping_rect touched = touched_box(target, sampler.Reach());
    if (is_empty(touched))
        return kNoPixels;
    Pixels32 pixels(*target.surface, touched);
    if (!pixels.Valid())
        return kNoPixels;
    const clipping_rect changed = for_each_box(target, touched, [&](const clipping_rect& box) {
        uint32 row[kChunk];
        for (int32 y = box.top; y <= box.bottom; y++) {
            int32 x = box.left, end = box.right + 1;
            sampler.Cut(y, &x, &end);
            while (x < end) {
                int32 count = end - x;
                const uint32* from = sampler.Row(x, y, &count, row);
                brush.row(brush, pixels.raster.At(x, y), from, count);
                x += count;
            }
        }
    });
    pixels.WriteBack();
    return changed;
}

// Moves the pixels of one part of the target from `dx`, `dy` further left and up.
void move_bits(uint8* to, const uint8* from, int32 left, int32 right, int64 dx)
{
    const int32 width = right - left + 1;
    for (int32 k = 0; k < width; k++) {
        const int32 x = dx > 0 ? right - k : left + k;
        const int32 source = int32(x - dx);
        const bool set = (from[source >> 3] & (0x80 >> (source & 7))) != 0;
        const uint8 bit = uint8(0x80 >> (x & 7));
        to[x >> 3] = uint8(set ? to[x >> 3] | bit : to[x >> 3] & ~bit);
    }
}

void move_box(const Surface& surface, const clipping_rect& box, int64 dx, int64 dy)
{
    const int32 height = box.bottom - box.top + 1;
    // Where the two overlap, downwards from below: no row is overwritten before it was read.
    const bool upwards = dy > 0 && dy < height;
    const ptrdiff_t step = upwards ? -surface.bytesPerRow : surface.bytesPerRow;
    const int32 first = upwards ? box.bottom : box.top;
    uint8* to = surface.bits + ptrdiff_t(first) * surface.bytesPerRow;
    const uint8* from = surface.bits + ptrdiff_t(first - dy) * surface.bytesPerRow;
    if (surface.space == B_GRAY1) {
        for (int32 i = 0; i < height; i++, to += step, from += step)
            move_bits(to, from, box.left, box.right, dx);
        return;
    }
    const ptrdiff_t bytes = BytesPerRow(surface.space, 1);
    const size_t size = size_t(box.right - box.left + 1) * size_t(bytes);
    to += box.left * bytes;
    from += (box.left - dx) * bytes;
    for (int32 i = 0; i < height; i++, to += step, from += step)
        memmove(to, from, size);
}

}  // namespace

clipping_rect DrawBitmap(const Target& target, const Paint& paint, const Surface& source,
                         BRect from, BRect to, uint32 options)
{
    if (is_scaled(target))
        return scaled::DrawBitmap(target, paint, source, from, to, options);
    if (is_nan(from) || is_nan(to) || !from.IsValid() || !to.IsValid() ||
        target.surface == nullptr || source.bits == nullptr || source.width < 1 ||
        source.height < 1 || BytesPerRow(source.space, 1) == 0)
        return kNoPixels;
    const PixelRect fromPixels = rounded(from), toPixels = rounded(to);
    const bool straight = is_straight(fromPixels, toPixels, paint);
    const bool smooth = !straight && !has_transform(paint) && can_draw_directly(source) &&
                        (options & B_FILTER_BITMAP_BILINEAR) != 0;
    if (source.bits == target.surface->bits || (!straight && !smooth && source.space != B_RGBA32)) {
        // A surface drawn onto itself is read from a copy; pixels are picked one by one from a
        // space that is quick to read.
        const size_t size = size_t(source.width) * source.height;
        const std::unique_ptr<uint32[]> pixels(new (std::nothrow) uint32[size]);
        if (pixels == nullptr)
            return kNoPixels;
        for (int32 y = 0; y < source.height; y++)
            read_pixels(source, 0, y, source.width, pixels.get() + size_t(y) * source.width);
        const Surface copy = {reinterpret_cast<uint8*>(pixels.get()), source.width * 4,
                              source.width, source.height, B_RGBA32};
        return DrawBitmap(target, paint, copy, from, to, options);
    }
    if (paint.mode == B_OP_COPY && straight && is_plain_copy(source, *target.surface))
        return copy_rows(target, source, fromPixels, toPixels);
    if (smooth) {
        const int64 right = fromPixels.left + fromPixels.width - 1;
        const int64 bottom = fromPixels.top + fromPixels.height - 1;
        const clipping_rect used = intersect(box_of(fromPixels.left, fromPixels.top, right, bottom),
                                             {0, 0, source.width - 1, source.height - 1});
        return draw_smoothly(target, paint, source,
                             {fromPixels.left, fromPixels.width, toPixels.left, toPixels.width,
                              used.left, used.right},
                             {fromPixels.top, fromPixels.height, toPixels.top, toPixels.height,
                              used.top, used.bottom});
    }
    const Sampler sampler(source, fromPixels, toPixels, paint, options);
    return draw_sampled(target, paint, sampler);
}

clipping_rect CopyRect(const Target& target, BRect from, BPoint to)
{
    if (is_scaled(target))
        return scaled::CopyRect(target, from, to);
    if (is_nan(from) || !from.IsValid() || is_nan(to) || target.surface == nullptr ||
        BytesPerRow(target.surface->space, 1) == 0)
        return kNoPixels;
    const Surface& surface = *target.surface;
    const PixelRect source = rounded(from);
    const int64 dx = pixel_at(to.x) - source.left, dy = pixel_at(to.y) - source.top;
    const int64 left = std::max<int64>(source.left, 0), top = std::max<int64>(source.top, 0);
    const int64 right = std::min<int64>(source.left + source.width, surface.width) - 1;
    const int64 bottom = std::min<int64>(source.top + source.height, surface.height) - 1;
    if (left > right || top > bottom)
        return kNoPixels;
    const clipping_rect touched =
        touched_box(target, box_of(left + dx, top + dy, right + dx, bottom + dy));
    if (is_empty(touched))
        return kNoPixels;
    if (target.count == 1)
        return for_each_box(target, touched,
                            [&](const clipping_rect& box) { move_box(surface, box, dx, dy); });

    // Parts may take from each other: all of it is read first.
    const clipping_rect read =
        box_of(touched.left - dx, touched.top - dy, touched.right - dx, touched.bottom - dy);
    const size_t size = size_t(surface.bytesPerRow) * (read.bottom - read.top + 1);
    const std::unique_ptr<uint8[]> bits(new (std::nothrow) uint8[size]);
    if (bits == nullptr)
        return kNoPixels;
    memcpy(bits.get(), surface.bits + ptrdiff_t(read.top) * surface.bytesPerRow, size);
    Surface copy = surface;
    copy.bits = bits.get();
    copy.height = read.bottom - read.top + 1;
    Paint paint;
    return DrawBitmap(target, paint, copy, BRect(read.left, 0, read.right, read.bottom - read.top),
                      BRect(touched.left, touched.top, touched.right, touched.bottom), 0);
}

}  // namespace server
