// Colour spaces of bitmaps, each as a pair of functions from and to B, G, R, A pixels.

#include <server/painter/Painter.h>

#include <cstring>

#include "server/painter/PainterPaths.h"

namespace server {

namespace {

const uint32 kOpaque = 0xFF000000;
const uint32 kTransparent = 0x00777477;  // B_TRANSPARENT_MAGIC_RGBA32
const int32 kChunk = 256;

using Decode = void (*)(const uint8* row, int32 x, int32 count, uint32* pixels);
using Encode = void (*)(uint8* row, int32 x, int32 count, const uint32* pixels);

struct FormatRow {
    color_space space;
    int32 bits;  // a pixel
    Decode decode;
    Encode encode;
};

uint32 swap_32(uint32 value) { return __builtin_bswap32(value); }

uint16 swap_16(uint16 value) { return uint16(value << 8 | value >> 8); }

uint32 brightness(uint32 pixel)
{
    return (308 * (pixel >> 16 & 255) + 600 * (pixel >> 8 & 255) + 116 * (pixel & 255)) >> 10;
}

void decode_rgba32(const uint8* row, int32 x, int32 count, uint32* pixels)
{
    memcpy(pixels, row + ptrdiff_t(x) * 4, size_t(count) * 4);
}

void encode_rgba32(uint8* row, int32 x, int32 count, const uint32* pixels)
{
    memcpy(row + ptrdiff_t(x) * 4, pixels, size_t(count) * 4);
}

// Without alpha in memory only the magic value is transparent.
void decode_rgb32(const uint8* row, int32 x, int32 count, uint32* pixels)
{
    decode_rgba32(row, x, count, pixels);
    for (int32 i = 0; i < count; i++)
        pixels[i] |= pixels[i] == kTransparent ? 0 : kOpaque;
}

template <bool kHasAlpha>
void decode_32_big(const uint8* row, int32 x, int32 count, uint32* pixels)
{
    decode_rgba32(row, x, count, pixels);
    for (int32 i = 0; i < count; i++) {
        pixels[i] = swap_32(pixels[i]);
        if (!kHasAlpha)
            pixels[i] |= pixels[i] == kTransparent ? 0 : kOpaque;
    }
}

void encode_32_big(uint8* row, int32 x, int32 count, const uint32* pixels)
{
    for (int32 i = 0; i < count; i++) {
        const uint32 value = swap_32(pixels[i]);
        memcpy(row + (ptrdiff_t(x) + i) * 4, &value, 4);
    }
}

template <bool kBig>
void decode_rgb24(const uint8* row, int32 x, int32 count, uint32* pixels)
{
    row += ptrdiff_t(x) * 3;
    for (int32 i = 0; i < count; i++, row += 3)
        pixels[i] =
            kOpaque | uint32(row[kBig ? 0 : 2]) << 16 | uint32(row[1]) << 8 | row[kBig ? 2 : 0];
}

template <bool kBig>
void encode_rgb24(uint8* row, int32 x, int32 count, const uint32* pixels)
{
    row += ptrdiff_t(x) * 3;
    for (int32 i = 0; i < count; i++, row += 3) {
        row[kBig ? 0 : 2] = uint8(pixels[i] >> 16);
        row[1] = uint8(pixels[i] >> 8);
        row[kBig ? 2 : 0] = uint8(pixels[i]);
    }
}

// Five or six bits of a component become eight by repeating their top ones.
uint32 widen_5(uint32 value) { return value << 3 | value >> 2; }

struct Rgb16 {
    static uint32 Decode(uint16 value)
    {
        const uint32 green = value >> 5 & 63;
        return kOpaque | widen_5(value >> 11) << 16 | (green << 2 | green >> 4) << 8 |
               widen_5(value & 31);
    }
    static uint16 Encode(uint32 pixel)
    {
        return uint16((pixel >> 8 & 0xF800) | (pixel >> 5 & 0x07E0) | (pixel >> 3 & 0x001F));
    }
};

struct Rgb15 {
    static uint32 Decode(uint16 value)
    {
        return kOpaque | widen_5(value >> 10 & 31) << 16 | widen_5(value >> 5 & 31) << 8 |
               widen_5(value & 31);
    }
    static uint16 Encode(uint32 pixel)
    {
        return uint16((pixel >> 9 & 0x7C00) | (pixel >> 6 & 0x03E0) | (pixel >> 3 & 0x001F));
    }
};

struct Rgba15 {
    static uint32 Decode(uint16 value)
    {
        if (value == 0x39CE)  // B_TRANSPARENT_MAGIC_RGBA15
            return kTransparent;
        return Rgb15::Decode(value) & ((value & 0x8000) != 0 ? ~0u : ~kOpaque);
    }
    static uint16 Encode(uint32 pixel)
    {
        return uint16(Rgb15::Encode(pixel) | (pixel >> 31 << 15));
    }
};

template <class Space, bool kBig>
void decode_16(const uint8* row, int32 x, int32 count, uint32* pixels)
{
    for (int32 i = 0; i < count; i++) {
        uint16 value;
        memcpy(&value, row + (ptrdiff_t(x) + i) * 2, 2);
        pixels[i] = Space::Decode(kBig ? swap_16(value) : value);
    }
}

template <class Space, bool kBig>
void encode_16(uint8* row, int32 x, int32 count, const uint32* pixels)
{
    for (int32 i = 0; i < count; i++) {
        const uint16 value = Space::Encode(pixels[i]);
        const uint16 stored = kBig ? swap_16(value) : value;
        memcpy(row + (ptrdiff_t(x) + i) * 2, &stored, 2);
    }
}

void decode_cmap8(const uint8* row, int32 x, int32 count, uint32* pixels)
{
    const rgb_color* palette = SystemPalette();
    for (int32 i = 0; i < count; i++) {
        const uint8 index = row[x + i];
        pixels[i] = index == 255 ? kTransparent : pixel_of(palette[index]);
    }
}

void encode_cmap8(uint8* row, int32 x, int32 count, const uint32* pixels)
{
    for (int32 i = 0; i < count; i++) {
        const uint32 pixel = pixels[i];
        row[x + i] = PaletteIndexFor(uint8(pixel >> 16), uint8(pixel >> 8), uint8(pixel),
                                     uint8(pixel >> 24));
    }
}

void decode_gray8(const uint8* row, int32 x, int32 count, uint32* pixels)
{
    for (int32 i = 0; i < count; i++)
        pixels[i] = kOpaque | row[x + i] * 0x010101u;
}

void encode_gray8(uint8* row, int32 x, int32 count, const uint32* pixels)
{
    for (int32 i = 0; i < count; i++)
        row[x + i] = uint8(brightness(pixels[i]));
}

// A set bit is white; the top bit is the left pixel.
void decode_gray1(const uint8* row, int32 x, int32 count, uint32* pixels)
{
    for (int32 i = 0; i < count; i++)
        pixels[i] = (row[(x + i) >> 3] & (0x80 >> ((x + i) & 7))) != 0 ? 0xFFFFFFFF : kOpaque;
}

void encode_gray1(uint8* row, int32 x, int32 count, const uint32* pixels)
{
    for (int32 i = 0; i < count; i++) {
        const uint8 bit = uint8(0x80 >> ((x + i) & 7));
        uint8& byte = row[(x + i) >> 3];
        byte = uint8(brightness(pixels[i]) >= 128 ? byte | bit : byte & ~bit);
    }
}

const FormatRow kFormats[] = {
    {B_RGBA32, 32, decode_rgba32, encode_rgba32},
    {B_RGB32, 32, decode_rgb32, encode_rgba32},
    {B_RGB24, 24, decode_rgb24<false>, encode_rgb24<false>},
    {B_RGB16, 16, decode_16<Rgb16, false>, encode_16<Rgb16, false>},
    {B_RGB15, 16, decode_16<Rgb15, false>, encode_16<Rgb15, false>},
    {B_RGBA15, 16, decode_16<Rgba15, false>, encode_16<Rgba15, false>},
    {B_CMAP8, 8, decode_cmap8, encode_cmap8},
    {B_GRAY8, 8, decode_gray8, encode_gray8},
    {B_GRAY1, 1, decode_gray1, encode_gray1},
    {B_RGBA32_BIG, 32, decode_32_big<true>, encode_32_big},
    {B_RGB32_BIG, 32, decode_32_big<false>, encode_32_big},
    {B_RGB24_BIG, 24, decode_rgb24<true>, encode_rgb24<true>},
    {B_RGB16_BIG, 16, decode_16<Rgb16, true>, encode_16<Rgb16, true>},
    {B_RGB15_BIG, 16, decode_16<Rgb15, true>, encode_16<Rgb15, true>},
    {B_RGBA15_BIG, 16, decode_16<Rgba15, true>, encode_16<Rgba15, true>},
};

const FormatRow* format_of(color_space space)
{
    for (const FormatRow& row : kFormats) {
        if (row.space == space)
            return &row;
    }
    return nullptr;
}

}  // namespace

status_t ConvertPixels(const void* source, color_space sourceSpace, void* target,
                       color_space targetSpace, int32 count)
{
    const FormatRow* from = format_of(sourceSpace);
    const FormatRow* to = format_of(targetSpace);
    if (from == nullptr || to == nullptr || source == nullptr || target == nullptr)
        return B_BAD_VALUE;
    uint32 pixels[kChunk];
    for (int32 x = 0; x < count; x += kChunk) {
        const int32 part = std::min(count - x, kChunk);
        from->decode(static_cast<const uint8*>(source), x, part, pixels);
        to->encode(static_cast<uint8*>(target), x, part, pixels);
    }
    return B_OK;
}

int32 BytesPerRow(color_space space, int32 width)
{
    const FormatRow* format = format_of(space);
    if (format == nullptr || width < 1)
        return 0;
    const int64 bytes = (int64(width) * format->bits + 7) / 8;
    return bytes > INT32_MAX ? 0 : int32(bytes);
}

void read_pixels(const Surface& surface, int32 x, int32 y, int32 count, uint32* pixels)
{
    const FormatRow* format = format_of(surface.space);
    if (format != nullptr)
        format->decode(surface.bits + ptrdiff_t(y) * surface.bytesPerRow, x, count, pixels);
}

void write_pixels(const Surface& surface, int32 x, int32 y, int32 count, const uint32* pixels)
{
    const FormatRow* format = format_of(surface.space);
    if (format != nullptr)
        format->encode(surface.bits + ptrdiff_t(y) * surface.bytesPerRow, x, count, pixels);
}

}  // namespace server
