// Gadgets as the user works them: clicks, keys, and which handler hears of it.

#include "gadget_window.h"

#include <Control.h>
#include <ScrollView.h>

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

TEST_F(GadgetTest, ButtonTellsModifiersAndTheFirstByteWithItsSign)
{
    const int32_t button = Make(1, 10, 10, 80, 24);
    SetHandlerForGadget(button, 2, reinterpret_cast<void*>(+[](int32_t key, int32_t held) {
                            gHandlers.Add(std::to_string(key) + " " + std::to_string(held & 7));
                            return 0;
                        }));
    ActivateGadget(button);
    inject_key(kShift, true);
    Key(kLetterA);
    inject_key(kShift, false);
    inject_text("\xc3\xa9");
    EXPECT_EQ(Calls(), "65 1, -61 0");
}

// In a modal window any button of the mouse works as the platform has it, and none opens a menu.
TEST_F(GadgetTest, ButtonOfAModalWindowOpensNoMenu)
{
    static const char* const kMenu[] = {"i*00000001First", "q", nullptr};
    const int32_t button = Make(1, 10, 10, 80, 24);
    const int32_t menu = CreatePopUpMenu(kMenu);
    AttachPopUpToGadget(button, menu);
    Object()->SetFeel(B_MODAL_APP_WINDOW_FEEL);
    const int32 windows = be_app->CountWindows();
    Press(20, 20, 2);
    Settle();
    EXPECT_EQ(be_app->CountWindows(), windows);
    EXPECT_EQ(WithView(0, [](BView* view) { return static_cast<BControl*>(view)->Value(); }), 1)
        << "it is down";
    Release(2);
    EXPECT_EQ(Calls(), "") << "which is no click of the primary button";
    Click(20, 20);
    EXPECT_EQ(Calls(), "action");
    KillMenu(menu);
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

TEST_F(GadgetTest, ColourControlsAndRadiosTakeTheFocusOnClickIfWanted)
{
    for (const int32_t kind : {18, 30}) {
        const void* text = kind == 18 ? static_cast<const void*>(kThree) : nullptr;
        const int32_t ident = Make(kind, 10, 10, 80, 24, text);
        SetHandlerForGadget(ident, 3, nullptr);
        const auto has_focus = [&] {
            Settle();
            return WithView(
                0, [=](BView* view) { return (kind == 18 ? view->ChildAt(0) : view)->IsFocus(); });
        };
        Click(20, 20);
        EXPECT_FALSE(has_focus()) << kind;
        FocusOnClick(ident, 1);
        Click(20, 20);
        EXPECT_TRUE(has_focus()) << kind;
        SetEnabled(ident, 0);
        gHandlers.Take();
        Click(20, 20);
        EXPECT_EQ(Calls(), "") << kind;
        KillGadget(0, ident);
    }
}

TEST_F(GadgetTest, FocusFollowsTheSelectionInsideARadioGroup)
{
    const int32_t group = Make(18, 10, 10, 80, 24, kThree);
    const int32_t button = Make(1, 100, 10, 80, 24);
    const auto focused = [&] {
        Settle();
        return WithView(0, [](BView* view) {
            for (int32_t i = 0; i < 3; i++) {
                if (view->ChildAt(i)->IsFocus())
                    return i;
            }
            return -1;
        });
    };
    ActivateGadget(button);
    RadSelected(group, 1);
    EXPECT_EQ(focused(), -1) << "it was outside";
    BWindow* object = Object();
    object->Lock();
    object->ChildAt(0)->ChildAt(0)->ChildAt(0)->MakeFocus(true);
    object->Unlock();
    RadSelected(group, 2);
    EXPECT_EQ(focused(), 2);
    RadSelected(group, 77);
    EXPECT_EQ(focused(), 2);
    ActivateGadget(button);
    FocusOnClick(group, 1);
    RadSelected(group, 0);
    EXPECT_EQ(focused(), 0) << "wherever it was";
}

TEST_F(GadgetTest, FocusGoesToTheListInItsScrollBarsAndComesBackWithTheWindow)
{
    const int32_t list = Make(10, 10, 10, 150, 100);
    const auto list_has_it = [&] {
        return WithView(
            0, [](BView* view) { return dynamic_cast<BScrollView*>(view)->ChildAt(0)->IsFocus(); });
    };
    ActivateGadget(list);
    EXPECT_TRUE(list_has_it());
    const int32_t button = Make(1, 10, 150, 80, 24);
    ActivateGadget(button);
    EXPECT_FALSE(list_has_it());
    // What is activated in a window that is not active has the focus when it becomes so.
    BWindow* object = Object();
    const int32_t other = OpenWindow(500, 100, 50, 50);
    ASSERT_TRUE(eventually([&] { return !object->IsActive(); }));
    ActivateGadget(list);
    object->Lock();
    object->ChildAt(0)->MakeFocus(true);
    object->Activate(true);
    object->Unlock();
    EXPECT_TRUE(eventually([&] { return object->IsActive(); }));
    CloseWindow(other);
    EXPECT_TRUE(eventually([&] { return Object() == object; }));
    EXPECT_TRUE(eventually(list_has_it));
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
    const auto shift_tab = [&] {
        focus_first();
        inject_key(kShift, true);
        Key(kTab);
        inject_key(kShift, false);
    };
    shift_tab();
    EXPECT_TRUE(has_focus(0)) << "a label is no control";
    Make(2, 100, 70, 80, 24);
    SetEnabled(Make(2, 100, 100, 80, 24), 0);
    shift_tab();
    EXPECT_TRUE(has_focus(3)) << "the last that is enabled";
}

TEST_F(GadgetTest, RadiosChooseNothingBySpaceAndHearNoLongKeys)
{
    const int32_t group = Make(18, 10, 10, 80, 24, kThree);
    RadSelected(group, 0);
    EXPECT_EQ(Calls(), "value 0");
    BWindow* object = Object();
    object->Lock();
    object->ChildAt(0)->ChildAt(0)->ChildAt(1)->MakeFocus(true);
    object->Unlock();
    Key(kSpace);
    Key(kEnter);
    inject_text("\xc3\xa9");
    EXPECT_EQ(Calls(), "key 32, key 10");
    EXPECT_EQ(GetValue(group), 0);
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
