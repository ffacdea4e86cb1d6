// Searching in texts: directions, letters of any case, whole words, bytes of any kind.

#include "gadgets/text_search.h"

#include <string>

#include <gtest/gtest.h>

TEST(TextSearch, FindsTheNextAndTheLastPlace)
{
    const struct {
        const char *text, *wanted;
        int32_t from, flags, found;
    } rows[] = {
        {"one two one", "one", 0, 0, 0},
        {"one two one", "one", 1, 0, 8},
        {"one two one", "one", 8, 0, 8},
        {"one two one", "one", 9, 0, -1},
        {"one two one", "one", INT32_MIN, 0, 0},
        {"one two one", "one", INT32_MAX, 0, -1},
        {"one two one", "one", INT32_MAX, 2, 8},
        {"one two one", "one", 11, 2, 8},
        {"one two one", "one", 10, 2, 0},
        {"one two one", "one", 3, 2, 0},
        {"one two one", "one", 2, 2, -1},
        {"one two one", "one", INT32_MIN, 2, -1},
        {"aaaa", "aa", 1, 0, 1},
        {"aaaa", "aa", 3, 2, 1},
        {"abc", "", 0, 0, -1},
        {"", "a", 0, 0, -1},
        {"", "a", 0, 2, -1},
        {"a", "ab", 0, 0, -1},
        {"One", "oNE", 0, 0, 0},
        {"One", "oNE", 0, 1, -1},
        {"One", "One", 0, 1, 0},
        {"Straße Ärger ЖУК ΩΔ", "ärger", 0, 0, 8},
        {"Straße Ärger ЖУК ΩΔ", "жук", 0, 0, 15},
        {"Straße Ärger ЖУК ΩΔ", "ωδ", 100, 2, 22},
        {"Straße Ärger ЖУК ΩΔ", "ärger", 0, 1, -1},
        {"cat concat cat's cat_ cat", "cat", 1, 4, 11},
        {"cat concat cat's cat_ cat", "cat", 12, 4, 22},
        {"cat concat cat's cat_ cat", "cat", 10, 6, 0},
        {"écat cat", "cat", 0, 4, 6},
        {"caté cat", "cat", 0, 4, 6},
    };
    for (const auto& row : rows)
        EXPECT_EQ(find_text(row.text, row.wanted, row.from, row.flags), row.found)
            << row.text << ": " << row.wanted << " from " << row.from << " as " << row.flags;
}

TEST(TextSearch, AnyFlagsAreTaken)
{
    for (int32_t flags : {-1, 7, 8, 1 << 30, INT32_MIN})
        EXPECT_GE(find_text("word", "word", flags & 2 ? 4 : 0, flags), 0) << flags;
}

TEST(TextSearch, BytesThatAreNoCharactersEqualThemselves)
{
    const std::string text(
        "\xFF\x80"
        "a\xC3\0\xE4\xC4z\xF0\x9F\x98",
        11);
    for (int32_t flags : {0, 1}) {
        EXPECT_EQ(find_text(text, "\xC3", 0, flags), 3);
        EXPECT_EQ(find_text(text,
                            "\x80"
                            "a",
                            0, flags),
                  1);
        EXPECT_EQ(find_text(text, std::string_view("\0\xE4", 2), 0, flags), 4);
        EXPECT_EQ(find_text(text, "\xC4z", 0, flags), 6);
        EXPECT_EQ(find_text(text, "\x98", 11, flags | 2), 10);
        EXPECT_EQ(find_text(text, "\xF0\x9F\x98", 11, flags | 2), 8);
        EXPECT_EQ(find_text(text, "\xC4", 0, flags), 6) << "no letter, so there is no small one";
    }
}

TEST(TextSearch, AHalfCharacterIsNotFoundInAWholeOne)
{
    EXPECT_EQ(find_text("aé", "\xA9", 0, 0), -1);
    EXPECT_EQ(find_text("é", "\xC3", 0, 1), -1);
}
