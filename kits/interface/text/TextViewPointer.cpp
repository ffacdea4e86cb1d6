// BTextView: the pointer. A press selects, by characters, words or lines, or drags what is
// selected; what is dragged here is dropped here.

#include <TextView.h>

#include <Bitmap.h>
#include <Clipboard.h>
#include <Looper.h>
#include <Region.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include <server/clipboard/Clipboard.h>
#include <support/ValidUTF8.h>

#include "interface/text/TextData.h"
#include "interface/view/ViewPrivate.h"

namespace BPrivate {

static const uint32 kAutoScroll = '_ASC';
static const bigtime_t kScrollStep_us = 50'000;
static const float kDragSlack = 4;  // pixels

// The selection reaches from what was pressed to what is under the pointer.
void TextData::ExtendTo(BPoint where)
{
    const int32 offset = view->OffsetAt(where);
    int32 from = offset, to = offset;
    if (clicks == 2)
        view->FindWord(offset, &from, &to);
    if (clicks >= 3) {
        from = body.Buffer().LineStart(offset);
        to = body.Buffer().LineEnd(offset);
    }
    if (offset < pressStart)
        SelectFrom(pressEnd, std::min(from, pressStart));
    else
        SelectFrom(pressStart, std::max(to, pressEnd));
}

void TextData::AutoScroll()
{
    if (press != Press::Selects)
        return;
    BPoint where;
    uint32 buttons;
    view->GetMouse(&where, &buttons, false);
    const BRect bounds = view->Bounds();
    const ViewRef self(view);
    if (bounds.Contains(where))
        return;
    ExtendTo(where);
    if (self.View() != nullptr)
        view->ScrollToOffset(lead);
}

void TextData::ShowDrop(int32 offset)
{
    if (offset == dropAt)
        return;
    if (dropAt >= 0)
        view->Invalidate(CaretRect(Clamp(dropAt)));
    dropAt = offset;
    if (dropAt >= 0)
        view->Invalidate(CaretRect(dropAt));
}

void TextData::TellSelected() const
{
    if (hidesTyping || !selectable || selStart == selEnd)
        return;
    const std::shared_ptr<server::Clipboard> primary = server::PrimarySelection();
    if (primary == nullptr)
        return;
    std::string bytes(size_t(selEnd - selStart), '\0');
    body.Buffer().Copy(selStart, selEnd - selStart, bytes.data());
    uint32 changes;
    primary->Write({{server::kTextForm, valid_utf8(bytes)}}, nullptr, &changes);
}

// False where nothing is selected anywhere.
bool TextData::InsertSelected(int32 offset)
{
    const std::shared_ptr<server::Clipboard> primary = server::PrimarySelection();
    server::ClipboardForm form;
    if (primary == nullptr || primary->Read({server::kTextForm}, &form) != B_OK)
        return false;
    const ViewRef self(view);
    SelectFrom(offset, offset);
    const size_t length = strnlen(form.bytes.c_str(), form.bytes.size());
    if (self.View() != nullptr && length > 0 && length < size_t(INT32_MAX))
        ReplaceSelection(form.bytes.data(), int32(length), nullptr, B_UNDO_PASTE);
    return true;
}

void TextData::StartDrag()
{
    press = Press::None;
    if (hidesTyping)
        return;
    BMessage drag(B_SIMPLE_DATA);
    BBitmap* bitmap = nullptr;
    BPoint point;
    BHandler* handler = nullptr;
    view->GetDragParameters(&drag, &bitmap, &point, &handler);
    if (bitmap != nullptr) {
        view->DragMessage(&drag, bitmap, B_OP_ALPHA, point, handler);
        return;
    }
    BRegion region;
    view->GetTextRegion(selStart, selEnd, &region);
    view->DragMessage(&drag, region.Frame() & view->Bounds(), handler);
}

}  // namespace BPrivate

using BPrivate::held_keys;
using BPrivate::TextData;
using BPrivate::ViewRef;

void BTextView::MouseDown(BPoint where)
{
    TextData& text = *fText;
    if (!text.editable && !text.selectable) {
        BView::MouseDown(where);
        return;
    }
    const ViewRef self(this);
    if (!IsFocus())
        MakeFocus();
    if (self.View() == nullptr)
        return;
    const BMessage* event = Looper() != nullptr ? Looper()->CurrentMessage() : nullptr;
    text.EndComposition();
    text.history.Close();
    const int32 pressed = event != nullptr ? event->GetInt32("buttons", 0) : 0;
    if (pressed == B_TERTIARY_MOUSE_BUTTON && text.editable && text.InsertSelected(OffsetAt(where)))
        return;
    text.clicks = event != nullptr ? std::max(event->GetInt32("clicks", 1), int32(1)) : 1;
    if (text.clicks > 3)
        text.clicks = 1 + (text.clicks - 1) % 3;
    text.pressedAt = where;
    const int32 offset = OffsetAt(where);
    const bool extend = (held_keys(this) & B_SHIFT_KEY) != 0 && text.selectable;
    SetMouseEventMask(B_POINTER_EVENTS, B_LOCK_WINDOW_FOCUS | B_NO_POINTER_HISTORY);
    if (text.clicks == 1 && !extend && offset >= text.selStart && offset < text.selEnd) {
        text.press = TextData::Press::MayDrag;
        return;
    }
    text.press = text.selectable ? TextData::Press::Selects : TextData::Press::None;
    text.pressStart = text.pressEnd = extend ? text.anchor : offset;
    if (text.clicks == 2 && text.selectable)
        FindWord(offset, &text.pressStart, &text.pressEnd);
    if (text.clicks == 3 && text.selectable) {
        text.pressStart = text.body.Buffer().LineStart(offset);
        text.pressEnd = text.body.Buffer().LineEnd(offset);
    }
    if (extend)
        text.SelectFrom(text.anchor, offset);
    else
        text.SelectFrom(text.pressStart, text.pressEnd);
    if (self.View() == nullptr || text.press == TextData::Press::None)
        return;
    const BMessage tick(BPrivate::kAutoScroll);
    text.scroller =
        std::make_unique<BMessageRunner>(BMessenger(this), &tick, BPrivate::kScrollStep_us);
}

void BTextView::MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage)
{
    TextData& text = *fText;
    if (dragMessage != nullptr) {
        const bool takes = code != B_EXITED_VIEW && code != B_OUTSIDE_VIEW && text.editable &&
                           AcceptsDrop(dragMessage);
        text.ShowDrop(takes ? OffsetAt(where) : -1);
        return;
    }
    if (text.press == TextData::Press::Selects) {
        text.ExtendTo(where);
    } else if (text.press == TextData::Press::MayDrag) {
        const BPoint moved = where - text.pressedAt;
        if (std::fabs(moved.x) >= BPrivate::kDragSlack ||
            std::fabs(moved.y) >= BPrivate::kDragSlack)
            text.StartDrag();
    } else {
        BView::MouseMoved(where, code, dragMessage);
    }
}

void BTextView::MouseUp(BPoint where)
{
    TextData& text = *fText;
    const TextData::Press press = text.press;
    text.press = TextData::Press::None;
    text.scroller.reset();
    text.ShowDrop(-1);
    const ViewRef self(this);
    BView::MouseUp(where);
    if (self.View() == nullptr)
        return;
    if (press == TextData::Press::MayDrag) {
        const int32 offset = OffsetAt(where);
        text.SelectFrom(offset, offset);
    } else if (press == TextData::Press::Selects) {
        text.TellSelected();
    }
}

// ---- Drag and drop

void BTextView::GetDragParameters(BMessage* drag, BBitmap** _bitmap, BPoint*, BHandler** _handler)
{
    if (drag != nullptr) {
        drag->AddPointer("be:originator", this);
        drag->AddInt32("be_actions", B_TRASH_TARGET);
        fText->PutData(drag, fText->selStart, fText->selEnd);
    }
    if (_bitmap != nullptr)
        *_bitmap = nullptr;
    if (_handler != nullptr)
        *_handler = this;
}

bool BTextView::AcceptsDrop(const BMessage* message)
{
    return message != nullptr && message->HasData("text/plain", B_MIME_TYPE);
}

namespace BPrivate {

// What comes from this view moves, unless Control is held.
bool TextData::TakeDrop(BMessage* message)
{
    ShowDrop(-1);
    if (!editable || !view->AcceptsDrop(message))
        return false;
    int32 offset = view->OffsetAt(view->ConvertFromScreen(message->DropPoint()));
    void* originator = nullptr;
    const bool own = message->FindPointer("be:originator", &originator) == B_OK &&
                     originator == view && !message->IsSourceRemote();
    const ViewRef self(view);
    if (own && offset >= selStart && offset <= selEnd)
        return true;
    const UndoScope step(*this, B_UNDO_DROP);
    if (own && (held_keys(view) & B_CONTROL_KEY) == 0) {
        const int32 from = selStart, to = selEnd;
        DeleteHook(from, to);
        if (self.View() == nullptr)
            return true;
        if (offset > from)
            offset -= to - from;
    }
    offset = Clamp(offset);
    SelectFrom(offset, offset);
    if (self.View() != nullptr && TakeData(message, B_UNDO_DROP) && self.View() != nullptr)
        SelectFrom(offset, selEnd);
    return true;
}

}  // namespace BPrivate

void BTextView::MessageReceived(BMessage* message)
{
    TextData& text = *fText;
    if (message->WasDropped()) {
        if (!text.TakeDrop(message))
            BView::MessageReceived(message);
        return;
    }
    switch (message->what) {
        case B_CUT:
            Cut(be_clipboard);
            break;
        case B_COPY:
            Copy(be_clipboard);
            break;
        case B_PASTE:
            Paste(be_clipboard);
            break;
        case B_UNDO: {
            // The key goes back only; what Undo() brings back has a key of its own.
            bool is_redo;
            UndoState(&is_redo);
            if (!is_redo)
                Undo(be_clipboard);
            break;
        }
        case B_REDO:
            text.Redo();
            break;
        case B_SELECT_ALL:
            if (text.selectable) {
                SelectAll();
                text.TellSelected();
            }
            break;
        case B_INPUT_METHOD_EVENT:
            text.InputMethodEvent(*message);
            break;
        case BPrivate::kAutoScroll:
            text.AutoScroll();
            break;
        default:
            if (!text.Answer(message))
                BView::MessageReceived(message);
    }
}
