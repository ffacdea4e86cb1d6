// What readers take for one character, and where lines may be broken.

#include "server/text/Characters.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using server::CharacterClass;

namespace {

// A text with bars between its characters.
std::string parted(const std::string& text)
{
    std::string parts;
    for (size_t at = 0; at < text.size();) {
        const auto size = size_t(server::GraphemeLength(text.data() + at, int32(text.size() - at)));
        parts += (at > 0 ? "|" : "") + text.substr(at, size);
        at += size;
    }
    return parts;
}

// The same, found from the end.
std::string parted_backwards(const std::string& text)
{
    std::string parts = text;
    for (auto end = int32(text.size()); end > 0;) {
        const int32 start = server::GraphemeBefore(text.data(), end);
        if (start > 0)
            parts.insert(size_t(start), "|");
        end = start;
    }
    return parts;
}

const char* const kParted[] = {
    "a|b", "e\u0301|x", "e\u0301\u0302|\n|a", "\r\n|\n|\r|a", "\u0301|a",
    // Emoji with skin, of a family, with a number, of flags.
    "👍🏽|👍", "👩‍👩‍👧‍👦|x", "1️⃣|2", "🇩🇪|🇫🇷|🇮", "a|‍|b",
    // Hangul, Devanagari and Thai.
    "한|글", "각|ᄀ", "नि|क्|षि", "กำ|น",
    // What is no UTF-8 stands alone, before marks as well.
    "\xFF|\xFE", "a|\xCC", "\xE2|\x82|a", "\xC3|\u0301", "\xF0|\x9F|\x91"};

}  // namespace

TEST(Characters, AreWhatReadersSee)
{
    for (std::string expected : kParted) {
        // A joiner after a letter belongs to it.
        if (expected == "a|‍|b")
            expected = "a‍|b";
        std::string text = expected;
        std::erase(text, '|');
        EXPECT_EQ(parted(text), expected);
        EXPECT_EQ(parted_backwards(text), expected);
    }
}

TEST(Characters, CutTextsEndSomewhere)
{
    const std::string text = "👩‍👩‍👧‍👦e\u0301🇩🇪\xFF한";
    for (size_t length = 0; length <= text.size(); length++) {
        const std::string cut = text.substr(0, length);
        std::string parts = parted(cut);
        std::erase(parts, '|');
        EXPECT_EQ(parts, cut);
        EXPECT_EQ(parted(cut), parted_backwards(cut)) << length;
    }
    EXPECT_EQ(server::GraphemeLength("", 0), 0);
    EXPECT_EQ(server::GraphemeBefore("", 0), 0);
}

TEST(Characters, ClassesMakeWords)
{
    const struct {
        uint32 code;
        CharacterClass kind;
    } kRows[] = {{' ', CharacterClass::Blank},        {'\t', CharacterClass::Blank},
                 {0x3000, CharacterClass::Blank},     {'\n', CharacterClass::LineFeed},
                 {'a', CharacterClass::Letter},       {'_', CharacterClass::Letter},
                 {'7', CharacterClass::Letter},       {0xE9, CharacterClass::Letter},
                 {0x301, CharacterClass::Letter},     {0xA0, CharacterClass::Letter},
                 {0x6F22, CharacterClass::Ideograph}, {'(', CharacterClass::Open},
                 {')', CharacterClass::Close},        {',', CharacterClass::Close},
                 {'+', CharacterClass::Sign},         {0x1F600, CharacterClass::Sign}};
    for (const auto& row : kRows)
        EXPECT_EQ(server::ClassOf(row.code), row.kind) << std::hex << row.code;
}

TEST(Characters, LinesEndBehindBlanksHyphensAndIdeographs)
{
    const struct {
        uint32 before, left, right;
        bool breaks;
    } kRows[] = {{'a', ' ', 'b', true},     {'a', 'b', 'c', false},     {'a', '-', 'b', true},
                 {' ', '-', '5', false},    {'a', '-', '5', false},     {' ', '-', 'x', false},
                 {0, 0x6F22, 0x6F22, true}, {0, 0x6F22, 0x3002, false}, {0, 0x6F22, 'a', true},
                 {0, 'a', 0x6F22, true},    {0, '(', 0x6F22, false},    {'a', 0xA0, 'b', false},
                 {'a', '/', 'b', true},     {'1', '/', '2', false},     {'a', ' ', 0xA0, false},
                 {'a', '\n', ',', true},    {0, 'a', 0x200B, false},    {0, 0x200B, 'a', true}};
    for (const auto& row : kRows)
        EXPECT_EQ(server::MayBreak(row.before, row.left, row.right), row.breaks)
            << std::hex << row.before << " " << row.left << " " << row.right;
}
