// Clipboards on the display in memory: what lasts, who is told, and what other programs would see.

#include <gtest/gtest.h>

#include <Application.h>
#include <Clipboard.h>
#include <Looper.h>
#include <Message.h>
#include <OS.h>
#include <TypeConstants.h>

#include <string.h>

#include <atomic>
#include <string>

#include "app/Mailbox.h"

namespace {

class ClipboardTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
    }

    BApplication fApp{"application/x-vnd.plinth-clipboard-test"};
};

void add_text(BClipboard& clipboard, const std::string& text)
{
    clipboard.Data()->AddData("text/plain", B_MIME_TYPE, text.data(),
                              static_cast<ssize_t>(text.size()), false);
}

status_t put_text(BClipboard& clipboard, const std::string& text)
{
    if (!clipboard.Lock())
        return B_ERROR;
    clipboard.Clear();
    add_text(clipboard, text);
    const status_t status = clipboard.Commit();
    clipboard.Unlock();
    return status;
}

std::string find_text(const BMessage* data)
{
    const void* bytes;
    ssize_t size;
    if (data == nullptr || data->FindData("text/plain", B_MIME_TYPE, &bytes, &size) != B_OK)
        return "(none)";
    return std::string(static_cast<const char*>(bytes), static_cast<size_t>(size));
}

std::string get_text(BClipboard& clipboard)
{
    if (!clipboard.Lock())
        return "(not locked)";
    const std::string text = find_text(clipboard.Data());
    clipboard.Unlock();
    return text;
}

}  // namespace

TEST_F(ClipboardTest, ComesWithTheApplicationAndWorksOnlyLocked)
{
    ASSERT_NE(nullptr, be_clipboard);
    EXPECT_STREQ("system", be_clipboard->Name());
    EXPECT_EQ(nullptr, be_clipboard->Data());
    EXPECT_EQ(B_NOT_ALLOWED, be_clipboard->Clear());
    EXPECT_EQ(B_NOT_ALLOWED, be_clipboard->Commit());
    EXPECT_EQ(B_NOT_ALLOWED, be_clipboard->Commit(true));
    EXPECT_EQ(B_NOT_ALLOWED, be_clipboard->Revert());
    ASSERT_TRUE(be_clipboard->Lock());
    ASSERT_TRUE(be_clipboard->Lock()) << "its holder may lock it again";
    EXPECT_TRUE(be_clipboard->Data()->IsEmpty());
    be_clipboard->Unlock();
    EXPECT_TRUE(be_clipboard->IsLocked());
    be_clipboard->Unlock();
    EXPECT_FALSE(be_clipboard->IsLocked());
}

TEST_F(ClipboardTest, EveryTypeComesBackThroughAnotherObject)
{
    const std::string bytes("\xff\0x\xe9\xed\xa0\x80", 7);
    BClipboard writer(nullptr), reader("system");
    ASSERT_TRUE(writer.Lock());
    writer.Data()->what = 'what';
    add_text(writer, bytes);
    writer.Data()->AddInt32("number", 42);
    BMessage nested('nest');
    nested.AddString("inside", "deep");
    writer.Data()->AddMessage("message", &nested);
    EXPECT_EQ(B_OK, writer.Commit());
    EXPECT_EQ(be_app_messenger, writer.DataSource());
    writer.Unlock();

    ASSERT_TRUE(reader.Lock());
    EXPECT_EQ(be_app_messenger, reader.DataSource());
    const BMessage* data = reader.Data();
    EXPECT_EQ(uint32('what'), data->what);
    EXPECT_EQ(bytes, find_text(data)) << "what is no UTF-8 comes back unchanged";
    EXPECT_EQ(42, data->FindInt32("number"));
    BMessage found;
    EXPECT_EQ(B_OK, data->FindMessage("message", &found));
    EXPECT_STREQ("deep", found.FindString("inside"));
    reader.Unlock();
}

TEST_F(ClipboardTest, ClearedWithoutCommitLastsUntilTheNextChange)
{
    BClipboard other(nullptr);
    ASSERT_EQ(B_OK, put_text(*be_clipboard, "first"));
    ASSERT_TRUE(be_clipboard->Lock());
    be_clipboard->Clear();
    be_clipboard->Unlock();
    EXPECT_EQ("(none)", get_text(*be_clipboard));
    EXPECT_EQ("first", get_text(other)) << "nothing was committed";
    EXPECT_EQ("(none)", get_text(*be_clipboard));
    ASSERT_EQ(B_OK, put_text(other, "second"));
    EXPECT_EQ("second", get_text(*be_clipboard));

    // Reverting takes back what was not committed.
    ASSERT_TRUE(be_clipboard->Lock());
    be_clipboard->Clear();
    add_text(*be_clipboard, "draft");
    EXPECT_EQ("draft", find_text(be_clipboard->Data()));
    EXPECT_EQ(B_OK, be_clipboard->Revert());
    EXPECT_EQ("second", find_text(be_clipboard->Data()));
    be_clipboard->Unlock();
}

TEST_F(ClipboardTest, WhatWasFoundStaysAfterUnlockingUntilTheNextChange)
{
    BClipboard other(nullptr);
    ASSERT_EQ(B_OK, put_text(other, "stays"));
    ASSERT_TRUE(be_clipboard->Lock());
    const void* bytes;
    ssize_t size;
    ASSERT_EQ(B_OK, be_clipboard->Data()->FindData("text/plain", B_MIME_TYPE, &bytes, &size));
    be_clipboard->Unlock();
    get_text(*be_clipboard);
    ASSERT_TRUE(be_clipboard->Lock());
    const void* again;
    ASSERT_EQ(B_OK, be_clipboard->Data()->FindData("text/plain", B_MIME_TYPE, &again, &size));
    be_clipboard->Unlock();
    EXPECT_EQ(bytes, again);
    EXPECT_EQ(0, memcmp(bytes, "stays", 5));
}

TEST_F(ClipboardTest, CountsTellChangesAndGuardACommit)
{
    BClipboard one(nullptr), other(nullptr);
    ASSERT_EQ(B_OK, put_text(one, "a"));
    EXPECT_EQ(one.SystemCount(), one.LocalCount());
    ASSERT_TRUE(one.Lock());
    const uint32 before = one.LocalCount();
    ASSERT_EQ(B_OK, put_text(other, "b"));
    EXPECT_EQ(before + 1, one.SystemCount());
    EXPECT_EQ(before, one.LocalCount());
    one.Clear();
    add_text(one, "c");
    EXPECT_EQ(B_ERROR, one.Commit(true));
    EXPECT_EQ("b", get_text(other));
    EXPECT_EQ(B_OK, one.Commit(false));
    EXPECT_EQ("c", get_text(other));
    EXPECT_EQ(one.SystemCount(), one.LocalCount());
    EXPECT_EQ(B_OK, one.Commit(true));
    one.Unlock();
}

TEST_F(ClipboardTest, ACommitOfWhatWasNotLookedAtKeepsIt)
{
    BClipboard other(nullptr);
    ASSERT_EQ(B_OK, put_text(other, "kept"));
    ASSERT_TRUE(be_clipboard->Lock());
    EXPECT_EQ(B_OK, be_clipboard->Commit());
    be_clipboard->Unlock();
    EXPECT_EQ("kept", get_text(other));
}

TEST_F(ClipboardTest, NamedOnesAreApart)
{
    BClipboard notes("notes"), notes_too("notes"), others("others");
    ASSERT_EQ(B_OK, put_text(notes, "n"));
    EXPECT_EQ("n", get_text(notes_too));
    EXPECT_EQ("(none)", get_text(others));
    EXPECT_EQ("(none)", get_text(*be_clipboard));
}

TEST_F(ClipboardTest, WatchersAreToldOfEveryCommit)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    looper->Run();
    const BMessenger target(looper);
    BClipboard named("watched"), other(nullptr);
    EXPECT_EQ(B_BAD_VALUE, be_clipboard->StartWatching(BMessenger()));
    EXPECT_EQ(B_BAD_VALUE, be_clipboard->StopWatching(target));
    EXPECT_EQ(B_OK, be_clipboard->StartWatching(target));
    EXPECT_EQ(B_OK, be_clipboard->StartWatching(target)) << "once is enough";
    put_text(other, "a");
    put_text(named, "not watched");
    looper->PostMessage('stop');
    EXPECT_EQ(uint32(B_CLIPBOARD_CHANGED), mail.TakeWhat());
    EXPECT_EQ(uint32('stop'), mail.TakeWhat());
    EXPECT_EQ(B_OK, be_clipboard->StopWatching(target));
    put_text(other, "b");
    looper->PostMessage('stop');
    EXPECT_EQ(uint32('stop'), mail.TakeWhat());

    // One that is gone does no harm.
    EXPECT_EQ(B_OK, named.StartWatching(target));
    ASSERT_TRUE(looper->Lock());
    looper->Quit();
    EXPECT_EQ(B_OK, put_text(named, "c"));
    EXPECT_EQ(B_BAD_VALUE, named.StopWatching(target));
}

TEST_F(ClipboardTest, ManyThreadsWriteAndReadWholeTexts)
{
    std::atomic<int> bad{0};
    auto work = [&](char letter) {
        BClipboard mine(nullptr);
        for (int round = 0; round < 200; round++) {
            BClipboard& clipboard = round % 2 == 0 ? mine : *be_clipboard;
            if (put_text(clipboard, std::string(100 + round, letter)) != B_OK)
                bad++;
            const std::string text = get_text(clipboard);
            if (text.size() < 100 || text != std::string(text.size(), text[0]))
                bad++;
        }
    };
    {
        Task first([&] { work('a'); });
        Task second([&] { work('b'); });
        work('c');
    }
    EXPECT_EQ(0, bad);
}

TEST(ClipboardWithoutApplication, CanNotBeLocked)
{
    BClipboard clipboard("alone");
    EXPECT_FALSE(clipboard.Lock());
    EXPECT_EQ(uint32(0), clipboard.SystemCount());
    EXPECT_EQ(B_BAD_VALUE, clipboard.StartWatching(BMessenger()));
}
