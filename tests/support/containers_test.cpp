// Lists, strings and lists of strings.

#include <List.h>
#include <String.h>
#include <StringList.h>
#include <TypeConstants.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

static void* item(intptr_t value) { return reinterpret_cast<void*>(value); }

static std::vector<intptr_t> values(const BList& list)
{
    std::vector<intptr_t> all;
    for (int32 i = 0; i < list.CountItems(); ++i)
        all.push_back(reinterpret_cast<intptr_t>(list.ItemAt(i)));
    return all;
}

using Values = std::vector<intptr_t>;

TEST(List, ItemsMoveWithInsertionRemovalAndMoves)
{
    BList list(1);
    for (intptr_t i = 1; i <= 5; ++i)
        EXPECT_TRUE(list.AddItem(item(i)));
    EXPECT_TRUE(list.AddItem(item(9), 0));
    EXPECT_FALSE(list.AddItem(item(9), 7));
    EXPECT_FALSE(list.AddItem(item(9), -1));
    EXPECT_TRUE(list.MoveItem(0, 5));
    EXPECT_EQ((Values{1, 2, 3, 4, 5, 9}), values(list));
    EXPECT_TRUE(list.MoveItem(4, 1));
    EXPECT_EQ((Values{1, 5, 2, 3, 4, 9}), values(list));
    EXPECT_FALSE(list.MoveItem(0, 6));
    EXPECT_TRUE(list.SwapItems(0, 5));
    EXPECT_EQ(item(5), list.RemoveItem(int32(1)));
    EXPECT_EQ(nullptr, list.RemoveItem(int32(5)));
    EXPECT_TRUE(list.RemoveItems(3, INT32_MAX));
    EXPECT_FALSE(list.RemoveItems(3, 1));
    EXPECT_EQ((Values{9, 2, 3}), values(list));
    EXPECT_FALSE(list.RemoveItem(item(77)));
    EXPECT_EQ(-1, list.IndexOf(item(77)));
}

TEST(List, AddingAListToItselfInTheMiddle)
{
    BList list;
    for (intptr_t i = 1; i <= 4; ++i)
        list.AddItem(item(i));
    EXPECT_TRUE(list.AddList(&list, 1));
    EXPECT_EQ((Values{1, 1, 2, 3, 4, 2, 3, 4}), values(list));
    EXPECT_FALSE(list.AddList(nullptr));
    const BList copy(list);
    EXPECT_TRUE(copy == list);
    list.SortItems([](const void* a, const void* b) {
        const intptr_t left = *static_cast<const intptr_t*>(a);
        const intptr_t right = *static_cast<const intptr_t*>(b);
        return left < right ? -1 : left > right;
    });
    EXPECT_EQ((Values{1, 1, 2, 2, 3, 3, 4, 4}), values(list));
    EXPECT_TRUE(copy != list);
}

TEST(String, InsertionTakesPositionsOutOfRange)
{
    EXPECT_STREQ("abXYc", BString("abc").Insert("XY", 2).String());
    EXPECT_STREQ("abcXY", BString("abc").Insert("XY", 99).String());
    EXPECT_STREQ("Yabc", BString("abc").Insert("XY", -1).String());
    EXPECT_STREQ("abc", BString("abc").Insert("XY", INT32_MIN).String());
    EXPECT_STREQ("aYZbc", BString("abc").Insert("XYZ", 1, 2, 1).String());
    EXPECT_STREQ("a--bc", BString("abc").Insert('-', 2, 1).String());
    EXPECT_STREQ("abc", BString("abc").Insert('-', INT32_MAX, 1).String());
    BString own("ab");
    own.Insert(own.String(), 1);
    EXPECT_STREQ("aabb", own.String());
    own.Append(own).Append(own.String() + 1);
    EXPECT_STREQ("aabbaabbabbaabb", own.String());
}

TEST(String, CharactersCountAsOneWhateverTheirBytes)
{
    BString text("aä€😀z");
    EXPECT_EQ(5, text.CountChars());
    EXPECT_EQ(1 + 2 + 3 + 4 + 1, text.Length());
    EXPECT_EQ(7, text.CountBytes(2, 2));
    int32 bytes;
    EXPECT_EQ(text.String() + 3, text.CharAt(2, &bytes));
    EXPECT_EQ(3, bytes);
    EXPECT_EQ(nullptr, text.CharAt(5, &bytes));
    EXPECT_EQ(nullptr, text.CharAt(-1, &bytes));
    EXPECT_STREQ("aäz", BString(text).RemoveChars(2, 2).String());
    EXPECT_STREQ("aä!€😀z", BString(text).InsertChars("!", 2).String());
    EXPECT_STREQ("aä", BString(text).TruncateChars(2).String());
    EXPECT_STREQ("a__😀z", BString(text).ReplaceCharsSet("€ä", "_").String());
    BString broken("\xE2\x82 \x80");
    EXPECT_EQ(4, broken.CountChars()) << "stray bytes are characters of their own";
}

TEST(String, FindingFromBothEnds)
{
    const BString text("one two One");
    EXPECT_EQ(0, text.FindFirst("one"));
    EXPECT_EQ(B_ERROR, text.FindFirst("one", 1));
    EXPECT_EQ(8, text.IFindFirst("one", 1));
    EXPECT_EQ(0, text.FindLast("one"));
    EXPECT_EQ(8, text.IFindLast("one"));
    EXPECT_EQ(0, text.IFindLast("one", 10)) << "the last one ends behind 10";
    EXPECT_EQ(4, text.FindFirst('t'));
    EXPECT_EQ(B_BAD_VALUE, text.FindFirst(static_cast<const char*>(nullptr)));
    EXPECT_EQ(B_ERROR, text.FindFirst("one", -1));
    EXPECT_EQ(B_ERROR, text.FindFirst("one", 99));
    EXPECT_EQ(11, text.FindFirst("", 11));
    EXPECT_EQ(B_ERROR, text.FindLast("one", -5));
    EXPECT_EQ(2, text.FindLast('e', 2)) << "a character may stand at the offset";
    EXPECT_EQ(B_ERROR, text.FindLast('e', 1));
    EXPECT_EQ(B_ERROR, text.FindLast('e', -1));
    EXPECT_TRUE(text.StartsWith("one") && text.IEndsWith("ONE") && !text.EndsWith("ONE"));
    EXPECT_FALSE(text.StartsWith("one two One and more"));
}

TEST(String, ReplacingCountsFromTheOffset)
{
    EXPECT_STREQ("a--b", BString("axxb").ReplaceAll("x", "-").String());
    EXPECT_STREQ("a-xb", BString("axxb").Replace("x", "-", 1).String());
    EXPECT_STREQ("ax-b", BString("axxb").ReplaceLast("x", "-").String());
    EXPECT_STREQ("axlongb", BString("axxb").ReplaceAll("x", "long", 2).String());
    EXPECT_STREQ("ab", BString("aXxb").IReplaceAll("x", "").String());
    EXPECT_STREQ("axxb", BString("axxb").ReplaceAll("", "-").String());
    EXPECT_STREQ("axxb", BString("axxb").ReplaceAll("x", nullptr).String());
    EXPECT_STREQ("aa", BString("aaaa").ReplaceAll("aa", "a").String());
    EXPECT_STREQ("1+2+3", BString("1 2\t3").ReplaceSet(" \t", '+').String());
    EXPECT_STREQ("bd", BString("abcd").RemoveSet("ac").String());
}

TEST(String, EscapesCasesAndNumbers)
{
    BString text("it's");
    text.CharacterEscape("'\\", '\\');
    EXPECT_STREQ("it\\'s", text.String());
    text.CharacterDeescape('\\');
    EXPECT_STREQ("it's", text.String());
    EXPECT_STREQ("Two Words", BString("tWO wORDS").CapitalizeEachWord().String());
    EXPECT_STREQ("in side", BString(" \n in side\t").Trim().String());
    BString numbers;
    numbers << 1 << ' ' << -2L << ' ' << 3.456f << ' ' << true << ' ' << UINT64_MAX;
    EXPECT_STREQ("1 -2 3.46 true 18446744073709551615", numbers.String());
    numbers.SetToFormat("%s|%s|%0300d", numbers.String(), "x", 7);
    EXPECT_EQ(35 + 3 + 300, numbers.Length());
}

TEST(String, BufferKeepsWhatWasThereAndTakesWhatIsWritten)
{
    BString text("abc");
    char* buffer = text.LockBuffer(10);
    EXPECT_STREQ("abc", buffer);
    strcpy(buffer + 3, "defg");
    EXPECT_STREQ("abcdefg", text.UnlockBuffer().String());
    EXPECT_EQ(7, text.Length());
    text.LockBuffer(2);
    EXPECT_EQ(2, text.UnlockBuffer(2).Length());
}

TEST(String, SplitsIntoParts)
{
    BStringList list;
    EXPECT_TRUE(BString("a,,b,").Split(",", false, list));
    EXPECT_TRUE(list.Join("|") == "a||b|");
    EXPECT_TRUE(BString("a,,b,").Split(",", true, list));
    EXPECT_TRUE(list.Join("|") == "a|b");
}

TEST(StringList, FlattensToTerminatedStrings)
{
    BStringList list;
    list.Add("b");
    list.Add("");
    list.Add("A");
    std::vector<char> flat(list.FlattenedSize());
    ASSERT_EQ(B_OK, list.Flatten(flat.data(), flat.size()));
    EXPECT_EQ(std::string("b\0\0A\0", 5), std::string(flat.begin(), flat.end()));
    BStringList back;
    ASSERT_EQ(B_OK, back.Unflatten(B_STRING_LIST_TYPE, flat.data(), flat.size()));
    EXPECT_TRUE(back == list);
    EXPECT_EQ(B_BAD_VALUE, back.Unflatten(B_STRING_LIST_TYPE, flat.data(), flat.size() - 1));
    list.Sort(true);
    EXPECT_TRUE(list.Join(",") == ",A,b");
    EXPECT_TRUE(list.Remove("a", true));
    EXPECT_EQ(2, list.CountStrings());
    EXPECT_TRUE(list.Move(1, 0));
    EXPECT_TRUE(list.First() == "b");
    EXPECT_TRUE(list.StringAt(9).IsEmpty());
}
