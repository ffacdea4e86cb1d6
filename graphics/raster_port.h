#ifndef GRAPHICS_RASTER_PORT_H
#define GRAPHICS_RASTER_PORT_H

// Where a drawing call draws, and the coordinates and colours of the calls as the platform's.

#include "graphics/icons.h"
#include "runtime/whole.h"
#include "runtime/guarded.h"
#include "windows/drawing_view.h"
#include "windows/window_access.h"

#include <GraphicsDefs.h>
#include <View.h>

#include <stdint.h>

// Every mitred corner's limit: length over pen width.
static const float kMiterLimit = 10.0f;

// The offscreen view of a locked window, that of an image, or a plain view without any lock.
// Whoever holds a port may draw through its view; its end gives the locks back.
class RasterPort {
public:
    // `target` is a window's or an image's ident, -1, or the address of a plain view; `call` names
    // the exported function for traces.
    RasterPort(intptr_t target, const char* call);

    explicit operator bool() const { return fView != nullptr; }
    BView* operator->() const { return fView; }
    BView& View() const { return *fView; }
    // The locked window, null for an image and a plain view.
    MyWinClass* Window() const { return fWindow.Window(); }
    // The bitmap that the view draws into, null for a plain view.
    BBitmap* Raster() const { return fRaster; }
    BRect WindowBounds() const;
    // Has the rectangle drawn to the screen soon, if the target is a window.
    void Refresh(BRect touched) { fWindow.Refresh(touched); }
    // Leaves a pixel as it is on the screen until RefreshAll(), if the target is a window.
    void LeaveUnseen(float x, float y);
    // Has the rectangle, and all that was left unseen, drawn to the screen soon.
    void RefreshAll(BRect touched);

private:
    void _OpenImage(int32_t ident);

    WindowAccess fWindow;
    ImageAccess fImage;
    BView* fView = nullptr;
    BBitmap* fRaster = nullptr;
};

// The frame of the drawing calls: resolves the target, acts, gives the locks back. Where memory
// fails the rest is not drawn.
template <class Act>
inline void on_port(intptr_t target, const char* call, Act act)
{
    guarded([&] {
        if (RasterPort port(target, call); port)
            act(port);
    });
}

// The same for calls that tell a number, 0 on failure.
template <class Ask>
inline int32_t ask_port(intptr_t target, const char* call, Ask ask)
{
    return guarded(int32_t{0}, [&] {
        RasterPort port(target, call);
        return port ? static_cast<int32_t>(ask(port)) : 0;
    });
}

// While it lives, a target of -1 is this view on this thread; nothing is the default output then.
class DefaultOutput {
public:
    explicit DefaultOutput(BView* view);
    ~DefaultOutput();
    DefaultOutput(const DefaultOutput&) = delete;
};

inline BPoint point_of(int32_t x, int32_t y)
{
    return BPoint(static_cast<float>(x), static_cast<float>(y));
}

// The rectangle (x, y) to (x + w, y + h).
inline BRect rect_of(int32_t x, int32_t y, int32_t w, int32_t h)
{
    return BRect(static_cast<float>(x), static_cast<float>(y),
                 static_cast<float>(static_cast<int64_t>(x) + w),
                 static_cast<float>(static_cast<int64_t>(y) + h));
}

// 0xRRGGBBAA as the platform's colour.
constexpr rgb_color GetRgbFromInteger(uint32_t color)
{
    return {static_cast<uint8>(color >> 24), static_cast<uint8>(color >> 16),
            static_cast<uint8>(color >> 8), static_cast<uint8>(color)};
}

#endif  // GRAPHICS_RASTER_PORT_H
