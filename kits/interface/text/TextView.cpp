// BTextView: construction, settings, and the hooks of a view.

#include <TextView.h>

#include <Bitmap.h>
#include <Cursor.h>
#include <InterfaceDefs.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <new>

#include "interface/text/TextData.h"
#include "interface/view/ViewPrivate.h"

using BPrivate::LineChange;
using BPrivate::TextData;
using BPrivate::TextStyle;
using BPrivate::ViewRef;

static const uint32 kTextFlags = B_FRAME_EVENTS | B_PULSE_NEEDED | B_INPUT_METHOD_AWARE;
static const bigtime_t kPulse_us = 500'000;

// ---- Construction

namespace BPrivate {

TextData::TextData(BTextView* view, const BFont& font, rgb_color color)
    : view(view), body(font, color), textRect(view->Bounds())
{
    body.canEndLine = [view](int32 offset) { return view->CanEndLine(offset); };
    view->SetViewColor(ui_color(B_DOCUMENT_BACKGROUND_COLOR));
    view->SetLowColor(view->ViewColor());
}

}  // namespace BPrivate

static std::unique_ptr<TextData> make_text(BTextView* view, const BFont* font,
                                           const rgb_color* color)
{
    auto text =
        std::make_unique<TextData>(view, font != nullptr ? *font : *be_plain_font,
                                   color != nullptr ? *color : ui_color(B_DOCUMENT_TEXT_COLOR));
    text->systemColors = color == nullptr;
    return text;
}

BTextView::BTextView(BRect frame, const char* name, BRect textRect, uint32 resizeMask, uint32 flags)
    : BTextView(frame, name, textRect, nullptr, nullptr, resizeMask, flags)
{
}

BTextView::BTextView(BRect frame, const char* name, BRect textRect, const BFont* initialFont,
                     const rgb_color* initialColor, uint32 resizeMask, uint32 flags)
    : BView(frame, name, resizeMask, flags | kTextFlags),
      fText(make_text(this, initialFont, initialColor))
{
    SetTextRect(textRect);
}

BTextView::BTextView(const char* name, uint32 flags) : BTextView(name, nullptr, nullptr, flags) {}

BTextView::BTextView(const char* name, const BFont* initialFont, const rgb_color* initialColor,
                     uint32 flags)
    : BView(name, flags | kTextFlags), fText(make_text(this, initialFont, initialColor))
{
    fText->followsView = true;
    fText->FollowInsets();
}

BTextView::~BTextView() = default;

// ---- Hooks of the view

void BTextView::AttachedToWindow()
{
    BView::AttachedToWindow();
    const bigtime_t pulse = Window()->PulseRate();
    if (pulse <= 0 || pulse > kPulse_us)
        Window()->SetPulseRate(kPulse_us);
    const BCursor beam(B_CURSOR_ID_I_BEAM);
    SetViewCursor(&beam);
    fText->Resized();
    fText->Activate(IsFocus() && Window()->IsActive());
}

void BTextView::DetachedFromWindow()
{
    fText->scroller.reset();
    fText->press = TextData::Press::None;
    fText->Activate(false);
    BView::DetachedFromWindow();
}

void BTextView::AllAttached() { BView::AllAttached(); }
void BTextView::AllDetached() { BView::AllDetached(); }

void BTextView::WindowActivated(bool active)
{
    BView::WindowActivated(active);
    fText->Activate(active && IsFocus());
}

void BTextView::MakeFocus(bool focus)
{
    BView::MakeFocus(focus);
    const bool active = IsFocus() && Window() != nullptr && Window()->IsActive();
    fText->Activate(active);
}

void BTextView::Pulse()
{
    TextData& text = *fText;
    if (text.active && text.editable && text.selStart == text.selEnd &&
        system_time() - text.blinkedAt >= kPulse_us - 20'000)
        text.SetCaretOn(!text.caretOn);
}

void BTextView::FrameResized(float newWidth, float newHeight)
{
    BView::FrameResized(newWidth, newHeight);
    fText->FollowInsets();
    fText->UpdateBars();
}

status_t BTextView::Perform(perform_code code, void* data) { return BView::Perform(code, data); }

// ---- Size

void BTextView::ResizeToPreferred()
{
    float width, height;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

void BTextView::GetPreferredSize(float* _width, float* _height)
{
    BView::GetPreferredSize(_width, _height);
}

// Room for a line, or for what there is to be read.
BSize BTextView::MinSize()
{
    const float line = std::ceil(LineHeight(0));
    return BSize(line * 3 + fText->insets.left + fText->insets.right,
                 line + fText->insets.top + fText->insets.bottom - 1);
}

BSize BTextView::MaxSize() { return BSize(B_SIZE_UNLIMITED, B_SIZE_UNLIMITED); }

BSize BTextView::PreferredSize() { return BView::PreferredSize(); }

bool BTextView::HasHeightForWidth() { return !IsEditable(); }

void BTextView::GetHeightForWidth(float width, float* min, float* max, float* preferred)
{
    BView::GetHeightForWidth(width, min, max, preferred);
}

void BTextView::LayoutInvalidated(bool descendants) { BView::LayoutInvalidated(descendants); }

void BTextView::DoLayout() { BView::DoLayout(); }

// ---- Settings

void BTextView::AdoptSystemColors()
{
    SetViewColor(ui_color(B_DOCUMENT_BACKGROUND_COLOR));
    SetLowColor(ViewColor());
    const rgb_color color = ui_color(B_DOCUMENT_TEXT_COLOR);
    const BPrivate::UnrecordedScope unrecorded(*fText);
    SetFontAndColor(0, TextLength(), nullptr, 0, &color);
    fText->systemColors = true;
}

static bool is_same(rgb_color a, rgb_color b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
}

bool BTextView::HasSystemColors() const
{
    return fText->systemColors && is_same(ViewColor(), ui_color(B_DOCUMENT_BACKGROUND_COLOR));
}

// Rectangles that no text has room in are as good as any; numbers stay numbers.
static float sane(float value, float otherwise)
{
    const float limit = 1e9f;
    return std::isfinite(value) ? std::clamp(value, -limit, limit) : otherwise;
}

void BTextView::SetTextRect(BRect rect)
{
    TextData& text = *fText;
    text.textRect =
        BRect(sane(rect.left, 0), sane(rect.top, 0), sane(rect.right, 0), sane(rect.bottom, 0));
    const BRect bounds = Bounds().OffsetToCopy(B_ORIGIN);
    text.insets = BRect(text.textRect.left, text.textRect.top, bounds.right - text.textRect.right,
                        bounds.bottom - text.textRect.bottom);
    text.Relayout();
}

BRect BTextView::TextRect() const
{
    BRect rect = fText->textRect;
    rect.bottom = rect.top + std::ceil(float(fText->body.Lines().Height()));
    return rect;
}

void BTextView::SetInsets(float left, float top, float right, float bottom)
{
    TextData& text = *fText;
    text.insets = BRect(sane(left, 0), sane(top, 0), sane(right, 0), sane(bottom, 0));
    text.followsView = true;
    text.FollowInsets();
}

void BTextView::GetInsets(float* _left, float* _top, float* _right, float* _bottom) const
{
    const BRect& insets = fText->insets;
    if (_left != nullptr)
        *_left = insets.left;
    if (_top != nullptr)
        *_top = insets.top;
    if (_right != nullptr)
        *_right = insets.right;
    if (_bottom != nullptr)
        *_bottom = insets.bottom;
}

void BTextView::SetStylable(bool stylable)
{
    TextData& text = *fText;
    if (text.stylable && !stylable && text.body.Runs().CountRuns() > 1) {
        const int32 style = text.body.Runs().At(0).style;
        text.body.SetOnlyStyle(style);
        text.Relayout();
    }
    text.stylable = stylable;
}

bool BTextView::IsStylable() const { return fText->stylable; }

void BTextView::SetTabWidth(float width)
{
    width = std::max(sane(width, 0), 0.0f);
    if (width == fText->body.TabWidth())
        return;
    fText->body.SetTabWidth(width);
    fText->Relayout();
}

float BTextView::TabWidth() const { return fText->body.TabWidth(); }

void BTextView::MakeSelectable(bool selectable)
{
    if (fText->selectable == selectable)
        return;
    fText->selectable = selectable;
    fText->InvalidateRange(fText->selStart, fText->selEnd);
}

bool BTextView::IsSelectable() const { return fText->selectable; }

void BTextView::MakeEditable(bool editable)
{
    fText->wantsEditable = editable;
    fText->ShowEditable();
}

bool BTextView::IsEditable() const { return fText->editable; }

void BTextView::_SetDisabled(bool disabled)
{
    fText->disabled = disabled;
    fText->ShowEditable();
}

void BTextView::SetWordWrap(bool wrap)
{
    if (fText->wraps == wrap)
        return;
    fText->wraps = wrap;
    fText->Relayout();
}

bool BTextView::DoesWordWrap() const { return fText->wraps; }

void BTextView::SetMaxBytes(int32 max)
{
    TextData& text = *fText;
    text.maxBytes = std::max(max, int32(0));
    if (text.body.Length() > text.maxBytes)
        text.DeleteRange(text.body.Aligned(text.maxBytes), text.body.Length(), B_UNDO_CLEAR);
}

int32 BTextView::MaxBytes() const { return fText->maxBytes; }

void BTextView::DisallowChar(uint32 character) { fText->disallowed.insert(character); }

void BTextView::AllowChar(uint32 character) { fText->disallowed.erase(character); }

void BTextView::SetAlignment(alignment align)
{
    if (fText->align == align)
        return;
    fText->align = align;
    Invalidate();
}

alignment BTextView::Alignment() const { return fText->align; }

void BTextView::SetAutoindent(bool state) { fText->autoindent = state; }

bool BTextView::DoesAutoindent() const { return fText->autoindent; }

void BTextView::SetColorSpace(color_space colors) { fText->colors = colors; }

color_space BTextView::ColorSpace() const { return fText->colors; }

void BTextView::MakeResizable(bool resize, BView* resizeView)
{
    TextData& text = *fText;
    text.resizable = resize;
    text.resizeView = resize ? resizeView : nullptr;
    if (resize)
        text.wraps = false;
    text.Relayout();
}

bool BTextView::IsResizable() const { return fText->resizable; }

void BTextView::SetDoesUndo(bool undo) { fText->history.Enable(undo); }

bool BTextView::DoesUndo() const { return fText->history.Enabled(); }

void BTextView::HideTyping(bool enabled)
{
    if (fText->hidesTyping == enabled)
        return;
    fText->hidesTyping = enabled;
    // An input method would show what is typed.
    fText->EndComposition();
    SetFlags(enabled ? Flags() & ~B_INPUT_METHOD_AWARE : Flags() | B_INPUT_METHOD_AWARE);
    fText->body.SetHidden(enabled);
    fText->Relayout();
}

bool BTextView::IsTypingHidden() const { return fText->hidesTyping; }
