// Where menus open, how they scroll, and how their items lie in them; and menu fields.

#include "menu_harness.h"

#include <MenuBar.h>
#include <MenuField.h>
#include <PopUpMenu.h>
#include <SeparatorItem.h>

#include <future>

using namespace menu_test;

namespace {

class MenuPlaces : public MenuTest {
protected:
    void SetUp() override
    {
        Make(300, 200);
        Start();
    }
    // Opens the menu and returns its frame on the screen.
    BRect OpenAt(BPopUpMenu& menu, BPoint place)
    {
        inject_pointer(1, 760);
        chosen = std::async(std::launch::async, [&menu, place] { return menu.Go(place); });
        EXPECT_TRUE(WaitOpen(&menu));
        BRect frame;
        EXPECT_TRUE(WaitUntil([&] {
            BWindow* of = menu.Window();
            WindowLock lock(of);
            if (!lock.Held())
                return false;
            frame = of->Frame();
            return true;
        }));
        return frame;
    }
    void TearDown() override
    {
        if (chosen.valid()) {
            Press(kKeyEscape);
            Press(kKeyEscape);
            chosen.wait();
        }
        WindowTest::TearDown();
    }
    static void Fill(BMenu& menu, int count)
    {
        for (int i = 0; i < count; i++)
            menu.AddItem(item(("Item " + std::to_string(i)).c_str(), kNew));
    }

    std::future<BMenuItem*> chosen;
};

const BRect kScreen(0, 0, 1023, 767);

}  // namespace

TEST_F(MenuPlaces, PopUpsOpenToTheOtherSideWhereThereIsNoRoom)
{
    BPopUpMenu menu("edge", false, false);
    Fill(menu, 5);
    const BRect usual = OpenAt(menu, BPoint(300, 200));
    EXPECT_EQ(usual.LeftTop(), BPoint(300, 200));
    Press(kKeyEscape);
    chosen.wait();
    const BRect low = OpenAt(menu, BPoint(1010, 760));
    EXPECT_EQ(low.RightBottom(), BPoint(1010, 760));
}

TEST_F(MenuPlaces, SubmenusOpenToTheLeftAtTheRightEdge)
{
    BPopUpMenu menu("edge", false, false);
    auto* below = new BMenu("Below");
    Fill(*below, 3);
    menu.AddItem(below);
    const BRect frame = OpenAt(menu, BPoint(1015, 300));
    Press(kKeyDown);
    Press(kKeyRight);
    ASSERT_TRUE(WaitOpen(below));
    EXPECT_LT(OpenFrame(below).right, frame.right);
    EXPECT_GE(OpenFrame(below).left, 0);
}

TEST_F(MenuPlaces, MenusTallerThanTheScreenScroll)
{
    BPopUpMenu menu("tall", false, false);
    Fill(menu, 100);
    const BRect frame = OpenAt(menu, BPoint(200, 100));
    EXPECT_EQ(frame.top, kScreen.top);
    EXPECT_EQ(frame.bottom, kScreen.bottom);
    // By the keyboard,
    Press(kKeyEnd);
    EXPECT_TRUE(WaitSelected(menu.ItemAt(99)));
    EXPECT_TRUE(WaitUntil([&] { return kScreen.Contains(MiddleOf(menu.ItemAt(99))); }));
    Press(kKeyPageUp);
    Press(kKeyHome);
    EXPECT_TRUE(WaitSelected(menu.ItemAt(0)));
    // by the wheel,
    inject_pointer(230, 400);
    inject_wheel(0, 3);
    EXPECT_TRUE(WaitUntil([&] { return MiddleOf(menu.ItemAt(0)).y < 0; }));
    // and by a pointer that rests at the end.
    inject_pointer(230, 764);
    EXPECT_TRUE(WaitUntil([&] { return MiddleOf(menu.ItemAt(99)).y < 767; }));
    const BPoint where = MiddleOf(menu.ItemAt(98));
    Click(where.x, where.y);
    EXPECT_EQ(chosen.get(), menu.ItemAt(98));
}

TEST_F(MenuPlaces, PagesKeepWithinTheEnds)
{
    BPopUpMenu menu("short", false, false);
    Fill(menu, 6);
    OpenAt(menu, BPoint(200, 100));
    Press(kKeyPageDown);
    EXPECT_TRUE(WaitSelected(menu.ItemAt(5)));
    Press(kKeyPageDown);
    EXPECT_TRUE(WaitSelected(menu.ItemAt(5)));
    Press(kKeyPageUp);
    EXPECT_TRUE(WaitSelected(menu.ItemAt(0)));
}

TEST_F(MenuPlaces, SizesFollowTheFont)
{
    menu_info before;
    ASSERT_EQ(get_menu_info(&before), B_OK);
    float last = 0;
    for (float size : {12.0f, 24.0f, 36.0f}) {
        menu_info info = before;
        info.font_size = size;
        set_menu_info(&info);
        BMenu menu("sized");
        menu.AddItem(item("Open", kOpen, 'O'));
        BFont font;
        menu.GetFont(&font);
        EXPECT_EQ(font.Size(), size);
        font_height height;
        font.GetHeight(&height);
        float width, tall;
        menu.GetPreferredSize(&width, &tall);
        EXPECT_GT(tall, last);
        EXPECT_GE(menu.ItemAt(0)->Frame().Height(), ceilf(height.ascent + height.descent));
        EXPECT_GT(menu.ItemAt(0)->Frame().Width(),
                  font.StringWidth("Open") + font.StringWidth("Ctrl+O"));
        last = tall;
    }
    set_menu_info(&before);
}

TEST_F(MenuPlaces, RowsAndMatricesLieAsTheirNamesSay)
{
    class Row : public BMenu {
    public:
        Row() : BMenu("row", B_ITEMS_IN_ROW) {}
    } row;
    Fill(row, 3);
    row.AddItem(new BSeparatorItem());
    for (int32 i = 1; i < row.CountItems(); i++) {
        EXPECT_GT(row.ItemAt(i)->Frame().left, row.ItemAt(i - 1)->Frame().right);
        EXPECT_EQ(row.ItemAt(i)->Frame().top, row.ItemAt(0)->Frame().top);
        EXPECT_EQ(row.ItemAt(i)->Frame().bottom, row.ItemAt(0)->Frame().bottom);
    }
    BMenu matrix("matrix", 60, 40);
    EXPECT_TRUE(matrix.AddItem(item("a", kNew), BRect(0, 0, 29, 39)));
    EXPECT_TRUE(matrix.AddItem(item("b", kNew), BRect(30, 0, 59, 39)));
    BMenuItem refused("c", nullptr);
    EXPECT_FALSE(row.AddItem(&refused, BRect(0, 0, 9, 9)));
    float width, height;
    matrix.GetPreferredSize(&width, &height);
    EXPECT_EQ(BPoint(width, height), BPoint(60, 40));
    EXPECT_EQ(matrix.ItemAt(1)->Frame(), BRect(30, 0, 59, 39));
}

TEST_F(MenuPlaces, ItemsTakeTheColoursOfTheSettings)
{
    menu_info before;
    get_menu_info(&before);
    menu_info info = before;
    info.background_color = make_color(10, 200, 30);
    set_menu_info(&info);
    BPopUpMenu menu("green", false, false);
    Fill(menu, 3);
    const BRect frame = OpenAt(menu, BPoint(300, 200));
    const BPoint inside(frame.right - 4, frame.top + 8);  // right of the labels, in an item
    EXPECT_TRUE(WaitUntil([&] { return PixelAt(inside) == 0x0AC81E; }));
    set_menu_info(&before);
}

TEST_F(MenuPlaces, ItemsDrawThemselves)
{
    class Swatch : public BMenuItem {
    public:
        Swatch() : BMenuItem("", new BMessage(kNew)) {}
        void GetContentSize(float* width, float* height) override
        {
            *width = 40;
            *height = 30;
        }
        void DrawContent() override
        {
            Menu()->SetHighColor(255, 0, 0);
            const BPoint where = ContentLocation();
            Menu()->FillRect(BRect(where, where + BPoint(39, 29)));
        }
    };
    BPopUpMenu menu("own", false, false);
    menu.AddItem(new Swatch);
    const BRect frame = OpenAt(menu, BPoint(300, 200));
    const BRect own = menu.ItemAt(0)->Frame();
    EXPECT_GE(own.Height(), 29);
    EXPECT_TRUE(WaitUntil([&] {
        return PixelAt(frame.LeftTop() + BPoint(own.left + 30, own.top + 15)) == 0xFF0000;
    }));
}

TEST_F(MenuPlaces, FieldsShowAndChangeWhatIsMarked)
{
    auto* menu = new BPopUpMenu("pick");
    for (const char* label : {"Red", "Green", "Blue"})
        menu->AddItem(item(label, kNew));
    menu->ItemAt(0)->SetMarked(true);
    auto* field = new BMenuField(BRect(20, 20, 219, 50), "field", "Colour:", menu);
    WhileBusy([&] { window->AddChild(field); });
    {
        WindowLock lock(window);
        EXPECT_EQ(field->Divider(), 99);
        EXPECT_EQ(field->MenuBar()->Frame().LeftTop(), BPoint(99 + 2, 2));
        EXPECT_STREQ(field->MenuBar()->Name(), "_mc_mb_");
        EXPECT_EQ(field->Frame().Height(), field->MenuBar()->Frame().Height() + 4);
        EXPECT_STREQ(field->MenuItem()->Label(), "Red");
        EXPECT_EQ(field->Menu(), menu);
        EXPECT_EQ(window->KeyMenuBar(), nullptr);
    }
    const BPoint title = MiddleOf(field->MenuItem());
    inject_pointer(title.x, title.y);
    inject_button(1, true);
    ASSERT_TRUE(WaitOpen(menu));
    inject_button(1, false);
    // What is marked lies over the title.
    EXPECT_NEAR(MiddleOf(menu->ItemAt(0)).y, title.y, 3);
    ClickOn(menu->ItemAt(2));
    ASSERT_TRUE(log.Wait("message newf")) << log.Lines();
    WindowLock lock(window);
    EXPECT_STREQ(field->MenuItem()->Label(), "Blue");
    EXPECT_EQ(menu->FindMarkedIndex(), 2);
}

TEST_F(MenuPlaces, FieldsOpenByTheKeyboardUnlessTheyAreDisabled)
{
    auto* menu = new BPopUpMenu("pick");
    for (const char* label : {"Red", "Green", "Blue"})
        menu->AddItem(item(label, kNew));
    auto* field = new BMenuField(BRect(20, 20, 219, 50), "field", "Colour:", menu);
    WhileBusy([&] {
        window->AddChild(field);
        field->MakeFocus(true);
    });
    Press(kKeySpace);
    ASSERT_TRUE(WaitOpen(menu));
    Press(kKeyDown);
    Press(kKeyEnter);
    EXPECT_TRUE(log.Wait("message newf")) << log.Lines();
    EXPECT_TRUE(WaitClosed(menu));
    WhileBusy([&] { field->SetEnabled(false); });
    Press(kKeySpace);
    Settle();
    EXPECT_FALSE(IsOpen(menu));
    EXPECT_EQ(log.Count("menus ended"), 1);
}

TEST_F(MenuPlaces, FieldsAreArchivedWithTheirMenus)
{
    auto* menu = new BPopUpMenu("pick");
    menu->AddItem(item("Red", kNew));
    BMenuField field(BRect(0, 0, 99, 20), "field", "Label", menu);
    field.SetDivider(30);
    field.SetEnabled(false);
    BMessage archive;
    ASSERT_EQ(field.Archive(&archive), B_OK);
    std::unique_ptr<BMenuField> copy(dynamic_cast<BMenuField*>(BMenuField::Instantiate(&archive)));
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->Label(), "Label");
    EXPECT_EQ(copy->Divider(), 30);
    EXPECT_FALSE(copy->IsEnabled());
    ASSERT_NE(copy->Menu(), nullptr);
    EXPECT_STREQ(copy->Menu()->ItemAt(0)->Label(), "Red");
}
