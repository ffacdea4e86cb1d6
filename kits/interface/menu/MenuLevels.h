#ifndef INTERFACE_MENU_LEVELS_H
#define INTERFACE_MENU_LEVELS_H

// Acting on one of the open menus; for the sources of MenuTracker.

#include <interface/menu/MenuTracker.h>
#include <interface/menu/MenuWindow.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

// Calls `act` with a level's menu, its window locked; false if the menu is not there any more.
template <class Action>
bool MenuTracker::_With(size_t level, Action act)
{
    MenuWindow* const window = fLevels[level].window;
    if (window == nullptr) {
        if (!_LockRoot())
            return false;
        act(*fRoot);
        _UnlockRoot();
        return true;
    }
    if (!window->Lock())
        return false;
    BMenu* const menu = window->Menu();
    if (menu != nullptr) {
        fLevels[level].frame = window->Frame();
        act(*menu);
    }
    window->Unlock();
    return menu != nullptr;
}

}  // namespace BPrivate

#endif  // INTERFACE_MENU_LEVELS_H
