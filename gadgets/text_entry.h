#ifndef GADGETS_TEXT_ENTRY_H
#define GADGETS_TEXT_ENTRY_H

#include "runtime/live_objects.h"

#include <optional>

// What a window needs of an entry field that posts "fi": its text and the handler to call with it.
// The message holds the address of this part of the field, which is known while it is in a window:
// it leaves that with the window locked, and may be deleted by any thread then.
class TextEntry {
public:
    explicit TextEntry(int32_t ident) : fIdent(ident) {}
    TextEntry(const TextEntry&) = delete;
    TextEntry& operator=(const TextEntry&) = delete;

    // Puts into a message which field it is about; and the field that a message is about, null if
    // that is gone. Another one may stand where it stood: the ident tells them apart.
    void NameIn(BMessage* message)
    {
        message->AddPointer("fi", this);
        message->AddInt32("id", fIdent);
    }
    static TextEntry* NamedIn(const BMessage& message)
    {
        auto* entry = live_pointer<TextEntry>(message, "fi");
        int32 ident;
        const bool is_other =
            entry != nullptr && message.FindInt32("id", &ident) == B_OK && ident != entry->fIdent;
        return is_other ? nullptr : entry;
    }

    virtual const char* EntryText() const = 0;

    void* fInputHandler = nullptr;  // called after each accepted key; window's lock

protected:
    ~TextEntry() = default;
    void ComeIntoWindow() { fLive.emplace(this); }
    void LeaveWindow() { fLive.reset(); }

private:
    const int32_t fIdent;  // the gadget's
    std::optional<Live<TextEntry>> fLive;
};

#endif  // GADGETS_TEXT_ENTRY_H
