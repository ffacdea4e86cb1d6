// What a menu's own class may call: opening, closing and following the user; and what a program
// sets for whole menus and bars.

#include "menu_harness.h"

#include <MenuBar.h>
#include <MenuField.h>

#include <future>

using namespace menu_test;

namespace {

// Opens at a place of its own, by its own calls.
class OwnMenu : public BMenu {
public:
    OwnMenu() : BMenu("own")
    {
        AddItem(item("First", kOpen));
        AddItem(item("Second", kSave));
        AddItem(item("Third", kNew));
    }
    using BMenu::Hide;
    using BMenu::SetItemMargins;
    using BMenu::Show;
    using BMenu::Track;
    BPoint ScreenLocation() override { return kPlace; }

    inline static const BPoint kPlace = BPoint(420, 150);
};

class MenuCalls : public MenuTest {
protected:
    void SetUp() override
    {
        Make(300, 200);
        Start();
    }
    void TearDown() override
    {
        if (chosen.valid()) {
            Press(kKeyEscape);
            chosen.wait();
        }
        WindowTest::TearDown();
    }
    void Track(bool startOpened = true)
    {
        chosen = std::async(std::launch::async, [=, this] { return menu.Track(startOpened); });
        ASSERT_TRUE(WaitOpen(&menu));
    }

    OwnMenu menu;
    std::future<BMenuItem*> chosen;
};

}  // namespace

TEST_F(MenuCalls, ShowOpensWhereTheMenuSaysAndHideCloses)
{
    menu.Show();
    ASSERT_TRUE(IsOpen(&menu));
    EXPECT_EQ(OpenFrame(&menu).LeftTop(), OwnMenu::kPlace);
    const BPoint ground = GroundOf(&menu);
    EXPECT_TRUE(WaitDrawn(ground));
    menu.Hide();
    EXPECT_EQ(menu.Window(), nullptr);
    EXPECT_TRUE(WaitGone(ground));
    menu.Hide();
    menu.Show(true);
    EXPECT_TRUE(WaitSelected(menu.ItemAt(0)));
    menu.Hide();
    EXPECT_EQ(menu.Window(), nullptr);
}

TEST_F(MenuCalls, TrackReturnsWhatIsChosenAndSendsNothing)
{
    menu.SetTargetForItems(window);
    Track();
    ClickOn(menu.ItemAt(1));
    EXPECT_EQ(chosen.get(), menu.ItemAt(1));
    EXPECT_TRUE(WaitClosed(&menu));
    Track();
    Click(5, 5);
    EXPECT_EQ(chosen.get(), nullptr);
    Settle();
    EXPECT_EQ(log.Count("message"), 0);
}

TEST_F(MenuCalls, TrackFollowsThroughAMenuThatIsOpenAlready)
{
    menu.Show();
    chosen = std::async(std::launch::async, [this] { return menu.Track(true); });
    EXPECT_TRUE(WaitUntil([&] {
        Press(kKeyEnd);  // goes elsewhere until somebody follows
        WindowLock lock(menu.Window());
        return (menu.ItemAt(2)->*(&SeenItem::IsSelected))();
    }));
    inject_key(0x47, true);
    inject_key(0x47, false);
    EXPECT_EQ(chosen.get(), menu.ItemAt(2));
    EXPECT_TRUE(WaitClosed(&menu));
}

TEST_F(MenuCalls, HideEndsTheTracking)
{
    Track();
    menu.Hide();
    EXPECT_EQ(chosen.get(), nullptr);
    EXPECT_TRUE(WaitClosed(&menu));
}

TEST_F(MenuCalls, LabelsAreCutToTheLargestWidthAndMarginsCount)
{
    float wide, high, width, height;
    menu.AddItem(item("A label that is longer than anybody wants to read in a menu", kText));
    menu.GetPreferredSize(&wide, &high);
    menu.SetMaxContentWidth(60);
    EXPECT_EQ(menu.MaxContentWidth(), 60);
    menu.GetPreferredSize(&width, &height);
    EXPECT_LT(width, wide / 2);
    EXPECT_GT(width, 60);
    menu.SetItemMargins(50, 20, 50, 20);
    menu.GetPreferredSize(&width, &height);
    EXPECT_NEAR(width, 160, 2);
    EXPECT_GT(height, high + 100);
    menu.SetMaxContentWidth(0);
    menu.GetPreferredSize(&width, &height);
    EXPECT_GT(width, wide);
}

TEST_F(MenuCalls, WithoutTriggersALetterOnlySelects)
{
    menu.SetTriggersEnabled(false);
    EXPECT_FALSE(menu.AreTriggersEnabled());
    Track();
    Press(kKeyDown);  // triggers would be shown by now
    inject_text("t");
    EXPECT_TRUE(WaitSelected(menu.ItemAt(2)));
    EXPECT_TRUE(IsOpen(&menu));
    Press(kKeyEscape);
    EXPECT_EQ(chosen.get(), nullptr);
    menu.SetTriggersEnabled(true);
    Track();
    Press(kKeyDown);
    inject_text("t");
    EXPECT_EQ(chosen.get(), menu.ItemAt(2));
}

TEST_F(MenuCalls, TheKeyMenuBarIsTheOneThatF10Enters)
{
    BMenu* menus[2];
    BMenuBar* bars[2];
    for (int i = 0; i < 2; i++) {
        bars[i] = new BMenuBar(BRect(0, 40 * i, 300, 40 * i + 20), "bar");
        menus[i] = new BMenu("Menu");
        menus[i]->AddItem(item("Item", kOpen));
        bars[i]->AddItem(menus[i]);
        WhileBusy([&] { window->AddChild(bars[i]); });
    }
    const auto enters = [&](int which) {
        Press(kKeyF10);
        const bool opened = WaitOpen(menus[which]);
        log.Clear();
        Press(kKeyEscape);
        EXPECT_TRUE(log.Wait("menus ended"));
        return opened;
    };
    for (int which : {1, 0, 1}) {
        window->SetKeyMenuBar(bars[which]);
        EXPECT_EQ(window->KeyMenuBar(), bars[which]);
        EXPECT_TRUE(enters(which)) << which;
    }
    auto* field = new BMenuField(BRect(10, 100, 200, 130), "field", "Field", new BMenu("Choice"));
    WhileBusy([&] {
        window->AddChild(field);
        window->RemoveChild(bars[1]);
        delete bars[1];
    });
    EXPECT_TRUE(enters(0)) << "the other one is gone";
    WhileBusy([&] {
        window->RemoveChild(bars[0]);
        delete bars[0];
    });
    EXPECT_EQ(window->KeyMenuBar(), nullptr) << "a field has none";
    log.Clear();
    Press(kKeyF10);
    Settle();
    EXPECT_EQ(log.Count("menus"), 0);
}
