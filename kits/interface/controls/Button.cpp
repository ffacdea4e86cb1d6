// Push buttons.

#include <Button.h>

#include <Bitmap.h>
#include <Message.h>
#include <Window.h>

#include <algorithm>
#include <cmath>

#include <interface/controls/ControlIcon.h>
#include <interface/controls/ControlPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::ControlPrivate;
using BPrivate::Look;

static const bigtime_t kKeyPress_us = 100000;  // how long a button looks pressed by a key

BButton::BButton(BRect frame, const char* name, const char* label, BMessage* message,
                 uint32 resizingMode, uint32 flags)
    : BControl(frame, name, label, message, resizingMode, flags | B_FULL_UPDATE_ON_RESIZE)
{
    const Look look(this);
    BPrivate::grow_to_height(this, std::ceil(look.Size() + look.TextHeight()));
}

BButton::BButton(const char* name, const char* label, BMessage* message, uint32 flags)
    : BButton(BRect(), name, label, message, B_FOLLOW_LEFT_TOP, flags)
{
    BButton::ResizeToPreferred();
}

BButton::BButton(const char* label, BMessage* message) : BButton(nullptr, label, message) {}

BButton::BButton(BMessage* data) : BControl(data)
{
    bool is_default = false;
    if (data == nullptr)
        return;
    if (data->FindBool("_default", &is_default) == B_OK)
        fDefault = is_default;
    bool flat;
    if (data->FindBool("be:flat", &flat) == B_OK)
        fFlat = flat;
    fBehavior = BPrivate::enum_up_to(data->GetInt32("be:behavior", fBehavior), B_POP_UP_BEHAVIOR,
                                     fBehavior);
}

BButton::~BButton() = default;

BArchivable* BButton::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BButton") ? new (std::nothrow) BButton(data) : nullptr;
}

status_t BButton::Archive(BMessage* data, bool deep) const
{
    status_t status = BControl::Archive(data, deep);
    if (status == B_OK && fDefault)
        status = data->AddBool("_default", true);
    if (status == B_OK && fFlat)
        status = data->AddBool("be:flat", true);
    if (status == B_OK && fBehavior != B_BUTTON_BEHAVIOR)
        status = data->AddInt32("be:behavior", fBehavior);
    return status;
}

// --- drawing

uint32 BButton::_State() const
{
    uint32 state = ControlPrivate::State(this) & ~uint32(Look::kPressed);
    const bool shown_pressed = system_time() < fShownUntil;
    if (fBehavior != B_TOGGLE_BEHAVIOR)
        state &= ~uint32(Look::kOn | Look::kMixed);
    if ((ControlPrivate::IsPressed(this) && !fPopUpPressed) || shown_pressed ||
        (fBehavior != B_TOGGLE_BEHAVIOR && Value() != B_CONTROL_OFF))
        state |= Look::kPressed;
    if (fDefault)
        state |= Look::kDefault;
    if (fFlat && !(fPointerInside && IsEnabled()))
        state |= Look::kFlat;
    return state;
}

// The part of a pop-up button that has the arrow.
BRect BButton::_PopUpFrame() const
{
    BRect frame = Bounds();
    if (fBehavior != B_POP_UP_BEHAVIOR)
        return BRect();
    const Look look(const_cast<BButton*>(this));
    frame.left = frame.right - look.ButtonInset() - look.Scaled(11);
    return frame;
}

void BButton::Draw(BRect)
{
    const Look look(this);
    const uint32 state = _State();
    look.DrawButton(Bounds(), state);
    const float inset = look.ButtonInset(state) + look.Line();
    BRect inside = Bounds().InsetByCopy(inset, inset);
    if (fBehavior == B_POP_UP_BEHAVIOR) {
        const BRect arrow = _PopUpFrame();
        inside.right = arrow.left - 1;
        look.DrawSeparator(BRect(arrow.left, inside.top, arrow.left, inside.bottom), B_VERTICAL);
        look.DrawArrow(BRect(arrow.left, inside.top, arrow.right - inset, inside.bottom),
                       Look::Way::Down, state);
    }
    if ((state & Look::kPressed) != 0)
        inside.OffsetBy(look.Line(), look.Line());
    const uint32 which =
        (state & (Look::kPressed | Look::kOn)) != 0 ? B_ACTIVE_ICON_BITMAP : B_INACTIVE_ICON_BITMAP;
    look.DrawLabel(Label(), ControlPrivate::Icon(this, which), inside, B_ALIGN_CENTER, state);
}

// --- pressing

void BButton::MouseDown(BPoint where)
{
    fPopUpPressed = fBehavior == B_POP_UP_BEHAVIOR && _PopUpFrame().Contains(where);
    if (!ControlPrivate::Press(this))
        return;
    if (!fPopUpPressed && fBehavior != B_TOGGLE_BEHAVIOR)
        SetValue(B_CONTROL_ON);
    ControlPrivate::Follow(this);
}

void BButton::MouseMoved(BPoint where, uint32 code, const BMessage*)
{
    const bool inside = code == B_ENTERED_VIEW || code == B_INSIDE_VIEW;
    if (fFlat && inside != fPointerInside)
        Invalidate();
    fPointerInside = inside;
    if (ControlPrivate::Drag(this, where) && !fPopUpPressed && fBehavior != B_TOGGLE_BEHAVIOR)
        SetValue(ControlPrivate::IsPressed(this) ? B_CONTROL_ON : B_CONTROL_OFF);
}

void BButton::MouseUp(BPoint where)
{
    const bool released_inside = ControlPrivate::Release(this, where);
    if (fPopUpPressed) {
        fPopUpPressed = false;
        if (released_inside && fPopUpMessage != nullptr) {
            fPopUpMessage->RemoveName("be:where");
            BControl::Invoke(fPopUpMessage.get());
        }
        return;
    }
    if (!released_inside)
        return;
    if (fBehavior == B_TOGGLE_BEHAVIOR)
        SetValue(Value() != B_CONTROL_OFF ? B_CONTROL_OFF : B_CONTROL_ON);
    Invoke();
}

void BButton::KeyDown(const char* bytes, int32 numBytes)
{
    const char key = ControlPrivate::Key(bytes, numBytes);
    if (key != B_ENTER && key != B_SPACE) {
        BControl::KeyDown(bytes, numBytes);
        return;
    }
    if (!IsEnabled())
        return;
    fShownUntil = system_time() + kKeyPress_us;
    DelayedInvalidate(kKeyPress_us + 10000);
    if (fBehavior == B_TOGGLE_BEHAVIOR)
        SetValue(Value() != B_CONTROL_OFF ? B_CONTROL_OFF : B_CONTROL_ON);
    else
        SetValue(B_CONTROL_ON);
    Invoke();
}

// One that is held down is let go.
void BButton::SetEnabled(bool enabled)
{
    const bool held = IsTracking();
    BControl::SetEnabled(enabled);
    if (held && !enabled && fBehavior != B_TOGGLE_BEHAVIOR)
        SetValue(B_CONTROL_OFF);
}

// What it sends says that it was on; then it is off again.
status_t BButton::Invoke(BMessage* message)
{
    const status_t status = BControl::Invoke(message);
    if (fBehavior != B_TOGGLE_BEHAVIOR)
        SetValue(B_CONTROL_OFF);
    return status;
}

// --- the default button

void BButton::AttachedToWindow()
{
    BControl::AttachedToWindow();
    if (fDefault)
        Window()->SetDefaultButton(this);
}

void BButton::DetachedFromWindow()
{
    fPointerInside = fPopUpPressed = false;
    BControl::DetachedFromWindow();
}

void BButton::MakeDefault(bool flag)
{
    BWindow* window = Window();
    if (flag != fDefault) {
        const Look look(this);
        const float ring = look.ButtonInset(Look::kDefault) - look.ButtonInset();
        fDefault = flag;
        MoveBy(flag ? -ring : ring, flag ? -ring : ring);
        ResizeBy(flag ? 2 * ring : -2 * ring, flag ? 2 * ring : -2 * ring);
        Invalidate();
    }
    if (window == nullptr)
        return;
    BButton* before = window->DefaultButton();
    if (flag && before != this)
        window->SetDefaultButton(this);
    else if (!flag && before == this)
        window->SetDefaultButton(nullptr);
}

bool BButton::IsDefault() const { return fDefault; }

// --- kinds of buttons

bool BButton::IsFlat() const { return fFlat; }

void BButton::SetFlat(bool flat)
{
    fFlat = flat;
    Invalidate();
}

BButton::BBehavior BButton::Behavior() const { return fBehavior; }

void BButton::SetBehavior(BBehavior behavior)
{
    if (behavior == fBehavior)
        return;
    fBehavior = behavior;
    SetValue(B_CONTROL_OFF);
    Invalidate();
}

BMessage* BButton::PopUpMessage() const { return fPopUpMessage.get(); }

void BButton::SetPopUpMessage(BMessage* message)
{
    if (message != fPopUpMessage.get())
        fPopUpMessage.reset(message);
}

// --- size

void BButton::GetPreferredSize(float* _width, float* _height)
{
    const Look look(this);
    const float inset = look.ButtonInset(fDefault ? uint32(Look::kDefault) : 0);
    const float spacing = look.LabelSpacing();
    const float content = look.LabelWidth(Label(), ControlPrivate::Icon(this, 0));
    if (_width != nullptr) {
        const float margins = std::max(2 * inset + spacing - 1, std::ceil(3.3f * spacing));
        *_width = std::max(margins + content, std::ceil(12.5f * spacing));
        if (fBehavior == B_POP_UP_BEHAVIOR)
            *_width += look.Scaled(11);
    }
    if (_height != nullptr) {
        const float text = look.LabelHeight(ControlPrivate::Icon(this, 0));
        const font_height& height = look.Height();
        *_height = std::max(std::ceil((height.ascent + height.descent) * 1.8f),
                            text + 2 * inset + spacing);
    }
}
