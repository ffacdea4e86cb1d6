// The state of one window and the rules that follow from its look, feel and flags.

#include "server/screen/ScreenWindow.h"

#include <OS.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "server/screen/Accessible.h"
#include "server/screen/Stage.h"

namespace server {

static const int32 kTabHeight = 21;  // 12-pixel bold text and its margins

// The nearest whole number between the limits; `fallback` for what is none.
static float whole(float value, float low, float high, float fallback)
{
    if (std::isnan(value))
        return fallback;
    return std::round(std::clamp(value, low, high));
}

ScreenWindow::ScreenWindow(const WindowSpec& spec, EventSink* sink) : fSpec(spec), fSink(sink)
{
    fSpec.frame = SaneFrame(fSpec, fSpec.frame);
}

BRect ScreenWindow::SaneFrame(const WindowSpec& spec, BRect frame)
{
    const float kFar = 1e6f;
    float left = whole(frame.left, -kFar, kFar, 0);
    float top = whole(frame.top, -kFar, kFar, 0);
    float minWidth = std::max(spec.minWidth, 0.0f);
    float minHeight = std::max(spec.minHeight, 0.0f);
    float width = whole(frame.right - frame.left, minWidth, std::max(minWidth, spec.maxWidth), 0);
    float height =
        whole(frame.bottom - frame.top, minHeight, std::max(minHeight, spec.maxHeight), 0);
    return BRect(left, top, left + width, top + height);
}

void ScreenWindow::Deliver(Event event)
{
    if (fSink == nullptr)
        return;
    if (event.when == 0)
        event.when = system_time();
    fSink->Deliver(event);
}

BRect ScreenWindow::OuterFrame() const
{
    Border border = Decoration();
    BRect frame = fSpec.frame;
    return BRect(frame.left - border.side, frame.top - border.top, frame.right + border.side,
                 frame.bottom + border.side);
}

bool ScreenWindow::IsModal() const
{
    return fSpec.feel == B_MODAL_APP_WINDOW_FEEL || fSpec.feel == B_MODAL_SUBSET_WINDOW_FEEL ||
           fSpec.feel == B_MODAL_ALL_WINDOW_FEEL;
}

bool ScreenWindow::IsModalFor(const ScreenWindow* window) const
{
    if (fSpec.feel == B_MODAL_SUBSET_WINDOW_FEEL)
        return std::find(fSubset.begin(), fSubset.end(), window) != fSubset.end();
    return fSpec.feel == B_MODAL_APP_WINDOW_FEEL || fSpec.feel == B_MODAL_ALL_WINDOW_FEEL;
}

int32 ScreenWindow::Layer() const
{
    switch (fSpec.feel) {
        case B_FLOATING_SUBSET_WINDOW_FEEL:
        case B_FLOATING_APP_WINDOW_FEEL:
            return 1;
        case B_MODAL_SUBSET_WINDOW_FEEL:
        case B_MODAL_APP_WINDOW_FEEL:
            return 2;
        case B_FLOATING_ALL_WINDOW_FEEL:
            return 3;
        case B_MODAL_ALL_WINDOW_FEEL:
            return 4;
        default:
            return 0;
    }
}

ScreenWindow::Border ScreenWindow::Decoration() const
{
    switch (fSpec.look) {
        case B_NO_BORDER_WINDOW_LOOK:
            return {0, 0};
        case B_BORDERED_WINDOW_LOOK:
            return {1, 1};
        case B_MODAL_WINDOW_LOOK:
            return {5, 5};
        case B_FLOATING_WINDOW_LOOK:
            return {3, 3 + kTabHeight - 4};
        default:
            return {5, 5 + kTabHeight};
    }
}

void ScreenWindow::CloseByUser()
{
    if ((fSpec.flags & B_NOT_CLOSABLE) != 0 || stage().Blocker(this) != nullptr)
        return;
    Event event;
    event.kind = EventKind::CloseRequested;
    Deliver(event);
}

void ScreenWindow::ZoomByUser()
{
    if ((fSpec.flags & B_NOT_ZOOMABLE) != 0)
        return;
    Event event;
    event.kind = EventKind::ZoomRequested;
    Deliver(event);
}

void ScreenWindow::MoveByUser(BPoint leftTop)
{
    if ((fSpec.flags & B_NOT_MOVABLE) == 0)
        Place(Wanted().OffsetToCopy(leftTop));
}

// The same place with another size.
static BRect resized(BRect frame, float width, float height)
{
    return BRect(frame.left, frame.top, frame.left + width, frame.top + height);
}

void ScreenWindow::ResizeByUser(float width, float height)
{
    if ((fSpec.flags & (B_NOT_RESIZABLE | B_NOT_H_RESIZABLE)) != 0)
        width = fSpec.frame.Width();
    if ((fSpec.flags & (B_NOT_RESIZABLE | B_NOT_V_RESIZABLE)) != 0)
        height = fSpec.frame.Height();
    Place(resized(Wanted(), width, height));
}

void ScreenWindow::MinimizeByUser(bool minimize)
{
    if ((fSpec.flags & B_NOT_MINIMIZABLE) == 0 && fShown && minimize != fMinimized)
        Iconify(minimize);
}

void ScreenWindow::Minimize(bool minimize)
{
    StageLock lock;
    Iconify(minimize);  // whatever is still on its way to the screen
}

void ScreenWindow::MoveTo(BPoint leftTop)
{
    StageLock lock;
    Place(Wanted().OffsetToCopy(leftTop));
}

void ScreenWindow::ResizeTo(float width, float height)
{
    StageLock lock;
    Place(resized(Wanted(), width, height));
}

void ScreenWindow::SetTitle(const std::string& title)
{
    StageLock lock;
    fSpec.title = title;
    Retitled();
}

void ScreenWindow::SetLook(window_look look)
{
    StageLock lock;
    fSpec.look = look;
    Restyled();
}

void ScreenWindow::SetFeel(window_feel feel)
{
    StageLock lock;
    fSpec.feel = feel;
    stage().Raise(this);
    Restyled();
    stage().MindBlockers();
}

void ScreenWindow::AddToSubset(ScreenWindow* other)
{
    StageLock lock;
    if (std::find(fSubset.begin(), fSubset.end(), other) != fSubset.end())
        return;
    fSubset.push_back(other);
    Restyled();
    stage().MindBlockers();
}

void ScreenWindow::RemoveFromSubset(ScreenWindow* other)
{
    StageLock lock;
    if (std::erase(fSubset, other) == 0)
        return;
    Restyled();
    stage().MindBlockers();
}

void ScreenWindow::SetFlags(uint32 flags)
{
    StageLock lock;
    fSpec.flags = flags;
    Restyled();
}

void ScreenWindow::SetSizeLimits(float minWidth, float maxWidth, float minHeight, float maxHeight)
{
    StageLock lock;
    fSpec.minWidth = minWidth;
    fSpec.maxWidth = maxWidth;
    fSpec.minHeight = minHeight;
    fSpec.maxHeight = maxHeight;
    Place(Wanted());
}

void ScreenWindow::SetWorkspaces(uint32 workspaces)
{
    StageLock lock;
    if (workspaces == B_CURRENT_WORKSPACE)
        workspaces = 1u << stage().Workspace();
    if (ReportWorkspaces(workspaces))
        WorkspacesSet();
}

BRect ScreenWindow::DecoratorFrame(BRect content) const
{
    Border border;
    {
        StageLock lock;
        border = Decoration();
    }
    return BRect(content.left - border.side, content.top - border.top, content.right + border.side,
                 content.bottom + border.side);
}

bool ScreenWindow::ResizePixels(BRect frame)
{
    return fPixels.Resize(int32(frame.Width()) + 1, int32(frame.Height()) + 1);
}

void ScreenWindow::SettleWorkspaces()
{
    if (fSpec.workspaces == B_CURRENT_WORKSPACE)
        fSpec.workspaces = 1u << stage().Workspace();
}

void ScreenWindow::ReportFrame(BRect before)
{
    Event event;
    event.frame = fSpec.frame;
    if (event.frame.LeftTop() != before.LeftTop()) {
        event.kind = EventKind::Moved;
        Deliver(event);
    }
    if (event.frame.Width() != before.Width() || event.frame.Height() != before.Height()) {
        event.kind = EventKind::Resized;
        Deliver(event);
    }
}

bool ScreenWindow::ReportMinimized(bool minimized)
{
    if (std::exchange(fMinimized, minimized) == minimized)
        return false;
    Event event;
    event.kind = EventKind::Minimized;
    event.active = minimized;
    Deliver(event);
    return true;
}

bool ScreenWindow::ReportWorkspaces(uint32 workspaces)
{
    Event event;
    event.kind = EventKind::WorkspacesChanged;
    event.workspaces = workspaces;
    event.oldWorkspaces = std::exchange(fSpec.workspaces, workspaces);
    if (event.oldWorkspaces == workspaces)
        return false;
    Deliver(event);
    return true;
}

void ScreenWindow::SetCompositionPlace(BRect place)
{
    StageLock lock;
    fCompositionPlace = place;
    CompositionMoved();
}

void ScreenWindow::EndComposition()
{
    StageLock lock;
    stage().ForgetComposition();
    CompositionEnded();
}

void ScreenWindow::SetTypingHidden(bool hidden)
{
    StageLock lock;
    if (std::exchange(fTypingHidden, hidden) != hidden)
        TypingHidden();
}

void ScreenWindow::SetAccessible(std::shared_ptr<const AccessibleTree> tree)
{
    StageLock lock;
    fAccessible = std::move(tree);
    AccessibleSet();
}

void ScreenWindow::Ask(const AccessibleRequest& request)
{
    if (stage().Blocker(this) != nullptr)
        return;
    Event event;
    event.kind = EventKind::ReaderAsked;
    event.request = std::make_shared<AccessibleRequest>(request);
    Deliver(event);
}

}  // namespace server
