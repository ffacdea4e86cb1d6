// BTextView: drawing. Everything is drawn in Draw(): what changes is only made invalid, and what a
// window draws shows when it is complete.

#include <TextView.h>

#include <Region.h>
#include <Window.h>

#include <algorithm>
#include <string_view>

#include "interface/text/TextData.h"

using BPrivate::LineTable;
using BPrivate::TextData;
using BPrivate::TextPiece;
using BPrivate::TextStyle;

// Words come again where lines do not, and what was drawn lately is kept: plain words one by one,
// each with the blanks behind it, give the same pixels as all of them together.
static void draw_piece(BTextView* view, const TextStyle& style, const TextPiece& piece, BPoint at)
{
    const std::string_view text(piece.bytes, size_t(piece.drawn));
    if (!style.widths->IsSimple() ||
        std::any_of(text.begin(), text.end(), [](char byte) { return uint8(byte) >= 0x80; })) {
        view->DrawString(piece.bytes, piece.drawn, at);
        return;
    }
    for (size_t from = 0; from < text.size();) {
        const size_t blank = std::min(text.find(' ', from), text.size());
        const size_t end = std::min(text.find_first_not_of(' ', blank), text.size());
        const auto length = int32(end - from);
        view->DrawString(text.data() + from, length, at);
        at.x += style.widths->Sum(text.data() + from, length);
        from = end;
    }
}

static void draw_line(BTextView* view, const TextData& text, const LineTable::Place& line,
                      BRect update, int32* style)
{
    const float left = text.Left(line);
    const float base = text.Top(line) + line.line.ascent;
    // Letters reach into their neighbours' room.
    const float slack = line.line.height;
    text.body.EachPiece(line, update.left - slack - left, [&](const TextPiece& piece) {
        const float x = left + piece.x;
        if (x > update.right + slack)
            return false;
        if (piece.drawn == 0 || x + piece.width < update.left - slack)
            return true;
        const TextStyle& held = text.body.Styles().At(piece.style);
        if (*style != piece.style) {
            *style = piece.style;
            view->SetFont(&held.font);
            view->SetHighColor(held.color);
        }
        draw_piece(view, held, piece, BPoint(x, base));
        return true;
    });
}

void BTextView::Draw(BRect updateRect)
{
    TextData& text = *fText;
    text.MendLines();
    PushState();
    SetDrawingMode(B_OP_OVER);
    SetLowColor(ViewColor());
    int32 style = -1;
    const double y = double(updateRect.top - text.textRect.top);
    const LineTable& lines = text.body.Lines();
    lines.EachFrom(lines.AtHeight(y).index, [&](const LineTable::Place& line) {
        if (text.Top(line) > updateRect.bottom)
            return false;
        draw_line(this, text, line, updateRect, &style);
        return true;
    });
    text.DrawComposed(updateRect);
    SetDrawingMode(B_OP_INVERT);
    if (text.active && text.selectable)
        text.EachRect(text.selStart, text.selEnd, updateRect,
                      [&](BRect rect) { FillRect(rect & updateRect); });
    if (text.caretOn && text.selStart == text.selEnd)
        FillRect(text.CaretRect(text.selStart));
    if (text.dropAt >= 0)
        FillRect(text.CaretRect(text.dropAt));
    PopState();
}

void BTextView::Highlight(int32 startOffset, int32 endOffset)
{
    if (Window() == nullptr)
        return;
    const BRect bounds = Bounds();
    fText->EachRect(fText->Clamp(startOffset), fText->Clamp(endOffset), bounds,
                    [&](BRect rect) { InvertRect(rect & bounds); });
}
