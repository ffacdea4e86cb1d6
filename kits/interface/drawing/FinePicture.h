#ifndef INTERFACE_FINE_PICTURE_H
#define INTERFACE_FINE_PICTURE_H

// The pixels of a bitmap that takes views, drawn along in the scale of the screen. The bitmap's own
// bits stay what counts: where anybody else has written them, its picture shows these bits. Who has
// never been given their address can not have done so.

#include <server/painter/Painter.h>
#include <server/painter/PixelMemory.h>

#include <atomic>
#include <memory>
#include <vector>

#include "support/Mutex.h"

namespace BPrivate {

class [[gnu::visibility("hidden")]] FinePicture
{
public:
    // A picture of a bitmap as it is. Null where none is needed: at scale 1, or for a bitmap of
    // other than 32 bits a pixel; or where memory runs out. In use: somebody may draw on the bitmap
    // at this moment, or have its bits.
    enum class Bitmap { New, InUse };
    static std::unique_ptr<FinePicture> Make(const server::Surface& bitmap, float scale,
                                             Bitmap state);

    float Scale() const { return fScale; }
    // The address of the bits is going to be known to somebody who may write there.
    void BitsGoOut(const server::Surface& bitmap)
    {
        if (!fBitsAreOut.load(std::memory_order_acquire))
            _BitsGoOut(bitmap);
    }
    // After `paint(target)` has drawn on the bitmap itself: the same on its picture, and on what is
    // known of it.
    template <class Paint>
    void DrawAlong(const server::Target& target, const Paint& paint)
    {
        MutexLock lock(fLock);
        if (fFine.bits != nullptr)
            paint(_FineTarget(target));
        if (fKnown.bits == nullptr)
            return;
        server::Target known = target;
        known.surface = &fKnown;
        paint(known);
    }

    // A copy of the pixels of a part in this scale, or nothing if memory runs out.
    struct Part {
        std::vector<uint32> pixels;
        server::Surface surface;
    };
    Part Copy(const server::Surface& bitmap, const clipping_rect& units, float scale);
    // Calls draw(surface) with all of the pixels in this scale, which are up to date in a part that
    // the bitmap holds. Not for drawing on a bitmap that has a picture like this. False if memory
    // runs out.
    template <class Draw>
    bool Show(const server::Surface& bitmap, const clipping_rect& units, float scale,
              const Draw& draw)
    {
        MutexLock lock(fLock);
        if (!_MakeReady(bitmap, units, scale))
            return false;
        server::Surface plain = fFine;
        plain.scale = 1;
        draw(plain);
        return true;
    }

private:
    struct Room {
        server::PixelBuffer bits;
        bool Make(server::Surface* surface, int32 width, int32 height);
    };

    FinePicture() = default;
    bool _MakeReady(const server::Surface& bitmap, const clipping_rect& units, float scale)
        REQUIRES(fLock);
    void _BitsGoOut(const server::Surface& bitmap);
    bool _Know(const server::Surface& bitmap) REQUIRES(fLock);
    bool _Remake(const server::Surface& bitmap, float scale) REQUIRES(fLock);
    void _Agree(const server::Surface& bitmap, const clipping_rect& units) REQUIRES(fLock);
    void _Flatten(int32 x, int32 y, uint32 pixel) REQUIRES(fLock);
    const server::Target& _FineTarget(const server::Target& target) REQUIRES(fLock);

    Mutex fLock;  // nothing else is locked under it
    // The bitmap as all drawing would have left it; without bits until others have its own.
    server::Surface fKnown GUARDED_BY(fLock);
    server::Surface fFine GUARDED_BY(fLock);
    Room fKnownRoom GUARDED_BY(fLock);
    Room fFineRoom GUARDED_BY(fLock);
    // The target that was drawn on last, in units, and the same in the picture's pixels.
    std::vector<clipping_rect> fUnits GUARDED_BY(fLock);
    std::vector<clipping_rect> fClip GUARDED_BY(fLock);
    server::Target fTarget GUARDED_BY(fLock);
    std::atomic<bool> fBitsAreOut{false};
    std::atomic<float> fScale{1};  // of `fFine`
};

}  // namespace BPrivate

#endif  // INTERFACE_FINE_PICTURE_H
