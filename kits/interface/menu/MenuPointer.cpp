// How the pointer walks through menus.

#include <MenuItem.h>
#include <Window.h>

#include <algorithm>
#include <cmath>

#include <interface/menu/MenuLevels.h>
#include <interface/menu/MenuPrivate.h>

namespace BPrivate {

using server::EventKind;

static const bigtime_t kRest_us = 100000;      // on an item until its menu opens
static const bigtime_t kPatience_us = 300000;  // with a pointer on its way to a submenu
static const bigtime_t kTrail_us = 100000;     // how far back the way of the pointer is known
static const bigtime_t kClick_us = 300000;     // a shorter press leaves the menu open
static const float kClickDistance = 4;         // pixels
static const bigtime_t kScrollStep_us = 15000;
static const float kWheelLines = 3;

void MenuTracker::_Handle(const server::Event& event)
{
    switch (event.kind) {
        case EventKind::MouseMoved:
            _Moved(event.screenWhere);
            break;
        case EventKind::MouseDown:
            _Pressed(event.screenWhere);
            break;
        case EventKind::MouseUp:
            if (event.buttons == 0)
                _Released(event.screenWhere);
            break;
        case EventKind::MouseWheel:
            _Wheel(event.wheelY * kWheelLines);
            break;
        case EventKind::KeyDown:
            _Key(event);
            break;
        case EventKind::Activated:  // the window is no longer the active one
            _End(nullptr);
            break;
        default:
            break;
    }
}

// The topmost menu at a place; -1 for none.
int32 MenuTracker::_LevelAt(BPoint where)
{
    for (size_t level = fLevels.size(); level-- > 0;) {
        const bool there = _IsBar(level) || _With(level, [](BMenu&) {});
        if (there && fLevels[level].frame.Contains(where))
            return static_cast<int32>(level);
    }
    return -1;
}

// The item at a place, null for none; only to be compared.
BMenuItem* MenuTracker::_ItemAt(size_t level, BPoint where, bool* isChoice)
{
    BMenuItem* item = nullptr;
    *isChoice = false;
    _With(level, [&](BMenu& menu) {
        MenuWindow* const window = fLevels[level].window;
        if (window != nullptr && window->StripAt(where) != 0)
            return;
        item = MenuPrivate::HitTest(&menu, menu.ConvertFromScreen(where));
        *isChoice = MenuPrivate::IsChoice(item);
    });
    return item;
}

// Selects what is at a place and closes the menus of what was. Its own menu opens after a rest, or
// at once.
void MenuTracker::_PointAt(size_t level, BPoint where, bool openNow)
{
    bool isChoice;
    BMenuItem* const item = _ItemAt(level, where, &isChoice);
    if (item == nullptr && _IsBar(level) && fLevels.size() > 1)
        return;  // beside the titles: what is open stays so
    BMenuItem* const wanted = isChoice ? item : nullptr;
    bool changed = false;
    _With(level, [&](BMenu& menu) { changed = wanted != MenuPrivate::Selected(&menu); });
    if (changed)
        _CloseTo(level + 1);
    bool has_menu = false;
    _With(level, [&](BMenu& menu) {
        if (wanted != nullptr && menu.IndexOf(wanted) < 0)
            return;  // it went this moment
        MenuPrivate::Select(&menu, wanted);
        has_menu = wanted != nullptr && wanted->Submenu() != nullptr;
    });
    if (!has_menu || level + 1 != fLevels.size())
        fOpenAt = B_INFINITE_TIMEOUT;
    else if (openNow || _IsBar(level))
        _OpenSelected(level);
    else if (changed || fOpenAt == B_INFINITE_TIMEOUT)
        fOpenAt = system_time() + kRest_us;
}

void MenuTracker::_Moved(BPoint where)
{
    const bigtime_t now = system_time();
    std::erase_if(fTrail, [=](const Trail& step) { return step.when < now - kTrail_us; });
    fTrail.push_back({fPointer, now});
    fPointer = where;
    _Follow();
}

void MenuTracker::_Follow()
{
    const int32 level = _LevelAt(fPointer);
    _WatchStrip(level, fPointer);
    const size_t last = fLevels.size() - 1;
    if (level < 0) {
        // What has no open menu is left.
        fOpenAt = B_INFINITE_TIMEOUT;
        if (!_IsBar(last) || fLevels.size() == 1)
            _With(last, [](BMenu& menu) { MenuPrivate::Select(&menu, nullptr); });
        return;
    }
    const auto at = static_cast<size_t>(level);
    if (at < last && _HeadsForSubmenu(at, fPointer)) {
        fSettleAt = system_time() + kPatience_us;
        return;
    }
    fSettleAt = B_INFINITE_TIMEOUT;
    _PointAt(at, fPointer, false);
}

// True for a pointer that moves towards the menu beside its level: within the triangle of where it
// was a moment ago and the near edge of that menu.
bool MenuTracker::_HeadsForSubmenu(size_t level, BPoint where)
{
    if (fTrail.empty() || _IsRow(level))
        return false;
    const BPoint from = fTrail.front().where;
    const BRect target = fLevels[level + 1].frame;
    const float edge = target.left > from.x ? target.left : target.right;
    const float way = edge - from.x;
    const float gone = where.x - from.x;
    if (way == 0 || gone * way <= 0)
        return false;
    const float part = std::min(1.0f, gone / way);
    const float top = from.y + (target.top - from.y) * part - 1;
    const float bottom = from.y + (target.bottom - from.y) * part + 1;
    return where.y >= top && where.y <= bottom;
}

// --- buttons

void MenuTracker::_Pressed(BPoint where)
{
    const int32 level = _LevelAt(where);
    fPointer = where;
    fPressedAt = where;
    fPressedWhen = system_time();
    fHeld = true;
    fOpening = false;
    bool isChoice;
    if (level < 0 || (_IsBar(level) && _ItemAt(level, where, &isChoice) == nullptr)) {
        _End(nullptr);
        return;
    }
    // A second press on the title of an open menu closes it.
    if (_IsBar(level) && fLevels.size() > 1) {
        BMenuItem* const item = _ItemAt(level, where, &isChoice);
        _With(level, [&](BMenu& menu) {
            if (item == MenuPrivate::Selected(&menu))
                _End(nullptr);
        });
        if (fEnded)
            return;
    }
    _PointAt(static_cast<size_t>(level), where, true);
}

// True for the release of the press that opened the menus, where they stay open without it.
bool MenuTracker::_LeavesOpen(BPoint where) const
{
    if (!fOpening)
        return false;
    if (fOptions.openRect.IsValid() && fOptions.openRect.Contains(where))
        return true;
    const bool moved = std::fabs(where.x - fPressedAt.x) > kClickDistance ||
                       std::fabs(where.y - fPressedAt.y) > kClickDistance;
    return !moved && system_time() - fPressedWhen < kClick_us;
}

void MenuTracker::_Released(BPoint where)
{
    if (!std::exchange(fHeld, false))
        return;
    fPointer = where;
    const int32 level = _LevelAt(where);
    bool isChoice = false;
    BMenuItem* const item =
        level >= 0 ? _ItemAt(static_cast<size_t>(level), where, &isChoice) : nullptr;
    const bool on_bar = level >= 0 && _IsBar(level);
    const bool is_plain = on_bar && fLevels.size() == 1;  // a title without a menu
    const bool leaves_open = !is_plain && (_LeavesOpen(where) || (on_bar && fOpening));
    const bool stays_open = fSticky && std::exchange(fOpening, false) && level < 0;
    fOpening = false;
    if (leaves_open && menu_settings().click_to_open) {
        fSticky = true;
        return;
    }
    if (stays_open || fScrollAt != B_INFINITE_TIMEOUT)
        return;
    if (item == nullptr || !isChoice) {
        _End(nullptr);
        return;
    }
    _PointAt(static_cast<size_t>(level), where, true);
    BMenuItem* chosen = nullptr;
    _With(static_cast<size_t>(level), [&](BMenu& menu) {
        if (menu.IndexOf(item) >= 0 && item->Submenu() == nullptr)
            chosen = item;
    });
    if (chosen != nullptr)
        _End(chosen);
    else
        fSticky = true;  // its menu is open
}

// --- menus that are taller than the screen

void MenuTracker::_WatchStrip(int32 level, BPoint where)
{
    int32 way = 0;
    if (level >= 0 && !_IsBar(level))
        _With(static_cast<size_t>(level),
              [&](BMenu&) { way = fLevels[level].window->StripAt(where); });
    if (way == 0) {
        fScrollAt = B_INFINITE_TIMEOUT;
        return;
    }
    if (fScrollAt == B_INFINITE_TIMEOUT || way != fScrollWay)
        fScrollBegan = fScrollAt = system_time();
    fScrollLevel = static_cast<size_t>(level);
    fScrollWay = way;
}

// The longer the pointer stays, the faster.
void MenuTracker::_ScrollOn()
{
    const bigtime_t now = system_time();
    const float step = std::min(40.0f, 2 + static_cast<float>(now - fScrollBegan) / 100000);
    bool moved = false;
    if (fScrollLevel < fLevels.size()) {
        _With(fScrollLevel,
              [&](BMenu&) { moved = fLevels[fScrollLevel].window->Scroll(step * fScrollWay); });
    }
    // At the end it waits for the pointer to leave.
    fScrollAt = moved ? now + kScrollStep_us : now + 10 * kScrollStep_us;
}

void MenuTracker::_Wheel(float lines)
{
    const int32 level = _LevelAt(fPointer);
    if (level < 0 || _IsBar(level))
        return;
    bool moved = false;
    _With(static_cast<size_t>(level), [&](BMenu& menu) {
        BMenuItem* const first = menu.ItemAt(0);
        if (first != nullptr)
            moved = fLevels[level].window->Scroll(lines * (first->Frame().Height() + 2));
    });
    if (moved)
        _PointAt(static_cast<size_t>(level), fPointer, false);
}

}  // namespace BPrivate
