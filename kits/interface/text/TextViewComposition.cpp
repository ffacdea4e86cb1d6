// BTextView: text that an input method makes. It stands in the text while it is made, underlined,
// and is one step of undo when it is done.

#include <Input.h>
#include <TextView.h>

#include <algorithm>

#include "interface/text/TextData.h"
#include "interface/view/ViewPrivate.h"

namespace BPrivate {

// Puts a text in the place of what was being composed; false if the view went.
bool TextData::SetComposed(const std::string& text)
{
    const UnrecordedScope unrecorded(*this);
    const int32 from = Clamp(composed->offset), to = Clamp(composed->offset + composed->length);
    if (from < to)
        DeleteHook(from, to);
    if (!unrecorded.IsThere())
        return false;
    const int32 before = body.Length();
    if (!text.empty() && Fits(int32(text.size())))
        InsertHook(text.data(), int32(text.size()), from, nullptr);
    if (!unrecorded.IsThere())
        return false;
    if (composed) {
        composed->offset = from;
        composed->length = std::max(body.Length() - before, int32(0));
    }
    return true;
}

void TextData::Compose(const BMessage& message)
{
    const ViewRef self(view);
    if (!composed || !editable)
        return;
    const std::string text = message.GetString("be:string", "");
    if (message.GetBool("be:confirmed", false)) {
        if (!SetComposed("") || !composed)
            return;
        const int32 offset = Clamp(composed->offset);
        composed->length = 0;
        SelectFrom(offset, offset);
        if (self.View() != nullptr && !text.empty())
            ReplaceTyped(text.data(), int32(text.size()));
        if (self.View() != nullptr && composed)
            composed->offset = selStart;
        return;
    }
    if (selStart < selEnd && composed->length == 0)
        ReplaceTyped("", 0);
    if (self.View() == nullptr || !composed)
        return;
    if (composed->length == 0)
        composed->offset = selStart;
    if (!SetComposed(text) || !composed)
        return;
    composed->clauses.clear();
    int32 start, end;
    for (int32 i = 0; message.FindInt32("be:clause_start", i, &start) == B_OK &&
                      message.FindInt32("be:clause_end", i, &end) == B_OK;
         i++)
        composed->clauses.push_back({start, end});
    start =
        std::clamp(message.GetInt32("be:selection", composed->length), int32(0), composed->length);
    end = std::clamp(message.GetInt32("be:selection", 1, start), start, composed->length);
    SelectFrom(composed->offset + start, composed->offset + end);
    if (self.View() != nullptr)
        view->ScrollToOffset(lead);
}

// What stands there stays, and the input method is told.
void TextData::EndComposition()
{
    if (!composed)
        return;
    const Composed was = *composed;
    composed.reset();
    InvalidateRange(Clamp(was.offset), Clamp(was.offset + was.length));
    BMessage stop(B_INPUT_METHOD_EVENT);
    stop.AddInt32("be:opcode", B_INPUT_METHOD_STOPPED);
    was.method.SendMessage(&stop);
}

// Where each character is, on the screen.
void TextData::TellPlaces(const BMessage& request) const
{
    BMessenger method;
    if (request.FindMessenger("be:reply_to", &method) != B_OK || view->Window() == nullptr)
        return;
    BMessage reply(B_INPUT_METHOD_EVENT);
    reply.AddInt32("be:opcode", B_INPUT_METHOD_LOCATION_REQUEST);
    const int32 from = composed ? Clamp(composed->offset) : selStart;
    const int32 to = composed ? Clamp(composed->offset + composed->length) : selStart;
    for (int32 at = from;; at = body.Next(at)) {
        const BRect caret = CaretRect(at);
        reply.AddPoint("be:location_reply", view->ConvertToScreen(caret.LeftTop()));
        reply.AddFloat("be:height_reply", caret.Height() + 1);
        if (at >= to)
            break;
    }
    method.SendMessage(&reply);
}

void TextData::InputMethodEvent(const BMessage& message)
{
    switch (message.GetInt32("be:opcode", -1)) {
        case B_INPUT_METHOD_STARTED:
            composed = Composed();
            composed->offset = selStart;
            message.FindMessenger("be:reply_to", &composed->method);
            break;
        case B_INPUT_METHOD_CHANGED:
            Compose(message);
            break;
        case B_INPUT_METHOD_STOPPED:
            if (composed) {
                const Composed was = *composed;
                composed.reset();
                InvalidateRange(Clamp(was.offset), Clamp(was.offset + was.length));
            }
            break;
        case B_INPUT_METHOD_LOCATION_REQUEST:
            TellPlaces(message);
            break;
        default:
            break;
    }
}

// Lines below the clauses of what is being composed.
void TextData::DrawComposed(BRect update) const
{
    if (!composed || composed->length == 0)
        return;
    std::vector<std::pair<int32, int32>> parts = composed->clauses;
    if (parts.empty())
        parts.push_back({0, composed->length});
    view->SetHighColor(body.StyleAt(Clamp(composed->offset)).color);
    for (const auto& [start, end] : parts) {
        const int32 from = Clamp(composed->offset + std::clamp(start, int32(0), composed->length));
        const int32 to = Clamp(composed->offset + std::clamp(end, int32(0), composed->length));
        EachRect(from, to, update, [&](BRect rect) {
            // A gap between one clause and the next.
            rect.right = std::max(rect.right - 1, rect.left);
            view->StrokeLine(rect.LeftBottom(), rect.RightBottom());
        });
    }
}

}  // namespace BPrivate
