#ifndef WINDOWS_MENUS_H
#define WINDOWS_MENUS_H

// Menus of a program: their records, the class of their items, and what windows do with them.

#include "runtime/live_objects.h"
#include "runtime/registry.h"

#include <MenuItem.h>
#include <Point.h>

#include <stdint.h>

class BMenu;
class BMenuBar;
class BPopUpMenu;
class BWindow;
class MyWinClass;

// One block of four words from MyAlloc, in the list kMenus.
struct MenuRecord {
    static const RegistrySlot kSlot = kMenus;

    void* owner;  // null for those of CreateMenu and CreatePopUpMenu
    BMenu* menu;  // a BMenuBar or a MyPopUpMenu
    intptr_t ident;
    intptr_t attached GUARDED_BY(gRegistryLocker);  // windows that show it
};

// A menu item whose mark changes with each choice while it is checkable. Its message names it by
// this address; it is deleted with the window that it targets locked, or with the MenuLock held.
class MyMenuItem : public BMenuItem {
public:
    MyMenuItem(const char* label, BMessage* message, char shortcut, bool checkable);

    bool IsCheckable() const { return fCheckable; }

protected:
    void DrawContent() override;

private:
    const bool fCheckable;
    const Live<BMenuItem> fLive{this};
};

extern LastingLocker gMenusLocker;

// Keeps the menus that no window shows from being deleted, for as long as it lives. Taken after a
// window's lock, never held while one is waited for.
class [[nodiscard]] THREAD_SAFETY(scoped_lockable) MenuLock {
public:
    MenuLock() THREAD_SAFETY(acquire_capability(gMenusLocker)) { gMenusLocker.Lock(); }
    ~MenuLock() THREAD_SAFETY(release_capability()) { gMenusLocker.Unlock(); }
    MenuLock(const MenuLock&) = delete;
    MenuLock& operator=(const MenuLock&) = delete;
};

// Builds what a description says into `root`, which is a pop-up menu or a bar, and enters it.
// Returns the new ident; 0, and `root` is deleted, for a description that is none. Main thread.
int32_t CreateMenuRtn(const char* const* desc, BMenu* root, bool popup, void* owner);

// The first child of the window that is a menu bar and nothing more; null if none. Window locked.
BMenuBar* FindMenuBView(const BWindow* window);

// Finds the item that a message names and changes its mark: moves that of a menu in radio mode,
// inverts that of a checkable item, and marks any other. False if it names none. Window locked.
bool mark_chosen_item(const BMessage& message);

// Opens the menu at a place on the screen and returns when it is closed; an item chosen has sent
// its message to `window`. The window's thread.
void open_pop_up(BPopUpMenu* menu, BWindow* window, BPoint where);

// Opens the menu of that ident, which stays for so long, if there is one. The window's thread.
void open_pop_up(int32_t ident, BWindow* window, BPoint where);
// True for the ident of a pop-up menu.
bool is_pop_up(const RegistryLock& registry, int32_t ident);

// Closes the pop-up menu of a window, whose thread waits for it with the lock, and keeps it from
// opening one while this lives. The window may be gone. Any thread.
class [[nodiscard]] NoPopUp {
public:
    explicit NoPopUp(BWindow* window);
    ~NoPopUp();
    NoPopUp(const NoPopUp&) = delete;
    NoPopUp& operator=(const NoPopUp&) = delete;

private:
    BWindow* const fWindow;  // only compared
};

// The window goes: its menus are no longer shown, and those without a record go with it.
void release_menus(MyWinClass* window);

#endif  // WINDOWS_MENUS_H
