// Tab gadgets through the exported calls: tabs, pages, what is on them, and their ends.

#include "gadgets/gadget_window.h"

#include <Bitmap.h>
#include <Screen.h>
#include <TabView.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

const int32_t kKeyRight = 0x63, kKeyLeft = 0x61, kKeyEnter = 0x47;

class TabGadgets : public GadgetTest {
protected:
    int32_t MakeTabs(std::initializer_list<const char*> labels, int32_t kind = 25)
    {
        const int32_t ident = Make(kind, 0, 0, 280, 200);
        for (const char* label : labels)
            AddTab(ident, label);
        gHandlers.Take();
        return ident;
    }
    // Asks the tab view that is a child of the top view at a place; locked.
    template <class Question>
    auto Ask(Question ask, int32 place = 0)
    {
        return WithView(place, [&](BView* view) { return ask(*dynamic_cast<BTabView*>(view)); });
    }
    void ClickTab(int32 index)
    {
        const BRect frame = Ask([=](BTabView& tabs) { return tabs.TabFrame(index); });
        Click(static_cast<int32_t>(frame.left + frame.Width() / 2),
              static_cast<int32_t>(frame.top + frame.Height() / 2));
    }
    static int32 CountOnPage(BTabView& tabs, int32 index)
    {
        return tabs.ViewForTab(index)->CountChildren();
    }
};

int32_t gTabs, gButton;

void* handler(int32_t (*act)(int32_t)) { return reinterpret_cast<void*>(act); }

int32_t kill_tabs(int32_t)
{
    gHandlers.Add("called");
    KillGadget(0, gTabs);
    return 0;
}

}  // namespace

TEST_F(TabGadgets, EachNewTabBringsTheFirstToTheFrontKept)
{
    const int32_t ident = Make(25, 0, 0, 200, 150);
    EXPECT_EQ(TabSelection(ident), -1);
    AddTab(ident, "one");
    AddTab(ident, "two");
    TabSelect(ident, 1);
    EXPECT_EQ(GetValue(ident), 1);
    AddTab(ident, nullptr);
    EXPECT_EQ(TabSelection(ident), 0);
    EXPECT_EQ(Calls(), "value 0, value 0, value 1, value 0");
    EXPECT_STREQ(Ask([](BTabView& tabs) { return std::string(tabs.TabAt(1)->Label()); }).c_str(),
                 "two");
    const BRect page = Ask([](BTabView& tabs) { return tabs.ViewForTab(0)->Frame(); });
    EXPECT_EQ(page.Width(), 199);
    EXPECT_EQ(page.Height(), 150 - Ask([](BTabView& tabs) { return tabs.TabHeight(); }) - 1);
    const rgb_color ground = {216, 216, 216, 255};
    EXPECT_EQ(Ask([](BTabView& tabs) { return tabs.ViewForTab(1)->ViewColor(); }), ground);
    EXPECT_EQ(Ask([](BTabView& tabs) { return tabs.ViewColor(); }), ground);
}

TEST_F(TabGadgets, ClicksAndKeysBringTabsToTheFront)
{
    const int32_t ident = MakeTabs({"a", "b", "c"});
    ClickTab(1);
    EXPECT_EQ(Calls(), "value 1");
    ClickTab(1);
    EXPECT_EQ(Calls(), "") << "it is in front already";
    ActivateGadget(ident);
    Key(kKeyRight);
    EXPECT_EQ(Calls(), "");
    Key(kKeyEnter);
    EXPECT_EQ(Calls(), "value 2");
    Key(kKeyRight);
    Key(kKeyEnter);
    EXPECT_EQ(Calls(), "value 0");
    Key(kKeyLeft);
    Key(kKeyLeft);
    Key(kKeyEnter);
    EXPECT_EQ(Calls(), "value 1");
    EXPECT_EQ(TabSelection(ident), 1);
}

TEST_F(TabGadgets, DisabledTabsStayBehind)
{
    const int32_t ident = MakeTabs({"a", "b", "c"});
    TabEnable(ident, 1, 0);
    TabSelect(ident, 1);
    ClickTab(1);
    EXPECT_EQ(TabSelection(ident), 0);
    EXPECT_EQ(Calls(), "");
    RemoveTab(ident, 0);
    EXPECT_EQ(Calls(), "value 1") << "the one beside is disabled";
    TabEnable(ident, 0, 1);
    TabSelect(ident, 0);
    EXPECT_EQ(Calls(), "value 0");
}

TEST_F(TabGadgets, TabsThatAreTurnedOffHavePaleLabels)
{
    const int32_t ident = MakeTabs({"label", "label"});
    const auto darkest = [&] {
        BBitmap* shot = nullptr;
        BRect frame = Ask([](BTabView& tabs) {
            return tabs.ConvertToScreen(tabs.TabFrame(1).InsetByCopy(12, 5));
        });
        EXPECT_EQ(BScreen().GetBitmap(&shot, false, &frame), B_OK);
        const std::unique_ptr<BBitmap> owner(shot);
        const auto* bytes = static_cast<const uint8_t*>(shot->Bits());
        uint8_t least = 255;  // of blue, in rows of four bytes a pixel
        for (int32 i = 0; i < shot->BitsLength(); i += 4)
            least = std::min(least, bytes[i]);
        return least;
    };
    EXPECT_TRUE(eventually([&] { return darkest() < 40; }));
    TabEnable(ident, 1, 0);
    EXPECT_TRUE(eventually([&] { return darkest() > 70; }));
    TabEnable(ident, 1, 1);
    EXPECT_TRUE(eventually([&] { return darkest() < 40; }));
}

TEST_F(TabGadgets, PagesKeepTheSizeThatTabsHadKept)
{
    const int32_t ident = MakeTabs({"a", "b"});
    const auto widths = [&] {
        return Ask([](BTabView& tabs) {
            return std::pair(tabs.Frame().Width(), tabs.ViewForTab(1)->Frame().Width());
        });
    };
    EXPECT_EQ(widths(), std::pair(280.0f, 279.0f));
    ResizeGadget(ident, 250, 180);
    EXPECT_EQ(widths(), std::pair(250.0f, 279.0f));
    TabSelect(ident, 1);
    EXPECT_EQ(widths(), std::pair(250.0f, 279.0f));
}

TEST_F(TabGadgets, BadArgumentsChangeNothing)
{
    const int32_t ident = MakeTabs({"a", "b"});
    const int32_t button = Make(1, 0, 0, 50, 20);
    for (const int32_t index :
         {-1, 2, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        TabSelect(ident, index);
        RemoveTab(ident, index);
        AddGadgetInTab(button, ident, index);
        TabEnable(ident, index, 0);
        TabSetFocus(ident, index, 1);
        SetTabHeight(ident, index);
        SetTabWidth(ident, index);
    }
    for (const int32_t other : {0, -1, button, 12345}) {
        AddTab(other, "x");
        RemoveTab(other, 0);
        TabSelect(other, 0);
        TabEnable(other, 0, 0);
        TabSetFocus2(other, 1);
        AddGadgetInTab(ident, other, 0);
        EXPECT_EQ(TabSelection(other), 0);
    }
    AddGadgetInTab(0, ident, 0);
    EXPECT_EQ(TabSelection(ident), 0);
    EXPECT_EQ(CountViews(), 2) << "the button stayed where it was";
    EXPECT_EQ(Calls(), "");
    const int32_t loose = CreateGadget(25, -1, 0, 0, 100, 100, nullptr, 0);
    AddTab(loose, "a");
    AddTab(loose, "b");
    TabSelect(loose, 1);
    EXPECT_EQ(TabSelection(loose), 0) << "nothing was locked";
    EXPECT_EQ(GetValue(loose), 1);
    KillGadget(0, loose);
}

TEST_F(TabGadgets, WidthsAreAsUsualOrOfTheWidestLabel)
{
    const int32_t ident = MakeTabs({"a", "much longer"});
    const auto width = [&](int32 index) {
        return Ask([=](BTabView& tabs) { return tabs.TabFrame(index).Width(); });
    };
    const float usual = width(0);
    SetTabWidth(ident, 2);
    EXPECT_EQ(width(0), usual);
    SetTabWidth(ident, 0);
    EXPECT_LT(width(0), usual);
    EXPECT_EQ(width(0), width(1));
    SetTabWidth(ident, 1);
    EXPECT_EQ(width(0), usual);
    SetTabHeight(ident, 40);
    EXPECT_EQ(Ask([](BTabView& tabs) { return tabs.TabFrame(0).Height(); }), 40);
    // The same by the number of what is set.
    TabSystem(ident, 30, 0);
    EXPECT_EQ(Ask([](BTabView& tabs) { return tabs.TabFrame(0).Height(); }), 30);
    TabSystem(ident, 0, 1);
    EXPECT_LT(width(0), usual);
    for (const int32_t what : {-1, 2, INT32_MAX})
        TabSystem(ident, 1, what);
    EXPECT_LT(width(0), usual);  // nothing else is set
    TabSystem(ident, 2, 1);
    EXPECT_EQ(width(0), width(1));
    TabSystem(ident, 1, 1);
    EXPECT_EQ(width(0), usual);
}

TEST_F(TabGadgets, FocusTabIsTheOneNamedOrInFront)
{
    const int32_t ident = MakeTabs({"a", "b"});
    const auto focus = [&] { return Ask([](BTabView& tabs) { return tabs.FocusTab(); }); };
    TabSetFocus(ident, 1, 1);
    EXPECT_EQ(focus(), 1);
    TabSetFocus2(ident, 1);
    EXPECT_EQ(focus(), 0);
    TabSetFocus2(ident, 0);
    EXPECT_EQ(focus(), -1);
}

TEST_F(TabGadgets, GadgetsOfAllPagesCanBeChanged)
{
    const int32_t ident = MakeTabs({"a", "b"});
    const int32_t box = Make(2, 30, 40, 80, 20);
    AddGadgetInTab(box, ident, 1);
    EXPECT_EQ(CountViews(), 1);
    SetLabel(box, "hidden");
    EXPECT_STREQ(GetLabel(box), "hidden");
    SetChecked(box, 1);
    TabSelect(ident, 1);
    EXPECT_EQ(Calls(), "value 1, value 1");
    const BRect frame = Ask([](BTabView& tabs) { return tabs.ViewForTab(1)->ChildAt(0)->Frame(); });
    EXPECT_EQ(frame.LeftTop(), BPoint(30, 40));
    const BPoint place = Ask([](BTabView& tabs) {
        return tabs.ViewForTab(1)->ChildAt(0)->ConvertToScreen(BPoint(5, 10));
    });
    Click(static_cast<int32_t>(place.x) - 100, static_cast<int32_t>(place.y) - 100);
    EXPECT_EQ(Calls(), "action, value 0");
    AddGadgetInTab(box, ident, 0);
    EXPECT_EQ(Ask([](BTabView& tabs) { return CountOnPage(tabs, 0); }), 1);
    KillGadget(0, box);
    EXPECT_EQ(Ask([](BTabView& tabs) { return CountOnPage(tabs, 0); }), 0);
    EXPECT_FALSE(is_gadget_ident(box));
}

TEST_F(TabGadgets, TabsAreNeverPutIntoThemselves)
{
    const int32_t outer = MakeTabs({"a", "b"});
    const int32_t inner = MakeTabs({"c"});
    const int32_t frame = Make(24, 0, 0, 100, 100);
    AddGadgetInTab(inner, outer, 1);
    AddGadgetInTab(frame, inner, 0);
    EXPECT_EQ(CountViews(), 1);
    AddGadgetInTab(outer, outer, 0);
    AddGadgetInTab(outer, inner, 0);
    BBoxAddGadget(frame, outer);
    BBoxAddGadgetTitle(frame, inner);
    EXPECT_EQ(CountViews(), 1);
    RemoveTab(outer, 1);
    AddGadgetInTab(outer, inner, 0);
    BBoxAddGadget(frame, outer);
    EXPECT_EQ(CountViews(), 1);
    EXPECT_EQ(TabSelection(outer), 0);
    AddGadgetInTab(inner, outer, 0);
    EXPECT_EQ(Ask([](BTabView& tabs) { return CountOnPage(tabs, 0); }), 1) << "out of that tab";
}

TEST_F(TabGadgets, RemovedTabsLeaveTheirGadgets)
{
    const int32_t ident = MakeTabs({"a", "b", "c"});
    const int32_t box = Make(2, 0, 0, 80, 20);
    AddGadgetInTab(box, ident, 0);
    RemoveTab(ident, 0);
    EXPECT_EQ(TabSelection(ident), 0);
    EXPECT_EQ(Calls(), "value 0");
    RemoveTab(ident, 1);
    EXPECT_EQ(Calls(), "") << "another one was in front";
    SetChecked(box, 1);
    EXPECT_TRUE(GetChecked(box));
    AddGadgetInTab(box, ident, 0);
    EXPECT_EQ(Ask([](BTabView& tabs) { return CountOnPage(tabs, 0); }), 1);
    RemoveTab(ident, 0);
    EXPECT_EQ(TabSelection(ident), -1);
    TabSelect(ident, 0);
    KillGadget(0, ident);
    EXPECT_TRUE(GetChecked(box));
}

// Whatever ends first, each is deleted once.
TEST_F(TabGadgets, EndsComeInAnyOrder)
{
    std::vector<int> order = {0, 1, 2, 3, 4};
    do {
        const int32_t own = OpenWindow(500, 100, 300, 300);
        const auto make = [=](int32_t kind) {
            return CreateGadget(kind, own, 0, 0, 50, 50, nullptr, 0);
        };
        const int32_t tabs = make(25), inner = make(25), shown = make(1), hidden = make(7);
        for (const char* label : {"a", "b"}) {
            AddTab(tabs, label);
            AddTab(inner, label);
        }
        AddGadgetInTab(shown, tabs, 0);
        AddGadgetInTab(inner, tabs, 1);
        AddGadgetInTab(hidden, inner, 1);
        AddLvEntry(hidden, "row");
        for (const int step : order) {
            switch (step) {
                case 0:
                    KillGadget(own, shown);
                    break;
                case 1:
                    KillGadget(own, hidden);
                    break;
                case 2:
                    RemoveTab(tabs, 1);
                    break;
                case 3:
                    KillGadget(own, tabs);
                    break;
                default:
                    CloseWindow(own);
            }
            EXPECT_EQ(is_gadget_ident(inner), true);
        }
        EXPECT_FALSE(is_gadget_ident(shown) || is_gadget_ident(hidden) || is_gadget_ident(tabs));
        KillGadget(own, inner);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(TabGadgets, HandlerMayChangeOrEndItsTabs)
{
    gTabs = MakeTabs({"a", "b", "c"});
    SetHandlerForGadget(gTabs, 3, handler([](int32_t index) {
                            on_value(index);
                            if (index == 1)
                                RemoveTab(gTabs, 1);
                            return 0;
                        }));
    ClickTab(1);
    EXPECT_EQ(Calls(), "value 1, value 0");
    SetHandlerForGadget(gTabs, 3, handler(kill_tabs));
    ClickTab(1);
    EXPECT_EQ(Calls(), "called");
    EXPECT_FALSE(is_gadget_ident(gTabs));
    gTabs = MakeTabs({"a", "b"});
    SetHandlerForGadget(gTabs, 3, handler(kill_tabs));
    TabSelect(gTabs, 1);
    EXPECT_EQ(gHandlers.Take(), "called") << "on the program's own thread as well";
    EXPECT_FALSE(is_gadget_ident(gTabs));
}

// The gadget is in no window any more when it is killed, but its press goes on.
TEST_F(TabGadgets, HandlerMayRemoveThePageItIsOnAndItself)
{
    for (const bool kills_tabs : {false, true}) {
        gTabs = MakeTabs({"a", "b"});
        gButton = Make(2, 5, 5, 80, 20);
        AddGadgetInTab(gButton, gTabs, 0);
        SetHandlerForGadget(gButton, 3,
                            kills_tabs ? handler([](int32_t) {
                                kill_tabs(0);
                                KillGadget(0, gButton);
                                return 0;
                            })
                                       : handler([](int32_t) {
                                             RemoveTab(gTabs, 0);
                                             KillGadget(0, gButton);
                                             return 0;
                                         }));
        const BPoint place = Ask([](BTabView& tabs) {
            return tabs.ViewForTab(0)->ChildAt(0)->ConvertToScreen(BPoint(5, 10));
        });
        Click(static_cast<int32_t>(place.x) - 100, static_cast<int32_t>(place.y) - 100);
        EXPECT_EQ(Calls(), kills_tabs ? "action, called" : "action, value 0");
        EXPECT_FALSE(is_gadget_ident(gButton));
        KillGadget(0, gTabs);
    }
}

TEST_F(TabGadgets, HandlerMayKillItsGadgetThatIsInNoWindow)
{
    gButton = CreateGadget(2, -1, 0, 0, 80, 20, "box", 0);
    SetHandlerForGadget(gButton, 3, handler([](int32_t value) {
                            KillGadget(0, gButton);
                            return on_value(value);
                        }));
    SetChecked(gButton, 1);
    EXPECT_EQ(gHandlers.Take(), "value 1");
    EXPECT_FALSE(is_gadget_ident(gButton));
}
