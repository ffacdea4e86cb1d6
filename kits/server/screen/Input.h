#ifndef SERVER_INPUT_H
#define SERVER_INPUT_H

// What the keyboard and the buttons are like, and the events that follow from their changes. Plain
// state machines without threads: the stage guards them.

#include <vector>

#include <server/screen/Screen.h>

namespace server {

class Keyboard {
public:
    int32 Modifiers() const { return fModifiers; }
    const uint8* States() const { return fStates; }
    bool IsDown(int32 key) const;

    // A key goes down (again, when it repeats) or up. `text` is what the host says it types; null
    // stands for the characters of a US keyboard, as `rawChar` of 0 does. Appends the events.
    void Change(int32 key, bool down, const char* text, int32 rawChar, std::vector<Event>* events);
    // A character that no key of a US keyboard types.
    void Type(const char* utf8, std::vector<Event>* events);
    // Takes over what the host says of held modifiers (B_SHIFT_KEY ...) and locks in `mask`:
    // presses and releases that went to other programs.
    void Sync(uint32 modifiers, uint32 mask, std::vector<Event>* events);
    // All keys up, locks stay: the keyboard went to another program.
    void Release(std::vector<Event>* events);

private:
    void _SetModifiers(uint32 modifiers, std::vector<Event>* events);
    Event _Event(EventKind kind) const;
    void _SetDown(int32 key, bool down);

    uint32 fModifiers = 0;
    uint8 fStates[16] = {};
    int32 fRepeatKey = 0;
    int32 fRepeat = 0;
};

// Counts the presses of a multiple click.
class ClickCounter {
public:
    // The count of a press, of which `buttons` are those that are down then.
    int32 Press(int32 buttons, BPoint where, int32 modifiers, const void* window, bigtime_t when,
                bigtime_t speed);
    // The window is gone: the next one may be made at the same address.
    void Forget(const void* window);
    // Something else was done in between: the next press is a first one.
    void End() { fCount = 0; }

private:
    int32 fButtons = 0, fModifiers = 0, fCount = 0;
    BPoint fWhere;
    const void* fWindow = nullptr;
    bigtime_t fWhen = 0;
};

}  // namespace server

#endif  // SERVER_INPUT_H
