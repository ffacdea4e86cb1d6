#ifndef _LOOPER_H
#define _LOOPER_H

#include <Handler.h>
#include <OS.h>
#include <SupportDefs.h>

class BArchivable;
class BList;
class BMessage;
class BMessageFilter;
class BMessageQueue;

#define B_LOOPER_PORT_DEFAULT_CAPACITY       200

class BLooper : public BHandler {
public:
    BLooper(const char* name = nullptr, int32 priority = B_NORMAL_PRIORITY, int32 portCapacity = B_LOOPER_PORT_DEFAULT_CAPACITY);
    virtual ~BLooper();
    BLooper(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;
    status_t PostMessage(uint32 command);
    status_t PostMessage(BMessage* message);
    status_t PostMessage(uint32 command, BHandler* handler, BHandler* replyTo = nullptr);
    status_t PostMessage(BMessage* message, BHandler* handler, BHandler* replyTo = nullptr);
    virtual void DispatchMessage(BMessage* message, BHandler* handler);
    virtual void MessageReceived(BMessage* message);
    BMessage* CurrentMessage() const;
    BMessage* DetachCurrentMessage();
    void DispatchExternalMessage(BMessage* message, BHandler* handler, bool& _detached);
    BMessageQueue* MessageQueue() const;
    bool IsMessageWaiting() const;
    void AddHandler(BHandler* handler);
    bool RemoveHandler(BHandler* handler);
    int32 CountHandlers() const;
    BHandler* HandlerAt(int32 index) const;
    int32 IndexOf(BHandler* handler) const;
    BHandler* PreferredHandler() const;
    void SetPreferredHandler(BHandler* handler);
    virtual thread_id Run();
    void Loop();
    virtual void Quit();
    virtual bool QuitRequested();
    bool Lock();
    void Unlock();
    bool IsLocked() const;
    status_t LockWithTimeout(bigtime_t timeout);
    thread_id Thread() const;
    team_id Team() const;
    static BLooper* LooperForThread(thread_id thread);
    thread_id LockingThread() const;
    int32 CountLocks() const;
    int32 CountLockRequests() const;
    sem_id Sem() const;
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual void AddCommonFilter(BMessageFilter* filter);
    virtual bool RemoveCommonFilter(BMessageFilter* filter);
    virtual void SetCommonFilterList(BList* filters);
    BList* CommonFilterList() const;
    virtual status_t Perform(perform_code d, void* arg);
protected:
    BMessage* MessageFromPort(bigtime_t = B_INFINITE_TIMEOUT);

private:
};

#endif  // _LOOPER_H
