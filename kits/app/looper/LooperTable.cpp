// The table of loopers: chains of slots by the hash of the looper's address, read without a lock.

#include "app/looper/LooperTable.h"

#include <Message.h>

#include <algorithm>
#include <mutex>

#include "app/looper/Tokens.h"

namespace BPrivate {
namespace {

// Guards the use of free slots, and the order of the loopers. Never held while another is taken.
std::mutex& order_lock()
{
    static std::mutex* sLock = new std::mutex;
    return *sLock;
}

std::vector<LooperRef>& order()
{
    static auto* sOrder = new std::vector<LooperRef>;
    return *sOrder;
}

}  // namespace

constinit std::atomic<LooperSlot*> LooperTable::sChains[1u << kHashBits];

LooperSlot* LooperTable::Add(BLooper* looper, int32 token)
{
    std::atomic<LooperSlot*>& chain = ChainOf(looper);
    LooperSlot* slot;
    {
        std::lock_guard<std::mutex> guard(order_lock());
        slot = chain.load(std::memory_order_acquire);
        while (slot != nullptr && slot->token.load() != 0)
            slot = slot->next;
        if (slot == nullptr) {
            slot = new LooperSlot;
            slot->next = chain.load(std::memory_order_relaxed);
            slot->token.store(token);
            chain.store(slot, std::memory_order_release);
        } else
            slot->token.store(token);
    }
    // A thread that had the slot's last looper in mind may hold the lock for a moment.
    slot->lock.Lock();
    slot->queue.Lock();
    slot->gaps = 0;
    slot->awake.store(1);
    slot->thread.store(0);
    slot->kind.store(static_cast<uint8>(BLooper::Kind::Looper));
    slot->registered.store(false);
    slot->looper.store(looper);
    slot->queue.Unlock();
    std::lock_guard<std::mutex> guard(order_lock());
    order().push_back(LooperRef{slot, token, looper});
    return slot;
}

void LooperTable::Remove(LooperSlot* slot)
{
    std::vector<BMessage*> left;
    const int32 token = slot->token.load();
    slot->queue.Lock();
    slot->looper.store(nullptr);
    while (BMessage* message = slot->queue.NextMessage())
        left.push_back(message);
    slot->queue.Unlock();
    {
        std::lock_guard<std::mutex> guard(order_lock());
        auto& list = order();
        list.erase(std::remove_if(list.begin(), list.end(),
                                  [=](const LooperRef& ref) { return ref.token == token; }),
                   list.end());
    }
    slot->thread.store(0);
    slot->lock.UnlockAll();
    // From here on the slot may be taken again.
    slot->token.store(0);
    slot->gone.fetch_add(1);
    futex_wake(slot->gone, INT32_MAX);
    Wake(slot);  // a loop whose looper was deleted under it ends
    for (BMessage* message : left)
        delete message;
}

status_t LooperTable::Lock(LooperSlot* slot, int32 token, bigtime_t deadline)
{
    if (slot->token.load(std::memory_order_relaxed) != token)
        return B_BAD_VALUE;
    if (!slot->lock.LockUntil(deadline))
        return B_TIMED_OUT;
    if (slot->token.load(std::memory_order_relaxed) == token &&
        slot->looper.load(std::memory_order_relaxed) != nullptr)
        return B_OK;
    slot->lock.Unlock();
    return B_BAD_VALUE;
}

bool LooperTable::Post(LooperSlot* slot, int32 token, BMessage* message)
{
    slot->queue.Lock();
    const bool there = slot->token.load(std::memory_order_relaxed) == token &&
                       slot->looper.load(std::memory_order_relaxed) != nullptr &&
                       !IsOffscreen(slot);
    if (there)
        slot->queue.AddMessage(message);
    slot->queue.Unlock();
    // A loop that looked into the queue before has said so under the queue's lock.
    if (there && slot->awake.load(std::memory_order_relaxed) == 0)
        Wake(slot);
    return there;
}

void LooperTable::Wake(LooperSlot* slot)
{
    if (slot->awake.exchange(1) == 0)
        futex_wake(slot->awake, 1);
}

void LooperTable::Sleep(LooperSlot* slot, bigtime_t deadline)
{
    slot->queue.Lock();
    const bool empty = slot->queue.IsEmpty();
    slot->queue.Unlock();
    if (empty)
        futex_wait(slot->awake, 0, deadline);
}

const std::vector<BHandler*>& LooperTable::Handlers(const BLooper* looper)
{
    CloseGaps(looper);
    return looper->fHandlers;
}

void LooperTable::LeaveGap(BLooper* looper, BHandler* handler)
{
    std::vector<BHandler*>& handlers = looper->fHandlers;
    const auto place = static_cast<size_t>(Tokens::PlaceOf(handler->fToken));
    if (place + 1 == handlers.size()) {
        handlers.pop_back();
        return;
    }
    handlers[place] = nullptr;
    if (size_t(++looper->fSlot->gaps) > handlers.size() / 2)
        CloseGaps(looper);
}

// What a looper that is only read has in gaps shows nowhere.
void LooperTable::CloseGaps(const BLooper* looper)
{
    if (looper->fSlot->gaps == 0)
        return;
    auto& handlers = const_cast<std::vector<BHandler*>&>(looper->fHandlers);
    std::erase(handlers, nullptr);
    looper->fSlot->gaps = 0;
    for (size_t place = 0; place < handlers.size(); place++)
        Tokens::SetPlace(handlers[place]->fToken, static_cast<int32>(place));
}

std::vector<LooperRef> LooperTable::List()
{
    std::lock_guard<std::mutex> guard(order_lock());
    return order();
}

}  // namespace BPrivate
