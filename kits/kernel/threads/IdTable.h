#ifndef KERNEL_ID_TABLE_H
#define KERNEL_ID_TABLE_H

// Objects by id, found without a lock. Slots are never freed, so that a late caller with the id of
// a deleted object finds, with the slot's own lock held, that the id is another's.
// Clang's analysis does not follow that lock: it goes with the slot to whoever asked for it.

#include <OS.h>

#include <atomic>
#include <deque>
#include <mutex>
#include <new>

#include "support/Mutex.h"

namespace BPrivate {

// Slot has a `Mutex lock` and, guarded by it, an `int32 id`, 0 while the slot is free.
template <class Slot>
class IdTable {
public:
    // Gives a free slot an id, and locks it; null when all are in use, and without memory.
    Slot* Take(std::unique_lock<Mutex>& hold)
    {
        int32 index;
        {
            MutexLock table(fLock);
            // Freed slots rest a while before they are used again.
            if (fFree.size() > kResting || (fUsed == kMaxSlots && !fFree.empty())) {
                index = fFree.front();
                fFree.pop_front();
            } else if (fUsed < kMaxSlots) {
                index = fUsed;
                if (index % kChunk == 0 && !_MakeChunk(index / kChunk))
                    return nullptr;
                fUsed++;
            } else {
                return nullptr;
            }
            fSequence = fSequence % kMaxSequence + 1;
        }
        ++fCount;
        Slot* slot = _At(index);
        hold = std::unique_lock(slot->lock);
        slot->id = static_cast<int32>(fSequence.load()) << kIndexBits | index;
        return slot;
    }

    // Null, or the slot of `id`, locked.
    Slot* Find(int32 id, std::unique_lock<Mutex>& hold) const
    {
        if (id <= 0)
            return nullptr;
        Slot* slot = _At(id & (kMaxSlots - 1));
        if (slot == nullptr)
            return nullptr;
        hold = std::unique_lock(slot->lock);
        if (slot->id == id)
            return slot;
        hold.unlock();
        return nullptr;
    }

    // Ends the id of a locked slot.
    void Release(Slot* slot)
    {
        const int32 index = slot->id & (kMaxSlots - 1);
        slot->id = 0;
        --fCount;
        MutexLock table(fLock);
        fFree.push_back(index);
    }

    // The first slot in use at `*cookie` or behind it, locked; moves the cookie past it.
    Slot* Next(int32* cookie, std::unique_lock<Mutex>& hold) const
    {
        while (*cookie >= 0 && *cookie < kMaxSlots) {
            Slot* slot = _At((*cookie)++);
            if (slot == nullptr)
                return nullptr;
            hold = std::unique_lock(slot->lock);
            if (slot->id != 0)
                return slot;
            hold.unlock();
        }
        return nullptr;
    }

    int32 Count() const { return fCount.load(std::memory_order_relaxed); }

    static constexpr int32 kMaxSlots = 1 << 16;

private:
    static constexpr int32 kIndexBits = 16;
    static constexpr int32 kChunk = 256;
    static constexpr int32 kMaxSequence = (1 << 15) - 1;
    static constexpr size_t kResting = 64;

    bool _MakeChunk(int32 number) REQUIRES(fLock)
    {
        auto* chunk = new (std::nothrow) Slot[kChunk];
        fChunks[number].store(chunk, std::memory_order_release);
        return chunk != nullptr;
    }

    Slot* _At(int32 index) const
    {
        Slot* chunk = fChunks[index / kChunk].load(std::memory_order_acquire);
        return chunk != nullptr ? chunk + index % kChunk : nullptr;
    }

    Mutex fLock;
    std::deque<int32> fFree GUARDED_BY(fLock);
    int32 fUsed GUARDED_BY(fLock) = 0;
    std::atomic<int32> fSequence{0};
    std::atomic<int32> fCount{0};
    std::atomic<Slot*> fChunks[kMaxSlots / kChunk] = {};
};

}  // namespace BPrivate

#endif  // KERNEL_ID_TABLE_H
