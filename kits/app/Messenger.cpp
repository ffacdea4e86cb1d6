// Messengers: two tokens, looked up when a message is sent.

#include <Messenger.h>

#include <Application.h>
#include <Handler.h>
#include <Looper.h>
#include <Message.h>

#include <functional>
#include <tuple>

#include <string.h>
#include <unistd.h>

#include "app/LooperTable.h"
#include "app/MessageAccess.h"
#include "app/MessengerAccess.h"
#include "app/Tokens.h"

using BPrivate::kNoToken;
using BPrivate::kPreferredToken;
using BPrivate::LooperSlot;
using BPrivate::LooperTable;
using BPrivate::MessageAccess;
using BPrivate::MessengerAccess;
namespace Tokens = BPrivate::Tokens;

namespace BPrivate {

team_id current_team()
{
    static const team_id sTeam = getpid();
    return sTeam;
}

BMessenger MessengerAccess::Make(int32 looper, int32 handler)
{
    return BMessenger(current_team(), looper, handler);
}

BMessenger MessengerAccess::ForHandler(int32 handler)
{
    LooperSlot* slot = LooperTable::Find(Tokens::LooperOf(handler));
    const int32 looper = slot != nullptr ? slot->token.load() : kNoToken;
    return looper != kNoToken ? Make(looper, handler) : BMessenger();
}

status_t MessengerAccess::Deliver(const BMessenger& target, BMessage* message)
{
    MessageAccess::Target(message) = target.fHandler;
    LooperSlot* slot = Tokens::SlotFor(target.fLooper);
    if (slot != nullptr ? LooperTable::Post(slot, target.fLooper, message)
                        : Tokens::Answer(target.fLooper, message))
        return B_OK;
    MessageAccess::Delivery(message) = 0;
    delete message;
    return B_BAD_PORT_ID;
}

static BMessage* outgoing_copy(const BMessage* message, const BMessenger& replyTo, uint32 flags,
                               const BMessage* previous)
{
    if (previous != nullptr)
        flags |= MessageAccess::kReply;
    BMessage* copy = MessageAccess::CopyFor(message, kPreferredToken, replyTo, flags);
    if (previous != nullptr)
        MessageAccess::Previous(copy) = new BMessage(*previous);
    return copy;
}

status_t MessengerAccess::Send(const BMessenger& target, const BMessage* message,
                               const BMessenger& replyTo, const BMessage* previous)
{
    if (!target.IsTargetLocal())
        return B_BAD_PORT_ID;
    return Deliver(target, outgoing_copy(message, replyTo, 0, previous));
}

// True if nobody else could ever answer what the calling thread sends to this looper.
static bool waits_for_itself(int32 looper, bigtime_t timeout)
{
    LooperSlot* slot = Tokens::SlotFor(looper);
    return timeout == B_INFINITE_TIMEOUT && slot != nullptr
        && slot->thread.load() == current_thread();
}

status_t MessengerAccess::SendAndWait(const BMessenger& target, const BMessage* message,
                                      BMessage* reply, bigtime_t replyTimeout,
                                      const BMessage* previous)
{
    if (!target.IsTargetLocal())
        return B_BAD_PORT_ID;
    if (waits_for_itself(target.fLooper, replyTimeout))
        return B_MESSAGE_TO_SELF;

    ReplyWaiter waiter;
    const int32 token = Tokens::AddWaiter(&waiter);
    const status_t status = Deliver(
        target, outgoing_copy(message, Make(token, kPreferredToken),
                              MessageAccess::kSourceWaiting, previous));
    const bigtime_t deadline = deadline_after(replyTimeout);
    while (status == B_OK && waiter.answered.load(std::memory_order_acquire) == 0
           && (deadline == B_INFINITE_TIMEOUT || system_time() < deadline))
        futex_wait(waiter.answered, 0, deadline);
    Tokens::Remove(token);  // nobody touches the waiter after this
    if (status != B_OK)
        return status;
    if (waiter.reply == nullptr)
        return B_TIMED_OUT;
    MessageAccess::MoveReply(waiter.reply, reply);
    return B_OK;
}

BMessenger MessengerAccess::ReplyAddress(const BMessage* message)
{
    const BMessenger& address = MessageAccess::ReturnAddress(const_cast<BMessage*>(message));
    const bool passed_on = (MessageAccess::Delivery(message) & MessageAccess::kDelivered) != 0;
    return passed_on && IsSet(address) ? address : be_app_messenger;
}

}  // namespace BPrivate

BMessenger::BMessenger()
    : BMessenger(-1, kNoToken, kNoToken)
{
}

BMessenger::BMessenger(team_id team, int32 looper, int32 handler)
    : fTeam(team), fLooper(looper), fHandler(handler)
{
}

BMessenger::BMessenger(const char* signature, team_id team, status_t* result)
    : BMessenger()
{
    const status_t status = SetTo(signature, team);
    if (result != nullptr)
        *result = status;
}

BMessenger::BMessenger(const BHandler* handler, const BLooper* looper, status_t* result)
    : BMessenger()
{
    const status_t status = SetTo(handler, looper);
    if (result != nullptr)
        *result = status;
}

BMessenger::BMessenger(const BMessenger& other) = default;

BMessenger::~BMessenger() = default;

bool BMessenger::IsTargetLocal() const
{
    return fLooper != kNoToken && fTeam == BPrivate::current_team();
}

BHandler* BMessenger::Target(BLooper** looper) const
{
    LooperSlot* slot = Tokens::SlotFor(fLooper);
    BLooper* const found = slot != nullptr ? slot->looper.load() : nullptr;
    const bool there = found != nullptr && slot->token.load() == fLooper;
    if (looper != nullptr)
        *looper = there ? found : nullptr;
    return there ? Tokens::HandlerIn(found, fHandler) : nullptr;
}

bool BMessenger::LockTarget() const
{
    return LockTargetWithTimeout(B_INFINITE_TIMEOUT) == B_OK;
}

status_t BMessenger::LockTargetWithTimeout(bigtime_t timeout) const
{
    LooperSlot* slot = Tokens::SlotFor(fLooper);
    if (slot == nullptr)
        return B_BAD_VALUE;
    const status_t status = LooperTable::Lock(slot, fLooper, BPrivate::deadline_after(timeout));
    if (status != B_OK || fHandler == kPreferredToken)
        return status;
    if (Tokens::HandlerIn(slot->looper.load(), fHandler) != nullptr)
        return B_OK;
    slot->lock.Unlock();
    return B_BAD_VALUE;
}

status_t BMessenger::SendMessage(uint32 command, BHandler* replyTo) const
{
    BMessage message(command);
    return SendMessage(&message, replyTo);
}

// Queues have no limit, so that no delivery waits: the timeouts for it are not used.
status_t BMessenger::SendMessage(BMessage* message, BHandler* replyTo, bigtime_t timeout) const
{
    if (message == nullptr)
        return B_BAD_VALUE;
    const BMessenger reply = replyTo != nullptr
        ? BMessenger(replyTo) : MessengerAccess::ReplyAddress(message);
    return SendMessage(message, reply, timeout);
}

status_t BMessenger::SendMessage(BMessage* message, BMessenger replyTo, bigtime_t) const
{
    return message != nullptr
        ? MessengerAccess::Send(*this, message, replyTo, nullptr) : B_BAD_VALUE;
}

status_t BMessenger::SendMessage(uint32 command, BMessage* reply) const
{
    BMessage message(command);
    return SendMessage(&message, reply);
}

status_t BMessenger::SendMessage(BMessage* message, BMessage* reply, bigtime_t,
                                 bigtime_t replyTimeout) const
{
    return message != nullptr && reply != nullptr
        ? MessengerAccess::SendAndWait(*this, message, reply, replyTimeout, nullptr)
        : B_BAD_VALUE;
}

status_t BMessenger::SetTo(const char* signature, team_id team)
{
    *this = BMessenger();
    if (signature == nullptr && team < 0)
        return B_BAD_VALUE;
    if (team >= 0 && team != BPrivate::current_team())
        return B_BAD_TEAM_ID;
    if (be_app == nullptr)
        return signature == nullptr ? B_BAD_TEAM_ID : B_BAD_VALUE;
    if (signature != nullptr && strcasecmp(signature, be_app->Signature()) != 0)
        return team >= 0 ? B_MISMATCHED_VALUES : B_BAD_VALUE;
    *this = be_app_messenger;
    return B_OK;
}

status_t BMessenger::SetTo(const BHandler* handler, const BLooper* looper)
{
    *this = BMessenger();
    if (handler == nullptr && looper == nullptr)
        return B_BAD_VALUE;
    int32 token = kPreferredToken;
    if (handler != nullptr) {
        const BLooper* const own = handler->Looper();
        if (own == nullptr)
            return B_BAD_HANDLER;
        if (looper != nullptr && looper != own)
            return B_MISMATCHED_VALUES;
        looper = own;
        token = handler->fToken;
    }
    LooperSlot* slot = LooperTable::Find(looper);
    const int32 looper_token = slot != nullptr ? slot->token.load() : kNoToken;
    if (looper_token == kNoToken)
        return B_BAD_VALUE;
    *this = MessengerAccess::Make(looper_token, token);
    return B_OK;
}

BMessenger& BMessenger::operator=(const BMessenger& other) = default;

bool BMessenger::operator==(const BMessenger& other) const
{
    return fTeam == other.fTeam && fLooper == other.fLooper && fHandler == other.fHandler;
}

bool BMessenger::IsValid() const
{
    LooperSlot* slot = Tokens::SlotFor(fLooper);
    if (slot == nullptr)
        return Tokens::IsWaiter(fLooper);
    BLooper* const looper = slot->looper.load();
    if (looper == nullptr || slot->token.load() != fLooper)
        return false;
    return fHandler == kPreferredToken || Tokens::HandlerIn(looper, fHandler) != nullptr;
}

team_id BMessenger::Team() const
{
    return fTeam;
}

uint32 BMessenger::HashValue() const
{
    return (static_cast<uint32>(fLooper) * 0x9E3779B9u ^ static_cast<uint32>(fHandler))
        * 0x85EBCA6Bu ^ static_cast<uint32>(fTeam);
}

bool operator<(const BMessenger& a, const BMessenger& b)
{
    return std::tie(a.fTeam, a.fLooper, a.fHandler) < std::tie(b.fTeam, b.fLooper, b.fHandler);
}

bool operator!=(const BMessenger& a, const BMessenger& b)
{
    return !(a == b);
}
