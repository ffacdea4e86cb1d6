// Pages for large pictures, the heap for small ones.

#include "server/painter/PixelMemory.h"

#include <sys/mman.h>
#include <unistd.h>

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

uint8* map_shared_pixels(size_t bytes, int* descriptor)
{
    *descriptor = -1;
    const int file = memfd_create("window pixels", MFD_CLOEXEC);
    if (file < 0)
        return nullptr;
    void* pages = ftruncate(file, off_t(bytes)) == 0
                      ? mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
                      : MAP_FAILED;
    if (pages == MAP_FAILED) {
        close(file);
        return nullptr;
    }
    *descriptor = file;
    return static_cast<uint8*>(pages);
}

void FreePixels::operator()(uint8* pixels) const
{
    if (shared)
        munmap(pixels, bytes);
    else
        free_pixels(pixels, bytes);
}

}  // namespace server
