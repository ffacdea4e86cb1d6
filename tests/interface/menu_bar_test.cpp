// Menu bars under hand and keyboard: opening, walking, choosing, closing.

#include "menu_harness.h"

#include <MenuBar.h>

using namespace menu_test;

namespace {

// A bar with File (Open, Save, a line, More with Text and Image), Edit (Undo, Copy) and Empty, an
// item without a menu.
class Bars : public MenuTest {
protected:
    void SetUp() override
    {
        Make(300, 200);
        bar = new BMenuBar(BRect(0, 0, 32767, 32767), "bar");
        file = new BMenu("File");
        file->AddItem(item("Open", kOpen, 'O'));
        file->AddItem(item("Save", kSave, 'S', B_SHIFT_KEY));
        file->AddSeparatorItem();
        more = new BMenu("More");
        more->AddItem(item("Text", kText));
        more->AddItem(item("Image", kImage));
        file->AddItem(more);
        edit = new BMenu("Edit");
        edit->AddItem(item("Undo", kUndo));
        edit->AddItem(item("Copy", kCopy));
        bar->AddItem(file);
        bar->AddItem(edit);
        bar->AddItem(item("Help", kHelp));
        window->AddChild(bar);
        view = Add(BRect(0, 60, 300, 200), "view", B_WILL_DRAW);
        Start();
    }

    BPoint Title(int32 index) const
    {
        const BRect frame = bar->ItemAt(index)->Frame();
        return kContent + BPoint((frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2);
    }
    void PressTitle(int32 index)
    {
        inject_pointer(Title(index).x, Title(index).y);
        inject_button(1, true);
    }
    // Opens the menu of a title by a click, and waits until it can be seen.
    void ClickTitle(int32 index, const BMenu* menu)
    {
        PressTitle(index);
        ASSERT_TRUE(WaitOpen(menu));
        inject_button(1, false);
    }

    inline static const BPoint kContent = BPoint(100, 100);
    BMenuBar* bar = nullptr;
    BMenu* file = nullptr;
    BMenu* more = nullptr;
    BMenu* edit = nullptr;
    TestView* view = nullptr;
};

}  // namespace

TEST_F(Bars, ShrinkToTheirTitlesAndFollowTheWindow)
{
    WindowLock lock(window);
    font_height height;
    bar->GetFontHeight(&height);
    EXPECT_EQ(bar->Frame(), BRect(0, 0, 300, ceilf(height.ascent + height.descent + 2 + 2)));
    float right = -1;
    for (int32 i = 0; i < bar->CountItems(); i++) {
        EXPECT_EQ(bar->ItemAt(i)->Frame().left, right + 1);
        right = bar->ItemAt(i)->Frame().right;
    }
    EXPECT_EQ(bar->ItemAt(0)->Frame().Width() + 1, ceilf(bar->StringWidth("File")) + 8 + 8);
    window->ResizeTo(400, 200);
    EXPECT_EQ(bar->Frame().right, 400);
    EXPECT_EQ(window->KeyMenuBar(), bar);
}

TEST_F(Bars, APressDrawnToAnItemChoosesItOnRelease)
{
    PressTitle(0);
    ASSERT_TRUE(WaitOpen(file));
    MoveTo(file->ItemAt(1));
    inject_button(1, false);
    ASSERT_TRUE(log.Wait("message save")) << log.Lines();
    void* source = nullptr;
    EXPECT_EQ(log.Message("message save").FindPointer("source", &source), B_OK);
    EXPECT_EQ(source, file->ItemAt(1));
    EXPECT_EQ(log.Lines({"menus", "message save"}), "menus; menus ended; message save");
    EXPECT_TRUE(WaitClosed(file));
}

// What the user has done behind the press waits at the window then.
TEST_F(Bars, ABusyWindowsMenuGetsWhatWasDoneBehindThePress)
{
    ClickTitle(0, file);
    const BPoint save = MiddleOf(file->ItemAt(1));
    Press(kKeyEscape);
    ASSERT_TRUE(log.Wait("menus ended"));
    WhileBusy([&] {
        PressTitle(0);
        inject_pointer(save.x, save.y);
        inject_button(1, false);
    });
    EXPECT_TRUE(log.Wait("message save")) << "drawn: " << log.Lines();
    WhileBusy([&] {
        Click(Title(0).x, Title(0).y);
        Click(save.x, save.y);
        Click(250, 250);
    });
    EXPECT_TRUE(log.Wait("message save", 2)) << "clicked: " << log.Lines();
    EXPECT_TRUE(log.Wait("view up")) << log.Lines();
    EXPECT_EQ(log.Count("view down"), 1) << "behind the choice: " << log.Lines();
}

TEST_F(Bars, ABusyWindowsMenuGetsTheKeysUpToTheChoiceAndTheWindowTheOthers)
{
    WhileBusy([this] {
        view->MakeFocus();
        for (int32_t key : {kKeyF10, kKeyDown, kKeyEnter, kKeyG})
            Press(key);
    });
    EXPECT_TRUE(log.Wait("view key g")) << log.Lines();
    EXPECT_EQ(log.Lines({"message", "view key "}), "message save; view key g 1");
}

TEST_F(Bars, AClickLeavesTheMenuOpenForAnother)
{
    ClickTitle(0, file);
    ClickOn(file->ItemAt(0));
    EXPECT_TRUE(log.Wait("message open")) << log.Lines();
    EXPECT_EQ(log.Count("menus ended"), 1);
}

TEST_F(Bars, ThePointerWalksFromTitleToTitle)
{
    ClickTitle(0, file);
    inject_pointer(Title(1).x, Title(1).y);
    ASSERT_TRUE(WaitOpen(edit));
    EXPECT_TRUE(WaitClosed(file));
    ClickOn(edit->ItemAt(1));
    EXPECT_TRUE(log.Wait("message copy")) << log.Lines();
    EXPECT_EQ(log.Count("menus"), 2) << "one opening: " << log.Lines();
}

TEST_F(Bars, ATitleWithoutAMenuIsChosenByItsRelease)
{
    PressTitle(2);
    inject_button(1, false);
    EXPECT_TRUE(log.Wait("message help")) << log.Lines();
}

TEST_F(Bars, PressesOutsideOnTheTitleAndEscapeCloseWithoutAChoice)
{
    ClickTitle(0, file);
    Click(390, 290);
    EXPECT_TRUE(WaitClosed(file));
    EXPECT_TRUE(log.Wait("menus ended", 1));
    ClickTitle(0, file);
    Click(Title(0).x, Title(0).y);
    EXPECT_TRUE(WaitClosed(file));
    EXPECT_TRUE(log.Wait("menus ended", 2));
    ClickTitle(0, file);
    Press(kKeyEscape);
    EXPECT_TRUE(WaitClosed(file));
    EXPECT_TRUE(log.Wait("menus ended", 3));
    Settle();
    EXPECT_EQ(log.Lines({"message", "view down", "view up", "view key"}), "");
}

TEST_F(Bars, AnotherActiveWindowClosesTheMenu)
{
    ClickTitle(0, file);
    TestWindow* other = new TestWindow(log, BRect(500, 400, 600, 450), 0);
    other->Show();
    EXPECT_TRUE(WaitClosed(file));
    EXPECT_TRUE(log.Wait("menus ended"));
    Close(other);
}

TEST_F(Bars, SubmenusOpenAfterARestAndStayForAPointerThatHeadsThere)
{
    ClickTitle(0, file);
    MoveTo(file->ItemAt(3));
    ASSERT_TRUE(WaitOpen(more));
    // From the item's left end over the items below and above towards the submenu's last one.
    const BPoint goal = MiddleOf(more->ItemAt(1));
    BPoint where = MiddleOf(file->ItemAt(3));
    for (int step = 1; step <= 8; step++)
        inject_pointer(where.x + (goal.x - where.x) * step / 8,
                       where.y + (goal.y - where.y) * step / 8);
    EXPECT_TRUE(WaitOpen(more));
    inject_button(1, true);
    inject_button(1, false);
    EXPECT_TRUE(log.Wait("message imag")) << log.Lines();
}

TEST_F(Bars, LeavingForAnotherItemClosesTheSubmenu)
{
    ClickTitle(0, file);
    MoveTo(file->ItemAt(3));
    ASSERT_TRUE(WaitOpen(more));
    MoveTo(file->ItemAt(0));
    EXPECT_TRUE(WaitClosed(more));
    Press(kKeyEscape);
    EXPECT_TRUE(WaitClosed(file));
}

TEST_F(Bars, RightAndLeftWalkFromAMenuThatWasClickedOpen)
{
    ClickTitle(0, file);
    Press(kKeyRight);
    ASSERT_TRUE(WaitOpen(edit));
    EXPECT_TRUE(WaitClosed(file));
    EXPECT_TRUE(WaitSelected(edit->ItemAt(0)));
    Press(kKeyLeft);
    ASSERT_TRUE(WaitOpen(file));
    EXPECT_TRUE(WaitSelected(file->ItemAt(0)));
    Press(kKeyEscape);
    EXPECT_TRUE(WaitClosed(file));
}

TEST_F(Bars, KeysEnterWalkAndChoose)
{
    Press(kKeyF10);
    ASSERT_TRUE(WaitOpen(file));
    EXPECT_TRUE(WaitSelected(file->ItemAt(0)));
    Press(kKeyDown);
    EXPECT_TRUE(WaitSelected(file->ItemAt(1)));
    Press(kKeyDown);  // over the line
    EXPECT_TRUE(WaitSelected(file->ItemAt(3)));
    Press(kKeyDown);  // around the end
    EXPECT_TRUE(WaitSelected(file->ItemAt(0)));
    Press(kKeyEnd);
    EXPECT_TRUE(WaitSelected(file->ItemAt(3)));
    Press(kKeyRight);
    ASSERT_TRUE(WaitOpen(more));
    EXPECT_TRUE(WaitSelected(more->ItemAt(0)));
    Press(kKeyLeft);
    EXPECT_TRUE(WaitClosed(more));
    Press(kKeyHome);
    EXPECT_TRUE(WaitSelected(file->ItemAt(0)));
    Press(kKeyRight);
    ASSERT_TRUE(WaitOpen(edit));
    EXPECT_TRUE(WaitClosed(file));
    Press(kKeyLeft);
    ASSERT_TRUE(WaitOpen(file));
    Press(kKeyEnter);
    EXPECT_TRUE(log.Wait("message open")) << log.Lines();
    EXPECT_EQ(log.Count("view key"), 0) << log.Lines();
}

TEST_F(Bars, CommandWithEscapeEntersAndLeavesToo)
{
    Press(kKeyEscape, {kKeyCommand});
    ASSERT_TRUE(WaitOpen(file));
    Press(kKeyEscape);
    EXPECT_TRUE(WaitClosed(file));
    EXPECT_TRUE(log.Wait("menus ended"));
}

TEST_F(Bars, EscapeClosesOneSubmenuAtATime)
{
    Press(kKeyF10);
    ASSERT_TRUE(WaitOpen(file));
    Press(kKeyEnd);
    Press(kKeyRight);
    ASSERT_TRUE(WaitOpen(more));
    Press(kKeyEscape);
    EXPECT_TRUE(WaitClosed(more));
    EXPECT_TRUE(IsOpen(file));
    Press(kKeyEscape);
    EXPECT_TRUE(WaitClosed(file));
}

TEST_F(Bars, TriggersChooseOnceTheyAreShown)
{
    Press(kKeyF10);
    ASSERT_TRUE(WaitOpen(file));
    EXPECT_TRUE(WaitSelected(file->ItemAt(0)));
    inject_text("m");  // More
    ASSERT_TRUE(WaitOpen(more));
    inject_text("i");
    EXPECT_TRUE(log.Wait("message imag")) << log.Lines();
}

TEST_F(Bars, FirstLettersSelectInAMenuThatThePointerOpened)
{
    ClickTitle(1, edit);
    inject_text("c");
    EXPECT_TRUE(WaitSelected(edit->ItemAt(1)));
    EXPECT_TRUE(IsOpen(edit));
    Press(kKeySpace);
    EXPECT_TRUE(log.Wait("message copy")) << log.Lines();
}

TEST_F(Bars, ShortcutsWorkWithCommandAndControl)
{
    Press(kKeyO, {kKeyCommand});
    EXPECT_TRUE(log.Wait("message open", 1)) << log.Lines();
    Press(kKeyO, {kKeyControl});
    EXPECT_TRUE(log.Wait("message open", 2)) << log.Lines();
    Press(kKeyS, {kKeyControl, kKeyShift});
    EXPECT_TRUE(log.Wait("message save", 1)) << log.Lines();
    EXPECT_EQ(log.Count("menus ended"), 3);
    WhileBusy([&] { view->MakeFocus(true); });
    Settle();
    log.Clear();
    Press(kKeyS, {kKeyControl});  // not without Shift: it stays a control character
    ASSERT_TRUE(log.Wait("view key \x13")) << log.Lines();
    EXPECT_EQ(log.Count("menus"), 0);
    WhileBusy([&] { file->ItemAt(0)->SetEnabled(false); });
    Press(kKeyO, {kKeyControl});
    Settle();
    EXPECT_EQ(log.Count("message open"), 0);
    EXPECT_EQ(log.Count("view key \x0f"), 0) << "what is disabled is nobody's: " << log.Lines();
}

TEST_F(Bars, TheWindowsOwnShortcutsCountWithControlToo)
{
    WhileBusy([&] { view->MakeFocus(true); });
    Press(kKeyC, {kKeyControl});
    EXPECT_TRUE(log.Wait("view message COPY")) << log.Lines();
    Press(kKeyZ, {kKeyControl});
    EXPECT_TRUE(log.Wait("view message UNDO")) << log.Lines();
    Press(kKeyG, {kKeyControl});
    EXPECT_TRUE(log.Wait("view key \x07")) << log.Lines();
}

TEST_F(Bars, WindowsMayCloseWhileTheirMenuIsOpen)
{
    ClickTitle(0, file);
    MoveTo(file->ItemAt(3));
    ASSERT_TRUE(WaitOpen(more));
    const BPoint ground = GroundOf(more);
    ASSERT_TRUE(WaitDrawn(ground));
    Close(window);
    EXPECT_TRUE(WaitGone(ground));
}

TEST_F(Bars, BarsMayBeTakenOutAndDeletedWhileOpen)
{
    ClickTitle(0, file);
    const BPoint ground = GroundOf(file);
    ASSERT_TRUE(WaitDrawn(ground));
    WhileBusy([&] {
        window->RemoveChild(bar);
        delete bar;
    });
    EXPECT_TRUE(WaitGone(ground));
    EXPECT_TRUE(log.Wait("menus ended"));
    EXPECT_EQ(window->KeyMenuBar(), nullptr);
}

TEST_F(Bars, AMenuMayBeDeletedByWhatItSent)
{
    window->onMessage = [&](BMessage* message) {
        if (message->what == kSave) {
            window->RemoveChild(bar);
            delete bar;
        }
    };
    ClickTitle(0, file);
    const BPoint ground = GroundOf(file);
    ClickOn(file->ItemAt(1));
    ASSERT_TRUE(log.Wait("message save"));
    Settle();
    EXPECT_TRUE(WaitGone(ground));
}

TEST_F(Bars, TheBarMayGoAsItsMenusBegin)
{
    window->onMenus = [&] {
        window->onMenus = nullptr;
        window->RemoveChild(bar);
        delete bar;
    };
    PressTitle(0);
    inject_button(1, false);
    EXPECT_TRUE(log.Wait("menus ended")) << log.Lines();
}

TEST_F(Bars, ItemsChangeWhileTheirMenuIsOpen)
{
    ClickTitle(0, file);
    const float before = OpenFrame(file).Width();
    WhileBusy([&] {
        file->ItemAt(0)->SetLabel("Open a document of any kind at all");
        file->AddItem(item("Last", kHelp));
        delete file->RemoveItem(int32(1));
    });
    EXPECT_TRUE(WaitUntil([&] { return OpenFrame(file).Width() > before; }));
    ClickOn(file->ItemAt(3));
    EXPECT_TRUE(log.Wait("message help")) << log.Lines();
}

TEST_F(Bars, ASubmenuTakenOutWhileOpenCloses)
{
    ClickTitle(0, file);
    MoveTo(file->ItemAt(3));
    ASSERT_TRUE(WaitOpen(more));
    const BPoint ground = GroundOf(more);
    ASSERT_TRUE(WaitDrawn(ground));
    WhileBusy([&] {
        file->RemoveItem(more);
        delete more;
    });
    EXPECT_TRUE(WaitGone(ground));
    EXPECT_TRUE(log.Wait("menus ended"));
}

TEST_F(Bars, TwoBarsOfTwoWindowsTakeTurns)
{
    TestWindow* other = new TestWindow(log, BRect(500, 100, 700, 250), 0);
    auto* second = new BMenuBar(BRect(0, 0, 10, 10), "second");
    auto* menu = new BMenu("Other");
    menu->AddItem(item("Image", kImage));
    second->AddItem(menu);
    other->AddChild(second);
    other->Show();
    Settle(other);
    inject_pointer(510, 110);
    inject_button(1, true);
    ASSERT_TRUE(WaitOpen(menu));
    inject_button(1, false);
    PressTitle(0);  // closes the other's menu
    inject_button(1, false);
    EXPECT_TRUE(WaitClosed(menu));
    EXPECT_TRUE(log.Wait("menus ended")) << log.Lines();  // a press would still close it
    ClickTitle(0, file);
    ClickOn(file->ItemAt(0));
    EXPECT_TRUE(log.Wait("message open")) << log.Lines();
    Close(other);
}

TEST_F(Bars, DynamicItemsComeAsTheMenuOpens)
{
    class Growing : public BMenu {
    public:
        Growing() : BMenu("Growing") {}
        bool AddDynamicItem(add_state state) override
        {
            states += std::to_string(state);
            if (state == B_INITIAL_ADD)
                return CountItems() == 0;
            if (state == B_PROCESSING)
                AddItem(item("One", kNew));
            return state == B_PROCESSING && CountItems() < 3;
        }
        std::string states;
    };
    auto* growing = new Growing();
    WhileBusy([&] { bar->AddItem(growing); });
    ClickTitle(3, growing);
    EXPECT_EQ(growing->states, "0111");
    ClickOn(growing->ItemAt(2));
    ASSERT_TRUE(log.Wait("message newf")) << log.Lines();
    EXPECT_EQ(log.Message("message newf").FindInt32("index"), 2);
}

TEST_F(Bars, ATrackingHookMayCloseTheMenus)
{
    static std::atomic<bool> sEnough;
    sEnough = false;
    WhileBusy([&] {
        file->SetTrackingHook(
            [](BMenu*, void* state) { return static_cast<std::atomic<bool>*>(state)->load(); },
            &sEnough);
    });
    ClickTitle(0, file);
    EXPECT_TRUE(IsOpen(file));
    sEnough = true;
    EXPECT_TRUE(WaitClosed(file));
}
