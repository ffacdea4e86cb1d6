// Runs of styles around a gap, and the table of styles.

#include "interface/text/StyleRuns.h"

#include <algorithm>
#include <cmath>

namespace BPrivate {

// ---- Styles

uint64 StyleTable::_Hash(const BFont& font, rgb_color color)
{
    uint64 hash = uint64(color.red) | uint64(color.green) << 8 | uint64(color.blue) << 16 |
                  uint64(color.alpha) << 24;
    hash = (hash ^ font.FamilyAndStyle()) * 0x9E3779B97F4A7C15u;
    hash = (hash ^ uint64(font.Face()) ^ uint64(double(font.Size()) * 64)) * 0x9E3779B97F4A7C15u;
    return hash;
}

static bool is_color(rgb_color a, rgb_color b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
}

int32 StyleTable::Find(const BFont& font, rgb_color color)
{
    const uint64 hash = _Hash(font, color);
    const auto [first, end] = fByHash.equal_range(hash);
    for (auto at = first; at != end; ++at) {
        const TextStyle& style = *fStyles[size_t(at->second)];
        if (style.font == font && is_color(style.color, color))
            return at->second;
    }
    GlyphWidths* widths = nullptr;
    for (const auto& held : fWidths) {
        if (held->Font() == font)
            widths = held.get();
    }
    if (widths == nullptr)
        widths = fWidths.emplace_back(std::make_unique<GlyphWidths>(font)).get();
    font_height height;
    font.GetHeight(&height);
    auto style = std::make_unique<TextStyle>();
    style->font = font;
    style->color = color;
    style->ascent = std::ceil(height.ascent);
    style->height =
        std::max(std::ceil(height.ascent + height.descent + height.leading), style->ascent);
    style->widths = widths;
    const auto number = int32(fStyles.size());
    const auto entry = fByHash.emplace(hash, number);
    try {
        fStyles.push_back(std::move(style));
    } catch (...) {
        fByHash.erase(entry);
        throw;
    }
    return number;
}

// ---- Runs

int32 StyleRuns::_From(int32 index) const
{
    const auto before = int32(fBefore.size());
    return index < before        ? fBefore[size_t(index)].at
           : index < CountRuns() ? fLength - fAfter[size_t(CountRuns() - 1 - index)].at
                                 : fLength;
}

StyleRuns::Place StyleRuns::AtIndex(int32 index) const
{
    const auto before = int32(fBefore.size());
    const Start& start =
        index < before ? fBefore[size_t(index)] : fAfter[size_t(CountRuns() - 1 - index)];
    return {index, _From(index), _From(index + 1), start.style};
}

StyleRuns::Place StyleRuns::At(int32 offset) const
{
    int32 low = 0, high = CountRuns() - 1;
    while (low < high) {
        const int32 middle = (low + high + 1) / 2;
        if (_From(middle) <= offset)
            low = middle;
        else
            high = middle - 1;
    }
    return AtIndex(low);
}

// Room for so many runs more, wherever the gap goes.
void StyleRuns::_Reserve(size_t more)
{
    const size_t count = fBefore.size() + fAfter.size() + more;
    for (std::vector<Start>* starts : {&fBefore, &fAfter}) {
        if (starts->capacity() < count)
            starts->reserve(std::max(count, 2 * starts->capacity()));
    }
}

// Runs that start before `offset` stand before the gap, the others behind it.
void StyleRuns::_MoveGap(int32 offset)
{
    while (fBefore.size() > 1 && fBefore.back().at >= offset) {
        fAfter.push_back({fLength - fBefore.back().at, fBefore.back().style});
        fBefore.pop_back();
    }
    while (!fAfter.empty() && fLength - fAfter.back().at < offset) {
        fBefore.push_back({fLength - fAfter.back().at, fAfter.back().style});
        fAfter.pop_back();
    }
}

// Makes one of the runs on both sides of the gap if they are alike.
void StyleRuns::_Join()
{
    if (!fAfter.empty() && fBefore.back().style == fAfter.back().style)
        fAfter.pop_back();
}

void StyleRuns::Insert(int32 offset, int32 length)
{
    _MoveGap(std::max(offset, int32(1)));
    fLength += length;
}

void StyleRuns::Remove(int32 from, int32 to)
{
    if (from >= to)
        return;
    _MoveGap(from);
    int32 last = -1;  // the style of the last run that begins inside
    while (!fAfter.empty() && fLength - fAfter.back().at < to) {
        last = fAfter.back().style;
        fAfter.pop_back();
    }
    const bool begins = !fAfter.empty() && fLength - fAfter.back().at == to;
    fLength -= to - from;
    if (from == 0 && fLength > 0) {
        // What stands first in the text gives its style to the first run.
        if (begins) {
            fBefore[0].style = fAfter.back().style;
            fAfter.pop_back();
        } else if (last >= 0) {
            fBefore[0].style = last;
        }
    } else if (last >= 0 && !begins && from < fLength) {
        fAfter.push_back({fLength - from, last});
    }
    _Join();
}

void StyleRuns::Set(int32 from, int32 to, int32 style)
{
    if (from >= to)
        return;
    _Reserve(2);  // it, and what is left of the one behind it
    const Place end = At(to);
    const bool splits = to < fLength && end.from < to;
    _MoveGap(from);
    while (!fAfter.empty() && fLength - fAfter.back().at < to)
        fAfter.pop_back();
    if (splits)
        fAfter.push_back({fLength - to, end.style});
    if (from == 0)
        fBefore[0].style = style;
    else if (fBefore.back().style != style)
        fBefore.push_back({from, style});
    _Join();
}

std::vector<StyleRun> StyleRuns::Copy(int32 from, int32 to) const
{
    std::vector<StyleRun> runs;
    for (int32 index = from < to ? At(from).index : 0; from < to; index++) {
        const Place place = AtIndex(index);
        const int32 end = std::min(place.to, to);
        runs.push_back({end - from, place.style});
        from = end;
    }
    return runs;
}

void StyleRuns::Put(int32 from, const std::vector<StyleRun>& runs)
{
    _Reserve(2 * runs.size());
    for (const StyleRun& run : runs) {
        Set(from, from + run.length, run.style);
        from += run.length;
    }
}

void StyleRuns::Reset(int32 length, int32 style)
{
    fAfter.clear();
    fBefore.assign(1, {0, style});
    fLength = length;
}

}  // namespace BPrivate
