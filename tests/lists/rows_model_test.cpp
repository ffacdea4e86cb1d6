// Lists against plain vectors: every change, and what can be asked after it.

#include <gtest/gtest.h>

#include <List.h>
#include <OutlineListView.h>
#include <StringItem.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

class Item : public BListItem {
public:
    explicit Item(int number, uint32 level = 0) : BListItem(level), number(number) {}
    void DrawItem(BView*, BRect, bool) override {}
    const int number;
};

int number_of(const BListItem* item) { return static_cast<const Item*>(item)->number; }

int by_number(const void* a, const void* b)
{
    return number_of(*static_cast<BListItem* const*>(a)) -
           number_of(*static_cast<BListItem* const*>(b));
}

int by_number_in_full(const BListItem* a, const BListItem* b)
{
    return number_of(a) - number_of(b);
}

float pixels(const BListItem* item) { return std::ceil(item->Height()) + 1; }

}  // namespace

class FlatModel : public testing::Test {
protected:
    FlatModel() : fList(BRect(0, 0, 99, 99), "list", B_MULTIPLE_SELECTION_LIST) {}
    ~FlatModel() override
    {
        for (Item* item : fRows)
            delete item;
    }
    int Any(int count) { return count > 0 ? static_cast<int>(fRandom() % count) : 0; }
    int Count() const { return static_cast<int>(fRows.size()); }

    void Check(int index)
    {
        ASSERT_EQ(fList.CountItems(), Count());
        EXPECT_EQ(fList.ItemAt(-1), nullptr);
        EXPECT_EQ(fList.ItemAt(Count()), nullptr);
        if (Count() == 0)
            return;
        ASSERT_EQ(fList.ItemAt(index), fRows[index]);
        ASSERT_EQ(fList.IndexOf(fRows[index]), index);
        float top = 0;
        for (int i = 0; i < index; i++)
            top += pixels(fRows[i]);
        const BRect frame = fList.ItemFrame(index);
        ASSERT_EQ(frame.top, top);
        ASSERT_EQ(frame.bottom, top + pixels(fRows[index]) - 1);
        ASSERT_EQ(fList.IndexOf(frame.LeftTop()), index);
        ASSERT_EQ(fList.IndexOf(frame.LeftBottom()), index);
        std::vector<int> selected;
        for (int i = 0; i < Count(); i++) {
            if (fRows[i]->IsSelected())
                selected.push_back(i);
        }
        const int some = Any(static_cast<int>(selected.size()) + 1);
        ASSERT_EQ(fList.CurrentSelection(some),
                  some < static_cast<int>(selected.size()) ? selected[some] : -1);
    }
    void CheckAll()
    {
        const BListItem** all = fList.Items();
        for (int i = 0; i < Count(); i++)
            ASSERT_EQ(all[i], fRows[i]);
    }
    void Act()
    {
        const int index = Any(Count());
        switch (fRandom() % 12) {
            case 0:
            case 1:
            case 2: {
                auto* item = new Item(fNext++);
                item->SetHeight(static_cast<float>(fRandom() % 40) / 2);
                const int at = Any(Count() + 1);
                ASSERT_TRUE(fList.AddItem(item, at));
                ASSERT_FALSE(fList.AddItem(item));
                fRows.insert(fRows.begin() + at, item);
                break;
            }
            case 3: {
                BListItem* item = fList.RemoveItem(index);
                ASSERT_EQ(item, Count() > 0 ? fRows[index] : nullptr);
                delete item;
                if (Count() > 0)
                    fRows.erase(fRows.begin() + index);
                break;
            }
            case 4:
                if (Count() > 0) {
                    delete fRows[index];  // it takes itself out
                    fRows.erase(fRows.begin() + index);
                }
                break;
            case 5:
                fList.Select(index, fRandom() % 2 == 0);
                break;
            case 6:
                fList.Select(index, index + Any(50), true);
                break;
            case 7:
                fList.DeselectExcept(index, index + Any(100));
                break;
            case 8:
                if (Count() > 0)
                    fRows[index]->SetHeight(static_cast<float>(fRandom() % 300) / 4);
                break;
            case 9:
                if (Count() > 0) {
                    const int other = Any(Count());
                    ASSERT_TRUE(fList.SwapItems(index, other));
                    std::swap(fRows[index], fRows[other]);
                }
                break;
            case 10:
                if (Count() > 0) {
                    const int to = Any(Count());
                    ASSERT_TRUE(fList.MoveItem(index, to));
                    Item* item = fRows[index];
                    fRows.erase(fRows.begin() + index);
                    fRows.insert(fRows.begin() + to, item);
                }
                break;
            default:
                if (Count() > 0 && fRandom() % 50 == 0) {
                    fList.SortItems(by_number);
                    std::sort(fRows.begin(), fRows.end(),
                              [](Item* a, Item* b) { return a->number < b->number; });
                }
        }
    }

    std::mt19937 fRandom{7};
    BListView fList;
    std::vector<Item*> fRows;
    int fNext = 0;
};

TEST_F(FlatModel, AgreesAfterEveryOfManyChanges)
{
    for (int i = 0; i < 60000; i++) {
        Act();
        if (HasFatalFailure())
            return;
        if (i % 7 == 0)
            Check(Any(Count()));
        if (i % 1000 == 0)
            CheckAll();
        if (HasFatalFailure())
            return;
    }
}

TEST_F(FlatModel, HundredThousandRowsComeAndGoAtEitherEnd)
{
    const int kRows = 100000;
    for (int i = 0; i < kRows; i++)
        ASSERT_TRUE(fList.AddItem(new Item(i), i % 2 == 0 ? 0 : i));
    fList.Select(0, kRows - 1);
    EXPECT_EQ(fList.CurrentSelection(kRows - 1), kRows - 1);
    EXPECT_EQ(fList.CurrentSelection(kRows), -1);
    EXPECT_EQ(fList.ItemFrame(kRows - 1).bottom, kRows - 1);
    fList.DeselectAll();
    EXPECT_EQ(fList.CurrentSelection(), -1);
    fList.SortItems(by_number);
    for (int i = 0; i < kRows; i++) {
        BListItem* item = fList.RemoveItem(static_cast<int32>(0));
        ASSERT_EQ(number_of(item), i);
        delete item;
    }
    EXPECT_TRUE(fList.IsEmpty());
}

// ---- Outlines

namespace {

struct Row {
    Item* item;
    bool expanded = true;
};

}  // namespace

class OutlineModel : public testing::Test {
protected:
    OutlineModel() : fList(BRect(0, 0, 99, 99), "list", B_MULTIPLE_SELECTION_LIST) {}
    ~OutlineModel() override
    {
        for (const Row& row : fRows)
            delete row.item;
    }
    int Any(int count) { return count > 0 ? static_cast<int>(fRandom() % count) : 0; }
    int Count() const { return static_cast<int>(fRows.size()); }
    int LevelOf(int row) const { return static_cast<int>(fRows[row].item->OutlineLevel()); }
    // The row behind all that is below one.
    int EndOf(int row) const
    {
        int end = row + 1;
        while (end < Count() && LevelOf(end) > LevelOf(row))
            end++;
        return end;
    }
    int SuperOf(int row) const
    {
        int super = row - 1;
        while (super >= 0 && LevelOf(super) >= LevelOf(row))
            super--;
        return super;
    }
    bool IsShown(int row) const
    {
        for (int above = SuperOf(row); above >= 0; above = SuperOf(above)) {
            if (!fRows[above].expanded)
                return false;
        }
        return true;
    }
    std::vector<int> Shown() const
    {
        std::vector<int> rows;
        for (int row = 0; row < Count(); row = fRows[row].expanded ? row + 1 : EndOf(row))
            rows.push_back(row);
        return rows;
    }
    void CheckAll()
    {
        ASSERT_EQ(fList.FullListCountItems(), Count());
        for (int row = 0; row < Count(); row++) {
            BListItem* item = fRows[row].item;
            ASSERT_EQ(fList.FullListItemAt(row), item);
            ASSERT_EQ(fList.FullListIndexOf(item), row);
            ASSERT_EQ(item->IsExpanded(), fRows[row].expanded);
            ASSERT_EQ(fList.CountItemsUnder(item, false), EndOf(row) - row - 1);
            ASSERT_EQ(fList.Superitem(item), SuperOf(row) < 0 ? nullptr : fRows[SuperOf(row)].item);
        }
        const std::vector<int> shown = Shown();
        ASSERT_EQ(fList.CountItems(), static_cast<int>(shown.size()));
        int selected = 0;
        for (size_t i = 0; i < shown.size(); i++) {
            ASSERT_EQ(fList.ItemAt(static_cast<int32>(i)), fRows[shown[i]].item);
            ASSERT_EQ(fList.IndexOf(fRows[shown[i]].item), static_cast<int32>(i));
            if (fRows[shown[i]].item->IsSelected()) {
                ASSERT_EQ(fList.CurrentSelection(selected++), static_cast<int32>(i));
            }
        }
        ASSERT_EQ(fList.CurrentSelection(selected), -1);
        for (const Row& row : fRows) {
            ASSERT_TRUE(!row.item->IsSelected() || fList.IndexOf(row.item) >= 0);
        }
    }
    void Act()
    {
        const int row = Any(Count());
        switch (fRandom() % 10) {
            case 0:
            case 1: {
                auto* item = new Item(fNext++, fRandom() % 4);
                const int at = Any(Count() + 1);
                ASSERT_TRUE(fList.AddItem(item, at));
                fRows.insert(fRows.begin() + at, {item});
                break;
            }
            case 2:
            case 3: {
                if (Count() == 0)
                    break;
                auto* item = new Item(fNext++);
                const int at = EndOf(row);
                ASSERT_TRUE(fList.AddUnder(item, fRows[row].item));
                fRows.insert(fRows.begin() + at, {item});
                break;
            }
            case 4: {
                BListItem* item = fList.RemoveItem(static_cast<int32>(row));
                ASSERT_EQ(item, Count() > 0 ? fRows[row].item : nullptr);
                const int end = Count() > 0 ? EndOf(row) : 0;
                for (int i = row; i < end; i++)
                    delete fRows[i].item;
                fRows.erase(fRows.begin() + row, fRows.begin() + std::max(end, row));
                break;
            }
            case 5:
            case 6:
                if (Count() > 0) {
                    fRows[row].expanded = !fRows[row].expanded;
                    if (fRows[row].expanded)
                        fList.Expand(fRows[row].item);
                    else
                        fList.Collapse(fRows[row].item);
                }
                break;
            case 7:
                fList.Select(row, row + Any(9), fRandom() % 2 == 0);
                break;
            case 8: {
                const int one = Any(Count()), other = Any(Count());
                if (Count() == 0 || SuperOf(one) != SuperOf(other) || !IsShown(one))
                    break;
                const int from = fList.IndexOf(fRows[one].item);
                const int to = fList.IndexOf(fRows[other].item);
                const bool swaps = fRandom() % 2 == 0;
                ASSERT_TRUE(swaps ? fList.SwapItems(from, to) : fList.MoveItem(from, to));
                Move(one, other, swaps);
                break;
            }
            default:
                if (fRandom() % 30 == 0) {
                    fList.FullListSortItems(by_number_in_full);
                    Sort(0, Count());
                }
        }
    }
    void Move(int one, int other, bool swaps)
    {
        const std::vector<Row> first(fRows.begin() + one, fRows.begin() + EndOf(one));
        const std::vector<Row> second(fRows.begin() + other, fRows.begin() + EndOf(other));
        std::vector<Row> moved;
        for (int row = 0; row < Count();) {
            const bool is_one = row == one, is_other = row == other;
            const int end = is_one || is_other ? EndOf(row) : row + 1;
            if (is_one && (swaps || one == other))
                moved.insert(moved.end(), second.begin(), second.end());
            else if (is_other && swaps)
                moved.insert(moved.end(), first.begin(), first.end());
            else if (is_other && one > other) {
                moved.insert(moved.end(), first.begin(), first.end());
                moved.insert(moved.end(), second.begin(), second.end());
            } else if (is_other) {
                moved.insert(moved.end(), second.begin(), second.end());
                moved.insert(moved.end(), first.begin(), first.end());
            } else if (!is_one)
                moved.push_back(fRows[row]);
            row = end;
        }
        fRows = moved;
    }
    void Sort(int first, int end)
    {
        std::vector<std::vector<Row>> parts;
        for (int row = first; row < end; row = EndOf(row)) {
            Sort(row + 1, EndOf(row));
            parts.emplace_back(fRows.begin() + row, fRows.begin() + EndOf(row));
        }
        std::stable_sort(parts.begin(), parts.end(), [](const auto& a, const auto& b) {
            return a[0].item->number < b[0].item->number;
        });
        for (const auto& part : parts)
            first = static_cast<int>(std::copy(part.begin(), part.end(), fRows.begin() + first) -
                                     fRows.begin());
    }

    std::mt19937 fRandom{11};
    BOutlineListView fList;
    std::vector<Row> fRows;
    int fNext = 0;
};

TEST_F(OutlineModel, AgreesAfterEveryOfManyChanges)
{
    for (int i = 0; i < 20000; i++) {
        Act();
        if (HasFatalFailure())
            return;
        if (i % 5 == 0)
            CheckAll();
        if (HasFatalFailure())
            return;
        while (Count() > 300) {
            const int end = EndOf(0);
            fList.RemoveItem(static_cast<int32>(0));
            for (int gone = 0; gone < end; gone++)
                delete fRows[gone].item;
            fRows.erase(fRows.begin(), fRows.begin() + end);
        }
    }
}

TEST_F(OutlineModel, ThousandsUnderEachOfManyOpenAndClose)
{
    const int kTops = 100, kRows = 1000;
    std::vector<Item*> tops;
    for (int i = 0; i < kTops; i++) {
        tops.push_back(new Item(i));
        fRows.push_back({tops.back()});
        fList.AddItem(tops.back());
    }
    for (int i = 0; i < kTops * kRows; i++) {
        auto* item = new Item(i);
        fRows.push_back({item});
        ASSERT_TRUE(fList.AddUnder(item, tops[i % kTops]));
    }
    EXPECT_EQ(fList.CountItems(), kTops * (kRows + 1));
    for (Item* top : tops)
        fList.Collapse(top);
    EXPECT_EQ(fList.CountItems(), kTops);
    fList.Expand(tops[50]);
    EXPECT_EQ(fList.CountItems(), kTops + kRows);
    EXPECT_EQ(fList.IndexOf(tops[51]), 51 + kRows);
    EXPECT_EQ(number_of(fList.ItemAt(51)), 50) << "the first that came under it";
    for (Item* top : tops)
        fList.Expand(top);
    EXPECT_EQ(fList.CountItems(), kTops * (kRows + 1));
    EXPECT_EQ(fList.CountItemsUnder(nullptr, true), kTops);
}
