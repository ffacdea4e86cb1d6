// Where characters of text that may be anything begin and end.

#include <gtest/gtest.h>

#include "support/ValidUTF8.h"

using namespace BPrivate;

TEST(Characters, TextIsCutBetweenThem)
{
    const struct {
        std::string_view text;
        size_t most;
        std::string_view kept;
    } kCuts[] = {
        {"abc", 5, "abc"},
        {"abc", 3, "abc"},
        {"abc", 2, "ab"},
        {"abc", 0, ""},
        {"a\u00e9b", 2, "a"},
        {"a\u00e9b", 3, "a\u00e9"},
        {"\u20ac", 2, ""},
        {"\U0001F600x", 3, ""},
        {"\U0001F600x", 4, "\U0001F600"},
        {"\x80\x80\x80\x80\x80\x80\x80\x80", 6, "\x80\x80\x80"},  // not without end
    };
    for (const auto& cut : kCuts)
        EXPECT_EQ(utf8_fitting(cut.text, cut.most), cut.kept) << cut.text << " " << cut.most;
}

TEST(Characters, PiecesAreWhatIsThereOfThem)
{
    for (const auto& [text, length] : {std::pair<std::string_view, size_t>("ab", 1),
                                       {"\u00e9b", 2},
                                       {"\u20ac", 3},
                                       {"\xE2\x82", 2},
                                       {"\xE2y", 1},
                                       {"\x82\x82", 1},
                                       {"\U0001F600\x80", 4}})
        EXPECT_EQ(utf8_piece_length(text), length) << text;
}

TEST(Characters, AreReadAsTheyAreWritten)
{
    for (const uint32 code : {0x0u, 0x41u, 0x7Fu, 0x80u, 0xE9u, 0x7FFu, 0x800u, 0x20ACu, 0xFFFFu,
                              0x10000u, 0x1F600u, 0x10FFFFu}) {
        char bytes[4];
        const size_t length = put_utf8(code, bytes);
        uint32 read = 0;
        EXPECT_EQ(next_character({bytes, length}, &read), length) << code;
        EXPECT_EQ(read, code);
    }
}
