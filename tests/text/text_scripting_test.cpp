// Scripts that read and write a text.

#include "tests/text/text_harness.h"

using namespace text_test;

namespace {

class TextScript : public TextTest {
protected:
    // The answer to a question about a range, or about all.
    BMessage Ask(uint32 what, const char* property, int32 index = -1, int32 count = -1,
                 const BMessage& data = BMessage())
    {
        BMessage question(data), reply;
        question.what = what;
        BMessage specifier(index >= 0 ? B_RANGE_SPECIFIER : B_DIRECT_SPECIFIER);
        specifier.AddString("property", property);
        if (index >= 0) {
            specifier.AddInt32("index", index);
            specifier.AddInt32("range", count);
        }
        question.AddSpecifier(&specifier);
        BMessenger(text).SendMessage(&question, &reply, 60000000, 60000000);
        return reply;
    }
};

}  // namespace

TEST_F(TextScript, ReadsTextItsLengthAndTheSelection)
{
    MakeText("one two three");
    Start();
    Select(1, 3);
    EXPECT_EQ(Ask(B_COUNT_PROPERTIES, "Text").GetInt32("result", -1), 13);
    EXPECT_STREQ(Ask(B_GET_PROPERTY, "Text", 4, 3).GetString("result"), "two");
    EXPECT_STREQ(Ask(B_GET_PROPERTY, "Text", 8, INT32_MAX).GetString("result"), "three");
    EXPECT_EQ(Ask(B_GET_PROPERTY, "Text", 14, 1).GetInt32("error", 0), B_BAD_INDEX);
    const BMessage selection = Ask(B_GET_PROPERTY, "Selection");
    EXPECT_EQ(selection.GetInt32("result", -1), 1);
    EXPECT_EQ(selection.GetInt32("result", 1, -1), 3);
}

TEST_F(TextScript, WritesTextSelectionAndStyles)
{
    MakeText("one two three");
    Do([](BTextView& view) {
        const rgb_color red = {255, 0, 0, 255};
        view.SetStylable(true);
        view.SetFontAndColor(0, 3, nullptr, 0, &red);
    });
    Start();
    BMessage data;
    data.AddString("data", "2");
    EXPECT_EQ(Ask(B_SET_PROPERTY, "Text", 4, 3, data).GetInt32("error", -1), B_OK);
    EXPECT_EQ(Content(), "one 2 three");
    data.MakeEmpty();
    data.AddInt32("data", 6);
    data.AddInt32("data", 11);
    EXPECT_EQ(Ask(B_SET_PROPERTY, "Selection", -1, -1, data).GetInt32("error", -1), B_OK);
    EXPECT_EQ(State(), "one 2 [three]");
    const BMessage runs = Ask(B_GET_PROPERTY, "text_run_array", 0, 3);
    const void* flat;
    ssize_t size;
    ASSERT_EQ(runs.FindData("result", B_RAW_TYPE, &flat, &size), B_OK);
    data.MakeEmpty();
    data.AddData("data", B_RAW_TYPE, flat, size);
    EXPECT_EQ(Ask(B_SET_PROPERTY, "text_run_array", 6, 5, data).GetInt32("error", -1), B_OK);
    rgb_color color = {};
    Do([&](BTextView& view) { view.GetFontAndColor(8, nullptr, &color); });
    EXPECT_EQ(color.red, 255);
    data.MakeEmpty();
    EXPECT_EQ(Ask(B_SET_PROPERTY, "text_run_array", 6, 5, data).GetInt32("error", 0), B_BAD_VALUE);
}
