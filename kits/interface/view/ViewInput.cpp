// Views and input: focus, Tab, event masks, the pointer, drags, cursors.

#include <View.h>

#include <AppDefs.h>
#include <Cursor.h>
#include <Message.h>
#include <Window.h>

#include <interface/view/ViewPrivate.h>

namespace BPrivate {

const BCursor* ViewPrivate::Cursor(const BView* view)
{
    for (; view != nullptr; view = view->fData->parent) {
        if (const BCursor* cursor = view->fData->Extras().cursor.get())
            return cursor;
    }
    return nullptr;
}

// Views of the tree in Tab's order that can be seen.
static void collect_shown(BView* view, std::vector<BView*>* views)
{
    const ViewData& data = ViewPrivate::Data(view);
    if (data.hidden > 0)
        return;
    views->push_back(view);
    for (BView* child = data.first; child != nullptr; child = ViewPrivate::Data(child).next)
        collect_shown(child, views);
}

BView* ViewPrivate::NextNavigable(BView* top, BView* from, bool backwards, bool jump)
{
    std::vector<BView*> views;
    collect_shown(top, &views);
    const size_t count = views.size();
    if (count == 0)
        return nullptr;
    const size_t step = backwards ? count - 1 : 1;
    auto search = [&](size_t start, size_t stride, uint32 flag) {
        for (size_t i = 1, at = start; i <= count; i++) {
            at = (at + stride) % count;
            if ((views[at]->fData->flags & flag) != 0)
                return at;
        }
        return count;
    };
    size_t start = std::find(views.begin(), views.end(), from) - views.begin();
    if (start == count)
        start = backwards ? 0 : count - 1;
    size_t found = search(start, step, jump ? B_NAVIGABLE_JUMP : B_NAVIGABLE);
    if (found == count)
        return nullptr;
    if ((views[found]->fData->flags & B_NAVIGABLE) == 0)
        found = search(found, 1, B_NAVIGABLE);  // into the group
    return found < count ? views[found] : nullptr;
}

bool ViewPrivate::Navigate(BView* view, bool backwards, bool jump)
{
    BWindow* window = view->fData->window;
    if (window == nullptr)
        return false;
    BView* focus = window->CurrentFocus();
    BView* next = NextNavigable(window->_TopView(), focus, backwards, jump);
    if (next == nullptr || next == focus)
        return false;
    next->MakeFocus(true);
    return true;
}

// The outline of a tracked rectangle; a second time takes it away again.
static void invert_outline(BView* view, BRect rect)
{
    view->InvertRect(BRect(rect.left, rect.top, rect.right, rect.top));
    if (rect.bottom > rect.top)
        view->InvertRect(BRect(rect.left, rect.bottom, rect.right, rect.bottom));
    if (rect.bottom - rect.top > 1) {
        view->InvertRect(BRect(rect.left, rect.top + 1, rect.left, rect.bottom - 1));
        if (rect.right > rect.left)
            view->InvertRect(BRect(rect.right, rect.top + 1, rect.right, rect.bottom - 1));
    }
}

void ViewPrivate::TrackPointer(BView* view, BPoint windowPoint, uint32 buttons)
{
    if (view->fData->Extras().tracking == nullptr)
        return;
    RectTracking& tracking = *view->fData->extras->tracking;
    const BPoint where = ToView(view, windowPoint);
    invert_outline(view, tracking.rect);
    if (buttons == 0) {
        view->fData->extras->tracking = nullptr;
        return;
    }
    const BPoint delta = where - tracking.grip;
    tracking.grip = where;
    if (tracking.style == B_TRACK_RECT_CORNER) {
        tracking.rect.right = std::max(tracking.rect.left, tracking.rect.right + delta.x);
        tracking.rect.bottom = std::max(tracking.rect.top, tracking.rect.bottom + delta.y);
    } else {
        tracking.rect.OffsetBy(delta);
    }
    invert_outline(view, tracking.rect);
}

}  // namespace BPrivate

using BPrivate::ViewLock;
using BPrivate::ViewPrivate;

void BView::KeyDown(const char* bytes, int32 numBytes)
{
    BWindow* window = Window();
    if (window == nullptr || bytes == nullptr || numBytes != 1 || bytes[0] != B_TAB)
        return;
    int32 modifiers = 0;
    if (BMessage* message = window->CurrentMessage())
        message->FindInt32("modifiers", &modifiers);
    ViewPrivate::Navigate(this, (modifiers & B_SHIFT_KEY) != 0, (modifiers & B_OPTION_KEY) != 0);
}

void BView::MakeFocus(bool focus)
{
    ViewLock lock(this);
    BWindow* window = Window();
    if (window == nullptr)
        return;
    BView* present = window->CurrentFocus();
    if (!focus) {
        if (present == this)
            window->_SetFocus(nullptr);
        return;
    }
    if (present == this)
        return;
    if (present != nullptr)
        present->MakeFocus(false);
    if (window->CurrentFocus() == nullptr && Window() == window)
        window->_SetFocus(this);
}

bool BView::IsFocus() const
{
    BWindow* window = Window();
    return window != nullptr && window->CurrentFocus() == this;
}

status_t BView::SetEventMask(uint32 mask, uint32 options)
{
    ViewLock lock(this);
    fData->eventMask = mask;
    fData->eventOptions = options;
    if (BWindow* window = Window())
        window->_SetEventMask(this, mask, options);
    return B_OK;
}

uint32 BView::EventMask() { return fData->eventMask; }

status_t BView::SetMouseEventMask(uint32 mask, uint32 options)
{
    ViewLock lock(this);
    BWindow* window = Window();
    return window != nullptr ? window->_SetMouseEventMask(this, mask, options) : B_ERROR;
}

void BView::GetMouse(BPoint* location, uint32* buttons, bool checkMessageQueue)
{
    BPoint where;
    uint32 held = 0;
    BWindow* window = Window();
    if (window != nullptr) {
        ViewLock lock(this);
        BPoint windowPoint;
        if (checkMessageQueue)
            window->UpdateIfNeeded();
        if (checkMessageQueue && window->_TakePointerMessage(&windowPoint, &held)) {
            where = ViewPrivate::ToView(this, windowPoint);
            ViewPrivate::TrackPointer(this, windowPoint, held);
        } else {
            server::PointerState(&where, &held);
            ConvertFromScreen(&where);
        }
    }
    if (location != nullptr)
        *location = where;
    if (buttons != nullptr)
        *buttons = held;
}

// Drags.

void BView::DragMessage(BMessage* message, BRect dragRect, BHandler* replyTo)
{
    ViewLock lock(this);
    BWindow* window = Window();
    if (window == nullptr || message == nullptr)
        return;
    window->_StartDrag(this, new BMessage(*message), nullptr, B_OP_COPY, BPoint(), dragRect,
                       replyTo);
}

void BView::DragMessage(BMessage* message, BBitmap* bitmap, BPoint offset, BHandler* replyTo)
{
    DragMessage(message, bitmap, B_OP_COPY, offset, replyTo);
}

void BView::DragMessage(BMessage* message, BBitmap* bitmap, drawing_mode dragMode, BPoint offset,
                        BHandler* replyTo)
{
    ViewLock lock(this);
    BWindow* window = Window();
    if (window == nullptr || message == nullptr) {
        delete bitmap;
        return;
    }
    const BRect rect = bitmap != nullptr ? bitmap->Bounds() : BRect();
    window->_StartDrag(this, new BMessage(*message), bitmap, dragMode, offset, rect, replyTo);
}

void BView::BeginRectTracking(BRect startRect, uint32 style)
{
    ViewLock lock(this);
    if (Window() == nullptr)
        return;
    EndRectTracking();
    BPoint where;
    uint32 buttons;
    GetMouse(&where, &buttons, false);
    fData->NeedExtras().tracking =
        std::make_unique<BPrivate::RectTracking>(BPrivate::RectTracking{style, startRect, where});
    BPrivate::invert_outline(this, startRect);
}

void BView::EndRectTracking()
{
    ViewLock lock(this);
    if (fData->Extras().tracking == nullptr)
        return;
    BPrivate::invert_outline(this, fData->extras->tracking->rect);
    fData->extras->tracking = nullptr;
}

void BView::SetViewCursor(const BCursor* cursor, bool)
{
    ViewLock lock(this);
    fData->NeedExtras().cursor = cursor != nullptr ? std::make_unique<BCursor>(*cursor) : nullptr;
    if (BWindow* window = Window())
        window->_UpdateCursor();
}

void BView::Flush() const
{
    ViewLock lock(this);
    if (fData->canvas != nullptr && fData->canvas->NeedsPresent())
        fData->canvas->Present(false, nullptr);
}

void BView::Sync() const
{
    if (BWindow* window = Window())
        window->Sync();
}

// Tool tips.

void BView::SetToolTip(const char* text)
{
    fData->NeedExtras().toolTipText = text;
    fData->TellReader();
}

void BView::SetToolTip(BToolTip* tip) { fData->NeedExtras().toolTip = tip; }

BToolTip* BView::ToolTip() const { return fData->Extras().toolTip; }

void BView::ShowToolTip(BToolTip*) {}
void BView::HideToolTip() {}

bool BView::GetToolTipAt(BPoint, BToolTip** _tip)
{
    if (ToolTip() == nullptr || _tip == nullptr)
        return false;
    *_tip = ToolTip();
    return true;
}
