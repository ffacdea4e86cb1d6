// Menus: their items, layout and drawing.

#include <Menu.h>

#include <MenuItem.h>
#include <Message.h>
#include <SeparatorItem.h>
#include <Window.h>

#include <algorithm>
#include <math.h>
#include <string.h>

static const float kItemGap = 1;  // pixels between two items
static const float kBorder = 1;   // around all of them

static menu_info* menu_settings()
{
    static menu_info* const settings = [] {
        auto* info = new menu_info();
        info->font_size = be_plain_font->Size();
        be_plain_font->GetFamilyAndStyle(&info->f_family, &info->f_style);
        info->background_color = ui_color(B_MENU_BACKGROUND_COLOR);
        info->click_to_open = true;
        return info;
    }();
    return settings;
}

status_t get_menu_info(menu_info* info)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    *info = *menu_settings();
    return B_OK;
}

status_t set_menu_info(menu_info* info)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    *menu_settings() = *info;
    return B_OK;
}

BMenu::BMenu(const char* name, menu_layout layout)
    : BView(BRect(0, 0, 0, 0), name, B_FOLLOW_NONE, B_WILL_DRAW), fLayout(layout)
{
    _InitMenu();
}

BMenu::BMenu(const char* name, float width, float height)
    : BView(BRect(0, 0, width, height), name, B_FOLLOW_NONE, B_WILL_DRAW),
      fLayout(B_ITEMS_IN_MATRIX),
      fResizeToFit(false)
{
    _InitMenu();
}

BMenu::BMenu(BRect frame, const char* name, uint32 resizeMask, uint32 flags, menu_layout layout,
             bool resizeToFit)
    : BView(frame, name, resizeMask, flags), fLayout(layout), fResizeToFit(resizeToFit)
{
    _InitMenu();
}

BMenu::BMenu(BMessage* archive) : BView(archive)
{
    _InitMenu();
    int32 layout;
    if (archive->FindInt32("_layout", &layout) == B_OK)
        fLayout = static_cast<menu_layout>(layout);
    archive->FindBool("_radio", &fRadioMode);
    archive->FindBool("_marked_label", &fLabelFromMarked);
    bool disabled;
    if (archive->FindBool("_disable", &disabled) == B_OK)
        fEnabled = !disabled;
    BMessage item;
    for (int32 i = 0; archive->FindMessage("_items", i, &item) == B_OK; i++) {
        auto* made = dynamic_cast<BMenuItem*>(instantiate_object(&item));
        if (made != nullptr)
            AddItem(made);
    }
}

void BMenu::_InitMenu()
{
    const float spacing = ceilf(be_plain_font->Size() / 2);  // the spacing of controls' labels
    SetItemMargins(ceilf(2.3f * spacing), ceilf(spacing / 3), ceilf(spacing / 3 * 10), 0);
    SetViewColor(B_TRANSPARENT_COLOR);
    SetLowColor(menu_settings()->background_color);
}

BMenu::~BMenu()
{
    RemoveItems(0, CountItems(), true);
    if (fSuperitem != nullptr)
        fSuperitem->fSubmenu = nullptr;
}

BArchivable* BMenu::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BMenu") ? new BMenu(archive) : nullptr;
}

status_t BMenu::Archive(BMessage* archive, bool deep) const
{
    status_t status = BView::Archive(archive, deep);
    if (status == B_OK)
        status = archive->AddInt32("_layout", fLayout);
    if (status == B_OK && fRadioMode)
        status = archive->AddBool("_radio", true);
    if (status == B_OK && fLabelFromMarked)
        status = archive->AddBool("_marked_label", true);
    if (status == B_OK && !fEnabled)
        status = archive->AddBool("_disable", true);
    for (int32 i = 0; deep && status == B_OK && i < CountItems(); i++) {
        BMessage item;
        status = ItemAt(i)->Archive(&item, true);
        if (status == B_OK)
            status = archive->AddMessage("_items", &item);
    }
    return status;
}

// --- items

// True if the menu is this one or above it: it can not be below as well.
bool BMenu::_IsBelow(const BMenu* menu) const
{
    const BMenu* above = this;
    while (above != nullptr && above != menu)
        above = above->Supermenu();
    return menu != nullptr && above == menu;
}

bool BMenu::AddItem(BMenuItem* item, int32 index)
{
    if (item == nullptr || item->fSuper != nullptr || index < 0 || index > CountItems() ||
        _IsBelow(item->Submenu()))
        return false;
    if (!fItems.AddItem(item, index))
        return false;
    item->fSuper = this;
    _ItemsChanged();
    if (item->IsMarked())
        _ItemMarked(item);
    return true;
}

bool BMenu::AddItem(BMenuItem* item) { return AddItem(item, CountItems()); }

bool BMenu::AddItem(BMenuItem* item, BRect frame)
{
    if (item == nullptr || fLayout != B_ITEMS_IN_MATRIX)
        return false;
    item->fBounds = frame;
    return AddItem(item);
}

bool BMenu::AddItem(BMenu* menu, int32 index)
{
    if (menu == nullptr || menu->fSuperitem != nullptr || index < 0 || index > CountItems() ||
        _IsBelow(menu))
        return false;
    return AddItem(new BMenuItem(menu), index);
}

bool BMenu::AddItem(BMenu* menu) { return AddItem(menu, CountItems()); }

bool BMenu::AddItem(BMenu* menu, BRect frame)
{
    if (menu == nullptr || menu->fSuperitem != nullptr || fLayout != B_ITEMS_IN_MATRIX ||
        _IsBelow(menu))
        return false;
    return AddItem(new BMenuItem(menu), frame);
}

bool BMenu::AddList(BList* list, int32 index)
{
    if (list == nullptr || index < 0 || index > CountItems())
        return false;
    for (int32 i = 0; i < list->CountItems(); i++) {
        if (AddItem(static_cast<BMenuItem*>(list->ItemAt(i)), index))
            index++;
    }
    return true;
}

bool BMenu::AddSeparatorItem() { return AddItem(new BSeparatorItem()); }

BMenuItem* BMenu::RemoveItem(int32 index)
{
    auto* item = static_cast<BMenuItem*>(fItems.RemoveItem(index));
    if (item == nullptr)
        return nullptr;
    if (fSelected == item)
        fSelected = nullptr;
    item->fSelected = false;
    item->fSuper = nullptr;
    _ItemsChanged();
    return item;
}

bool BMenu::RemoveItem(BMenuItem* item) { return RemoveItem(IndexOf(item)) != nullptr; }

bool BMenu::RemoveItem(BMenu* menu)
{
    BMenuItem* item = RemoveItem(IndexOf(menu));
    if (item == nullptr)
        return false;
    item->fSubmenu = nullptr;
    menu->fSuperitem = nullptr;
    delete item;
    return true;
}

bool BMenu::RemoveItems(int32 index, int32 count, bool deleteItems)
{
    bool removed = false;
    while (count-- > 0) {
        BMenuItem* item = RemoveItem(index);
        if (item == nullptr)
            break;
        removed = true;
        if (deleteItems)
            delete item;
    }
    return removed;
}

BMenuItem* BMenu::ItemAt(int32 index) const
{
    return static_cast<BMenuItem*>(fItems.ItemAt(index));
}

BMenu* BMenu::SubmenuAt(int32 index) const
{
    BMenuItem* item = ItemAt(index);
    return item != nullptr ? item->Submenu() : nullptr;
}

int32 BMenu::CountItems() const { return fItems.CountItems(); }
int32 BMenu::IndexOf(BMenuItem* item) const { return fItems.IndexOf(item); }

int32 BMenu::IndexOf(BMenu* menu) const
{
    for (int32 i = 0; i < CountItems(); i++) {
        if (ItemAt(i)->Submenu() == menu && menu != nullptr)
            return i;
    }
    return -1;
}

// The first item, depth first, for which `claim` holds.
template <class Claim>
static BMenuItem* find_item(const BMenu* menu, Claim claim)
{
    for (int32 i = 0; i < menu->CountItems(); i++) {
        BMenuItem* item = menu->ItemAt(i);
        if (claim(item))
            return item;
        if (item->Submenu() != nullptr) {
            if (BMenuItem* found = find_item(item->Submenu(), claim))
                return found;
        }
    }
    return nullptr;
}

BMenuItem* BMenu::FindItem(uint32 command) const
{
    return find_item(this, [=](BMenuItem* item) {
        return item->Message() != nullptr && item->Command() == command;
    });
}

BMenuItem* BMenu::FindItem(const char* name) const
{
    if (name == nullptr)
        return nullptr;
    return find_item(this, [=](BMenuItem* item) { return strcmp(item->Label(), name) == 0; });
}

status_t BMenu::SetTargetForItems(BHandler* target)
{
    status_t status = B_OK;
    for (int32 i = 0; status == B_OK && i < CountItems(); i++)
        status = ItemAt(i)->SetTarget(target);
    return status;
}

status_t BMenu::SetTargetForItems(BMessenger messenger)
{
    status_t status = B_OK;
    for (int32 i = 0; status == B_OK && i < CountItems(); i++)
        status = ItemAt(i)->SetTarget(messenger);
    return status;
}

// --- modes

void BMenu::SetEnabled(bool enable)
{
    fEnabled = enable;
    if (fSuperitem != nullptr && fSuperitem->fEnabled != enable)
        fSuperitem->SetEnabled(enable);
    Invalidate();
}

void BMenu::SetRadioMode(bool on)
{
    fRadioMode = on;
    if (!on)
        SetLabelFromMarked(false);
}

void BMenu::SetTriggersEnabled(bool enable) { fTriggersEnabled = enable; }

void BMenu::SetMaxContentWidth(float maxWidth)
{
    fMaxContentWidth = maxWidth;
    _ItemsChanged();
}

void BMenu::SetLabelFromMarked(bool on)
{
    fLabelFromMarked = on;
    if (on)
        fRadioMode = true;
}

bool BMenu::IsLabelFromMarked() { return fLabelFromMarked; }
bool BMenu::IsRadioMode() const { return fRadioMode; }
bool BMenu::AreTriggersEnabled() const { return fTriggersEnabled; }
bool BMenu::IsRedrawAfterSticky() const { return false; }
float BMenu::MaxContentWidth() const { return fMaxContentWidth; }
BMenu* BMenu::Supermenu() const { return fSuperitem != nullptr ? fSuperitem->Menu() : nullptr; }
BMenuItem* BMenu::Superitem() const { return fSuperitem; }
menu_layout BMenu::Layout() const { return fLayout; }

bool BMenu::IsEnabled() const
{
    const BMenu* super = Supermenu();
    return fEnabled && (super == nullptr || super->IsEnabled());
}

BMenuItem* BMenu::FindMarked() { return ItemAt(FindMarkedIndex()); }

int32 BMenu::FindMarkedIndex()
{
    for (int32 i = 0; i < CountItems(); i++) {
        if (ItemAt(i)->IsMarked())
            return i;
    }
    return -1;
}

void BMenu::_ItemMarked(BMenuItem* item)
{
    if (fRadioMode) {
        for (int32 i = 0; i < CountItems(); i++) {
            if (ItemAt(i) != item && ItemAt(i)->IsMarked())
                ItemAt(i)->SetMarked(false);
        }
    }
    if (fLabelFromMarked && fSuperitem != nullptr)
        fSuperitem->SetLabel(item->Label());
}

void BMenu::SetTrackingHook(menu_tracking_hook hook, void* state)
{
    fTrackingHook = hook;
    fTrackingState = state;
}

void BMenu::SortItems(int (*compare)(const BMenuItem*, const BMenuItem*))
{
    auto** items = static_cast<BMenuItem**>(fItems.Items());
    std::stable_sort(items, items + CountItems(),
                     [=](BMenuItem* a, BMenuItem* b) { return compare(a, b) < 0; });
    _ItemsChanged();
}

bool BMenu::SwapItems(int32 indexA, int32 indexB)
{
    const bool swapped = fItems.SwapItems(indexA, indexB);
    _ItemsChanged();
    return swapped;
}

bool BMenu::MoveItem(int32 indexFrom, int32 indexTo)
{
    const bool moved = fItems.MoveItem(indexFrom, indexTo);
    _ItemsChanged();
    return moved;
}

// --- layout and drawing

void BMenu::SetItemMargins(float left, float top, float right, float bottom)
{
    fMargins = BRect(left, top, right, bottom);
}

void BMenu::GetItemMargins(float* _left, float* _top, float* _right, float* _bottom) const
{
    if (_left != nullptr)
        *_left = fMargins.left;
    if (_top != nullptr)
        *_top = fMargins.top;
    if (_right != nullptr)
        *_right = fMargins.right;
    if (_bottom != nullptr)
        *_bottom = fMargins.bottom;
}

BPoint BMenu::ScreenLocation()
{
    const BMenu* super = Supermenu();
    if (super == nullptr)
        return ConvertToScreen(BPoint(0, 0));
    const BRect frame = fSuperitem->Frame();
    return super->ConvertToScreen(super->Layout() == B_ITEMS_IN_ROW
                                      ? BPoint(frame.left, frame.bottom + 1)
                                      : BPoint(frame.right + 1, frame.top - kBorder));
}

// Places the items in a row or column and tells the size of all; a matrix stays as it was made.
void BMenu::_LayoutItems(float* _width, float* _height)
{
    BPoint end(kBorder, kBorder);
    float breadth = 0;
    const bool row = fLayout == B_ITEMS_IN_ROW;
    for (int32 i = 0; fLayout != B_ITEMS_IN_MATRIX && i < CountItems(); i++) {
        BMenuItem* item = ItemAt(i);
        float width = 0;
        float height = 0;
        item->GetContentSize(&width, &height);
        if (fMaxContentWidth > 0)
            width = std::min(width, fMaxContentWidth);
        width += fMargins.left + fMargins.right;
        if (dynamic_cast<BSeparatorItem*>(item) == nullptr)
            height += fMargins.top + fMargins.bottom;
        item->fBounds = BRect(end.x, end.y, end.x + width - 1, end.y + height - 1);
        breadth = std::max(breadth, row ? height : width);
        (row ? end.x : end.y) += (row ? width : height) + (row ? 0 : kItemGap);
    }
    for (int32 i = 0; fLayout != B_ITEMS_IN_MATRIX && i < CountItems(); i++) {
        BRect& bounds = ItemAt(i)->fBounds;
        (row ? bounds.bottom : bounds.right) = kBorder + breadth - 1;
    }
    if (fLayout == B_ITEMS_IN_MATRIX) {
        *_width = Bounds().Width();
        *_height = Bounds().Height();
    } else {
        *_width = row ? end.x : 2 * kBorder + breadth - 1;
        *_height = row ? 2 * kBorder + breadth - 1 : end.y - kItemGap + kBorder - 1;
    }
}

void BMenu::_ItemsChanged()
{
    if (Window() != nullptr && fResizeToFit)
        ResizeToPreferred();
    Invalidate();
}

void BMenu::GetPreferredSize(float* _width, float* _height)
{
    float width;
    float height;
    _LayoutItems(&width, &height);
    if (_width != nullptr)
        *_width = width;
    if (_height != nullptr)
        *_height = height;
}

void BMenu::ResizeToPreferred()
{
    float width;
    float height;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

// What is chosen in a menu or its submenus goes to the window unless a target was set.
void BMenu::_SetDefaultTargets(BWindow* window)
{
    for (int32 i = 0; i < CountItems(); i++) {
        BMenuItem* item = ItemAt(i);
        if (!item->Messenger().IsValid())
            item->SetTarget(static_cast<BHandler*>(window));
        if (item->Submenu() != nullptr)
            item->Submenu()->_SetDefaultTargets(window);
    }
}

void BMenu::AttachedToWindow()
{
    BView::AttachedToWindow();
    if (fSuperitem == nullptr)
        _SetDefaultTargets(Window());
    if (fResizeToFit)
        ResizeToPreferred();
}

void BMenu::DrawBackground(BRect)
{
    const rgb_color background = menu_settings()->background_color;
    const BRect bounds = Bounds();
    SetLowColor(background);
    FillRect(bounds, B_SOLID_LOW);
    SetHighColor(tint_color(background, B_DARKEN_3_TINT));
    StrokeRect(bounds);
}

void BMenu::DrawItems(BRect updateRect)
{
    for (int32 i = 0; i < CountItems(); i++) {
        if (ItemAt(i)->Frame().Intersects(updateRect))
            ItemAt(i)->Draw();
    }
}

void BMenu::Draw(BRect updateRect)
{
    DrawBackground(updateRect);
    DrawItems(updateRect);
}

BMenuItem* BMenu::_HitTest(BPoint where) const
{
    for (int32 i = 0; i < CountItems(); i++) {
        if (ItemAt(i)->Frame().Contains(where))
            return ItemAt(i);
    }
    return nullptr;
}

void BMenu::_Select(BMenuItem* item)
{
    if (item == fSelected)
        return;
    for (BMenuItem* changed : {fSelected, item}) {
        if (changed != nullptr) {
            changed->fSelected = changed == item;
            changed->Highlight(changed->fSelected);
        }
    }
    fSelected = item;
}
