// What a window is on the screen: shown or hidden, minimised, in front, active; its look, feel,
// flags, workspaces and subset.

#include <Window.h>

#include <Application.h>
#include <Autolock.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <View.h>

#include <algorithm>
#include <iterator>
#include <mutex>

#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>

using BPrivate::ViewPrivate;
using BPrivate::WindowData;

struct TypeRow {
    int32 type;
    window_look look;
    window_feel feel;
};

// The first row stands for all other types.
static const TypeRow kTypes[] = {
    {B_TITLED_WINDOW, B_TITLED_WINDOW_LOOK, B_NORMAL_WINDOW_FEEL},
    {B_DOCUMENT_WINDOW, B_DOCUMENT_WINDOW_LOOK, B_NORMAL_WINDOW_FEEL},
    {B_MODAL_WINDOW, B_MODAL_WINDOW_LOOK, B_MODAL_APP_WINDOW_FEEL},
    {B_FLOATING_WINDOW, B_FLOATING_WINDOW_LOOK, B_FLOATING_APP_WINDOW_FEEL},
    {B_BORDERED_WINDOW, B_BORDERED_WINDOW_LOOK, B_NORMAL_WINDOW_FEEL},
    {7, B_FLOATING_WINDOW_LOOK, B_FLOATING_APP_WINDOW_FEEL},  // the type's older number
};

static std::atomic<const BWindow*> sFront{nullptr};  // the window that was activated last
static std::mutex sActiveLock;
static int32 sActiveWindows;  // sActiveLock; as the screen says
static bool sAppIsActive;     // sActiveLock; as the application was told

void BPrivate::count_active(WindowData* window, bool active)
{
    std::lock_guard<std::mutex> lock(sActiveLock);
    if (window->screenActive != active)
        sActiveWindows += active ? 1 : -1;
    window->screenActive = active;
}

void BPrivate::tell_application()
{
    bool active;
    {
        std::lock_guard<std::mutex> lock(sActiveLock);
        active = sActiveWindows > 0;
        if (active == sAppIsActive || be_app == nullptr)
            return;
        sAppIsActive = active;
    }
    BMessage message(B_APP_ACTIVATED);
    message.AddBool("active", active);
    be_app->PostMessage(&message);
}

BPrivate::WindowStyle BPrivate::style_of_type(window_type type)
{
    const int32 wanted = static_cast<int32>(type);
    const auto* row =
        std::find_if(std::begin(kTypes), std::end(kTypes),
                     [=](const TypeRow& candidate) { return candidate.type == wanted; });
    if (row == std::end(kTypes))
        row = kTypes;
    return {row->look, row->feel};
}

uint32 BPrivate::real_workspaces(uint32 workspaces)
{
    return workspaces == B_CURRENT_WORKSPACE ? 1u << (current_workspace() & 31) : workspaces;
}

void BWindow::Show()
{
    if (!Lock())
        return;
    const bool isFirst = !fRunCalled && !fData->offscreen;
    if (fData->hideLevel > 0 && --fData->hideLevel == 0 && fData->display != nullptr) {
        fData->display->Show();
        if (NeedsUpdate())
            _ScheduleUpdate();
    }
    Unlock();
    if (isFirst)
        Run();  // gives back the lock of the thread that made the window
}

void BWindow::Hide()
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    if (fData->hideLevel++ == 0 && fData->display != nullptr)
        fData->display->Hide();
}

bool BWindow::IsHidden() const { return fData->hideLevel > 0; }

void WindowData::ShowAsIcon(bool icon)
{
    if (display == nullptr)
        return;
    {
        MutexLock state(stateLock);
        if (icons.Newest() == icon)
            return;
        icons.Asked(icon);
    }
    display->Minimize(icon);
}

bool BWindow::IsMinimized() const { return fData->minimized; }

void BWindow::Minimize(bool minimize)
{
    BAutolock lock(this);
    if (!lock.IsLocked() || IsModal() || IsFloating() || IsHidden())
        return;
    fData->minimized = minimize;
    fData->ShowAsIcon(minimize);
}

// Dispatch of B_MINIMIZE. A hook that refuses takes the screen's own change back.
void BWindow::_MinimizeAsked(bool minimize)
{
    Minimize(minimize);
    fData->ShowAsIcon(fData->minimized);
}

void BWindow::Activate(bool active)
{
    BAutolock lock(this);
    if (!lock.IsLocked() || IsHidden() || fData->display == nullptr)
        return;
    if (active && fData->minimized)
        Minimize(false);
    fData->display->Activate(active);
}

bool BWindow::IsActive() const { return fData->active; }

bool BWindow::IsFront() const
{
    return !IsHidden() && !IsMinimized() && (IsActive() || sFront == this);
}

void BWindow::WindowActivated(bool) {}

// Dispatch of B_WINDOW_ACTIVATED.
void BWindow::_Activated(bool active)
{
    if (fData->active == active)
        return;
    fData->active = active;
    if (active)
        sFront = this;
    BPrivate::tell_application();
    WindowActivated(active);
    ViewPrivate::ForEach(fData->topView, [=](BView* view) { view->WindowActivated(active); });
}

void BWindow::_LeaveFront()
{
    const BWindow* self = this;
    sFront.compare_exchange_strong(self, nullptr);
}

status_t BWindow::SendBehind(const BWindow* window)
{
    if (window == this)
        return B_BAD_VALUE;
    BAutolock lock(this);
    if (!lock.IsLocked())
        return B_ERROR;
    if (fData->display != nullptr)
        fData->display->SendBehind(window != nullptr ? window->fData->display : nullptr);
    _LeaveFront();
    return B_OK;
}

status_t BWindow::SetType(window_type type)
{
    const auto style = BPrivate::style_of_type(type);
    const status_t status = SetLook(style.look);
    return status == B_OK ? SetFeel(style.feel) : status;
}

window_type BWindow::Type() const
{
    for (const TypeRow& row : kTypes) {
        if (row.look == fData->look && row.feel == fData->feel)
            return static_cast<window_type>(row.type);
    }
    return B_UNTYPED_WINDOW;
}

status_t BWindow::SetLook(window_look look)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return B_BAD_VALUE;
    switch (look) {
        case B_TITLED_WINDOW_LOOK:
        case B_MODAL_WINDOW_LOOK:
        case B_FLOATING_WINDOW_LOOK:
        case B_DOCUMENT_WINDOW_LOOK:
        case B_NO_BORDER_WINDOW_LOOK:
        case B_BORDERED_WINDOW_LOOK:
            break;
        default:
            return B_BAD_VALUE;
    }
    fData->look = look;
    if (fData->display != nullptr)
        fData->display->SetLook(look);
    return B_OK;
}

window_look BWindow::Look() const { return fData->look; }

status_t BWindow::SetFeel(window_feel feel)
{
    BAutolock lock(this);
    if (!lock.IsLocked() || static_cast<uint32>(feel) > B_FLOATING_ALL_WINDOW_FEEL)
        return B_BAD_VALUE;
    fData->feel = feel;
    if (fData->display != nullptr)
        fData->display->SetFeel(feel);
    return B_OK;
}

window_feel BWindow::Feel() const { return fData->feel; }

status_t BWindow::SetFlags(uint32 flags)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return B_BAD_VALUE;
    fData->flags = flags;
    if (fData->display != nullptr)
        fData->display->SetFlags(flags);
    return B_OK;
}

uint32 BWindow::Flags() const { return fData->flags; }

bool BWindow::IsModal() const
{
    const window_feel feel = fData->feel;
    return feel == B_MODAL_SUBSET_WINDOW_FEEL || feel == B_MODAL_APP_WINDOW_FEEL ||
           feel == B_MODAL_ALL_WINDOW_FEEL;
}

bool BWindow::IsFloating() const
{
    const window_feel feel = fData->feel;
    return feel == B_FLOATING_SUBSET_WINDOW_FEEL || feel == B_FLOATING_APP_WINDOW_FEEL ||
           feel == B_FLOATING_ALL_WINDOW_FEEL;
}

uint32 BWindow::Workspaces() const { return fData->workspaces; }

void BWindow::SetWorkspaces(uint32 workspaces)
{
    BAutolock lock(this);
    if (!lock.IsLocked() || fData->offscreen)
        return;
    workspaces = BPrivate::real_workspaces(workspaces);
    if (fData->workspaces.exchange(workspaces) != workspaces && fData->display != nullptr)
        fData->display->SetWorkspaces(workspaces);
}

void BWindow::WorkspacesChanged(uint32, uint32) {}

void BWindow::WorkspaceActivated(int32, bool) {}

void BWindow::ScreenChanged(BRect, color_space) {}

status_t BWindow::AddToSubset(BWindow* window)
{
    if (window == nullptr)
        return B_BAD_VALUE;
    BAutolock lock(this);
    if (!lock.IsLocked() ||
        (fData->feel != B_MODAL_SUBSET_WINDOW_FEEL && fData->feel != B_FLOATING_SUBSET_WINDOW_FEEL))
        return B_BAD_VALUE;
    server::ScreenWindow* display = window->fData->display;
    fData->subset[window] = display;
    if (fData->display != nullptr && display != nullptr)
        fData->display->AddToSubset(display);
    return B_OK;
}

status_t BWindow::RemoveFromSubset(BWindow* window)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return B_BAD_VALUE;
    const auto found = fData->subset.find(window);
    if (found == fData->subset.end())
        return B_BAD_VALUE;
    if (fData->display != nullptr)
        fData->display->RemoveFromSubset(found->second);
    fData->subset.erase(found);
    return B_OK;
}

status_t BWindow::SetWindowAlignment(window_alignment mode, int32 h, int32 hOffset, int32 width,
                                     int32 widthOffset, int32 v, int32 vOffset, int32 height,
                                     int32 heightOffset)
{
    const int32 numbers[] = {mode, h,       hOffset, width,       widthOffset,
                             v,    vOffset, height,  heightOffset};
    if ((mode != B_BYTE_ALIGNMENT && mode != B_PIXEL_ALIGNMENT) ||
        std::any_of(std::begin(numbers), std::end(numbers), [](int32 n) { return n < 0; }))
        return B_BAD_VALUE;
    BAutolock lock(this);
    if (!lock.IsLocked())
        return B_ERROR;
    std::copy(std::begin(numbers), std::end(numbers), fData->alignment);
    return B_OK;
}

status_t BWindow::GetWindowAlignment(window_alignment* mode, int32* h, int32* hOffset, int32* width,
                                     int32* widthOffset, int32* v, int32* vOffset, int32* height,
                                     int32* heightOffset) const
{
    BAutolock lock(const_cast<BWindow*>(this));
    if (!lock.IsLocked())
        return B_ERROR;
    int32* const places[] = {nullptr, h,       hOffset, width,       widthOffset,
                             v,       vOffset, height,  heightOffset};
    for (size_t i = 1; i < std::size(places); i++) {
        if (places[i] != nullptr)
            *places[i] = fData->alignment[i];
    }
    if (mode != nullptr)
        *mode = static_cast<window_alignment>(fData->alignment[0]);
    return B_OK;
}
