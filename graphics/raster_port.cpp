// From a target to what it draws into, and the calls that choose targets. Any thread.

#include "graphics/raster_port.h"

#include "plinth.h"
#include "runtime/trace.h"

#include <Bitmap.h>

#include <algorithm>
#include <atomic>
#include <typeinfo>
#include <utility>

static const intptr_t kDefaultTarget = -1;

// The image that a target of -1 draws into while no window is that; 0 for none. Any thread.
static std::atomic<int32_t> sDefaultImage = 0;

// The view that a target of -1 draws into on this thread; null for none.
static thread_local BView* tOutput = nullptr;

DefaultOutput::DefaultOutput(BView* view) { tOutput = view; }

DefaultOutput::~DefaultOutput()
{
    tOutput = nullptr;
    defaultoutput.store(nullptr,
                        std::memory_order_release);  // kept on purpose: none, not the former
}

// Where pointers are wider than idents, no address looks like an ident.
static bool may_be_ident(intptr_t target) { return target > 0 && target <= INT32_MAX; }

static bool may_be_address(intptr_t target)
{
    if constexpr (sizeof(intptr_t) > sizeof(int32_t))
        return target > static_cast<intptr_t>(UINT32_MAX);
    else
        return target > 0;
}

// Only a BView itself, not one of a derived class, is drawn into.
static BView* plain_view(intptr_t target)
{
    if (!may_be_address(target))
        return nullptr;
    auto* view = reinterpret_cast<BView*>(target);
    return typeid(*view) == typeid(BView) ? view : nullptr;
}

// The locked window that a target names, if any.
static WindowAccess get_rastport_write(intptr_t target, const char* call)
{
    if (target == kDefaultTarget)
        return tOutput != nullptr ? WindowAccess() : WindowAccess::ToDefaultOutput();
    return may_be_ident(target) ? WindowAccess(static_cast<int32_t>(target), call) : WindowAccess();
}

void RasterPort::_OpenImage(int32_t ident)
{
    if (!fImage.Open(ident))
        return;
    fView = fImage.View();
    fRaster = fImage.Raster();
}

RasterPort::RasterPort(intptr_t target, const char* call)
    : fWindow(get_rastport_write(target, nullptr))
{
    if (fWindow) {
        fView = fWindow->fOffscreenView;
        fRaster = fWindow->fRaster;
        return;
    }
    if (may_be_ident(target))
        _OpenImage(static_cast<int32_t>(target));
    else if (target == kDefaultTarget && tOutput != nullptr)
        fView = tOutput;
    else if (target == kDefaultTarget)
        _OpenImage(sDefaultImage.load(std::memory_order_relaxed));
    else
        fView = plain_view(target);
    if (fView != nullptr)
        return;
    if (may_be_ident(target))
        trace_no_window(static_cast<int32_t>(target), call);
    else
        show_dbg(kNoTarget, static_cast<int32_t>(target), call);
}

BRect RasterPort::WindowBounds() const
{
    if (fWindow)
        return fWindow->Bounds();
    return fView->Window() != nullptr ? fView->Window()->Bounds() : fView->Bounds();
}

void RasterPort::LeaveUnseen(float x, float y)
{
    if (!fWindow)
        return;
    BRect& unseen = fWindow->fUnseen;
    if (!unseen.IsValid()) {
        unseen = BRect(x, y, x, y);
        return;
    }
    unseen.left = std::min(unseen.left, x);
    unseen.top = std::min(unseen.top, y);
    unseen.right = std::max(unseen.right, x);
    unseen.bottom = std::max(unseen.bottom, y);
}

void RasterPort::RefreshAll(BRect touched)
{
    if (!fWindow)
        return;
    fWindow.Refresh(touched);
    const BRect unseen = std::exchange(fWindow->fUnseen, BRect());
    if (unseen.IsValid())
        fWindow.Refresh(unseen);
}

extern "C" void SetRefreshWindowMode(intptr_t target, int32_t on)
{
    WindowAccess window = get_rastport_write(target, __func__);
    if (!window)
        return;
    window->fTopView->fRefresh = on != 0;
    if (on != 0)
        window.Refresh(window->fOffscreenView->Bounds());
}

extern "C" void SetDefaultGfx(intptr_t target)
{
    const RasterPort port(target, __func__);
    const bool is_image = port.Window() == nullptr && port.Raster() != nullptr;
    if (target != kDefaultTarget || !is_image)
        sDefaultImage.store(is_image ? static_cast<int32_t>(target) : 0, std::memory_order_relaxed);
    defaultoutput.store(port.Window(), std::memory_order_release);
}
