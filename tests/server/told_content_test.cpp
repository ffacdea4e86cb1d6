// What screen readers are told of a text that changes, against what they are told of a new one.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <iterator>
#include <string>

#include "interface/accessible/TextUnits.h"
#include "interface/accessible/ToldContent.h"

using namespace BPrivate;

namespace {

// Whole characters, and bytes that become some beside others.
std::string any_bytes(std::mt19937& random, size_t pieces)
{
    static const char* const kPieces[] = {
        "a",        "b ",   "\n",   "\xc3\xa9", "\xe2\x82\xac", "\xf0\x9f\x98\x80",
        "\xf0\x9f", "\x98", "\x80", "\xff"};
    std::string bytes;
    for (size_t i = 0; i < pieces; i++)
        bytes += kPieces[random() % std::size(kPieces)];
    return bytes;
}

class Told {
public:
    void Insert(int32 offset, const std::string& bytes)
    {
        buffer.Insert(offset, bytes.data(), static_cast<int32>(bytes.size()));
        text.insert(static_cast<size_t>(offset), bytes);
    }
    void Remove(int32 from, int32 to)
    {
        buffer.Remove(from, to);
        text.erase(static_cast<size_t>(from), static_cast<size_t>(to - from));
    }
    void Tell(bool hidden = false)
    {
        content = tell_content(buffer, hidden, content, buffer.TakeChange());
    }

    TextBuffer buffer;
    std::string text;
    ToldContent content;
};

}  // namespace

TEST(ToldContent, AnyChangesGiveWhatTheWholeTextGives)
{
    for (const bool hidden : {false, true}) {
        std::mt19937 random(hidden ? 3 : 4);
        const auto below = [&](int32 most) { return static_cast<int32>(random() % uint32(most)); };
        Told told;
        told.Insert(0, any_bytes(random, 60000));
        for (int round = 0; round < 60; round++) {
            const auto length = static_cast<int32>(told.text.size());
            for (int change = below(3); change >= 0; change--) {
                const int32 at = below(static_cast<int32>(told.text.size()) + 1);
                const int32 many = random() % 8 == 0 ? 20000 : 4;
                if (length < 50000 || random() % 2 == 0)
                    told.Insert(at, any_bytes(random, static_cast<size_t>(below(many))));
                else
                    told.Remove(at,
                                std::min(at + below(many), static_cast<int32>(told.text.size())));
            }
            told.Tell(hidden);
            const TextUnits units(told.text, hidden);
            ASSERT_EQ(told.content->Bytes(), static_cast<int32>(told.text.size())) << round;
            ASSERT_TRUE(told.content->All() == units.All()) << round;
            for (int32 byte : {0, below(told.content->Bytes() + 1), told.content->Bytes()})
                ASSERT_EQ(told_unit_at(*told.content, told.buffer, hidden, byte),
                          units.UnitAt(byte));
            const int32 from = below(told.content->Units() + 1), to = below(100000);
            ASSERT_TRUE(told.content->Part(from, to) ==
                        units.All().substr(static_cast<size_t>(from),
                                           static_cast<size_t>(std::max(to - from, 0))));
        }
        told.Remove(0, static_cast<int32>(told.text.size()));
        told.Tell(hidden);
        EXPECT_EQ(told.content->Units(), 0);
        EXPECT_EQ(told_unit_at(*told.content, told.buffer, hidden, 5), 0);
    }
}

TEST(ToldContent, TypingInABookReadsAPageAgain)
{
    Told told;
    told.Insert(0, std::string(1000000, 'x'));
    told.Tell();
    for (int typed = 0; typed < 5000; typed++) {
        const ToldContent before = told.content;
        told.Insert(500000 + typed, "y");
        told.Tell();
        int32 start, end;
        told.content->FindShared(*before, &start, &end);
        ASSERT_LE(told.content->Units() - start - end, 50000);
    }
    EXPECT_LE(told.content->CountPieces(), 200) << "and leaves no crumbs";
    EXPECT_EQ(told.content->Part(499999, 500002), u"xyy");
}
