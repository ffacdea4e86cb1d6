// Lists in a window: what pointer and keys select, invoke and drag, what is drawn, and what the
// scroll bars are told.

#include <gtest/gtest.h>

#include <Bitmap.h>
#include <Message.h>
#include <OutlineListView.h>
#include <Screen.h>
#include <ScrollBar.h>
#include <ScrollView.h>
#include <StringItem.h>

#include <tests/interface/window_harness.h>

#include <cmath>
#include <functional>
#include <memory>

using namespace window_test;

namespace {

const uint32 kSelected = 'Sele', kInvoked = 'Invo';
const int32_t kKeyHome = 0x20, kKeyPageUp = 0x21, kKeyEnd = 0x35, kKeyPageDown = 0x36;
const int32_t kKeyUp = 0x57, kKeyLeft = 0x61, kKeyDown = 0x62, kKeyRight = 0x63;

// Twenty pixels high, and writes down that it was drawn.
class LoggedItem : public BStringItem {
public:
    LoggedItem(Log& log, const std::string& text, uint32 level = 0)
        : BStringItem(text.c_str(), level), fLog(log)
    {
    }
    void Update(BView* owner, const BFont* font) override
    {
        BStringItem::Update(owner, font);
        SetHeight(19);
    }
    void DrawItem(BView* owner, BRect frame, bool complete) override
    {
        fLog.Add(nullptr, "drawn %s at %g", Text(), frame.top);
        BStringItem::DrawItem(owner, frame, complete);
    }

private:
    Log& fLog;
};

template <class List>
class LoggedList : public List {
public:
    LoggedList(Log& log, BRect frame, list_view_type type)
        : List(frame, "list", type, B_FOLLOW_ALL), fLog(log)
    {
    }
    ~LoggedList() override
    {
        std::vector<std::unique_ptr<BListItem>> items;  // rows that are hidden, too
        if constexpr (std::is_base_of_v<BOutlineListView, List>) {
            for (int32 i = 0; i < this->FullListCountItems(); i++)
                items.emplace_back(this->FullListItemAt(i));
        } else {
            for (int32 i = 0; i < this->CountItems(); i++)
                items.emplace_back(this->ItemAt(i));
        }
        this->MakeEmpty();
    }
    std::function<void()> onSelection;
    bool drags = false;

    void SelectionChanged() override
    {
        std::string rows;
        for (int32 i = 0; this->CurrentSelection(i) >= 0; i++)
            rows += " " + std::to_string(this->CurrentSelection(i));
        fLog.Add(nullptr, "selected%s", rows.c_str());
        if (const auto act = onSelection)  // which may take itself away
            act();
    }
    bool InitiateDrag(BPoint where, int32 index, bool was_selected) override
    {
        fLog.Add(nullptr, "drag %d from %g,%g %d", int(index), where.x, where.y, was_selected);
        return drags;
    }

private:
    Log& fLog;
};

// Rows of twenty pixels in a list of 100 by 100 at the window's left top.
template <class List>
class ListTest : public WindowTest {
protected:
    void Open(list_view_type type, int rows, bool in_scroll_view = false)
    {
        Make(300, 300, B_ASYNCHRONOUS_CONTROLS);
        list = new LoggedList<List>(log, BRect(0, 0, 99, 99), type);
        list->SetSelectionMessage(new BMessage(kSelected));
        list->SetInvocationMessage(new BMessage(kInvoked));
        for (int i = 0; i < rows; i++)
            list->AddItem(new LoggedItem(log, "row " + std::to_string(i)));
        if (in_scroll_view)
            window->AddChild(new BScrollView("scroll", list, B_FOLLOW_LEFT_TOP, 0, true, true));
        else
            window->AddChild(list);
        Start();
        Do([&] { list->MakeFocus(); });
    }
    // Well apart in time for the list, since no row is clicked twice in a row.
    void ClickRow(int row, std::vector<int32_t> held = {})
    {
        for (int32_t modifier : held)
            inject_key(modifier, true);
        Click(150, 100 + 20 * float(row) + 10);
        for (int32_t modifier : held)
            inject_key(modifier, false);
        Settle();
    }
    std::string Selected()
    {
        return Locked([&] {
            std::string rows;
            for (int32 i = 0; list->CurrentSelection(i) >= 0; i++)
                rows += (i > 0 ? " " : "") + std::to_string(list->CurrentSelection(i));
            return rows;
        });
    }
    static bool WaitForPixel(float x, float y, uint32 color)
    {
        const bigtime_t end = system_time() + 20000000;
        BRect frame(x, y, x, y);
        while (system_time() < end) {
            BBitmap* shot = nullptr;
            EXPECT_EQ(BScreen().GetBitmap(&shot, false, &frame), B_OK);
            const std::unique_ptr<BBitmap> owner(shot);
            if ((*static_cast<const uint32*>(shot->Bits()) & 0xFFFFFF) == color)
                return true;
            snooze(2000);
        }
        return false;
    }
    void Type(int32_t key, std::vector<int32_t> held = {})
    {
        Press(key, held);
        Settle();
    }

    LoggedList<List>* list = nullptr;
};

class FlatList : public ListTest<BListView> {};
class OutlineList : public ListTest<BOutlineListView> {};

}  // namespace

// ---- The pointer

TEST_F(FlatList, ClickSelectsOneRowAndSaysSo)
{
    Open(B_SINGLE_SELECTION_LIST, 4);
    ClickRow(2);
    EXPECT_EQ(Selected(), "2");
    ClickRow(0, {kKeyShift});
    EXPECT_EQ(Selected(), "0") << "one is all that a single selection has";
    EXPECT_EQ(log.Lines({"selected", "message Sele"}),
              "selected 2; message Sele; selected 0; message Sele");
    const BMessage message = log.Message("message Sele");
    EXPECT_EQ(message.FindInt32("index"), 0);
    EXPECT_TRUE(message.HasPointer("source"));
    EXPECT_TRUE(message.HasInt64("when"));
    EXPECT_TRUE(message.HasMessenger("be:sender"));
    ClickRow(4);  // below the last
    EXPECT_EQ(Selected(), "");
}

TEST_F(FlatList, ShiftReachesFromTheAnchorAndControlTogglesRows)
{
    Open(B_MULTIPLE_SELECTION_LIST, 5);
    ClickRow(1);
    ClickRow(3, {kKeyShift});
    EXPECT_EQ(Selected(), "1 2 3");
    ClickRow(0, {kKeyShift});
    EXPECT_EQ(Selected(), "0 1");
    ClickRow(4, {kKeyControl});
    EXPECT_EQ(Selected(), "0 1 4");
    ClickRow(0, {kKeyControl});
    EXPECT_EQ(Selected(), "1 4");
    ClickRow(2);
    EXPECT_EQ(Selected(), "2");
}

TEST_F(FlatList, DisabledRowsAreNotSelected)
{
    Open(B_MULTIPLE_SELECTION_LIST, 5);
    Do([&] {
        list->ItemAt(1)->SetEnabled(false);
        list->ItemAt(2)->SetEnabled(false);
    });
    ClickRow(1);
    EXPECT_EQ(Selected(), "");
    ClickRow(0);
    Type(kKeyDown);
    EXPECT_EQ(Selected(), "3");
    Type(kKeyUp);
    EXPECT_EQ(Selected(), "0");
    ClickRow(4, {kKeyShift});
    EXPECT_EQ(Selected(), "0 3 4");
}

TEST_F(FlatList, SecondClickOnARowInvokesTheList)
{
    Open(B_MULTIPLE_SELECTION_LIST, 4);
    Do([&] { set_click_speed(10000000); });
    ClickRow(2);
    ClickRow(2);
    EXPECT_TRUE(log.Wait("message Invo"));
    ClickRow(2);
    EXPECT_EQ(log.Count("message Invo"), 1) << "the third begins anew";
    ClickRow(3);
    EXPECT_EQ(log.Count("message Invo"), 1);
    Do([&] { set_click_speed(500000); });
}

TEST_F(FlatList, MovingWithTheButtonDragsOrTakesTheSelectionAlong)
{
    Open(B_MULTIPLE_SELECTION_LIST, 5);
    const auto drag = [&](int from, int to) {
        inject_pointer(150, 100 + 20 * float(from) + 10);
        inject_button(1, true);
        Settle();
        inject_pointer(150, 100 + 20 * float(to) + 10);
        Settle();
        inject_button(1, false);
        Settle();
    };
    drag(1, 3);
    EXPECT_EQ(Selected(), "1 2 3");
    EXPECT_EQ(log.Lines({"drag"}), "drag 1 from 50,30 0");
    log.Clear();
    Do([&] { list->drags = true; });
    drag(2, 4);
    EXPECT_EQ(log.Lines({"drag", "selected"}), "drag 2 from 50,50 1") << "all three go along";
    EXPECT_EQ(Selected(), "1 2 3");
    ClickRow(3);
    EXPECT_EQ(Selected(), "3") << "a click on a selected row leaves it alone";
}

// ---- Keys

TEST_F(FlatList, ArrowsHomeAndEndSelectAndScroll)
{
    Open(B_MULTIPLE_SELECTION_LIST, 20);
    Type(kKeyDown);
    EXPECT_EQ(Selected(), "0");
    Type(kKeyDown);
    Type(kKeyDown, {kKeyShift});
    Type(kKeyDown, {kKeyShift});
    EXPECT_EQ(Selected(), "1 2 3");
    Type(kKeyUp, {kKeyShift});
    EXPECT_EQ(Selected(), "1 2");
    Type(kKeyEnd);
    EXPECT_EQ(Selected(), "19");
    EXPECT_EQ(Locked([&] { return list->LeftTop().y; }), 300);
    Type(kKeyPageUp);
    EXPECT_EQ(Locked([&] { return list->LeftTop().y; }), 201);
    EXPECT_EQ(Selected(), "19");
    Type(kKeyHome, {kKeyShift});
    EXPECT_EQ(Selected().substr(0, 5), "0 1 2");
    EXPECT_EQ(Locked([&] { return list->LeftTop().y; }), 0);
    Type(kKeyPageDown);
    EXPECT_EQ(Locked([&] { return list->LeftTop().y; }), 99);
}

TEST_F(FlatList, EnterAndSpaceInvokeAndControlSpaceToggles)
{
    Open(B_MULTIPLE_SELECTION_LIST, 4);
    Do([&] { list->Select(1, 2); });
    Type(kKeyEnter);
    Type(kKeySpace);
    ASSERT_TRUE(log.Wait("message Invo", 2));
    const BMessage message = log.Message("message Invo");
    EXPECT_EQ(message.FindInt32("index", 1), 2);
    EXPECT_FALSE(message.HasInt32("index", 2));
    Type(kKeySpace, {kKeyControl});
    EXPECT_EQ(Selected(), "1");
    EXPECT_EQ(log.Count("message Invo"), 2);
}

TEST_F(FlatList, LettersGoToTheNextRowThatBeginsSo)
{
    Open(B_SINGLE_SELECTION_LIST, 3);
    Do([&] {
        for (const char* text : {"Alpha", "Cat", "aleph"})
            list->AddItem(new LoggedItem(log, text));
    });
    Type(kKeyA);
    EXPECT_EQ(Selected(), "3");
    Type(kKeyC);
    EXPECT_EQ(Selected(), "3") << "no row begins with both";
}

// ---- Drawing and scroll bars

TEST_F(FlatList, OnlyRowsThatShowAreDrawn)
{
    Open(B_SINGLE_SELECTION_LIST, 100000);
    Do([&] { list->Invalidate(); });
    EXPECT_EQ(log.Count("drawn"), 5);
    log.Clear();
    Do([&] { list->ScrollTo(static_cast<int32>(50000)); });
    EXPECT_EQ(log.Count("drawn"), 5);
    EXPECT_EQ(log.Count("drawn row 50000 at 1e+06"), 1);
    log.Clear();
    Do([&] { list->ScrollBy(0, -20); });
    EXPECT_EQ(log.Count("drawn"), 1) << "what shows already is moved";
    log.Clear();
    Do([&] { list->Select(49999); });
    EXPECT_EQ(log.Count("drawn"), 1);
    log.Clear();
    Do([&] { list->AddItem(new LoggedItem(log, "far below")); });
    EXPECT_EQ(log.Count("drawn"), 0);
}

TEST_F(FlatList, ScrollBarsKnowHowMuchThereIs)
{
    Open(B_SINGLE_SELECTION_LIST, 10, true);
    BScrollBar* bar = Locked([&] { return list->ScrollBar(B_VERTICAL); });
    ASSERT_NE(bar, nullptr);
    const auto range = [&] {
        return Locked([&] {
            float min, max;
            bar->GetRange(&min, &max);
            return max;
        });
    };
    EXPECT_EQ(range(), 100);
    EXPECT_EQ(Locked([&] { return bar->Proportion(); }), 0.5f);
    Do([&] { list->AddItem(new LoggedItem(log, std::string(200, 'w'))); });
    EXPECT_EQ(range(), 120);
    bar = Locked([&] { return list->ScrollBar(B_HORIZONTAL); });
    EXPECT_GT(range(), 500);
    Do([&] { delete list->RemoveItem(static_cast<int32>(10)); });
    EXPECT_EQ(range(), 0);
    bar = Locked([&] { return list->ScrollBar(B_VERTICAL); });
    Do([&] { bar->SetValue(100); });
    EXPECT_EQ(Locked([&] { return list->LeftTop().y; }), 100);
    Do([&] {
        for (int i = 0; i < 7; i++)
            delete list->RemoveItem(static_cast<int32>(0));
    });
    EXPECT_EQ(range(), 0);
    EXPECT_EQ(Locked([&] { return list->LeftTop().y; }), 0) << "it follows what is left";
}

// Bars hear of new rows when somebody looks at them.
TEST_F(FlatList, ScrollBarsAreUpToDateWhoeverLooks)
{
    Open(B_SINGLE_SELECTION_LIST, 10, true);
    BScrollBar* bar = Locked([&] { return list->ScrollBar(B_VERTICAL); });
    const auto add = [&](int count) {
        for (int i = 0; i < count; i++)
            list->AddItem(new LoggedItem(log, "more"));
    };
    Do([&] {
        add(90);
        bar->SetValue(1e9f);
    });
    EXPECT_EQ(Locked([&] { return list->LeftTop().y; }), 1900);
    float step, page;
    Do([&] {
        add(100);
        bar->GetSteps(&step, &page);
    });
    EXPECT_EQ(page, 99);
    Do([&] {
        add(200);
        list->ScrollTo(BPoint(0, 7000));
    });
    EXPECT_EQ(Locked([&] { return bar->Value(); }), 7000);
    Do([&] {
        add(1);
        bar->SetTarget(static_cast<BView*>(nullptr));
        add(1);
    });
    float min, max;
    Do([&] { bar->GetRange(&min, &max); });
    EXPECT_EQ(max, 401 * 20 - 100) << "as it was when they parted";
}

TEST_F(FlatList, SelectedRowsHaveTheirGround)
{
    Open(B_SINGLE_SELECTION_LIST, 3);
    ClickRow(1);
    EXPECT_TRUE(WaitForPixel(195, 125, 0xBEBEBE));
    EXPECT_TRUE(WaitForPixel(195, 110, 0xFFFFFF));
    EXPECT_TRUE(WaitForPixel(195, 150, 0xFFFFFF));
    EXPECT_TRUE(WaitForPixel(195, 190, 0xFFFFFF)) << "below the last row";
}

// ---- Hooks that change the list

TEST_F(FlatList, HookMayEmptyOrDeleteTheListThatCallsIt)
{
    Open(B_MULTIPLE_SELECTION_LIST, 5);
    Do([&] {
        list->onSelection = [&] {
            list->onSelection = nullptr;
            while (BListItem* item = list->RemoveItem(static_cast<int32>(0)))
                delete item;
        };
    });
    ClickRow(2);
    EXPECT_EQ(Locked([&] { return list->CountItems(); }), 0);
    Do([&] {
        list->AddItem(new LoggedItem(log, "last"));
        list->onSelection = [&] {
            list->onSelection = nullptr;
            list->RemoveSelf();
            delete list;
        };
    });
    ClickRow(0);
    EXPECT_EQ(Locked([&] { return window->CountChildren(); }), 0);
}

TEST(Lists, BadIndexesAndItemsChangeNothing)
{
    BListView list(BRect(0, 0, 9, 9), "list", B_MULTIPLE_SELECTION_LIST);
    BStringItem item("one"), other("two");
    EXPECT_FALSE(list.AddItem(nullptr));
    EXPECT_FALSE(list.AddItem(&item, 1));
    EXPECT_FALSE(list.AddItem(&item, -1));
    EXPECT_TRUE(list.AddItem(&item));
    EXPECT_FALSE(list.AddItem(&item));
    BListView second(BRect(0, 0, 9, 9), "second");
    EXPECT_FALSE(second.AddItem(&item)) << "an item is in one list";
    EXPECT_EQ(second.IndexOf(&item), -1);
    for (const int32 index : {-1, 1, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(list.ItemAt(index), nullptr);
        EXPECT_EQ(list.RemoveItem(index), nullptr);
        EXPECT_FALSE(list.IsItemSelected(index));
        EXPECT_FALSE(list.SwapItems(0, index));
        EXPECT_FALSE(list.MoveItem(index, 0));
        EXPECT_FALSE(list.ReplaceItem(index, &other));
        EXPECT_FALSE(list.ItemFrame(index).IsValid());
        list.Select(index);
        list.Select(index, INT32_MAX);
        list.Deselect(index);
        list.ScrollTo(index);
        EXPECT_EQ(list.CurrentSelection(), -1);
    }
    list.Select(0, INT32_MAX);
    EXPECT_EQ(list.CurrentSelection(), 0);
    EXPECT_TRUE(list.ReplaceItem(0, &other));
    EXPECT_EQ(list.FirstItem(), &other);
    EXPECT_TRUE(second.AddItem(&item));
    EXPECT_EQ(list.IndexOf(BPoint(0, NAN)), -1);
    EXPECT_EQ(list.IndexOf(BPoint(0, INFINITY)), -1);
    list.MakeEmpty();
    second.MakeEmpty();
}

TEST(Lists, RowsThatWereSelectedTogetherKnowItWhereverTheyGo)
{
    BListView list(BRect(0, 0, 9, 9), "list", B_MULTIPLE_SELECTION_LIST);
    BListView other(BRect(0, 0, 9, 9), "other", B_MULTIPLE_SELECTION_LIST);
    std::vector<std::unique_ptr<BStringItem>> rows;
    for (int i = 0; i < 1000; i++) {
        rows.push_back(std::make_unique<BStringItem>("row"));
        list.AddItem(rows.back().get());
    }
    for (const size_t disabled : {0, 300, 999})
        rows[disabled]->SetEnabled(false);
    list.Select(0, 999);
    rows[300]->SetEnabled(true);
    rows[301]->SetEnabled(false);
    EXPECT_FALSE(rows[300]->IsSelected());
    EXPECT_TRUE(rows[301]->IsSelected());
    EXPECT_FALSE(rows[999]->IsSelected());
    EXPECT_EQ(list.CurrentSelection(0), 1);
    EXPECT_EQ(list.CurrentSelection(996), 998);
    EXPECT_EQ(list.CurrentSelection(997), -1);

    list.SwapItems(400, 900);
    EXPECT_TRUE(rows[400]->IsSelected());
    BMessage archive;
    EXPECT_EQ(rows[500]->Archive(&archive), B_OK);
    EXPECT_TRUE(archive.GetBool("_sel", false));
    BStringItem instead("instead");
    list.ReplaceItem(600, &instead);
    EXPECT_TRUE(rows[600]->IsSelected());
    EXPECT_FALSE(instead.IsSelected());
    list.MakeEmpty();
    EXPECT_FALSE(rows[700]->IsSelected()) << "an empty list has no selection";

    for (const auto& row : rows)
        other.AddItem(row.get());
    EXPECT_EQ(other.CurrentSelection(0), 600) << "it came as it was";
    other.Select(10, 990);
    other.DeselectAll();
    rows[20]->Select();
    EXPECT_EQ(other.CurrentSelection(0), 20);
    EXPECT_FALSE(rows[19]->IsSelected());
    EXPECT_FALSE(rows[600]->IsSelected());
    other.RemoveItems(0, 1000);
    EXPECT_FALSE(rows[500]->IsSelected());
}

TEST(Lists, LeavingMultipleSelectionKeepsTheFirst)
{
    BListView list(BRect(0, 0, 9, 9), "list", B_MULTIPLE_SELECTION_LIST);
    BStringItem a("a"), b("b"), c("c");
    for (BStringItem* item : {&a, &b, &c})
        list.AddItem(item);
    list.Select(1, 2);
    list.SetListType(B_SINGLE_SELECTION_LIST);
    EXPECT_TRUE(b.IsSelected());
    EXPECT_FALSE(c.IsSelected());
    list.Select(0, 2);
    EXPECT_EQ(list.CurrentSelection(0), 0);
    EXPECT_EQ(list.CurrentSelection(1), -1);
}

// ---- Outlines

TEST_F(OutlineList, LatchOpensAndClosesWithoutSelecting)
{
    Open(B_SINGLE_SELECTION_LIST, 2);
    Do([&] {
        list->AddUnder(new LoggedItem(log, "below"), list->ItemAt(0));
        list->AddUnder(new LoggedItem(log, "last"), list->ItemAt(0));
    });
    EXPECT_STREQ(Locked([&] { return static_cast<BStringItem*>(list->ItemAt(2))->Text(); }),
                 "last");
    Click(106, 110);
    Settle();
    EXPECT_EQ(Locked([&] { return list->CountItems(); }), 2);
    EXPECT_EQ(Selected(), "");
    Click(106, 110);
    Settle();
    EXPECT_EQ(Locked([&] { return list->CountItems(); }), 4);
    // Released elsewhere, the latch stays.
    inject_pointer(106, 110);
    inject_button(1, true);
    inject_pointer(160, 110);
    inject_button(1, false);
    Settle();
    EXPECT_EQ(Locked([&] { return list->CountItems(); }), 4);
    ClickRow(0);
    EXPECT_EQ(Selected(), "0");
}

TEST_F(OutlineList, SideArrowsOpenCloseAndGoUpAndDown)
{
    Open(B_SINGLE_SELECTION_LIST, 2);
    Do([&] {
        list->AddUnder(new LoggedItem(log, "below"), list->ItemAt(0));
        list->Collapse(list->ItemAt(0));
        list->Select(0);
    });
    Type(kKeyRight);
    EXPECT_EQ(Locked([&] { return list->CountItems(); }), 3);
    EXPECT_EQ(Selected(), "0");
    Type(kKeyRight);
    EXPECT_EQ(Selected(), "1");
    Type(kKeyLeft);
    EXPECT_EQ(Selected(), "0");
    Type(kKeyLeft);
    EXPECT_EQ(Locked([&] { return list->CountItems(); }), 2);
}

TEST_F(OutlineList, ClosingARowDeselectsWhatItHides)
{
    Open(B_MULTIPLE_SELECTION_LIST, 2);
    Do([&] {
        list->AddUnder(new LoggedItem(log, "below"), list->ItemAt(0));
        list->Select(1, 2);
    });
    log.Clear();
    Do([&] { list->Collapse(list->ItemAt(0)); });
    EXPECT_EQ(Selected(), "1");
    EXPECT_EQ(log.Count("selected 1"), 1);
}
