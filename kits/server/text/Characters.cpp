// Classes of characters, and the borders of grapheme clusters by the rules of Unicode's annex 29.

#include <server/text/Characters.h>

#include <hb.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "support/ValidUTF8.h"

namespace server {

namespace {

struct Range {
    uint32 first, last;
};

template <size_t count>
bool in_ranges(const Range (&ranges)[count], uint32 code)
{
    const Range* found =
        std::upper_bound(ranges, ranges + count, code,
                         [](uint32 value, const Range& range) { return value < range.first; });
    return found != ranges && code <= found[-1].last;
}

constexpr Range kPictographs[] = {
    {0x00A9, 0x00A9},   {0x00AE, 0x00AE},   {0x203C, 0x203C},   {0x2049, 0x2049},
    {0x2122, 0x2122},   {0x2139, 0x2139},   {0x2194, 0x2199},   {0x21A9, 0x21AA},
    {0x231A, 0x231B},   {0x2328, 0x2328},   {0x2388, 0x2388},   {0x23CF, 0x23CF},
    {0x23E9, 0x23F3},   {0x23F8, 0x23FA},   {0x24C2, 0x24C2},   {0x25AA, 0x25AB},
    {0x25B6, 0x25B6},   {0x25C0, 0x25C0},   {0x25FB, 0x25FE},   {0x2600, 0x2605},
    {0x2607, 0x2612},   {0x2614, 0x2685},   {0x2690, 0x2705},   {0x2708, 0x2712},
    {0x2714, 0x2714},   {0x2716, 0x2716},   {0x271D, 0x271D},   {0x2721, 0x2721},
    {0x2728, 0x2728},   {0x2733, 0x2734},   {0x2744, 0x2744},   {0x2747, 0x2747},
    {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},   {0x2757, 0x2757},
    {0x2763, 0x2767},   {0x2795, 0x2797},   {0x27A1, 0x27A1},   {0x27B0, 0x27B0},
    {0x27BF, 0x27BF},   {0x2934, 0x2935},   {0x2B05, 0x2B07},   {0x2B1B, 0x2B1C},
    {0x2B50, 0x2B50},   {0x2B55, 0x2B55},   {0x3030, 0x3030},   {0x303D, 0x303D},
    {0x3297, 0x3297},   {0x3299, 0x3299},   {0x1F000, 0x1F0FF}, {0x1F10D, 0x1F10F},
    {0x1F12F, 0x1F12F}, {0x1F16C, 0x1F171}, {0x1F17E, 0x1F17F}, {0x1F18E, 0x1F18E},
    {0x1F191, 0x1F19A}, {0x1F1AD, 0x1F1E5}, {0x1F201, 0x1F20F}, {0x1F21A, 0x1F21A},
    {0x1F22F, 0x1F22F}, {0x1F232, 0x1F23A}, {0x1F23C, 0x1F23F}, {0x1F249, 0x1F3FA},
    {0x1F400, 0x1F53D}, {0x1F546, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F774, 0x1F77F},
    {0x1F7D5, 0x1F7FF}, {0x1F80C, 0x1F80F}, {0x1F848, 0x1F84F}, {0x1F85A, 0x1F85F},
    {0x1F888, 0x1F88F}, {0x1F8AE, 0x1F8FF}, {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945},
    {0x1F947, 0x1FAFF}, {0x1FC00, 0x1FFFD},
};

// Spacing marks that count as part of the letter all the same, joiners, and tags of emoji.
constexpr Range kExtending[] = {
    {0x09BE, 0x09BE},   {0x09D7, 0x09D7},   {0x0B3E, 0x0B3E},   {0x0B57, 0x0B57},
    {0x0BBE, 0x0BBE},   {0x0BD7, 0x0BD7},   {0x0CC2, 0x0CC2},   {0x0CD5, 0x0CD6},
    {0x0D3E, 0x0D3E},   {0x0D57, 0x0D57},   {0x0DCF, 0x0DCF},   {0x0DDF, 0x0DDF},
    {0x1B35, 0x1B35},   {0x200C, 0x200C},   {0x302E, 0x302F},   {0xFF9E, 0xFF9F},
    {0x1133E, 0x1133E}, {0x11357, 0x11357}, {0x114B0, 0x114B0}, {0x114BD, 0x114BD},
    {0x115AF, 0x115AF}, {0x11930, 0x11930}, {0x1D165, 0x1D165}, {0x1D16E, 0x1D172},
    {0x1F3FB, 0x1F3FF}, {0xE0020, 0xE007F},
};

constexpr Range kPrepended[] = {
    {0x0600, 0x0605},   {0x06DD, 0x06DD},   {0x070F, 0x070F},   {0x0890, 0x0891},
    {0x08E2, 0x08E2},   {0x0D4E, 0x0D4E},   {0x110BD, 0x110BD}, {0x110CD, 0x110CD},
    {0x111C2, 0x111C3}, {0x1193F, 0x1193F}, {0x11941, 0x11941}, {0x11A3A, 0x11A3A},
    {0x11A84, 0x11A89}, {0x11D46, 0x11D46},
};

enum class Part : uint8 {
    Other,
    Return,
    LineFeed,
    Control,
    Extend,
    Joiner,
    Flag,
    Prepend,
    SpacingMark,
    HangulL,
    HangulV,
    HangulT,
    HangulLV,
    HangulLVT,
    Pictograph
};

Part hangul_part(uint32 code)
{
    if ((code >= 0x1100 && code <= 0x115F) || (code >= 0xA960 && code <= 0xA97C))
        return Part::HangulL;
    if ((code >= 0x1160 && code <= 0x11A7) || (code >= 0xD7B0 && code <= 0xD7C6))
        return Part::HangulV;
    if ((code >= 0x11A8 && code <= 0x11FF) || (code >= 0xD7CB && code <= 0xD7FB))
        return Part::HangulT;
    if (code >= 0xAC00 && code <= 0xD7A3)
        return (code - 0xAC00) % 28 == 0 ? Part::HangulLV : Part::HangulLVT;
    return Part::Other;
}

hb_unicode_general_category_t category(uint32 code)
{
    return hb_unicode_general_category(hb_unicode_funcs_get_default(), code);
}

Part part_of(uint32 code)
{
    if (code < 0x300) {
        if (code == '\r')
            return Part::Return;
        if (code == '\n')
            return Part::LineFeed;
        if (code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0xAD)
            return Part::Control;
        return code == 0xA9 || code == 0xAE ? Part::Pictograph : Part::Other;
    }
    if (code == 0x200D)
        return Part::Joiner;
    if (code >= 0x1F1E6 && code <= 0x1F1FF)
        return Part::Flag;
    if (code == 0xE33 || code == 0xEB3)
        return Part::SpacingMark;
    if (in_ranges(kExtending, code))
        return Part::Extend;
    if (in_ranges(kPrepended, code))
        return Part::Prepend;
    const Part hangul = hangul_part(code);
    if (hangul != Part::Other)
        return hangul;
    switch (category(code)) {
        case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
            return Part::Extend;
        case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
            return Part::SpacingMark;
        case HB_UNICODE_GENERAL_CATEGORY_CONTROL:
        case HB_UNICODE_GENERAL_CATEGORY_FORMAT:
        case HB_UNICODE_GENERAL_CATEGORY_LINE_SEPARATOR:
        case HB_UNICODE_GENERAL_CATEGORY_PARAGRAPH_SEPARATOR:
            return Part::Control;
        default:
            return in_ranges(kPictographs, code) ? Part::Pictograph : Part::Other;
    }
}

// What has been seen of a cluster.
struct Cluster {
    Part last;
    bool pictograph;  // and nothing but what extends it since
    int32 flags;      // at the end
};

bool joins(const Cluster& cluster, Part next)
{
    const Part last = cluster.last;
    if (last == Part::Return && next == Part::LineFeed)
        return true;
    const auto is_control = [](Part part) {
        return part == Part::Return || part == Part::LineFeed || part == Part::Control;
    };
    if (is_control(last) || is_control(next))
        return false;
    if (next == Part::Extend || next == Part::Joiner || next == Part::SpacingMark)
        return true;
    if (last == Part::Prepend)
        return true;
    switch (next) {
        case Part::HangulL:
        case Part::HangulLV:
        case Part::HangulLVT:
            return last == Part::HangulL;
        case Part::HangulV:
            return last == Part::HangulL || last == Part::HangulV || last == Part::HangulLV;
        case Part::HangulT:
            return last == Part::HangulV || last == Part::HangulT || last == Part::HangulLV ||
                   last == Part::HangulLVT;
        case Part::Pictograph:
            return last == Part::Joiner && cluster.pictograph;
        case Part::Flag:
            return last == Part::Flag && cluster.flags % 2 == 1;
        default:
            return false;
    }
}

// Takes a character; false for a byte that is no UTF-8.
bool take(std::string_view& text, uint32* code)
{
    const bool valid = BPrivate::valid_utf8_length(text) != 0;
    text.remove_prefix(BPrivate::next_character(text, code));
    return valid;
}

bool is_glue(uint32 code)
{
    return code == 0xA0 || code == 0x2007 || code == 0x202F || code == 0x2060 || code == 0xFEFF;
}

bool is_ideograph(uint32 code)
{
    return (code >= 0x2E80 && code <= 0x2FFF) || (code >= 0x3040 && code <= 0x31FF) ||
           (code >= 0x3200 && code <= 0x9FFF) || (code >= 0xA000 && code <= 0xA4CF) ||
           (code >= 0xF900 && code <= 0xFAFF) || (code >= 0x20000 && code <= 0x3FFFF);
}

}  // namespace

CharacterClass ClassOf(uint32 code)
{
    if (code == '\n')
        return CharacterClass::LineFeed;
    if (code <= ' ' || code == 0x200B || code == 0x3000)
        return CharacterClass::Blank;
    if (is_glue(code))
        return CharacterClass::Letter;
    if (is_ideograph(code))
        return CharacterClass::Ideograph;
    switch (category(code)) {
        case HB_UNICODE_GENERAL_CATEGORY_SPACE_SEPARATOR:
        case HB_UNICODE_GENERAL_CATEGORY_LINE_SEPARATOR:
        case HB_UNICODE_GENERAL_CATEGORY_PARAGRAPH_SEPARATOR:
            return CharacterClass::Blank;
        case HB_UNICODE_GENERAL_CATEGORY_OPEN_PUNCTUATION:
        case HB_UNICODE_GENERAL_CATEGORY_INITIAL_PUNCTUATION:
            return CharacterClass::Open;
        case HB_UNICODE_GENERAL_CATEGORY_CLOSE_PUNCTUATION:
        case HB_UNICODE_GENERAL_CATEGORY_FINAL_PUNCTUATION:
            return CharacterClass::Close;
        case HB_UNICODE_GENERAL_CATEGORY_OTHER_PUNCTUATION: {
            constexpr uint32 kClosing[] = {'!',    ',',    '.',    ':',    ';',    '?',    0x3001,
                                           0x3002, 0xFF01, 0xFF0C, 0xFF0E, 0xFF1A, 0xFF1B, 0xFF1F};
            return std::find(std::begin(kClosing), std::end(kClosing), code) != std::end(kClosing)
                       ? CharacterClass::Close
                       : CharacterClass::Sign;
        }
        case HB_UNICODE_GENERAL_CATEGORY_DASH_PUNCTUATION:
        case HB_UNICODE_GENERAL_CATEGORY_MATH_SYMBOL:
        case HB_UNICODE_GENERAL_CATEGORY_CURRENCY_SYMBOL:
        case HB_UNICODE_GENERAL_CATEGORY_MODIFIER_SYMBOL:
        case HB_UNICODE_GENERAL_CATEGORY_OTHER_SYMBOL:
            return code >= 0x1F3FB && code <= 0x1F3FF ? CharacterClass::Letter
                                                      : CharacterClass::Sign;
        default:
            return CharacterClass::Letter;
    }
}

bool MayBreak(uint32 before, uint32 left, uint32 right)
{
    const CharacterClass from = ClassOf(left), to = ClassOf(right);
    if (from == CharacterClass::LineFeed)
        return true;
    if (is_glue(left) || is_glue(right))
        return false;
    if (from == CharacterClass::Blank)
        return true;
    if (to == CharacterClass::Blank || to == CharacterClass::Close ||
        to == CharacterClass::LineFeed)
        return false;
    if (left == '-' || left == 0x2010 || left == 0x2013 || left == '/')
        return to == CharacterClass::Letter && !(right >= '0' && right <= '9') && before > ' ';
    if (left == 0xAD || left == 0x2014)
        return true;
    if (from == CharacterClass::Ideograph)
        return part_of(right) != Part::Extend;
    return to == CharacterClass::Ideograph && from != CharacterClass::Open;
}

int32 GraphemeLength(const char* text, int32 length)
{
    if (length <= 1)
        return std::max(length, int32(0));
    const uint8 first = static_cast<uint8>(text[0]);
    if (first < 0x80 && static_cast<uint8>(text[1]) < 0x80 && first != '\r')
        return 1;
    std::string_view rest(text, static_cast<size_t>(length));
    uint32 code;
    if (!take(rest, &code))
        return 1;
    Cluster cluster = {part_of(code), false, 0};
    cluster.pictograph = cluster.last == Part::Pictograph;
    cluster.flags = cluster.last == Part::Flag ? 1 : 0;
    while (!rest.empty()) {
        std::string_view after = rest;
        if (!take(after, &code))
            break;
        const Part next = part_of(code);
        if (!joins(cluster, next))
            break;
        cluster.pictograph = next == Part::Pictograph ||
                             (cluster.pictograph && (next == Part::Extend || next == Part::Joiner));
        cluster.flags = next == Part::Flag ? cluster.flags + 1 : 0;
        cluster.last = next;
        rest = after;
    }
    return length - static_cast<int32>(rest.size());
}

int32 GraphemeBefore(const char* text, int32 end)
{
    if (end <= 1)
        return 0;
    const auto is_ascii = [=](int32 at) { return static_cast<uint8>(text[at]) < 0x80; };
    if (is_ascii(end - 1) && is_ascii(end - 2) && text[end - 1] != '\n')
        return end - 1;
    // From a place that surely begins one: a letter of ASCII that follows another.
    int32 start = end - 1;
    while (start > 0 && !(is_ascii(start) && is_ascii(start - 1) && text[start] != '\n'))
        start--;
    for (;;) {
        const int32 next = start + GraphemeLength(text + start, end - start);
        if (next >= end)
            return start;
        start = next;
    }
}

}  // namespace server
