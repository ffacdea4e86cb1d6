// Scroll bars, scroll views, sliders and status bars: their rules, and what the pointer does.

#include <Bitmap.h>
#include <Font.h>
#include <Message.h>
#include <ScrollBar.h>
#include <ScrollView.h>
#include <Slider.h>
#include <StatusBar.h>

#include <gtest/gtest.h>

#include <tests/interface/window_harness.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using namespace window_test;

namespace {

class BarTest : public WindowTest {
protected:
    void SetUp() override { Make(300, 300, B_ASYNCHRONOUS_CONTROLS); }
    void Down(float x, float y, int32_t button = 1)
    {
        inject_pointer(100 + x, 100 + y);
        inject_button(button, true);
        Settle();
    }
    void Move(float x, float y)
    {
        inject_pointer(100 + x, 100 + y);
        Settle();
    }
    void Up(int32_t button = 1)
    {
        inject_button(button, false);
        Settle();
    }
};

// Writes its values down.
class LoggedBar : public BScrollBar {
public:
    LoggedBar(Log& log, BRect frame, float min, float max, orientation direction)
        : BScrollBar(frame, "bar", nullptr, min, max, direction), fLog(log)
    {
    }
    void ValueChanged(float value) override
    {
        fLog.Add(nullptr, "value %g", value);
        BScrollBar::ValueChanged(value);
    }

private:
    Log& fLog;
};

}  // namespace

// --- scroll bars

TEST(ScrollBarValues, AreRoundedAndKeptInTheRange)
{
    BScrollBar bar(BRect(0, 0, 14, 100), "bar", nullptr, -10, 20, B_VERTICAL);
    const float infinity = std::numeric_limits<float>::infinity();
    const struct {
        float set, get;
    } rows[] = {{3.4f, 3},   {3.5f, 4},     {-11, -10},         {21, 20},     {0, 0},
                {1e30f, 20}, {-1e30f, -10}, {std::nanf(""), 0}, {infinity, 0}};
    for (const auto& row : rows) {
        bar.SetValue(row.set);
        EXPECT_EQ(bar.Value(), row.get) << row.set;
    }
}

TEST(ScrollBarValues, FollowTheRange)
{
    Log log;
    LoggedBar bar(log, BRect(0, 0, 14, 100), 0, 100, B_VERTICAL);
    bar.SetValue(80);
    bar.SetValue(80);
    bar.SetRange(0, 50);
    bar.SetRange(10, 5);
    float min, max;
    bar.GetRange(&min, &max);
    EXPECT_EQ(min, 0);
    EXPECT_EQ(max, 0);
    bar.SetRange(5.4f, 9.6f);
    bar.GetRange(&min, &max);
    EXPECT_EQ(min, 5);
    EXPECT_EQ(max, 10);
    EXPECT_EQ(log.Lines(), "value 80; value 50; value 0; value 5");
}

TEST(ScrollBarDefaults, AreThePlatforms)
{
    BScrollBar bar(BRect(0, 0, 14, 100), "bar", nullptr, 0, 15, B_VERTICAL);
    float small_step, large_step;
    bar.GetSteps(&small_step, &large_step);
    EXPECT_EQ(small_step, 1);
    EXPECT_EQ(large_step, 10);
    EXPECT_EQ(bar.Proportion(), 0);
    EXPECT_EQ(bar.ResizingMode(), uint32(B_FOLLOW_TOP_BOTTOM | B_FOLLOW_RIGHT));
    bar.SetProportion(3);
    EXPECT_EQ(bar.Proportion(), 1);
    bar.SetProportion(-1);
    EXPECT_EQ(bar.Proportion(), 0);
}

TEST(ScrollBarTargets, AndBarsFollowEachOther)
{
    BView target(BRect(0, 0, 100, 100), "target", 0, 0);
    BScrollBar bar(BRect(0, 0, 14, 100), "bar", &target, 0, 500, B_VERTICAL);
    EXPECT_EQ(target.ScrollBar(B_VERTICAL), &bar);
    bar.SetValue(30);
    EXPECT_EQ(target.LeftTop(), BPoint(0, 30));
    target.ScrollTo(0, 77);
    EXPECT_EQ(bar.Value(), 77);
    bar.SetOrientation(B_HORIZONTAL);
    EXPECT_EQ(target.ScrollBar(B_VERTICAL), nullptr);
    EXPECT_EQ(target.ScrollBar(B_HORIZONTAL), &bar);
    bar.SetTarget(static_cast<BView*>(nullptr));
    EXPECT_EQ(target.ScrollBar(B_HORIZONTAL), nullptr);
}

TEST(ScrollBarTargets, MayGoFirst)
{
    BScrollBar bar(BRect(0, 0, 14, 100), "bar", nullptr, 0, 500, B_VERTICAL);
    {
        BView target(BRect(0, 0, 100, 100), "target", 0, 0);
        bar.SetTarget(&target);
    }
    EXPECT_EQ(bar.Target(), nullptr);
    bar.SetValue(10);
    BView target(BRect(0, 0, 100, 100), "target", 0, 0);
    {
        BScrollBar other(BRect(0, 0, 14, 100), "bar", &target, 0, 500, B_VERTICAL);
    }
    target.ScrollTo(0, 5);
    EXPECT_EQ(target.ScrollBar(B_VERTICAL), nullptr);
}

TEST_F(BarTest, ArrowsStepPagesJumpAndTheThumbIsDragged)
{
    // 101 pixels: arrows of 15 at the ends, a trough of 71 with a thumb of 15.
    auto* bar = new LoggedBar(log, BRect(10, 10, 24, 110), 0, 56, B_VERTICAL);
    window->AddChild(bar);
    Start();
    Down(17, 105);
    Up();
    Down(17, 15);
    Up();
    EXPECT_EQ(log.Lines({"value"}), "value 1; value 0");
    Down(17, 90);
    Up();
    EXPECT_EQ(log.Lines({"value"}), "value 1; value 0; value 10");
    Down(17, 27);  // above the thumb, which is at 35 now
    Up();
    log.Clear();
    Down(17, 30);
    Move(17, 50);
    Move(250, 70);
    EXPECT_EQ(log.Lines({"value"}), "value 20; value 40");
    Move(17, 1000);
    Up();
    EXPECT_EQ(Locked([&] { return bar->Value(); }), 56);
    Move(17, 30);
    EXPECT_EQ(Locked([&] { return bar->Value(); }), 56);
}

TEST_F(BarTest, ArrowThatIsHeldGoesOn)
{
    auto* bar = new LoggedBar(log, BRect(10, 10, 24, 110), 0, 1000, B_VERTICAL);
    window->AddChild(bar);
    Start();
    Down(17, 105);
    EXPECT_TRUE(log.Wait("value", 4));
    Move(200, 200);
    log.Clear();
    Up();
    EXPECT_EQ(log.Count("value"), 0);
}

TEST_F(BarTest, PageStopsUnderThePointer)
{
    auto* bar = new LoggedBar(log, BRect(10, 10, 24, 110), 0, 56, B_VERTICAL);
    window->AddChild(bar);
    Start();
    Down(17, 50);  // the thumb gets there with 20
    EXPECT_TRUE(log.Wait("value 20"));
    snooze(150000);
    Up();
    EXPECT_EQ(Locked([&] { return bar->Value(); }), 20);
}

TEST_F(BarTest, BarWithoutRangeTakesNoPress)
{
    auto* bar = new LoggedBar(log, BRect(10, 10, 24, 110), 0, 0, B_VERTICAL);
    window->AddChild(bar);
    Start();
    Down(17, 105);
    Up();
    Down(17, 50);
    Up();
    EXPECT_EQ(log.Count("value"), 0);
}

TEST_F(BarTest, WheelScrollsTheViewUnderThePointerAndTheBarItself)
{
    auto* target = Add(BRect(10, 10, 100, 100), "target");
    auto* scroll = new BScrollView("scroll", nullptr, B_FOLLOW_NONE, 0, false, true);
    window->Lock();
    target->RemoveSelf();
    scroll->SetTarget(target);
    window->AddChild(scroll);
    window->Unlock();
    Start();
    BScrollBar* bar = scroll->ScrollBar(B_VERTICAL);
    inject_pointer(108, 108);
    inject_wheel(0, 2);
    Settle();
    EXPECT_EQ(Locked([&] { return bar->Value(); }), 6);
    EXPECT_EQ(Locked([&] { return target->LeftTop().y; }), 6);
}

TEST(ScrollBarSizes, NoneIsTooSmallToBeDrawn)
{
    Log log;
    auto* window = new TestWindow(log, BRect(100, 100, 300, 300));
    for (float length : {-1.f, 0.f, 3.f, 14.f, 29.f, 31.f, 33.f, 50.f}) {
        for (orientation direction : {B_HORIZONTAL, B_VERTICAL}) {
            const BRect frame =
                direction == B_VERTICAL ? BRect(0, 0, 14, length) : BRect(0, 0, length, 14);
            window->AddChild(new BScrollBar(frame, "", nullptr, 0, 10, direction));
        }
    }
    window->Show();
    BMessage request(kSettle), reply;
    BMessenger(window).SendMessage(&request, &reply);
    window->Lock();
    window->Quit();
}

// The thickness is the platform's at any size of the font: edges do not grow into it.
TEST(ScrollBarSizes, EdgesFitTheBarWhateverTheFont)
{
    const auto drawn = [](float points) {
        BBitmap bitmap(BRect(0, 0, 14, 99), B_RGB32, true);
        auto* bar = new BScrollBar(bitmap.Bounds(), "", nullptr, 0, 100, B_VERTICAL);
        BFont font;
        font.SetSize(points);
        bar->SetFont(&font);
        bar->SetProportion(0.4f);
        bitmap.Lock();
        bitmap.AddChild(bar);
        bar->Draw(bar->Bounds());
        bar->Sync();
        bitmap.Unlock();
        const auto* bits = static_cast<const uint8*>(bitmap.Bits());
        return std::vector<uint8>(bits, bits + bitmap.BitsLength());
    };
    const auto usual = drawn(12);
    EXPECT_NE(std::count(usual.begin(), usual.end(), usual.front()), ssize_t(usual.size()));
    for (const float points : {8.f, 18.f, 24.f, 36.f})
        EXPECT_EQ(drawn(points), usual) << points;
}

// --- scroll views

TEST(ScrollViews, FrameGrowsAroundTheTarget)
{
    auto* target = new BView(BRect(20, 30, 119, 79), "target", 0, 0);
    BScrollView view("scroll", target, 0, 0, true, true);
    EXPECT_EQ(view.Frame(), BRect(18, 28, 135, 95));
    EXPECT_EQ(target->Frame(), BRect(2, 2, 101, 51));
    EXPECT_EQ(view.ScrollBar(B_HORIZONTAL)->Frame(), BRect(1, 52, 102, 66));
    EXPECT_EQ(view.ScrollBar(B_VERTICAL)->Frame(), BRect(102, 1, 116, 52));
    EXPECT_EQ(view.ChildAt(0), target);
    EXPECT_STREQ(view.ChildAt(1)->Name(), "_HSB_");
    EXPECT_STREQ(view.ChildAt(2)->Name(), "_VSB_");
    view.SetBorder(B_NO_BORDER);
    EXPECT_EQ(view.Frame(), BRect(20, 30, 134, 94));
    EXPECT_EQ(target->Frame(), BRect(0, 0, 99, 49));
    view.SetBorder(B_FANCY_BORDER);
    EXPECT_EQ(view.Frame(), BRect(18, 28, 135, 95));
    EXPECT_EQ(view.SetBorderHighlighted(true), B_OK);
    view.SetBorder(B_PLAIN_BORDER);
    EXPECT_EQ(view.SetBorderHighlighted(true), B_ERROR);
}

TEST(ScrollViews, GiveTheirTargetBack)
{
    auto* first = new BView(BRect(0, 0, 50, 50), "first", 0, 0);
    auto* second = new BView(BRect(0, 0, 50, 50), "second", 0, 0);
    BScrollView view("scroll", first, 0, 0, false, true);
    EXPECT_EQ(first->ScrollBar(B_VERTICAL), view.ScrollBar(B_VERTICAL));
    EXPECT_EQ(view.ScrollBar(B_HORIZONTAL), nullptr);
    view.SetTarget(second);
    EXPECT_EQ(first->Parent(), nullptr);
    EXPECT_EQ(first->ScrollBar(B_VERTICAL), nullptr);
    EXPECT_EQ(view.Target(), second);
    EXPECT_EQ(view.ChildAt(0), second);
    delete second;
    EXPECT_EQ(view.Target(), nullptr);
    delete first;
}

TEST(ScrollViews, ComeBackFromAnArchive)
{
    BScrollView view("scroll", new BView(BRect(0, 0, 50, 50), "target", 0, 0), 0, 0, true, false,
                     B_PLAIN_BORDER);
    view.ScrollBar(B_HORIZONTAL)->SetRange(0, 77);
    BMessage archive;
    ASSERT_EQ(view.Archive(&archive), B_OK);
    BScrollView copy(&archive);
    EXPECT_EQ(copy.Border(), B_PLAIN_BORDER);
    BMessage bar_archive;
    ASSERT_EQ(view.ScrollBar(B_HORIZONTAL)->Archive(&bar_archive), B_OK);
    BScrollBar bar(&bar_archive);
    float max;
    bar.GetRange(nullptr, &max);
    EXPECT_EQ(max, 77);
    EXPECT_EQ(bar.Orientation(), B_HORIZONTAL);
}

// --- sliders

namespace {

class LoggedSlider : public BSlider {
public:
    using BSlider::BSlider;
    void SetValue(int32 value) override
    {
        asked.push_back(value);
        before.push_back(Value());
        BSlider::SetValue(value);
    }
    std::vector<int32> asked, before;
};

}  // namespace

TEST(SliderValues, StayBetweenTheLimits)
{
    LoggedSlider slider(BRect(0, 0, 100, 20), "", nullptr, nullptr, -5, 20);
    EXPECT_EQ(slider.Value(), -5);
    slider.SetValue(100);
    EXPECT_EQ(slider.Value(), 20);
    EXPECT_EQ(slider.before.back(), -5);
    slider.SetPosition(0.5f);
    EXPECT_EQ(slider.asked.back(), 7);
    slider.SetPosition(-1);
    EXPECT_EQ(slider.Value(), -5);
    slider.SetPosition(7);
    EXPECT_EQ(slider.Value(), 20);
    EXPECT_EQ(slider.Position(), 1);
    slider.SetLimits(30, 40);
    EXPECT_EQ(slider.Value(), 30);
    slider.SetLimits(5, 4);
    int32 min, max;
    slider.GetLimits(&min, &max);
    EXPECT_EQ(min, 30);
    EXPECT_EQ(max, 40);
}

TEST(SliderValues, AllOfAnInt32IsARange)
{
    const int32 low = std::numeric_limits<int32>::min(), high = std::numeric_limits<int32>::max();
    BSlider slider(BRect(0, 0, 100, 20), "", nullptr, nullptr, low, high);
    slider.SetValue(high);
    EXPECT_EQ(slider.Position(), 1);
    slider.SetPosition(0.5f);
    EXPECT_NEAR(slider.Value(), 0, 1);
    slider.SetValue(high);
    slider.SetKeyIncrementValue(high);
    slider.KeyDown("\x1d", 1);
    EXPECT_EQ(slider.Value(), high);
    BSlider reversed(BRect(0, 0, 100, 20), "", nullptr, nullptr, 10, 0);
    reversed.SetValue(5);
    EXPECT_EQ(reversed.Value(), 10);
    EXPECT_EQ(reversed.Position(), 0);
}

TEST(SliderFrames, AreThePlatforms)
{
    BSlider slider(BRect(0, 0, 120, 20), "", nullptr, nullptr, 0, 100);
    EXPECT_EQ(slider.BarFrame(), BRect(8, 6, 112, 12));
    EXPECT_EQ(slider.HashMarksFrame(), BRect(8, 0, 112, 18));
    EXPECT_EQ(slider.ThumbFrame(), BRect(0, 2, 17, 16));
    float height;
    slider.GetPreferredSize(nullptr, &height);
    EXPECT_EQ(height, 18);
    font_height font;
    be_plain_font->GetHeight(&font);
    const float line = ceilf(font.ascent) + ceilf(font.descent) + 4;
    slider.SetLabel("label");
    EXPECT_EQ(slider.BarFrame().top, 6 + line);
    slider.SetLimitLabels("low", "high");
    slider.GetPreferredSize(nullptr, &height);
    EXPECT_EQ(height, 18 + 2 * line);
    slider.SetStyle(B_TRIANGLE_THUMB);
    EXPECT_EQ(slider.BarFrame().left, 7);
    EXPECT_EQ(slider.ThumbFrame().Width(), 12);
    EXPECT_EQ(slider.ThumbFrame().Height(), 8);
}

TEST_F(BarTest, SliderGoesToThePointerAndSendsBothMessages)
{
    auto* slider =
        new BSlider(BRect(10, 10, 226, 30), "slider", nullptr, new BMessage('DONE'), 0, 100);
    slider->SetModificationMessage(new BMessage('MOVE'));
    window->AddChild(slider);
    Start();
    Down(10 + 8 + 100, 19);
    EXPECT_EQ(Locked([&] { return slider->Value(); }), 50);
    EXPECT_EQ(log.Lines({"message"}), "message MOVE");
    Move(10 + 8 + 120, 200);
    Move(10 + 8 + 120, 201);
    EXPECT_EQ(log.Lines({"message"}), "message MOVE; message MOVE");
    Up();
    EXPECT_EQ(log.Lines({"message"}), "message MOVE; message MOVE; message DONE");
    EXPECT_EQ(Locked([&] { return slider->Value(); }), 60);
    // The thumb is taken where it is.
    Down(10 + 8 + 120 + 5, 19);
    EXPECT_EQ(Locked([&] { return slider->Value(); }), 60);
    Up();
    EXPECT_EQ(log.Count("message MOVE"), 2);
}

TEST_F(BarTest, VerticalSliderRisesWithItsValue)
{
    auto* slider =
        new BSlider(BRect(10, 10, 40, 226), "slider", nullptr, nullptr, 0, 100, B_VERTICAL);
    window->AddChild(slider);
    Start();
    Down(19, 10 + 8 + 50);
    Up();
    EXPECT_EQ(Locked([&] { return slider->Value(); }), 75);
}

TEST_F(BarTest, KeysMoveTheSlider)
{
    auto* slider =
        new BSlider(BRect(10, 10, 226, 30), "slider", nullptr, new BMessage('DONE'), 0, 100);
    slider->SetModificationMessage(new BMessage('MOVE'));
    slider->SetKeyIncrementValue(7);
    window->AddChild(slider);
    Start();
    Locked([&] {
        slider->MakeFocus(true);
        return 0;
    });
    const int32_t right = 0x63, left = 0x61, end = 0x35;
    Press(right);
    Press(right);
    Press(left);
    Settle();
    EXPECT_EQ(Locked([&] { return slider->Value(); }), 7);
    EXPECT_EQ(log.Count("message MOVE"), 3);
    EXPECT_EQ(log.Count("message DONE"), 3);
    Press(end);
    Press(end);
    Settle();
    EXPECT_EQ(Locked([&] { return slider->Value(); }), 100);
    EXPECT_EQ(log.Count("message DONE"), 4);
    Locked([&] {
        slider->SetEnabled(false);
        return 0;
    });
    Press(left);
    Settle();
    EXPECT_EQ(Locked([&] { return slider->Value(); }), 100);
}

TEST(SliderArchives, BringBackWhatWasSet)
{
    BSlider slider(BRect(0, 0, 120, 20), "", "label", nullptr, 5, 50, B_VERTICAL, B_TRIANGLE_THUMB);
    slider.SetModificationMessage(new BMessage('MOVE'));
    slider.SetLimitLabels("low", nullptr);
    slider.SetHashMarkCount(9);
    slider.SetHashMarks(B_HASH_MARKS_RIGHT);
    const rgb_color blue = {0, 0, 255, 255};
    slider.UseFillColor(true, &blue);
    slider.SetValue(33);
    BMessage archive;
    ASSERT_EQ(slider.Archive(&archive), B_OK);
    BSlider copy(&archive);
    EXPECT_EQ(copy.Value(), 33);
    EXPECT_EQ(copy.Orientation(), B_VERTICAL);
    EXPECT_EQ(copy.Style(), B_TRIANGLE_THUMB);
    EXPECT_STREQ(copy.MinLimitLabel(), "low");
    EXPECT_EQ(copy.MaxLimitLabel(), nullptr);
    EXPECT_EQ(copy.HashMarkCount(), 9);
    EXPECT_EQ(copy.HashMarks(), B_HASH_MARKS_RIGHT);
    rgb_color fill;
    EXPECT_TRUE(copy.FillColor(&fill));
    EXPECT_EQ(fill, blue);
    EXPECT_EQ(copy.ModificationMessage()->what, uint32('MOVE'));
}

// --- status bars

TEST(StatusBars, StopAtTheirEnds)
{
    BStatusBar bar(BRect(0, 0, 100, 20), "bar");
    bar.Update(40, "text", "trailing");
    EXPECT_EQ(bar.CurrentValue(), 40);
    bar.Update(70);
    EXPECT_EQ(bar.CurrentValue(), 100);
    EXPECT_STREQ(bar.Text(), "text");
    EXPECT_STREQ(bar.TrailingText(), "trailing");
    bar.Update(-1000, "");
    EXPECT_EQ(bar.CurrentValue(), 0);
    EXPECT_STREQ(bar.Text(), "");
    bar.SetMaxValue(10);
    bar.SetTo(9);
    bar.SetMaxValue(5);
    EXPECT_EQ(bar.CurrentValue(), 5);
    bar.Update(std::nanf(""));
    EXPECT_EQ(bar.CurrentValue(), 0);
    bar.SetMaxValue(-1);
    EXPECT_EQ(bar.MaxValue(), 0);
    bar.Reset("label");
    EXPECT_EQ(bar.MaxValue(), 100);
    EXPECT_STREQ(bar.Label(), "label");
    EXPECT_STREQ(bar.TrailingText(), "");
}

// --- archives of others

static const float kOddNumbers[] = {
    std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
    -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::max(),
    -std::numeric_limits<float>::max(),      -1};

TEST_F(BarTest, StatusBarsOfOddArchivesAreSound)
{
    Start();
    for (const char* field : {"_high", "_max", "_val"}) {
        for (const float number : kOddNumbers) {
            BStatusBar bar(BRect(10, 10, 100, 40), "bar");
            bar.SetBarHeight(10);
            BMessage archive;
            ASSERT_EQ(bar.Archive(&archive), B_OK);
            archive.ReplaceFloat(field, number);
            auto* copy = new BStatusBar(&archive);
            EXPECT_TRUE(std::isfinite(copy->BarHeight())) << field << " " << number;
            EXPECT_TRUE(std::isfinite(copy->MaxValue())) << field << " " << number;
            EXPECT_GE(copy->MaxValue(), 0) << field << " " << number;
            EXPECT_GE(copy->CurrentValue(), 0) << field << " " << number;
            EXPECT_LE(copy->CurrentValue(), copy->MaxValue()) << field << " " << number;
            window->AddChild(copy);
            Settle();
            Locked([&] { return copy->RemoveSelf(); });
            delete copy;
        }
    }
}

TEST_F(BarTest, ScrollBarsOfOddArchivesAreSound)
{
    Start();
    for (const char* field : {"_range", "_steps", "_val", "_prop"}) {
        for (const float number : kOddNumbers) {
            BScrollBar bar(BRect(10, 10, 24, 110), "bar", nullptr, 0, 9, B_VERTICAL);
            BMessage archive;
            ASSERT_EQ(bar.Archive(&archive), B_OK);
            for (int32 i = 0; i < 2; i++)
                archive.ReplaceFloat(field, i, i == 0 ? -number : number);
            auto* copy = new BScrollBar(&archive);
            float min, max;
            copy->GetRange(&min, &max);
            EXPECT_TRUE(std::isfinite(min) && min <= max) << field << " " << number;
            EXPECT_GE(copy->Value(), min) << field << " " << number;
            EXPECT_LE(copy->Value(), max) << field << " " << number;
            EXPECT_GE(copy->Proportion(), 0) << field << " " << number;
            EXPECT_LE(copy->Proportion(), 1) << field << " " << number;
            window->AddChild(copy);
            Settle();
            Locked([&] { return copy->RemoveSelf(); });
            delete copy;
        }
    }
}

// Ends as far from each other as numbers can be.
TEST_F(BarTest, ThumbOfTheWidestRangeIsWhereItsValueIs)
{
    const float most = std::numeric_limits<float>::max();
    auto* bar = new LoggedBar(log, BRect(10, 10, 24, 110), 0, 0, B_VERTICAL);
    window->AddChild(bar);
    Locked([&] {
        bar->SetRange(-most, most);
        bar->SetProportion(0.2f);
        bar->SetValue(most);
        return 0;
    });
    Start();
    Down(17, 90);  // above the lower arrow
    Move(17, 20);
    Up();
    EXPECT_EQ(Locked([&] { return bar->Value(); }), -most);
}

TEST_F(BarTest, StatusBarTakesItsHeightAndMessages)
{
    auto* bar = new BStatusBar(BRect(10, 10, 200, 11), "bar", "label");
    window->AddChild(bar);
    Start();
    font_height font;
    be_plain_font->GetHeight(&font);
    const float text = ceilf(font.ascent + font.descent);
    EXPECT_EQ(Locked([&] { return bar->BarHeight(); }), ceilf(font.ascent + font.descent + 5));
    EXPECT_EQ(Locked([&] { return bar->Bounds().Height(); }), text + 6 + bar->BarHeight());
    Locked([&] {
        bar->SetBarHeight(30);
        return 0;
    });
    EXPECT_EQ(Locked([&] { return bar->Bounds().Height(); }), text + 36);
    BMessage update(B_UPDATE_STATUS_BAR);
    update.AddFloat("delta", 12);
    update.AddString("text", "news");
    BMessenger(bar).SendMessage(&update);
    Settle();
    EXPECT_EQ(Locked([&] { return bar->CurrentValue(); }), 12);
    EXPECT_EQ(Locked([&] { return std::string(bar->Text()); }), "news");
    BMessenger(bar).SendMessage(B_RESET_STATUS_BAR);
    Settle();
    EXPECT_EQ(Locked([&] { return bar->CurrentValue(); }), 0);
}

TEST(ScrollViews, BordersAreAtTheSidesThatHaveThem)
{
    auto* target = new BView(BRect(10, 20, 59, 79), "target", 0, 0);
    BScrollView view("scroll", target, 0, 0, false, true);
    EXPECT_EQ(view.Borders(), 15u);
    const BRect whole = view.Frame();
    EXPECT_EQ(whole, BRect(8, 18, 59 + 14 + 2, 81));
    view.SetBorders(8);
    EXPECT_EQ(view.Frame(), BRect(10, 20, 59 + 14, 81)) << "what is scrolled stays where it is";
    EXPECT_EQ(target->Frame(), BRect(0, 0, 49, 59));
    EXPECT_EQ(view.ScrollBar(B_VERTICAL)->Frame().left, 50);
    BMessage archive;
    ASSERT_EQ(view.Archive(&archive), B_OK);
    EXPECT_EQ(BScrollView(&archive).Borders(), 8u);
    view.SetBorder(B_NO_BORDER);
    view.SetBorders(0xFFFFFFFF);
    view.SetBorder(B_FANCY_BORDER);
    EXPECT_EQ(view.Frame(), whole);
    BScrollView other("other", nullptr, B_WILL_DRAW, true, false);
    EXPECT_NE(other.ScrollBar(B_HORIZONTAL), nullptr);
    EXPECT_EQ(other.ScrollBar(B_VERTICAL), nullptr);
}
