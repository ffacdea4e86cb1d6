// Tab views of the kit: places of tabs, pages, keys, ownership, scripting and archives.

#include <gtest/gtest.h>

#include <Bitmap.h>
#include <Message.h>
#include <Screen.h>
#include <TabView.h>

#include <tests/interface/window_harness.h>

#include <memory>

using namespace window_test;

namespace {

const int32_t kKeyLeft = 0x61, kKeyRight = 0x63;

class LoggedTabs : public BTabView {
public:
    LoggedTabs(Log& log, BRect frame) : BTabView(frame, "tabs"), fLog(log) {}
    std::function<void(int32)> onSelect;

    void Select(int32 index) override
    {
        fLog.Add(nullptr, "select %d", int(index));
        BTabView::Select(index);
        if (const auto act = onSelect)
            act(index);
    }

private:
    Log& fLog;
};

// Tells when it is deleted.
class Page : public BView {
public:
    Page(Log& log, const char* name, uint32 mode = B_FOLLOW_ALL)
        : BView(BRect(0, 0, 49, 49), name, mode, B_WILL_DRAW), fLog(log)
    {
    }
    ~Page() override { fLog.Add(nullptr, "gone %s", Name()); }

private:
    Log& fLog;
};

class TabViewTest : public WindowTest {
protected:
    void Open(std::initializer_list<const char*> names)
    {
        Make(300, 200, B_ASYNCHRONOUS_CONTROLS);
        tabs = new LoggedTabs(log, BRect(0, 0, 299, 199));
        window->AddChild(tabs);
        for (const char* name : names)
            tabs->AddTab(new Page(log, name));
        Start();
    }
    void ClickTab(int32 index)
    {
        const BRect frame = Locked([&] { return tabs->TabFrame(index); });
        Click(100 + (frame.left + frame.right) / 2, 100 + (frame.top + frame.bottom) / 2);
        Settle();
    }
    int32 Selection()
    {
        return Locked([&] { return tabs->Selection(); });
    }

    LoggedTabs* tabs = nullptr;
};

}  // namespace

TEST_F(TabViewTest, TabsStandBesideOneAnotherAndShareTheirEdges)
{
    Open({"one", "two"});
    const float height = Locked([&] { return tabs->TabHeight(); });
    EXPECT_EQ(Locked([&] { return tabs->TabFrame(0); }), BRect(11, 0, 111, height));
    EXPECT_EQ(Locked([&] { return tabs->TabFrame(1); }), BRect(111, 0, 211, height));
    EXPECT_EQ(Locked([&] { return tabs->ContainerView()->Frame(); }),
              BRect(3, height + 3, 296, 196));
    Do([&] { tabs->SetBorder(B_PLAIN_BORDER); });
    EXPECT_EQ(Locked([&] { return tabs->ContainerView()->Frame(); }),
              BRect(1, height + 1, 298, 198));
    Do([&] {
        tabs->SetTabSide(BTabView::kRightSide);
        tabs->SetTabHeight(30);
    });
    EXPECT_EQ(Locked([&] { return tabs->TabFrame(1).right; }), 299);
    EXPECT_EQ(Locked([&] { return tabs->TabFrame(1).left; }), 269);
    EXPECT_EQ(Locked([&] { return tabs->ContainerView()->Frame(); }), BRect(1, 1, 268, 198));
}

TEST_F(TabViewTest, TabsThatDoNotFitShareTheRoom)
{
    Open({"one", "two", "three", "four"});
    EXPECT_EQ(Locked([&] { return tabs->TabFrame(3); }).right, 11 + 4 * 69);
    ClickTab(3);
    EXPECT_EQ(Selection(), 3);
}

TEST_F(TabViewTest, PageOfTheFrontTabIsInTheContainer)
{
    Open({"one", "two"});
    EXPECT_EQ(Selection(), 0);
    ClickTab(1);
    EXPECT_EQ(Selection(), 1);
    EXPECT_TRUE(Locked([&] { return tabs->ViewForTab(0)->Window() == nullptr; }));
    EXPECT_TRUE(Locked([&] { return tabs->ViewForTab(1)->Parent() == tabs->ContainerView(); }));
    ClickTab(1);
    EXPECT_EQ(log.Lines({"select"}), "select 1");
    Do([&] {
        tabs->Select(2);
        tabs->Select(-1);
    });
    EXPECT_EQ(Selection(), 1);
}

TEST_F(TabViewTest, PagesBehindFollowTheSizeWhenTheyComeToTheFront)
{
    Open({"one", "two"});
    Do([&] { tabs->ResizeBy(-20, -10); });
    EXPECT_EQ(Locked([&] { return tabs->ViewForTab(0)->Bounds(); }), BRect(0, 0, 29, 39));
    EXPECT_EQ(Locked([&] { return tabs->ViewForTab(1)->Bounds(); }), BRect(0, 0, 49, 49));
    ClickTab(1);
    EXPECT_EQ(Locked([&] { return tabs->ViewForTab(1)->Bounds(); }), BRect(0, 0, 29, 39));
    ClickTab(0);
    ClickTab(1);
    EXPECT_EQ(Locked([&] { return tabs->ViewForTab(1)->Bounds(); }), BRect(0, 0, 29, 39));
}

TEST_F(TabViewTest, KeysLeadPastDisabledTabs)
{
    Open({"one", "two", "three"});
    Do([&] {
        tabs->TabAt(1)->SetEnabled(false);
        tabs->MakeFocus();
    });
    EXPECT_EQ(Locked([&] { return tabs->FocusTab(); }), 0);
    Press(kKeyRight);
    Settle();
    EXPECT_EQ(Locked([&] { return tabs->FocusTab(); }), 2);
    EXPECT_EQ(Selection(), 0);
    Press(kKeySpace);
    Settle();
    EXPECT_EQ(Selection(), 2);
    Press(kKeyRight);
    Press(kKeyLeft);
    Press(kKeyLeft);
    Press(kKeyEnter);
    Settle();
    EXPECT_EQ(Selection(), 0);
    ClickTab(1);
    EXPECT_EQ(Selection(), 0);
    Do([&] { tabs->MakeFocus(false); });
    EXPECT_EQ(Locked([&] { return tabs->FocusTab(); }), -1);
}

TEST_F(TabViewTest, RemovedTabsPassToTheCaller)
{
    Open({"one", "two", "three"});
    Do([&] {
        std::unique_ptr<BTab> tab(tabs->RemoveTab(0));
        EXPECT_FALSE(tab->IsSelected());
        EXPECT_EQ(tab->View()->Parent(), nullptr);
        EXPECT_EQ(tabs->RemoveTab(2), nullptr);
    });
    EXPECT_EQ(log.Lines({"select", "gone"}), "select 0; gone one");
    EXPECT_EQ(Selection(), 0);
    Do([&] { tabs->Select(1); });
    log.Clear();
    Do([&] { delete tabs->TabAt(0); });
    EXPECT_EQ(log.Lines({"select", "gone"}), "gone two") << "the other one stays in front";
    EXPECT_EQ(Selection(), 0);
    Do([&] { delete tabs->ViewForTab(0); });
    EXPECT_EQ(Locked([&] { return tabs->ViewForTab(0); }), nullptr);
    Do([&] {
        tabs->RemoveSelf();
        delete tabs;
    });
    EXPECT_EQ(log.Lines({"gone"}), "gone two; gone three");
}

TEST_F(TabViewTest, HookMayRemoveTabsOrDeleteTheTabView)
{
    Open({"one", "two", "three"});
    Do([&] {
        tabs->onSelect = [&](int32) {
            tabs->onSelect = nullptr;
            delete tabs->RemoveTab(1);
            delete tabs->RemoveTab(1);
        };
        tabs->Select(1);
    });
    EXPECT_EQ(Selection(), 0);
    Do([&] {
        tabs->AddTab(new Page(log, "last"));
        tabs->onSelect = [&](int32) {
            tabs->RemoveSelf();
            delete tabs;
        };
    });
    ClickTab(1);
    EXPECT_EQ(Locked([&] { return window->CountChildren(); }), 0);
}

TEST_F(TabViewTest, LabelsAndFramesHaveTheirColours)
{
    Open({"one", "two"});
    Do([&] {
        tabs->SetViewColor(0xD0, 0xD4, 0xD8);
        tabs->Invalidate();
    });
    const auto pixel = [](float x, float y) {
        BBitmap* shot = nullptr;
        BRect frame(x, y, x, y);
        EXPECT_EQ(BScreen().GetBitmap(&shot, false, &frame), B_OK);
        const std::unique_ptr<BBitmap> owner(shot);
        return *static_cast<const uint32*>(shot->Bits()) & 0xFFFFFF;
    };
    // Waits until a pixel has the ground's colour, or has it no more.
    const auto becomes = [&](float x, float y, bool ground) {
        const bigtime_t end = system_time() + 20000000;
        while ((pixel(x, y) == 0xD0D4D8) != ground && system_time() < end)
            snooze(2000);
        return (pixel(x, y) == 0xD0D4D8) == ground;
    };
    const BRect front = Locked([&] { return tabs->TabFrame(0); }).OffsetByCopy(100, 100);
    const BRect behind = Locked([&] { return tabs->TabFrame(1); }).OffsetByCopy(100, 100);
    EXPECT_TRUE(becomes(behind.right - 6, behind.top + 6, false)) << "darker than that in front";
    EXPECT_TRUE(becomes(behind.right - 6, behind.bottom, false)) << "behind the edge of the box";
    EXPECT_TRUE(becomes(front.left + 6, front.top + 6, true));
    EXPECT_TRUE(becomes(front.left + 6, front.bottom, true));
    ClickTab(1);
    EXPECT_TRUE(becomes(behind.right - 6, behind.bottom, true));
    EXPECT_TRUE(becomes(front.left + 6, front.bottom, false));
}

TEST(TabViews, LabelIsTheNameOfTheView)
{
    BTab tab(new BView(BRect(), "view", 0, 0));
    EXPECT_STREQ(tab.Label(), "view");
    tab.SetLabel("other");
    EXPECT_STREQ(tab.View()->Name(), "other");
    tab.SetView(nullptr);
    EXPECT_NE(tab.View(), nullptr);
    BTab empty;
    empty.SetLabel("label");
    EXPECT_STREQ(empty.Label(), "label");
}

TEST_F(TabViewTest, ScriptsReadAndSetTheSelection)
{
    Open({"one", "two"});
    const auto ask = [&](BMessage message, BMessage* reply) {
        message.AddSpecifier("Selection");
        message.AddSpecifier("View", "tabs");
        EXPECT_EQ(BMessenger(window).SendMessage(&message, reply), B_OK);
    };
    BMessage set(B_SET_PROPERTY), reply;
    set.AddInt32("data", 1);
    ask(set, &reply);
    EXPECT_EQ(reply.GetInt32("error", -1), B_OK);
    ask(BMessage(B_GET_PROPERTY), &reply);
    EXPECT_EQ(reply.GetInt32("result", -1), 1);
    set.ReplaceInt32("data", 2);
    ask(set, &reply);
    EXPECT_NE(reply.GetInt32("error", B_OK), B_OK);
    BMessage suites;
    EXPECT_EQ(Locked([&] { return tabs->GetSupportedSuites(&suites); }), B_OK);
    EXPECT_STREQ(suites.GetString("suites", ""), "suite/vnd.Be-tab-view");
}

TEST(TabViews, ArchiveHasTabsAndPages)
{
    BTabView tabs(BRect(0, 0, 99, 99), "tabs", B_WIDTH_FROM_LABEL);
    for (const char* name : {"a", "b"})
        tabs.AddTab(new BView(BRect(0, 0, 9, 9), name, 0, 0));
    tabs.AddTab(nullptr);
    tabs.TabAt(2)->SetLabel("c");
    tabs.TabAt(0)->SetEnabled(false);
    tabs.Select(1);
    tabs.SetTabSide(BTabView::kLeftSide);
    tabs.SetTabHeight(33);
    tabs.SetBorder(B_NO_BORDER);
    BMessage archive;
    ASSERT_EQ(tabs.Archive(&archive), B_OK);
    const std::unique_ptr<BArchivable> made(instantiate_object(&archive));
    auto* copy = dynamic_cast<BTabView*>(made.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->CountTabs(), 3);
    EXPECT_STREQ(copy->TabAt(1)->Label(), "b");
    EXPECT_STREQ(copy->TabAt(2)->Label(), "c");
    EXPECT_FALSE(copy->TabAt(0)->IsEnabled());
    EXPECT_EQ(copy->Selection(), 1);
    EXPECT_EQ(copy->ViewForTab(1)->Parent(), copy->ContainerView());
    EXPECT_EQ(copy->TabSide(), BTabView::kLeftSide);
    EXPECT_EQ(copy->TabHeight(), 33);
    EXPECT_EQ(copy->TabWidth(), B_WIDTH_FROM_LABEL);
    EXPECT_EQ(copy->Border(), B_NO_BORDER);
    EXPECT_EQ(copy->CountChildren(), 1);
}
