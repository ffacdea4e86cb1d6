// A window's finished pixels: copied in by its thread, copied out by whoever feeds the screen.

#include "server/screen/FrontBuffer.h"
#include "support/Boxes.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace server {

static const int32 kMaxSide = 32767;             // what an X server takes
static const int64 kMaxPixels = int64(1) << 27;  // half a gigabyte
static const uint32 kOpaque = 0xff000000;
static const uint32 kUnpainted = 0x00d8d8d8;  // the panel's grey
static const size_t kMaxDirty = 16;           // more are joined to one

static clipping_rect clip(const clipping_rect& rect, int32 width, int32 height)
{
    return BPrivate::intersect(rect, {0, 0, width - 1, height - 1});
}

FrontBuffer::~FrontBuffer()
{
    if (fDescriptor >= 0)
        close(fDescriptor);
}

void FrontBuffer::Share()
{
    BPrivate::MutexLock guard(fLock);
    fShares = true;
}

struct FrontBuffer::Memory {
    PixelBuffer pixels;
    int descriptor = -1;
};

// Pixels that nobody has painted; none when memory runs out.
FrontBuffer::Memory FrontBuffer::_Make(int32 width, int32 height)
{
    return {make_pixels(size_t(width) * size_t(height) * sizeof(uint32)), -1};
}

void FrontBuffer::_Take(Memory& memory, int32 width, int32 height)
{
    if (fDescriptor >= 0)
        close(fDescriptor);
    fPixels = std::move(memory.pixels);
    fDescriptor = memory.descriptor;
    fWidth = width;
    fHeight = height;
    fDirty.assign(1, {0, 0, width - 1, height - 1});
}

bool FrontBuffer::Resize(int32 unitWidth, int32 unitHeight)
{
    if (unitWidth < 1 || unitHeight < 1 || unitWidth > kMaxSide || unitHeight > kMaxSide)
        return false;
    BPrivate::MutexLock guard(fLock);
    const int32 width = first_pixel(unitWidth, fScale), height = first_pixel(unitHeight, fScale);
    if (int64(width) * height > kMaxPixels)
        return false;
    if (width == fWidth && height == fHeight)
        return true;
    Memory memory = _Make(width, height);
    if (memory.pixels == nullptr)
        return false;
    const size_t row = size_t(width) * sizeof(uint32);
    const size_t kept = size_t(std::min(width, fWidth)) * sizeof(uint32);
    for (int32 y = 0; y < std::min(height, fHeight); y++)
        memcpy(memory.pixels.get() + y * row, _Row(y), kept);
    _Take(memory, width, height);
    fUnitWidth = unitWidth;
    fUnitHeight = unitHeight;
    return true;
}

bool FrontBuffer::_Rescale(float scale)
{
    const int32 width = first_pixel(fUnitWidth, scale), height = first_pixel(fUnitHeight, scale);
    if (int64(width) * height > kMaxPixels)
        return false;
    Memory memory = _Make(width, height);
    if (memory.pixels == nullptr)
        return false;
    _Take(memory, width, height);
    fScale = scale;
    return true;
}

bool FrontBuffer::Copy(const Surface& surface, const clipping_rect* rects, int32 count)
{
    if (surface.bits == nullptr || rects == nullptr)
        return false;
    BPrivate::MutexLock guard(fLock);
    bool wasClean = fDirty.empty();
    if (surface.scale != fScale && !_Rescale(surface.scale))
        return false;
    int32 width = std::min(fWidth, surface.width);
    int32 height = std::min(fHeight, surface.height);
    for (int32 i = 0; i < count; i++) {
        clipping_rect rect = clip(rects[i], width, height);
        if (BPrivate::is_empty(rect))
            continue;
        int32 length = rect.right - rect.left + 1;
        for (int32 y = rect.top; y <= rect.bottom; y++) {
            auto* from =
                reinterpret_cast<const uint32*>(surface.bits + ptrdiff_t(y) * surface.bytesPerRow) +
                rect.left;
            uint32* to = _Row(y) + rect.left;
            for (int32 x = 0; x < length; x++)
                to[x] = from[x] | kOpaque;
        }
        _AddDirty(rect);
    }
    return wasClean && !fDirty.empty();
}

void FrontBuffer::Touch()
{
    BPrivate::MutexLock guard(fLock);
    fDirty.assign(1, {0, 0, fWidth - 1, fHeight - 1});
}

std::vector<clipping_rect> FrontBuffer::TakeDirty(float* scale)
{
    BPrivate::MutexLock guard(fLock);
    *scale = fScale;
    return std::exchange(fDirty, {});
}

bool FrontBuffer::TakeShared(SharedPixels* shared)
{
    BPrivate::MutexLock guard(fLock);
    if (!fPixels.get_deleter().shared) {
        // Only now: a window that waits to be shown would keep a descriptor from the program.
        const size_t count = size_t(fWidth) * size_t(fHeight);
        Memory memory;
        if (fShares)
            memory.pixels = make_shared_pixels(count * sizeof(uint32), &memory.descriptor);
        if (memory.pixels == nullptr)
            return false;
        const auto* from = reinterpret_cast<const uint32*>(fPixels.get());
        std::transform(from, from + count, reinterpret_cast<uint32*>(memory.pixels.get()),
                       [](uint32 pixel) { return pixel != 0 ? pixel : kUnpainted; });
        _Take(memory, fWidth, fHeight);
    }
    shared->descriptor = std::exchange(fDescriptor, -1);
    shared->width = fWidth;
    shared->height = fHeight;
    shared->scale = fScale;
    shared->dirty = std::exchange(fDirty, {});
    return true;
}

void FrontBuffer::Draw(const clipping_rect& wanted, const Surface& target, int32 x, int32 y)
{
    BPrivate::MutexLock guard(fLock);
    const double step = double(fScale) / double(target.scale);
    const auto place = [step](int32 at) { return int32((double(at) + 0.5) * step); };
    clipping_rect rect =
        clip(wanted, first_pixel(fUnitWidth, target.scale), first_pixel(fUnitHeight, target.scale));
    int32 dx = x - wanted.left;
    int32 dy = y - wanted.top;
    rect.left = std::max(rect.left, -dx);
    rect.top = std::max(rect.top, -dy);
    rect.right = std::min(rect.right, target.width - 1 - dx);
    rect.bottom = std::min(rect.bottom, target.height - 1 - dy);
    for (int32 row = rect.top; row <= rect.bottom; row++) {
        const uint32* from = _Row(step == 1 ? row : std::min(place(row), fHeight - 1));
        uint8* bits = target.bits + ptrdiff_t(row + dy) * target.bytesPerRow;
        auto* to = reinterpret_cast<uint32*>(bits);
        for (int32 column = rect.left; column <= rect.right; column++) {
            uint32 pixel = from[step == 1 ? column : std::min(place(column), fWidth - 1)];
            to[column + dx] = (pixel != 0 ? pixel : kUnpainted) | kOpaque;
        }
    }
}

void FrontBuffer::_AddDirty(const clipping_rect& rect)
{
    for (const clipping_rect& dirty : fDirty) {
        if (BPrivate::contains(dirty, rect))
            return;
    }
    fDirty.push_back(rect);
    if (fDirty.size() <= kMaxDirty)
        return;
    clipping_rect all = BPrivate::kEmptyBox;
    for (const clipping_rect& dirty : fDirty)
        all = BPrivate::unite(all, dirty);
    fDirty.assign(1, all);
}

}  // namespace server
