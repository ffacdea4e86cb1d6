// Colour controls. Hooks run on the window's thread, or on that of a call that has the window
// locked.

#include "gadgets/kinds.h"
#include "graphics/raster_port.h"
#include "plinth.h"

#include <ColorControl.h>

static const float kCellSize = 8;

class MyColorControl : public BColorControl {
public:
    MyColorControl(MyGadget* gadget, BPoint place)
        : BColorControl(place, B_CELLS_16x16, kCellSize, nullptr), fGadget(gadget)
    {
    }

    void AttachedToWindow() override
    {
        BColorControl::AttachedToWindow();
        take_ground(this);
    }
    void MouseDown(BPoint where) override
    {
        if (IsEnabled() && is_primary_press(this))
            tell_press(this, *fGadget);
        BColorControl::MouseDown(where);
    }
    using BColorControl::SetValue;
    void SetValue(int32 value) override;

private:
    MyGadget* const fGadget;
};

void MyColorControl::SetValue(int32 value)
{
    {
        RegistryLock registry;
        fGadget->color_call = fGadget->value_handler;
    }
    BColorControl::SetValue(value);
    const rgb_color color = ValueAsColor();
    call_handler(*fGadget, &MyGadget::color_call, int32_t{color.red}, int32_t{color.green},
                 int32_t{color.blue});
}

BView* create_color(const GadgetSpec& spec)
{
    return new MyColorControl(spec.record, spec.frame.LeftTop());
}

template <class Action>
static void on_color(int32_t ident, Action act)
{
    on_gadget<BColorControl>(ident, kColorControl, Unlocked::Skip,
                             [&](BColorControl& control, MyGadget&) { act(control); });
}

extern "C" void SetCellSize(int32_t ident, int32_t size)
{
    on_color(ident, [=](BColorControl& control) { control.SetCellSize(static_cast<float>(size)); });
}

extern "C" void SetLayout(int32_t ident, int32_t layout)
{
    on_color(ident, [=](BColorControl& control) {
        control.SetLayout(static_cast<color_control_layout>(layout));
    });
}

extern "C" void SetColorRgb(int32_t ident, int32_t value)
{
    const rgb_color color = GetRgbFromInteger(static_cast<uint32_t>(value));
    on_color(ident, [=](BColorControl& control) {
        control.SetValue(ReturnIntFromRgb(color.red, color.green, color.blue));
    });
}

extern "C" void SetColorInt(int32_t ident, int32_t value)
{
    on_color(ident, [=](BColorControl& control) { control.SetValue(value); });
}

extern "C" int32_t GetColor(int32_t ident)
{
    int32_t packed = 0;
    on_color(ident, [&](BColorControl& control) {
        const rgb_color color = control.ValueAsColor();
        packed = ReturnIntFromRgb(color.red, color.green, color.blue);
    });
    return packed;
}
