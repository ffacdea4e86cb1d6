// How keys walk through menus.

#include <InterfaceDefs.h>
#include <MenuItem.h>

#include <interface/menu/MenuLevels.h>
#include <interface/menu/MenuPrivate.h>

namespace BPrivate {

static const int32 kF10Key = 0x0b;

void MenuTracker::_Key(const server::Event& event)
{
    const int32 held = event.modifiers & (B_COMMAND_KEY | B_CONTROL_KEY | B_OPTION_KEY);
    const auto key = static_cast<uint8>(event.bytes[0]);
    if (event.byteCount == 0)
        return;
    if (key == B_ESCAPE) {
        const size_t least = _IsBar(0) ? 2 : 1;
        if (held != 0 || fLevels.size() <= least)
            _End(nullptr);
        else
            _CloseTo(fLevels.size() - 1);
        return;
    }
    if (key == B_FUNCTION_KEY && event.key == kF10Key)
        _End(nullptr);
    if (held != 0 || key == B_FUNCTION_KEY)
        return;
    const bool typed = fKeyboard;
    _UseKeyboard();
    if (_Walk(key))
        return;
    if (key > B_SPACE)
        _Letter(event.bytes, typed);
}

bool MenuTracker::_Walk(uint8 key)
{
    const size_t last = fLevels.size() - 1;
    const bool row = _IsRow(last);
    switch (key) {
        case B_UP_ARROW:
            row ? _Into() : _Step(-1);
            return true;
        case B_DOWN_ARROW:
            row ? _Into() : _Step(1);
            return true;
        case B_LEFT_ARROW:
            row ? _Step(-1) : _OutOf();
            return true;
        case B_RIGHT_ARROW:
            row ? _Step(1) : _Into();
            return true;
        case B_HOME:
        case B_END:
            _With(last, [&](BMenu& menu) {
                _GoTo(MenuPrivate::NextChoice(&menu, nullptr, key == B_HOME ? 1 : -1), last);
            });
            return true;
        case B_PAGE_UP:
        case B_PAGE_DOWN:
            _Page(key == B_PAGE_UP ? -1 : 1);
            return true;
        case B_ENTER:
        case B_SPACE:
            _Enter();
            return true;
        default:
            return false;
    }
}

// Triggers are shown from the first key on.
void MenuTracker::_UseKeyboard()
{
    if (fKeyboard)
        return;
    fKeyboard = true;
    for (size_t level = 0; level < fLevels.size(); level++)
        _With(level, [](BMenu& menu) { MenuPrivate::ShowTriggers(&menu, true); });
}

// The level's window locked.
void MenuTracker::_GoTo(BMenuItem* item, size_t level)
{
    if (item == nullptr)
        return;
    fOpenAt = B_INFINITE_TIMEOUT;
    MenuWindow* const window = fLevels[level].window;
    if (window != nullptr)
        window->ScrollTo(item);
    if (BMenu* menu = item->Menu())
        MenuPrivate::Select(menu, item);
}

void MenuTracker::_Step(int32 step)
{
    const size_t last = fLevels.size() - 1;
    _With(last, [&](BMenu& menu) {
        _GoTo(MenuPrivate::NextChoice(&menu, MenuPrivate::Selected(&menu), step), last);
    });
}

// As far as fits the screen, but not around the end.
void MenuTracker::_Page(int32 step)
{
    const size_t last = fLevels.size() - 1;
    MenuWindow* const window = fLevels[last].window;
    if (window == nullptr)
        return;
    _With(last, [&](BMenu& menu) {
        BMenuItem* const from = MenuPrivate::Selected(&menu);
        const float start = from != nullptr ? from->Frame().top : 0;
        BMenuItem* goal = from;
        for (;;) {
            BMenuItem* const next = MenuPrivate::NextChoice(&menu, goal, step);
            if (next == nullptr ||
                (goal != nullptr && (menu.IndexOf(next) - menu.IndexOf(goal)) * step <= 0))
                break;
            const float distance = (next->Frame().top - start) * static_cast<float>(step);
            if (goal != from && distance > window->PageHeight())
                break;
            goal = next;
        }
        _GoTo(goal, last);
    });
}

void MenuTracker::_Enter()
{
    const size_t last = fLevels.size() - 1;
    BMenuItem* chosen = nullptr;
    bool has_menu = false;
    _With(last, [&](BMenu& menu) {
        BMenuItem* const item = MenuPrivate::Selected(&menu);
        has_menu = item != nullptr && item->Submenu() != nullptr;
        if (MenuPrivate::IsChoice(item) && !has_menu)
            chosen = item;
    });
    if (has_menu)
        _Into();
    else if (chosen != nullptr)
        _End(chosen);
}

// Into the menu of what is selected, or on to the next title of a bar.
void MenuTracker::_Into()
{
    const size_t last = fLevels.size() - 1;
    bool some = false;
    _With(last, [&](BMenu& menu) { some = MenuPrivate::Selected(&menu) != nullptr; });
    const bool below_title = last == 1 && _IsRow(0);
    if (!some && last > 0 && !below_title)
        _Step(1);  // it is open already
    else if (_OpenSelected(last))
        _Step(1);
    else if (last > 0 && _IsRow(0))
        _NextTitle(1);
}

void MenuTracker::_OutOf()
{
    if (fLevels.size() == 2 && _IsRow(0))
        _NextTitle(-1);
    else if (fLevels.size() > 1)
        _CloseTo(fLevels.size() - 1);
}

void MenuTracker::_NextTitle(int32 step)
{
    _CloseTo(1);
    _Step(step);
    if (_OpenSelected(0))
        _Step(1);
}

// Triggers count once they have been seen.
void MenuTracker::_Letter(const char* character, bool triggers)
{
    const size_t last = fLevels.size() - 1;
    bool enters = false;
    _With(last, [&](BMenu& menu) {
        BMenuItem* const triggered = triggers ? MenuPrivate::ByTrigger(&menu, character) : nullptr;
        enters = triggered != nullptr;
        _GoTo(enters ? triggered : MenuPrivate::ByLetter(&menu, character), last);
    });
    if (enters)
        _Enter();
}

}  // namespace BPrivate
