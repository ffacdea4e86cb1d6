// What keys make of a text: what is typed, deleted and selected.

#include "tests/text/text_harness.h"

using namespace text_test;

TEST_F(TextTest, TypingGoesInAtTheCaret)
{
    MakeText("ad");
    Start();
    Select(1, 1);
    inject_text("bc");
    EXPECT_EQ(State(), "abc|d");
    EXPECT_EQ(log.Lines({"insert", "delete"}), "insert b at 1; insert c at 2");
}

TEST_F(TextTest, TypingTakesThePlaceOfTheSelection)
{
    MakeText("a long word");
    Start();
    Select(2, 6);
    inject_text("x");
    EXPECT_EQ(State(), "a x| word");
    EXPECT_EQ(log.Lines({"insert", "delete"}), "delete 2 to 6; insert x at 2");
}

TEST_F(TextTest, ShortcutsActInTheirTurnAmongTheKeys)
{
    const int32_t kKeyControl = 0x5c, kKeyA = 0x3c;
    MakeText("old ");
    Start();
    window->Lock();  // all of it waits by the time that the first key is read
    inject_text("text");
    for (int32_t key : {kKeyControl, kKeyA})
        inject_key(key, true);
    for (int32_t key : {kKeyA, kKeyControl})
        inject_key(key, false);
    inject_text("new");
    window->Unlock();
    EXPECT_EQ(State(), "new|");
}

TEST_F(TextTest, ArrowsGoByCharactersAndWords)
{
    MakeText("one two\nthree");
    Start();
    Press(kKeyRight);
    EXPECT_EQ(State(), "o|ne two\nthree");
    Press(kKeyRight, {kKeyControl});
    EXPECT_EQ(State(), "one| two\nthree");
    Press(kKeyRight, {kKeyShift, kKeyControl});
    EXPECT_EQ(State(), "one[ two]\nthree");
    Press(kKeyLeft);
    EXPECT_EQ(State(), "one| two\nthree");
    Press(kKeyEnd);
    EXPECT_EQ(State(), "one two|\nthree");
    Press(kKeyDown);
    EXPECT_EQ(State(), "one two\nthree|");
    Press(kKeyUp, {kKeyShift});
    EXPECT_EQ(State(), "one two[\nthree]");
    Press(kKeyHome, {kKeyControl});
    EXPECT_EQ(State(), "|one two\nthree");
    Press(kKeyEnd, {kKeyControl, kKeyShift});
    EXPECT_EQ(State(), "[one two\nthree]");
}

TEST_F(TextTest, BackspaceAndDeleteTakeCharactersAndWords)
{
    MakeText("one two three");
    Start();
    Select(7, 7);
    Press(kKeyBackspace);
    EXPECT_EQ(State(), "one tw| three");
    Press(kKeyDelete);
    EXPECT_EQ(State(), "one tw|three");
    Press(kKeyBackspace, {kKeyControl});
    EXPECT_EQ(State(), "one |three");
    Press(kKeyDelete, {kKeyControl});
    EXPECT_EQ(State(), "one |");
    Press(kKeyBackspace);
    Press(kKeyBackspace);
    Press(kKeyBackspace);
    Press(kKeyBackspace);
    Press(kKeyBackspace);
    EXPECT_EQ(State(), "|");
}

TEST_F(TextTest, EnterBreaksTheLineAndKeepsItsIndent)
{
    MakeText("\t two");
    Start();
    Select(5, 5);
    Press(kKeyEnter);
    EXPECT_EQ(State(), "\t two\n|");
    Do([](BTextView& view) {
        view.SetText("\t two");
        view.SetAutoindent(true);
        view.Select(5, 5);
    });
    Press(kKeyEnter);
    EXPECT_EQ(State(), "\t two\n\t |");
}

TEST_F(TextTest, CommandKeysCutCopyPasteUndoAndRedo)
{
    MakeText("one two");
    Start();
    Select(0, 4);
    Press(kKeyX, {kKeyCommand});
    EXPECT_EQ(State(), "|two");
    Press(kKeyEnd);
    Press(kKeyV, {kKeyCommand});
    EXPECT_EQ(State(), "twoone |");
    Press(kKeyZ, {kKeyCommand});
    EXPECT_EQ(State(), "two|");
    Press(kKeyZ, {kKeyCommand});
    EXPECT_EQ(State(), "[one ]two");
    Press(kKeyZ, {kKeyCommand, kKeyShift});
    EXPECT_EQ(State(), "|two");
    Press(kKeyA, {kKeyCommand});
    EXPECT_EQ(State(), "[two]");
}
