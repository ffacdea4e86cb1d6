// The families of calls that a message has for each type of value: one set of claims for all.

#include <Alignment.h>
#include <Entry.h>
#include <Message.h>
#include <Messenger.h>
#include <Node.h>
#include <Path.h>
#include <Rect.h>
#include <Size.h>
#include <String.h>
#include <StringList.h>
#include <TypeConstants.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "support/temp_folder.h"

namespace {

bool equal(const BAlignment& a, const BAlignment& b)
{
    return a.horizontal == b.horizontal && a.vertical == b.vertical;
}
template <class Value>
bool equal(const Value& a, const Value& b)
{
    return a == b;
}

// A family as a type: its values and its calls.
#define FAMILY(Name, Value, first, second, type)                                                 \
    struct Name##Family {                                                                        \
        using Type = Value;                                                                      \
        static Value One() { return first; }                                                     \
        static Value Two() { return second; }                                                    \
        static type_code Code() { return type; }                                                 \
        static status_t Add(BMessage& m, Value v) { return m.Add##Name("x", v); }                \
        static status_t Find(const BMessage& m, Value* v) { return m.Find##Name("x", v); }       \
        static status_t Find(const BMessage& m, int32 i, Value* v)                               \
        {                                                                                        \
            return m.Find##Name("x", i, v);                                                      \
        }                                                                                        \
        static status_t Replace(BMessage& m, Value v) { return m.Replace##Name("x", v); }        \
        static status_t Replace(BMessage& m, int32 i, Value v)                                   \
        {                                                                                        \
            return m.Replace##Name("x", i, v);                                                   \
        }                                                                                        \
        static bool Has(const BMessage& m, int32 i) { return m.Has##Name("x", i); }              \
        static Value Get(const BMessage& m, Value v) { return m.Get##Name("x", v); }             \
        static Value Get(const BMessage& m, int32 i, Value v) { return m.Get##Name("x", i, v); } \
        static status_t Set(BMessage& m, Value v) { return m.Set##Name("x", v); }                \
    };

FAMILY(Bool, bool, true, false, B_BOOL_TYPE)
FAMILY(Int8, int8, -128, 127, B_INT8_TYPE)
FAMILY(UInt8, uint8, 1, 255, B_UINT8_TYPE)
FAMILY(Int16, int16, -32768, 32767, B_INT16_TYPE)
FAMILY(UInt16, uint16, 1, 65535, B_UINT16_TYPE)
FAMILY(Int32, int32, INT32_MIN, INT32_MAX, B_INT32_TYPE)
FAMILY(UInt32, uint32, 1, UINT32_MAX, B_UINT32_TYPE)
FAMILY(Int64, int64, INT64_MIN, INT64_MAX, B_INT64_TYPE)
FAMILY(UInt64, uint64, 1, UINT64_MAX, B_UINT64_TYPE)
FAMILY(Float, float, -1.5f, 3e38f, B_FLOAT_TYPE)
FAMILY(Double, double, -1.5, 1e308, B_DOUBLE_TYPE)
FAMILY(Point, BPoint, BPoint(1, 2), BPoint(-3, 4), B_POINT_TYPE)
FAMILY(Rect, BRect, BRect(1, 2, 3, 4), BRect(-1, -2, 5, 6), B_RECT_TYPE)
FAMILY(Size, BSize, BSize(1, 2), BSize(3, 4), B_SIZE_TYPE)
FAMILY(Alignment, BAlignment, BAlignment(B_ALIGN_LEFT, B_ALIGN_TOP),
       BAlignment(B_ALIGN_RIGHT, B_ALIGN_BOTTOM), B_ALIGNMENT_TYPE)
FAMILY(Color, rgb_color, (rgb_color{1, 2, 3, 4}), (rgb_color{5, 6, 7, 8}), B_RGB_32_BIT_TYPE)
#undef FAMILY

template <class Family>
class MessageFamily : public testing::Test {
};

using Families =
    testing::Types<BoolFamily, Int8Family, UInt8Family, Int16Family, UInt16Family, Int32Family,
                   UInt32Family, Int64Family, UInt64Family, FloatFamily, DoubleFamily, PointFamily,
                   RectFamily, SizeFamily, AlignmentFamily, ColorFamily>;
TYPED_TEST_SUITE(MessageFamily, Families);

}  // namespace

TYPED_TEST(MessageFamily, StoresReplacesAndFindsByIndex)
{
    using F = TypeParam;
    BMessage message;
    typename F::Type found;
    ASSERT_EQ(B_OK, F::Add(message, F::One()));
    ASSERT_EQ(B_OK, F::Add(message, F::Two()));
    EXPECT_EQ(B_OK, F::Find(message, &found));
    EXPECT_TRUE(equal(found, F::One()));
    EXPECT_EQ(B_OK, F::Find(message, 1, &found));
    EXPECT_TRUE(equal(found, F::Two()));
    EXPECT_TRUE(F::Has(message, 1));
    EXPECT_FALSE(F::Has(message, 2));
    EXPECT_FALSE(F::Has(message, -1));

    EXPECT_EQ(B_OK, F::Replace(message, F::Two()));
    EXPECT_EQ(B_OK, F::Replace(message, 1, F::One()));
    EXPECT_TRUE(equal(F::Get(message, F::One()), F::Two()));
    EXPECT_TRUE(equal(F::Get(message, 1, F::Two()), F::One()));
    EXPECT_TRUE(equal(F::Get(message, 2, F::Two()), F::Two())) << "the default, for what is not";

    type_code type;
    int32 count;
    bool fixed;
    EXPECT_EQ(B_OK, message.GetInfo("x", &type, &count));
    EXPECT_EQ(F::Code(), type);
    EXPECT_EQ(2, count);
    EXPECT_EQ(B_OK, message.GetInfo("x", &type, &fixed));
    EXPECT_TRUE(fixed);

    EXPECT_EQ(B_OK, F::Set(message, F::One()));
    EXPECT_TRUE(equal(F::Get(message, F::Two()), F::One()));
    BMessage fresh;
    EXPECT_EQ(B_OK, F::Set(fresh, F::Two())) << "adds what is not there";
    EXPECT_TRUE(equal(F::Get(fresh, F::One()), F::Two()));
}

TYPED_TEST(MessageFamily, FailsForWhatIsNotThereOrOfAnotherType)
{
    using F = TypeParam;
    BMessage message;
    typename F::Type found;
    EXPECT_EQ(B_NAME_NOT_FOUND, F::Find(message, &found));
    EXPECT_EQ(B_NAME_NOT_FOUND, F::Replace(message, F::One()));
    ASSERT_EQ(B_OK, F::Add(message, F::One()));
    EXPECT_EQ(B_BAD_INDEX, F::Find(message, 1, &found));
    EXPECT_EQ(B_BAD_INDEX, F::Find(message, -1, &found));
    EXPECT_EQ(B_BAD_INDEX, F::Replace(message, 1, F::Two()));
    EXPECT_EQ(B_BAD_VALUE, F::Find(message, nullptr));

    BMessage text;
    text.AddString("x", "no number");
    EXPECT_EQ(B_BAD_TYPE, F::Find(text, &found));
    EXPECT_EQ(B_BAD_TYPE, F::Add(text, F::One()));
    EXPECT_NE(B_OK, F::Replace(text, F::One()));
    EXPECT_TRUE(equal(F::Get(text, F::Two()), F::Two()));
    EXPECT_FALSE(F::Has(text, 0));
    EXPECT_STREQ("no number", text.GetString("x", ""));
}

TYPED_TEST(MessageFamily, TravelsFlatAndPrintsItsName)
{
    using F = TypeParam;
    BMessage message('Test');
    F::Add(message, F::One());
    F::Add(message, F::Two());
    std::string flat(static_cast<size_t>(message.FlattenedSize()), '\0');
    ASSERT_EQ(B_OK, message.Flatten(flat.data(), static_cast<ssize_t>(flat.size())));
    BMessage copy;
    ASSERT_EQ(B_OK, copy.Unflatten(flat.data()));
    EXPECT_TRUE(copy.HasSameData(message));
    EXPECT_TRUE(equal(F::Get(copy, 1, F::One()), F::Two()));

    testing::internal::CaptureStdout();
    copy.PrintToStream();
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_NE(std::string::npos, printed.find("'Test'"));
    EXPECT_NE(std::string::npos, printed.find("x[1] = "));
}

TEST(MessagePrinting, ShowsValuesInWords)
{
    BMessage inner('In  ');
    inner.AddInt8("small", -5);
    BMessage message(7);
    message.AddInt32("number", -2);
    message.AddUInt16("word", 65535);
    message.AddFloat("real", 2.5f);
    message.AddRect("frame", BRect(1, 2, 3, 4));
    message.AddPoint("where", BPoint(5, 6));
    message.AddSize("size", BSize(7, 8));
    message.AddColor("color", rgb_color{9, 10, 11, 12});
    message.AddBool("yes", true);
    message.AddString("text", "hello");
    message.AddPointer("place", nullptr);
    message.AddMessage("message", &inner);
    const entry_ref ref(1, 2, "leaf");
    message.AddRef("ref", &ref);
    message.AddData("raw", 'RAWT', std::string(70, '\xAB').data(), 70);
    message.AddData("odd", B_INT32_TYPE, "ab", 2);
    testing::internal::CaptureStdout();
    message.PrintToStream();
    const std::string printed = testing::internal::GetCapturedStdout();
    for (const char* words :
         {"BMessage(0x00000007)", "number = int32(-2 or 0xfffffffe)",
          "word = uint16(65535 or 0xffff)", "real = float(2.5)",
          "frame = BRect(l:1.0, t:2.0, r:3.0, b:4.0)", "where = BPoint(x:5.0, y:6.0)",
          "size = BSize(7.0 x 8.0)", "color = rgb_color(9, 10, 11, 12)", "yes = bool(true)",
          "text = string(\"hello\", 6 bytes)", "BMessage('In  ')", "small = int8(-5 or 0xfb)",
          "name=\"leaf\"", "ab ab ...", "(70 bytes)", "61 62 (2 bytes)"})
        EXPECT_NE(std::string::npos, printed.find(words)) << words << "\n" << printed;
}

TEST(MessageTypes, StringsComeAsObjectsAndLists)
{
    BMessage message;
    EXPECT_EQ(B_OK, message.AddString("s", BString("one")));
    BStringList list;
    list.Add("two");
    list.Add("");
    EXPECT_EQ(B_OK, message.AddStrings("s", list));
    BString found;
    EXPECT_EQ(B_OK, message.FindString("s", &found));
    EXPECT_STREQ("one", found.String());
    EXPECT_EQ(B_OK, message.FindString("s", 1, &found));
    EXPECT_STREQ("two", found.String());
    EXPECT_EQ(B_BAD_INDEX, message.FindString("s", 3, &found));
    EXPECT_EQ(B_OK, message.ReplaceString("s", BString("eins")));
    EXPECT_EQ(B_OK, message.ReplaceString("s", 1, BString("zwei")));
    BStringList all;
    EXPECT_EQ(B_OK, message.FindStrings("s", &all));
    EXPECT_STREQ("eins, zwei, ", all.Join(", ").String());
    EXPECT_EQ(B_OK, message.SetString("s", BString("uno")));
    EXPECT_STREQ("uno", message.GetString("s", "?"));
    EXPECT_STREQ("zwei", message.GetString("s", 1, "?"));
    EXPECT_STREQ("?", message.GetString("s", 9, "?"));
    EXPECT_EQ(B_BAD_VALUE, message.FindStrings("s", nullptr));
    EXPECT_EQ(B_NAME_NOT_FOUND, message.FindStrings("t", &all));
}

// As it comes from a program that met the directory at its new place: its path is at the end.
BMessage sent_from(const entry_ref& ref, const std::string& folder)
{
    BMessage own, sent;
    own.AddRef("r", &ref);
    const void* data;
    ssize_t size;
    own.FindData("r", B_REF_TYPE, &data, &size);
    std::string flat(static_cast<const char*>(data), size);
    flat.resize(16 + strlen(ref.name) + 1);
    flat.append(folder.c_str(), folder.size() + 1);
    sent.AddData("r", B_REF_TYPE, flat.data(), flat.size(), false);
    return sent;
}

TEST(MessageTypes, ReferencesTellWhereAnotherProgramMovedTheirDirectory)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.At("/old"));
    entry_ref ref, found;
    ASSERT_EQ(B_OK, get_ref_for_path(folder.At("/old/letter").c_str(), &ref));
    // What is not true is not believed.
    ASSERT_EQ(B_OK, sent_from(ref, folder.At("")).FindRef("r", &found));
    EXPECT_EQ(folder.At("/old/letter"), BPath(&found).Path());
    std::filesystem::rename(folder.At("/old"), folder.At("/new"));
    EXPECT_EQ(B_ENTRY_NOT_FOUND, BPath(&ref).InitCheck());
    ASSERT_EQ(B_OK, sent_from(ref, folder.At("")).FindRef("r", &found));
    EXPECT_EQ(B_ENTRY_NOT_FOUND, BPath(&found).InitCheck());
    ASSERT_EQ(B_OK, sent_from(ref, folder.At("/new")).FindRef("r", &found));
    EXPECT_TRUE(found == ref);
    ASSERT_EQ(B_OK, BPath(&found).InitCheck());
    EXPECT_EQ(folder.At("/new/letter"), BPath(&found).Path());
}

TEST(MessageTypes, ReferencesAreReplaced)
{
    BMessage message;
    const entry_ref first(1, 2, "first"), second(3, 4, "second");
    entry_ref ref;
    EXPECT_EQ(B_NAME_NOT_FOUND, message.ReplaceRef("r", &first));
    ASSERT_EQ(B_OK, message.AddRef("r", &first));
    EXPECT_EQ(B_OK, message.ReplaceRef("r", &second));
    EXPECT_EQ(B_OK, message.FindRef("r", &ref));
    EXPECT_TRUE(ref == second);
    EXPECT_EQ(B_BAD_INDEX, message.ReplaceRef("r", 1, &first));
    EXPECT_EQ(B_BAD_VALUE, message.ReplaceRef("r", nullptr));
    // What is cut off, or has no terminator, is no ref.
    const char numbers[20] = {};
    message.AddData("bad", B_REF_TYPE, numbers, 12, false);
    message.AddData("bad", B_REF_TYPE, "0123456789abcdefname", 20, false);
    EXPECT_EQ(B_BAD_DATA, message.FindRef("bad", 0, &ref));
    EXPECT_EQ(B_BAD_DATA, message.FindRef("bad", 1, &ref));

    node_ref node(5, 6), found;
    ASSERT_EQ(B_OK, message.AddNodeRef("n", &node));
    node.node = 7;
    EXPECT_EQ(B_OK, message.ReplaceNodeRef("n", &node));
    EXPECT_EQ(B_OK, message.FindNodeRef("n", &found));
    EXPECT_TRUE(found == node);
    EXPECT_TRUE(message.HasNodeRef("n"));
    EXPECT_EQ(B_BAD_INDEX, message.ReplaceNodeRef("n", 1, &node));

    int here;
    ASSERT_EQ(B_OK, message.AddPointer("p", nullptr));
    EXPECT_EQ(B_OK, message.ReplacePointer("p", &here));
    EXPECT_EQ(&here, message.GetPointer("p", nullptr));
    EXPECT_EQ(B_OK, message.SetPointer("p", &node));
    EXPECT_EQ(&node, message.GetPointer("p", 0, nullptr));
    EXPECT_EQ(&here, message.GetPointer("p", 1, &here));

    BMessage inner('a'), other('b'), out;
    ASSERT_EQ(B_OK, message.AddMessage("m", &inner));
    EXPECT_EQ(B_OK, message.ReplaceMessage("m", &other));
    EXPECT_EQ(B_OK, message.FindMessage("m", &out));
    EXPECT_EQ(uint32('b'), out.what);
    EXPECT_EQ(B_BAD_VALUE, message.ReplaceMessage("m", nullptr));
    EXPECT_EQ(B_BAD_INDEX, message.ReplaceMessage("m", 1, &other));
}

namespace {

// Two numbers that flatten to as many bytes as the first one says.
class Pair : public BFlattenable {
public:
    explicit Pair(uint8 length = 2, uint8 fill = 0) : fLength(length), fFill(fill) {}
    bool IsFixedSize() const override { return false; }
    type_code TypeCode() const override { return 'Pair'; }
    ssize_t FlattenedSize() const override { return fLength; }
    status_t Flatten(void* buffer, ssize_t size) const override
    {
        if (size < fLength)
            return B_BAD_VALUE;
        memset(buffer, fFill, fLength);
        return B_OK;
    }
    status_t Unflatten(type_code code, const void* buffer, ssize_t size) override
    {
        if (code != TypeCode() || size < 1)
            return B_BAD_VALUE;
        fLength = static_cast<uint8>(size);
        fFill = *static_cast<const uint8*>(buffer);
        return B_OK;
    }
    uint8 fLength, fFill;
};

}  // namespace

TEST(MessageTypes, FlattenablesKeepTheirOwnType)
{
    BMessage message;
    Pair small(3, 7), large(200, 9), found;
    EXPECT_EQ(B_OK, message.AddFlat("f", &small));
    EXPECT_EQ(B_OK, message.AddFlat("f", &large));
    EXPECT_TRUE(message.HasFlat("f", &small));
    EXPECT_TRUE(message.HasFlat("f", 1, &small));
    EXPECT_FALSE(message.HasFlat("f", 2, &small));
    EXPECT_EQ(B_OK, message.FindFlat("f", 1, &found));
    EXPECT_EQ(200, found.fLength);
    EXPECT_EQ(9, found.fFill);
    EXPECT_EQ(B_OK, message.ReplaceFlat("f", &large));
    EXPECT_EQ(B_OK, message.ReplaceFlat("f", 1, &small));
    EXPECT_EQ(B_OK, message.FindFlat("f", &found));
    EXPECT_EQ(200, found.fLength);
    EXPECT_EQ(B_OK, message.FindFlat("f", 1, &found));
    EXPECT_EQ(3, found.fLength);
    EXPECT_EQ(B_BAD_VALUE, message.AddFlat("f", static_cast<BFlattenable*>(nullptr)));
    BMessage text;
    text.AddString("f", "text");
    EXPECT_NE(B_OK, text.FindFlat("f", &found));
}
