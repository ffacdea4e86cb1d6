// A blue window and a menu that its program opens, which lies 20 pixels right of its corner and 50
// below.

#include <plinth.h>

#include <Menu.h>
#include <MenuItem.h>

#include <stdio.h>

namespace {

class ShownMenu : public BMenu {
public:
    ShownMenu() : BMenu("shown")
    {
        for (const char* label : {"First", "Second"})
            AddItem(new BMenuItem(label, nullptr));
    }
    using BMenu::Show;
    BPoint ScreenLocation() override { return BPoint(120, 170); }
};

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
    auto* menu = new ShownMenu;
    menu->Show();
    puts("shown");
    fflush(stdout);
}
