// Handlers: name, place in the chain, filters, observers, and the way to the looper's lock.

#include <Handler.h>

#include <AppDefs.h>
#include <List.h>
#include <Looper.h>
#include <Message.h>
#include <MessageFilter.h>
#include <PropertyInfo.h>

#include "app/looper/FilterList.h"
#include "app/message/MessageAccess.h"
#include "app/looper/ObserverList.h"
#include "app/looper/Scripting.h"
#include "app/looper/Tokens.h"
#include "support/Futex.h"

using BPrivate::ObserverList;

static const property_info kProperties[] = {
    {"Suites", {B_GET_PROPERTY}, {B_DIRECT_SPECIFIER}, nullptr, 0, {}, {}},
    {"Messenger", {B_GET_PROPERTY}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_MESSENGER_TYPE}, {}},
    {"InternalName", {B_GET_PROPERTY}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_STRING_TYPE}, {}},
    {},
};

BHandler::BHandler(const char* name)
    : fHasName(false),
      fToken(BPrivate::Tokens::Add(this)),
      fLooper(nullptr),
      fNextHandler(nullptr),
      fObservers(nullptr)
{
    SetName(name);
}

BHandler::BHandler(BMessage* data)
    : BArchivable(data),
      fHasName(false),
      fToken(BPrivate::Tokens::Add(this)),
      fLooper(nullptr),
      fNextHandler(nullptr),
      fObservers(nullptr)
{
    const char* name = nullptr;
    if (data != nullptr && data->FindString("_name", &name) == B_OK)
        SetName(name);
}

BHandler::~BHandler()
{
    if (LockLooper()) {
        BLooper* looper = Looper();
        looper->RemoveHandler(this);
        looper->Unlock();
    }
    BPrivate::Tokens::Remove(fToken);
    BPrivate::delete_filters(fFilters);
    delete fObservers.load();
}

BArchivable* BHandler::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BHandler") ? new BHandler(data) : nullptr;
}

status_t BHandler::Archive(BMessage* data, bool deep) const
{
    const status_t status = BArchivable::Archive(data, deep);
    if (status != B_OK || !fHasName)
        return status;
    return data->AddString("_name", fName.c_str());
}

void BHandler::MessageReceived(BMessage* message)
{
    if (message == nullptr)
        return;
    if (message->HasSpecifiers() && _ScriptReceived(message))
        return;
    if (message->what == B_GET_SUPPORTED_SUITES) {
        BMessage reply(B_REPLY);
        reply.AddInt32("error", GetSupportedSuites(&reply));
        message->SendReply(&reply);
        return;
    }
    if (fNextHandler != nullptr) {
        // Its filters are asked as if the message had come to it alone.
        BLooper* const looper = Looper();
        BHandler* const next =
            looper != nullptr ? looper->_FilterHandler(message, fNextHandler) : fNextHandler;
        if (next != nullptr && next != this)
            next->MessageReceived(message);
        return;
    }
    if (message->what == B_MESSAGE_NOT_UNDERSTOOD || message->what == B_REPLY ||
        (!message->WasDropped() && !message->HasSpecifiers()))
        return;
    BMessage reply(B_MESSAGE_NOT_UNDERSTOOD);
    reply.AddInt32("error", B_BAD_SCRIPT_SYNTAX);
    reply.AddString("message", "Didn't understand the specifier(s)");
    message->SendReply(&reply);
}

BLooper* BHandler::Looper() const { return fLooper.load(std::memory_order_acquire); }

void BHandler::SetName(const char* name)
{
    fHasName = name != nullptr;
    fName = fHasName ? name : "";
}

const char* BHandler::Name() const { return fHasName ? fName.c_str() : nullptr; }

void BHandler::SetNextHandler(BHandler* handler)
{
    if (handler != this && (handler == nullptr || handler->Looper() == Looper()))
        fNextHandler = handler;
}

BHandler* BHandler::NextHandler() const { return fNextHandler; }

void BHandler::AddFilter(BMessageFilter* filter)
{
    if (BPrivate::add_filter(fFilters, filter))
        filter->_SetOwner(this);
}

bool BHandler::RemoveFilter(BMessageFilter* filter)
{
    if (!BPrivate::remove_filter(fFilters, filter))
        return false;
    filter->_SetOwner(nullptr);
    return true;
}

void BHandler::SetFilterList(BList* filters)
{
    if (filters == fFilters.get())
        return;
    BPrivate::delete_filters(fFilters, filters);
    fFilters.reset(filters);
    for (int32 i = 0; filters != nullptr && i < filters->CountItems(); i++)
        BPrivate::filter_at(*filters, i)->_SetOwner(this);
}

BList* BHandler::FilterList() { return fFilters.get(); }

bool BHandler::LockLooper() { return LockLooperWithTimeout(B_INFINITE_TIMEOUT) == B_OK; }

status_t BHandler::LockLooperWithTimeout(bigtime_t timeout)
{
    const bigtime_t deadline = BPrivate::deadline_after(timeout);
    BLooper* looper = Looper();
    while (looper != nullptr) {
        const bigtime_t left = deadline == B_INFINITE_TIMEOUT ? B_INFINITE_TIMEOUT
                                                              : max_c(deadline - system_time(), 0);
        const status_t status = looper->LockWithTimeout(left);
        BLooper* current = Looper();
        if (current == looper)
            return status;
        // It moved meanwhile.
        if (status == B_OK)
            looper->Unlock();
        looper = current;
    }
    return B_BAD_VALUE;
}

void BHandler::UnlockLooper()
{
    BLooper* looper = Looper();
    if (looper != nullptr)
        looper->Unlock();
}

BHandler* BHandler::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                     int32 what, const char* property)
{
    if (BPrivate::knows_property(kProperties, message, index, specifier, what, property))
        return this;
    if (message != nullptr) {
        BMessage reply(B_MESSAGE_NOT_UNDERSTOOD);
        reply.AddInt32("error", B_BAD_SCRIPT_SYNTAX);
        reply.AddString("message", "Didn't understand the specifier(s)");
        message->SendReply(&reply);
    }
    return nullptr;
}

status_t BHandler::GetSupportedSuites(BMessage* data)
{
    return BPrivate::add_suite(data, "suite/vnd.Be-handler", kProperties);
}

// Answers what this class itself can be asked.
bool BHandler::_ScriptReceived(BMessage* message)
{
    int32 index, form;
    BMessage specifier;
    const char* property;
    if (message->what != B_GET_PROPERTY ||
        message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
        !BPrivate::knows_property(kProperties, message, index, &specifier, form, property))
        return false;

    BMessage reply(B_REPLY);
    const std::string asked = property;
    status_t status;
    if (asked == "Suites")
        status = GetSupportedSuites(&reply);
    else if (asked == "Messenger")
        status = reply.AddMessenger("result", BMessenger(this));
    else
        status = reply.AddString("result", fName.c_str());
    reply.AddInt32("error", status);
    message->SendReply(&reply);
    return true;
}

static ObserverList::Observer observer(uint32 what, const BMessenger& messenger)
{
    return ObserverList::Observer{what, messenger, BPrivate::kNoToken};
}

status_t BHandler::StartWatching(BMessenger target, uint32 what)
{
    return _Observers()->Add(observer(what, target));
}

status_t BHandler::StartWatchingAll(BMessenger target)
{
    return StartWatching(target, B_OBSERVER_OBSERVE_ALL);
}

status_t BHandler::StopWatching(BMessenger target, uint32 what)
{
    return _Observers()->Remove(observer(what, target));
}

status_t BHandler::StopWatchingAll(BMessenger target)
{
    return StopWatching(target, B_OBSERVER_OBSERVE_ALL);
}

status_t BHandler::StartWatching(BHandler* handler, uint32 what)
{
    if (handler == nullptr)
        return B_BAD_HANDLER;
    return _Observers()->Add({what, BMessenger(), handler->fToken});
}

status_t BHandler::StartWatchingAll(BHandler* handler)
{
    return StartWatching(handler, B_OBSERVER_OBSERVE_ALL);
}

status_t BHandler::StopWatching(BHandler* handler, uint32 what)
{
    if (handler == nullptr)
        return B_BAD_HANDLER;
    return _Observers()->Remove({what, BMessenger(), handler->fToken});
}

status_t BHandler::StopWatchingAll(BHandler* handler)
{
    return StopWatching(handler, B_OBSERVER_OBSERVE_ALL);
}

status_t BHandler::Perform(perform_code d, void* arg) { return BArchivable::Perform(d, arg); }

void BHandler::SendNotices(uint32 what, const BMessage* notice)
{
    if (!IsWatched())
        return;
    BMessage copy;
    if (notice != nullptr) {
        copy = *notice;
        copy.AddInt32(B_OBSERVE_ORIGINAL_WHAT, notice->what);
    }
    copy.what = B_OBSERVER_NOTICE_CHANGE;
    copy.AddInt32(B_OBSERVE_WHAT_CHANGE, what);
    _Observers()->Notify(what, copy);
}

bool BHandler::IsWatched() const
{
    const ObserverList* observers = fObservers.load(std::memory_order_acquire);
    return observers != nullptr && !observers->IsEmpty();
}

void BHandler::_SetLooper(BLooper* looper)
{
    fLooper.store(looper, std::memory_order_release);
    BPrivate::Tokens::SetLooper(fToken, looper);
}

// Made by the first observer; two that come at once agree on one list.
ObserverList* BHandler::_Observers()
{
    ObserverList* observers = fObservers.load(std::memory_order_acquire);
    if (observers != nullptr)
        return observers;
    auto made = std::make_unique<ObserverList>();
    if (fObservers.compare_exchange_strong(observers, made.get()))
        return made.release();
    return observers;
}
