#ifndef INTERFACE_CANVAS_H
#define INTERFACE_CANVAS_H

// What a window draws on: its back buffer (or, for a bitmap that takes views, the bitmap's bits),
// the region that waits for Draw() and the pixels that wait for the screen. Guarded by the
// window's lock.
//
// Regions are those of the window, in units; the back buffer may have several pixels for each, as
// the screen has them.

#include <Region.h>

#include <server/painter/Painter.h>
#include <server/painter/PixelMemory.h>
#include <server/screen/ScreenWindow.h>
#include <server/screen/Surface.h>

#include <atomic>
#include <vector>

class BView;
class BWindow;

namespace BPrivate {

class FinePicture;

class [[gnu::visibility("hidden")]] Canvas
{
public:
    // A back buffer for `window`, without pixels until Resize(), presented through `display`.
    Canvas(BWindow * window, server::ScreenWindow * display);
    // Draws into the bits of a bitmap; nothing is presented and no view is asked to Draw().
    Canvas(BWindow * window, const server::Surface& bitmap);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    server::Surface& Pixels() { return fSurface; }
    // What is drawn on a bitmap is drawn on this too; null on a screen without a scale.
    FinePicture* Fine() const { return fFine.load(std::memory_order_acquire); }
    // The same for a screen that the bitmap comes to now, from one without a scale. Any thread.
    FinePicture* FineIn(float scale);
    bool IsOffscreen() const { return fOffscreen; }

    // New size in units; what is kept of the picture stays, the rest is invalid. False, and
    // nothing changed, when memory runs out or the size is no size.
    bool Resize(int32 width, int32 height);
    // Takes over how many pixels a unit the screen has at present; where these are others than
    // before, everything is invalid.
    void FollowScale();
    float Scale() const { return fSurface.scale; }
    // What can be drawn on, in the window.
    clipping_rect Bounds() const { return {0, 0, fWidth - 1, fHeight - 1}; }
    // Whether a part that moves so far has the same pixels afterwards.
    bool CanMove(int32 dx, int32 dy) const;

    // Joins to the region that waits for Draw() and wakes the window. Window coordinates.
    void Invalidate(const clipping_rect& rect);
    void Invalidate(const BRegion& region);
    const BRegion& Invalid() const { return fInvalid; }
    // What waits for Draw() inside `area` moves along with the pixels there.
    void MoveInvalid(const clipping_rect& area, int32 dx, int32 dy);
    // Runs the update: background and Draw() of every view that the invalid region touches,
    // parents first. Called by the window for its _UPDATE_ message and by UpdateIfNeeded().
    void Update(BView * top);

    // Pixels of the surface changed: they wait for the screen. Wakes the window for the first.
    void Touched(const clipping_rect& box)
    {
        if (box.left < fDirty.left || box.top < fDirty.top || box.right > fDirty.right ||
            box.bottom > fDirty.bottom)
            _GrowDirty(box);
    }
    // Hands what waits over to the screen if a display frame has passed since the last time (or
    // `force`). `next_us` is when to come again: a system_time(), B_INFINITE_TIMEOUT if nothing
    // waits. Null is allowed.
    void Present(bool force, bigtime_t* next_us);
    bool NeedsPresent() const { return fDisplay != nullptr && fDirty.right >= fDirty.left; }

    // Changes whenever tree, frames, visibility or update change what views may draw on; never 0.
    const uint32* Generation() const { return &fGeneration; }
    // The same without what updates change; never 0.
    uint32 TreeGeneration() const { return fTreeGeneration; }
    void NextGeneration()
    {
        _CountUp(&fTreeGeneration);
        _CountUp(&fGeneration);
    }
    // Drawing is limited to this region; null outside of an update.
    const BRegion* UpdateRegion() const { return fUpdate; }

private:
    static void _CountUp(uint32 * number)
    {
        if (++*number == 0)
            *number = 1;
    }
    bool _ResizePixels(int32 width, int32 height);
    void _KeepInvalidSimple();
    void _GrowDirty(const clipping_rect& box);
    void _DrawView(BView * view);
    void _DrawBackground(BView * view, const BRegion& dirty);
    void _Clear(const clipping_rect& rect);
    clipping_rect _Pixels() const { return {0, 0, fSurface.width - 1, fSurface.height - 1}; }

    BWindow* const fWindow;
    server::ScreenWindow* const fDisplay;  // null too when the screen took no more windows
    const bool fOffscreen;
    server::Surface fSurface;
    std::atomic<FinePicture*> fFine{nullptr};  // ours; stays once it is there
    int32 fWidth = 0;                          // units
    int32 fHeight = 0;                         // units
    uint32 fGeneration = 1;
    uint32 fTreeGeneration = 1;
    clipping_rect fDirty = {0, 0, -1, -1};  // offscreen: everything, so that no box is outside
    server::PixelBuffer fBuffer;
    int32 fCapacityWidth = 0;   // pixels that a row of the buffer has room for
    int32 fCapacityHeight = 0;  // rows
    BRegion fInvalid;
    const BRegion* fUpdate = nullptr;
    bigtime_t fLastPresent = 0;
};

// The clipping of a surface: the pixels of a region.
class [[gnu::visibility("hidden")]] PixelClip
{
public:
    // What is drawn on then. `region` and this have to stay as they are.
    server::Target Set(const BRegion& region, server::Surface* surface);

private:
    std::vector<clipping_rect> fRects;  // in use only where a unit is not a pixel
};

}  // namespace BPrivate

#endif  // INTERFACE_CANVAS_H
