// List gadgets and their user: mouse, keys, drags, drops, and handlers that change their own list.

#include "gadgets/list_gadgets.h"
#include "support/click_interval.h"

#include <InterfaceDefs.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <random>
#include <vector>

namespace {

const int32_t kKeyUp = 0x57, kKeyLeft = 0x61, kKeyDown = 0x62, kKeyRight = 0x63;
const int32_t kKeyEnter = 0x47, kKeyTab = 0x26, kKeyA = 0x3c;

int32_t gList;
int32_t gDepth;            // of the handler below
int32_t (*gAct)(int32_t);  // what it does

int32_t on_double(int32_t row)
{
    gHandlers.Add("double " + std::to_string(row));
    return 0;
}

void* handler(int32_t (*act)(int32_t)) { return reinterpret_cast<void*>(act); }

int32_t on_files(int32_t count, char** paths)
{
    gHandlers.Add("files " + std::to_string(count) + " " + (count > 0 ? paths[0] : ""));
    return 0;
}

// Takes the drops in its frame.
class DropView : public BView {
public:
    explicit DropView(BRect frame) : BView(frame, "drop", B_FOLLOW_NONE, B_WILL_DRAW) {}
    void MessageReceived(BMessage* message) override
    {
        if (message->WasDropped() && message->what == 'DATA')
            gHandlers.Add("dropped " + std::to_string(message->GetInt32("sl", -1)) +
                          (message->HasPointer("it") && message->HasPointer("gd") ? "" : "?"));
        BView::MessageReceived(message);
    }
};

class ListInput : public ListGadgets {
protected:
    const ClickInterval fQuick{1};  // no two clicks are a double click, unless a test wants that

    int32_t MakeFull(int32_t kind)
    {
        const int32_t ident = MakeList(kind, {"a", "b", "c", "d", "e", "f"});
        SetHandlerForGadget(ident, 6, handler(on_double));
        return ident;
    }
};

}  // namespace

// ---- The mouse

TEST_F(ListInput, ClickSelectsARowAndBelowTheLastNone)
{
    const int32_t ident = MakeFull(7);
    ClickRow(2);
    EXPECT_EQ(Selected(ident), "2");
    Click(60, 118);
    EXPECT_EQ(Calls(), "value 2, value -1");
    EXPECT_EQ(Selected(ident), "");
    Click(60, 118);
    EXPECT_EQ(Calls(), "value -1") << "said each time";
}

TEST_F(ListInput, ClickBelowTheLastRowOfAnOutlineChangesNothing)
{
    const int32_t ident = MakeFull(20);
    ClickRow(2);
    Click(60, 118);
    EXPECT_EQ(Calls(), "value 2");
    EXPECT_EQ(Selected(ident), "2");
}

TEST_F(ListInput, SecondClickIsToldAndSelectsNothing)
{
    const ClickInterval slow;
    const int32_t ident = MakeFull(7);
    ClickRow(3);
    ClickRow(3);
    EXPECT_EQ(Calls(), "value 3, double 3");
    EXPECT_EQ(Selected(ident), "3");
}

TEST_F(ListInput, SecondClickOfAnOutlineNeedsAHandler)
{
    const ClickInterval slow;
    const int32_t ident = MakeFull(20);
    ClickRow(3);
    ClickRow(3);
    EXPECT_EQ(Calls(), "value 3, double 3");
    SetHandlerForGadget(ident, 6, nullptr);
    ClickRow(1);
    LvSelectNone(ident);
    Calls();
    ClickRow(1);
    EXPECT_EQ(Calls(), "value 1") << "else it selects again";
}

TEST_F(ListInput, FurtherClicksOfARowAreToldByOutlinesOnly)
{
    const ClickInterval slow;
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeFull(kind);
        Click(60, 250);  // no click of the list before counts
        for (int i = 0; i < 3; i++)
            ClickRow(3);
        EXPECT_EQ(Calls(), kind == 7 ? "value 3, double 3" : "value 3, double 3, double 3");
        KillGadget(0, ident);
    }
}

TEST_F(ListInput, OtherButtonsSelectNothing)
{
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeFull(kind);
        for (const int32_t button : {2, 4}) {
            PressRow(1, button);
            Release(button);
        }
        EXPECT_EQ(Calls(), "");
        EXPECT_EQ(Selected(ident), "");
        KillGadget(0, ident);
    }
}

TEST_F(ListInput, PressTakesTheKeyboardOnlyIfTheGadgetMay)
{
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeFull(kind);
        AddEntryInSub(ident, 0, "below");
        ClickRow(0);
        Click(4, static_cast<int32_t>(PlaceOf(0).y));  // the latch, if there is one
        Settle();
        EXPECT_FALSE(WithList([](BListView& list) { return list.IsFocus(); }));
        FocusOnClick(ident, 1);
        ClickRow(1);
        EXPECT_TRUE(WithList([](BListView& list) { return list.IsFocus(); }));
        KillGadget(0, ident);
        Calls();
    }
}

TEST_F(ListInput, LatchOpensAndSelectsItsRow)
{
    const int32_t ident = MakeList(20, {"a", "b"});
    AddEntryInSub(ident, 0, "x");
    Click(4, static_cast<int32_t>(PlaceOf(0).y));
    EXPECT_EQ(Calls(), "value 0");
    EXPECT_EQ(Rows(ident), "a b");
    Click(4, static_cast<int32_t>(PlaceOf(0).y));
    Settle();
    EXPECT_EQ(Rows(ident), "a x b");
    EXPECT_EQ(Selected(ident), "0");
}

TEST_F(ListInput, ShiftRangesBeginAtTheSmallerRow)
{
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeFull(kind);
        SetMultiSelect(ident, 1);
        ClickRow(5);
        ClickRow(2, {kKeyShift});
        EXPECT_EQ(Selected(ident), "2345");
        ClickRow(3, {kKeyShift});
        EXPECT_EQ(Selected(ident), "23") << "the anchor went to 2";
        ClickRow(5, {kKeyControl});
        ClickRow(2, {kKeyControl});
        EXPECT_EQ(Selected(ident), "235") << "Control only adds";
        KillGadget(0, ident);
    }
}

// Rows selected and the anchor, as clicks leave them.
struct ClickModel {
    std::vector<bool> selected = std::vector<bool>(6, false);
    int32_t anchor = 0;

    void Click(int32_t row, bool shift, bool control)
    {
        if (shift) {
            const auto [low, high] = std::minmax({anchor, row});
            anchor = low;
            for (int32_t i = 0; i < 6; i++)
                selected[i] = i >= low && i <= high && i != 4;
        } else if (control) {
            selected[row] = selected[row] || row != 4;
        } else {
            std::fill(selected.begin(), selected.end(), false);
            anchor = row;
            selected[row] = row != 4;
        }
    }
    std::string Rows() const
    {
        std::string rows;
        for (int32_t i = 0; i < 6; i++)
            rows += selected[i] ? std::to_string(i) : "";
        return rows;
    }
};

TEST_F(ListInput, RandomClicksSelectAsTheModelDoes)
{
    std::mt19937 random(7);
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeFull(kind);
        SetMultiSelect(ident, 1);
        EnableItemLv(ident, 4, 0);
        ClickModel model;
        for (int step = 0; step < 150; step++) {
            const auto row = static_cast<int32_t>(random() % 6);
            const bool shift = random() % 3 == 0, control = random() % 3 == 0;
            if (shift && control)
                ClickRow(row, {kKeyShift, kKeyControl});
            else if (shift || control)
                ClickRow(row, {shift ? kKeyShift : kKeyControl});
            else
                ClickRow(row);
            model.Click(row, shift, control);
            ASSERT_EQ(Selected(ident), model.Rows()) << "kind " << kind << " step " << step;
        }
        KillGadget(0, ident);
    }
}

// ---- Drags and drops

TEST_F(ListInput, MovingWithTheButtonDownDragsTheRowIfAllowed)
{
    const int32_t ident = MakeFull(7);
    BWindow* object = Object();
    object->Lock();
    object->ChildAt(0)->AddChild(new DropView(BRect(160, 0, 280, 120)));
    object->Unlock();
    const auto drag = [&] {
        PressRow(2);
        Settle();
        window.Point(64, static_cast<int32_t>(PlaceOf(2).y) + 3);
        Settle();
        window.Point(200, 60);
        Settle();
        Release();
        return Calls();
    };
    EXPECT_EQ(drag(), "value 2");
    LvSelectNone(ident);
    SetDragLv(ident, 1);
    EXPECT_EQ(drag(), "value -1, value 2, dropped 2");
    PressRow(3);
    Release();
    window.Point(200, 60);
    EXPECT_EQ(Calls(), "value 3") << "a click drags nothing";
    SetDragLv(ident, 0);
    EXPECT_EQ(drag(), "value 2");
}

// Which Control does not move.
TEST_F(ListInput, DragsTakeTheRowOfTheLastPlainClickKept)
{
    const int32_t ident = MakeFull(7);
    SetMultiSelect(ident, 1);
    SetDragLv(ident, 1);
    BWindow* object = Object();
    object->Lock();
    object->ChildAt(0)->AddChild(new DropView(BRect(160, 0, 280, 120)));
    object->Unlock();
    ClickRow(1);
    inject_key(kKeyControl, true);
    PressRow(4);
    Settle();
    window.Point(64, static_cast<int32_t>(PlaceOf(4).y) + 3);
    Settle();
    window.Point(200, 60);
    Settle();
    Release();
    inject_key(kKeyControl, false);
    EXPECT_EQ(Calls(), "value 1, value 1, dropped 1");
    EXPECT_EQ(Selected(ident), "14");
}

// The window's thread is free while the button stays down.
TEST_F(ListInput, HeldButtonLeavesTheWindowFree)
{
    const int32_t ident = MakeFull(7);
    SetDragLv(ident, 1);
    PressRow(1);
    EXPECT_EQ(Calls(), "value 1");
    AddLvEntry(ident, "more");
    EXPECT_EQ(CountEntry(ident), 7);
    Release();
}

TEST_F(ListInput, DroppedFilesReachTheListsHandler)
{
    char name[] = "/tmp/list_drop_XXXXXX";
    const int file = mkstemp(name);
    ASSERT_GE(file, 0);
    close(file);
    for (const int32_t kind : {7, 10, 20, 23}) {
        const int32_t ident = MakeFull(kind);
        SetHandlerForGadget(ident, 7, reinterpret_cast<void*>(on_files));
        const char* paths[] = {name};
        inject_file_drop(window.X(60), window.Y(40), paths, 1);
        EXPECT_TRUE(eventually([&] { return Calls() == "files 1 " + std::string(name); })) << kind;
        SetHandlerForGadget(ident, 7, nullptr);
        inject_file_drop(window.X(60), window.Y(40), paths, 1);
        EXPECT_EQ(Calls(), "") << "nobody asked";
        KillGadget(0, ident);
    }
    unlink(name);
}

// As many paths are passed on as the message has fields.
TEST_F(ListInput, ManyDroppedFilesAreCutShortKept)
{
    const int32_t ident = MakeFull(7);
    SetHandlerForGadget(ident, 7, reinterpret_cast<void*>(+[](int32_t count, char** paths) {
                            std::string call = std::to_string(count);
                            for (int32_t i = 0; i < count; i++)
                                call += " " + std::string(paths[i]);
                            gHandlers.Add(call + (paths[count] == nullptr ? "" : "?"));
                            return 0;
                        }));
    const char* three[] = {"/usr", "/etc", "/tmp"};
    inject_file_drop(window.X(60), window.Y(40), three, 3);
    EXPECT_TRUE(eventually([&] { return Calls() == "3 /usr /etc /tmp"; }));
    const std::vector<const char*> many(40, "/usr");
    inject_file_drop(window.X(60), window.Y(40), many.data(), 40);
    std::string calls;
    EXPECT_TRUE(eventually([&] { return !(calls += Calls()).empty(); }));
    EXPECT_GE(std::stoi(calls), 3);
    EXPECT_LT(std::stoi(calls), 40);
}

// ---- Keys

TEST_F(ListInput, KeysReachTheHandlerAfterTheListButNotTab)
{
    const int32_t ident = MakeFull(8);
    ActivateGadget(ident);
    Key(kKeyDown);
    Key(kKeyDown);
    Key(kKeyA);
    Key(kKeyEnter);
    EXPECT_EQ(Calls(), "value 0, key 31, value 1, key 31, key 97, key 10");
    Key(kKeyTab);
    EXPECT_EQ(Calls(), "");
}

TEST_F(ListInput, KeysComeWithTheModifiersAndWithASign)
{
    for (const int32_t kind : {7, 20}) {
        const int32_t ident = MakeFull(kind);
        SetHandlerForGadget(ident, 3, nullptr);
        SetHandlerForGadget(ident, 2, reinterpret_cast<void*>(+[](int32_t key, int32_t held) {
                                gHandlers.Add(std::to_string(key) + " " + std::to_string(held & 7));
                                return 0;
                            }));
        ActivateGadget(ident);
        inject_key(kKeyShift, true);
        Key(kKeyA);
        inject_key(kKeyShift, false);
        Settle();
        EXPECT_EQ(gHandlers.Take(), "65 1") << kind;
        inject_text("é");
        Settle();
        EXPECT_EQ(gHandlers.Take(), kind == 7 ? "-61 0" : "") << "outlines keep long keys";
        KillGadget(0, ident);
    }
}

TEST_F(ListInput, OutlineKeysOpenAndCloseTopRows)
{
    const int32_t ident = MakeList(20, {"a", "b"});
    AddEntryInSub(ident, 0, "x");
    AddEntryInSub(ident, 0, "y");
    ActivateGadget(ident);
    Key(kKeyEnter);
    Settle();
    EXPECT_EQ(Rows(ident), "a x y b") << "no row is selected";
    SetSelectEntry(ident, 0);
    Calls();
    Key(kKeyRight);
    Settle();
    EXPECT_EQ(Rows(ident), "a x y b");
    Key(kKeyLeft);
    Settle();
    EXPECT_EQ(Rows(ident), "a b");
    Key(kKeyLeft);
    Key(kKeyRight);
    Settle();
    EXPECT_EQ(Rows(ident), "a x y b");
    EXPECT_EQ(Selected(ident), "0");
    Key(kKeyEnter);
    Settle();
    EXPECT_EQ(Rows(ident), "a b");
    EXPECT_EQ(Calls(), "");
    Key(kKeyEnter);
    EXPECT_EQ(Calls(), "value 1") << "opens, and selects the first row below";
    EXPECT_EQ(Rows(ident), "a x y b");
    Key(kKeyEnter);
    Key(kKeyLeft);
    Key(kKeyRight);
    Settle();
    EXPECT_EQ(Rows(ident), "a x y b") << "rows below have nothing to open";
    EXPECT_EQ(Selected(ident), "1");
    EXPECT_EQ(Calls(), "");
    Key(kKeyDown);
    Key(kKeyUp);
    Key(kKeyA);
    EXPECT_EQ(Calls(), "value 2, key 31, value 1, key 30, key 97");
}

TEST_F(ListInput, EnterFindsTheFirstRowBelowWhereverItIs)
{
    const int32_t ident = MakeList(20, {"a", "b", "c"});
    for (const int32_t top : {0, 0, 0, 2})
        AddEntryInSub(ident, top, "x");
    LvCollapseAll(ident);
    SetSelectEntry(ident, 2);
    ActivateGadget(ident);
    Calls();
    Key(kKeyEnter);
    EXPECT_EQ(Calls(), "value 3");
    EXPECT_EQ(Rows(ident), "a b c x");
}

// ---- Handlers that change their own list

TEST_F(ListInput, HandlerMayClearFillSortOrKillItsList)
{
    static int32_t (*const kActs[])(int32_t) = {
        [](int32_t) {
            ClearListView(gList);
            return 0;
        },
        [](int32_t) {
            AddLvEntry(gList, "0");
            SortLv(gList);
            return 0;
        },
        [](int32_t row) {
            RemoveItem(gList, row);
            return 0;
        },
        [](int32_t) {
            RemoveItem(gList, 0);
            LvSelectAll(gList);
            return 0;
        },
        [](int32_t) {
            LvSelectNone(gList);
            LvCollapseAll(gList);
            return 0;
        },
        [](int32_t) {
            KillGadget(0, gList);
            return 0;
        },
    };
    for (const int32_t kind : {7, 10, 20, 23}) {
        for (auto* act : kActs) {
            gList = MakeFull(kind);
            AddEntryInSub(gList, 1, "below");
            SetMultiSelect(gList, 1);
            SetSelectEntry(gList, 0);
            gAct = act;
            SetHandlerForGadget(gList, 3, handler([](int32_t row) {
                                    if (gDepth == 0) {
                                        gDepth++;
                                        gAct(row);
                                        gDepth--;
                                    }
                                    return 0;
                                }));
            ClickRow(2);
            if (is_gadget_ident(gList))
                ClickRow(0, {kKeyShift});
            // And on the program's own thread.
            SetSelectEntry(gList, 1);
            RemoveItem(gList, 1);
            LvSelectNone(gList);
            SetMultiSelect(gList, 0);
            LvSelectAll(gList);
            SortLv(gList);
            LvCollapseAll(gList);
            ClearListView(gList);
            EXPECT_EQ(CountEntry(gList), 0);
            KillGadget(0, gList);
        }
    }
    Calls();
}

TEST_F(ListInput, HandlersOfKeysClicksAndDropsMayChangeOrKillTheirList)
{
    static int32_t (*const kActs[])(int32_t) = {
        [](int32_t) {
            ClearListView(gList);
            AddLvEntry(gList, "0");
            return 0;
        },
        [](int32_t) {
            SortLv(gList);
            RemoveItem(gList, 0);
            return 0;
        },
        [](int32_t) {
            KillGadget(0, gList);
            return 0;
        },
    };
    static std::atomic<int> calls;
    static const auto act = handler([](int32_t number) {
        calls++;
        return gAct(number);
    });
    const char* paths[] = {"/tmp"};
    const ClickInterval slow;
    for (const int32_t kind : {7, 10, 20, 23}) {
        for (auto* change : kActs) {
            for (const int32_t slot : {2, 6, 7}) {
                gList = MakeFull(kind);
                AddEntryInSub(gList, 1, "below");
                gAct = change;
                calls = 0;
                SetHandlerForGadget(gList, slot, act);
                ActivateGadget(gList);
                SetSelectEntry(gList, 1);
                if (slot == 2) {
                    Key(kKeyDown);
                } else if (slot == 7) {
                    inject_file_drop(window.X(60), window.Y(40), paths, 1);
                } else {
                    Click(250, 250);  // no other click of a row counts
                    ClickRow(1);
                    ClickRow(1);
                }
                EXPECT_TRUE(eventually([] { return calls > 0; })) << kind << " " << slot;
                Settle();
                KillGadget(0, gList);
                Settle();
            }
        }
    }
    Calls();
}

TEST_F(ListInput, HandlerThatRemovesTheRowThatIsRemovedLosesNoOther)
{
    gList = MakeFull(7);
    SetSelectEntry(gList, 2);
    SetHandlerForGadget(gList, 3, handler([](int32_t) {
                            RemoveItem(gList, 2);
                            AddLvEntry(gList, "new");
                            MoveItem(gList, 5, 2);
                            return 0;
                        }));
    RemoveItem(gList, 2);
    EXPECT_EQ(Rows(gList), "a b new d e f");
}
