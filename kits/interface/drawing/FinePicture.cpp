// Two copies of a bitmap: one in the screen's pixels, and one as it is known once others may write
// on its bits. Where the bitmap is not as known they have, and the finer picture takes that over as
// squares.

#include <interface/drawing/FinePicture.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace BPrivate {

static uint32* row_of(const server::Surface& surface, int32 y)
{
    return reinterpret_cast<uint32*>(surface.bits + ptrdiff_t(y) * surface.bytesPerRow);
}

std::unique_ptr<FinePicture> FinePicture::Make(const server::Surface& bitmap, float scale,
                                               Bitmap state)
{
    if (scale == 1 || bitmap.bits == nullptr ||
        (bitmap.space != B_RGBA32 && bitmap.space != B_RGB32))
        return nullptr;
    std::unique_ptr<FinePicture> picture(new (std::nothrow) FinePicture);
    if (picture == nullptr)
        return nullptr;
    MutexLock lock(picture->fLock);
    picture->fBitsAreOut = state == Bitmap::InUse;
    return picture->_Remake(bitmap, scale) ? std::move(picture) : nullptr;
}

bool FinePicture::Room::Make(server::Surface* surface, int32 width, int32 height)
{
    const int64 row = int64(width) * 4;
    if (width < 1 || height < 1 || row > INT32_MAX / height)
        return false;
    server::PixelBuffer buffer = server::make_pixels(size_t(row) * size_t(height));
    if (buffer == nullptr)
        return false;
    bits = std::move(buffer);
    surface->bits = bits.get();
    surface->bytesPerRow = int32(row);
    surface->width = width;
    surface->height = height;
    return true;
}

bool FinePicture::_Know(const server::Surface& bitmap)
{
    if (!fKnownRoom.Make(&fKnown, bitmap.width, bitmap.height))
        return false;
    fKnown.space = bitmap.space;
    for (int32 y = 0; y < bitmap.height; y++)
        memcpy(row_of(fKnown, y), row_of(bitmap, y), size_t(bitmap.width) * 4);
    return true;
}

// Without memory for what is known there is no picture any more, but that of the bits.
void FinePicture::_BitsGoOut(const server::Surface& bitmap)
{
    MutexLock lock(fLock);
    if (fBitsAreOut)
        return;
    if (!_Know(bitmap)) {
        fFine = {};
        fTarget = {};
    }
    fBitsAreOut = true;
}

bool FinePicture::_Remake(const server::Surface& bitmap, float scale)
{
    if (!fFineRoom.Make(&fFine, server::first_pixel(bitmap.width, scale),
                        server::first_pixel(bitmap.height, scale)))
        return false;
    if (fBitsAreOut && !_Know(bitmap)) {
        fFine = {};
        return false;
    }
    const server::Surface& from = fBitsAreOut ? fKnown : bitmap;
    fFine.space = bitmap.space;
    fFine.scale = fScale = scale;
    fTarget = {};
    for (int32 y = 0; y < bitmap.height; y++) {
        const clipping_rect line = server::pixels_of({0, y, 0, y}, scale);
        uint32* const first = row_of(fFine, line.top);
        for (int32 x = 0; x < bitmap.width; x++) {
            std::fill(first + server::first_pixel(x, scale),
                      first + server::first_pixel(x + 1, scale), row_of(from, y)[x]);
        }
        for (int32 next = line.top + 1; next <= line.bottom; next++)
            memcpy(row_of(fFine, next), first, size_t(fFine.width) * 4);
    }
    return true;
}

void FinePicture::_Flatten(int32 x, int32 y, uint32 pixel)
{
    const clipping_rect box = server::pixels_of({x, y, x, y}, fFine.scale);
    for (int32 row = box.top; row <= box.bottom; row++)
        std::fill(row_of(fFine, row) + box.left, row_of(fFine, row) + box.right + 1, pixel);
}

void FinePicture::_Agree(const server::Surface& bitmap, const clipping_rect& units)
{
    const size_t bytes = size_t(units.right - units.left + 1) * 4;
    for (int32 y = units.top; y <= units.bottom; y++) {
        const uint32* is = row_of(bitmap, y);
        uint32* known = row_of(fKnown, y);
        if (memcmp(is + units.left, known + units.left, bytes) == 0)
            continue;
        for (int32 x = units.left; x <= units.right; x++) {
            if (is[x] == known[x])
                continue;
            known[x] = is[x];
            _Flatten(x, y, is[x]);
        }
    }
}

static bool is_same(const clipping_rect& one, const clipping_rect& other)
{
    return memcmp(&one, &other, sizeof(one)) == 0;
}

// Most often it is the target of the last time.
const server::Target& FinePicture::_FineTarget(const server::Target& target)
{
    if (fUnits.size() == size_t(target.count) && fTarget.surface != nullptr &&
        std::equal(fUnits.begin(), fUnits.end(), target.clip, is_same))
        return fTarget;
    fUnits.assign(target.clip, target.clip + target.count);
    fClip = fUnits;
    for (clipping_rect& rect : fClip)
        rect = server::pixels_of(rect, fFine.scale);
    fTarget = {&fFine, fClip.data(), target.count, server::pixels_of(target.bounds, fFine.scale)};
    return fTarget;
}

bool FinePicture::_MakeReady(const server::Surface& bitmap, const clipping_rect& units, float scale)
{
    if (fFine.bits == nullptr || (fFine.scale != scale && !_Remake(bitmap, scale)))
        return false;
    if (fKnown.bits != nullptr)
        _Agree(bitmap, units);
    return true;
}

FinePicture::Part FinePicture::Copy(const server::Surface& bitmap, const clipping_rect& units,
                                    float scale)
{
    MutexLock lock(fLock);
    Part part;
    if (!_MakeReady(bitmap, units, scale))
        return part;
    const clipping_rect box = server::pixels_of(units, scale);
    const int32 width = box.right - box.left + 1, height = box.bottom - box.top + 1;
    part.pixels.resize(size_t(width) * size_t(height));
    for (int32 y = 0; y < height; y++) {
        memcpy(part.pixels.data() + size_t(y) * size_t(width),
               row_of(fFine, box.top + y) + box.left, size_t(width) * 4);
    }
    part.surface = {reinterpret_cast<uint8*>(part.pixels.data()), width * 4, width, height,
                    fFine.space};
    return part;
}

}  // namespace BPrivate
