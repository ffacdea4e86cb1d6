// Messengers: two tokens, looked up when a message is sent.

#include <Messenger.h>

#include <Application.h>
#include <Handler.h>
#include <Looper.h>
#include <Message.h>

#include <algorithm>
#include <functional>
#include <tuple>

#include <string.h>
#include <unistd.h>

#include "app/roster/AppChannel.h"
#include "app/looper/LooperTable.h"
#include "app/message/MessageAccess.h"
#include "app/looper/MessengerAccess.h"
#include "app/roster/RunningApps.h"
#include "app/looper/Tokens.h"

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
    return BMessenger(BMessenger::Address{current_team(), looper, handler});
}

BMessenger MessengerAccess::MakeFor(team_id team, int32 looper, int32 handler)
{
    return BMessenger(BMessenger::Address{team, looper, handler});
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

static uint32 reply_flag(const BMessage* previous)
{
    return previous != nullptr ? static_cast<uint32>(MessageAccess::kReply) : 0;
}

static BMessage* outgoing_copy(const BMessage* message, const BMessenger& replyTo, uint32 flags,
                               const BMessage* previous)
{
    BMessage* copy =
        MessageAccess::CopyFor(message, kPreferredToken, replyTo, flags | reply_flag(previous));
    if (previous != nullptr)
        MessageAccess::Previous(copy) = new BMessage(*previous);
    return copy;
}

status_t MessengerAccess::Send(const BMessenger& target, const BMessage* message,
                               const BMessenger& replyTo, const BMessage* previous,
                               bigtime_t timeout)
{
    if (!IsSet(target))
        return B_BAD_PORT_ID;
    if (!target.IsTargetLocal())
        return send_to_team(target, *message, replyTo, reply_flag(previous), timeout);
    return Deliver(target, outgoing_copy(message, replyTo, 0, previous));
}

bool MessengerAccess::Notify(const BMessenger& target, const BMessage& message,
                             const BMessenger& replyTo)
{
    const status_t status = Send(target, &message, replyTo, nullptr, 0);
    return status == B_OK || status == B_WOULD_BLOCK;
}

// True if nobody else could ever answer what the calling thread sends to this looper.
static bool waits_for_itself(int32 looper, bigtime_t timeout)
{
    LooperSlot* slot = Tokens::SlotFor(looper);
    return timeout == B_INFINITE_TIMEOUT && slot != nullptr &&
           slot->thread.load() == current_thread();
}

static bool is_unanswered(const ReplyWaiter& waiter)
{
    return waiter.answered.load(std::memory_order_acquire) == 0;
}

static bool is_before(bigtime_t deadline)
{
    return deadline == B_INFINITE_TIMEOUT || system_time() < deadline;
}

static status_t end_wait(status_t status, int32 token, ReplyWaiter& waiter, BMessage* reply)
{
    Tokens::Remove(token);  // nobody touches the waiter after this
    if (status != B_OK)
        return status;
    if (waiter.reply == nullptr)
        return B_TIMED_OUT;
    MessageAccess::MoveReply(waiter.reply, reply);
    return B_OK;
}

// A team that dies can not say that there is no answer, so that it is looked after.
static status_t send_and_wait_for_team(const BMessenger& target, const BMessage* message,
                                       BMessage* reply, bigtime_t timeout, const BMessage* previous)
{
    const bigtime_t kLook = 100'000;
    ReplyWaiter waiter;
    const int32 token = Tokens::AddWaiter(&waiter);
    status_t status =
        send_to_team(target, *message, MessengerAccess::Make(token, kPreferredToken),
                     MessageAccess::kSourceWaiting | reply_flag(previous), B_INFINITE_TIMEOUT);
    const bigtime_t deadline = deadline_after(timeout);
    while (status == B_OK && is_unanswered(waiter) && is_before(deadline)) {
        futex_wait(waiter.answered, 0, std::min(deadline, system_time() + kLook));
        if (is_unanswered(waiter) && !is_channel_open(target.Team()))
            status = B_BAD_PORT_ID;
    }
    return end_wait(status, token, waiter, reply);
}

status_t MessengerAccess::SendAndWait(const BMessenger& target, const BMessage* message,
                                      BMessage* reply, bigtime_t replyTimeout,
                                      const BMessage* previous)
{
    if (!IsSet(target))
        return B_BAD_PORT_ID;
    if (!target.IsTargetLocal())
        return send_and_wait_for_team(target, message, reply, replyTimeout, previous);
    if (waits_for_itself(target.fLooper, replyTimeout))
        return B_MESSAGE_TO_SELF;

    ReplyWaiter waiter;
    const int32 token = Tokens::AddWaiter(&waiter);
    const status_t status = Deliver(target, outgoing_copy(message, Make(token, kPreferredToken),
                                                          MessageAccess::kSourceWaiting, previous));
    const bigtime_t deadline = deadline_after(replyTimeout);
    while (status == B_OK && is_unanswered(waiter) && is_before(deadline))
        futex_wait(waiter.answered, 0, deadline);
    return end_wait(status, token, waiter, reply);
}

status_t MessengerAccess::PassOn(const BMessenger& target, BMessage* message)
{
    if (!IsSet(target) || !target.IsTargetLocal())
        return B_BAD_PORT_ID;
    const uint32 waits = MessageAccess::Delivery(message) & MessageAccess::kSourceWaiting;
    const status_t status = Deliver(
        target, outgoing_copy(message, MessageAccess::ReturnAddress(message), waits, nullptr));
    if (status == B_OK)
        MessageAccess::Delivery(message) |= MessageAccess::kReplied;
    return status;
}

BMessenger MessengerAccess::ReplyAddress(const BMessage* message)
{
    const BMessenger& address = MessageAccess::ReturnAddress(const_cast<BMessage*>(message));
    const bool passed_on = (MessageAccess::Delivery(message) & MessageAccess::kDelivered) != 0;
    return passed_on && IsSet(address) ? address : be_app_messenger;
}

}  // namespace BPrivate

BMessenger::BMessenger() : BMessenger(Address{-1, kNoToken, kNoToken}) {}

BMessenger::BMessenger(const Address& address)
    : fTeam(address.team), fLooper(address.looper), fHandler(address.handler)
{
}

BMessenger::BMessenger(const char* signature, team_id team, status_t* result) : BMessenger()
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
    LooperSlot* slot = IsTargetLocal() ? Tokens::SlotFor(fLooper) : nullptr;
    BLooper* const found = slot != nullptr ? slot->looper.load() : nullptr;
    const bool there = found != nullptr && slot->token.load() == fLooper;
    if (looper != nullptr)
        *looper = there ? found : nullptr;
    return there ? Tokens::HandlerIn(found, fHandler) : nullptr;
}

bool BMessenger::LockTarget() const { return LockTargetWithTimeout(B_INFINITE_TIMEOUT) == B_OK; }

status_t BMessenger::LockTargetWithTimeout(bigtime_t timeout) const
{
    LooperSlot* slot = IsTargetLocal() ? Tokens::SlotFor(fLooper) : nullptr;
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

status_t BMessenger::SendMessage(BMessage* message, BHandler* replyTo, bigtime_t timeout) const
{
    if (message == nullptr)
        return B_BAD_VALUE;
    const BMessenger reply =
        replyTo != nullptr ? BMessenger(replyTo) : MessengerAccess::ReplyAddress(message);
    return SendMessage(message, reply, timeout);
}

status_t BMessenger::SendMessage(BMessage* message, BMessenger replyTo, bigtime_t timeout) const
{
    return message != nullptr ? MessengerAccess::Send(*this, message, replyTo, nullptr, timeout)
                              : B_BAD_VALUE;
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

// This application, if it fits, else the first with that signature, or the one that the team is.
status_t BMessenger::SetTo(const char* signature, team_id team)
{
    *this = BMessenger();
    if (signature == nullptr && team < 0)
        return B_BAD_VALUE;
    if (be_app != nullptr && (team < 0 || team == BPrivate::current_team()) &&
        (signature == nullptr || strcasecmp(signature, be_app->Signature()) == 0)) {
        *this = be_app_messenger;
        return B_OK;
    }
    for (const BPrivate::RunningApp& app : BPrivate::running_apps()) {
        if (team >= 0 ? app.team != team : strcasecmp(signature, app.signature.c_str()) != 0)
            continue;
        if (signature != nullptr && strcasecmp(signature, app.signature.c_str()) != 0)
            return B_MISMATCHED_VALUES;
        *this = BPrivate::messenger_to(app);
        return B_OK;
    }
    return team >= 0 ? B_BAD_TEAM_ID : B_BAD_VALUE;
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
    if (!IsTargetLocal())
        return MessengerAccess::IsSet(*this) && BPrivate::is_channel_open(fTeam);
    LooperSlot* slot = Tokens::SlotFor(fLooper);
    if (slot == nullptr)
        return Tokens::IsWaiter(fLooper);
    BLooper* const looper = slot->looper.load();
    if (looper == nullptr || slot->token.load() != fLooper)
        return false;
    return fHandler == kPreferredToken || Tokens::HandlerIn(looper, fHandler) != nullptr;
}

team_id BMessenger::Team() const { return fTeam; }

uint32 BMessenger::HashValue() const
{
    return (static_cast<uint32>(fLooper) * 0x9E3779B9u ^ static_cast<uint32>(fHandler)) *
               0x85EBCA6Bu ^
           static_cast<uint32>(fTeam);
}

bool operator<(const BMessenger& a, const BMessenger& b)
{
    return std::tie(a.fTeam, a.fLooper, a.fHandler) < std::tie(b.fTeam, b.fLooper, b.fHandler);
}

bool operator!=(const BMessenger& a, const BMessenger& b) { return !(a == b); }
