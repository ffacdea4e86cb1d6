// Rectangles, regions, and what both share with every other shape: masks and pixel copies.

#include <server/painter/Painter.h>

#include <interface/geometry/RegionAccess.h>

#include <cstring>
#include <new>

#include "server/painter/PainterPaths.h"
#include "server/painter/PainterRaster.h"
#include "server/painter/PainterRows.h"
#include "server/painter/PainterUnits.h"

namespace server {

namespace {

clipping_rect rounded(const BRect& rect)
{
    if (is_nan(rect))
        return kNoPixels;
    return box_of(pixel_at(rect.left), pixel_at(rect.top), pixel_at(rect.right),
                  pixel_at(rect.bottom));
}

// The box of a rectangle with whole coordinates that are far from the ends of the numbers, which
// most are.
inline bool is_whole(const BRect& rect, clipping_rect* box)
{
    const float far = 1 << 24;
    if (!(rect.left > -far && rect.top > -far && rect.right < far && rect.bottom < far &&
          rect.left <= rect.right && rect.top <= rect.bottom))
        return false;
    *box = {int32(rect.left), int32(rect.top), int32(rect.right), int32(rect.bottom)};
    return float(box->left) == rect.left && float(box->top) == rect.top &&
           float(box->right) == rect.right && float(box->bottom) == rect.bottom;
}

clipping_rect paint_box(const Target& target, const Brush& brush, const clipping_rect& box)
{
    return paint_shape(target, brush, box,
                       [](const auto& pen, const clipping_rect& part) { draw_box(pen, part); });
}

// The frame of `outer` around `inner`, no pixel twice. `inner` may be empty.
clipping_rect fill_frame(const Target& target, const Brush& brush, const clipping_rect& outer,
                         const clipping_rect& inner)
{
    if (is_empty(outer))
        return kNoPixels;
    if (is_empty(inner))
        return paint_box(target, brush, outer);
    return paint_shape(target, brush, outer, [&](const auto& pen, const clipping_rect& part) {
        const clipping_rect sides[] = {
            {outer.left, outer.top, outer.right, inner.top - 1},
            {outer.left, inner.bottom + 1, outer.right, outer.bottom},
            {outer.left, inner.top, inner.left - 1, inner.bottom},
            {inner.right + 1, inner.top, outer.right, inner.bottom},
        };
        for (const clipping_rect& side : sides) {
            const clipping_rect cut = intersect(side, part);
            if (cut.left == cut.right) {
                for (int32 y = cut.top; y <= cut.bottom; y++)
                    pen.Pixel(cut.left, y);
            } else if (!is_empty(cut)) {
                draw_box(pen, cut);
            }
        }
    });
}

}  // namespace

clipping_rect StrokeRect(const Target& target, const Paint& paint, BRect rect)
{
    if (is_scaled(target))
        return scaled::StrokeRect(target, paint, rect);
    const clipping_rect box = rounded(rect);
    const bool thin = is_thin(paint);
    if (is_empty(box))
        return kNoPixels;
    if (has_transform(paint) || (!thin && paint.join != B_MITER_JOIN)) {
        const BPoint corners[] = {rect.LeftTop(), rect.RightTop(), rect.RightBottom(),
                                  rect.LeftBottom()};
        return StrokePolygon(target, paint, corners, 4, true);
    }
    const Brush brush(paint);
    if (thin) {
        const clipping_rect inner = box_of(int64(box.left) + 1, int64(box.top) + 1,
                                           int64(box.right) - 1, int64(box.bottom) - 1);
        return fill_frame(target, brush, box, inner);
    }
    const PenReach pen(paint.penSize);
    const clipping_rect outer = box_of(box.left - pen.before, box.top - pen.before,
                                       box.right + pen.after, box.bottom + pen.after);
    const clipping_rect inner = box_of(box.left + pen.after + 1, box.top + pen.after + 1,
                                       box.right - pen.before - 1, box.bottom - pen.before - 1);
    return fill_frame(target, brush, outer, inner);
}

clipping_rect FillRect(const Target& target, const Paint& paint, BRect rect)
{
    clipping_rect box;
    if (is_scaled(target)) {
        if (has_transform(paint) || !is_solid(paint) || !is_whole(rect, &box))
            return scaled::FillRect(target, paint, rect);
        box = pixels_of(box, target.surface->scale);
    } else if (has_transform(paint)) {
        return fill_transformed_rect(target, paint, rect);
    } else if (!is_whole(rect, &box)) {
        box = rounded(rect);
        if (is_empty(box))
            return kNoPixels;
    }
    const Brush brush(paint);
    // The usual case without the general one's preparations: small rectangles cost little else.
    if (brush.plain && !brush.empty && target.count == 1 && can_draw_directly(*target.surface)) {
        const Surface& surface = *target.surface;
        box = intersect(box, target.clip[0]);
        if (is_empty(box))
            return kNoPixels;
        const Raster raster = {uintptr_t(surface.bits), surface.bytesPerRow};
        uint32* const first = raster.At(box.left, box.top);
        const int32 width = box.right - box.left + 1;
        const int32 height = box.bottom - box.top + 1;
        if (width != surface.width ||
            !fill_whole_rows(first, raster.pitch, width, height, brush.color))
            fill_box(first, raster.pitch, width, height, brush.color);
        return box;
    }
    return paint_box(target, brush, box);
}

clipping_rect FillRegion(const Target& target, const Paint& paint, const BRegion& region)
{
    if (is_scaled(target))
        return scaled::FillRegion(target, paint, region);
    const clipping_rect* rects = BPrivate::RegionAccess::Rects(region);
    clipping_rect changed = kNoPixels;
    const Brush brush(paint);
    for (int32 i = 0; i < region.CountRects(); i++) {
        const clipping_rect& rect = rects[i];
        if (has_transform(paint))
            changed = unite(
                changed, fill_transformed_rect(
                             target, paint, BRect(rect.left, rect.top, rect.right, rect.bottom)));
        else
            changed = unite(changed, paint_box(target, brush, rect));
    }
    return changed;
}

clipping_rect InvertRect(const Target& target, BRect rect)
{
    Paint paint;
    paint.mode = B_OP_INVERT;
    return FillRect(target, paint, rect);
}

clipping_rect FillMask(const Target& target, const Paint& paint, const uint8* coverage,
                       int32 bytesPerRow, int32 x, int32 y, int32 width, int32 height)
{
    if (coverage == nullptr || width < 1 || height < 1)
        return kNoPixels;
    return fill_mask(target, Brush(paint), coverage, bytesPerRow, x, y, width, height);
}

namespace {

// Any brush: what it would make of the pixels, mixed in by coverage.
void mask_brush(const Raster& raster, const Brush& brush, const uint8* coverage, int32 x, int32 y,
                int32 count)
{
    const int32 kChunk = 64;
    uint32 painted[kChunk];
    while (count > 0) {
        if (*coverage == 0) {
            coverage++, x++, count--;
            continue;
        }
        int32 part = 0;
        while (part < std::min(count, kChunk) && coverage[part] != 0)
            part++;
        uint32* pixels = raster.At(x, y);
        memcpy(painted, pixels, part * sizeof(uint32));
        brush.span(brush, painted, x, y, part);
        for (int32 i = 0; i < part; i++)
            pixels[i] = mix_pixels(pixels[i], painted[i], coverage[i]);
        coverage += part, x += part, count -= part;
    }
}

// Coverage over one colour, the common case of text.
void mask_row(const PlainPen& pen, const uint8* coverage, int32 x, int32 y, int32 count)
{
    row_code().cover(pen.color, coverage, pen.raster.At(x, y), count);
}

void mask_row(const BrushPen& pen, const uint8* coverage, int32 x, int32 y, int32 count)
{
    mask_brush(pen.raster, pen.brush, coverage, x, y, count);
}

}  // namespace

clipping_rect fill_mask(const Target& target, const Brush& brush, const uint8* coverage,
                        ptrdiff_t bytesPerRow, int32 x, int32 y, int32 width, int32 height)
{
    const clipping_rect reach = box_of(x, y, int64(x) + width - 1, int64(y) + height - 1);
    return paint_shape(target, brush, reach, [=](const auto& pen, const clipping_rect& box) {
        for (int32 row = box.top; row <= box.bottom; row++) {
            const uint8* line = coverage + (int64(row) - y) * bytesPerRow + (int64(box.left) - x);
            mask_row(pen, line, box.left, row, box.right - box.left + 1);
        }
    });
}

Mask::Mask(const clipping_rect& box) : fBox(box), fPitch(int64(box.right) - box.left + 1)
{
    const int64 size = fPitch * (int64(box.bottom) - box.top + 1);
    fBits.reset(new (std::nothrow) uint8[size]());
}

MaskPen Mask::Pen() const
{
    return {uintptr_t(fBits.get()) - fBox.top * fPitch - fBox.left, fPitch};
}

clipping_rect Mask::Lay(const Target& target, const Brush& brush) const
{
    return fill_mask(target, brush, fBits.get(), fPitch, fBox.left, fBox.top, int32(fPitch),
                     fBox.bottom - fBox.top + 1);
}

void Pixels32::_Convert(const Surface& surface, const clipping_rect& box)
{
    const int64 width = int64(box.right) - box.left + 1;
    const int64 height = int64(box.bottom) - box.top + 1;
    if (BytesPerRow(surface.space, 1) == 0)
        return;
    fCopy.reset(new (std::nothrow) uint32[width * height * 2]);
    if (fCopy == nullptr)
        return;
    fSurface = &surface;
    fBox = box;
    for (int64 row = 0; row < height; row++)
        read_pixels(surface, box.left, int32(box.top + row), int32(width),
                    fCopy.get() + row * width);
    memcpy(fCopy.get() + width * height, fCopy.get(), width * height * sizeof(uint32));
    raster.pitch = width * 4;
    raster.origin = uintptr_t(fCopy.get()) - box.top * raster.pitch - box.left * ptrdiff_t(4);
}

// Only changed pixels are written: not every pixel comes back from 32 bits as it was.
void Pixels32::_WriteBack()
{
    const int32 width = fBox.right - fBox.left + 1, height = fBox.bottom - fBox.top + 1;
    const uint32* drawn = fCopy.get();
    const uint32* before = drawn + ptrdiff_t(width) * height;
    for (int32 row = 0; row < height; row++, drawn += width, before += width) {
        for (int32 i = 0; i < width;) {
            int32 end = i;
            while (end < width && drawn[end] != before[end])
                end++;
            if (end > i)
                write_pixels(*fSurface, fBox.left + i, fBox.top + row, end - i, drawn + i);
            i = end + 1;
        }
    }
}

}  // namespace server
