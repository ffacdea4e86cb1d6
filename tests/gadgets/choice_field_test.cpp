// Choice fields, and pop-up menus attached to gadgets: what is chosen, marked and told.

#include "gadget_window.h"

#include <Menu.h>
#include <MenuBar.h>
#include <MenuField.h>
#include <MenuItem.h>

#include <atomic>

namespace {

const char* const kThree[] = {"one", "two", "three", nullptr};
const char* const kNone[] = {nullptr};
const char* const kPopUp[] = {"i*00000001First", "i*00000002Second", "q", nullptr};
const int32_t kEnter = 0x47, kDown = 0x62, kLetterA = 0x3c;

std::atomic<int32_t> sKilled;

void on_menu(int32_t code) { gHandlers.Add("menu " + std::to_string(code)); }

// A field with its place among the window's views.
class ChoiceFieldTest : public GadgetTest {
protected:
    int32_t MakeField(const void* labels = kThree) { return Make(19, 10, 10, 200, 24, labels); }

    template <class Act>
    auto WithMenu(Act act)
    {
        return WithView(0,
                        [&](BView* view) { return act(*static_cast<BMenuField*>(view)->Menu()); });
    }
    std::string Title()
    {
        return WithView(0, [](BView* view) {
            return std::string(static_cast<BMenuField*>(view)->MenuItem()->Label());
        });
    }
    // The items' labels and the indexes that they tell.
    std::string Items()
    {
        return WithMenu([](BMenu& menu) {
            std::string items;
            for (int32 i = 0; i < menu.CountItems(); i++)
                items += menu.ItemAt(i)->Label() +
                         std::to_string(menu.ItemAt(i)->Command() - 75000) + " ";
            return items;
        });
    }
    // Opens the menu over the field, and clicks on an item of it.
    void Choose(int32 index)
    {
        BMenu* menu = WithMenu([](BMenu& each) { return &each; });
        ClickUntilOpen(20, 20, 1);
        BRect frame;
        ASSERT_TRUE(eventually([&] {
            BWindow* own = menu->Window();
            if (own == nullptr || !own->Lock())
                return false;
            frame = menu->ConvertToScreen(menu->ItemAt(index)->Frame());
            own->Unlock();
            return frame.IsValid();
        }));
        inject_pointer(frame.left + 8, frame.top + 5);
        inject_button(1, true);
        inject_button(1, false);
        EXPECT_TRUE(IsClosed());
    }
    void ClickUntilOpen(int32_t x, int32_t y, int32_t button)
    {
        Click(x, y, button);
        ASSERT_TRUE(IsOpen());
    }
    bool IsOpen() const
    {
        return eventually([this] { return be_app->CountWindows() > fWindows; });
    }
    // The program's window is the newest one again.
    bool IsClosed() const
    {
        return eventually([this] { return be_app->CountWindows() == fWindows; });
    }
    bool WaitFor(const std::string& call)
    {
        std::string calls;
        return eventually([&] {
            calls += gHandlers.Take();
            return calls == call;
        });
    }

    const int32 fWindows = be_app->CountWindows();  // while no menu is open
};

}  // namespace

TEST_F(ChoiceFieldTest, BeginsWithNothingMarked)
{
    const int32_t field = MakeField();
    ASSERT_GT(field, 0);
    EXPECT_EQ(GetValue(field), -1);
    EXPECT_EQ(Title(), "");
    EXPECT_EQ(Items(), "one0 two1 three2 ");
}

TEST_F(ChoiceFieldTest, LabelsEndAtNullOrEmpty)
{
    const char* const gap[] = {"one", "", "three", nullptr};
    MakeField(gap);
    EXPECT_EQ(Items(), "one0 ");
    for (const char* const* labels : {static_cast<const char* const*>(nullptr), kNone, gap + 1}) {
        const int32_t field = MakeField(labels);
        EXPECT_GT(field, 0) << "it may be empty";
        EXPECT_EQ(GetValue(field), -1);
        MxSelected(field, 0);
        EXPECT_EQ(GetValue(field), -1);
    }
}

TEST_F(ChoiceFieldTest, AChoiceCallsSlot3WithItsNumber)
{
    const int32_t field = MakeField();
    Choose(2);
    EXPECT_TRUE(WaitFor("value 2"));
    EXPECT_EQ(GetValue(field), 2);
    EXPECT_EQ(Title(), "three");
    Choose(0);
    EXPECT_TRUE(WaitFor("value 0"));
    EXPECT_EQ(GetValue(field), 0);
}

TEST_F(ChoiceFieldTest, KeysChooseAndReachNoHandlerKept)
{
    const int32_t field = MakeField();
    ActivateGadget(field);
    Key(kLetterA);
    EXPECT_EQ(Calls(), "");
    Key(kDown);
    ASSERT_TRUE(IsOpen());
    Key(kDown);
    Key(kEnter);
    EXPECT_TRUE(IsClosed());
    EXPECT_TRUE(eventually([&] { return GetValue(field) >= 0; }));
    EXPECT_TRUE(WaitFor("value " + std::to_string(GetValue(field))));
}

TEST_F(ChoiceFieldTest, MarksAreSetWithoutAHandler)
{
    const int32_t field = MakeField();
    MxSelected(field, 1);
    EXPECT_EQ(GetValue(field), 1);
    EXPECT_EQ(Title(), "two");
    SetValue(field, 2);
    EXPECT_EQ(GetValue(field), 2);
    for (int32_t index : {99, -1, INT32_MIN, INT32_MAX}) {
        MxSelected(field, 0);
        MxSelected(field, index);
        EXPECT_EQ(GetValue(field), -1);
        EXPECT_EQ(Title(), "one") << "it says what was chosen last";
    }
    EXPECT_EQ(Calls(), "");
}

TEST_F(ChoiceFieldTest, EmptyLabelsLeaveGapsInTheNumbersKept)
{
    const int32_t field = MakeField();
    MxSelected(field, 1);
    const char* const gap[] = {"x", "", "z", nullptr};
    ChangeMxData(field, gap);
    EXPECT_EQ(Items(), "x0 z2 ");
    EXPECT_EQ(GetValue(field), -1);
    EXPECT_EQ(Title(), "two") << "until the next choice";
    Choose(1);
    EXPECT_TRUE(WaitFor("value 2"));
    EXPECT_EQ(GetValue(field), 1) << "the item's place";
    EXPECT_EQ(Title(), "z");
    ChangeMxData(field, nullptr);
    EXPECT_EQ(Items(), "");
    ChangeMxData(field, kNone);
    EXPECT_EQ(GetValue(field), -1);
}

TEST_F(ChoiceFieldTest, ADisabledFieldDoesNotOpen)
{
    const int32_t field = MakeField();
    EXPECT_EQ(GetEnabled(field), 1);
    SetEnabled(field, 0);
    EXPECT_EQ(GetEnabled(field), 0);
    EXPECT_FALSE(WithView(0, [](BView* view) {
        auto* own = static_cast<BMenuField*>(view);
        return own->IsEnabled() || own->MenuBar()->IsEnabled();
    }));
    Click(20, 20);
    Click(130, 20);
    Settle();
    EXPECT_EQ(be_app->CountWindows(), fWindows);
    SetEnabled(field, 1);
    EXPECT_EQ(GetEnabled(field), 1);
    Choose(1);
    EXPECT_TRUE(WaitFor("value 1"));
}

TEST_F(ChoiceFieldTest, OtherGadgetsAndUnknownIdentsAreLeftAlone)
{
    const int32_t field = MakeField();
    const int32_t check = Make(2, 10, 60, 80, 24);
    for (int32_t ident : {check, window.Ident(), 0, -1, INT32_MAX}) {
        MxSelected(ident, 1);
        ChangeMxData(ident, kNone);
        AttachPopUpToGadget(ident, field);
    }
    EXPECT_EQ(GetValue(field), -1);
    EXPECT_EQ(Items(), "one0 two1 three2 ");
}

TEST_F(ChoiceFieldTest, WorksWithoutAWindow)
{
    const int32_t field = CreateGadget(19, -1, 0, 0, 100, 24, kThree, 0);
    MxSelected(field, 2);
    EXPECT_EQ(GetValue(field), 2);
    ChangeMxData(field, kThree);
    EXPECT_EQ(GetValue(field), -1);
    SetEnabled(field, 0);
    EXPECT_EQ(GetEnabled(field), 0);
    KillGadget(0, field);
    EXPECT_EQ(GetValue(field), 0);
}

TEST_F(ChoiceFieldTest, AFieldKillsItselfWhenChosenFrom)
{
    sKilled = MakeField();
    SetHandlerForGadget(sKilled, 3, reinterpret_cast<void*>(+[](int32_t choice) {
                            KillGadget(0, sKilled);
                            return on_value(choice);
                        }));
    Choose(1);
    EXPECT_TRUE(WaitFor("value 1"));
    EXPECT_FALSE(is_gadget_ident(sKilled));
    EXPECT_EQ(CountViews(), 0);
    Settle();
}

TEST_F(ChoiceFieldTest, AFieldIsKilledWhileItsMenuIsOpen)
{
    const int32_t field = MakeField();
    ClickUntilOpen(20, 20, 1);
    KillGadget(0, field);
    EXPECT_TRUE(IsClosed());
    EXPECT_EQ(Calls(), "");
}

// --- attached pop-up menus

TEST_F(ChoiceFieldTest, TheSecondaryButtonOpensAButtonsMenu)
{
    window.Handle(PLINTH_MENU_ITEM, on_menu);
    const int32_t button = Make(1, 10, 10, 80, 24);
    const int32_t menu = CreatePopUpMenu(kPopUp);
    AttachPopUpToGadget(button, menu);
    AttachPopUpToGadget(button, button);  // no menu
    ClickUntilOpen(20, 20, 2);
    Key(kDown);
    Key(kDown);
    Key(kEnter);
    EXPECT_TRUE(IsClosed());
    EXPECT_TRUE(WaitFor("menu 2"));
    Click(20, 20);
    EXPECT_EQ(Calls(), "action");
    AttachPopUpToGadget(button, 0);
    Click(20, 20, 2);
    Settle();
    EXPECT_EQ(be_app->CountWindows(), fWindows);
    KillMenu(menu);
}

TEST_F(ChoiceFieldTest, TheSecondaryButtonOpensAFlatListsMenuAndNoOutlines)
{
    window.Handle(PLINTH_MENU_ITEM, on_menu);
    const int32_t menu = CreatePopUpMenu(kPopUp);
    for (const int32_t kind : {8, 21}) {
        const int32_t list = Make(kind, 10, 10, 150, 100);
        AddLvEntry(list, "row");
        AttachPopUpToGadget(list, menu);
        if (kind == 8) {
            ClickUntilOpen(60, 20, 2);
            Key(kDown);
            Key(kEnter);
            EXPECT_TRUE(IsClosed());
            EXPECT_TRUE(WaitFor("menu 1")) << "and no row was selected";
        }
        Click(60, 20, kind == 8 ? 4 : 2);
        Settle();
        EXPECT_EQ(be_app->CountWindows(), fWindows);
        EXPECT_EQ(GetLvSelected(list), -1);
        KillGadget(0, list);
    }
    KillMenu(menu);
}

TEST_F(ChoiceFieldTest, AnAttachedMenuStaysTheProgramsOwn)
{
    window.Handle(PLINTH_MENU_ITEM, on_menu);
    const int32_t menu = CreatePopUpMenu(kPopUp);
    const int32_t first = Make(1, 10, 10, 80, 24), second = Make(1, 10, 40, 80, 24);
    AttachPopUpToGadget(first, menu);
    AttachPopUpToGadget(second, menu);
    KillGadget(0, first);
    ClickUntilOpen(20, 50, 2);
    KillMenu(menu);  // it is open
    Key(kDown);
    Key(kEnter);
    EXPECT_TRUE(IsClosed());
    EXPECT_TRUE(WaitFor("menu 1"));
    KillMenu(menu);
    Click(20, 50, 2);
    EXPECT_EQ(Calls(), "");
    EXPECT_EQ(be_app->CountWindows(), fWindows);
}

TEST_F(ChoiceFieldTest, AChoiceFieldKeepsItsItemsBesideAnAttachedMenu)
{
    const int32_t field = MakeField();
    const int32_t menu = CreatePopUpMenu(kPopUp);
    AttachPopUpToGadget(field, menu);
    MxSelected(field, 2);
    EXPECT_EQ(Title(), "three");
    KillGadget(0, field);
    EXPECT_EQ(AttachPopUpToWindow(window, menu), 1) << "it lives on";
    AttachPopUpToWindow(window, 0);
    KillMenu(menu);
}
