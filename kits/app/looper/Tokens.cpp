// The table behind the tokens: what stands behind each number, under one lock that is only ever
// held for a look-up.

#include "app/looper/Tokens.h"

#include "app/looper/TokenTable.h"
#include "support/Futex.h"
#include "support/Mutex.h"

namespace BPrivate {
namespace {

struct Entry {
    int32 token = 0;
    int32 place = 0;
    BHandler* handler = nullptr;
    const BLooper* looper = nullptr;
    LooperSlot* slot = nullptr;
    ReplyWaiter* waiter = nullptr;
};

struct Table {
    BPrivate::Mutex lock;
    TokenTable<Entry> entries GUARDED_BY(lock);
    int32 last GUARDED_BY(lock) = 0;
};

// Never destroyed: static handlers go after it would.
Table& table()
{
    static Table* sTable = new Table;
    return *sTable;
}

int32 add(Entry entry)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    do {
        entry.token = tokens.last == INT32_MAX ? 1 : tokens.last + 1;
        tokens.last = entry.token;
    } while (!tokens.entries.Add(entry));
    return entry.token;
}

template <class Result>
Result look_up(int32 token, Result Entry::*member)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    const Entry* found = tokens.entries.Find(token);
    return found != nullptr ? found->*member : Result();
}

template <class Value>
void set(int32 token, Value Entry::*member, Value value)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    if (Entry* found = tokens.entries.Find(token))
        found->*member = value;
}

}  // namespace

int32 Tokens::Add(BHandler* handler) { return add(Entry{.handler = handler}); }

int32 Tokens::AddWaiter(ReplyWaiter* waiter) { return add(Entry{.waiter = waiter}); }

void Tokens::Remove(int32 token)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    tokens.entries.Remove(token);
}

void Tokens::BindSlot(int32 token, LooperSlot* slot) { set(token, &Entry::slot, slot); }

void Tokens::SetLooper(int32 token, const BLooper* looper) { set(token, &Entry::looper, looper); }

void Tokens::SetPlace(int32 token, int32 place) { set(token, &Entry::place, place); }

int32 Tokens::PlaceOf(int32 token) { return look_up(token, &Entry::place); }

BHandler* Tokens::HandlerIn(const BLooper* looper, int32 token)
{
    Table& tokens = table();
    BPrivate::MutexLock guard(tokens.lock);
    const Entry* found = tokens.entries.Find(token);
    return found != nullptr && found->looper == looper ? found->handler : nullptr;
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
    const Entry* found = tokens.entries.Find(token);
    if (found == nullptr || found->waiter == nullptr)
        return false;
    ReplyWaiter* waiter = found->waiter;
    waiter->reply = reply;
    waiter->answered.store(1, std::memory_order_release);
    futex_wake(waiter->answered, 1);
    tokens.entries.Remove(token);  // one answer is enough
    return true;
}

}  // namespace BPrivate
