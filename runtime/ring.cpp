// The string ring, and searches that use its slots up. Main thread.
//
// A search takes two slots for every position it examines, and its last pieces of text stay behind
// in them. Programs may read those, so they are put there; but only the pieces that later ones do
// not overwrite.

#include "runtime/ring.h"

#include <algorithm>
#include <string.h>

char StrFunction[kRingSize];
uint32_t StrCnt;

void bounded_copy(char* to, const char* text, size_t limit)
{
    size_t length = strnlen(text, limit);
    memmove(to, text, length);
    memset(to + length, 0, limit - length);
}

void put_text(char* slot, const char* text, size_t length)
{
    length = std::min(length, kSlotText);
    memmove(slot, text, length);
    slot[length] = '\0';
}

// The terminator may fall into a later slot, or with a negative count into an earlier one.
static void terminate(char* result, int32_t count)
{
    ptrdiff_t at = result - StrFunction + static_cast<ptrdiff_t>(count);
    if (at >= 0 && at < static_cast<ptrdiff_t>(kRingSize))
        StrFunction[at] = '\0';
}

static size_t copy_limit(int32_t count)
{
    return std::min(static_cast<size_t>(static_cast<ptrdiff_t>(count)), kSlotSize);
}

void put_mid(char* result, const char* source, size_t available, int32_t count)
{
    size_t limit = copy_limit(count);
    size_t length = std::min(available, limit);
    memmove(result, source, length);
    if (length < limit)
        memset(result + length, 0, limit - length);
    terminate(result, count);
}

void put_empty_mid(char* result, int32_t count)
{
    result[0] = '\0';
    terminate(result, count);
}

bool in_ring(const char* text)
{
    return text >= StrFunction && text < StrFunction + kRingSize;
}

void leave_walk(const char* text, size_t length, size_t width, size_t tried)
{
    // Eight pairs of slots: what lies more than eight positions back is overwritten. Positions
    // behind the text's end leave only an empty result, so that pieces before them show through.
    const size_t kPairs = kSlots / 2;
    size_t inside = std::min(tried, length);
    auto first_of = [](size_t last) { return last > kPairs ? last - kPairs + 1 : 1; };
    auto slot_of = [](size_t i) { return ring_slot(StrCnt + 2 * static_cast<uint32_t>(i) - 1); };
    for (size_t i = first_of(inside); i <= inside; i++)
        put_mid(slot_of(i), text + i - 1, length - i + 1, width);
    for (size_t i = std::max(first_of(tried), inside + 1); i <= tried; i++)
        put_empty_mid(slot_of(i), width);
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
static size_t walk_each(const char* text, size_t positions, const char* find, size_t find_length)
{
    size_t length = strlen(text);
    for (size_t i = 1; i <= positions; i++) {
        if (in_ring(text))
            length = strlen(text);
        char* piece = GetNextTab();
        GetNextTab();
        if (i <= length)
            put_mid(piece, text + i - 1, length - i + 1, find_length);
        else
            put_empty_mid(piece, find_length);
        if (strcmp(piece, find) == 0)
            return i;
    }
    return 0;
}

static const char* find_text(const char* text, size_t length, const char* find, size_t find_length)
{
    if (find_length == 1)
        return static_cast<const char*>(memchr(text, find[0], length));
    return strstr(text, find);
}

size_t walk_for(const char* text, size_t positions, const char* find, size_t find_length)
{
    size_t length = strlen(text);
    if (find_length > positions || positions == 0)
        return 0;
    if (is_disturbed(text, length, find_length, positions)
        || is_disturbed(find, find_length, find_length, positions)
        || (find_length > kSlotSize && may_run_on(find, find_length)))
        return walk_each(text, positions, find, find_length);

    const char* hit = nullptr;
    if (find_length <= kSlotSize)
        hit = find_text(text, length, find, find_length);
    size_t position = hit == nullptr ? 0 : hit - text + 1;
    leave_walk(text, length, find_length, hit == nullptr ? positions : position);
    return position;
}
