// The part of BMessage that knows where a message came from, and answers it.

#include <Message.h>

#include <AppDefs.h>
#include <Handler.h>

#include <utility>

#include "app/message/MessageAccess.h"
#include "app/looper/MessengerAccess.h"

using BPrivate::MessageAccess;
using BPrivate::MessengerAccess;

bool BMessage::IsReply() const { return (fDelivery & MessageAccess::kReply) != 0; }

bool BMessage::WasDelivered() const { return (fDelivery & MessageAccess::kDelivered) != 0; }

bool BMessage::IsSourceWaiting() const
{
    return (fDelivery & (MessageAccess::kSourceWaiting | MessageAccess::kReplied)) ==
           MessageAccess::kSourceWaiting;
}

// Input and all other messages of the system are made in this process.
bool BMessage::IsSourceRemote() const
{
    return WasDelivered() && MessengerAccess::IsSet(fReturnAddress) &&
           !fReturnAddress.IsTargetLocal();
}

BMessenger BMessage::ReturnAddress() const
{
    return WasDelivered() ? fReturnAddress : BMessenger();
}

const BMessage* BMessage::Previous() const { return fPrevious; }

bool BMessage::WasDropped() const { return (fDelivery & MessageAccess::kDropped) != 0; }

BPoint BMessage::DropPoint(BPoint* offset) const
{
    if (offset != nullptr)
        *offset = FindPoint("_drop_offset_");
    return FindPoint("_drop_point_");
}

status_t BMessage::SendReply(uint32 command, BHandler* replyTo)
{
    BMessage reply(command);
    return SendReply(&reply, replyTo);
}

status_t BMessage::SendReply(BMessage* reply, BHandler* replyTo, bigtime_t timeout)
{
    return SendReply(reply, replyTo != nullptr ? BMessenger(replyTo) : BMessenger(), timeout);
}

status_t BMessage::SendReply(BMessage* reply, BMessenger replyTo, bigtime_t)
{
    if (reply == nullptr)
        return B_BAD_VALUE;
    const status_t status = MessageAccess::BeginReply(this);
    if (status != B_OK)
        return status;
    if (!MessengerAccess::IsSet(replyTo))
        replyTo = MessengerAccess::ReplyAddress(reply);
    return MessengerAccess::Send(fReturnAddress, reply, replyTo, this);
}

status_t BMessage::SendReply(uint32 command, BMessage* replyToReply)
{
    BMessage reply(command);
    return SendReply(&reply, replyToReply);
}

status_t BMessage::SendReply(BMessage* reply, BMessage* replyToReply, bigtime_t,
                             bigtime_t replyTimeout)
{
    if (reply == nullptr || replyToReply == nullptr)
        return B_BAD_VALUE;
    const status_t status = MessageAccess::BeginReply(this);
    if (status != B_OK)
        return status;
    return MessengerAccess::SendAndWait(fReturnAddress, reply, replyToReply, replyTimeout, this);
}

void BMessage::_EndDelivery()
{
    if (IsSourceWaiting()) {
        fDelivery |= MessageAccess::kReplied;
        BMessage none(B_NO_REPLY);
        MessengerAccess::Send(fReturnAddress, &none, BMessenger(), nullptr);
    }
    delete std::exchange(fPrevious, nullptr);
}

namespace BPrivate {

void MessageAccess::MoveReply(BMessage* from, BMessage* to)
{
    to->_EndDelivery();
    *to = *from;
    to->fTarget = from->fTarget;
    to->fDelivery = std::exchange(from->fDelivery, 0) | kDelivered;
    to->fReturnAddress = from->fReturnAddress;
    to->fPrevious = std::exchange(from->fPrevious, nullptr);
    delete from;
}

BMessage* MessageAccess::CopyFor(const BMessage* message, int32 target, const BMessenger& replyTo,
                                 uint32 flags)
{
    BMessage* copy = new BMessage(*message);
    copy->fTarget = target;
    copy->fReturnAddress = replyTo;
    copy->fDelivery = flags | (message->fDelivery & kDropped);
    return copy;
}

status_t MessageAccess::BeginReply(BMessage* message)
{
    if (!message->WasDelivered() || !MessengerAccess::IsSet(message->fReturnAddress))
        return B_BAD_REPLY;
    if ((message->fDelivery & kSourceWaiting) != 0 && (message->fDelivery & kReplied) != 0)
        return B_DUPLICATE_REPLY;
    message->fDelivery |= kReplied;
    return B_OK;
}

}  // namespace BPrivate
