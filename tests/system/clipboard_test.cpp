// The clipboard as a compiled program sees it.

#include <gtest/gtest.h>

#include <Clipboard.h>
#include <Message.h>
#include <OS.h>
#include <TypeConstants.h>
#include <plinth.h>

#include <string.h>

#include <string>

static void commit(const char* type, type_code code, const void* bytes, ssize_t size)
{
    ASSERT_TRUE(be_clipboard->Lock());
    be_clipboard->Clear();
    EXPECT_EQ(B_OK, be_clipboard->Data()->AddData(type, code, bytes, size));
    EXPECT_EQ(B_OK, be_clipboard->Commit());
    be_clipboard->Unlock();
}

TEST(ClipboardCalls, TextComesBackByteForByte)
{
    std::string all;
    for (int byte = 255; byte > 0; byte--)
        all += static_cast<char>(byte);
    const std::string million(1 << 20, 'm');
    for (const std::string& text : {std::string("x"), std::string(), all, million}) {
        EXPECT_TRUE(SetStringClipboard(text.c_str()));
        EXPECT_EQ(text, GetStringClipboard());
    }
    EXPECT_FALSE(SetStringClipboard(nullptr));
}

TEST(ClipboardCalls, TextIsTerminatedWhereItEnds)
{
    commit("text/plain", B_MIME_TYPE, "12345678ABCDEFGH", 8);
    EXPECT_STREQ("12345678", GetStringClipboard());
    commit("text/plain", B_MIME_TYPE, "cut\0off", 7);
    EXPECT_STREQ("cut", GetStringClipboard());
}

TEST(ClipboardCalls, ResultStaysUntilTheClipboardChanges)
{
    SetStringClipboard("stays");
    const char* text = GetStringClipboard();
    EXPECT_EQ(text, GetStringClipboard());
    commit("text/plain", B_MIME_TYPE, "new", 3);
    EXPECT_STREQ("stays", text) << "nobody has asked for the new one";
    EXPECT_STREQ("new", GetStringClipboard());
}

TEST(ClipboardCalls, OnlyPlainTextOfTheMimeTypeCounts)
{
    commit("text/plain", B_STRING_TYPE, "string", 7);
    EXPECT_FALSE(IsEmptyClipboard());
    EXPECT_STREQ("", GetStringClipboard());
    commit("text/html", B_MIME_TYPE, "<p>", 3);
    EXPECT_FALSE(IsEmptyClipboard());
    EXPECT_STREQ("", GetStringClipboard());
}

TEST(ClipboardCalls, KeptIsEmptyAnswersTheOpposite)
{
    EXPECT_TRUE(ClearClipboard());
    EXPECT_FALSE(IsEmptyClipboard());
    EXPECT_TRUE(SetStringClipboard("x"));
    EXPECT_TRUE(IsEmptyClipboard());
    EXPECT_TRUE(ClearClipboard());
    EXPECT_FALSE(IsEmptyClipboard());
    EXPECT_STREQ("", GetStringClipboard());
}

TEST(ClipboardCalls, KeptClearingLeavesTheTextToOthers)
{
    BClipboard other(nullptr);
    SetStringClipboard("left");
    ClearClipboard();
    ASSERT_TRUE(other.Lock());
    EXPECT_TRUE(other.Data()->HasData("text/plain", B_MIME_TYPE));
    EXPECT_EQ(B_OK, other.Commit());
    other.Unlock();
    EXPECT_STREQ("left", GetStringClipboard()) << "the clipboard has changed";
}

TEST(ClipboardCalls, ThreadsKeepTheirOwnResults)
{
    SetStringClipboard("mine");
    const char* mine = GetStringClipboard();
    thread_id thread = spawn_thread(
        [](void*) -> status_t {
            SetStringClipboard("a text of another thread, longer than the first");
            return strlen(GetStringClipboard()) == 47 ? B_OK : B_ERROR;
        },
        "other", B_NORMAL_PRIORITY, nullptr);
    status_t result = B_ERROR;
    resume_thread(thread);
    wait_for_thread(thread, &result);
    EXPECT_EQ(B_OK, result);
    EXPECT_STREQ("mine", mine);
}
