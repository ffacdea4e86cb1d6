#ifndef INTERFACE_TEXT_BUFFER_H
#define INTERFACE_TEXT_BUFFER_H

// The bytes of a text, with a gap where it was edited last: what is typed there moves no other
// byte. Offsets outside the text are taken as its start or end. One thread.

#include <SupportDefs.h>

#include <stdint.h>

#include <memory>
#include <string>

namespace [[gnu::visibility("hidden")]] BPrivate {

// What has changed since a revision: all but some bytes at the start and some at the end.
struct TextChange {
    uint32 since = 0;
    int32 before = INT32_MAX, behind = INT32_MAX;
};

class TextBuffer {
public:
    int32 Length() const { return fLength; }
    uint32 Revision() const { return fRevision; }  // another one after each change
    uint8 At(int32 offset) const;                  // 0 outside the text
    // Copies up to `length` bytes from `offset` on; returns how many there were.
    int32 Copy(int32 offset, int32 length, char* to) const;
    // The bytes from `offset` on, which the text has, in one piece: where they are, or copied.
    const char* Bytes(int32 offset, int32 length, std::string* copy) const;
    // All bytes in one piece, ended by a zero; until the next change. Null without memory.
    const char* Text();
    // The offset behind the next line feed at or behind `offset`, the text's end if there is none.
    int32 LineEnd(int32 offset) const;
    // The offset behind the last line feed before `offset`.
    int32 LineStart(int32 offset) const;

    // False, and nothing changed, without memory, and where offsets end.
    bool Insert(int32 offset, const char* bytes, int32 length);
    void Remove(int32 from, int32 to);

    // What has changed since the last such call.
    TextChange TakeChange();

private:
    void _Changes(int32 from, int32 to);
    bool _Reserve(int32 more);
    void _MoveGap(int32 offset);

    std::unique_ptr<char[]> fBytes;  // fLength bytes around a gap, and room for a zero
    int32 fCapacity = 0;             // without that room
    int32 fLength = 0;
    int32 fGap = 0;  // where the gap begins
    uint32 fRevision = 0;
    TextChange fChange;
};

}  // namespace BPrivate

#endif  // INTERFACE_TEXT_BUFFER_H
