// Controls with several channels, and choices among options.

#include <ChannelSlider.h>
#include <Message.h>
#include <MultiChannelControl.h>
#include <OptionControl.h>

#include <gtest/gtest.h>

#include <tests/interface/window_harness.h>

#include <string>
#include <vector>

using namespace window_test;

// --- channels

TEST(Channels, KeepValuesBetweenTheirLimits)
{
    BChannelSlider slider(BRect(0, 0, 60, 200), "", "label", nullptr, 3);
    EXPECT_EQ(slider.CountChannels(), 3);
    EXPECT_EQ(slider.SetAllValue(500), B_OK);
    EXPECT_EQ(slider.ValueFor(2), 100);
    EXPECT_EQ(slider.SetLimits(10, 20), B_OK);
    EXPECT_EQ(slider.ValueFor(0), 20);
    EXPECT_EQ(slider.SetLimits(20, 10), B_BAD_VALUE);
    EXPECT_EQ(slider.SetLimitsFor(1, 0, 5), B_ERROR);
    const int32 values[] = {12, 13, 14, 15};
    EXPECT_EQ(slider.SetValue(1, 4, values), B_OK);
    int32 read[3] = {};
    EXPECT_EQ(slider.GetValue(read, 0, 9), 3);
    EXPECT_EQ(std::vector<int32>(read, read + 3), (std::vector<int32>{20, 12, 13}));
    EXPECT_EQ(slider.GetValue(read, -1, 1), 0);
    EXPECT_EQ(slider.SetValueFor(3, 1), B_BAD_INDEX);
    EXPECT_EQ(slider.ValueFor(-1), 0);
    EXPECT_EQ(slider.SetValue(0, 1, nullptr), B_BAD_VALUE);
}

TEST(Channels, CurrentOneIsTheControlsValue)
{
    BChannelSlider slider(BRect(0, 0, 60, 200), "", "label", nullptr, 3);
    slider.SetValueFor(2, 33);
    EXPECT_EQ(slider.SetCurrentChannel(2), B_OK);
    EXPECT_EQ(slider.BControl::Value(), 33);
    slider.BControl::SetValue(1);
    static_cast<BControl&>(slider).SetValue(44);
    EXPECT_EQ(slider.ValueFor(2), 44);
    EXPECT_EQ(slider.SetCurrentChannel(3), B_BAD_INDEX);
    EXPECT_EQ(slider.SetChannelCount(1), B_OK);
    EXPECT_EQ(slider.CurrentChannel(), 0);
    EXPECT_EQ(slider.SetChannelCount(-1), B_BAD_VALUE);
    EXPECT_EQ(slider.SetChannelCount(33), B_BAD_VALUE);
    EXPECT_EQ(slider.SetChannelCount(0), B_OK);
    EXPECT_EQ(slider.SetLimits(0, 5), B_OK);
    EXPECT_EQ(slider.SetLimits(5, 0), B_BAD_VALUE);
    EXPECT_EQ(slider.GetLimits(nullptr, nullptr), B_BAD_INDEX);
}

TEST(Channels, LabelsOfAChannelStandForTheCommonOnes)
{
    BChannelSlider slider(BRect(0, 0, 60, 200), "", "label", nullptr, 2);
    slider.SetLimitLabels("low", "high");
    slider.SetLimitLabelsFor(1, "own", nullptr);
    EXPECT_STREQ(slider.MinLimitLabelFor(0), "low");
    EXPECT_STREQ(slider.MinLimitLabelFor(1), "own");
    EXPECT_STREQ(slider.MaxLimitLabelFor(1), "high");
}

TEST(Channels, ComeBackFromAnArchive)
{
    BChannelSlider slider(BRect(0, 0, 60, 200), "", "label", nullptr, B_HORIZONTAL, 2);
    slider.SetLimits(5, 50);
    slider.SetValueFor(1, 17);
    slider.SetLimitLabels("low", nullptr);
    BMessage archive;
    ASSERT_EQ(slider.Archive(&archive), B_OK);
    BChannelSlider copy(&archive);
    EXPECT_EQ(copy.CountChannels(), 2);
    EXPECT_EQ(copy.ValueFor(0), 5);
    EXPECT_EQ(copy.ValueFor(1), 17);
    EXPECT_STREQ(copy.MinLimitLabel(), "low");
    EXPECT_EQ(copy.Orientation(), B_HORIZONTAL);
}

namespace {

// Passes on what a class below has to say.
class OlderControl : public BMultiChannelControl {
public:
    using BMultiChannelControl::BMultiChannelControl;
    void Draw(BRect update) override { BMultiChannelControl::Draw(update); }
    void MouseDown(BPoint where) override { BMultiChannelControl::MouseDown(where); }
    void KeyDown(const char* bytes, int32 count) override
    {
        BMultiChannelControl::KeyDown(bytes, count);
    }
    void GetPreferredSize(float* width, float* height) override
    {
        BMultiChannelControl::GetPreferredSize(width, height);
    }
    int32 MaxChannelCount() const override { return BMultiChannelControl::MaxChannelCount(); }
};

}  // namespace

TEST(Channels, OlderNamesHaveLimitsForEachChannel)
{
    OlderControl control(BRect(0, 0, 60, 200), "", "label", nullptr, 2);
    const int32 low[] = {0, 10}, high[] = {5, 20};
    EXPECT_EQ(control.SetLimits(0, 2, low, high), B_OK);
    EXPECT_EQ(control.SetLimitsFor(0, 3, 4), B_OK);
    EXPECT_EQ(control.SetAllValues(100), B_OK);
    int32 values[2] = {};
    EXPECT_EQ(control.GetValues(values, 0, 2), 2);
    EXPECT_EQ(values[0], 4);
    EXPECT_EQ(values[1], 20);
    EXPECT_EQ(control.SetAllLimits(1, 2), B_OK);
    EXPECT_EQ(control.ValueFor(1), 2);
}

namespace {

class ChannelTest : public WindowTest {
protected:
    void SetUp() override
    {
        Make(200, 250, B_ASYNCHRONOUS_CONTROLS);
        slider = new BChannelSlider(BRect(10, 10, 110, 230), "", nullptr, new BMessage('DONE'), 2);
        slider->SetModificationMessage(new BMessage('MOVE'));
        window->AddChild(slider);
    }
    std::string Values()
    {
        Settle();
        window->Lock();
        const std::string values =
            std::to_string(slider->ValueFor(0)) + " " + std::to_string(slider->ValueFor(1));
        window->Unlock();
        return values;
    }
    // The middle of a thumb, on the screen.
    BPoint Thumb(int32 channel)
    {
        window->Lock();
        const BRect frame = slider->ThumbFrameFor(channel);
        const BPoint middle((frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2);
        const BPoint place = slider->ConvertToScreen(middle);
        range = slider->ThumbRangeFor(channel);
        window->Unlock();
        return place;
    }

    BChannelSlider* slider = nullptr;
    float range = 0;
};

}  // namespace

TEST_F(ChannelTest, ThumbsMoveTogetherAndAloneWithShift)
{
    Start();
    const BPoint first = Thumb(0);
    inject_pointer(first.x, first.y);
    inject_button(1, true);
    inject_pointer(first.x, first.y - range / 2);
    EXPECT_EQ(Values(), "50 50");
    inject_button(1, false);
    Settle();
    EXPECT_EQ(log.Count("message DONE"), 1);
    EXPECT_EQ(log.Count("message MOVE"), 1);
    EXPECT_EQ(log.Message("message DONE").FindInt32("be:channel_value", 1), 50);
    const BPoint second = Thumb(1);
    inject_key(kKeyShift, true);
    inject_pointer(second.x, second.y);
    inject_button(1, true);
    inject_pointer(second.x, second.y + 500);
    EXPECT_EQ(Values(), "50 0");
    inject_button(1, false);
    inject_key(kKeyShift, false);
}

TEST_F(ChannelTest, KeysChooseAChannelAndMoveIt)
{
    Start();
    window->Lock();
    slider->MakeFocus(true);
    window->Unlock();
    const int32_t up = 0x57, right = 0x63;
    Press(up);
    Press(right);
    Press(up);
    Press(up);
    EXPECT_EQ(Values(), "1 2");
    EXPECT_EQ(log.Count("message DONE"), 3);
}

// --- options

namespace {

class Options : public BOptionControl {
public:
    Options() : BOptionControl(BRect(0, 0, 50, 20), "options", "label", nullptr) {}
    bool GetOptionAt(int32 index, const char** name, int32* value) override
    {
        if (index < 0 || index >= CountOptions())
            return false;
        if (name != nullptr)
            *name = fOptions[index].first.c_str();
        if (value != nullptr)
            *value = fOptions[index].second;
        return true;
    }
    void RemoveOptionAt(int32 index) override { fOptions.erase(fOptions.begin() + index); }
    int32 CountOptions() const override { return int32(fOptions.size()); }
    status_t AddOptionAt(const char* name, int32 value, int32 index) override
    {
        fOptions.insert(fOptions.begin() + index, {name, value});
        return B_OK;
    }
    int32 SelectedOption(const char**, int32*) const override { return -1; }
    using BOptionControl::MakeValueMessage;

private:
    std::vector<std::pair<std::string, int32>> fOptions;
};

}  // namespace

TEST(OptionControls, ChooseByNumberNameAndMessage)
{
    Options options;
    options.AddOption("one", 11);
    options.AddOption("two", 22);
    EXPECT_EQ(options.SelectOptionFor(22), B_OK);
    EXPECT_EQ(options.Value(), 22);
    EXPECT_EQ(options.SelectOptionFor("one"), B_OK);
    EXPECT_EQ(options.Value(), 11);
    EXPECT_EQ(options.SelectOptionFor(33), B_ERROR);
    EXPECT_EQ(options.SelectOptionFor("three"), B_ERROR);
    EXPECT_EQ(options.SelectOptionFor(nullptr), B_ERROR);
    std::unique_ptr<BMessage> message(options.MakeValueMessage(22));
    options.MessageReceived(message.get());
    EXPECT_EQ(options.Value(), 22);
}
