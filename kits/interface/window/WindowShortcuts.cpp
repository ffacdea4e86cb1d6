// Command keys: the window's own and those that a program adds.

#include <Window.h>

#include <Application.h>
#include <Autolock.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <Messenger.h>
#include <View.h>

#include <interface/window/WindowPrivate.h>

using BPrivate::Shortcut;
using BPrivate::ShortcutKey;

static const uint32 kShortcutModifiers =
    B_SHIFT_KEY | B_COMMAND_KEY | B_CONTROL_KEY | B_OPTION_KEY | B_MENU_KEY;

struct DefaultShortcut {
    char key;
    Shortcut::To to;
    uint32 what;
};

static const DefaultShortcut kDefaults[] = {
    {'w', Shortcut::To::Close, B_QUIT_REQUESTED},
    {'q', Shortcut::To::Application, B_QUIT_REQUESTED},
    {'x', Shortcut::To::Focus, B_CUT},
    {'c', Shortcut::To::Focus, B_COPY},
    {'v', Shortcut::To::Focus, B_PASTE},
    {'a', Shortcut::To::Focus, B_SELECT_ALL},
};

static ShortcutKey shortcut_key(uint32 key, uint32 modifiers)
{
    if (key >= 'A' && key <= 'Z')
        key += 'a' - 'A';
    return {key, (modifiers & kShortcutModifiers) | B_COMMAND_KEY};
}

void BWindow::_AddDefaultShortcuts()
{
    for (const DefaultShortcut& row : kDefaults) {
        Shortcut& shortcut = fData->shortcuts[shortcut_key(row.key, 0)];
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
    return lock.IsLocked() && fData->shortcuts.count(shortcut_key(key, modifiers)) != 0;
}

void BWindow::RemoveShortcut(uint32 key, uint32 modifiers)
{
    BAutolock lock(this);
    if (lock.IsLocked())
        fData->shortcuts.erase(shortcut_key(key, modifiers));
}

// The keys that a press may stand for: the one without modifiers first, then the character typed,
// for which Shift may have been needed.
static const Shortcut* find_shortcut(const std::map<ShortcutKey, Shortcut>& shortcuts,
                                     const BMessage* message)
{
    int32 modifiers = 0, raw = 0;
    int8 byte = 0;
    message->FindInt32("modifiers", &modifiers);
    message->FindInt32("raw_char", &raw);
    message->FindInt8("byte", &byte);
    const uint32 held = static_cast<uint32>(modifiers) & kShortcutModifiers;
    const uint32 typed = static_cast<uint8>(byte);
    const ShortcutKey candidates[] = {
        shortcut_key(static_cast<uint32>(raw), held),
        shortcut_key(typed, held),
        shortcut_key(typed, held & ~B_SHIFT_KEY),
    };
    for (const ShortcutKey& candidate : candidates) {
        const auto found = shortcuts.find(candidate);
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

void BWindow::_RunShortcut(BMessage* key)
{
    // The program may bring its menus, and with them its shortcuts, up to date.
    MenusBeginning();
    if (const Shortcut* shortcut = find_shortcut(fData->shortcuts, key))
        _SendShortcut(*shortcut, key);
    MenusEnded();
}

void BWindow::_SendShortcut(const Shortcut& shortcut, const BMessage* key)
{
    BMessage message(*shortcut.message);
    bigtime_t when;
    if (!message.HasInt64("when") && key->FindInt64("when", &when) == B_OK)
        message.AddInt64("when", when);
    switch (shortcut.to) {
        case Shortcut::To::Window:
            PostMessage(&message, this);
            break;
        case Shortcut::To::Focus:
            if (fData->focus != nullptr)
                PostMessage(&message, fData->focus);
            break;
        case Shortcut::To::Target:
            shortcut.target.SendMessage(&message);
            break;
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
