#ifndef SERVER_DISPLAYS_H
#define SERVER_DISPLAYS_H

// What the two displays do each in its own way. What is called with the stage locked must not wait.

#include <server/clipboard/Clipboard.h>
#include <server/screen/Screen.h>
#include <server/screen/StageLock.h>

namespace server {

class ScreenWindow;

class Display {
public:
    // A window that is not on the stage yet; null when the screen can not take another one.
    virtual ScreenWindow* Create(const WindowSpec& spec, EventSink* sink) REQUIRES(gStageLock) = 0;
    virtual BRect ScreenFrame() const REQUIRES(gStageLock) = 0;
    virtual bigtime_t FrameInterval() const REQUIRES(gStageLock) = 0;
    // The pixels a unit, of new windows and of pictures of the screen: a sensible_scale().
    virtual float Scale() const REQUIRES(gStageLock) = 0;
    // What the user does to a screen; nothing where it has a say of its own.
    virtual void SetScale(float) REQUIRES(gStageLock) {}
    virtual Monitor ScreenMonitor() const REQUIRES(gStageLock) { return {}; }
    virtual void SetPointer(BPoint where) REQUIRES(gStageLock) = 0;
    virtual int32 CountWorkspaces() REQUIRES(gStageLock) = 0;
    virtual int32 CurrentWorkspace() REQUIRES(gStageLock) = 0;
    virtual void ActivateWorkspace(int32 workspace) REQUIRES(gStageLock) = 0;
    virtual void SetWorkspaceCount(int32 count) REQUIRES(gStageLock) = 0;
    // The cursor of the application, or of no window at all, changed.
    virtual void UpdateCursors() REQUIRES(gStageLock) = 0;
    // Menus hold the input, or no one does any more: presses on other programs' windows count too.
    virtual void InputHeld(bool held) REQUIRES(gStageLock) = 0;
    // Something is dragged, which the screen shows; and no more, be it dropped or not.
    virtual void DragBegan(std::shared_ptr<const DragPicture>, ClipboardForms) REQUIRES(gStageLock)
    {
    }
    virtual void DragEnded(bool) REQUIRES(gStageLock) {}
    // Not locked.
    virtual std::shared_ptr<Clipboard> SystemClipboard() = 0;
    virtual std::shared_ptr<Clipboard> PrimarySelection() { return nullptr; }
    // Ends threads and native windows; not locked, waits. Other threads may still be inside calls,
    // and windows be left: the object stays.
    virtual void Shutdown() = 0;

protected:
    ~Display() = default;
};

// A display in memory: no thread, no native windows.
Display* make_memory_display();
// Qt's display, with the server's thread running. Null when no display can be reached.
Display* make_qt_display();

}  // namespace server

#endif  // SERVER_DISPLAYS_H
