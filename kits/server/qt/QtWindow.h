#ifndef SERVER_QT_QT_WINDOW_H
#define SERVER_QT_QT_WINDOW_H

#include <atomic>
#include <memory>

#include "server/screen/EchoFilter.h"
#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"

namespace server {

class NativeWindow;
class QtDisplay;

// A window on Qt's display: what other threads ask for is noted here, and carried out by the
// server's thread on the native window.
class QtWindow final : public ScreenWindow {
public:
    static QtWindow* Make(QtDisplay* display, const WindowSpec& spec, EventSink* sink)
        REQUIRES(gStageLock);
    ~QtWindow() override;

    void Destroy() override;
    void Show() override;
    void Hide() override;
    void Activate(bool active) override;
    void SendBehind(ScreenWindow* other) override;
    void SetCursor(const BCursor* cursor) override;
    void Present(const Surface& surface, const clipping_rect* rects, int32 count) override;

    Border Decoration() const override REQUIRES(gStageLock) { return fBorder; }
    float Scale() const override { return fScale; }
    void ActivateByUser() override REQUIRES(gStageLock);
    bool HasHostFocus() const override REQUIRES(gStageLock) { return fHasFocus; }

    void UpdateCursor() REQUIRES(gStageLock);

    // What the native window says. Server's thread, stage not locked.
    void NativeMoved(BRect frame, Border border);
    void NativeMinimized(bool minimized);
    void NativeZoomed(bool zoomed);
    void NativeUncovered(const clipping_rect& rect);
    void NativeScale(double scale);
    void NativeFocus(bool focus);
    // A menu's window had the keyboard for the active window, and has lost it to another program.
    static void NoFocus();
    // The same: the window manager has it on these workspaces.
    void NativeWorkspaces(uint32 workspaces) REQUIRES(gStageLock);
    // Whether `id` is the X window of it. Server's thread.
    bool IsNative(uint32 id) const;
    // The native window, which knows nothing of this one any more; null if none.
    std::unique_ptr<NativeWindow> TakeNative() REQUIRES(gStageLock);
    NativeWindow* Native() const { return fNative.get(); }
    // Which window of the menus takes the pointer may have changed.
    void UpdateGrab();
    // The pointer is there, on the screen. Server's thread, stage not locked.
    void DragTo(BPoint where);
    bigtime_t FrameInterval() const;
    // When something happened of which the host says that it was then.
    bigtime_t TimeOf(uint64 host_ms) const REQUIRES(gStageLock);

private:
    QtWindow(QtDisplay* display, const WindowSpec& spec, EventSink* sink);
    template <class Task>
    void _Post(Task task) REQUIRES(gStageLock);
    void _MakeNative();
    void _TellWorkspaces(NativeWindow& native, uint32 workspaces);
    void _TellHints(const WindowSpec& spec);
    void _TellTitle(const std::string& title);
    uint32 _SubsetOwner() const;
    BRect Wanted() const override REQUIRES(gStageLock) { return fWanted; }
    WindowSpec _WantedSpec() const REQUIRES(gStageLock);
    void Place(BRect frame) override REQUIRES(gStageLock);
    void Iconify(bool minimize) override REQUIRES(gStageLock);
    void Retitled() override REQUIRES(gStageLock);
    void Restyled() override REQUIRES(gStageLock);
    void WorkspacesSet() override REQUIRES(gStageLock);
    void TypingHidden() override REQUIRES(gStageLock);
    void CompositionMoved() override REQUIRES(gStageLock);
    void CompositionEnded() override REQUIRES(gStageLock);
    void AccessibleSet() override REQUIRES(gStageLock);

    QtDisplay* fDisplay;
    std::unique_ptr<NativeWindow> fNative;             // server's thread; made by the first task
    bool fDestroyed GUARDED_BY(gStageLock) = false;    // its last task is posted
    BRect fWanted GUARDED_BY(gStageLock);              // where the program last put it
    bool fPlacing GUARDED_BY(gStageLock) = false;      // a task that waits will put it there
    EchoFilter<BRect> fPlaces GUARDED_BY(gStageLock);  // what the screen was told of it
    bool fZoomed GUARDED_BY(gStageLock) = false;       // by the window manager
    EchoFilter<uint32> fWorkspaces GUARDED_BY(gStageLock);
    Border fBorder GUARDED_BY(gStageLock){5, 26};  // a guess until the window is mapped
    Cursor fCursor GUARDED_BY(gStageLock);
    bool fHasFocus GUARDED_BY(gStageLock) = false;
    std::atomic<float> fScale;
};

}  // namespace server

#endif  // SERVER_QT_QT_WINDOW_H
