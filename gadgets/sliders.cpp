// Sliders and scroll bars. Hooks run on the window's thread, or on that of a call that has the
// window locked.

#include "gadgets/kinds.h"
#include "graphics/raster_port.h"
#include "plinth.h"
#include "runtime/whole.h"

#include <ScrollBar.h>
#include <Slider.h>

#include <algorithm>

class YSlider : public BSlider {
public:
    YSlider(MyGadget* gadget, BRect frame, int32 maximum, orientation posture)
        : BSlider(frame, "", "", nullptr, 0, maximum, posture, B_BLOCK_THUMB, B_FOLLOW_LEFT_TOP,
                  B_WILL_DRAW | B_NAVIGABLE | B_FRAME_EVENTS),
          fGadget(gadget)
    {
    }

    void SetValue(int32 value) override;
    void SetPosition(float position) override
    {
        BSlider::SetPosition(position);
        call_handler(*fGadget, &MyGadget::value_handler, truncated(position));
    }

private:
    MyGadget* const fGadget;
};

// Beyond the limits it calls the handler each time: kept on purpose.
void YSlider::SetValue(int32 value)
{
    const int32 before = Value();
    BSlider::SetValue(value);
    if (value == before || !IsEnabled())
        return;
    const int32 bounded =
        std::min(std::max(value, int32{fGadget->minimum}), int32{fGadget->maximum});
    if (fGadget->value != bounded)
        fGadget->value = bounded;
    call_handler(*fGadget, &MyGadget::value_handler, int32_t{bounded});
}

BView* create_slider(const GadgetSpec& spec)
{
    const orientation posture = spec.kind == kSlider ? B_HORIZONTAL : B_VERTICAL;
    spec.record->minimum = 0;
    spec.record->maximum = spec.value;
    spec.record->value = 0;
    return new YSlider(spec.record, spec.frame, spec.value, posture);
}

template <class Action>
static void on_slider(int32_t ident, Unlocked rule, Action act)
{
    on_gadget<BSlider>(ident, kSlider, rule, [&](BSlider& slider, MyGadget&) { act(slider); });
}

extern "C" void SetSliderPosition(int32_t ident, int32_t value)
{
    on_slider(ident, Unlocked::Act, [=](BSlider& slider) { slider.SetValue(value); });
}

extern "C" void SetSliderProportion(int32_t ident, int32_t percent)
{
    on_slider(ident, Unlocked::Act,
              [=](BSlider& slider) { slider.SetPosition(static_cast<float>(percent * 0.01)); });
}

extern "C" void SetStyle(int32_t ident, int32_t flag)
{
    on_slider(ident, Unlocked::Act, [=](BSlider& slider) {
        slider.SetStyle(flag == 0 ? B_TRIANGLE_THUMB : B_BLOCK_THUMB);
    });
}

extern "C" void SetBarColor(int32_t ident, int32_t color)
{
    on_slider(ident, Unlocked::Act, [=](BSlider& slider) {
        slider.SetBarColor(GetRgbFromInteger(static_cast<uint32_t>(color)));
    });
}

extern "C" void SetFillColor(int32_t ident, int32_t color)
{
    on_slider(ident, Unlocked::Act, [=](BSlider& slider) {
        const rgb_color fill = GetRgbFromInteger(static_cast<uint32_t>(color));
        slider.UseFillColor(true, &fill);
    });
}

extern "C" void SetHashCount(int32_t ident, int32_t count)
{
    on_slider(ident, Unlocked::Act, [=](BSlider& slider) { slider.SetHashMarkCount(count); });
}

extern "C" void SetHashType(int32_t ident, int32_t location)
{
    on_slider(ident, Unlocked::Act, [=](BSlider& slider) {
        slider.SetHashMarks(static_cast<hash_mark_location>(location & B_HASH_MARKS_BOTH));
    });
}

extern "C" void SetLimitsLabel(int32_t ident, const char* minimum, const char* maximum)
{
    on_slider(ident, Unlocked::Skip,
              [=](BSlider& slider) { slider.SetLimitLabels(minimum, maximum); });
}

// --- scroll bars

static const float kLastValue = 15;

class MyScrollBar : public BScrollBar {
public:
    MyScrollBar(MyGadget* gadget, BRect frame, orientation direction)
        : BScrollBar(frame, nullptr, nullptr, 0, kLastValue, direction), fGadget(gadget)
    {
    }

    void ValueChanged(float value) override
    {
        BScrollBar::ValueChanged(value);
        call_handler(*fGadget, &MyGadget::value_handler, truncated(value));
    }
    void SetProportion(float proportion) override
    {
        BScrollBar::SetProportion(proportion);
        call_handler(*fGadget, &MyGadget::value_handler, truncated(proportion));
    }

private:
    MyGadget* const fGadget;
};

BView* create_scroller(const GadgetSpec& spec)
{
    const bool horizontal = spec.kind == kScrollBar;
    BRect frame = spec.frame;
    // As thick at any font size: kept on purpose, programs place things beside it.
    if (horizontal)
        frame.bottom = frame.top + B_H_SCROLL_BAR_HEIGHT;
    else
        frame.right = frame.left + B_V_SCROLL_BAR_WIDTH;
    spec.record->selection = 0;
    spec.record->minimum = 0;
    spec.record->maximum = static_cast<int32_t>(kLastValue);
    return new MyScrollBar(spec.record, frame, horizontal ? B_HORIZONTAL : B_VERTICAL);
}

template <class Action>
static void on_scroller(int32_t ident, Action act)
{
    on_gadget<BScrollBar>(ident, kScrollBar, Unlocked::Act,
                          [&](BScrollBar& bar, MyGadget&) { act(bar); });
}

extern "C" void SetProportion(int32_t ident, int32_t percent)
{
    on_scroller(ident,
                [=](BScrollBar& bar) { bar.SetProportion(static_cast<float>(percent * 0.01)); });
}

extern "C" void SetRange(int32_t ident, int32_t minimum, int32_t maximum)
{
    on_scroller(ident, [=](BScrollBar& bar) {
        bar.SetRange(static_cast<float>(minimum), static_cast<float>(maximum));
    });
}

extern "C" void SetSteps(int32_t ident, int32_t small_step, int32_t large_step)
{
    on_scroller(ident, [=](BScrollBar& bar) {
        bar.SetSteps(static_cast<float>(small_step), static_cast<float>(large_step));
    });
}
