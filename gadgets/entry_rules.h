#ifndef GADGETS_ENTRY_RULES_H
#define GADGETS_ENTRY_RULES_H

// What each key does in an entry field, by the field's filter. Pure: it looks at nothing but what
// it is told.

#include <stdint.h>

#include <string_view>

// The numbers are the programs'.
enum EntryFilter {
    kIntegerFilter = 0,
    kPasswordFilter = 1,
    kDecimalFilter = 2,
    kTextFilter = 3,
    kDateFilter = 4,
    kNoFilter = 5,
    kSecondNoFilter = 6,
    kTimeFilter = 7,
    kEntryFilters
};

enum class EntryAction {
    Skip,           // the key is swallowed
    Pass,           // it goes on, and nobody is told
    Tell,           // it goes on, and the input handler is told; so with the next four
    Pop,            // the hidden text loses its last byte
    Push,           // the hidden text gets the key
    PushMasked,     // the same, and the field gets the mask instead
    LeaveForwards,  // the control gets the key, whose way of going on it takes
    LeaveBackwards,
    EnterShown,   // the enter handler gets the shown text; the focus goes
    EnterHidden,  // the same with the hidden text
    FocusNext,    // of the control's siblings
    DropFocus
};

// What the rules know of a field besides the key.
struct EntryState {
    std::string_view text;       // as shown
    int32_t selection = 0;       // where it starts
    bool allow_negative = true;  // of numbers
    bool allow_comma = false;    // of decimal numbers
    // Null, or what free text asks of a key that can be printed.
    int8_t (*character_check)(int32_t key) = nullptr;
};

// What a key does: `key` is its first byte, `held` the modifiers of the platform. Any other filter
// than those above passes all keys.
EntryAction entry_action(int32_t filter, uint8_t key, uint32_t held, const EntryState& state);

#endif  // GADGETS_ENTRY_RULES_H
