// A window of Qt's display as other threads see it.

#include "server/qt/QtWindow.h"

#include <utility>

#include "app/CursorImage.h"
#include "server/qt/NativeWindow.h"
#include "server/qt/QtDisplay.h"
#include "server/qt/x11/X11Screen.h"

namespace server {

static WindowKind kind_of(const WindowSpec& spec) { return {spec.look, spec.feel, spec.flags}; }

QtWindow* QtWindow::Make(QtDisplay* display, const WindowSpec& spec, EventSink* sink)
{
    auto* window = new QtWindow(display, spec, sink);
    if (display->ReadsPixels())
        window->fPixels.Share();
    if (!window->ResizePixels(window->fSpec.frame)) {
        delete window;
        return nullptr;
    }
    window->SettleWorkspaces();
    return window;
}

QtWindow::QtWindow(QtDisplay* display, const WindowSpec& spec, EventSink* sink)
    : ScreenWindow(spec, sink), fDisplay(display), fWanted(fSpec.frame), fScale(display->Scale())
{
}

QtWindow::~QtWindow() = default;

// Runs `task` with the native window, which the first one makes.
template <class Task>
void QtWindow::_Post(Task task)
{
    if (fDestroyed)
        return;
    fDisplay->Post([this, task] {
        if (fNative == nullptr)
            _MakeNative();
        task(*fNative);
    });
}

void QtWindow::_MakeNative()
{
    WindowSpec spec;
    Cursor cursor;
    bool hidden;
    {
        StageLock lock;
        spec = fSpec;
        cursor = fCursor != nullptr ? fCursor : stage().AppCursor();
        hidden = stage().IsCursorHidden();
    }
    fNative = std::make_unique<NativeWindow>(this);
    fNative->SetKind(kind_of(spec));
    fNative->SetLimits(spec);
    fNative->SetPlace(spec.frame);
    fNative->SetCursorImage(cursor, hidden);
    fNative->create();
    if (fDisplay->X11() != nullptr)
        fNative->SetPixels(fDisplay->X11()->PixelsOf(uint32(fNative->winId())));
    _TellHints(spec);
    _TellTitle(spec.title);
}

void QtWindow::_TellWorkspaces(NativeWindow& native, uint32 workspaces)
{
    if (fDisplay->X11() == nullptr)
        return;
    {
        StageLock lock;
        fWorkspaces.Asked(X11Screen::Possible(workspaces));
    }
    const auto id = uint32(native.winId());
    if (native.isVisible())
        fDisplay->X11()->MoveToWorkspaces(id, workspaces);
    else
        fDisplay->X11()->SetWorkspaces(id, workspaces);
}

// The X window of a subset's first window, 0 if there is none.
uint32 QtWindow::_SubsetOwner() const
{
    StageLock lock;
    for (const ScreenWindow* each : fSubset) {
        const auto* member = static_cast<const QtWindow*>(each);
        if (member->fNative != nullptr)
            return uint32(member->fNative->winId());
    }
    return 0;
}

// Tells the window manager what Qt does not.
void QtWindow::_TellHints(const WindowSpec& spec)
{
    if (fDisplay->X11() != nullptr)
        fDisplay->X11()->Hints().Tell(uint32(fNative->winId()), kind_of(spec), _SubsetOwner(),
                                      fNative->isVisible());
}

void QtWindow::_TellTitle(const std::string& title)
{
    fNative->SetTitle(title);
    if (fDisplay->X11() != nullptr && title.empty())
        fDisplay->X11()->Hints().RemoveTitle(uint32(fNative->winId()));
}

void QtWindow::Destroy()
{
    StageLock lock;
    Silence();
    stage().Remove(this);
    fDestroyed = true;
    stage().MindBlockers();
    fDisplay->Discard(this);
}

void QtWindow::Show()
{
    StageLock lock;
    if (std::exchange(fShown, true))
        return;
    stage().Raise(this);
    const bool minimized = fMinimized;
    const uint32 workspaces = fSpec.workspaces;
    _Post([=, this](NativeWindow& native) {
        // The window manager forgets of a window that is not shown.
        _TellWorkspaces(native, workspaces);
        if (minimized)
            native.showMinimized();
        else
            native.Appear();
    });
    stage().MindBlockers();
}

void QtWindow::Hide()
{
    StageLock lock;
    if (!std::exchange(fShown, false))
        return;
    _Post([](NativeWindow& native) { native.Disappear(); });
    stage().MindBlockers();
}

void QtWindow::Iconify(bool minimize)
{
    _Post([=](NativeWindow& native) { native.SetMinimized(minimize); });
}

void QtWindow::Activate(bool active)
{
    StageLock lock;
    if (active) {
        if (fMinimized)
            Iconify(false);
        ActivateByUser();
    } else {
        stage().PutBehind(this, nullptr);
        _Post([](NativeWindow& native) { native.lower(); });
    }
}

void QtWindow::SendBehind(ScreenWindow* other)
{
    StageLock lock;
    auto* above = static_cast<QtWindow*>(other);
    stage().PutBehind(this, above);
    _Post([=, this](NativeWindow& native) {
        uint32 aboveId = 0;
        {
            // The other one may be gone by this time.
            StageLock lock;
            for (ScreenWindow* each : stage().Windows()) {
                if (each == above && above->fNative != nullptr)
                    aboveId = uint32(above->fNative->winId());
            }
        }
        if (aboveId != 0 && fDisplay->X11() != nullptr)
            fDisplay->X11()->PutBehind(uint32(native.winId()), aboveId);
        else
            native.lower();
    });
}

void QtWindow::Place(BRect frame)
{
    frame = SaneFrame(fSpec, frame);
    if (!ResizePixels(frame)) {
        frame.right = frame.left + fWanted.Width();
        frame.bottom = frame.top + fWanted.Height();
    }
    fWanted = frame;
    if (std::exchange(fPlacing, true))
        return;  // the task that waits takes it along
    _Post([this](NativeWindow& native) {
        WindowSpec spec;
        {
            StageLock lock;
            fPlacing = false;
            spec = _WantedSpec();
            fPlaces.Asked(spec.frame);
        }
        native.SetLimits(spec);
        native.SetPlace(spec.frame);
    });
}

// What the window is to be, there where it is to be.
WindowSpec QtWindow::_WantedSpec() const
{
    WindowSpec spec = fSpec;
    spec.frame = fWanted;
    return spec;
}

void QtWindow::Retitled()
{
    const std::string title = fSpec.title;
    _Post([title, this](NativeWindow&) { _TellTitle(title); });
}

void QtWindow::Restyled()
{
    _Post([this](NativeWindow& native) {
        WindowSpec spec;
        {
            StageLock lock;
            spec = _WantedSpec();
        }
        native.SetKind(kind_of(spec));
        native.SetLimits(spec);
        _TellHints(spec);
    });
}

void QtWindow::WorkspacesSet()
{
    const uint32 workspaces = fSpec.workspaces;
    _Post([=, this](NativeWindow& native) { _TellWorkspaces(native, workspaces); });
}

void QtWindow::TypingHidden()
{
    const bool hidden = fTypingHidden;
    _Post([=](NativeWindow& native) { native.SetInputHidden(hidden); });
}

void QtWindow::CompositionMoved()
{
    const BRect place = fCompositionPlace;
    _Post([=](NativeWindow& native) { native.SetInputPlace(place); });
}

void QtWindow::CompositionEnded()
{
    _Post([](NativeWindow& native) { native.EndInput(); });
}

void QtWindow::AccessibleSet()
{
    const std::shared_ptr<const AccessibleTree> tree = fAccessible;
    _Post([=](NativeWindow& native) { native.SetAccessible(tree); });
}

void QtWindow::SetCursor(const BCursor* cursor)
{
    StageLock lock;
    Cursor image = BPrivate::cursor_image(cursor);
    if (image == fCursor)
        return;
    fCursor = std::move(image);
    UpdateCursor();
}

void QtWindow::UpdateCursor()
{
    Cursor image = fCursor != nullptr ? fCursor : stage().AppCursor();
    bool hidden = stage().IsCursorHidden();
    _Post([=](NativeWindow& native) { native.SetCursorImage(image, hidden); });
}

void QtWindow::Present(const Surface& surface, const clipping_rect* rects, int32 count)
{
    if (!fPixels.Copy(surface, rects, count))
        return;
    StageLock lock;
    _Post([](NativeWindow& native) { native.ScheduleFlush(); });
}

// B_AVOID_FRONT does not count here: among other programs' windows, which know nothing of it, it
// would keep ours behind them all for ever.
void QtWindow::ActivateByUser()
{
    const bool focus = (fSpec.flags & B_AVOID_FOCUS) == 0;
    stage().Raise(this);
    _Post([=](NativeWindow& native) {
        native.raise();
        if (focus)
            native.requestActivate();
    });
}

void QtWindow::NativeMoved(BRect frame, Border border)
{
    StageLock lock;
    const BRect before = std::exchange(fSpec.frame, frame);
    fBorder = border;
    if (frame.Width() != before.Width() || frame.Height() != before.Height())
        ResizePixels(frame);
    ReportFrame(before);
    if (!fPlaces.IsEcho(frame) && !fPlacing)
        fWanted = frame;
}

void QtWindow::NativeMinimized(bool minimized)
{
    StageLock lock;
    ReportMinimized(minimized);
}

void QtWindow::NativeZoomed(bool zoomed)
{
    StageLock lock;
    if (std::exchange(fZoomed, zoomed) == zoomed)
        return;
    Event event;
    event.kind = EventKind::Zoomed;
    Deliver(event);
}

void QtWindow::NativeUncovered(const clipping_rect& rect)
{
    StageLock lock;
    Event event;
    event.kind = EventKind::Uncovered;
    event.frame.Set(float(rect.left), float(rect.top), float(rect.right), float(rect.bottom));
    Deliver(event);
}

// The window has come to a screen of other pixels, or its screen has others.
void QtWindow::NativeScale(double native)
{
    const float scale = sensible_scale(native);
    if (fScale.exchange(scale) == scale)
        return;
    StageLock lock;
    Event event;
    event.kind = EventKind::ScaleChanged;
    Deliver(event);
}

void QtWindow::NativeWorkspaces(uint32 workspaces)
{
    if (!fWorkspaces.IsEcho(workspaces))
        ReportWorkspaces(workspaces);
}

bool QtWindow::IsNative(uint32 id) const
{
    return fNative != nullptr && fNative->handle() != nullptr && uint32(fNative->winId()) == id;
}

void QtWindow::NativeFocus(bool focus)
{
    StageLock lock;
    fHasFocus = focus;
    if (focus) {
        if (ScreenWindow* blocker = stage().Blocker(this)) {
            blocker->ActivateByUser();
            return;
        }
        stage().Raise(this);
        stage().SetActive(this);
    } else if (stage().Active() == this) {
        // Releases go to whoever has the keyboard then.
        stage().ReleaseKeys();
        stage().SetActive(nullptr);
    }
}

void QtWindow::NoFocus()
{
    QtWindow* active;
    {
        StageLock lock;
        active = static_cast<QtWindow*>(stage().Active());
    }
    if (active != nullptr)
        active->NativeFocus(false);
}

std::unique_ptr<NativeWindow> QtWindow::TakeNative()
{
    if (fNative != nullptr)
        fNative->Orphan();
    return std::move(fNative);
}

bigtime_t QtWindow::TimeOf(uint64 host_ms) const { return fDisplay->TimeOf(host_ms); }

void QtWindow::UpdateGrab() { fDisplay->UpdateGrab(); }

void QtWindow::DragTo(BPoint where) { fDisplay->DragTo(where); }

bigtime_t QtWindow::FrameInterval() const
{
    StageLock lock;
    return fDisplay->FrameInterval();
}

}  // namespace server
