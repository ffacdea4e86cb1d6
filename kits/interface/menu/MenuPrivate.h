#ifndef INTERFACE_MENU_PRIVATE_H
#define INTERFACE_MENU_PRIVATE_H

// What follows the user through menus, and windows, may do with menus and items. With the lock of
// the menu's window.

#include <Menu.h>
#include <MenuBar.h>
#include <MenuItem.h>

#include <string>

class BWindow;

namespace [[gnu::visibility("hidden")]] BPrivate {

menu_info menu_settings();
rgb_color menu_ground();

// True while Control stands for Command in shortcuts, as the user of this host expects.
bool control_is_command();

struct [[gnu::visibility("hidden")]] MenuPrivate
{
    static BMenuItem* HitTest(const BMenu* menu, BPoint where) { return menu->_HitTest(where); }
    static BMenuItem* Selected(const BMenu* menu) { return menu->fSelected; }
    static void Select(BMenu * menu, BMenuItem * item) { menu->_Select(item); }
    static menu_layout Layout(const BMenu* menu) { return menu->Layout(); }
    static BPoint ScreenLocation(BMenu * menu) { return menu->ScreenLocation(); }

    // For the look.
    static uint32 State(bool enabled, bool selected);
    // An item that can be chosen, or whose menu can be opened.
    static bool IsChoice(const BMenuItem* item);
    // The next choice before (`step` -1) or after (1) an item, around the ends; null stands for
    // the place before the first and after the last.
    static BMenuItem* NextChoice(const BMenu* menu, const BMenuItem* from, int32 step);
    // The next choice whose label begins with the character, from the selected one on.
    static BMenuItem* ByLetter(const BMenu* menu, const char* character);

    // Characters that choose an item, underlined while they can be typed.
    static void ShowTriggers(BMenu * menu, bool shown);
    static BMenuItem* ByTrigger(const BMenu* menu, const char* character);

    // The item, here or below, that a shortcut stands for; null if none.
    static BMenuItem* ByShortcut(const BMenu* menu, uint32 key, uint32 modifiers);
    static std::string ShortcutText(const BMenuItem* item);

    // An item without a target of its own goes from one window to another; either may be null.
    static void SetDefaultTarget(BMenuItem * item, const BWindow* before, BWindow* after);
    static status_t Invoke(BMenuItem * item) { return item->Invoke(); }

    // Enters a bar by the keyboard.
    static void StartBar(BMenuBar * bar, int32 title = 0) { bar->StartMenuBar(title, true, true); }

    // What a field shows of its title, in the view's high colour.
    static void DrawTitle(BMenuItem * title, BRect room);

    static bool HasHook(const BMenu* menu) { return menu->fTrackingHook != nullptr; }
    // True if the hook wants the menus closed.
    static bool CallHook(BMenu * menu)
    {
        return HasHook(menu) && menu->fTrackingHook(menu, menu->fTrackingState);
    }
};

}  // namespace BPrivate

#endif  // INTERFACE_MENU_PRIVATE_H
