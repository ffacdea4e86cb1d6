// String functions. Their results go into the string ring, but for the two parts of a path, which
// have buffers of their own. Main thread.

#include "runtime/strings.h"

#include "plinth.h"
#include "runtime/ring.h"

#include <Path.h>

#include <exception>
#include <algorithm>
#include <ctype.h>
#include <limits.h>
#include <string.h>

static const size_t kPathSize = 1024;

static char sNothing[1];  // a "" that is no constant, for results that callers may write to

static int32_t length_of(const char* text)
{
    return static_cast<int32_t>(std::min<size_t>(strlen(text), INT32_MAX));
}

// The limit of a copy of `count` characters into a slot; a negative count is no limit.
static size_t slot_limit(int32_t count)
{
    return count < 0 ? kSlotSize : std::min<size_t>(count, kSlotSize);
}

extern "C" char* Left(const char* s, int32_t n)
{
    char* slot = GetNextTab();
    bounded_copy(slot, text_or_empty(s), slot_limit(n));
    return slot;
}

extern "C" char* Right(const char* s, int32_t n)
{
    s = text_or_empty(s);
    const int64_t length = static_cast<int64_t>(strlen(s));
    const int64_t start = std::clamp<int64_t>(length - n, 0, length);
    char* slot = GetNextTab();
    bounded_copy(slot, s + start, slot_limit(n));
    return slot;
}

extern "C" char* Mid(const char* s, int32_t start, int32_t count)
{
    s = text_or_empty(s);
    char* slot = take_mid();
    if (count == -1)
        count = length_of(s);
    const size_t skipped = start > 0 ? start - 1 : 0;
    const bool is_inside = start == 0 || (start > 0 && strnlen(s, start) > skipped);
    if (is_inside)
        put_mid_of(slot, s + skipped, count);
    else
        put_empty_mid(slot, count);
    return slot;
}

extern "C" char* MidStr(const char* s, int32_t start)
{
    s = text_or_empty(s);
    char* slot = take_mid();
    const int32_t length = length_of(s);
    const int32_t skipped = start > 0 ? start - 1 : 0;
    if (start == 0 || (start > 0 && start <= length))
        put_mid(slot, s + skipped, length - skipped, length);
    else
        put_empty_mid(slot, length);
    return slot;
}

extern "C" int32_t Instr(int32_t offset, const char* s, const char* find)
{
    s = text_or_empty(s);
    find = text_or_empty(find);
    // Outside the text there is nothing, as at its end.
    const size_t skipped = offset < 0 ? strlen(s) : strnlen(s, offset);
    return static_cast<int32_t>(walk_for(s + skipped, skipped, find, strlen(find)));
}

extern "C" int32_t Len(const char* s) { return length_of(text_or_empty(s)); }

extern "C" char* Space(int32_t n)
{
    char* slot = GetNextTab();
    const size_t blanks = n > 0 ? std::min<size_t>(n, kSlotSize) : 0;
    fill_bytes(slot, ' ', blanks);
    fill_bytes(slot + blanks, '\0', kSlotSize - blanks);
    return slot;
}

extern "C" char* String(int32_t n, const char* s)
{
    s = text_or_empty(s);
    char own[kSlotSize];
    const size_t length = strnlen(s, kSlotSize);
    if (in_ring(s)) {  // it may lie in the slot
        copy_bytes(own, s, length);
        s = own;
    }
    char* slot = GetNextTab();
    size_t used = 0;
    for (int32_t i = 0; i < n && used < kSlotSize && length > 0; i++) {
        const size_t taken = std::min(length, kSlotSize - used);
        copy_bytes(slot + used, s, taken);
        used += taken;
    }
    fill_bytes(slot + used, '\0', kSlotSize - used);
    return slot;
}

static char* put_char(char* slot, char c)
{
    slot[0] = c;
    slot[1] = '\0';
    return slot;
}

extern "C" char* Chr(uint8_t c) { return put_char(GetNextTab(), static_cast<char>(c)); }

extern "C" int32_t Chr2(const char* s) { return static_cast<signed char>(text_or_empty(s)[0]); }

// Maps `length` bytes. ASCII goes the fast way, the same whatever the locale; only other bytes are
// the C library's affair.
template <char First, char Last, int (*Map)(int)>
static void map_case(char* to, const char* from, size_t length)
{
    unsigned char high = 0;
    for (size_t i = 0; i < length; i++) {
        const auto c = static_cast<unsigned char>(from[i]);
        const bool changes = static_cast<unsigned char>(c - First) <= Last - First;
        to[i] = static_cast<char>(c ^ (changes ? 0x20 : 0));
        high |= c;
    }
    if (high < 0x80)
        return;
    for (size_t i = 0; i < length; i++) {
        const auto c = static_cast<unsigned char>(to[i]);
        if (c >= 0x80)
            to[i] = static_cast<char>(Map(c));
    }
}

static constexpr auto to_lower_case = map_case<'A', 'Z', tolower>;
static constexpr auto to_upper_case = map_case<'a', 'z', toupper>;

// A text of 257 bytes has its terminator in the following slot.
template <auto Map>
static char* take_mapped(const char* s)
{
    s = text_or_empty(s);
    char work[kSlotSize + 1];  // s may lie in the slot
    const size_t length = strnlen(s, kSlotSize);
    Map(work, s, length);
    char* slot = GetNextTab();
    copy_bytes(slot, work, length);
    slot[length] = '\0';
    return slot;
}

extern "C" char* Lcase(const char* s) { return take_mapped<to_lower_case>(s); }

extern "C" char* Ucase(const char* s) { return take_mapped<to_upper_case>(s); }

extern "C" char* TitleCase(const char* s)
{
    char* slot = GetNextTab();
    bounded_copy(slot, text_or_empty(s), kSlotSize);
    const size_t length = strnlen(slot, kSlotSize);
    to_lower_case(slot, slot, length);
    to_upper_case(slot, slot, std::min<size_t>(length, 1));
    return slot;
}

// The first byte that is no blank.
static size_t skip_blanks(const char* text)
{
    size_t blanks = 0;
    while (text[blanks] == ' ')
        blanks++;
    return blanks;
}

extern "C" char* Ltrim(const char* s)
{
    s = text_or_empty(s);
    char* slot = GetNextTab();
    const char* rest;
    if (in_ring(s)) {  // the pieces may overwrite what is still to be read
        int32_t start = 1;
        while (strcmp(Mid(s, start, 1), " ") == 0)
            start++;
        rest = Mid(s, start, kSlotSize);
    } else {
        const size_t blanks = skip_blanks(s);
        for (size_t i = blanks < kPairs ? 1 : blanks + 2 - kPairs; i <= blanks + 1; i++)
            put_char(walk_slot(i), s[i - 1]);
        StrCnt = (StrCnt + 2 * static_cast<uint32_t>(blanks + 1)) % kSlots;
        char* piece = take_mid();
        rest = s + blanks;
        if (rest[0] == '\0')
            put_empty_mid(piece, kSlotSize);
        else
            put_mid_of(piece, rest, kSlotSize);
    }
    // A rest of 257 bytes has its terminator in the following slot.
    const size_t length = strnlen(rest, kSlotSize);
    copy_bytes(slot, rest, length);
    slot[length] = '\0';
    return slot;
}

// Where the text of a slot just filled from `s` can be read: `s` itself, whose bytes need not wait
// for the copy, unless it lies in the ring or the slot is full. A full slot has no terminator; its
// text runs on into the next ones.
static const char* readable_text(const char* slot, const char* s)
{
    return in_ring(s) || slot[kSlotText] != '\0' ? slot : s;
}

extern "C" char* Rtrim(const char* s)
{
    s = text_or_empty(s);
    char* slot = GetNextTab();
    bounded_copy(slot, s, kSlotSize);
    const char* text = readable_text(slot, s);
    // Every blank goes, last to first, so the text ends at the first.
    const char* blank = text + skip_blanks(text);
    while ((blank = strchr(blank, ' ')) != nullptr) {
        slot[blank - text] = '\0';
        blank++;
    }
    return slot;
}

extern "C" char* Trim(const char* s)
{
    char* slot = GetNextTab();
    if (s == nullptr)
        return sNothing;
    bounded_copy(slot, s, kSlotSize);
    const char* text = readable_text(slot, s);
    const size_t blanks = skip_blanks(text);
    if (const char* blank = strrchr(text + blanks, ' '))
        slot[blank - text] = '\0';  // kept on purpose: one cut at the last blank, wherever it is
    return slot + blanks;
}

extern "C" char* Extract(const char* s, const char* sep)
{
    s = text_or_empty(s);
    sep = text_or_empty(sep);
    char* slot = GetNextTab();
    const size_t position = walk_for(s, 0, sep, strlen(sep));
    if (position == 0) {
        put_text(slot, s, strnlen(s, kSlotText));
        return slot;
    }
    const size_t left_length = position - 1;
    const auto count = static_cast<int32_t>(left_length);
    if (in_ring(s) || left_length > kSlotText) {
        // The search may have written over its text, and a full piece runs on into the next slots.
        const char* left = Mid(s, 1, count);
        put_text(slot, left, strnlen(left, kSlotText));
        return slot;
    }
    // What the piece holds need not be read back from it.
    char* left = take_mid();
    copy_bytes(left, s, left_length);
    terminate(left, count);
    copy_bytes(slot, s, left_length);
    slot[left_length] = '\0';
    return slot;
}

extern "C" char* ExtractPathName(const char* path)
try {
    static char directory[kPathSize];  // main thread
    memset(directory, 0, kPathSize);
    const BPath object(text_or_empty(path));
    if (object.InitCheck() != B_OK)
        return directory;
    const size_t leaf_at = object.Leaf() - object.Path();
    size_t length = leaf_at > 1 ? leaf_at : strlen(object.Path());
    length = std::min(length, kPathSize - 1);
    memcpy(directory, object.Path(), length);
    if (directory[length - 1] != '/' && length < kPathSize - 1)
        directory[length] = '/';
    return directory;
} catch (const std::exception&) {
    static char nothing[] = "";
    return nothing;
}

extern "C" char* ExtractFileName(const char* path)
try {
    static char leaf[kPathSize];  // main thread
    memset(leaf, 0, kPathSize);
    const BPath object(text_or_empty(path));
    if (object.InitCheck() == B_OK)
        memcpy(leaf, object.Leaf(), strnlen(object.Leaf(), kPathSize - 1));
    return leaf;
} catch (const std::exception&) {
    static char nothing[] = "";
    return nothing;
}

char* MyStringStr(const char* text)
{
    if (text == nullptr || text[0] == '\0')
        return nullptr;
    const size_t size = strlen(text) + 1;
    if (size > INT32_MAX)
        return nullptr;
    auto* copy = static_cast<char*>(MyAlloc(static_cast<int32_t>(size)));
    if (copy != nullptr)
        memcpy(copy, text, size);
    return copy;
}

char* StrLower(char* text)
{
    if (text == nullptr)
        return sNothing;
    to_lower_case(text, text, strlen(text));
    return text;
}
