// Text that an input method makes: it stands in the text while it is made, and is one step.

#include "tests/text/text_harness.h"

#include <Input.h>

using namespace text_test;

TEST_F(TextTest, ComposedTextStandsAtTheCaretUntilItIsDone)
{
    MakeText("ab");
    Start();
    Select(1, 1);
    inject_composition("ni", 2, "");
    EXPECT_EQ(State(), "ani|b");
    inject_composition("に", 3, "");
    EXPECT_EQ(State(), "aに|b");
    inject_composition("", 0, "日本");
    EXPECT_EQ(State(), "a日本|b");
    Press(kKeyZ, {kKeyCommand});
    EXPECT_EQ(State(), "a|b");
    Press(kKeyZ, {kKeyCommand, kKeyShift});
    EXPECT_EQ(State(), "a日本|b");
}

TEST_F(TextTest, ComposedTextTakesThePlaceOfTheSelectionAndGoesWhenCancelled)
{
    MakeText("a word");
    Start();
    Select(2, 6);
    inject_composition("ka", 2, "");
    EXPECT_EQ(State(), "a ka|");
    inject_composition("", 0, "");
    EXPECT_EQ(State(), "a |");
    Press(kKeyZ, {kKeyCommand});
    EXPECT_EQ(State(), "a [word]");
}

TEST_F(TextTest, WhatIsDoneMayBeginTheNext)
{
    MakeText("");
    Start();
    inject_composition("a", 1, "");
    inject_composition("b", 1, "A");
    EXPECT_EQ(State(), "Ab|");
    inject_composition("", 0, "B");
    EXPECT_EQ(State(), "AB|");
}

TEST_F(TextTest, CommittedTextAloneIsTyped)
{
    MakeText("");
    Start();
    Do([](BTextView& view) { view.DisallowChar('x'); });
    inject_composition("", 0, "éx日");
    EXPECT_EQ(State(), "é日|");
}

TEST_F(TextTest, PressKeepsWhatIsComposedAndEndsIt)
{
    MakeText("one");
    Start();
    inject_composition("ka", 2, "");
    EXPECT_EQ(State(), "ka|one");
    const BPoint end = ScreenPoint(5);
    Click(end.x + 20, end.y);
    EXPECT_EQ(State(), "kaone|");
    inject_composition("", 0, "x");
    EXPECT_EQ(State(), "kaonex|");
}

TEST_F(TextTest, WordsOfTheInputMethodGoToTheCaret)
{
    MakeText("one\ntwo");
    Start();
    float place[4];
    EXPECT_FALSE(inject_composition_place(place));
    Select(7, 7);
    inject_composition("k", 1, "");
    Settle();
    Settle();
    ASSERT_TRUE(inject_composition_place(place));
    BPoint start;
    Do([&](BTextView& view) { start = view.ConvertToScreen(view.PointAt(7)); });
    EXPECT_EQ(place[0], start.x);
    EXPECT_EQ(place[1], start.y);
    EXPECT_GT(place[3], place[1] + 8);
}

TEST_F(TextTest, EachCharacterOfWhatIsComposedHasItsPlace)
{
    MakeText("one");
    Start();
    Select(1, 1);
    inject_composition("にhe\u0301", 0, "");
    Settle();
    class Method : public BHandler {
    public:
        void MessageReceived(BMessage* message) override { reply = *message; }
        BMessage reply;
    } method;
    Do([&](BTextView& view) {
        view.Looper()->AddHandler(&method);
        BMessage request(B_INPUT_METHOD_EVENT);
        request.AddInt32("be:opcode", B_INPUT_METHOD_LOCATION_REQUEST);
        request.AddMessenger("be:reply_to", BMessenger(&method));
        view.MessageReceived(&request);
    });
    Settle();
    Do([&](BTextView& view) {
        const int32 kPlaces[] = {1, 4, 5, 8};  // the last one is where the next begins
        BPoint place;
        int32 count = 0;
        for (; method.reply.FindPoint("be:location_reply", count, &place) == B_OK; count++) {
            ASSERT_LT(count, 4);
            EXPECT_EQ(place, view.ConvertToScreen(view.PointAt(kPlaces[count])));
            EXPECT_GT(method.reply.GetFloat("be:height_reply", count, 0), 8);
        }
        EXPECT_EQ(count, 4);
        view.Looper()->RemoveHandler(&method);
    });
}

TEST_F(TextTest, HiddenTypingShowsNothingOfWhatIsComposed)
{
    MakeText("");
    Start();
    inject_composition("ka", 2, "");
    EXPECT_EQ(State(), "ka|");
    Do([](BTextView& view) { view.HideTyping(true); });
    inject_composition("", 0, "");
    inject_composition("ki", 2, "");
    EXPECT_EQ(State(), "ka|") << "only what is done is typed";
    inject_composition("", 0, "ku");
    EXPECT_EQ(State(), "kaku|");
    Do([](BTextView& view) { view.HideTyping(false); });
    inject_composition("so", 2, "");
    EXPECT_EQ(State(), "kakuso|");
}

TEST_F(TextTest, ComposedTextIsUnderlined)
{
    MakeText("");
    Start();
    inject_composition("nnnn", 4, "");
    Settle();
    BPoint from, to;
    float height = 0;
    Do([&](BTextView& view) {
        from = view.ConvertToScreen(view.PointAt(0, &height));
        to = view.ConvertToScreen(view.PointAt(4));
    });
    Settle();
    std::vector<uint32> row = ScreenRow(from.x, to.x - 2, from.y + height - 1);
    for (uint32 pixel : row)
        EXPECT_EQ(pixel & 0xFFFFFF, 0u);
    inject_composition("", 0, "nnnn");
    Settle();
    row = ScreenRow(from.x, to.x - 2, from.y + height - 1);
    for (uint32 pixel : row)
        EXPECT_EQ(pixel & 0xFFFFFF, 0xFFFFFFu);
}

TEST_F(TextTest, ViewsWithoutInputMethodsGetTheTextAsKeys)
{
    Make();
    auto* plain = Add(BRect(0, 0, 50, 50), "plain");
    plain->MakeFocus();
    Start();
    inject_composition("k", 1, "");
    inject_composition("", 0, "か!");
    ASSERT_TRUE(log.Wait("plain key !"));
    EXPECT_EQ(log.Lines({"plain key か", "plain key !"}), "plain key か 3; plain key ! 1");
}
