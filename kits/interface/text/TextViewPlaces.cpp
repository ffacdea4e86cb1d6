// BTextView: where text is, and how large; lines that are broken anew; what follows of it for
// scroll bars and frames.

#include <TextView.h>

#include <Region.h>
#include <ScrollBar.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <new>

#include <server/text/Characters.h>

#include "interface/text/TextData.h"
#include "interface/view/ViewPrivate.h"

namespace BPrivate {

float TextData::LayoutWidth() const { return wraps ? std::max(textRect.Width(), 1.0f) : 0; }

float TextData::Left(const LineTable::Place& line) const
{
    const float room = textRect.Width() - line.line.width;
    switch (align) {
        case B_ALIGN_RIGHT:
            return textRect.left + std::max(std::floor(room), 0.0f);
        case B_ALIGN_CENTER:
            return textRect.left + std::max(std::floor(room / 2), 0.0f);
        default:
            return textRect.left;
    }
}

bool TextData::EndsParagraph(const LineTable::Place& line) const
{
    const int32 end = line.offset + line.line.length;
    return line.line.length > 0 && body.Buffer().At(end - 1) == '\n';
}

int32 TextData::LineEnd(const LineTable::Place& line) const
{
    const int32 end = line.offset + line.line.length;
    // Behind a break that no line feed makes, the caret is on the next line.
    return end == body.Length() && !EndsParagraph(line) ? end
                                                        : std::max(body.Previous(end), line.offset);
}

int32 TextData::Clamp(int32 offset) const { return std::clamp(offset, int32(0), body.Length()); }

BRect TextData::CaretRect(int32 offset) const
{
    const LineTable::Place line = LineOf(offset);
    const float x = Left(line) + body.XAt(line, offset);
    const float top = Top(line);
    return BRect(x, top, x, top + line.line.height - 1);
}

// ---- Drawing anew

void TextData::InvalidateRange(int32 start, int32 end)
{
    if (view->Window() == nullptr)
        return;
    EachRect(start, end, view->Bounds(), [&](BRect rect) { view->Invalidate(rect); });
}

void TextData::InvalidateCaret()
{
    if (view->Window() != nullptr && caretOn && selStart == selEnd)
        view->Invalidate(CaretRect(selStart));
}

void TextData::InvalidateChange(const LineChange& change)
{
    if (view->Window() == nullptr)
        return;
    const LineTable::Place first = body.Lines().At(change.first);
    BRect rect = view->Bounds();
    rect.top = Top(first);
    if (change.sameHeight) {
        const LineTable::Place last = body.Lines().At(change.first + change.count - 1);
        rect.bottom = Top(last) + last.line.height - 1;
    }
    if (rect.IsValid())
        view->Invalidate(rect);
}

void TextData::SetCaretOn(bool on)
{
    InvalidateCaret();
    caretOn = on && active && editable;
    blinkedAt = system_time();
    InvalidateCaret();
}

void TextData::Activate(bool activate)
{
    if (active == activate)
        return;
    active = activate;
    if (!activate)
        EndComposition();
    InvalidateRange(selStart, selEnd);
    SetCaretOn(activate);
}

void TextData::ShowEditable()
{
    const bool may = wantsEditable && !disabled;
    if (may == editable)
        return;
    SetCaretOn(false);
    editable = may;
    SetCaretOn(active);
}

void TextData::Relayout()
{
    body.SetWidth(LayoutWidth());
    body.Break();
    view->Invalidate();
    Resized();
}

void TextData::MendLines()
{
    if (!body.IsRough())
        return;
    try {
        Relayout();
    } catch (const std::bad_alloc&) {
        // as they are, until there is memory
    }
}

void TextData::FollowInsets()
{
    if (!followsView)
        return;
    const BRect bounds = view->Bounds().OffsetToCopy(B_ORIGIN);
    const BRect rect(insets.left, insets.top, std::max(bounds.right - insets.right, insets.left),
                     std::max(bounds.bottom - insets.bottom, insets.top));
    const bool sameWidth = rect.Width() == textRect.Width() && rect.left == textRect.left;
    textRect = rect;
    if (!sameWidth || body.Width() != LayoutWidth())
        Relayout();
}

static void set_bar(BScrollBar* bar, float size, float shown, float step)
{
    if (bar == nullptr)
        return;
    const float range = std::max(std::ceil(size - shown), 0.0f);
    bar->SetProportion(size > shown ? shown / size : 1);
    bar->SetRange(0, range);
    bar->SetSteps(step, std::max(shown - step, step));
}

void TextData::UpdateBars()
{
    BScrollBar* vertical = view->ScrollBar(B_VERTICAL);
    BScrollBar* horizontal = view->ScrollBar(B_HORIZONTAL);
    const BRect bounds = view->Bounds();
    const float step = std::ceil(body.Lines().At(0).line.height);
    if (vertical != nullptr)
        set_bar(vertical,
                textRect.top + float(body.Lines().Height()) + std::max(insets.bottom, 0.0f),
                bounds.Height() + 1, step);
    if (horizontal != nullptr) {
        // With room for the caret behind the text.
        const float width = textRect.left + body.Lines().Width() + std::max(insets.right, 0.0f) + 1;
        set_bar(horizontal, wraps ? 0 : width, bounds.Width() + 1, step);
    }
}

void TextData::Resized()
{
    UpdateBars();
    if (!resizable || view->Window() == nullptr)
        return;
    BView* frame = resizeView != nullptr ? resizeView : view;
    const float width = std::ceil(body.Lines().Width()) + 1;
    const float more = width - textRect.Width();
    if (more == 0)
        return;
    textRect.right += more;
    frame->ResizeBy(more, 0);
    if (align == B_ALIGN_RIGHT)
        frame->MoveBy(-more, 0);
    else if (align == B_ALIGN_CENTER)
        frame->MoveBy(std::round(-more / 2), 0);
    view->Invalidate();
}

}  // namespace BPrivate

using BPrivate::LineTable;
using BPrivate::TextData;

// ---- Lines

int32 BTextView::CountLines() const { return fText->body.Lines().CountLines(); }

int32 BTextView::CurrentLine() const { return LineAt(fText->selStart); }

void BTextView::GoToLine(int32 lineNumber)
{
    const int32 offset = OffsetAt(std::clamp(lineNumber, int32(0), CountLines() - 1));
    fText->SelectFrom(offset, offset);
}

int32 BTextView::LineAt(int32 offset) const { return fText->LineOf(fText->Clamp(offset)).index; }

int32 BTextView::LineAt(BPoint point) const
{
    return fText->body.Lines().AtHeight(double(point.y - fText->textRect.top)).index;
}

BPoint BTextView::PointAt(int32 offset, float* _height) const
{
    const BRect caret = fText->CaretRect(fText->Clamp(offset));
    if (_height != nullptr)
        *_height = caret.Height() + 1;
    return caret.LeftTop();
}

int32 BTextView::OffsetAt(BPoint point) const
{
    const TextData& text = *fText;
    const double y = double(point.y - text.textRect.top);
    if (!(y >= 0))
        return text.body.OffsetAt(text.body.Lines().At(0), point.x - text.textRect.left);
    const LineTable::Place line = text.body.Lines().AtHeight(y);
    return text.body.OffsetAt(line, point.x - text.Left(line));
}

int32 BTextView::OffsetAt(int32 line) const
{
    return line >= CountLines() ? TextLength()
                                : fText->body.Lines().At(std::max(line, int32(0))).offset;
}

float BTextView::LineWidth(int32 lineNumber) const
{
    return lineNumber < 0 || lineNumber >= CountLines()
               ? 0
               : fText->body.Lines().At(lineNumber).line.width;
}

float BTextView::LineHeight(int32 lineNumber) const
{
    return fText->body.Lines().At(std::max(lineNumber, int32(0))).line.height;
}

float BTextView::TextHeight(int32 startLine, int32 endLine) const
{
    const int32 last = CountLines() - 1;
    startLine = std::clamp(startLine, int32(0), last);
    endLine = std::clamp(endLine, int32(0), last);
    if (startLine > endLine)
        std::swap(startLine, endLine);
    const LineTable::Place end = fText->body.Lines().At(endLine);
    return float(end.top + double(end.line.height) - fText->body.Lines().At(startLine).top);
}

void BTextView::GetTextRegion(int32 startOffset, int32 endOffset, BRegion* outRegion) const
{
    if (outRegion == nullptr)
        return;
    outRegion->MakeEmpty();
    const float all = 1e9f;
    fText->EachRect(fText->Clamp(startOffset), fText->Clamp(endOffset), BRect(-all, -all, all, all),
                    [&](BRect rect) { outRegion->Include(rect); });
}

// ---- Words

void BTextView::FindWord(int32 offset, int32* _fromOffset, int32* _toOffset)
{
    using server::CharacterClass;
    using server::ClassOf;
    const BPrivate::TextBody& body = fText->body;
    offset = body.Aligned(fText->Clamp(offset));
    int32 from = offset, to = offset;
    const uint32 code = offset < body.Length() ? body.CharacterAt(offset) : 0;
    const CharacterClass kind = offset < body.Length() ? ClassOf(code) : CharacterClass::Blank;
    if (kind != CharacterClass::LineFeed && offset < body.Length()) {
        // Signs stand alone.
        const bool runs = kind != CharacterClass::Open && kind != CharacterClass::Close;
        to = body.Next(offset);
        while (runs && to < body.Length() && ClassOf(body.CharacterAt(to)) == kind)
            to = body.Next(to);
        while (runs && from > 0 && ClassOf(body.CharacterAt(body.Previous(from))) == kind)
            from = body.Previous(from);
    }
    if (_fromOffset != nullptr)
        *_fromOffset = from;
    if (_toOffset != nullptr)
        *_toOffset = to;
}

bool BTextView::CanEndLine(int32 offset)
{
    const BPrivate::TextBody& body = fText->body;
    if (offset < 0 || offset >= body.Length())
        return false;
    const uint8 byte = body.Buffer().At(offset);
    if (byte == ' ' || byte == '\n' || byte == '\t')
        return true;
    int32 end;
    const uint32 code = body.CharacterAt(offset, &end);
    if (end >= body.Length())
        return true;
    return server::MayBreak(offset > 0 ? body.CharacterBefore(offset) : 0, code,
                            body.CharacterAt(end));
}

// ---- Scrolling

void BTextView::ScrollToOffset(int32 offset)
{
    TextData& text = *fText;
    if (Window() == nullptr)
        return;
    const BRect bounds = Bounds();
    BRect caret = text.CaretRect(text.Clamp(offset));
    BPoint to = bounds.LeftTop();
    // The first and the last line come with what is above and below them.
    if (caret.top <= text.textRect.top)
        caret.top = std::min(caret.top, 0.0f);
    if (caret.top < bounds.top || caret.Height() > bounds.Height())
        to.y = caret.top;
    else if (caret.bottom > bounds.bottom)
        to.y = caret.bottom - bounds.Height();
    const float margin = std::min(bounds.Width() / 4, 24.0f);
    if (!text.wraps || text.textRect.right > bounds.Width()) {
        if (caret.left < bounds.left)
            to.x = caret.left <= text.textRect.left ? 0 : std::max(caret.left - margin, 0.0f);
        else if (caret.left > bounds.right)
            to.x = caret.left - bounds.Width() + margin;
    }
    if (to != bounds.LeftTop())
        ScrollTo(BPoint(std::floor(to.x), std::ceil(to.y)));
}

void BTextView::ScrollToSelection() { ScrollToOffset(fText->lead); }
