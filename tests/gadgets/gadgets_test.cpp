// Gadgets as the program makes, changes and kills them.

#include "gadget_window.h"

#include <Box.h>
#include <Button.h>
#include <Control.h>
#include <Slider.h>
#include <StatusBar.h>
#include <StringView.h>

#include <thread>
#include <vector>

static const char* const kLabels[] = {"one", "two", "", "never", nullptr};

// --- creation

TEST_F(GadgetTest, KindsThatAreNoneMakeNothing)
{
    for (int32_t kind : {0, -1, 35, 36, 37, 45, 46, 47, INT32_MAX, INT32_MIN})
        EXPECT_EQ(Make(kind, 0, 0, 10, 10), 0) << kind;
    EXPECT_EQ(Make(34, 0, 0, 10, 10), 0);
    EXPECT_EQ(CountViews(), 0);
}

TEST_F(GadgetTest, WindowsThatAreNoneTakeNoGadget)
{
    for (int32_t window_ident : {0, -2, 1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(CreateGadget(1, window_ident, 0, 0, 10, 10, "a", 0), 0) << window_ident;
    const int32_t gadget = Make(1, 0, 0, 10, 10);
    EXPECT_EQ(CreateGadget(1, gadget, 0, 0, 10, 10, "a", 0), 0);
}

TEST_F(GadgetTest, EachKindIsMadeInItsFrame)
{
    const struct {
        int32_t kind;
        BRect frame;
    } rows[] = {
        {1, BRect(10, 20, 90, 44)},  {2, BRect(10, 20, 90, 44)},  {11, BRect(10, 20, 90, 44)},
        {12, BRect(10, 20, 90, 44)}, {13, BRect(10, 20, 90, 34)}, {14, BRect(10, 20, 24, 44)},
        {24, BRect(10, 20, 90, 44)},
    };
    std::vector<int32_t> idents;
    for (const auto& row : rows) {
        idents.push_back(Make(row.kind, 10, 20, 80, 24));
        EXPECT_NE(idents.back(), 0) << row.kind;
        EXPECT_TRUE(is_gadget_ident(idents.back()));
        EXPECT_EQ(FrameOf(int32(idents.size()) - 1), row.frame) << row.kind;
    }
    for (size_t i = 1; i < idents.size(); i++)
        EXPECT_GT(idents[i], idents[i - 1]);
}

TEST_F(GadgetTest, DegenerateSizesArePassedOn)
{
    for (int32_t kind : {1, 2, 11, 12, 13, 14, 15, 16, 17, 24}) {
        for (int32_t size : {0, -1, -100, INT32_MAX, INT32_MIN})
            EXPECT_NE(Make(kind, 5, 5, size, size), 0) << kind << " of " << size;
    }
    Settle();
}

TEST_F(GadgetTest, RadioGroupEndsAtItsFirstEmptyLabel)
{
    ASSERT_NE(Make(18, 0, 0, 100, 100, kLabels), 0);
    EXPECT_EQ(WithView(0, [](BView* view) { return view->CountChildren(); }), 2);
    const char* const none[] = {"", "a", nullptr};
    EXPECT_EQ(Make(18, 0, 0, 100, 100, none), 0);
    EXPECT_EQ(Make(18, 0, 0, 100, 100, nullptr), 0);
}

TEST_F(GadgetTest, RadioGroupIsOneRowShortKept)
{
    const char* const labels[] = {"a", "longer", "b", nullptr};
    ASSERT_NE(Make(18, 7, 9, 100, 100, labels), 0);
    WithView(0, [](BView* group) {
        float width, height;
        group->ChildAt(1)->GetPreferredSize(&width, &height);
        EXPECT_EQ(group->Frame(), BRect(7, 9, 7 + width, 9 + 2 * height));
        EXPECT_EQ(group->ChildAt(2)->Frame(), BRect(0, 2 * height, width, 3 * height));
        return 0;
    });
}

TEST_F(GadgetTest, StatusBarStartsAtNoneOfAHundred)
{
    const int32_t bar = Make(17, 10, 10, 100, 40);
    EXPECT_EQ(GetValue(bar), 0);
    EXPECT_EQ(WithView(0, [](BView* view) { return dynamic_cast<BStatusBar*>(view)->MaxValue(); }),
              100);
}

TEST_F(GadgetTest, LabelsAreTheTextOfTheCreation)
{
    const int32_t button = Make(1, 10, 10, 80, 24, "press");
    EXPECT_STREQ(GetLabel(button), "press");
    SetLabel(button, nullptr);
    EXPECT_STREQ(GetLabel(button), "");
    SetLabel(button, std::string(100000, 'x').c_str());
    EXPECT_EQ(strlen(GetLabel(button)), 100000u);
    const int32_t text = Make(11, 10, 50, 80, 24, "text");
    SetLabel(text, "text");
    EXPECT_STREQ(GetLabel(text), "");
    EXPECT_STREQ(GetLabel(0), "");
    const int32_t number = Make(12, 10, 50, 80, 24);
    EXPECT_NE(number, 0);
    EXPECT_STREQ(WithView(2, [](BView* view) { return dynamic_cast<BStringView*>(view)->Text(); }),
                 "0");
}

TEST_F(GadgetTest, GadgetsStandOnTheColourOfTheirWindow)
{
    Make(2, 10, 10, 80, 24);
    Make(18, 10, 40, 80, 24, kLabels);
    Make(11, 10, 80, 80, 24);
    Make(24, 10, 120, 80, 24);
    Make(17, 10, 150, 80, 24);
    for (int32 i = 0; i < 5; i++) {
        WithView(i, [=](BView* view) {
            EXPECT_EQ(view->ViewColor(), make_color(216, 216, 216)) << i;
            return 0;
        });
    }
    WithView(1, [](BView* view) {
        EXPECT_EQ(view->ChildAt(0)->ViewColor(), make_color(216, 216, 216));
        return 0;
    });
}

// --- without a window

TEST_F(GadgetTest, GadgetWithoutAWindowIsPutIntoOneLater)
{
    const int32_t button = CreateGadget(1, -1, 10, 10, 80, 24, "a", 0);
    ASSERT_NE(button, 0);
    EXPECT_EQ(CountViews(), 0);
    SetLabel(button, "b");
    EXPECT_STREQ(GetLabel(button), "b");
    AttachGadgetToWindow(window, button);
    EXPECT_EQ(CountViews(), 1);
    AttachGadgetToWindow(window, button);
    EXPECT_EQ(CountViews(), 1);
    const int32_t other = CreateGadget(1, -1, 10, 10, 80, 24, "a", 0);
    for (int32_t ident : {other, button}) {
        HideGadget(0, ident);
        ShowGadget(0, ident);
        KillGadget(0, ident);
        EXPECT_FALSE(is_gadget_ident(ident));
    }
    EXPECT_EQ(CountViews(), 0);
}

// --- showing

TEST_F(GadgetTest, HidingCountsOnce)
{
    const int32_t button = Make(1, 10, 10, 80, 24);
    HideGadget(0, button);
    HideGadget(0, button);
    Click(20, 20);
    EXPECT_EQ(Calls(), "");
    SetGadget(window, button);
    Click(20, 20);
    EXPECT_EQ(Calls(), "action");
    ShowGadget(0, button);
    HideGadget(0, button);
    Click(20, 20);
    EXPECT_EQ(Calls(), "");
}

// What is wished of a gadget holds, whether what it is in shows or not.
TEST_F(GadgetTest, GadgetsOfAHiddenBoxAreHiddenAndShownByThemselves)
{
    const int32_t box = Make(24, 100, 100, 150, 150, "box");
    const int32_t button = Make(1, 20, 30, 80, 24);
    BBoxAddGadget(box, button);
    const auto calls = [&] {
        Click(125, 140);
        return Calls();
    };
    ASSERT_EQ(calls(), "action");
    HideGadget(0, box);
    HideGadget(0, button);
    ShowGadget(0, box);
    EXPECT_EQ(calls(), "") << "hidden meanwhile";
    HideGadget(0, box);
    ShowGadget(0, button);
    EXPECT_EQ(calls(), "") << "its box does not show";
    ShowGadget(0, box);
    EXPECT_EQ(calls(), "action");
}

static const BView* button_in(const BView* view)
{
    const BView* found = dynamic_cast<const BButton*>(view);
    for (BView* child = view->ChildAt(0); child != nullptr && found == nullptr;
         child = child->NextSibling())
        found = button_in(child);
    return found;
}

TEST_F(GadgetTest, GadgetsOfAPageBehindAreHiddenAndShownByThemselves)
{
    const int32_t tabs = Make(25, 10, 10, 250, 200);
    AddTab(tabs, "one");
    AddTab(tabs, "two");
    const int32_t button = Make(1, 20, 30, 80, 24);
    AddGadgetInTab(button, tabs, 1);
    TabSelect(tabs, 1);
    Settle();
    BWindow* const object = Object();
    ASSERT_TRUE(object->Lock());
    const BView* const view = button_in(object->ChildAt(0));
    const BPoint corner = view != nullptr ? view->ConvertToScreen(BPoint(5, 5)) : B_ORIGIN;
    object->Unlock();
    const auto calls = [&] {
        inject_pointer(corner.x, corner.y);
        inject_button(1, true);
        inject_button(1, false);
        const std::string all = Calls();
        return all.find("action") != std::string::npos;
    };
    ASSERT_TRUE(calls());
    TabSelect(tabs, 0);
    HideGadget(0, button);
    TabSelect(tabs, 1);
    EXPECT_FALSE(calls()) << "hidden meanwhile";
    TabSelect(tabs, 0);
    ShowGadget(0, button);
    EXPECT_FALSE(calls()) << "its page does not show";
    TabSelect(tabs, 1);
    EXPECT_TRUE(calls());
}

TEST_F(GadgetTest, RemoveAllLeavesEverySecondGadgetKept)
{
    std::vector<int32_t> buttons;
    for (int32_t i = 0; i < 4; i++)
        buttons.push_back(Make(1, 10, 10 + 30 * i, 80, 24));
    RemoveAll(window);
    EXPECT_EQ(CountViews(), 2);
    EXPECT_EQ(FrameOf(0).top, 40);
    EXPECT_EQ(FrameOf(1).top, 100);
    AttachGadgetToWindow(window, buttons[0]);
    EXPECT_EQ(CountViews(), 3);
    for (int32_t button : buttons)
        KillGadget(0, button);
    EXPECT_EQ(CountViews(), 0);
}

// --- boxes

TEST_F(GadgetTest, BoxTakesGadgetsAndGivesThemBackWhenItIsKilled)
{
    const int32_t box = Make(24, 100, 100, 150, 150, "box");
    const int32_t button = Make(1, 20, 30, 80, 24);
    const int32_t check = Make(2, 20, 60, 80, 24);
    BBoxAddGadget(box, button);
    BBoxAddGadgetTitle(box, check);
    EXPECT_EQ(CountViews(), 1);
    Click(125, 140);
    EXPECT_EQ(Calls(), "action");
    WithView(0, [](BView* view) {
        EXPECT_EQ(view->CountChildren(), 2);
        EXPECT_NE(dynamic_cast<BBox*>(view)->LabelView(), nullptr);
        return 0;
    });
    KillGadget(0, box);
    EXPECT_TRUE(is_gadget_ident(button));
    EXPECT_TRUE(is_gadget_ident(check));
    EXPECT_EQ(CountViews(), 0);
    AttachGadgetToWindow(window, button);
    EXPECT_EQ(FrameOf(0), BRect(20, 30, 100, 54));
    KillGadget(0, check);
}

TEST_F(GadgetTest, BoxIsNeverPutIntoItselfOrItsOwn)
{
    const int32_t outer = Make(24, 10, 10, 150, 150, nullptr);
    const int32_t inner = Make(24, 10, 10, 100, 100, nullptr);
    BBoxAddGadget(outer, outer);
    BBoxAddGadgetTitle(outer, outer);
    EXPECT_EQ(CountViews(), 2);
    BBoxAddGadget(outer, inner);
    EXPECT_EQ(CountViews(), 1);
    BBoxAddGadget(inner, outer);
    BBoxAddGadgetTitle(inner, outer);
    EXPECT_EQ(CountViews(), 1);
    BBoxAddGadget(outer, inner);
    const int32_t other = Make(24, 10, 10, 150, 150, nullptr);
    BBoxAddGadget(other, inner);
    WithView(0, [](BView* view) {
        EXPECT_EQ(view->CountChildren(), 0);
        return 0;
    });
    BBoxAddGadget(inner, 0);
    BBoxAddGadget(0, inner);
    BBoxAddGadget(Make(1, 0, 0, 10, 10), inner);
}

TEST_F(GadgetTest, BoxLabelReplacesATitleWithoutKillingIt)
{
    const int32_t box = Make(24, 10, 10, 150, 150, "box");
    const int32_t check = Make(2, 20, 60, 80, 24);
    BBoxAddGadgetTitle(box, check);
    BBoxAddGadgetTitle(box, check);
    SetLabelBBox(box, "text");
    EXPECT_TRUE(is_gadget_ident(check));
    SetChecked(check, 1);
    EXPECT_TRUE(GetChecked(check));
    const auto border = [this] {
        return WithView(0, [](BView* view) { return dynamic_cast<BBox*>(view)->Border(); });
    };
    SetBorder(box, 0);
    EXPECT_EQ(border(), B_PLAIN_BORDER);
    SetBorder(box, 99);
    EXPECT_EQ(border(), B_NO_BORDER);
    SetLabelBBox(box, nullptr);
    KillGadget(0, check);
}

// --- values

TEST_F(GadgetTest, ChecksCallTheirValueHandler)
{
    const int32_t check = Make(2, 10, 10, 80, 24);
    SetChecked(check, 5);
    EXPECT_TRUE(GetChecked(check));
    EXPECT_EQ(GetValue(check), 1);
    SetChecked(check, 0);
    EXPECT_EQ(Calls(), "value 1, value 0");
    SetChecked(Make(1, 50, 50, 80, 24), 1);
    EXPECT_FALSE(GetChecked(0));
}

TEST_F(GadgetTest, SlidersCallAgainForEachValueBeyondTheirEndsKept)
{
    const int32_t slider = Make(15, 10, 10, 100, 24, "s", 50);
    SetValue(slider, 20);
    SetValue(slider, 20);
    SetSliderPosition(slider, 99);
    SetSliderPosition(slider, 99);
    SetValue(slider, -5);
    EXPECT_EQ(Calls(), "value 20, value 50, value 50, value 0");
    EXPECT_EQ(GetValue(slider), 0);
    SetSliderProportion(slider, 50);
    EXPECT_EQ(GetValue(slider), 25);
    EXPECT_EQ(Calls(), "value 25, value 0");
    SetEnabled(slider, 0);
    SetValue(slider, 30);
    EXPECT_EQ(GetValue(slider), 30);
    EXPECT_EQ(Calls(), "");
}

TEST_F(GadgetTest, ADisabledSliderIsMovedByTheProgramAlone)
{
    const int32_t kKeyRight = 0x63;
    const int32_t slider = Make(15, 10, 10, 200, 30, "s", 50);
    ActivateGadget(slider);
    SetValue(slider, 20);
    SetEnabled(slider, 0);
    SetValue(slider, 30);
    Calls();
    Click(190, 25);
    Key(kKeyRight);
    EXPECT_EQ(Calls(), "");
    EXPECT_EQ(GetValue(slider), 30);
    SetEnabled(slider, 1);
    SetValue(slider, 30);
    EXPECT_EQ(Calls(), "") << "where it is already";
    SetValue(slider, 31);
    EXPECT_EQ(Calls(), "value 31");
}

TEST_F(GadgetTest, SlidersTakeTheirStyle)
{
    const int32_t slider = Make(16, 10, 10, 24, 150, "s", 50);
    SetStyle(slider, 0);
    SetBarColor(slider, 0x11223344);
    SetFillColor(slider, int32_t(0xAABBCCFF));
    SetHashCount(slider, INT32_MAX);
    SetHashType(slider, -1);
    SetLimitsLabel(slider, "low", nullptr);
    WithView(0, [](BView* view) {
        auto* object = dynamic_cast<BSlider*>(view);
        EXPECT_EQ(object->Style(), B_TRIANGLE_THUMB);
        EXPECT_EQ(object->BarColor().green, 0x22);
        rgb_color fill;
        EXPECT_TRUE(object->FillColor(&fill));
        EXPECT_EQ(fill.blue, 0xCC);
        EXPECT_EQ(object->HashMarks(), B_HASH_MARKS_BOTH);
        EXPECT_STREQ(object->MinLimitLabel(), "low");
        EXPECT_EQ(object->Orientation(), B_VERTICAL);
        return 0;
    });
    Settle();
    SetStyle(slider, 7);
    WithView(0, [](BView* view) {
        EXPECT_EQ(dynamic_cast<BSlider*>(view)->Style(), B_BLOCK_THUMB);
        return 0;
    });
}

TEST_F(GadgetTest, ScrollBarsCallForValuesAndProportions)
{
    const int32_t bar = Make(14, 10, 10, 24, 150);
    SetValue(bar, 7);
    SetValue(bar, 99);
    EXPECT_EQ(GetValue(bar), 15);
    SetProportion(bar, 100);
    SetProportion(bar, 50);
    EXPECT_EQ(Calls(), "value 7, value 15, value 1, value 0");
    SetRange(bar, 20, 30);
    EXPECT_EQ(GetValue(bar), 20);
    SetSteps(bar, 2, 5);
    Click(17, 155);
    EXPECT_EQ(Calls(), "value 20, value 22");
}

TEST_F(GadgetTest, ScrollBarsAreFourteenPixelsThickAtAnyFontSizeKept)
{
    for (const int32_t points : {8, 12, 18, 24, 36}) {
        const int32_t font = OpenFont(nullptr, nullptr, points);
        const int32_t across = Make(13, 10, 20, 80, 50), up = Make(14, 10, 50, 50, 80);
        SetFontGadget(across, font);
        SetFontGadget(up, font);
        EXPECT_EQ(FrameOf(0), BRect(10, 20, 90, 34)) << points;
        EXPECT_EQ(FrameOf(1), BRect(10, 50, 24, 130)) << points;
        KillGadget(0, across);
        KillGadget(0, up);
        CloseFont(font);
    }
}

TEST_F(GadgetTest, KindsWithoutAValueHaveNone)
{
    const int32_t icon = CreateImage(8, 8);
    for (const int32_t kind : {1, 3, 4, 5, 6, 7, 8, 11, 12, 20, 24, 26, 29, 33}) {
        const int32_t ident = Make(kind, 10, 10, 80, 40, "7", icon);
        ASSERT_NE(ident, 0) << kind;
        SetValue(ident, 7);
        EXPECT_EQ(GetValue(ident), 0) << kind;
        SetEnabled(ident, 0);
        EXPECT_EQ(GetEnabled(ident), 0) << kind;
        SetEnabled(ident, -1);
        EXPECT_EQ(GetEnabled(ident), 1) << kind;
    }
    CloseIcon(icon);
}

TEST_F(GadgetTest, StatusBarsAdvanceByTheValueKept)
{
    const int32_t bar = Make(17, 10, 10, 100, 40);
    SetStatusValue(bar, 10);
    SetStatusValue(bar, 10);
    EXPECT_EQ(GetValue(bar), 20);
    SetValue(bar, 30);
    EXPECT_EQ(GetValue(bar), 50);
    SetStatusValue(bar, 1000);
    EXPECT_EQ(GetValue(bar), 100);
    SetStatusMaxValue(bar, 70);
    EXPECT_EQ(GetValue(bar), 70);
    SetStatusLabel(bar, "text");
    SetStatusTrail(bar, "trail");
    SetStatusLabel(bar, nullptr);
    SetStatusValue(bar, -30);
    SetStatusBarColor(bar, 0x00FF00FF);
    SetStatusBarHeight(bar, 40);
    WithView(0, [](BView* view) {
        auto* object = dynamic_cast<BStatusBar*>(view);
        EXPECT_STREQ(object->Text(), "");
        EXPECT_STREQ(object->TrailingText(), "trail");
        EXPECT_EQ(object->CurrentValue(), 40);
        EXPECT_EQ(object->BarHeight(), 40);
        return 0;
    });
}

TEST_F(GadgetTest, StatusTextsEndAfter299BytesWhenTheBarGoesOnKept)
{
    const int32_t bar = Make(17, 10, 10, 100, 40);
    const auto texts = [&] {
        return WithView(0, [](BView* view) {
            auto* object = dynamic_cast<BStatusBar*>(view);
            return std::make_pair(std::string(object->Text()), std::string(object->TrailingText()));
        });
    };
    SetStatusLabel(bar, std::string(299, 'a').c_str());
    SetStatusTrail(bar, std::string(300, 'b').c_str());
    SetValue(bar, 1);
    EXPECT_EQ(texts().second.size(), 300u);
    SetStatusValue(bar, 1);
    EXPECT_EQ(texts(), std::make_pair(std::string(299, 'a'), std::string(299, 'b')));
    SetStatusLabel(bar, std::string(100000, 'c').c_str());
    SetStatusValue(bar, 0);
    EXPECT_EQ(texts().first, std::string(299, 'c'));
}

// Another thread draws into the window at once: nothing that the calls lock stays locked.
TEST_F(GadgetTest, OthersDrawAfterGadgetsWereTakenOutAndPutBack)
{
    const int32_t button = Make(1, 10, 10, 80, 24);
    const auto draw = [&] {
        std::atomic<bool> drawn = false;
        std::thread other([&] {
            FRectangle(window, 0, 0, 10, 10);
            drawn = true;
        });
        EXPECT_TRUE(eventually([&] { return drawn.load(); }));
        other.join();
    };
    RemoveAll(window);
    draw();
    AttachGadgetToWindow(window, button);
    draw();
    AttachGadgetToWindow(window, button);
    AttachGadgetToWindow(window, 0);
    draw();
}

TEST_F(GadgetTest, RadioGroupsSelectByIndex)
{
    const char* const labels[] = {"a", "b", "c", nullptr};
    const int32_t group = Make(18, 10, 10, 100, 100, labels);
    EXPECT_EQ(GetValue(group), 0);
    RadSelected(group, 2);
    EXPECT_EQ(GetValue(group), 2);
    EXPECT_EQ(Calls(), "value 2");
    RadSelected(group, 77);
    EXPECT_EQ(GetValue(group), 77);
    EXPECT_EQ(Calls(), "");
    RadSelected(Make(1, 0, 0, 10, 10), 1);
    SetEnabled(group, 0);
    EXPECT_EQ(GetEnabled(group), 0);
    Click(20, 20);
    EXPECT_EQ(Calls(), "");
    SetEnabled(group, 1);
    EXPECT_EQ(GetEnabled(group), 1);
}

// Calls of some kinds are for gadgets in a window; the others work without one.
TEST_F(GadgetTest, SomeSettersLeaveGadgetsInNoWindowAlone)
{
    const char* const labels[] = {"a", "b", nullptr};
    const auto loose = [](int32_t kind, const void* text) {
        return CreateGadget(kind, -1, 0, 0, 80, 40, text, 100);
    };
    const int32_t group = loose(18, labels), bar = loose(17, nullptr), slider = loose(15, "s");
    const int32_t box = loose(24, "box"), across = loose(13, nullptr), check = loose(2, "c");
    RadSelected(group, 1);
    SetStatusValue(bar, 10);
    SetStatusMaxValue(bar, 7);
    SetStatusLabel(bar, "text");
    SetStatusTrail(bar, "trail");
    SetStatusBarHeight(bar, 33);
    SetStatusBarColor(bar, 0x010203FF);
    SetLimitsLabel(slider, "low", "high");
    SetSliderPosition(slider, 40);
    SetStyle(slider, 0);
    SetBorder(box, 2);
    SetValue(across, 9);
    SetChecked(check, 1);
    EXPECT_EQ(GetValue(group), 0);
    EXPECT_EQ(GetValue(bar), 0);
    EXPECT_EQ(GetValue(slider), 40);
    EXPECT_EQ(GetValue(across), 9);
    EXPECT_TRUE(GetChecked(check));
    for (const int32_t ident : {bar, slider, box})
        AttachGadgetToWindow(window, ident);
    WithView(0, [](BView* view) {
        auto* own = dynamic_cast<BStatusBar*>(view);
        EXPECT_EQ(own->MaxValue(), 100);
        EXPECT_TRUE(own->Text() == nullptr || own->Text()[0] == '\0');
        EXPECT_TRUE(own->TrailingText() == nullptr || own->TrailingText()[0] == '\0');
        EXPECT_NE(own->BarHeight(), 33);
        EXPECT_NE(own->BarColor(), make_color(1, 2, 3));
        return 0;
    });
    WithView(1, [](BView* view) {
        auto* own = dynamic_cast<BSlider*>(view);
        EXPECT_EQ(own->MinLimitLabel(), nullptr);
        EXPECT_EQ(own->Style(), B_TRIANGLE_THUMB);
        return 0;
    });
    WithView(2, [](BView* view) {
        EXPECT_EQ(dynamic_cast<BBox*>(view)->Border(), B_NO_BORDER);
        return 0;
    });
    for (const int32_t ident : {group, across, check})
        KillGadget(0, ident);
}

TEST_F(GadgetTest, OnlyAWholeCheckCounts)
{
    const int32_t check = Make(2, 10, 10, 80, 24);
    for (const int32_t value : {2, -1, 0, 1}) {
        WithView(0, [=](BView* view) {
            static_cast<BControl*>(view)->SetValue(value);
            return 0;
        });
        EXPECT_EQ(GetChecked(check), value == 1) << value;
    }
}

TEST_F(GadgetTest, ColoursArePackedWithoutMasks)
{
    EXPECT_EQ(ReturnIntFromRgb(255, 0, 0), int32_t(0xFF000000));
    EXPECT_EQ(ReturnIntFromRgb(1, 2, 3), 0x01020300);
    EXPECT_EQ(ReturnIntFromRgb(0, 0, -1), -256);
}

TEST_F(GadgetTest, StyleSettersReachTheShownView)
{
    const int32_t button = Make(1, 10, 10, 80, 24);
    SetForeColorGadget(button, 0x102030FF, 0x405060FF);
    SetBackColorGadget(button, 0x708090FF);
    const auto flags = [&] {
        return WithView(0, [](BView* view) {
            BFont font;
            view->GetFont(&font);
            return font.Flags();
        });
    };
    WithView(0, [](BView* view) {
        EXPECT_EQ(view->HighColor(), make_color(0x10, 0x20, 0x30));
        EXPECT_EQ(view->LowColor(), make_color(0x40, 0x50, 0x60));
        EXPECT_EQ(view->ViewColor(), make_color(0x70, 0x80, 0x90));
        return 0;
    });
    SetAntiliasingGadget(button, 0);
    EXPECT_EQ(flags(), uint32(B_DISABLE_ANTIALIASING));
    SetAntiliasingGadget(button, 1);
    EXPECT_EQ(flags(), 0u);
    SetFontGadget(button, 12345);
    ResizeGadget(button, 33, 44);
    EXPECT_EQ(FrameOf(0), BRect(10, 10, 43, 54));
}

TEST_F(GadgetTest, RadioGroupHasRoomForTheFontThatItIsGiven)
{
    const int32_t font = OpenFont(nullptr, nullptr, 36);
    const int32_t group = Make(18, 10, 10, 80, 24, kLabels);
    SetFontGadget(group, font);
    WithView(0, [](BView* view) {
        float top = 0;
        for (BView* radio = view->ChildAt(0); radio != nullptr; radio = radio->NextSibling()) {
            float width, height;
            radio->GetPreferredSize(&width, &height);
            EXPECT_GE(radio->Frame().Width(), width);
            EXPECT_GT(height, 36);
            EXPECT_EQ(radio->Frame().top, top);
            top += radio->Frame().Height();
        }
        EXPECT_EQ(view->Frame().Height(), top / 2) << "one row short of two";
        return 0;
    });
    // What the program made of it remains.
    ResizeGadget(group, 300, 200);
    const BRect before = FrameOf(0);
    SetFontGadget(group, font);
    EXPECT_EQ(FrameOf(0), before);
    CloseFont(font);
}

TEST_F(GadgetTest, ChoiceFieldHasRoomForTheFontThatItIsGiven)
{
    const int32_t font = OpenFont(nullptr, nullptr, 36);
    const int32_t field = Make(19, 10, 10, 400, 24, kLabels);
    MxSelected(field, 0);
    SetFontGadget(field, font);
    WithView(0, [](BView* view) {
        const BFont large = [&] {
            BFont each;
            view->GetFont(&each);
            return each;
        }();
        BView* title = view->ChildAt(0);
        EXPECT_GT(title->Frame().Height(), 36);
        EXPECT_TRUE(view->Bounds().Contains(title->Frame()));
        EXPECT_GT(title->Frame().Width(), large.StringWidth("one") + 36) << "and the marker";
        return 0;
    });
    CloseFont(font);
}

// --- idents and slots that are none

TEST_F(GadgetTest, SlotsThatAreNoneStoreNothing)
{
    const int32_t button = Make(1, 10, 10, 80, 24);
    for (int32_t slot : {0, -1, 4, 5, 9, INT32_MAX, INT32_MIN})
        SetHandlerForGadget(button, slot, reinterpret_cast<void*>(1));
    Click(20, 20);
    EXPECT_EQ(Calls(), "action");
}

TEST_F(GadgetTest, CallsWithOtherIdentsDoNothing)
{
    for (int32_t ident : {0, -1, -2, INT32_MIN, INT32_MAX, window.Ident()}) {
        KillGadget(0, ident);
        HideGadget(0, ident);
        SetGadget(0, ident);
        SetLabel(ident, "x");
        SetEnabled(ident, 1);
        SetValue(ident, 1);
        SetHandlerForGadget(ident, 1, nullptr);
        FocusOnClick(ident, 1);
        ActivateGadget(ident);
        SetFontGadget(ident, ident);
        BBoxAddGadget(ident, ident);
        AttachGadgetToWindow(window, ident);
        ResizeGadget(ident, 1, 1);
        EXPECT_EQ(GetValue(ident), 0);
        EXPECT_EQ(GetEnabled(ident), 0);
        EXPECT_FALSE(is_gadget_ident(ident));
    }
}

// --- colours and pictures

static int32_t on_color(int32_t red, int32_t green, int32_t blue)
{
    gHandlers.Add(std::to_string(red) + "-" + std::to_string(green) + "-" + std::to_string(blue));
    return 0;
}

TEST_F(GadgetTest, ColourControlTellsThreeParts)
{
    const int32_t color = Make(30, 10, 10, 0, 0, nullptr);
    ASSERT_NE(color, 0);
    SetHandlerForGadget(color, 3, reinterpret_cast<void*>(on_color));
    SetColorRgb(color, 0x102030FF);
    SetColorInt(color, 0x405060FF);
    SetColorInt(color, 0x405060FF);
    EXPECT_EQ(Calls(), "16-32-48, 64-80-96, 64-80-96");
    EXPECT_EQ(GetColor(color), 0x40506000);
    EXPECT_EQ(GetValue(color), 0x405060FF);
    EXPECT_EQ(GetColor(Make(1, 0, 0, 10, 10)), 0);
    // A press at the right end of the red ramp.
    Click(10 + 2 + 127, 10 + 2 + 40);
    EXPECT_EQ(Calls(), "action, 255-80-96, 255-80-96");
    SetHandlerForGadget(color, 3, nullptr);
    SetColorRgb(color, 0);
    for (int32_t number : {0, -1, 3, INT32_MAX, INT32_MIN, 4}) {
        SetCellSize(color, number);
        SetLayout(color, number);
    }
    Settle();
    const int32_t loose = CreateGadget(30, -1, 0, 0, 0, 0, nullptr, 0);
    SetColorRgb(loose, 0x102030FF);
    EXPECT_EQ(GetColor(loose), 0);
    EXPECT_EQ(GetValue(loose), 0);
    KillGadget(0, loose);
}

TEST_F(GadgetTest, PictureButtonNeedsItsIcon)
{
    EXPECT_EQ(Make(33, 10, 10, 16, 16, nullptr, 0), 0);
    EXPECT_EQ(Make(33, 10, 10, 16, 16, nullptr, window.Ident()), 0);
    const int32_t icon = LoadMimeIcon("text/plain");
    if (icon == 0)
        GTEST_SKIP() << "no icon here";
    ASSERT_NE(Make(33, 10, 10, 16, 16, nullptr, icon), 0);
    EXPECT_EQ(FrameOf(0), BRect(10, 10, 30, 30));
    Click(15, 15);
    EXPECT_EQ(Calls(), "");
}
