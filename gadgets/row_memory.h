#ifndef GADGETS_ROW_MEMORY_H
#define GADGETS_ROW_MEMORY_H

// Memory of the rows of all lists, in slabs: the rows of a slab lie together, and behind them the
// texts of those rows. So a row's address tells where its text is, and texts can be had from few
// cache lines, however many rows there are and whatever their order.

#include <stddef.h>
#include <stdint.h>

#include <array>
#include <atomic>

class RowMemory {
public:
    static constexpr size_t kRowBytes = 64, kTextBytes = 32;  // of one row

    // Throws std::bad_alloc. Any thread.
    static void* Take();
    // A slab goes back to the C library with its last row, but for one.
    static void Give(void* row);

    // Where the text of a row from here is. Reads nothing.
    static char* TextOf(const void* row)
    {
        const uintptr_t slab = _SlabOf(row);
        const size_t number = (reinterpret_cast<uintptr_t>(row) - slab - kHeadBytes) / kRowBytes;
        return reinterpret_cast<char*>(slab + kFirstText + number * kTextBytes);
    }

    // True only for a row from here, and for all but those of slabs far away from the others. Reads
    // nothing of it.
    static bool Knows(const void* row)
    {
        const uintptr_t slab = _SlabOf(row);
        return slab != 0 && _PlaceOf(slab).load(std::memory_order_relaxed) == slab;
    }

private:
    struct Slab;

    static constexpr size_t kSlabBytes = size_t(1) << 15;
    static constexpr size_t kMallocBytes = 16;  // its own, between slabs that lie side by side
    static constexpr size_t kHeadBytes = 64;
    static constexpr size_t kRows =
        (kSlabBytes - kMallocBytes - kHeadBytes) / (kRowBytes + kTextBytes);
    static constexpr size_t kFirstText = kHeadBytes + kRows * kRowBytes;

    static uintptr_t _SlabOf(const void* row)
    {
        return reinterpret_cast<uintptr_t>(row) & ~(kSlabBytes - 1);
    }
    static std::atomic<uintptr_t>& _PlaceOf(uintptr_t slab)
    {
        return sKnown[slab / kSlabBytes % sKnown.size()];
    }

    // The slabs themselves, 0 where there is none: each has one place, and is left out if that is
    // taken. Written with the lock of all slabs held.
    static std::array<std::atomic<uintptr_t>, 1 << 14> sKnown;
};

#endif  // GADGETS_ROW_MEMORY_H
