// Text controls: what keys, focus and programs make of the text, and which messages that sends.

#include <Button.h>
#include <TextControl.h>  // brings what its TextView() is

#include <gtest/gtest.h>

#include <memory>

#include <tests/interface/window_harness.h>

using namespace window_test;

namespace {

const uint32 kGo = 'GOGO', kModified = 'MODI';

class TextControlTest : public WindowTest {
protected:
    void SetUp() override { Make(320, 150, B_ASYNCHRONOUS_CONTROLS); }

    BTextControl* Put(float top, const char* label = "Name", const char* text = "")
    {
        auto* control = new BTextControl(BRect(10, top, 309, top + 5), "control", label, text,
                                         new BMessage(kGo));
        control->SetModificationMessage(new BMessage(kModified));
        window->AddChild(control);
        return control;
    }
    void Focus(BView* view)
    {
        Locked([=] {
            view->MakeFocus(true);
            return 0;
        });
    }
    std::string TextOf(BTextControl* control)
    {
        Settle();
        return Locked([=] { return std::string(control->Text()); });
    }
    std::string SelectionOf(BTextControl* control)
    {
        Settle();
        return Locked([=] {
            int32 start, end;
            control->TextView()->GetSelection(&start, &end);
            return std::to_string(start) + "-" + std::to_string(end);
        });
    }
    bool HasFocus(BView* view)
    {
        Settle();
        return Locked([=] { return view->IsFocus(); });
    }
    int Sent(uint32 what)
    {
        Settle();
        return log.Count("message " + code_text(what));
    }
};

}  // namespace

TEST_F(TextControlTest, ItsHeightIsTheFontsAndItsDividerInTheMiddle)
{
    BTextControl* named = Put(10);
    BTextControl* empty = Put(50, "");
    BTextControl* without = Put(90, nullptr);
    EXPECT_EQ(named->Divider(), 149);
    EXPECT_EQ(empty->Divider(), 149) << "an empty label is one";
    EXPECT_EQ(without->Divider(), 0);
    float width, height;
    named->GetPreferredSize(&width, &height);
    EXPECT_EQ(named->Frame(), BRect(10, 10, 309, 10 + height));
    EXPECT_GT(height, 15);
    named->SetDivider(40.6f);
    EXPECT_EQ(named->Divider(), 41);
    EXPECT_EQ(named->TextView()->Frame(), BRect(43, 2, 297, height - 2));
    named->ResizeBy(100, 20);
    EXPECT_EQ(named->TextView()->Frame(), BRect(43, 2, 397, height + 18)) << "it follows";
    for (float place : {-1e30f, 1e30f, 0.0f})
        named->SetDivider(place);
    Start();
}

TEST_F(TextControlTest, EnterSendsTheMessageOnceForAChange)
{
    BTextControl* control = Put(10, "Name", "old");
    Start();
    Focus(control);
    EXPECT_EQ(SelectionOf(control), "0-3") << "all of it";
    Press(kKeyEnter);
    EXPECT_EQ(Sent(kGo), 0) << "nothing was changed";
    inject_text("new");
    Press(kKeyEnter);
    EXPECT_EQ(TextOf(control), "new");
    EXPECT_EQ(Sent(kGo), 1);
    EXPECT_EQ(SelectionOf(control), "0-3");
    Press(kKeyEnter);
    EXPECT_EQ(Sent(kGo), 1);
}

TEST_F(TextControlTest, LeavingAChangedTextSendsTheMessage)
{
    BTextControl* first = Put(10);
    BTextControl* second = Put(50);
    Start();
    Focus(first);
    Press(kKeyTab);
    EXPECT_TRUE(HasFocus(second->TextView()));
    EXPECT_EQ(Sent(kGo), 0);
    inject_text("abc");
    Press(kKeyTab, {kKeyShift});
    EXPECT_TRUE(HasFocus(first->TextView()));
    EXPECT_EQ(Sent(kGo), 1);
    EXPECT_EQ(SelectionOf(second), "3-3");
}

TEST_F(TextControlTest, EachChangeSendsTheModificationMessage)
{
    BTextControl* control = Put(10);
    Start();
    Focus(control);
    inject_text("ab");
    EXPECT_EQ(Sent(kModified), 2);
    Press(0x1e);  // backspace
    EXPECT_EQ(Sent(kModified), 3);
    EXPECT_EQ(Sent(kGo), 0);
    EXPECT_EQ(Locked([=] { return control->ModificationMessage()->what; }), kModified);
    Locked([=] {
        control->SetModificationMessage(nullptr);
        return 0;
    });
    inject_text("c");
    EXPECT_EQ(Sent(kModified), 3);
}

TEST_F(TextControlTest, LineBreaksBecomeBlanks)
{
    BTextControl* control = Put(10, nullptr, "a\nb\r\nc");
    EXPECT_STREQ(control->Text(), "a b  c");
    control->SetText("x\ny");
    EXPECT_STREQ(control->Text(), "x y");
    EXPECT_EQ(control->TextLength(), 3);
    control->SetText(nullptr);
    EXPECT_STREQ(control->Text(), "");
    Start();
}

TEST_F(TextControlTest, ADisabledOneTakesNoFocusAndNoText)
{
    BTextControl* first = Put(10);
    BTextControl* second = Put(50);
    BTextControl* third = Put(90);
    second->SetEnabled(false);
    Start();
    Focus(first);
    Press(kKeyTab);
    EXPECT_TRUE(HasFocus(third->TextView())) << "it is passed by";
    Click(110 + 200, 160);
    EXPECT_FALSE(HasFocus(second->TextView()));
    Locked([=] {
        second->SetEnabled(true);
        return 0;
    });
    Press(kKeyTab, {kKeyShift});
    EXPECT_TRUE(HasFocus(second->TextView()));
    inject_text("abc");
    EXPECT_EQ(TextOf(second), "abc");
    Locked([=] {
        second->TextView()->MakeEditable(false);
        second->SetEnabled(false);
        second->SetEnabled(true);
        return 0;
    });
    inject_text("d");
    EXPECT_EQ(TextOf(second), "abc") << "it was not editable before";
}

TEST_F(TextControlTest, WhatIsSaidOfEditingWhileItIsDisabledHoldsAfter)
{
    BTextControl* control = Put(10);
    Start();
    const auto editable = [&] { return Locked([=] { return control->TextView()->IsEditable(); }); };
    for (const bool wanted : {false, true}) {
        Locked([=] {
            control->SetEnabled(false);
            control->TextView()->MakeEditable(wanted);
            return 0;
        });
        EXPECT_FALSE(editable());
        Locked([=] {
            control->SetEnabled(true);
            return 0;
        });
        EXPECT_EQ(editable(), wanted);
    }
}

TEST_F(TextControlTest, TypingTakesThePlaceOfTheTextThatTabCameTo)
{
    BTextControl* first = Put(10, "Name", "one");
    BTextControl* second = Put(50, "Name", "two");
    Start();
    Focus(first);
    Press(kKeyTab);
    inject_text("2");
    EXPECT_EQ(TextOf(second), "2");
    Press(kKeyTab, {kKeyShift});
    inject_text("1");
    EXPECT_EQ(TextOf(first), "1");
}

TEST_F(TextControlTest, NavigationIsTheTextViews)
{
    BTextControl* control = Put(10);
    EXPECT_EQ(control->Flags() & B_NAVIGABLE, 0u);
    EXPECT_NE(control->TextView()->Flags() & B_NAVIGABLE, 0u);
    control->SetFlags(control->Flags());
    EXPECT_EQ(control->TextView()->Flags() & B_NAVIGABLE, 0u);
    control->SetFlags(control->Flags() | B_NAVIGABLE);
    EXPECT_EQ(control->Flags() & B_NAVIGABLE, 0u);
    EXPECT_NE(control->TextView()->Flags() & B_NAVIGABLE, 0u);
    Start();
}

TEST_F(TextControlTest, ComesBackFromItsArchive)
{
    BTextControl control(BRect(10, 10, 209, 30), "control", "Name", "some text", new BMessage(kGo));
    control.SetDivider(60);
    control.SetAlignment(B_ALIGN_RIGHT, B_ALIGN_CENTER);
    control.SetModificationMessage(new BMessage(kModified));
    control.SetEnabled(false);
    BMessage archive;
    ASSERT_EQ(control.Archive(&archive), B_OK);
    std::unique_ptr<BTextControl> copy(
        dynamic_cast<BTextControl*>(BTextControl::Instantiate(&archive)));
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->Text(), "some text");
    EXPECT_STREQ(copy->Label(), "Name");
    EXPECT_EQ(copy->Divider(), 60);
    EXPECT_EQ(copy->Frame(), control.Frame());
    EXPECT_EQ(copy->TextView()->Frame(), control.TextView()->Frame());
    EXPECT_EQ(copy->Message()->what, kGo);
    EXPECT_EQ(copy->ModificationMessage()->what, kModified);
    EXPECT_EQ(copy->CountChildren(), 1);
    alignment label, text;
    copy->GetAlignment(&label, &text);
    EXPECT_EQ(label, B_ALIGN_RIGHT);
    EXPECT_EQ(text, B_ALIGN_CENTER);
    EXPECT_FALSE(copy->IsEnabled());
    EXPECT_FALSE(copy->TextView()->IsEditable());
    copy->SetEnabled(true);
    EXPECT_TRUE(copy->TextView()->IsEditable());
    EXPECT_NE(copy->TextView()->Flags() & B_NAVIGABLE, 0u);
    BMessage nothing;
    EXPECT_EQ(BTextControl::Instantiate(&nothing), nullptr);
    EXPECT_EQ(BTextControl::Instantiate(nullptr), nullptr);
}

TEST_F(TextControlTest, ScriptsReadAndSetTheText)
{
    BTextControl* control = Put(10, "Name", "old");
    Start();
    for (const char* property : {"Value", "Text"}) {
        BMessage set(B_SET_PROPERTY), get(B_GET_PROPERTY), reply;
        set.AddSpecifier(property);
        set.AddString("data", property);
        ASSERT_EQ(BMessenger(control).SendMessage(&set, &reply), B_OK);
        get.AddSpecifier(property);
        ASSERT_EQ(BMessenger(control).SendMessage(&get, &reply), B_OK);
        const char* text = nullptr;
        EXPECT_EQ(reply.FindString("result", &text), B_OK);
        EXPECT_STREQ(text, property);
    }
    EXPECT_EQ(Sent(kGo), 0);
}
