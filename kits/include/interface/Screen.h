#ifndef _SCREEN_H
#define _SCREEN_H

#include <GraphicsDefs.h>
#include <Rect.h>
#include <SupportDefs.h>

class BBitmap;
class BWindow;

class BScreen {
public:
    BScreen(screen_id id = B_MAIN_SCREEN_ID);
    BScreen(BWindow* window);
    ~BScreen();
    bool IsValid();
    status_t SetToNext();
    color_space ColorSpace();
    BRect Frame();
    screen_id ID();
    status_t WaitForRetrace();
    status_t WaitForRetrace(bigtime_t timeout);
    uint8 IndexForColor(rgb_color color);
    uint8 IndexForColor(uint8 red, uint8 green, uint8 blue, uint8 alpha = 255);
    rgb_color ColorForIndex(uint8 index);
    uint8 InvertIndex(uint8 index);
    const color_map* ColorMap();
    status_t GetBitmap(BBitmap** _bitmap, bool drawCursor = true, BRect* frame = nullptr);
    status_t ReadBitmap(BBitmap* bitmap, bool drawCursor = true, BRect* frame = nullptr);
    rgb_color DesktopColor();
    rgb_color DesktopColor(uint32 workspace);
    void SetDesktopColor(rgb_color color, bool stick = true);
    void SetDesktopColor(rgb_color color, uint32 workspace, bool stick = true);
    status_t SetDPMS(uint32 state);
    uint32 DPMSState();
    uint32 DPMSCapabilites();
    status_t GetBrightness(float* brightness);
    status_t SetBrightness(float brightness);

private:
};

#endif  // _SCREEN_H
