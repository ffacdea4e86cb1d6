// Pages for large pictures, the heap for small ones.

#include "server/painter/PixelMemory.h"

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>

namespace server {

static const size_t kCacheLine = 64;
static const size_t kLarge = 128 * 1024;
static const size_t kHuge = 4 * 1024 * 1024;  // a photo's first touch, page by page, takes longer
                                              // than some of its readers

uint8* allocate_pixels(size_t bytes)
{
    if (bytes >= kLarge) {
        void* pages =
            mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED)
            return nullptr;
        if (bytes >= kHuge)
            madvise(pages, bytes, MADV_HUGEPAGE);  // no more than a wish
        return static_cast<uint8*>(pages);
    }
    const size_t rounded = (bytes + kCacheLine - 1) / kCacheLine * kCacheLine;
    auto* pixels = static_cast<uint8*>(std::aligned_alloc(kCacheLine, rounded));
    if (pixels != nullptr)
        memset(pixels, 0, rounded);
    return pixels;
}

void free_pixels(uint8* pixels, size_t bytes)
{
    if (pixels != nullptr && bytes >= kLarge)
        munmap(pixels, bytes);
    else
        std::free(pixels);
}

}  // namespace server
