#ifndef _SCREEN_H
#define _SCREEN_H

#include <Accelerant.h>
#include <GraphicsDefs.h>
#include <Rect.h>
#include <SupportDefs.h>

class BBitmap;
class BWindow;

/* The screen. Hosts show one, whatever its size; in memory it has 1024 x 768 pixels unless
   PLINTH_SCREEN says otherwise ("1280x800"). Any thread. */
class BScreen {
public:
    BScreen(screen_id id = B_MAIN_SCREEN_ID);
    BScreen(BWindow* window);
    ~BScreen();

    bool IsValid();
    /* B_ERROR: there is no next one. */
    status_t SetToNext();
    color_space ColorSpace();
    BRect Frame();
    screen_id ID();
    /* Waits for the beginning of the next display frame, as far as its rate is known. B_ERROR if
       `timeout` (microseconds) is over first. */
    status_t WaitForRetrace();
    status_t WaitForRetrace(bigtime_t timeout);
    /* The palette of B_CMAP8. */
    uint8 IndexForColor(rgb_color color);
    uint8 IndexForColor(uint8 red, uint8 green, uint8 blue, uint8 alpha = 255);
    rgb_color ColorForIndex(uint8 index);
    uint8 InvertIndex(uint8 index);
    const color_map* ColorMap();
    /* What this program's windows show in front of the desktop, without the pointer. `frame` null:
       the whole screen. GetBitmap() makes a bitmap that is the caller's, of what of the frame is on
       the screen; ReadBitmap() fills one from its left top, and leaves what is beside the screen as
       it is. B_BAD_VALUE for null and for frames wholly beside it, B_ERROR of no screen. */
    status_t GetBitmap(BBitmap** _bitmap, bool drawCursor = true, BRect* frame = nullptr);
    status_t ReadBitmap(BBitmap* bitmap, bool drawCursor = true, BRect* frame = nullptr);
    /* The colour behind the windows in memory; other displays have desktops of their own. */
    rgb_color DesktopColor();
    rgb_color DesktopColor(uint32 workspace);
    void SetDesktopColor(rgb_color color, bool stick = true);
    void SetDesktopColor(rgb_color color, uint32 workspace, bool stick = true);
    /* The mode that the host has chosen is the only one: the list, which is the caller's to free(),
       has it alone, and to set another one is B_UNSUPPORTED. ProposeMode() writes it to `target`
       and returns B_OK if it lies between `low` and `high` and has the target's colours, else
       B_BAD_VALUE. All workspaces have it. Its timing beside the number of pixels and frames is a
       usual monitor's. */
    status_t ProposeMode(display_mode* target, const display_mode* low, const display_mode* high);
    status_t GetModeList(display_mode** _modeList, uint32* _count);
    status_t GetMode(display_mode* mode);
    status_t GetMode(uint32 workspace, display_mode* mode);
    status_t SetMode(display_mode* mode, bool makeDefault = false);
    status_t SetMode(uint32 workspace, display_mode* mode, bool makeDefault = false);
    /* B_UNSUPPORTED: hosts keep the card to themselves. */
    status_t GetDeviceInfo(accelerant_device_info* info);
    status_t GetPixelClockLimits(display_mode* mode, uint32* _low, uint32* _high);
    status_t GetTimingConstraints(display_timing_constraints* timingConstraints);
    /* Names and size, as far as the host knows them; B_UNSUPPORTED in memory. */
    status_t GetMonitorInfo(monitor_info* info);
    /* Power and brightness are the host's: B_UNSUPPORTED, and always on. */
    status_t SetDPMS(uint32 state);
    uint32 DPMSState();
    uint32 DPMSCapabilites();
    status_t GetBrightness(float* brightness);
    status_t SetBrightness(float brightness);

private:
    screen_id fId;
};

#endif  // _SCREEN_H
