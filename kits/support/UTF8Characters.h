#ifndef SUPPORT_UTF8_CHARACTERS_H
#define SUPPORT_UTF8_CHARACTERS_H

#include <SupportDefs.h>

namespace BPrivate {

// Bytes of the character at `text`, of which `left` bytes are there. A byte that starts none, and
// one whose followers are missing, is a character by itself.
inline int32 utf8_char_length(const char* text, int32 left)
{
    const uint8 first = static_cast<uint8>(*text);
    if (first < 0xC0)
        return 1;
    const int32 wanted = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (wanted > left)
        return 1;
    for (int32 i = 1; i < wanted; ++i) {
        if ((text[i] & 0xC0) != 0x80)
            return 1;
    }
    return wanted;
}

// Bytes of the first `count` characters, or of all.
inline int32 utf8_bytes(const char* text, int32 left, int32 count)
{
    int32 bytes = 0;
    while (count-- > 0 && bytes < left)
        bytes += utf8_char_length(text + bytes, left - bytes);
    return bytes;
}

}  // namespace BPrivate

#endif  // SUPPORT_UTF8_CHARACTERS_H
