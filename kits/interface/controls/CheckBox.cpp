// Check boxes.

#include <CheckBox.h>

#include <Bitmap.h>
#include <Message.h>

#include <algorithm>
#include <cmath>

#include <interface/controls/ControlPrivate.h>

using BPrivate::ControlPrivate;
using BPrivate::Look;

BCheckBox::BCheckBox(BRect frame, const char* name, const char* label, BMessage* message,
                     uint32 resizingMode, uint32 flags)
    : BControl(frame, name, label, message, resizingMode, flags)
{
    BPrivate::grow_to_height(this, Look(this).MarkHeight());
}

BCheckBox::BCheckBox(const char* name, const char* label, BMessage* message, uint32 flags)
    : BCheckBox(BRect(), name, label, message, B_FOLLOW_LEFT_TOP, flags)
{
    BCheckBox::ResizeToPreferred();
}

BCheckBox::BCheckBox(const char* label, BMessage* message) : BCheckBox(nullptr, label, message) {}

BCheckBox::BCheckBox(BMessage* data) : BControl(data)
{
    bool to_off;
    if (data != nullptr && data->FindBool("be:partial_to_off", &to_off) == B_OK)
        fPartialToOff = to_off;
}

BCheckBox::~BCheckBox() = default;

BArchivable* BCheckBox::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BCheckBox") ? new (std::nothrow) BCheckBox(data) : nullptr;
}

status_t BCheckBox::Archive(BMessage* data, bool deep) const
{
    const status_t status = BControl::Archive(data, deep);
    if (status != B_OK || !fPartialToOff)
        return status;
    return data->AddBool("be:partial_to_off", true);
}

void BCheckBox::Draw(BRect) { ControlPrivate::DrawMarked(this, &Look::DrawCheckBox); }

void BCheckBox::_TurnOver()
{
    bool on = Value() == B_CONTROL_OFF;
    if (Value() == B_CONTROL_PARTIALLY_ON)
        on = !fPartialToOff;
    SetValue(on ? B_CONTROL_ON : B_CONTROL_OFF);
    Invoke();
}

void BCheckBox::KeyDown(const char* bytes, int32 numBytes)
{
    const char key = ControlPrivate::Key(bytes, numBytes);
    if (key != B_ENTER && key != B_SPACE)
        BControl::KeyDown(bytes, numBytes);
    else if (IsEnabled())
        _TurnOver();
}

void BCheckBox::MouseDown(BPoint)
{
    if (ControlPrivate::Press(this))
        ControlPrivate::Follow(this);
}

void BCheckBox::MouseMoved(BPoint where, uint32, const BMessage*)
{
    ControlPrivate::Drag(this, where);
}

void BCheckBox::MouseUp(BPoint where)
{
    if (ControlPrivate::Release(this, where))
        _TurnOver();
}

void BCheckBox::GetPreferredSize(float* _width, float* _height)
{
    ControlPrivate::MarkedSize(this, _width, _height);
}

bool BCheckBox::IsPartialStateToOff() const { return fPartialToOff; }

void BCheckBox::SetPartialStateToOff(bool partialToOff) { fPartialToOff = partialToOff; }
