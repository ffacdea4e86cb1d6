// What screen readers are told of controls, and how those of several channels have one item each.

#include <interface/accessible/Teller.h>

#include <Box.h>
#include <Button.h>
#include <ChannelControl.h>
#include <CheckBox.h>
#include <ColorControl.h>
#include <OptionControl.h>
#include <PictureButton.h>
#include <RadioButton.h>
#include <ScrollBar.h>
#include <ScrollView.h>
#include <Slider.h>
#include <StatusBar.h>
#include <StringView.h>

#include <cstdio>

namespace BPrivate {

using server::AccessibleRole;
using Item = Teller::Item;

// Does `Kind` tell of a view?
template <class Kind>
static bool is(const BView& view)
{
    return dynamic_cast<const Kind*>(&view) != nullptr;
}

static Item& add_control(Teller& teller, BControl& control, int32 parent, AccessibleRole role)
{
    Item& item = teller.Add(control, parent, role, control.Label());
    if (!control.IsEnabled())
        item.states |= server::kIsDisabled;
    return item;
}

static uint32 check_state(int32 value)
{
    if (value == B_CONTROL_PARTIALLY_ON)
        return server::kIsCheckable | server::kIsMixed;
    return server::kIsCheckable | (value != B_CONTROL_OFF ? server::kIsChecked : 0u);
}

static int32 tell_mark(Teller& teller, BView& view, int32 parent)
{
    auto& control = dynamic_cast<BControl&>(view);
    const AccessibleRole role =
        is<BCheckBox>(view) ? AccessibleRole::CheckBox : AccessibleRole::RadioButton;
    Item& item = add_control(teller, control, parent, role);
    item.states |= check_state(control.Value()) | server::kCanBePressed;
    return teller.Last();
}

static bool stays_down(const BView& view)
{
    if (const auto* button = dynamic_cast<const BButton*>(&view))
        return button->Behavior() == BButton::B_TOGGLE_BEHAVIOR;
    const auto* picture = dynamic_cast<const BPictureButton*>(&view);
    return picture != nullptr && picture->Behavior() == B_TWO_STATE_BUTTON;
}

// Controls of other kinds are pressed too.
static int32 tell_button(Teller& teller, BView& view, int32 parent)
{
    auto& control = dynamic_cast<BControl&>(view);
    Item& item = add_control(teller, control, parent, AccessibleRole::Button);
    item.states |= server::kCanBePressed;
    if (stays_down(view))
        item.states |= check_state(control.Value());
    const auto* button = dynamic_cast<const BButton*>(&view);
    if (button != nullptr && button->IsDefault())
        item.states |= server::kIsDefault;
    return teller.Last();
}

static int32 tell_slider(Teller& teller, BView& view, int32 parent)
{
    auto& slider = dynamic_cast<BSlider&>(view);
    Item& item = add_control(teller, slider, parent, AccessibleRole::Slider);
    int32 least, most;
    slider.GetLimits(&least, &most);
    teller.SetRange(&item, slider.Value(), least, most, slider.KeyIncrementValue());
    item.states |= server::kCanBeSet;
    if (const char* text = slider.UpdateText())
        item.value = text;
    return teller.Last();
}

static int32 tell_channels(Teller& teller, BView& view, int32 parent)
{
    auto& control = dynamic_cast<BChannelControl&>(view);
    add_control(teller, control, parent, AccessibleRole::Group);
    const int32 whole = teller.Last();
    for (int32 i = 0; i < control.CountChannels(); i++) {
        int32 least = 0, most = 0;
        control.GetLimitsFor(i, &least, &most);
        const std::string name = std::to_string(i + 1);
        Item& item = teller.AddPart(teller.At(whole), static_cast<uint32>(i) + 1,
                                    AccessibleRole::Slider, name.c_str());
        teller.SetRange(&item, control.ValueFor(i), least, most, 1);
        item.states |= server::kCanBeSet;
    }
    return Teller::kNothing;
}

static int32 tell_scroll_bar(Teller& teller, BView& view, int32 parent)
{
    auto& bar = dynamic_cast<BScrollBar&>(view);
    Item& item = teller.Add(view, parent, AccessibleRole::ScrollBar, nullptr);
    float least, most, step, page;
    bar.GetRange(&least, &most);
    bar.GetSteps(&step, &page);
    teller.SetRange(&item, bar.Value(), least, most, step);
    item.states |= most > least ? server::kCanBeSet : server::kIsDisabled;
    return teller.Last();
}

static int32 tell_status(Teller& teller, BView& view, int32 parent)
{
    auto& bar = dynamic_cast<BStatusBar&>(view);
    Item& item = teller.Add(view, parent, AccessibleRole::ProgressBar, bar.Label());
    item.states |= server::kIsReadOnly;
    teller.SetRange(&item, bar.CurrentValue(), 0, bar.MaxValue(), 0);
    for (const char* text : {bar.Text(), bar.TrailingText()}) {
        if (text == nullptr || text[0] == '\0')
            continue;
        if (!item.value.empty())
            item.value += ' ';
        item.value += text;
    }
    return teller.Last();
}

static int32 tell_color(Teller& teller, BView& view, int32 parent)
{
    auto& control = dynamic_cast<BColorControl&>(view);
    Item& item = add_control(teller, control, parent, AccessibleRole::ColorChooser);
    const rgb_color color = control.ValueAsColor();
    char text[16];
    snprintf(text, sizeof(text), "#%02X%02X%02X", color.red, color.green, color.blue);
    item.value = text;
    return teller.Last();
}

static int32 tell_box(Teller& teller, BView& view, int32 parent)
{
    const auto& box = dynamic_cast<const BBox&>(view);
    teller.Add(view, parent, AccessibleRole::Group, box.Label());
    return teller.Last();
}

static int32 tell_label(Teller& teller, BView& view, int32 parent)
{
    const auto& label = dynamic_cast<const BStringView&>(view);
    teller.Add(view, parent, AccessibleRole::Label, label.Text());
    return teller.Last();
}

// What only holds others.
static int32 tell_inside(Teller&, BView&, int32 parent) { return parent; }

TellView control_teller(const BView& view)
{
    struct Row {
        bool (*is_kind)(const BView& view);
        TellView tell;
    };
    static const Row kRows[] = {
        {is<BCheckBox>, tell_mark},      {is<BRadioButton>, tell_mark},
        {is<BSlider>, tell_slider},      {is<BChannelControl>, tell_channels},
        {is<BColorControl>, tell_color}, {is<BOptionControl>, tell_inside},
        {is<BControl>, tell_button},     {is<BScrollBar>, tell_scroll_bar},
        {is<BStatusBar>, tell_status},   {is<BBox>, tell_box},
        {is<BStringView>, tell_label},   {is<BScrollView>, tell_inside},
    };
    for (const Row& row : kRows) {
        if (row.is_kind(view))
            return row.tell;
    }
    return nullptr;
}

}  // namespace BPrivate
