// The bytes and the lines of a text against a plain string and a plain list.

#include "interface/text/LineTable.h"
#include "interface/text/TextBuffer.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>
#include <vector>

using BPrivate::LineTable;
using BPrivate::TextBuffer;
using BPrivate::TextLine;

static std::string bytes_of(const TextBuffer& buffer, int32 offset, int32 length)
{
    std::string bytes(size_t(buffer.Length()), '\0');
    bytes.resize(size_t(buffer.Copy(offset, length, bytes.data())));
    return bytes;
}

TEST(TextBuffer, EmptyOneIsAnEmptyText)
{
    TextBuffer buffer;
    EXPECT_EQ(buffer.Length(), 0);
    EXPECT_EQ(buffer.At(0), 0);
    EXPECT_EQ(buffer.LineEnd(5), 0);
    buffer.Remove(INT_MIN, INT_MAX);
    EXPECT_STREQ(buffer.Text(), "");
    EXPECT_FALSE(buffer.Insert(0, nullptr, 3));
    EXPECT_FALSE(buffer.Insert(0, "abc", -1));
    EXPECT_TRUE(buffer.Insert(0, "", 0));
    EXPECT_EQ(buffer.Length(), 0);
}

TEST(TextBuffer, OffsetsOutsideAreStartAndEnd)
{
    TextBuffer buffer;
    buffer.Insert(INT_MAX, "bc", 2);
    buffer.Insert(INT_MIN, "a", 1);
    buffer.Insert(100, "d", 1);
    EXPECT_STREQ(buffer.Text(), "abcd");
    EXPECT_EQ(buffer.At(-1), 0);
    EXPECT_EQ(buffer.At(4), 0);
    EXPECT_EQ(bytes_of(buffer, -5, 2), "ab");
    EXPECT_EQ(bytes_of(buffer, 3, INT_MAX), "d");
    buffer.Remove(3, 1);
    buffer.Remove(-7, 1);
    EXPECT_STREQ(buffer.Text(), "bcd");
}

TEST(TextBuffer, RandomEditsAreThoseOfAString)
{
    std::mt19937 random(1);
    TextBuffer buffer;
    std::string model;
    for (int turn = 0; turn < 200000; turn++) {
        const auto at = int32(random() % (model.size() + 1));
        if (random() % 5 < 3) {
            std::string piece(random() % 12, char('a' + random() % 26));
            if (random() % 3 == 0)
                piece += '\n';
            ASSERT_TRUE(buffer.Insert(at, piece.data(), int32(piece.size())));
            model.insert(size_t(at), piece);
        } else {
            const auto end = std::min(int32(model.size()), at + int32(random() % 20));
            buffer.Remove(at, end);
            model.erase(size_t(at), size_t(end - at));
        }
        if (model.size() > 5000) {
            buffer.Remove(100, 4900);
            model.erase(100, 4800);
        }
        ASSERT_EQ(buffer.Length(), int32(model.size()));
        const auto place = int32(random() % (model.size() + 1));
        ASSERT_EQ(buffer.At(place), uint8(size_t(place) < model.size() ? model[size_t(place)] : 0));
        const size_t feed = model.find('\n', size_t(place));
        ASSERT_EQ(size_t(buffer.LineEnd(place)),
                  feed == std::string::npos ? model.size() : feed + 1);
        ASSERT_EQ(bytes_of(buffer, place, 40), model.substr(size_t(place), 40));
        if (turn % 64 == 0) {
            ASSERT_EQ(buffer.Text(), model);
        }
    }
}

TEST(LineTable, EmptyTextHasOneLine)
{
    LineTable table;
    EXPECT_EQ(table.CountLines(), 1);
    EXPECT_EQ(table.Length(), 0);
    for (const int32 any : {INT_MIN, -1, 0, 1, INT_MAX}) {
        EXPECT_EQ(table.At(any).index, 0);
        EXPECT_EQ(table.AtOffset(any).index, 0);
        EXPECT_EQ(table.AtHeight(any).index, 0);
    }
    table.Replace(0, 1, {});
    EXPECT_EQ(table.CountLines(), 1);
}

namespace {

void expect_same(const LineTable& table, const std::vector<TextLine>& model, std::mt19937& random)
{
    int32 bytes = 0;
    double height = 0;
    const auto chosen = int32(random() % model.size());
    for (int32 i = 0; i < int32(model.size()); i++) {
        if (i == chosen) {
            const LineTable::Place place = table.At(i);
            ASSERT_EQ(place.index, i);
            ASSERT_EQ(place.offset, bytes);
            ASSERT_DOUBLE_EQ(place.top, height);
            ASSERT_EQ(place.line.length, model[size_t(i)].length);
            ASSERT_EQ(table.AtOffset(bytes).index, i);
            ASSERT_EQ(table.AtOffset(bytes + model[size_t(i)].length - 1).index, i);
            ASSERT_EQ(table.AtHeight(height).index, i);
            ASSERT_EQ(table.AtHeight(height + double(model[size_t(i)].height) - 0.5).index, i);
        }
        bytes += model[size_t(i)].length;
        height += double(model[size_t(i)].height);
    }
    ASSERT_EQ(table.CountLines(), int32(model.size()));
    ASSERT_EQ(table.Length(), bytes);
    ASSERT_DOUBLE_EQ(table.Height(), height);
    ASSERT_EQ(table.AtOffset(bytes).index, int32(model.size()) - 1);
    ASSERT_EQ(table.At(INT_MAX).index, int32(model.size()) - 1);
    ASSERT_EQ(table.AtHeight(-1).index, 0);
}

}  // namespace

TEST(LineTable, RandomChangesAreThoseOfAList)
{
    std::mt19937 random(2);
    LineTable table;
    std::vector<TextLine> model(1);
    for (int turn = 0; turn < 4000; turn++) {
        const auto first = int32(random() % (model.size() + 1));
        const auto most = int32(model.size()) - first;
        const int32 count = std::min(most, int32(random() % (turn % 50 == 0 ? 900 : 4)));
        std::vector<TextLine> lines(random() % (turn % 40 == 0 ? 1500 : 4));
        for (TextLine& line : lines) {
            line.length = int32(random() % 80 + 1);
            line.height = float(random() % 20 + 1);
        }
        table.Replace(first, count, lines);
        if (!(count == int32(model.size()) && lines.empty())) {
            model.erase(model.begin() + first, model.begin() + first + count);
            model.insert(model.begin() + first, lines.begin(), lines.end());
        }
        expect_same(table, model, random);
        if (HasFatalFailure())
            return;
    }
    EXPECT_GT(model.size(), 1000u);
}
