// Keys on their way: fields, shortcuts, the default button and the ways of the focus.

#include <Application.h>
#include <MessageQueue.h>

#include "window_harness.h"

using namespace window_test;

namespace {

class WindowKeys : public WindowTest {
protected:
    void OpenWithFocus()
    {
        Make();
        view = Add(BRect(10, 10, 49, 49), "a", B_WILL_DRAW | B_NAVIGABLE);
        view->MakeFocus();
        Start();
    }
    std::string Lines(const std::vector<std::string>& starts = {""})
    {
        Settle();
        return log.Lines(starts);
    }

    TestView* view = nullptr;
};

std::string bytes_of(const BMessage& message)
{
    std::string bytes;
    int8 byte;
    for (int32 i = 0; message.FindInt8("byte", i, &byte) == B_OK; i++)
        bytes += char(byte);
    return bytes;
}

}  // namespace

TEST_F(WindowKeys, KeyMessagesHoldTheCharacter)
{
    OpenWithFocus();
    Press(kKeyA, {kKeyShift});
    EXPECT_EQ(Lines({"a key"}), "a key A 1; a keyup A 1");
    const BMessage down = log.Message("a key A");
    EXPECT_EQ(down.what, uint32(B_KEY_DOWN));
    EXPECT_EQ(down.FindInt32("key"), kKeyA);
    EXPECT_EQ(down.FindInt32("raw_char"), 'a');
    EXPECT_EQ(bytes_of(down), "A");
    EXPECT_STREQ(down.FindString("bytes"), "A");
    EXPECT_NE(down.FindInt32("modifiers") & B_SHIFT_KEY, 0);
    EXPECT_FALSE(down.HasInt32("be:key_repeat"));
    EXPECT_TRUE(down.HasInt64("when"));
    const void* states;
    ssize_t size;
    ASSERT_EQ(down.FindData("states", B_UINT8_TYPE, &states, &size), B_OK);
    ASSERT_EQ(size, 16);
    const auto* bits = static_cast<const uint8*>(states);
    for (int32_t key : {kKeyA, kKeyShift})
        EXPECT_NE(bits[key >> 3] & (1 << (7 - (key & 7))), 0) << key;
    EXPECT_EQ(log.Message("a keyup").what, uint32(B_KEY_UP));
}

TEST_F(WindowKeys, CharactersBeyondAsciiComeWithAllTheirBytes)
{
    OpenWithFocus();
    inject_text("\xc3\xa9");
    EXPECT_EQ(Lines({"a key"}), "a key \xc3\xa9 2; a keyup \xc3\xa9 2");
    EXPECT_EQ(bytes_of(log.Message("a key ")), "\xc3\xa9");
}

TEST_F(WindowKeys, HeldKeyRepeats)
{
    OpenWithFocus();
    for (int i = 0; i < 3; i++)
        inject_key(kKeyA, true);
    inject_key(kKeyA, false);
    Settle();
    EXPECT_EQ(log.Count("a key a"), 3);
    EXPECT_EQ(log.Message("a key a").FindInt32("be:key_repeat"), 3);
}

TEST_F(WindowKeys, ModifiersAndUnmappedKeysAreMessages)
{
    OpenWithFocus();
    Press(kKeyShift);
    EXPECT_EQ(Lines({"a key", "a message"}),
              "a message _MCH; a message _UKD; a message _MCH; a message _UKU");
    const BMessage changed = log.Message("a message _MCH");
    EXPECT_EQ(changed.FindInt32("modifiers") & B_SHIFT_KEY, 0);
    EXPECT_NE(changed.FindInt32("be:old_modifiers") & B_SHIFT_KEY, 0);
    EXPECT_EQ(log.Message("a message _UKD").FindInt32("key"), kKeyShift);
    EXPECT_FALSE(log.Message("a message _UKD").HasString("bytes"));
}

TEST_F(WindowKeys, ControlWithSpaceIsOneByte)
{
    OpenWithFocus();
    Press(kKeySpace, {kKeyControl});
    EXPECT_EQ(Lines({"a key "}), "a key  1");
}

TEST_F(WindowKeys, WithoutFocusTheWindowGetsTheKeys)
{
    OpenWithFocus();
    window->Lock();
    view->MakeFocus(false);
    window->Unlock();
    Press(kKeyA);
    EXPECT_EQ(Lines({"a key", "message"}), "message _KYD; message _KYU");
}

TEST_F(WindowKeys, CommandNeverReachesKeyDown)
{
    OpenWithFocus();
    Press(kKeyF1, {kKeyCommand});
    Press(kKeyA, {kKeyCommand, kKeyControl});
    EXPECT_EQ(Lines({"a key "}), "");
}

TEST_F(WindowKeys, EditShortcutsGoToTheFocus)
{
    OpenWithFocus();
    Press(kKeyC, {kKeyCommand});
    Settle();
    Press(kKeyA, {kKeyCommand});
    EXPECT_EQ(Lines({"a message COPY", "a message SALL", "menus"}),
              "menus; menus ended; a message COPY; menus; menus ended; a message SALL");
    EXPECT_TRUE(log.Message("a message COPY").HasInt64("when"));
}

TEST_F(WindowKeys, CommandWCloses)
{
    OpenWithFocus();
    window->onQuitRequested = [] { return false; };
    Press(kKeyW, {kKeyCommand});
    Settle();
    ASSERT_EQ(log.Count("quit requested"), 1);
    EXPECT_TRUE(log.Message("quit requested").FindBool("shortcut"));
    EXPECT_TRUE(log.Message("quit requested").HasInt64("when"));

    window->SetFlags(B_NOT_CLOSABLE);
    Press(kKeyW, {kKeyCommand});
    window->SetFlags(0);
    window->SetType(B_MODAL_WINDOW);
    Press(kKeyW, {kKeyCommand});
    Settle();
    EXPECT_EQ(log.Count("quit requested"), 1);

    // The close button's request says nothing of a shortcut.
    window->SetType(B_TITLED_WINDOW);
    inject_window_close(150, 150);
    Settle();
    EXPECT_EQ(log.Count("quit requested"), 2);
    EXPECT_FALSE(log.Message("quit requested").HasBool("shortcut"));
}

TEST_F(WindowKeys, EscapeClosesIfTheFlagSaysSo)
{
    OpenWithFocus();
    window->onQuitRequested = [] { return false; };
    Press(kKeyEscape);
    Settle();
    EXPECT_EQ(log.Count("quit requested"), 0);
    window->SetFlags(B_CLOSE_ON_ESCAPE);
    Press(kKeyEscape);
    Settle();
    EXPECT_EQ(log.Count("quit requested"), 1);
}

TEST_F(WindowKeys, ShortcutsOfTheProgram)
{
    OpenWithFocus();
    window->AddShortcut('K', 0, new BMessage('keyk'));
    window->AddShortcut('k', B_SHIFT_KEY, new BMessage('skey'), view);
    window->AddShortcut('+', 0, new BMessage('plus'), nullptr);
    EXPECT_TRUE(window->HasShortcut('k', B_COMMAND_KEY));
    EXPECT_FALSE(window->HasShortcut('k', B_OPTION_KEY));
    const int32_t kKeyK = 0x43, kKeyEqual = 0x1d;
    Press(kKeyK, {kKeyCommand});
    Press(kKeyK, {kKeyCommand, kKeyShift});
    Press(kKeyEqual, {kKeyCommand, kKeyShift});  // Shift is only needed to type it
    EXPECT_EQ(Lines({"message keyk", "a message keyk", "a message skey", "a message plus"}),
              "message keyk; a message skey; a message plus");

    window->RemoveShortcut('k', 0);
    window->RemoveShortcut('c', B_COMMAND_KEY);
    log.Clear();
    Press(kKeyK, {kKeyCommand});
    Press(kKeyC, {kKeyCommand});
    EXPECT_EQ(Lines({"message keyk", "a message COPY"}), "");
    window->AddShortcut('x', 0, nullptr);  // nothing to be sent: nothing changes
    EXPECT_TRUE(window->HasShortcut('x', 0));
}

TEST_F(WindowKeys, ShortcutAddedAsTheMenusOpenWorksAtOnce)
{
    OpenWithFocus();
    window->onMenus = [&] { window->AddShortcut('k', 0, new BMessage('keyk')); };
    Press(0x43, {kKeyCommand});
    EXPECT_EQ(Lines({"message keyk"}), "message keyk");
}

TEST_F(WindowKeys, TabWalksThroughTheNavigableViews)
{
    OpenWithFocus();
    Add(BRect(0, 60, 9, 69), "b");
    TestView* c = Add(BRect(0, 70, 9, 79), "c", B_WILL_DRAW | B_NAVIGABLE | B_NAVIGABLE_JUMP);
    TestView* d = Add(BRect(0, 80, 9, 89), "d", B_WILL_DRAW | B_NAVIGABLE);
    window->Lock();
    d->Hide();
    window->Unlock();
    const auto focus = [&] {
        Settle();
        return std::string(window->CurrentFocus() != nullptr ? window->CurrentFocus()->Name() : "");
    };
    Press(kKeyTab);
    EXPECT_EQ(focus(), "c");
    Press(kKeyTab);
    EXPECT_EQ(focus(), "a");
    Press(kKeyTab, {kKeyShift});
    EXPECT_EQ(focus(), "c");
    window->Lock();
    view->MakeFocus();
    window->Unlock();
    Press(kKeyTab, {kKeyOption});
    EXPECT_EQ(focus(), "c");
    window->RemoveChild(c);
    EXPECT_EQ(focus(), "");
    delete c;
    Press(kKeyTab);
    EXPECT_EQ(focus(), "a");
}

TEST_F(WindowKeys, EnterGoesToTheDefaultButton)
{
    OpenWithFocus();
    // Programs name views of any kind.
    TestView* button = Add(BRect(60, 60, 99, 79), "button");
    window->SetDefaultButton(reinterpret_cast<BButton*>(static_cast<BView*>(button)));
    Press(kKeyEnter);
    Press(kKeyEnter, {kKeyShift});
    Press(kKeyA);
    EXPECT_EQ(Lines({"button key ", "a key "}), "button key \n 1; a key \n 1; a key a 1");
    window->RemoveChild(button);
    delete button;
    log.Clear();
    Press(kKeyEnter);
    EXPECT_EQ(Lines({"button key ", "a key "}), "a key \n 1");
}

TEST_F(WindowKeys, CommandQAsksTheApplication)
{
    BApplication application("application/x-vnd.test-window-keys");
    OpenWithFocus();
    Press(kKeyQ, {kKeyCommand});
    Settle();
    BMessage* request = application.MessageQueue()->FindMessage(uint32(B_QUIT_REQUESTED), 0);
    ASSERT_NE(request, nullptr);
    EXPECT_TRUE(request->FindBool("shortcut"));
    Close(window);
}
