// The lines of a text as it is broken, in blocks with their sums.

#include "interface/text/LineTable.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace BPrivate {

static const size_t kFull = 64;  // lines of a block as it is made; it is split at twice as many

LineTable::LineTable() : fBlocks(1)
{
    fBlocks[0].lines.resize(1);
    _ReserveSums(1);
}

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

// Makes room for the sums of so many blocks, so that they need no memory later.
void LineTable::_ReserveSums(size_t blocks) const
{
    if (fSums.widths.capacity() > blocks)
        return;
    const size_t room = 2 * blocks + 1;
    fSums.lines.reserve(room);
    fSums.bytes.reserve(room);
    fSums.heights.reserve(room);
    fSums.widths.reserve(room);
}

const LineTable::Sums& LineTable::_Sums() const
{
    if (fSummed == fBlocks.size() && fSums.widths.size() == fSummed + 1)
        return fSums;
    const size_t count = fBlocks.size() + 1;
    fSums.lines.resize(count);
    fSums.bytes.resize(count);
    fSums.heights.resize(count);
    fSums.widths.resize(count);
    for (; fSummed < fBlocks.size(); fSummed++) {
        const Block& block = fBlocks[fSummed];
        const size_t next = fSummed + 1;
        fSums.lines[next] = fSums.lines[fSummed] + int32(block.lines.size());
        fSums.bytes[next] = fSums.bytes[fSummed] + block.bytes;
        fSums.heights[next] = fSums.heights[fSummed] + block.height;
        fSums.widths[next] = std::max(fSums.widths[fSummed], block.width);
    }
    return fSums;
}

int32 LineTable::CountLines() const { return _Sums().lines.back(); }

int32 LineTable::Length() const { return _Sums().bytes.back(); }

double LineTable::Height() const { return _Sums().heights.back(); }

float LineTable::Width() const { return _Sums().widths.back(); }

// The block that holds what lies at `limit`, by its sums; the first or last for what is outside.
template <class Number>
static size_t block_at(const std::vector<Number>& sums, Number limit)
{
    const auto after = std::upper_bound(sums.begin() + 1, sums.end() - 1, limit);
    return size_t(std::distance(sums.begin(), after)) - 1;
}

size_t LineTable::_BlockOf(int32 index) const { return block_at(_Sums().lines, index); }

// The last line that `before` holds for, of where it begins; the first if it holds for none.
template <class Number, class Before>
LineTable::Place LineTable::_Find(const std::vector<Number>& sums, Number limit,
                                  Before before) const
{
    const size_t block = block_at(sums, limit);
    const std::vector<TextLine>& lines = fBlocks[block].lines;
    Place at = {fSums.lines[block], fSums.bytes[block], fSums.heights[block], {}};
    size_t line = 0;
    for (; line + 1 < lines.size(); line++) {
        const Place next = {
            at.index + 1, at.offset + lines[line].length, at.top + double(lines[line].height), {}};
        if (!before(next))
            break;
        at = next;
    }
    at.line = lines[line];
    return at;
}

LineTable::Place LineTable::At(int32 index) const
{
    return _Find(_Sums().lines, index, [=](const Place& place) { return place.index <= index; });
}

LineTable::Place LineTable::AtOffset(int32 offset) const
{
    return _Find(_Sums().bytes, offset, [=](const Place& place) { return place.offset <= offset; });
}

LineTable::Place LineTable::AtHeight(double height) const
{
    return _Find(_Sums().heights, height, [=](const Place& place) { return place.top <= height; });
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

void LineTable::Join(int32 first, int32 last, int32 bytes)
{
    const Place from = At(first), to = At(last);
    const size_t index = _BlockOf(from.index);
    Block& block = fBlocks[index];
    block.lines[size_t(from.index - fSums.lines[index])].length =
        to.offset + to.line.length - from.offset + bytes;
    block.Sum();
    fSummed = std::min(fSummed, index);
    _Remove(from.index + 1, to.index - from.index);
}

void LineTable::_Insert(int32 first, const std::vector<TextLine>& lines)
{
    if (lines.empty())
        return;
    const size_t index = _BlockOf(first);
    std::vector<TextLine>& held = fBlocks[index].lines;
    const auto place = held.begin() + (first - fSums.lines[index]);
    if (held.size() + lines.size() <= 2 * kFull) {
        held.insert(place, lines.begin(), lines.end());
        fBlocks[index].Sum();
    } else {
        std::vector<TextLine> all;
        all.reserve(held.size() + lines.size());
        all.insert(all.end(), held.begin(), place);
        all.insert(all.end(), lines.begin(), lines.end());
        all.insert(all.end(), place, held.end());
        _Split(index, all);
    }
    fSummed = std::min(fSummed, index);
}

// Puts blocks with these lines in the place of one. They are whole before any of them is there.
void LineTable::_Split(size_t index, const std::vector<TextLine>& lines)
{
    std::vector<Block> parts;
    for (size_t at = 0; at < lines.size(); at += kFull) {
        const size_t end = std::min(at + kFull, lines.size());
        Block& part = parts.emplace_back();
        part.lines.assign(lines.begin() + ptrdiff_t(at), lines.begin() + ptrdiff_t(end));
        part.Sum();
    }
    const size_t count = fBlocks.size() - 1 + parts.size();
    if (fBlocks.capacity() < count)
        fBlocks.reserve(std::max(count, 2 * fBlocks.capacity()));
    _ReserveSums(count);
    fBlocks[index] = std::move(parts.front());
    fBlocks.insert(fBlocks.begin() + ptrdiff_t(index) + 1,
                   std::make_move_iterator(parts.begin() + 1),
                   std::make_move_iterator(parts.end()));
}

void LineTable::_Remove(int32 first, int32 count)
{
    if (count == 0)
        return;
    const size_t begin = _BlockOf(first);
    auto place = size_t(first - fSums.lines[begin]);
    auto left = size_t(count);
    size_t end = begin;
    for (; left > 0; end++, place = 0) {
        std::vector<TextLine>& held = fBlocks[end].lines;
        const size_t gone = std::min(left, held.size() - place);
        const auto from = held.begin() + ptrdiff_t(place);
        held.erase(from, from + ptrdiff_t(gone));
        fBlocks[end].Sum();
        left -= gone;
    }
    fSummed = std::min(fSummed, begin);
    const auto touched = fBlocks.begin() + ptrdiff_t(end);
    const auto is_empty = [](const Block& block) { return block.lines.empty(); };
    fBlocks.erase(std::remove_if(fBlocks.begin() + ptrdiff_t(begin), touched, is_empty), touched);
}

}  // namespace BPrivate
