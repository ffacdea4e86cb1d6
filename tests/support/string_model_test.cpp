// BString beside a plain model of it: the same random calls, the same text.

#include <String.h>
#include <StringList.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

bool same(char a, char b, bool any_case)
{
    return a == b || (any_case && tolower(a) == tolower(b));
}

int find_from(const std::string& text, const std::string& part, int from, bool any_case)
{
    for (size_t at = from; at + part.size() <= text.size(); at++) {
        if (std::equal(part.begin(), part.end(), text.begin() + at,
                       [=](char a, char b) { return same(a, b, any_case); }))
            return int(at);
    }
    return B_ERROR;
}

int find_before(const std::string& text, const std::string& part, int before, bool any_case)
{
    int found = B_ERROR;
    for (int at = 0; at + int(part.size()) <= before; at++) {
        if (find_from(text.substr(at, part.size()), part, 0, any_case) == 0)
            found = at;
    }
    return found;
}

std::string replaced(std::string text, const std::string& what, const std::string& with, int count,
                     int from, bool any_case)
{
    for (; count > 0; count--) {
        const int at = find_from(text, what, from, any_case);
        if (at < 0)
            break;
        text.replace(at, what.size(), with);
        from = at + int(with.size());
    }
    return text;
}

class Dice {
public:
    explicit Dice(unsigned seed) : fRandom(seed) {}
    int Up(int most) { return int(fRandom() % unsigned(most + 1)); }
    // Few letters, so that much is found.
    std::string Text(int most, int least = 0)
    {
        std::string text(size_t(least + Up(most - least)), ' ');
        for (char& byte : text)
            byte = "abAB"[Up(3)];
        return text;
    }

private:
    std::mt19937 fRandom;
};

}  // namespace

TEST(StringModel, FindingFindsWhatASimpleSearchFinds)
{
    Dice dice(1);
    for (int round = 0; round < 20'000; round++) {
        const std::string text = dice.Text(20), part = dice.Text(4, 1);
        const int at = dice.Up(int(text.size()));
        const BString string(text.c_str());
        SCOPED_TRACE(text + " " + part + " " + std::to_string(at));
        ASSERT_EQ(string.FindFirst(part.c_str()), find_from(text, part, 0, false));
        ASSERT_EQ(string.FindFirst(part.c_str(), at), find_from(text, part, at, false));
        ASSERT_EQ(string.IFindFirst(part.c_str(), at), find_from(text, part, at, true));
        ASSERT_EQ(string.FindLast(part.c_str()), find_before(text, part, int(text.size()), false));
        ASSERT_EQ(string.FindLast(part.c_str(), at), find_before(text, part, at, false));
        ASSERT_EQ(string.IFindLast(BString(part.c_str()), at), find_before(text, part, at, true));
        ASSERT_EQ(string.FindFirst(part[0], at), find_from(text, part.substr(0, 1), at, false));
        ASSERT_EQ(string.StartsWith(part.c_str()), text.compare(0, part.size(), part) == 0);
        ASSERT_EQ(string.IEndsWith(part.c_str()),
                  part.size() <= text.size() &&
                      find_from(text.substr(text.size() - part.size()), part, 0, true) == 0);
    }
}

TEST(StringModel, ReplacingReplacesOnceFromLeftToRight)
{
    Dice dice(2);
    for (int round = 0; round < 20'000; round++) {
        const std::string text = dice.Text(20), what = dice.Text(3, 1), with = dice.Text(4);
        const int count = dice.Up(3), from = dice.Up(int(text.size()));
        SCOPED_TRACE(text + " " + what + " " + with + " " + std::to_string(count) + " " +
                     std::to_string(from));
        using Act = std::function<void(BString&)>;
        const auto check = [&](const Act& act, const std::string& wanted) {
            BString string(text.c_str());
            act(string);
            ASSERT_STREQ(string.String(), wanted.c_str());
            ASSERT_EQ(string.Length(), int32(wanted.size()));
        };
        const char* const a = what.c_str();
        const char* const b = with.c_str();
        check([&](BString& s) { s.ReplaceAll(a, b, from); },
              replaced(text, what, with, INT_MAX, from, false));
        check([&](BString& s) { s.Replace(a, b, count, from); },
              replaced(text, what, with, count, from, false));
        check([&](BString& s) { s.IReplace(a, b, count, from); },
              replaced(text, what, with, count, from, true));
        check([&](BString& s) { s.ReplaceFirst(a, b); }, replaced(text, what, with, 1, 0, false));
        check([&](BString& s) { s.RemoveAll(a); }, replaced(text, what, "", INT_MAX, 0, false));
        check([&](BString& s) { s.IReplaceAll(what[0], 'x', from); },
              replaced(text, what.substr(0, 1), "x", INT_MAX, from, true));
        const int last = find_before(text, what, int(text.size()), true);
        std::string wanted = text;
        if (last >= 0)
            wanted.replace(last, what.size(), with);
        check([&](BString& s) { s.IReplaceLast(a, b); }, wanted);
    }
}

TEST(StringModel, EditingTakesAnyNumbers)
{
    Dice dice(3);
    const int kOdd[] = {INT_MIN, -100, -1, 0, 1, 3, 100, INT_MAX};
    BString string;
    for (int round = 0; round < 50'000; round++) {
        const int a = dice.Up(3) ? dice.Up(12) : kOdd[dice.Up(7)];
        const int b = dice.Up(3) ? dice.Up(12) : kOdd[dice.Up(7)];
        const std::string before = string.String();
        const std::string other = dice.Text(6);
        const auto at = size_t(std::clamp<int>(a, 0, int(before.size())));
        const size_t most = b < 0 ? 0 : std::min(size_t(b), before.size() - at);
        std::string wanted = before;
        SCOPED_TRACE(before + " " + std::to_string(a) + " " + std::to_string(b) + " " + other);
        switch (dice.Up(8)) {
            case 0:
                if (a < 0)
                    continue;
                string.Insert(other.c_str(), a);
                wanted.insert(at, other);
                break;
            case 1:
                if (a < 0)
                    continue;
                string.Remove(a, b);
                wanted.erase(at, most);
                break;
            case 2:
                string.Truncate(a);
                wanted.resize(std::min(wanted.size(), at));
                break;
            case 3:
                if (b < 0)
                    continue;
                string.Append(other.c_str(), b);
                wanted += other.substr(0, size_t(b));
                break;
            case 4:
                string.Prepend(string, 3);  // its own text
                wanted = before.substr(0, 3) + before;
                break;
            case 5:
                string.Insert(string, int32(before.size() / 2));
                wanted.insert(before.size() / 2, before);
                break;
            case 6:
                string = string.String() + before.size() / 3;
                wanted = before.substr(before.size() / 3);
                break;
            case 7: {
                if (a < 0)
                    continue;
                BString into("old");
                string.MoveInto(into, a, b);
                ASSERT_STREQ(into.String(), before.substr(at, most).c_str());
                wanted.erase(at, most);
                break;
            }
            case 8:
                string.ReplaceAll(string.String(), other.c_str());
                if (!before.empty())
                    wanted = other;
                break;
        }
        ASSERT_STREQ(string.String(), wanted.c_str());
        ASSERT_EQ(string.Length(), int32(wanted.size()));
        if (string.Length() > 60)
            string.Truncate(10);
    }
}

TEST(StringModel, OrderIsThatOfTheBytes)
{
    Dice dice(4);
    const auto sign = [](int value) { return (value > 0) - (value < 0); };
    for (int round = 0; round < 20'000; round++) {
        const std::string a = dice.Text(6), b = dice.Text(6);
        const int length = dice.Up(7);
        const BString string(a.c_str()), other(b.c_str());
        ASSERT_EQ(sign(string.Compare(other)), sign(strcmp(a.c_str(), b.c_str())));
        ASSERT_EQ(sign(string.ICompare(other)), sign(strcasecmp(a.c_str(), b.c_str())));
        ASSERT_EQ(sign(string.Compare(other, length)),
                  sign(strncmp(a.c_str(), b.c_str(), size_t(length))));
        ASSERT_EQ(sign(string.ICompare(b.c_str(), length)),
                  sign(strncasecmp(a.c_str(), b.c_str(), size_t(length))));
        ASSERT_EQ(string < other, a < b);
        ASSERT_EQ(string == b.c_str(), a == b);
        ASSERT_EQ(a.c_str() >= other, a >= b);
        ASSERT_EQ(sign(Compare(&string, &other)), -sign(Compare(&other, &string)));
        if (a == b) {
            ASSERT_EQ(string.HashValue(), other.HashValue());
        }
    }
    EXPECT_LT(BString("a").Compare("\xFF"), 0) << "bytes count without sign";
}

TEST(StringModel, SplittingAndJoiningAreEachOthersInverse)
{
    Dice dice(5);
    for (int round = 0; round < 5'000; round++) {
        const std::string text = dice.Text(15), separator = dice.Text(2, 1);
        BStringList parts;
        const BString string(text.c_str());
        ASSERT_TRUE(string.Split(separator.c_str(), false, parts));
        ASSERT_STREQ(parts.Join(separator.c_str()).String(), text.c_str());
        BStringList full;
        ASSERT_TRUE(string.Split(separator.c_str(), true, full));
        int32 empty = 0;
        for (int32 i = 0; i < parts.CountStrings(); i++)
            empty += parts.StringAt(i).IsEmpty();
        ASSERT_EQ(full.CountStrings(), parts.CountStrings() - empty);
    }
}

TEST(StringModel, CharactersOfAnyBytesNeverLeaveTheText)
{
    std::mt19937 random(6);
    for (int round = 0; round < 20'000; round++) {
        std::string text(random() % 12, ' ');
        for (char& byte : text)
            byte = "a\x80\xBF\xC3\xE2\xF0\xFF\xED"[random() % 8];
        BString string(text.c_str());
        const int32 count = string.CountChars();
        ASSERT_LE(count, string.Length());
        ASSERT_EQ(string.CountBytes(0, count), string.Length());
        std::string joined;
        for (int32 i = 0; i < count; i++) {
            int32 bytes = 0;
            const char* at = string.CharAt(i, &bytes);
            ASSERT_NE(at, nullptr);
            ASSERT_GT(bytes, 0);
            joined.append(at, size_t(bytes));
        }
        ASSERT_EQ(joined, text);
        ASSERT_EQ(string.CharAt(count), nullptr);
        const int32 from = int32(random() % 14) - 1, length = int32(random() % 14) - 1;
        BString copy(string), part;
        string.CopyCharsInto(part, from, length);
        copy.RemoveChars(from, length);
        ASSERT_LE(copy.Length(), string.Length());
        if (from >= 0 && length >= 0) {
            ASSERT_EQ(copy.Length() + part.Length(), string.Length());
        }
    }
}

TEST(StringText, FormatsAndScans)
{
    BString string;
    string.SetToFormat("%s-%05d-%.2f", "x", 42, 1.5);
    EXPECT_STREQ(string.String(), "x-00042-1.50");
    string.SetToFormat("%s", string.String());  // its own text
    EXPECT_STREQ(string.String(), "x-00042-1.50");
    string.SetToFormat("%s", std::string(100'000, 'y').c_str());
    EXPECT_EQ(string.Length(), 100'000);
    int number = 0;
    EXPECT_EQ(BString("12 monkeys").ScanWithFormat("%d", &number), 1);
    EXPECT_EQ(number, 12);
    string = "";
    string << true << ' ' << -5 << ' ' << 7u << ' ' << INT64_MIN << ' ' << UINT64_MAX << ' '
           << 1.005f << ' ' << "z";
    EXPECT_STREQ(string.String(), "true -5 7 -9223372036854775808 18446744073709551615 1.00 z");
}

TEST(StringText, EscapesComeOffAgain)
{
    Dice dice(7);
    for (int round = 0; round < 5'000; round++) {
        const std::string text = dice.Text(12), set = dice.Text(3, 1) + "\\";
        BString string(text.c_str());
        string.CharacterEscape(set.c_str(), '\\');
        for (int32 i = 0; i < string.Length(); i++) {
            if (string.ByteAt(i) == '\\')
                i++;
            else
                ASSERT_EQ(strchr(set.c_str(), string.ByteAt(i)), nullptr);
        }
        string.CharacterDeescape('\\');
        ASSERT_STREQ(string.String(), text.c_str());
    }
    EXPECT_STREQ(BString("\t two words \n").Trim().String(), "two words");
    EXPECT_STREQ(BString(" \n").Trim().String(), "");
    EXPECT_STREQ(BString("tWO wORDS of-it").CapitalizeEachWord().String(), "Two Words Of-It");
    EXPECT_STREQ(BString("tWO wORDS").Capitalize().String(), "Two words");
    EXPECT_STREQ(BString("\xC3\x84gypten").ToLower().String(), "\xC3\x84gypten") << "ASCII only";
}
