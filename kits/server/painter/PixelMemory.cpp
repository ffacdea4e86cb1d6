// Pages for large pictures, the heap for small ones. The last photo that went leaves its pages to
// the next one: to be given new ones takes a fifth of the time that a photo is read in.

#include "server/painter/PixelMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

namespace server {

static const size_t kCacheLine = 64;
static const size_t kLarge = 128 * 1024;
static const size_t kHuge = 4 * 1024 * 1024;  // a photo's first touch, page by page, takes longer
                                              // than some of its readers
static const size_t kMostSpare = 64 * 1024 * 1024;
static const size_t kPage = 4096;

struct Pages {
    uint8* start = nullptr;
    size_t bytes = 0;  // whole pages
};

static std::mutex sSpareLock;
static Pages sSpare;  // its lock; with what was in it or with zeroes

static size_t whole_pages(size_t bytes) { return (bytes + kPage - 1) / kPage * kPage; }

static void unmap(Pages pages)
{
    if (pages.bytes > 0)
        munmap(pages.start, pages.bytes);
}

static uint8* map(size_t bytes)
{
    void* pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED)
        return nullptr;
    if (bytes >= kHuge)
        madvise(pages, bytes, MADV_HUGEPAGE);  // no more than a wish
    return static_cast<uint8*>(pages);
}

// The spare pages, cut to the size; null if they are too few.
static uint8* take_spare(size_t bytes)
{
    const size_t size = whole_pages(bytes);
    Pages spare;
    {
        std::lock_guard<std::mutex> lock(sSpareLock);
        if (sSpare.bytes < size)
            return nullptr;
        spare = std::exchange(sSpare, {});
    }
    unmap({spare.start + size, spare.bytes - size});
    return spare.start;
}

// The system may have the pages back meanwhile.
static void keep_spare(Pages pages)
{
    madvise(pages.start, pages.bytes, MADV_FREE);
    {
        std::lock_guard<std::mutex> lock(sSpareLock);
        std::swap(sSpare, pages);
    }
    unmap(pages);
}

uint8* allocate_pixels(size_t bytes)
{
    if (bytes >= kLarge)
        return map(bytes);
    const size_t rounded = (bytes + kCacheLine - 1) / kCacheLine * kCacheLine;
    auto* pixels = static_cast<uint8*>(std::aligned_alloc(kCacheLine, rounded));
    if (pixels != nullptr)
        memset(pixels, 0, rounded);
    return pixels;
}

uint8* allocate_unset_pixels(size_t bytes)
{
    uint8* spare = bytes >= kHuge ? take_spare(bytes) : nullptr;
    return spare != nullptr ? spare : allocate_pixels(bytes);
}

void free_pixels(uint8* pixels, size_t bytes)
{
    if (pixels == nullptr || bytes < kLarge)
        std::free(pixels);
    else if (bytes >= kHuge && bytes <= kMostSpare)
        keep_spare({pixels, whole_pages(bytes)});
    else
        unmap({pixels, whole_pages(bytes)});
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
