// The key table and what presses turn into, without a display.

#include <gtest/gtest.h>

#include <InterfaceDefs.h>

#include <set>
#include <string>
#include <vector>

#include "server/screen/Input.h"
#include "server/screen/KeyTable.h"

using namespace server;

namespace {

const int32 kA = 0x3c, kLeftShift = 0x4b, kRightShift = 0x56, kLeftControl = 0x5c, kLeftAlt = 0x5d,
            kCapsLock = 0x3b, kNumLock = 0x22, kKeypad7 = 0x37, kF1 = 0x02;

// A keyboard whose events are at hand.
struct Typist {
    Keyboard keyboard;
    std::vector<Event> events;

    std::vector<Event>& Do(int32 key, bool down, const char* text = nullptr, int32 rawChar = 0)
    {
        events.clear();
        keyboard.Change(key, down, text, rawChar, &events);
        return events;
    }
    Event Press(int32 key, const char* text = nullptr, int32 rawChar = 0)
    {
        return Do(key, true, text, rawChar).back();
    }
    void Tap(int32 key)
    {
        Do(key, true);
        Do(key, false);
    }
};

}  // namespace

TEST(KeyTable, BytesFollowShiftControlAndLocks)
{
    const struct {
        int32 key;
        uint32 modifiers;
        int byte;
    } kCases[] = {
        {kA, 0, 'a'},
        {kA, B_SHIFT_KEY, 'A'},
        {kA, B_CAPS_LOCK, 'A'},
        {kA, B_CAPS_LOCK | B_SHIFT_KEY, 'a'},
        {kA, B_CONTROL_KEY, 1},
        {kA, B_CONTROL_KEY | B_SHIFT_KEY, 1},
        {kA, B_COMMAND_KEY, 'a'},
        {0x12, B_CAPS_LOCK, '1'},  // Caps Lock is for letters
        {0x12, B_SHIFT_KEY, '!'},
        {0x12, B_CONTROL_KEY, -1},
        {0x5e, B_CONTROL_KEY, 0},  // Control with Space types a zero byte
        {kKeypad7, 0, B_HOME},
        {kKeypad7, B_NUM_LOCK, '7'},
        {kKeypad7, B_NUM_LOCK | B_SHIFT_KEY, B_HOME},
        {0x49, 0, -1},
        {kF1, 0, B_FUNCTION_KEY},
        {0x0d, B_SHIFT_KEY, B_FUNCTION_KEY},
        {0x61, 0, B_LEFT_ARROW},
        {0x62, 0, B_DOWN_ARROW},
        {0x1e, 0, B_BACKSPACE},
        {0x1e, B_CONTROL_KEY, B_DELETE},
        {0x47, 0, B_ENTER},
        {0x5b, 0, B_ENTER},
        {0x34, 0, B_DELETE},
        {kLeftShift, 0, -1},
        {0, 0, -1},
        {-1, 0, -1},
        {128, 0, -1},
        {INT32_MIN, 0, -1},
    };
    for (const auto& each : kCases)
        EXPECT_EQ(KeyByte(each.key, each.modifiers), each.byte)
            << each.key << " " << each.modifiers;
}

TEST(KeyTable, EveryHostCodeNamesOneKey)
{
    EXPECT_EQ(KeyForHostCode(30), kA);
    EXPECT_EQ(KeyForHostCode(59), kF1);
    EXPECT_EQ(KeyForHostCode(88), 0x0d);
    EXPECT_EQ(KeyForHostCode(105), 0x61);
    EXPECT_EQ(KeyForHostCode(0), 0);
    EXPECT_EQ(KeyForHostCode(255), 0);
    EXPECT_EQ(KeyForHostCode(UINT32_MAX), 0);
    std::set<int32> keys;
    for (uint32 code = 1; code < 256; code++) {
        const int32 key = KeyForHostCode(code);
        EXPECT_TRUE(key == 0 || keys.insert(key).second) << code;
        EXPECT_LT(key, kKeyCount);
    }
}

TEST(KeyTable, CharactersFindTheKeyThatTypesThem)
{
    for (int character = 1; character < 128; character++) {
        int32 key;
        bool shift;
        if (!KeyForCharacter(char(character), &key, &shift)) {
            EXPECT_LT(character, ' ');
            continue;
        }
        int expected = character == '\r' ? '\n' : character;
        EXPECT_EQ(KeyByte(key, shift ? B_SHIFT_KEY : 0), expected);
    }
    int32 key;
    bool shift;
    ASSERT_TRUE(KeyForCharacter('7', &key, &shift));
    EXPECT_EQ(key, 0x18);  // not the keypad's
    EXPECT_FALSE(KeyForCharacter(char(0xe4), &key, &shift));
}

TEST(Keyboard, PressSetsBytesStatesAndRawCharacter)
{
    Typist typist;
    typist.Press(kLeftShift);
    Event press = typist.Press(kA);
    EXPECT_EQ(press.kind, EventKind::KeyDown);
    EXPECT_STREQ(press.bytes, "A");
    EXPECT_EQ(press.byteCount, 1);
    EXPECT_EQ(press.rawChar, 'a');
    EXPECT_EQ(press.modifiers, B_SHIFT_KEY | B_LEFT_SHIFT_KEY);
    EXPECT_TRUE(press.states[kA >> 3] & (1 << (7 - (kA & 7))));
    EXPECT_TRUE(press.states[kLeftShift >> 3] & (1 << (7 - (kLeftShift & 7))));
    Event release = typist.Do(kA, false).back();
    EXPECT_EQ(release.kind, EventKind::KeyUp);
    EXPECT_FALSE(release.states[kA >> 3] & (1 << (7 - (kA & 7))));
}

TEST(Keyboard, ModifierChangesComeBesideTheUnmappedKey)
{
    Typist typist;
    std::vector<Event> events = typist.Do(kLeftControl, true);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].kind, EventKind::ModifiersChanged);
    EXPECT_EQ(events[0].modifiers, B_CONTROL_KEY | B_LEFT_CONTROL_KEY);
    EXPECT_EQ(events[0].oldModifiers, 0);
    EXPECT_EQ(events[1].kind, EventKind::KeyDown);
    EXPECT_EQ(events[1].byteCount, 0);
    EXPECT_TRUE(typist.Do(kLeftControl, true).empty());  // a modifier does not repeat
}

TEST(Keyboard, CommonModifierStaysWhileOneSideIsHeld)
{
    Typist typist;
    typist.Press(kLeftShift);
    typist.Press(kRightShift);
    typist.Do(kLeftShift, false);
    EXPECT_EQ(typist.keyboard.Modifiers(), B_SHIFT_KEY | B_RIGHT_SHIFT_KEY);
    typist.Do(kRightShift, false);
    EXPECT_EQ(typist.keyboard.Modifiers(), 0);
}

TEST(Keyboard, LocksToggleOnPress)
{
    Typist typist;
    typist.Tap(kCapsLock);
    EXPECT_EQ(typist.keyboard.Modifiers(), B_CAPS_LOCK);
    EXPECT_STREQ(typist.Press(kA).bytes, "A");
    typist.Do(kA, false);
    typist.Tap(kNumLock);
    EXPECT_STREQ(typist.Press(kKeypad7).bytes, "7");
    typist.Tap(kCapsLock);
    EXPECT_EQ(typist.keyboard.Modifiers(), B_NUM_LOCK);
}

TEST(Keyboard, RepeatsCountFromTwoAndStopWithAnotherKey)
{
    Typist typist;
    EXPECT_EQ(typist.Press(kA).repeat, 0);
    EXPECT_EQ(typist.Press(kA).repeat, 2);
    EXPECT_EQ(typist.Press(kA).repeat, 3);
    typist.Do(kA, false);
    EXPECT_EQ(typist.Press(kA).repeat, 0);
    EXPECT_EQ(typist.Press(0x50).repeat, 0);
    EXPECT_EQ(typist.Press(kA).repeat, 0);
    EXPECT_TRUE(typist.Do(kF1, false).empty());  // it was not down
}

TEST(Keyboard, HostTextWinsButForFixedAndControlKeys)
{
    Typist typist;
    EXPECT_STREQ(typist.Press(0x46, "\xc3\xa4", 0xe4).bytes, "\xc3\xa4");
    EXPECT_STREQ(typist.Press(kF1, "x").bytes, "\x10");
    EXPECT_STREQ(typist.Press(0x47, "\r").bytes, "\n");
    EXPECT_STREQ(typist.Press(kA, "").bytes, "a");
    typist.Press(kLeftControl);
    EXPECT_STREQ(typist.Press(0x4e, "\x03").bytes, "\x03");
    EXPECT_STREQ(typist.Press(0x4e, "c").bytes, "\x03");
    // No more than one character, however much the host says.
    Typist other;
    EXPECT_EQ(std::string(other.Press(kA, "abcdefghij").bytes), "a");
    EXPECT_EQ(other.Press(0x3d, "\xf0\x9f\x98\x80z").byteCount, 4);
    EXPECT_LE(other.Press(0x3e, "\xf0\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80").byteCount, 7);
}

TEST(Keyboard, CommandLeavesTheByteAlone)
{
    Typist typist;
    typist.Press(kLeftAlt);
    Event press = typist.Press(kA);
    EXPECT_STREQ(press.bytes, "a");
    EXPECT_EQ(press.modifiers, B_COMMAND_KEY | B_LEFT_COMMAND_KEY);
}

TEST(Keyboard, SyncTakesOverWhatHappenedElsewhere)
{
    Typist typist;
    typist.Press(kLeftAlt);
    typist.events.clear();
    typist.keyboard.Sync(0, B_COMMAND_KEY | B_SHIFT_KEY, &typist.events);
    ASSERT_EQ(typist.events.size(), 1u);
    EXPECT_EQ(typist.events[0].modifiers, 0);
    EXPECT_FALSE(typist.keyboard.IsDown(kLeftAlt));
    typist.keyboard.Sync(B_SHIFT_KEY | B_CAPS_LOCK, B_SHIFT_KEY | B_CAPS_LOCK, &typist.events);
    EXPECT_EQ(typist.keyboard.Modifiers(), B_SHIFT_KEY | B_LEFT_SHIFT_KEY | B_CAPS_LOCK);
    typist.events.clear();
    typist.keyboard.Release(&typist.events);
    EXPECT_EQ(typist.keyboard.Modifiers(), B_CAPS_LOCK);
}

TEST(ClickCounter, CountsQuickPressesOfTheSameKind)
{
    const bigtime_t kSpeed = 500000;
    const int first = 0, second = 0;
    const struct {
        int32 buttons;
        BPoint where;
        int32 modifiers;
        const void* window;
        bigtime_t when;
        int32 clicks;
    } kPresses[] = {
        {1, {10, 10}, 0, &first, 1000, 1},
        {1, {12, 11}, 0, &first, 100000, 2},
        {1, {13, 12}, 0, &first, 500000, 3},
        {1, {17, 12}, 0, &first, 510000, 1},             // four pixels off
        {2, {17, 12}, 0, &first, 520000, 1},             // another button
        {2, {17, 12}, B_SHIFT_KEY, &first, 530000, 1},   // another modifier
        {2, {17, 12}, B_SHIFT_KEY, &second, 540000, 1},  // another window
        {2, {17, 12}, B_SHIFT_KEY, &second, 1039999, 2},
        {2, {17, 12}, B_SHIFT_KEY, &second, 1539999, 1},  // too late
        {3, {17, 12}, B_SHIFT_KEY, &second, 1540000, 1},  // with another one that is held
        {3, {17, 12}, B_SHIFT_KEY, &second, 1550000, 2},
    };
    ClickCounter counter;
    for (const auto& press : kPresses) {
        EXPECT_EQ(counter.Press(press.buttons, press.where, press.modifiers, press.window,
                                press.when, kSpeed),
                  press.clicks)
            << press.when;
    }
}
