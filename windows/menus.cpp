// Menu bars and pop-up menus in windows, and changes to their items. Idents come from the main
// thread; choices arrive on the windows' threads.

#include "windows/menus.h"

#include "plinth.h"
#include "runtime/trace.h"
#include "windows/drawing_view.h"
#include "windows/window.h"
#include "windows/window_access.h"

#include <MenuBar.h>
#include <Messenger.h>
#include <PopUpMenu.h>

#include <atomic>
#include <new>
#include <typeinfo>

// A pop-up menu that another thread may close.
class MyPopUpMenu : public BPopUpMenu {
public:
    MyPopUpMenu() : BPopUpMenu("", true, true, B_ITEMS_IN_COLUMN) {}

    void Close()
    {
        fIsClosed = true;
        Hide();
    }
    // Asked as it opens: Close() may have come a moment too early.
    bool AddDynamicItem(add_state) override
    {
        if (fIsClosed)
            Hide();
        return false;
    }

    std::atomic<bool> fIsClosed = false;
};

// --- items

MyMenuItem::MyMenuItem(const char* label, BMessage* message, char shortcut, bool checkable)
    : BMenuItem(label, message, shortcut), fCheckable(checkable)
{
}

void MyMenuItem::DrawContent()
{
    if (!fCheckable)
        SetMarked(false);  // kept on purpose: a plain item loses its mark as it is drawn
    BMenuItem::DrawContent();
}

LastingLocker gMenusLocker("menus");

bool mark_chosen_item(const BMessage& message)
{
    MenuLock lock;
    auto* item = live_pointer<BMenuItem>(message, "it");
    if (item == nullptr)
        return false;
    BMenu* menu = item->Menu();
    if (menu != nullptr && menu->IsRadioMode()) {
        if (BMenuItem* marked = menu->FindMarked())
            marked->SetMarked(false);
        item->SetMarked(true);
        return true;
    }
    const auto* own = dynamic_cast<const MyMenuItem*>(item);
    const bool inverted = own != nullptr && own->IsCheckable();
    item->SetMarked(inverted ? !item->IsMarked() : true);
    return true;
}

// What is chosen in a menu or below it goes to the window.
static void target_items(BMenu* menu, const BMessenger& window)
{
    menu->SetTargetForItems(window);
    for (int32 i = 0; i < menu->CountItems(); i++) {
        if (BMenu* below = menu->SubmenuAt(i))
            target_items(below, window);
    }
}

// --- finding

static MenuRecord* FindMenu(const RegistryLock& registry, int32_t ident)
{
    return find_record<MenuRecord>(registry, ident);
}

static MenuRecord* FindMenuAdr(const RegistryLock& registry, const BMenu* menu)
{
    const BList* menus = registry.List(kMenus);
    for (int32 i = 0; menus != nullptr && i < menus->CountItems(); i++) {
        auto* record = static_cast<MenuRecord*>(menus->ItemAtFast(i));
        if (record->menu == menu)
            return record;
    }
    return nullptr;
}

BMenuBar* FindMenuBView(const BWindow* window)
{
    for (BView* child = window->ChildAt(0); child != nullptr; child = child->NextSibling()) {
        if (typeid(*child) == typeid(BMenuBar))
            return static_cast<BMenuBar*>(child);
    }
    return nullptr;
}

// Counts a menu as shown by one more window. Null if it is shown already, or there is no such one.
template <class Menu>
static Menu* show_menu(int32_t ident)
{
    RegistryLock registry;
    MenuRecord* record = FindMenu(registry, ident);
    auto* menu = record != nullptr ? dynamic_cast<Menu*>(record->menu) : nullptr;
    if (menu == nullptr || record->attached > 0)
        return nullptr;
    record->attached++;
    return menu;
}

// One window less shows it. False if nobody knows the menu any more.
static bool unshow_menu(const BMenu* menu)
{
    RegistryLock registry;
    MenuRecord* record = FindMenuAdr(registry, menu);
    if (record != nullptr && record->attached > 0)
        record->attached--;
    return record != nullptr;
}

// Deletes a menu that no window shows.
static void delete_menu(BMenu* menu)
{
    MenuLock lock;
    delete menu;
}

// --- windows

// Takes the bar off and gives the drawing view its room.
static void take_bar_off(MyWinClass* window, BMenuBar* bar)
{
    const float height = bar->Frame().Height();
    window->RemoveChild(bar);
    window->fTopView->MoveTo(0, 0);
    window->fTopView->ResizeBy(0, height + 1);
    if (!unshow_menu(bar))
        delete_menu(bar);
}

static void put_bar_on(MyWinClass* window, BMenuBar* bar)
{
    target_items(bar, BMessenger(window));
    window->AddChild(bar);
    const float below = bar->Frame().bottom + 1;
    window->fTopView->MoveBy(0, below);
    window->fTopView->ResizeBy(0, -below);
}

static void take_pop_up_off(MyWinClass* window)
{
    BPopUpMenu* menu = window->fPopUp;
    window->fPopUp = nullptr;
    if (menu != nullptr && !unshow_menu(menu))
        delete_menu(menu);
}

void release_menus(MyWinClass* window)
{
    take_pop_up_off(window);
    BMenuBar* bar = FindMenuBView(window);
    if (bar == nullptr)
        return;
    window->RemoveChild(bar);
    if (!unshow_menu(bar))
        delete_menu(bar);
}

// Windows that nobody may open a pop-up menu in.
static BList& windows_without_pop_up()
{
    static BList* const windows = new BList(20);  // menu lock
    return *windows;
}

// Those that are open: the pop-up menu, and then the window whose thread waits for it.
static BList& open_pop_ups()
{
    static BList* const open = new BList(20);  // menu lock
    return *open;
}

void open_pop_up(BPopUpMenu* menu, BWindow* window, BPoint where)
{
    target_items(menu, BMessenger(window));
    {
        MenuLock lock;
        if (windows_without_pop_up().HasItem(window) || open_pop_ups().HasItem(menu))
            return;
        static_cast<MyPopUpMenu*>(menu)->fIsClosed = false;
        open_pop_ups().AddItem(menu);
        open_pop_ups().AddItem(window);
    }
    menu->Go(where, true);
    MenuLock lock;
    open_pop_ups().RemoveItems(open_pop_ups().IndexOf(menu), 2);
}

static MyPopUpMenu* find_pop_up(MenuRecord* record)
{
    return record != nullptr ? dynamic_cast<MyPopUpMenu*>(record->menu) : nullptr;
}

bool is_pop_up(const RegistryLock& registry, int32_t ident)
{
    return find_pop_up(FindMenu(registry, ident)) != nullptr;
}

void open_pop_up(int32_t ident, BWindow* window, BPoint where)
{
    MyPopUpMenu* menu;
    {
        RegistryLock registry;
        MenuRecord* record = FindMenu(registry, ident);
        menu = find_pop_up(record);
        if (menu == nullptr)
            return;
        record->attached++;
    }
    open_pop_up(menu, window, where);
    if (!unshow_menu(menu))
        delete_menu(menu);
}

NoPopUp::NoPopUp(BWindow* window) : fWindow(window)
{
    MenuLock lock;
    windows_without_pop_up().AddItem(window);
    for (int32 i = 0; i < open_pop_ups().CountItems(); i += 2) {
        if (open_pop_ups().ItemAt(i + 1) == window)
            static_cast<MyPopUpMenu*>(open_pop_ups().ItemAt(i))->Close();
    }
}

NoPopUp::~NoPopUp()
{
    MenuLock lock;
    windows_without_pop_up().RemoveItem(fWindow);
}

// --- exported

template <class Make>
static int32_t create_menu(const char* const* desc, Make make, bool popup, const char* call)
{
    const int32_t ident = guarded(
        0, [&] { return desc != nullptr ? CreateMenuRtn(desc, make(), popup, nullptr) : 0; });
    if (ident == 0)
        show_dbg(kBadArgument, 0, call);
    return ident;
}

extern "C" int32_t CreateMenu(const char* const* desc)
{
    const auto make_bar = [] {
        return new BMenuBar(BRect(0, 0, 32767, 32767), nullptr, B_FOLLOW_LEFT_RIGHT | B_FOLLOW_TOP,
                            B_ITEMS_IN_ROW, true);
    };
    return create_menu(desc, make_bar, false, __func__);
}

extern "C" int32_t CreatePopUpMenu(const char* const* desc)
{
    return create_menu(
        desc, [] { return new MyPopUpMenu; }, true, __func__);
}

static int32_t attach_bar(WindowAccess& window, int32_t menu_ident, const char* call)
{
    BMenuBar* before = FindMenuBView(window.Window());
    BMenuBar* bar = show_menu<BMenuBar>(menu_ident);
    if (bar == nullptr) {
        RegistryLock registry;
        const MenuRecord* record = FindMenu(registry, menu_ident);
        if (record == nullptr || record->menu != before) {
            show_dbg(kBadArgument, menu_ident, call);
            return 0;
        }
    }
    if (before != nullptr)
        take_bar_off(window.Window(), before);
    put_bar_on(window.Window(), bar != nullptr ? bar : show_menu<BMenuBar>(menu_ident));
    window.Refresh(window->fTopView->Bounds());
    return 1;
}

extern "C" int32_t AttachMenuToWin(int32_t window_ident, int32_t menu_ident)
{
    const char* const call = __func__;
    return ask_window(window_ident, call, 0,
                      [=](WindowAccess& window) { return attach_bar(window, menu_ident, call); });
}

extern "C" void RemoveMenu(int32_t window_ident)
{
    on_window(window_ident, __func__, [](WindowAccess& window) {
        BMenuBar* bar = FindMenuBView(window.Window());
        if (bar == nullptr)
            return;
        take_bar_off(window.Window(), bar);
        window.Refresh(window->fTopView->Bounds());
    });
}

static int32_t attach_pop_up(WindowAccess& window, int32_t menu_ident, const char* call)
{
    MyPopUpMenu* menu = nullptr;
    if (menu_ident != 0) {
        {
            RegistryLock registry;
            const MenuRecord* record = FindMenu(registry, menu_ident);
            if (record != nullptr && record->menu == window->fPopUp)
                return 1;  // it is there
        }
        menu = show_menu<MyPopUpMenu>(menu_ident);
        if (menu == nullptr) {
            show_dbg(kBadArgument, menu_ident, call);
            return 0;
        }
    }
    take_pop_up_off(window.Window());
    window->fPopUp = menu;
    return 1;
}

extern "C" int32_t AttachPopUpToWindow(int32_t window_ident, int32_t menu_ident)
{
    const char* const call = __func__;
    return ask_window(window_ident, call, 0, [=](WindowAccess& window) {
        return attach_pop_up(window, menu_ident, call);
    });
}

extern "C" void KillMenu(int32_t ident)
{
    BMenu* menu;
    {
        RegistryLock registry;
        MenuRecord* record = FindMenu(registry, ident);
        if (record == nullptr || record->attached != 0)
            return;
        menu = record->menu;
        remove_record(registry, record);
        MyFree(record);
    }
    guarded([=] { delete_menu(menu); });
}

void Close_All_Menu(BList* menus)
{
    for (;;) {
        BMenu* unshown = nullptr;
        {
            RegistryLock registry;
            auto* record = static_cast<MenuRecord*>(menus->RemoveItem(int32{0}));
            if (record == nullptr)
                return;
            if (record->attached == 0)
                unshown = record->menu;
            MyFree(record);
        }
        delete_menu(unshown);
    }
}

// --- changing items

// The item of a menu, or below it, whose message has the code. Where the menu's own item has it
// that one is meant, which is so for the code that the menu's last line had: kept on purpose.
static BMenuItem* check_menu(const BMenu* menu, uint32 code)
{
    const auto has_code = [=](const BMenuItem* item) {
        return item != nullptr && item->Message() != nullptr && item->Command() == code;
    };
    if (has_code(menu->Superitem()))
        return menu->Superitem();
    for (int32 i = 0; i < menu->CountItems(); i++) {
        BMenuItem* item = menu->ItemAt(i);
        if (has_code(item))
            return item;
        BMenuItem* below = item->Submenu() != nullptr ? check_menu(item->Submenu(), code) : nullptr;
        if (below != nullptr)
            return below;
    }
    return nullptr;
}

// Does `change` to the first match under each title of the window's bar.
template <class Change>
static void on_items(int32_t window_ident, int32_t code, const char* call, Change change)
{
    on_window(window_ident, call, [=](WindowAccess& window) {
        BMenuBar* bar = FindMenuBView(window.Window());
        if (bar == nullptr)
            return;
        for (int32 i = 0; i < bar->CountItems(); i++) {
            const BMenu* menu = bar->SubmenuAt(i);
            BMenuItem* item =
                menu != nullptr ? check_menu(menu, static_cast<uint32>(code)) : nullptr;
            if (item != nullptr)
                change(*item);
        }
        window.Refresh(window->fTopView->Bounds());
    });
}

extern "C" void SetCheckedLabel(int32_t window, int32_t code, int32_t flag)
{
    on_items(window, code, __func__, [=](BMenuItem& item) { item.SetMarked(flag != 0); });
}

extern "C" void SetEnableLabel(int32_t window, int32_t code, int32_t flag)
{
    // Kept on purpose: 1 disables.
    on_items(window, code, __func__, [=](BMenuItem& item) { item.SetEnabled((flag ^ 1) != 0); });
}

extern "C" void SetNameLabel(int32_t window, int32_t code, const char* text)
{
    if (text != nullptr)
        on_items(window, code, __func__, [=](BMenuItem& item) { item.SetLabel(text); });
}
