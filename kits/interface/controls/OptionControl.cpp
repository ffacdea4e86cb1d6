// Choices among named numbers.

#include <OptionControl.h>

#include <Message.h>

#include <cstring>

BOptionControl::BOptionControl(BRect frame, const char* name, const char* label, BMessage* message,
                               uint32 resizeMask, uint32 flags)
    : BControl(frame, name, label, message, resizeMask, flags)
{
}

BOptionControl::BOptionControl(const char* name, const char* label, BMessage* message, uint32 flags)
    : BControl(name, label, message, flags)
{
}

BOptionControl::~BOptionControl() = default;

void BOptionControl::MessageReceived(BMessage* message)
{
    int32 value;
    if (message->what != B_OPTION_CONTROL_VALUE || message->FindInt32("be:value", &value) != B_OK) {
        BControl::MessageReceived(message);
        return;
    }
    SetValue(value);
    Invoke();
}

status_t BOptionControl::AddOption(const char* name, int32 value)
{
    return AddOptionAt(name, value, CountOptions());
}

status_t BOptionControl::SelectOptionFor(int32 value)
{
    int32 own;
    for (int32 i = 0; i < CountOptions(); i++) {
        if (GetOptionAt(i, nullptr, &own) && own == value) {
            SetValue(value);
            return B_OK;
        }
    }
    return B_ERROR;
}

status_t BOptionControl::SelectOptionFor(const char* name)
{
    const char* own = nullptr;
    int32 value;
    for (int32 i = 0; name != nullptr && i < CountOptions(); i++) {
        if (GetOptionAt(i, &own, &value) && own != nullptr && strcmp(own, name) == 0) {
            SetValue(value);
            return B_OK;
        }
    }
    return B_ERROR;
}

BMessage* BOptionControl::MakeValueMessage(int32 value)
{
    auto* message = new BMessage(B_OPTION_CONTROL_VALUE);
    message->AddInt32("be:value", value);
    return message;
}
