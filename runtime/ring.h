#ifndef RUNTIME_RING_H
#define RUNTIME_RING_H

// The string ring: sixteen slots that text results go into. Main thread; other threads share it
// unprotected by design.

#include <stddef.h>
#include <stdint.h>
#include <string.h>

constexpr uint32_t kSlots = 16;
constexpr size_t kSlotSize = 257;  // 256 characters and a terminator
constexpr size_t kSlotText = kSlotSize - 1;
constexpr size_t kRingSize = (kSlots + 1) * kSlotSize;  // slot 15 spills into a spare slot

extern char StrFunction[kRingSize];
extern uint32_t StrCnt;  // the slot handed out last

inline char* ring_slot(uint32_t index) { return StrFunction + (index % kSlots) * kSlotSize; }

// Hands out the next slot, after slot 15 slot 0.
inline char* GetNextTab()
{
    StrCnt = (StrCnt + 1) % kSlots;
    return ring_slot(StrCnt);
}

// The slot of a Mid, which reserves the following one too.
inline char* take_mid()
{
    char* slot = GetNextTab();
    GetNextTab();
    return slot;
}

inline bool in_ring(const char* text)
{
    return reinterpret_cast<uintptr_t>(text) - reinterpret_cast<uintptr_t>(StrFunction) < kRingSize;
}

// The C library's copy and fill, also for sizes that the compiler can bound: it would turn those
// into string instructions, which start slowly.
inline void copy_bytes(char* to, const char* from, size_t size)
{
    asm("" : "+r"(size));
    memmove(to, from, size);
}
inline void fill_bytes(char* to, char c, size_t size)
{
    asm("" : "+r"(size));
    memset(to, c, size);
}

// Copies at most `limit` bytes of `text`, which stay without a terminator if the text is no
// shorter, and fills a shorter text up to the limit with zeros. The text may lie in the ring.
void copy_within_ring(char* to, const char* text, size_t limit);
inline void bounded_copy(char* to, const char* text, size_t limit)
{
    if (in_ring(text))
        copy_within_ring(to, text, limit);
    else
        strncpy(to, text, limit);
}

// Copies `text` (`length` bytes, at most 256 count) into a slot and terminates it.
void put_text(char* slot, const char* text, size_t length);

// What a Mid leaves in its slot. `source` is where the wanted part begins, `available` how many
// bytes the text has from there; the terminator goes to result[count] wherever that falls.
void put_mid(char* result, const char* source, size_t available, int32_t count);
void put_empty_mid(char* result, int32_t count);

// The terminator of a Mid; it may fall into a later slot, or with a negative count into an earlier.
inline void terminate(char* result, int32_t count)
{
    const size_t at = result - StrFunction + static_cast<ptrdiff_t>(count);
    if (at < kRingSize)
        StrFunction[at] = '\0';
}

inline size_t copy_limit(int32_t count)
{
    const auto limit = static_cast<size_t>(static_cast<ptrdiff_t>(count));
    return limit < kSlotSize ? limit : kSlotSize;
}

// A Mid from `source` on, whose length nobody knows yet.
inline void put_mid_of(char* result, const char* source, int32_t count)
{
    bounded_copy(result, source, copy_limit(count));
    terminate(result, count);
}

// Searches `text` as a walk does that makes a Mid of every position, compares it with `find` and
// gives up after as many positions as the text and `before` more bytes have. Returns the 1-based
// position of the first match, 0 if there is none; the ring is left as the walk leaves it.
size_t walk_for(const char* text, size_t before, const char* find, size_t find_length);

// The same search without the pieces, for walks whose pieces a later one writes over: only a walk
// to the end of `text`, of `length` bytes, leaves them. For a `find` of one byte and more that is,
// like the text, not in the ring.
inline size_t search_only(const char* text, const char* find, size_t find_length)
{
    const char* hit = find_length == 1 ? strchr(text, find[0]) : strstr(text, find);
    const size_t position = hit != nullptr ? hit - text + 1 : 0;
    StrCnt = (StrCnt + 2 * static_cast<uint32_t>(position)) % kSlots;
    return position;
}
void leave_missed_walk(const char* text, size_t length, size_t find_length);

// Positions of a walk that are further back than this leave nothing: each takes a pair of slots.
constexpr size_t kPairs = kSlots / 2;

// The slot of position `i` of a walk that is about to begin.
inline char* walk_slot(size_t i) { return ring_slot(StrCnt + 2 * static_cast<uint32_t>(i) - 1); }

#endif  // RUNTIME_RING_H
