#ifndef _HANDLER_H
#define _HANDLER_H

#include <Messenger.h>
#include <Archivable.h>
#include <SupportDefs.h>

class BList;
class BLooper;
class BMessage;
class BMessageFilter;

#define B_OBSERVE_WHAT_CHANGE                "be:observe_change_what"
#define B_OBSERVE_ORIGINAL_WHAT              "be:observe_orig_what"

const uint32 B_OBSERVER_OBSERVE_ALL = 0xFFFFFFFF;

class BHandler : public BArchivable {
public:
    BHandler(const char* name = nullptr);
    virtual ~BHandler();
    BHandler(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;
    virtual void MessageReceived(BMessage* message);
    BLooper* Looper() const;
    void SetName(const char* name);
    const char* Name() const;
    virtual void SetNextHandler(BHandler* handler);
    BHandler* NextHandler() const;
    virtual void AddFilter(BMessageFilter* filter);
    virtual bool RemoveFilter(BMessageFilter* filter);
    virtual void SetFilterList(BList* filters);
    BList* FilterList();
    bool LockLooper();
    status_t LockLooperWithTimeout(bigtime_t timeout);
    void UnlockLooper();
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    status_t StartWatching(BMessenger target, uint32 what);
    status_t StartWatchingAll(BMessenger target);
    status_t StopWatching(BMessenger target, uint32 what);
    status_t StopWatchingAll(BMessenger target);
    status_t StartWatching(BHandler* observer, uint32 what);
    status_t StartWatchingAll(BHandler* observer);
    status_t StopWatching(BHandler* observer, uint32 what);
    status_t StopWatchingAll(BHandler* observer);
    virtual status_t Perform(perform_code d, void* arg);
    virtual void SendNotices(uint32 what, const BMessage* notice = nullptr);
    bool IsWatched() const;

private:
};

#endif  // _HANDLER_H
