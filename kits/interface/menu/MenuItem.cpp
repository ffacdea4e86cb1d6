// Items of menus: what they say, and how they are drawn.

#include <MenuItem.h>

#include <Font.h>
#include <Menu.h>
#include <Message.h>
#include <Window.h>

#include <algorithm>
#include <math.h>
#include <string.h>
#include <vector>

#include <interface/controls/Look.h>
#include <interface/menu/MenuPrivate.h>
#include <interface/menu/MenuWindow.h>
#include <interface/view/ViewPrivate.h>

using BPrivate::Look;
using BPrivate::MenuPrivate;
using BPrivate::ViewLock;

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

// The label has another size, or the item another look. The items of an open submenu are guarded by
// the lock of its window as well.
void BMenuItem::_Changed()
{
    if (fSuper != nullptr)
        fSuper->_ItemsChanged();
}

void BMenuItem::_Redraw()
{
    BPrivate::OpenMenuLock open(fSuper);
    if (fSuper != nullptr && fSuper->Window() != nullptr)
        fSuper->Invalidate(Frame());
}

void BMenuItem::SetLabel(const char* name)
{
    std::string label(name != nullptr ? name : "");
    if (fSuper == nullptr) {
        fLabel = std::move(label);
        return;
    }
    BPrivate::OpenMenuLock open(fSuper);
    ViewLock lock(fSuper);
    fLabel = std::move(label);
    _Changed();
}

void BMenuItem::SetEnabled(bool enable)
{
    if (fEnabled.exchange(enable) == enable)
        return;
    if (fSubmenu != nullptr)
        fSubmenu->SetEnabled(enable);
    _Redraw();
}

void BMenuItem::SetMarked(bool mark)
{
    const bool changed = fMarked.exchange(mark) != mark;
    if (fSuper == nullptr)
        return;
    if (mark)
        fSuper->_ItemMarked(this);
    if (changed)
        _Redraw();
}

void BMenuItem::SetTrigger(char trigger) { fTrigger = trigger; }

void BMenuItem::SetShortcut(char shortcut, uint32 modifiers)
{
    fShortcut = shortcut;
    fModifiers = shortcut != 0 ? modifiers | B_COMMAND_KEY : 0;
    _Changed();
}

const char* BMenuItem::Label() const { return fLabel.c_str(); }
bool BMenuItem::IsMarked() const { return fMarked; }
char BMenuItem::Trigger() const { return fTrigger; }
BMenu* BMenuItem::Submenu() const { return fSubmenu; }
BMenu* BMenuItem::Menu() const { return fSuper; }

BRect BMenuItem::Frame() const
{
    if (fSuper != nullptr && !fSuper->fLaidOut)
        fSuper->_LayoutItems();
    return fBounds;
}
bool BMenuItem::IsSelected() const { return fSelected; }

bool BMenuItem::IsEnabled() const { return fEnabled && (fSuper == nullptr || fSuper->IsEnabled()); }

char BMenuItem::Shortcut(uint32* _modifiers) const
{
    if (_modifiers != nullptr)
        *_modifiers = fModifiers;
    return fShortcut;
}

// --- drawing

void BMenuItem::GetContentSize(float* _width, float* _height)
{
    BFont font;
    if (fSuper != nullptr)
        fSuper->GetFont(&font);
    const Look look(font);
    float width = look.TextWidth(Label());
    if (fShortcut != 0)
        width += font.Size() + look.TextWidth(MenuPrivate::ShortcutText(this).c_str());
    if (_width != nullptr)
        *_width = width;
    if (_height != nullptr)
        *_height = look.LineHeight();
}

void BMenuItem::TruncateLabel(float maxWidth, char* newLabel)
{
    if (newLabel == nullptr)
        return;
    BFont font;
    if (fSuper != nullptr)
        fSuper->GetFont(&font);
    BString label(Label());
    font.TruncateString(&label, B_TRUNCATE_MIDDLE, maxWidth);
    strcpy(newLabel, label.String());
}

// In the middle of a line that other items made higher.
BPoint BMenuItem::ContentLocation() const
{
    if (fSuper == nullptr)
        return fBounds.LeftTop();
    const BRect& margins = fSuper->fMargins;
    const float room = fBounds.Height() + 1 - margins.top - margins.bottom;
    const float spare = std::max(0.0f, floorf((room - fContentHeight) / 2));
    return fBounds.LeftTop() + BPoint(margins.left, margins.top + spare);
}

// The room for the label between the margins, without that of the shortcut.
float BMenuItem::_LabelRoom(const Look& look) const
{
    float room = fBounds.Width() + 1 - fSuper->fMargins.left - fSuper->fMargins.right;
    if (fShortcut != 0)
        room -= look.Size() + look.TextWidth(MenuPrivate::ShortcutText(this).c_str());
    return room;
}

void BMenuItem::DrawContent()
{
    BMenu* menu = Menu();
    if (menu == nullptr)
        return;
    const Look look(menu);
    const BPoint where = ContentLocation();
    const BPoint baseline(where.x, where.y + look.Ascent());
    const float room = _LabelRoom(look);
    if (look.TextWidth(Label()) <= room) {
        look.DrawText(Label(), baseline, 0);
        _DrawTrigger(look, baseline, Label());
        return;
    }
    std::vector<char> shorter(fLabel.size() + sizeof("\u2026"));
    TruncateLabel(room, shorter.data());
    look.DrawText(shorter.data(), baseline, 0);
}

void BMenuItem::_DrawTrigger(const Look& look, BPoint baseline, const char* label) const
{
    if (!fSuper->fShowsTriggers || fTriggerAt < 0)
        return;
    const std::string text(label);
    const float left = look.TextWidth(text.substr(0, fTriggerAt).c_str());
    const float width = look.TextWidth(text.substr(fTriggerAt, 1).c_str());
    const float top = baseline.y + 1 + look.Line();
    look.Fill(BRect(baseline.x + left, top, baseline.x + left + width - 1, top + look.Line() - 1),
              fSuper->HighColor());
}

void BMenuItem::Draw()
{
    BMenu* menu = Menu();
    if (menu == nullptr)
        return;
    const rgb_color ground = BPrivate::menu_ground();
    const uint32 state = MenuPrivate::State(IsEnabled(), fSelected);
    Look(menu).DrawMenuItem(fBounds, ground, state);
    const rgb_color text = Look(menu).MenuText(ground, state);
    menu->SetHighColor(text);
    menu->MovePenTo(ContentLocation());
    DrawContent();
    // What the item draws itself may have left any colour.
    menu->SetDrawingMode(B_OP_COPY);
    menu->SetHighColor(text);
    const Look look(menu);
    const BRect& margins = menu->fMargins;
    const BRect frame = fBounds;
    if (fMarked)
        look.DrawMenuMark(BRect(frame.left, frame.top, frame.left + margins.left - 1, frame.bottom),
                          menu->IsRadioMode());
    const float right = frame.right - margins.right;
    if (fShortcut != 0) {
        const std::string keys = MenuPrivate::ShortcutText(this);
        menu->SetHighColor(text);
        look.DrawText(
            keys.c_str(),
            BPoint(right + 1 - look.TextWidth(keys.c_str()), ContentLocation().y + look.Ascent()),
            0);
    }
    if (fSubmenu != nullptr && menu->Layout() != B_ITEMS_IN_ROW) {
        menu->SetHighColor(text);
        look.DrawSubmenuArrow(
            BRect(frame.right - margins.right + 1, frame.top, frame.right, frame.bottom));
    }
}

void BMenuItem::Highlight(bool) { _Redraw(); }

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
