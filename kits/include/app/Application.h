#ifndef _APPLICATION_H
#define _APPLICATION_H

#include <Looper.h>
#include <Messenger.h>
struct app_info;
#include <OS.h>
#include <SupportDefs.h>

class BArchivable;
class BCursor;
class BHandler;
class BMessage;
class BResources;
class BWindow;

class BApplication : public BLooper {
public:
    BApplication(const char* signature);
    BApplication(const char* signature, status_t* error);
    virtual ~BApplication();
    BApplication(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;
    status_t InitCheck() const;
    virtual thread_id Run();
    virtual void Quit();
    virtual bool QuitRequested();
    virtual void Pulse();
    virtual void ReadyToRun();
    virtual void MessageReceived(BMessage* message);
    virtual void ArgvReceived(int32 argc, char** argv);
    virtual void AppActivated(bool active);
    virtual void RefsReceived(BMessage* message);
    virtual void AboutRequested();
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 form, const char* property);
    void ShowCursor();
    void HideCursor();
    void ObscureCursor();
    bool IsCursorHidden() const;
    void SetCursor(const void* cursor);
    void SetCursor(const BCursor* cursor, bool sync = true);
    int32 CountWindows() const;
    BWindow* WindowAt(int32 index) const;
    int32 CountLoopers() const;
    BLooper* LooperAt(int32 index) const;
    bool IsLaunching() const;
    const char* Signature() const;
    status_t GetAppInfo(app_info* info) const;
    static BResources* AppResources();
    virtual void DispatchMessage(BMessage* message, BHandler* handler);
    void SetPulseRate(bigtime_t rate);
    status_t RegisterLooper(BLooper* looper);
    status_t UnregisterLooper(BLooper* looper);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code d, void* arg);

private:
};

extern BApplication* be_app;
extern BMessenger be_app_messenger;

#endif  // _APPLICATION_H
