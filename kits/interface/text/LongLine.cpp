// The parts of a very long line.

#include "interface/text/LongLine.h"

#include <algorithm>

namespace BPrivate {

// So far an edit may change how letters beside it look.
static const int32 kReach = 256;

void LongLine::Begin(int32 start, int32 end)
{
    Part all;
    all.length = end - start;
    all.known = false;
    fParts.assign(1, all);
    fStart = start;
    fLength = all.length;
    fWidth = 0;
}

void LongLine::Replace(int32 from, int32 to, int32 length)
{
    const int32 end = fStart + fLength;
    const int32 change = length - (to - from);
    if (fStart < 0 || from > end)
        return;
    if (to < fStart) {
        fStart += change;
        return;
    }
    if (from < fStart || to > end) {
        Forget();
        return;
    }
    // The parts that the change reaches become one.
    const int32 low = std::max(from - fStart - kReach, int32(0));
    const int32 high = std::min(to - fStart + kReach, fLength);
    size_t first = 0;
    int32 at = 0;
    for (; first + 1 < fParts.size() && at + fParts[first].length <= low; first++)
        at += fParts[first].length;
    Part joined;
    joined.known = false;
    size_t behind = first;
    for (; behind < fParts.size() && (behind == first || at < high); behind++) {
        at += fParts[behind].length;
        joined.length += fParts[behind].length;
    }
    joined.length += change;
    fLength += change;
    const auto spot =
        fParts.erase(fParts.begin() + ptrdiff_t(first), fParts.begin() + ptrdiff_t(behind));
    if (joined.length > 0 || fParts.empty())
        fParts.insert(spot, joined);
}

// The last part that `before` holds for, of where it begins.
template <class Before>
LongLine::Place LongLine::_Find(Before before) const
{
    int32 at = fStart;
    double x = 0;
    size_t part = 0;
    for (; part + 1 < fParts.size(); part++) {
        const int32 next = at + fParts[part].length;
        const double next_x = x + double(fParts[part].width);
        if (!before(next, next_x))
            break;
        at = next;
        x = next_x;
    }
    return {at, at + fParts[part].length, float(x)};
}

LongLine::Place LongLine::AtOffset(int32 offset) const
{
    return _Find([=](int32 at, double) { return at <= offset; });
}

LongLine::Place LongLine::AtX(float x) const
{
    return _Find([=](int32, double at) { return at <= double(x); });
}

}  // namespace BPrivate
