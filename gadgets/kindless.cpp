// Controls without a kind. Hooks run on the window's thread, window locked.

#include "gadgets/kindless.h"

#include "gadgets/kinds.h"

#include <ChannelSlider.h>
#include <MenuField.h>
#include <MultiChannelControl.h>
#include <OptionPopUp.h>
#include <PopUpMenu.h>

// What they add to their bases: the ground around them, and the key handler.
template <class Base>
class Kindless : public Base {
public:
    template <class... Arguments>
    explicit Kindless(MyGadget* gadget, const Arguments&... arguments)
        : Base(arguments...), fGadget(gadget)
    {
    }

    void AttachedToWindow() override
    {
        Base::AttachedToWindow();
        take_ground(this);
    }
    void KeyDown(const char* bytes, int32 count) override
    {
        Base::KeyDown(bytes, count);
        if (count > 0)
            call_key_handler(this, *fGadget, bytes);
    }

protected:
    MyGadget* const fGadget;
};

class MyOptionUp : public Kindless<BOptionPopUp> {
public:
    MyOptionUp(MyGadget* gadget, BRect frame, const char* label)
        : Kindless(gadget, frame, "", label, static_cast<BMessage*>(nullptr))
    {
    }
};

class MyChannelControl : public Kindless<BChannelSlider> {
public:
    MyChannelControl(MyGadget* gadget, BRect frame, const char* label)
        : Kindless(gadget, frame, "", label, static_cast<BMessage*>(nullptr))
    {
    }
};

// The base has no face and no hands: neither has this.
class MultiChannelBase : public BMultiChannelControl {
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

class MyMultiChannelControl : public Kindless<MultiChannelBase> {
public:
    MyMultiChannelControl(MyGadget* gadget, BRect frame, const char* label)
        : Kindless(gadget, frame, "", label, static_cast<BMessage*>(nullptr))
    {
    }
};

// It keeps the ground of its base.
class MyBMenuField : public BMenuField {
public:
    MyBMenuField(MyGadget* gadget, BRect frame, BPopUpMenu* menu)
        : BMenuField(frame, "", "", menu), fGadget(gadget)
    {
    }

    void MouseDown(BPoint where) override
    {
        if (!IsEnabled() || !is_primary_press(this))
            return;
        BMenuField::MouseDown(where);
        tell_press(this, *fGadget);
    }
    void KeyDown(const char* bytes, int32 count) override
    {
        BMenuField::KeyDown(bytes, count);
        if (count > 0)
            call_key_handler(this, *fGadget, bytes);
    }
    void MakeFocus(bool focused) override { BMenuField::MakeFocus(focused); }

private:
    MyGadget* const fGadget;
};

// Without a record there is none to tell.
template <class Control, class... Arguments>
static BView* make(MyGadget* gadget, Arguments... arguments)
{
    return gadget != nullptr ? new Control(gadget, arguments...) : nullptr;
}

BView* create_myoptionup(MyGadget* gadget, BRect frame)
{
    return make<MyOptionUp>(gadget, frame, "");
}

BView* create_channelcontrol(MyGadget* gadget, BRect frame)
{
    return make<MyChannelControl>(gadget, frame, "");
}

BView* create_multichannelcontrol(MyGadget* gadget, BRect frame)
{
    return make<MyMultiChannelControl>(gadget, frame, "");
}

BView* create_mymenufield(MyGadget* gadget, BRect frame, BPopUpMenu* menu)
{
    return menu != nullptr ? make<MyBMenuField>(gadget, frame, menu) : nullptr;
}
