#ifndef APP_LOOPER_TABLE_H
#define APP_LOOPER_TABLE_H

// Where the loopers of the program are. A looper's lock, queue and wake-up word live in a slot that
// outlives it: whoever holds a pointer to a looper that is gone finds no slot for that address, or
// one with another token, and touches nothing else. Slots are never freed, only used again for a
// looper at an address of the same hash.

#include <Looper.h>
#include <MessageQueue.h>

#include <atomic>
#include <vector>

#include "support/RecursiveLock.h"

namespace [[gnu::visibility("hidden")]] BPrivate {

struct LooperSlot {
    std::atomic<BLooper*> looper{nullptr};  // both change with lock and queue held
    std::atomic<int32> token{0};            // the looper's own; 0 when there is none
    LooperSlot* next = nullptr;             // in the chain of its hash, for ever
    BasicRecursiveLock<LockLife::Forever> lock;
    BMessageQueue queue;
    int32 gaps = 0;                       // in the looper's list of handlers; the lock
    std::atomic<uint32> awake{1};         // futex: 0 while the loop sleeps or is about to
    std::atomic<uint32> gone{0};          // futex: counts the loopers that were here
    std::atomic<thread_id> thread{0};     // that runs the loop, 0 before
    std::atomic<uint8> kind{0};           // BLooper::Kind
    std::atomic<bool> registered{false};  // by BApplication::RegisterLooper()
};

// One looper, as of the moment when it was listed.
struct LooperRef {
    LooperSlot* slot;
    int32 token;
    BLooper* looper;  // only after Lock()
};

struct LooperTable {
    // The slot of a looper at this address, null if there is none. Dereferences nothing of it.
    static LooperSlot* Find(const BLooper* looper)
    {
        if (looper == nullptr)
            return nullptr;
        LooperSlot* slot = ChainOf(looper).load(std::memory_order_acquire);
        while (slot != nullptr && slot->looper.load(std::memory_order_relaxed) != looper)
            slot = slot->next;
        return slot;
    }

    // Enters a looper, locked by the calling thread. Remove() takes its name out, gives all
    // levels of the lock back and deletes the queued messages.
    static LooperSlot* Add(BLooper* looper, int32 token);
    static void Remove(LooperSlot* slot);

    // Locks if the looper is still there: B_OK, B_BAD_VALUE if not, B_TIMED_OUT.
    static status_t Lock(LooperSlot* slot, int32 token, bigtime_t deadline);

    // Queues a message and wakes the loop. False, the message stays the caller's, if the looper
    // is gone, or is that of a bitmap, which never runs.
    static bool Post(LooperSlot* slot, int32 token, BMessage* message);
    static void Wake(LooperSlot* slot);
    // Announced first, so that whatever comes between the two ends the sleep at once.
    static void AnnounceSleep(LooperSlot* slot) { slot->awake.exchange(0); }
    static void Sleep(LooperSlot* slot, bigtime_t deadline);

    // The handlers of a looper in their order. With the looper locked, as LeaveGap() is called.
    static const std::vector<BHandler*>& Handlers(const BLooper* looper);
    // Takes a handler out; of many in no order each goes at once.
    static void LeaveGap(BLooper* looper, BHandler* handler);

    // All loopers, oldest first.
    static std::vector<LooperRef> List();

    static bool IsWindow(const LooperSlot* slot)
    {
        return slot->kind.load() == static_cast<uint8>(BLooper::Kind::Window);
    }
    static bool IsOffscreen(const LooperSlot* slot)
    {
        return slot->kind.load() == static_cast<uint8>(BLooper::Kind::Offscreen);
    }

private:
    static constexpr uint32 kHashBits = 10;

    static void CloseGaps(const BLooper* looper);
    static std::atomic<LooperSlot*>& ChainOf(const BLooper* looper)
    {
        const uint64 bits = reinterpret_cast<uintptr_t>(looper) >> 4;
        return sChains[bits * 0x9E3779B97F4A7C15u >> (64 - kHashBits)];
    }

    static std::atomic<LooperSlot*> sChains[1u << kHashBits];  // put in front, never taken out
};

}  // namespace BPrivate

#endif  // APP_LOOPER_TABLE_H
