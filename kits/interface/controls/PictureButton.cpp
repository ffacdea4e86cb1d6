// Buttons that are drawn with pictures.

#include <PictureButton.h>

#include <Message.h>
#include <Picture.h>

#include <interface/controls/ControlPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::ControlPrivate;
using BPrivate::Look;

enum { kEnabledOff, kEnabledOn, kDisabledOff, kDisabledOn, kPictures };
static const char* const kFields[kPictures] = {"_e_off", "_e_on", "_d_off", "_d_on"};

BPictureButton::BPictureButton(BRect frame, const char* name, BPicture* off, BPicture* on,
                               BMessage* message, uint32 behavior, uint32 resizingMode, uint32 flgs)
    : BControl(frame, name, "", message, resizingMode, flgs | B_FULL_UPDATE_ON_RESIZE),
      fBehavior(behavior)
{
    _Set(kEnabledOff, off);
    _Set(kEnabledOn, on);
}

BPictureButton::BPictureButton(BMessage* archive) : BControl(archive), fBehavior(B_ONE_STATE_BUTTON)
{
    if (archive == nullptr)
        return;
    if (archive->GetInt32("_behave", B_ONE_STATE_BUTTON) == B_TWO_STATE_BUTTON)
        fBehavior = B_TWO_STATE_BUTTON;
    for (int i = 0; i < kPictures; i++) {
        BMessage picture;
        if (archive->FindMessage(kFields[i], &picture) == B_OK)
            fPictures[i] = std::make_unique<BPicture>(&picture);
    }
}

BPictureButton::~BPictureButton() = default;

BArchivable* BPictureButton::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BPictureButton") ? new (std::nothrow)
                                                                   BPictureButton(archive)
                                                             : nullptr;
}

status_t BPictureButton::Archive(BMessage* archive, bool deep) const
{
    status_t status = BControl::Archive(archive, deep);
    if (status == B_OK)
        status = archive->AddInt32("_behave", static_cast<int32>(fBehavior));
    for (int i = 0; deep && status == B_OK && i < kPictures; i++) {
        BMessage picture;
        if (fPictures[i] != nullptr && fPictures[i]->Archive(&picture, true) == B_OK)
            status = archive->AddMessage(kFields[i], &picture);
    }
    return status;
}

void BPictureButton::_Set(int which, BPicture* picture)
{
    if (picture == nullptr || picture != fPictures[which].get())
        fPictures[which] = picture != nullptr ? std::make_unique<BPicture>(*picture) : nullptr;
    Invalidate();
}

void BPictureButton::SetEnabledOn(BPicture* picture) { _Set(kEnabledOn, picture); }
void BPictureButton::SetEnabledOff(BPicture* picture) { _Set(kEnabledOff, picture); }
void BPictureButton::SetDisabledOn(BPicture* picture) { _Set(kDisabledOn, picture); }
void BPictureButton::SetDisabledOff(BPicture* picture) { _Set(kDisabledOff, picture); }
BPicture* BPictureButton::EnabledOn() const { return fPictures[kEnabledOn].get(); }
BPicture* BPictureButton::EnabledOff() const { return fPictures[kEnabledOff].get(); }
BPicture* BPictureButton::DisabledOn() const { return fPictures[kDisabledOn].get(); }
BPicture* BPictureButton::DisabledOff() const { return fPictures[kDisabledOff].get(); }

void BPictureButton::SetBehavior(uint32 behavior) { fBehavior = behavior; }
uint32 BPictureButton::Behavior() const { return fBehavior; }

void BPictureButton::Draw(BRect)
{
    const uint32 state = ControlPrivate::State(this);
    const bool on = Value() == B_CONTROL_ON;
    const int which =
        IsEnabled() ? (on ? kEnabledOn : kEnabledOff) : (on ? kDisabledOn : kDisabledOff);
    if (fPictures[which] != nullptr)
        DrawPicture(fPictures[which].get());
    if ((state & Look::kFocused) != 0)
        Look(this).DrawFocusRing(Bounds());
}

void BPictureButton::_Toggle()
{
    if (fBehavior == B_TWO_STATE_BUTTON) {
        SetValue(Value() != B_CONTROL_ON ? B_CONTROL_ON : B_CONTROL_OFF);
        Invoke();
        return;
    }
    SetValue(B_CONTROL_ON);
    Invoke();
    SetValue(B_CONTROL_OFF);
}

void BPictureButton::KeyDown(const char* bytes, int32 numBytes)
{
    const char key = ControlPrivate::Key(bytes, numBytes);
    if (key != B_ENTER && key != B_SPACE)
        BControl::KeyDown(bytes, numBytes);
    else if (IsEnabled())
        _Toggle();
}

void BPictureButton::MouseDown(BPoint)
{
    if (!ControlPrivate::Press(this))
        return;
    if (fBehavior == B_ONE_STATE_BUTTON)
        SetValue(B_CONTROL_ON);
    ControlPrivate::Follow(this);
}

void BPictureButton::MouseMoved(BPoint where, uint32, const BMessage*)
{
    if (ControlPrivate::Drag(this, where) && fBehavior == B_ONE_STATE_BUTTON)
        SetValue(ControlPrivate::IsPressed(this) ? B_CONTROL_ON : B_CONTROL_OFF);
}

void BPictureButton::MouseUp(BPoint where)
{
    if (ControlPrivate::Release(this, where))
        _Toggle();
    else if (fBehavior == B_ONE_STATE_BUTTON)
        SetValue(B_CONTROL_OFF);
}
