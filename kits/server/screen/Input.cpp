// The keyboard: which keys are down, what a press types, modifiers and repeats. And the count of
// quick clicks.

#include "server/screen/Input.h"

#include <InterfaceDefs.h>

#include <cstring>

#include "server/screen/KeyTable.h"
#include "support/UTF8Characters.h"

namespace server {

static const uint32 kHeldModifiers =
    B_SHIFT_KEY | B_COMMAND_KEY | B_CONTROL_KEY | B_OPTION_KEY | B_MENU_KEY;
static const uint32 kLocks = B_CAPS_LOCK | B_SCROLL_LOCK | B_NUM_LOCK;

static void copy_first_character(const char* text, char bytes[8])
{
    const size_t length = text[0] != '\0' ? BPrivate::utf8_piece_length(text) : 0;
    memcpy(bytes, text, length);
    bytes[length] = '\0';
}

bool Keyboard::IsDown(int32 key) const
{
    return key > 0 && key < kKeyCount && (fStates[key >> 3] & (1 << (7 - (key & 7)))) != 0;
}

void Keyboard::Change(int32 key, bool down, const char* text, int32 rawChar,
                      std::vector<Event>* events)
{
    if (key < 0 || key >= kKeyCount)
        return;
    uint32 bits = KeyModifiers(key);
    bool again = down && IsDown(key);
    if (again && bits != 0)
        return;
    if (!down && key != 0 && !IsDown(key))
        return;

    _SetDown(key, down);
    if (KeyIsLock(key)) {
        if (down)
            _SetModifiers(fModifiers ^ bits, events);
    } else if (bits != 0) {
        uint32 modifiers = fModifiers & ~kHeldModifiers & ~bits;
        // The common bit stays while the twin on the other side is held.
        for (int32 other = 1; other < kKeyCount; other++) {
            if (IsDown(other) && !KeyIsLock(other))
                modifiers |= KeyModifiers(other);
        }
        _SetModifiers(modifiers, events);
    }

    Event event = _Event(down ? EventKind::KeyDown : EventKind::KeyUp);
    event.key = key;
    event.rawChar = rawChar != 0 ? rawChar & 0x7f : KeyRawChar(key);
    int byte = KeyByte(key, fModifiers);
    bool hostSays = text != nullptr && text[0] != '\0' && !KeyIsFixed(key) && bits == 0;
    if (hostSays && (fModifiers & B_CONTROL_KEY) != 0 && (byte >= 0 || (text[0] & 0xe0) == 0))
        hostSays = false;
    if (hostSays) {
        copy_first_character(text, event.bytes);
    } else if (byte >= 0) {
        event.bytes[0] = static_cast<char>(byte);
        event.byteCount = 1;
    }
    if (event.bytes[0] != '\0')
        event.byteCount = static_cast<int32>(strlen(event.bytes));

    if (!down) {
        fRepeatKey = 0;
    } else if (again && fRepeatKey == key) {
        event.repeat = ++fRepeat;
    } else {
        fRepeatKey = key;
        fRepeat = 1;
    }
    events->push_back(event);
}

void Keyboard::Type(const char* utf8, std::vector<Event>* events)
{
    Event event = _Event(EventKind::KeyDown);
    copy_first_character(utf8, event.bytes);
    event.byteCount = static_cast<int32>(strlen(event.bytes));
    event.rawChar = static_cast<uint8>(event.bytes[0]) & 0x7f;
    events->push_back(event);
    event.kind = EventKind::KeyUp;
    events->push_back(event);
}

void Keyboard::Sync(uint32 modifiers, uint32 mask, std::vector<Event>* events)
{
    static const struct {
        uint32 bit;
        int32 left, right;
    } kPairs[] = {{B_SHIFT_KEY, 0x4b, 0x56},
                  {B_CONTROL_KEY, 0x5c, 0x60},
                  {B_COMMAND_KEY, 0x5d, 0x67},
                  {B_OPTION_KEY, 0x66, 0x5f}};
    uint32 changed = (modifiers ^ fModifiers) & mask;
    if (changed == 0)
        return;
    uint32 after = fModifiers ^ (changed & kLocks);
    for (const auto& pair : kPairs) {
        if ((changed & pair.bit) == 0)
            continue;
        bool held = (modifiers & pair.bit) != 0;
        after &= ~(KeyModifiers(pair.left) | KeyModifiers(pair.right));
        if (held)
            after |= KeyModifiers(pair.left);
        _SetDown(pair.left, held);
        _SetDown(pair.right, false);
    }
    _SetModifiers(after, events);
}

void Keyboard::Release(std::vector<Event>* events)
{
    memset(fStates, 0, sizeof(fStates));
    fRepeatKey = 0;
    _SetModifiers(fModifiers & kLocks, events);
}

void Keyboard::_SetModifiers(uint32 modifiers, std::vector<Event>* events)
{
    if (modifiers == fModifiers)
        return;
    uint32 old = fModifiers;
    fModifiers = modifiers;
    Event event = _Event(EventKind::ModifiersChanged);
    event.oldModifiers = static_cast<int32>(old);
    events->push_back(event);
}

Event Keyboard::_Event(EventKind kind) const
{
    Event event;
    event.kind = kind;
    event.modifiers = static_cast<int32>(fModifiers);
    memcpy(event.states, fStates, sizeof(fStates));
    return event;
}

void Keyboard::_SetDown(int32 key, bool down)
{
    uint8 bit = static_cast<uint8>(1 << (7 - (key & 7)));
    if (key == 0)
        return;
    if (down)
        fStates[key >> 3] |= bit;
    else
        fStates[key >> 3] &= static_cast<uint8>(~bit);
}

int32 ClickCounter::Press(int32 buttons, BPoint where, int32 modifiers, const void* window,
                          bigtime_t when, bigtime_t speed)
{
    float dx = where.x - fWhere.x;
    float dy = where.y - fWhere.y;
    bool again = fCount > 0 && buttons == fButtons && modifiers == fModifiers &&
                 window == fWindow && when - fWhen < speed && dx * dx + dy * dy < 16.0f;
    fCount = again ? fCount + 1 : 1;
    fButtons = buttons;
    fModifiers = modifiers;
    fWindow = window;
    fWhere = where;
    fWhen = when;
    return fCount;
}

void ClickCounter::Forget(const void* window)
{
    if (fWindow == window)
        End();
}

}  // namespace server
