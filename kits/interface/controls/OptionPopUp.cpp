// Choices in a menu.

#include <OptionPopUp.h>

#include <MenuField.h>
#include <MenuItem.h>
#include <Message.h>
#include <PopUpMenu.h>

#include <interface/controls/ControlPrivate.h>
#include <interface/controls/Look.h>

BOptionPopUp::BOptionPopUp(BRect frame, const char* name, const char* label, BMessage* message,
                           uint32 resizeMask, uint32 flags)
    : BOptionPopUp(frame, name, label, message, false, resizeMask, flags)
{
}

BOptionPopUp::BOptionPopUp(BRect frame, const char* name, const char* label, BMessage* message,
                           bool fixed, uint32 resizeMask, uint32 flags)
    : BOptionControl(frame, name, label, message, resizeMask, flags)
{
    _Init(fixed);
}

BOptionPopUp::BOptionPopUp(const char* name, const char* label, BMessage* message, uint32 flags)
    : BOptionControl(BRect(), name, label, message, B_FOLLOW_LEFT_TOP, flags)
{
    _Init(false);
    BOptionPopUp::ResizeToPreferred();
}

BOptionPopUp::~BOptionPopUp() = default;

void BOptionPopUp::_Init(bool fixed)
{
    fField = new BMenuField(Bounds(), "_menu", Label(), new BPopUpMenu(""), fixed, B_FOLLOW_ALL);
    AddChild(fField);
    _PlaceLabel();
}

// The title begins behind the label.
void BOptionPopUp::_PlaceLabel()
{
    const BPrivate::Look look(this);
    const char* label = Label();
    const bool has_label = label != nullptr && label[0] != '\0';
    fField->SetDivider(has_label ? look.TextWidth(label) + look.LabelSpacing() : 0);
}

BMenuField* BOptionPopUp::MenuField() { return fField; }

static bool value_of(const BMenuItem* item, int32* value)
{
    return item != nullptr && item->Message() != nullptr &&
           item->Message()->FindInt32("be:value", value) == B_OK;
}

static bool read_option(const BMenuItem* item, const char** _name, int32* _value)
{
    int32 value;
    if (!value_of(item, &value))
        return false;
    if (_name != nullptr)
        *_name = item->Label();
    if (_value != nullptr)
        *_value = value;
    return true;
}

bool BOptionPopUp::GetOptionAt(int32 index, const char** _name, int32* _value)
{
    return read_option(fField->Menu()->ItemAt(index), _name, _value);
}

void BOptionPopUp::RemoveOptionAt(int32 index) { delete fField->Menu()->RemoveItem(index); }

int32 BOptionPopUp::CountOptions() const { return fField->Menu()->CountItems(); }

status_t BOptionPopUp::AddOptionAt(const char* name, int32 value, int32 index)
{
    BMenu* menu = fField->Menu();
    const int32 count = menu->CountItems();
    if (name == nullptr || index < 0 || index > count)
        return B_BAD_VALUE;
    auto* item = new BMenuItem(name, MakeValueMessage(value));
    if (!menu->AddItem(item, index)) {
        delete item;
        return B_NO_MEMORY;
    }
    item->SetTarget(this);
    if (count == 0)
        SetValue(value);
    return B_OK;
}

void BOptionPopUp::AllAttached() { fField->Menu()->SetTargetForItems(this); }

void BOptionPopUp::AttachedToWindow()
{
    BOptionControl::AttachedToWindow();
    fField->SetViewColor(ViewColor());
    fField->SetLowColor(LowColor());
}

void BOptionPopUp::MessageReceived(BMessage* message) { BOptionControl::MessageReceived(message); }

void BOptionPopUp::SetLabel(const char* text)
{
    BOptionControl::SetLabel(text);
    fField->SetLabel(text);
    _PlaceLabel();
}

void BOptionPopUp::SetValue(int32 value)
{
    BOptionControl::SetValue(value);
    BMenu* menu = fField->Menu();
    int32 own;
    if (value_of(menu->FindMarked(), &own) && own == value)
        return;  // which of several of the same value stays as it is
    for (int32 i = 0; i < menu->CountItems(); i++) {
        if (value_of(menu->ItemAt(i), &own) && own == value) {
            menu->ItemAt(i)->SetMarked(true);
            return;
        }
    }
}

void BOptionPopUp::SetEnabled(bool enabled)
{
    BOptionControl::SetEnabled(enabled);
    fField->SetEnabled(enabled);
}

void BOptionPopUp::GetPreferredSize(float* _width, float* _height)
{
    fField->GetPreferredSize(_width, _height);
}

void BOptionPopUp::ResizeToPreferred()
{
    float width, height;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

int32 BOptionPopUp::SelectedOption(const char** _name, int32* _value) const
{
    BMenuItem* marked = fField->Menu()->FindMarked();
    return read_option(marked, _name, _value) ? fField->Menu()->IndexOf(marked) : -1;
}
