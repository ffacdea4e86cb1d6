#ifndef WINDOWS_WINDOW_H
#define WINDOWS_WINDOW_H

// A program's window: its record in the registry, its class, and the ways to find and lock it.

#include "plinth.h"
#include "runtime/registry.h"

#include <Window.h>

#include <atomic>
#include <stdint.h>

class BBitmap;
class BPopUpMenu;
class MyView;
namespace Marlin {
struct TipTexts;
}

class MyWinClass;

// One block of eleven words from MyAlloc, in the list kWindows. Never freed: what looks a window up
// may still hold the record when the window closes.
struct WindowRecord {
    static const RegistrySlot kSlot = kWindows;

    MyWinClass* window;
    intptr_t ident;
    intptr_t reserved[5];
    const void* cursor;  // cursor data, set whenever the window becomes active
    intptr_t timer_running;
    intptr_t pulse_count;
    intptr_t period;  // pulses
};

enum WindowSlot {
    kActivated = PLINTH_ACTIVATED,
    kDeactivated = PLINTH_DEACTIVATED,
    kMinimized = PLINTH_MINIMIZED,
    kMoved = PLINTH_MOVED,
    kZoomed = PLINTH_ZOOMED,
    kHidden = PLINTH_HIDDEN,
    kShown = PLINTH_SHOWN,
    kRedrawn = PLINTH_REDRAWN,
    kResized = PLINTH_RESIZED,
    kScreenChanged = PLINTH_SCREEN_CHANGED,
    kWorkspaceActivated = PLINTH_WORKSPACE_ACTIVATED,
    kWorkspacesChanged = PLINTH_WORKSPACES_CHANGED,
    kCloseRequested = PLINTH_CLOSE_REQUESTED,
    kKey = PLINTH_KEY,
    kMouseDown = PLINTH_MOUSE_DOWN,
    kMouseMoved = PLINTH_MOUSE_MOVED,
    kTimer = PLINTH_TIMER,
    kMenuItem = PLINTH_MENU_ITEM,
    kMenusBeginning = PLINTH_MENUS_BEGINNING,
    kFilesDropped = PLINTH_FILES_DROPPED,
    kWindowSlots
};
static_assert(kWindowSlots == 22, "the number of slots is the programs'");

// Bits of the event mask. Restored and shown share one, and hidden has none: kept on purpose.
enum WindowEventBit {
    kCloseBit = 0,
    kMouseMovedBit = 4,
    kMouseDownBit = 6,
    kActivatedBit = 7,
    kDeactivatedBit = 9,
    kRestoredBit = 10,
    kShownBit = 10,
    kMinimizedBit = 11,
    kResizedBit = 12,
    kMovedBit = 13,
    kZoomedBit = 14,
    kTimerBit = 15,
    kRedrawnBit = 16,
    kWorkspaceActivatedBit = 17,
    kWorkspacesChangedBit = 18,
    kScreenChangedBit = 19,
    kPopUpMenuBit = 24
};

// Everything but the handlers and the event mask belongs to the window's lock.
class MyWinClass : public BWindow {
public:
    MyWinClass(int32_t ident, BRect frame, window_type type, uint32 flags, const char* title);
    ~MyWinClass() override;

    // False when there was no memory for all of it: the window is of no use.
    bool IsReady() const { return fIsReady; }

    void DispatchMessage(BMessage* message, BHandler* handler) override;
    void MessageReceived(BMessage* message) override;
    void WindowActivated(bool active) override;
    void FrameResized(float width, float height) override;
    void FrameMoved(BPoint leftTop) override;
    void Minimize(bool minimize) override;
    void Zoom(BPoint leftTop, float width, float height) override;
    void Hide() override;
    void Show() override;
    void Quit() override;
    void ScreenChanged(BRect frame, color_space space) override;
    void WorkspaceActivated(int32 workspace, bool active) override;
    void WorkspacesChanged(uint32 before, uint32 after) override;
    void MenusBeginning() override;
    bool QuitRequested() override;
    status_t Perform(perform_code code, void* data) override;

    // Closes the window without asking, which is known no more when this returns; gives back the
    // lock that the caller has. A handler does not wait until it is gone: that may be waiting for
    // this handler's own window.
    void CloseUnasked();

    // Locks the bitmap, unless it is locked already. Window locked.
    void LockRaster();
    // With `refresh`, and while the top view's refresh mode is on, the rectangle is drawn to the
    // screen soon. Then unlocks the bitmap, and the window once. WindowAccess calls it.
    void MyUpdate(BRect rect, bool refresh);

    // The address in a slot if it is set and its event enabled, else null. Any thread.
    template <class Handler>
    Handler HandlerFor(WindowSlot slot, uint32 mask) const
    {
        if ((fEventMask.load(std::memory_order_relaxed) & mask) != mask)
            return nullptr;
        return reinterpret_cast<Handler>(fHandlers[slot].load(std::memory_order_acquire));
    }

    // Calls the handler of a slot with 32-bit integers, if the bit is set in the event mask.
    template <class... Words>
    void CallHandler(WindowSlot slot, WindowEventBit bit, Words... words) const
    {
        CallMasked(slot, 1u << bit, words...);
    }
    // The same for the slots that no bit governs.
    template <class... Words>
    void CallHandler(WindowSlot slot, Words... words) const
    {
        CallMasked(slot, 0, words...);
    }

    MyView* fTopView = nullptr;       // shows the bitmap
    BView* fOffscreenView = nullptr;  // every primitive draws through it; bitmap's lock as well
    BView* fSavedFocus = nullptr;     // had the focus when the window was deactivated
    BBitmap* fRaster = nullptr;       // what the window shows
    BRect fUnseen;                    // around what is in it and waits to be shown with the rest
    BPopUpMenu* fPopUp = nullptr;     // opened by the secondary button
    Marlin::TipTexts* fToolTip = nullptr;         // see windows/tool_tips.cpp, which owns it
    std::atomic<uint32> fEventMask = 0xFFFFFFFF;  // any thread
    WindowRecord* fRecord = nullptr;              // from before it is shown on
    const int32 fIdent;
    int32 fLastWidth, fLastHeight;
    const int32 fOriginX, fOriginY;
    std::atomic<void*> fHandlers[kWindowSlots] = {};  // any thread

private:
    template <class... Words>
    void CallMasked(WindowSlot slot, uint32 mask, Words... words) const
    {
        using Handler = int32_t (*)(Words...);
        if (Handler handler = HandlerFor<Handler>(slot, mask))
            handler(words...);
    }
    void _MakeRaster(BRect frame);
    bool _Holds(const BView* view) const;
    void _ChooseMenuItem(BMessage* message);

    // Takes the record out of the registry, if that was not done.
    void _Unlist();

    bool fIsReady = false;
    bool fWasLast = false;     // of the registry, when it was taken out
    bool fIsClosing = false;   // by CloseUnasked()
    bool fIsHiding = false;    // in Hide(), which calls a handler
    bool fIsQuitting = false;  // in Quit(), which hides
};

extern MyWinClass* DefWin GUARDED_BY(gRegistryLocker);  // what names no window means this one

// The window that a target of -1 draws into, null for none. It leaves here locked. Any thread.
extern std::atomic<MyWinClass*> defaultoutput;
// That window, locked, and its bitmap locked too, for a WindowAccess.
MyWinClass* lock_default_output();

// The record of an open window, null (and a trace line for `call`, unless that is null) if there is
// none. Calls that do anything to the window use a WindowAccess instead. Any thread.
WindowRecord* LLFindWindow(int32_t ident, const char* call);
// That trace line.
void trace_no_window(int32_t ident, const char* call);
// The record of a window object that may be gone; null if it is.
WindowRecord* Find_By_Class(const BWindow* window);
// The oldest open window's record, null if none is open.
WindowRecord* GetActiveWindow();

// Empties a list of windows, which stay open but are found no more.
void forget_windows(BList* windows);
// What was found is looked up anew: PtApp changed.
void empty_window_cache(const RegistryLock& registry);

#endif  // WINDOWS_WINDOW_H
