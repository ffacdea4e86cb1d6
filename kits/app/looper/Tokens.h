#ifndef APP_TOKENS_H
#define APP_TOKENS_H

// Numbers for handlers, loopers and senders that wait for a reply. Messengers and messages carry
// numbers, so that one that outlives its target does no harm: a number is not given twice (but
// after two thousand million others). Any thread; no lock is taken inside.

#include <SupportDefs.h>

#include <atomic>

class BHandler;
class BLooper;
class BMessage;

namespace [[gnu::visibility("hidden")]] BPrivate {

struct LooperSlot;

// A sender waiting in SendMessage(). Lives on its stack, between AddWaiter() and Remove().
struct ReplyWaiter {
    std::atomic<uint32> answered{0};  // futex
    BMessage* reply = nullptr;        // valid once answered; the sender's
};

namespace Tokens {

int32 Add(BHandler* handler);
int32 AddWaiter(ReplyWaiter* waiter);
void Remove(int32 token);

// The looper's own token leads to its queue as well.
void BindSlot(int32 token, LooperSlot* slot);

// The looper that a handler was added to; told by the handler.
void SetLooper(int32 token, const BLooper* looper);
// Where that looper keeps it; with the looper locked.
void SetPlace(int32 token, int32 place);
int32 PlaceOf(int32 token);

// Null if the handler is gone or not with that looper. The pointer holds while the looper is
// locked.
BHandler* HandlerIn(const BLooper* looper, int32 token);
// Only an address, as with HandlerIn(): null for a handler without looper.
const BLooper* LooperOf(int32 token);
bool IsHandler(int32 token);
LooperSlot* SlotFor(int32 token);  // null if it is no looper's
bool IsWaiter(int32 token);
// Hands a reply over; false, and the message stays the caller's, if nobody waits.
bool Answer(int32 token, BMessage* reply);

}  // namespace Tokens
}  // namespace BPrivate

#endif  // APP_TOKENS_H
