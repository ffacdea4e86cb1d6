// Radio buttons: one of a group is on.

#include <RadioButton.h>

#include <Bitmap.h>
#include <Box.h>
#include <Message.h>

#include <interface/controls/ControlPrivate.h>

using BPrivate::ControlPrivate;
using BPrivate::Look;

BRadioButton::BRadioButton(BRect frame, const char* name, const char* label, BMessage* message,
                           uint32 resizingMode, uint32 flags)
    : BControl(frame, name, label, message, resizingMode, flags | B_FRAME_EVENTS)
{
    float height;
    ControlPrivate::MarkedSize(this, nullptr, &height);
    BPrivate::grow_to_height(this, height);
}

BRadioButton::BRadioButton(const char* name, const char* label, BMessage* message, uint32 flags)
    : BRadioButton(BRect(), name, label, message, B_FOLLOW_LEFT_TOP, flags)
{
    BRadioButton::ResizeToPreferred();
}

BRadioButton::BRadioButton(const char* label, BMessage* message)
    : BRadioButton(nullptr, label, message)
{
}

BRadioButton::BRadioButton(BMessage* data) : BControl(data) {}

BRadioButton::~BRadioButton() = default;

BArchivable* BRadioButton::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BRadioButton") ? new (std::nothrow) BRadioButton(data)
                                                        : nullptr;
}

status_t BRadioButton::Archive(BMessage* data, bool deep) const
{
    return BControl::Archive(data, deep);
}

void BRadioButton::Draw(BRect) { ControlPrivate::DrawMarked(this, &Look::DrawRadio); }

void BRadioButton::KeyDown(const char* bytes, int32 numBytes)
{
    const char key = ControlPrivate::Key(bytes, numBytes);
    if (key != B_ENTER && key != B_SPACE) {
        BControl::KeyDown(bytes, numBytes);
    } else if (IsEnabled() && Value() == B_CONTROL_OFF) {
        SetValue(B_CONTROL_ON);
        Invoke();
    }
}

void BRadioButton::MouseDown(BPoint)
{
    if (ControlPrivate::Press(this))
        ControlPrivate::Follow(this);
}

void BRadioButton::MouseMoved(BPoint where, uint32, const BMessage*)
{
    ControlPrivate::Drag(this, where);
}

void BRadioButton::MouseUp(BPoint where)
{
    if (!ControlPrivate::Release(this, where))
        return;
    SetValue(B_CONTROL_ON);
    Invoke();
}

static void turn_off(BView* view, const BView* except)
{
    auto* radio = dynamic_cast<BRadioButton*>(view);
    if (radio != nullptr && radio != except)
        radio->SetValue(B_CONTROL_OFF);
}

// Among the views of which `one` is one, and in the labels of the boxes there.
static void turn_others_off(BView* one, const BView* except)
{
    while (one->PreviousSibling() != nullptr)
        one = one->PreviousSibling();
    for (BView* next; one != nullptr; one = next) {
        next = one->NextSibling();
        const auto* box = dynamic_cast<BBox*>(one);
        if (box != nullptr && box->LabelView() != nullptr)
            turn_off(box->LabelView(), except);
        turn_off(one, except);
    }
}

void BRadioButton::SetValue(int32 value)
{
    if (value == Value())
        return;
    BControl::SetValue(value);
    if (value == B_CONTROL_OFF)
        return;
    auto* box = dynamic_cast<BBox*>(Parent());
    turn_others_off(box != nullptr && box->LabelView() == this ? box : static_cast<BView*>(this),
                    this);
}

void BRadioButton::GetPreferredSize(float* _width, float* _height)
{
    ControlPrivate::MarkedSize(this, _width, _height);
}
