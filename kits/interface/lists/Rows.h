#ifndef INTERFACE_LISTS_ROWS_H
#define INTERFACE_LISTS_ROWS_H

// The rows of a list, in blocks whose sums stand in a tree: places, heights and selections are
// found in logarithmic time however many rows there are.

#include <ListItem.h>

#include <memory>
#include <utility>
#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

// Of a block, or of several.
struct RowSums {
    int32 rows = 0;
    int32 shown = 0;
    int32 selected = 0;  // and shown
    int32 tops = 0;      // of level 0
    int64 height = 0;    // pixels of those that are shown

    RowSums& operator+=(const RowSums& other);
    RowSums& operator-=(const RowSums& other);
};

struct RowBits {
    uint64 words[4] = {};

    bool Has(int32 slot) const { return (words[slot >> 6] >> (slot & 63) & 1) != 0; }
    void Set(int32 slot, bool on);
    void Insert(int32 slot, bool on);  // what is behind moves up
    void Remove(int32 slot);
    int32 CountBefore(int32 slot) const;
    int32 SlotOf(int32 number) const;  // of the bit with that number, from 0
};

struct [[gnu::visibility("hidden")]] RowBlock
{
    static const int32 kMost = 256;

    class Rows* rows;
    int32 place;
    RowSums sums;
    float width = 0;  // of the widest item, if not stale
    bool stale = false;
    bool unsettled = false;  // items do not know yet that they are selected, or are no more
    BListItem* items[kMost];
    int32 heights[kMost];  // pixels
    RowBits shown, selected, disabled, tops;
};

/* Rows have numbers among all, and indexes among those that are shown. What is out of range is not
   there: null, -1 or false. With the list's window locked. */
class [[gnu::visibility("hidden")]] Rows
{
public:
    Rows() = default;
    ~Rows();
    Rows(const Rows&) = delete;

    int32 Count() const { return fTotal.rows; }
    int32 CountShown() const { return fTotal.shown; }
    int32 CountSelected() const { return fTotal.selected; }
    int64 Height() const { return fTotal.height; }
    float Width();

    BListItem* At(int32 row) const;
    BListItem* ShownAt(int32 index) const
    {
        const auto row = static_cast<uint32>(index);
        if (!fAllFull || fTotal.shown != fTotal.rows || row >= static_cast<uint32>(fTotal.rows))
            return _ShownAt(index);
        return fBlocks[row / RowBlock::kMost]->items[row % RowBlock::kMost];
    }
    int32 RowOf(const BListItem* item) const;
    int32 IndexOf(const BListItem* item) const;
    int32 RowOfIndex(int32 index) const;
    int32 IndexOfRow(int32 row) const { return _IndexOf(_PlaceOfRow(row)); }
    // True only for a row that begins at or below `y`.
    bool IsBelow(int32 index, int64 y) const;
    int32 IndexAt(int64 y) const;
    int64 TopOf(int32 index) const;
    int32 HeightOf(int32 index) const;
    // The index of the selected one with that number, from 0.
    int32 SelectedAt(int32 number) const;
    bool Holds(const BListItem* item) const
    {
        return item != nullptr && item->fBlock != nullptr && item->fBlock->rows == this;
    }

    // Whether Insert() would put an item there.
    bool Takes(int32 row, const BListItem* item) const
    {
        return item != nullptr && item->fBlock == nullptr && row >= 0 && row <= fTotal.rows;
    }
    // False for an item that is in a list, and without memory.
    bool Insert(int32 row, BListItem * item, bool shown = true);
    bool InsertAll(int32 row, const std::vector<BListItem*>& items);
    BListItem* Remove(int32 row);
    // As many as there are.
    void RemoveRange(int32 row, int32 count);
    bool Replace(int32 row, BListItem * item);
    // The same items in another order; all keep what they are.
    void Reorder(const std::vector<BListItem*>& items);
    void SetShown(int32 row, int32 count, bool shown);
    // The shown rows from one index to another, or all others; false if nothing changed.
    bool Deselect(int32 from, int32 to) { return _Deselect(from, to, true); }
    bool DeselectExcept(int32 from, int32 to) { return _Deselect(from, to, false); }
    bool SelectRange(int32 from, int32 to);  // those that are enabled
    std::vector<BListItem*> All() const;
    // The shown ones in one piece, until something changes.
    const BListItem** Array();

    // The item itself has changed.
    static void Selected(BListItem * item, bool selected);
    static void Enabled(BListItem * item, bool enabled);
    static void Resized(BListItem * item);
    static void Left(BListItem * item);  // it is being deleted
    static void LevelChanged(BListItem * item);

    // Rows that are selected all at once hear of it when they are asked.
    static void Settle(RowBlock * block)
    {
        if (block != nullptr && block->unsettled)
            _Settle(block);
    }

    // ---- Levels

    // Numbers of rows below, and rows above, as the levels say.
    void CountLevels();
    BListItem* Super(const BListItem* item);
    int32 CountBelow(const BListItem* item);
    // Where a row of this level would hang: the nearest above with a lower one.
    BListItem* SuperAt(int32 row, uint32 level);
    bool IsShown(const BListItem* item) const { return IndexOf(item) >= 0; }
    // The row of level 0 with that number, from 0.
    int32 RowOfTop(int32 number) const;
    // Counts a row that came, or with -1 one that goes, for all above it.
    void CountUp(BListItem * super, int32 change);
    void SetSuper(BListItem * item, BListItem * super)
    {
        item->fSuper = super;
        item->fBelow = 0;
    }
    // The numbers are found anew when they are asked for; who shows, whoever keeps that must find.
    void LevelsAreStale() { fLevelsStale = fShownStale = true; }
    bool TakeShownStale() { return std::exchange(fShownStale, false); }

private:
    struct Place {
        RowBlock* block = nullptr;
        int32 slot = 0;
    };
    using Blocks = std::vector<std::unique_ptr<RowBlock>>;

    template <auto Field>
    int32 _Find(int64 wanted, int64 * before) const;
    RowSums _Before(int32 place) const;
    void _Add(RowBlock * block, const RowSums& change);
    void _Append();
    void _Rebuild();
    BListItem* _ShownAt(int32 index) const;
    Place _PlaceOfRow(int32 row) const;
    Place _PlaceOfIndex(int32 index) const;
    Place _PlaceOf(const BListItem* item) const;
    RowBlock* _MakeRoom(int32 row, int32 * slot);
    void _Put(RowBlock * block, int32 slot, BListItem * item, bool shown);
    void _Take(RowBlock * block, int32 slot);
    void _Shrink(int32 place);
    bool _Deselect(int32 from, int32 to, bool inside);
    void _SetSelected(const Place& place, bool selected);
    int32 _IndexOf(const Place& place) const;
    static void _Settle(RowBlock * block);

    Blocks fBlocks;
    std::vector<RowSums> fTree;  // of Fenwick's kind, over the blocks
    RowSums fTotal;
    mutable RowBlock* fHint = nullptr;  // where the last row was looked up, for its neighbours
    mutable int32 fHintRow = 0;         // the first one there
    std::vector<const BListItem*> fArray;
    bool fArrayValid = false;
    bool fAllFull = false;  // but for the last block: a row's number tells where it is
    bool fLevelsStale = false;
    bool fShownStale = false;
};

}  // namespace BPrivate

#endif  // INTERFACE_LISTS_ROWS_H
