// What the pointer makes of a text: presses that select, drags, and drops.

#include "support/click_interval.h"
#include "tests/text/text_harness.h"

#include <Clipboard.h>

using namespace text_test;

namespace {

class PointerTest : public TextTest {
protected:
    void Go(int32 offset, float dx = 0, float dy = 0)
    {
        const BPoint point = ScreenPoint(offset);
        inject_pointer(point.x + dx, point.y + dy);
    }
    void Click(int32 offset, int count = 1, int32 button = 1)
    {
        Go(offset, 1);
        for (int i = 0; i < count; i++) {
            inject_button(button, true);
            inject_button(button, false);
        }
    }
    void Drag(int32 from, int32 to)
    {
        Go(from, 1);
        inject_button(1, true);
        Go(to, 1);
        Settle();
        inject_button(1, false);
    }
};

}  // namespace

TEST_F(PointerTest, PressPutsTheCaretAtTheNearestPlace)
{
    MakeText("one two three\nfour");
    Start();
    Click(5);
    EXPECT_EQ(State(), "one t|wo three\nfour");
    const BPoint below = ScreenPoint(18);
    window_test::WindowTest::Click(below.x + 80, below.y + 60);
    EXPECT_EQ(State(), "one two three\nfour|");
    const BPoint end = ScreenPoint(13);
    window_test::WindowTest::Click(end.x + 80, end.y);
    EXPECT_EQ(State(), "one two three|\nfour");
}

TEST_F(PointerTest, SecondClickSelectsAWordAndThirdALine)
{
    const ClickInterval slow;
    MakeText("one two three\nfour");
    Start();
    Click(5, 2);
    EXPECT_EQ(State(), "one [two] three\nfour");
    Click(10, 3);
    EXPECT_EQ(State(), "[one two three\n]four");
}

TEST_F(PointerTest, PointerThatMovesSelectsByWhatThePressSelected)
{
    const ClickInterval slow;
    MakeText("one two three four");
    Start();
    Drag(2, 6);
    EXPECT_EQ(State(), "on[e tw]o three four");
    Go(6, 1);
    inject_button(1, true);
    inject_button(1, false);
    inject_button(1, true);
    Go(10, 1);
    Settle();
    EXPECT_EQ(State(), "one [two three] four");
    Go(1, 1);
    Settle();
    inject_button(1, false);
    EXPECT_EQ(State(), "[one two] three four");
}

TEST_F(PointerTest, ShiftExtendsTheSelection)
{
    MakeText("one two three");
    Start();
    Click(4);
    inject_key(kKeyShift, true);
    Click(9);
    inject_key(kKeyShift, false);
    EXPECT_EQ(State(), "one [two t]hree");
}

TEST_F(PointerTest, ReleaseInTheSelectionPutsTheCaretThere)
{
    MakeText("one two three");
    Start();
    Select(4, 7);
    Click(5);
    EXPECT_EQ(State(), "one t|wo three");
}

TEST_F(PointerTest, DragMovesTheSelectionAsOneStep)
{
    MakeText("one two three");
    Start();
    Select(4, 8);
    Drag(5, 0);
    EXPECT_EQ(State(), "[two ]one three");
    Press(kKeyZ, {kKeyCommand});
    EXPECT_EQ(State(), "one [two ]three");
}

TEST_F(PointerTest, DragWithControlCopies)
{
    MakeText("one two three");
    Start();
    Select(4, 8);
    Go(5, 1);
    inject_button(1, true);
    Go(0, 1);
    Settle();
    inject_key(kKeyControl, true);
    inject_button(1, false);
    Settle();
    inject_key(kKeyControl, false);
    EXPECT_EQ(State(), "[two ]one two three");
}

TEST_F(PointerTest, DragToAnotherTextCopiesWithItsStyles)
{
    MakeText("one two three", 300, 100);
    Do([](BTextView& view) {
        const rgb_color red = {255, 0, 0, 255};
        view.SetStylable(true);
        view.SetFontAndColor(4, 7, nullptr, 0, &red);
    });
    auto* other = new BTextView(BRect(0, 60, 300, 100), "other", BRect(4, 3, 296, 37),
                                B_FOLLOW_NONE, B_WILL_DRAW);
    other->SetStylable(true);
    window->Lock();
    text->ResizeTo(300, 50);
    window->AddChild(other);
    window->Unlock();
    Start();
    Select(4, 7);
    Go(5, 1);
    inject_button(1, true);
    inject_pointer(150, 170);
    inject_pointer(160, 172);
    Settle();
    inject_button(1, false);
    Settle();
    window->Lock();
    EXPECT_STREQ(other->Text(), "two");
    rgb_color color;
    other->GetFontAndColor(1, nullptr, &color);
    EXPECT_EQ(color.red, 255);
    window->Unlock();
    EXPECT_EQ(Content(), "one two three");
}

TEST_F(PointerTest, TextThatCannotBeEditedIsSelectedAndNotDroppedOn)
{
    MakeText("one two three");
    Do([](BTextView& view) { view.MakeEditable(false); });
    Start();
    Select(4, 8);
    Drag(5, 0);
    EXPECT_EQ(State(), "one [two ]three");
    inject_text("x");
    Press(kKeyBackspace);
    EXPECT_EQ(State(), "one [two ]three");
}

TEST_F(PointerTest, TextThatCannotBeSelectedOnlyTakesTheCaret)
{
    MakeText("one two three");
    Do([](BTextView& view) { view.MakeSelectable(false); });
    Start();
    Drag(2, 6);
    EXPECT_EQ(State(), "on|e two three");
    Press(kKeyRight, {kKeyShift});
    EXPECT_EQ(State(), "one| two three");
}

TEST_F(PointerTest, HiddenTypingIsNeitherDraggedNorCopied)
{
    MakeText("secret");
    Do([](BTextView& view) { view.HideTyping(true); });
    Start();
    ASSERT_TRUE(be_clipboard->Lock());
    be_clipboard->Clear();
    be_clipboard->Commit();
    be_clipboard->Unlock();
    Select(0, 6);
    Press(kKeyC, {kKeyCommand});
    Drag(1, 6);
    Press(kKeyEnd);
    Press(kKeyV, {kKeyCommand});
    EXPECT_EQ(Content(), "secret");
}

TEST_F(PointerTest, SelectionGoesOnWhileThePointerIsBelow)
{
    std::string lines;
    for (int i = 0; i < 100; i++)
        lines += "line " + std::to_string(i) + "\n";
    MakeText(lines.c_str(), 300, 100);
    Start();
    Go(0, 1);
    inject_button(1, true);
    const BPoint start = ScreenPoint(0);
    inject_pointer(start.x, start.y + 400);
    bool reached = false;
    for (bigtime_t end = system_time() + 20'000'000; !reached && system_time() < end;) {
        Do([&](BTextView& view) { reached = view.Bounds().top > 200; });
        snooze(10'000);
    }
    inject_button(1, false);
    EXPECT_TRUE(reached);
    int32 from = -1, to = -1;
    Do([&](BTextView& view) { view.GetSelection(&from, &to); });
    EXPECT_EQ(from, 0);
    EXPECT_GT(to, 100);
}

TEST_F(PointerTest, MiddleButtonInsertsWhatWasSelectedLast)
{
    MakeText("one two three");
    Start();
    Drag(4, 7);
    EXPECT_EQ(State(), "one [two] three");
    Click(13, 1, 4);
    EXPECT_EQ(State(), "one two threetwo|");
    // Selecting by keys counts too; what a program selects does not.
    Press(kKeyHome);
    Press(kKeyRight, {kKeyShift});
    EXPECT_EQ(State(), "[o]ne two threetwo");
    Select(4, 8);
    Click(0, 1, 4);
    EXPECT_EQ(State(), "o|one two threetwo");
    Press(kKeyZ, {kKeyCommand});
    EXPECT_EQ(State(), "|one two threetwo");
}

TEST_F(PointerTest, HiddenTypingIsNoSelectionForOthers)
{
    MakeText("one secret");
    Start();
    Drag(0, 3);
    Settle();
    Do([](BTextView& view) { view.HideTyping(true); });
    Press(kKeyA, {kKeyCommand});
    Settle();
    Click(10, 1, 4);
    EXPECT_EQ(State(), "one secretone|");
}
