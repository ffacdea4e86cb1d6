// From a target to what it draws into, and the calls that choose targets. Any thread.

#include "graphics/raster_port.h"

#include "plinth.h"
#include "runtime/trace.h"

#include <Bitmap.h>

#include <typeinfo>

static const intptr_t kDefaultTarget = -1;

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

MyWinClass* get_rastport_write(intptr_t target, const char* call)
{
    if (target == kDefaultTarget)
        return lock_default_output();
    return may_be_ident(target) ? LLFindWindowLocked(static_cast<int32_t>(target), call) : nullptr;
}

RasterPort::RasterPort(intptr_t target, const char* call)
    : fWindow(get_rastport_write(target, call))
{
    fView = fWindow != nullptr ? fWindow->fOffscreenView : plain_view(target);
    if (fView == nullptr && !may_be_ident(target))
        show_dbg(kNoTarget, static_cast<int32_t>(target), call);
}

BRect RasterPort::WindowBounds() const
{
    if (fWindow != nullptr)
        return fWindow->Bounds();
    return fView->Window() != nullptr ? fView->Window()->Bounds() : fView->Bounds();
}

extern "C" void SetRefreshWindowMode(intptr_t target, int32_t on)
{
    MyWinClass* window = get_rastport_write(target, __func__);
    if (window == nullptr)
        return;
    window->fTopView->fRefresh = on != 0;
    window->MyUpdate(window->fOffscreenView->Bounds(), on != 0);
}

extern "C" void SetDefaultGfx(intptr_t target)
{
    MyWinClass* window = get_rastport_write(target, __func__);
    defaultoutput.store(window, std::memory_order_release);
    if (window != nullptr)
        window->MyUpdate(BRect(), false);
}
