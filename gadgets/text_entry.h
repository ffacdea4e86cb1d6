#ifndef GADGETS_TEXT_ENTRY_H
#define GADGETS_TEXT_ENTRY_H

// What a window needs of an entry field that posts "fi": its text and the handler to call with it.
class TextEntry {
public:
    virtual const char* EntryText() const = 0;

    void* fInputHandler = nullptr;  // called after each accepted key; window's lock

protected:
    ~TextEntry() = default;
};

#endif  // GADGETS_TEXT_ENTRY_H
