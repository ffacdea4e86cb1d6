// Bars: menus that stand in a window.

#include <MenuBar.h>

#include <MenuField.h>
#include <MenuItem.h>
#include <Message.h>
#include <Messenger.h>
#include <Window.h>

#include <algorithm>
#include <math.h>

#include <interface/controls/Look.h>
#include <interface/menu/MenuPrivate.h>
#include <interface/menu/MenuTracker.h>
#include <interface/window/WindowPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::Look;
using BPrivate::MenuPrivate;
using BPrivate::MenuTracker;
using BPrivate::WindowData;

BMenuBar::BMenuBar(BRect frame, const char* name, uint32 resizingMode, menu_layout layout,
                   bool resizeToFit)
    : BMenu(frame, name, resizingMode, B_WILL_DRAW | B_FRAME_EVENTS, layout, resizeToFit)
{
    _InitMenuBar();
}

BMenuBar::BMenuBar(const char* name, menu_layout layout, uint32 flags)
    : BMenu(BRect(), name, B_FOLLOW_NONE, flags, layout, false)
{
    _InitMenuBar();
}

BMenuBar::BMenuBar(BMessage* archive) : BMenu(archive)
{
    _InitMenuBar();
    fBorder =
        BPrivate::enum_up_to(archive->GetInt32("_border", fBorder), B_BORDER_EACH_ITEM, fBorder);
}

BMenuBar::~BMenuBar() { MenuTracker::Forget(this); }

void BMenuBar::_InitMenuBar()
{
    const float size = BPrivate::menu_settings().font_size;
    const float side = roundf(size * 2 / 3);
    const float end = roundf(size / 6);
    SetItemMargins(side, end, side, end);
}

BArchivable* BMenuBar::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BMenuBar") ? new BMenuBar(archive) : nullptr;
}

status_t BMenuBar::Archive(BMessage* archive, bool deep) const
{
    const status_t status = BMenu::Archive(archive, deep);
    return status == B_OK && fBorder != B_BORDER_FRAME ? archive->AddInt32("_border", fBorder)
                                                       : status;
}

// --- the window

void BMenuBar::AttachedToWindow()
{
    BWindow* const window = Window();
    WindowData::Of(window)->menuBars.push_back(this);
    window->SetKeyMenuBar(this);
    BMenu::AttachedToWindow();
}

// The bar that was added last; the title of a field is none.
static BMenuBar* last_bar(const std::vector<BMenuBar*>& bars)
{
    for (size_t i = bars.size(); i-- > 0;) {
        if (dynamic_cast<BMenuField*>(bars[i]->Parent()) == nullptr)
            return bars[i];
    }
    return nullptr;
}

void BMenuBar::DetachedFromWindow()
{
    MenuTracker::Forget(this);
    _Select(nullptr);
    MenuPrivate::ShowTriggers(this, false);
    BWindow* const window = Window();
    std::vector<BMenuBar*>& bars = WindowData::Of(window)->menuBars;
    std::erase(bars, this);
    if (window->KeyMenuBar() == this)
        window->SetKeyMenuBar(last_bar(bars));
    BMenu::DetachedFromWindow();
}

void BMenuBar::AllAttached() { BMenu::AllAttached(); }
void BMenuBar::AllDetached() { BMenu::AllDetached(); }
void BMenuBar::WindowActivated(bool state) { BMenu::WindowActivated(state); }
void BMenuBar::MakeFocus(bool state) { BMenu::MakeFocus(state); }
void BMenuBar::MessageReceived(BMessage* message) { BMenu::MessageReceived(message); }
void BMenuBar::MouseUp(BPoint where) { BMenu::MouseUp(where); }
void BMenuBar::FrameMoved(BPoint newPosition) { BMenu::FrameMoved(newPosition); }
status_t BMenuBar::Perform(perform_code code, void* data) { return BMenu::Perform(code, data); }
status_t BMenuBar::GetSupportedSuites(BMessage* data) { return BMenu::GetSupportedSuites(data); }

BHandler* BMenuBar::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                     int32 form, const char* property)
{
    return BMenu::ResolveSpecifier(message, index, specifier, form, property);
}

void BMenuBar::Show() { BView::Show(); }
void BMenuBar::Hide() { BView::Hide(); }

// The edges are drawn along the new size.
void BMenuBar::FrameResized(float newWidth, float newHeight)
{
    Invalidate();
    BMenu::FrameResized(newWidth, newHeight);
}

// --- layout and drawing

// Titles stand side by side without gaps, over the whole height.
void BMenuBar::_SizeItems()
{
    if (fLayout != B_ITEMS_IN_ROW) {
        BMenu::_SizeItems();
        return;
    }
    const float plain = Look(this).LineHeight();
    font_height font;
    GetFontHeight(&font);
    float height = ceilf(font.ascent + font.descent + fMargins.top + fMargins.bottom);
    float end = 0;
    for (int32 i = 0; i < CountItems(); i++) {
        BMenuItem* item = ItemAt(i);
        float width = 0;
        item->GetContentSize(&width, &item->fContentHeight);
        if (fMaxContentWidth > 0)
            width = std::min(width, fMaxContentWidth);
        width += fMargins.left + fMargins.right;
        if (item->fContentHeight > plain)
            height = std::max(height, item->fContentHeight + fMargins.top + fMargins.bottom);
        item->fBounds = BRect(end, 0, end + width - 1, 0);
        end += width;
    }
    for (int32 i = 0; i < CountItems(); i++) {
        ItemAt(i)->fBounds.top = 1;
        ItemAt(i)->fBounds.bottom = height - 1;
    }
    fContent = BSize(end, height);
}

void BMenuBar::GetPreferredSize(float* _width, float* _height)
{
    BMenu::GetPreferredSize(_width, _height);
}

BSize BMenuBar::MinSize() { return BMenu::MinSize(); }
BSize BMenuBar::PreferredSize() { return BMenu::PreferredSize(); }

BSize BMenuBar::MaxSize()
{
    const BSize size = PreferredSize();
    return fLayout == B_ITEMS_IN_ROW ? BSize(B_SIZE_UNLIMITED, size.height) : size;
}

// One that follows both sides takes the whole width of what it hangs in.
void BMenuBar::ResizeToPreferred()
{
    float width;
    float height;
    GetPreferredSize(&width, &height);
    if (Window() != nullptr && fLayout == B_ITEMS_IN_ROW &&
        (ResizingMode() & (B_FOLLOW_LEFT_RIGHT)) == B_FOLLOW_LEFT_RIGHT) {
        const BRect room = Parent() != nullptr ? Parent()->Bounds() : Window()->Bounds();
        width = room.right - Frame().left;
    }
    ResizeTo(width, height);
}

void BMenuBar::SetBorder(menu_bar_border border)
{
    fBorder = border;
    Invalidate();
}

menu_bar_border BMenuBar::Border() const { return fBorder; }

void BMenuBar::SetBorders(uint32 borders)
{
    fBorders = borders;
    Invalidate();
}

uint32 BMenuBar::Borders() const { return fBorders; }

void BMenuBar::Draw(BRect updateRect)
{
    if (!fLaidOut)
        _LayoutItems();
    const rgb_color ground = BPrivate::menu_ground();
    const Look look(this);
    if (fBorder == B_BORDER_FRAME) {
        look.DrawMenuBar(Bounds(), ground);
    } else {
        look.Fill(Bounds(), ground);
        if (fBorder == B_BORDER_CONTENTS)
            look.DrawMenuBar(BRect(0, 0, fContent.width - 1, Bounds().bottom), ground);
    }
    for (int32 i = 0; fBorder == B_BORDER_EACH_ITEM && i < CountItems(); i++)
        look.DrawMenuBar(ItemAt(i)->Frame().InsetByCopy(0, -1), ground);
    DrawItems(updateRect);
}

// --- tracking

// The title that was pressed, wherever the pointer is by the time that the program has prepared its
// menus.
void BMenuBar::MouseDown(BPoint where)
{
    BMenuItem* const title = BPrivate::MenuPrivate::HitTest(this, where);
    StartMenuBar(title != nullptr ? IndexOf(title) : -1, false, true);
}

namespace {

// What a thread needs to follow the user; the bar may be gone by then.
struct Walk {
    std::shared_ptr<MenuTracker> tracker;
    BMessenger window;
};

status_t follow_user(void* data)
{
    const std::unique_ptr<Walk> walk(static_cast<Walk*>(data));
    walk->tracker->Run();
    walk->window.SendMessage(BPrivate::kMenusEnded);
    walk->tracker->InvokeChosen();
    walk->tracker->Release();
    return B_OK;
}

}  // namespace

void BMenuBar::StartMenuBar(int32 menuIndex, bool sticky, bool showMenu, BRect* special_rect)
{
    BWindow* const window = Window();
    if (window == nullptr || !window->Lock())
        return;
    const auto running = std::static_pointer_cast<MenuTracker>(fTracker.lock());
    if ((running == nullptr || running->IsDone()) && IsEnabled()) {
        MenuTracker::Options options;
        options.index = menuIndex;
        options.sticky = sticky;
        options.byKey = sticky && menuIndex >= 0;
        options.showMenu = showMenu;
        if (special_rect != nullptr)
            options.openRect = *special_rect;
        const auto tracker = MenuTracker::Make(this, options);
        fTracker = tracker;
        // The program may take the bar away.
        window->MenusBeginning();
        tracker->Hold();
        auto* walk = new Walk{tracker, BMessenger(window)};
        const thread_id thread =
            spawn_thread(follow_user, "menu tracking", B_DISPLAY_PRIORITY, walk);
        if (thread < B_OK || resume_thread(thread) != B_OK) {
            delete walk;
            tracker->Release();
            window->MenusEnded();
        }
    }
    window->Unlock();
}
