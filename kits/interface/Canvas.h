#ifndef INTERFACE_CANVAS_H
#define INTERFACE_CANVAS_H

// What a window draws on: its back buffer (or, for a bitmap that takes views, the bitmap's bits),
// the region that waits for Draw() and the region that waits for the screen. Guarded by the
// window's lock, but for what says otherwise.

#include <Region.h>

#include <atomic>
#include <memory>

#include <server/Display.h>
#include <server/Surface.h>

class BView;
class BWindow;

namespace BPrivate {

class [[gnu::visibility("hidden")]] Canvas {
public:
    // A back buffer of its own for `window`, presented through `display`.
    Canvas(BWindow* window, server::Window* display);
    // Draws into the bits of a bitmap; nothing is presented and no view is asked to Draw().
    Canvas(BWindow* window, const server::Surface& bitmap);
    ~Canvas();

    server::Surface& Pixels() { return fSurface; }
    bool IsOffscreen() const { return fDisplay == nullptr; }

    // New size in pixels; what is kept of the picture stays, the rest is invalid. False, and
    // nothing changed, when memory runs out.
    bool Resize(int32 width, int32 height);

    // Joins to the region that waits for Draw() and wakes the window once. Window coordinates.
    void Invalidate(const clipping_rect& rect);
    void Invalidate(const BRegion& region);
    const BRegion& Invalid() const { return fInvalid; }
    // Runs the update: background and Draw() of every view that the invalid region touches,
    // parents first. Called by the window for its _UPDATE_ message and by UpdateIfNeeded().
    void Update(BView* top);

    // Pixels changed: they wait for the screen and wake the window once a display frame.
    void Touched(const clipping_rect& rect);
    // Hands what waits over to the screen if a display frame has passed since the last time (or
    // `force`); else says by `next_us` when that will be. Window thread, or window locked.
    void Present(bool force, bigtime_t* next_us);
    bool NeedsPresent() const { return fDirtyRight >= fDirtyLeft; }

private:
    BWindow* fWindow;
    server::Window* fDisplay;
    server::Surface fSurface;
    std::unique_ptr<uint8[]> fBuffer;
    BRegion fInvalid;
    int32 fDirtyLeft = 0, fDirtyTop = 0, fDirtyRight = -1, fDirtyBottom = -1;
    bigtime_t fLastPresent = 0;
    std::atomic<bool> fWakePending = false;
};

}  // namespace BPrivate

#endif  // INTERFACE_CANVAS_H
