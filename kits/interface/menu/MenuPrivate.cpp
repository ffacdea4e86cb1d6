// What is chosen by keys: the next item, first letters, triggers, shortcuts.

#include <interface/menu/MenuPrivate.h>

#include <InterfaceDefs.h>
#include <SeparatorItem.h>
#include <Window.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <interface/controls/Look.h>

namespace BPrivate {

bool control_is_command()
{
    static const bool alt = [] {
        const char* setting = getenv("PLINTH_COMMAND_KEY");
        return setting != nullptr && strcasecmp(setting, "alt") == 0;
    }();
    return !alt;
}

uint32 MenuPrivate::State(bool enabled, bool selected)
{
    uint32 state = selected ? Look::kOn : Look::kPlain;
    return enabled ? state : state | Look::kDisabled;
}

bool MenuPrivate::IsChoice(const BMenuItem* item)
{
    return item != nullptr && item->IsEnabled() &&
           dynamic_cast<const BSeparatorItem*>(item) == nullptr;
}

BMenuItem* MenuPrivate::NextChoice(const BMenu* menu, const BMenuItem* from, int32 step)
{
    const int32 count = menu->CountItems();
    int32 index = from != nullptr ? menu->IndexOf(const_cast<BMenuItem*>(from))
                  : step > 0      ? -1
                                  : count;
    for (int32 tries = 0; tries < count; tries++) {
        index = (index + step + count) % count;
        if (IsChoice(menu->ItemAt(index)))
            return menu->ItemAt(index);
    }
    return nullptr;
}

// True if the label has the character of a key at `at`; case is nothing between letters of ASCII.
static bool has_character(const char* label, size_t at, const char* character)
{
    if (character[1] == '\0')
        return tolower(static_cast<uint8>(label[at])) == tolower(static_cast<uint8>(character[0]));
    return strncmp(label + at, character, strlen(character)) == 0;
}

BMenuItem* MenuPrivate::ByLetter(const BMenu* menu, const char* character)
{
    const BMenuItem* from = Selected(menu);
    for (int32 tries = 0; tries < menu->CountItems(); tries++) {
        BMenuItem* item = NextChoice(menu, from, 1);
        if (item == nullptr || has_character(item->Label(), 0, character))
            return item;
        from = item;
    }
    return nullptr;
}

// --- triggers

// Where the label has the trigger that the program chose; -1 if nowhere.
static int32 chosen_trigger(const BMenuItem* item)
{
    const char own[2] = {item->Trigger(), '\0'};
    const size_t length = strlen(item->Label());
    for (size_t at = 0; own[0] != '\0' && at < length; at++) {
        if (has_character(item->Label(), at, own))
            return static_cast<int32>(at);
    }
    return -1;
}

// A letter or digit that no item before has, capitals first; -1 if there is none.
static int32 free_trigger(const BMenuItem* item, const std::vector<bool>& taken)
{
    const std::string label = item->Label();
    for (bool capital : {true, false}) {
        for (size_t at = 0; at < label.size(); at++) {
            const auto character = static_cast<uint8>(label[at]);
            if (character < 0x80 && isalnum(character) &&
                (!capital || isupper(character) || isdigit(character)) &&
                !taken[tolower(character)])
                return static_cast<int32>(at);
        }
    }
    return -1;
}

void MenuPrivate::ShowTriggers(BMenu* menu, bool shown)
{
    menu->fShowsTriggers = shown && menu->AreTriggersEnabled();
    std::vector<bool> taken(256);
    auto assign = [&](bool own) {
        for (int32 i = 0; i < menu->CountItems(); i++) {
            BMenuItem* item = menu->ItemAt(i);
            if (own)
                item->fTriggerAt = chosen_trigger(item);
            else if (item->fTriggerAt < 0)
                item->fTriggerAt = free_trigger(item, taken);
            if (item->fTriggerAt >= 0)
                taken[tolower(static_cast<uint8>(item->Label()[item->fTriggerAt]))] = true;
        }
    };
    assign(true);
    assign(false);
    menu->Invalidate();
}

BMenuItem* MenuPrivate::ByTrigger(const BMenu* menu, const char* character)
{
    if (!menu->fShowsTriggers)
        return nullptr;
    for (int32 i = 0; i < menu->CountItems(); i++) {
        BMenuItem* item = menu->ItemAt(i);
        if (item->fTriggerAt >= 0 && IsChoice(item) &&
            has_character(item->Label(), item->fTriggerAt, character))
            return item;
    }
    return nullptr;
}

// --- titles

void MenuPrivate::DrawTitle(BMenuItem* title, BRect room)
{
    BMenu* const menu = title->Menu();
    const Look look(menu);
    menu->MovePenTo(title->ContentLocation());
    look.DrawLabel(title->Label(), room, B_ALIGN_LEFT, 0);
}

// --- shortcuts

static uint32 lower(uint32 key) { return key >= 'A' && key <= 'Z' ? key + ('a' - 'A') : key; }

BMenuItem* MenuPrivate::ByShortcut(const BMenu* menu, uint32 key, uint32 modifiers)
{
    for (int32 i = 0; i < menu->CountItems(); i++) {
        BMenuItem* item = menu->ItemAt(i);
        if (item->fShortcut != 0 && lower(static_cast<uint8>(item->fShortcut)) == lower(key) &&
            item->fModifiers == modifiers)
            return item;
        if (item->fSubmenu != nullptr) {
            if (BMenuItem* found = ByShortcut(item->fSubmenu, key, modifiers))
                return found;
        }
    }
    return nullptr;
}

struct KeyName {
    char key;
    const char* name;
};

static const KeyName kKeyNames[] = {
    {B_BACKSPACE, "Backspace"}, {B_ENTER, "Enter"},    {B_TAB, "Tab"},
    {B_ESCAPE, "Esc"},          {B_SPACE, "Space"},    {B_DELETE, "Del"},
    {B_INSERT, "Ins"},          {B_HOME, "Home"},      {B_END, "End"},
    {B_PAGE_UP, "PgUp"},        {B_PAGE_DOWN, "PgDn"}, {B_LEFT_ARROW, "Left"},
    {B_RIGHT_ARROW, "Right"},   {B_UP_ARROW, "Up"},    {B_DOWN_ARROW, "Down"},
};

// What the user types: Control for the Command key, unless a setting says otherwise.
std::string MenuPrivate::ShortcutText(const BMenuItem* item)
{
    const uint32 modifiers = item->fModifiers;
    std::string text = control_is_command() ? "Ctrl+" : "Alt+";
    if ((modifiers & B_CONTROL_KEY) != 0)
        text = "Ctrl+Alt+";
    if ((modifiers & B_OPTION_KEY) != 0)
        text += "Opt+";
    if ((modifiers & B_MENU_KEY) != 0)
        text += "Menu+";
    if ((modifiers & B_SHIFT_KEY) != 0)
        text += "Shift+";
    for (const KeyName& row : kKeyNames) {
        if (row.key == item->fShortcut)
            return text + row.name;
    }
    const auto key = static_cast<uint8>(item->fShortcut);
    return text + (key < 0x80 ? static_cast<char>(toupper(key)) : '?');
}

void MenuPrivate::SetDefaultTarget(BMenuItem* item, const BWindow* before, BWindow* after)
{
    const BHandler* own = before;
    if (!item->Messenger().IsValid() || (own != nullptr && item->Target() == own))
        item->SetTarget(static_cast<BHandler*>(after));
    if (item->fSubmenu != nullptr)
        item->fSubmenu->_SetDefaultTargets(const_cast<BWindow*>(before), after);
}

}  // namespace BPrivate
