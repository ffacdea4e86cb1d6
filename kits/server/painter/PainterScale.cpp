// Bitmaps larger or smaller than they are, with colours mixed between pixels. Rows are mixed first,
// then columns; both with colours multiplied by alpha, so that what is transparent has no colour.

#include "server/painter/PainterScale.h"

#include <cstring>
#include <memory>
#include <new>

namespace server {

namespace {

const uint32 kAlpha = 0xFF000000;

typedef uint8 Bytes8 __attribute__((vector_size(8)));
typedef uint16 Words8 __attribute__((vector_size(16)));

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

uint32 multiplied(uint32 pixel) { return mix_pixels(0, pixel | kAlpha, pixel >> 24); }

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

// For whole rows, written so that they become vector code: not inline where two pointers have to
// be known to be apart.

[[gnu::noinline]] void multiply_run(const uint32* __restrict from, uint32* __restrict to,
                                    int32 count)
{
    for (int32 i = 0; i < count; i++)
        to[i] = multiplied(from[i]);
}

void multiply_row(const uint32* from, uint32* to, int32 count)
{
    by_alpha(
        from, count, [=](int32 at, int32 part) { memcpy(to + at, from + at, size_t(part) * 4); },
        [=](int32 at, int32 part) { memset(to + at, 0, size_t(part) * 4); },
        [=](int32 at, int32 part) { multiply_run(from + at, to + at, part); });
}

[[gnu::noinline]] void mix_rows(const uint8* __restrict above, const uint8* __restrict below,
                                int32 weight, uint8* __restrict to, int32 bytes)
{
    const uint16 rest = uint16(256 - weight), part = uint16(weight);
    for (int32 i = 0; i < bytes; i++)
        to[i] = uint8(uint16(uint16(above[i] * rest) + uint16(below[i] * part)) >> 8);
}

[[gnu::noinline]] void lay_run(uint32* __restrict pixels, const uint32* __restrict row, int32 count)
{
    for (int32 i = 0; i < count; i++)
        pixels[i] = row[i] + mix_pixels(0, pixels[i], 255 - (row[i] >> 24));
}

// Lays a row that was multiplied over pixels that count as opaque.
void lay_over(uint32* pixels, const uint32* row, int32 count)
{
    by_alpha(
        row, count, [=](int32 at, int32 part) { memcpy(pixels + at, row + at, size_t(part) * 4); },
        [](int32, int32) {}, [=](int32 at, int32 part) { lay_run(pixels + at, row + at, part); });
}

class Scaler {
public:
    Scaler(const Surface& source, const Axis& columns, const Axis& rows, int32 left, int32 right)
        : fSource(source), fRows(rows), fLeft(left), fOpaque(source.space == B_RGB32)
    {
        const int32 count = right - left + 1;
        fFirst = between(columns, left).first;
        const int32 last = between(columns, right).second;
        fCount = last - fFirst + 1;
        // One more than there are, so that a pixel always has one behind it.
        const size_t width = size_t(fCount) + 1;
        fColumns.reset(new (std::nothrow) Column[size_t(count)]);
        fMixed.reset(new (std::nothrow) uint32[width]);
        for (Held& held : fHeld)
            held.pixels.reset(new (std::nothrow) uint32[width]);
        if (!Valid())
            return;
        for (int32 i = 0; i < count; i++) {
            const Between place = between(columns, int64(left) + i);
            const uint16 weight = uint16(place.weight), rest = uint16(256 - place.weight);
            fColumns[i].index = place.first - fFirst;
            for (int k = 0; k < 8; k++)
                fColumns[i].weights[k] = k < 4 ? rest : weight;
        }
    }

    bool Valid() const
    {
        return fColumns != nullptr && fMixed != nullptr && fHeld[0].pixels != nullptr &&
               fHeld[1].pixels != nullptr;
    }
    bool IsOpaque() const { return fOpaque; }

    // The pixels of row `y` of the target, multiplied by their alpha.
    void Row(int32 y, int32 left, int32 right, uint32* __restrict pixels)
    {
        const Between place = between(fRows, y);
        const uint32* above = _Multiplied(place.first, place.second);
        if (place.weight != 0) {
            const uint32* below = _Multiplied(place.second, place.first);
            mix_rows(reinterpret_cast<const uint8*>(above), reinterpret_cast<const uint8*>(below),
                     place.weight, reinterpret_cast<uint8*>(fMixed.get()), fCount * 4);
        } else {
            memcpy(fMixed.get(), above, size_t(fCount) * 4);
        }
        fMixed[fCount] = fMixed[fCount - 1];
        const Column* columns = fColumns.get() - fLeft;
        const uint32* mixed = fMixed.get();
        const uint32 opaque = fOpaque ? kAlpha : 0;
        for (int32 x = left; x <= right; x++)
            pixels[x - left] = _Mix(mixed + columns[x].index, columns[x].weights) | opaque;
    }

private:
    struct Column {
        Words8 weights;
        int32 index;
    };
    struct Held {
        std::unique_ptr<uint32[]> pixels;
        int32 row = -1;
    };

    static uint32 _Mix(const uint32* pair, const Words8& weights)
    {
        Bytes8 bytes;
        memcpy(&bytes, pair, 8);
        // No sum is more than 255 * 256.
        Words8 words = __builtin_convertvector(bytes, Words8) * weights;
        words += __builtin_shuffle(words, Words8{4, 5, 6, 7, 4, 5, 6, 7});
        bytes = __builtin_convertvector(words >> 8, Bytes8);
        uint32 pixel;
        memcpy(&pixel, &bytes, 4);
        return pixel;
    }

    // A row of the bitmap, kept until another is needed; the one of `other` stays.
    const uint32* _Multiplied(int32 index, int32 other)
    {
        const auto* from = reinterpret_cast<const uint32*>(
            fSource.bits + ptrdiff_t(index) * fSource.bytesPerRow + ptrdiff_t(fFirst) * 4);
        if (fOpaque)
            return from;
        for (Held& held : fHeld) {
            if (held.row == index)
                return held.pixels.get();
        }
        Held& held = fHeld[fHeld[0].row == other ? 1 : 0];
        multiply_row(from, held.pixels.get(), fCount);
        held.row = index;
        return held.pixels.get();
    }

    const Surface& fSource;
    const Axis& fRows;
    const int32 fLeft;
    const bool fOpaque;
    int32 fFirst, fCount;  // of the bitmap's columns
    std::unique_ptr<Column[]> fColumns;
    std::unique_ptr<uint32[]> fMixed;
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
    Scaler scaler(source, columns, rows, reach.left, reach.right);
    if (!pixels.Valid() || !scaler.Valid())
        return kNoPixels;
    const std::unique_ptr<uint32[]> row(new (std::nothrow)
                                            uint32[size_t(reach.right - reach.left) + 1]);
    if (row == nullptr)
        return kNoPixels;
    const bool copies = paint.mode == B_OP_COPY && scaler.IsOpaque();
    const clipping_rect changed = for_each_box(target, reach, [&](const clipping_rect& box) {
        const int32 count = box.right - box.left + 1;
        for (int32 y = box.top; y <= box.bottom; y++) {
            uint32* to = pixels.raster.At(box.left, y);
            scaler.Row(y, box.left, box.right, copies ? to : row.get());
            if (copies)
                continue;
            if (lies_over(paint)) {
                lay_over(to, row.get(), count);
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
