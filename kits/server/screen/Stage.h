#ifndef SERVER_STAGE_H
#define SERVER_STAGE_H

// All windows of this program in stacking order, which of them is active, and where input goes.
// Both displays and the injection interface feed it; it turns hardware-like changes into the
// windows' events. One lock guards it, held while events are queued, so that a window never gets
// one after it was taken off. Nothing here waits.

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <server/screen/Screen.h>
#include <server/screen/Input.h>
#include <server/screen/InputHolders.h>
#include <server/screen/StageLock.h>

namespace server {

class ScreenWindow;
using Cursor = std::shared_ptr<const BPrivate::CursorImage>;  // null: the host's arrow

class Stage {
public:
    // Windows. A new one lies on top of its layer.
    void Add(ScreenWindow* window) REQUIRES(gStageLock);
    void Remove(ScreenWindow* window) REQUIRES(gStageLock);
    void Raise(ScreenWindow* window) REQUIRES(gStageLock);
    // Null: behind all.
    void PutBehind(ScreenWindow* window, const ScreenWindow* other) REQUIRES(gStageLock);
    const std::vector<ScreenWindow*>& Windows() const { return fWindows; }  // the lowest first
    bool IsVisible(const ScreenWindow* window) const REQUIRES(gStageLock);
    ScreenWindow* Active() const { return fActive; }
    // Tells the two windows concerned. Null, or one that was taken off: none is active.
    void SetActive(ScreenWindow* window) REQUIRES(gStageLock);
    // Activates the topmost window that wants it, after the active one went out of sight.
    void ActivateNext() REQUIRES(gStageLock);
    // The modal window that keeps input from this one, null if none.
    ScreenWindow* Blocker(const ScreenWindow* window) const REQUIRES(gStageLock);
    // A modal window came or went: it takes the focus from a window that it blocks, and leaves it
    // to one that the host has given it to.
    void MindBlockers() REQUIRES(gStageLock);
    // The topmost visible window whose content, or content and decoration, holds a place.
    ScreenWindow* ContentAt(BPoint where) const REQUIRES(gStageLock);
    ScreenWindow* FrameAt(BPoint where) const REQUIRES(gStageLock);
    // The topmost minimised window whose frame would hold the place.
    ScreenWindow* IconAt(BPoint where) const REQUIRES(gStageLock);

    // Workspaces. The display says which is shown.
    int32 Workspace() const { return fWorkspace; }
    int32 WorkspaceCount() const { return fWorkspaceCount; }
    void SetWorkspaceCount(int32 count) REQUIRES(gStageLock);
    void ShowWorkspace(int32 workspace) REQUIRES(gStageLock);

    // Input. `target` is the window that the host names; null: the one at that place. The host may
    // still speak of a window that has been taken off: nobody hears of that. `when` is when it
    // happened; 0: at this moment.
    void MovePointer(BPoint where, ScreenWindow* target = nullptr, bigtime_t when = 0)
        REQUIRES(gStageLock);
    void LeavePointer(ScreenWindow* window) REQUIRES(gStageLock);
    void ChangeButton(int32 button, bool down, ScreenWindow* target = nullptr, bigtime_t when = 0)
        REQUIRES(gStageLock);
    // Takes over that only the buttons in `held` are down: others went up elsewhere.
    void SyncButtons(int32 held) REQUIRES(gStageLock);
    void TurnWheel(float dx, float dy, ScreenWindow* target = nullptr, bigtime_t when = 0)
        REQUIRES(gStageLock);
    void ChangeKey(int32 key, bool down, const char* text = nullptr, int32 rawChar = 0)
        REQUIRES(gStageLock);
    void TypeCharacter(const char* utf8) REQUIRES(gStageLock);
    // What an input method has made of keys so far, which may be nothing any more, and what it is
    // done with. Text that nobody saw being composed is typed.
    void Compose(Composition composing, const std::string& committed) REQUIRES(gStageLock);
    // The window that takes part knows of its end.
    void ForgetComposition() { fComposer = nullptr; }
    void SyncModifiers(uint32 modifiers, uint32 mask) REQUIRES(gStageLock);
    void ReleaseKeys() REQUIRES(gStageLock);
    void Drop(BPoint where, Event event, ScreenWindow* target = nullptr) REQUIRES(gStageLock);

    // A drag, of which `ended` is told whether it was dropped. One that goes on is cancelled by the
    // next.
    void BeginDrag(std::shared_ptr<const DragPicture> picture, std::function<void(bool)> ended)
        REQUIRES(gStageLock);
    void EndDrag(bool dropped) REQUIRES(gStageLock);
    const DragPicture* Dragged() const { return fDragged.get(); }  // null for none
    // The host says that another program's window lies above ours under the pointer of a drag.
    void SetCovered(bool covered) { fCovered = covered && fDragged != nullptr; }
    // The host carries the drag itself, and says which window it is over.
    void CarryTo(BPoint where, ScreenWindow* over) REQUIRES(gStageLock);

    // Menus take the input from the windows; `owner` is the window whose loss of activity they are
    // told of, null for the active one. ReleaseInput() is true once nobody holds it.
    void HoldInput(EventSink* sink, const EventSink* owner) REQUIRES(gStageLock);
    bool ReleaseInput(EventSink* sink) REQUIRES(gStageLock);
    void EndHold(EventSink* sink) REQUIRES(gStageLock) { fHolders.End(sink); }
    // Events that waited at a window are for the newest holder of the input; those that waited
    // there when it released that are for the windows again, or for who still holds it.
    void HandOver(const std::vector<Event>& events, EventSink* sink) REQUIRES(gStageLock);
    void GiveBack(const std::vector<Event>& events) REQUIRES(gStageLock);
    bool IsInputHeld() const { return !fHolders.IsEmpty(); }
    // The window that the newest of them belongs to; null for none.
    const ScreenWindow* HoldersOwner() const { return fHolders.Owner(); }
    // The host has closed their windows: they hear what they do when their window is inactive.
    void CancelHolders() REQUIRES(gStageLock);

    BPoint Pointer() const { return fPointer; }
    // The last window that the pointer moved in, unless it has left it; null for none.
    const ScreenWindow* Hovered() const { return fHover; }
    int32 Buttons() const { return fButtons; }
    uint32 CountPresses() const { return fPresses; }
    const Keyboard& Keys() const { return fKeyboard; }
    bigtime_t LastInput() const { return fLastInput; }

    // The cursor over windows that have none of their own.
    const Cursor& AppCursor() const { return fAppCursor; }
    void SetAppCursor(Cursor cursor) { fAppCursor = std::move(cursor); }
    bool IsCursorHidden() const { return fCursorHidden || fCursorObscured; }
    void SetCursorHidden(bool hidden) { fCursorHidden = hidden; }
    void ObscureCursor() { fCursorObscured = true; }  // until the pointer moves

    bigtime_t clickSpeed = 500000;  // microseconds
    bool acceptsFirstClick = true;

private:
    void _InputAt(bigtime_t when) REQUIRES(gStageLock);
    bool _Has(const ScreenWindow* window) const;
    ScreenWindow* _PointerTarget(ScreenWindow* target) const REQUIRES(gStageLock);
    Event _PointerEvent(EventKind kind, const ScreenWindow* window) const REQUIRES(gStageLock);
    Event _ScreenEvent(EventKind kind) const;
    void _Enter(ScreenWindow* window) REQUIRES(gStageLock);
    bool _HeldButton(int32 button, bool down, const ScreenWindow* target) REQUIRES(gStageLock);
    void _GiveBackPointer(const Event& event) REQUIRES(gStageLock);
    void _GiveBackPress(const Event& press) REQUIRES(gStageLock);
    void _ChangeButton(int32 button, bool down, ScreenWindow* target, bigtime_t when)
        REQUIRES(gStageLock);
    void _DeliverKeys(const std::vector<Event>& events) REQUIRES(gStageLock);
    void _Tell(ScreenWindow* window, Composition composition) REQUIRES(gStageLock);
    bool _CancelsDrag(const Event& key) REQUIRES(gStageLock);

    std::vector<ScreenWindow*> fWindows;
    ScreenWindow* fActive = nullptr;
    ScreenWindow* fHover = nullptr;    // last one that the pointer moved in
    ScreenWindow* fPressed = nullptr;  // gets all pointer events until the buttons are up
    bool fSwallow = false;             // the press that only activated: nobody hears of it
    InputHolders fHolders;
    bool fHeldPress = false;  // began while input was held: no window hears of its end
    BPoint fPointer;
    int32 fButtons = 0;
    uint32 fPresses = 0;  // of buttons, so far
    Keyboard fKeyboard;
    ScreenWindow* fComposer = nullptr;  // where text is being composed
    ClickCounter fClicks;
    std::shared_ptr<const DragPicture> fDragged;
    std::function<void(bool)> fDragEnded;
    bool fCovered = false;           // under the pointer of the drag
    ScreenWindow* fUnder = nullptr;  // that, where the host says it; null: go by the place
    bool fTookEscape = false;        // which is still down: nobody hears of it
    Cursor fAppCursor;
    bool fCursorHidden = false;
    bool fCursorObscured = false;
    int32 fWorkspace = 0;
    int32 fWorkspaceCount = 4;
    bigtime_t fLastInput = 0;
};

// The one stage. It is never destroyed: threads may outlive main(). Whoever holds its lock has it.
Stage& stage() REQUIRES(gStageLock);

}  // namespace server

#endif  // SERVER_STAGE_H
