// The modes of the screen and its monitor. Hosts change modes by panels of their own, so that the
// one they are in is all there is.

#include <Screen.h>

#include <InterfaceDefs.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "server/screen/Screen.h"

static bool is_same_mode(const display_mode& one, const display_mode& other)
{
    return one.timing.h_display == other.timing.h_display &&
           one.timing.v_display == other.timing.v_display && one.space == other.space &&
           one.virtual_width == other.virtual_width && one.virtual_height == other.virtual_height;
}

// A screen of pixels has no beam; the blank around them is what a usual monitor gets.
static display_mode mode_of_screen()
{
    const BRect frame = server::ScreenFrame();
    const auto width = static_cast<uint16>(frame.IntegerWidth() + 1);
    const auto height = static_cast<uint16>(frame.IntegerHeight() + 1);
    const auto part = [](uint16 whole, int32 percent) {
        return static_cast<uint16>(whole + whole * percent / 100);
    };
    display_mode mode = {};
    display_timing& timing = mode.timing;
    timing.h_display = width;
    timing.h_sync_start = part(width, 5);
    timing.h_sync_end = part(width, 15);
    timing.h_total = part(width, 25);
    timing.v_display = height;
    timing.v_sync_start = static_cast<uint16>(height + 3);
    timing.v_sync_end = static_cast<uint16>(height + 7);
    timing.v_total = part(height, 4);
    timing.flags = B_POSITIVE_HSYNC | B_POSITIVE_VSYNC;
    const uint64 pixels = static_cast<uint64>(timing.h_total) * timing.v_total;
    timing.pixel_clock = static_cast<uint32>(pixels * 1000 / server::FrameInterval());
    mode.space = server::ScreenSpace();
    mode.virtual_width = width;
    mode.virtual_height = height;
    mode.flags = B_PARALLEL_ACCESS | B_8_BIT_DAC;
    return mode;
}

status_t BScreen::GetMode(display_mode* mode)
{
    if (mode == nullptr)
        return B_BAD_VALUE;
    if (!IsValid())
        return B_ERROR;
    *mode = mode_of_screen();
    return B_OK;
}

status_t BScreen::GetMode(uint32 workspace, display_mode* mode)
{
    if (workspace >= static_cast<uint32>(count_workspaces()))
        return B_BAD_VALUE;
    return GetMode(mode);
}

status_t BScreen::GetModeList(display_mode** _modeList, uint32* _count)
{
    if (_modeList == nullptr || _count == nullptr)
        return B_BAD_VALUE;
    auto* modes = static_cast<display_mode*>(malloc(sizeof(display_mode)));
    if (modes == nullptr)
        return B_NO_MEMORY;
    const status_t status = GetMode(modes);
    if (status != B_OK) {
        free(modes);
        return status;
    }
    *_modeList = modes;
    *_count = 1;
    return B_OK;
}

status_t BScreen::SetMode(display_mode* mode, bool)
{
    display_mode now;
    const status_t status = mode != nullptr ? GetMode(&now) : B_BAD_VALUE;
    if (status != B_OK)
        return status;
    return is_same_mode(*mode, now) ? B_OK : B_UNSUPPORTED;
}

status_t BScreen::SetMode(uint32 workspace, display_mode* mode, bool makeDefault)
{
    if (workspace >= static_cast<uint32>(count_workspaces()))
        return B_BAD_VALUE;
    return SetMode(mode, makeDefault);
}

status_t BScreen::ProposeMode(display_mode* target, const display_mode* low,
                              const display_mode* high)
{
    if (target == nullptr || low == nullptr || high == nullptr)
        return B_BAD_VALUE;
    display_mode now;
    const status_t status = GetMode(&now);
    if (status != B_OK)
        return status;
    const auto is_between = [&](auto value) {
        return value(*low) <= value(now) && value(now) <= value(*high);
    };
    const bool fits = target->space == now.space &&
                      is_between([](const display_mode& mode) { return mode.timing.h_display; }) &&
                      is_between([](const display_mode& mode) { return mode.timing.v_display; }) &&
                      is_between([](const display_mode& mode) { return mode.virtual_width; }) &&
                      is_between([](const display_mode& mode) { return mode.virtual_height; }) &&
                      is_between([](const display_mode& mode) { return mode.timing.pixel_clock; });
    *target = now;
    return fits ? B_OK : B_BAD_VALUE;
}

status_t BScreen::GetDeviceInfo(accelerant_device_info*) { return B_UNSUPPORTED; }

status_t BScreen::GetPixelClockLimits(display_mode*, uint32*, uint32*) { return B_UNSUPPORTED; }

status_t BScreen::GetTimingConstraints(display_timing_constraints*) { return B_UNSUPPORTED; }

template <size_t size>
static void copy_text(char (&to)[size], const std::string& from)
{
    snprintf(to, size, "%s", from.c_str());
}

status_t BScreen::GetMonitorInfo(monitor_info* info)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    if (!IsValid())
        return B_ERROR;
    const server::Monitor monitor = server::ScreenMonitor();
    if (monitor.name.empty())
        return B_UNSUPPORTED;
    memset(info, 0, sizeof(*info));
    copy_text(info->vendor, monitor.vendor);
    copy_text(info->name, monitor.name);
    copy_text(info->serial_number, monitor.serial);
    info->width = monitor.width_cm;
    info->height = monitor.height_cm;
    return B_OK;
}
