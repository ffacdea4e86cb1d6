// A menu with submenus, marks, radio items, and messages for a window.

#include <Application.h>
#include <Menu.h>
#include <MenuItem.h>
#include <PopUpMenu.h>
#include <SeparatorItem.h>
#include <Window.h>

#include <assert.h>
#include <string.h>

const uint32 MSG_COLOR = 'colr';

class MenuWindow : public BWindow {
public:
    MenuWindow() : BWindow(BRect(50, 50, 250, 150), "Menus", B_TITLED_WINDOW, 0), fChosen(-1) {}
    virtual void MessageReceived(BMessage* message)
    {
        if (message->what == MSG_COLOR) {
            message->FindInt32("color", &fChosen);
            be_app->PostMessage(B_QUIT_REQUESTED);
        } else
            BWindow::MessageReceived(message);
    }
    virtual bool QuitRequested()
    {
        assert(fChosen == 1);
        return true;
    }

private:
    int32 fChosen;
};

int main()
{
    BApplication app("application/x-vnd.menus");
    BMenu* colors = new BMenu("Colour");
    colors->SetRadioMode(true);
    const char* names[] = {"Red", "Green", "Blue"};
    for (int32 i = 0; i < 3; i++) {
        BMessage* message = new BMessage(MSG_COLOR);
        message->AddInt32("color", i);
        colors->AddItem(new BMenuItem(names[i], message, names[i][0]));
    }
    BPopUpMenu* menu = new BPopUpMenu("shape", false, false);
    menu->AddItem(new BMenuItem("Draw", new BMessage('draw'), 'D'));
    menu->AddItem(new BSeparatorItem);
    menu->AddItem(colors);
    assert(menu->CountItems() == 3);
    assert(menu->SubmenuAt(2) == colors && menu->ItemAt(2)->Submenu() == colors);
    assert(colors->Superitem() == menu->ItemAt(2) && colors->Supermenu() == menu);

    BMenuItem* green = menu->FindItem("Green");
    assert(green != NULL && green->Menu() == colors);
    green->SetMarked(true);
    colors->FindItem("Blue")->SetMarked(true);
    assert(!green->IsMarked() && colors->FindMarked() == colors->ItemAt(2));
    uint32 modifiers;
    assert(green->Shortcut(&modifiers) == 'G' && (modifiers & B_COMMAND_KEY) != 0);
    menu->ItemAt(0)->SetEnabled(false);
    assert(!menu->ItemAt(0)->IsEnabled());

    BMenuItem* red = colors->RemoveItem((int32)0);
    assert(strcmp(red->Label(), "Red") == 0 && red->Menu() == NULL);
    delete red;
    assert(colors->IndexOf(green) == 0);

    MenuWindow* window = new MenuWindow;
    window->Show();
    green->SetTarget(window);
    assert(((BInvoker*)green)->Invoke() == B_OK);
    app.Run();
    delete menu;
    return 0;
}
