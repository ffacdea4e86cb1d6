#ifndef SUPPORT_VALID_UTF8_H
#define SUPPORT_VALID_UTF8_H

// Text that should be UTF-8, for who draws it and for those who insist on that. Here alone stands
// what all else counts as: a byte that is no UTF-8 is the character of that number in Latin-1.

#include <SupportDefs.h>

#include <string.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "support/UTF8Characters.h"

namespace BPrivate {

// Bytes of the character at the start of a text that is not empty, 0 if there is none in strict
// UTF-8.
inline size_t valid_utf8_length(std::string_view text)
{
    const auto byte = [&](size_t i) { return static_cast<uint8>(text[i]); };
    const uint8 first = byte(0);
    if (first < 0x80)
        return 1;
    const size_t length = utf8_wanted_length(text[0]);
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return 0;
    for (size_t i = 1; i < length; i++) {
        if (!utf8_continues(text[i]))
            return 0;
    }
    const bool is_overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    const bool is_no_character =
        (first == 0xED && byte(1) >= 0xA0) || (first == 0xF4 && byte(1) >= 0x90);
    return is_overlong || is_no_character ? 0 : length;
}

// The number of a character of so many bytes; that of a byte alone is the byte.
inline uint32 utf8_code(const char* bytes, size_t length)
{
    const uint8 first = static_cast<uint8>(bytes[0]);
    uint32 code = length < 2 ? first : first & (0x7Fu >> length);
    for (size_t i = 1; i < length; i++)
        code = code << 6 | (static_cast<uint8>(bytes[i]) & 0x3F);
    return code;
}

// Takes the character at the start of a text that is not empty; returns its bytes.
inline size_t next_character(std::string_view text, uint32* code)
{
    const size_t length = std::max<size_t>(valid_utf8_length(text), 1);
    *code = utf8_code(text.data(), length);
    return length;
}

// Puts a character, below 0x200000, in UTF-8 at `bytes`, which hold four; returns how many it took.
inline size_t put_utf8(uint32 code, char* bytes)
{
    if (code < 0x80) {
        bytes[0] = static_cast<char>(code);
        return 1;
    }
    const size_t length = code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    for (size_t i = length - 1; i > 0; i--, code >>= 6)
        bytes[i] = static_cast<char>(0x80 | (code & 0x3F));
    bytes[0] = static_cast<char>(0xF00 >> length | code);
    return length;
}

// A character of Latin-1.
inline void append_latin1(uint8 byte, std::string* text)
{
    char bytes[4];
    text->append(bytes, put_utf8(byte, bytes));
}

// How much of a text is UTF-8 from its start on. Plain ASCII goes eight bytes at a time.
inline size_t valid_utf8_run(std::string_view text)
{
    const uint64 kHighBits = 0x8080808080808080;
    size_t at = 0;
    while (at < text.size()) {
        uint64 word;
        if (text.size() - at >= sizeof(word)) {
            memcpy(&word, text.data() + at, sizeof(word));
            if ((word & kHighBits) == 0) {
                at += sizeof(word);
                continue;
            }
        }
        const size_t length = valid_utf8_length(text.substr(at));
        if (length == 0)
            break;
        at += length;
    }
    return at;
}

// The same text in UTF-8.
inline std::string valid_utf8(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (;;) {
        const size_t run = valid_utf8_run(text);
        result.append(text.substr(0, run));
        if (run == text.size())
            return result;
        append_latin1(static_cast<uint8>(text[run]), &result);
        text.remove_prefix(run + 1);
    }
}

}  // namespace BPrivate

#endif  // SUPPORT_VALID_UTF8_H
