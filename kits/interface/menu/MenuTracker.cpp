// From the opening of a menu to the choice. The locks: that of a bar's window comes before those of
// the menus' own windows, of which one at a time is held.

#include <interface/menu/MenuTracker.h>

#include <MenuItem.h>
#include <Window.h>

#include <algorithm>
#include <utility>

#include <app/QuitAsked.h>
#include <interface/menu/MenuLevels.h>
#include <interface/menu/MenuPrivate.h>
#include <interface/menu/MenuWindow.h>
#include <interface/window/WindowPrivate.h>

#include "support/Mutex.h"

namespace BPrivate {

using server::EventKind;

namespace {

// Those that follow the user at present.
struct Trackers {
    BPrivate::Mutex lock;  // a leaf, but for the queues of input
    std::vector<MenuTracker*> running GUARDED_BY(lock);
};

// Never destroyed: threads may outlive main().
Trackers& trackers()
{
    static auto* const trackers = new Trackers;
    return *trackers;
}

}  // namespace

std::shared_ptr<MenuTracker> MenuTracker::Make(BMenu* root, const Options& options)
{
    return std::shared_ptr<MenuTracker>(new MenuTracker(root, options));
}

MenuTracker::MenuTracker(BMenu* root, const Options& options)
    : fRoot(root),
      fRootWindow(dynamic_cast<MenuWindow*>(root->Window()) != nullptr ? nullptr : root->Window()),
      fOptions(options),
      fMenus{root}
{
    BPrivate::MutexLock guard(trackers().lock);
    trackers().running.push_back(this);
}

MenuTracker::~MenuTracker()
{
    Release();
    BPrivate::MutexLock guard(trackers().lock);
    std::erase(trackers().running, this);
}

void MenuTracker::Forget(const BMenu* menu)
{
    BPrivate::MutexLock guard(trackers().lock);
    for (MenuTracker* tracker : trackers().running) {
        if (std::erase(tracker->fMenus, menu) == 0)
            continue;
        if (menu == tracker->fRoot)
            tracker->fRootGone = true;
        tracker->fInput.Cancel();
    }
}

bool MenuTracker::Cancel(const BMenu* menu)
{
    bool some = false;
    BPrivate::MutexLock guard(trackers().lock);
    for (MenuTracker* tracker : trackers().running) {
        const auto& menus = tracker->fMenus;
        if (std::find(menus.begin(), menus.end(), menu) == menus.end())
            continue;
        tracker->fInput.Cancel();
        some = true;
    }
    return some;
}

void MenuTracker::Forget(const BMenuItem* item)
{
    BPrivate::MutexLock guard(trackers().lock);
    for (MenuTracker* tracker : trackers().running) {
        auto* chosen = const_cast<BMenuItem*>(item);
        tracker->fChosen.compare_exchange_strong(chosen, nullptr);
        if (tracker->fAskedItem == item)
            tracker->fAskedItem = nullptr;
    }
}

void MenuTracker::CancelAll()
{
    BPrivate::MutexLock guard(trackers().lock);
    for (MenuTracker* tracker : trackers().running)
        tracker->fInput.Cancel();
}

void MenuTracker::Choose(const BMenu* menu, BMenuItem* item)
{
    BPrivate::MutexLock guard(trackers().lock);
    for (MenuTracker* tracker : trackers().running) {
        const auto& menus = tracker->fMenus;
        if (std::find(menus.begin(), menus.end(), menu) == menus.end())
            continue;
        tracker->fAskedMenu = menu;
        tracker->fAskedItem = item;
        tracker->fInput.Wake();
    }
}

// Does what another thread asked for: as the pointer there, and Enter.
void MenuTracker::_Obey()
{
    const BMenu* menu;
    BMenuItem* item;
    {
        BPrivate::MutexLock guard(trackers().lock);
        menu = fAskedMenu;
        item = std::exchange(fAskedItem, nullptr);
    }
    for (size_t level = 0; item != nullptr && level < fLevels.size(); level++) {
        bool is_there = false;
        _With(level, [&](BMenu& open) {
            is_there = &open == menu && open.IndexOf(item) >= 0 && MenuPrivate::IsChoice(item);
            if (is_there)
                _GoTo(item, level);
        });
        if (!is_there)
            continue;
        _CloseTo(level + 1);
        _Enter();
        return;
    }
}

bool MenuTracker::_LockRoot()
{
    if (fRootWindow == nullptr)
        return !fRootGone;
    if (!fRootWindow->Lock())
        return false;
    if (!fRootGone)
        return true;
    fRootWindow->Unlock();
    return false;
}

// Nobody has the input while its window is busy.
bool MenuTracker::_LockRootOrRelease()
{
    const bigtime_t kSoon_us = 100000;
    if (fRootWindow == nullptr)
        return _LockRoot();
    if (fRootWindow->LockWithTimeout(kSoon_us) != B_OK) {
        Release();
        return _LockRoot();
    }
    if (!fRootGone)
        return true;
    fRootWindow->Unlock();
    return false;
}

void MenuTracker::_UnlockRoot()
{
    if (fRootWindow != nullptr)
        fRootWindow->Unlock();
}

bool MenuTracker::_IsRow(size_t level)
{
    bool row = false;
    _With(level, [&](BMenu& menu) { row = MenuPrivate::Layout(&menu) == B_ITEMS_IN_ROW; });
    return row;
}

// --- opening and closing

void MenuTracker::Hold()
{
    BWindow* const owner = fRootWindow != nullptr ? fRootWindow : fOptions.caller;
    WindowData* const data = owner != nullptr ? WindowData::Of(owner) : nullptr;
    const bool in_turn = owner != nullptr && owner->Thread() == find_thread(nullptr);
    const BMessage* const turn = in_turn ? owner->CurrentMessage() : nullptr;
    const bool by_press = turn != nullptr && turn->what == B_MOUSE_DOWN;
    const bool by_hand = by_press || (turn != nullptr && turn->what == B_KEY_DOWN);
    uint32 buttons = 0;
    server::HoldInput(&fInput, data, by_hand ? data : nullptr, &fPointer, &buttons);
    fHolds = true;
    if (by_press) {
        fPointer = owner->ConvertToScreen(data->pointer);
        buttons = static_cast<uint32>(data->buttons);
    }
    fHeld = fOpening = buttons != 0;
    fSticky = fOptions.sticky || !fHeld;
    fPressedAt = fPointer;
}

void MenuTracker::Release()
{
    if (std::exchange(fHolds, false))
        server::ReleaseInput(&fInput);
}

BMenuItem* MenuTracker::Run()
{
    if (is_quit_asked())
        fInput.Cancel();
    if (_LockRoot()) {
        fPressedWhen = system_time();
        _Begin();
        _UnlockRoot();
    } else {
        fEnded = true;
    }
    BWindow* const caller = fOptions.caller;
    while (!fEnded && !fInput.IsCancelled()) {
        if (caller != nullptr && caller->IsLocked())
            caller->UpdateIfNeeded();
        server::Event event;
        if (fInput.Next(_Deadline(), &event))
            _Handle(event);
        _Obey();
        _TimesUp();
    }
    if (fInput.IsCancelled())
        fChosen = nullptr;
    _Finish();
    return fChosen;
}

void MenuTracker::_Begin()
{
    if (fRootWindow == nullptr && fRoot->Window() == nullptr) {
        if (!_Open(fRoot, fOptions.where, BRect()))
            fEnded = true;
    } else {
        fLevels.push_back(
            {dynamic_cast<MenuWindow*>(fRoot->Window()), fRoot->ConvertToScreen(fRoot->Bounds())});
        BMenuItem* const title = fRoot->ItemAt(fOptions.index);
        if (MenuPrivate::IsChoice(title))
            MenuPrivate::Select(fRoot, title);
        if (title != nullptr && fOptions.showMenu)
            _OpenSelected(0);
        if (!fOptions.sticky)
            _BeginAtPointer();
    }
    if (fOptions.byKey) {
        _UseKeyboard();
        if (fLevels.size() > 1)
            _Step(1);
    }
}

// The pointer may be elsewhere, and the click on a title without a menu may be over by now.
void MenuTracker::_BeginAtPointer()
{
    _PointAt(0, fPointer, true);
    if (fHeld || fLevels.size() > 1)
        return;
    BMenuItem* const title = MenuPrivate::Selected(fRoot);
    if (title == nullptr || title->Submenu() == nullptr)
        _End(title);
}

void MenuTracker::_End(BMenuItem* chosen)
{
    fChosen = chosen;
    fEnded = true;
}

void MenuTracker::_Finish()
{
    server::EndHold(&fInput);
    _CloseTo(0);
    if (fRootWindow != nullptr && _LockRootOrRelease()) {
        MenuPrivate::Select(fRoot, nullptr);
        MenuPrivate::ShowTriggers(fRoot, false);
        _UnlockRoot();
    }
    fDone = true;
}

void MenuTracker::InvokeChosen()
{
    if (fChosen == nullptr || !_LockRootOrRelease())
        return;
    if (BMenuItem* item = fChosen)
        MenuPrivate::Invoke(item);
    _UnlockRoot();
}

// Root locked. False if the menu is not to be opened.
bool MenuTracker::_Open(BMenu* menu, BPoint where, BRect from)
{
    if (menu->Window() != nullptr || !_AddDynamicItems(menu, from))
        return false;
    if (menu != fRoot) {
        BPrivate::MutexLock guard(trackers().lock);
        fMenus.push_back(menu);
    }
    MenuWindow* const window = MenuWindow::Open(menu, where);
    fLevels.push_back({window, window->Frame()});
    if (fKeyboard || menu_settings().triggers_always_shown)
        _With(fLevels.size() - 1, [](BMenu& opened) { MenuPrivate::ShowTriggers(&opened, true); });
    return true;
}

// `from`: the item whose menu it is, on the screen. The user may go elsewhere meanwhile.
bool MenuTracker::_AddDynamicItems(BMenu* menu, BRect from) const
{
    bool more = menu->AddDynamicItem(BMenu::B_INITIAL_ADD);
    while (more) {
        if (fInput.HasLeft(from.IsValid() ? from : BRect(fPointer, fPointer))) {
            menu->AddDynamicItem(BMenu::B_ABORT);
            return false;
        }
        more = menu->AddDynamicItem(BMenu::B_PROCESSING);
    }
    return true;
}

// Opens the menu of what is selected in the last level; true if there is one.
bool MenuTracker::_OpenSelected(size_t level)
{
    fOpenAt = B_INFINITE_TIMEOUT;
    if (level + 1 != fLevels.size() || !_LockRoot())
        return false;
    BMenu* submenu = nullptr;
    BRect from;
    _With(level, [&](BMenu& menu) {
        BMenuItem* const item = MenuPrivate::Selected(&menu);
        if (!MenuPrivate::IsChoice(item) || item->Submenu() == nullptr)
            return;
        submenu = item->Submenu();
        from = menu.ConvertToScreen(item->Frame());
    });
    const bool opened =
        submenu != nullptr && _Open(submenu, MenuPrivate::ScreenLocation(submenu), from);
    _UnlockRoot();
    return opened;
}

void MenuTracker::_CloseTo(size_t count)
{
    while (fLevels.size() > count) {
        MenuWindow* const window = fLevels.back().window;
        fLevels.pop_back();
        if (window == nullptr)
            continue;
        if (window->Lock()) {
            if (BMenu* menu = window->Menu(); menu != nullptr && menu != fRoot) {
                BPrivate::MutexLock guard(trackers().lock);
                std::erase(fMenus, menu);
            }
            window->End();
            window->Unlock();
        }
    }
    if (fScrollLevel >= count)
        fScrollAt = B_INFINITE_TIMEOUT;
    fSettleAt = B_INFINITE_TIMEOUT;
}

// --- what is due

bigtime_t MenuTracker::_Deadline() const
{
    static const bigtime_t kHookInterval_us = 50000;
    bigtime_t next = std::min({fOpenAt, fSettleAt, fScrollAt});
    BPrivate::MutexLock guard(trackers().lock);
    if (std::any_of(fMenus.begin(), fMenus.end(), MenuPrivate::HasHook))
        next = std::min(next, system_time() + kHookInterval_us);
    return next;
}

void MenuTracker::_TimesUp()
{
    const bigtime_t now = system_time();
    if (now >= fOpenAt)
        _OpenSelected(fLevels.size() - 1);
    if (now >= fSettleAt) {
        fSettleAt = B_INFINITE_TIMEOUT;
        fTrail.clear();
        _Follow();
    }
    if (now >= fScrollAt)
        _ScrollOn();
    _CallHooks();
}

void MenuTracker::_CallHooks()
{
    bool ends = false;
    for (size_t level = 0; level < fLevels.size(); level++)
        _With(level, [&](BMenu& menu) { ends = MenuPrivate::CallHook(&menu) || ends; });
    if (ends)
        _End(nullptr);
}

}  // namespace BPrivate
