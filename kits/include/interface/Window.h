#ifndef _WINDOW_H
#define _WINDOW_H

#include <GraphicsDefs.h>
#include <InterfaceDefs.h>
#include <Looper.h>
#include <OS.h>
#include <Point.h>
#include <Rect.h>
#include <Size.h>
#include <StorageDefs.h>
#include <SupportDefs.h>
#include <View.h>

class BArchivable;
class BBitmap;
class BButton;
class BHandler;
class BLayout;
class BLayoutItem;
class BMenuBar;
class BMessage;

namespace BPrivate {
class Canvas;
class InputMessage;
struct Shortcut;
struct ViewPrivate;
struct WindowData;
}  // namespace BPrivate

namespace server {
struct Event;
struct Surface;
}  // namespace server

#define B_CURRENT_WORKSPACE 0
#define B_ALL_WORKSPACES 0xFFFFFFFF

// Flags of a window.
enum {
    B_NOT_MOVABLE = 0x1,
    B_NOT_RESIZABLE = 0x2,
    B_NOT_H_RESIZABLE = 0x4,
    B_NOT_V_RESIZABLE = 0x8,
    B_WILL_ACCEPT_FIRST_CLICK = 0x10,
    B_NOT_CLOSABLE = 0x20,
    B_NOT_ZOOMABLE = 0x40,
    B_AVOID_FRONT = 0x80,
    B_NO_WORKSPACE_ACTIVATION = 0x100,
    B_NO_SERVER_SIDE_WINDOW_MODIFIERS = 0x200,
    B_OUTLINE_RESIZE = 0x1000,
    B_AVOID_FOCUS = 0x2000,
    B_NOT_MINIMIZABLE = 0x4000,
    B_NOT_ANCHORED_ON_ACTIVATE = 0x00020000,
    B_ASYNCHRONOUS_CONTROLS = 0x00080000,
    B_QUIT_ON_WINDOW_CLOSE = 0x00100000,
    B_SAME_POSITION_IN_ALL_WORKSPACES = 0x00200000,
    B_AUTO_UPDATE_SIZE_LIMITS = 0x00400000,
    B_CLOSE_ON_ESCAPE = 0x00800000
};

// Flags of MoveOnScreen().
enum { B_DO_NOT_RESIZE_TO_FIT = 1, B_MOVE_IF_PARTIALLY_OFFSCREEN = 2 };

enum window_type {
    B_UNTYPED_WINDOW = 0,
    B_TITLED_WINDOW = 1,
    B_MODAL_WINDOW = 3,
    B_DOCUMENT_WINDOW = 11,
    B_BORDERED_WINDOW = 20,
    B_FLOATING_WINDOW = 21
};

enum window_look {
    B_TITLED_WINDOW_LOOK = 1,
    B_MODAL_WINDOW_LOOK = 3,
    B_FLOATING_WINDOW_LOOK = 7,
    B_DOCUMENT_WINDOW_LOOK = 11,
    B_NO_BORDER_WINDOW_LOOK = 19,
    B_BORDERED_WINDOW_LOOK = 20
};

enum window_feel {
    B_NORMAL_WINDOW_FEEL = 0,
    B_MODAL_APP_WINDOW_FEEL = 1,
    B_MODAL_SUBSET_WINDOW_FEEL = 2,
    B_MODAL_ALL_WINDOW_FEEL = 3,
    B_FLOATING_APP_WINDOW_FEEL = 4,
    B_FLOATING_SUBSET_WINDOW_FEEL = 5,
    B_FLOATING_ALL_WINDOW_FEEL = 6
};

enum window_alignment { B_BYTE_ALIGNMENT = 0, B_PIXEL_ALIGNMENT = 1 };

/* A window of the screen and the looper whose thread runs its hooks. It is made hidden and locked
   by the thread that makes it; the first Show() starts its thread and gives the lock back. Calls
   that change the window take its lock themselves, so any thread may make them; hooks run on the
   window's thread with the window locked. Frames are whole pixels of the content on the screen,
   and a width is right - left: one less than the pixels. */
class BWindow : public BLooper {
public:
    BWindow(BRect frame, const char* title, window_type type, uint32 flags,
            uint32 workspace = B_CURRENT_WORKSPACE);
    BWindow(BRect frame, const char* title, window_look look, window_feel feel, uint32 flags,
            uint32 workspace = B_CURRENT_WORKSPACE);
    virtual ~BWindow();

    BWindow(BMessage* archive);
    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    /* Hides the window and ends its thread; the window with all its views is deleted. On the
       window's own thread it does not return. On another thread, which must hold the lock, it
       waits for the end. */
    virtual void Quit();
    void Close();

    /* The window owns a view that it holds and deletes it with itself. A view that already hangs
       somewhere stays there. `before` is a child of the window, or null for the end. */
    void AddChild(BView* child, BView* before = nullptr);
    void AddChild(BLayoutItem* child);
    /* Takes a view out of the window wherever it hangs; it then belongs to the caller. */
    bool RemoveChild(BView* child);
    int32 CountChildren() const;
    BView* ChildAt(int32 index) const;

    virtual void DispatchMessage(BMessage* message, BHandler* handler);
    virtual void MessageReceived(BMessage* message);
    virtual void FrameMoved(BPoint newPosition);
    virtual void WorkspacesChanged(uint32 oldWorkspaces, uint32 newWorkspaces);
    virtual void WorkspaceActivated(int32 workspace, bool state);
    virtual void FrameResized(float newWidth, float newHeight);
    /* Ignored for modal, floating and hidden windows. */
    virtual void Minimize(bool minimize);
    virtual void Zoom(BPoint origin, float width, float height);
    /* Computes the zoomed frame and calls the hook with it; from the zoomed frame it goes back to
       the one before. */
    void Zoom();
    void SetZoomLimits(float maxWidth, float maxHeight);
    virtual void ScreenChanged(BRect screenSize, color_space depth);

    /* Microseconds between two Pulse() of the views with B_PULSE_NEEDED; 0 stops them. None come
       before the first call. */
    void SetPulseRate(bigtime_t rate);
    bigtime_t PulseRate() const;

    /* The window owns the message. The Command key is added to the modifiers. Without a target
       the window receives the message; a null target stands for the view with the focus. */
    void AddShortcut(uint32 key, uint32 modifiers, BMessage* message);
    void AddShortcut(uint32 key, uint32 modifiers, BMessage* message, BHandler* target);
    bool HasShortcut(uint32 key, uint32 modifiers);
    void RemoveShortcut(uint32 key, uint32 modifiers);

    /* The button that Enter presses. */
    void SetDefaultButton(BButton* button);
    BButton* DefaultButton() const;

    virtual void MenusBeginning();
    virtual void MenusEnded();

    bool NeedsUpdate() const;
    /* Runs a waiting update at once. Only on the window's thread. */
    void UpdateIfNeeded();

    BView* FindView(const char* viewName) const;
    /* The deepest view under a place in the window, null outside of its content. */
    BView* FindView(BPoint) const;
    BView* CurrentFocus() const;

    void Activate(bool = true);
    virtual void WindowActivated(bool focus);

    void ConvertToScreen(BPoint* point) const;
    BPoint ConvertToScreen(BPoint point) const;
    void ConvertFromScreen(BPoint* point) const;
    BPoint ConvertFromScreen(BPoint point) const;
    void ConvertToScreen(BRect* rect) const;
    BRect ConvertToScreen(BRect rect) const;
    void ConvertFromScreen(BRect* rect) const;
    BRect ConvertFromScreen(BRect rect) const;

    /* These hold at once for Frame(); the hooks follow as messages. The size keeps within the
       limits. */
    void MoveBy(float dx, float dy);
    void MoveTo(BPoint);
    void MoveTo(float x, float y);
    void ResizeBy(float dx, float dy);
    void ResizeTo(float width, float height);
    void ResizeToPreferred();
    void CenterIn(const BRect& rect);
    void CenterOnScreen();
    void CenterOnScreen(screen_id id);
    void MoveOnScreen(uint32 flags = 0);

    /* Hide() counts: the window is visible again after as many Show(). Show() of a visible window
       changes nothing; the first one makes the window visible and starts its thread. */
    virtual void Show();
    virtual void Hide();
    bool IsHidden() const;
    bool IsMinimized() const;

    /* What was drawn reaches the screen now, or for Sync() before it returns. */
    void Flush() const;
    void Sync() const;
    /* B_BAD_VALUE for the window itself; null sends it behind all others. */
    status_t SendBehind(const BWindow* window);
    void DisableUpdates();
    void EnableUpdates();
    void BeginViewTransaction();
    void EndViewTransaction();
    bool InViewTransaction() const;

    BRect Bounds() const;
    BRect Frame() const;
    BRect DecoratorFrame() const;
    BSize Size() const;
    /* Valid until the next SetTitle(). */
    const char* Title() const;
    void SetTitle(const char* title);
    bool IsFront() const;
    bool IsActive() const;
    void SetKeyMenuBar(BMenuBar* bar);
    BMenuBar* KeyMenuBar() const;
    void SetSizeLimits(float minWidth, float maxWidth, float minHeight, float maxHeight);
    void GetSizeLimits(float* minWidth, float* maxWidth, float* minHeight, float* maxHeight);
    void UpdateSizeLimits();
    status_t SetDecoratorSettings(const BMessage& settings);
    status_t GetDecoratorSettings(BMessage* settings) const;
    uint32 Workspaces() const;
    void SetWorkspaces(uint32);
    BView* LastMouseMovedView() const;

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);

    /* A subset is the group of windows that a window with a subset feel stays above, and keeps from
       input if it is a modal one. B_BAD_VALUE for null, for a window with another feel, and when
       what is to be removed is not there. */
    status_t AddToSubset(BWindow* window);
    status_t RemoveFromSubset(BWindow* window);

    virtual status_t Perform(perform_code code, void* data);

    /* A type is a pair of look and feel. */
    status_t SetType(window_type type);
    window_type Type() const;
    status_t SetLook(window_look look);
    window_look Look() const;
    status_t SetFeel(window_feel feel);
    window_feel Feel() const;
    status_t SetFlags(uint32);
    uint32 Flags() const;
    bool IsModal() const;
    bool IsFloating() const;

    status_t SetWindowAlignment(window_alignment mode, int32 h, int32 hOffset = 0, int32 width = 0,
                                int32 widthOffset = 0, int32 v = 0, int32 vOffset = 0,
                                int32 height = 0, int32 heightOffset = 0);
    status_t GetWindowAlignment(window_alignment* mode = nullptr, int32* h = nullptr,
                                int32* hOffset = nullptr, int32* width = nullptr,
                                int32* widthOffset = nullptr, int32* v = nullptr,
                                int32* vOffset = nullptr, int32* height = nullptr,
                                int32* heightOffset = nullptr) const;

    virtual bool QuitRequested();
    virtual thread_id Run();

    virtual void SetLayout(BLayout* layout);
    BLayout* GetLayout() const;
    void InvalidateLayout(bool descendants = false);
    void Layout(bool force);

    bool IsOffscreenWindow() const;

private:
    friend class BApplication;
    friend class BBitmap;
    friend class BView;
    friend class BPrivate::Canvas;
    friend struct BPrivate::ViewPrivate;
    friend struct BPrivate::WindowData;

    // Carries the views of a bitmap and draws into its pixels: a looper that never has a thread,
    // nor a window on the screen. Unlocked once made. Lock() and Quit() delete it and its views.
    BWindow(BRect bounds, const server::Surface& bitmap);

    BWindow(const BWindow&) = delete;
    BWindow& operator=(const BWindow&) = delete;

    void _Init(BRect frame, const char* title, window_look look, window_feel feel, uint32 flags,
               uint32 workspace);

    // For the views; all with the window locked.
    BPrivate::Canvas& _Canvas() const;
    BView* _TopView() const;
    // The focus goes to `view`, or to none; MakeFocus() of the view calls it.
    void _SetFocus(BView* view);
    // What BView::SetEventMask() and SetMouseEventMask() set; a mask of 0 ends it. The mouse mask
    // is only taken during a B_MOUSE_DOWN, and holds until the last button is up.
    void _SetEventMask(BView* view, uint32 mask, uint32 options);
    status_t _SetMouseEventMask(BView* view, uint32 mask, uint32 options);
    // A view leaves the window: nothing here points to it afterwards. For every view of a branch.
    void _ForgetView(BView* view);
    // Starts a drag with the button that is held. Adopts message and bitmap, which may be null:
    // then the outline of `dragRect` (coordinates of `source`) goes with the pointer.
    void _StartDrag(BView* source, BMessage* message, BBitmap* bitmap, drawing_mode mode,
                    BPoint offset, BRect dragRect, BHandler* replyTo);
    // Takes the oldest press, release or move out of the queue. Place in the window.
    bool _TakePointerMessage(BPoint* where, uint32* buttons);
    // The cursor of the view under the pointer may be another one.
    void _UpdateCursor();

    // For the canvas; from any thread that holds the lock.
    void _ScheduleUpdate();   // sends _UPDATE_, if none is under way
    void _SchedulePresent();  // lets the loop look after the screen

    void _Adopt(BMessage* message) { _Queue(message); }

    // The loop's hooks.
    virtual bigtime_t _Idle();
    virtual void _Deliver(BMessage* message);

    // Input, in the order in which it finds its target.
    void _DeliverInput(BPrivate::InputMessage* message);
    void _DeliverMove(BPrivate::InputMessage* message, const server::Event& event);
    void _DeliverTransit(BMessage* message, const server::Event& event, BView* under);
    void _DeliverButton(BPrivate::InputMessage* message, const server::Event& event);
    void _DeliverToViews(BMessage* message, const server::Event& event, BView* target, uint32 mask);
    void _DeliverKey(BPrivate::InputMessage* message);
    void _DispatchPointer(BMessage* message, const server::Event& event, BView* view);
    void _DispatchCopy(BMessage* message, BHandler* target);
    void _SetButtons(int32 buttons);
    BView* _ViewAt(BPoint where) const;
    bool _WantsHistory(BView* view) const;

    // Dispatch: true if the message is done with.
    bool _DispatchToWindow(BMessage* message);
    bool _DispatchScreenMessage(BMessage* message);
    bool _DispatchToView(BMessage* message, BView* view);
    bool _IsOutdated(const BMessage* message) const;
    bool _KeyDown(BMessage* message);
    bool _Pulse();
    bool _Script(BMessage* message);
    void _UnwantedKey(BMessage* message);
    void _Navigate(bool backwards, bool jump);
    BView* _DefaultButtonView() const;
    void _AddDefaultShortcuts();
    void _RunShortcut(BMessage* key, uint32 held);
    bool _RunControlShortcut(BMessage* key, uint32 held);
    bool _EnterMenuBar();
    void _SendShortcut(const BPrivate::Shortcut& shortcut, const BMessage* key);
    void _CloseByKey(const BMessage* key);
    void _Resized(float width, float height);
    void _Moved(BPoint place);
    void _Activated(bool active);
    void _MinimizeAsked(bool minimize);
    bool _AdoptSize(float width, float height);
    void _LeaveFront();
    void _Update();
    bigtime_t _Present(bool force) const;

    BPrivate::WindowData* fData;
};

#endif  // _WINDOW_H
