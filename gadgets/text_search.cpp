// Searching in texts, by characters of UTF-8.

#include "gadgets/text_search.h"

#include <algorithm>
#include <locale.h>
#include <vector>
#include <wctype.h>

// Behind the characters, for bytes that are none.
static const uint32_t kStrayByte = 0x110000;

namespace {

struct Character {
    uint32_t code;
    size_t length;  // bytes
};

}  // namespace

// How many bytes a first byte announces; 0 for one that begins nothing.
static size_t announced_length(uint8_t first)
{
    if (first < 0x80)
        return 1;
    if (first < 0xC2 || first > 0xF4)
        return 0;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

static Character character_at(std::string_view text, size_t offset)
{
    const auto first = static_cast<uint8_t>(text[offset]);
    const size_t length = announced_length(first);
    if (length == 1)
        return {first, 1};
    if (length == 0 || offset + length > text.size())
        return {kStrayByte + first, 1};
    uint32_t code = first & (0x7Fu >> length);
    for (size_t i = 1; i < length; i++) {
        const auto next = static_cast<uint8_t>(text[offset + i]);
        if ((next & 0xC0) != 0x80)
            return {kStrayByte + first, 1};
        code = code << 6 | (next & 0x3Fu);
    }
    return {code, length};
}

// Alphabets are the same everywhere, whatever the user's language. Null: only ASCII is known.
static locale_t characters()
{
    static const locale_t known = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return known;
}

static uint32_t small_letter(uint32_t code)
{
    if (code < 0x80)
        return code >= 'A' && code <= 'Z' ? code + 32 : code;
    if (code >= kStrayByte || characters() == nullptr)
        return code;
    return towlower_l(code, characters());
}

static bool is_in_word(uint32_t code)
{
    if (code < 0x80)
        return (code >= '0' && code <= '9') || code == '_' ||
               (small_letter(code) >= 'a' && small_letter(code) <= 'z');
    return code < kStrayByte && characters() != nullptr && iswalnum_l(code, characters()) != 0;
}

// Where the character in front of an offset begins.
static size_t character_before(std::string_view text, size_t offset)
{
    size_t start = offset - 1;
    while (start > 0 && offset - start < 4 && (static_cast<uint8_t>(text[start]) & 0xC0) == 0x80)
        start--;
    return start + character_at(text, start).length == offset ? start : offset - 1;
}

static bool stands_alone(std::string_view text, size_t start, size_t end)
{
    const bool joins_before =
        start > 0 && is_in_word(character_at(text, character_before(text, start)).code);
    const bool joins_after = end < text.size() && is_in_word(character_at(text, end).code);
    return !joins_before && !joins_after;
}

namespace {

// What is looked for, made ready once.
class Pattern {
public:
    Pattern(std::string_view wanted, bool exact) : fExact(exact)
    {
        for (size_t i = 0; i < wanted.size();) {
            const Character next = character_at(wanted, i);
            fCodes.push_back(_Code(next));
            i += next.length;
        }
    }
    // The end of what matches at an offset, 0 if that does not. `end` is as far as it may go.
    size_t Match(std::string_view text, size_t offset, size_t end) const
    {
        for (const uint32_t wanted : fCodes) {
            if (offset >= end)
                return 0;
            const Character next = character_at(text, offset);
            if (_Code(next) != wanted)
                return 0;
            offset += next.length;
        }
        return offset <= end ? offset : 0;
    }

private:
    uint32_t _Code(Character character) const
    {
        return fExact ? character.code : small_letter(character.code);
    }

    std::vector<uint32_t> fCodes;
    const bool fExact;
};

}  // namespace

int32_t find_text(std::string_view text, std::string_view wanted, int32_t from, int32_t flags)
{
    if (wanted.empty() || text.empty())
        return -1;
    const Pattern pattern(wanted, (flags & kExactCase) != 0);
    const size_t start = std::min(static_cast<size_t>(std::max(from, 0)), text.size());
    const auto found = [&](size_t offset, size_t end) {
        const size_t behind = pattern.Match(text, offset, end);
        return behind != 0 && ((flags & kWholeWords) == 0 || stands_alone(text, offset, behind));
    };
    if ((flags & kBackwards) == 0) {
        for (size_t i = start; i < text.size(); i += character_at(text, i).length) {
            if (found(i, text.size()))
                return static_cast<int32_t>(i);
        }
        return -1;
    }
    for (size_t i = start; i > 0;) {
        i = character_before(text, i);
        if (found(i, start))
            return static_cast<int32_t>(i);
    }
    return -1;
}
