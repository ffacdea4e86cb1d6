#ifndef SUPPORT_UTF8_CHARACTERS_H
#define SUPPORT_UTF8_CHARACTERS_H

// Where characters begin and end, in text that may be anything.

#include <SupportDefs.h>

#include <string_view>

namespace BPrivate {

// True of a byte that goes on with a character.
inline bool utf8_continues(char byte) { return (byte & 0xC0) == 0x80; }

// What the first byte of a character says of its length; 1 for a byte that starts none.
inline size_t utf8_wanted_length(char first)
{
    const uint8 byte = static_cast<uint8>(first);
    return byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
}

// Bytes of the first character of a text that is not empty, whether whole or cut off.
inline size_t utf8_piece_length(std::string_view text)
{
    const size_t wanted = utf8_wanted_length(text[0]);
    size_t length = 1;
    while (length < wanted && length < text.size() && utf8_continues(text[length]))
        length++;
    return length;
}

// The start of a text that fits into `most` bytes and does not end within a character.
inline std::string_view utf8_fitting(std::string_view text, size_t most)
{
    size_t length = text.size() < most ? text.size() : most;
    for (int back = 0; back < 3 && length > 0 && length < text.size(); back++) {
        if (!utf8_continues(text[length]))
            break;
        length--;
    }
    return text.substr(0, length);
}

// Bytes of the character at `text`, of which `left` bytes are there. A byte that starts none, and
// one whose followers are missing, is a character by itself.
inline int32 utf8_char_length(const char* text, int32 left)
{
    const int32 wanted = static_cast<int32>(utf8_wanted_length(*text));
    if (wanted > left)
        return 1;
    for (int32 i = 1; i < wanted; ++i) {
        if (!utf8_continues(text[i]))
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
