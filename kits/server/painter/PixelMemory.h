#ifndef SERVER_PIXEL_MEMORY_H
#define SERVER_PIXEL_MEMORY_H

// Memory for the pixels of windows and bitmaps. Large pieces are pages of the system's own, which
// has them back at once, or when it wants them: the heap would keep what lies between the small
// things that stay. Any thread.

#include <SupportDefs.h>

#include <memory>

namespace server {

// Zeroes, from the start of a cache line on; large pieces cost what is written of them. Null when
// memory runs out.
uint8* allocate_pixels(size_t bytes);
// The same for those who write all of it: there may be anything in it.
uint8* allocate_unset_pixels(size_t bytes);
// `bytes` as they were asked for; null is allowed.
void free_pixels(uint8* pixels, size_t bytes);

// The same as pages that another process can look at too: who is given the descriptor, which is the
// caller's to close. To be unmapped. Null, and no descriptor, when memory runs out.
uint8* map_shared_pixels(size_t bytes, int* descriptor);

struct FreePixels {
    size_t bytes = 0;
    bool shared = false;
    void operator()(uint8* pixels) const;
};
using PixelBuffer = std::unique_ptr<uint8[], FreePixels>;

inline PixelBuffer make_pixels(size_t bytes)
{
    return PixelBuffer(allocate_pixels(bytes), FreePixels{bytes, false});
}

inline PixelBuffer make_shared_pixels(size_t bytes, int* descriptor)
{
    return PixelBuffer(map_shared_pixels(bytes, descriptor), FreePixels{bytes, true});
}

}  // namespace server

#endif  // SERVER_PIXEL_MEMORY_H
