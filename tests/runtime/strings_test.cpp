// The string functions as a compiled program calls them: results, and what they leave in the ring.

#include <plinth.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

static const size_t kSlotSize = 257;

static const int32_t kCounts[] = {
    INT32_MIN, INT32_MIN + 1, -1000000, -258, -257, -2,  -1,  0,    1,    2,    15,
    16,        255,           256,      257,  258,  513, 514, 1023, 1024, 1025, 4368,
    4369,      1000000,       INT32_MAX};

static const int kLengths[] = {0, 1, 255, 256, 257, 258, 1023, 1024, 1025, 1000000};

// Fills the slot that the next call gets with a known text.
static void soil_next_slot(const char* text)
{
    Left(text, 257);
    for (int i = 0; i < 15; i++)
        Chr('x');
}

TEST(Ring, HandsOutSixteenSlotsInTurn)
{
    char* first = Chr('a');
    char* slots[16] = {first};
    for (int i = 1; i < 16; i++)
        slots[i] = Chr('b');
    EXPECT_EQ(Chr('c'), first);
    int wraps = 0;
    for (int i = 1; i < 16; i++) {
        ptrdiff_t step = slots[i] - slots[i - 1];
        EXPECT_TRUE(step == 257 || step == -15 * 257) << step;
        wraps += step < 0;
    }
    EXPECT_LE(wraps, 1);
    EXPECT_EQ(slots[15] + 257, slots[0])
        << "not slot 1 first";  // each test is a process of its own
}

TEST(Strings, LeftKeptWithoutTerminator)
{
    soil_next_slot("abcdef");
    EXPECT_STREQ(Left("hello", 2), "hecdef");
    soil_next_slot("");
    EXPECT_STREQ(Left("hello", 2), "he");
    EXPECT_STREQ(Left("abc", 10), "abc");
    EXPECT_STREQ(Left("abc", -1), "abc");
    soil_next_slot(std::string(257, 'z').c_str());
    char* slot = Left("abc", 10);
    EXPECT_EQ(std::string(slot, 11), std::string("abc\0\0\0\0\0\0\0z", 11));
}

TEST(Strings, RightKeptWithoutTerminator)
{
    soil_next_slot("abcdef");
    EXPECT_STREQ(Right("hello", 2), "locdef");
    EXPECT_STREQ(Right("hello", 10), "hello");
    EXPECT_STREQ(Right("hello", -3), "");
}

TEST(Strings, MidTakesPartsAndTwoSlots)
{
    struct {
        const char* s;
        int32_t start, count;
        const char* result;
    } cases[] = {
        {"hello", 2, 3, "ell"},        {"hello", 0, 2, "he"},       {"hello", 6, 1, ""},
        {"hello", -1, 2, ""},          {"hello", 5, -1, "o"},       {"hello", 1, 0, ""},
        {"hello", INT32_MIN, 2, ""},   {"hello", INT32_MAX, 2, ""}, {"", 0, 5, ""},
        {"hello", 4, INT32_MAX, "lo"}, {nullptr, 1, 5, ""},
    };
    for (auto& c : cases)
        EXPECT_STREQ(Mid(c.s, c.start, c.count), c.result) << c.start << ' ' << c.count;
    EXPECT_STREQ(MidStr("hello", 3), "llo");
    EXPECT_STREQ(MidStr("hello", 0), "hello");
    EXPECT_STREQ(MidStr("hello", 6), "");
    char* first = Chr('a');
    Mid("abc", 1, 1);
    for (int i = 0; i < 13; i++)
        Chr('b');
    EXPECT_EQ(Chr('c'), first);
}

TEST(Strings, InstrCountsFromTheOffset)
{
    struct {
        int32_t offset;
        const char *s, *find;
        int32_t result;
    } cases[] = {
        {0, "hello", "l", 3}, {2, "hello", "l", 1},       {0, "ab", "abc", 0},
        {0, "", "", 0},       {0, "abc", "", 1},          {3, "abc", "", 1},
        {0, "abc", "c", 3},   {1, "abc", "abc", 0},       {-1, "abc", "a", 0},
        {4, "abc", "a", 0},   {INT32_MIN, "abc", "a", 0}, {INT32_MAX, "abc", "a", 0},
        {0, nullptr, "a", 0}, {0, "abc", nullptr, 1},     {0, "aaaaaaaaab", "aaab", 7},
    };
    for (auto& c : cases)
        EXPECT_EQ(Instr(c.offset, c.s, c.find), c.result) << c.offset;
}

TEST(Strings, TrimsKeptAsTheyCut)
{
    EXPECT_STREQ(Trim("  ab  "), "ab ");
    EXPECT_STREQ(Trim("a b"), "a");
    EXPECT_STREQ(Trim(nullptr), "");
    EXPECT_STREQ(Trim("    "), "");
    EXPECT_STREQ(Rtrim("  ab cd  "), "  ab");
    EXPECT_STREQ(Rtrim("ab cd"), "ab");
    EXPECT_STREQ(Rtrim("   "), "   ");
    EXPECT_STREQ(Ltrim("   x y "), "x y ");
    EXPECT_STREQ(Ltrim("    "), "");
    EXPECT_STREQ(Ltrim("\tx"), "\tx");
}

TEST(Strings, ExtractAndReplaceFindEveryMatch)
{
    EXPECT_STREQ(Extract("key=value", "="), "key");
    EXPECT_STREQ(Extract("abc", "="), "abc");
    EXPECT_STREQ(Extract("=x", "="), "");
    EXPECT_STREQ(Extract("abc", ""), "");
    EXPECT_STREQ(Extract("ab", "abc"), "ab");
    EXPECT_STREQ(Replace("a.b.c", ".", "--"), "a--b--c");
    EXPECT_STREQ(Replace("abc", "x", "y"), "abc");
    EXPECT_STREQ(Replace("a.b.c", ".", ""), "abc");
    EXPECT_STREQ(Replace("aabb", "ab", "ba"), "bbaa");
    EXPECT_STREQ(Replace("aaaa", "aa", "a"), "a");
    EXPECT_STREQ(Extract(std::string(1000, 'a').c_str(), "b"), std::string(256, 'a').c_str());
}

TEST(Strings, ReplaceComesToAnEnd)
{
    EXPECT_STREQ(Replace("abc", "b", "b"), "abc");
    EXPECT_STREQ(Replace("abc", "", ""), "abc");
    EXPECT_STREQ(Replace("abc", "", "x"), "xxxx");
    EXPECT_STREQ(Replace("a", "a", "aa"), "aaa");
    EXPECT_STREQ(Replace("a", "a", "xa"), std::string(256, 'x').c_str());
    const std::string turning = std::string(128, 'a') + std::string(128, 'b');
    EXPECT_STREQ(Replace(turning.c_str(), "ab", "ba"),
                 (std::string(128, 'b') + std::string(128, 'a')).c_str());
}

TEST(Strings, RepeatsAndCases)
{
    EXPECT_STREQ(Space(3), "   ");
    EXPECT_STREQ(Space(0), "");
    EXPECT_STREQ(Space(-1), "");
    EXPECT_STREQ(String(3, "ab"), "ababab");
    EXPECT_STREQ(String(INT32_MAX, ""), "");
    EXPECT_STREQ(String(-5, "ab"), "");
    EXPECT_EQ(strnlen(Space(INT32_MAX), kSlotSize), kSlotSize);
    EXPECT_STREQ(Chr(0), "");
    EXPECT_STREQ(Chr('A'), "A");
    EXPECT_EQ(Chr2("\xff"), -1);
    EXPECT_EQ(Chr2("A"), 65);
    EXPECT_EQ(Chr2(""), 0);
    EXPECT_STREQ(Lcase("Hello @[`{ W\xc4rld"), "hello @[`{ w\xc4rld");
    EXPECT_STREQ(Ucase("Hello @[`{ W\xe4rld"), "HELLO @[`{ W\xe4RLD");
    EXPECT_STREQ(TitleCase("hELLO wORLD"), "Hello world");
    EXPECT_STREQ(TitleCase(""), "");
    EXPECT_EQ(Len("hello"), 5);
    EXPECT_EQ(Len(nullptr), 0);
}

TEST(Strings, PathsEndInASlash)
{
    EXPECT_STREQ(ExtractPathName("/boot/home/x"), "/boot/home/");
    EXPECT_STREQ(ExtractFileName("/boot/home/x"), "x");
    EXPECT_STREQ(ExtractPathName("/boot"), "/boot/");
    EXPECT_STREQ(ExtractPathName("/"), "/");
    EXPECT_STREQ(ExtractFileName("/"), "");
    EXPECT_STREQ(ExtractPathName(""), "");
    EXPECT_STREQ(ExtractFileName(nullptr), "");
    EXPECT_STREQ(ExtractPathName("/tmp/../usr/./"), "/usr/");
    const std::string longest = "/a" + std::string(3000, 'b');
    EXPECT_EQ(strlen(ExtractPathName(longest.c_str())), 1023u);
    EXPECT_EQ(strlen(ExtractFileName(longest.c_str())), 1023u);
}

// Nothing here may touch memory that is not the library's; the sanitizers watch it.
TEST(Strings, TakeAnyLengthAndCount)
{
    const std::vector<int32_t> counts(std::begin(kCounts), std::end(kCounts));
    for (int length : kLengths) {
        const std::string text(length, ' ');
        const std::string letters = std::string(length / 2, ' ') + std::string(length / 2, 'a');
        for (const char* s : {text.c_str(), letters.c_str(), static_cast<const char*>(nullptr)}) {
            const bool is_long = length > 2000;
            for (int32_t n : is_long ? std::vector<int32_t>{INT32_MIN, 1, INT32_MAX} : counts) {
                Left(s, n);
                Right(s, n);
                Space(n);
                String(n, s);
                MidStr(s, n);
                Instr(n, s, "ab");
                Instr(n, s, letters.c_str());
                Instr(n, s, text.c_str());
                for (int32_t count : counts)
                    Mid(s, n, count);
            }
            Len(s);
            Lcase(s);
            Ucase(s);
            TitleCase(s);
            Ltrim(s);
            Rtrim(s);
            Trim(s);
            Extract(s, s);
            Extract(s, "");
            Replace(s, s, s);
            Replace(s, "a", s);
            Replace(s, "", s);
            Replace(s, nullptr, "b");
            ExtractPathName(s);
            ExtractFileName(s);
            Val(s);
            Cdbl(s);
            Format(1, s);
            Chr2(s);
        }
    }
}
