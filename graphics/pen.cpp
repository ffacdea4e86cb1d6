// The drawing state: colours, pen, modes, clipping. Any thread.

#include "graphics/raster_port.h"

#include "plinth.h"
#include "runtime/trace.h"

#include <InterfaceDefs.h>
#include <Region.h>

// Acts on the view drawn into and, for a window, on the one on the screen too.
template <class Action>
static void on_both_views(intptr_t target, const char* call, Action act)
{
    on_port(target, call, [&](RasterPort& port) {
        act(port.View());
        if (port.Window() != nullptr)
            act(*port.Window()->fTopView);
    });
}

extern "C" void SetForeColor(intptr_t target, uint32_t fore, uint32_t back)
{
    on_both_views(target, __func__, [=](BView& view) {
        view.SetHighColor(GetRgbFromInteger(fore));
        view.SetLowColor(GetRgbFromInteger(back));
    });
}

extern "C" void SetBackColor(intptr_t target, uint32_t color)
{
    on_both_views(target, __func__,
                  [=](BView& view) { view.SetViewColor(GetRgbFromInteger(color)); });
}

extern "C" void SetPenWidth(intptr_t target, int32_t width)
{
    on_port(target, __func__,
            [=](RasterPort& port) { port->SetPenSize(static_cast<float>(width)); });
}

extern "C" int32_t GetPenWidth(intptr_t target)
{
    return ask_port(target, __func__, [](RasterPort& port) { return rounded(port->PenSize()); });
}

static bool is_between(int32_t value, int32_t first, int32_t last, const char* call)
{
    if (value >= first && value <= last)
        return true;
    show_dbg(kBadArgument, value, call);
    return false;
}

extern "C" void SetLineMode(intptr_t target, int32_t cap, int32_t join)
{
    if (!is_between(cap, B_ROUND_CAP, B_SQUARE_CAP, __func__) ||
        !is_between(join, B_ROUND_JOIN, B_SQUARE_JOIN, __func__))
        return;
    on_port(target, __func__, [=](RasterPort& port) {
        port->SetLineMode(static_cast<cap_mode>(cap), static_cast<join_mode>(join), kMiterLimit);
    });
}

extern "C" void SetDrawMode(intptr_t target, int32_t mode)
{
    if (!is_between(mode, B_OP_COPY, B_OP_ALPHA, __func__))
        return;
    on_port(target, __func__,
            [=](RasterPort& port) { port->SetDrawingMode(static_cast<drawing_mode>(mode)); });
}

extern "C" void SetAlphaMode(intptr_t target, int32_t source, int32_t function)
{
    if (!is_between(source, B_PIXEL_ALPHA, B_CONSTANT_ALPHA, __func__) ||
        !is_between(function, B_ALPHA_OVERLAY, B_ALPHA_COMPOSITE, __func__))
        return;
    on_port(target, __func__, [=](RasterPort& port) {
        port->SetBlendingMode(static_cast<source_alpha>(source),
                              static_cast<alpha_function>(function));
    });
}

static void clip_to(BView& view, BRect rect)
{
    BRegion region(rect);
    view.ConstrainClippingRegion(&region);
}

extern "C" void SetClipping(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h)
{
    on_port(target, __func__, [=](RasterPort& port) {
        const BRect rect = rect_of(x, y, w, h);
        clip_to(port.View(), rect);
        port.Refresh(rect);
    });
}

extern "C" void SetClippingAll(intptr_t target)
{
    on_port(target, __func__, [=](RasterPort& port) {
        clip_to(port.View(), port->Bounds());
        port.Refresh(port->Bounds());
    });
}

extern "C" void DrawAcces(intptr_t target, int32_t flag)
{
    on_port(target, __func__, [=](RasterPort& port) {
        clip_to(port.View(), flag == 0 ? port.WindowBounds() : port->Bounds());
    });
}
