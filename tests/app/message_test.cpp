// BMessage and BMessageQueue, through their own calls.

#include <Message.h>

#include <DataIO.h>
#include <Entry.h>
#include <Flattenable.h>
#include <MessageQueue.h>
#include <Node.h>
#include <OS.h>
#include <String.h>
#include <StringList.h>
#include <TypeConstants.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

static std::vector<char> flat(const BMessage& message)
{
    std::vector<char> bytes(message.FlattenedSize());
    EXPECT_EQ(B_OK, message.Flatten(bytes.data(), bytes.size()));
    return bytes;
}

static BMessage back(const std::vector<char>& bytes)
{
    BMessage message;
    BMemoryIO stream(static_cast<const void*>(bytes.data()), bytes.size());
    EXPECT_EQ(B_OK, message.Unflatten(&stream));
    return message;
}

// One value of every type.
static BMessage every_type()
{
    BMessage message('TEST');
    const entry_ref ref(3, 77, "a file");
    const node_ref node(4, 78);
    BMessage nested('NEST');
    nested.AddString("inside", "yes");
    BStringList list;
    list.Add("one");
    list.Add("");
    EXPECT_EQ(B_OK, message.AddInt8("int8", -8));
    EXPECT_EQ(B_OK, message.AddUInt8("uint8", 200));
    EXPECT_EQ(B_OK, message.AddInt16("int16", INT16_MIN));
    EXPECT_EQ(B_OK, message.AddUInt16("uint16", UINT16_MAX));
    EXPECT_EQ(B_OK, message.AddInt32("int32", INT32_MIN));
    EXPECT_EQ(B_OK, message.AddUInt32("uint32", UINT32_MAX));
    EXPECT_EQ(B_OK, message.AddInt64("int64", INT64_MIN));
    EXPECT_EQ(B_OK, message.AddUInt64("uint64", UINT64_MAX));
    EXPECT_EQ(B_OK, message.AddBool("bool", true));
    EXPECT_EQ(B_OK, message.AddFloat("float", 1.5f));
    EXPECT_EQ(B_OK, message.AddDouble("double", -2.25));
    EXPECT_EQ(B_OK, message.AddColor("color", rgb_color{1, 2, 3, 4}));
    EXPECT_EQ(B_OK, message.AddPoint("point", BPoint(1, 2)));
    EXPECT_EQ(B_OK, message.AddRect("rect", BRect(1, 2, 3, 4)));
    EXPECT_EQ(B_OK, message.AddSize("size", BSize(5, 6)));
    EXPECT_EQ(B_OK, message.AddAlignment("alignment", BAlignment(B_ALIGN_LEFT, B_ALIGN_TOP)));
    EXPECT_EQ(B_OK, message.AddString("string", "text"));
    EXPECT_EQ(B_OK, message.AddPointer("pointer", &message));
    EXPECT_EQ(B_OK, message.AddRef("ref", &ref));
    EXPECT_EQ(B_OK, message.AddNodeRef("node", &node));
    EXPECT_EQ(B_OK, message.AddMessage("message", &nested));
    EXPECT_EQ(B_OK, message.AddFlat("list", &list));
    EXPECT_EQ(B_OK, message.AddMessenger("messenger", BMessenger()));
    return message;
}

static void expect_every_type(const BMessage& message)
{
    EXPECT_EQ(uint32('TEST'), message.what);
    EXPECT_EQ(23, message.CountNames(B_ANY_TYPE));
    EXPECT_EQ(-8, message.FindInt8("int8"));
    EXPECT_EQ(200, message.GetUInt8("uint8", 0));
    EXPECT_EQ(INT16_MIN, message.FindInt16("int16"));
    EXPECT_EQ(UINT16_MAX, message.GetUInt16("uint16", 0));
    EXPECT_EQ(INT32_MIN, message.FindInt32("int32"));
    EXPECT_EQ(UINT32_MAX, message.GetUInt32("uint32", 0));
    EXPECT_EQ(INT64_MIN, message.FindInt64("int64"));
    EXPECT_EQ(UINT64_MAX, message.GetUInt64("uint64", 0));
    EXPECT_TRUE(message.FindBool("bool"));
    EXPECT_EQ(1.5f, message.FindFloat("float"));
    EXPECT_EQ(-2.25, message.FindDouble("double"));
    EXPECT_TRUE((rgb_color{1, 2, 3, 4}) == message.GetColor("color", rgb_color{0, 0, 0, 0}));
    EXPECT_TRUE(BPoint(1, 2) == message.FindPoint("point"));
    EXPECT_TRUE(BRect(1, 2, 3, 4) == message.FindRect("rect"));
    EXPECT_TRUE(BSize(5, 6) == message.GetSize("size", BSize(0, 0)));
    EXPECT_STREQ("text", message.FindString("string"));
    entry_ref ref;
    EXPECT_EQ(B_OK, message.FindRef("ref", &ref));
    EXPECT_TRUE(entry_ref(3, 77, "a file") == ref);
    node_ref node;
    EXPECT_EQ(B_OK, message.FindNodeRef("node", &node));
    EXPECT_TRUE(node_ref(4, 78) == node);
    BMessage nested;
    EXPECT_EQ(B_OK, message.FindMessage("message", &nested));
    EXPECT_EQ(uint32('NEST'), nested.what);
    EXPECT_STREQ("yes", nested.FindString("inside"));
    BStringList list;
    EXPECT_EQ(B_OK, message.FindFlat("list", &list));
    EXPECT_EQ(2, list.CountStrings());
    EXPECT_TRUE(list.First() == "one");
}

TEST(Message, EveryTypeSurvivesCopyAssignmentAndFlattening)
{
    const BMessage message = every_type();
    expect_every_type(message);
    expect_every_type(BMessage(message));
    BMessage assigned('ELSE');
    assigned.AddInt32("gone", 1);
    assigned = message;
    expect_every_type(assigned);
    expect_every_type(back(flat(message)));
    EXPECT_TRUE(message.HasSameData(back(flat(message))));
}

TEST(Message, FieldsTellNameTypeAndIndexApart)
{
    BMessage message;
    message.AddInt32("number", 1);
    message.AddInt32("number", 2);
    int32 value = 99;
    EXPECT_EQ(B_OK, message.FindInt32("number", 1, &value));
    EXPECT_EQ(2, value);
    EXPECT_EQ(B_BAD_INDEX, message.FindInt32("number", 2, &value));
    EXPECT_EQ(0, value) << "a number that is not found is zero";
    EXPECT_EQ(B_BAD_INDEX, message.FindInt32("number", -1, &value));
    EXPECT_EQ(B_NAME_NOT_FOUND, message.FindInt32("numbe", &value));
    EXPECT_EQ(B_BAD_TYPE, message.AddFloat("number", 1));
    float real;
    EXPECT_EQ(B_BAD_TYPE, message.FindFloat("number", &real));
    EXPECT_EQ(B_BAD_VALUE, message.FindInt32(nullptr, &value));
    EXPECT_EQ(B_BAD_VALUE, message.FindInt32("number", static_cast<int32*>(nullptr)));
    EXPECT_EQ(B_BAD_VALUE, message.AddString("text", static_cast<const char*>(nullptr)));
    EXPECT_EQ(B_BAD_VALUE, message.AddInt32(std::string(256, 'n').c_str(), 1));
    EXPECT_EQ(B_OK, message.AddInt32(std::string(255, 'n').c_str(), 1));
    EXPECT_EQ(7, message.GetInt32("missing", 7));
    EXPECT_EQ(B_BAD_VALUE, message.AddData("number", B_INT32_TYPE, "12345678", 8));
}

TEST(Message, InfoWalksTheFieldsOfAType)
{
    BMessage message;
    message.AddString("a", "x");
    message.AddInt32("b", 1);
    message.AddString("c", "y");
    message.AddString("c", "z");
    char* name;
    type_code type;
    int32 count;
    ASSERT_EQ(B_OK, message.GetInfo(B_STRING_TYPE, 1, &name, &type, &count));
    EXPECT_STREQ("c", name);
    EXPECT_EQ(2, count);
    ASSERT_EQ(B_OK, message.GetInfo(B_ANY_TYPE, 1, &name, &type, &count));
    EXPECT_STREQ("b", name);
    EXPECT_EQ(type_code(B_INT32_TYPE), type);
    EXPECT_EQ(B_BAD_INDEX, message.GetInfo(B_STRING_TYPE, 2, &name, &type));
    EXPECT_EQ(B_BAD_TYPE, message.GetInfo(B_RECT_TYPE, 0, &name, &type));
    bool fixed;
    ASSERT_EQ(B_OK, message.GetInfo("c", &type, &fixed));
    EXPECT_FALSE(fixed);
    EXPECT_EQ(2, message.CountNames(B_STRING_TYPE));
}

// Against a plain list of what should be there.
TEST(Message, ValuesOfManySizesStayRightThroughEveryChange)
{
    BMessage message;
    std::vector<std::string> expected[3];
    const char* const names[] = {"first", "second", "a third one"};
    uint32 seed = 1;
    const auto random = [&seed](uint32 below) {
        seed = seed * 1664525 + 1013904223;
        return (seed >> 8) % below;
    };
    for (int step = 0; step < 4000; ++step) {
        const uint32 field = random(3);
        std::vector<std::string>& values = expected[field];
        const std::string text(random(60), static_cast<char>('a' + random(26)));
        const int32 index = values.empty() ? 0 : static_cast<int32>(random(values.size()));
        switch (random(values.size() > 30 ? 4 : 3)) {
            case 0:
                ASSERT_EQ(B_OK, message.AddString(names[field], text.c_str()));
                values.push_back(text);
                break;
            case 1:
                ASSERT_EQ(values.empty() ? B_NAME_NOT_FOUND : B_OK,
                          message.ReplaceString(names[field], index, text.c_str()));
                if (!values.empty())
                    values[index] = text;
                break;
            case 2:
                // The source is the message itself.
                if (!values.empty()) {
                    ASSERT_EQ(B_OK, message.AddString(names[field],
                                                      message.FindString(names[field], index)));
                    values.push_back(std::string(values[index]));
                }
                break;
            default:
                ASSERT_EQ(B_OK, message.RemoveData(names[field], index));
                values.erase(values.begin() + index);
                break;
        }
    }
    for (const BMessage& each : {BMessage(message), back(flat(message))}) {
        for (int field = 0; field < 3; ++field) {
            int32 count;
            type_code type;
            ASSERT_EQ(B_OK, each.GetInfo(names[field], &type, &count));
            ASSERT_EQ(static_cast<int32>(expected[field].size()), count);
            for (int32 i = 0; i < count; ++i)
                ASSERT_EQ(expected[field][i], each.FindString(names[field], i));
        }
    }
}

TEST(Message, RenameKeepsTheValuesWhateverTheNamesLength)
{
    BMessage message;
    message.AddString("short", "one");
    message.AddString("short", "two");
    message.AddInt32("other", 5);
    ASSERT_EQ(B_OK, message.Rename("short", "a name that is a good deal longer"));
    EXPECT_FALSE(message.HasString("short"));
    ASSERT_EQ(B_OK, message.Rename("a name that is a good deal longer", "s"));
    EXPECT_STREQ("two", message.FindString("s", 1));
    EXPECT_EQ(5, message.FindInt32("other"));
    EXPECT_EQ(B_NAME_IN_USE, message.Rename("s", "other"));
    EXPECT_EQ(B_NAME_NOT_FOUND, message.Rename("short", "t"));
    char* name;
    type_code type;
    ASSERT_EQ(B_OK, message.GetInfo(B_ANY_TYPE, 0, &name, &type));
    EXPECT_EQ(B_OK, message.Rename(name, std::string(255, 'x').c_str()));
    EXPECT_STREQ("one", message.FindString(std::string(255, 'x').c_str()));
}

TEST(Message, RemovingTheLastValueRemovesTheField)
{
    BMessage message;
    message.AddInt32("n", 1);
    message.AddInt32("n", 2);
    EXPECT_EQ(B_OK, message.RemoveData("n", 0));
    EXPECT_EQ(2, message.FindInt32("n"));
    EXPECT_EQ(B_OK, message.RemoveData("n"));
    EXPECT_TRUE(message.IsEmpty());
    EXPECT_EQ(B_NAME_NOT_FOUND, message.RemoveData("n"));
    EXPECT_EQ(B_OK, message.AddFloat("n", 1)) << "the type is free again";
    EXPECT_EQ(B_OK, message.RemoveName("n"));
    EXPECT_EQ(B_NAME_NOT_FOUND, message.RemoveName("n"));
}

TEST(Message, AppendTakesEveryValueAlsoItsOwn)
{
    BMessage message;
    message.AddInt32("n", 1);
    message.AddString("s", "x");
    BMessage other;
    other.AddInt32("n", 2);
    other.AddBool("b", true);
    ASSERT_EQ(B_OK, message.Append(other));
    EXPECT_EQ(2, message.FindInt32("n", 1));
    EXPECT_TRUE(message.FindBool("b"));
    ASSERT_EQ(B_OK, message.Append(message));
    EXPECT_EQ(2, message.FindInt32("n", 3));
    EXPECT_STREQ("x", message.FindString("s", 1));
}

TEST(Message, SameDataMayIgnoreOrderAndLookIntoMessages)
{
    BMessage inner_a, inner_b;
    inner_a.AddInt32("x", 1);
    inner_a.AddInt32("y", 2);
    inner_b.AddInt32("y", 2);
    inner_b.AddInt32("x", 1);
    EXPECT_TRUE(inner_a.HasSameData(inner_b));
    EXPECT_FALSE(inner_a.HasSameData(inner_b, false));
    BMessage outer_a, outer_b;
    outer_a.AddMessage("m", &inner_a);
    outer_b.AddMessage("m", &inner_b);
    EXPECT_FALSE(outer_a.HasSameData(outer_b));
    EXPECT_TRUE(outer_a.HasSameData(outer_b, true, true));
}

TEST(Message, SetChangesTheFirstValueOrAddsOne)
{
    BMessage message;
    EXPECT_EQ(B_OK, message.SetString("s", "a"));
    EXPECT_EQ(B_OK, message.SetString("s", "a longer text than before"));
    EXPECT_STREQ("a longer text than before", message.FindString("s"));
    EXPECT_FALSE(message.HasString("s", 1));
    EXPECT_EQ(B_BAD_TYPE, message.SetInt32("s", 1));
}

TEST(Message, TextWithoutTerminatorIsReadOnlyToItsEnd)
{
    BMessage message;
    ASSERT_EQ(B_OK, message.AddData("s", B_STRING_TYPE, "abcdefgh", 8, true));
    EXPECT_STREQ("abcdefgh", message.FindString("s"));
    ASSERT_EQ(B_OK, message.AddData("r", B_REF_TYPE, "0123456789abcdefname", 20, false));
    entry_ref ref;
    EXPECT_EQ(B_BAD_DATA, message.FindRef("r", &ref));
    int32 number;
    ASSERT_EQ(B_OK, message.AddData("i", B_INT32_TYPE, "ab", 2));
    EXPECT_EQ(B_BAD_DATA, message.FindInt32("i", &number));
}

TEST(Message, EveryCutOffFlatFormIsRefused)
{
    const std::vector<char> whole = flat(every_type());
    BMessage message('KEEP');
    message.AddInt32("kept", 1);
    for (size_t size = 0; size < whole.size(); ++size) {
        BMemoryIO stream(static_cast<const void*>(whole.data()), size);
        ASSERT_NE(B_OK, message.Unflatten(&stream)) << size;
    }
    EXPECT_EQ(uint32('KEEP'), message.what);
    EXPECT_EQ(1, message.FindInt32("kept"));
    EXPECT_EQ(B_BAD_VALUE, message.Flatten(nullptr, 100));
    std::vector<char> small(whole.size() - 1);
    EXPECT_EQ(B_BAD_VALUE, every_type().Flatten(small.data(), small.size()));
}

TEST(Message, LyingSizesCostNoMemory)
{
    std::vector<char> bytes = flat(every_type());
    const uint32 huge = (1u << 30) - 1;
    memcpy(bytes.data() + 4, &huge, sizeof(huge));
    BMemoryIO stream(static_cast<const void*>(bytes.data()), bytes.size());
    BMessage message;
    EXPECT_EQ(B_BAD_VALUE, message.Unflatten(&stream));
}

TEST(Message, SystemCodesHaveThreeCapitals)
{
    EXPECT_TRUE(BMessage('_QRQ').IsSystem());
    EXPECT_FALSE(BMessage('_qrq').IsSystem());
    EXPECT_FALSE(BMessage('AQRQ').IsSystem());
    EXPECT_FALSE(BMessage('_MD1').IsSystem());
}

TEST(Message, PrintsValuesInWordsAndNestedMessages)
{
    BMessage inner('INSI');
    inner.AddInt32("n", -5);
    BMessage message('OUTS');
    message.AddString("s", "hello");
    message.AddMessage("m", &inner);
    message.AddBool("b", true);
    message.AddBool("b", false);
    testing::internal::CaptureStdout();
    message.PrintToStream();
    const std::string text = testing::internal::GetCapturedStdout();
    for (const char* part : {"BMessage('OUTS') {", "s = string(\"hello\"", "BMessage('INSI') {",
                             "n = int32(-5 or 0xfffffffb)", "b[1] = bool(false)"})
        EXPECT_NE(std::string::npos, text.find(part)) << part << " in\n" << text;
}

TEST(MessageQueue, GivesMessagesInOrderAndOwnsTheRest)
{
    BMessageQueue queue;
    std::vector<BMessage*> all;
    for (uint32 i = 0; i < 5; ++i) {
        all.push_back(new BMessage(i % 2));
        queue.AddMessage(all.back());
    }
    queue.AddMessage(all[4]);  // it is in already
    queue.AddMessage(nullptr);
    EXPECT_EQ(5, queue.CountMessages());
    EXPECT_EQ(all[3], queue.FindMessage(uint32(1), 1));
    EXPECT_EQ(nullptr, queue.FindMessage(uint32(1), 2));
    EXPECT_EQ(nullptr, queue.FindMessage(5));
    EXPECT_TRUE(queue.IsNextMessage(all[0]));
    queue.RemoveMessage(all[4]);
    queue.RemoveMessage(all[4]);
    queue.AddMessage(all[4]);
    std::unique_ptr<BMessage> first(queue.NextMessage());
    EXPECT_EQ(all[0], first.get());
    queue.RemoveMessage(all[2]);
    std::unique_ptr<BMessage> removed(all[2]);
    EXPECT_EQ(3, queue.CountMessages());
    EXPECT_EQ(all[4], queue.FindMessage(2));
    EXPECT_TRUE(queue.Lock());
    EXPECT_TRUE(queue.IsLocked());
    queue.Unlock();
    EXPECT_FALSE(queue.IsLocked());
}
