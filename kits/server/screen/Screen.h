#ifndef SERVER_SCREEN_H
#define SERVER_SCREEN_H

// The screen, its windows and its input. There are two displays: Qt's (an X server or Wayland) and
// one in memory, taken when neither DISPLAY nor WAYLAND_DISPLAY is set. One server thread owns all
// native windows. It never waits for a window's thread and never takes a window's lock; all
// functions here may be called from any thread, with any window locked.

#include <Cursor.h>
#include <Point.h>
#include <Rect.h>
#include <Region.h>
#include <Window.h>

#include <memory>
#include <string>
#include <vector>

#include <server/clipboard/Clipboard.h>
#include <server/screen/Surface.h>

namespace server {

enum class EventKind : uint8 {
    MouseDown,         // where, screenWhere, buttons (after the press), button, clicks, modifiers
    MouseUp,           // where, screenWhere, buttons (still held), button, modifiers
    MouseMoved,        // where, screenWhere, buttons, modifiers
    MouseExited,       // the pointer left the window
    MouseWheel,        // wheelX, wheelY (positive y: the content moves up), modifiers
    KeyDown,           // key, rawChar, bytes (empty: no character), repeat, modifiers, states
    KeyUp,             // the same without repeat
    ModifiersChanged,  // modifiers, oldModifiers, states
    CloseRequested,
    Moved,      // frame: the content area, screen coordinates
    Resized,    // frame
    Activated,  // active
    Minimized,  // active: true when minimised, false when restored
    ZoomRequested,
    Uncovered,           // frame: what came to light, in the window's content
    Zoomed,              // by the screen itself, or back; the frame is told by events of its own
    ScreenChanged,       // frame: the screen
    WorkspaceActivated,  // workspace, active
    WorkspacesChanged,   // workspaces, oldWorkspaces
    FilesDropped,        // paths, where, screenWhere, buttons, modifiers
    Composed,            // composition
    DataDropped,         // forms, where, screenWhere, buttons, modifiers
    DragCancelled,       // the user has thought better of it; to the window that has the pointer
    ReaderCame,          // a screen reader listens from here on
    ReaderAsked,         // request
    ScaleChanged,  // the screen's pixels a unit of the window are others: ScreenWindow::Scale()
};

class EventSink;
class ScreenWindow;
struct AccessibleRequest;
struct AccessibleTree;

// What an input method makes of keys. Places are bytes of the text.
struct Composition {
    enum class Step : uint8 { Started, Changed, Stopped };
    Step step = Step::Changed;
    std::string text;
    bool confirmed = false;  // it is done, and to be kept
    int32 selectionStart = 0, selectionEnd = 0;
    std::vector<int32> clauses;  // start and end of each
};

struct Event {
    EventKind kind;
    bigtime_t when = 0;  // system_time() base
    BPoint where;        // in the window's content
    BPoint screenWhere;
    // Pointer events: the window of this process whose content is under the pointer (null for
    // none), which is another one than the target while a button is held; and the place in it.
    EventSink* under = nullptr;
    BPoint underWhere;
    int32 buttons = 0;
    int32 button = 0;  // the one that changed
    int32 clicks = 0;  // from 1; starts anew with another button, place, window or modifier
    int32 modifiers = 0;
    int32 oldModifiers = 0;
    int32 key = 0;  // BeOS key code
    int32 rawChar = 0;
    int32 repeat = 0;  // 0 for the first, then from 2
    uint8 states[16] = {};
    char bytes[8] = {};   // UTF-8
    int32 byteCount = 0;  // 1 also for Control with Space, whose byte is 0; 0: the key is unmapped
    float wheelX = 0, wheelY = 0;
    BRect frame;
    bool active = false;
    int32 workspace = 0;
    uint32 workspaces = 0, oldWorkspaces = 0;
    std::vector<std::string> paths;
    std::shared_ptr<const Composition> composition;
    ClipboardForms forms;
    std::shared_ptr<const AccessibleRequest> request;
};

// Where a window's events go. Called on the server's thread, or on the thread that injects input;
// it may queue a message, and must not wait nor lock a window.
class EventSink {
public:
    virtual void Deliver(const Event& event) = 0;
    // Takes back keys and pointer that wait for their turn, as somebody else is to have them.
    // Called with the stage locked.
    virtual std::vector<Event> TakeWaiting() { return {}; }

protected:
    ~EventSink() = default;
};

struct WindowSpec {
    BRect frame;  // content area on the screen
    std::string title;
    window_look look = B_TITLED_WINDOW_LOOK;
    window_feel feel = B_NORMAL_WINDOW_FEEL;
    uint32 flags = 0;
    uint32 workspaces = B_CURRENT_WORKSPACE;
    float minWidth = 0, maxWidth = 32768, minHeight = 0, maxHeight = 32768;
};

// Screen.
BRect ScreenFrame();
color_space ScreenSpace();
bigtime_t FrameInterval();  // microseconds between two screen updates
// What stands behind the screen; without a name it is none.
struct Monitor {
    std::string vendor, name, serial;
    float width_cm = 0, height_cm = 0;  // 0: not known
};
Monitor ScreenMonitor();
// The pixels a unit of most windows; 1 while no display has been asked for anything yet.
float ScreenScale();
// Gives the display in memory other pixels; a real one has its own.
void SetScreenScale(float scale);
// All windows in stacking order over the desktop colour, in the pixels of the screen. Returns a PNG
// file's status.
status_t SaveScreen(const char* pngPath);
// The screen or, on a real display, our own windows, a pixel for each unit: B_RGBA32, resized to
// `rect`.
status_t ReadScreen(BRect rect, std::vector<uint32>* pixels, int32* width, int32* height);

// Input as it is at this moment. The number of presses so far tells who looks from time to time of
// those that came and went in between.
void PointerState(BPoint* screenWhere, uint32* buttons, uint32* presses = nullptr);
int32 Modifiers();
void KeyStates(uint8 states[16]);
void SetPointer(BPoint screenWhere);
bigtime_t ClickSpeed();
void SetClickSpeed(bigtime_t speed);

// What is dragged, as the screen shows it.
struct DragPicture {
    std::vector<uint32> pixels;  // B_RGBA32, row by row; none: nothing is to be seen
    int32 width = 0, height = 0;
    BPoint offset;  // of the pointer in it
};

// The picture follows the pointer, and other programs may take one of the forms, until the last
// button is up, Escape is pressed or EndDrag() is called. Where the buttons are up already the drag
// is over as it begins. Not from within EventSink::Deliver().
void BeginDrag(std::shared_ptr<const DragPicture> picture, ClipboardForms forms);
void EndDrag();

// The window of this process under a place on the screen, null if none. Only to be compared or
// used while the caller knows that the window lives.
EventSink* SinkAt(BPoint screenWhere, BPoint* where);

// Takes all input from here on, as an open menu does: presses anywhere on the screen, the keys, and
// moves; `where` of the events is their place on the screen. The newest of several sinks gets the
// keys, all get the pointer. A press that began before still ends at its window as well.
// `Activated` tells that `owner`, or where that is null the window that is active at present, no
// longer is. What waits at `from`, which may be null, comes first: it happened behind what the
// sink holds the input for. Returns pointer and buttons of this moment.
void HoldInput(EventSink* sink, EventSink* owner, EventSink* from, BPoint* screenWhere,
               uint32* buttons);
// The sink has what it wanted, and gets more only to give it back: until it releases the input, or
// its owner is no longer active.
void EndHold(EventSink* sink);
// No event reaches the sink once this returns. What waits there is the windows' again.
void ReleaseInput(EventSink* sink);

// Workspaces. The host's where it has some, else one; those in memory are four.
int32 CountWorkspaces();
int32 CurrentWorkspace();
void ActivateWorkspace(int32 workspace);
void SetWorkspaceCount(int32 count);

// What lies behind the windows of the picture of the screen.
rgb_color DesktopColor();
void SetDesktopColor(rgb_color color);

// Caps, Num and Scroll Lock.
void SetLocks(uint32 modifiers);

// Microseconds since the last input of any kind.
bigtime_t IdleTime();

// Whether a press that activates a window also reaches it; true from the start.
bool AcceptsFirstClick();
void SetAcceptsFirstClick(bool accept);

void SetAppCursor(const BCursor* cursor);  // of all windows without a view cursor
void SetCursorHidden(bool hidden);
void ObscureCursor();  // hides it until the pointer moves

// Ends the server's thread and closes what windows are left on a real screen, which takes no new
// ones from then on. Once is enough; further calls do nothing.
void Shutdown();

}  // namespace server

#endif  // SERVER_SCREEN_H
