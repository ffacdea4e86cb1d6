// A blue window and a menu that its program opens, which lies 20 pixels right of its corner and 50
// below. With an argument it is one that takes the input.

#include <plinth.h>

#include <Menu.h>
#include <MenuItem.h>
#include <PopUpMenu.h>

#include <stdio.h>

namespace {

const BPoint kPlace(120, 170);

class ShownMenu : public BMenu {
public:
    ShownMenu() : BMenu("shown") {}
    using BMenu::Show;
    BPoint ScreenLocation() override { return kPlace; }
};

template <class Menu>
Menu* with_items(Menu* menu)
{
    for (const char* label : {"First", "Second"})
        menu->AddItem(new BMenuItem(label, nullptr));
    return menu;
}

}  // namespace

extern "C" void ProgramMain()
{
    Open_Sys(0);
    const int32_t window = OpenWindow(100, 120, 399, 299);
    SetForeColor(window, 0x2060C0FF, 0);
    FRectangle(window, 0, 0, 399, 299);
    puts("ready");
    fflush(stdout);
    getchar();
    if (__argc > 1)
        with_items(new BPopUpMenu("shown", false, false))->Go(kPlace, false, true, true);
    else
        with_items(new ShownMenu)->Show();
    puts("shown");
    fflush(stdout);
}
