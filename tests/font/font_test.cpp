// BFont through its public calls: measuring, cutting, families and styles, from many threads.

#include <Font.h>
#include <Shape.h>
#include <String.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "support/ValidUTF8.h"

namespace {

std::string family_of(const BFont& font)
{
    font_family family;
    font.GetFamilyAndStyle(&family, nullptr);
    return family;
}

std::string cut(const BFont& font, std::string text, uint32 mode, float width)
{
    std::vector<char> buffer(text.size() + 4, '#');
    const char* in[] = {text.c_str()};
    char* out[] = {buffer.data()};
    font.GetTruncatedStrings(in, 1, mode, width, out);
    return buffer.data();
}

bool is_utf8(const std::string& text)
{
    for (size_t i = 0; i < text.size();) {
        uint8 lead = static_cast<uint8>(text[i++]);
        int more = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : -1;
        for (; more > 0 && i < text.size() && (text[i] & 0xC0) == 0x80; more--)
            i++;
        if (more != 0)
            return false;
    }
    return true;
}

constexpr uint8 kSpacings[] = {B_CHAR_SPACING, B_STRING_SPACING, B_BITMAP_SPACING, B_FIXED_SPACING};

}  // namespace

TEST(Font, DefaultFontsAreWhatProgramsCountOn)
{
    EXPECT_EQ(12.0f, be_plain_font->Size());
    EXPECT_EQ(B_REGULAR_FACE, be_plain_font->Face());
    EXPECT_EQ(B_BOLD_FACE, be_bold_font->Face());
    EXPECT_TRUE(be_fixed_font->IsFixed());
    EXPECT_FALSE(be_plain_font->IsFixed());
    EXPECT_EQ(be_fixed_font->StringWidth("iiii"), be_fixed_font->StringWidth("WWWW"));
    EXPECT_GT(be_bold_font->StringWidth("Hello world"), be_plain_font->StringWidth("Hello world"));
    EXPECT_EQ(B_TRUETYPE_WINDOWS, be_plain_font->FileFormat());
    EXPECT_EQ(B_FONT_LEFT_TO_RIGHT, be_plain_font->Direction());
    EXPECT_TRUE(BFont() == *be_plain_font);
    EXPECT_TRUE(*be_plain_font != *be_bold_font);
}

// The default fonts are known by role, other fonts by ids: both can mean the same one.
TEST(Font, DefaultFontEqualsTheSameFontByNameAndByCode)
{
    font_family family;
    font_style style;
    be_bold_font->GetFamilyAndStyle(&family, &style);
    BFont named;
    ASSERT_EQ(B_OK, named.SetFamilyAndStyle(family, style));
    EXPECT_TRUE(named == *be_bold_font);
    BFont coded;
    coded.SetFamilyAndStyle(be_bold_font->FamilyAndStyle());
    EXPECT_TRUE(coded == *be_bold_font);
    coded.SetFamilyAndStyle(0xFFFFFFFF);
    EXPECT_TRUE(coded == *be_plain_font);
}

TEST(Font, WidthsOfPartsAddUp)
{
    const std::string text = "The quick brown fox, AVAWA To. (1.234) \xC3\xA9\xCE\xB1\xD0\xB6!";
    for (uint8 spacing : {B_BITMAP_SPACING, B_FIXED_SPACING}) {
        for (float size : {1.0f, 7.0f, 9.5f, 12.0f, 13.3f, 48.0f, 300.0f}) {
            BFont font;
            font.SetSpacing(spacing);
            font.SetSize(size);
            float whole = font.StringWidth(text.c_str());
            EXPECT_EQ(whole, std::round(whole));
            for (size_t at = 1; at < text.size(); at++) {
                if ((text[at] & 0xC0) == 0x80)
                    continue;
                int32 head = static_cast<int32>(at);
                EXPECT_EQ(whole, font.StringWidth(text.c_str(), head) +
                                     font.StringWidth(text.c_str() + at))
                    << size << " " << at;
            }
        }
    }
}

TEST(Font, TextEndsWithItsLengthOrAtAZeroByte)
{
    const BFont& font = *be_plain_font;
    EXPECT_EQ(0.0f, font.StringWidth(nullptr));
    EXPECT_EQ(0.0f, font.StringWidth(nullptr, 5));
    EXPECT_EQ(0.0f, font.StringWidth(""));
    EXPECT_EQ(0.0f, font.StringWidth("abc", 0));
    EXPECT_EQ(0.0f, font.StringWidth("abc", -1));
    EXPECT_EQ(0.0f, font.StringWidth("abc", INT32_MIN));
    EXPECT_EQ(font.StringWidth("abc"), font.StringWidth("abc", INT32_MAX));
    EXPECT_EQ(font.StringWidth("ab"), font.StringWidth("abc", 2));
    EXPECT_EQ(font.StringWidth("ab"), font.StringWidth("ab\0cd", 5));

    const char* strings[] = {"abc", nullptr, "", "a longer one"};
    const int32 lengths[] = {2, 3, 9, -4};
    float widths[4];
    font.GetStringWidths(strings, lengths, 4, widths);
    EXPECT_EQ(font.StringWidth("ab"), widths[0]);
    EXPECT_EQ(0.0f, widths[1] + widths[2] + widths[3]);
    font.GetStringWidths(strings, nullptr, 4, widths);
    EXPECT_EQ(font.StringWidth("a longer one"), widths[3]);
}

TEST(Font, BytesThatAreNoUtf8CountAsLatin1)
{
    const struct {
        const char *bytes, *text;
    } kCases[] = {
        {"caf\xE9", "caf\xC3\xA9"},
        {"\xFF\xFE", "\xC3\xBF\xC3\xBE"},
        {"\xE4", "\xC3\xA4"},  // a lead byte without its tail
        {"\xC3", "\xC3\x83"},
        {"\xF4\xA0\xA0\xA0", "\xC3\xB4\xC2\xA0\xC2\xA0\xC2\xA0"},  // beyond the last character
        {"\xE0\x80\xAF", "\xC3\xA0\xC2\x80\xC2\xAF"},              // and in three bytes
        {"\xC0\xAF", "\xC3\x80\xC2\xAF"},                          // an overlong slash
        {"\xED\xA0\xA0", "\xC3\xAD\xC2\xA0\xC2\xA0"},              // half a surrogate pair
        {"\x80", "\xC2\x80"},                                      // no letter, but seen
        {"\x93\x9F", "\xC2\x93\xC2\x9F"},
    };
    for (auto& one : kCases) {
        for (uint8 spacing : kSpacings) {
            BFont font;
            font.SetSpacing(spacing);
            EXPECT_EQ(font.StringWidth(one.text), font.StringWidth(one.bytes)) << one.text;
            EXPECT_GT(font.StringWidth(one.bytes), 0.0f);
        }
    }
    // A sequence cut off by the length is no sequence.
    EXPECT_EQ(be_plain_font->StringWidth("\xC3\x83"), be_plain_font->StringWidth("\xC3\xA9", 1));
}

TEST(Font, EveryStrayByteIsSeenAsTheClipboardHandsItOn)
{
    for (int byte = 0x80; byte <= 0xFF; byte++) {
        const std::string stray(1, static_cast<char>(byte));
        const float width = be_plain_font->StringWidth(stray.c_str());
        EXPECT_GT(width, 0.0f) << byte;
        EXPECT_EQ(width, be_plain_font->StringWidth(BPrivate::valid_utf8(stray).c_str())) << byte;
    }
}

TEST(Font, ControlCharactersTakeNoRoomButTheTab)
{
    const BFont& font = *be_plain_font;
    EXPECT_EQ(font.StringWidth("ab"), font.StringWidth("a\n\r\x01\x7F\xE2\x80\x8B"
                                                       "b"));
    EXPECT_EQ(font.StringWidth("a b"), font.StringWidth("a\tb"));
}

TEST(Font, OtherEncodingsReadOneByteACharacter)
{
    BFont font;
    font.SetEncoding(B_ISO_8859_2);
    EXPECT_EQ(be_plain_font->StringWidth("\xC5\x82"), font.StringWidth("\xB3"));  // l with stroke
    font.SetEncoding(B_MACINTOSH_ROMAN);
    EXPECT_EQ(be_plain_font->StringWidth("\xC3\xA4"), font.StringWidth("\x8A"));
    font.SetEncoding(200);  // unknown ones are UTF-8
    EXPECT_EQ(be_plain_font->StringWidth("\xC3\xA4"), font.StringWidth("\xC3\xA4"));
}

// Escapements are in font sizes, deltas in pixels.
TEST(Font, EscapementsSumToTheWidth)
{
    const char* kTexts[] = {
        "Hello world",
        "caf\xC3\xA9 \xFF x",
        "e\xCC\x81"
        "a\xCC\x88 AVA",
        "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D 123 abc",
        "\xD8\xB3\xD9\x84\xD8\xA7\xD9\x85",
        "\xE0\xA4\xB9\xE0\xA4\xBF\xE0\xA4\xA8\xE0\xA5\x8D\xE0\xA4\xA6\xE0\xA5\x80"};
    for (const char* text : kTexts) {
        for (uint8 spacing : kSpacings) {
            BFont font;
            font.SetSize(17);
            font.SetSpacing(spacing);
            float steps[64];
            font.GetEscapements(text, 64, steps);
            float sum = 0.0f;
            for (float step : steps)
                sum += step * font.Size();
            EXPECT_NEAR(font.StringWidth(text), sum, 0.01f) << text << int(spacing);
        }
    }
    escapement_delta delta = {2.0f, 5.0f};
    float plain[3], wide[3];
    be_plain_font->GetEscapements("a b", 3, plain);
    be_plain_font->GetEscapements("a b", 3, &delta, wide);
    EXPECT_FLOAT_EQ(plain[0] + 2.0f / 12.0f, wide[0]);
    EXPECT_FLOAT_EQ(plain[1] + 5.0f / 12.0f, wide[1]);

    BFont turned;
    turned.SetRotation(90);
    BPoint steps[2];
    turned.GetEscapements("aa", 2, nullptr, steps);
    EXPECT_NEAR(0.0f, steps[0].x, 1e-5f);
    EXPECT_FLOAT_EQ(-plain[0], steps[0].y);
}

TEST(Font, HeightsAreWholeAndPositiveAndHoldTheLetters)
{
    for (const BFont* which : {be_plain_font, be_bold_font, be_fixed_font}) {
        for (float size : {1.0f, 5.0f, 9.0f, 12.0f, 14.5f, 48.0f, 500.0f}) {
            BFont font(which);
            font.SetSize(size);
            font_height height;
            font.GetHeight(&height);
            EXPECT_EQ(std::round(height.ascent), height.ascent);
            EXPECT_GT(height.ascent, 0.0f);
            EXPECT_GT(height.descent, 0.0f);
            EXPECT_GE(height.leading, 0.0f);
            BRect box[1];
            const char* strings[] = {"\xC3\x84gjpq|"};
            font.GetBoundingBoxesForStrings(strings, 1, B_PRINTING_METRIC, nullptr, box);
            EXPECT_LE(-box[0].top, height.ascent) << size;
            EXPECT_LE(box[0].bottom, height.descent) << size;
        }
    }
}

TEST(Font, OddSizesMeasureNothingOrSomethingFinite)
{
    BFont font;
    for (float size : {0.0f, -1.0f, -1e30f, 1e-20f}) {
        font.SetSize(size);
        EXPECT_EQ(size, font.Size());
        EXPECT_EQ(0.0f, font.StringWidth("abc"));
        float steps[3] = {1, 1, 1};
        font.GetEscapements("abc", 3, steps);
        EXPECT_EQ(0.0f, steps[0]);
        font_height height;
        font.GetHeight(&height);
        EXPECT_EQ(0.0f, height.ascent + height.descent + height.leading);
    }
    font.SetSize(1e30f);
    EXPECT_TRUE(std::isfinite(font.StringWidth("abc")));
    font.SetSize(12.0f);
    font.SetSize(NAN);
    font.SetRotation(INFINITY);
    font.SetShear(NAN);
    EXPECT_TRUE(font == *be_plain_font);  // what is no number changes nothing
    font.SetRotation(1e30f);
    font.SetShear(-1e30f);
    font.SetFalseBoldWidth(1e30f);
    EXPECT_TRUE(std::isfinite(font.StringWidth("abc")));
}

TEST(Font, SetFaceIsReadBackAndFindsTheStyle)
{
    BFont font;
    font_family family;
    font.GetFamilyAndStyle(&family, nullptr);
    ASSERT_EQ(B_OK, font.SetFamilyAndFace(family, 0x61));
    EXPECT_EQ(0x61, font.Face());
    EXPECT_EQ(family, family_of(font));
    EXPECT_NE(be_plain_font->FamilyAndStyle(), font.FamilyAndStyle());
    font.SetFace(B_BOLD_FACE | B_UNDERSCORE_FACE);
    EXPECT_EQ(be_bold_font->FamilyAndStyle(), font.FamilyAndStyle());
    EXPECT_EQ(B_BOLD_FACE | B_UNDERSCORE_FACE, font.Face());
    // Lines belong to no style: they stay when another one is taken.
    font.SetFamilyAndStyle(be_plain_font->FamilyAndStyle());
    EXPECT_EQ(B_REGULAR_FACE | B_UNDERSCORE_FACE, font.Face());
}

TEST(Font, UnknownFamilyChangesNothingUnknownStyleGivesTheNearest)
{
    BFont font(be_bold_font);
    EXPECT_EQ(B_NAME_NOT_FOUND, font.SetFamilyAndStyle("No Such Family", "Regular"));
    EXPECT_EQ(B_NAME_NOT_FOUND, font.SetFamilyAndFace("", B_REGULAR_FACE));
    EXPECT_TRUE(font == *be_bold_font);
    std::string family = family_of(font);
    EXPECT_EQ(B_OK, font.SetFamilyAndStyle(family.c_str(), "Book"));
    EXPECT_EQ(be_plain_font->FamilyAndStyle(), font.FamilyAndStyle());
    EXPECT_EQ(B_OK, font.SetFamilyAndStyle(nullptr, "Bold"));
    EXPECT_EQ(be_bold_font->FamilyAndStyle(), font.FamilyAndStyle());
    for (char& c : family)
        c = static_cast<char>(toupper(c));
    EXPECT_EQ(B_OK, font.SetFamilyAndStyle(family.c_str(), nullptr));
    EXPECT_EQ(be_bold_font->FamilyAndStyle(), font.FamilyAndStyle());
}

TEST(Font, EveryFamilyAndStyleMeasures)
{
    int32 families = count_font_families();
    ASSERT_GT(families, 0);
    std::string last;
    for (int32 i = 0; i < families; i++) {
        font_family family;
        ASSERT_EQ(B_OK, get_font_family(i, &family));
        EXPECT_NE(last, family);
        last = family;
        int32 styles = count_font_styles(family);
        EXPECT_GT(styles, 0);
        for (int32 j = 0; j < styles; j++) {
            font_style style;
            uint16 face = 0;
            ASSERT_EQ(B_OK, get_font_style(family, j, &style, &face));
            BFont font;
            ASSERT_EQ(B_OK, font.SetFamilyAndStyle(family, style));
            font_style back;
            font.GetFamilyAndStyle(nullptr, &back);
            EXPECT_STREQ(style, back);
            EXPECT_EQ(face, font.Face());
            EXPECT_GT(font.StringWidth("Ab 1"), 0.0f) << family << " " << style;
            font_height height;
            font.GetHeight(&height);
            EXPECT_GT(height.ascent, 0.0f);
        }
    }
    font_family family;
    EXPECT_EQ(B_BAD_VALUE, get_font_family(-1, &family));
    EXPECT_EQ(B_BAD_VALUE, get_font_family(families, &family));
    EXPECT_EQ(B_BAD_VALUE, get_font_family(0, nullptr));
    font_style style;
    char unknown[] = "No Such Family";
    EXPECT_EQ(0, count_font_styles(unknown));
    EXPECT_EQ(B_BAD_VALUE, get_font_style(unknown, 0, &style));
    EXPECT_FALSE(update_font_families(true));
}

TEST(Font, CutStringsFitAndKeepTheRightEnd)
{
    const BFont& font = *be_plain_font;
    const char* ellipsis = "\xE2\x80\xA6";
    const std::string texts[] = {
        "/boot/home/Desktop/picture.png",
        "\xC3\x84\xC3\x96\xC3\x9C \xCE\xB1\xCE\xB2\xCE\xB3 \xE4\xB8\xAD\xE6\x96\x87 e\xCC\x81nd"};
    for (const std::string& text : texts) {
        float whole = font.StringWidth(text.c_str());
        for (float width = -5; width < whole + 10; width++) {
            for (uint32 mode :
                 {B_TRUNCATE_END, B_TRUNCATE_BEGINNING, B_TRUNCATE_MIDDLE, B_TRUNCATE_SMART}) {
                std::string got = cut(font, text, mode, width);
                EXPECT_TRUE(is_utf8(got));
                if (width >= whole) {
                    EXPECT_EQ(text, got);
                    continue;
                }
                EXPECT_LE(font.StringWidth(got.c_str()), std::max(0.0f, width));
                size_t dots = got.find(ellipsis);
                if (got.empty()) {
                    EXPECT_LT(width, font.StringWidth(ellipsis));
                    continue;
                }
                ASSERT_NE(std::string::npos, dots);
                std::string head = got.substr(0, dots), tail = got.substr(dots + 3);
                EXPECT_EQ(0u, text.find(head));
                EXPECT_EQ(tail, text.substr(text.size() - tail.size()));
                if (mode == B_TRUNCATE_END) {
                    EXPECT_EQ("", tail);
                }
                if (mode == B_TRUNCATE_BEGINNING) {
                    EXPECT_EQ("", head);
                }
            }
        }
        EXPECT_EQ(text, cut(font, text, B_NO_TRUNCATION, 3));
    }
    // A mark goes with its letter: whatever is cut, no cut is before U+0301.
    EXPECT_EQ(std::string::npos, cut(font,
                                     "xxxxe\xCC\x81"
                                     "e\xCC\x81"
                                     "e\xCC\x81",
                                     B_TRUNCATE_BEGINNING, 25)
                                     .find("\xA6\xCC"));
    // As much is kept as fits.
    float room = font.StringWidth("Hello w\xE2\x80\xA6");
    EXPECT_EQ("Hello w\xE2\x80\xA6", cut(font, "Hello world", B_TRUNCATE_END, room));
}

TEST(Font, SmartCutsKeepStringsApart)
{
    const char* in[] = {"/a/very/long/common/folder/name/one.txt",
                        "/a/very/long/common/folder/name/two.txt",
                        "/a/very/long/common/folder/name/three.txt"};
    BString out[3];
    be_plain_font->GetTruncatedStrings(in, 3, B_TRUNCATE_SMART, 120, out);
    for (int i = 0; i < 3; i++) {
        EXPECT_LE(be_plain_font->StringWidth(out[i].String()), 120);
        for (int j = 0; j < i; j++)
            EXPECT_STRNE(out[i].String(), out[j].String());
    }
    BString text("Hello world");
    be_plain_font->TruncateString(&text, B_TRUNCATE_END, 40);
    EXPECT_LE(be_plain_font->StringWidth(text.String()), 40);
    be_plain_font->TruncateString(nullptr, B_TRUNCATE_END, 40);
}

TEST(Font, BoxesEdgesAndShapesAgree)
{
    BFont font;
    font.SetSize(40);
    BRect outline[3], pixels[3], inString[3];
    font.GetBoundingBoxesAsGlyphs("g l", 3, B_PRINTING_METRIC, outline);
    font.GetBoundingBoxesAsGlyphs("g l", 3, B_SCREEN_METRIC, pixels);
    font.GetBoundingBoxesAsString("g l", 3, B_PRINTING_METRIC, nullptr, inString);
    EXPECT_FALSE(outline[1].IsValid());  // a space
    EXPECT_TRUE(pixels[0].InsetByCopy(-1.5f, -1.5f).Contains(outline[0]));
    EXPECT_LT(outline[0].top, 0.0f);
    EXPECT_GT(outline[0].bottom, 0.0f);  // g hangs below the baseline
    EXPECT_EQ(outline[2].left + font.StringWidth("g "), inString[2].left);
    EXPECT_TRUE(font.BoundingBox().Contains(outline[0]));

    edge_info edges[3];
    font.GetEdges("g l", 3, edges);
    EXPECT_NEAR(outline[0].left, edges[0].left * 40, 0.1f);
    EXPECT_NEAR(font.StringWidth("g") - outline[0].right, edges[0].right * 40, 0.1f);

    BShape shapes[2];
    BShape* array[] = {&shapes[0], &shapes[1], nullptr};
    font.GetGlyphShapes("gl", 3, array);
    EXPECT_NEAR(outline[0].left, shapes[0].Bounds().left, 1.0f);
    EXPECT_NEAR(outline[0].bottom, shapes[0].Bounds().bottom, 1.0f);
    EXPECT_GT(shapes[1].Bounds().Height(), shapes[1].Bounds().Width() * 3);
}

TEST(Font, KnowsItsCharacters)
{
    bool has[4];
    be_plain_font->GetHasGlyphs("a\xC3\xA9\xD7\xA9\xF3\xB0\x80\x80", 4, has, false);
    EXPECT_TRUE(has[0] && has[1]);
    EXPECT_FALSE(has[3]);  // of a private plane
    unicode_block blocks = be_plain_font->Blocks();
    EXPECT_TRUE(blocks.Includes(B_BASIC_LATIN_BLOCK));
    EXPECT_TRUE(blocks.Includes(B_LATIN1_SUPPLEMENT_BLOCK));
    EXPECT_FALSE(blocks.Includes(B_HIGH_SURROGATES_BLOCK));
    EXPECT_FALSE((blocks & B_BASIC_LATIN_BLOCK).Includes(B_CYRILLIC_BLOCK));
    EXPECT_TRUE(be_plain_font->IncludesBlock('A', 'Z'));
    EXPECT_FALSE(be_plain_font->IncludesBlock('Z', 'A'));
    EXPECT_EQ(128u, kUnicodeBlockMap[0].Count());
}

TEST(Font, LoadsAFileAndLetsItGo)
{
    BFont font;
    EXPECT_EQ(B_BAD_VALUE, font.LoadFont(static_cast<const char*>(nullptr)));
    EXPECT_EQ(B_BAD_VALUE, font.LoadFont("/nowhere/no.ttf"));
    EXPECT_EQ(B_BAD_VALUE, font.LoadFont("/dev/null"));
    EXPECT_TRUE(font == *be_plain_font);
    EXPECT_NE(B_OK, font.UnloadFont());  // installed fonts stay
}

TEST(Font, LongTextIsMeasuredInOneWalk)
{
    std::string text(1 << 20, 'x');
    for (size_t i = 7; i < text.size(); i += 8)
        text[i] = ' ';
    float part = be_plain_font->StringWidth("xxxxxxx ");
    EXPECT_FLOAT_EQ(part * (1 << 17), be_plain_font->StringWidth(text.c_str()));
    // Without a space to cut at, and with marks that must not be parted from their letters.
    std::string marks = "xx";
    for (int i = 0; i < 1000; i++)
        marks += "e\xCC\x81";
    EXPECT_FLOAT_EQ(
        be_plain_font->StringWidth("e\xCC\x81") * 1000 + be_plain_font->StringWidth("xx"),
        be_plain_font->StringWidth(marks.c_str()));
    std::string stray(5000, '\xA9');
    EXPECT_FLOAT_EQ(be_plain_font->StringWidth("\xC2\xA9") * 5000,
                    be_plain_font->StringWidth(stray.c_str()));
}

TEST(Font, ThreadsMeasureTheSame)
{
    auto work = [](int seed, std::vector<float>* widths) {
        for (int i = 0; i < 400; i++) {
            BFont font(i % 3 == 0 ? be_bold_font : i % 3 == 1 ? be_plain_font : be_fixed_font);
            font.SetSize(static_cast<float>(8 + i % 5));
            font.SetSpacing(static_cast<uint8>(i % 4));
            std::string text = "Text " + std::to_string(i) + " \xD7\xA9\xCE\xB1";
            widths->push_back(font.StringWidth(text.c_str()));
            float steps[16];
            font.GetEscapements(text.c_str(), 16, steps);
            font_height height;
            font.GetHeight(&height);
            widths->push_back(steps[2] + height.ascent);
            if (i % 100 == seed)
                update_font_families(false);
        }
    };
    std::vector<float> widths[4];
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; i++)
        threads.emplace_back(work, i, &widths[i]);
    for (std::thread& thread : threads)
        thread.join();
    for (int i = 1; i < 4; i++)
        EXPECT_EQ(widths[0], widths[i]);
}
