// Text as pixels, drawn straight into memory.

#include <server/text/Fonts.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

using server::FontSpec;

namespace {

constexpr clipping_rect kNothing = {0, 0, -1, -1};

FontSpec plain(float size = 12.0f)
{
    FontSpec font;
    font.size = size;
    font.face = B_REGULAR_FACE;
    font.spacing = B_BITMAP_SPACING;
    return font;
}

// White paper to write on.
class Paper {
public:
    explicit Paper(int32 width = 200, int32 height = 40)
        : fPixels(static_cast<size_t>(width) * height, 0xFFFFFFFF)
    {
        fSurface = {reinterpret_cast<uint8*>(fPixels.data()), width * 4, width, height, B_RGBA32};
        Clip({0, 0, width - 1, height - 1});
    }

    void Clip(clipping_rect clip)
    {
        fClip = clip;
        fTarget = {&fSurface, &fClip, 1, clip};
    }

    clipping_rect Write(const FontSpec& font, const std::string& text, BPoint* pen,
                        const server::Paint& paint = {})
    {
        return server::DrawString(fTarget, paint, font, text.data(),
                                  static_cast<int32>(text.size()), nullptr, pen);
    }

    clipping_rect Write(const FontSpec& font, const std::string& text, float x = 10, float y = 20)
    {
        BPoint pen(x, y);
        return Write(font, text, &pen);
    }

    const server::Target& Target() const { return fTarget; }
    uint32 At(int32 x, int32 y) const
    {
        return fPixels[static_cast<size_t>(y) * fSurface.width + x];
    }
    bool operator==(const Paper& other) const { return fPixels == other.fPixels; }

    // The box of all pixels that are not white.
    clipping_rect Ink() const
    {
        clipping_rect ink = kNothing;
        for (int32 y = 0; y < fSurface.height; y++) {
            for (int32 x = 0; x < fSurface.width; x++) {
                if ((At(x, y) & 0xFFFFFF) == 0xFFFFFF)
                    continue;
                if (ink.right < ink.left)
                    ink = {x, y, x, y};
                ink = {std::min(ink.left, x), ink.top, std::max(ink.right, x), y};
            }
        }
        return ink;
    }

private:
    std::vector<uint32> fPixels;
    server::Surface fSurface;
    clipping_rect fClip;
    server::Target fTarget;
};

bool contains(const clipping_rect& outer, const clipping_rect& inner)
{
    return inner.right < inner.left || (outer.left <= inner.left && outer.top <= inner.top &&
                                        outer.right >= inner.right && outer.bottom >= inner.bottom);
}

bool is_empty(const clipping_rect& rect)
{
    return rect.right < rect.left || rect.bottom < rect.top;
}

const char kMixed[] = "Hello world, A\xCC\x8A \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xCE\xB1\xE9!";

}  // namespace

TEST(TextDrawing, ColdAndWarmCachesGiveTheSamePixels)
{
    for (float rotation : {0.0f, 33.0f}) {
        for (uint8 spacing : {B_CHAR_SPACING, B_STRING_SPACING, B_BITMAP_SPACING}) {
            FontSpec font = plain(13.5f);
            font.spacing = spacing;
            font.rotation = rotation;
            Paper cold, warm, other, late;
            cold.Write(font, kMixed, 10.3f, 20.6f);
            EXPECT_FALSE(is_empty(cold.Ink()));
            warm.Write(font, kMixed, 10.3f, 20.6f);
            EXPECT_EQ(cold, warm);
            std::thread([&] { other.Write(font, kMixed, 10.3f, 20.6f); }).join();
            EXPECT_EQ(cold, other);
            Paper scratch;
            for (int i = 0; i < 5000; i++)
                scratch.Write(plain(), "Number " + std::to_string(i));
            late.Write(font, kMixed, 10.3f, 20.6f);
            EXPECT_EQ(cold, late);
        }
    }
}

TEST(TextDrawing, ExactSpacingFollowsThePenBetweenPixels)
{
    FontSpec font = plain();
    Paper whole, half;
    whole.Write(font, "Hello", 10.0f, 20.0f);
    half.Write(font, "Hello", 10.4f, 20.0f);
    EXPECT_EQ(whole, half);  // whole-pixel widths stay on whole pixels
    font.spacing = B_CHAR_SPACING;
    Paper exact, moved;
    exact.Write(font, "Hello", 10.0f, 20.0f);
    moved.Write(font, "Hello", 10.5f, 20.0f);
    EXPECT_FALSE(exact == moved);
}

TEST(TextDrawing, OnlyClippedPixelsChange)
{
    for (float size : {12.0f, 60.0f, 250.0f}) {
        FontSpec font = plain(size);
        Paper whole(150, 60);
        BPoint pen(-4, 40);
        clipping_rect changed = whole.Write(font, kMixed, &pen);
        EXPECT_TRUE(contains(changed, whole.Ink()));
        for (clipping_rect clip : {clipping_rect{0, 0, 149, 59},
                                   {20, 30, 60, 40},
                                   {5, 35, 5, 35},
                                   {0, 59, 149, 59},
                                   {30, 10, 29, 9}}) {
            Paper part(150, 60);
            part.Clip(clip);
            pen = BPoint(-4, 40);
            changed = part.Write(font, kMixed, &pen);
            EXPECT_TRUE(is_empty(changed) || contains(clip, changed));
            for (int32 y = 0; y < 60; y++) {
                for (int32 x = 0; x < 150; x++) {
                    bool inside =
                        x >= clip.left && x <= clip.right && y >= clip.top && y <= clip.bottom;
                    ASSERT_EQ(inside ? whole.At(x, y) : 0xFFFFFFFF, part.At(x, y))
                        << size << ": " << x << ", " << y;
                }
            }
        }
    }
}

TEST(TextDrawing, PartsDrawnInTurnLookLikeTheWhole)
{
    Paper whole, parts;
    BPoint end(10, 20), pen(10, 20);
    whole.Write(plain(), "Hello, AVAWA world", &end);
    for (const char* part : {"Hel", "lo, ", "AV", "AW", "A world"})
        parts.Write(plain(), part, &pen);
    EXPECT_EQ(whole, parts);
    EXPECT_EQ(end, pen);
    EXPECT_EQ(10 + server::StringWidth(plain(), "Hello, AVAWA world", 99, nullptr), end.x);
    EXPECT_EQ(20, end.y);
}

TEST(TextDrawing, LongTextShowsWhatIsInSight)
{
    std::string text;
    for (int i = 0; text.size() < 1 << 20; i++)
        text += "word" + std::to_string(i) + ' ';
    FontSpec font = plain();
    size_t at = text.find("word50000 ");
    float before = server::StringWidth(font, text.data(), static_cast<int32>(at), nullptr);
    Paper whole, part;
    BPoint pen(10 - before, 20);
    whole.Write(font, text, &pen);
    EXPECT_NEAR(10 - before + server::StringWidth(font, text.data(), INT32_MAX, nullptr), pen.x,
                1.0f);
    size_t start = text.find("word49990 ");
    float lead =
        server::StringWidth(font, text.data() + start, static_cast<int32>(at - start), nullptr);
    part.Write(font, text.substr(start, 300), 10 - lead, 20);
    EXPECT_EQ(whole, part);
    EXPECT_FALSE(is_empty(whole.Ink()));
}

TEST(TextDrawing, PensFarAwayDrawNothing)
{
    for (float far : {1e5f, -1e5f, 2147483648.0f, -2147483648.0f, 1e30f, -1e30f, INFINITY, NAN}) {
        for (float size : {12.0f, 300.0f, 1e9f}) {
            for (float rotation : {0.0f, 45.0f}) {
                FontSpec font = plain(size);
                font.rotation = rotation;
                font.face = B_UNDERSCORE_FACE | B_STRIKEOUT_FACE;
                for (BPoint place : {BPoint(10, far), BPoint(far, far)}) {
                    if (size > 1000 && std::abs(far) < 1e6f)
                        continue;
                    Paper paper;
                    BPoint pen = place;
                    EXPECT_TRUE(is_empty(paper.Write(font, "Hello", &pen))) << far << size;
                    EXPECT_TRUE(is_empty(paper.Ink()));
                }
            }
        }
    }
}

TEST(TextDrawing, NothingToDrawChangesNothing)
{
    Paper paper;
    BPoint pen(10, 20);
    for (const char* text : {"", " ", "\n\x01\x7F"})
        EXPECT_TRUE(is_empty(paper.Write(plain(), text, &pen)));
    EXPECT_EQ(BPoint(10 + server::StringWidth(plain(), " ", 1, nullptr), 20), pen);
    for (float size : {0.0f, -3.0f, NAN})
        EXPECT_TRUE(is_empty(paper.Write(plain(size), "Hello")));
    clipping_rect changed =
        server::DrawString(paper.Target(), {}, plain(), nullptr, 5, nullptr, &pen);
    EXPECT_TRUE(is_empty(changed));
    changed = server::DrawString(paper.Target(), {}, plain(), "abc", -5, nullptr, &pen);
    EXPECT_TRUE(is_empty(changed));
    EXPECT_TRUE(is_empty(paper.Ink()));
}

TEST(TextDrawing, StrayBytesAreSeen)
{
    for (int byte = 0x80; byte < 0x100; byte++) {
        if (byte == 0xA0)
            continue;
        Paper paper;
        paper.Write(plain(), std::string(1, static_cast<char>(byte)));
        EXPECT_FALSE(is_empty(paper.Ink())) << byte;
    }
}

TEST(TextDrawing, WithoutAntialiasingEveryPixelIsInkOrPaper)
{
    FontSpec font = plain();
    Paper smooth, hard;
    smooth.Write(font, "Hello world");
    font.flags = B_DISABLE_ANTIALIASING;
    hard.Write(font, "Hello world");
    int between = 0;
    for (int32 y = 0; y < 40; y++) {
        for (int32 x = 0; x < 200; x++) {
            uint32 pixel = hard.At(x, y) & 0xFFFFFF;
            EXPECT_TRUE(pixel == 0 || pixel == 0xFFFFFF);
            uint32 soft = smooth.At(x, y) & 0xFFFFFF;
            between += soft != 0 && soft != 0xFFFFFF;
        }
    }
    EXPECT_GT(between, 50);
    EXPECT_FALSE(is_empty(hard.Ink()));
}

TEST(TextDrawing, FacesAreSeen)
{
    FontSpec font = plain();
    float width = server::StringWidth(font, "a b", 3, nullptr);
    auto full_rows = [&](uint16 face, int32 from, int32 to) {
        FontSpec lined = font;
        lined.face |= face;
        Paper paper;
        paper.Write(lined, "a b");
        int rows = 0;
        for (int32 y = from; y <= to; y++) {
            bool full = true;
            for (int32 x = 10; x < 10 + width; x++)
                full = full && (paper.At(x, y) & 0xFFFFFF) == 0;
            rows += full;
        }
        return rows;
    };
    EXPECT_EQ(0, full_rows(0, 0, 39));
    EXPECT_EQ(1, full_rows(B_UNDERSCORE_FACE, 20, 24));
    EXPECT_EQ(1, full_rows(B_STRIKEOUT_FACE, 12, 19));

    font.face |= B_NEGATIVE_FACE;
    Paper negative;
    negative.Write(font, "a b");
    EXPECT_EQ(0u, negative.At(11, 9) & 0xFFFFFF);
    EXPECT_EQ(static_cast<int32>(10 + width - 1), negative.Ink().right);

    FontSpec bold = plain(30), outlined = plain(30);
    bold.family = 0xFFFF;  // unknown: the plain font, made bold
    bold.face = B_BOLD_FACE;
    outlined.face = B_OUTLINED_FACE;
    Paper plainPaper, boldPaper, outlinedPaper;
    plainPaper.Write(plain(30), "l");
    boldPaper.Write(bold, "l");
    outlinedPaper.Write(outlined, "l");
    EXPECT_GT(boldPaper.Ink().right - boldPaper.Ink().left,
              plainPaper.Ink().right - plainPaper.Ink().left);
    EXPECT_FALSE(is_empty(outlinedPaper.Ink()));
    EXPECT_FALSE(outlinedPaper == plainPaper);
}

TEST(TextDrawing, TurnedTextRunsAlongItsBaseline)
{
    FontSpec font = plain();
    float width = server::StringWidth(font, "Hello", 5, nullptr);
    const struct {
        float rotation;
        BPoint end;
    } kCases[] = {{90, BPoint(0, -width)},
                  {180, BPoint(-width, 0)},
                  {270, BPoint(0, width)},
                  {-90, BPoint(0, width)},
                  {360, BPoint(width, 0)}};
    for (auto& one : kCases) {
        font.rotation = one.rotation;
        Paper paper(120, 120);
        BPoint pen(60, 60);
        paper.Write(font, "Hello", &pen);
        EXPECT_NEAR(60 + one.end.x, pen.x, 0.01f);
        EXPECT_NEAR(60 + one.end.y, pen.y, 0.01f);
        clipping_rect ink = paper.Ink();
        BPoint middle((ink.left + ink.right) / 2.0f, (ink.top + ink.bottom) / 2.0f);
        EXPECT_NEAR(60 + one.end.x / 2, middle.x, 6) << one.rotation;
        EXPECT_NEAR(60 + one.end.y / 2, middle.y, 6) << one.rotation;
    }
    FontSpec slanted = plain(30);
    slanted.shear = 60;
    Paper upright, leaning;
    upright.Write(plain(30), "l", 10, 35);
    leaning.Write(slanted, "l", 10, 35);
    EXPECT_GT(leaning.Ink().right, upright.Ink().right + 5);  // below 90 degrees stems lean right
}

TEST(TextDrawing, GiantAndTransformedTextComesFromOutlines)
{
    // One side and the other of the size up to which glyphs are kept.
    Paper kept(400, 300), drawn(400, 300);
    kept.Write(plain(200), "gM", 10, 200);
    drawn.Write(plain(201), "gM", 10, 200);
    EXPECT_NEAR(kept.Ink().left, drawn.Ink().left, 2);
    EXPECT_NEAR(kept.Ink().right, drawn.Ink().right, 3);
    EXPECT_NEAR(kept.Ink().top, drawn.Ink().top, 2);
    EXPECT_NEAR(kept.Ink().bottom, drawn.Ink().bottom, 2);

    BAffineTransform doubled(2, 0, 0, 2, 5, -10);
    server::Paint paint;
    paint.transform = &doubled;
    Paper small(400, 300), large(400, 300);
    BPoint pen(10, 40);
    small.Write(plain(20), "Hg", &pen);
    pen = BPoint(10, 40);
    large.Write(plain(20), "Hg", &pen, paint);
    EXPECT_EQ(10 + server::StringWidth(plain(20), "Hg", 2, nullptr), pen.x);
    EXPECT_NEAR(small.Ink().left * 2 + 5, large.Ink().left, 2);
    EXPECT_NEAR(small.Ink().bottom * 2 - 10, large.Ink().bottom, 3);
    EXPECT_NEAR((small.Ink().right - small.Ink().left) * 2, large.Ink().right - large.Ink().left,
                4);
}

TEST(TextDrawing, EachCharacterGoesToItsPlace)
{
    const BPoint places[] = {BPoint(10, 20), BPoint(50, 30), BPoint(90, 25)};
    auto draw = [&](Paper& paper, int32 count) {
        BPoint pen(150, 20);
        server::DrawStringAt(paper.Target(), {}, plain(),
                             "a\xC3\xA4"
                             "bcd",
                             6, count > 0 ? places : nullptr, count, &pen);
        return pen;
    };
    Paper all, expected;
    BPoint pen = draw(all, 3);
    expected.Write(plain(), "a", 10, 20);
    expected.Write(plain(), "\xC3\xA4", 50, 30);
    expected.Write(plain(), "bcd", 90, 25);
    EXPECT_EQ(expected, all);
    EXPECT_EQ(BPoint(90 + server::StringWidth(plain(), "bcd", 3, nullptr), 25), pen);
    Paper none, inTurn;
    draw(none, 0);
    inTurn.Write(plain(),
                 "a\xC3\xA4"
                 "bcd",
                 150, 20);
    EXPECT_EQ(inTurn, none);
    draw(none, -1);
}

TEST(TextDrawing, DeltasSpreadTheText)
{
    escapement_delta delta = {3, 7};
    Paper paper;
    BPoint pen(10, 20);
    server::DrawString(paper.Target(), {}, plain(), "ab c", 4, &delta, &pen);
    float natural = server::StringWidth(plain(), "ab c", 4, nullptr);
    EXPECT_EQ(10 + natural + 3 * 3 + 7, pen.x);
    EXPECT_EQ(natural + 3 * 3 + 7, server::StringWidth(plain(), "ab c", 4, &delta));
    delta = {NAN, INFINITY};
    EXPECT_EQ(natural, server::StringWidth(plain(), "ab c", 4, &delta));
}

TEST(TextDrawing, ThreadsDrawTheSame)
{
    auto work = [](Paper* paper) {
        for (int round = 0; round < 3; round++) {
            for (int i = 0; i < 150; i++) {
                FontSpec font = plain(static_cast<float>(8 + i % 7));
                font.style = static_cast<uint16>(i % 3);
                font.spacing = static_cast<uint8>(i % 4);
                font.rotation = i % 10 == 0 ? 30.0f : 0.0f;
                std::string text = std::to_string(i * (round + 1)) + " \xD7\xA9\xE2\x88\x9E";
                paper->Write(font, text, static_cast<float>(i), static_cast<float>(10 + i % 25));
            }
        }
    };
    Paper papers[4];
    std::vector<std::thread> threads;
    for (Paper& paper : papers)
        threads.emplace_back(work, &paper);
    for (std::thread& thread : threads)
        thread.join();
    for (int i = 1; i < 4; i++)
        EXPECT_EQ(papers[0], papers[i]);
}
