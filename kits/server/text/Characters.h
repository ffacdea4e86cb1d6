#ifndef SERVER_CHARACTERS_H
#define SERVER_CHARACTERS_H

// What readers of a text take for characters, words and places to break a line. Text is UTF-8; a
// byte that is none counts one and stands alone. Any thread.

#include <SupportDefs.h>

namespace server {

enum class CharacterClass : uint8 {
    Blank,
    LineFeed,
    Letter,     // and what stands on letters, numbers, and what is stuck to both
    Ideograph,  // a line may be broken on both sides
    Open,       // brackets and quotes at the start of something
    Close,      // and at its end, with full stops and their like
    Sign        // the rest
};

CharacterClass ClassOf(uint32 code);
// A place to break a line between two characters that follow one on another; `before` is the one
// in front of them, 0 if there is none.
bool MayBreak(uint32 before, uint32 left, uint32 right);

// Bytes of what a reader calls the first character: a letter with its marks, an emoji of several
// parts. At least 1 of a text that is not empty.
int32 GraphemeLength(const char* text, int32 length);
// Where the one begins that ends at `end`.
int32 GraphemeBefore(const char* text, int32 end);

}  // namespace server

#endif  // SERVER_CHARACTERS_H
