// Rectangles of one colour: the operation that programs call most.

#include "server/painter/PainterBrush.h"

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace server {

namespace {

using FillBox = void (*)(uint32* pixels, ptrdiff_t pitch, int32 width, int32 height, uint32 color);

void fill_rows(uint32* pixels, ptrdiff_t pitch, int32 width, int32 height, uint32 color)
{
    for (; height > 0; height--) {
        fill_row(pixels, color, width);
        pixels = reinterpret_cast<uint32*>(reinterpret_cast<uint8*>(pixels) + pitch);
    }
}

#if defined(__x86_64__)

// Aligned stores between two that may overlap them at either end of a row.
__attribute__((target("avx2"))) void fill_rows_avx2(uint32* pixels, ptrdiff_t pitch, int32 width,
                                                    int32 height, uint32 color)
{
    if (width < 8) {
        fill_rows(pixels, pitch, width, height, color);
        return;
    }
    const __m256i eight = _mm256_set1_epi32(int(color));
    for (; height > 0; height--) {
        uint32* const last = pixels + width - 8;
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(pixels), eight);
        auto* to = reinterpret_cast<uint32*>((uintptr_t(pixels) + 32) & ~uintptr_t(31));
        for (; to + 24 < last; to += 32) {
            _mm256_store_si256(reinterpret_cast<__m256i*>(to), eight);
            _mm256_store_si256(reinterpret_cast<__m256i*>(to + 8), eight);
            _mm256_store_si256(reinterpret_cast<__m256i*>(to + 16), eight);
            _mm256_store_si256(reinterpret_cast<__m256i*>(to + 24), eight);
        }
        for (; to < last; to += 8)
            _mm256_store_si256(reinterpret_cast<__m256i*>(to), eight);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(last), eight);
        pixels = reinterpret_cast<uint32*>(reinterpret_cast<uint8*>(pixels) + pitch);
    }
}

const FillBox sFillBox = __builtin_cpu_supports("avx2") ? fill_rows_avx2 : fill_rows;

// The processor's own way fills memory that no cache holds without reading it first.
void fill_far(uint32* pixels, size_t count, uint32 color)
{
    asm volatile("rep stosl" : "+D"(pixels), "+c"(count) : "a"(color) : "memory");
}

#else

const FillBox sFillBox = fill_rows;

void fill_far(uint32* pixels, size_t count, uint32 color) { std::fill_n(pixels, count, color); }

#endif

// Pixels beyond the caches of one core.
const size_t kFar = 1 << 18;

}  // namespace

bool fill_whole_rows(uint32* pixels, ptrdiff_t pitch, int32 width, int32 height, uint32 color)
{
    const ptrdiff_t padding = pitch - ptrdiff_t(width) * 4;
    if (padding < 0 || padding > 64 || size_t(width) * size_t(height) < kFar)
        return false;
    fill_far(pixels, size_t(pitch / 4) * size_t(height - 1) + size_t(width), color);
    return true;
}

void fill_box(uint32* pixels, ptrdiff_t pitch, int32 width, int32 height, uint32 color)
{
    // A program's own static objects may draw before this file's variable is set.
    (sFillBox != nullptr ? sFillBox : fill_rows)(pixels, pitch, width, height, color);
}

}  // namespace server
