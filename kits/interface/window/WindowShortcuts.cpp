// Command keys: the window's own and those that a program adds.

#include <Window.h>

#include <Application.h>
#include <Autolock.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <Messenger.h>
#include <View.h>

#include <algorithm>

#include <interface/menu/MenuPrivate.h>
#include <interface/window/WindowPrivate.h>

using BPrivate::MenuPrivate;
using BPrivate::Shortcut;
using BPrivate::ShortcutKey;

static const uint32 kShortcutModifiers =
    B_SHIFT_KEY | B_COMMAND_KEY | B_CONTROL_KEY | B_OPTION_KEY | B_MENU_KEY;

struct DefaultShortcut {
    char key;
    Shortcut::To to;
    uint32 what;
    uint32 modifiers = 0;
};

static const DefaultShortcut kDefaults[] = {
    {'w', Shortcut::To::Close, B_QUIT_REQUESTED},
    {'q', Shortcut::To::Application, B_QUIT_REQUESTED},
    {'x', Shortcut::To::Focus, B_CUT},
    {'c', Shortcut::To::Focus, B_COPY},
    {'v', Shortcut::To::Focus, B_PASTE},
    {'a', Shortcut::To::Focus, B_SELECT_ALL},
    {'z', Shortcut::To::Focus, B_UNDO},
    {'z', Shortcut::To::Focus, B_REDO, B_SHIFT_KEY},
};

static ShortcutKey shortcut_key(uint32 key, uint32 modifiers)
{
    if (key >= 'A' && key <= 'Z')
        key += 'a' - 'A';
    return {key, (modifiers & kShortcutModifiers) | B_COMMAND_KEY};
}

// The item of the window's bars that a key stands for; null if none.
static BMenuItem* find_menu_item(const std::vector<BMenuBar*>& bars,
                                 const std::vector<ShortcutKey>& keys)
{
    for (const ShortcutKey& key : keys) {
        for (const BMenuBar* bar : bars) {
            if (BMenuItem* item = MenuPrivate::ByShortcut(bar, key.first, key.second))
                return item;
        }
    }
    return nullptr;
}

void BWindow::_AddDefaultShortcuts()
{
    for (const DefaultShortcut& row : kDefaults) {
        Shortcut& shortcut = fData->shortcuts[shortcut_key(row.key, row.modifiers)];
        shortcut.to = row.to;
        shortcut.message = std::make_unique<BMessage>(row.what);
    }
}

void BWindow::AddShortcut(uint32 key, uint32 modifiers, BMessage* message)
{
    AddShortcut(key, modifiers, message, this);
}

void BWindow::AddShortcut(uint32 key, uint32 modifiers, BMessage* message, BHandler* target)
{
    std::unique_ptr<BMessage> owned(message);
    BAutolock lock(this);
    if (!lock.IsLocked() || owned == nullptr)
        return;
    Shortcut& shortcut = fData->shortcuts[shortcut_key(key, modifiers)];
    shortcut.to = target == nullptr ? Shortcut::To::Focus
                  : target == this  ? Shortcut::To::Window
                                    : Shortcut::To::Target;
    shortcut.target = shortcut.to == Shortcut::To::Target ? BMessenger(target) : BMessenger();
    shortcut.message = std::move(owned);
}

bool BWindow::HasShortcut(uint32 key, uint32 modifiers)
{
    BAutolock lock(this);
    const ShortcutKey wanted = shortcut_key(key, modifiers);
    return lock.IsLocked() && (fData->shortcuts.count(wanted) != 0 ||
                               find_menu_item(fData->menuBars, {wanted}) != nullptr);
}

void BWindow::RemoveShortcut(uint32 key, uint32 modifiers)
{
    BAutolock lock(this);
    if (lock.IsLocked())
        fData->shortcuts.erase(shortcut_key(key, modifiers));
}

// The keys that a press may stand for: the one without modifiers first, then the character typed,
// for which Shift may have been needed. `held` are the modifiers, as they are or as they count.
static std::vector<ShortcutKey> candidates(const BMessage* message, uint32 held)
{
    int32 raw = 0;
    int8 byte = 0;
    message->FindInt32("raw_char", &raw);
    message->FindInt8("byte", &byte);
    const uint32 typed = static_cast<uint8>(byte);
    return {shortcut_key(static_cast<uint32>(raw), held), shortcut_key(typed, held),
            shortcut_key(typed, held & ~B_SHIFT_KEY)};
}

static const Shortcut* find_shortcut(const std::map<ShortcutKey, Shortcut>& shortcuts,
                                     const std::vector<ShortcutKey>& keys)
{
    for (const ShortcutKey& key : keys) {
        const auto found = shortcuts.find(key);
        if (found != shortcuts.end())
            return &found->second;
    }
    return nullptr;
}

static BMessage key_request(const BMessage* key)
{
    BMessage request(B_QUIT_REQUESTED);
    bigtime_t when;
    if (key->FindInt64("when", &when) == B_OK)
        request.AddInt64("when", when);
    request.AddBool("shortcut", true);
    return request;
}

void BWindow::_CloseByKey(const BMessage* key)
{
    if (IsModal() || (fData->flags & B_NOT_CLOSABLE) != 0)
        return;
    BMessage request = key_request(key);
    PostMessage(&request);
}

// Menus have the first word; what they have disabled is nobody's.
void BWindow::_RunShortcut(BMessage* key, uint32 held)
{
    const std::vector<ShortcutKey> keys = candidates(key, held);
    // The program may bring its menus, and with them its shortcuts, up to date.
    MenusBeginning();
    BMenuItem* item = find_menu_item(fData->menuBars, keys);
    if (item != nullptr)
        MenuPrivate::Invoke(item);
    MenusEnded();
    if (item != nullptr)
        return;
    if (const Shortcut* shortcut = find_shortcut(fData->shortcuts, keys))
        _SendShortcut(*shortcut, key);
}

// A Control key that is a shortcut counts as the Command key, which is where users of this host
// look for it; every other one stays what it is.
bool BWindow::_RunControlShortcut(BMessage* key, uint32 held)
{
    if (!BPrivate::control_is_command())
        return false;
    const uint32 counted = (held & ~static_cast<uint32>(B_CONTROL_KEY)) | B_COMMAND_KEY;
    const std::vector<ShortcutKey> keys = candidates(key, counted);
    if (find_menu_item(fData->menuBars, keys) == nullptr &&
        find_shortcut(fData->shortcuts, keys) == nullptr)
        return false;
    _RunShortcut(key, counted);
    return true;
}

// The key that enters the bar. False if there is none to be entered.
bool BWindow::_EnterMenuBar()
{
    const std::vector<BMenuBar*>& bars = fData->menuBars;
    const auto bar = std::find(bars.begin(), bars.end(), fData->keyMenuBar);
    if (bar == bars.end() || (*bar)->CountItems() == 0)
        return false;
    BMenuItem* const first = MenuPrivate::NextChoice(*bar, nullptr, 1);
    MenuPrivate::StartBar(*bar, first != nullptr ? (*bar)->IndexOf(first) : 0);
    return true;
}

// What a key asks of the window's own handlers is done in its turn among the keys: what is typed
// behind "select all" has to meet the selection. A handler may remove the shortcut, so nothing of
// it is used after that.
void BWindow::_SendShortcut(const Shortcut& shortcut, const BMessage* key)
{
    BMessage message(*shortcut.message);
    bigtime_t when;
    if (!message.HasInt64("when") && key->FindInt64("when", &when) == B_OK)
        message.AddInt64("when", when);
    switch (shortcut.to) {
        case Shortcut::To::Window:
            _DispatchCopy(&message, this);
            break;
        case Shortcut::To::Focus:
            if (fData->focus != nullptr)
                _DispatchCopy(&message, fData->focus);
            break;
        case Shortcut::To::Target: {
            BLooper* looper = nullptr;
            BHandler* target = shortcut.target.Target(&looper);
            if (looper == this && target != nullptr)
                _DispatchCopy(&message, target);
            else
                shortcut.target.SendMessage(&message);
            break;
        }
        case Shortcut::To::Close:
            _CloseByKey(key);
            break;
        case Shortcut::To::Application:
            if (!IsModal() && be_app != nullptr) {
                BMessage request = key_request(key);
                be_app->PostMessage(&request);
            }
            break;
    }
}

void BWindow::MenusBeginning() {}

void BWindow::MenusEnded() {}
