// Gadgets that are killed at bad moments: by their own handlers, by those of others, while a call
// is about them.

#include "gadget_window.h"

#include <List.h>
#include <MessageFilter.h>

#include <algorithm>
#include <random>
#include <thread>
#include <vector>

static const int32_t kTab = 0x26;
static const char* const kLabels[] = {"one", "two", nullptr};

static int32_t sVictim;
static int32_t kill_victim()
{
    KillGadget(0, sVictim);
    gHandlers.Add("killed");
    return 0;
}
static int32_t kill_victim_by_value(int32_t) { return kill_victim(); }

TEST_F(GadgetTest, GadgetMayKillItselfFromItsHandlers)
{
    const struct {
        int32_t kind, slot;
        int32_t x, y;
    } rows[] = {{1, 1, 20, 20},  {2, 1, 20, 20},  {2, 3, 20, 20},  {13, 3, 87, 15},
                {14, 3, 15, 40}, {15, 3, 60, 40}, {18, 1, 15, 20}, {18, 3, 15, 20}};
    for (const auto& row : rows) {
        const void* text = row.kind == 18 ? static_cast<const void*>(kLabels) : "label";
        sVictim = Make(row.kind, 10, 10, 80, 40, text);
        for (int32_t slot : {1, 2, 3})
            SetHandlerForGadget(sVictim, slot, nullptr);
        SetHandlerForGadget(sVictim, row.slot,
                            row.slot == 3 ? reinterpret_cast<void*>(kill_victim_by_value)
                                          : reinterpret_cast<void*>(kill_victim));
        Click(row.x, row.y);
        EXPECT_EQ(Calls(), "killed") << row.kind << " by slot " << row.slot;
        EXPECT_FALSE(is_gadget_ident(sVictim));
        EXPECT_EQ(CountViews(), 0);
        gHandlers.Take();
    }
}

// Of many in no order: the others are found, keep their order for Tab, and their pixels.
TEST_F(GadgetTest, ThoseThatStayAreWhereTheyWereWhoeverIsKilled)
{
    std::vector<int32_t> idents, left;
    for (int32_t i = 0; i < 200; i++) {
        idents.push_back(Make(15, i % 10 * 30, i / 10 * 15, 24, 14, nullptr, 100));
        SetHandlerForGadget(idents.back(), 3, nullptr);
        SetValue(idents.back(), i % 100);
    }
    std::vector<int32_t> order(idents);
    std::shuffle(order.begin(), order.end(), std::minstd_rand(5));
    for (size_t i = 0; i < order.size(); i++) {
        if (i % 8 != 0) {
            KillGadget(0, order[i]);
            KillGadget(0, order[i]);
        }
    }
    for (size_t i = 0; i < idents.size(); i++) {
        const bool stays =
            (std::find(order.begin(), order.end(), idents[i]) - order.begin()) % 8 == 0;
        EXPECT_EQ(is_gadget_ident(idents[i]), stays);
        EXPECT_EQ(GetValue(idents[i]), stays ? int32_t(i % 100) : 0);
        if (stays)
            left.push_back(static_cast<int32_t>(i));
    }
    for (const int32_t place : left) {
        SetHandlerForGadget(idents[static_cast<size_t>(place)], 3,
                            reinterpret_cast<void*>(on_value));
        SetValue(idents[static_cast<size_t>(place)], 100);
        EXPECT_EQ(Calls(), "value 100") << place;
    }
    ASSERT_EQ(CountViews(), static_cast<int32>(left.size()));
    for (size_t i = 0; i < left.size(); i++)
        EXPECT_EQ(FrameOf(static_cast<int32>(i)).LeftTop(),
                  BPoint(float(left[i] % 10 * 30), float(left[i] / 10 * 15)));
    for (size_t i = 0; i < left.size(); i++) {
        Key(kTab);
        Settle();
        EXPECT_TRUE(WithView(static_cast<int32>(i), [](BView* view) { return view->IsFocus(); }));
    }
}

TEST_F(GadgetTest, GadgetMayBeKilledByTheHandlerOfAnotherWindow)
{
    const int32_t button = Make(1, 10, 10, 80, 24);
    sVictim = button;
    TestWindow other(500, 100, 100, 100);
    const int32_t killer = CreateGadget(1, other.Ident(), 10, 10, 80, 24, "kill", 0);
    SetHandlerForGadget(killer, 1, reinterpret_cast<void*>(kill_victim));
    other.Click(20, 20);
    EXPECT_TRUE(eventually([&] { return !is_gadget_ident(button); }));
}

TEST_F(GadgetTest, GadgetsMayBeKilledWhileTheUserClicksThem)
{
    for (int round = 0; round < 30; round++) {
        const int32_t button = Make(1, 10, 10, 80, 24);
        const int32_t slider = Make(15, 10, 50, 80, 24, nullptr);
        std::thread program([=] {
            KillGadget(0, button);
            KillGadget(0, slider);
        });
        Click(20, 20);
        Press(40, 60);
        window.Point(70, 60);
        Release();
        program.join();
    }
    Settle();
    EXPECT_EQ(CountViews(), 0);
}

TEST_F(GadgetTest, WindowThatClosesInAHandlerTakesItsKilledGadgetsAlong)
{
    static int32_t window_ident;
    auto* other = new TestWindow(500, 100, 100, 100);
    window_ident = other->Ident();
    sVictim = CreateGadget(1, window_ident, 10, 10, 80, 24, "kill", 0);
    SetHandlerForGadget(sVictim, 1, reinterpret_cast<void*>(+[]() -> int32_t {
                            KillGadget(0, sVictim);
                            CloseWindow(window_ident);
                            return 0;
                        }));
    other->Click(20, 20);
    EXPECT_TRUE(eventually([] { return !is_window_ident(window_ident); }));
    EXPECT_FALSE(is_gadget_ident(sVictim));
    delete other;
}

static int32_t sWindow;

TEST_F(GadgetTest, HandlerMayKillItsGadgetWithinACallOfTheProgram)
{
    const struct {
        int32_t kind;
        void (*change)(int32_t);
    } rows[] = {
        {2, [](int32_t ident) { SetChecked(ident, 1); }},
        {13, [](int32_t ident) { SetValue(ident, 9); }},
        {14, [](int32_t ident) { SetRange(ident, 20, 30); }},
        {15, [](int32_t ident) { SetValue(ident, 9); }},
        {16, [](int32_t ident) { SetSliderProportion(ident, 30); }},
        {18, [](int32_t ident) { RadSelected(ident, 0); }},
        {30, [](int32_t ident) { SetColorRgb(ident, 0x102030FF); }},
    };
    for (const auto& row : rows) {
        for (const int32_t parent : {window.Ident(), -1}) {
            const void* text = row.kind == 18 ? static_cast<const void*>(kLabels) : "label";
            sVictim = CreateGadget(row.kind, parent, 10, 10, 80, 40, text, 100);
            SetHandlerForGadget(sVictim, 3, reinterpret_cast<void*>(kill_victim_by_value));
            row.change(sVictim);
            EXPECT_FALSE(is_gadget_ident(sVictim) && parent != -1) << row.kind;
            KillGadget(0, sVictim);
            EXPECT_EQ(CountViews(), 0);
        }
    }
}

TEST_F(GadgetTest, HandlerMayTakeItsGadgetOutOfTheWindowAndKillItThen)
{
    sWindow = window;
    for (const int32_t kind : {1, 2, 15, 18}) {
        gHandlers.Take();
        const void* text = kind == 18 ? static_cast<const void*>(kLabels) : "label";
        sVictim = Make(kind, 10, 10, 80, 40, text);
        SetHandlerForGadget(sVictim, kind == 15 ? 3 : 1, reinterpret_cast<void*>(+[]() -> int32_t {
                                RemoveAll(sWindow);
                                return kill_victim();
                            }));
        Click(kind == 15 ? 60 : 15, kind == 15 ? 35 : 20);
        EXPECT_EQ(Calls(), "killed") << kind;
    }
}

TEST_F(GadgetTest, HandlerMayMoveItsGadgetToAnotherWindowWhoseHandlerKillsIt)
{
    TestWindow other(500, 100, 200, 200);
    static int32_t box;
    for (int round = 0; round < 20; round++) {
        box = CreateGadget(24, other.Ident(), 10, 10, 150, 150, nullptr, 0);
        sVictim = Make(2, 10, 10, 80, 24);
        SetHandlerForGadget(sVictim, 1, reinterpret_cast<void*>(+[]() -> int32_t {
                                BBoxAddGadget(box, sVictim);
                                std::thread([] { KillGadget(0, sVictim); }).detach();
                                gHandlers.Add("moved");
                                return 0;
                            }));
        Click(20, 20);
        EXPECT_TRUE(eventually([] { return !is_gadget_ident(sVictim); }));
        Settle();
        KillGadget(0, box);
    }
}

// The addresses of all gadgets' records.
static std::vector<void*> records()
{
    const BList& list = *static_cast<BList*>(gRegistry[4]);
    std::vector<void*> all;
    for (int32 i = 0; i < list.CountItems(); i++)
        all.push_back(list.ItemAt(i));
    return all;
}

TEST_F(GadgetTest, ClickOnAKilledGadgetIsNotANewOnesInItsPlace)
{
    static BMessage click;
    Object()->Lock();
    Object()->AddCommonFilter(new BMessageFilter(
        753, [](BMessage* message, BHandler**, BMessageFilter*) -> filter_result {
            click = *message;
            return B_DISPATCH_MESSAGE;
        }));
    Object()->Unlock();
    const int32_t button = Make(1, 10, 10, 80, 24);
    void* const place = records().back();
    Click(20, 20);
    EXPECT_EQ(Calls(), "action");
    BMessenger(Object()).SendMessage(&click);
    EXPECT_EQ(Calls(), "action");
    // Others go first, for the C library keeps some memory to itself.
    std::vector<int32_t> others;
    for (int i = 0; i < 20; i++)
        others.push_back(Make(1, 200, 200, 10, 10));
    for (const int32_t other : others)
        KillGadget(0, other);
    KillGadget(0, button);
    for (int i = 0; i < 100 && (i == 0 || records().back() != place); i++)
        Make(1, 10, 10, 80, 24);
    BMessenger(Object()).SendMessage(&click);
    EXPECT_EQ(Calls(), "");
}

TEST_F(GadgetTest, GadgetIsFoundInTheWindowThatItIsMovedToMeanwhile)
{
    TestWindow other(500, 100, 200, 200);
    const int32_t boxes[] = {Make(24, 10, 10, 150, 150, nullptr),
                             CreateGadget(24, other.Ident(), 10, 10, 150, 150, nullptr, 0)};
    const int32_t slider = Make(15, 10, 10, 100, 24);
    SetHandlerForGadget(slider, 3, nullptr);
    std::thread mover([&] {
        for (int i = 0; i < 300; i++)
            BBoxAddGadget(boxes[i % 2], slider);
    });
    for (int32_t i = 0; i < 1000; i++) {
        SetValue(slider, i % 100);
        SetLabel(slider, i % 2 == 0 ? "a" : "b");
    }
    mover.join();
    SetValue(slider, 42);
    EXPECT_EQ(GetValue(slider), 42);
}
