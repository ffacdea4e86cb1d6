// List gadgets through the exported calls: rows, selection, outlines, handlers.

#include "gadgets/list_gadgets.h"

#include <StringItem.h>

#include <malloc.h>
#include <string.h>

#include <algorithm>
#include <limits>

namespace {

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

TEST_F(ListGadgets, KindsDifferByTheirBarsWhichTakeTheirRoom)
{
    for (const int32_t kind : {7, 8, 9, 10, 20, 21, 22, 23}) {
        const int32_t bars = kind < 20 ? kind - 7 : kind - 20;
        const int32_t ident = MakeList(kind, {"a"});
        const BRect list = WithList([](BListView& view) { return view.Frame(); });
        EXPECT_EQ(list.Width(), (bars & 1) != 0 ? 136 : 150) << kind;
        EXPECT_EQ(list.Height(), (bars & 2) != 0 ? 106 : 120) << kind;
        WithList([=](BListView& view) {
            EXPECT_EQ(view.ScrollBar(B_VERTICAL) != nullptr, (bars & 1) != 0) << kind;
            EXPECT_EQ(view.ScrollBar(B_HORIZONTAL) != nullptr, (bars & 2) != 0) << kind;
            EXPECT_EQ(dynamic_cast<BOutlineListView*>(&view) != nullptr, kind >= 20) << kind;
            return 0;
        });
        KillGadget(0, ident);
    }
}

TEST_F(ListGadgets, ListsFollowTheSizeOfTheirGadget)
{
    for (const int32_t kind : {7, 10, 20, 23}) {
        const int32_t ident = MakeList(kind, {"a"});
        const auto list = [&] { return WithList([](BListView& view) { return view.Frame(); }); };
        const BRect whole = FrameOf(0), before = list();
        for (const int32_t by : {40, -30}) {
            ResizeGadget(ident, whole.IntegerWidth() + by, whole.IntegerHeight() + by / 2);
            EXPECT_EQ(list().Width(), before.Width() + by) << kind;
            EXPECT_EQ(list().Height(), before.Height() + by / 2) << kind;
        }
        KillGadget(0, ident);
    }
}

TEST_F(ListGadgets, NothingIsSelectedInAListWithoutRows)
{
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeList(kind, {});
        for (const int32_t several : {0, 1}) {
            SetMultiSelect(ident, several);
            LvSelectAll(ident);
            LvSelectNone(ident);
            SortLv(ident);
            ClearListView(ident);
            LvExpandAll(ident);
            LvCollapseAll(ident);
            EXPECT_EQ(GetLvSelected(ident), -1);
            EXPECT_STREQ(GetLvFirstItem(ident), "");
            EXPECT_STREQ(GetLvLastItem(ident), "");
        }
        EXPECT_EQ(gHandlers.Take(), "") << kind;
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
    AddEntryInSub(ident, 1, "");
    AddEntryInSub(ident, 1, nullptr);
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

TEST_F(ListGadgets, UnknownGadgetsHaveNoRowsAndTheirFirstIsSelectedKept)
{
    const int32_t button = Make(1, 0, 0, 50, 20);
    for (const int32_t other : {0, -1, 12345, button}) {
        AddLvEntry(other, "x");
        AddEntryInSub(other, 0, "x");
        ClearListView(other);
        SortLv(other);
        LvSelectAll(other);
        LvExpandAll(other);
        ChangeLvColor(other, 0, 0, 0, 0, 0, 0);
        EXPECT_EQ(CountEntry(other), 0);
        EXPECT_EQ(GetLvSelected(other), 0);
        EXPECT_FALSE(IsItemSelected(other, 0));
        EXPECT_STREQ(GetLvFirstItem(other), "");
    }
}

TEST_F(ListGadgets, TextsMayHaveAnyLength)
{
    const int32_t ident = MakeList(20, {});
    for (const size_t length : {size_t{1}, size_t{1023}, size_t{1024}, size_t{1000000}}) {
        const std::string text(length, 'x');
        AddLvEntry(ident, text.c_str());
        EXPECT_EQ(std::string(GetLvLastItem(ident)), text.substr(0, 1023));
        ChangeEntryStr(ident, 0, text.c_str());
    }
    ChangeEntryStr(ident, 1, nullptr);
    EXPECT_STREQ(GetLvItem(ident, 1), "");
    ChangeEntryStr(ident, 0, "b");
    ChangeEntryStr(ident, 2, "A");
    ChangeEntryStr(ident, 3, "aa");
    SortLv(ident);
    EXPECT_EQ(Rows(ident), " A aa b");
}

TEST_F(ListGadgets, CallsForTextsShareOneBuffer)
{
    const std::string long_text(50, 'x');
    const int32_t ident = MakeList(7, {"first", long_text.c_str(), "last"});
    const char* const text = GetLvItem(ident, 1);
    EXPECT_EQ(GetLvFirstItem(ident), text);
    EXPECT_STREQ(text, "first");
    EXPECT_EQ(GetLvLastItem(ident), text);
    EXPECT_EQ(GetTextLv(ident, 1, 2), text);
    EXPECT_EQ(text, long_text);
    EXPECT_STREQ(GetLvItem(ident, 3), "");
    EXPECT_STREQ(text, "");
}

// Short texts are kept elsewhere than long ones.
TEST_F(ListGadgets, TextsOfAnyLengthReplaceOneAnother)
{
    const int32_t ident = MakeList(7, {"first", "second", "third"});
    for (const size_t length : {31, 32, 30, 33, 1, 5000, 31, 0, 32, 64, 23, 24}) {
        const std::string text(length, 'm');
        ChangeEntryStr(ident, 1, text.c_str());
        EXPECT_EQ(std::string(GetLvItem(ident, 1)), text.substr(0, 1023)) << length;
        AddLvEntry(ident, length > 0 ? text.c_str() : "none");
        EXPECT_EQ(strlen(GetLvLastItem(ident)), length > 0 ? std::min<size_t>(length, 1023) : 4);
        EXPECT_STREQ(GetLvItem(ident, 0), "first") << length;
        EXPECT_STREQ(GetLvItem(ident, 2), "third") << length;
        RemoveItem(ident, 3);
    }
    ChangeEntryStr(ident, 1, GetLvItem(ident, 2));
    EXPECT_EQ(Rows(ident), "first third third");
}

TEST_F(ListGadgets, ThousandsOfRowsKeepTheirTexts)
{
    const int32_t ident = MakeList(7, {}), other = MakeList(20, {});
    const auto text = [](int32_t row) { return "row " + std::to_string(row * 7919); };
    const int32_t kRows = 5000;
    for (int32_t i = 0; i < kRows; i++)
        AddLvEntry(i % 3 == 0 ? other : ident, text(i).c_str());
    ClearListView(other);
    for (int32_t i = CountEntry(ident) - 1; i >= 0; i -= 2)
        RemoveItem(ident, i);
    for (int32_t i = 0; i < kRows; i++)
        AddLvEntry(other, text(-i).c_str());
    for (int32_t i = 0; i < CountEntry(ident); i++)
        ASSERT_EQ(GetLvItem(ident, i), text(i * 3 + 2));
    for (int32_t i = 0; i < kRows; i++)
        ASSERT_EQ(GetLvItem(other, i), text(-i));
}

TEST_F(ListGadgets, RowsGiveTheirMemoryBack)
{
    const int32_t ident = MakeList(7, {});
    const auto used_after = [=](int32_t count) {
        for (int32_t i = 0; i < count; i++)
            AddLvEntry(ident, "twenty letters long.");
        ClearListView(ident);
        const auto used = mallinfo2();
        return used.uordblks + used.hblkhd;
    };
    const size_t first = used_after(1000);  // what is drawn takes some more
    for (int32_t times = 0; times < 3; times++)
        EXPECT_LT(used_after(50000), first + 2000000) << "of five million";
}

// A row that somebody else put in through the platform's own calls.
TEST_F(ListGadgets, RowsOfOtherKindsHaveNoText)
{
    const int32_t ident = MakeList(7, {"a", "b"});
    BStringItem strange("strange");
    WithList([&](BListView& list) { return list.AddItem(&strange, 1); });
    EXPECT_EQ(Rows(ident), "a  b");
    ChangeEntryStr(ident, 1, "x");
    SortLv(ident);
    EXPECT_EQ(Rows(ident), "a  b");
    WithList([&](BListView& list) { return list.RemoveItem(&strange); });
    EXPECT_EQ(Rows(ident), "a b");
}

TEST_F(ListGadgets, SortingLooksBeyondTheFirstLetters)
{
    const int32_t ident =
        MakeList(7, {"Same start Z", "same START a", "same start", "\xc3\xa9", "B"});
    SortLv(ident);
    EXPECT_EQ(Rows(ident), "B same start same START a Same start Z \xc3\xa9");
}

TEST_F(ListGadgets, SortedRowsKeepTheirOwnTextsAndColours)
{
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeList(kind, {"beginning 2", "c", "BEGINNING 1", "Beginning"});
        ChangeEntryStr(ident, 1, "a text of its own that is longer");
        ChangeItemColor(ident, 0, 0x00FF00FF, 0x000000FF, 0x000000FF, 0x0000FFFF);
        EnableItemLv(ident, 2, 0);
        for (int times = 0; times < 2; times++) {
            SortLv(ident);
            EXPECT_EQ(Rows(ident),
                      "a text of its own that is longer Beginning BEGINNING 1 beginning 2");
        }
        SetSelectEntry(ident, 2);
        EXPECT_EQ(Selected(ident), "") << "it is disabled still";
        KillGadget(0, ident);
    }
}

TEST_F(ListGadgets, OutlineIndexesCountTheRowsThatShow)
{
    const int32_t ident = MakeList(20, {"b", "a"});
    for (const char* text : {"z", "y"})
        AddEntryInSub(ident, 0, text);
    AddEntryInSub(ident, 1, "x");
    AddEntryInSub(ident, -1, "nowhere");
    AddEntryInSub(ident, std::numeric_limits<int32_t>::max(), "nowhere");
    EXPECT_EQ(Rows(ident), "b z y a x");
    SortLv(ident);
    EXPECT_EQ(Rows(ident), "a x b z y") << "the rows below stay in order";
    SwapItem(ident, 0, 2);
    EXPECT_EQ(Rows(ident), "b z y a x");
    SwapItem(ident, 0, 1);
    MoveItem(ident, 1, 4);
    EXPECT_EQ(Rows(ident), "b z y a x") << "not from one top row to another";
    MoveItem(ident, 1, 2);
    EXPECT_EQ(Rows(ident), "b y z a x");
    RemoveItem(ident, 1);
    EXPECT_EQ(Rows(ident), "b z a x");
    LvCollapseAll(ident);
    EXPECT_EQ(Rows(ident), "b a");
    LvExpand(ident, 1);
    EXPECT_EQ(Rows(ident), "b a x");
    RemoveItem(ident, 0);
    EXPECT_EQ(Rows(ident), "a x");
}

TEST_F(ListGadgets, ClosingARowDeselectsWhatItHides)
{
    const int32_t ident = MakeList(20, {"a", "b"});
    AddEntryInSub(ident, 0, "x");
    AddEntryInSub(ident, 0, "y");
    SetMultiSelect(ident, 1);
    LvSelectAll(ident);
    gHandlers.Take();
    LvCollapse(ident, 0);
    EXPECT_EQ(Selected(ident), "01");
    EXPECT_EQ(gHandlers.Take(), "value 0");
    LvExpandAll(ident);
    EXPECT_EQ(Selected(ident), "03");
}

TEST_F(ListGadgets, CallsWithAFlagAreTheOnesWithAName)
{
    const int32_t ident = MakeList(20, {"a", "b", "c"});
    AddEntryInSub(ident, 0, "x");
    SetLvSelectEntry(ident, 2, 1);
    EXPECT_EQ(Selected(ident), "2");
    EXPECT_EQ(CountEntry_system(ident, 1), 4);
    EXPECT_EQ(CountEntry_system(ident, 0), 2);
    SetLvSelectEntry(ident, 2, 0);
    EXPECT_EQ(CountEntry_system(ident, 0), -1);
    LvExpandSystem(ident, 0, 0, 0);
    EXPECT_EQ(Rows(ident), "a b c");
    LvExpandSystem(ident, 0, 1, 0);
    EXPECT_EQ(Rows(ident), "a x b c");
    LvExpandSystem(ident, -1, 0, 1);
    SwapPosition(ident, 0, 2, 1);
    EXPECT_EQ(Rows(ident), "c b a");
    SwapPosition(ident, 0, 2, 0);
    EXPECT_EQ(Rows(ident), "b a c");
    LvExpandSystem(ident, -1, 1, 1);
    EXPECT_EQ(Rows(ident), "b a x c");
    EXPECT_STREQ(GetTextLv(ident, 2, 2), "x");
    EXPECT_STREQ(GetTextLv(ident, 2, 0), "b");
    EXPECT_STREQ(GetTextLv(ident, 2, 1), "c");
    EXPECT_STREQ(GetTextLv(ident, 2, 3), "");
}

TEST_F(ListGadgets, HandlersAreToldOfTheFirstSelectedRow)
{
    const int32_t ident = MakeList(7, {"a", "b", "c"});
    SetMultiSelect(ident, 1);
    SetSelectEntry(ident, 1);
    SetSelectEntry(ident, 1);
    LvSelectAll(ident);
    SetDeSelectEntry(ident, 0);
    RemoveItem(ident, 1);
    LvSelectNone(ident);
    LvSelectNone(ident);
    EXPECT_EQ(gHandlers.Take(), "value 1, value 0, value 1, value 2, value -1");
    SetSelectEntry(ident, 0);
    SortLv(ident);
    SetSelectEntry(ident, 1);
    ClearListView(ident);
    EXPECT_EQ(gHandlers.Take(), "value 0, value -1, value 1, value -1");
}

TEST_F(ListGadgets, ListsInNoWindowWorkAsWell)
{
    const int32_t ident = CreateGadget(21, -1, 0, 0, 100, 100, nullptr, 0);
    AddLvEntry(ident, "a");
    AddEntryInSub(ident, 0, "x");
    SetSelectEntry(ident, 1);
    SortLv(ident);
    EXPECT_EQ(Rows(ident), "a x");
    AttachGadgetToWindow(window.Ident(), ident);
    EXPECT_GT(WithList([](BListView& list) { return list.ItemFrame(1).Height(); }), 8);
    KillGadget(0, ident);
}
