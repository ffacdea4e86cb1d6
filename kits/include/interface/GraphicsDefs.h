#ifndef _GRAPHICSDEFS_H
#define _GRAPHICSDEFS_H

#include <SupportDefs.h>

// What bitmaps_support_space() tells of a colour space.
enum {
    B_VIEWS_SUPPORT_DRAW_BITMAP = 1,
    B_BITMAPS_SUPPORT_ATTACHED_VIEWS = 2,
    B_BITMAPS_SUPPORT_OVERLAY = 4
};

// Screen resolutions.
enum {
    B_8_BIT_640x480 = 1,
    B_8_BIT_800x600 = 2,
    B_8_BIT_1024x768 = 4,
    B_8_BIT_1280x1024 = 8,
    B_8_BIT_1600x1200 = 16,
    B_16_BIT_640x480 = 32,
    B_16_BIT_800x600 = 64,
    B_16_BIT_1024x768 = 128,
    B_16_BIT_1280x1024 = 0x100,
    B_16_BIT_1600x1200 = 0x200,
    B_32_BIT_640x480 = 0x400,
    B_32_BIT_800x600 = 0x800,
    B_32_BIT_1024x768 = 0x1000,
    B_32_BIT_1280x1024 = 0x2000,
    B_32_BIT_1600x1200 = 0x4000,
    B_8_BIT_1152x900 = 0x8000,
    B_16_BIT_1152x900 = 0x00010000,
    B_32_BIT_1152x900 = 0x00020000,
    B_15_BIT_640x480 = 0x00040000,
    B_15_BIT_800x600 = 0x00080000,
    B_15_BIT_1024x768 = 0x00100000,
    B_15_BIT_1280x1024 = 0x00200000,
    B_15_BIT_1600x1200 = 0x00400000,
    B_15_BIT_1152x900 = 0x00800000,
    B_8_BIT_640x400 = 0x80000000
};

enum buffer_orientation { B_BUFFER_TOP_TO_BOTTOM = 0, B_BUFFER_BOTTOM_TO_TOP = 1 };

enum buffer_layout { B_BUFFER_NONINTERLEAVED = 1 };

// How a drawing meets the pixels below it.
enum drawing_mode {
    B_OP_COPY = 0,
    B_OP_OVER = 1,
    B_OP_ERASE = 2,
    B_OP_INVERT = 3,
    B_OP_ADD = 4,
    B_OP_SUBTRACT = 5,
    B_OP_BLEND = 6,
    B_OP_MIN = 7,
    B_OP_MAX = 8,
    B_OP_SELECT = 9,
    B_OP_ALPHA = 10
};

enum source_alpha { B_PIXEL_ALPHA = 0, B_CONSTANT_ALPHA = 1 };

enum alpha_function {
    B_ALPHA_OVERLAY = 0,
    B_ALPHA_COMPOSITE = 1,
    B_ALPHA_COMPOSITE_SOURCE_OVER = 1,
    B_ALPHA_COMPOSITE_SOURCE_IN = 2,
    B_ALPHA_COMPOSITE_SOURCE_OUT = 3,
    B_ALPHA_COMPOSITE_SOURCE_ATOP = 4,
    B_ALPHA_COMPOSITE_DESTINATION_OVER = 5,
    B_ALPHA_COMPOSITE_DESTINATION_IN = 6,
    B_ALPHA_COMPOSITE_DESTINATION_OUT = 7,
    B_ALPHA_COMPOSITE_DESTINATION_ATOP = 8,
    B_ALPHA_COMPOSITE_XOR = 9,
    B_ALPHA_COMPOSITE_CLEAR = 10,
    B_ALPHA_COMPOSITE_DIFFERENCE = 11,
    B_ALPHA_COMPOSITE_LIGHTEN = 12,
    B_ALPHA_COMPOSITE_DARKEN = 13
};

// 8 x 8 pixels, a byte a row, the left one in the top bit: set bits take the high colour.
struct pattern {
    uint8 data[8];
};

struct rgb_color {
    uint8 red;
    uint8 green;
    uint8 blue;
    uint8 alpha;

    rgb_color& set_to(uint8 r, uint8 g, uint8 b, uint8 a = 255)
    {
        red = r;
        green = g;
        blue = b;
        alpha = a;
        return *this;
    }
    int32 Brightness() const;  // 0 to 255, as the eye weighs the components
    bool IsDark() const { return Brightness() <= 127; }
    bool IsLight() const { return !IsDark(); }
    static int32 Contrast(rgb_color colorA, rgb_color colorB);  // difference of brightness
    bool operator==(const rgb_color& other) const
    {
        return red == other.red && green == other.green && blue == other.blue &&
               alpha == other.alpha;
    }
    bool operator!=(const rgb_color& other) const { return !(*this == other); }
};

// The system palette: its colours, each one's nearest inverse, and the nearest index of every
// colour of 5 bits a component (red << 10 | green << 5 | blue).
struct color_map {
    int32 id;
    rgb_color color_list[256];
    uint8 inversion_map[256];
    uint8 index_map[32768];
};

struct overlay_rect_limits {
    uint16 horizontal_alignment;
    uint16 vertical_alignment;
    uint16 width_alignment;
    uint16 height_alignment;
    uint16 min_width;
    uint16 max_width;
    uint16 min_height;
    uint16 max_height;
    uint32 reserved[8];
};

struct overlay_restrictions {
    overlay_rect_limits source;
    overlay_rect_limits destination;
    float min_width_scale;
    float max_width_scale;
    float min_height_scale;
    float max_height_scale;
    uint32 reserved[8];
};

struct screen_id {
    int32 id;
};

enum color_space {
    B_NO_COLOR_SPACE = 0,
    B_RGBA64 = 8210,
    B_RGB48 = 17,
    B_RGB32 = 8,
    B_RGBA32 = 8200,
    B_RGB30 = 9,
    B_RGB24 = 3,
    B_RGB16 = 5,
    B_RGB15 = 16,
    B_RGBA15 = 8208,
    B_CMAP8 = 4,
    B_GRAY8 = 2,
    B_GRAY1 = 1,
    B_RGBA64_BIG = 12306,
    B_RGB48_BIG = 4113,
    B_RGB32_BIG = 4104,
    B_RGBA32_BIG = 12296,
    B_RGB30_BIG = 4105,
    B_RGB24_BIG = 4099,
    B_RGB16_BIG = 4101,
    B_RGB15_BIG = 4112,
    B_RGBA15_BIG = 12304,
    B_RGBA64_LITTLE = 8210,
    B_RGB48_LITTLE = 17,
    B_RGB32_LITTLE = 8,
    B_RGBA32_LITTLE = 8200,
    B_RGB30_LITTLE = 9,
    B_RGB24_LITTLE = 3,
    B_RGB16_LITTLE = 5,
    B_RGB15_LITTLE = 16,
    B_RGBA15_LITTLE = 8208,
    B_YCbCr422 = 16384,
    B_YCbCr411 = 16385,
    B_YCbCr444 = 16387,
    B_YCbCr420 = 16388,
    B_YUV422 = 16416,
    B_YUV411 = 16417,
    B_YUV444 = 16419,
    B_YUV420 = 16420,
    B_YUV9 = 16428,
    B_YUV12 = 16429,
    B_UVL24 = 16432,
    B_UVL32 = 16433,
    B_UVLA32 = 24625,
    B_LAB24 = 16434,
    B_LAB32 = 16435,
    B_LABA32 = 24627,
    B_HSI24 = 16448,
    B_HSI32 = 16449,
    B_HSIA32 = 24641,
    B_HSV24 = 16450,
    B_HSV32 = 16451,
    B_HSVA32 = 24643,
    B_HLS24 = 16452,
    B_HLS32 = 16453,
    B_HLSA32 = 24645,
    B_CMY24 = 49153,
    B_CMY32 = 49154,
    B_CMYA32 = 57346,
    B_CMYK32 = 49155,
    B_MONOCHROME_1_BIT = 1,
    B_GRAYSCALE_8_BIT = 2,
    B_COLOR_8_BIT = 4,
    B_RGB_32_BIT = 8,
    B_RGB_16_BIT = 16,
    B_BIG_RGB_32_BIT = 4104,
    B_BIG_RGB_16_BIT = 4112
};

extern const pattern B_SOLID_HIGH;
extern const pattern B_MIXED_COLORS;  // a chequerboard
extern const pattern B_SOLID_LOW;

// The colour that stands for "no pixel" in bitmaps, and what it looks like in their memory.
extern const rgb_color B_TRANSPARENT_COLOR;
extern const rgb_color B_TRANSPARENT_32_BIT;
extern const uint8 B_TRANSPARENT_MAGIC_CMAP8;
extern const uint16 B_TRANSPARENT_MAGIC_RGBA15;
extern const uint16 B_TRANSPARENT_MAGIC_RGBA15_BIG;
extern const uint32 B_TRANSPARENT_MAGIC_RGBA32;
extern const uint32 B_TRANSPARENT_MAGIC_RGBA32_BIG;
extern const uint8 B_TRANSPARENT_8_BIT;

extern const screen_id B_MAIN_SCREEN_ID;

bool operator==(const pattern& a, const pattern& b);
bool operator!=(const pattern& a, const pattern& b);

inline rgb_color make_color(uint8 red, uint8 green, uint8 blue, uint8 alpha = 255)
{
    return {red, green, blue, alpha};
}
// `amount` 0 gives the first colour, 255 the second; alpha is mixed like the others.
rgb_color mix_color(rgb_color color1, rgb_color color2, uint8 amount);
// The same, but a colour counts the less the more transparent it is.
rgb_color blend_color(rgb_color color1, rgb_color color2, uint8 amount);
// `color` faded for something that can not be used, in front of `background`.
rgb_color disable_color(rgb_color color, rgb_color background);

// Whether bitmaps of this colour space can be made; B_VIEWS_SUPPORT_DRAW_BITMAP and
// B_BITMAPS_SUPPORT_ATTACHED_VIEWS in `_supportFlags` (may be null) say what works with them.
bool bitmaps_support_space(color_space space, uint32* _supportFlags);
// Bytes of the smallest piece of memory with whole pixels, what rows are padded to, and how many
// pixels the piece has; each may be null. B_BAD_VALUE for a space without whole pixels.
status_t get_pixel_size_for(color_space space, size_t* _pixelChunk, size_t* _rowAlignment,
                            size_t* _pixelsPerChunk);

#endif  // _GRAPHICSDEFS_H
