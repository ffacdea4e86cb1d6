// Gadgets as the user works them: clicks, keys, and which handler hears of it.

#include "gadget_window.h"

static const char* const kThree[] = {"a", "b", "c", nullptr};
static const int32_t kEnter = 0x47, kSpace = 0x5e, kLetterA = 0x3c, kTab = 0x26, kShift = 0x4b;
static const int32_t kUp = 0x57, kDown = 0x62;

TEST_F(GadgetTest, ClickCallsSlot1OnceWhenReleasedInside)
{
    Make(1, 10, 10, 80, 24);
    Press(20, 20);
    EXPECT_EQ(Calls(), "");
    Release();
    EXPECT_EQ(Calls(), "action");
    Press(20, 20);
    window.Point(200, 200);
    Release();
    EXPECT_EQ(Calls(), "");
    Press(200, 200);
    window.Point(20, 20);
    Release();
    EXPECT_EQ(Calls(), "");
}

TEST_F(GadgetTest, OnlyThePrimaryButtonClicks)
{
    Make(1, 10, 10, 80, 24);
    Make(2, 10, 40, 80, 24);
    for (int32_t button : {2, 4}) {
        Click(20, 20, button);
        Click(20, 50, button);
    }
    EXPECT_EQ(Calls(), "");
}

TEST_F(GadgetTest, EnterPressesTheButtonAndOtherKeysGoToSlot2)
{
    const int32_t button = Make(1, 10, 10, 80, 24);
    ActivateGadget(button);
    Key(kEnter);
    EXPECT_EQ(Calls(), "action");
    Key(kSpace);
    Key(kLetterA);
    EXPECT_EQ(Calls(), "key 32, key 97");
    SetEnabled(button, 0);
    Key(kEnter);
    Key(kLetterA);
    EXPECT_EQ(Calls(), "key 97");
    Click(20, 20);
    EXPECT_EQ(Calls(), "");
}

TEST_F(GadgetTest, CheckBoxTellsThePressAndTheNewValue)
{
    const int32_t check = Make(2, 10, 10, 80, 24);
    Press(20, 20);
    EXPECT_EQ(Calls(), "action");
    Release();
    EXPECT_EQ(Calls(), "value 1");
    SetEnabled(check, 0);
    Click(20, 20);
    EXPECT_EQ(Calls(), "");
    EXPECT_TRUE(GetChecked(check));
}

TEST_F(GadgetTest, FocusIsTakenOnClickIfWanted)
{
    const int32_t check = Make(2, 10, 10, 80, 24);
    const auto has_focus = [&] {
        Settle();
        return WithView(0, [](BView* view) { return view->IsFocus(); });
    };
    Click(20, 20);
    EXPECT_FALSE(has_focus());
    FocusOnClick(check, 1);
    Click(20, 20);
    EXPECT_TRUE(has_focus());
    const int32_t button = Make(1, 10, 40, 80, 24);
    ActivateGadget(button);
    EXPECT_FALSE(has_focus());
    FocusOnClick(check, 0);
    Click(20, 20);
    EXPECT_FALSE(has_focus());
}

TEST_F(GadgetTest, ArrowsGoRoundARadioGroup)
{
    const int32_t group = Make(18, 10, 10, 80, 24, kThree);
    Click(15, 20);
    EXPECT_EQ(Calls(), "action, value 0");
    BWindow* object = Object();
    object->Lock();
    object->ChildAt(0)->ChildAt(0)->ChildAt(0)->MakeFocus(true);
    object->Unlock();
    Key(kDown);
    Key(kDown);
    EXPECT_EQ(Calls(), "value 1, value 2");
    Key(kDown);
    EXPECT_EQ(Calls(), "value 0");
    Key(kUp);
    EXPECT_EQ(Calls(), "value 2");
    EXPECT_EQ(GetValue(group), 2);
    Key(kLetterA);
    EXPECT_EQ(Calls(), "key 97");
}

TEST_F(GadgetTest, TabLeavesARadioGroup)
{
    Make(1, 100, 10, 80, 24);
    Make(18, 10, 10, 80, 24, kThree);
    Make(11, 100, 40, 80, 24);
    const auto focus_first = [&] {
        BWindow* object = Object();
        object->Lock();
        object->ChildAt(0)->ChildAt(1)->ChildAt(0)->MakeFocus(true);
        object->Unlock();
    };
    const auto has_focus = [&](int32 index) {
        Settle();
        return WithView(index, [](BView* view) { return view->IsFocus(); });
    };
    focus_first();
    Key(kTab);
    EXPECT_TRUE(has_focus(2));
    focus_first();
    inject_key(kShift, true);
    Key(kTab);
    inject_key(kShift, false);
    EXPECT_TRUE(has_focus(0));
}

TEST_F(GadgetTest, SliderTellsEachValueThatItIsDraggedTo)
{
    Make(15, 10, 10, 216, 24, nullptr, 100);
    Press(10 + 8 + 100, 19);
    EXPECT_EQ(Calls(), "value 50");
    window.Point(10 + 8 + 120, 100);
    EXPECT_EQ(Calls(), "value 60");
    Release();
    EXPECT_EQ(Calls(), "");
}

TEST_F(GadgetTest, HandlersOfGadgetsThatAreGoneAreNotCalled)
{
    const int32_t button = Make(1, 10, 10, 80, 24);
    BWindow* object = Object();
    object->Lock();
    Click(20, 20);
    KillGadget(0, button);
    object->Unlock();
    EXPECT_EQ(Calls(), "");
}
