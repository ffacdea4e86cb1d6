#ifndef INTERFACE_WINDOW_PRIVATE_H
#define INTERFACE_WINDOW_PRIVATE_H

// What a BWindow holds, and the way of the server's events into its queue.

#include <AppDefs.h>
#include <Message.h>
#include <Messenger.h>
#include <Rect.h>
#include <String.h>
#include <Window.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include <interface/view/Canvas.h>
#include <server/screen/ScreenWindow.h>
#include <server/screen/Accessible.h>
#include <server/screen/EchoFilter.h>
#include <support/Mutex.h>

class BBitmap;
class BButton;
class BLayout;
class BMenuBar;
class BView;

namespace [[gnu::visibility("hidden")]] BPrivate {

const uint32 kUpdateMessage = '_UPD';
const uint32 kUncoveredMessage = '_UNC';  // "rect" of the window
const uint32 kScaleMessage = '_SCL';
const uint32 kZoomedMessage = '_ZMD';  // by the screen; place and size are messages of their own
const uint32 kMenusEnded = '_MND';
const uint32 kReaderCame = '_RDR';
const uint32 kReaderAsked = '_RDA';

// The move at the end of a window's queue, as long as a newer one may still take its place.
struct OpenMove {
    std::mutex lock;
    class InputMessage* message = nullptr;
};

// An event of keyboard or pointer on its way through the queue. Its targets are found when it
// is its turn, so the fields hold places in the window until then.
class [[gnu::visibility("hidden")]] InputMessage : public BMessage
{
public:
    using Dragged = std::shared_ptr<const BMessage>;

    // `isOutside`: the window sees it only because a button is held. `dragged` may be null.
    InputMessage(const server::Event& event, bool isOutside, const Dragged& dragged,
                 const std::shared_ptr<OpenMove>& open);
    virtual ~InputMessage();

    // No newer event takes its place from here on.
    const server::Event& Close();
    bool IsOutside() const { return fIsOutside; }
    server::EventKind Kind() const { return fEvent.kind; }

    // Under the lock of the open move.
    bool CanBecome(const server::Event& event, bool isOutside, const Dragged& dragged) const;
    void Replace(const server::Event& event);

private:
    void _Fill();

    server::Event fEvent;
    Dragged fDragged;
    std::shared_ptr<OpenMove> fOpen;
    bool fIsOutside;
    bool fIsStale = false;
};

// What an input method says, on its way to the view with the focus.
class [[gnu::visibility("hidden")]] ComposedMessage : public BMessage
{
public:
    explicit ComposedMessage(const server::Composition& composition);
    const server::Composition composition;
};

// Dispatches what an input method says to a view, and what a view answers to the input method.
void dispatch_composition(BWindow* window, BMessage* message);
// After another view got the keyboard, or changed its mind about input methods.
void tell_typing(const WindowData& data);

// A move that the program asked for, on its way to FrameMoved(). A few are told one by one; while
// that many wait no more are queued, and the last of them has the newest place.
class [[gnu::visibility("hidden")]] OwnMove : public BMessage
{
public:
    using Counter = std::shared_ptr<std::atomic<int32>>;
    static const int32 kMost = 64;

    explicit OwnMove(const Counter& waiting) : BMessage(B_WINDOW_MOVED), fWaiting(waiting)
    {
        ++*fWaiting;
    }
    virtual ~OwnMove() { --*fWaiting; }
    bool IsLast() const { return *fWaiting == 1; }

private:
    const Counter fWaiting;
};

// What a screen reader wants, on its way to the view.
class [[gnu::visibility("hidden")]] ReaderMessage : public BMessage
{
public:
    explicit ReaderMessage(const std::shared_ptr<const server::AccessibleRequest>& asked)
        : BMessage(kReaderAsked), request(asked)
    {
    }
    const std::shared_ptr<const server::AccessibleRequest> request;
};

// A text as screen readers have it.
struct ToldText {
    uint32 revision = 0;
    bool hidden = false;
    std::shared_ptr<const server::AccessibleContent> content;
};

struct WindowStyle {
    window_look look;
    window_feel feel;
};

struct [[gnu::visibility("hidden")]] Shortcut
{
    enum class To { Window, Focus, Target, Close, Application };
    To to = To::Window;
    BMessenger target;
    std::unique_ptr<BMessage> message;
};
using ShortcutKey = std::pair<uint32, uint32>;  // key in lower case, modifiers

// A view that wants events which are not meant for it.
struct EventListener {
    BView* view = nullptr;
    uint32 mask = 0;
    uint32 options = 0;
    uint32 mouseMask = 0;  // until the last button is up
    uint32 mouseOptions = 0;
};

// Guarded by the window's lock, but for what says otherwise.
struct [[gnu::visibility("hidden")]] WindowData : public server::EventSink
{
    explicit WindowData(BWindow * window);
    virtual ~WindowData();
    static WindowData* Of(const BWindow* window) { return window->fData; }

    void Deliver(const server::Event& event) override;
    // All but the end of what the window has had the beginning of.
    std::vector<server::Event> TakeWaiting() override;

    // Queue a message of the system; any thread.
    void Post(std::unique_ptr<BMessage> message);
    void Post(uint32 what) { Post(std::make_unique<BMessage>(what)); }
    void PostMoved(BPoint place, bigtime_t when);
    void PostOwnMove(BPoint place);
    void PostResized(float width, float height, bigtime_t when);
    void PostInput(const server::Event& event, bool isOutside,
                   const InputMessage::Dragged& dragged = nullptr);

    // Calls `dispatch` for each target in turn, `delivering` set while others need the message.
    template <class Targets, class Dispatch>
    void ForTargets(BMessage * message, const Targets& targets, Dispatch dispatch)
    {
        for (size_t i = 0; i < targets.size(); i++) {
            delivering = i + 1 < targets.size() ? message : nullptr;
            dispatch(targets[i]);
        }
    }

    // What screen readers know may not be so any more. Any thread that has the lock.
    void TellReaderSoon()
    {
        if (server::reader_listens() && !tellReader.exchange(true))
            _WakeForReader();
    }
    // Tells it if it is time. Returns when to come again, B_INFINITE_TIMEOUT for never.
    bigtime_t TellReader(bigtime_t now);
    // Does what a screen reader wants, as the user's doing. The window's thread.
    void ObeyReader(const server::AccessibleRequest& request);
    // A key for a view, filters and all; a press and a release at a place in the window, queued.
    void DispatchKey(const server::Event& event, BView* view);
    void Press(BPoint where);

    // Has the screen show the window or its icon, unless it was asked for that last.
    void ShowAsIcon(bool icon);
    bool Holds(const BView* view) const;
    // The view that gets the pointer until the last button is up; null if none.
    BView* MouseHolder() const;
    void EndMouseMasks();
    EventListener& Listener(BView * view);
    void ListenersChanged();

    BWindow* const window;
    bool offscreen = false;                   // carries a bitmap's views
    server::ScreenWindow* display = nullptr;  // null if offscreen, or if the screen took no more
    std::unique_ptr<Canvas> canvas;
    BView* topView = nullptr;

    const OwnMove::Counter ownMoves = std::make_shared<std::atomic<int32>>(0);
    mutable Mutex stateLock;            // a leaf
    BRect frame GUARDED_BY(stateLock);  // the program's view; ScreenWindow.h has the screen's
    server::EchoFilter<BPoint> moves GUARDED_BY(stateLock);
    server::EchoFilter<std::pair<float, float>> sizes GUARDED_BY(stateLock);
    server::EchoFilter<bool> icons GUARDED_BY(stateLock);
    BString title GUARDED_BY(stateLock);

    std::atomic<window_look> look{B_TITLED_WINDOW_LOOK};
    std::atomic<window_feel> feel{B_NORMAL_WINDOW_FEEL};
    std::atomic<uint32> flags{0};
    std::atomic<uint32> workspaces{0};
    float minWidth = 0, maxWidth = 32768, minHeight = 0, maxHeight = 32768;
    float maxZoomWidth = 32768, maxZoomHeight = 32768;
    BRect frameBeforeZoom;
    BRect zoomedFrame;
    std::atomic<int32> hideLevel{1};     // 0: visible
    std::atomic<bool> minimized{false};  // as the program knows it
    std::atomic<bool> active{false};
    bool screenActive = false;  // under the lock of count_active()

    // What screen readers are told, while one listens.
    std::atomic<bool> tellReader{true};  // it is to be told anew
    bigtime_t nextTelling = 0;           // at most once a display frame
    std::map<uint32, ToldText> toldTexts;

    // Update cycle.
    std::atomic<bool> updatePosted{false};  // or waiting for nextUpdate
    bool updateDelayed = false;
    bigtime_t nextUpdate = 0;  // the views draw at most once a display frame
    int32 updatesDisabled = 0;
    int32 transactions = 0;

    bigtime_t pulseRate = 500000;
    bigtime_t nextPulse = B_INFINITE_TIMEOUT;

    // Input. The views here are forgotten as they leave the window.
    std::shared_ptr<OpenMove> openMove;
    BMessage* delivering = nullptr;  // which more targets wait for; goes with the window
    std::atomic<bool> wantsHistory{false};
    BView* focus = nullptr;
    BView* mouseView = nullptr;  // got ENTERED last, and not EXITED
    bool hasCursor = false;      // the display shows that of a view
    BView* clickView = nullptr;  // of the last press
    int32 clicksBefore = 0;      // of a run, at other views
    BPoint pointer;              // as of the last event handled
    int32 buttons = 0;
    std::vector<EventListener> listeners;

    std::map<ShortcutKey, Shortcut> shortcuts;
    BButton* defaultButton = nullptr;  // only compared with the views that are there
    BMenuBar* keyMenuBar = nullptr;
    std::vector<BMenuBar*> menuBars;  // those in the window, whose shortcuts its keys are
    BLayout* layout = nullptr;
    int32 alignment[9] = {};  // mode, then SetWindowAlignment()'s numbers in order
    std::map<BWindow*, server::ScreenWindow*> subset;  // only compared: they may be gone
    BMessage decorator;

private:
    void _WakeForReader();
    void _DeliverWindowEvent(const server::Event& event);
    void _ScreenMoved(const server::Event& event);
    void _ScreenResized(const server::Event& event);
};

// The screen's word on whether a window is active, which counts for the application's.
void count_active(WindowData* window, bool active);
// Sends B_APP_ACTIVATED if the first window of the application became active, or the last one
// no longer is.
void tell_application();

WindowStyle style_of_type(window_type type);
// A frame of whole pixels, not too far away and not too large.
BRect window_frame(BRect frame);
// The set of workspaces that a program's word stands for.
uint32 real_workspaces(uint32 workspaces);

}  // namespace BPrivate

#endif  // INTERFACE_WINDOW_PRIVATE_H
