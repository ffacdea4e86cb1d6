// The base of controls: label, value, what the keyboard does with them, and their message.

#include <Control.h>

#include <Message.h>
#include <Messenger.h>
#include <PropertyInfo.h>
#include <TypeConstants.h>
#include <Window.h>

#include <cstring>

#include <app/looper/Scripting.h>
#include <interface/controls/ControlIcon.h>
#include <interface/controls/ControlPrivate.h>
#include <interface/controls/Invocation.h>

using BPrivate::ControlIcon;

static const property_info kProperties[] = {
    SCRIPT_VALUE("Enabled", B_BOOL_TYPE),
    SCRIPT_VALUE("Label", B_STRING_TYPE),
    SCRIPT_VALUE("Value", B_INT32_TYPE),
    {},
};

BControl::BControl(BRect frame, const char* name, const char* label, BMessage* message,
                   uint32 resizingMode, uint32 flags)
    : BView(frame, name, resizingMode, flags),
      BInvoker(message, nullptr, nullptr),
      fLabel(label),
      fHasLabel(label != nullptr)
{
}

BControl::BControl(const char* name, const char* label, BMessage* message, uint32 flags)
    : BControl(BRect(), name, label, message, B_FOLLOW_LEFT_TOP, flags)
{
}

BControl::~BControl() { delete fIcon; }

BControl::BControl(BMessage* data) : BView(data)
{
    if (data == nullptr)
        return;
    BMessage message;
    if (data->FindMessage("_msg", &message) == B_OK)
        SetMessage(new BMessage(message));
    const char* label;
    if (data->FindString("_label", &label) == B_OK) {
        fLabel = label;
        fHasLabel = true;
    }
    data->FindInt32("_val", &fValue);
    bool flag;
    if (data->FindBool("_disable", &flag) == B_OK)
        fEnabled = !flag;
    if (data->FindBool("be:wants_nav", &flag) == B_OK)
        fWantsNavigation = flag;
}

BArchivable* BControl::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BControl") ? new (std::nothrow) BControl(data) : nullptr;
}

status_t BControl::Archive(BMessage* data, bool deep) const
{
    status_t status = BView::Archive(data, deep);
    if (status == B_OK && Message() != nullptr)
        status = data->AddMessage("_msg", Message());
    if (status == B_OK && fHasLabel)
        status = data->AddString("_label", fLabel.String());
    if (status == B_OK && fValue != B_CONTROL_OFF)
        status = data->AddInt32("_val", fValue);
    if (status == B_OK && !fEnabled)
        status = data->AddBool("_disable", true);
    if (status == B_OK && fWantsNavigation)
        status = data->AddBool("be:wants_nav", true);
    return status;
}

// --- hooks

void BControl::WindowActivated(bool active)
{
    BView::WindowActivated(active);
    if (IsFocus())
        Invalidate();
}

void BControl::AttachedToWindow()
{
    BPrivate::adopt_ground(this);
    if (!Messenger().IsValid())
        SetTarget(Window());
}

void BControl::DetachedFromWindow() { fTracking = fPressed = false; }

void BControl::MakeFocus(bool focus)
{
    const bool before = IsFocus();
    fFocusChanging = before != focus;
    BView::MakeFocus(focus);
    fFocusChanging = false;
    if (IsFocus() != before)
        Invalidate();
}

void BControl::KeyDown(const char* bytes, int32 numBytes)
{
    const char key = BPrivate::ControlPrivate::Key(bytes, numBytes);
    if (key != B_ENTER && key != B_SPACE) {
        BView::KeyDown(bytes, numBytes);
        return;
    }
    if (!fEnabled)
        return;
    SetValue(fValue != B_CONTROL_OFF ? B_CONTROL_OFF : B_CONTROL_ON);
    Invoke();
}

// --- what it shows

void BControl::SetLabel(const char* string)
{
    if (fHasLabel == (string != nullptr) && fLabel == (string != nullptr ? string : ""))
        return;
    fLabel = string;
    fHasLabel = string != nullptr;
    Invalidate();
}

const char* BControl::Label() const { return fHasLabel ? fLabel.String() : nullptr; }

void BControl::SetValue(int32 value)
{
    if (value == fValue)
        return;
    fValue = value;
    Invalidate();
}

void BControl::SetValueNoUpdate(int32 value) { fValue = value; }
int32 BControl::Value() const { return fValue; }
bool BControl::IsEnabled() const { return fEnabled; }

void BControl::SetEnabled(bool enabled)
{
    if (enabled == fEnabled)
        return;
    fEnabled = enabled;
    if (enabled && fWantsNavigation) {
        SetFlags(Flags() | B_NAVIGABLE);
    } else if (!enabled) {
        fWantsNavigation = (Flags() & B_NAVIGABLE) != 0;
        SetFlags(Flags() & ~B_NAVIGABLE);
        fTracking = fPressed = false;
    }
    Invalidate();
}

status_t BControl::SetIcon(const BBitmap* bitmap, uint32 flags)
{
    return ControlIcon::Set(&fIcon, this, bitmap, flags);
}

status_t BControl::SetIconBitmap(const BBitmap* bitmap, uint32 which, uint32 flags)
{
    return ControlIcon::SetOne(&fIcon, this, bitmap, which, flags);
}

const BBitmap* BControl::IconBitmap(uint32 which) const
{
    return fIcon != nullptr ? fIcon->Bitmap(which) : nullptr;
}

bool BControl::IsFocusChanging() const { return fFocusChanging; }
bool BControl::IsTracking() const { return fTracking; }

void BControl::SetTracking(bool state)
{
    fTracking = state;
    fPressed = fPressed && state;
}

// --- messages

status_t BControl::Invoke(BMessage* message)
{
    bool is_notice = false;
    const uint32 kind = InvokeKind(&is_notice);
    if (message == nullptr && !is_notice)
        message = Message();
    return BPrivate::send_invocation(
        this, kind, message, [this](BMessage* event) { event->AddInt32("be:value", fValue); });
}

BHandler* BControl::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                     int32 what, const char* property)
{
    if (BPrivate::knows_property(kProperties, message, index, specifier, what, property))
        return this;
    return BView::ResolveSpecifier(message, index, specifier, what, property);
}

status_t BControl::GetSupportedSuites(BMessage* message)
{
    const status_t status = BPrivate::add_suite(message, "suite/vnd.Be-control", kProperties);
    return status == B_OK ? BView::GetSupportedSuites(message) : status;
}

static status_t get_property(const BControl& control, const char* property, BMessage* reply)
{
    if (strcmp(property, "Enabled") == 0)
        return reply->AddBool("result", control.IsEnabled());
    if (strcmp(property, "Label") == 0)
        return reply->AddString("result", control.Label() != nullptr ? control.Label() : "");
    return reply->AddInt32("result", control.Value());
}

static status_t set_property(BControl* control, const char* property, const BMessage& message)
{
    bool enabled;
    const char* label;
    int32 value;
    if (strcmp(property, "Enabled") == 0 && message.FindBool("data", &enabled) == B_OK)
        control->SetEnabled(enabled);
    else if (strcmp(property, "Label") == 0 && message.FindString("data", &label) == B_OK)
        control->SetLabel(label);
    else if (strcmp(property, "Value") == 0 && message.FindInt32("data", &value) == B_OK)
        control->SetValue(value);
    else
        return B_BAD_VALUE;
    return B_OK;
}

void BControl::MessageReceived(BMessage* message)
{
    const bool answered = BPrivate::answer_property(
        kProperties, message,
        [this](const char* name, BMessage* reply) { return get_property(*this, name, reply); },
        [this](const char* name, const BMessage& data) { return set_property(this, name, data); });
    if (!answered)
        BView::MessageReceived(message);
}

status_t BControl::Perform(perform_code d, void* arg) { return BView::Perform(d, arg); }
