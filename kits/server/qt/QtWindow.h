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
    // Stage locked.
    static QtWindow* Make(QtDisplay* display, const WindowSpec& spec, EventSink* sink);
    ~QtWindow() override;

    void Destroy() override;
    void Show() override;
    void Hide() override;
    void Activate(bool active) override;
    void SendBehind(ScreenWindow* other) override;
    void SetCursor(const BCursor* cursor) override;
    void Present(const Surface& surface, const clipping_rect* rects, int32 count) override;

    Border Decoration() const override { return fBorder; }
    float Scale() const override { return fScale; }
    void ActivateByUser() override;
    bool HasHostFocus() const override { return fHasFocus; }

    // Stage locked.
    void UpdateCursor();

    // What the native window says. Server's thread, stage not locked.
    void NativeMoved(BRect frame, Border border);
    void NativeMinimized(bool minimized);
    void NativeZoomed(bool zoomed);
    void NativeUncovered(const clipping_rect& rect);
    void NativeScale(double scale);
    void NativeFocus(bool focus);
    // A menu's window had the keyboard for the active window, and has lost it to another program.
    static void NoFocus();
    // The same, stage locked: the window manager has it on these workspaces.
    void NativeWorkspaces(uint32 workspaces);
    // Whether `id` is the X window of it. Server's thread.
    bool IsNative(uint32 id) const;
    // The native window, which knows nothing of this one any more. Stage locked; null if none.
    std::unique_ptr<NativeWindow> TakeNative();
    NativeWindow* Native() const { return fNative.get(); }
    // Which window of the menus takes the pointer may have changed.
    void UpdateGrab();
    // The pointer is there, on the screen. Server's thread, stage not locked.
    void DragTo(BPoint where);
    bigtime_t FrameInterval() const;
    // When something happened of which the host says that it was then; stage locked.
    bigtime_t TimeOf(uint64 host_ms) const;

private:
    QtWindow(QtDisplay* display, const WindowSpec& spec, EventSink* sink);
    // Stage locked.
    template <class Task>
    void _Post(Task task);
    void _MakeNative();
    void _TellWorkspaces(NativeWindow& native, uint32 workspaces);
    void _TellHints(const WindowSpec& spec);
    void _TellTitle(const std::string& title);
    uint32 _SubsetOwner() const;
    BRect Wanted() const override { return fWanted; }
    WindowSpec _WantedSpec() const;
    void Place(BRect frame) override;
    void Iconify(bool minimize) override;
    void Retitled() override;
    void Restyled() override;
    void WorkspacesSet() override;
    void TypingHidden() override;
    void CompositionMoved() override;
    void CompositionEnded() override;
    void AccessibleSet() override;

    QtDisplay* fDisplay;
    std::unique_ptr<NativeWindow> fNative;  // server's thread; made by the first task
    bool fDestroyed = false;                // stage locked: its last task is posted
    BRect fWanted;                          // stage locked: where the program last put it
    bool fPlacing = false;                  // stage locked: a task that waits will put it there
    bool fZoomed = false;                   // stage locked: by the window manager
    EchoFilter<uint32> fWorkspaces;         // stage locked
    Border fBorder{5, 26};                  // stage locked: a guess until the window is mapped
    Cursor fCursor;                         // stage locked
    bool fHasFocus = false;                 // stage locked
    std::atomic<float> fScale;
};

}  // namespace server

#endif  // SERVER_QT_QT_WINDOW_H
