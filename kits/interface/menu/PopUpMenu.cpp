// Pop-up menus. The thread that calls Go() follows the pointer; the menus are drawn by windows of
// their own, which it locks for a moment at a time.

#include <PopUpMenu.h>

#include <MenuItem.h>
#include <Message.h>
#include <Screen.h>
#include <Window.h>

#include <algorithm>
#include <functional>
#include <vector>

#include <app/QuitAsked.h>
#include <server/screen/Display.h>

static const bigtime_t kLookInterval_us = 10'000;  // between two looks at the pointer
static const bigtime_t kClick_us = 300'000;        // a shorter press leaves the menu open
static const float kClickDistance = 4;             // pixels
static const uint8 kEscapeKey = 0x01;

namespace {

class MenuWindow : public BWindow {
public:
    MenuWindow(BRect frame, BMenu* menu)
        : BWindow(frame, menu->Name(), B_NO_BORDER_WINDOW_LOOK, B_FLOATING_ALL_WINDOW_FEEL,
                  B_NOT_RESIZABLE | B_NOT_MOVABLE | B_AVOID_FOCUS | B_AVOID_FRONT,
                  B_CURRENT_WORKSPACE),
          fMenu(menu)
    {
        AddChild(menu);
    }
    // The menu belongs to whoever opened it, also when the application ends its windows.
    ~MenuWindow() override
    {
        if (IsLocked() || Lock())
            RemoveChild(fMenu);
    }

    BMenu* Menu() const { return fMenu; }

private:
    BMenu* fMenu;
};

bool is_escape_down()
{
    uint8 states[16];
    server::KeyStates(states);
    return (states[kEscapeKey >> 3] & (1 << (7 - (kEscapeKey & 7)))) != 0;
}

}  // namespace

// One opening of a menu: its windows, the submenus' after their supermenus', and the choice.
class BPopUpMenu::Tracker {
public:
    Tracker(BPopUpMenu* menu, BRect openRect, bool keepOpen)
        : fMenu(menu), fOpenRect(openRect), fSticky(keepOpen)
    {
    }

    // Follows the pointer to the end and returns the item chosen, or null.
    BMenuItem* Run(BWindow* caller)
    {
        // Before the menu can be seen, and the pointer moves on.
        BPoint began;
        uint32 buttons = 0;
        uint32 known_presses = 0;
        server::PointerState(&began, &buttons, &known_presses);
        _Open(fMenu, fMenu->ScreenLocation());
        const bigtime_t start = system_time();
        bool pressed = buttons != 0;
        if (!pressed)
            fSticky = true;
        BMenuItem* chosen = nullptr;
        for (;;) {
            BPoint where;
            uint32 presses = 0;
            server::PointerState(&where, &buttons, &presses);
            if (is_escape_down() || fMenu->fClosing || BPrivate::is_quit_asked())
                break;
            BMenuItem* under = _Follow(where);
            // A tap may begin and end between two looks.
            const bool is_new_press = !pressed && (buttons != 0 || presses != known_presses);
            if (is_new_press && !_IsInside(where))
                break;
            if ((pressed || is_new_press) && buttons == 0) {
                if (_LeavesOpen(began, where, start)) {
                    fSticky = true;
                } else {
                    chosen = under;
                    break;
                }
            }
            pressed = buttons != 0;
            known_presses = presses;
            if (caller != nullptr && caller->IsLocked())
                caller->UpdateIfNeeded();
            snooze(kLookInterval_us);
        }
        while (!fOpened.empty())
            _CloseLast();
        if (chosen != nullptr && (!chosen->IsEnabled() || chosen->Submenu() != nullptr))
            return nullptr;
        return chosen;
    }

private:
    // The application may have ended the window: then it refuses its lock.
    struct Opened {
        MenuWindow* window;
        BRect frame;
    };

    // A click that opened the menu does not choose from it yet.
    bool _LeavesOpen(BPoint began, BPoint where, bigtime_t start) const
    {
        if (fSticky && _IsInside(where))
            return false;
        const bool moved = std::abs(where.x - began.x) > kClickDistance ||
                           std::abs(where.y - began.y) > kClickDistance;
        return fSticky || fOpenRect.Contains(where) ||
               (!moved && system_time() - start < kClick_us);
    }

    void _Open(BMenu* menu, BPoint where)
    {
        float width;
        float height;
        menu->GetPreferredSize(&width, &height);
        const BRect screen = BScreen().Frame();
        where.x = std::max(screen.left, std::min(where.x, screen.right - width));
        where.y = std::max(screen.top, std::min(where.y, screen.bottom - height));
        auto* window =
            new MenuWindow(BRect(where.x, where.y, where.x + width, where.y + height), menu);
        fOpened.push_back({window, window->Frame()});
        window->Show();
    }

    void _CloseLast()
    {
        MenuWindow* window = fOpened.back().window;
        fOpened.pop_back();
        if (!window->Lock())
            return;
        window->Menu()->_Select(nullptr);
        window->Quit();
    }

    bool _IsInside(BPoint where) const
    {
        return std::any_of(fOpened.begin(), fOpened.end(),
                           [=](const Opened& opened) { return opened.frame.Contains(where); });
    }

    // Selects the item under the pointer, opens its submenu, and closes those left.
    BMenuItem* _Follow(BPoint where)
    {
        for (size_t i = fOpened.size(); i-- > 0;) {
            const auto [window, frame] = fOpened[i];
            if (!frame.Contains(where) || !window->Lock())
                continue;
            BMenu* menu = window->Menu();
            BMenuItem* item = menu->_HitTest(where - frame.LeftTop());
            const bool changed = item != menu->fSelected;
            menu->_Select(item != nullptr && item->IsEnabled() ? item : nullptr);
            window->Unlock();
            if (changed) {
                while (fOpened.size() > i + 1)
                    _CloseLast();
                if (item != nullptr && item->IsEnabled() && item->Submenu() != nullptr)
                    _Open(item->Submenu(), item->Submenu()->ScreenLocation());
            }
            return item;
        }
        MenuWindow* last = fOpened.back().window;
        if (last->Lock()) {
            last->Menu()->_Select(nullptr);
            last->Unlock();
        }
        return nullptr;
    }

    BPopUpMenu* fMenu;
    BRect fOpenRect;
    bool fSticky;  // the menu stays open without a button held
    std::vector<Opened> fOpened;
};

BPopUpMenu::BPopUpMenu(const char* name, bool radioMode, bool labelFromMarked, menu_layout layout)
    : BMenu(name, layout)
{
    SetRadioMode(radioMode);
    if (labelFromMarked)
        SetLabelFromMarked(true);
}

BPopUpMenu::BPopUpMenu(BMessage* data) : BMenu(data) {}

BPopUpMenu::~BPopUpMenu()
{
    fClosing = true;
    _WaitForTracking();
}

BArchivable* BPopUpMenu::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BPopUpMenu") ? new BPopUpMenu(archive) : nullptr;
}

status_t BPopUpMenu::Archive(BMessage* archive, bool deep) const
{
    return BMenu::Archive(archive, deep);
}

// The window it opens in is no target for what is chosen.
void BPopUpMenu::AttachedToWindow()
{
    BView::AttachedToWindow();
    ResizeToPreferred();
}

void BPopUpMenu::SetAsyncAutoDestruct(bool on) { fAutoDestruct = on; }
bool BPopUpMenu::AsyncAutoDestruct() const { return fAutoDestruct; }
BPoint BPopUpMenu::ScreenLocation()
{
    return Superitem() != nullptr ? BMenu::ScreenLocation() : fWhere;
}

BMenuItem* BPopUpMenu::Go(BPoint where, bool autoInvoke, bool keepOpen, bool async)
{
    return Go(where, autoInvoke, keepOpen, BRect(), async);
}

BMenuItem* BPopUpMenu::Go(BPoint where, bool autoInvoke, bool keepOpen, BRect openRect, bool async)
{
    if (fOpen.exchange(true))
        return nullptr;
    _WaitForTracking();
    fWhere = where;
    auto follow = [=, this](BWindow* caller) {
        BMenuItem* chosen = Tracker(this, openRect, keepOpen).Run(caller);
        fOpen = false;
        if (chosen != nullptr && autoInvoke)
            chosen->Invoke();
        return chosen;
    };
    BLooper* looper = BLooper::LooperForThread(find_thread(nullptr));
    if (!async)
        return follow(dynamic_cast<BWindow*>(looper));
    auto* job = new std::function<void()>([=, this] {
        follow(nullptr);
        if (fAutoDestruct)
            delete this;
    });
    fTracking = spawn_thread(
        [](void* data) -> status_t {
            auto* work = static_cast<std::function<void()>*>(data);
            (*work)();
            delete work;
            return B_OK;
        },
        "menu tracking", B_DISPLAY_PRIORITY, job);
    if (fTracking < B_OK || resume_thread(fTracking) != B_OK) {
        delete job;
        fOpen = false;
    }
    return nullptr;
}

// A menu that has closed may still be sending its choice.
void BPopUpMenu::_WaitForTracking()
{
    status_t result;
    if (fTracking >= B_OK && fTracking != find_thread(nullptr))
        wait_for_thread(fTracking, &result);
    fTracking = -1;
}
