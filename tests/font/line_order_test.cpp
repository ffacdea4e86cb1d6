// Lines with letters that are read from the right: where each character stands, and what is drawn.

#include <Bitmap.h>
#include <Font.h>
#include <View.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "interface/drawing/FontAccess.h"
#include "server/text/Fonts.h"
#include "support/ValidUTF8.h"

namespace {

std::vector<std::string> characters_of(const std::string& text)
{
    std::vector<std::string> characters;
    std::string_view rest = text;
    while (!rest.empty()) {
        uint32 code;
        const size_t size = BPrivate::next_character(rest, &code);
        characters.emplace_back(rest.substr(0, size));
        rest.remove_prefix(size);
    }
    return characters;
}

std::vector<server::CharacterMetrics> metrics_of(const BFont& font, const std::string& text)
{
    std::vector<server::CharacterMetrics> metrics(text.size() + 1);
    metrics.resize(static_cast<size_t>(server::MeasureCharacters(
        FontAccess::Spec(font), text.c_str(), static_cast<int32>(text.size()), nullptr,
        server::Boxes::None, metrics.data())));
    return metrics;
}

// The characters that take room, from the left.
std::string seen_order(const BFont& font, const std::string& text)
{
    const std::vector<std::string> characters = characters_of(text);
    const auto metrics = metrics_of(font, text);
    std::vector<size_t> order(metrics.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](size_t one, size_t two) {
        return metrics[one].start < metrics[two].start;
    });
    std::string seen;
    for (size_t at : order) {
        if (metrics[at].advance > 0)
            seen += characters[at];
    }
    return seen;
}

std::vector<uint8> drawn(const BFont& font, const std::string& text)
{
    BBitmap bitmap(BRect(0, 0, 299, 29), B_RGB32, true);
    BView view(bitmap.Bounds(), "", B_FOLLOW_NONE, B_WILL_DRAW);
    bitmap.AddChild(&view);
    bitmap.Lock();
    view.SetFont(&font);
    view.DrawString(text.c_str(), BPoint(4, 20));
    view.Sync();
    bitmap.RemoveChild(&view);
    bitmap.Unlock();
    const auto* bits = static_cast<const uint8*>(bitmap.Bits());
    return std::vector<uint8>(bits, bits + bitmap.BitsLength());
}

struct Line {
    const char* text;
    const char* seen;
};

}  // namespace

TEST(LineOrder, LettersFromTheRightStandInTheirOwnOrder)
{
    static const Line kLines[] = {
        {"a \u05D0\u05D1 c", "a \u05D1\u05D0 c"},
        {"a (\u05D0\u05D1) c", "a (\u05D1\u05D0) c"},
        {"\u05D0\u05D1 (\u05D2\u05D3) \u05D4", "\u05D4 )\u05D3\u05D2( \u05D1\u05D0"},
        {"\u05D0\u05D1 (c) \u05D3", "\u05D1\u05D0 (c) \u05D3"},
        {"\u05D0\u05D1!", "\u05D1\u05D0!"},
        {"\u05D0\u05D1 ", "\u05D1\u05D0 "},
        {"12 \u05D0\u05D1", "12 \u05D1\u05D0"},
        {"\u05D0 \u2167 \u05D1", "\u05D0 \u2167 \u05D1"},
        {"\u05D0\t\u05D1", "\u05D0\t\u05D1"},
    };
    for (const Line& line : kLines)
        EXPECT_EQ(line.seen, seen_order(*be_plain_font, line.text)) << line.text;
}

TEST(LineOrder, NumbersInsideKeepTheirOwn)
{
    static const Line kLines[] = {
        {"\u05D0\u05D1 12", "12 \u05D1\u05D0"},
        {"\u05D0\u05D1 12-34", "12-34 \u05D1\u05D0"},
        {"\u05D0\u05D1 1.5 \u05D2", "\u05D2 1.5 \u05D1\u05D0"},
        {"\u05D0\u05D1 10:30", "10:30 \u05D1\u05D0"},
        {"\u05D0\u05D1 12%", "12% \u05D1\u05D0"},
        {"\u05D0 \u00A35 \u05D1", "\u05D1 \u00A35 \u05D0"},
        {"\u0633\u0646 1:2", "1:2 \u0646\u0633"},
        {"\u0661\u0662 \u0663", "\u0663 \u0661\u0662"},
    };
    for (const Line& line : kLines)
        EXPECT_EQ(line.seen, seen_order(*be_plain_font, line.text)) << line.text;
}

TEST(LineOrder, SignsThatSayTheDirectionAreFollowed)
{
    static const Line kLines[] = {
        {"\u202E"
         "abc\u202C d",
         "cba d"},
        {"\u2067"
         "abc \u05D0\u05D1\u2069 d",
         "\u05D1\u05D0 abc d"},
        {"\u202B"
         "ab (\u05D0) \u202A"
         "c \u05D1\u05D2\u202C d\u202C e",
         "c \u05D2\u05D1 d )\u05D0( ab e"},
        {"\u05D0\u05D1!\u200F", "!\u05D1\u05D0"},
        {"\u05D0\u05D1!\u200F -", "!\u05D1\u05D0 -"},
    };
    for (const Line& line : kLines)
        EXPECT_EQ(line.seen, seen_order(*be_plain_font, line.text)) << line.text;
}

TEST(LineOrder, BracketsReadFromTheRightAreTurned)
{
    // The same letters with the same brackets around them, in the order in which they are seen.
    for (const Line& line : {Line{"\u05D0(\u05D1)\u05D2", "\u202D\u05D2(\u05D1)\u05D0"},
                             Line{"\u05D0[\u05D1]\u05D2", "\u202D\u05D2[\u05D1]\u05D0"},
                             Line{"\u05D0<\u05D1", "\u202D\u05D1>\u05D0"}}) {
        const auto pixels = drawn(*be_plain_font, line.text);
        EXPECT_FALSE(pixels == drawn(*be_plain_font, ""));
        EXPECT_TRUE(pixels == drawn(*be_plain_font, line.seen)) << line.text;
    }
}

// Letters of a long line that is all read from the right begin at its right end.
TEST(LineOrder, HoldsForLinesOfAnyLengthThatAProgramWrites)
{
    std::string text;
    for (int i = 0; i < 90; i++)
        text += "\u05D0\u05D1\u05D2 ";
    text += "\u05D3";
    const auto metrics = metrics_of(*be_plain_font, text);
    const float width = be_plain_font->StringWidth(text.c_str());
    EXPECT_NEAR(metrics.front().start + metrics.front().advance, width, 0.01f);
    EXPECT_EQ(metrics.back().start, 0);
    for (size_t i = 1; i < metrics.size(); i++)
        EXPECT_LT(metrics[i].start, metrics[i - 1].start) << i;
}

TEST(LineOrder, AnyCharactersAreMeasuredWholeAndOnce)
{
    static const char* const kPieces[] = {
        "a",      "\u05D0", "\u0633", "1",      "\u0661", "(",      ")",      " ",      "\u202E",
        "\u202A", "\u202B", "\u202C", "\u2066", "\u2067", "\u2068", "\u2069", "\u0301", "\u05B0",
        "-",      ",",      "\n",     "\t",     "\u200F", "\u200D", "%",      "\u2029", "\xFF",
    };
    uint32 seed = 1;
    for (int round = 0; round < 2000; round++) {
        std::string text;
        for (uint32 left = round % 60; left > 0; left--)
            text += kPieces[((seed = seed * 1664525 + 1013904223) >> 16) % std::size(kPieces)];
        float sum = 0, end = 0;
        for (const auto& character : metrics_of(*be_plain_font, text)) {
            EXPECT_GE(character.start, 0) << text;
            sum += character.advance;
            end = std::max(end, character.start + character.advance);
        }
        const float width = be_plain_font->StringWidth(text.c_str());
        EXPECT_NEAR(sum, width, 0.01f) << text;
        EXPECT_NEAR(end, width, 0.01f) << text;
    }
}
