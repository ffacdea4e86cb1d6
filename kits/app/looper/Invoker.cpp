// Invokers: a message, a target, and who is to get the answer.

#include <Invoker.h>

#include <Handler.h>
#include <Looper.h>
#include <Message.h>

BInvoker::BInvoker() : fReplyTo(nullptr), fTimeout(B_INFINITE_TIMEOUT) {}

BInvoker::BInvoker(BMessage* message, const BHandler* handler, const BLooper* looper)
    : fMessage(message), fTarget(handler, looper), fReplyTo(nullptr), fTimeout(B_INFINITE_TIMEOUT)
{
}

BInvoker::BInvoker(BMessage* message, BMessenger target)
    : fMessage(message), fTarget(target), fReplyTo(nullptr), fTimeout(B_INFINITE_TIMEOUT)
{
}

BInvoker::~BInvoker() = default;

status_t BInvoker::SetMessage(BMessage* message)
{
    if (message != fMessage.get())
        fMessage.reset(message);
    return B_OK;
}

BMessage* BInvoker::Message() const { return fMessage.get(); }

uint32 BInvoker::Command() const { return fMessage != nullptr ? fMessage->what : 0; }

status_t BInvoker::SetTarget(const BHandler* handler, const BLooper* looper)
{
    return fTarget.SetTo(handler, looper);
}

status_t BInvoker::SetTarget(BMessenger messenger)
{
    fTarget = messenger;
    return B_OK;
}

bool BInvoker::IsTargetLocal() const { return fTarget.IsTargetLocal(); }

BHandler* BInvoker::Target(BLooper** _looper) const { return fTarget.Target(_looper); }

BMessenger BInvoker::Messenger() const { return fTarget; }

status_t BInvoker::SetHandlerForReply(BHandler* handler)
{
    fReplyTo = handler;
    return B_OK;
}

BHandler* BInvoker::HandlerForReply() const { return fReplyTo; }

status_t BInvoker::Invoke(BMessage* message)
{
    if (message == nullptr)
        message = Message();
    if (message == nullptr)
        return B_BAD_VALUE;
    BMessage copy(*message);
    return fTarget.SendMessage(&copy, fReplyTo, fTimeout);
}

status_t BInvoker::InvokeNotify(BMessage* message, uint32 kind)
{
    BeginInvokeNotify(kind);
    const status_t status = Invoke(message);
    EndInvokeNotify();
    return status;
}

status_t BInvoker::SetTimeout(bigtime_t timeout)
{
    fTimeout = timeout;
    return B_OK;
}

bigtime_t BInvoker::Timeout() const { return fTimeout; }

uint32 BInvoker::InvokeKind(bool* _notify)
{
    const bool notify = !fNotifyKinds.empty();
    if (_notify != nullptr)
        *_notify = notify;
    return notify ? fNotifyKinds.back() : static_cast<uint32>(B_CONTROL_INVOKED);
}

void BInvoker::BeginInvokeNotify(uint32 kind) { fNotifyKinds.push_back(kind); }

void BInvoker::EndInvokeNotify()
{
    if (!fNotifyKinds.empty())
        fNotifyKinds.pop_back();
}
