// What a filter lets through, and where it is installed.

#include <MessageFilter.h>

#include <Looper.h>
#include <Message.h>

BMessageFilter::BMessageFilter(uint32 what, filter_hook func)
    : fAnyCommand(false),
      fCommand(what),
      fDelivery(B_ANY_DELIVERY),
      fSource(B_ANY_SOURCE),
      fFunction(func),
      fOwner(nullptr)
{
}

BMessageFilter::BMessageFilter(message_delivery delivery, message_source source, filter_hook func)
    : fAnyCommand(true),
      fCommand(0),
      fDelivery(delivery),
      fSource(source),
      fFunction(func),
      fOwner(nullptr)
{
}

BMessageFilter::BMessageFilter(message_delivery delivery, message_source source, uint32 what,
                               filter_hook func)
    : fAnyCommand(false),
      fCommand(what),
      fDelivery(delivery),
      fSource(source),
      fFunction(func),
      fOwner(nullptr)
{
}

BMessageFilter::BMessageFilter(const BMessageFilter& filter) : fOwner(nullptr) { *this = filter; }

BMessageFilter::BMessageFilter(const BMessageFilter* filter) : BMessageFilter(*filter) {}

BMessageFilter::~BMessageFilter() = default;

BMessageFilter& BMessageFilter::operator=(const BMessageFilter& from)
{
    fAnyCommand = from.fAnyCommand;
    fCommand = from.fCommand;
    fDelivery = from.fDelivery;
    fSource = from.fSource;
    fFunction = from.fFunction;
    return *this;
}

filter_result BMessageFilter::Filter(BMessage*, BHandler**) { return B_DISPATCH_MESSAGE; }

message_delivery BMessageFilter::MessageDelivery() const { return fDelivery; }

message_source BMessageFilter::MessageSource() const { return fSource; }

uint32 BMessageFilter::Command() const { return fCommand; }

bool BMessageFilter::FiltersAnyCommand() const { return fAnyCommand; }

BLooper* BMessageFilter::Looper() const { return fOwner != nullptr ? fOwner->Looper() : nullptr; }

bool BMessageFilter::_Takes(const BMessage* message) const
{
    if (!fAnyCommand && fCommand != message->what)
        return false;
    if (fDelivery != B_ANY_DELIVERY && message->WasDropped() != (fDelivery == B_DROPPED_DELIVERY))
        return false;
    return fSource == B_ANY_SOURCE || message->IsSourceRemote() == (fSource == B_REMOTE_SOURCE);
}

void BMessageFilter::_SetOwner(BHandler* owner) { fOwner = owner; }
