#ifndef SERVER_SCREEN_WINDOW_H
#define SERVER_SCREEN_WINDOW_H

// One window of the screen, and what the windows of both displays share: their place, state and
// pixels as the stage knows them. Everything but the front buffer is guarded by the stage's lock.
//
// A window's place is the screen's: Frame() is where the screen has it, Wanted() where it will have
// it when the program's last word is carried out. What BWindow::Frame() says is the program's view
// of it: its own changes hold there at once, the user's when their message is dispatched, and an
// echo filter keeps the screen's late answers from taking a newer wish back.

#include <server/screen/Screen.h>
#include <server/screen/FrontBuffer.h>
#include <server/screen/StageLock.h>

namespace server {

class ScreenWindow {
public:
    // ---- For its owner: the calls return at once, and the server's thread carries them out in
    // order. Changes that the program asked for come back as events like the user's own.

    // Null when the screen can not take another window. The window starts hidden.
    static ScreenWindow* Create(const WindowSpec& spec, EventSink* sink);
    // No event reaches the sink once this returns. The object is gone.
    virtual void Destroy() = 0;

    virtual void Show() = 0;
    virtual void Hide() = 0;
    void Minimize(bool minimize);
    virtual void Activate(bool active) = 0;            // active false: behind all others
    virtual void SendBehind(ScreenWindow* other) = 0;  // null: to the back
    void MoveTo(BPoint leftTop);
    void ResizeTo(float width, float height);  // right-left, bottom-top
    void SetTitle(const std::string& title);
    void SetLook(window_look look);
    void SetFeel(window_feel feel);
    void SetFlags(uint32 flags);
    void SetSizeLimits(float minWidth, float maxWidth, float minHeight, float maxHeight);
    void SetWorkspaces(uint32 workspaces);
    // The windows that one of a subset feel blocks, or floats above. One that goes leaves them; it
    // may be gone when it is removed.
    void AddToSubset(ScreenWindow* other);
    void RemoveFromSubset(ScreenWindow* other);
    virtual void SetCursor(const BCursor* cursor) = 0;  // null: the default
    // Where the text is that an input method makes, in the window: its list of words goes there.
    void SetCompositionPlace(BRect place);
    // What is being composed stays where it is, and nothing more of it comes.
    void EndComposition();
    // Nobody is to see or to keep what is typed, as of passwords: input methods hear of it.
    void SetTypingHidden(bool hidden);
    // Hands finished pixels over: `rects` of `surface` (pixels of a B_RGBA32 back buffer of the
    // window's size, best in the window's scale) are copied before the call returns, and reach the
    // screen with its next frame.
    virtual void Present(const Surface& surface, const clipping_rect* rects, int32 count) = 0;
    // What screen readers are told of the window from here on.
    void SetAccessible(std::shared_ptr<const AccessibleTree> tree);
    // Size of title bar and borders as far as known: what the content's frame grows by.
    BRect DecoratorFrame(BRect content) const;
    // The screen's pixels a unit of the window: a sensible_scale().
    virtual float Scale() const = 0;

    // ---- For the stage and the displays

    // Pixels around the content.
    struct Border {
        int32 side = 0;  // left, right and bottom
        int32 top = 0;   // with the title's tab
    };

    ScreenWindow(const WindowSpec& spec, EventSink* sink);

    // Whole pixels within the limits; null sizes and what is no number become the nearest thing
    // that a window can have.
    static BRect SaneFrame(const WindowSpec& spec, BRect frame);

    // Queues the event for the window; nothing once it is destroyed.
    void Deliver(Event event) REQUIRES(gStageLock);

    // No more events.
    void Silence() REQUIRES(gStageLock) { fSink = nullptr; }

    BRect Frame() const REQUIRES(gStageLock) { return fSpec.frame; }
    BRect OuterFrame() const REQUIRES(gStageLock);  // with the decoration
    const std::string& Title() const REQUIRES(gStageLock) { return fSpec.title; }
    window_look Look() const REQUIRES(gStageLock) { return fSpec.look; }
    uint32 Flags() const REQUIRES(gStageLock) { return fSpec.flags; }
    bool IsModal() const REQUIRES(gStageLock);
    // Whether it is modal for `window`, wherever that is.
    bool IsModalFor(const ScreenWindow* window) const REQUIRES(gStageLock);
    // Whether the host gives it the keyboard, be it blocked or not.
    virtual bool HasHostFocus() const REQUIRES(gStageLock) { return false; }
    // The other one is gone.
    void Forget(const ScreenWindow* other) REQUIRES(gStageLock) { std::erase(fSubset, other); }
    int32 Layer() const REQUIRES(gStageLock);  // a window stays below those of higher layers
    // Shown, and not an icon; the workspace left aside.
    bool IsOpen() const REQUIRES(gStageLock) { return fShown && !fMinimized; }
    bool IsMinimized() const REQUIRES(gStageLock) { return fShown && fMinimized; }
    uint32 Workspaces() const REQUIRES(gStageLock) { return fSpec.workspaces; }
    EventSink* Sink() const REQUIRES(gStageLock) { return fSink; }
    virtual Border Decoration() const REQUIRES(gStageLock);
    FrontBuffer& Pixels() { return fPixels; }

    // What a person does to a window, as far as its flags allow.
    virtual void ActivateByUser() REQUIRES(gStageLock) = 0;
    void MoveByUser(BPoint leftTop) REQUIRES(gStageLock);
    void ResizeByUser(float width, float height) REQUIRES(gStageLock);
    void MinimizeByUser(bool minimize) REQUIRES(gStageLock);
    void CloseByUser() REQUIRES(gStageLock);
    void ZoomByUser() REQUIRES(gStageLock);

    BRect CompositionPlace() const REQUIRES(gStageLock) { return fCompositionPlace; }
    bool IsTypingHidden() const REQUIRES(gStageLock) { return fTypingHidden; }
    const std::shared_ptr<const AccessibleTree>& Accessible() const REQUIRES(gStageLock)
    {
        return fAccessible;
    }
    // What a screen reader wants done; nothing while a modal window keeps input away.
    void Ask(const AccessibleRequest& request) REQUIRES(gStageLock);

protected:
    virtual ~ScreenWindow() = default;

    // Where the window is, or soon will be.
    virtual BRect Wanted() const REQUIRES(gStageLock) { return fSpec.frame; }
    // Brings the window there; the frame may lie outside its limits.
    virtual void Place(BRect frame) REQUIRES(gStageLock) = 0;
    // Makes the window an icon, or opens it.
    virtual void Iconify(bool minimize) REQUIRES(gStageLock) = 0;
    // What the window was asked to be changed: the title; look, feel or flags; the workspaces.
    virtual void Retitled() REQUIRES(gStageLock) {}
    virtual void Restyled() REQUIRES(gStageLock) {}
    virtual void WorkspacesSet() REQUIRES(gStageLock) {}
    // Whether typing is hidden; the composition's place; it is over.
    virtual void TypingHidden() REQUIRES(gStageLock) {}
    virtual void CompositionMoved() REQUIRES(gStageLock) {}
    virtual void CompositionEnded() REQUIRES(gStageLock) {}
    // Screen readers are told something new.
    virtual void AccessibleSet() REQUIRES(gStageLock) {}

    bool ResizePixels(BRect frame) REQUIRES(gStageLock);
    // The workspaces of a new window are those of the moment.
    void SettleWorkspaces() REQUIRES(gStageLock);
    // Tell the window what has changed.
    void ReportFrame(BRect before) REQUIRES(gStageLock);
    // Does nothing and returns false if that is no change.
    bool ReportMinimized(bool minimized) REQUIRES(gStageLock);
    bool ReportWorkspaces(uint32 workspaces) REQUIRES(gStageLock);

    WindowSpec fSpec GUARDED_BY(gStageLock);
    EventSink* fSink GUARDED_BY(gStageLock);
    std::vector<ScreenWindow*> fSubset GUARDED_BY(gStageLock);  // still there, all of them
    bool fShown GUARDED_BY(gStageLock) = false;
    bool fMinimized GUARDED_BY(gStageLock) = false;
    FrontBuffer fPixels;
    BRect fCompositionPlace GUARDED_BY(gStageLock);
    bool fTypingHidden GUARDED_BY(gStageLock) = false;
    std::shared_ptr<const AccessibleTree> fAccessible GUARDED_BY(gStageLock);
};

}  // namespace server

#endif  // SERVER_SCREEN_WINDOW_H
