// The table behind the tokens: what stands behind each number, under one lock that is only ever
// held for a look-up.

#include "app/looper/Tokens.h"

#include <unordered_map>

#include "support/Futex.h"
#include "support/Mutex.h"

namespace BPrivate {
namespace {

struct Entry {
    BHandler* handler;
    const BLooper* looper;
    LooperSlot* slot;
    ReplyWaiter* waiter;
    int32 place;
};

struct Table {
    BPrivate::Mutex lock;
    std::unordered_map<int32, Entry> entries GUARDED_BY(lock);
    int32 last GUARDED_BY(lock) = 0;
};

// Never destroyed: static handlers go after it would.
Table& table()
{
    static Table* sTable = new Table;
    return *sTable;
}

int32 add(const Entry& entry)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    do {
        tokens.last = tokens.last == INT32_MAX ? 1 : tokens.last + 1;
    } while (!tokens.entries.try_emplace(tokens.last, entry).second);
    return tokens.last;
}

template <class Result>
Result look_up(int32 token, Result Entry::*member)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    auto found = tokens.entries.find(token);
    return found != tokens.entries.end() ? found->second.*member : Result();
}

template <class Value>
void set(int32 token, Value Entry::*member, Value value)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    auto found = tokens.entries.find(token);
    if (found != tokens.entries.end())
        found->second.*member = value;
}

}  // namespace

int32 Tokens::Add(BHandler* handler) { return add(Entry{handler, nullptr, nullptr, nullptr, 0}); }

int32 Tokens::AddWaiter(ReplyWaiter* waiter)
{
    return add(Entry{nullptr, nullptr, nullptr, waiter, 0});
}

void Tokens::Remove(int32 token)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    tokens.entries.erase(token);
}

void Tokens::BindSlot(int32 token, LooperSlot* slot) { set(token, &Entry::slot, slot); }

void Tokens::SetLooper(int32 token, const BLooper* looper) { set(token, &Entry::looper, looper); }

void Tokens::SetPlace(int32 token, int32 place) { set(token, &Entry::place, place); }

int32 Tokens::PlaceOf(int32 token) { return look_up(token, &Entry::place); }

BHandler* Tokens::HandlerIn(const BLooper* looper, int32 token)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    auto found = tokens.entries.find(token);
    return found != tokens.entries.end() && found->second.looper == looper ? found->second.handler
                                                                           : nullptr;
}

const BLooper* Tokens::LooperOf(int32 token) { return look_up(token, &Entry::looper); }

bool Tokens::IsHandler(int32 token) { return look_up(token, &Entry::handler) != nullptr; }

LooperSlot* Tokens::SlotFor(int32 token) { return look_up(token, &Entry::slot); }

bool Tokens::IsWaiter(int32 token) { return look_up(token, &Entry::waiter) != nullptr; }

bool Tokens::Answer(int32 token, BMessage* reply)
{
    // The lock keeps the waiting sender from leaving while its waiter is written.
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    auto found = tokens.entries.find(token);
    if (found == tokens.entries.end() || found->second.waiter == nullptr)
        return false;
    ReplyWaiter* waiter = found->second.waiter;
    waiter->reply = reply;
    waiter->answered.store(1, std::memory_order_release);
    futex_wake(waiter->answered, 1);
    tokens.entries.erase(found);  // one answer is enough
    return true;
}

}  // namespace BPrivate
