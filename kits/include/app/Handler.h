#ifndef _HANDLER_H
#define _HANDLER_H

#include <Archivable.h>
#include <Message.h>
#include <Messenger.h>
#include <SupportDefs.h>

#include <atomic>
#include <memory>
#include <string>

class BList;
class BLooper;
class BMessageFilter;

namespace BPrivate {
class ObserverList;
struct LooperLoop;
struct LooperTable;
}  // namespace BPrivate

#define B_OBSERVE_WHAT_CHANGE "be:observe_change_what"
#define B_OBSERVE_ORIGINAL_WHAT "be:observe_orig_what"

const uint32 B_OBSERVER_OBSERVE_ALL = 0xFFFFFFFF;

/* Takes messages on the thread of the looper that it was added to. All calls want that looper
   locked, but for those that lock it (LockLooper), Looper(), and the observer calls. */
class BHandler : public BArchivable {
public:
    BHandler(const char* name = nullptr);
    virtual ~BHandler();

    BHandler(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    /* Hook: a message for this handler. What is not understood goes to the base class, which
       passes it to the next handler; at the end of the chain the sender of a dropped or
       scripting message gets B_MESSAGE_NOT_UNDERSTOOD. */
    virtual void MessageReceived(BMessage* message);

    BLooper* Looper() const;
    void SetName(const char* name);
    const char* Name() const;

    /* The next handler has to belong to the same looper; null ends the chain. */
    virtual void SetNextHandler(BHandler* handler);
    BHandler* NextHandler() const;

    /* Filters belong to the handler from here on, and die with it; what RemoveFilter() took out
       is the caller's. SetFilterList() adopts the list and deletes the former one. */
    virtual void AddFilter(BMessageFilter* filter);
    virtual bool RemoveFilter(BMessageFilter* filter);
    virtual void SetFilterList(BList* filters);
    BList* FilterList();

    /* Locks the looper, also when the handler moves to another one meanwhile. False or
       B_BAD_VALUE if it has none. */
    bool LockLooper();
    status_t LockLooperWithTimeout(bigtime_t timeout);
    void UnlockLooper();

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);

    /* Names who is told by SendNotices(what): a copy of the notice arrives as
       B_OBSERVER_NOTICE_CHANGE, with `what` in B_OBSERVE_WHAT_CHANGE and the notice's own code
       in B_OBSERVE_ORIGINAL_WHAT. An observer that is gone is forgotten. */
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
    friend class BLooper;
    friend class BMessageFilter;
    friend class BMessenger;
    friend struct BPrivate::LooperLoop;
    friend struct BPrivate::LooperTable;

    BHandler(const BHandler&) = delete;
    BHandler& operator=(const BHandler&) = delete;

    void _SetLooper(BLooper* looper);
    bool _ScriptReceived(BMessage* message);
    BPrivate::ObserverList* _Observers();

    std::string fName;
    bool fHasName;
    int32 fToken;                   // names this handler in messengers, never used again
    std::atomic<BLooper*> fLooper;  // changes with the looper locked
    BHandler* fNextHandler;
    std::unique_ptr<BList> fFilters;                  // owns the filters as well
    std::atomic<BPrivate::ObserverList*> fObservers;  // owned
};

#endif  // _HANDLER_H
