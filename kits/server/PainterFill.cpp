// Rectangles of one colour: the operation that programs call most.

#include "PainterBrush.h"

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

#else

const FillBox sFillBox = fill_rows;

#endif

}  // namespace

void fill_box(uint32* pixels, ptrdiff_t pitch, int32 width, int32 height, uint32 color)
{
    // A program's own static objects may draw before this file's variable is set.
    (sFillBox != nullptr ? sFillBox : fill_rows)(pixels, pitch, width, height, color);
}

}  // namespace server
