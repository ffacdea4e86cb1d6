// Drawing modes, patterns, masks, gradients and colour spaces, each against a plain model of one
// pixel.

#include "painter/board.h"

#include <GradientLinear.h>
#include <GradientRadial.h>

#include <algorithm>

using namespace server;

namespace {

struct Pixel {
    explicit Pixel(uint32 value)
        : part{int(value & 255), int(value >> 8 & 255), int(value >> 16 & 255), int(value >> 24)}
    {
    }
    uint32 Value() const
    {
        return uint32(part[0]) | uint32(part[1]) << 8 | uint32(part[2]) << 16 |
               uint32(part[3]) << 24;
    }
    int part[4];  // blue, green, red, alpha
};

uint32 value_of(rgb_color color)
{
    return uint32(color.alpha) << 24 | uint32(color.red) << 16 | uint32(color.green) << 8 |
           color.blue;
}

bool same_color(uint32 a, uint32 b) { return ((a ^ b) & 0xFFFFFF) == 0; }

int mixed(int below, int above, int weight)
{
    return (below * (255 - weight) + above * weight) / 255.0 + 0.5;
}

// What a mode makes of a target's pixel where the paint shows `source`.
uint32 model(const Paint& paint, uint32 below, uint32 source)
{
    Pixel d(below), s(source);
    const uint32 high = value_of(paint.high), low = value_of(paint.low);
    const auto each = [&](auto apply) {
        for (int i = 0; i < 3; i++)
            d.part[i] = apply(d.part[i], s.part[i]);
        d.part[3] = std::max(d.part[3], s.part[3]);
        return d.Value();
    };
    switch (paint.mode) {
        case B_OP_COPY:
        case B_OP_OVER:
            return source;
        case B_OP_ERASE:
            return low;
        case B_OP_INVERT:
            return below ^ 0xFFFFFF;
        case B_OP_ADD:
            return each([](int a, int b) { return std::min(a + b, 255); });
        case B_OP_SUBTRACT:
            return each([](int a, int b) { return std::max(a - b, 0); });
        case B_OP_BLEND:
            return each([](int a, int b) { return (a + b) / 2; });
        case B_OP_MIN:
            return each([](int a, int b) { return std::min(a, b); });
        case B_OP_MAX:
            return each([](int a, int b) { return std::max(a, b); });
        case B_OP_SELECT:
            return same_color(below, high) ? low : same_color(below, low) ? high : below;
        case B_OP_ALPHA: {
            const int alpha = paint.alphaSource == B_CONSTANT_ALPHA ? paint.high.alpha : s.part[3];
            if (paint.alphaFunction == B_ALPHA_OVERLAY) {
                for (int i = 0; i < 3; i++)
                    d.part[i] = mixed(d.part[i], s.part[i], alpha);
                d.part[3] = mixed(d.part[3], 255, alpha);
                return d.Value();
            }
            const double sa = alpha / 255.0, da = d.part[3] / 255.0, out = sa + da * (1 - sa);
            if (out == 0)
                return 0;
            for (int i = 0; i < 3; i++)
                d.part[i] = (s.part[i] * sa + d.part[i] * da * (1 - sa)) / out + 0.5;
            d.part[3] = out * 255 + 0.5;
            return d.Value();
        }
    }
    return below;
}

bool follows_high_bits_only(drawing_mode mode)
{
    return mode == B_OP_OVER || mode == B_OP_ERASE || mode == B_OP_INVERT || mode == B_OP_SELECT;
}

// Components may differ by one where the model rounds a fraction.
void expect_near(uint32 actual, uint32 expected, const std::string& what)
{
    const Pixel a(actual), b(expected);
    for (int i = 0; i < 4; i++)
        ASSERT_NEAR(a.part[i], b.part[i], 1)
            << what << std::hex << ": " << actual << " instead of " << expected;
}

rgb_color any_color(std::mt19937& random)
{
    return {uint8(random()), uint8(random()), uint8(random()), uint8(random())};
}

Paint any_paint(std::mt19937& random, int round)
{
    Paint paint;
    paint.mode = drawing_mode(round % 11);
    paint.high = any_color(random);
    paint.low = any_color(random);
    paint.alphaSource = round % 2 == 0 ? B_PIXEL_ALPHA : B_CONSTANT_ALPHA;
    paint.alphaFunction = round % 3 == 0 ? B_ALPHA_COMPOSITE : B_ALPHA_OVERLAY;
    if (round % 4 == 1) {
        for (uint8& row : paint.pattern.data)
            row = uint8(random());
        paint.patternPhase = BPoint(int(random() % 40) - 20, int(random() % 40) - 20);
    } else if (round % 4 == 2) {
        paint.pattern = B_SOLID_LOW;
    }
    return paint;
}

bool pattern_bit(const Paint& paint, int x, int y)
{
    const int column = (x - int(paint.patternPhase.x)) & 7;
    const int row = (y - int(paint.patternPhase.y)) & 7;
    return (paint.pattern.data[row] >> (7 - column) & 1) != 0;
}

std::string name_of(const Paint& paint) { return "mode " + std::to_string(paint.mode); }

// A board whose pixels are now and then the paint's own colours, for B_OP_SELECT.
void fill_background(Board& board, const Paint& paint, std::mt19937& random)
{
    board.FillRandom(random);
    for (int i = 0; i < 2000; i++)
        board.At(random() % Board::kWidth, random() % Board::kHeight) =
            value_of(i % 2 == 0 ? paint.high : paint.low);
}

}  // namespace

TEST(Modes, FillsFollowTheModelForEveryPattern)
{
    std::mt19937 random(11);
    for (int round = 0; round < 660; round++) {
        const Paint paint = any_paint(random, round);
        Board before, after;
        fill_background(before, paint, random);
        after.CopyFrom(before);
        FillRect(after.Whole(), paint, BRect(3, 5, 90, 70));
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++) {
                const bool bit = pattern_bit(paint, x, y);
                const bool inside = x >= 3 && x <= 90 && y >= 5 && y <= 70;
                uint32 expected = before.At(x, y);
                if (inside && (bit || !follows_high_bits_only(paint.mode)))
                    expected = model(paint, expected, value_of(bit ? paint.high : paint.low));
                expect_near(after.At(x, y), expected, name_of(paint));
                if (HasFatalFailure())
                    return;
            }
        }
    }
}

TEST(Modes, BitmapsFollowTheModelAndLeaveTransparentPixelsOut)
{
    std::mt19937 random(12);
    for (int round = 0; round < 220; round++) {
        const Paint paint = any_paint(random, round);
        Board before, after, source;
        fill_background(before, paint, random);
        source.FillRandom(random);
        for (int i = 0; i < 3000; i++)
            source.At(random() % Board::kWidth, random() % Board::kHeight) =
                i % 2 == 0 ? B_TRANSPARENT_MAGIC_RGBA32 : random() & 0xFFFFFF;
        after.CopyFrom(before);
        const BRect from(10, 7, 60, 50);
        DrawBitmap(after.Whole(), paint, source.surface, from, from.OffsetByCopy(-4, 11), 0);
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++) {
                uint32 expected = before.At(x, y);
                if (from.Contains(BPoint(x + 4, y - 11))) {
                    const uint32 pixel = source.At(x + 4, y - 11);
                    if (paint.mode == B_OP_COPY || paint.mode == B_OP_ALPHA || pixel >> 24 != 0)
                        expected = model(paint, expected, pixel);
                }
                expect_near(after.At(x, y), expected, name_of(paint));
                if (HasFatalFailure())
                    return;
            }
        }
    }
}

TEST(Modes, OverLeavesTheTransparentColourOut)
{
    Board board(0xFF112233);
    Paint paint;
    paint.mode = B_OP_OVER;
    paint.high = B_TRANSPARENT_COLOR;
    FillRect(board.Whole(), paint, BRect(0, 0, 20, 20));
    EXPECT_EQ(board.Count(0xFF112233), Board::kWidth * Board::kHeight);
}

TEST(Masks, MixTowardsWhatTheModePaints)
{
    std::mt19937 random(13);
    const int width = 70, height = 60, pitch = 73;
    for (int round = 0; round < 220; round++) {
        const Paint paint = any_paint(random, round);
        std::vector<uint8> coverage(pitch * height);
        for (uint8& value : coverage)
            value = random() % 3 == 0 ? uint8(random()) : random() % 2 == 0 ? 255 : 0;
        Board before, after, painted;
        fill_background(before, paint, random);
        after.CopyFrom(before);
        painted.CopyFrom(before);
        const int left = int(random() % 80) - 30, top = int(random() % 80) - 30;
        FillMask(after.Whole(), paint, coverage.data(), pitch, left, top, width, height);
        FillRect(painted.Whole(), paint, BRect(left, top, left + width - 1, top + height - 1));
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++) {
                const int column = x - left, row = y - top;
                const bool inside = column >= 0 && column < width && row >= 0 && row < height;
                const int weight = inside ? coverage[row * pitch + column] : 0;
                Pixel expected(before.At(x, y));
                const Pixel full(painted.At(x, y));
                for (int i = 0; i < 4; i++)
                    expected.part[i] = mixed(expected.part[i], full.part[i], weight);
                expect_near(after.At(x, y), expected.Value(), name_of(paint));
                if (HasFatalFailure())
                    return;
            }
        }
    }
}

TEST(Gradients, RunFromStopToStop)
{
    BGradientLinear linear(10, 0, 60, 0);
    linear.AddColor({255, 0, 0, 255}, 255);
    linear.AddColor({0, 0, 0, 255}, 0);
    Paint paint;
    paint.gradient = &linear;
    Board board;
    FillRect(board.Whole(), paint, BRect(0, 0, 80, 40));
    EXPECT_EQ(board.At(0, 3), 0xFF000000);
    EXPECT_EQ(board.At(80, 40), 0xFFFF0000);
    for (int x = 10; x <= 60; x++)
        EXPECT_NEAR(int(board.At(x, 20) >> 16 & 255), (x - 10) * 255 / 50.0, 1.5);

    BGradientRadial radial(40, 40, 30);
    radial.SetColorStops(linear);
    paint.gradient = &radial;
    FillEllipse(board.Whole(), paint, BPoint(40, 40), 30, 30);
    EXPECT_EQ(board.At(40, 40), 0xFF000000);
    EXPECT_NEAR(int(board.At(40, 55) >> 16 & 255), 127, 3);
    EXPECT_EQ(board.At(70, 40), 0xFFFF0000);
}

namespace {

const color_space kSpaces[] = {B_RGB32,      B_RGBA32,    B_RGB24,     B_RGB16,     B_RGB15,
                               B_RGBA15,     B_CMAP8,     B_GRAY8,     B_GRAY1,     B_RGB32_BIG,
                               B_RGBA32_BIG, B_RGB24_BIG, B_RGB16_BIG, B_RGB15_BIG, B_RGBA15_BIG};

}  // namespace

TEST(Formats, ColoursSurviveWhereTheSpaceCanHoldThem)
{
    const uint32 colors[] = {0xFF000000, 0xFFFFFFFF};
    for (color_space space : kSpaces) {
        uint8 row[64] = {};
        uint32 back[2] = {};
        const color_space full = B_RGBA32;
        ASSERT_EQ(ConvertPixels(colors, full, row, space, 2), B_OK);
        ASSERT_EQ(ConvertPixels(row, space, back, full, 2), B_OK);
        EXPECT_EQ(back[0], colors[0]) << space;
        // The palette's answer to white is its lightest grey.
        EXPECT_EQ(back[1], space == B_CMAP8 ? 0xFFF8F8F8 : colors[1]) << space;
    }
    EXPECT_EQ(ConvertPixels(colors, B_RGBA32, nullptr, B_RGB24, 2), B_BAD_VALUE);
    uint8 bytes[16];
    EXPECT_EQ(ConvertPixels(colors, B_RGBA32, bytes, B_YUV422, 2), B_BAD_VALUE);
    EXPECT_EQ(BytesPerRow(B_GRAY1, 9), 2);
    EXPECT_EQ(BytesPerRow(B_RGB24, 5), 15);
    EXPECT_EQ(BytesPerRow(B_RGB16, 5), 10);
    EXPECT_EQ(BytesPerRow(B_NO_COLOR_SPACE, 5), 0);
}

TEST(Formats, BytesLieAsTheSpaceSays)
{
    const uint32 pixel = 0xFF8040C0;  // red 0x80, green 0x40, blue 0xC0
    const struct {
        color_space space;
        std::vector<uint8> bytes;
    } rows[] = {
        {B_RGBA32, {0xC0, 0x40, 0x80, 0xFF}},
        {B_RGBA32_BIG, {0xFF, 0x80, 0x40, 0xC0}},
        {B_RGB24, {0xC0, 0x40, 0x80}},
        {B_RGB24_BIG, {0x80, 0x40, 0xC0}},
        {B_RGB16, {0x18, 0x82}},
        {B_RGB15, {0x18, 0x41}},
        {B_RGBA15, {0x18, 0xC1}},
        {B_RGB16_BIG, {0x82, 0x18}},
        {B_GRAY8, {0x61}},
    };
    for (const auto& row : rows) {
        std::vector<uint8> bytes(row.bytes.size());
        ASSERT_EQ(ConvertPixels(&pixel, B_RGBA32, bytes.data(), row.space, 1), B_OK);
        EXPECT_EQ(bytes, row.bytes) << row.space;
    }
}

TEST(Formats, DrawingChangesOnlyThePixelsOfTheShape)
{
    std::mt19937 random(14);
    const int width = 61, height = 40;
    for (color_space space : kSpaces) {
        const int pitch = BytesPerRow(space, width) + 5;
        std::vector<uint8> bits(pitch * height), before;
        for (uint8& byte : bits)
            byte = uint8(random());
        before = bits;
        Surface surface{bits.data(), pitch, width, height, space};
        const clipping_rect clip = {5, 3, 50, 33};
        const Target target{&surface, &clip, 1, clip};
        Paint paint;
        paint.high = {255, 0, 0, 255};
        paint.mode = B_OP_COPY;
        FillEllipse(target, paint, BPoint(30, 20), 30, 15);

        Board shape;
        FillEllipse(shape.Whole(), paint, BPoint(30, 20), 30, 15);
        uint32 expected;
        {
            uint8 encoded[8] = {};
            const uint32 red = 0xFFFF0000;
            ConvertPixels(&red, B_RGBA32, encoded, space, 1);
            ConvertPixels(encoded, space, &expected, B_RGBA32, 1);
        }
        int wrong = 0;
        for (int y = 0; y < height; y++) {
            std::vector<uint32> now(width), was(width);
            ConvertPixels(&bits[y * pitch], space, now.data(), B_RGBA32, width);
            ConvertPixels(&before[y * pitch], space, was.data(), B_RGBA32, width);
            for (int x = 0; x < width; x++) {
                const bool painted = is_inside(clip, x, y) && shape.At(x, y) != 0;
                wrong += now[x] != (painted ? expected : was[x]);
                if (space == B_CMAP8 && !painted)
                    wrong += bits[y * pitch + x] != before[y * pitch + x];
            }
            for (int i = BytesPerRow(space, width); i < pitch; i++)
                wrong += bits[y * pitch + i] != before[y * pitch + i];
        }
        EXPECT_EQ(wrong, 0) << space;
    }
}

TEST(Palette, FindsNearestColoursOfFiveBits)
{
    EXPECT_EQ(PaletteIndexFor(0, 0, 0, 255), 0);
    EXPECT_EQ(PaletteIndexFor(216, 216, 216, 255), 27);
    EXPECT_EQ(PaletteIndexFor(255, 0, 0, 255), 42);
    EXPECT_EQ(PaletteIndexFor(0, 255, 0, 255), 52);
    EXPECT_EQ(PaletteIndexFor(0, 0, 255, 255), 32);
    EXPECT_EQ(PaletteIndexFor(51, 102, 152, 255), 180);
    EXPECT_EQ(PaletteIndexFor(127, 127, 127, 255), 15);
    EXPECT_EQ(PaletteIndexFor(0x77, 0x74, 0x77, 0), 255);
    const color_map* map = SystemColorMap();
    const rgb_color* palette = SystemPalette();
    std::mt19937 random(15);
    for (int i = 0; i < 2000; i++) {
        const int key = random() & 32767;
        const int red = key >> 7 & 0xF8, green = key >> 2 & 0xF8, blue = key << 3 & 0xF8;
        int best = 0;
        int64 least = INT64_MAX;
        for (int index = 0; index < 256; index++) {
            const rgb_color& c = palette[index];
            const int mean = (red + c.red) / 2;
            const int dr = red - c.red, dg = green - c.green, db = blue - c.blue;
            const int64 distance =
                ((512 + mean) * dr * dr >> 8) + 4 * dg * dg + ((767 - mean) * db * db >> 8);
            if (distance < least) {
                least = distance;
                best = index;
            }
        }
        EXPECT_EQ(map->index_map[key], best);
    }
}

TEST(Palette, KeptWhiteFindsLightGreyAndInvertsToItself)
{
    EXPECT_EQ(PaletteIndexFor(255, 255, 255, 255), 31);
    EXPECT_EQ(SystemColorMap()->inversion_map[63], 63);
    EXPECT_EQ(SystemColorMap()->inversion_map[0], 63);
    EXPECT_EQ(SystemColorMap()->inversion_map[31], 1);
}
