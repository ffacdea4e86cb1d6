// Menu items as windows meet them. The window's thread, window locked.

#include "windows/menus.h"

#include <Menu.h>
#include <PopUpMenu.h>
#include <Window.h>

MyMenuItem::MyMenuItem(const char* label, BMessage* message, char shortcut, bool checkable)
    : BMenuItem(label, message, shortcut), fCheckable(checkable)
{
}

void MyMenuItem::DrawContent() { BMenuItem::DrawContent(); }

void mark_chosen_item(BMenuItem* item)
{
    BMenu* menu = item->Menu();
    if (menu != nullptr && menu->IsRadioMode()) {
        if (BMenuItem* marked = menu->FindMarked())
            marked->SetMarked(false);
        item->SetMarked(true);
        return;
    }
    const auto* own = dynamic_cast<const MyMenuItem*>(item);
    const bool inverted = own != nullptr && own->IsCheckable();
    item->SetMarked(inverted ? !item->IsMarked() : true);
}

void open_pop_up(BPopUpMenu* menu, BWindow* window, BPoint where)
{
    menu->SetTargetForItems(BMessenger(window));
    menu->Go(where, true);
}
