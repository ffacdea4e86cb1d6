#ifndef GADGETS_TEXT_ENTRY_H
#define GADGETS_TEXT_ENTRY_H

#include "runtime/live_objects.h"

// What a window needs of an entry field that posts "fi": its text and the handler to call with it.
// The message holds the address of this part of the field. A field is deleted with its window
// locked.
class TextEntry {
public:
    TextEntry() = default;
    TextEntry(const TextEntry&) = delete;
    TextEntry& operator=(const TextEntry&) = delete;

    virtual const char* EntryText() const = 0;

    void* fInputHandler = nullptr;  // called after each accepted key; window's lock

protected:
    ~TextEntry() = default;

private:
    const Live<TextEntry> fLive{this};
};

#endif  // GADGETS_TEXT_ENTRY_H
