// The lines of a text as it is broken, in blocks with their sums.

#include "interface/text/LineTable.h"

#include <algorithm>
#include <iterator>

namespace BPrivate {

static const size_t kFull = 64;  // lines of a block as it is made; it is split at twice as many

LineTable::LineTable() : fBlocks(1) { fBlocks[0].lines.resize(1); }

void LineTable::Block::Sum()
{
    bytes = 0;
    height = 0;
    width = 0;
    for (const TextLine& line : lines) {
        bytes += line.length;
        width = std::max(width, line.width);
        height += double(line.height);
    }
}

const std::vector<LineTable::Sums>& LineTable::_Sums() const
{
    fSums.resize(fBlocks.size() + 1);
    for (; fSummed < fBlocks.size(); fSummed++) {
        const Block& block = fBlocks[fSummed];
        const Sums& before = fSums[fSummed];
        fSums[fSummed + 1] = {before.lines + int32(block.lines.size()), before.bytes + block.bytes,
                              before.height + block.height, std::max(before.width, block.width)};
    }
    return fSums;
}

int32 LineTable::CountLines() const { return _Sums().back().lines; }

int32 LineTable::Length() const { return _Sums().back().bytes; }

double LineTable::Height() const { return _Sums().back().height; }

float LineTable::Width() const { return _Sums().back().width; }

// The block that holds a line.
size_t LineTable::_BlockOf(int32 index) const
{
    const std::vector<Sums>& sums = _Sums();
    const auto after =
        std::upper_bound(sums.begin() + 1, sums.end() - 1, index,
                         [](int32 number, const Sums& before) { return number < before.lines; });
    return size_t(std::distance(sums.begin(), after)) - 1;
}

// The last line that `before` holds for, of what lies before it; the first if it holds for none.
template <class Before>
LineTable::Place LineTable::_Find(Before before) const
{
    const std::vector<Sums>& sums = _Sums();
    const auto end = std::partition_point(sums.begin() + 1, sums.end() - 1, before);
    const auto index = size_t(std::distance(sums.begin(), end)) - 1;
    Sums at = sums[index];
    const std::vector<TextLine>& lines = fBlocks[index].lines;
    size_t line = 0;
    for (; line + 1 < lines.size(); line++) {
        const Sums next = {at.lines + 1, at.bytes + lines[line].length,
                           at.height + double(lines[line].height), 0};
        if (!before(next))
            break;
        at = next;
    }
    return {at.lines, at.bytes, at.height, lines[line]};
}

// The lines before it need not be asked, only added up.
LineTable::Place LineTable::At(int32 index) const
{
    index = std::clamp(index, int32(0), CountLines() - 1);
    const size_t block = _BlockOf(index);
    const Sums& before = fSums[block];
    const TextLine* const lines = fBlocks[block].lines.data();
    const int32 count = index - before.lines;
    int32 bytes = 0;
    double height = 0;
    for (int32 i = 0; i < count; i++) {
        bytes += lines[i].length;
        height += double(lines[i].height);
    }
    return {index, before.bytes + bytes, before.height + height, lines[count]};
}

LineTable::Place LineTable::AtOffset(int32 offset) const
{
    return _Find([=](const Sums& sums) { return sums.bytes <= offset; });
}

LineTable::Place LineTable::AtHeight(double height) const
{
    return _Find([=](const Sums& sums) { return sums.height <= height; });
}

void LineTable::Replace(int32 first, int32 count, const std::vector<TextLine>& lines)
{
    first = std::clamp(first, int32(0), CountLines());
    count = std::clamp(count, int32(0), CountLines() - first);
    if (count == CountLines() && lines.empty())
        return;
    // As many as there were, a common case, move no other line.
    _Insert(first, lines);
    _Remove(first + int32(lines.size()), count);
}

void LineTable::_Insert(int32 first, const std::vector<TextLine>& lines)
{
    if (lines.empty())
        return;
    const size_t index = _BlockOf(first);
    const int32 place = first - fSums[index].lines;
    fSummed = std::min(fSummed, index);
    std::vector<TextLine>& held = fBlocks[index].lines;
    held.insert(held.begin() + place, lines.begin(), lines.end());
    if (held.size() <= 2 * kFull) {
        fBlocks[index].Sum();
        return;
    }
    std::vector<Block> parts;
    for (size_t at = 0; at < held.size(); at += kFull) {
        const size_t end = std::min(at + kFull, held.size());
        Block& part = parts.emplace_back();
        part.lines.assign(held.begin() + ptrdiff_t(at), held.begin() + ptrdiff_t(end));
        part.Sum();
    }
    const auto spot = fBlocks.erase(fBlocks.begin() + ptrdiff_t(index));
    fBlocks.insert(spot, std::make_move_iterator(parts.begin()),
                   std::make_move_iterator(parts.end()));
}

void LineTable::_Remove(int32 first, int32 count)
{
    if (count == 0)
        return;
    const std::vector<Sums> sums = _Sums();
    const int32 end = first + count;
    for (size_t i = 0; i < fBlocks.size(); i++) {
        const int32 from = std::max(first, sums[i].lines), to = std::min(end, sums[i + 1].lines);
        if (from >= to)
            continue;
        std::vector<TextLine>& held = fBlocks[i].lines;
        held.erase(held.begin() + (from - sums[i].lines), held.begin() + (to - sums[i].lines));
        fBlocks[i].Sum();
        fSummed = std::min(fSummed, i);
    }
    std::erase_if(fBlocks, [](const Block& block) { return block.lines.empty(); });
}

}  // namespace BPrivate
