// Slabs of rows. Any thread.

#include "gadgets/row_memory.h"

#include "runtime/lasting_locker.h"

#include <stdlib.h>

#include <new>
#include <utility>

// The address sanitizer, where there is one, knows the rows that nobody has.
#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(start, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(start, size) static_cast<void>(0)
#endif

static LastingLocker sLock("rows");

std::array<std::atomic<uintptr_t>, 1 << 14> RowMemory::sKnown;

// Begins at a multiple of kSlabBytes; rows and texts lie behind it.
struct RowMemory::Slab {
    // In a row that came back.
    struct Spare {
        Spare* next;
    };

    static Slab* New() REQUIRES(sLock);
    void Delete() REQUIRES(sLock);
    void* Take() REQUIRES(sLock);
    void Give(void* row) REQUIRES(sLock);
    void Link() REQUIRES(sLock);
    void Unlink() REQUIRES(sLock);
    bool IsFull() const { return taken == kRows; }
    bool IsOnlyOne() const { return next == nullptr && previous == nullptr; }
    uintptr_t Address() const { return reinterpret_cast<uintptr_t>(this); }

    Slab* next = nullptr;  // of those with room, which begin at sWithRoom
    Slab* previous = nullptr;
    Spare* spares = nullptr;
    size_t taken = 0;
    size_t touched = 0;  // rows from this one on were never taken

    static Slab* sWithRoom GUARDED_BY(sLock);
};

RowMemory::Slab* RowMemory::Slab::sWithRoom = nullptr;

RowMemory::Slab* RowMemory::Slab::New()
{
    static_assert(sizeof(Slab) <= kHeadBytes && sizeof(Spare) <= kRowBytes);
    void* memory = nullptr;
    if (posix_memalign(&memory, kSlabBytes, kSlabBytes - kMallocBytes) != 0)
        throw std::bad_alloc();
    Slab* const slab = new (memory) Slab;
    ASAN_POISON_MEMORY_REGION(slab + 1, kSlabBytes - kMallocBytes - sizeof(Slab));
    if (_PlaceOf(slab->Address()) == 0)
        _PlaceOf(slab->Address()) = slab->Address();
    slab->Link();
    return slab;
}

void RowMemory::Slab::Delete()
{
    Unlink();
    if (_PlaceOf(Address()) == Address())
        _PlaceOf(Address()) = 0;
    ASAN_UNPOISON_MEMORY_REGION(this, kSlabBytes - kMallocBytes);
    free(this);
}

void RowMemory::Slab::Link()
{
    previous = nullptr;
    next = std::exchange(sWithRoom, this);
    if (next != nullptr)
        next->previous = this;
}

void RowMemory::Slab::Unlink()
{
    (previous != nullptr ? previous->next : sWithRoom) = next;
    if (next != nullptr)
        next->previous = previous;
}

void* RowMemory::Slab::Take()
{
    void* row = spares;
    if (row == nullptr)
        row = reinterpret_cast<char*>(this) + kHeadBytes + touched++ * kRowBytes;
    ASAN_UNPOISON_MEMORY_REGION(row, kRowBytes);
    ASAN_UNPOISON_MEMORY_REGION(TextOf(row), kTextBytes);
    if (row == spares)
        spares = spares->next;
    if (++taken == kRows)
        Unlink();
    return row;
}

void RowMemory::Slab::Give(void* row)
{
    if (IsFull())
        Link();
    spares = new (row) Spare{spares};
    taken--;
    ASAN_POISON_MEMORY_REGION(row, kRowBytes);
    ASAN_POISON_MEMORY_REGION(TextOf(row), kTextBytes);
}

void* RowMemory::Take()
{
    const Autolock lock(sLock);
    Slab* const slab = Slab::sWithRoom;
    return (slab != nullptr ? slab : Slab::New())->Take();
}

void RowMemory::Give(void* row)
{
    const Autolock lock(sLock);
    auto* const slab = reinterpret_cast<Slab*>(_SlabOf(row));
    slab->Give(row);
    // The only one with room stays, for lists whose rows come and go.
    if (slab->taken == 0 && !slab->IsOnlyOne())
        slab->Delete();
}
