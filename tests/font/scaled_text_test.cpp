// Text on surfaces with a scale: as wide as without one, and drawn in the surface's own pixels.

#include <server/painter/Painter.h>
#include <server/text/Fonts.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using server::FontSpec;

namespace {

FontSpec font_of(float size, uint8 spacing = B_BITMAP_SPACING)
{
    FontSpec font;
    font.size = size;
    font.face = B_REGULAR_FACE;
    font.spacing = spacing;
    return font;
}

// White paper of 200 x 40 units.
class Paper {
public:
    explicit Paper(float scale)
    {
        fSurface.width = server::first_pixel(200, scale);
        fSurface.height = server::first_pixel(40, scale);
        fSurface.bytesPerRow = fSurface.width * 4;
        fSurface.scale = scale;
        fPixels.assign(size_t(fSurface.width) * size_t(fSurface.height), 0xFFFFFFFF);
        fSurface.bits = reinterpret_cast<uint8*>(fPixels.data());
        fClip = {0, 0, fSurface.width - 1, fSurface.height - 1};
    }
    BPoint Write(const FontSpec& font, const std::string& text, const server::Paint& paint = {})
    {
        BPoint pen(10, 25);
        server::DrawString({&fSurface, &fClip, 1, fClip}, paint, font, text.data(),
                           int32(text.size()), nullptr, &pen);
        return pen;
    }
    uint32 At(int32 x, int32 y) const { return fPixels[size_t(y) * size_t(fSurface.width) + x]; }
    // The box of all pixels that are not white, and how dark they are together, in whole pixels.
    clipping_rect Ink(double* amount = nullptr) const
    {
        clipping_rect ink = {INT32_MAX, INT32_MAX, -1, -1};
        double sum = 0;
        for (int32 y = 0; y < fSurface.height; y++) {
            for (int32 x = 0; x < fSurface.width; x++) {
                if (At(x, y) == 0xFFFFFFFF)
                    continue;
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x),
                       std::max(ink.bottom, y)};
                sum += (255 - (At(x, y) & 255)) / 255.0;
            }
        }
        if (amount != nullptr)
            *amount = sum;
        return ink;
    }
    bool IsEnlarged(const Paper& plain) const
    {
        for (int32 y = 0; y < fSurface.height; y++) {
            for (int32 x = 0; x < fSurface.width; x++) {
                if (At(x, y) !=
                    plain.At(int32(float(x) / fSurface.scale), int32(float(y) / fSurface.scale)))
                    return false;
            }
        }
        return true;
    }

private:
    server::Surface fSurface;
    std::vector<uint32> fPixels;
    clipping_rect fClip;
};

const char kText[] = "Hamburgefonts \xC3\xA9\xD7\xA9 1234";

}  // namespace

TEST(ScaledText, PenEndsWhereItEndsWithoutScale)
{
    for (uint8 spacing : {B_BITMAP_SPACING, B_CHAR_SPACING, B_FIXED_SPACING}) {
        Paper plain(1);
        const BPoint end = plain.Write(font_of(12, spacing), kText);
        for (float scale : {1.25f, 1.5f, 2.0f, 3.0f, 4.0f}) {
            Paper scaled(scale);
            EXPECT_EQ(scaled.Write(font_of(12, spacing), kText), end) << scale;
        }
    }
}

TEST(ScaledText, StandsWhereItStandsWithoutScale)
{
    for (float size : {9.0f, 12.0f, 24.0f}) {
        Paper plain(1);
        plain.Write(font_of(size), kText);
        double amount, dark;
        const clipping_rect ink = plain.Ink(&amount);
        for (float scale : {1.25f, 1.5f, 1.75f, 2.0f, 3.0f, 4.0f}) {
            Paper scaled(scale);
            scaled.Write(font_of(size), kText);
            const clipping_rect box = server::pixels_of(ink, scale), drawn = scaled.Ink(&dark);
            const float room = 1.5f * scale + 1;
            EXPECT_NEAR(drawn.left, box.left, room) << size << " at " << scale;
            EXPECT_NEAR(drawn.top, box.top, room) << size << " at " << scale;
            EXPECT_NEAR(drawn.right, box.right, room) << size << " at " << scale;
            EXPECT_NEAR(drawn.bottom, box.bottom, room) << size << " at " << scale;
            EXPECT_NEAR(dark / (amount * double(scale * scale)), 1, 0.15) << size << " " << scale;
        }
    }
}

TEST(ScaledText, IsSharperThanLargerPixels)
{
    Paper plain(1), twice(2);
    plain.Write(font_of(12), kText);
    twice.Write(font_of(12), kText);
    EXPECT_FALSE(twice.IsEnlarged(plain));
    // A single letter is the one of a font of twice the size.
    Paper letter(2), large(1);
    letter.Write(font_of(12), "R");
    large.Write(font_of(24), "R");
    const clipping_rect is = letter.Ink(), was = large.Ink();
    ASSERT_EQ(is.right - is.left, was.right - was.left);
    ASSERT_EQ(is.bottom - is.top, was.bottom - was.top);
    for (int32 y = 0; y <= is.bottom - is.top; y++) {
        for (int32 x = 0; x <= is.right - is.left; x++)
            EXPECT_NEAR(int32(letter.At(is.left + x, is.top + y) & 255),
                        int32(large.At(was.left + x, was.top + y) & 255), 128);
    }
}

TEST(ScaledText, GiantTurnedAndTransformedTextScalesToo)
{
    FontSpec turned = font_of(12);
    turned.rotation = 20;
    BAffineTransform twice;
    twice.ScaleBy(BPoint(10, 25), 1.5);
    server::Paint large;
    large.transform = &twice;
    struct {
        FontSpec font;
        server::Paint paint;
        const char* text;
    } const kinds[] = {
        {turned, {}, "turned"}, {font_of(12), large, "moved"}, {font_of(220), {}, "."}};
    for (const auto& kind : kinds) {
        Paper plain(1), scaled(2);
        plain.Write(kind.font, kind.text, kind.paint);
        scaled.Write(kind.font, kind.text, kind.paint);
        const clipping_rect box = server::pixels_of(plain.Ink(), 2), drawn = scaled.Ink();
        for (int off : {drawn.left - box.left, drawn.top - box.top, drawn.right - box.right,
                        drawn.bottom - box.bottom})
            EXPECT_LE(std::abs(off), 4) << kind.text;
        EXPECT_FALSE(scaled.IsEnlarged(plain)) << kind.text;
    }
}

TEST(ScaledText, LinesAndBarsOfAFaceCoverTheirUnits)
{
    FontSpec font = font_of(12);
    font.face = B_UNDERSCORE_FACE;
    Paper plain(1), scaled(2);
    plain.Write(font, "     ");
    scaled.Write(font, "     ");
    ASSERT_GT(plain.Ink().right, 0);
    EXPECT_TRUE(scaled.IsEnlarged(plain));
}
