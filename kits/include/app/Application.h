#ifndef _APPLICATION_H
#define _APPLICATION_H

#include <AppDefs.h>
#include <Entry.h>
#include <InterfaceDefs.h>
#include <List.h>
#include <Looper.h>
#include <Message.h>
#include <Messenger.h>
#include <OS.h>
#include <Point.h>
#include <Rect.h>
#include <String.h>
#include <SupportDefs.h>

#include <atomic>
#include <string>

class BArchivable;
class BCursor;
class BHandler;
class BResources;
class BWindow;
struct app_info;

/* The program's own looper, run on the thread that calls Run(), which is to be the main thread.
   Made before any window; there is one at a time. */
class BApplication : public BLooper {
public:
    /* B_BAD_VALUE for a signature that is no application MIME type, B_ALREADY_RUNNING while there
       is another application object, and where the program wants to run but once, and does: that
       one gets the messages or arguments of this. Without `error` only InitCheck() tells. */
    BApplication(const char* signature);
    BApplication(const char* signature, status_t* error);
    virtual ~BApplication();

    BApplication(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    status_t InitCheck() const;

    /* Runs the loop and returns when it has quit. The object stays. */
    virtual thread_id Run();
    /* Ends the loop without asking, and returns at once; any thread. Before Run() it deletes the
       application, which must come from `new`. */
    virtual void Quit();
    /* Asks every window; the first refusal is the answer. The windows of a program that agreed
       are closed before Run() returns. The application is not locked meanwhile. */
    virtual bool QuitRequested();

    virtual void Pulse();
    virtual void ReadyToRun();
    virtual void MessageReceived(BMessage* message);
    virtual void ArgvReceived(int32 argc, char** argv);
    virtual void AppActivated(bool active);
    virtual void RefsReceived(BMessage* message);
    virtual void AboutRequested();

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);

    void ShowCursor();
    void HideCursor();
    void ObscureCursor();
    bool IsCursorHidden() const;
    void SetCursor(const void* cursor);
    void SetCursor(const BCursor* cursor, bool sync = true);

    /* All windows on the screen or hidden, and all loopers, oldest first; any thread. Lock() tells
       whether one is still there. */
    int32 CountWindows() const;
    BWindow* WindowAt(int32 index) const;
    int32 CountLoopers() const;
    BLooper* LooperAt(int32 index) const;

    bool IsLaunching() const;  // until ReadyToRun() has returned
    const char* Signature() const;
    status_t GetAppInfo(app_info* info) const;
    static BResources* AppResources();

    virtual void DispatchMessage(BMessage* message, BHandler* handler);

    /* Microseconds between two calls of Pulse(); 0, as at the beginning, for none. */
    void SetPulseRate(bigtime_t rate);

    /* A registered looper is asked and quit with the windows. B_BAD_VALUE if it is (not) known. */
    status_t RegisterLooper(BLooper* looper);
    status_t UnregisterLooper(BLooper* looper);

    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code d, void* arg);

private:
    void _InitApp(const char* signature, status_t* error);
    bigtime_t _Idle() override;
    void _QuitLoopers();
    void _ActivateWindow();
    void _PostLaunchMessages();
    void _ArgvReceived(BMessage* message);
    void _SetCursorHidden(bool hidden);
    status_t _SetRegistered(BLooper* looper, bool registered);

    std::string fSignature;
    status_t fInitStatus;
    std::atomic<bool> fLaunching;
    std::atomic<bool> fCursorHidden;
    bigtime_t fPulseRate;  // application locked, as the next two
    bigtime_t fNextPulse;
};

extern BApplication* be_app;
extern BMessenger be_app_messenger;

#endif  // _APPLICATION_H
