// Menus: their items and modes. Layout and drawing have a file of their own.

#include <Menu.h>

#include <MenuItem.h>
#include <Message.h>
#include <SeparatorItem.h>
#include <Window.h>

#include <algorithm>
#include <math.h>
#include <string.h>

#include <interface/controls/Look.h>
#include <interface/menu/MenuPrivate.h>
#include <interface/menu/MenuTracker.h>
#include <interface/menu/MenuWindow.h>
#include <interface/view/ViewPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::MenuPrivate;
using BPrivate::MenuTracker;
using BPrivate::ViewLock;

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
    fLayout =
        BPrivate::enum_up_to(archive->GetInt32("_layout", fLayout), B_ITEMS_IN_MATRIX, fLayout);
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
    const menu_info info = BPrivate::menu_settings();
    BFont font(be_plain_font);
    font.SetFamilyAndStyle(info.f_family, info.f_style);
    font.SetSize(info.font_size);
    SetFont(&font, B_FONT_FAMILY_AND_STYLE | B_FONT_SIZE);
    const BSize spacing(BPrivate::Look(font).LabelSpacing(), 0);
    SetItemMargins(ceilf(2.3f * spacing.width), ceilf(spacing.width / 3),
                   ceilf(spacing.width / 3 * 10), 0);
    SetViewColor(B_TRANSPARENT_COLOR);
    SetLowColor(info.background_color);
}

BMenu::~BMenu()
{
    MenuTracker::Forget(this);
    BPrivate::MenuWindow::TakeDown(this);
    RemoveSelf();
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

// The window that the bar above stands in; null if there is none.
BWindow* BMenu::_RootWindow() const
{
    const BMenu* root = this;
    while (root->Supermenu() != nullptr)
        root = root->Supermenu();
    BWindow* const window = root->Window();
    return dynamic_cast<BPrivate::MenuWindow*>(window) == nullptr ? window : nullptr;
}

bool BMenu::AddItem(BMenuItem* item, int32 index)
{
    if (item == nullptr || item->fSuper != nullptr || index < 0 || index > CountItems() ||
        _IsBelow(item->Submenu()))
        return false;
    ViewLock lock(this);
    if (!fItems.AddItem(item, index))
        return false;
    item->fSuper = this;
    if (BWindow* window = _RootWindow())
        MenuPrivate::SetDefaultTarget(item, nullptr, window);
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
    ViewLock lock(this);
    auto* item = static_cast<BMenuItem*>(fItems.RemoveItem(index));
    if (item == nullptr)
        return nullptr;
    MenuTracker::Forget(item);
    if (item->fSubmenu != nullptr) {
        MenuTracker::Forget(item->fSubmenu);
        BPrivate::MenuWindow::TakeDown(item->fSubmenu);
    }
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
    ViewLock lock(this);
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
    ViewLock lock(this);
    auto** items = static_cast<BMenuItem**>(fItems.Items());
    std::stable_sort(items, items + CountItems(),
                     [=](BMenuItem* a, BMenuItem* b) { return compare(a, b) < 0; });
    _ItemsChanged();
}

bool BMenu::SwapItems(int32 indexA, int32 indexB)
{
    ViewLock lock(this);
    const bool swapped = fItems.SwapItems(indexA, indexB);
    _ItemsChanged();
    return swapped;
}

bool BMenu::MoveItem(int32 indexFrom, int32 indexTo)
{
    ViewLock lock(this);
    const bool moved = fItems.MoveItem(indexFrom, indexTo);
    _ItemsChanged();
    return moved;
}

bool BMenu::AddDynamicItem(add_state) { return false; }

// --- opening

void BMenu::Show() { Show(false); }

void BMenu::Show(bool selectFirstItem)
{
    if (Window() == nullptr)
        BPrivate::MenuWindow::Open(this, ScreenLocation());
    ViewLock lock(this);
    if (selectFirstItem)
        _Select(MenuPrivate::NextChoice(this, nullptr, 1));
}

void BMenu::Hide()
{
    if (!MenuTracker::Cancel(this))
        BPrivate::MenuWindow::Close(this);
}

BMenuItem* BMenu::Track(bool startOpened, BRect* specialRect)
{
    MenuTracker::Options options;
    options.sticky = startOpened;
    if (specialRect != nullptr)
        options.openRect = *specialRect;
    options.where = Window() == nullptr ? ScreenLocation() : BPoint();
    options.caller = dynamic_cast<BWindow*>(BLooper::LooperForThread(find_thread(nullptr)));
    const auto tracker = MenuTracker::Make(this, options);
    tracker->Hold();
    BMenuItem* const chosen = tracker->Run();
    tracker->Release();
    return chosen;
}

// --- hooks of the view

// What is chosen in a menu or its submenus goes to the window unless a target was set, and no
// longer once the menu has left it.
void BMenu::_SetDefaultTargets(BWindow* before, BWindow* after)
{
    for (int32 i = 0; i < CountItems(); i++)
        MenuPrivate::SetDefaultTarget(ItemAt(i), before, after);
}

void BMenu::AttachedToWindow()
{
    BView::AttachedToWindow();
    if (fSuperitem == nullptr && dynamic_cast<BPrivate::MenuWindow*>(Window()) == nullptr)
        _SetDefaultTargets(nullptr, Window());
    if (fResizeToFit)
        ResizeToPreferred();
}

void BMenu::DetachedFromWindow()
{
    if (fSuperitem == nullptr && dynamic_cast<BPrivate::MenuWindow*>(Window()) == nullptr)
        _SetDefaultTargets(Window(), nullptr);
    BView::DetachedFromWindow();
}

void BMenu::AllAttached() { BView::AllAttached(); }
void BMenu::AllDetached() { BView::AllDetached(); }
void BMenu::MessageReceived(BMessage* message) { BView::MessageReceived(message); }
void BMenu::KeyDown(const char* bytes, int32 numBytes) { BView::KeyDown(bytes, numBytes); }
void BMenu::FrameMoved(BPoint where) { BView::FrameMoved(where); }
void BMenu::FrameResized(float width, float height) { BView::FrameResized(width, height); }
void BMenu::MakeFocus(bool focus) { BView::MakeFocus(focus); }
void BMenu::LayoutInvalidated(bool descendants) { BView::LayoutInvalidated(descendants); }
void BMenu::DoLayout() { BView::DoLayout(); }
status_t BMenu::Perform(perform_code code, void* data) { return BView::Perform(code, data); }

BHandler* BMenu::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 form,
                                  const char* property)
{
    return BView::ResolveSpecifier(message, index, specifier, form, property);
}

status_t BMenu::GetSupportedSuites(BMessage* data) { return BView::GetSupportedSuites(data); }
