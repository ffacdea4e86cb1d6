// The window of an open menu. Made by who follows the user; its own thread only draws.

#include <interface/menu/MenuWindow.h>

#include <MenuItem.h>
#include <PopUpMenu.h>
#include <Screen.h>

#include <algorithm>
#include <mutex>

#include <interface/controls/Look.h>
#include <interface/menu/MenuPrivate.h>

namespace BPrivate {

// The end of a menu that goes on beyond it.
class MenuWindow::Strip : public BView {
public:
    Strip(BPrivate::Look::Way way) : BView(BRect(), nullptr, B_FOLLOW_NONE, B_WILL_DRAW), fWay(way)
    {
        SetViewColor(B_TRANSPARENT_COLOR);
    }

    void Draw(BRect) override
    {
        BPrivate::Look(this).DrawMenuScroller(Bounds(), menu_ground(), fWay, fEnded);
    }
    void SetEnded(bool ended)
    {
        if (ended != fEnded)
            Invalidate();
        fEnded = ended;
    }

private:
    const BPrivate::Look::Way fWay;
    bool fEnded = false;
};

// Held by whoever takes a menu out of its window: until that is done, the menu is not to be deleted
// by another thread. Hooks of the menu run below it.
static std::recursive_mutex sTakingOut;

static void take_out(BMenu* menu)
{
    std::lock_guard<std::recursive_mutex> guard(sTakingOut);
    menu->RemoveSelf();
}

static MenuWindow* window_of(const BMenu* menu)
{
    std::lock_guard<std::recursive_mutex> guard(sTakingOut);
    return dynamic_cast<MenuWindow*>(menu->Window());
}

// Where a menu of this size goes: at `where`, or on the other side of what it belongs to.
static BPoint place_for(BMenu* menu, BSize size, BPoint where, BRect screen)
{
    const BMenu* super = menu->Supermenu();
    const bool no_width = where.x + size.width > screen.right;
    const bool no_height = where.y + size.height > screen.bottom;
    if (super == nullptr || super->Window() == nullptr) {
        where.x -= no_width ? size.width : 0;
        where.y -= no_height ? size.height : 0;
    } else if (dynamic_cast<BPopUpMenu*>(menu) == nullptr) {
        const BRect item = super->ConvertToScreen(menu->Superitem()->Frame());
        const bool row = MenuPrivate::Layout(super) == B_ITEMS_IN_ROW;
        if (no_width && !row)
            where.x = item.left - 1 - size.width;
        if (no_height && row && item.top - 1 - size.height >= screen.top)
            where.y = item.top - 1 - size.height;
    }
    where.x = std::max(screen.left, std::min(where.x, screen.right - size.width));
    where.y = std::max(screen.top, std::min(where.y, screen.bottom - size.height));
    return where;
}

MenuWindow* MenuWindow::Open(BMenu* menu, BPoint where)
{
    const BRect screen = BScreen().Frame();
    BSize size;
    menu->GetPreferredSize(&size.width, &size.height);
    const BPoint place = place_for(menu, size, where, screen);
    const BRect frame(place.x, place.y, place.x + size.width,
                      std::min(place.y + size.height, screen.bottom));
    auto* window = new MenuWindow(frame, menu);
    window->Show();
    return window;
}

void MenuWindow::Close(BMenu* menu)
{
    auto* window = dynamic_cast<MenuWindow*>(menu->Window());
    if (window == nullptr || !window->Lock())
        return;
    window->End();
    window->Unlock();
}

// The threads of the windows below draw their items, for which they ask every menu above.
void MenuWindow::TakeDown(BMenu* menu)
{
    OpenMenuLock open(menu);
    if (open.Window() == nullptr)
        return;
    for (int32 i = 0; i < menu->CountItems(); i++) {
        if (BMenu* const submenu = menu->SubmenuAt(i))
            TakeDown(submenu);
    }
    take_out(menu);
}

void MenuWindow::Refit(BMenu* menu)
{
    auto* window = dynamic_cast<MenuWindow*>(menu->Window());
    if (window != nullptr && window->Menu() == menu)
        window->_Arrange();
}

MenuWindow::MenuWindow(BRect frame, BMenu* menu)
    : BWindow(frame, menu->Name(), B_NO_BORDER_WINDOW_LOOK, B_FLOATING_ALL_WINDOW_FEEL,
              B_NOT_RESIZABLE | B_NOT_MOVABLE | B_AVOID_FOCUS | B_AVOID_FRONT, B_CURRENT_WORKSPACE)
{
    fPort = new BView(Bounds(), nullptr, B_FOLLOW_NONE, 0);
    fPort->SetViewColor(B_TRANSPARENT_COLOR);
    fUp = new Strip(BPrivate::Look::Way::Up);
    fDown = new Strip(BPrivate::Look::Way::Down);
    AddChild(fUp);
    AddChild(fDown);
    fUp->Hide();
    fDown->Hide();
    menu->MoveTo(B_ORIGIN);
    fPort->AddChild(menu);
    AddChild(fPort);
    _Arrange();
}

MenuWindow::~MenuWindow()
{
    if (!IsLocked())
        Lock();
    if (BMenu* menu = Menu())
        take_out(menu);
}

BMenu* MenuWindow::Menu() const { return dynamic_cast<BMenu*>(fPort->ChildAt(0)); }

void MenuWindow::End()
{
    if (BMenu* menu = Menu()) {
        MenuPrivate::Select(menu, nullptr);
        MenuPrivate::ShowTriggers(menu, false);
        take_out(menu);
    }
    if (!IsHidden())
        Hide();
    PostMessage(B_QUIT_REQUESTED);
}

void MenuWindow::_Arrange()
{
    BMenu* menu = Menu();
    const BRect screen = BScreen().Frame();
    BSize content;
    menu->GetPreferredSize(&content.width, &content.height);
    menu->ResizeTo(content.width, content.height);
    const float height = std::min(content.height, screen.Height());
    if (Frame().top + height > screen.bottom)
        MoveTo(Frame().left, std::max(screen.top, screen.bottom - height));
    ResizeTo(content.width, height);

    const bool scrolls = content.height > height;
    const float strip = scrolls ? BPrivate::Look(menu).TextHeight() : 0;
    fPort->MoveTo(0, strip);
    fPort->ResizeTo(content.width, height - 2 * strip);
    fUp->ResizeTo(content.width, strip - 1);
    fDown->MoveTo(0, height - strip + 1);
    fDown->ResizeTo(content.width, strip - 1);
    if (scrolls != fScrolls) {
        for (Strip* end : {fUp, fDown})
            scrolls ? end->Show() : end->Hide();
    }
    fScrolls = scrolls;
    Scroll(0);
}

int32 MenuWindow::StripAt(BPoint where) const
{
    if (!fScrolls)
        return 0;
    const BPoint place = ConvertFromScreen(where);
    return fUp->Frame().Contains(place) ? -1 : fDown->Frame().Contains(place) ? 1 : 0;
}

bool MenuWindow::Scroll(float distance)
{
    BMenu* menu = Menu();
    if (menu == nullptr)
        return false;
    const float last = std::max(0.0f, menu->Bounds().Height() - fPort->Bounds().Height());
    const float offset = std::clamp(fOffset + distance, 0.0f, last);
    const bool moved = offset != fOffset;
    fOffset = offset;
    menu->MoveTo(0, -offset);
    fUp->SetEnded(offset <= 0);
    fDown->SetEnded(offset >= last);
    return moved;
}

void MenuWindow::ScrollTo(const BMenuItem* item)
{
    if (!fScrolls || item == nullptr)
        return;
    const BRect frame = item->Frame();
    const float bottom = fOffset + fPort->Bounds().Height();
    if (frame.top < fOffset)
        Scroll(frame.top - fOffset);
    else if (frame.bottom > bottom)
        Scroll(frame.bottom - bottom);
}

float MenuWindow::PageHeight() const { return fPort->Bounds().Height() + 1; }

OpenMenuLock::OpenMenuLock(const BMenu* menu) : fWindow(nullptr)
{
    while (menu != nullptr) {
        MenuWindow* const window = window_of(menu);
        const bool locked = window != nullptr && window->Lock();
        if (window_of(menu) != window) {  // closed, or opened again, meanwhile
            if (locked)
                window->Unlock();
            continue;
        }
        if (locked)
            fWindow = window;
        if (locked || window == nullptr)
            return;
        snooze(1000);  // its thread is about to delete it
    }
}

OpenMenuLock::~OpenMenuLock()
{
    if (fWindow != nullptr)
        fWindow->Unlock();
}

}  // namespace BPrivate
