// The screen: frame, palette, desktop and pictures of it.

#include <Screen.h>

#include <Bitmap.h>
#include <OS.h>
#include <Window.h>

#include <cmath>
#include <memory>
#include <vector>

#include "server/screen/Screen.h"
#include "server/painter/Painter.h"

BScreen::BScreen(screen_id id) : fId(id) {}

BScreen::BScreen(BWindow*) : fId(B_MAIN_SCREEN_ID) {}

BScreen::~BScreen() {}

bool BScreen::IsValid() { return fId.id == B_MAIN_SCREEN_ID.id; }

status_t BScreen::SetToNext() { return B_ERROR; }

color_space BScreen::ColorSpace() { return IsValid() ? server::ScreenSpace() : B_NO_COLOR_SPACE; }

BRect BScreen::Frame() { return IsValid() ? server::ScreenFrame() : BRect(0, 0, 0, 0); }

screen_id BScreen::ID() { return fId; }

status_t BScreen::WaitForRetrace() { return WaitForRetrace(B_INFINITE_TIMEOUT); }

status_t BScreen::WaitForRetrace(bigtime_t timeout)
{
    bigtime_t interval = server::FrameInterval();
    bigtime_t wait = interval - system_time() % interval;
    if (timeout < wait) {
        snooze(timeout);
        return B_ERROR;
    }
    return snooze(wait);
}

uint8 BScreen::IndexForColor(rgb_color color)
{
    return server::PaletteIndexFor(color.red, color.green, color.blue, color.alpha);
}

uint8 BScreen::IndexForColor(uint8 red, uint8 green, uint8 blue, uint8 alpha)
{
    return server::PaletteIndexFor(red, green, blue, alpha);
}

rgb_color BScreen::ColorForIndex(uint8 index) { return server::SystemPalette()[index]; }

uint8 BScreen::InvertIndex(uint8 index) { return server::SystemColorMap()->inversion_map[index]; }

const color_map* BScreen::ColorMap() { return server::SystemColorMap(); }

status_t BScreen::GetBitmap(BBitmap** _bitmap, bool drawCursor, BRect* frame)
{
    if (_bitmap == nullptr)
        return B_BAD_VALUE;
    *_bitmap = nullptr;
    if (!IsValid())
        return B_ERROR;
    BRect rect = frame != nullptr ? *frame & Frame() : Frame();
    if (!rect.IsValid() || (frame != nullptr && !frame->IsValid()))
        return B_BAD_VALUE;
    auto bitmap = std::make_unique<BBitmap>(rect.OffsetToCopy(0, 0), B_RGB32);
    status_t status = bitmap->InitCheck();
    if (status == B_OK)
        status = ReadBitmap(bitmap.get(), drawCursor, &rect);
    if (status == B_OK)
        *_bitmap = bitmap.release();
    return status;
}

status_t BScreen::ReadBitmap(BBitmap* bitmap, bool, BRect* frame)
{
    if (bitmap == nullptr || !bitmap->IsValid())
        return B_BAD_VALUE;
    if (!IsValid())
        return B_ERROR;
    const BRect rect = frame != nullptr ? *frame : Frame();
    if (!rect.IsValid())
        return B_BAD_VALUE;
    std::vector<uint32> pixels;
    int32 width, height;
    status_t status = server::ReadScreen(rect, &pixels, &width, &height);
    if (status != B_OK)
        return status;
    // What lies outside the screen is left as it is.
    const BPoint to = (rect & Frame()).LeftTop() - rect.LeftTop();
    return bitmap->ImportBits(pixels.data(), int32(pixels.size() * sizeof(uint32)), width * 4,
                              B_RGB32, BPoint(0, 0), to,
                              BSize(float(width - 1), float(height - 1)));
}

rgb_color BScreen::DesktopColor() { return server::DesktopColor(); }

rgb_color BScreen::DesktopColor(uint32) { return server::DesktopColor(); }

void BScreen::SetDesktopColor(rgb_color color, bool) { server::SetDesktopColor(color); }

void BScreen::SetDesktopColor(rgb_color color, uint32, bool) { server::SetDesktopColor(color); }

status_t BScreen::SetDPMS(uint32) { return B_UNSUPPORTED; }

uint32 BScreen::DPMSState() { return B_DPMS_ON; }

uint32 BScreen::DPMSCapabilites() { return 0; }

status_t BScreen::GetBrightness(float*) { return B_UNSUPPORTED; }

status_t BScreen::SetBrightness(float) { return B_UNSUPPORTED; }
