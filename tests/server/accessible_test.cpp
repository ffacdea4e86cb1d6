// What screen readers are told of windows, and what they can do with them.

#include <Application.h>
#include <Box.h>
#include <Button.h>
#include <CheckBox.h>
#include <ListView.h>
#include <Message.h>
#include <OutlineListView.h>
#include <ScrollBar.h>
#include <Slider.h>
#include <StatusBar.h>
#include <StringItem.h>
#include <TabView.h>
#include <TextControl.h>
#include <TextView.h>
#include <Window.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "interface/accessible/TextUnits.h"
#include "server/screen/AccessibleIndex.h"
#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"

using namespace server;
using BPrivate::TextUnits;

namespace {

using Tree = std::shared_ptr<const AccessibleTree>;

bool eventually(const std::function<bool()>& claim)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!claim()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

class ToldWindow : public BWindow {
public:
    ToldWindow()
        : BWindow(BRect(50, 50, 349, 349), "told window", B_TITLED_WINDOW, B_ASYNCHRONOUS_CONTROLS)
    {
    }
    void MessageReceived(BMessage* message) override
    {
        if (message->what >= 1 && message->what < 8)
            fReceived[message->what]++;
        else
            BWindow::MessageReceived(message);
    }
    bool Receives(uint32 what) const
    {
        return eventually([&] { return fReceived[what] > 0; });
    }

    std::atomic<int> fReceived[8] = {};
};

// A window whose views a test adds, and a reader.
class Accessible : public testing::Test {
protected:
    void SetUp() override
    {
        fWindow = new ToldWindow;
        fWindow->Lock();
    }
    void TearDown() override
    {
        Listen(false);
        if (fWindow != nullptr && fWindow->Lock())
            fWindow->Quit();
    }
    // Lists do not own their rows: these live until the window is gone.
    BStringItem* Row(const std::string& text)
    {
        fRows.push_back(std::make_unique<BStringItem>(text.c_str()));
        return fRows.back().get();
    }
    void Listen(bool listens)
    {
        StageLock lock;
        set_reader_listens(listens);
    }
    // The views are there.
    void Show()
    {
        fWindow->Show();
        fWindow->Unlock();
    }
    ScreenWindow* Native() const  // stage locked
    {
        for (ScreenWindow* window : stage().Windows()) {
            if (window->Title() == "told window")
                return window;
        }
        return nullptr;
    }
    Tree Told() const
    {
        StageLock lock;
        const ScreenWindow* window = Native();
        return window != nullptr ? window->Accessible() : nullptr;
    }
    // The first item of which `claim` is true, as soon as there is one.
    AccessibleItem Find(const std::function<bool(const AccessibleItem&)>& claim)
    {
        AccessibleItem found;
        found.name = "nothing found";
        eventually([&] {
            fTree = Told();
            for (const AccessibleItem& item :
                 fTree != nullptr ? fTree->items : std::vector<AccessibleItem>()) {
                if (claim(item)) {
                    found = item;
                    return true;
                }
            }
            return false;
        });
        return found;
    }
    AccessibleItem Named(const std::string& name)
    {
        return Find([&](const AccessibleItem& item) { return item.name == name; });
    }
    void Ask(AccessibleId item, AccessibleRequest::What what, double value = 0, int32 from = 0,
             int32 to = 0, const std::u16string& text = u"")
    {
        StageLock lock;
        if (ScreenWindow* window = Native())
            window->Ask({item, what, value, from, to, text});
    }

    std::vector<std::unique_ptr<BStringItem>> fRows;
    ToldWindow* fWindow = nullptr;
    Tree fTree;
};

bool has(const AccessibleItem& item, uint32 states) { return (item.states & states) == states; }

std::string narrow(const AccessibleItem& item)
{
    if (item.text == nullptr)
        return "no text";
    const std::u16string units = item.text->content->All();
    return std::string(units.begin(), units.end());
}

}  // namespace

TEST_F(Accessible, NothingIsToldWhileNobodyListens)
{
    auto* button = new BButton(BRect(10, 10, 90, 34), "b", "One", new BMessage(1));
    fWindow->AddChild(button);
    Show();
    fWindow->PostMessage(1);
    ASSERT_TRUE(fWindow->Receives(1));
    EXPECT_EQ(Told(), nullptr);
    Listen(true);
    EXPECT_EQ(Named("One").role, AccessibleRole::Button);
}

TEST_F(Accessible, ItemsStandInWhatHoldsThem)
{
    Listen(true);
    auto* box = new BBox(BRect(10, 10, 200, 200), "box");
    box->SetLabel("Box");
    auto* plain = new BView(BRect(10, 30, 180, 180), "plain", B_FOLLOW_NONE, 0);
    plain->AddChild(new BCheckBox(BRect(5, 5, 100, 25), "c", "Check", nullptr));
    box->AddChild(plain);
    fWindow->AddChild(box);
    Show();
    const AccessibleItem check = Named("Check");
    EXPECT_EQ(check.role, AccessibleRole::CheckBox);
    EXPECT_EQ(check.frame.LeftTop(), BPoint(25, 45));
    const AccessibleIndex index(fTree);
    const AccessibleItem* around = index.Find(index.ParentOf(check.id));
    ASSERT_NE(around, nullptr);
    EXPECT_EQ(around->name, "Box");
    EXPECT_EQ(index.ParentOf(around->id), 0u);
    EXPECT_EQ(index.At(0, BPoint(30, 50)), check.id);
    EXPECT_EQ(index.At(0, BPoint(12, 12)), around->id);
    EXPECT_EQ(index.At(0, BPoint(290, 290)), 0u);
}

TEST_F(Accessible, ToolTipNamesWhatHasNoLabelAndDescribesTheRest)
{
    Listen(true);
    auto* labelled = new BButton(BRect(10, 10, 90, 34), "b", "Save", nullptr);
    labelled->SetToolTip("Keeps the text");
    auto* bare = new BSlider(BRect(10, 50, 200, 90), "s", nullptr, nullptr, 0, 9);
    bare->SetToolTip("Volume");
    fWindow->AddChild(labelled);
    fWindow->AddChild(bare);
    Show();
    EXPECT_EQ(Named("Save").description, "Keeps the text");
    EXPECT_EQ(Named("Volume").description, "");
    fWindow->Lock();
    bare->SetToolTip("Speed");
    fWindow->Unlock();
    EXPECT_EQ(Named("Speed").role, AccessibleRole::Slider);
}

TEST_F(Accessible, ChangesAreToldAgain)
{
    Listen(true);
    auto* slider = new BSlider(BRect(10, 50, 200, 90), "s", "Speed", nullptr, 2, 9);
    fWindow->AddChild(slider);
    Show();
    AccessibleItem item = Named("Speed");
    ASSERT_NE(item.range, nullptr);
    EXPECT_EQ(*item.range, (AccessibleRange{2, 2, 9, 1}));
    fWindow->Lock();
    slider->SetValue(7);
    slider->SetEnabled(false);
    slider->MakeFocus(true);
    fWindow->Unlock();
    item = Find([](const AccessibleItem& each) { return has(each, kIsDisabled); });
    ASSERT_NE(item.range, nullptr);
    EXPECT_EQ(item.range->value, 7);
    EXPECT_TRUE(eventually([&] { return Told()->focus == item.id; }));
    fWindow->Lock();
    slider->RemoveSelf();
    fWindow->Unlock();
    EXPECT_TRUE(eventually([&] { return Told()->items.size() == 1; }));
    delete slider;
}

TEST_F(Accessible, StatesTellWhatControlsAre)
{
    Listen(true);
    const auto mark = [&](BControl* control, int32 value) {
        control->SetValue(value);
        fWindow->AddChild(control);
    };
    const BRect frame(10, 10, 90, 34);
    mark(new BCheckBox(frame, "", "off", nullptr), B_CONTROL_OFF);
    mark(new BCheckBox(frame, "", "on", nullptr), B_CONTROL_ON);
    mark(new BCheckBox(frame, "", "half", nullptr), B_CONTROL_PARTIALLY_ON);
    auto* toggle = new BButton(frame, "", "down", nullptr);
    toggle->SetBehavior(BButton::B_TOGGLE_BEHAVIOR);
    mark(toggle, B_CONTROL_ON);
    auto* usual = new BButton(frame, "", "usual", nullptr);
    mark(usual, B_CONTROL_OFF);
    fWindow->SetDefaultButton(usual);
    fWindow->AddChild(new BStatusBar(BRect(10, 50, 200, 90), "", "done"));
    fWindow->AddChild(
        new BScrollBar(BRect(10, 100, 100, 114), "still", nullptr, 0, 0, B_HORIZONTAL));
    fWindow->AddChild(
        new BScrollBar(BRect(10, 120, 100, 134), "moves", nullptr, 3, 9, B_HORIZONTAL));
    auto* tabs = new BTabView(BRect(10, 150, 290, 290), "tabs");
    tabs->AddTab(new BView(BRect(), "front", B_FOLLOW_NONE, 0));
    tabs->AddTab(new BView(BRect(), "barred", B_FOLLOW_NONE, 0));
    tabs->TabAt(1)->SetEnabled(false);
    fWindow->AddChild(tabs);
    Show();
    const uint32 asked = kIsCheckable | kIsChecked | kIsMixed | kIsDefault | kIsReadOnly |
                         kIsDisabled | kCanBePressed | kCanBeSet;
    const struct {
        const char* name;
        uint32 states;
    } rows[] = {
        {"off", kIsCheckable | kCanBePressed},
        {"on", kIsCheckable | kIsChecked | kCanBePressed},
        {"half", kIsCheckable | kIsMixed | kCanBePressed},
        {"down", kIsCheckable | kIsChecked | kCanBePressed},
        {"usual", kIsDefault | kCanBePressed},
        {"done", kIsReadOnly},
        {"front", kCanBePressed},
        {"barred", kIsDisabled},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Named(row.name).states & asked, row.states) << row.name;
    for (const auto& [most, states] : {std::pair{0, kIsDisabled}, {9, kCanBeSet}}) {
        const AccessibleItem bar = Find([most = most](const AccessibleItem& each) {
            return each.role == AccessibleRole::ScrollBar && each.range->most == most;
        });
        EXPECT_EQ(bar.states & asked, uint32(states)) << most;
    }
}

TEST_F(Accessible, HiddenTypingIsNeverTold)
{
    Listen(true);
    auto* field = new BTextControl(BRect(10, 10, 200, 34), "t", "Key",
                                   "s\xc3\xa9"
                                   "cret",
                                   nullptr);
    field->TextView()->HideTyping(true);
    fWindow->AddChild(field);
    Show();
    const AccessibleItem item = Named("Key");
    EXPECT_TRUE(has(item, kIsPassword));
    ASSERT_NE(item.text, nullptr);
    EXPECT_EQ(item.text->content->All(), u"\u2022\u2022\u2022\u2022\u2022\u2022");
    for (const AccessibleItem& each : fTree->items)
        EXPECT_EQ((each.name + each.value + each.description).find("cret"), std::string::npos);
}

TEST_F(Accessible, InputMethodsAreToldWhereTypingIsHidden)
{
    auto* plain = new BTextControl(BRect(10, 10, 200, 34), "t", "Name", "", nullptr);
    auto* hidden = new BTextControl(BRect(10, 50, 200, 74), "t", "Key", "", nullptr);
    hidden->TextView()->HideTyping(true);
    fWindow->AddChild(plain);
    fWindow->AddChild(hidden);
    const auto is_hidden = [&] {
        StageLock lock;
        return Native()->IsTypingHidden();
    };
    const auto with = [&](const std::function<void()>& act) {
        fWindow->Lock();
        act();
        fWindow->Unlock();
        return is_hidden();
    };
    Show();
    EXPECT_FALSE(is_hidden());
    EXPECT_TRUE(with([&] { hidden->MakeFocus(true); }));
    EXPECT_FALSE(with([&] { hidden->TextView()->HideTyping(false); }));
    EXPECT_FALSE(with([&] { plain->MakeFocus(true); }));
    EXPECT_TRUE(with([&] { plain->TextView()->HideTyping(true); }));
    EXPECT_FALSE(with([&] { plain->MakeFocus(false); }));
}

TEST_F(Accessible, RowsAboutThoseInSightAreToldAndAllAreCounted)
{
    Listen(true);
    auto* list = new BListView(BRect(10, 10, 200, 100), "l");
    for (int i = 0; i < 5000; i++)
        list->AddItem(Row("row " + std::to_string(i)));
    list->SetToolTip("Rows");
    fWindow->AddChild(list);
    Show();
    AccessibleItem item = Named("Rows");
    EXPECT_EQ(item.rows, 5000);
    EXPECT_LT(fTree->items.size(), 300u);
    const AccessibleId far = accessible_id(view_of(item.id), 4001);
    const AccessibleIndex index(fTree);
    EXPECT_EQ(index.Find(far), nullptr);
    EXPECT_TRUE(index.Has(far));
    EXPECT_EQ(index.IndexOf(far), 4000);
    EXPECT_EQ(index.ParentOf(far), item.id);
    EXPECT_FALSE(index.Has(accessible_id(view_of(item.id), 5001)));
    Ask(far, AccessibleRequest::What::Press);
    item = Named("row 4000");
    EXPECT_EQ(item.id, far);
    item = Find([](const AccessibleItem& each) { return has(each, kIsSelected); });
    EXPECT_EQ(item.name, "row 4000");
    EXPECT_FALSE(has(item, kIsOutOfSight));
}

TEST_F(Accessible, OutlinesTellTheirLevels)
{
    Listen(true);
    auto* list = new BOutlineListView(BRect(10, 10, 200, 100), "l");
    BStringItem* const top = Row("top");
    list->AddItem(top);
    list->AddUnder(Row("below"), top);
    fWindow->AddChild(list);
    Show();
    EXPECT_EQ(Named("below").description, "level 2");
    EXPECT_TRUE(has(Named("top"), kIsExpandable | kIsExpanded));
    fWindow->Lock();
    list->Collapse(top);
    fWindow->Unlock();
    EXPECT_TRUE(eventually([&] { return !has(Named("top"), kIsExpanded); }));
}

TEST_F(Accessible, PressIsAClickAndSetsOffTheMessage)
{
    Listen(true);
    fWindow->AddChild(new BButton(BRect(10, 10, 90, 34), "b", "One", new BMessage(1)));
    // One that lies behind another view is pressed by its key.
    fWindow->AddChild(new BButton(BRect(10, 50, 90, 74), "h", "Hidden", new BMessage(2)));
    fWindow->AddChild(new BView(BRect(0, 40, 299, 90), "cover", B_FOLLOW_NONE, B_WILL_DRAW));
    Show();
    Ask(Named("One").id, AccessibleRequest::What::Press);
    EXPECT_TRUE(fWindow->Receives(1));
    Ask(Named("Hidden").id, AccessibleRequest::What::Press);
    EXPECT_TRUE(fWindow->Receives(2));
}

TEST_F(Accessible, ValueThatIsSetStaysInItsRangeAndIsToldAsTheUsers)
{
    Listen(true);
    auto* slider = new BSlider(BRect(10, 50, 200, 90), "s", "Speed", new BMessage(1), 2, 9);
    slider->SetModificationMessage(new BMessage(2));
    fWindow->AddChild(slider);
    Show();
    const AccessibleId id = Named("Speed").id;
    for (const auto& [value, expected] : {std::pair(1e300, 9), {5.4, 5}, {-7.0, 2}}) {
        Ask(id, AccessibleRequest::What::SetValue, value);
        EXPECT_TRUE(eventually([&] { return Named("Speed").range->value == expected; })) << value;
    }
    EXPECT_TRUE(fWindow->Receives(1));
    EXPECT_TRUE(fWindow->Receives(2));
}

TEST_F(Accessible, TextIsReadSelectedAndTyped)
{
    Listen(true);
    auto* view = new BTextView(BRect(10, 10, 200, 90), "t", BRect(0, 0, 180, 70), B_FOLLOW_NONE,
                               B_WILL_DRAW);
    view->SetToolTip("Letter");
    view->SetText("a\xf0\x9f\x98\x80 b\xff");  // a face, and a byte that is no UTF-8
    fWindow->AddChild(view);
    Show();
    AccessibleItem item = Named("Letter");
    ASSERT_NE(item.text, nullptr);
    EXPECT_EQ(item.text->content->All(), u"a\U0001F600 b\u00ff");
    Ask(item.id, AccessibleRequest::What::Select, 0, 3, 5);
    item = Find([](const AccessibleItem& each) {
        return each.text != nullptr && each.text->selectionEnd == 5;
    });
    EXPECT_EQ(item.text->selectionStart, 3);
    EXPECT_EQ(item.text->caret, 5);
    Ask(item.id, AccessibleRequest::What::Replace, 0, 0, 3, u"x\u00e9");
    EXPECT_TRUE(
        eventually([&] { return Named("Letter").text->content->All() == u"x\u00e9 b\u00ff"; }));
    Ask(item.id, AccessibleRequest::What::Replace, 0, 2, 100);
    EXPECT_TRUE(eventually([&] { return Named("Letter").text->content->All() == u"x\u00e9"; }));
    fWindow->Lock();
    view->MakeEditable(false);
    fWindow->Unlock();
    Ask(item.id, AccessibleRequest::What::Replace, 0, 0, 2, u"no");
    fWindow->PostMessage(1);
    ASSERT_TRUE(fWindow->Receives(1));
    fWindow->Lock();
    int32 start, end;
    view->GetSelection(&start, &end);
    fWindow->Unlock();
    EXPECT_EQ(start, end) << "it selects nothing either";
    Ask(item.id, AccessibleRequest::What::Select, 0, 1, 2);
    item = Find([](const AccessibleItem& each) {
        return each.text != nullptr && each.text->selectionStart == 1;
    });
    EXPECT_EQ(item.text->content->All(), u"x\u00e9");
}

TEST_F(Accessible, FieldsOfControlsTypeNoLineFeeds)
{
    Listen(true);
    fWindow->AddChild(new BTextControl(BRect(10, 10, 200, 34), "t", "Name", "", new BMessage(1)));
    Show();
    Ask(Named("Name").id, AccessibleRequest::What::Replace, 0, 0, 0, u"one\ntwo");
    EXPECT_TRUE(eventually([&] { return narrow(Named("Name")) == "onetwo"; }));
    // Nor keys that remove or move: what is typed after them stands behind the rest.
    Ask(Named("Name").id, AccessibleRequest::What::Replace, 0, 3, 3, u"\x7f\x08\x1c-");
    EXPECT_TRUE(eventually([&] { return narrow(Named("Name")) == "one-two"; }));
}

TEST_F(Accessible, WhatIsGoneDisabledOrUnknownDoesNothing)
{
    Listen(true);
    auto* button = new BButton(BRect(10, 10, 90, 34), "b", "One", new BMessage(1));
    auto* off = new BButton(BRect(10, 50, 90, 74), "o", "Off", new BMessage(2));
    off->SetEnabled(false);
    fWindow->AddChild(button);
    fWindow->AddChild(off);
    fWindow->AddChild(new BButton(BRect(10, 90, 90, 114), "l", "Last", new BMessage(3)));
    auto* still = new BSlider(BRect(10, 130, 200, 170), "s", "Still", nullptr, 0, 9);
    still->SetEnabled(false);
    fWindow->AddChild(still);
    Show();
    Ask(Named("Still").id, AccessibleRequest::What::SetValue, 5);
    const AccessibleId id = Named("One").id, disabled = Named("Off").id, last = Named("Last").id;
    fWindow->Lock();
    button->RemoveSelf();
    delete button;
    fWindow->Unlock();
    using What = AccessibleRequest::What;
    for (What what :
         {What::Press, What::TakeFocus, What::SetValue, What::Select, What::Replace, What::Show}) {
        Ask(id, what, 3, -5, 1 << 30, u"text");
        Ask(disabled, what, 3, -5, 1 << 30, u"text");
        Ask(accessible_id(0xffffffff, 0xffffffff), what, 3, 5, -1, u"\xd800");
        Ask(accessible_id(view_of(last), 7), what == What::Press ? What::Show : what, 3, 5, -1,
            u"x");
    }
    Ask(last, What::Press);
    EXPECT_TRUE(fWindow->Receives(3));
    EXPECT_EQ(fWindow->fReceived[1] + fWindow->fReceived[2], 0);
    EXPECT_EQ(Named("Still").range->value, 0);
}

TEST_F(Accessible, WindowBehindAModalOneIsLeftAlone)
{
    Listen(true);
    fWindow->AddChild(new BButton(BRect(10, 10, 90, 34), "b", "One", new BMessage(1)));
    Show();
    const AccessibleId id = Named("One").id;
    auto* modal = new BWindow(BRect(400, 50, 500, 100), "modal", B_MODAL_WINDOW, 0);
    modal->Show();
    Ask(id, AccessibleRequest::What::Press);
    modal->Lock();
    modal->Quit();
    fWindow->PostMessage(2);
    ASSERT_TRUE(fWindow->Receives(2));
    EXPECT_EQ(fWindow->fReceived[1], 0);
    Ask(id, AccessibleRequest::What::Press);
    EXPECT_TRUE(fWindow->Receives(1));
}

TEST(TextUnits, PlacesOfBytesAndUnitsMatchForAnyBytes)
{
    uint32 random = 1;
    for (int round = 0; round < 300; round++) {
        std::string bytes;
        for (int i = 0; i < round % 40; i++) {
            random = random * 1664525 + 1013904223;
            const char* const kPieces[] = {
                "a",    "\xc3\xa9",         "\xe2\x82\xac",     "\xf0\x9f\x98\x80",
                "\xff", "\xf0\x80\x80\x80", "\xf7\xbf\xbf\xbf", "\x80"};
            bytes += kPieces[random >> 29];
        }
        for (bool hidden : {false, true}) {
            const TextUnits units(bytes, hidden);
            const auto length = int32(units.All().size());
            EXPECT_EQ(units.UnitAt(int32(bytes.size())), length);
            EXPECT_EQ(units.UnitAt(1 << 30), length);
            EXPECT_EQ(units.ByteAt(length), int32(bytes.size()));
            EXPECT_EQ(units.ByteAt(1 << 30), int32(bytes.size()));
            int32 before = 0;
            for (int32 unit = 0; unit <= length; unit++) {
                const int32 byte = units.ByteAt(unit);
                EXPECT_GE(byte, before);
                EXPECT_LE(units.UnitAt(byte), unit);
                EXPECT_GE(units.UnitAt(byte), unit - 1);
                before = byte;
            }
        }
    }
}
