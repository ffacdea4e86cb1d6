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

    ScreenWindow* Create(const WindowSpec& spec, EventSink* sink) override;
    BRect ScreenFrame() const override { return fScreen; }
    bigtime_t FrameInterval() const override { return fFrameInterval; }
    float Scale() const override { return fScale; }
    Monitor ScreenMonitor() const override { return fMonitor; }
    void SetPointer(BPoint where) override;
    int32 CountWorkspaces() override;
    int32 CurrentWorkspace() override;
    void ActivateWorkspace(int32 workspace) override;
    void SetWorkspaceCount(int32 count) override;
    void UpdateCursors() override;
    void InputHeld(bool held) override;
    void DragBegan(std::shared_ptr<const DragPicture> picture, ClipboardForms forms) override;
    void DragEnded(bool dropped) override;
    std::shared_ptr<Clipboard> SystemClipboard() override { return fClipboard; }
    std::shared_ptr<Clipboard> PrimarySelection() override { return fPrimary; }
    void Shutdown() override;

    // Runs `task` on the server's thread, in order. Stage locked. False when the thread is gone.
    bool Post(std::function<void()> task);
    // Deletes a window that has left the stage: on the server's thread, after the tasks that it has
    // posted, or at once when that thread is gone. Stage locked.
    void Discard(QtWindow* window);
    // The time, in system_time()'s base, of an event with this time stamp of the host's. Stage
    // locked.
    bigtime_t TimeOf(uint64 host_ms);
    // While menus hold the input one of their windows grabs the pointer. Server's thread.
    void UpdateGrab();
    // The pointer of a drag is there. Server's thread, before the stage hears of it.
    void DragTo(BPoint where);
    // The X server's side of things; null elsewhere. Server's thread.
    X11Screen* X11() const { return fX11.get(); }
    // Whether the screen's process looks at windows' pixels itself. Stage locked.
    bool ReadsPixels() const { return fReadsPixels; }

private:
    class TaskQueue;

    ~QtDisplay();
    void _Run();
    void _RunTasks();
    void _EndTasks();
    void _ReadScreen();
    void _ScreenChanged();

    std::thread fThread;
    std::thread::id fThreadId;  // set before the constructor returns
    std::once_flag fEnded;
    QObject* fQueue = nullptr;  // on the server's thread; null: nothing is taken. Stage locked
    bigtime_t fHostDelay = B_INFINITE_TIMEOUT;  // least from a time stamp to now; stage locked
    std::vector<std::function<void()>> fTasks;  // stage locked
    std::vector<QtWindow*> fDiscarded;          // whose last task waits; stage locked
    std::unique_ptr<X11Screen> fX11;            // server's thread
    std::unique_ptr<QtDrag> fDrag;              // server's thread: the last one
    Monitor fMonitor;                           // stage locked
    BRect fScreen{0, 0, 1023, 767};             // stage locked
    float fScale = 1;                           // stage locked
    bool fReadsPixels = false;                  // stage locked
    std::shared_ptr<Clipboard> fClipboard;      // set before the constructor returns
    std::shared_ptr<Clipboard> fPrimary;        // as well; null where there is none
    bigtime_t fFrameInterval = 1000000 / 60;
};

}  // namespace server

#endif  // SERVER_QT_DISPLAY_H
