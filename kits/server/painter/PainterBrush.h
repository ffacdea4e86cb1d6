#ifndef SERVER_PAINTER_BRUSH_H
#define SERVER_PAINTER_BRUSH_H

#include <server/painter/Painter.h>

#include <cstring>
#include <cwchar>
#include <memory>

namespace server {

struct GradientColors;

inline uint32 pixel_of(const rgb_color& color)
{
    return uint32(color.alpha) << 24 | uint32(color.red) << 16 | uint32(color.green) << 8 |
           color.blue;
}

// A Paint made ready for B, G, R, A pixels: which function writes a run of them, and what it needs.
struct Brush {
    // Paints `count` pixels of row `y`, the first of them at column `x`.
    using Span = void (*)(const Brush& brush, uint32* pixels, int32 x, int32 y, int32 count);
    // Paints `count` pixels of a bitmap over those of the target.
    using Row = void (*)(const Brush& brush, uint32* pixels, const uint32* source, int32 count);

    explicit Brush(const Paint& paint) : color(pixel_of(paint.high)), paint(paint)
    {
        uint64 bits;
        memcpy(&bits, paint.pattern.data, sizeof(bits));
        plain = paint.mode == B_OP_COPY && bits == ~uint64(0) && paint.gradient == nullptr;
        if (!plain)
            _Prepare();
    }
    ~Brush()
    {
        if (gradient != nullptr)
            _FreeGradient();
    }
    Brush(const Brush&) = delete;

    bool plain;           // every pixel becomes `color`, whatever it was
    bool empty = false;   // no pixel changes
    bool repeats = true;  // painting a pixel twice is the same as once
    uint32 color;         // of all pixels when the pattern is solid
    uint32 high, low;     // these and what follows only when not plain from the start
    Span span;
    Row row;
    const Paint& paint;
    const GradientColors* gradient = nullptr;  // owned

private:
    void _Prepare();
    void _FreeGradient();
};

// Moves from `below` to `above` by `weight` / 255, all four bytes.
inline uint32 mix_pixels(uint32 below, uint32 above, uint32 weight)
{
    const uint32 rest = 255 - weight;
    uint32 even = (below & 0xFF00FF) * rest + (above & 0xFF00FF) * weight + 0x800080;
    uint32 odd = (below >> 8 & 0xFF00FF) * rest + (above >> 8 & 0xFF00FF) * weight + 0x800080;
    even = (even + (even >> 8 & 0xFF00FF)) >> 8 & 0xFF00FF;
    odd = (odd + (odd >> 8 & 0xFF00FF)) & 0xFF00FF00;
    return even | odd;
}

inline void fill_row(uint32* pixels, uint32 color, int32 count)
{
    static_assert(sizeof(wchar_t) == sizeof(uint32));
    if (count < 16) {
        for (int32 i = 0; i < count; i++)
            pixels[i] = color;
    } else {
        // The C library picks the widest stores that the processor has.
        wmemset(reinterpret_cast<wchar_t*>(pixels), wchar_t(color), size_t(count));
    }
}

// A rectangle of one colour, rows `pitch` bytes apart.
void fill_box(uint32* pixels, ptrdiff_t pitch, int32 width, int32 height, uint32 color);

// The same for many rows of a surface in their whole width, with what pads them. False, and nothing
// done, when they are few.
bool fill_whole_rows(uint32* pixels, ptrdiff_t pitch, int32 width, int32 height, uint32 color);

}  // namespace server

#endif  // SERVER_PAINTER_BRUSH_H
