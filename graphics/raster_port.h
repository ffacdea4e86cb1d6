#ifndef GRAPHICS_RASTER_PORT_H
#define GRAPHICS_RASTER_PORT_H

// Where a drawing call draws, and the coordinates and colours of the calls as the platform's.

#include "runtime/whole.h"
#include "windows/drawing_view.h"
#include "windows/window.h"

#include <GraphicsDefs.h>
#include <View.h>

#include <stdint.h>

// Every mitred corner's limit: length over pen width.
static const float kMiterLimit = 10.0f;

// The offscreen view of a locked window, or a plain view without any lock. Whoever holds a port
// may draw through its view; its end gives the locks back.
class RasterPort {
public:
    // `target` is a window's ident, -1, or the address of a plain view; `call` names the exported
    // function for traces.
    RasterPort(intptr_t target, const char* call);
    ~RasterPort()
    {
        if (fWindow != nullptr)
            fWindow->MyUpdate(fTouched, fRefresh);
    }
    RasterPort(const RasterPort&) = delete;
    RasterPort& operator=(const RasterPort&) = delete;

    explicit operator bool() const { return fView != nullptr; }
    BView* operator->() const { return fView; }
    BView& View() const { return *fView; }
    // Null when drawing goes into a plain view.
    MyWinClass* Window() const { return fWindow; }
    BRect WindowBounds() const;

    // The rectangle is to reach the screen when the port ends, if the window's mode is so.
    void Refresh(BRect touched)
    {
        fTouched = touched;
        fRefresh = true;
    }

private:
    MyWinClass* fWindow = nullptr;
    BView* fView = nullptr;
    BRect fTouched;
    bool fRefresh = false;
};

// The locked window that a target names, null for a plain view or nothing. Ends with MyUpdate.
MyWinClass* get_rastport_write(intptr_t target, const char* call);

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
