#ifndef SERVER_PAINTER_RASTER_H
#define SERVER_PAINTER_RASTER_H

// From a shape to pixels: paint_shape() cuts a target into boxes and gives a pen for each. Shapes
// are templates over the pen, which knows how a run of pixels is written.

#include "server/painter/PainterBrush.h"

#include <algorithm>
#include <cmath>

#include "support/Boxes.h"

namespace server {

using BPrivate::intersect;
using BPrivate::is_empty;
using BPrivate::unite;

const clipping_rect kNoPixels = BPrivate::kEmptyBox;

inline int32 clamp_int32(int64 value)
{
    return int32(std::clamp<int64>(value, INT32_MIN, INT32_MAX));
}

inline clipping_rect box_of(int64 left, int64 top, int64 right, int64 bottom)
{
    return {clamp_int32(left), clamp_int32(top), clamp_int32(right), clamp_int32(bottom)};
}

// Sorts by rising keys what is nearly sorted as a rule; quick enough where it is not.
template <class Item, class Key>
void sort_nearly_sorted(Item* items, int32 count, Key key)
{
    int64 patience = 64 + 16 * int64(count);
    for (int32 i = 1; i < count && patience >= 0; i++) {
        const Item moved = items[i];
        const auto own = key(moved);
        int32 k = i;
        for (; k > 0 && key(items[k - 1]) > own; k--)
            items[k] = items[k - 1];
        items[k] = moved;
        patience -= i - k;
    }
    if (patience < 0)
        std::sort(items, items + count,
                  [&](const Item& a, const Item& b) { return key(a) < key(b); });
}

inline bool is_nan(const BPoint& point) { return !(point.x == point.x && point.y == point.y); }

inline bool is_nan(const BRect& rect)
{
    return is_nan(rect.LeftTop()) || is_nan(rect.RightBottom());
}

// The pixel that a coordinate lies on: rounded, halves upwards. Beyond 2^32 it stops there; NaN
// has to be sorted out before.
inline int64 pixel_at(double coordinate)
{
    const double far = 4294967296.0;
    const double value = (coordinate > -far ? coordinate < far ? coordinate : far : -far) + 0.5;
    const int64 whole = int64(value);
    return whole - (value < double(whole));
}

// 32-bit pixels at surface coordinates. `origin` is where pixel (0, 0) is or would be.
struct Raster {
    uintptr_t origin;
    ptrdiff_t pitch;

    uint32* At(int32 x, int32 y) const
    {
        return reinterpret_cast<uint32*>(origin + y * pitch + ptrdiff_t(x) * 4);
    }
};

// All pixels become one colour.
struct PlainPen {
    Raster raster;
    uint32 color;

    void Pixel(int32 x, int32 y) const { *raster.At(x, y) = color; }
    void Run(int32 y, int32 left, int32 right) const
    {
        fill_row(raster.At(left, y), color, right - left + 1);
    }
};

// Pixels take the brush's drawing mode and pattern.
struct BrushPen {
    Raster raster;
    const Brush& brush;

    void Pixel(int32 x, int32 y) const { brush.span(brush, raster.At(x, y), x, y, 1); }
    void Run(int32 y, int32 left, int32 right) const
    {
        brush.span(brush, raster.At(left, y), left, y, right - left + 1);
    }
};

// Marks pixels in a coverage mask.
struct MaskPen {
    uintptr_t origin;
    ptrdiff_t pitch;

    uint8* At(int32 x, int32 y) const { return reinterpret_cast<uint8*>(origin + y * pitch + x); }
    void Pixel(int32 x, int32 y) const { *At(x, y) = 255; }
    void Run(int32 y, int32 left, int32 right) const
    {
        std::fill_n(At(left, y), right - left + 1, uint8(255));
    }
};

// One run of a row, cut to the box.
template <class Pen>
inline void draw_run(const Pen& pen, const clipping_rect& box, int32 y, int64 left, int64 right)
{
    left = std::max<int64>(left, box.left);
    right = std::min<int64>(right, box.right);
    if (left <= right)
        pen.Run(y, int32(left), int32(right));
}

template <class Pen>
inline void draw_box(const Pen& pen, const clipping_rect& box)
{
    if constexpr (std::is_same_v<Pen, PlainPen>) {
        fill_box(pen.raster.At(box.left, box.top), pen.raster.pitch, box.right - box.left + 1,
                 box.bottom - box.top + 1, pen.color);
    } else {
        for (int32 y = box.top; y <= box.bottom; y++)
            pen.Run(y, box.left, box.right);
    }
}

inline bool can_draw_directly(const Surface& surface)
{
    return (surface.space == B_RGBA32 || surface.space == B_RGB32) &&
           ((uintptr_t(surface.bits) | uint32(surface.bytesPerRow)) & 3) == 0;
}

// The pixels of `box` of a surface as 32-bit ones. For another colour space they are a copy;
// WriteBack() returns those that changed.
class Pixels32 {
public:
    Pixels32(const Surface& surface, const clipping_rect& box)
    {
        if (can_draw_directly(surface))
            raster = {uintptr_t(surface.bits), surface.bytesPerRow};
        else
            _Convert(surface, box);
    }
    // False when the space is unknown or memory runs out: nothing is to be drawn.
    bool Valid() const { return raster.origin != 0; }
    void WriteBack()
    {
        if (fCopy != nullptr)
            _WriteBack();
    }

    Raster raster = {0, 0};

private:
    void _Convert(const Surface& surface, const clipping_rect& box);
    void _WriteBack();

    std::unique_ptr<uint32[]> fCopy;  // pixels to draw on, then the same as they were
    const Surface* fSurface = nullptr;
    clipping_rect fBox = kNoPixels;
};

// Where a shape that reaches as far as `reach` may meet the target.
inline clipping_rect touched_box(const Target& target, const clipping_rect& reach)
{
    if (target.surface == nullptr || target.surface->bits == nullptr)
        return kNoPixels;
    const clipping_rect surface = {0, 0, target.surface->width - 1, target.surface->height - 1};
    return intersect(intersect(reach, target.bounds), surface);
}

// Calls draw(box) for every part of the target that `reach` meets; gives the box around them.
template <class Draw>
inline clipping_rect for_each_box(const Target& target, const clipping_rect& touched, Draw draw)
{
    clipping_rect changed = kNoPixels;
    for (int32 i = 0; i < target.count; i++) {
        const clipping_rect box = intersect(target.clip[i], touched);
        if (is_empty(box))
            continue;
        draw(box);
        changed = unite(changed, box);
    }
    return changed;
}

// Calls draw(pen, box) for every part of the target; the shape's pixels lie inside `reach`.
template <class Draw>
inline clipping_rect paint_shape(const Target& target, const Brush& brush,
                                 const clipping_rect& reach, Draw draw)
{
    const clipping_rect touched = touched_box(target, reach);
    if (is_empty(touched) || brush.empty)
        return kNoPixels;
    Pixels32 pixels(*target.surface, touched);
    if (!pixels.Valid())
        return kNoPixels;
    const clipping_rect changed = for_each_box(target, touched, [&](const clipping_rect& box) {
        if (brush.plain)
            draw(PlainPen{pixels.raster, brush.color}, box);
        else
            draw(BrushPen{pixels.raster, brush}, box);
    });
    pixels.WriteBack();
    return changed;
}

// A coverage mask over a box, all clear.
class Mask {
public:
    explicit Mask(const clipping_rect& box);
    bool Valid() const { return fBits != nullptr; }
    MaskPen Pen() const;
    clipping_rect Lay(const Target& target, const Brush& brush) const;

private:
    clipping_rect fBox;
    ptrdiff_t fPitch;
    std::unique_ptr<uint8[]> fBits;
};

// The same as paint_shape() for a shape of parts that share pixels: with a mode in which painting
// twice shows, the parts first gather in a mask.
template <class Draw>
inline clipping_rect paint_parts(const Target& target, const Brush& brush,
                                 const clipping_rect& reach, Draw draw)
{
    if (brush.repeats)
        return paint_shape(target, brush, reach, draw);
    const clipping_rect touched = touched_box(target, reach);
    if (is_empty(touched) || brush.empty)
        return kNoPixels;
    const Mask mask(touched);
    if (!mask.Valid())
        return kNoPixels;
    draw(mask.Pen(), touched);
    return mask.Lay(target, brush);
}

clipping_rect fill_mask(const Target& target, const Brush& brush, const uint8* coverage,
                        ptrdiff_t bytesPerRow, int32 x, int32 y, int32 width, int32 height);

}  // namespace server

#endif  // SERVER_PAINTER_RASTER_H
