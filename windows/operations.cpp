// What a program does to its open windows: place, size, title, look, flags, workspaces. Any thread,
// but for GetWindowTitle, whose text belongs to the main thread.

#include "gadgets/gadget.h"
#include "plinth.h"
#include "runtime/registry.h"
#include "runtime/trace.h"
#include "runtime/whole.h"
#include "windows/window_access.h"
#include "windows/window_lock.h"

#include <Application.h>
#include <Button.h>
#include <InterfaceDefs.h>
#include <Screen.h>
#include <String.h>

#include <atomic>
#include <iterator>
#include <math.h>

static constexpr window_look kLooks[] = {
    B_TITLED_WINDOW_LOOK,   B_BORDERED_WINDOW_LOOK,  B_MODAL_WINDOW_LOOK,
    B_FLOATING_WINDOW_LOOK, B_NO_BORDER_WINDOW_LOOK, B_DOCUMENT_WINDOW_LOOK,
};
static_assert(kLooks[PLINTH_TITLED_LOOK] == B_TITLED_WINDOW_LOOK);
static_assert(kLooks[PLINTH_BORDERED_LOOK] == B_BORDERED_WINDOW_LOOK);
static_assert(kLooks[PLINTH_MODAL_LOOK] == B_MODAL_WINDOW_LOOK);
static_assert(kLooks[PLINTH_FLOATING_LOOK] == B_FLOATING_WINDOW_LOOK);
static_assert(kLooks[PLINTH_BARE_LOOK] == B_NO_BORDER_WINDOW_LOOK);
static_assert(kLooks[PLINTH_DOCUMENT_LOOK] == B_DOCUMENT_WINDOW_LOOK);

static const int32_t kMostWorkspaces = 32;

// What SetWindowMode stored; kept on purpose: no window looks at it.
[[maybe_unused]] static std::atomic<uint32_t> sModeWindow = 0xFFFFFFFF;

static float as_float(int32_t number) { return static_cast<float>(number); }

// --- place and size

extern "C" void MoveWindow(int32_t ident, int32_t x, int32_t y)
{
    on_window(ident, __func__,
              [=](WindowAccess& window) { window->MoveTo(as_float(x), as_float(y)); });
}

extern "C" void ChangeWindow(int32_t ident, int32_t width, int32_t height)
{
    on_window(ident, __func__,
              [=](WindowAccess& window) { window->ResizeTo(as_float(width), as_float(height)); });
}

extern "C" void ChangeWidthWindow(int32_t ident, int32_t width)
{
    on_window(ident, __func__, [=](WindowAccess& window) {
        window->ResizeTo(as_float(width), window->Frame().Height());
    });
}

extern "C" void ChangeHeightWindow(int32_t ident, int32_t height)
{
    on_window(ident, __func__, [=](WindowAccess& window) {
        window->ResizeTo(window->Frame().Width(), as_float(height));
    });
}

extern "C" void CenterWindow(int32_t ident)
{
    on_window(ident, __func__, [](WindowAccess& window) {
        const BRect screen = BScreen().Frame();
        const BRect bounds = window->Bounds();
        const BPoint place(screen.Width() * 0.5f - bounds.Width() * 0.5f,
                           screen.Height() * 0.5f - bounds.Height() * 0.5f);
        if (screen.Contains(place))
            window->MoveTo(place);
    });
}

static int32_t part_of(BRect frame, int32_t selector)
{
    switch (selector) {
        case 0:
            return truncated(frame.left);
        case 1:
            return truncated(frame.top);
        case 2:
            return truncated(ceilf(frame.Width()));
        case 3:
            return truncated(ceilf(frame.Height()));
        default:
            return 0;
    }
}

extern "C" int32_t GetWindowPosition(int32_t ident, int32_t selector)
{
    return ask_window(ident, __func__, 0,
                      [=](WindowAccess& window) { return part_of(window->Frame(), selector); });
}

extern "C" void SetMinSize(int32_t ident, int32_t width, int32_t height)
{
    on_window(ident, __func__, [=](WindowAccess& window) {
        float most_wide, most_high;
        window->GetSizeLimits(nullptr, &most_wide, nullptr, &most_high);
        window->SetSizeLimits(as_float(width), most_wide, as_float(height), most_high);
    });
}

extern "C" void SetMaxSize(int32_t ident, int32_t width, int32_t height)
{
    on_window(ident, __func__, [=](WindowAccess& window) {
        float least_wide, least_high;
        window->GetSizeLimits(&least_wide, nullptr, &least_high, nullptr);
        window->SetSizeLimits(least_wide, as_float(width), least_high, as_float(height));
    });
}

// --- title

extern "C" void SetWindowTitle(int32_t ident, const char* title)
{
    on_window(ident, __func__, [=](WindowAccess& window) { window->SetTitle(title); });
}

extern "C" const char* GetWindowTitle(int32_t ident)
{
    return ask_window(ident, __func__, "", [](WindowAccess& window) {
        static BString* const title = new BString;  // main thread
        title->SetTo(window->Title());
        return title->String();
    });
}

// --- visibility

// Acts on a locked window by calls that reach the program's handlers, on this thread. One of them
// may close the window, which then is gone when the call returns.
template <class Action>
static void on_window_with_handlers(int32_t ident, const char* call, Action act)
{
    MyWinClass* window = ask_window(
        ident, call, static_cast<MyWinClass*>(nullptr),
        [](auto& found) { return lock_window(found.Window()) ? found.Window() : nullptr; });
    if (window == nullptr)
        return;
    guarded([&] { act(*window); });
    if (window->IsLocked())
        window->Unlock();
}

extern "C" void ShowWindow(int32_t ident)
{
    on_window_with_handlers(ident, __func__, [](MyWinClass& window) {
        window.Show();
        if (window.IsLocked())
            window.Activate(true);
    });
}

extern "C" void HideWindow(int32_t ident)
{
    on_window_with_handlers(ident, __func__, [](MyWinClass& window) { window.Hide(); });
}

extern "C" void ActivateWindow(int32_t ident)
{
    on_window_with_handlers(ident, __func__, [](MyWinClass& window) { window.Activate(true); });
}

extern "C" void Iconifie(int32_t ident, int32_t flag)
{
    on_window_with_handlers(ident, __func__,
                            [=](MyWinClass& window) { window.Minimize(flag != 0); });
}

extern "C" bool IsOpenedWindow(int32_t ident) { return LLFindWindow(ident, __func__) != nullptr; }

extern "C" bool IsVisibleWindow(int32_t ident)
{
    // kept on purpose: true means hidden
    return ask_window(ident, __func__, false,
                      [](WindowAccess& window) { return window->IsHidden(); });
}

// --- type, look and features

extern "C" void BlockWindow(int32_t ident, int32_t flag)
{
    on_window(ident, __func__, [=](WindowAccess& window) {
        window->SetType(flag != 0 ? B_MODAL_WINDOW : B_TITLED_WINDOW);
    });
}

extern "C" void SetWindowLook(int32_t ident, int32_t look)
{
    const char* const call = __func__;
    on_window(ident, call, [=](WindowAccess& window) {
        if (static_cast<uint32_t>(look) < std::size(kLooks))
            window->SetLook(kLooks[look]);
        else
            show_dbg(kBadArgument, ident, call);
    });
}

// Each feature has a flag that forbids it.
static void allow(int32_t ident, const char* call, uint32 forbidding, bool allowed)
{
    on_window(ident, call, [=](WindowAccess& window) {
        const uint32 flags = window->Flags() & ~forbidding;
        window->SetFlags(allowed ? flags : flags | forbidding);
    });
}

extern "C" void WindowResizable(int32_t ident, int32_t flag)
{
    allow(ident, __func__, B_NOT_RESIZABLE, flag != 0);
}

extern "C" void WindowMovable(int32_t ident, int32_t flag)
{
    allow(ident, __func__, B_NOT_MOVABLE, flag != 0);
}

extern "C" void WindowClosable(int32_t ident, int32_t flag)
{
    allow(ident, __func__, B_NOT_CLOSABLE, flag != 0);
}

extern "C" void WindowZoomable(int32_t ident, int32_t flag)
{
    allow(ident, __func__, B_NOT_ZOOMABLE, flag != 0);
}

extern "C" void WindowMinimizable(int32_t ident, int32_t flag)
{
    allow(ident, __func__, B_NOT_MINIMIZABLE, flag != 0);
}

extern "C" void WindowResizeMode(int32_t ident, int32_t flag)
{
    allow(ident, __func__, B_OUTLINE_RESIZE, flag != 0);
}

extern "C" void SetWindowMode(uint32_t bits) { sModeWindow = bits; }

// --- workspaces

extern "C" uint32_t GetWorkspaceWin(int32_t ident)
{
    return ask_window(ident, __func__, uint32_t{0},
                      [](WindowAccess& window) { return window->Workspaces(); });
}

extern "C" void SetWorkspaceWin(int32_t ident, uint32_t workspaces)
{
    on_window(ident, __func__, [=](WindowAccess& window) { window->SetWorkspaces(workspaces); });
}

extern "C" void SetMaxWorkspace(int32_t count)
{
    if (count >= 1 && count <= kMostWorkspaces)
        guarded([=] { set_workspace_count(count); });
    else
        show_dbg(kBadArgument, count, __func__);
}

extern "C" void SetCurrentWorkspace(int32_t number)
{
    guarded([=] { activate_workspace(number); });
}

extern "C" int32_t GetCurrentWorkspace(void) { return guarded(0, current_workspace); }

extern "C" int32_t CountWorkspace(void) { return guarded(0, count_workspaces); }

// --- defaults

extern "C" void SetWindowDefault(int32_t ident)
{
    on_window(ident, __func__, [](WindowAccess& window) {
        RegistryLock registry;
        DefWin = window.Window();
    });
}

extern "C" int32_t GetWindowDefault(void)
{
    RegistryLock registry;
    return DefWin != nullptr ? DefWin->fIdent : 0;
}

extern "C" intptr_t GetAdress(int32_t ident)
{
    WindowRecord* record = LLFindWindow(ident, __func__);
    return record != nullptr ? reinterpret_cast<intptr_t>(record->window) : 0;
}

extern "C" void SetDefaultButton(int32_t ident, int32_t gadget_ident)
{
    WindowRecord* record = LLFindWindow(ident, __func__);
    if (record == nullptr)
        return;
    with_gadget(gadget_ident, GadgetAccess::kAnyFamily, [=](const GadgetAccess& gadget) {
        if (!gadget.Held())
            return;
        BView* view = shown_view(gadget.Record());
        if (view->Window() != record->window)
            return;
        // Any view can be the default: the window sends Enter to it, and no more is asked of it.
        auto* button = dynamic_cast<BButton*>(view);
        record->window->SetDefaultButton(button != nullptr ? button
                                                           : reinterpret_cast<BButton*>(view));
    });
}

extern "C" void SetCursor(int32_t flag)
{
    if (be_app != nullptr)
        guarded([=] { be_app->SetCursor(flag != 0 ? B_I_BEAM_CURSOR : B_HAND_CURSOR); });
}
