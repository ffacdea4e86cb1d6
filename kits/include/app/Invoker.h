#ifndef _INVOKER_H
#define _INVOKER_H

#include <AppDefs.h>
#include <Messenger.h>
#include <SupportDefs.h>

class BHandler;
class BLooper;
class BMessage;

class BInvoker {
public:
    BInvoker();
    BInvoker(BMessage* message, const BHandler* handler, const BLooper* looper = nullptr);
    BInvoker(BMessage* message, BMessenger target);
    virtual ~BInvoker();
    virtual status_t SetMessage(BMessage* message);
    BMessage* Message() const;
    uint32 Command() const;
    virtual status_t SetTarget(const BHandler* handler, const BLooper* looper = nullptr);
    virtual status_t SetTarget(BMessenger messenger);
    bool IsTargetLocal() const;
    BHandler* Target(BLooper** _looper = nullptr) const;
    BMessenger Messenger() const;
    virtual status_t SetHandlerForReply(BHandler* handler);
    BHandler* HandlerForReply() const;
    virtual status_t Invoke(BMessage* message = nullptr);
    status_t InvokeNotify(BMessage* message, uint32 kind = B_CONTROL_INVOKED);
    status_t SetTimeout(bigtime_t timeout);
    bigtime_t Timeout() const;
protected:
    uint32 InvokeKind(bool* _notify = nullptr);
    void BeginInvokeNotify(uint32 kind = B_CONTROL_INVOKED);
    void EndInvokeNotify();

private:
};

#endif  // _INVOKER_H
