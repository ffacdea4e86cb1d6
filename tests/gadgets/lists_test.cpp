// List gadgets through the exported calls: rows, selection, outlines, handlers.

#include "gadgets/gadget_window.h"

#include <limits>

namespace {

class ListGadgets : public GadgetTest {
protected:
    int32_t MakeList(int32_t kind, std::initializer_list<const char*> rows)
    {
        const int32_t ident = Make(kind, 0, 0, 150, 120);
        for (const char* row : rows)
            AddLvEntry(ident, row);
        return ident;
    }
    static std::string Rows(int32_t ident)
    {
        std::string rows;
        for (int32_t i = 0; i < CountEntry(ident); i++)
            rows += (i > 0 ? " " : "") + std::string(GetLvItem(ident, i));
        return rows;
    }
    static std::string Selected(int32_t ident)
    {
        std::string rows;
        for (int32_t i = 0; i < CountEntry(ident); i++)
            rows += IsItemSelected(ident, i) ? std::to_string(i) : "";
        return rows;
    }
};

const int32_t kExtreme[] = {-1, 3, std::numeric_limits<int32_t>::min(),
                            std::numeric_limits<int32_t>::max()};

}  // namespace

TEST_F(ListGadgets, RowsComeAndGoInEveryKind)
{
    for (const int32_t kind : {7, 8, 9, 10, 20, 21, 22, 23}) {
        const int32_t ident = MakeList(kind, {"b", "", "C", "a", nullptr});
        EXPECT_EQ(Rows(ident), "b C a") << kind;
        EXPECT_STREQ(GetLvFirstItem(ident), "b");
        EXPECT_STREQ(GetLvLastItem(ident), "a");
        for (const int32_t index : kExtreme) {
            EXPECT_STREQ(GetLvItem(ident, index), "");
            RemoveItem(ident, index);
            SetSelectEntry(ident, index);
            SwapItem(ident, 0, index);
            MoveItem(ident, index, 0);
        }
        EXPECT_EQ(GetLvSelected(ident), -1);
        SortLv(ident);
        EXPECT_EQ(Rows(ident), "a b C");
        SwapItem(ident, 0, 2);
        EXPECT_EQ(Rows(ident), "C b a");
        MoveItem(ident, 0, 2);
        EXPECT_EQ(Rows(ident), "b a C");
        ChangeEntryStr(ident, 1, "new");
        RemoveItem(ident, 0);
        EXPECT_EQ(Rows(ident), "new C");
        ClearListView(ident);
        EXPECT_EQ(CountEntry(ident), 0);
        KillGadget(0, ident);
    }
}

TEST_F(ListGadgets, TextsAreCutToTheBuffer)
{
    const std::string long_text(5000, 'x');
    const int32_t ident = MakeList(7, {long_text.c_str()});
    EXPECT_EQ(std::string(GetLvItem(ident, 0)), long_text.substr(0, 1023));
}

TEST_F(ListGadgets, SelectionIsOneRowOrSeveral)
{
    const int32_t ident = MakeList(8, {"a", "b", "c", "d"});
    LvSelectAll(ident);
    EXPECT_EQ(Selected(ident), "0") << "all that a single selection has";
    SetMultiSelect(ident, 1);
    LvSelectAll(ident);
    EXPECT_EQ(Selected(ident), "0123");
    SetDeSelectEntry(ident, 0);
    SetMultiSelect(ident, 0);
    EXPECT_EQ(Selected(ident), "1");
    EnableItemLv(ident, 3, 0);
    SetSelectEntry(ident, 3);
    EXPECT_EQ(Selected(ident), "1");
    LvSelectNone(ident);
    EXPECT_EQ(Calls().substr(0, 7), "value 0");
}

TEST_F(ListGadgets, OutlinesHoldRowsBelowTheirTopRows)
{
    const int32_t ident = MakeList(21, {"a", "b", "c"});
    AddEntryInSub(ident, 1, "b1");
    AddEntryInSub(ident, 1, "b2");
    AddEntryInSub(ident, 3, "nowhere");
    EXPECT_EQ(Rows(ident), "a b b1 b2 c");
    LvCollapse(ident, 1);
    EXPECT_EQ(Rows(ident), "a b c");
    MoveItem(ident, 1, 0);
    LvExpandAll(ident);
    EXPECT_EQ(Rows(ident), "b b1 b2 a c");
    RemoveItem(ident, 0);
    EXPECT_EQ(Rows(ident), "a c");
    const int32_t flat = MakeList(7, {"a"});
    AddEntryInSub(flat, 0, "x");
    EXPECT_EQ(CountEntry(flat), 1);
}
