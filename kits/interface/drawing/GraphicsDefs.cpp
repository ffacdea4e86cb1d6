#include <GraphicsDefs.h>

#include <cstdlib>
#include <cstring>

const pattern B_SOLID_HIGH = {{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}};
const pattern B_MIXED_COLORS = {{0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55}};
const pattern B_SOLID_LOW = {{0, 0, 0, 0, 0, 0, 0, 0}};

const rgb_color B_TRANSPARENT_COLOR = {0x77, 0x74, 0x77, 0x00};
const rgb_color B_TRANSPARENT_32_BIT = {0x77, 0x74, 0x77, 0x00};
const uint8 B_TRANSPARENT_MAGIC_CMAP8 = 0xFF;
const uint16 B_TRANSPARENT_MAGIC_RGBA15 = 0x39CE;
const uint16 B_TRANSPARENT_MAGIC_RGBA15_BIG = 0xCE39;
const uint32 B_TRANSPARENT_MAGIC_RGBA32 = 0x00777477;
const uint32 B_TRANSPARENT_MAGIC_RGBA32_BIG = 0x77747700;
const uint8 B_TRANSPARENT_8_BIT = 0xFF;

const screen_id B_MAIN_SCREEN_ID = {0};

namespace {

struct SpaceRow {
    color_space space;
    uint8 chunkBytes;
    uint8 chunkPixels;
    uint8 rowAlignment;
    bool drawable;  // bitmaps of it can be made, drawn, and drawn into
};

const SpaceRow kSpaces[] = {
    {B_RGB32, 4, 1, 4, true},      {B_RGBA32, 4, 1, 4, true},      {B_RGB24, 3, 1, 4, true},
    {B_RGB16, 2, 1, 4, true},      {B_RGB15, 2, 1, 4, true},       {B_RGBA15, 2, 1, 4, true},
    {B_CMAP8, 1, 1, 4, true},      {B_GRAY8, 1, 1, 4, true},       {B_GRAY1, 1, 8, 4, true},
    {B_RGB32_BIG, 4, 1, 4, true},  {B_RGBA32_BIG, 4, 1, 4, true},  {B_RGB24_BIG, 3, 1, 4, true},
    {B_RGB16_BIG, 2, 1, 4, true},  {B_RGB15_BIG, 2, 1, 4, true},   {B_RGBA15_BIG, 2, 1, 4, true},
    {B_RGBA64, 8, 1, 8, false},    {B_RGBA64_BIG, 8, 1, 8, false}, {B_RGB48, 6, 1, 2, false},
    {B_RGB48_BIG, 6, 1, 2, false}, {B_RGB30, 4, 1, 4, false},      {B_RGB30_BIG, 4, 1, 4, false},
    {B_YCbCr422, 4, 2, 4, false},  {B_YCbCr411, 12, 8, 4, false},  {B_YCbCr444, 3, 1, 4, false},
    {B_YUV422, 4, 2, 4, false},    {B_YUV411, 12, 8, 4, false},    {B_YUV444, 3, 1, 4, false},
    {B_UVL24, 3, 1, 4, false},     {B_UVL32, 4, 1, 4, false},      {B_UVLA32, 4, 1, 4, false},
    {B_LAB24, 3, 1, 4, false},     {B_LAB32, 4, 1, 4, false},      {B_LABA32, 4, 1, 4, false},
    {B_HSI24, 3, 1, 4, false},     {B_HSI32, 4, 1, 4, false},      {B_HSIA32, 4, 1, 4, false},
    {B_HSV24, 3, 1, 4, false},     {B_HSV32, 4, 1, 4, false},      {B_HSVA32, 4, 1, 4, false},
    {B_HLS24, 3, 1, 4, false},     {B_HLS32, 4, 1, 4, false},      {B_HLSA32, 4, 1, 4, false},
    {B_CMY24, 3, 1, 4, false},     {B_CMY32, 4, 1, 4, false},      {B_CMYA32, 4, 1, 4, false},
    {B_CMYK32, 4, 1, 4, false},
};

const SpaceRow* find_space(color_space space)
{
    for (const SpaceRow& row : kSpaces) {
        if (row.space == space)
            return &row;
    }
    return nullptr;
}

uint8 mix(int32 from, int32 to, int32 amount) { return uint8(from + (to - from) * amount / 255); }

}  // namespace

int32 rgb_color::Brightness() const { return (308 * red + 600 * green + 116 * blue) / 1024; }

int32 rgb_color::Contrast(rgb_color colorA, rgb_color colorB)
{
    return abs(colorA.Brightness() - colorB.Brightness());
}

bool operator==(const pattern& a, const pattern& b)
{
    return memcmp(a.data, b.data, sizeof(a.data)) == 0;
}

bool operator!=(const pattern& a, const pattern& b) { return !(a == b); }

rgb_color mix_color(rgb_color color1, rgb_color color2, uint8 amount)
{
    return {mix(color1.red, color2.red, amount), mix(color1.green, color2.green, amount),
            mix(color1.blue, color2.blue, amount), mix(color1.alpha, color2.alpha, amount)};
}

rgb_color blend_color(rgb_color color1, rgb_color color2, uint8 amount)
{
    const int32 weight1 = color1.alpha * (255 - amount);
    const int32 weight2 = color2.alpha * amount;
    const int32 weight = weight1 + weight2;
    if (weight == 0)
        return {0, 0, 0, 0};
    const auto blend = [=](int32 a, int32 b) {
        return uint8((a * weight1 + b * weight2 + weight / 2) / weight);
    };
    return {blend(color1.red, color2.red), blend(color1.green, color2.green),
            blend(color1.blue, color2.blue), uint8((weight + 127) / 255)};
}

rgb_color disable_color(rgb_color color, rgb_color background)
{
    return mix_color(color, background, 185);
}

bool bitmaps_support_space(color_space space, uint32* _supportFlags)
{
    const SpaceRow* row = find_space(space);
    const bool supported = row != nullptr && row->drawable;
    if (_supportFlags != nullptr)
        *_supportFlags =
            supported ? B_VIEWS_SUPPORT_DRAW_BITMAP | B_BITMAPS_SUPPORT_ATTACHED_VIEWS : 0;
    return supported;
}

status_t get_pixel_size_for(color_space space, size_t* _pixelChunk, size_t* _rowAlignment,
                            size_t* _pixelsPerChunk)
{
    const SpaceRow* row = find_space(space);
    if (row == nullptr)
        return B_BAD_VALUE;
    if (_pixelChunk != nullptr)
        *_pixelChunk = row->chunkBytes;
    if (_rowAlignment != nullptr)
        *_rowAlignment = row->rowAlignment;
    if (_pixelsPerChunk != nullptr)
        *_pixelsPerChunk = row->chunkPixels;
    return B_OK;
}
