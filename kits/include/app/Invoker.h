#ifndef _INVOKER_H
#define _INVOKER_H

#include <AppDefs.h>
#include <Message.h>
#include <Messenger.h>
#include <SupportDefs.h>

#include <memory>
#include <vector>

class BHandler;
class BLooper;

/* A message and where to send it; mixed into controls and menu items. */
class BInvoker {
public:
    BInvoker();
    BInvoker(BMessage* message, const BHandler* handler, const BLooper* looper = nullptr);
    BInvoker(BMessage* message, BMessenger target);
    virtual ~BInvoker();

    /* Adopts the message and deletes the former one; null for none. */
    virtual status_t SetMessage(BMessage* message);
    BMessage* Message() const;
    uint32 Command() const;  // 0 without a message

    /* Status as that of BMessenger. */
    virtual status_t SetTarget(const BHandler* handler, const BLooper* looper = nullptr);
    virtual status_t SetTarget(BMessenger messenger);
    bool IsTargetLocal() const;
    BHandler* Target(BLooper** _looper = nullptr) const;
    BMessenger Messenger() const;

    virtual status_t SetHandlerForReply(BHandler* handler);
    BHandler* HandlerForReply() const;

    /* Sends a copy of `message`, or of the own one if null. B_BAD_VALUE if there is neither. */
    virtual status_t Invoke(BMessage* message = nullptr);
    /* The same for another kind of event, which Invoke() learns from InvokeKind(). */
    status_t InvokeNotify(BMessage* message, uint32 kind = B_CONTROL_INVOKED);
    status_t SetTimeout(bigtime_t timeout);
    bigtime_t Timeout() const;

protected:
    uint32 InvokeKind(bool* _notify = nullptr);
    void BeginInvokeNotify(uint32 kind = B_CONTROL_INVOKED);
    void EndInvokeNotify();

private:
    BInvoker(const BInvoker&) = delete;
    BInvoker& operator=(const BInvoker&) = delete;

    std::unique_ptr<BMessage> fMessage;
    BMessenger fTarget;
    BHandler* fReplyTo;
    bigtime_t fTimeout;
    std::vector<uint32> fNotifyKinds;  // of the notifications under way, innermost last
};

#endif  // _INVOKER_H
