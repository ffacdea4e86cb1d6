// Blocks of rows and the tree over them.

#include "interface/lists/Rows.h"

#include <string.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>
#include <utility>

namespace BPrivate {

static const int32 kFew = 64;    // rows of a block that joins the next one
static const int32 kAhead = 24;  // items are asked for from memory before their turn

// ---- Sums and bits

RowSums& RowSums::operator+=(const RowSums& other)
{
    rows += other.rows;
    shown += other.shown;
    selected += other.selected;
    tops += other.tops;
    height += other.height;
    return *this;
}

RowSums& RowSums::operator-=(const RowSums& other)
{
    rows -= other.rows;
    shown -= other.shown;
    selected -= other.selected;
    tops -= other.tops;
    height -= other.height;
    return *this;
}

static uint64 below(int32 bit) { return (uint64(1) << bit) - 1; }

void RowBits::Set(int32 slot, bool on)
{
    const uint64 bit = uint64(1) << (slot & 63);
    uint64& word = words[slot >> 6];
    word = on ? word | bit : word & ~bit;
}

void RowBits::Insert(int32 slot, bool on)
{
    const int32 first = slot >> 6;
    for (int32 i = 3; i > first; i--)
        words[i] = words[i] << 1 | words[i - 1] >> 63;
    const uint64 low = below(slot & 63);
    words[first] = (words[first] & ~low) << 1 | (words[first] & low);
    Set(slot, on);
}

void RowBits::Remove(int32 slot)
{
    const int32 first = slot >> 6;
    const uint64 low = below(slot & 63);
    words[first] = (words[first] >> 1 & ~low) | (words[first] & low);
    for (int32 i = first; i < 3; i++) {
        words[i] |= words[i + 1] << 63;
        words[i + 1] >>= 1;
    }
}

int32 RowBits::CountBefore(int32 slot) const
{
    int32 count = 0;
    for (int32 i = 0; i < slot >> 6; i++)
        count += std::popcount(words[i]);
    return slot < 256 ? count + std::popcount(words[slot >> 6] & below(slot & 63)) : count;
}

int32 RowBits::SlotOf(int32 number) const
{
    int32 i = 0;
    for (int32 count; number >= (count = std::popcount(words[i])); i++)
        number -= count;
    uint64 word = words[i];
    while (number-- > 0)
        word &= word - 1;
    return i * 64 + std::countr_zero(word);
}

// ---- The tree

// Pixels of a row: its height rounded up, and the one that ends it.
static int32 pixels_of(const BListItem* item)
{
    const float height = std::ceil(item->Height());
    return height > 0 ? static_cast<int32>(std::min(height, 1e6f)) + 1 : 1;
}

// The block in which the sum of a field goes beyond `wanted`, and the sum before it.
template <auto Field>
int32 Rows::_Find(int64 wanted, int64* before) const
{
    const auto count = static_cast<int32>(fBlocks.size());
    int32 at = 0;
    int64 sum = 0;
    for (auto step = static_cast<int32>(std::bit_floor(static_cast<uint32>(count))); step > 0;
         step >>= 1) {
        if (at + step <= count && sum + fTree[at + step].*Field <= wanted) {
            at += step;
            sum += fTree[at].*Field;
        }
    }
    *before = sum;
    return at;
}

RowSums Rows::_Before(int32 place) const
{
    RowSums sums;
    for (int32 i = place; i > 0; i &= i - 1)
        sums += fTree[i];
    return sums;
}

void Rows::_Add(RowBlock* block, const RowSums& change)
{
    if (change.rows != 0 && fHint != block)
        fHint = nullptr;
    if (change.rows != 0 && block != fBlocks.back().get())
        fAllFull = false;
    block->sums += change;
    fTotal += change;
    const auto count = static_cast<int32>(fBlocks.size());
    for (int32 i = block->place + 1; i <= count; i += i & -i)
        fTree[i] += change;
    fArrayValid = false;
}

// After an empty block came at the end.
void Rows::_Append()
{
    const size_t at = fBlocks.size();
    RowBlock* const block = fBlocks.back().get();
    block->place = static_cast<int32>(at) - 1;
    fAllFull = fAllFull && (at == 1 || fBlocks[at - 2]->sums.rows == RowBlock::kMost);
    RowSums sums = _Before(block->place);
    sums -= _Before(static_cast<int32>(at & (at - 1)));
    fTree.push_back(sums);
}

// After blocks came or went.
void Rows::_Rebuild()
{
    fTree.assign(fBlocks.size() + 1, RowSums());
    fTotal = RowSums();
    fHint = nullptr;
    fAllFull = true;
    for (size_t i = 0; i < fBlocks.size(); i++) {
        fAllFull = fAllFull && (i == 0 || fBlocks[i - 1]->sums.rows == RowBlock::kMost);
        fBlocks[i]->place = static_cast<int32>(i);
        fTotal += fBlocks[i]->sums;
        fTree[i + 1] += fBlocks[i]->sums;
        const size_t above = i + 1 + ((i + 1) & -(i + 1));
        if (above < fTree.size())
            fTree[above] += fTree[i + 1];
    }
    fArrayValid = false;
}

Rows::~Rows()
{
    for (const auto& block : fBlocks) {
        Settle(block.get());
        for (int32 i = 0; i < block->sums.rows; i++) {
            block->items[i]->fBlock = nullptr;
            block->items[i]->fSuper = nullptr;
        }
    }
}

// ---- Finding

Rows::Place Rows::_PlaceOfRow(int32 row) const
{
    if (row < 0 || row >= fTotal.rows)
        return {};
    if (fAllFull)
        return {fBlocks[size_t(row / RowBlock::kMost)].get(), row % RowBlock::kMost};
    RowBlock* const first = fBlocks.front().get();
    if (row < first->sums.rows)
        return {first, row};
    RowBlock* const last = fBlocks.back().get();
    if (row >= fTotal.rows - last->sums.rows)
        return {last, row - (fTotal.rows - last->sums.rows)};
    if (fHint == nullptr || row < fHintRow || row >= fHintRow + fHint->sums.rows) {
        int64 before;
        fHint = fBlocks[_Find<&RowSums::rows>(row, &before)].get();
        fHintRow = static_cast<int32>(before);
    }
    return {fHint, row - fHintRow};
}

Rows::Place Rows::_PlaceOfIndex(int32 index) const
{
    if (index < 0 || index >= fTotal.shown)
        return {};
    if (fTotal.shown == fTotal.rows)
        return _PlaceOfRow(index);
    int64 before = fTotal.shown - fBlocks.back()->sums.shown;
    RowBlock* block = fBlocks.back().get();
    if (index < before)
        block = fBlocks[_Find<&RowSums::shown>(index, &before)].get();
    const auto number = static_cast<int32>(index - before);
    const bool all = block->sums.shown == block->sums.rows;
    return {block, all ? number : block->shown.SlotOf(number)};
}

Rows::Place Rows::_PlaceOf(const BListItem* item) const
{
    if (!Holds(item))
        return {};
    RowBlock* block = item->fBlock;
    return {block,
            static_cast<int32>(std::find(block->items, block->items + block->sums.rows - 1, item) -
                               block->items)};
}

int32 Rows::_IndexOf(const Place& place) const
{
    if (place.block == nullptr || !place.block->shown.Has(place.slot))
        return -1;
    return _Before(place.block->place).shown + place.block->shown.CountBefore(place.slot);
}

BListItem* Rows::At(int32 row) const
{
    const Place place = _PlaceOfRow(row);
    return place.block != nullptr ? place.block->items[place.slot] : nullptr;
}

BListItem* Rows::_ShownAt(int32 index) const
{
    const Place place = _PlaceOfIndex(index);
    return place.block != nullptr ? place.block->items[place.slot] : nullptr;
}

int32 Rows::RowOf(const BListItem* item) const
{
    const Place place = _PlaceOf(item);
    return place.block != nullptr ? _Before(place.block->place).rows + place.slot : -1;
}

int32 Rows::IndexOf(const BListItem* item) const { return _IndexOf(_PlaceOf(item)); }

int32 Rows::RowOfIndex(int32 index) const
{
    const Place place = _PlaceOfIndex(index);
    return place.block != nullptr ? _Before(place.block->place).rows + place.slot : -1;
}

int32 Rows::IndexAt(int64 y) const
{
    if (y < 0 || y >= fTotal.height)
        return -1;
    int64 top;
    const RowBlock* block = fBlocks[_Find<&RowSums::height>(y, &top)].get();
    int32 slot = 0;
    for (;; slot++) {
        if (!block->shown.Has(slot))
            continue;
        top += block->heights[slot];
        if (top > y)
            break;
    }
    return _Before(block->place).shown + block->shown.CountBefore(slot);
}

int64 Rows::TopOf(int32 index) const
{
    const Place place = _PlaceOfIndex(index);
    if (place.block == nullptr)
        return index < 0 ? 0 : fTotal.height;
    if (index == fTotal.shown - 1)
        return fTotal.height - place.block->heights[place.slot];
    int64 top = _Before(place.block->place).height;
    for (int32 i = 0; i < place.slot; i++)
        top += place.block->shown.Has(i) ? place.block->heights[i] : 0;
    return top;
}

bool Rows::IsBelow(int32 index, int64 y) const
{
    if (index >= 0 && index == fTotal.shown - 1)
        return TopOf(index) >= y;  // which is known without a sum
    const Place place = _PlaceOfIndex(index);
    return place.block != nullptr && _Before(place.block->place).height >= y;
}

int32 Rows::HeightOf(int32 index) const
{
    const Place place = _PlaceOfIndex(index);
    return place.block != nullptr ? place.block->heights[place.slot] : 0;
}

static RowBits both(const RowBlock& block)
{
    RowBits bits;
    for (int32 i = 0; i < 4; i++)
        bits.words[i] = block.shown.words[i] & block.selected.words[i];
    return bits;
}

int32 Rows::SelectedAt(int32 number) const
{
    if (number < 0 || number >= fTotal.selected)
        return -1;
    int64 before;
    RowBlock* block = fBlocks[_Find<&RowSums::selected>(number, &before)].get();
    return _IndexOf({block, both(*block).SlotOf(static_cast<int32>(number - before))});
}

float Rows::Width()
{
    float widest = 0;
    for (const auto& block : fBlocks) {
        if (block->stale) {
            block->width = 0;
            for (int32 i = 0; i < block->sums.rows; i++) {
                if (block->shown.Has(i))
                    block->width = std::max(block->width, block->items[i]->fWidth);
            }
            block->stale = false;
        }
        widest = std::max(widest, block->width);
    }
    return widest;
}

std::vector<BListItem*> Rows::All() const
{
    std::vector<BListItem*> all;
    all.reserve(static_cast<size_t>(fTotal.rows));
    for (const auto& block : fBlocks)
        all.insert(all.end(), block->items, block->items + block->sums.rows);
    return all;
}

const BListItem** Rows::Array()
{
    if (!fArrayValid) {
        fArray.clear();
        fArray.reserve(static_cast<size_t>(fTotal.shown) + 1);
        for (const auto& block : fBlocks) {
            for (int32 i = 0; i < block->sums.rows; i++) {
                if (block->shown.Has(i))
                    fArray.push_back(block->items[i]);
            }
        }
        fArrayValid = true;
    }
    return fArray.data();
}

// ---- Coming and going

static RowSums sums_of(const RowBlock* block, int32 slot)
{
    RowSums sums;
    sums.rows = 1;
    sums.tops = block->tops.Has(slot);
    if (block->shown.Has(slot)) {
        sums.shown = 1;
        sums.selected = block->selected.Has(slot);
        sums.height = block->heights[slot];
    }
    return sums;
}

// Sums of the whole block, from what its rows say.
static void sum_up(RowBlock* block, int32 rows)
{
    block->sums = RowSums();
    for (int32 i = 0; i < rows; i++)
        block->sums += sums_of(block, i);
    block->stale = true;
}

// Writes a row into a place that is free.
void Rows::_Put(RowBlock* block, int32 slot, BListItem* item, bool shown)
{
    item->fBlock = block;
    block->items[slot] = item;
    block->heights[slot] = pixels_of(item);
    block->shown.Set(slot, shown);
    block->selected.Set(slot, item->fSelected);
    block->disabled.Set(slot, item->fDisabled);
    block->tops.Set(slot, item->fLevel == 0);
    if (shown)
        block->width = std::max(block->width, item->fWidth);
}

// The block and the slot for a new row: a full block is cut, at its end if that is where rows come.
RowBlock* Rows::_MakeRoom(int32 row, int32* slot)
{
    Place place = _PlaceOfRow(row);
    if (place.block == nullptr && !fBlocks.empty())
        place = {fBlocks.back().get(), fBlocks.back()->sums.rows};
    if (place.block != nullptr && place.block->sums.rows < RowBlock::kMost) {
        *slot = place.slot;
        return place.block;
    }
    auto added = std::make_unique<RowBlock>();
    added->rows = this;
    RowBlock* const block = added.get();
    fTree.reserve(fBlocks.size() + 2);
    const size_t at = place.block != nullptr ? static_cast<size_t>(place.block->place) + 1 : 0;
    fBlocks.insert(fBlocks.begin() + static_cast<ptrdiff_t>(at), std::move(added));
    const int32 cut = place.block == nullptr          ? 0
                      : place.slot == RowBlock::kMost ? RowBlock::kMost
                                                      : RowBlock::kMost / 2;
    if (place.block != nullptr && cut < RowBlock::kMost) {
        Settle(place.block);
        for (int32 i = cut; i < RowBlock::kMost; i++)
            _Put(block, i - cut, place.block->items[i], place.block->shown.Has(i));
        for (int32 i = cut; i < RowBlock::kMost; i++) {
            place.block->shown.Set(i, false);
            place.block->selected.Set(i, false);
            place.block->disabled.Set(i, false);
            place.block->tops.Set(i, false);
        }
        sum_up(block, RowBlock::kMost - cut);
        sum_up(place.block, cut);
    }
    if (cut == RowBlock::kMost)
        _Append();
    else
        _Rebuild();
    if (place.block != nullptr && place.slot <= cut && cut < RowBlock::kMost) {
        *slot = place.slot;
        return place.block;
    }
    *slot = place.block != nullptr ? place.slot - cut : 0;
    return block;
}

bool Rows::Insert(int32 row, BListItem* item, bool shown)
{
    if (!Takes(row, item))
        return false;
    try {
        int32 slot;
        RowBlock* block = _MakeRoom(row, &slot);
        const int32 behind = block->sums.rows - slot;
        if (behind > 0) {
            memmove(block->items + slot + 1, block->items + slot, behind * sizeof(*block->items));
            memmove(block->heights + slot + 1, block->heights + slot,
                    behind * sizeof(*block->heights));
            for (RowBits* bits : {&block->shown, &block->selected, &block->disabled, &block->tops})
                bits->Insert(slot, false);
        }
        _Put(block, slot, item, shown);
        _Add(block, sums_of(block, slot));
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

bool Rows::InsertAll(int32 row, const std::vector<BListItem*>& items)
{
    if (row < 0 || row > fTotal.rows)
        return false;
    size_t done = 0;
    while (done < items.size() && Insert(row + static_cast<int32>(done), items[done]))
        done++;
    if (done == items.size())
        return true;
    while (done-- > 0)
        Remove(row);
    return false;
}

void Rows::_Take(RowBlock* block, int32 slot)
{
    Settle(block);
    RowSums sums = sums_of(block, slot);
    BListItem* const item = block->items[slot];
    item->fBlock = nullptr;
    item->fSuper = nullptr;
    item->fBelow = 0;
    block->stale = block->stale || item->fWidth >= block->width;
    const int32 behind = block->sums.rows - slot - 1;
    memmove(block->items + slot, block->items + slot + 1, behind * sizeof(*block->items));
    memmove(block->heights + slot, block->heights + slot + 1, behind * sizeof(*block->heights));
    block->shown.Remove(slot);
    block->selected.Remove(slot);
    block->disabled.Remove(slot);
    block->tops.Remove(slot);
    RowSums change;
    change -= sums;
    _Add(block, change);
    _Shrink(block->place);
}

// A block with few rows joins the one behind it, one without any goes.
void Rows::_Shrink(int32 place)
{
    const auto at = static_cast<size_t>(place);
    RowBlock* const block = fBlocks[at].get();
    if (block->sums.rows > 0) {
        if (block->sums.rows > kFew || at + 1 == fBlocks.size() ||
            fBlocks[at + 1]->sums.rows + block->sums.rows > RowBlock::kMost - kFew)
            return;
        RowBlock* const next = fBlocks[at + 1].get();
        const int32 start = block->sums.rows;
        Settle(next);
        for (int32 i = 0; i < next->sums.rows; i++)
            _Put(block, start + i, next->items[i], next->shown.Has(i));
        sum_up(block, start + next->sums.rows);
    }
    fBlocks.erase(fBlocks.begin() + static_cast<ptrdiff_t>(block->sums.rows > 0 ? at + 1 : at));
    _Rebuild();
}

BListItem* Rows::Remove(int32 row)
{
    const Place place = _PlaceOfRow(row);
    if (place.block == nullptr)
        return nullptr;
    BListItem* const item = place.block->items[place.slot];
    _Take(place.block, place.slot);
    return item;
}

void Rows::RemoveRange(int32 row, int32 count)
{
    count = std::min(count, fTotal.rows - row);
    while (row >= 0 && count > 0) {
        const Place place = _PlaceOfRow(row);
        RowBlock* const block = place.block;
        if (place.slot > 0 || block->sums.rows > count) {
            _Take(block, place.slot);
            count--;
            continue;
        }
        // Whole blocks go together.
        const size_t first = static_cast<size_t>(block->place);
        size_t end = first;
        while (end < fBlocks.size() && fBlocks[end]->sums.rows <= count) {
            RowBlock& gone = *fBlocks[end++];
            Settle(&gone);
            for (int32 i = 0; i < gone.sums.rows; i++) {
                if (i + kAhead < gone.sums.rows)
                    __builtin_prefetch(gone.items[i + kAhead], 1);
                gone.items[i]->fBlock = nullptr;
                gone.items[i]->fSuper = nullptr;
                gone.items[i]->fBelow = 0;
            }
            count -= gone.sums.rows;
        }
        fBlocks.erase(fBlocks.begin() + static_cast<ptrdiff_t>(first),
                      fBlocks.begin() + static_cast<ptrdiff_t>(end));
        _Rebuild();
    }
}

bool Rows::Replace(int32 row, BListItem* item)
{
    const Place place = _PlaceOfRow(row);
    if (place.block == nullptr || item == nullptr || item->fBlock != nullptr)
        return false;
    Settle(place.block);
    BListItem* const former = place.block->items[place.slot];
    RowSums change;
    change -= sums_of(place.block, place.slot);
    if (former->fBelow > 0)
        LevelsAreStale();
    item->fSuper = std::exchange(former->fSuper, nullptr);
    item->fBelow = std::exchange(former->fBelow, 0);
    former->fBlock = nullptr;
    _Put(place.block, place.slot, item, place.block->shown.Has(place.slot));
    place.block->stale = true;
    change += sums_of(place.block, place.slot);
    _Add(place.block, change);
    return true;
}

void Rows::Reorder(const std::vector<BListItem*>& items)
{
    for (const auto& block : fBlocks)
        Settle(block.get());
    std::vector<bool> shown;
    shown.reserve(items.size());
    for (const BListItem* item : items) {
        const Place place = fTotal.shown < fTotal.rows ? _PlaceOf(item) : Place();
        shown.push_back(place.block == nullptr || place.block->shown.Has(place.slot));
    }
    size_t next = 0;
    for (const auto& block : fBlocks) {
        const int32 rows = block->sums.rows;
        for (int32 i = 0; i < rows; i++, next++) {
            if (next + kAhead < items.size())
                __builtin_prefetch(items[next + kAhead], 1);
            _Put(block.get(), i, items[next], shown[next]);
        }
        sum_up(block.get(), rows);
    }
    _Rebuild();
}

// ---- Showing and selecting

void Rows::SetShown(int32 row, int32 count, bool shown)
{
    while (count > 0) {
        const Place place = _PlaceOfRow(row);
        if (place.block == nullptr)
            return;
        const int32 end = std::min(place.slot + count, place.block->sums.rows);
        RowSums change;
        const int32 sign = shown ? 1 : -1;
        for (int32 i = place.slot; i < end; i++) {
            if (place.block->shown.Has(i) == shown)
                continue;
            place.block->shown.Set(i, shown);
            change.shown += sign;
            change.selected += place.block->selected.Has(i) ? sign : 0;
            change.height += place.block->heights[i] * sign;
        }
        place.block->stale = true;
        _Add(place.block, change);
        count -= end - place.slot;
        row += end - place.slot;
    }
}

void Rows::_Settle(RowBlock* block)
{
    block->unsettled = false;
    for (int32 i = 0; i < block->sums.rows; i++) {
        if (i + kAhead < block->sums.rows)
            __builtin_prefetch(block->items[i + kAhead], 1);
        block->items[i]->fSelected = block->selected.Has(i);
    }
}

void Rows::_SetSelected(const Place& place, bool selected)
{
    if (place.block->selected.Has(place.slot) == selected)
        return;
    place.block->selected.Set(place.slot, selected);
    if (!place.block->shown.Has(place.slot))
        return;
    RowSums change;
    change.selected = selected ? 1 : -1;
    _Add(place.block, change);
}

bool Rows::_Deselect(int32 from, int32 to, bool inside)
{
    bool changed = false;
    for (size_t i = 0; i < fBlocks.size() && fTotal.selected > 0; i++) {
        RowBlock* const block = fBlocks[i].get();
        if (block->sums.selected == 0)
            continue;
        const RowBits bits = both(*block);
        RowSums change;
        if (!inside && (from > to || to < 0)) {
            for (int32 word = 0; word < 4; word++)
                block->selected.words[word] &= ~bits.words[word];
            block->unsettled = true;
            changed = true;
            change.selected = -block->sums.selected;
            _Add(block, change);
            continue;
        }
        const int32 first = _Before(block->place).shown;
        for (int32 word = 0; word < 4; word++) {
            for (uint64 left = bits.words[word]; left != 0; left &= left - 1) {
                const int32 slot = word * 64 + std::countr_zero(left);
                if (slot + kAhead < block->sums.rows)
                    __builtin_prefetch(block->items[slot + kAhead], 1);
                const int32 index =
                    from <= to && to >= 0 ? first + block->shown.CountBefore(slot) : 0;
                if ((index >= from && index <= to) != inside)
                    continue;
                block->items[slot]->fSelected = false;
                block->selected.Set(slot, false);
                change.selected--;
            }
        }
        changed = changed || change.selected != 0;
        _Add(block, change);
    }
    return changed;
}

// All rows of a block that show and are enabled. Returns how many were not selected before.
static int32 select_all(RowBlock* block)
{
    int32 count = 0;
    for (int32 word = 0; word < 4; word++) {
        uint64& selected = block->selected.words[word];
        const uint64 added = block->shown.words[word] & ~block->disabled.words[word] & ~selected;
        selected |= added;
        count += std::popcount(added);
    }
    block->unsettled = block->unsettled || count > 0;
    return count;
}

// Up to `count` of them from a slot on. Returns how many show, and adds how many were not selected.
static int32 select_some(RowBlock* block, int32 slot, int32 count, int32* added)
{
    int32 seen = 0;
    for (; slot < block->sums.rows && seen < count; slot++) {
        if (!block->shown.Has(slot))
            continue;
        seen++;
        if (block->selected.Has(slot) || block->disabled.Has(slot))
            continue;
        block->selected.Set(slot, true);
        block->unsettled = true;
        ++*added;
    }
    return seen;
}

bool Rows::SelectRange(int32 from, int32 to)
{
    bool changed = false;
    from = std::max(from, 0);
    to = std::min(to, fTotal.shown - 1);
    while (from <= to) {
        const auto [block, slot] = _PlaceOfIndex(from);
        const bool whole =
            to - from + 1 >= block->sums.shown && block->shown.CountBefore(slot) == 0;
        RowSums change;
        if (whole)
            change.selected = select_all(block);
        from +=
            whole ? block->sums.shown : select_some(block, slot, to - from + 1, &change.selected);
        changed = changed || change.selected != 0;
        _Add(block, change);
    }
    return changed;
}

// ---- What items say of themselves

void Rows::Selected(BListItem* item, bool selected)
{
    if (item->fBlock != nullptr)
        item->fBlock->rows->_SetSelected(item->fBlock->rows->_PlaceOf(item), selected);
}

void Rows::Enabled(BListItem* item, bool enabled)
{
    if (item->fBlock == nullptr)
        return;
    const Place place = item->fBlock->rows->_PlaceOf(item);
    place.block->disabled.Set(place.slot, !enabled);
}

void Rows::Resized(BListItem* item)
{
    if (item->fBlock == nullptr)
        return;
    Rows* const rows = item->fBlock->rows;
    item->fBlock->stale = true;
    const int32 pixels = pixels_of(item);
    const Place place = rows->_PlaceOf(item);
    const int32 before = std::exchange(place.block->heights[place.slot], pixels);
    if (!place.block->shown.Has(place.slot) || before == pixels)
        return;
    RowSums change;
    change.height = pixels - before;
    rows->_Add(place.block, change);
}

void Rows::Left(BListItem* item)
{
    if (item->fBlock == nullptr)
        return;
    Rows* const rows = item->fBlock->rows;
    const Place place = rows->_PlaceOf(item);
    if (item->fSuper != nullptr || item->fBelow > 0)
        rows->LevelsAreStale();
    rows->_Take(place.block, place.slot);
}

void Rows::LevelChanged(BListItem* item)
{
    if (item->fBlock == nullptr)
        return;
    Rows* const rows = item->fBlock->rows;
    rows->LevelsAreStale();
    const Place place = rows->_PlaceOf(item);
    const bool top = item->fLevel == 0;
    if (place.block->tops.Has(place.slot) == top)
        return;
    place.block->tops.Set(place.slot, top);
    RowSums change;
    change.tops = top ? 1 : -1;
    rows->_Add(place.block, change);
}

// ---- Levels

void Rows::CountLevels()
{
    fLevelsStale = false;
    std::vector<std::pair<BListItem*, int32>> open;  // those above, with their rows
    int32 row = 0;
    const auto close_to = [&](uint32 level) {
        while (!open.empty() && open.back().first->OutlineLevel() >= level) {
            open.back().first->fBelow = row - open.back().second - 1;
            open.pop_back();
        }
    };
    for (const auto& block : fBlocks) {
        for (int32 i = 0; i < block->sums.rows; i++, row++) {
            BListItem* const item = block->items[i];
            close_to(item->OutlineLevel());
            item->fSuper = open.empty() ? nullptr : open.back().first;
            open.emplace_back(item, row);
        }
    }
    close_to(0);
}

BListItem* Rows::Super(const BListItem* item)
{
    if (fLevelsStale)
        CountLevels();
    return Holds(item) ? item->fSuper : nullptr;
}

int32 Rows::CountBelow(const BListItem* item)
{
    if (fLevelsStale)
        CountLevels();
    return Holds(item) ? item->fBelow : 0;
}

BListItem* Rows::SuperAt(int32 row, uint32 level)
{
    if (fLevelsStale)
        CountLevels();
    BListItem* above = At(row - 1);
    while (above != nullptr && above->OutlineLevel() >= level)
        above = above->fSuper;
    return above;
}

int32 Rows::RowOfTop(int32 number) const
{
    if (number < 0 || number >= fTotal.tops)
        return -1;
    int64 before;
    const RowBlock* block = fBlocks[_Find<&RowSums::tops>(number, &before)].get();
    return _Before(block->place).rows + block->tops.SlotOf(static_cast<int32>(number - before));
}

void Rows::CountUp(BListItem* super, int32 change)
{
    for (; super != nullptr; super = super->fSuper)
        super->fBelow += change;
}

}  // namespace BPrivate
