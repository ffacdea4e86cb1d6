// Bitmaps larger or smaller than they are, with colours mixed between pixels: the pixels of a row
// with one another, and rows with rows. Both with colours multiplied by alpha, so that what is
// transparent has no colour.

#include "server/painter/PainterScale.h"

#include <memory>
#include <new>

#include "server/painter/PainterRows.h"

namespace server {

namespace {

const uint32 kAlpha = 0xFF000000;

// The two pixels that one of the target lies between, and how much of 256 the second one counts.
struct Between {
    int32 first, second;
    int32 weight;
};

Between between(const Axis& axis, int64 at)
{
    const double place = std::clamp(axis.Place(at) - 0.5, double(axis.first), double(axis.last));
    const int32 first = std::min(int32(place), axis.last);
    return {first, std::min(first + 1, axis.last), int32((place - first) * 256 + 0.5)};
}

uint32 divided(uint32 pixel)
{
    const uint32 alpha = pixel >> 24;
    if (alpha == 0 || alpha == 255)
        return pixel;
    uint32 plain = pixel & kAlpha;
    for (int shift = 0; shift < 24; shift += 8)
        plain |= std::min(((pixel >> shift & 255) * 255 + alpha / 2) / alpha, 255u) << shift;
    return plain;
}

template <class Item>
std::unique_ptr<Item[]> array_of(int32 count)
{
    return std::unique_ptr<Item[]>(new (std::nothrow) Item[size_t(count)]);
}

// The target's rows from one column to another. Where it has more of them than the bitmap, each row
// of the bitmap becomes as wide as the target once, before rows are mixed; else rows are first.
class Scaler {
public:
    Scaler(const Surface& source, const Axis& columns, const Axis& rows, int32 left, int32 right)
        : fCode(row_code()),
          fSource(source),
          fRows(rows),
          fFirst(between(columns, left).first),
          fUsed(between(columns, right).second - fFirst + 1),
          fCount(right - left + 1),
          fOpaque(source.space == B_RGB32),
          fColumnsFirst(rows.to_size >= rows.size),
          fPicks(fUsed == 1 || fUsed / 3 > fCount),
          fWidth(fPicks ? 2 * fCount : fUsed),
          fIndexes(array_of<int32>(fCount)),
          fWeights(array_of<uint32>(fCount)),
          fPicked(array_of<int32>(fPicks ? fWidth : 0)),
          fMixed(array_of<uint32>(fWidth))
    {
        for (Held& held : fHeld)
            held.pixels = array_of<uint32>(fColumnsFirst ? fCount : fWidth);
        if (Valid())
            _PlaceColumns(columns, left);
    }

    bool Valid() const
    {
        return fIndexes != nullptr && fWeights != nullptr && fPicked != nullptr &&
               fMixed != nullptr && fHeld[0].pixels != nullptr && fHeld[1].pixels != nullptr;
    }
    bool IsOpaque() const { return fOpaque; }

    // The pixels of row `y` of the target, multiplied by their alpha.
    void Row(int32 y, uint32* pixels)
    {
        const Between place = between(fRows, y);
        const uint32* above = _Row(place.first, place.second);
        const uint32* below = _Row(place.second, place.first);
        if (fColumnsFirst) {
            fCode.mixRows(above, below, place.weight, _Set(), pixels, fCount);
        } else {
            fCode.mixRows(above, below, place.weight, 0, fMixed.get(), fWidth);
            _MixColumns(fMixed.get(), pixels);
        }
    }

private:
    struct Held {
        std::unique_ptr<uint32[]> pixels;
        int32 row = -1;
    };

    uint32 _Set() const { return fOpaque ? kAlpha : 0; }

    void _PlaceColumns(const Axis& columns, int32 left)
    {
        for (int32 i = 0; i < fCount; i++) {
            Between place = between(columns, int64(left) + i);
            if (fPicks) {
                fPicked[2 * i] = place.first - fFirst;
                fPicked[2 * i + 1] = place.second - fFirst;
                place.first = fFirst + 2 * i;
            } else if (place.second == place.first) {
                // The bitmap's last column has none behind it.
                place.first--;
                place.weight = 256;
            }
            fIndexes[i] = place.first - fFirst;
            fWeights[i] = uint32(place.weight) << 16 | uint32(place.weight);
        }
    }

    void _MixColumns(const uint32* from, uint32* to) const
    {
        fCode.mixColumns(from, {fIndexes.get(), fWeights.get()}, _Set(), to, fCount);
    }

    // The pixels of a row of the bitmap that count, multiplied. May use `to`, and fMixed.
    const uint32* _Pixels(int32 index, uint32* to) const
    {
        const auto* from = reinterpret_cast<const uint32*>(
            fSource.bits + ptrdiff_t(index) * fSource.bytesPerRow + ptrdiff_t(fFirst) * 4);
        if (fPicks) {
            for (int32 i = 0; i < fWidth; i++)
                to[i] = from[fPicked[i]];
            from = to;
        }
        if (fOpaque)
            return from;
        fCode.multiply(from, to, fWidth);
        return to;
    }

    // A row of the bitmap, ready to be mixed with another; that of row `other` stays.
    const uint32* _Row(int32 index, int32 other)
    {
        if (fOpaque && !fColumnsFirst && !fPicks)
            return _Pixels(index, nullptr);
        for (const Held& held : fHeld) {
            if (held.row == index)
                return held.pixels.get();
        }
        Held& held = fHeld[fHeld[0].row == other ? 1 : 0];
        held.row = index;
        if (fColumnsFirst)
            _MixColumns(_Pixels(index, fMixed.get()), held.pixels.get());
        else
            _Pixels(index, held.pixels.get());
        return held.pixels.get();
    }

    const RowCode& fCode;
    const Surface& fSource;
    const Axis& fRows;
    const int32 fFirst, fUsed;  // of the bitmap's columns
    const int32 fCount;         // of the target's
    const bool fOpaque, fColumnsFirst;
    const bool fPicks;                        // of so many columns only those that are mixed count
    const int32 fWidth;                       // of a row of the bitmap, as far as it counts
    const std::unique_ptr<int32[]> fIndexes;  // a pixel's columns among those that count
    const std::unique_ptr<uint32[]> fWeights;
    const std::unique_ptr<int32[]> fPicked;
    const std::unique_ptr<uint32[]> fMixed;
    Held fHeld[2];
};

}  // namespace

static bool lies_over(const Paint& paint)
{
    return paint.mode == B_OP_ALPHA && paint.alphaSource == B_PIXEL_ALPHA &&
           paint.alphaFunction == B_ALPHA_OVERLAY;
}

// The pixels of the target, from `first` to `last`, that show one of the bitmap.
static void cut(const Axis& axis, int32* first, int32* last)
{
    while (*first <= *last && !axis.Shows(*first))
        ++*first;
    while (*first <= *last && !axis.Shows(*last))
        --*last;
}

clipping_rect draw_smoothly(const Target& target, const Paint& paint, const Surface& source,
                            const Axis& columns, const Axis& rows)
{
    if (uint32(paint.mode) > B_OP_ALPHA || columns.first > columns.last || rows.first > rows.last)
        return kNoPixels;
    clipping_rect reach = touched_box(
        target,
        box_of(columns.to, rows.to, columns.to + columns.to_size - 1, rows.to + rows.to_size - 1));
    cut(columns, &reach.left, &reach.right);
    cut(rows, &reach.top, &reach.bottom);
    if (is_empty(reach))
        return kNoPixels;
    Paint bitmapPaint = paint;
    bitmapPaint.pattern = B_MIXED_COLORS;
    bitmapPaint.gradient = nullptr;
    const Brush brush(bitmapPaint);
    Pixels32 pixels(*target.surface, reach);
    const auto row = array_of<uint32>(reach.right - reach.left + 1);
    if (!pixels.Valid() || row == nullptr)
        return kNoPixels;
    const clipping_rect changed = for_each_box(target, reach, [&](const clipping_rect& box) {
        Scaler scaler(source, columns, rows, box.left, box.right);
        if (!scaler.Valid())
            return;
        const bool copies = paint.mode == B_OP_COPY && scaler.IsOpaque();
        const int32 count = box.right - box.left + 1;
        for (int32 y = box.top; y <= box.bottom; y++) {
            uint32* to = pixels.raster.At(box.left, y);
            scaler.Row(y, copies ? to : row.get());
            if (copies)
                continue;
            if (lies_over(paint)) {
                row_code().layMultiplied(row.get(), to, count);
                continue;
            }
            if (!scaler.IsOpaque())
                std::transform(row.get(), row.get() + count, row.get(), divided);
            brush.row(brush, to, row.get(), count);
        }
    });
    pixels.WriteBack();
    return changed;
}

}  // namespace server
