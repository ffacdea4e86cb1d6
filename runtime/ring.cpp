// The string ring, and searches that use its slots up. Main thread.
//
// A search takes two slots for every position it examines, and its last pieces of text stay behind
// in them. Programs may read those, so they are put there; but only the pieces that later ones do
// not overwrite.

#include "runtime/ring.h"

#include <algorithm>
#include <bit>
#include <string.h>

static const bool kLittleEndian = std::endian::native == std::endian::little;

char StrFunction[kRingSize];
uint32_t StrCnt;

void copy_within_ring(char* to, const char* text, size_t limit)
{
    const size_t length = strnlen(text, limit);
    copy_bytes(to, text, length);
    fill_bytes(to + length, '\0', limit - length);
}

void put_text(char* slot, const char* text, size_t length)
{
    length = std::min(length, kSlotText);
    copy_bytes(slot, text, length);
    slot[length] = '\0';
}

void put_mid(char* result, const char* source, size_t available, int32_t count)
{
    const size_t limit = copy_limit(count);
    const size_t length = std::min(available, limit);
    copy_bytes(result, source, length);
    if (length < limit)
        fill_bytes(result + length, '\0', limit - length);
    terminate(result, count);
}

void put_empty_mid(char* result, int32_t count)
{
    result[0] = '\0';
    terminate(result, count);
}

// Pieces of a fixed width that the text has in full; `put` writes one with its terminator.
template <class Put>
static inline void put_pieces(const char* text, size_t first, size_t last, Put put)
{
    char* slot = walk_slot(first);
    char* const end = StrFunction + kSlots * kSlotSize;
    for (const char* at = text; at <= text + (last - first); at++) {
        put(slot, at);
        slot += 2 * kSlotSize;
        slot = slot >= end ? slot - kSlots * kSlotSize : slot;
    }
}

// Two copies that may overlap do for all widths from Half to twice that.
template <size_t Half>
static void put_pieces_of(const char* text, size_t first, size_t last, size_t width)
{
    put_pieces(text, first, last, [=](char* to, const char* from) {
        memcpy(to, from, Half);
        memcpy(to + width - Half, from + width - Half, Half);
        to[width] = '\0';
    });
}

// What the Mids at `first` to `last` leave, at most eight of them. Short pieces, the most of them,
// are copied from a window of the text in which zeros follow its end.
static void leave_pieces(const char* text, size_t length, size_t width, size_t first, size_t last)
{
    const size_t kWidest = 16;
    if (first > last)
        return;
    if (width > kWidest) {
        for (size_t i = first; i <= last; i++)
            put_mid(walk_slot(i), text + i - 1, length - i + 1, static_cast<int32_t>(width));
        return;
    }
    char window[kPairs + kWidest] = {};
    const char* from = text + first - 1;
    if (last + width > length + 1) {
        for (size_t i = first; i <= length; i++)
            window[i - first] = text[i - 1];
        from = window;
    }
    if (width >= 8)
        put_pieces_of<8>(from, first, last, width);
    else if (width >= 4)
        put_pieces_of<4>(from, first, last, width);
    else if (width >= 2)
        put_pieces_of<2>(from, first, last, width);
    else if (width == 1)
        put_pieces(from, first, last, [](char* to, const char* at) {
            // One store for the character and its terminator.
            const auto character = static_cast<uint8_t>(*at);
            const uint16_t piece = kLittleEndian ? character : character << 8;
            memcpy(to, &piece, sizeof(piece));
        });
    else
        put_pieces(from, first, last, [](char* to, const char*) { to[0] = '\0'; });
}

// Leaves the ring as `tried` Mids of `width` characters leave it that begin at the first, second
// ... position of `text`.
static void leave_walk(const char* text, size_t length, size_t width, size_t tried)
{
    // Positions behind the text's end leave only an empty result, so that pieces before them show
    // through.
    const size_t inside = std::min(tried, length);
    auto first_of = [](size_t last) { return last > kPairs ? last - kPairs + 1 : 1; };
    leave_pieces(text, length, width, first_of(inside), inside);
    for (size_t i = std::max(first_of(tried), inside + 1); i <= tried; i++)
        put_empty_mid(walk_slot(i), static_cast<int32_t>(width));
    StrCnt = (StrCnt + 2 * static_cast<uint32_t>(tried)) % kSlots;
}

// True if the walk may write over `text` before it has examined all positions.
static bool is_disturbed(const char* text, size_t length, size_t width, size_t positions)
{
    if (!in_ring(text))
        return false;
    if (width >= kSlotSize)
        return true;
    size_t first = (text - StrFunction) / kSlotSize;
    size_t last = (text + length - StrFunction) / kSlotSize;
    for (size_t slot = first; slot <= last && slot < kSlots; slot++) {
        uint32_t distance = (slot - StrCnt - 1) % kSlots;
        if (distance % 2 == 0 && distance / 2 < positions)
            return true;
    }
    return false;
}

// A piece of more than 257 characters runs on into the following slot. It can only equal `find` if
// some slot holds what `find` goes on with.
static bool may_run_on(const char* find, size_t find_length)
{
    size_t rest = std::min(find_length - kSlotSize, kSlotSize);
    for (uint32_t slot = 1; slot < kSlots; slot++) {
        if (memcmp(ring_slot(slot), find + kSlotSize, rest) == 0)
            return true;
    }
    return false;
}

// The walk itself, for texts that it writes over while it reads them.
static size_t walk_each(const char* text, size_t length, size_t positions, const char* find,
                        size_t find_length)
{
    for (size_t i = 1; i <= positions; i++) {
        if (in_ring(text))
            length = strlen(text);
        char* piece = GetNextTab();
        GetNextTab();
        if (i <= length)
            put_mid(piece, text + i - 1, length - i + 1, static_cast<int32_t>(find_length));
        else
            put_empty_mid(piece, static_cast<int32_t>(find_length));
        if (strcmp(piece, find) == 0)
            return i;
    }
    return 0;
}

static const char* find_text(const char* text, const char* find, size_t find_length)
{
    return find_length == 1 ? strchr(text, find[0]) : strstr(text, find);
}

// The search when its pieces may get in the way of its texts.
static size_t walk_with_care(const char* text, size_t before, const char* find, size_t find_length)
{
    const size_t length = strlen(text);
    const size_t positions = before + length;
    if (find_length > positions || positions == 0)
        return 0;
    if (is_disturbed(text, length, find_length, positions) ||
        is_disturbed(find, find_length, find_length, positions) ||
        (find_length > kSlotSize && may_run_on(find, find_length)))
        return walk_each(text, length, positions, find, find_length);
    const char* hit = find_length > kSlotSize ? nullptr : find_text(text, find, find_length);
    const size_t position = hit == nullptr ? 0 : hit - text + 1;
    leave_walk(text, length, find_length, hit == nullptr ? positions : position);
    return position;
}

void leave_missed_walk(const char* text, size_t length, size_t find_length)
{
    leave_walk(text, length, find_length, length);
}

size_t walk_for(const char* text, size_t before, const char* find, size_t find_length)
{
    if (in_ring(text) || in_ring(find) || find_length > kSlotSize)
        return walk_with_care(text, before, find, find_length);
    if (before == 0 && text[0] == '\0')
        return 0;
    const char* hit = find_text(text, find, find_length);
    if (hit != nullptr) {
        const size_t position = hit - text + 1;
        leave_walk(text, position - 1 + find_length, find_length, position);
        return position;
    }
    const size_t length = strlen(text);
    if (find_length <= before + length)
        leave_walk(text, length, find_length, before + length);
    return 0;
}
