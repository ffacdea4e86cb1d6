#ifndef SERVER_QT_DISPLAY_H
#define SERVER_QT_DISPLAY_H

// Qt's display. One thread, the server's, runs Qt's event loop and owns all native windows; other
// threads leave it work in its queue.

#include <QObject>

#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "server/screen/Displays.h"

class QGuiApplication;

namespace server {

class QtDrag;
class QtWindow;
class X11Screen;

class QtDisplay final : public Display {
public:
    // Starts the thread and waits until Qt is up.
    QtDisplay();

    ScreenWindow* Create(const WindowSpec& spec, EventSink* sink) override REQUIRES(gStageLock);
    BRect ScreenFrame() const override REQUIRES(gStageLock) { return fScreen; }
    bigtime_t FrameInterval() const override REQUIRES(gStageLock) { return fFrameInterval; }
    float Scale() const override REQUIRES(gStageLock) { return fScale; }
    Monitor ScreenMonitor() const override REQUIRES(gStageLock) { return fMonitor; }
    void SetPointer(BPoint where) override REQUIRES(gStageLock);
    int32 CountWorkspaces() override REQUIRES(gStageLock);
    int32 CurrentWorkspace() override REQUIRES(gStageLock);
    void ActivateWorkspace(int32 workspace) override REQUIRES(gStageLock);
    void SetWorkspaceCount(int32 count) override REQUIRES(gStageLock);
    void UpdateCursors() override REQUIRES(gStageLock);
    void InputHeld(bool held) override REQUIRES(gStageLock);
    void DragBegan(std::shared_ptr<const DragPicture> picture, ClipboardForms forms) override
        REQUIRES(gStageLock);
    void DragEnded(bool dropped) override REQUIRES(gStageLock);
    std::shared_ptr<Clipboard> SystemClipboard() override { return fClipboard; }
    std::shared_ptr<Clipboard> PrimarySelection() override { return fPrimary; }
    void Shutdown() override;

    // Runs `task` on the server's thread, in order. False when the thread is gone.
    bool Post(std::function<void()> task) REQUIRES(gStageLock);
    // Deletes a window that has left the stage: on the server's thread, after the tasks that it has
    // posted, or at once when that thread is gone.
    void Discard(QtWindow* window) REQUIRES(gStageLock);
    // The time, in system_time()'s base, of an event with this time stamp of the host's.
    bigtime_t TimeOf(uint64 host_ms) REQUIRES(gStageLock);
    // While menus hold the input one of their windows grabs the pointer. Server's thread.
    void UpdateGrab();
    // The pointer of a drag is there. Server's thread, before the stage hears of it.
    void DragTo(BPoint where);
    // The X server's side of things; null elsewhere. Server's thread.
    X11Screen* X11() const { return fX11.get(); }
    // Whether the screen's process looks at windows' pixels itself.
    bool ReadsPixels() const REQUIRES(gStageLock) { return fReadsPixels; }

private:
    class TaskQueue;

    ~QtDisplay();
    void _Run();
    void _RunTasks();
    void _EndTasks();
    void _ReadScreen() REQUIRES(gStageLock);
    void _ScreenChanged();

    std::thread fThread;
    std::thread::id fThreadId;  // set before the constructor returns
    std::once_flag fEnded;
    // On the server's thread; null: nothing is taken.
    QObject* fQueue GUARDED_BY(gStageLock) = nullptr;
    // The least from a time stamp to now.
    bigtime_t fHostDelay GUARDED_BY(gStageLock) = B_INFINITE_TIMEOUT;
    std::vector<std::function<void()>> fTasks GUARDED_BY(gStageLock);
    std::vector<QtWindow*> fDiscarded GUARDED_BY(gStageLock);  // whose last task waits
    std::unique_ptr<X11Screen> fX11;                           // server's thread
    std::unique_ptr<QtDrag> fDrag;                             // server's thread: the last one
    Monitor fMonitor GUARDED_BY(gStageLock);
    BRect fScreen GUARDED_BY(gStageLock){0, 0, 1023, 767};
    float fScale GUARDED_BY(gStageLock) = 1;
    bool fReadsPixels GUARDED_BY(gStageLock) = false;
    std::shared_ptr<Clipboard> fClipboard;  // set before the constructor returns
    std::shared_ptr<Clipboard> fPrimary;    // as well; null where there is none
    bigtime_t fFrameInterval GUARDED_BY(gStageLock) = 1000000 / 60;
};

}  // namespace server

#endif  // SERVER_QT_DISPLAY_H
