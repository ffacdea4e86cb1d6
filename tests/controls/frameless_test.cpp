// Controls that are made without a frame.

#include <Box.h>
#include <Button.h>
#include <ChannelSlider.h>
#include <CheckBox.h>
#include <Message.h>
#include <OptionControl.h>
#include <RadioButton.h>
#include <ScrollBar.h>
#include <Slider.h>
#include <StatusBar.h>
#include <StringView.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

TEST(Frameless, ControlsAreAsLargeAsTheyWant)
{
    std::vector<std::unique_ptr<BView>> views;
    views.emplace_back(new BButton("name", "A long label", nullptr));
    views.emplace_back(new BButton("A long label"));
    views.emplace_back(new BCheckBox("name", "A long label", nullptr));
    views.emplace_back(new BCheckBox("A long label"));
    views.emplace_back(new BRadioButton("name", "A long label", nullptr));
    views.emplace_back(new BRadioButton("A long label", nullptr));
    views.emplace_back(new BSlider("name", "A long label", nullptr, 0, 10, B_HORIZONTAL));
    views.emplace_back(new BSlider("name", "A long label", nullptr, 0, 10, B_VERTICAL));
    views.emplace_back(new BScrollBar("name", nullptr, 0, 10, B_VERTICAL));
    views.emplace_back(new BStatusBar("name", "A long label"));
    views.emplace_back(new BStringView("name", "A long label"));
    views.emplace_back(new BChannelSlider("name", "A long label", nullptr, B_VERTICAL, 3));
    for (size_t i = 0; i < views.size(); i++) {
        float width, height;
        views[i]->GetPreferredSize(&width, &height);
        EXPECT_EQ(views[i]->Frame(), BRect(0, 0, width, height)) << i;
        EXPECT_GT(std::max(width, height), 10) << i;
    }
    EXPECT_STREQ(views[0]->Name(), "name");
    EXPECT_EQ(views[1]->Name(), nullptr);
    EXPECT_STREQ(static_cast<BControl&>(*views[1]).Label(), "A long label");
}

TEST(Frameless, BasesHaveNoSize)
{
    class Options : public BOptionControl {
    public:
        Options() : BOptionControl("name", "label", new BMessage('msg_')) {}
        bool GetOptionAt(int32, const char**, int32*) override { return false; }
        void RemoveOptionAt(int32) override {}
        int32 CountOptions() const override { return 0; }
        status_t AddOptionAt(const char*, int32, int32) override { return B_ERROR; }
        int32 SelectedOption(const char**, int32*) const override { return -1; }
    };
    const Options options;
    EXPECT_FALSE(options.Bounds().IsValid());
    EXPECT_STREQ(options.Label(), "label");
    EXPECT_EQ(options.Message()->what, uint32('msg_'));
}

TEST(Frameless, BoxIsAroundItsChild)
{
    auto* child = new BView(BRect(7, 7, 106, 56), "child", 0, 0);
    BBox box(B_FANCY_BORDER, child);
    EXPECT_EQ(child->Parent(), &box);
    EXPECT_EQ(box.InnerFrame(), child->Frame());
    EXPECT_EQ(child->Bounds(), BRect(0, 0, 99, 49));
    const BBox empty("name");
    EXPECT_EQ(empty.CountChildren(), 0);
    EXPECT_EQ(empty.Border(), B_FANCY_BORDER);
}
