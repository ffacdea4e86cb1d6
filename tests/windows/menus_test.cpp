// Menus as a program describes them and its user chooses from them.

#include "support/program.h"

#include <gtest/gtest.h>

#include <Application.h>
#include <InterfaceDefs.h>
#include <Menu.h>
#include <MenuBar.h>
#include <MenuItem.h>
#include <Window.h>

#include <atomic>
#include <climits>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "windows/menus.h"

namespace {

const int32_t kKeyEscape = 0x01, kKeyF10 = 0x0b, kKeyEnter = 0x47, kKeyDown = 0x62;
const int32_t kKeyRight = 0x63, kKeyControl = 0x5c, kKeyO = 0x2f;

// What the handler of slot 17 was called with, as text.
class Choices {
public:
    void Add(int32_t code)
    {
        std::lock_guard<std::mutex> lock(fMutex);
        fText += (fText.empty() ? "" : " ") + std::to_string(code);
    }
    bool Wait(const std::string& text)
    {
        return eventually([&] { return All() == text; });
    }
    std::string All()
    {
        std::lock_guard<std::mutex> lock(fMutex);
        return fText;
    }
    void Clear()
    {
        std::lock_guard<std::mutex> lock(fMutex);
        fText.clear();
    }

private:
    std::mutex fMutex;
    std::string fText;
};

Choices sChoices;
std::atomic<int32_t> sBeginnings;

void on_choice(int32_t code) { sChoices.Add(code); }
void on_menus() { sBeginnings++; }

std::atomic<bool> sKeyHeard;
void on_key(int32_t, int32_t) { sKeyHeard = true; }

void press(int32_t key)
{
    inject_key(key, true);
    inject_key(key, false);
}

const char* const kFile[] = {"t*00000000File",
                             "iO00000101Open",
                             "i*10000102Save",
                             "i*01100103Auto save",
                             "-",
                             "x*00000000Recent",
                             "e*00000104xxx",
                             "s*00000105yyy",
                             "i*00000106Info",
                             "i*00000107Quit",
                             "t*00000000Edit",
                             "i*00000201Undo",
                             "i*00000202Redo",
                             "q",
                             nullptr};

// A window with a menu bar. The bar is found by the platform's own means.
class MenuWindow : public TestWindow {
public:
    explicit MenuWindow(int32_t left = 100, int32_t top = 100) : TestWindow(left, top)
    {
        Handle(PLINTH_MENU_ITEM, on_choice);
        Handle(PLINTH_MENUS_BEGINNING, on_menus);
        Click(50, 100);
        // Tests count windows; those of the test before go when they can.
        sOpen++;
        EXPECT_TRUE(eventually([] { return be_app->CountWindows() == sOpen; }));
    }
    ~MenuWindow() { sOpen--; }

    BWindow* Platform() const { return reinterpret_cast<BWindow*>(GetAdress(*this)); }
    // What `ask` says of the bar, with the window locked; null is the bar if there is none.
    template <class Ask>
    auto WithBar(Ask ask) const
    {
        BWindow* window = Platform();
        window->Lock();
        BMenuBar* bar = nullptr;
        for (int32 i = 0; i < window->CountChildren(); i++) {
            if (auto* found = dynamic_cast<BMenuBar*>(window->ChildAt(i)))
                bar = found;
        }
        auto answer = ask(bar);
        window->Unlock();
        return answer;
    }
    bool HasBar() const
    {
        return WithBar([](BMenuBar* bar) { return bar != nullptr; });
    }
    // An item by the way to it: the title's place, the item's place, ...
    template <class Ask>
    auto WithItem(std::vector<int32> way, Ask ask) const
    {
        return WithBar([&](BMenuBar* bar) {
            BMenu* menu = bar;
            for (size_t i = 0; i + 1 < way.size(); i++)
                menu = menu->SubmenuAt(way[i]);
            return ask(menu->ItemAt(way.back()));
        });
    }
    bool IsMarked(std::vector<int32> way) const
    {
        return WithItem(way, [](BMenuItem* item) { return item->IsMarked(); });
    }
    bool IsEnabled(std::vector<int32> way) const
    {
        return WithItem(way, [](BMenuItem* item) { return item->IsEnabled(); });
    }
    std::string Label(std::vector<int32> way) const
    {
        return WithItem(way, [](BMenuItem* item) { return std::string(item->Label()); });
    }
    uint32 Code(std::vector<int32> way) const
    {
        return WithItem(way, [](BMenuItem* item) { return item->Command(); });
    }

    // The menu of an item, once it is open: its frame on the screen.
    BRect OpenMenu(std::vector<int32> way) const
    {
        BRect frame;
        const bool open = eventually([&] {
            BMenu* menu = WithItem(way, [](BMenuItem* item) { return item->Submenu(); });
            BWindow* window = menu->Window();
            if (window == nullptr || !window->Lock())
                return false;
            frame = menu->ConvertToScreen(menu->Bounds());
            window->Unlock();
            return frame.IsValid();
        });
        EXPECT_TRUE(open);
        return frame;
    }
    void ClickAt(BPoint where) const
    {
        inject_pointer(where.x, where.y);
        inject_button(1, true);
        inject_button(1, false);
    }
    void OpenPopUp()
    {
        const int32 before = be_app->CountWindows();
        Click(60, 60, 2);
        EXPECT_TRUE(eventually([=] { return be_app->CountWindows() > before; }));
    }
    void OpenTitle(int32 index) const
    {
        // Another window may just be giving the menu back.
        EXPECT_TRUE(eventually([&] {
            const BMenu* menu = WithItem({index}, [](BMenuItem* item) { return item->Submenu(); });
            return menu == nullptr || menu->Window() == nullptr;
        }));
        const BRect frame = WithItem({index}, [](BMenuItem* item) { return item->Frame(); });
        inject_pointer(X(0) + frame.left + 5, Y(0) + frame.top + 5);
        inject_button(1, true);
        OpenMenu({index});
        inject_button(1, false);
    }
    // Opens the title's menu and clicks on the item in it.
    void Choose(int32 title, int32 index) const
    {
        OpenTitle(title);
        const BRect menu = OpenMenu({title});
        const BRect frame = WithItem({title, index}, [](BMenuItem* item) { return item->Frame(); });
        ClickAt(menu.LeftTop() + BPoint(frame.left + 8, frame.top + 5));
    }
    BRect TopView() const
    {
        BWindow* window = Platform();
        window->Lock();
        const BRect frame = window->FindView("DeskbarView")->Frame();
        window->Unlock();
        return frame;
    }

private:
    static inline int32 sOpen;
};

class ProgramMenus : public testing::Test {
protected:
    void SetUp() override
    {
        sChoices.Clear();
        sBeginnings = 0;
    }
};

int32_t menu_of(std::vector<const char*> lines)
{
    lines.push_back(nullptr);
    return CreateMenu(lines.data());
}

}  // namespace

TEST_F(ProgramMenus, ChosenItemsCallSlot17WithTheirCode)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    ASSERT_GT(menu, 0);
    ASSERT_EQ(AttachMenuToWin(window, menu), 1);
    window.Choose(0, 0);
    EXPECT_TRUE(sChoices.Wait("101")) << sChoices.All();
    EXPECT_EQ(sBeginnings, 1);
    RemoveMenu(window);
    EXPECT_FALSE(window.HasBar());
    KillMenu(menu);
}

TEST_F(ProgramMenus, ColumnsSayWhatTheItemsAre)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    ASSERT_EQ(AttachMenuToWin(window, menu), 1);
    EXPECT_EQ(window.Label({0}), "File");
    EXPECT_EQ(window.Label({0, 0}), "Open");
    EXPECT_EQ(window.Code({0, 0}), 101u);
    EXPECT_EQ(window.WithItem({0, 0}, [](BMenuItem* item) { return item->Shortcut(); }), 'O');
    EXPECT_EQ(window.WithItem({0, 1}, [](BMenuItem* item) { return item->Shortcut(); }), '\0');
    EXPECT_FALSE(window.IsEnabled({0, 1}));
    EXPECT_TRUE(window.IsEnabled({0, 0}));
    EXPECT_TRUE(window.IsMarked({0, 2}));
    EXPECT_FALSE(window.IsEnabled({0, 3})) << "the line";
    EXPECT_EQ(window.Label({0, 4}), "Recent");
    EXPECT_EQ(window.Label({0, 6}), "Quit");
    EXPECT_EQ(window.Label({1, 1}), "Redo");
    KillMenu(menu);
    EXPECT_TRUE(window.HasBar()) << "it is attached";
    RemoveMenu(window);
    KillMenu(menu);
    EXPECT_EQ(AttachMenuToWin(window, menu), 0) << "it is gone";
}

// The label begins within the four digits.
TEST_F(ProgramMenus, ItemsOfOpenSubmenusHaveLabelsFromColumn7Kept)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    AttachMenuToWin(window, menu);
    EXPECT_EQ(window.Code({0, 4, 0}), 104u);
    EXPECT_EQ(window.Label({0, 4, 0}), "104xxx");
    EXPECT_EQ(window.Code({0, 4, 1}), 105u);
    EXPECT_EQ(window.Label({0, 5}), "Info") << "back in the menu above";
    EXPECT_EQ(window.Code({0, 4}), 105u) << "the submenu's own item takes on the last code";
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, DescriptionsThatAreNone)
{
    EXPECT_EQ(CreateMenu(nullptr), 0);
    EXPECT_EQ(CreatePopUpMenu(nullptr), 0);
    EXPECT_EQ(menu_of({}), 0);
    EXPECT_EQ(menu_of({"q", "q"}), 0);
    EXPECT_EQ(menu_of({"t*00000000M", "z"}), 0);
    EXPECT_EQ(menu_of({"t*00000000M", ""}), 0);
    EXPECT_EQ(menu_of({"i*00000001lost", "-", "x", "e", "s", "q"}), 0);
    const int32_t later = menu_of({"q", "i*00000001lost", "t*00000000M", "i*00000002a"});
    EXPECT_GT(later, 0) << "the first end is skipped, and the array's own end counts";
    MenuWindow window;
    EXPECT_EQ(AttachMenuToWin(window, later), 1);
    EXPECT_EQ(window.Code({0, 0}), 2u);
    RemoveMenu(window);
    KillMenu(later);
}

TEST_F(ProgramMenus, ShortLinesGoOnWithBlanks)
{
    MenuWindow window;
    const int32_t menu = menu_of({"t", "i*", "i*00007", "x", "s*1", "q"});
    ASSERT_GT(menu, 0);
    AttachMenuToWin(window, menu);
    EXPECT_EQ(window.Label({0}), "");
    EXPECT_EQ(window.Code({0, 0}), 0u);
    EXPECT_EQ(window.Code({0, 1}), 7u);
    EXPECT_FALSE(window.IsEnabled({0, 2, 0}));
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, ChoicesMoveMarksAsTheItemsSay)
{
    MenuWindow window;
    const int32_t menu = menu_of({"t*00000000View", "i*00100011Grid", "i*00000012Plain",
                                  "t*00010000Size", "i*01100021Small", "i*00100022Large", "q"});
    AttachMenuToWin(window, menu);
    window.Choose(0, 0);
    ASSERT_TRUE(sChoices.Wait("11"));
    EXPECT_TRUE(window.IsMarked({0, 0}));
    window.Choose(0, 0);
    ASSERT_TRUE(sChoices.Wait("11 11"));
    EXPECT_FALSE(window.IsMarked({0, 0}));
    window.Choose(1, 1);
    ASSERT_TRUE(sChoices.Wait("11 11 22"));
    EXPECT_TRUE(window.IsMarked({1, 1}));
    EXPECT_FALSE(window.IsMarked({1, 0}));
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, APlainItemLosesItsMarkWhenItIsDrawnKept)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    AttachMenuToWin(window, menu);
    window.Choose(1, 0);
    ASSERT_TRUE(sChoices.Wait("201"));
    EXPECT_TRUE(eventually([&] { return window.IsMarked({1, 0}); }));
    window.OpenTitle(1);
    EXPECT_TRUE(eventually([&] { return !window.IsMarked({1, 0}); }));
    press(kKeyEscape);
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, SettersFindItemsByCode)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    AttachMenuToWin(window, menu);
    SetCheckedLabel(window, 101, 1);
    EXPECT_TRUE(window.IsMarked({0, 0}));
    SetCheckedLabel(window, 101, 0);
    EXPECT_FALSE(window.IsMarked({0, 0}));
    SetNameLabel(window, 104, "deep");
    EXPECT_EQ(window.Label({0, 4, 0}), "deep");
    SetNameLabel(window, 104, nullptr);
    EXPECT_EQ(window.Label({0, 4, 0}), "deep");
    SetNameLabel(window, 999, "nobody");
    SetNameLabel(window + 1000, 104, "nobody");
    SetCheckedLabel(0, 101, 1);
    EXPECT_FALSE(window.IsMarked({0, 0}));
    RemoveMenu(window);
    SetNameLabel(window, 104, "no bar");
    KillMenu(menu);
}

TEST_F(ProgramMenus, EnablingIsUpsideDownKept)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    AttachMenuToWin(window, menu);
    SetEnableLabel(window, 101, 1);
    EXPECT_FALSE(window.IsEnabled({0, 0}));
    SetEnableLabel(window, 102, 0);
    EXPECT_TRUE(window.IsEnabled({0, 1}));
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, AnyOtherFlagEnablesKept)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    AttachMenuToWin(window, menu);
    for (int32_t flag : {2, -1, INT32_MIN, INT32_MAX}) {
        SetEnableLabel(window, 101, 1);
        SetEnableLabel(window, 101, flag);
        EXPECT_TRUE(window.IsEnabled({0, 0})) << flag;
    }
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, SettersChangeTheFirstMatchUnderEachTitle)
{
    MenuWindow window;
    const int32_t menu =
        menu_of({"t*00000000A", "i*00000007one", "i*00000007two", "i*00000008end", "t*00000000B",
                 "x*00000000C", "i*00000007three", "i*00000009end", "q"});
    ASSERT_EQ(AttachMenuToWin(window, menu), 1);
    SetNameLabel(window, 7, "found");
    SetEnableLabel(window, 7, 1);
    EXPECT_EQ(window.Label({0, 0}), "found");
    EXPECT_EQ(window.Label({0, 1}), "two");
    EXPECT_EQ(window.Label({1, 0, 0}), "found");
    EXPECT_FALSE(window.IsEnabled({0, 0}) || window.IsEnabled({1, 0, 0}));
    EXPECT_TRUE(window.IsEnabled({0, 1}) && window.IsEnabled({0}));
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, DisabledMenusDoNotOpen)
{
    MenuWindow window;
    const int32_t menu = menu_of({"t*10000000Off", "i*00000001a", "t*00000000On", "x*10000000Below",
                                  "s*00000002bbb", "i*00000003c", "q"});
    ASSERT_EQ(AttachMenuToWin(window, menu), 1);
    EXPECT_FALSE(window.IsEnabled({0}));
    EXPECT_TRUE(window.IsEnabled({1}));
    EXPECT_FALSE(window.IsEnabled({1, 0}));
    press(kKeyF10);
    EXPECT_TRUE(window.OpenMenu({1}).IsValid()) << "the first that can";
    press(kKeyEnter);
    EXPECT_TRUE(sChoices.Wait("3")) << sChoices.All();
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, ItemsOfAPopUpMenuKeepTheirOwnMarks)
{
    MenuWindow window;
    const char* lines[] = {"i*00100001First", "i*01100002Second", "q", nullptr};
    const int32_t menu = CreatePopUpMenu(lines);
    ASSERT_EQ(AttachPopUpToWindow(window, menu), 1);
    const BList* menus = reinterpret_cast<BList**>(gRegistry)[kMenus];
    const BMenu* shown =
        static_cast<const MenuRecord*>(menus->ItemAt(menus->CountItems() - 1))->menu;
    const auto marked = [=](int32 index) { return shown->ItemAt(index)->IsMarked(); };
    EXPECT_FALSE(marked(0));
    window.OpenPopUp();
    press(kKeyDown);
    press(kKeyEnter);
    ASSERT_TRUE(sChoices.Wait("1")) << sChoices.All();
    EXPECT_TRUE(eventually([&] { return marked(0) && marked(1); })) << "no radio mode";
    AttachPopUpToWindow(window, 0);
    KillMenu(menu);
}

TEST_F(ProgramMenus, TheLastCodeOfAMenuMeansItsTitleKept)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    AttachMenuToWin(window, menu);
    SetNameLabel(window, 202, "Change");
    EXPECT_EQ(window.Label({1}), "Change");
    EXPECT_EQ(window.Label({1, 1}), "Redo");
    RemoveMenu(window);
    KillMenu(menu);
}

TEST_F(ProgramMenus, TheDrawingViewMakesRoomForTheBar)
{
    MenuWindow window;
    const BRect before = window.TopView();
    const int32_t first = CreateMenu(kFile), second = CreateMenu(kFile);
    AttachMenuToWin(window, first);
    const BRect bar = window.WithBar([](BMenuBar* each) { return each->Frame(); });
    EXPECT_EQ(bar.LeftTop(), BPoint(0, 0));
    EXPECT_EQ(bar.Width(), before.Width());
    EXPECT_EQ(window.TopView(), BRect(0, bar.bottom + 1, before.right, before.bottom));
    EXPECT_EQ(AttachMenuToWin(window, second), 1);
    EXPECT_EQ(window.TopView(), BRect(0, bar.bottom + 1, before.right, before.bottom));
    KillMenu(first);  // it came off
    EXPECT_EQ(AttachMenuToWin(window, first), 0);
    RemoveMenu(window);
    EXPECT_EQ(window.TopView(), before);
    RemoveMenu(window);
    KillMenu(second);
}

TEST_F(ProgramMenus, AMenuIsShownByOneWindowAtATime)
{
    MenuWindow first, second(400, 100);
    const int32_t menu = CreateMenu(kFile);
    EXPECT_EQ(AttachMenuToWin(first, menu), 1);
    EXPECT_EQ(AttachMenuToWin(second, menu), 0);
    EXPECT_FALSE(second.HasBar());
    EXPECT_EQ(AttachMenuToWin(first, menu), 1) << "where it is already";
    RemoveMenu(first);
    EXPECT_EQ(AttachMenuToWin(second, menu), 1);
    second.Choose(0, 0);
    EXPECT_TRUE(sChoices.Wait("101"));
    RemoveMenu(second);
    KillMenu(menu);
}

TEST_F(ProgramMenus, UnknownIdentsAndThoseOfTheWrongKindDoNothing)
{
    MenuWindow window;
    const char* lines[] = {"i*00000001a", "q", nullptr};
    const int32_t bar = CreateMenu(kFile), pop_up = CreatePopUpMenu(lines);
    ASSERT_GT(pop_up, 0);
    EXPECT_EQ(AttachMenuToWin(window, pop_up), 0);
    EXPECT_EQ(AttachPopUpToWindow(window, bar), 0);
    for (int32_t ident : {0, -1, INT32_MIN, INT32_MAX, window.Ident()}) {
        EXPECT_EQ(AttachMenuToWin(window, ident), 0);
        EXPECT_EQ(AttachMenuToWin(ident == window.Ident() ? bar : ident, bar), 0);
        KillMenu(ident);
        RemoveMenu(ident == window.Ident() ? bar : ident);
    }
    EXPECT_EQ(AttachPopUpToWindow(window, window), 0);
    EXPECT_FALSE(window.HasBar());
    KillMenu(bar);
    KillMenu(bar);
    KillMenu(pop_up);
}

TEST_F(ProgramMenus, TheSecondaryButtonOpensThePopUpMenu)
{
    MenuWindow window;
    const char* lines[] = {"i*00000001First", "i*00000002Second", "q", nullptr};
    const int32_t menu = CreatePopUpMenu(lines);
    EXPECT_EQ(AttachPopUpToWindow(window, menu), 1);
    KillMenu(menu);  // it is attached
    window.OpenPopUp();
    press(kKeyDown);
    press(kKeyDown);
    press(kKeyEnter);
    EXPECT_TRUE(sChoices.Wait("2")) << sChoices.All();
    EXPECT_EQ(AttachPopUpToWindow(window, 0), 1);
    window.Click(60, 60, 2);
    KillMenu(menu);
    EXPECT_EQ(AttachPopUpToWindow(window, menu), 0);
}

TEST_F(ProgramMenus, AWindowClosesWhileItsPopUpMenuIsOpen)
{
    const char* lines[] = {"i*00000001First", "q", nullptr};
    const int32_t menu = CreatePopUpMenu(lines);
    {
        MenuWindow window;
        AttachPopUpToWindow(window, menu);
        window.OpenPopUp();
    }
    MenuWindow other;
    EXPECT_EQ(AttachPopUpToWindow(other, menu), 1) << "no window shows it";
    AttachPopUpToWindow(other, 0);
    KillMenu(menu);
}

TEST_F(ProgramMenus, ShortcutsChooseToo)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    AttachMenuToWin(window, menu);
    inject_key(kKeyControl, true);
    press(kKeyO);
    inject_key(kKeyControl, false);
    EXPECT_TRUE(sChoices.Wait("101")) << sChoices.All();
    EXPECT_EQ(sBeginnings, 1);
    press(kKeyF10);
    EXPECT_TRUE(window.OpenMenu({0}).IsValid());
    press(kKeyRight);
    EXPECT_TRUE(window.OpenMenu({1}).IsValid());
    press(kKeyEnter);
    EXPECT_TRUE(sChoices.Wait("101 201")) << sChoices.All();
    RemoveMenu(window);
    KillMenu(menu);
}

static std::atomic<int32_t> sWindow, sMenu;

TEST_F(ProgramMenus, AnItemClosesItsWindow)
{
    const int32_t menu = CreateMenu(kFile);
    {
        MenuWindow window;
        sWindow = window;
        AttachMenuToWin(window, menu);
        window.Handle(
            PLINTH_MENU_ITEM, +[](int32_t) { CloseWindow(sWindow); });
        window.Choose(0, 0);
        EXPECT_TRUE(eventually([&] { return !is_window_ident(window); }));
    }
    MenuWindow other;
    EXPECT_EQ(AttachMenuToWin(other, menu), 1) << "it outlives the window";
    RemoveMenu(other);
    KillMenu(menu);
}

TEST_F(ProgramMenus, AMenuIsFreedByItsOwnHandler)
{
    MenuWindow window;
    const int32_t menu = CreateMenu(kFile);
    AttachMenuToWin(window, menu);
    sWindow = window;
    sMenu = menu;
    window.Handle(
        PLINTH_MENU_ITEM, +[](int32_t code) {
            RemoveMenu(sWindow);
            KillMenu(sMenu);
            sChoices.Add(code);
        });
    window.Choose(0, 0);
    EXPECT_TRUE(sChoices.Wait("101"));
    EXPECT_FALSE(window.HasBar());
    EXPECT_EQ(AttachMenuToWin(window, menu), 0);
}

TEST_F(ProgramMenus, AWindowClosesWhileItsMenuIsOpen)
{
    const int32_t menu = CreateMenu(kFile);
    {
        MenuWindow window;
        AttachMenuToWin(window, menu);
        window.OpenTitle(0);
    }
    MenuWindow other;
    EXPECT_EQ(AttachMenuToWin(other, menu), 1);
    other.Choose(0, 0);
    EXPECT_TRUE(sChoices.Wait("101"));
    RemoveMenu(other);
    KillMenu(menu);
}

TEST_F(ProgramMenus, TwoWindowsMenusOpenOneAfterTheOther)
{
    MenuWindow first, second(400, 100);
    const int32_t one = CreateMenu(kFile), two = CreateMenu(kFile);
    AttachMenuToWin(first, one);
    AttachMenuToWin(second, two);
    const int32 windows = be_app->CountWindows();
    first.OpenTitle(0);
    press(kKeyEscape);
    ASSERT_TRUE(eventually([=] { return be_app->CountWindows() == windows; }));
    second.Choose(0, 0);
    EXPECT_TRUE(sChoices.Wait("101"));
    first.Choose(1, 0);
    EXPECT_TRUE(sChoices.Wait("101 201")) << sChoices.All();
    for (const MenuWindow* window : {&first, &second})
        RemoveMenu(*window);
    KillMenu(one);
    KillMenu(two);
}

namespace {

// Windows whose handlers have arrived, and wait for each other.
std::atomic<int32_t> sMeeting;

void meet()
{
    sMeeting++;
    EXPECT_TRUE(eventually([] { return sMeeting >= 2; }));
}
// Keeps the window busy until both have been pressed with the other button too.
void meet_pressed(int32_t, int32_t, int32_t, int32_t)
{
    EXPECT_TRUE(eventually([] { return sMeeting == 2; }));
}

// Two windows whose menus open at the same moment: each waits, before it follows the user, for the
// press in the other.
class TwoWindows {
public:
    TwoWindows()
    {
        for (MenuWindow* window : {&first, &second})
            AttachMenuToWin(*window, window == &first ? one : two);
    }
    ~TwoWindows()
    {
        // Closed menus keep the keys a moment longer.
        sKeyHeard = false;
        for (MenuWindow* window : {&first, &second})
            window->Handle(PLINTH_KEY, on_key);
        EXPECT_TRUE(eventually([] {
            inject_text("x");
            return sKeyHeard.load();
        }));
        for (const MenuWindow* window : {&first, &second})
            RemoveMenu(*window);
        KillMenu(one);
        KillMenu(two);
    }
    void OpenBoth()
    {
        sMeeting = 0;
        for (MenuWindow* window : {&first, &second})
            window->Handle(PLINTH_MENUS_BEGINNING, meet);
        for (const MenuWindow* window : {&first, &second}) {
            inject_pointer(window->X(10), window->Y(8));
            inject_button(1, true);
            inject_button(1, false);
            if (window == &first) {
                EXPECT_TRUE(eventually([] { return sMeeting == 1; }));
            }
        }
        first.OpenMenu({0});
        second.OpenMenu({0});
    }
    // The item of a window's open menu.
    static void Choose(const MenuWindow& window, int32 index)
    {
        const BRect frame =
            window.WithItem({0, index}, [](BMenuItem* item) { return item->Frame(); });
        window.ClickAt(window.OpenMenu({0}).LeftTop() + BPoint(frame.left + 8, frame.top + 5));
    }

    MenuWindow first, second{500, 100};
    const int32_t one = CreateMenu(kFile), two = CreateMenu(kFile);
};

}  // namespace

TEST_F(ProgramMenus, MenusOfTwoWindowsAreOpenAtTheSameMoment)
{
    for (const bool takes_first : {true, false}) {
        TwoWindows windows;
        const int32 before = be_app->CountWindows();
        windows.OpenBoth();
        EXPECT_EQ(be_app->CountWindows(), before + 2);
        sChoices.Clear();
        // A press outside for the other one.
        TwoWindows::Choose(takes_first ? windows.first : windows.second, 0);
        EXPECT_TRUE(sChoices.Wait("101")) << sChoices.All();
        EXPECT_TRUE(eventually([=] { return be_app->CountWindows() == before; }));
    }
    EXPECT_EQ(sChoices.All(), "101");
}

TEST_F(ProgramMenus, EscapeClosesTheMenusOfTwoWindowsOneByOne)
{
    TwoWindows windows;
    const int32 before = be_app->CountWindows();
    windows.OpenBoth();
    press(kKeyEscape);
    EXPECT_TRUE(eventually([=] { return be_app->CountWindows() == before + 1; }));
    EXPECT_TRUE(eventually([=] {
        press(kKeyEscape);
        return be_app->CountWindows() == before;
    }));
    EXPECT_EQ(sChoices.All(), "");
}

TEST_F(ProgramMenus, PopUpMenusOfTwoWindowsAreOpenAtTheSameMoment)
{
    const char* lines[] = {"i*00000001First", "i*00000002Second", "q", nullptr};
    TwoWindows windows;
    const int32_t menus[] = {CreatePopUpMenu(lines), CreatePopUpMenu(lines)};
    AttachPopUpToWindow(windows.first, menus[0]);
    AttachPopUpToWindow(windows.second, menus[1]);
    const int32 before = be_app->CountWindows();
    sMeeting = 0;
    for (MenuWindow* window : {&windows.first, &windows.second}) {
        window->Handle(PLINTH_MOUSE_DOWN, meet_pressed);
        window->Click(60, 60);
        window->Click(60, 60, 2);
    }
    sMeeting = 2;
    ASSERT_TRUE(eventually([=] { return be_app->CountWindows() == before + 2; }));
    windows.first.ClickAt(BPoint(windows.first.X(70), windows.first.Y(68)));
    EXPECT_TRUE(sChoices.Wait("1")) << sChoices.All();
    EXPECT_TRUE(eventually([=] { return be_app->CountWindows() == before; }));
    for (MenuWindow* window : {&windows.first, &windows.second})
        EXPECT_EQ(AttachPopUpToWindow(*window, 0), 1);
    for (int32_t menu : menus)
        KillMenu(menu);
}

TEST_F(ProgramMenus, HundredsComeAndGo)
{
    MenuWindow window;
    for (int32_t i = 0; i < 200; i++) {
        const int32_t menu = CreateMenu(kFile);
        ASSERT_EQ(AttachMenuToWin(window, menu), 1);
        SetCheckedLabel(window, 101, i % 2);
        if (i % 3 == 0)
            RemoveMenu(window);
        KillMenu(menu);
        if (i % 20 == 0)
            press(kKeyF10);
    }
    press(kKeyEscape);
    RemoveMenu(window);
    EXPECT_FALSE(window.HasBar());
}
