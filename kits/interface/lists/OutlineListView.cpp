// BOutlineListView: rows with rows below them.

#include <OutlineListView.h>

#include <Font.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <vector>

#include <interface/controls/Look.h>
#include <interface/lists/ListData.h>
#include <interface/view/ViewPrivate.h>

using BPrivate::ListData;
using BPrivate::Look;
using BPrivate::Rows;
using BPrivate::ViewRef;

// ---- Construction

BOutlineListView::BOutlineListView(BRect frame, const char* name, list_view_type type,
                                   uint32 resizingMode, uint32 flags)
    : BListView(frame, name, type, resizingMode, flags)
{
}

BOutlineListView::BOutlineListView(const char* name, list_view_type type, uint32 flags)
    : BListView(name, type, flags)
{
}

BOutlineListView::BOutlineListView(BMessage* archive) : BListView(archive)
{
    fData->rows.LevelsAreStale();
    _Refresh();
}

BOutlineListView::~BOutlineListView() {}

BArchivable* BOutlineListView::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BOutlineListView") ? new (std::nothrow)
                                                                     BOutlineListView(archive)
                                                               : nullptr;
}

status_t BOutlineListView::Archive(BMessage* archive, bool deep) const
{
    return BListView::Archive(archive, deep);
}

// ---- Levels

// After the levels changed: who shows is found anew.
void BOutlineListView::_Refresh()
{
    Rows& rows = fData->rows;
    if (!rows.TakeShownStale())
        return;
    bool deselected = false;
    rows.CountLevels();
    rows.SetShown(0, rows.Count(), true);
    for (int32 row = 0; row < rows.Count(); row++) {
        const BListItem* item = rows.At(row);
        if (item->IsExpanded())
            continue;
        const int32 count = rows.CountBelow(item);
        const int32 index = rows.IndexOf(item);
        deselected = rows.Deselect(index + 1, index + count) || deselected;
        rows.SetShown(row + 1, count, false);
        row += count;
    }
    _RowsChanged(0);
    if (deselected)
        _SelectionHasChanged();
}

// Shows what is below a row, but for what is below rows that are closed.
void BOutlineListView::_ShowBelow(int32 row, int32 count)
{
    Rows& rows = fData->rows;
    int32 start = row + 1;
    const int32 end = start + count;
    for (int32 at = start; at < end;) {
        const BListItem* item = rows.At(at++);
        const int32 below = item->IsExpanded() ? 0 : rows.CountBelow(item);
        if (below == 0)
            continue;
        rows.SetShown(start, at - start, true);
        at += below;
        start = at;
    }
    rows.SetShown(start, end - start, true);
}

bool BOutlineListView::_Insert(BListItem* item, int32 row)
{
    _Refresh();
    Rows& rows = fData->rows;
    if (item == nullptr || row < 0 || row > rows.Count())
        return false;
    // It has its size before the rows reckon with it.
    if (Window() != nullptr && rows.Takes(row, item))
        _UpdateItem(item);
    const uint32 level = item->OutlineLevel();
    BListItem* const super = rows.SuperAt(row, level);
    const BListItem* next = rows.At(row);
    const bool adopts = next != nullptr && next->OutlineLevel() > level;
    const bool shown = super == nullptr || (super->IsExpanded() && rows.IsShown(super));
    if (!rows.Insert(row, item, shown))
        return false;
    rows.SetSuper(item, super);
    rows.CountUp(super, 1);
    if (adopts)
        rows.LevelsAreStale();
    return true;
}

// Draws a new row, and the latch of the one above it.
void BOutlineListView::_Came(int32 row, BListItem* super)
{
    const int32 index = fData->rows.IndexOfRow(row);
    if (super != nullptr && fData->rows.CountBelow(super) == 1)
        InvalidateItem(IndexOf(super));
    for (int32* kept : {&fData->anchor, &fData->lead}) {
        if (index >= 0 && *kept >= index)
            ++*kept;
    }
    if (index >= 0)
        _RowsChanged(index);
    _Refresh();
}

bool BOutlineListView::AddUnder(BListItem* item, BListItem* superItem)
{
    if (superItem == nullptr)
        return AddItem(item);
    _Refresh();
    Rows& rows = fData->rows;
    if (item == nullptr || !rows.Holds(superItem) || rows.Holds(item))
        return false;
    item->SetOutlineLevel(superItem->OutlineLevel() + 1);
    if (Window() != nullptr)
        _UpdateItem(item);
    const int32 above = rows.RowOf(superItem);
    const int32 row = above + 1 + rows.CountBelow(superItem);
    const bool shown = superItem->IsExpanded() && rows.IndexOfRow(above) >= 0;
    if (above < 0 || !rows.Insert(row, item, shown))
        return false;
    rows.SetSuper(item, superItem);
    rows.CountUp(superItem, 1);
    _Came(row, superItem);
    return true;
}

bool BOutlineListView::AddItem(BListItem* item) { return AddItem(item, FullListCountItems()); }

bool BOutlineListView::AddItem(BListItem* item, int32 fullListIndex)
{
    if (!_Insert(item, fullListIndex))
        return false;
    _Came(fullListIndex, Superitem(item));
    return true;
}

bool BOutlineListView::AddList(BList* newItems)
{
    return newItems != nullptr && AddList(newItems, FullListCountItems());
}

bool BOutlineListView::AddList(BList* newItems, int32 fullListIndex)
{
    if (newItems == nullptr || fullListIndex < 0 || fullListIndex > FullListCountItems())
        return false;
    for (int32 i = 0; i < newItems->CountItems(); i++) {
        auto* item = static_cast<BListItem*>(newItems->ItemAt(i));
        if (!_Insert(item, fullListIndex + i))
            return false;
    }
    _Refresh();
    _RowsChanged(0);
    return true;
}

bool BOutlineListView::RemoveItem(BListItem* item)
{
    return RemoveItem(FullListIndexOf(item)) != nullptr;
}

BListItem* BOutlineListView::RemoveItem(int32 fullListIndex)
{
    _Refresh();
    Rows& rows = fData->rows;
    BListItem* const item = rows.At(fullListIndex);
    if (item == nullptr)
        return nullptr;
    BListItem* const super = rows.Super(item);
    const int32 count = 1 + rows.CountBelow(item);
    const int32 index = rows.IndexOf(item);
    const int32 shown_before = rows.CountShown();
    const int32 selected_before = rows.CountSelected();
    rows.CountUp(super, -count);
    for (int32 i = count - 1; i >= 0; i--) {
        rows.At(fullListIndex + i)->Deselect();
        rows.Remove(fullListIndex + i);
    }
    if (super != nullptr && rows.CountBelow(super) == 0)
        InvalidateItem(IndexOf(super));
    const int32 gone = shown_before - rows.CountShown();
    for (int32* kept : {&fData->anchor, &fData->lead}) {
        if (index >= 0 && *kept >= index)
            *kept = *kept >= index + gone ? *kept - gone : -1;
    }
    if (index >= 0)
        _RowsChanged(index);
    if (rows.CountSelected() != selected_before)
        _SelectionHasChanged();
    return item;
}

bool BOutlineListView::RemoveItems(int32 fullListIndex, int32 count)
{
    if (FullListItemAt(fullListIndex) == nullptr || count < 0)
        return false;
    if (fullListIndex == 0 && count >= FullListCountItems()) {
        const bool deselected = fData->rows.CountSelected() > 0;
        BListView::MakeEmpty();
        if (deselected)
            _SelectionHasChanged();
        return true;
    }
    const ViewRef self(this);
    while (count > 0 && self.View() != nullptr) {
        const int32 before = FullListCountItems();
        if (RemoveItem(fullListIndex) == nullptr || self.View() == nullptr)
            break;
        count -= before - FullListCountItems();
    }
    return true;
}

void BOutlineListView::MakeEmpty() { BListView::MakeEmpty(); }

// ---- The full list

BListItem* BOutlineListView::FullListItemAt(int32 fullListIndex) const
{
    return fData->rows.At(fullListIndex);
}

int32 BOutlineListView::FullListIndexOf(BPoint where) const
{
    return fData->rows.RowOfIndex(IndexOf(where));
}

int32 BOutlineListView::FullListIndexOf(BListItem* item) const { return fData->rows.RowOf(item); }
BListItem* BOutlineListView::FullListFirstItem() const { return FullListItemAt(0); }

BListItem* BOutlineListView::FullListLastItem() const
{
    return FullListItemAt(FullListCountItems() - 1);
}

bool BOutlineListView::FullListHasItem(BListItem* item) const { return fData->rows.Holds(item); }
int32 BOutlineListView::FullListCountItems() const { return fData->rows.Count(); }
bool BOutlineListView::FullListIsEmpty() const { return FullListCountItems() == 0; }

int32 BOutlineListView::FullListCurrentSelection(int32 index) const
{
    return fData->rows.RowOfIndex(CurrentSelection(index));
}

void BOutlineListView::FullListDoForEach(bool (*func)(BListItem*))
{
    for (int32 i = 0; func != nullptr && i < FullListCountItems(); i++) {
        if (func(FullListItemAt(i)))
            return;
    }
}

void BOutlineListView::FullListDoForEach(bool (*func)(BListItem*, void*), void* arg)
{
    for (int32 i = 0; func != nullptr && i < FullListCountItems(); i++) {
        if (func(FullListItemAt(i), arg))
            return;
    }
}

BListItem* BOutlineListView::Superitem(const BListItem* item) { return fData->rows.Super(item); }

// The full indexes below a row, of all rows for null; false for a row that is not here.
bool BOutlineListView::_Range(const BListItem* super, int32* _first, int32* _count) const
{
    Rows& rows = fData->rows;
    *_first = super != nullptr ? rows.RowOf(super) + 1 : 0;
    *_count = super != nullptr ? rows.CountBelow(super) : rows.Count();
    return super == nullptr || rows.Holds(super);
}

int32 BOutlineListView::CountItemsUnder(BListItem* superItem, bool oneLevelOnly) const
{
    int32 first, count;
    if (!_Range(superItem, &first, &count))
        return 0;
    if (!oneLevelOnly)
        return count;
    int32 direct = 0;
    for (int32 row = first; row < first + count; direct++)
        row += 1 + fData->rows.CountBelow(fData->rows.At(row));
    return direct;
}

BListItem* BOutlineListView::EachItemUnder(BListItem* superItem, bool oneLevelOnly,
                                           BListItem* (*eachFunc)(BListItem*, void*), void* arg)
{
    BListItem* item;
    for (int32 i = 0;
         eachFunc != nullptr && (item = ItemUnderAt(superItem, oneLevelOnly, i)) != nullptr; i++) {
        if (BListItem* answer = eachFunc(item, arg))
            return answer;
    }
    return nullptr;
}

BListItem* BOutlineListView::ItemUnderAt(BListItem* superItem, bool oneLevelOnly, int32 index) const
{
    int32 first, count;
    if (!_Range(superItem, &first, &count) || index < 0 || index >= count)
        return nullptr;
    if (!oneLevelOnly)
        return fData->rows.At(first + index);
    if (superItem == nullptr && fData->rows.At(0)->OutlineLevel() == 0)
        return fData->rows.At(fData->rows.RowOfTop(index));
    int32 row = first;
    for (; index > 0 && row < first + count; index--)
        row += 1 + fData->rows.CountBelow(fData->rows.At(row));
    return row < first + count ? fData->rows.At(row) : nullptr;
}

// ---- Opening and closing

void BOutlineListView::Expand(BListItem* item) { ExpandOrCollapse(item, true); }
void BOutlineListView::Collapse(BListItem* item) { ExpandOrCollapse(item, false); }

bool BOutlineListView::IsExpanded(int32 fullListIndex)
{
    const BListItem* item = FullListItemAt(fullListIndex);
    return item != nullptr && item->IsExpanded();
}

void BOutlineListView::ExpandOrCollapse(BListItem* superItem, bool expand)
{
    Rows& rows = fData->rows;
    _Refresh();
    if (!rows.Holds(superItem) || superItem->IsExpanded() == expand)
        return;
    superItem->SetExpanded(expand);
    const int32 index = IndexOf(superItem);
    const int32 count = rows.CountBelow(superItem);
    if (index < 0 || count == 0)
        return;
    const int32 row = rows.RowOf(superItem);
    const int32 before = rows.CountShown();
    bool deselected = false;
    if (expand) {
        _ShowBelow(row, count);
    } else {
        const int32 next = rows.IndexOf(rows.At(row + count + 1));
        deselected = rows.Deselect(index + 1, next < 0 ? before - 1 : next - 1);
        rows.SetShown(row + 1, count, false);
    }
    const int32 change = rows.CountShown() - before;
    for (int32* kept : {&fData->anchor, &fData->lead}) {
        if (*kept > index)
            *kept = *kept + change > index || change > 0 ? *kept + change : index;
    }
    _RowsChanged(index);
    if (deselected)
        _SelectionHasChanged();
}

// ---- Order

using ItemCompare = int (*)(const BListItem*, const BListItem*);

// Sorts the rows of one level, by pointers to them, and moves with each what is below it.
template <class Sort>
static void sort_level(Rows& rows, std::vector<BListItem*>* all, size_t first, size_t count,
                       const Sort& sort)
{
    std::vector<BListItem*> level;
    for (size_t at = first; at < first + count;
         at += 1 + static_cast<size_t>(rows.CountBelow((*all)[at])))
        level.push_back((*all)[at]);
    std::vector<std::pair<BListItem*, size_t>> places;  // where each was
    size_t place = first;
    for (BListItem* item : level) {
        places.emplace_back(item, place);
        place += 1 + static_cast<size_t>(rows.CountBelow(item));
    }
    std::sort(places.begin(), places.end());
    sort(level.data(), level.size());
    std::vector<BListItem*> sorted;
    sorted.reserve(count);
    for (BListItem* item : level) {
        const auto was =
            std::lower_bound(places.begin(), places.end(), std::pair<BListItem*, size_t>(item, 0));
        const auto start = all->begin() + static_cast<ptrdiff_t>(was->second);
        sorted.insert(sorted.end(), start, start + 1 + rows.CountBelow(item));
    }
    std::copy(sorted.begin(), sorted.end(), all->begin() + static_cast<ptrdiff_t>(first));
}

void BOutlineListView::_Sort(int (*cmp)(const void*, const void*))
{
    _Refresh();
    std::vector<BListItem*> all = fData->rows.All();
    sort_level(fData->rows, &all, 0, all.size(), [cmp](BListItem** items, size_t count) {
        if (count > 0)
            qsort(items, count, sizeof(*items), cmp);
    });
    fData->rows.Reorder(all);
    fData->rows.LevelsAreStale();
    _Refresh();
}

static int compare_items(const void* a, const void* b, void* compare)
{
    return reinterpret_cast<ItemCompare>(compare)(*static_cast<BListItem* const*>(a),
                                                  *static_cast<BListItem* const*>(b));
}

static void sort_levels(Rows& rows, std::vector<BListItem*>* all, size_t first, size_t count,
                        bool deep, ItemCompare compare)
{
    sort_level(rows, all, first, count, [compare](BListItem** items, size_t number) {
        if (number > 0)
            qsort_r(items, number, sizeof(*items), compare_items, reinterpret_cast<void*>(compare));
    });
    for (size_t at = first; deep && at < first + count;) {
        const auto below = static_cast<size_t>(rows.CountBelow((*all)[at]));
        if (below > 0)
            sort_levels(rows, all, at + 1, below, true, compare);
        at += 1 + below;
    }
}

void BOutlineListView::FullListSortItems(ItemCompare compareFunc)
{
    SortItemsUnder(nullptr, false, compareFunc);
}

void BOutlineListView::SortItemsUnder(BListItem* superItem, bool oneLevelOnly,
                                      ItemCompare compareFunc)
{
    _Refresh();
    int32 first, count;
    if (compareFunc == nullptr || !_Range(superItem, &first, &count))
        return;
    std::vector<BListItem*> all = fData->rows.All();
    sort_levels(fData->rows, &all, static_cast<size_t>(first), static_cast<size_t>(count),
                !oneLevelOnly, compareFunc);
    fData->rows.Reorder(all);
    fData->anchor = fData->lead = -1;
    fData->rows.LevelsAreStale();
    _Refresh();
}

// The indexes are of rows that show.
bool BOutlineListView::DoMiscellaneous(MiscCode code, MiscData* data)
{
    _Refresh();
    Rows& rows = fData->rows;
    if (data == nullptr || (code != B_SWAP_OP && code != B_MOVE_OP && code != B_REPLACE_OP))
        return false;
    if (code == B_REPLACE_OP) {
        const int32 row = rows.RowOfIndex(data->replace.index);
        BListItem* item = data->replace.item;
        if (row < 0 || item == nullptr || rows.Holds(item))
            return false;
        item->SetOutlineLevel(rows.At(row)->OutlineLevel());
        if (!rows.Replace(row, item))
            return false;
        if (Window() != nullptr)
            _UpdateItem(item);
        rows.LevelsAreStale();
        _Refresh();
        return true;
    }
    // Move and swap have the same shape.
    BListItem* const one = ItemAt(data->swap.a);
    BListItem* const other = ItemAt(data->swap.b);
    if (one == nullptr || other == nullptr || rows.Super(one) != rows.Super(other))
        return false;
    if (one == other)
        return true;
    std::vector<BListItem*> all = rows.All();
    const auto begin_of = [&](BListItem* item) { return all.begin() + rows.RowOf(item); };
    const auto end_of = [&](BListItem* item) { return begin_of(item) + 1 + rows.CountBelow(item); };
    const bool down = rows.RowOf(one) < rows.RowOf(other);
    BListItem* const upper = down ? one : other;
    BListItem* const lower = down ? other : one;
    if (code == B_MOVE_OP && down) {
        std::rotate(begin_of(one), end_of(one), end_of(other));
    } else if (code == B_MOVE_OP) {
        std::rotate(begin_of(other), begin_of(one), end_of(one));
    } else {
        std::vector<BListItem*> swapped(begin_of(lower), end_of(lower));
        swapped.insert(swapped.end(), end_of(upper), begin_of(lower));
        swapped.insert(swapped.end(), begin_of(upper), end_of(upper));
        std::copy(swapped.begin(), swapped.end(), begin_of(upper));
    }
    rows.Reorder(all);
    rows.LevelsAreStale();  // rows of one super may have different levels
    _Refresh();
    return true;
}

// ---- Drawing

BRect BOutlineListView::LatchRect(BRect itemRect, int32 level) const
{
    const Look look(*be_plain_font);
    const float size = std::ceil(look.Size());
    const float left = itemRect.left + static_cast<float>(level) * look.ItemSpacing();
    const float top = itemRect.top + std::floor((itemRect.Height() - size) / 2);
    return BRect(left, top, left + size, top + size);
}

void BOutlineListView::DrawLatch(BRect itemRect, int32 level, bool collapsed, bool highlighted,
                                 bool misTracked)
{
    const uint32 state = highlighted && !misTracked ? uint32(Look::kPressed) : 0;
    Look(this).DrawArrow(LatchRect(itemRect, level), collapsed ? Look::Way::Right : Look::Way::Down,
                         state);
}

void BOutlineListView::DrawItem(BListItem* item, BRect itemRect, bool complete)
{
    const auto level = static_cast<int32>(item->OutlineLevel());
    if (fData->rows.CountBelow(item) > 0)
        DrawLatch(itemRect, level, !item->IsExpanded(), item == fPressedLatch, false);
    itemRect.left = LatchRect(itemRect, level).right;
    item->DrawItem(this, itemRect, complete);
}

// ---- Pointer and keys

void BOutlineListView::MouseDown(BPoint where)
{
    _Refresh();
    const int32 index = IndexOf(where);
    BListItem* item = ItemAt(index);
    if (item == nullptr || fData->rows.CountBelow(item) == 0 ||
        !LatchRect(ItemFrame(index), static_cast<int32>(item->OutlineLevel())).Contains(where)) {
        BListView::MouseDown(where);
        return;
    }
    MakeFocus();
    fPressedLatch = item;
    fPressedRow = ItemFrame(index);
    SetMouseEventMask(B_POINTER_EVENTS, B_NO_POINTER_HISTORY);
    Invalidate(fPressedRow);
}

void BOutlineListView::MouseUp(BPoint where)
{
    const BListItem* pressed = fPressedLatch;
    if (pressed == nullptr) {
        BListView::MouseUp(where);
        return;
    }
    fPressedLatch = nullptr;
    Invalidate(fPressedRow);
    const int32 index = IndexOf(where);
    BListItem* item = ItemAt(index);
    if (item == pressed &&
        LatchRect(ItemFrame(index), static_cast<int32>(item->OutlineLevel())).Contains(where))
        ExpandOrCollapse(item, !item->IsExpanded());
}

void BOutlineListView::KeyDown(const char* bytes, int32 numBytes)
{
    _Refresh();
    const char key = numBytes == 1 ? bytes[0] : '\0';
    BListItem* item = ItemAt(CurrentSelection(0));
    if (item == nullptr || (key != B_LEFT_ARROW && key != B_RIGHT_ARROW)) {
        BListView::KeyDown(bytes, numBytes);
        return;
    }
    const bool has_rows = fData->rows.CountBelow(item) > 0;
    int32 target = -1;
    if (key == B_RIGHT_ARROW && has_rows && !item->IsExpanded())
        Expand(item);
    else if (key == B_RIGHT_ARROW && has_rows)
        target = IndexOf(item) + 1;
    else if (key == B_LEFT_ARROW && has_rows && item->IsExpanded())
        Collapse(item);
    else if (key == B_LEFT_ARROW && Superitem(item) != nullptr)
        target = IndexOf(Superitem(item));
    if (target >= 0)
        _Go(target, 1);
}

// ---- The rest is the list's

void BOutlineListView::FrameMoved(BPoint newPosition) { BListView::FrameMoved(newPosition); }

void BOutlineListView::FrameResized(float newWidth, float newHeight)
{
    BListView::FrameResized(newWidth, newHeight);
}

void BOutlineListView::MessageReceived(BMessage* message) { BListView::MessageReceived(message); }

BHandler* BOutlineListView::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                             int32 what, const char* property)
{
    return BListView::ResolveSpecifier(message, index, specifier, what, property);
}

status_t BOutlineListView::GetSupportedSuites(BMessage* data)
{
    return BListView::GetSupportedSuites(data);
}

status_t BOutlineListView::Perform(perform_code code, void* data)
{
    return BListView::Perform(code, data);
}

void BOutlineListView::ResizeToPreferred() { BListView::ResizeToPreferred(); }

// With the latches, and how far the deepest row that shows is moved in.
void BOutlineListView::GetPreferredSize(float* _width, float* _height)
{
    BListView::GetPreferredSize(_width, _height);
    if (_width == nullptr || IsEmpty())
        return;
    float inset = 0;
    for (int32 i = 0; i < CountItems(); i++)
        inset = std::max(inset,
                         LatchRect(BRect(), static_cast<int32>(ItemAt(i)->OutlineLevel())).right);
    *_width += inset;
}

void BOutlineListView::MakeFocus(bool focus) { BListView::MakeFocus(focus); }
void BOutlineListView::AllAttached() { BListView::AllAttached(); }
void BOutlineListView::AllDetached() { BListView::AllDetached(); }
void BOutlineListView::DetachedFromWindow() { BListView::DetachedFromWindow(); }
