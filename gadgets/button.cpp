// Push buttons and check boxes. Hooks run on the window's thread, window locked.

#include "gadgets/kinds.h"

#include <Button.h>
#include <CheckBox.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <Window.h>

#include <math.h>

class MyButton : public BButton {
public:
    MyButton(MyGadget* gadget, BRect frame)
        : BButton(frame, "", "", nullptr, B_FOLLOW_LEFT_TOP, B_WILL_DRAW | B_NAVIGABLE),
          fGadget(gadget)
    {
    }

    void MouseDown(BPoint where) override;
    void MouseUp(BPoint where) override;
    void KeyDown(const char* bytes, int32 count) override;

private:
    MyGadget* const fGadget;
    int32 fButtons = 0;  // of the last press
};

void MyButton::MouseDown(BPoint where)
{
    fButtons = pressed_buttons(this);
    if (Window() != nullptr && Window()->IsModal()) {
        BButton::MouseDown(where);
        return;
    }
    if (!IsEnabled())
        return;
    if (fButtons == B_SECONDARY_MOUSE_BUTTON)
        open_attached_menu(this, *fGadget, where);
    else
        BButton::MouseDown(where);
}

void MyButton::MouseUp(BPoint where)
{
    const bool clicked = IsTracking() && Bounds().Contains(where);
    if (clicked && IsEnabled() && fButtons == B_PRIMARY_MOUSE_BUTTON &&
        handler_in(*fGadget, &MyGadget::action_handler) != nullptr) {
        BMessage message(kClickMessage);
        name_gadget(&message, fGadget);
        Window()->PostMessage(&message);
    }
    BButton::MouseUp(where);
}

void MyButton::KeyDown(const char* bytes, int32 count)
{
    BButton::KeyDown(bytes, count);
    if (count == 1 && bytes[0] == B_ENTER) {
        if (IsEnabled())
            call_handler(*fGadget, &MyGadget::action_handler);
        return;
    }
    call_key_handler(this, *fGadget, bytes);
}

BView* create_button(const GadgetSpec& spec)
{
    auto* button = new MyButton(spec.record, spec.frame);
    button->ResizeTo(ceilf(spec.frame.Width()), ceilf(spec.frame.Height()));
    return button;
}

class MyCheckBox : public BCheckBox {
public:
    MyCheckBox(MyGadget* gadget, BRect frame)
        : BCheckBox(frame, nullptr, nullptr, nullptr, B_FOLLOW_LEFT_TOP, B_WILL_DRAW | B_NAVIGABLE),
          fGadget(gadget)
    {
    }

    void AttachedToWindow() override { take_ground(this); }
    void MouseDown(BPoint where) override
    {
        if (!IsEnabled() || !is_primary_press(this))
            return;
        BCheckBox::MouseDown(where);
        tell_press(this, *fGadget);
    }
    void SetValue(int32 value) override
    {
        BCheckBox::SetValue(value);
        call_handler(*fGadget, &MyGadget::value_handler, int32_t{value});
    }

private:
    MyGadget* const fGadget;
};

BView* create_checkbox(const GadgetSpec& spec) { return new MyCheckBox(spec.record, spec.frame); }
