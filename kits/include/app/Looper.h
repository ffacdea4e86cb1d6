#ifndef _LOOPER_H
#define _LOOPER_H

#include <Handler.h>
#include <List.h>
#include <Message.h>
#include <OS.h>
#include <SupportDefs.h>

#include <atomic>
#include <vector>

class BArchivable;
class BMessageFilter;
class BMessageQueue;

namespace BPrivate {
struct LooperLoop;
struct LooperSlot;
struct LooperTable;
}  // namespace BPrivate

#define B_LOOPER_PORT_DEFAULT_CAPACITY 200

/* A message queue, and the thread that takes messages out of it one by one, with the looper
   locked. Made with new, locked by the creating thread until Run() or Loop(); Quit() deletes it.
   Lock(), Unlock(), PostMessage() and the questions about the lock may be asked of a looper that
   is gone: they fail. */
class BLooper : public BHandler {
public:
    BLooper(const char* name = nullptr, int32 priority = B_NORMAL_PRIORITY,
            int32 portCapacity = B_LOOPER_PORT_DEFAULT_CAPACITY);
    virtual ~BLooper();

    BLooper(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    /* Queue a copy of the message, and return at once. Without a handler argument the target is
       the looper itself, with a null handler the preferred one. Any thread. B_BAD_PORT_ID if the
       looper is gone, B_MISMATCHED_VALUES if the handler belongs to another. */
    status_t PostMessage(uint32 command);
    status_t PostMessage(BMessage* message);
    status_t PostMessage(uint32 command, BHandler* handler, BHandler* replyTo = nullptr);
    status_t PostMessage(BMessage* message, BHandler* handler, BHandler* replyTo = nullptr);

    virtual void DispatchMessage(BMessage* message, BHandler* handler);
    virtual void MessageReceived(BMessage* message);

    /* The message being dispatched; detached, it is the caller's and is not deleted afterwards. */
    BMessage* CurrentMessage() const;
    BMessage* DetachCurrentMessage();
    /* Runs a message through filters and dispatch as if the queue had held it. Says whether it
       was detached; the caller deletes it if not. */
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

    /* Starts the looper's thread and gives the creator's lock back. Returns the thread. */
    virtual thread_id Run();
    /* The same on the caller's thread; returns when the looper has quit (it is gone then). */
    void Loop();

    /* Ends the loop and deletes the looper, which should be locked. From the looper's own thread
       it does not return; from another one it waits until the queue is worked off. */
    virtual void Quit();
    /* Hook: may the looper quit? Asked for B_QUIT_REQUESTED. */
    virtual bool QuitRequested();

    /* A recursive lock. False, or B_BAD_VALUE, if the looper is gone; B_TIMED_OUT. */
    bool Lock();
    void Unlock();
    bool IsLocked() const;  // by the calling thread
    status_t LockWithTimeout(bigtime_t timeout);
    thread_id Thread() const;
    team_id Team() const;
    static BLooper* LooperForThread(thread_id thread);
    thread_id LockingThread() const;
    int32 CountLocks() const;
    int32 CountLockRequests() const;
    sem_id Sem() const;

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);

    /* Filters that see every message first. Ownership as with BHandler::AddFilter(). */
    virtual void AddCommonFilter(BMessageFilter* filter);
    virtual bool RemoveCommonFilter(BMessageFilter* filter);
    virtual void SetCommonFilterList(BList* filters);
    BList* CommonFilterList() const;

    virtual status_t Perform(perform_code d, void* arg);

protected:
    /* The oldest message, taken out of the queue; waits for one. The caller deletes it. */
    BMessage* MessageFromPort(bigtime_t = B_INFINITE_TIMEOUT);

private:
    friend class BApplication;
    friend class BHandler;
    friend class BMessenger;
    friend class BWindow;
    friend struct BPrivate::LooperLoop;
    friend struct BPrivate::LooperTable;

    BLooper(const BLooper&) = delete;
    BLooper& operator=(const BLooper&) = delete;

    // The loop's own hook, called on its thread with the looper locked: whenever the queue is
    // empty, and after each dispatched message. Does what is due (presents finished pixels, posts
    // a pulse) and returns the system_time() at which it wants to be called again at the latest;
    // B_INFINITE_TIMEOUT if nothing is due. It may post messages, and must make progress: a time
    // in the past means another call without a wait. An override is all that a subclass needs.
    virtual bigtime_t _Idle();
    // Makes the loop call _Idle() soon. Any thread, locked or not; of many calls one wakes it. Set
    // what _Idle() is to see before. Nothing happens if the loop does not run.
    void _Wake();

    // What kind of looper this is, told once by the constructor of a window. An offscreen window
    // has a lock but never a thread: Run() does nothing, Quit() only deletes it.
    enum class Kind : uint8 { Looper, Application, Window, Offscreen };
    void _SetKind(Kind kind);

    void _Init(int32 priority);
    // One message out of the queue: finds its target and calls _DispatchTo(). The loop deletes the
    // message afterwards, unless it was detached. A window overrides it to find the targets of
    // pointer and keys.
    virtual void _Deliver(BMessage* message);
    // Filters, then DispatchMessage(). CurrentMessage() is set by the loop. A null target, or one
    // of another looper, drops the message.
    void _DispatchTo(BMessage* message, BHandler* target);
    BHandler* _Target(BMessage* message) const;
    BHandler* _Filter(BMessage* message, BHandler* target);
    BHandler* _ApplyFilters(BList* filters, BMessage* message, BHandler* target);
    BHandler* _ResolveSpecifiers(BMessage* message, BHandler* target);
    void _QuitAsked(BMessage* message);
    // Queues the message itself, for the looper as its target. Adopts it, even when it fails.
    status_t _Queue(BMessage* message);
    BHandler* _FilterHandler(BMessage* message, BHandler* target);

    BPrivate::LooperSlot* fSlot;  // lock, queue and thread; outlives the looper
    BMessage* fCurrent;           // loop's thread; the loop owns it
    std::vector<BHandler*> fHandlers;
    std::unique_ptr<BList> fCommonFilters;
    BHandler* fPreferred;
    int32 fPriority;
    Kind fKind;
    bool fRunCalled;
    bool fOwnThread;    // made by Run()
    bool fTerminating;  // the loop ends after the present message
};

#endif  // _LOOPER_H
