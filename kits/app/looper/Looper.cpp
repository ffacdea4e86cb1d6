// Loopers: the loop, its messages on their way through filters to a handler, and the end of it.
//
// Three threads may meet here: the loop's own, others that lock the looper, and those that post.
// What belongs to the looper is touched with its lock held; posting only takes the queue's lock,
// so it never waits for a handler. The loop itself holds nothing but the slot between two turns:
// the looper may be gone when it comes back for the lock.

#include <Looper.h>

#include <AppDefs.h>
#include <Application.h>
#include <List.h>
#include <Message.h>
#include <MessageFilter.h>
#include <MessageQueue.h>
#include <PropertyInfo.h>

#include <algorithm>
#include <utility>

#include "app/looper/FilterList.h"
#include "app/looper/LooperTable.h"
#include "app/message/MessageAccess.h"
#include "app/looper/MessengerAccess.h"
#include "app/looper/Scripting.h"
#include "app/looper/Tokens.h"

using BPrivate::current_thread;
using BPrivate::LooperRef;
using BPrivate::LooperSlot;
using BPrivate::LooperTable;
using BPrivate::MessageAccess;
using BPrivate::MessengerAccess;

static const uint32 kQuitLoop = '_QIT';   // ends the loop in its turn, after what was posted before
static const int kMaxRedirections = 100;  // filters that send a message round in circles

static const property_info kLooperProperties[] = {
    {"Handler", {B_COUNT_PROPERTIES}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_INT32_TYPE}, {}},
    {"Handlers", {B_GET_PROPERTY}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_MESSENGER_TYPE}, {}},
    {"Handler",
     {},
     {B_INDEX_SPECIFIER, B_REVERSE_INDEX_SPECIFIER, B_NAME_SPECIFIER},
     nullptr,
     0,
     {},
     {}},
    {},
};

namespace BPrivate {

struct LooperLoop {
    static void Run(BLooper* looper, LooperSlot* slot, int32 token);
    static status_t ThreadEntry(void* start);

    // What a new thread is told; the looper may be gone when it reads it.
    struct Start {
        BLooper* looper;
        LooperSlot* slot;
        int32 token;
    };

private:
    static void ReleaseHeld(void*);
    static void Turn(BLooper* looper, LooperSlot* slot, int32 token, BMessage* message);
};

// Returns when the looper is gone, or the application has quit. Nothing on the stack here or in
// Turn() may need its destructor: Quit() on this thread ends it right there.
void LooperLoop::Run(BLooper* looper, LooperSlot* slot, int32 token)
{
    while (LooperTable::Lock(slot, token, B_INFINITE_TIMEOUT) == B_OK) {
        BMessage* message = looper->fTerminating ? nullptr : slot->queue.NextMessage();
        if (message != nullptr) {
            Turn(looper, slot, token, message);
            if (slot->token.load() != token)
                return;
        }
        if (looper->fTerminating) {
            if (looper->fKind == BLooper::Kind::Application)
                slot->lock.UnlockAll();
            else
                delete looper;
            return;
        }
        if (message == nullptr)
            LooperTable::AnnounceSleep(slot);
        const bigtime_t deadline = looper->_Idle();
        slot->lock.UnlockAllFairly();
        if (message == nullptr)
            LooperTable::Sleep(slot, deadline);
    }
}

void LooperLoop::Turn(BLooper* looper, LooperSlot* slot, int32 token, BMessage* message)
{
    MessageAccess::Delivery(message) |= MessageAccess::kDelivered;
    looper->fCurrent = message;
    if (message->what == kQuitLoop)
        looper->fTerminating = true;
    else
        looper->_Deliver(message);
    if (slot->token.load() != token)
        return;
    message = looper->fCurrent;
    looper->fCurrent = nullptr;
    delete message;
}

// A loop may end in the middle of a call that holds loopers, and below a function that can not be
// unwound: what would have given them back does not run then.
void LooperLoop::ReleaseHeld(void*)
{
    for (const LooperRef& ref : LooperTable::List())
        ref.slot->lock.UnlockAll();
}

status_t LooperLoop::ThreadEntry(void* data)
{
    on_exit_thread(ReleaseHeld, nullptr);
    const Start start = *static_cast<Start*>(data);
    delete static_cast<Start*>(data);
    Run(start.looper, start.slot, start.token);
    return B_OK;
}

}  // namespace BPrivate

BLooper::BLooper(const char* name, int32 priority, int32) : BHandler(name) { _Init(priority); }

BLooper::BLooper(BMessage* data) : BHandler(data)
{
    int32 priority = B_NORMAL_PRIORITY;
    if (data != nullptr)
        data->FindInt32("_prio", &priority);
    _Init(priority);
}

BLooper::~BLooper()
{
    fSlot->lock.Lock();
    while (!fHandlers.empty()) {
        BHandler* handler = fHandlers.back();
        fHandlers.pop_back();
        if (handler == nullptr)
            continue;
        handler->fNextHandler = nullptr;
        handler->_SetLooper(nullptr);
    }
    BPrivate::delete_filters(fCommonFilters);
    LooperTable::Remove(fSlot);
    delete fCurrent;  // whose sender, told that there is no reply, finds no looper any more
}

BArchivable* BLooper::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BLooper") ? new BLooper(data) : nullptr;
}

status_t BLooper::Archive(BMessage* data, bool deep) const
{
    status_t status = BHandler::Archive(data, deep);
    if (status == B_OK)
        status = data->AddInt32("_port_cap", B_LOOPER_PORT_DEFAULT_CAPACITY);
    if (status == B_OK)
        status = data->AddInt32("_prio", fPriority);
    return status;
}

void BLooper::_Init(int32 priority)
{
    fCurrent = nullptr;
    fPreferred = nullptr;
    fPriority = priority;
    fKind = Kind::Looper;
    fRunCalled = false;
    fOwnThread = false;
    fTerminating = false;
    fSlot = LooperTable::Add(this, fToken);
    BPrivate::Tokens::BindSlot(fToken, fSlot);
    AddHandler(this);
}

static status_t post(LooperSlot* slot, int32 token, BMessage* copy)
{
    if (token != BPrivate::kNoToken && LooperTable::Post(slot, token, copy))
        return B_OK;
    MessageAccess::Delivery(copy) = 0;
    delete copy;
    return B_BAD_PORT_ID;
}

// The address of the looper may be a stale one here, so nothing of it is read.
static status_t post(BLooper* looper, BMessage* copy, BHandler* handler)
{
    LooperSlot* slot = LooperTable::Find(looper);
    const int32 token = slot != nullptr ? slot->token.load() : BPrivate::kNoToken;
    if (handler == looper)
        MessageAccess::Target(copy) = token;
    return post(slot, token, copy);
}

status_t BLooper::PostMessage(uint32 command)
{
    BMessage* message = new BMessage(command);
    MessageAccess::ReturnAddress(message) = be_app_messenger;
    return post(this, message, this);
}

status_t BLooper::PostMessage(BMessage* message) { return PostMessage(message, this); }

status_t BLooper::PostMessage(uint32 command, BHandler* handler, BHandler* replyTo)
{
    BMessage message(command);
    return PostMessage(&message, handler, replyTo);
}

status_t BLooper::PostMessage(BMessage* message, BHandler* handler, BHandler* replyTo)
{
    if (message == nullptr)
        return B_BAD_VALUE;
    int32 target = BPrivate::kPreferredToken;
    if (handler != nullptr && handler != this) {
        if (handler->Looper() != this)
            return B_MISMATCHED_VALUES;
        target = handler->fToken;
    }
    const BMessenger reply =
        replyTo != nullptr ? BMessenger(replyTo) : MessengerAccess::ReplyAddress(message);
    return post(this, MessageAccess::CopyFor(message, target, reply, 0), handler);
}

// Only while the looper is there: its slot is known then.
status_t BLooper::_Queue(BMessage* message)
{
    MessageAccess::Target(message) = fToken;
    return post(fSlot, fToken, message);
}

void BLooper::DispatchMessage(BMessage* message, BHandler* handler)
{
    if (message == nullptr || handler == nullptr)
        return;
    if (message->what == B_QUIT_REQUESTED && handler == this)
        _QuitAsked(message);
    else
        handler->MessageReceived(message);
}

void BLooper::MessageReceived(BMessage* message)
{
    int32 index, form;
    BMessage specifier;
    const char* property;
    if (message == nullptr || !message->HasSpecifiers() ||
        message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
        !BPrivate::knows_property(kLooperProperties, message, index, &specifier, form, property)) {
        BHandler::MessageReceived(message);
        return;
    }
    BMessage reply(B_REPLY);
    status_t status = B_OK;
    if (message->what == B_COUNT_PROPERTIES)
        status = reply.AddInt32("result", CountHandlers());
    else
        for (BHandler* handler : LooperTable::Handlers(this))
            status = reply.AddMessenger("result", BMessenger(handler));
    reply.AddInt32("error", status);
    message->SendReply(&reply);
}

BMessage* BLooper::CurrentMessage() const { return fCurrent; }

BMessage* BLooper::DetachCurrentMessage() { return std::exchange(fCurrent, nullptr); }

void BLooper::DispatchExternalMessage(BMessage* message, BHandler* handler, bool& _detached)
{
    BMessage* const outer = std::exchange(fCurrent, message);
    _DispatchTo(message, handler);
    _detached = fCurrent == nullptr;
    fCurrent = outer;
}

BMessageQueue* BLooper::MessageQueue() const { return &fSlot->queue; }

bool BLooper::IsMessageWaiting() const { return !fSlot->queue.IsEmpty(); }

void BLooper::AddHandler(BHandler* handler)
{
    if (handler == nullptr || handler->Looper() != nullptr)
        return;
    BPrivate::Tokens::SetPlace(handler->fToken, static_cast<int32>(fHandlers.size()));
    fHandlers.push_back(handler);
    handler->_SetLooper(this);
    if (handler != this)
        handler->SetNextHandler(this);
}

bool BLooper::RemoveHandler(BHandler* handler)
{
    if (handler == nullptr || handler == this || handler->Looper() != this)
        return false;
    LooperTable::LeaveGap(this, handler);
    if (fPreferred == handler)
        fPreferred = nullptr;
    handler->SetNextHandler(nullptr);
    handler->_SetLooper(nullptr);
    return true;
}

int32 BLooper::CountHandlers() const { return static_cast<int32>(fHandlers.size()) - fSlot->gaps; }

BHandler* BLooper::HandlerAt(int32 index) const
{
    const std::vector<BHandler*>& handlers = LooperTable::Handlers(this);
    return index >= 0 && index < CountHandlers() ? handlers[index] : nullptr;
}

int32 BLooper::IndexOf(BHandler* handler) const
{
    const std::vector<BHandler*>& handlers = LooperTable::Handlers(this);
    auto found = std::find(handlers.begin(), handlers.end(), handler);
    return found != handlers.end() ? static_cast<int32>(found - handlers.begin()) : -1;
}

BHandler* BLooper::PreferredHandler() const { return fPreferred; }

void BLooper::SetPreferredHandler(BHandler* handler)
{
    fPreferred = handler != nullptr && handler->Looper() == this ? handler : nullptr;
}

thread_id BLooper::Run()
{
    if (fKind == Kind::Offscreen)
        return B_NOT_ALLOWED;
    if (fRunCalled)
        return Thread();
    auto* start = new BPrivate::LooperLoop::Start{this, fSlot, fToken};
    const thread_id thread =
        spawn_thread(&BPrivate::LooperLoop::ThreadEntry,
                     fHasName ? fName.c_str() : "anonymous looper", fPriority, start);
    if (thread < B_OK) {
        delete start;
        return thread;
    }
    fRunCalled = true;
    fOwnThread = true;
    fSlot->thread.store(thread);
    fSlot->lock.Unlock();
    resume_thread(thread);
    return thread;
}

void BLooper::Loop()
{
    if (fRunCalled || fKind == Kind::Offscreen)
        return;
    fRunCalled = true;
    fSlot->thread.store(current_thread());
    fSlot->lock.UnlockAll();
    BPrivate::LooperLoop::Run(this, fSlot, fToken);
}

void BLooper::Quit()
{
    if (!Lock())
        return;
    if (!fRunCalled) {
        delete this;
        return;
    }
    LooperSlot* const slot = fSlot;
    const int32 token = fToken;
    const thread_id thread = slot->thread.load();
    if (thread == current_thread()) {
        delete this;
        exit_thread(B_OK);
    }
    const bool own_thread = fOwnThread;
    _Queue(new BMessage(kQuitLoop));
    slot->lock.UnlockAll();
    if (own_thread) {
        status_t result;
        wait_for_thread(thread, &result);
        return;
    }
    for (;;) {
        const uint32 gone = slot->gone.load();
        if (slot->token.load() != token)
            return;
        BPrivate::futex_wait(slot->gone, gone, B_INFINITE_TIMEOUT);
    }
}

bool BLooper::QuitRequested() { return true; }

bool BLooper::Lock()
{
    LooperSlot* slot = LooperTable::Find(this);
    if (slot == nullptr)
        return false;
    slot->lock.Lock();
    if (slot->looper.load(std::memory_order_relaxed) == this)
        return true;
    slot->lock.Unlock();
    return false;
}

void BLooper::Unlock()
{
    LooperSlot* slot = LooperTable::Find(this);
    if (slot != nullptr)
        slot->lock.Unlock();
}

bool BLooper::IsLocked() const
{
    LooperSlot* slot = LooperTable::Find(this);
    return slot != nullptr && slot->lock.IsMine();
}

// What is left to do where the lock is taken, or was, but of another looper.
[[gnu::cold, gnu::noinline]] static status_t lock_slowly(LooperSlot* slot, const BLooper* looper,
                                                         bigtime_t timeout)
{
    if (!slot->lock.IsMine() &&
        !slot->lock.LockUntil(timeout <= 0 ? 0 : BPrivate::deadline_after(timeout)))
        return B_TIMED_OUT;
    if (slot->looper.load(std::memory_order_relaxed) == looper)
        return B_OK;
    slot->lock.Unlock();
    return B_BAD_VALUE;
}

// The way through a free lock is short: nearly every call of a program takes one.
status_t BLooper::LockWithTimeout(bigtime_t timeout)
{
    LooperSlot* slot = LooperTable::Find(this);
    if (slot == nullptr)
        return B_BAD_VALUE;
    if (slot->lock.TakeFree() && slot->looper.load(std::memory_order_relaxed) == this)
        return B_OK;
    return lock_slowly(slot, this, timeout);
}

// 0 before Run(), and for a looper that is gone.
thread_id BLooper::Thread() const
{
    LooperSlot* slot = LooperTable::Find(this);
    return slot != nullptr ? slot->thread.load() : 0;
}

team_id BLooper::Team() const { return BPrivate::current_team(); }

BLooper* BLooper::LooperForThread(thread_id thread)
{
    for (const BPrivate::LooperRef& ref : LooperTable::List()) {
        if (thread > 0 && ref.slot->thread.load() == thread && ref.slot->token.load() == ref.token)
            return ref.looper;
    }
    return nullptr;
}

thread_id BLooper::LockingThread() const
{
    LooperSlot* slot = LooperTable::Find(this);
    const thread_id owner = slot != nullptr ? slot->lock.Owner() : 0;
    return owner != 0 ? owner : -1;
}

int32 BLooper::CountLocks() const
{
    LooperSlot* slot = LooperTable::Find(this);
    return slot != nullptr ? slot->lock.Depth() : 0;
}

int32 BLooper::CountLockRequests() const
{
    LooperSlot* slot = LooperTable::Find(this);
    return slot != nullptr ? slot->lock.Requests() : 0;
}

// The lock is no semaphore here.
sem_id BLooper::Sem() const { return B_BAD_SEM_ID; }

BHandler* BLooper::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 what,
                                    const char* property)
{
    BPropertyInfo info(const_cast<property_info*>(kLooperProperties));
    const int32 match = info.FindMatch(message, index, specifier, what, property);
    if (match < 0)
        return BHandler::ResolveSpecifier(message, index, specifier, what, property);
    if (kLooperProperties[match].commands[0] != 0)
        return this;

    BHandler* target = nullptr;
    if (what == B_NAME_SPECIFIER) {
        const char* name = specifier->FindString("name");
        for (BHandler* handler : fHandlers) {
            if (target == nullptr && name != nullptr && handler->fHasName && handler->fName == name)
                target = handler;
        }
    } else {
        int32 at = specifier->FindInt32("index");
        if (what == B_REVERSE_INDEX_SPECIFIER)
            at = CountHandlers() - at;
        target = HandlerAt(at);
    }
    if (target != nullptr) {
        message->PopSpecifier();
        return target;
    }
    BPrivate::answer_missing(message, BPrivate::missing_error(what), "no such handler");
    return nullptr;
}

status_t BLooper::GetSupportedSuites(BMessage* data)
{
    const status_t status = BPrivate::add_suite(data, "suite/vnd.Be-looper", kLooperProperties);
    return status == B_OK ? BHandler::GetSupportedSuites(data) : status;
}

void BLooper::AddCommonFilter(BMessageFilter* filter)
{
    if (BPrivate::add_filter(fCommonFilters, filter))
        filter->_SetOwner(this);
}

bool BLooper::RemoveCommonFilter(BMessageFilter* filter)
{
    if (!BPrivate::remove_filter(fCommonFilters, filter))
        return false;
    filter->_SetOwner(nullptr);
    return true;
}

void BLooper::SetCommonFilterList(BList* filters)
{
    if (filters == fCommonFilters.get())
        return;
    BPrivate::delete_filters(fCommonFilters, filters);
    fCommonFilters.reset(filters);
    for (int32 i = 0; filters != nullptr && i < filters->CountItems(); i++)
        BPrivate::filter_at(*filters, i)->_SetOwner(this);
}

BList* BLooper::CommonFilterList() const { return fCommonFilters.get(); }

status_t BLooper::Perform(perform_code d, void* arg) { return BHandler::Perform(d, arg); }

BMessage* BLooper::MessageFromPort(bigtime_t timeout)
{
    const bigtime_t deadline = BPrivate::deadline_after(timeout);
    for (;;) {
        LooperTable::AnnounceSleep(fSlot);
        if (BMessage* message = fSlot->queue.NextMessage())
            return message;
        if (deadline != B_INFINITE_TIMEOUT && system_time() >= deadline)
            return nullptr;
        LooperTable::Sleep(fSlot, deadline);
    }
}

bigtime_t BLooper::_Idle() { return B_INFINITE_TIMEOUT; }

void BLooper::_Wake() { LooperTable::Wake(fSlot); }

void BLooper::_SetKind(Kind kind)
{
    fKind = kind;
    fSlot->kind.store(static_cast<uint8>(kind));
}

void BLooper::_Deliver(BMessage* message) { _DispatchTo(message, _Target(message)); }

void BLooper::_DispatchTo(BMessage* message, BHandler* target)
{
    if (target == nullptr || target->Looper() != this)
        return;
    if (message->HasSpecifiers())
        target = _ResolveSpecifiers(message, target);
    if (target != nullptr)
        target = _Filter(message, target);
    if (target != nullptr)
        DispatchMessage(message, target);
}

BHandler* BLooper::_Target(BMessage* message) const
{
    const int32 token = MessageAccess::Target(message);
    if (token == fToken)
        return const_cast<BLooper*>(this);
    if (token == BPrivate::kPreferredToken)
        return fPreferred != nullptr ? fPreferred : const_cast<BLooper*>(this);
    return BPrivate::Tokens::HandlerIn(this, token);
}

BHandler* BLooper::_Filter(BMessage* message, BHandler* target)
{
    target = _ApplyFilters(fCommonFilters.get(), message, target);
    return _FilterHandler(message, target);
}

// The filters of the target, and of those that these change it to.
BHandler* BLooper::_FilterHandler(BMessage* message, BHandler* target)
{
    for (int i = 0; target != nullptr && i < kMaxRedirections; i++) {
        BHandler* const changed = _ApplyFilters(target->fFilters.get(), message, target);
        if (changed == target)
            return target;
        target = changed;
    }
    return nullptr;
}

// Null if a filter drops the message. A filter may take itself out of the list.
BHandler* BLooper::_ApplyFilters(BList* filters, BMessage* message, BHandler* target)
{
    for (int32 i = 0; filters != nullptr && i < filters->CountItems();) {
        BMessageFilter* filter = BPrivate::filter_at(*filters, i);
        if (filter->_Takes(message)) {
            const filter_result result = filter->fFunction != nullptr
                                             ? filter->fFunction(message, &target, filter)
                                             : filter->Filter(message, &target);
            if (result == B_SKIP_MESSAGE || target == nullptr || target->Looper() != this)
                return nullptr;
        }
        if (filters->ItemAt(i) == filter)
            i++;
    }
    return target;
}

BHandler* BLooper::_ResolveSpecifiers(BMessage* message, BHandler* target)
{
    int32 index, form;
    BMessage specifier;
    const char* property;
    while (message->GetCurrentSpecifier(&index, &specifier, &form, &property) == B_OK) {
        BHandler* const next = target->ResolveSpecifier(message, index, &specifier, form, property);
        if (next == target || next == nullptr)
            return next;
        if (next->Looper() != this)
            return nullptr;
        target = next;
    }
    return target;
}

void BLooper::_QuitAsked(BMessage* message)
{
    const bool agreed = QuitRequested();
    if (message->IsSourceWaiting()) {
        BMessage reply(B_REPLY);
        reply.AddBool("result", agreed);
        reply.AddInt32("thread", Thread());
        message->SendReply(&reply);
    }
    if (agreed)
        Quit();
}
