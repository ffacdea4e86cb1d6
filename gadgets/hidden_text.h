#ifndef GADGETS_HIDDEN_TEXT_H
#define GADGETS_HIDDEN_TEXT_H

// The text of an entry field as its keys typed it, which for a password is not what it shows. It
// follows keys, not edits: what is pasted, or deleted in the middle, does not reach it.

#include <stdint.h>

#include <algorithm>
#include <string_view>

class HiddenText {
public:
    static constexpr int32_t kMost = 1023;

    HiddenText() = default;
    ~HiddenText() { Cut(0); }
    HiddenText(const HiddenText&) = delete;
    HiddenText& operator=(const HiddenText&) = delete;

    const char* Text() const { return fText; }
    int32_t Length() const { return fLength; }

    // At the end, where there are fewer than `limit` bytes yet.
    void PushChar(char c, int32_t limit)
    {
        if (fLength < std::min(limit, kMost))
            fText[fLength++] = c;
    }
    void PopChar() { Cut(fLength - 1); }
    void Set(std::string_view text)
    {
        Cut(0);
        fLength = static_cast<int32_t>(text.copy(fText, kMost));
    }
    // Keeps the first `length` bytes at most; the others are gone from memory.
    void Cut(int32_t length)
    {
        volatile char* const bytes = fText;
        while (fLength > std::max(length, 0))
            bytes[--fLength] = '\0';
    }

private:
    char fText[kMost + 1] = {};  // zeros from the length on
    int32_t fLength = 0;
};

#endif  // GADGETS_HIDDEN_TEXT_H
