// Rows of pixels, several to a vector. Each operation stands once, as a template over their number,
// and is made for each kind of processor.

#include "server/painter/PainterRows.h"

#include <cstring>

// Inline always, so that it becomes code of the processor that its caller is made for. Vectors are
// handed on by address: how they are handed on by value depends on that processor.
#define IN_VECTORS [[gnu::always_inline]] static inline

namespace server {

namespace {

const uint32 kAlpha = 0xFF000000;
const uint32 kEven = 0x00FF00FF;  // blue and red
const uint32 kOdd = 0xFF00FF00;   // green and alpha
const int32 kBlock = 8;           // pixels that are looked at together for being opaque or clear

template <int kPixels>
struct Vectors {
    typedef uint32 Pixels __attribute__((vector_size(kPixels * 4)));
    typedef uint16 Words __attribute__((vector_size(kPixels * 4)));
    typedef uint64 Pairs __attribute__((vector_size(kPixels < 2 ? 8 : kPixels * 4)));
};

// Every second byte of some pixels, so that each has a word of 16 bits.
template <int kPixels>
struct Halves {
    typename Vectors<kPixels>::Words even, odd;
};

template <class Vector>
IN_VECTORS void load(const uint32* from, Vector* to)
{
    memcpy(to, from, sizeof(*to));
}

template <class Vector>
IN_VECTORS void store(const Vector& from, uint32* to)
{
    memcpy(to, &from, sizeof(from));
}

template <int kPixels>
IN_VECTORS void split(const typename Vectors<kPixels>::Pixels& pixels, Halves<kPixels>* halves)
{
    using Words = typename Vectors<kPixels>::Words;
    halves->even = Words(pixels & kEven);
    halves->odd = Words(pixels >> 8 & kEven);
}

// Joins words whose upper bytes count.
template <int kPixels>
IN_VECTORS void join(const Halves<kPixels>& halves, typename Vectors<kPixels>::Pixels* pixels)
{
    using Pixels = typename Vectors<kPixels>::Pixels;
    *pixels = Pixels(halves.even >> 8) | (Pixels(halves.odd) & kOdd);
}

// Divides words by 255, to the nearest, and leaves the result in the upper bytes.
template <int kPixels>
IN_VECTORS void divide(Halves<kPixels>* halves)
{
    halves->even += 128;
    halves->odd += 128;
    halves->even += halves->even >> 8;
    halves->odd += halves->odd >> 8;
}

// Each pixel's alpha in both of its words.
template <int kPixels>
IN_VECTORS void spread_alpha(const typename Vectors<kPixels>::Pixels& pixels,
                             typename Vectors<kPixels>::Words* alphas)
{
    *alphas = typename Vectors<kPixels>::Words(pixels >> 24 | (pixels >> 24) << 16);
}

// No sum is more than 255 * 256, though differences may lie below 0.
template <int kPixels>
IN_VECTORS void mix(const typename Vectors<kPixels>::Pixels& first,
                    const typename Vectors<kPixels>::Pixels& second,
                    const typename Vectors<kPixels>::Words& weights, uint32 set, uint32* to)
{
    Halves<kPixels> one, other;
    split<kPixels>(first, &one);
    split<kPixels>(second, &other);
    one.even = (one.even << 8) + (other.even - one.even) * weights;
    one.odd = (one.odd << 8) + (other.odd - one.odd) * weights;
    typename Vectors<kPixels>::Pixels mixed;
    join(one, &mixed);
    mixed |= set;
    store(mixed, to);
}

// Operations on pixels of two rows.

struct CopyOpaque {
    template <int kPixels>
    IN_VECTORS void Step(const uint32* from, uint32* to)
    {
        typename Vectors<kPixels>::Pixels pixels;
        load(from, &pixels);
        pixels |= kAlpha;
        store(pixels, to);
    }
};

struct Multiply {
    static const bool kClears = true;  // what is clear becomes 0
    template <int kPixels>
    IN_VECTORS void Step(const uint32* from, uint32* to)
    {
        typename Vectors<kPixels>::Pixels pixels;
        typename Vectors<kPixels>::Words alphas;
        Halves<kPixels> halves;
        load(from, &pixels);
        spread_alpha<kPixels>(pixels, &alphas);
        split<kPixels>(pixels | kAlpha, &halves);
        halves.even *= alphas;
        halves.odd *= alphas;
        divide(&halves);
        join(halves, &pixels);
        store(pixels, to);
    }
};

struct LayOver {
    static const bool kClears = false;
    template <int kPixels>
    IN_VECTORS void Step(const uint32* from, uint32* to)
    {
        typename Vectors<kPixels>::Pixels pixels, ground;
        typename Vectors<kPixels>::Words alphas;
        Halves<kPixels> above, below;
        load(from, &pixels);
        load(to, &ground);
        spread_alpha<kPixels>(pixels, &alphas);
        split<kPixels>(pixels | kAlpha, &above);
        split<kPixels>(ground, &below);
        above.even = above.even * alphas + below.even * (255 - alphas);
        above.odd = above.odd * alphas + below.odd * (255 - alphas);
        divide(&above);
        join(above, &pixels);
        store(pixels, to);
    }
};

struct LayMultiplied {
    static const bool kClears = false;
    template <int kPixels>
    IN_VECTORS void Step(const uint32* from, uint32* to)
    {
        typename Vectors<kPixels>::Pixels pixels, ground;
        typename Vectors<kPixels>::Words alphas;
        Halves<kPixels> below;
        load(from, &pixels);
        load(to, &ground);
        spread_alpha<kPixels>(pixels, &alphas);
        split<kPixels>(ground, &below);
        below.even *= 255 - alphas;
        below.odd *= 255 - alphas;
        divide(&below);
        join(below, &ground);
        pixels += ground;
        store(pixels, to);
    }
};

template <int kPixels, class Operation>
IN_VECTORS void each_step(const uint32* from, uint32* to, int32 count)
{
    int32 at = 0;
    for (; at + kPixels <= count; at += kPixels)
        Operation::template Step<kPixels>(from + at, to + at);
    for (; at < count; at++)
        Operation::template Step<1>(from + at, to + at);
}

enum class Kind { Clear, Mixed, Opaque };

IN_VECTORS Kind kind_of_block(const uint32* pixels)
{
    uint64 pairs[kBlock / 2];
    memcpy(pairs, pixels, sizeof(pairs));
    const uint64 alpha = uint64(kAlpha) << 32 | kAlpha;
    if ((pairs[0] & pairs[1] & pairs[2] & pairs[3] & alpha) == alpha)
        return Kind::Opaque;
    return ((pairs[0] | pairs[1] | pairs[2] | pairs[3]) & alpha) == 0 ? Kind::Clear : Kind::Mixed;
}

// Most pixels of an image are opaque or clear, and so are their neighbours.
template <int kPixels, class Operation>
IN_VECTORS void each_block(const uint32* from, uint32* to, int32 count)
{
    const size_t size = kBlock * sizeof(uint32);
    for (; count >= kBlock; count -= kBlock, from += kBlock, to += kBlock) {
        const Kind kind = kind_of_block(from);
        if (kind == Kind::Opaque) {
            memcpy(to, from, size);
        } else if (kind == Kind::Mixed) {
            for (int32 at = 0; at < kBlock; at += kPixels)
                Operation::template Step<kPixels>(from + at, to + at);
        } else if (Operation::kClears) {
            memset(to, 0, size);
        }
    }
    each_step<kPixels, Operation>(from, to, count);
}

template <int kPixels>
IN_VECTORS void mix_rows_step(const uint32* above, const uint32* below, uint32 weights, uint32 set,
                              uint32* to)
{
    using Pixels = typename Vectors<kPixels>::Pixels;
    Pixels first, second;
    load(above, &first);
    load(below, &second);
    mix<kPixels>(first, second, typename Vectors<kPixels>::Words(Pixels{} + weights), set, to);
}

template <int kPixels>
IN_VECTORS void mix_rows(const uint32* above, const uint32* below, int32 weight, uint32 set,
                         uint32* to, int32 count)
{
    const uint32 weights = uint32(weight) << 16 | uint32(weight);
    int32 at = 0;
    for (; at + kPixels <= count; at += kPixels)
        mix_rows_step<kPixels>(above + at, below + at, weights, set, to + at);
    for (; at < count; at++)
        mix_rows_step<1>(above + at, below + at, weights, set, to + at);
}

IN_VECTORS uint64 pair_at(const uint32* from, int32 index)
{
    uint64 pair;
    memcpy(&pair, from + index, sizeof(pair));
    return pair;
}

template <int kPixels>
IN_VECTORS void mix_columns_step(const uint32* from, Columns columns, int32 at, uint32 set,
                                 uint32* to)
{
    using Pixels = typename Vectors<kPixels>::Pixels;
    using Pairs = typename Vectors<kPixels>::Pairs;
    const uint64 lower = 0xFFFFFFFF;
    const int32* index = columns.indexes + at;
    Pixels first, second, weights;
    load(columns.weights + at, &weights);
    if constexpr (kPixels == 1) {
        const uint64 pair = pair_at(from, index[0]);
        first = Pixels{} + uint32(pair & lower);
        second = Pixels{} + uint32(pair >> 32);
    } else {
        Pairs left, right;
        if constexpr (kPixels == 4) {
            left = Pairs{pair_at(from, index[0]), pair_at(from, index[2])};
            right = Pairs{pair_at(from, index[1]), pair_at(from, index[3])};
        } else {
            left = Pairs{pair_at(from, index[0]), pair_at(from, index[2]), pair_at(from, index[4]),
                         pair_at(from, index[6])};
            right = Pairs{pair_at(from, index[1]), pair_at(from, index[3]), pair_at(from, index[5]),
                          pair_at(from, index[7])};
        }
        first = Pixels((left & lower) | right << 32);
        second = Pixels(left >> 32 | (right & ~lower));
    }
    mix<kPixels>(first, second, typename Vectors<kPixels>::Words(weights), set, to + at);
}

template <int kPixels>
IN_VECTORS void mix_columns(const uint32* from, Columns columns, uint32 set, uint32* to,
                            int32 count)
{
    int32 at = 0;
    for (; at + kPixels <= count; at += kPixels)
        mix_columns_step<kPixels>(from, columns, at, set, to);
    for (; at < count; at++)
        mix_columns_step<1>(from, columns, at, set, to);
}

template <int kPixels>
IN_VECTORS void cover_step(uint32 color, const uint8* coverage, uint32* to)
{
    using Pixels = typename Vectors<kPixels>::Pixels;
    Pixels pixels, weights;
    if constexpr (kPixels == 1) {
        weights = Pixels{} + uint32(coverage[0]);
    } else {
        typedef uint8 Bytes __attribute__((vector_size(kPixels)));
        Bytes bytes;
        memcpy(&bytes, coverage, sizeof(bytes));
        weights = __builtin_convertvector(bytes, Pixels);
    }
    const auto words = typename Vectors<kPixels>::Words(weights | weights << 16);
    Halves<kPixels> above, below;
    load(to, &pixels);
    split<kPixels>(Pixels{} + color, &above);
    split<kPixels>(pixels, &below);
    above.even = above.even * words + below.even * (255 - words);
    above.odd = above.odd * words + below.odd * (255 - words);
    divide(&above);
    join(above, &pixels);
    store(pixels, to);
}

// Most of a text's box is clear.
template <int kPixels>
IN_VECTORS void cover_blocks(uint32 color, const uint8* coverage, uint32* to, int32 count)
{
    for (; count >= kBlock; count -= kBlock, coverage += kBlock, to += kBlock) {
        uint64 block;
        memcpy(&block, coverage, sizeof(block));
        for (int32 at = 0; block != 0 && at < kBlock; at += kPixels)
            cover_step<kPixels>(color, coverage + at, to + at);
    }
    for (; count > 0; count--, coverage++, to++) {
        if (*coverage != 0)
            cover_step<1>(color, coverage, to);
    }
}

// The functions for one kind of processor, and their table.
#define MAKE_ROWS(NAME, PROCESSOR, PIXELS)                                                         \
    namespace NAME {                                                                               \
    PROCESSOR void copy_opaque(const uint32* from, uint32* to, int32 count)                        \
    {                                                                                              \
        each_step<PIXELS, CopyOpaque>(from, to, count);                                            \
    }                                                                                              \
    PROCESSOR void multiply(const uint32* from, uint32* to, int32 count)                           \
    {                                                                                              \
        each_block<PIXELS, Multiply>(from, to, count);                                             \
    }                                                                                              \
    PROCESSOR void rows(const uint32* above, const uint32* below, int32 weight, uint32 set,        \
                        uint32* to, int32 count)                                                   \
    {                                                                                              \
        mix_rows<PIXELS>(above, below, weight, set, to, count);                                    \
    }                                                                                              \
    PROCESSOR void columns(const uint32* from, Columns places, uint32 set, uint32* to,             \
                           int32 count)                                                            \
    {                                                                                              \
        mix_columns<PIXELS>(from, places, set, to, count);                                         \
    }                                                                                              \
    PROCESSOR void lay_over(const uint32* from, uint32* to, int32 count)                           \
    {                                                                                              \
        each_block<PIXELS, LayOver>(from, to, count);                                              \
    }                                                                                              \
    PROCESSOR void lay_multiplied(const uint32* from, uint32* to, int32 count)                     \
    {                                                                                              \
        each_block<PIXELS, LayMultiplied>(from, to, count);                                        \
    }                                                                                              \
    PROCESSOR void cover(uint32 color, const uint8* coverage, uint32* to, int32 count)             \
    {                                                                                              \
        cover_blocks<PIXELS>(color, coverage, to, count);                                          \
    }                                                                                              \
    const RowCode kCode = {copy_opaque, multiply, rows, columns, lay_over, lay_multiplied, cover}; \
    }

MAKE_ROWS(plain, , 4)
#if defined(__x86_64__)
MAKE_ROWS(avx2, __attribute__((target("avx2"))), 8)
#endif

#undef MAKE_ROWS

}  // namespace

const RowCode& row_code()
{
#if defined(__x86_64__)
    static const bool has_avx2 = __builtin_cpu_supports("avx2");
    if (has_avx2)
        return avx2::kCode;
#endif
    return plain::kCode;
}

const RowCode& plain_row_code() { return plain::kCode; }

}  // namespace server

#undef IN_VECTORS
