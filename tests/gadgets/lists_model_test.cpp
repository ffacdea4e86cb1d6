// A flat and an outline list gadget against plain vectors: hundreds of thousands of random calls.

#include <plinth.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <strings.h>
#include <string>
#include <vector>

namespace {

struct Row {
    std::string text;
    bool selected = false, enabled = true, expanded = true;
    std::vector<std::unique_ptr<Row>> below;
};

// The rows of a list as a program thinks of them; two levels at most.
class Model {
public:
    std::vector<std::unique_ptr<Row>> tops;
    bool several = false;

    struct Place {
        std::vector<std::unique_ptr<Row>>* level;
        size_t at;
        Row& operator*() const { return *(*level)[at]; }
        Row* operator->() const { return (*level)[at].get(); }
    };
    // Rows that show.
    std::vector<Place> Shown()
    {
        std::vector<Place> shown;
        for (size_t i = 0; i < tops.size(); i++) {
            shown.push_back({&tops, i});
            for (size_t j = 0; tops[i]->expanded && j < tops[i]->below.size(); j++)
                shown.push_back({&tops[i]->below, j});
        }
        return shown;
    }
    void SelectNone()
    {
        for (const Place& place : Shown())
            place->selected = false;
    }
    void Select(const std::vector<Place>& shown, int32_t index)
    {
        if (index < 0 || index >= static_cast<int32_t>(shown.size()) || !shown[index]->enabled)
            return;
        SelectNone();
        shown[index]->selected = true;
    }
    void SelectAll()
    {
        const std::vector<Place> shown = Shown();
        if (!several)
            return Select(shown, 0);
        for (const Place& place : shown)
            place->selected = place->selected || place->enabled;
    }
    void SetSeveral(bool now)
    {
        bool kept = now || !several;
        for (const Place& place : Shown()) {
            place->selected = place->selected && (now || !several || !kept);
            kept = kept || place->selected;
        }
        several = now;
    }
    static void Collapse(Row& row)
    {
        row.expanded = false;
        for (const auto& one : row.below)
            one->selected = false;
    }
    // From one index to another, among the rows below the same one.
    void Reorder(const std::vector<Place>& shown, int32_t a, int32_t b, bool swap)
    {
        const auto count = static_cast<int32_t>(shown.size());
        if (a < 0 || b < 0 || a >= count || b >= count || shown[a].level != shown[b].level)
            return;
        auto& level = *shown[a].level;
        if (swap) {
            std::swap(level[shown[a].at], level[shown[b].at]);
            return;
        }
        auto row = std::move(level[shown[a].at]);
        level.erase(level.begin() + static_cast<ptrdiff_t>(shown[a].at));
        level.insert(level.begin() + static_cast<ptrdiff_t>(shown[b].at), std::move(row));
    }
    void Sort()
    {
        SelectNone();
        std::stable_sort(tops.begin(), tops.end(), [](const auto& a, const auto& b) {
            return strcasecmp(a->text.c_str(), b->text.c_str()) < 0;
        });
    }
};

class ListsModel : public testing::TestWithParam<int32_t> {
protected:
    ListsModel() : fIdent(CreateGadget(GetParam(), -1, 0, 0, 100, 100, nullptr, 0)) {}
    ~ListsModel() override { KillGadget(0, fIdent); }

    int32_t Any(size_t count) { return static_cast<int32_t>(fRandom() % (count + 2)) - 1; }
    std::string AnyText()
    {
        std::string text(1 + fRandom() % 12, ' ');
        for (char& c : text)
            c = "abcABC"[fRandom() % 6];
        return text;
    }
    std::unique_ptr<Row> NewRow(const std::string& text)
    {
        auto row = std::make_unique<Row>();
        row->text = text;
        return row;
    }
    void Compare(const std::vector<Model::Place>& shown, int32_t index)
    {
        ASSERT_EQ(CountEntry(fIdent), static_cast<int32_t>(shown.size()));
        const bool is_row = index >= 0 && index < static_cast<int32_t>(shown.size());
        ASSERT_STREQ(GetLvItem(fIdent, index), is_row ? shown[index]->text.c_str() : "");
        ASSERT_EQ(IsItemSelected(fIdent, index), is_row && shown[index]->selected);
    }
    void CompareAll()
    {
        const auto shown = fModel.Shown();
        int32_t first = -1;
        for (int32_t i = static_cast<int32_t>(shown.size()) - 1; i >= 0; i--) {
            Compare(shown, i);
            first = shown[i]->selected ? i : first;
        }
        ASSERT_EQ(GetLvSelected(fIdent), first);
    }
    void Act();
    void ChangeRows(const std::vector<Model::Place>& shown, int32_t index);
    void ChangeSelection(const std::vector<Model::Place>& shown, int32_t index);

    const int32_t fIdent;
    const bool fIsOutline = GetParam() >= 20;
    Model fModel;
    std::mt19937 fRandom{11};
};

void ListsModel::ChangeRows(const std::vector<Model::Place>& shown, int32_t index)
{
    const bool is_row = index >= 0 && index < static_cast<int32_t>(shown.size());
    const std::string text = AnyText();
    switch (fRandom() % 8) {
        case 0:
        case 1:
            AddLvEntry(fIdent, text.c_str());
            fModel.tops.push_back(NewRow(text));
            break;
        case 2:
        case 3: {
            const int32_t top = Any(fModel.tops.size());
            AddEntryInSub(fIdent, top, text.c_str());
            if (fIsOutline && top >= 0 && top < static_cast<int32_t>(fModel.tops.size()))
                fModel.tops[top]->below.push_back(NewRow(text));
            break;
        }
        case 4:
            RemoveItem(fIdent, index);
            if (is_row)
                shown[index].level->erase(shown[index].level->begin() +
                                          static_cast<ptrdiff_t>(shown[index].at));
            break;
        case 5:
        case 6:
            ChangeEntryStr(fIdent, index, text.c_str());
            if (is_row)
                shown[index]->text = text;
            break;
        default: {
            const int32_t other = Any(shown.size());
            const bool swap = fRandom() % 2 == 0;
            (swap ? SwapItem : MoveItem)(fIdent, index, other);
            fModel.Reorder(shown, index, other, swap);
        }
    }
}

void ListsModel::ChangeSelection(const std::vector<Model::Place>& shown, int32_t index)
{
    const bool is_row = index >= 0 && index < static_cast<int32_t>(shown.size());
    switch (fRandom() % 7) {
        case 0:
        case 1:
            SetSelectEntry(fIdent, index);
            fModel.Select(shown, index);
            break;
        case 2:
            SetDeSelectEntry(fIdent, index);
            if (is_row)
                shown[index]->selected = false;
            break;
        case 3:
            LvSelectAll(fIdent);
            fModel.SelectAll();
            break;
        case 4:
            LvSelectNone(fIdent);
            fModel.SelectNone();
            break;
        case 5: {
            const bool several = fRandom() % 3 != 0;
            SetMultiSelect(fIdent, several);
            fModel.SetSeveral(several);
            break;
        }
        default: {
            // A row that is selected stays so.
            const bool enabled = fRandom() % 4 != 0;
            EnableItemLv(fIdent, index, enabled);
            if (is_row)
                shown[index]->enabled = enabled;
        }
    }
}

void ListsModel::Act()
{
    const auto shown = fModel.Shown();
    const int32_t index = Any(shown.size());
    const bool is_row = index >= 0 && index < static_cast<int32_t>(shown.size());
    const uint32_t choice = fRandom() % 1000;
    if (choice < 500) {
        ChangeRows(shown, index);
    } else if (choice < 800) {
        ChangeSelection(shown, index);
    } else if (choice < 890) {
        LvCollapse(fIdent, index);
        if (fIsOutline && is_row)
            Model::Collapse(*shown[index]);
    } else if (choice < 980) {
        LvExpand(fIdent, index);
        if (fIsOutline && is_row)
            shown[index]->expanded = true;
    } else if (choice < 985) {
        SortLv(fIdent);
        fModel.Sort();
    } else if (choice < 990) {
        LvExpandAll(fIdent);
        for (const auto& top : fModel.tops)
            top->expanded = true;
    } else if (choice < 995) {
        LvCollapseAll(fIdent);
        for (const auto& top : fModel.tops) {
            if (fIsOutline)
                Model::Collapse(*top);
        }
    } else if (shown.size() > 700) {
        ClearListView(fIdent);
        fModel.tops.clear();
    }
    Compare(fModel.Shown(), index);
}

}  // namespace

TEST_P(ListsModel, RowsAndSelectionAreThoseOfTheVectors)
{
    for (int step = 0; step < 300000 && !HasFatalFailure(); step++) {
        Act();
        if (step % 100 == 0)
            CompareAll();
        ASSERT_FALSE(HasFatalFailure()) << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ListsModel, testing::Values(7, 20));
