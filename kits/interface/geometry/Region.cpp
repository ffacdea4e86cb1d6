#include <Region.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "interface/geometry/Rounding.h"
#include "support/Boxes.h"

namespace {

const int32 kLimit = 1 << 30;  // so that an edge plus one, or a width, never overflows
const clipping_rect kNoRect = BPrivate::kEmptyBox;

using BPrivate::contains;
using BPrivate::intersect;
using BPrivate::is_empty;
using BPrivate::overlap;

int32 clamp(int64 value) { return int32(std::clamp<int64>(value, -kLimit, kLimit)); }

// What survives the cut; kNoRect for an invalid rectangle and for one wholly beyond the limits.
clipping_rect clamped(int64 left, int64 top, int64 right, int64 bottom)
{
    if (left > right || top > bottom || left > kLimit || top > kLimit || right < -kLimit ||
        bottom < -kLimit)
        return kNoRect;
    return {clamp(left), clamp(top), clamp(right), clamp(bottom)};
}

clipping_rect clamped(const clipping_rect& rect)
{
    return clamped(rect.left, rect.top, rect.right, rect.bottom);
}

clipping_rect to_pixels(const BRect& rect)
{
    if (!rect.IsValid())
        return kNoRect;
    using BPrivate::clamped_int;
    const double reach = 2.0 * kLimit - 1;
    return clamped(clamped_int(std::floor(double(rect.left)), reach),
                   clamped_int(std::floor(double(rect.top)), reach),
                   clamped_int(std::ceil(double(rect.right)), reach),
                   clamped_int(std::ceil(double(rect.bottom)), reach));
}

BRect to_brect(const clipping_rect& rect)
{
    return BRect(rect.left, rect.top, rect.right, rect.bottom);
}

// Walks the bands of a rectangle list downwards.
struct BandWalker {
    const clipping_rect* rects;
    const clipping_rect* bandEnd;
    const clipping_rect* end;

    BandWalker(const clipping_rect* list, int32 count)
        : rects(list), bandEnd(list), end(list + count)
    {
        FindBandEnd();
    }
    bool Done() const { return rects == end; }
    int32 Top() const { return rects->top; }
    int32 Bottom() const { return rects->bottom; }
    void Next()
    {
        rects = bandEnd;
        FindBandEnd();
    }

private:
    void FindBandEnd()
    {
        while (bandEnd != end && bandEnd->top == rects->top)
            ++bandEnd;
    }
};

// Appends bands to a growing array, joining what can be joined.
class BandWriter {
public:
    BandWriter() = default;
    BandWriter(const BandWriter&) = delete;
    ~BandWriter() { free(rects); }

    clipping_rect* rects = nullptr;
    int32 count = 0;
    int32 capacity = 0;

    bool Reserve(int64 wanted)
    {
        if (wanted <= capacity)
            return true;
        const int64 grown = std::max<int64>(wanted, int64(capacity) * 2);
        void* memory = grown > INT32_MAX ? nullptr : realloc(rects, grown * sizeof(clipping_rect));
        if (memory == nullptr)
            return false;
        rects = static_cast<clipping_rect*>(memory);
        capacity = int32(grown);
        return true;
    }

    // Merges the spans of [a, aEnd) and [b, bEnd) where `keep` holds into a band of these rows.
    // False if memory runs out.
    template <class Keep>
    bool Add(const clipping_rect* a, const clipping_rect* aEnd, const clipping_rect* b,
             const clipping_rect* bEnd, int32 top, int32 bottom, Keep keep)
    {
        if (!Reserve(int64(count) + (aEnd - a) + (bEnd - b)))
            return false;
        const int32 first = count;
        bool inA = false, inB = false, inside = false;
        while (a != aEnd || b != bEnd) {
            const int32 nextA = a == aEnd ? INT32_MAX : inA ? a->right + 1 : a->left;
            const int32 nextB = b == bEnd ? INT32_MAX : inB ? b->right + 1 : b->left;
            const int32 x = std::min(nextA, nextB);
            if (nextA == x) {
                inA = !inA;
                if (!inA)
                    ++a;
            }
            if (nextB == x) {
                inB = !inB;
                if (!inB)
                    ++b;
            }
            const bool now = keep(inA, inB);
            if (now == inside)
                continue;
            inside = now;
            if (!now)
                rects[count++].right = x - 1;
            else if (count > first && rects[count - 1].right + 1 == x)
                --count;  // goes on where the last one ended
            else
                rects[count] = {x, top, x, bottom};
        }
        Finish(first, top, bottom);
        return true;
    }

private:
    int32 lastBand = 0;  // index of the last complete band's first rectangle

    // A band that continues the one above with the same spans becomes part of it.
    void Finish(int32 first, int32 top, int32 bottom)
    {
        const int32 size = count - first;
        if (size == 0)
            return;
        bool same = size == first - lastBand && first > 0 && rects[lastBand].bottom + 1 == top;
        for (int32 i = 0; same && i < size; i++) {
            const clipping_rect& above = rects[lastBand + i];
            const clipping_rect& below = rects[first + i];
            same = above.left == below.left && above.right == below.right;
        }
        if (!same) {
            lastBand = first;
            return;
        }
        for (int32 i = lastBand; i < first; i++)
            rects[i].bottom = bottom;
        count = first;
    }
};

// Bands of one list are cut at the edges of the other's.
template <class Keep>
bool combine_bands(BandWriter& writer, BandWalker a, BandWalker b, Keep keep)
{
    int32 y = INT32_MIN;
    while (!a.Done() || !b.Done()) {
        const bool inA = !a.Done() && a.Top() <= y;
        const bool inB = !b.Done() && b.Top() <= y;
        int32 last = INT32_MAX;
        if (!a.Done())
            last = std::min(last, inA ? a.Bottom() : a.Top() - 1);
        if (!b.Done())
            last = std::min(last, inB ? b.Bottom() : b.Top() - 1);
        if ((inA || inB) && !writer.Add(a.rects, inA ? a.bandEnd : a.rects, b.rects,
                                        inB ? b.bandEnd : b.rects, y, last, keep))
            return false;
        if (inA && a.Bottom() == last)
            a.Next();
        if (inB && b.Bottom() == last)
            b.Next();
        y = last + 1;
    }
    return true;
}

// The first rectangle of the bands that end at or below row `y`.
const clipping_rect* first_ending_at(const clipping_rect* rects, int32 count, int32 y)
{
    return std::partition_point(rects, rects + count,
                                [=](const clipping_rect& rect) { return rect.bottom < y; });
}

}  // namespace

BRegion::BRegion() : fBounds(kNoRect) {}

BRegion::BRegion(const BRegion& other) : fBounds(kNoRect) { *this = other; }

BRegion::BRegion(const BRect rect) : fBounds(kNoRect) { Set(rect); }

BRegion::BRegion(BRegion&& other) : fBounds(kNoRect) { MoveFrom(other); }

BRegion::~BRegion() { free(fRects); }

BRegion& BRegion::operator=(const BRegion& other)
{
    if (this == &other || (other.fCount > 1 && !_Reserve(other.fCount)))
        return *this;
    fBounds = other.fBounds;
    fCount = other.fCount;
    if (fCount > 1)
        memcpy(fRects, other.fRects, fCount * sizeof(clipping_rect));
    return *this;
}

BRegion& BRegion::operator=(BRegion&& other)
{
    MoveFrom(other);
    return *this;
}

bool BRegion::operator==(const BRegion& other) const
{
    // The rectangles of a set of pixels are unique, so equal sets have equal lists.
    return fCount == other.fCount &&
           memcmp(_Rects(), other._Rects(), fCount * sizeof(clipping_rect)) == 0;
}

void BRegion::Set(BRect rect)
{
    fBounds = to_pixels(rect);
    fCount = !is_empty(fBounds);
}

void BRegion::Set(clipping_rect clipping)
{
    fBounds = clamped(clipping);
    fCount = !is_empty(fBounds);
}

void BRegion::MoveFrom(BRegion& other)
{
    if (this == &other)
        return;
    std::swap(fBounds, other.fBounds);
    std::swap(fRects, other.fRects);
    std::swap(fCount, other.fCount);
    std::swap(fCapacity, other.fCapacity);
    other.MakeEmpty();
}

BRect BRegion::Frame() const { return to_brect(fBounds); }

BRect BRegion::RectAt(int32 index) { return to_brect(RectAtInt(index)); }

BRect BRegion::RectAt(int32 index) const { return to_brect(RectAtInt(index)); }

clipping_rect BRegion::RectAtInt(int32 index) { return std::as_const(*this).RectAtInt(index); }

clipping_rect BRegion::RectAtInt(int32 index) const
{
    return index >= 0 && index < fCount ? _Rects()[index] : kNoRect;
}

bool BRegion::Intersects(BRect rect) const { return Intersects(to_pixels(rect)); }

bool BRegion::Intersects(clipping_rect clipping) const
{
    if (fCount == 0 || is_empty(clipping) || !overlap(fBounds, clipping))
        return false;
    const clipping_rect* end = _Rects() + fCount;
    const clipping_rect* rect = first_ending_at(_Rects(), fCount, clipping.top);
    for (; rect != end && rect->top <= clipping.bottom; ++rect) {
        if (overlap(*rect, clipping))
            return true;
    }
    return false;
}

bool BRegion::Contains(BPoint point) const
{
    using BPrivate::clamped_int;
    const double reach = 2.0 * kLimit - 1;
    return point == point && Contains(clamped_int(std::floor(double(point.x)), reach),
                                      clamped_int(std::floor(double(point.y)), reach));
}

bool BRegion::Contains(int32 x, int32 y) { return std::as_const(*this).Contains(x, y); }

bool BRegion::Contains(int32 x, int32 y) const { return Intersects(clipping_rect{x, y, x, y}); }

void BRegion::PrintToStream() const
{
    Frame().PrintToStream();
    for (int32 i = 0; i < fCount; i++) {
        const clipping_rect& rect = _Rects()[i];
        printf("data[%d] = BRect(l:%d, t:%d, r:%d, b:%d)\n", int(i), int(rect.left), int(rect.top),
               int(rect.right), int(rect.bottom));
    }
}

void BRegion::OffsetBy(const BPoint& point)
{
    using BPrivate::clamped_int;
    OffsetBy(clamped_int(std::floor(point.x + 0.5), INT32_MAX),
             clamped_int(std::floor(point.y + 0.5), INT32_MAX));
}

void BRegion::OffsetBy(int32 x, int32 y)
{
    if (fCount == 0 || (x == 0 && y == 0))
        return;
    const clipping_rect bounds = clamped(int64(fBounds.left) + x, int64(fBounds.top) + y,
                                         int64(fBounds.right) + x, int64(fBounds.bottom) + y);
    if (fCount == 1) {
        fBounds = bounds;
        fCount = !is_empty(bounds);
        return;
    }
    int32 kept = 0;
    for (int32 i = 0; i < fCount; i++) {
        const clipping_rect& rect = fRects[i];
        const clipping_rect moved = clamped(int64(rect.left) + x, int64(rect.top) + y,
                                            int64(rect.right) + x, int64(rect.bottom) + y);
        if (!is_empty(moved))
            fRects[kept++] = moved;
    }
    if (kept == fCount)
        fBounds = bounds;
    else
        _TakeBands(kept);
}

void BRegion::ScaleBy(BSize scale) { ScaleBy(scale.width, scale.height); }

void BRegion::ScaleBy(float x, float y)
{
    if (fCount == 0 || (x == 1 && y == 1))
        return;
    if (!std::isfinite(x) || !std::isfinite(y) || x == 0 || y == 0) {
        MakeEmpty();
        return;
    }
    // Both edges are rounded alike, so rectangles that do not touch still do not overlap.
    const auto scaled = [](int32 edge, float factor) {
        return BPrivate::clamped_int(std::floor(double(edge) * factor), 2.0 * kLimit - 1);
    };
    if (fCount == 1 && !_Reserve(1))
        return;
    int32 kept = 0;
    for (int32 i = 0; i < fCount; i++) {
        const clipping_rect rect = fCount > 1 ? fRects[i] : fBounds;
        const auto [left, right] = std::minmax({scaled(rect.left, x), scaled(rect.right + 1, x)});
        const auto [top, bottom] = std::minmax({scaled(rect.top, y), scaled(rect.bottom + 1, y)});
        const clipping_rect result = clamped(left, top, int64(right) - 1, int64(bottom) - 1);
        if (!is_empty(result))
            fRects[kept++] = result;
    }
    std::sort(fRects, fRects + kept, [](const clipping_rect& a, const clipping_rect& b) {
        return a.top != b.top ? a.top < b.top : a.left < b.left;
    });
    _TakeBands(kept);
}

void BRegion::MakeEmpty()
{
    fBounds = kNoRect;
    fCount = 0;
}

void BRegion::Include(BRect rect) { Include(to_pixels(rect)); }

void BRegion::Include(clipping_rect clipping)
{
    const clipping_rect rect = clamped(clipping);
    if (is_empty(rect) || (fCount == 1 && contains(fBounds, rect)))
        return;
    if (fCount == 0 || contains(rect, fBounds)) {
        fBounds = rect;
        fCount = 1;
        return;
    }
    _Combine(&rect, 1, [](bool a, bool b) { return a || b; });
}

void BRegion::Include(const BRegion* region)
{
    if (region == nullptr || region == this || region->fCount == 0)
        return;
    if (region->fCount == 1)
        Include(region->fBounds);
    else if (fCount == 0)
        *this = *region;
    else
        _Combine(region->fRects, region->fCount, [](bool a, bool b) { return a || b; });
}

void BRegion::Exclude(BRect rect) { Exclude(to_pixels(rect)); }

void BRegion::Exclude(clipping_rect clipping)
{
    const clipping_rect rect = clamped(clipping);
    if (fCount == 0 || is_empty(rect) || !overlap(fBounds, rect))
        return;
    if (contains(rect, fBounds))
        MakeEmpty();
    else
        _Combine(&rect, 1, [](bool a, bool b) { return a && !b; });
}

void BRegion::Exclude(const BRegion* region)
{
    if (region == nullptr)
        return;
    if (region == this)
        MakeEmpty();
    else if (region->fCount == 1)
        Exclude(region->fBounds);
    else if (fCount > 0 && region->fCount > 1 && overlap(fBounds, region->fBounds))
        _Combine(region->fRects, region->fCount, [](bool a, bool b) { return a && !b; });
}

void BRegion::IntersectWith(const BRegion* region)
{
    if (region == nullptr || region == this || fCount == 0)
        return;
    if (region->fCount == 0 || !overlap(fBounds, region->fBounds)) {
        MakeEmpty();
        return;
    }
    if (region->fCount == 1 && contains(region->fBounds, fBounds))
        return;
    if (fCount == 1 && contains(fBounds, region->fBounds))
        *this = *region;
    else if (fCount == 1 && region->fCount == 1)
        fBounds = intersect(fBounds, region->fBounds);
    else
        _Combine(region->_Rects(), region->fCount, [](bool a, bool b) { return a && b; });
}

void BRegion::ExclusiveInclude(const BRegion* region)
{
    if (region == nullptr)
        return;
    if (region == this)
        MakeEmpty();
    else
        _Combine(region->_Rects(), region->fCount, [](bool a, bool b) { return a != b; });
}

// Replaces the region by the pixels for which `keep` of "in this" and "in others" holds.
template <class Keep>
void BRegion::_Combine(const clipping_rect* others, int32 count, Keep keep)
{
    BandWriter writer;
    if (!writer.Reserve(fCount + count) ||
        !combine_bands(writer, BandWalker(_Rects(), fCount), BandWalker(others, count), keep))
        return;
    std::swap(fRects, writer.rects);
    fCapacity = writer.capacity;
    fCount = writer.count;
    fBounds = fCount > 0 ? fRects[0] : kNoRect;
    for (int32 i = 1; i < fCount; i++) {
        fBounds.left = std::min(fBounds.left, fRects[i].left);
        fBounds.right = std::max(fBounds.right, fRects[i].right);
        fBounds.bottom = std::max(fBounds.bottom, fRects[i].bottom);
    }
}

// Takes the first `count` entries of the array, banded but perhaps not joined, as the region.
void BRegion::_TakeBands(int32 count)
{
    fCount = count;
    fBounds = count > 0 ? fRects[0] : kNoRect;
    _Combine(nullptr, 0, [](bool a, bool) { return a; });
}

bool BRegion::_Reserve(int32 count)
{
    if (count <= fCapacity)
        return true;
    auto* rects = static_cast<clipping_rect*>(realloc(fRects, count * sizeof(clipping_rect)));
    if (rects == nullptr)
        return false;
    fRects = rects;
    fCapacity = count;
    return true;
}
