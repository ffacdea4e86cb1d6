// Items of menus: what they say, and how they are drawn.

#include <MenuItem.h>

#include <Font.h>
#include <Menu.h>
#include <Message.h>
#include <Window.h>

#include <math.h>
#include <string.h>

static const rgb_color kText = {0, 0, 0, 255};
static const float kSubmenuArrow = 10;

BMenuItem::BMenuItem(const char* label, BMessage* message, char shortcut, uint32 modifiers)
    : BInvoker(message, nullptr, nullptr),
      fLabel(label != nullptr ? label : ""),
      fModifiers(shortcut != 0 ? modifiers | B_COMMAND_KEY : 0),
      fShortcut(shortcut)
{
}

BMenuItem::BMenuItem(BMenu* menu, BMessage* message)
    : BInvoker(message, nullptr, nullptr), fSubmenu(menu)
{
    if (menu != nullptr) {
        fLabel = menu->Name() != nullptr ? menu->Name() : "";
        menu->fSuperitem = this;
    }
}

BMenuItem::BMenuItem(BMessage* data) : BArchivable(data)
{
    const char* label;
    if (data->FindString("_label", &label) == B_OK)
        fLabel = label;
    bool flag;
    if (data->FindBool("_disable", &flag) == B_OK)
        fEnabled = !flag;
    if (data->FindBool("_marked", &flag) == B_OK)
        fMarked = flag;
    int32 number;
    if (data->FindInt32("_shortcut", &number) == B_OK)
        fShortcut = static_cast<char>(number);
    if (data->FindInt32("_modifiers", &number) == B_OK)
        fModifiers = number;
    BMessage own;
    if (data->FindMessage("_msg", &own) == B_OK)
        SetMessage(new BMessage(own));
    if (data->FindMessage("_submenu", &own) == B_OK) {
        fSubmenu = dynamic_cast<BMenu*>(BMenu::Instantiate(&own));
        if (fSubmenu != nullptr)
            fSubmenu->fSuperitem = this;
    }
}

BMenuItem::~BMenuItem()
{
    if (fSuper != nullptr)
        fSuper->RemoveItem(this);
    delete fSubmenu;
}

BArchivable* BMenuItem::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BMenuItem") ? new BMenuItem(archive) : nullptr;
}

status_t BMenuItem::Archive(BMessage* archive, bool deep) const
{
    status_t status = BArchivable::Archive(archive, deep);
    if (status == B_OK)
        status = archive->AddString("_label", Label());
    if (status == B_OK && !fEnabled)
        status = archive->AddBool("_disable", true);
    if (status == B_OK && fMarked)
        status = archive->AddBool("_marked", true);
    if (status == B_OK && fShortcut != 0) {
        archive->AddInt32("_shortcut", fShortcut);
        status = archive->AddInt32("_modifiers", static_cast<int32>(fModifiers));
    }
    if (status == B_OK && Message() != nullptr)
        status = archive->AddMessage("_msg", Message());
    if (status == B_OK && deep && fSubmenu != nullptr) {
        BMessage submenu;
        if (fSubmenu->Archive(&submenu, true) == B_OK)
            status = archive->AddMessage("_submenu", &submenu);
    }
    return status;
}

void BMenuItem::SetLabel(const char* name)
{
    fLabel = name != nullptr ? name : "";
    if (fSuper != nullptr)
        fSuper->_ItemsChanged();
}

void BMenuItem::SetEnabled(bool enable)
{
    if (fEnabled == enable)
        return;
    fEnabled = enable;
    if (fSubmenu != nullptr)
        fSubmenu->SetEnabled(enable);
    if (fSuper != nullptr)
        fSuper->Invalidate(fBounds);
}

void BMenuItem::SetMarked(bool mark)
{
    fMarked = mark;
    if (fSuper == nullptr)
        return;
    if (mark)
        fSuper->_ItemMarked(this);
    fSuper->Invalidate(fBounds);
}

void BMenuItem::SetTrigger(char trigger) { fTrigger = trigger; }

void BMenuItem::SetShortcut(char shortcut, uint32 modifiers)
{
    fShortcut = shortcut;
    fModifiers = shortcut != 0 ? modifiers | B_COMMAND_KEY : 0;
    if (fSuper != nullptr)
        fSuper->_ItemsChanged();
}

const char* BMenuItem::Label() const { return fLabel.c_str(); }
bool BMenuItem::IsMarked() const { return fMarked; }
char BMenuItem::Trigger() const { return fTrigger; }
BMenu* BMenuItem::Submenu() const { return fSubmenu; }
BMenu* BMenuItem::Menu() const { return fSuper; }
BRect BMenuItem::Frame() const { return fBounds; }
bool BMenuItem::IsSelected() const { return fSelected; }

bool BMenuItem::IsEnabled() const { return fEnabled && (fSuper == nullptr || fSuper->IsEnabled()); }

char BMenuItem::Shortcut(uint32* _modifiers) const
{
    if (_modifiers != nullptr)
        *_modifiers = fModifiers;
    return fShortcut;
}

std::string BMenuItem::_ShortcutText() const
{
    if (fShortcut == 0)
        return std::string();
    std::string text;
    if ((fModifiers & B_SHIFT_KEY) != 0)
        text += "Shift+";
    if ((fModifiers & B_CONTROL_KEY) != 0)
        text += "Ctrl+";
    if ((fModifiers & B_OPTION_KEY) != 0)
        text += "Opt+";
    return text + "Alt+" + fShortcut;
}

void BMenuItem::GetContentSize(float* _width, float* _height)
{
    BFont font;
    if (fSuper != nullptr)
        fSuper->GetFont(&font);
    font_height height;
    font.GetHeight(&height);
    float width = ceilf(font.StringWidth(Label()));
    if (fShortcut != 0)
        width += font.Size() + ceilf(font.StringWidth(_ShortcutText().c_str()));
    if (fSubmenu != nullptr)
        width += kSubmenuArrow;
    if (_width != nullptr)
        *_width = width;
    if (_height != nullptr)
        *_height = ceilf(height.ascent + height.descent + height.leading);
}

void BMenuItem::TruncateLabel(float maxWidth, char* newLabel)
{
    BFont font;
    if (fSuper != nullptr)
        fSuper->GetFont(&font);
    BString label(Label());
    font.TruncateString(&label, B_TRUNCATE_MIDDLE, maxWidth);
    strcpy(newLabel, label.String());
}

BPoint BMenuItem::ContentLocation() const
{
    BPoint where = fBounds.LeftTop();
    if (fSuper != nullptr)
        where += BPoint(fSuper->fMargins.left, fSuper->fMargins.top);
    return where;
}

void BMenuItem::DrawContent()
{
    BMenu* menu = Menu();
    if (menu == nullptr)
        return;
    font_height height;
    menu->GetFontHeight(&height);
    const BPoint where = ContentLocation();
    menu->MovePenTo(where.x, where.y + ceilf(height.ascent));
    menu->DrawString(Label());
}

void BMenuItem::_DrawMark(BMenu* menu) const
{
    const float middle = floorf((fBounds.top + fBounds.bottom) / 2);
    const float left = fBounds.left + 3;
    for (float row = 0; row < 2; row++) {  // a tick, two pixels thick
        menu->StrokeLine(BPoint(left, middle + row), BPoint(left + 2, middle + 2 + row));
        menu->StrokeLine(BPoint(left + 2, middle + 2 + row), BPoint(left + 7, middle - 3 + row));
    }
}

void BMenuItem::_DrawShortcut(BMenu* menu) const
{
    const std::string text = _ShortcutText();
    font_height height;
    menu->GetFontHeight(&height);
    const float width = menu->StringWidth(text.c_str());
    menu->MovePenTo(fBounds.right - menu->fMargins.right / 2 - width,
                    ContentLocation().y + ceilf(height.ascent));
    menu->DrawString(text.c_str());
}

void BMenuItem::_DrawSubmenuArrow(BMenu* menu) const
{
    const float middle = floorf((fBounds.top + fBounds.bottom) / 2);
    const float right = fBounds.right - 5;
    menu->FillTriangle(BPoint(right - 4, middle - 4), BPoint(right, middle),
                       BPoint(right - 4, middle + 4));
}

void BMenuItem::Draw()
{
    BMenu* menu = Menu();
    if (menu == nullptr)
        return;
    const rgb_color background =
        ui_color(fSelected ? B_MENU_SELECTED_BACKGROUND_COLOR : B_MENU_BACKGROUND_COLOR);
    menu->SetLowColor(background);
    menu->FillRect(fBounds, B_SOLID_LOW);
    menu->SetHighColor(IsEnabled() ? kText : tint_color(background, B_DISABLED_LABEL_TINT));
    DrawContent();
    if (fMarked)
        _DrawMark(menu);
    if (fShortcut != 0)
        _DrawShortcut(menu);
    if (fSubmenu != nullptr)
        _DrawSubmenuArrow(menu);
}

void BMenuItem::Highlight(bool)
{
    if (fSuper != nullptr)
        fSuper->Invalidate(fBounds);
}

status_t BMenuItem::Invoke(BMessage* message)
{
    if (!IsEnabled())
        return B_ERROR;
    if (fSuper != nullptr && fSuper->IsRadioMode())
        SetMarked(true);
    const BMessage* original = message != nullptr ? message : Message();
    if (original == nullptr)
        return B_BAD_VALUE;
    BMessage chosen(*original);
    chosen.AddInt64("when", system_time());
    chosen.AddPointer("source", this);
    chosen.AddInt32("index", fSuper != nullptr ? fSuper->IndexOf(this) : -1);
    return BInvoker::Invoke(&chosen);
}
