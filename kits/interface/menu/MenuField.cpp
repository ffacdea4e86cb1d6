// A label beside a title that opens a menu.

#include <MenuField.h>

#include <MenuBar.h>
#include <MenuItem.h>
#include <Message.h>
#include <Window.h>

#include <algorithm>
#include <math.h>

#include <interface/controls/Look.h>
#include <interface/menu/MenuPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::Look;

static const float kMargin = 2;  // around the title

// The title: a bar of one item, which is not the one that the window's keys enter.
class BMenuField::Bar : public BMenuBar {
public:
    explicit Bar(bool fixedSize)
        : BMenuBar(BRect(0, 0, 10, 10), "_mc_mb_", B_FOLLOW_LEFT | B_FOLLOW_TOP, B_ITEMS_IN_ROW,
                   !fixedSize)
    {
        MakeRoom();
    }
    // Beside the title for the marker, as the font has it.
    void MakeRoom()
    {
        BFont font;
        GetFont(&font);
        const Look look(font);
        float left, top, right, bottom;
        GetItemMargins(&left, &top, &right, &bottom);
        SetItemMargins(look.LabelSpacing(), top, look.LabelSpacing() + look.Scaled(13), bottom);
    }

    void AttachedToWindow() override
    {
        BMenuBar* const key_bar = Window()->KeyMenuBar();
        BMenuBar::AttachedToWindow();
        Window()->SetKeyMenuBar(key_bar);
    }
    void Draw(BRect) override
    {
        BMenuItem* const title = ItemAt(0);
        if (title == nullptr)
            return;
        const bool open = BPrivate::MenuPrivate::Selected(this) != nullptr;
        const uint32 state = BPrivate::MenuPrivate::State(IsEnabled(), open);
        SetHighColor(Look(this).MenuText(BPrivate::menu_ground(), state));
        Look(this).DrawMenuTitle(Bounds(), fMarker, state);
        BPrivate::MenuPrivate::DrawTitle(title, _TitleRoom());
    }
    void ShowMarker(bool shown)
    {
        fMarker = shown;
        Invalidate();
    }
    void Open(bool byKey, BRect area)
    {
        if (byKey)
            StartMenuBar(0, true, true);
        else
            StartMenuBar(0, false, true, &area);
    }

private:
    BRect _TitleRoom() const
    {
        float left, top, right, bottom;
        GetItemMargins(&left, &top, &right, &bottom);
        return BRect(left, 0, Bounds().right - right, Bounds().bottom);
    }

    bool fMarker = true;
};

BMenuField::BMenuField(BRect frame, const char* name, const char* label, BMenu* menu,
                       uint32 resizingMode, uint32 flags)
    : BMenuField(frame, name, label, menu, false, resizingMode, flags)
{
}

BMenuField::BMenuField(BRect frame, const char* name, const char* label, BMenu* menu,
                       bool fixed_size, uint32 resizingMode, uint32 flags)
    : BView(frame, name, resizingMode, flags | B_FRAME_EVENTS)
{
    _Init(label, menu, fixed_size);
}

BMenuField::BMenuField(const char* name, const char* label, BMenu* menu, uint32 flags)
    : BMenuField(name, label, menu, false, flags)
{
}

BMenuField::BMenuField(const char* name, const char* label, BMenu* menu, bool fixed_size,
                       uint32 flags)
    : BView(BRect(), name, B_FOLLOW_NONE, flags | B_FRAME_EVENTS)
{
    _Init(label, menu, fixed_size);
}

BMenuField::BMenuField(const char* label, BMenu* menu, uint32 flags)
    : BMenuField(nullptr, label, menu, false, flags)
{
}

BMenuField::BMenuField(BMessage* data) : BView(data)
{
    const char* label = nullptr;
    data->FindString("_label", &label);
    BMessage archive;
    BMenu* menu = nullptr;
    if (data->FindMessage("_menu", &archive) == B_OK)
        menu = dynamic_cast<BMenu*>(instantiate_object(&archive));
    // The bar came with the other children.
    while (BView* child = ChildAt(0)) {
        child->RemoveSelf();
        delete child;
    }
    bool fixed = false, disabled = false;
    data->FindBool("be:fixeds", &fixed);
    _Init(label, menu, fixed);
    float divider;
    if (data->FindFloat("_divide", &divider) == B_OK)
        SetDivider(divider);
    int32 align;
    if (data->FindInt32("_align", &align) == B_OK)
        SetAlignment(BPrivate::enum_up_to(align, B_ALIGN_CENTER, B_ALIGN_LEFT));
    if (data->FindBool("_disable", &disabled) == B_OK)
        SetEnabled(!disabled);
}

void BMenuField::_Init(const char* label, BMenu* menu, bool fixedSize)
{
    fLabel = label != nullptr ? label : "";
    fMenu = menu;
    fFixedSize = fixedSize;
    fDivider = label != nullptr ? floorf(Frame().Width() / 2) : 0;
    fBar = new Bar(fixedSize);
    fBar->MoveTo(fDivider + kMargin, kMargin);
    AddChild(fBar);
    if (menu == nullptr || !fBar->AddItem(menu))
        return;
    if (menu->IsLabelFromMarked()) {
        BMenuItem* const marked = menu->FindMarked();
        fBar->ItemAt(0)->SetLabel(marked != nullptr ? marked->Label() : menu->Name());
    }
}

BMenuField::~BMenuField() = default;

BArchivable* BMenuField::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BMenuField") ? new BMenuField(archive) : nullptr;
}

status_t BMenuField::Archive(BMessage* archive, bool deep) const
{
    status_t status = BView::Archive(archive, false);
    if (status == B_OK)
        status = archive->AddString("_label", Label());
    if (status == B_OK && !fEnabled)
        status = archive->AddBool("_disable", true);
    if (status == B_OK)
        status = archive->AddInt32("_align", fAlignment);
    if (status == B_OK)
        status = archive->AddFloat("_divide", fDivider);
    if (status == B_OK && fFixedSize)
        status = archive->AddBool("be:fixeds", true);
    BMessage menu;
    if (status == B_OK && deep && fMenu != nullptr && fMenu->Archive(&menu, true) == B_OK)
        status = archive->AddMessage("_menu", &menu);
    return status;
}

status_t BMenuField::AllArchived(BMessage* into) const { return BView::AllArchived(into); }
status_t BMenuField::AllUnarchived(const BMessage* from) { return BView::AllUnarchived(from); }

// --- layout

void BMenuField::_PlaceBar()
{
    fBar->MakeRoom();
    fBar->MoveTo(fDivider + kMargin, kMargin);
    if (fFixedSize)
        fBar->ResizeTo(std::max(0.0f, Bounds().Width() - fDivider - 2 * kMargin),
                       fBar->PreferredSize().height);
    else
        fBar->ResizeToPreferred();
    Invalidate();
}

// As high as the title.
void BMenuField::_FitBar()
{
    _PlaceBar();
    ResizeTo(Bounds().Width(), fBar->Bounds().Height() + 2 * kMargin);
}

void BMenuField::AttachedToWindow()
{
    BView::AttachedToWindow();
    AdoptParentColors();
}

void BMenuField::AllAttached()
{
    BView::AllAttached();
    _FitBar();
}

void BMenuField::GetPreferredSize(float* width, float* height)
{
    BFont font;
    GetFont(&font);
    const Look look(font);
    const BSize bar = fBar->PreferredSize();
    const float label = fLabel.empty() ? 0 : look.TextWidth(Label()) + look.LabelSpacing();
    if (width != nullptr)
        *width = (fDivider > 0 ? fDivider : label) + bar.width + 2 * kMargin;
    if (height != nullptr)
        *height = bar.height + 2 * kMargin;
}

void BMenuField::ResizeToPreferred()
{
    float width, height;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
    _PlaceBar();
}

BSize BMenuField::MinSize() { return PreferredSize(); }
BSize BMenuField::MaxSize() { return BSize(B_SIZE_UNLIMITED, PreferredSize().height); }

BSize BMenuField::PreferredSize()
{
    BSize size;
    GetPreferredSize(&size.width, &size.height);
    return size;
}

void BMenuField::FrameMoved(BPoint where) { BView::FrameMoved(where); }

void BMenuField::FrameResized(float width, float height)
{
    BView::FrameResized(width, height);
    if (fFixedSize)
        _PlaceBar();
    Invalidate();
}

void BMenuField::LayoutInvalidated(bool descendants) { BView::LayoutInvalidated(descendants); }
void BMenuField::DoLayout() { BView::DoLayout(); }

void BMenuField::SetDivider(float position)
{
    fDivider = roundf(position);
    if (Window() != nullptr)
        _FitBar();  // its font may be another by now
    else
        _PlaceBar();
}

float BMenuField::Divider() const { return fDivider; }

// --- what it shows

void BMenuField::Draw(BRect)
{
    const uint32 state = BPrivate::MenuPrivate::State(fEnabled, false);
    SetHighColor(ui_color(B_PANEL_TEXT_COLOR));
    const Look look(this);
    const float room = fDivider > 0 ? fDivider : 0;
    if (room > 0)
        look.DrawLabel(Label(), BRect(0, 0, room - 1, Bounds().bottom), fAlignment, state);
    if (IsFocus() && Window() != nullptr && Window()->IsActive())
        look.DrawFocusRing(fBar->Frame().InsetByCopy(-kMargin, -kMargin));
}

void BMenuField::SetLabel(const char* label)
{
    fLabel = label != nullptr ? label : "";
    Invalidate();
}

const char* BMenuField::Label() const { return fLabel.c_str(); }

void BMenuField::SetAlignment(alignment label)
{
    fAlignment = label;
    Invalidate();
}

alignment BMenuField::Alignment() const { return fAlignment; }

void BMenuField::SetEnabled(bool on)
{
    fEnabled = on;
    fBar->SetEnabled(on);
    Invalidate();
}

bool BMenuField::IsEnabled() const { return fEnabled; }

BMenu* BMenuField::Menu() const { return fMenu; }
BMenuBar* BMenuField::MenuBar() const { return fBar; }
BMenuItem* BMenuField::MenuItem() const { return fBar->ItemAt(0); }

BLayoutItem* BMenuField::CreateLabelLayoutItem() { return nullptr; }
BLayoutItem* BMenuField::CreateMenuBarLayoutItem() { return nullptr; }

void BMenuField::ShowPopUpMarker() { fBar->ShowMarker(true); }
void BMenuField::HidePopUpMarker() { fBar->ShowMarker(false); }

// --- input

void BMenuField::_Open(bool byKey)
{
    if (fEnabled)
        fBar->Open(byKey, ConvertToScreen(Bounds()));
}

void BMenuField::MouseDown(BPoint)
{
    if (fEnabled && (Flags() & B_NAVIGABLE) != 0)
        MakeFocus(true);
    _Open(false);
}

void BMenuField::KeyDown(const char* bytes, int32 numBytes)
{
    const bool opens = numBytes == 1 && (bytes[0] == B_SPACE || bytes[0] == B_RIGHT_ARROW ||
                                         bytes[0] == B_DOWN_ARROW);
    if (opens)
        _Open(true);
    else
        BView::KeyDown(bytes, numBytes);
}

void BMenuField::MakeFocus(bool focused)
{
    const bool changed = focused != IsFocus();
    BView::MakeFocus(focused);
    if (changed)
        Invalidate();
}

void BMenuField::WindowActivated(bool active)
{
    BView::WindowActivated(active);
    if (IsFocus())
        Invalidate();
}

void BMenuField::MessageReceived(BMessage* message) { BView::MessageReceived(message); }
void BMenuField::MouseUp(BPoint where) { BView::MouseUp(where); }
void BMenuField::DetachedFromWindow() { BView::DetachedFromWindow(); }
void BMenuField::AllDetached() { BView::AllDetached(); }
status_t BMenuField::Perform(perform_code code, void* arg) { return BView::Perform(code, arg); }
status_t BMenuField::GetSupportedSuites(BMessage* data) { return BView::GetSupportedSuites(data); }

void BMenuField::MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage)
{
    BView::MouseMoved(where, transit, dragMessage);
}

BHandler* BMenuField::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property)
{
    return BView::ResolveSpecifier(message, index, specifier, form, property);
}
