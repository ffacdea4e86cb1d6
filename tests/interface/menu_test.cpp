// Menus: who owns an item, marks, layout, and a pop-up menu under a hand.

#include "window_harness.h"

#include <Bitmap.h>
#include <Menu.h>
#include <MenuItem.h>
#include <PopUpMenu.h>
#include <Screen.h>
#include <SeparatorItem.h>

#include <future>
#include <memory>

using namespace window_test;

namespace {

const uint32 kOpen = 'open', kSave = 'save', kNew = 'newf', kText = 'text';

BMenuItem* item(const char* label, uint32 code) { return new BMenuItem(label, new BMessage(code)); }

// Open, Save, a line, and New with a submenu of one item.
void fill(BMenu* menu)
{
    menu->AddItem(item("Open", kOpen));
    menu->AddItem(item("Save as", kSave));
    menu->AddSeparatorItem();
    auto* submenu = new BMenu("New");
    submenu->AddItem(item("Text file", kText));
    menu->AddItem(submenu);
}

class PopUps : public WindowTest {
protected:
    void SetUp() override
    {
        Make();
        Start();
        fill(&menu);
        menu.SetTargetForItems(BMessenger(window));
        menu.GetPreferredSize(&width, &height);
    }
    // The menu is laid out anew while it opens, so places are asked for before.
    void Open(bool invoke = false)
    {
        inject_pointer(300, 200);
        chosen = std::async(std::launch::async, [=, this] { return menu.Go(kPlace, invoke); });
        WaitUntilDrawn();
    }
    // True as soon as the menu's own grey stands where the desktop or the window was, or, for
    // `drawn` false, is gone again.
    static bool WaitUntilDrawn(BPoint place = kPlace + BPoint(3, 3), bool drawn = true)
    {
        const bigtime_t deadline = system_time() + 20'000'000;  // only a fault reaches it
        while ((PixelAt(place) == kMenuGrey) != drawn) {
            if (system_time() > deadline)
                return false;
            snooze(2000);
        }
        return true;
    }
    static uint32 PixelAt(BPoint place)
    {
        BBitmap* picture = nullptr;
        BRect frame(place, place);
        if (BScreen().GetBitmap(&picture, false, &frame) != B_OK)
            return 0;
        const uint32 pixel = *static_cast<uint32*>(picture->Bits()) & 0xFFFFFF;
        delete picture;
        return pixel;
    }
    BPoint MiddleOf(const BMenuItem* which, BPoint place = kPlace) const
    {
        const BRect frame = which->Frame();
        return place + BPoint((frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2);
    }
    static void Click()
    {
        inject_button(1, true);
        inject_button(1, false);
    }

    static constexpr uint32 kMenuGrey = 0xD8D8D8;
    static constexpr float kLeft = 400, kTop = 250;
    inline static const BPoint kPlace = BPoint(kLeft, kTop);
    BPopUpMenu menu{"pop-up", false, false};
    float width = 0, height = 0;
    std::future<BMenuItem*> chosen;
};

}  // namespace

TEST(Menus, AnItemBelongsToOneMenuUntilItIsTakenOut)
{
    BMenu first("first"), second("second");
    BMenuItem* open = item("Open", kOpen);
    EXPECT_TRUE(first.AddItem(open));
    EXPECT_FALSE(first.AddItem(open));
    EXPECT_FALSE(second.AddItem(open));
    EXPECT_FALSE(first.AddItem(static_cast<BMenuItem*>(nullptr)));
    auto lost = std::make_unique<BMenuItem>("x", nullptr);
    EXPECT_FALSE(first.AddItem(lost.get(), 2));
    EXPECT_FALSE(first.AddItem(lost.get(), -1));
    EXPECT_EQ(open->Menu(), &first);
    EXPECT_TRUE(first.RemoveItem(open));
    EXPECT_FALSE(first.RemoveItem(open));
    EXPECT_EQ(open->Menu(), nullptr);
    EXPECT_TRUE(second.AddItem(open, 0));
    delete open;  // takes itself out
    EXPECT_EQ(second.CountItems(), 0);
}

TEST(Menus, NoMenuIsItsOwnSubmenu)
{
    BMenu top("top");
    auto* below = new BMenu("below");
    auto* lowest = new BMenu("lowest");
    EXPECT_TRUE(top.AddItem(below));
    EXPECT_TRUE(below->AddItem(lowest));
    EXPECT_FALSE(top.AddItem(&top));
    EXPECT_FALSE(lowest->AddItem(&top));
    EXPECT_FALSE(lowest->AddItem(lowest, 0));
    EXPECT_EQ(top.FindItem("none"), nullptr);
    EXPECT_EQ(top.Superitem(), nullptr);
}

TEST(Menus, SearchesGoThroughSubmenus)
{
    BMenu menu("main");
    fill(&menu);
    EXPECT_EQ(menu.CountItems(), 4);
    EXPECT_EQ(menu.FindItem(kText), menu.SubmenuAt(3)->ItemAt(0));
    EXPECT_EQ(menu.FindItem("Save as"), menu.ItemAt(1));
    EXPECT_EQ(menu.FindItem("save as"), nullptr);
    EXPECT_EQ(menu.FindItem(kNew), nullptr);
    BMenu* submenu = menu.SubmenuAt(3);
    EXPECT_EQ(submenu->Supermenu(), &menu);
    EXPECT_EQ(submenu->Superitem(), menu.ItemAt(3));
    EXPECT_EQ(menu.IndexOf(submenu), 3);
    EXPECT_TRUE(menu.RemoveItem(submenu));
    EXPECT_EQ(submenu->Superitem(), nullptr);
    EXPECT_EQ(menu.CountItems(), 3);
    delete submenu;
}

TEST(Menus, RadioModeKeepsOneMarkAndMayNameTheSuperitem)
{
    BMenu super("super");
    auto* choice = new BMenu("choice");
    super.AddItem(choice);
    choice->SetLabelFromMarked(true);
    EXPECT_TRUE(choice->IsRadioMode());
    for (const char* label : {"one", "two", "three"})
        choice->AddItem(item(label, kOpen));
    choice->ItemAt(0)->SetMarked(true);
    choice->ItemAt(2)->SetMarked(true);
    EXPECT_FALSE(choice->ItemAt(0)->IsMarked());
    EXPECT_EQ(choice->FindMarkedIndex(), 2);
    EXPECT_STREQ(choice->Superitem()->Label(), "three");
    choice->SetEnabled(false);
    EXPECT_FALSE(choice->ItemAt(1)->IsEnabled());
    EXPECT_FALSE(choice->Superitem()->IsEnabled());
}

TEST(Menus, ColumnsStackTheirItemsWithoutOverlap)
{
    BMenu menu("main");
    fill(&menu);
    float width, height;
    menu.GetPreferredSize(&width, &height);
    for (int32 i = 0; i < menu.CountItems(); i++) {
        const BRect frame = menu.ItemAt(i)->Frame();
        EXPECT_TRUE(frame.IsValid());
        EXPECT_TRUE(BRect(0, 0, width, height).Contains(frame));
        EXPECT_EQ(frame.Width(), menu.ItemAt(0)->Frame().Width());
        if (i > 0) {
            EXPECT_GT(frame.top, menu.ItemAt(i - 1)->Frame().bottom);
        }
    }
    const float before = width;
    menu.ItemAt(0)->SetLabel("a label that is longer than all others");
    menu.GetPreferredSize(&width, &height);
    EXPECT_GT(width, before);
}

TEST(Menus, ArchivesKeepItemsMarksAndShortcuts)
{
    BMenu menu("main");
    fill(&menu);
    menu.ItemAt(1)->SetMarked(true);
    menu.ItemAt(0)->SetEnabled(false);
    menu.ItemAt(1)->SetShortcut('S', B_SHIFT_KEY);
    BMessage archive;
    ASSERT_EQ(menu.Archive(&archive), B_OK);
    std::unique_ptr<BMenu> copy(dynamic_cast<BMenu*>(BMenu::Instantiate(&archive)));
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->CountItems(), 4);
    EXPECT_FALSE(copy->ItemAt(0)->IsEnabled());
    uint32 modifiers = 0;
    EXPECT_EQ(copy->ItemAt(1)->Shortcut(&modifiers), 'S');
    EXPECT_EQ(modifiers, uint32(B_SHIFT_KEY | B_COMMAND_KEY));
    EXPECT_EQ(copy->FindMarkedIndex(), 1);
    EXPECT_NE(dynamic_cast<BSeparatorItem*>(copy->ItemAt(2)), nullptr);
    EXPECT_NE(copy->FindItem(kText), nullptr);
}

TEST_F(PopUps, AReleaseOnAnItemChoosesItAndSendsItsMessage)
{
    const BPoint where = MiddleOf(menu.ItemAt(1));
    Open(true);
    inject_pointer(where.x, where.y);
    Click();
    EXPECT_EQ(chosen.get(), menu.ItemAt(1));
    EXPECT_TRUE(log.Wait("message save")) << log.Lines();
}

TEST_F(PopUps, PressesElsewhereAndEscapeChooseNothing)
{
    Open();
    inject_pointer(150, 120);
    inject_button(1, true);
    EXPECT_EQ(chosen.get(), nullptr);
    inject_button(1, false);
    Open();
    inject_key(kKeyEscape, true);
    EXPECT_EQ(chosen.get(), nullptr);
    inject_key(kKeyEscape, false);
}

// As a touch pad makes one: nobody sees the button down.
TEST_F(PopUps, ATapChoosesAsAPressDoes)
{
    const BPoint where = MiddleOf(menu.ItemAt(1));
    Open();
    inject_pointer(where.x, where.y);
    Click();
    EXPECT_EQ(chosen.get(), menu.ItemAt(1));
    Open();
    inject_pointer(150, 120);
    Click();
    EXPECT_EQ(chosen.get(), nullptr);
}

TEST_F(PopUps, DisabledItemsAndLinesAreNoChoice)
{
    menu.ItemAt(0)->SetEnabled(false);
    for (int32 index : {0, 2}) {
        const BPoint where = MiddleOf(menu.ItemAt(index));
        Open();
        inject_pointer(where.x, where.y);
        Click();
        EXPECT_EQ(chosen.get(), nullptr);
    }
}

TEST_F(PopUps, SubmenusOpenBesideTheirItem)
{
    BMenu* submenu = menu.SubmenuAt(3);
    submenu->GetPreferredSize(&width, &height);
    const BRect frame = menu.ItemAt(3)->Frame();
    const BPoint where = MiddleOf(menu.ItemAt(3));
    const BPoint beside =
        MiddleOf(submenu->ItemAt(0), kPlace + BPoint(frame.right + 1, frame.top - 1));
    Open();
    inject_pointer(where.x, where.y);
    EXPECT_TRUE(WaitUntilDrawn(kPlace + BPoint(frame.right + 4, frame.top + 2)));
    inject_pointer(beside.x, beside.y);
    Click();
    EXPECT_EQ(chosen.get(), submenu->ItemAt(0));
}

TEST_F(PopUps, AsynchronousOnesSendTheirChoiceAndOpenOnce)
{
    const BPoint where = MiddleOf(menu.ItemAt(0));
    inject_pointer(300, 200);
    EXPECT_EQ(menu.Go(kPlace, true, false, true), nullptr);
    WaitUntilDrawn();
    EXPECT_EQ(menu.Go(kPlace), nullptr) << "it is open";
    inject_pointer(where.x, where.y);
    Click();
    ASSERT_TRUE(log.Wait("message open")) << log.Lines();
    const BMessage message = log.Message("message open");
    void* source = nullptr;
    EXPECT_EQ(message.FindPointer("source", &source), B_OK);
    EXPECT_EQ(source, menu.ItemAt(0));
    EXPECT_EQ(message.FindInt32("index"), 0);
}

TEST_F(PopUps, AMenuThatIsDeletedClosesFirst)
{
    auto* open = new BPopUpMenu("deleted", false, false);
    fill(open);
    inject_pointer(300, 200);
    open->Go(kPlace, true, true, true);
    WaitUntilDrawn();
    delete open;
    EXPECT_TRUE(WaitUntilDrawn(kPlace + BPoint(3, 3), false));
}

TEST_F(PopUps, AnAsynchronousOneMayDeleteItself)
{
    class Menu : public BPopUpMenu {
    public:
        explicit Menu(std::promise<void>& gone) : BPopUpMenu("own"), fGone(gone) {}
        ~Menu() override { fGone.set_value(); }

    private:
        std::promise<void>& fGone;
    };
    std::promise<void> gone;
    auto* open = new Menu(gone);
    fill(open);
    open->SetAsyncAutoDestruct(true);
    inject_pointer(300, 200);
    open->Go(kPlace, false, false, true);
    WaitUntilDrawn();
    inject_key(kKeyEscape, true);
    EXPECT_EQ(gone.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
    inject_key(kKeyEscape, false);
}

TEST_F(PopUps, AChoiceMarksItsItemInRadioMode)
{
    menu.SetRadioMode(true);
    menu.ItemAt(0)->SetMarked(true);
    const BPoint where = MiddleOf(menu.ItemAt(1));
    Open(true);
    inject_pointer(where.x, where.y);
    Click();
    EXPECT_EQ(chosen.get(), menu.ItemAt(1));
    EXPECT_EQ(menu.FindMarked(), menu.ItemAt(1));
    EXPECT_FALSE(menu.ItemAt(0)->IsMarked());
}

// Pressed on a button, drawn onto an item and released there, in one go.
TEST_F(PopUps, AHeldPressChoosesWhereItIsReleased)
{
    const BPoint where = MiddleOf(menu.ItemAt(1));
    inject_pointer(kPlace.x - 5, kPlace.y - 5);
    inject_button(1, true);
    chosen = std::async(std::launch::async, [=, this] { return menu.Go(kPlace); });
    WaitUntilDrawn();
    inject_pointer(where.x, where.y);
    inject_button(1, false);
    EXPECT_EQ(chosen.get(), menu.ItemAt(1));
    // A click alone leaves it open for another one.
    inject_pointer(kPlace.x - 5, kPlace.y - 5);
    inject_button(1, true);
    chosen = std::async(std::launch::async, [=, this] { return menu.Go(kPlace, false, true); });
    inject_button(1, false);
    WaitUntilDrawn();
    EXPECT_EQ(chosen.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    inject_pointer(where.x, where.y);
    Click();
    EXPECT_EQ(chosen.get(), menu.ItemAt(1));
}

TEST_F(PopUps, MenusStayOnTheScreen)
{
    inject_pointer(300, 200);
    const BRect screen = BScreen().Frame();
    const BPoint corner = screen.RightBottom();
    const BPoint place = corner - BPoint(width, height);
    chosen = std::async(std::launch::async, [=, this] { return menu.Go(corner); });
    EXPECT_TRUE(WaitUntilDrawn(place + BPoint(3, 3)));
    EXPECT_TRUE(WaitUntilDrawn(corner - BPoint(3, 3)));
    inject_key(kKeyEscape, true);
    EXPECT_EQ(chosen.get(), nullptr);
    inject_key(kKeyEscape, false);
}
