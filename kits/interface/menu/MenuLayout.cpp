// Where the items of a menu are, and how it is drawn.

#include <Menu.h>

#include <MenuItem.h>
#include <SeparatorItem.h>
#include <Window.h>

#include <algorithm>

#include <interface/controls/Look.h>
#include <interface/menu/MenuPrivate.h>
#include <interface/menu/MenuWindow.h>
#include <interface/view/ViewPrivate.h>

static const float kItemGap = 1;  // pixels between two items
static const float kBorder = 1;   // around all of them

void BMenu::SetItemMargins(float left, float top, float right, float bottom)
{
    fMargins = BRect(left, top, right, bottom);
    fLaidOut = false;
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

// A submenu hangs below a title in a row, and beside an item of a column.
BPoint BMenu::ScreenLocation()
{
    const BMenu* super = Supermenu();
    if (super == nullptr || super->Window() == nullptr)
        return Window() != nullptr ? ConvertToScreen(BPoint(0, 0)) : BPoint(0, 0);
    const BRect frame = fSuperitem->Frame();
    return super->ConvertToScreen(super->Layout() == B_ITEMS_IN_ROW
                                      ? BPoint(frame.left, super->Bounds().bottom + 1)
                                      : BPoint(frame.right + 1, frame.top - kBorder));
}

// Places the items in a row or column and notes the size of all; those of a matrix stay where they
// were put.
void BMenu::_SizeItems()
{
    BPoint end(kBorder, kBorder);
    float breadth = 0;
    const bool row = fLayout == B_ITEMS_IN_ROW;
    for (int32 i = 0; i < CountItems(); i++) {
        BMenuItem* item = ItemAt(i);
        float width = 0;
        float height = 0;
        item->GetContentSize(&width, &height);
        item->fContentHeight = height;
        if (fLayout == B_ITEMS_IN_MATRIX)
            continue;
        if (fMaxContentWidth > 0)
            width = std::min(width, fMaxContentWidth);
        width += fMargins.left + fMargins.right;
        if (dynamic_cast<BSeparatorItem*>(item) == nullptr)
            height += fMargins.top + fMargins.bottom;
        item->fBounds = BRect(end.x, end.y, end.x + width - 1, end.y + height - 1);
        breadth = std::max(breadth, row ? height : width);
        (row ? end.x : end.y) += (row ? width : height) + (row ? 0 : kItemGap);
    }
    if (fLayout == B_ITEMS_IN_MATRIX) {
        fContent = BSize(Bounds().Width(), Bounds().Height());
        return;
    }
    for (int32 i = 0; i < CountItems(); i++) {
        BRect& bounds = ItemAt(i)->fBounds;
        (row ? bounds.bottom : bounds.right) = kBorder + breadth - 1;
    }
    const float length = (row ? end.x : end.y - (CountItems() > 0 ? kItemGap : 0)) + kBorder - 1;
    const float across = 2 * kBorder + breadth - 1;
    fContent = row ? BSize(length, across) : BSize(across, length);
}

void BMenu::_LayoutItems()
{
    fLaidOut = true;  // before, since an item may ask for its frame
    _SizeItems();
}

void BMenu::_ItemsChanged()
{
    BPrivate::OpenMenuLock open(this);
    fLaidOut = false;
    if (Window() == nullptr)
        return;
    if (fResizeToFit)
        ResizeToPreferred();
    BPrivate::MenuWindow::Refit(this);
    if (fShowsTriggers)
        BPrivate::MenuPrivate::ShowTriggers(this, true);
    Invalidate();
}

void BMenu::InvalidateLayout()
{
    fLaidOut = false;
    BView::InvalidateLayout();
}

void BMenu::GetPreferredSize(float* _width, float* _height)
{
    _LayoutItems();
    if (_width != nullptr)
        *_width = fContent.width;
    if (_height != nullptr)
        *_height = fContent.height;
}

BSize BMenu::MinSize() { return PreferredSize(); }
BSize BMenu::MaxSize() { return PreferredSize(); }

BSize BMenu::PreferredSize()
{
    BSize size;
    GetPreferredSize(&size.width, &size.height);
    return size;
}

void BMenu::ResizeToPreferred()
{
    float width;
    float height;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

void BMenu::DrawBackground(BRect)
{
    BPrivate::Look(this).DrawMenu(Bounds(), BPrivate::menu_ground());
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
    if (!fLaidOut)
        _LayoutItems();
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
    BMenuItem* const before = fSelected;
    fSelected = item;
    for (BMenuItem* changed : {before, item}) {
        if (changed != nullptr) {
            changed->fSelected = changed == item;
            changed->Highlight(changed->fSelected);
        }
    }
}
