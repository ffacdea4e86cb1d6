#ifndef SERVER_FRONT_BUFFER_H
#define SERVER_FRONT_BUFFER_H

// The finished pixels of one window: what the screen shows of it, in the scale of what was copied
// in last. Its own lock is held for one copy at a time, and nothing else is locked under it.

#include <Region.h>

#include <vector>

#include <server/painter/PixelMemory.h>
#include <server/screen/Surface.h>

#include "support/Mutex.h"

namespace server {

// What another process needs to look at the pixels itself.
struct SharedPixels {
    int descriptor = -1;  // of memory that was not told of before, the taker's to close; else -1
    int32 width = 0, height = 0;
    float scale = 1;
    std::vector<clipping_rect> dirty;  // rectangles of pixels that have waited for the screen
};

class FrontBuffer {
public:
    FrontBuffer() = default;
    ~FrontBuffer();
    FrontBuffer(const FrontBuffer&) = delete;
    FrontBuffer& operator=(const FrontBuffer&) = delete;

    // The screen's own process is to look at the pixels, where there is memory for that.
    void Share();
    // New size in units. What is kept of the picture stays; the rest counts as not painted yet.
    // False, and nothing changed, when memory runs out or no window can be that large.
    bool Resize(int32 width, int32 height);

    // Takes pixels over from a back buffer; those of another scale than before drop what was there.
    // True if nothing was waiting for the screen before.
    bool Copy(const Surface& surface, const clipping_rect* rects, int32 count);
    // Everything waits for the screen.
    void Touch();
    // The rectangles of pixels that wait for the screen, and their scale; none waits afterwards.
    std::vector<clipping_rect> TakeDirty(float* scale);
    // The same for one that looks at the pixels itself, while new ones may be copied in: those are
    // finished as well, and wait again. False, and all waits on, where the memory is not shared.
    bool TakeShared(SharedPixels* shared);

    // Lays the part of the picture that `rect` (pixels of the window in the target's scale) names
    // over `target`, whose left top pixel is (0, 0), at (x, y). Pixels not painted yet show as the
    // panel's grey; those of a picture in another scale are the nearest ones.
    void Draw(const clipping_rect& rect, const Surface& target, int32 x, int32 y);

private:
    struct Memory;
    Memory _Make(int32 width, int32 height) REQUIRES(fLock);
    void _Take(Memory& memory, int32 width, int32 height) REQUIRES(fLock);
    bool _Rescale(float scale) REQUIRES(fLock);
    void _AddDirty(const clipping_rect& rect) REQUIRES(fLock);
    uint32* _Row(int32 y) REQUIRES(fLock)
    {
        return reinterpret_cast<uint32*>(fPixels.get()) + size_t(y) * fWidth;
    }

    BPrivate::Mutex fLock;
    // B_RGBA32 rows without padding; alpha 0 marks a pixel that nobody painted yet.
    PixelBuffer fPixels GUARDED_BY(fLock);
    bool fShares GUARDED_BY(fLock) = false;  // wanted
    int fDescriptor GUARDED_BY(fLock) = -1;  // of the memory, as long as nobody took it
    int32 fWidth GUARDED_BY(fLock) = 0;
    int32 fHeight GUARDED_BY(fLock) = 0;
    int32 fUnitWidth GUARDED_BY(fLock) = 0;
    int32 fUnitHeight GUARDED_BY(fLock) = 0;
    float fScale GUARDED_BY(fLock) = 1;
    std::vector<clipping_rect> fDirty GUARDED_BY(fLock);
};

}  // namespace server

#endif  // SERVER_FRONT_BUFFER_H
