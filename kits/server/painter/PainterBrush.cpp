// The drawing modes. Each is a function of two pixels, written without branches so that the loops
// around it become vector code.

#include "server/painter/PainterBrush.h"

#include <Gradient.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "server/painter/PainterGradient.h"
#include "server/painter/PainterRows.h"

namespace server {

namespace {

const uint32 kAlpha = 0xFF000000;
const uint32 kTops = 0x80808080;  // top bits of the four bytes
const int32 kChunk = 256;         // pixels worked on in one go

uint32 select(uint32 mask, uint32 ifSet, uint32 ifClear)
{
    return (ifSet & mask) | (ifClear & ~mask);
}

// All bits of each byte whose top bit is set in `tops`.
uint32 spread(uint32 tops) { return (tops << 1) - (tops >> 7); }

uint32 add_bytes(uint32 a, uint32 b)
{
    const uint32 sum = ((a & ~kTops) + (b & ~kTops)) ^ ((a ^ b) & kTops);
    const uint32 carries = ((a & b) | ((a | b) & ~sum)) & kTops;
    return sum | spread(carries);
}

uint32 subtract_bytes(uint32 a, uint32 b)
{
    const uint32 difference = ((a | kTops) - (b & ~kTops)) ^ ((a ^ ~b) & kTops);
    const uint32 borrows = ((~a & b) | (~(a ^ b) & difference)) & kTops;
    return difference & ~spread(borrows);
}

uint32 min_bytes(uint32 a, uint32 b) { return a - subtract_bytes(a, b); }

uint32 max_bytes(uint32 a, uint32 b) { return b + subtract_bytes(a, b); }

uint32 average_bytes(uint32 a, uint32 b) { return (a & b) + (((a ^ b) >> 1) & ~kTops); }

// The colour part of one, with the greater alpha of both pixels.
uint32 with_max_alpha(uint32 colors, uint32 a, uint32 b)
{
    return (colors & ~kAlpha) | std::max(a & kAlpha, b & kAlpha);
}

// One pixel of a bitmap that OVER and the modes like it leave out, as a mask of all bits.
uint32 opaque_mask(uint32 source) { return (source & kAlpha) != 0 ? ~0u : 0; }

// In every mode below, `below` is the target's pixel and `source` the paint's. kMasked modes
// paint only where the pattern takes the high colour and where a bitmap is not transparent;
// kLeavesOut modes follow the whole pattern, but not a bitmap's transparent pixels.
struct Copy {
    static const bool kMasked = false, kLeavesOut = false;
    static uint32 Apply(const Brush&, uint32, uint32 source) { return source; }
};

struct Over {
    static const bool kMasked = true, kLeavesOut = true;
    static uint32 Apply(const Brush&, uint32, uint32 source) { return source; }
};

struct Erase {
    static const bool kMasked = true, kLeavesOut = true;
    static uint32 Apply(const Brush& brush, uint32, uint32) { return brush.low; }
};

struct Invert {
    static const bool kMasked = true, kLeavesOut = true;
    static uint32 Apply(const Brush&, uint32 below, uint32) { return below ^ ~kAlpha; }
};

struct Add {
    static const bool kMasked = false, kLeavesOut = true;
    static uint32 Apply(const Brush&, uint32 below, uint32 source)
    {
        return with_max_alpha(add_bytes(below, source), below, source);
    }
};

struct Subtract {
    static const bool kMasked = false, kLeavesOut = true;
    static uint32 Apply(const Brush&, uint32 below, uint32 source)
    {
        return with_max_alpha(subtract_bytes(below, source), below, source);
    }
};

struct Blend {
    static const bool kMasked = false, kLeavesOut = true;
    static uint32 Apply(const Brush&, uint32 below, uint32 source)
    {
        return with_max_alpha(average_bytes(below, source), below, source);
    }
};

struct Min {
    static const bool kMasked = false, kLeavesOut = true;
    static uint32 Apply(const Brush&, uint32 below, uint32 source)
    {
        return with_max_alpha(min_bytes(below, source), below, source);
    }
};

struct Max {
    static const bool kMasked = false, kLeavesOut = true;
    static uint32 Apply(const Brush&, uint32 below, uint32 source)
    {
        return max_bytes(below, source);
    }
};

// Exchanges the high and the low colour in the target.
struct Select {
    static const bool kMasked = true, kLeavesOut = true;
    static uint32 Apply(const Brush& brush, uint32 below, uint32)
    {
        const uint32 isHigh = ((below ^ brush.high) & ~kAlpha) == 0 ? ~0u : 0;
        const uint32 isLow = ((below ^ brush.low) & ~kAlpha) == 0 ? ~0u : 0;
        return select(isHigh, brush.low, select(isLow, brush.high, below));
    }
};

// Over a background that counts as opaque; only what becomes of the alpha byte looks at its own.
struct Overlay {
    static const bool kMasked = false, kLeavesOut = false;
    static uint32 Apply(const Brush&, uint32 below, uint32 source)
    {
        return mix_pixels(below, source | kAlpha, source >> 24);
    }
};

struct Composite {
    static const bool kMasked = false, kLeavesOut = false;
    static uint32 Apply(const Brush& brush, uint32 below, uint32 source);
};

int32 blended_component(alpha_function function, int32 source, int32 below)
{
    switch (function) {
        case B_ALPHA_COMPOSITE_DIFFERENCE:
            return std::abs(source - below);
        case B_ALPHA_COMPOSITE_LIGHTEN:
            return std::max(source, below);
        case B_ALPHA_COMPOSITE_DARKEN:
            return std::min(source, below);
        default:
            return source;
    }
}

// How much of the source and of the target is kept, each of 255, by Porter and Duff's operators.
void composite_weights(alpha_function function, int32 sourceAlpha, int32 belowAlpha,
                       int32* keepSource, int32* keepBelow)
{
    *keepSource = 255;
    *keepBelow = 255 - sourceAlpha;
    switch (function) {
        case B_ALPHA_COMPOSITE_SOURCE_IN:
            *keepSource = belowAlpha;
            *keepBelow = 0;
            break;
        case B_ALPHA_COMPOSITE_SOURCE_OUT:
            *keepSource = 255 - belowAlpha;
            *keepBelow = 0;
            break;
        case B_ALPHA_COMPOSITE_SOURCE_ATOP:
            *keepSource = belowAlpha;
            break;
        case B_ALPHA_COMPOSITE_DESTINATION_OVER:
            *keepSource = 255 - belowAlpha;
            *keepBelow = 255;
            break;
        case B_ALPHA_COMPOSITE_DESTINATION_IN:
            *keepSource = 0;
            *keepBelow = sourceAlpha;
            break;
        case B_ALPHA_COMPOSITE_DESTINATION_OUT:
            *keepSource = 0;
            break;
        case B_ALPHA_COMPOSITE_DESTINATION_ATOP:
            *keepSource = 255 - belowAlpha;
            *keepBelow = sourceAlpha;
            break;
        case B_ALPHA_COMPOSITE_XOR:
            *keepSource = 255 - belowAlpha;
            break;
        case B_ALPHA_COMPOSITE_CLEAR:
            *keepSource = *keepBelow = 0;
            break;
        default:
            break;
    }
}

uint32 Composite::Apply(const Brush& brush, uint32 below, uint32 source)
{
    const alpha_function function = brush.paint.alphaFunction;
    const int32 sourceAlpha = source >> 24, belowAlpha = below >> 24;
    int32 keepSource, keepBelow;
    composite_weights(function, sourceAlpha, belowAlpha, &keepSource, &keepBelow);
    const int32 sourceWeight = sourceAlpha * keepSource, belowWeight = belowAlpha * keepBelow;
    const int32 weight = sourceWeight + belowWeight;
    if (weight == 0)
        return 0;
    uint32 result = uint32((weight + 127) / 255) << 24;
    for (int shift = 0; shift < 24; shift += 8) {
        const int32 s = source >> shift & 255, d = below >> shift & 255;
        const int32 mixed = blended_component(function, s, d);
        // Where both are present the source's colour counts as mixed with the target's.
        const int32 color = s + (mixed - s) * belowAlpha / 255;
        result |= uint32((color * sourceWeight + d * belowWeight + weight / 2) / weight) << shift;
    }
    return result;
}

template <class Mode>
void solid_span(const Brush& brush, uint32* pixels, int32, int32, int32 count)
{
    const uint32 color = brush.color;
    for (int32 i = 0; i < count; i++)
        pixels[i] = Mode::Apply(brush, pixels[i], color);
}

template <class Mode>
void pattern_span(const Brush& brush, uint32* pixels, int32 x, int32 y, int32 count)
{
    const auto phase = [](float start) {
        return start == start ? int64(std::clamp(double(start), -1e9, 1e9)) : 0;
    };
    const uint8 bits = brush.paint.pattern.data[(y - phase(brush.paint.patternPhase.y)) & 7];
    const int64 firstX = x - phase(brush.paint.patternPhase.x);
    uint32 sources[8], masks[8];
    for (int i = 0; i < 8; i++) {
        masks[i] = 0 - uint32(bits >> (7 - ((firstX + i) & 7)) & 1);
        sources[i] = select(masks[i], brush.high, brush.low);
        if (!Mode::kMasked)
            masks[i] = ~0u;
    }
    const auto apply = [&](uint32& pixel, int i) {
        pixel = select(masks[i], Mode::Apply(brush, pixel, sources[i]), pixel);
    };
    for (; count >= 8; count -= 8, pixels += 8) {
        for (int i = 0; i < 8; i++)
            apply(pixels[i], i);
    }
    for (int i = 0; i < count; i++)
        apply(pixels[i], i);
}

// The same where each of the pattern's pixels is several of the target's.
template <class Mode>
void wide_pattern_span(const Brush& brush, uint32* pixels, int32 x, int32 y, int32 count)
{
    const Paint& paint = brush.paint;
    const auto place = [&](int32 at, float phase) {
        const double start = phase == phase ? std::clamp(double(phase), -1e9, 1e9) : 0;
        const double unit = std::floor((double(at) + 0.5 - 1.0 / 512) / double(paint.unit));
        return int32((int64(unit) - int64(start)) & 7);
    };
    const uint8 bits = paint.pattern.data[place(y, paint.patternPhase.y)];
    for (int32 i = 0; i < count; i++) {
        const uint32 mask = 0 - uint32(bits >> (7 - place(x + i, paint.patternPhase.x)) & 1);
        const uint32 painted = Mode::Apply(brush, pixels[i], select(mask, brush.high, brush.low));
        pixels[i] = Mode::kMasked ? select(mask, painted, pixels[i]) : painted;
    }
}

template <class Mode>
void bitmap_row(const Brush& brush, uint32* pixels, const uint32* source, int32 count)
{
    for (int32 i = 0; i < count; i++) {
        const uint32 painted = Mode::Apply(brush, pixels[i], source[i]);
        pixels[i] = Mode::kLeavesOut ? select(opaque_mask(source[i]), painted, pixels[i]) : painted;
    }
}

template <class Mode>
[[gnu::noinline]] void mix_row(const Brush& brush, uint32* __restrict pixels,
                               const uint32* __restrict source, int32 count)
{
    for (int32 i = 0; i < count; i++)
        pixels[i] = Mode::Apply(brush, pixels[i], source[i]);
}

// Calls opaque(at, count), clear(at, count) or mixed(at, count) for runs of pixels that are so.
template <class Opaque, class Clear, class Mixed>
void by_alpha(const uint32* pixels, int32 count, Opaque opaque, Clear clear, Mixed mixed)
{
    const int32 block = 8;
    const auto kind_at = [=](int32 at) {
        uint64 pairs[block / 2];
        memcpy(pairs, pixels + at, sizeof(pairs));
        const uint64 alpha = 0xFF000000FF000000;
        if ((pairs[0] & pairs[1] & pairs[2] & pairs[3] & alpha) == alpha)
            return 2;
        return ((pairs[0] | pairs[1] | pairs[2] | pairs[3]) & alpha) == 0 ? 0 : 1;
    };
    int32 at = 0;
    while (at + block <= count) {
        const int32 start = at, kind = kind_at(at);
        do {
            at += block;
        } while (at + block <= count && kind_at(at) == kind);
        if (kind == 2)
            opaque(start, at - start);
        else if (kind == 0)
            clear(start, at - start);
        else
            mixed(start, at - start);
    }
    if (at < count)
        mixed(at, count - at);
}

// A bitmap in B_OP_ALPHA by its own alpha, which is all or nothing for most pixels.
template <class Mode>
void alpha_row(const Brush& brush, uint32* pixels, const uint32* source, int32 count)
{
    by_alpha(
        source, count,
        [=](int32 at, int32 part) { memcpy(pixels + at, source + at, size_t(part) * 4); },
        [](int32, int32) {},
        [&](int32 at, int32 part) { mix_row<Mode>(brush, pixels + at, source + at, part); });
}

void overlay_row(const Brush&, uint32* pixels, const uint32* source, int32 count)
{
    row_code().layOver(source, pixels, count);
}

// A bitmap in B_OP_ALPHA whose own alpha gives way to that of the high colour.
template <class Mode>
void constant_alpha_row(const Brush& brush, uint32* pixels, const uint32* source, int32 count)
{
    const uint32 alpha = brush.high & kAlpha;
    for (int32 i = 0; i < count; i++)
        pixels[i] = Mode::Apply(brush, pixels[i], (source[i] & ~kAlpha) | alpha);
}

void gradient_span(const Brush& brush, uint32* pixels, int32 x, int32 y, int32 count)
{
    uint32 colors[kChunk];
    while (count > 0) {
        const int32 part = std::min(count, kChunk);
        brush.gradient->Row(colors, x, y, part);
        brush.row(brush, pixels, colors, part);
        pixels += part;
        x += part;
        count -= part;
    }
}

struct ModeRow {
    Brush::Span solid;
    Brush::Span pattern;
    Brush::Span widePattern;
    Brush::Row row;
    bool masked;
    bool repeats;
};

template <class Mode>
constexpr ModeRow mode_row(bool repeats)
{
    return {solid_span<Mode>, pattern_span<Mode>, wide_pattern_span<Mode>,
            bitmap_row<Mode>, Mode::kMasked,      repeats};
}

const ModeRow kModes[] = {
    mode_row<Copy>(true),       // B_OP_COPY
    mode_row<Over>(true),       // B_OP_OVER
    mode_row<Erase>(true),      // B_OP_ERASE
    mode_row<Invert>(false),    // B_OP_INVERT
    mode_row<Add>(false),       // B_OP_ADD
    mode_row<Subtract>(false),  // B_OP_SUBTRACT
    mode_row<Blend>(false),     // B_OP_BLEND
    mode_row<Min>(true),        // B_OP_MIN
    mode_row<Max>(true),        // B_OP_MAX
    mode_row<Select>(false),    // B_OP_SELECT
    mode_row<Overlay>(false),   // B_OP_ALPHA
};
static_assert(std::size(kModes) == B_OP_ALPHA + 1, "one row per drawing mode");

const ModeRow kComposite = mode_row<Composite>(false);

enum class Pattern { High, Low, Mixed };

Pattern kind_of(const pattern& bits)
{
    uint64 all;
    memcpy(&all, bits.data, sizeof(all));
    return all == ~uint64(0) ? Pattern::High : all == 0 ? Pattern::Low : Pattern::Mixed;
}

}  // namespace

void Brush::_FreeGradient() { delete gradient; }

void Brush::_Prepare()
{
    high = color;
    low = pixel_of(paint.low);
    const uint32 index = uint32(paint.mode);
    if (index > B_OP_ALPHA) {
        empty = true;
        return;
    }
    const bool composite = index == B_OP_ALPHA && paint.alphaFunction != B_ALPHA_OVERLAY;
    const ModeRow& mode = composite ? kComposite : kModes[index];
    row = mode.row;
    repeats = mode.repeats;
    if (index == B_OP_ALPHA && (!composite || paint.alphaFunction == B_ALPHA_COMPOSITE))
        row = composite ? alpha_row<Composite> : overlay_row;
    if (index == B_OP_ALPHA && paint.alphaSource == B_CONSTANT_ALPHA) {
        low = (low & ~kAlpha) | (high & kAlpha);
        row = composite ? constant_alpha_row<Composite> : constant_alpha_row<Overlay>;
    }

    if (paint.gradient != nullptr && !(mode.masked && index != B_OP_OVER)) {
        gradient = new GradientColors(*paint.gradient, paint.unit);
        span = gradient_span;
        return;
    }
    const Pattern kind = kind_of(paint.pattern);
    span = kind != Pattern::Mixed ? mode.solid : paint.unit == 1 ? mode.pattern : mode.widePattern;
    color = kind == Pattern::Low ? low : high;
    const uint32 transparent = pixel_of(B_TRANSPARENT_COLOR);
    empty = (mode.masked && kind == Pattern::Low) || (index == B_OP_OVER && high == transparent) ||
            (index == B_OP_ALPHA && !composite && kind != Pattern::Mixed && color >> 24 == 0);
    plain = kind != Pattern::Mixed && (index == B_OP_COPY || index == B_OP_OVER ||
                                       (index == B_OP_ALPHA && !composite && color >> 24 == 255));
    if (index == B_OP_ERASE && kind == Pattern::High) {
        color = low;
        plain = true;
    }
    repeats = repeats || plain;
}

}  // namespace server
