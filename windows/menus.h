#ifndef WINDOWS_MENUS_H
#define WINDOWS_MENUS_H

// What windows do with menus: the chosen item's mark, and the pop-up menu.

#include "runtime/live_objects.h"

#include <MenuItem.h>
#include <Point.h>

class BPopUpMenu;
class BWindow;

// A menu item whose mark changes with each choice while it is checkable. Its message names it by
// this address; it is deleted with the window that it targets locked.
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

// Moves the mark of a menu in radio mode to `item`, inverts that of a checkable item, and marks
// any other. Window locked.
void mark_chosen_item(BMenuItem* item);

// Opens the menu at a place on the screen and returns when it is closed; an item chosen has sent
// its message to `window`. The window's thread.
void open_pop_up(BPopUpMenu* menu, BWindow* window, BPoint where);

#endif  // WINDOWS_MENUS_H
