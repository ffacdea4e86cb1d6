// Frames with scroll bars around another view.

#include <ScrollView.h>

#include <Message.h>
#include <Window.h>

#include <interface/controls/ControlPrivate.h>
#include <interface/view/ViewPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::Look;

static const char* const kHorizontalName = "_HSB_";
static const char* const kVerticalName = "_VSB_";
enum : uint32 { kLeft = 1, kRight = 2, kTop = 4, kBottom = 8, kAllSides = 15 };
static const float kFirstRange = 1000;  // until the target says what there is to be scrolled

BScrollView::BScrollView(const char* name, BView* target, uint32 resizingMode, uint32 flags,
                         bool horizontal, bool vertical, border_style border)
    : BView(BRect(0, 0, 16, 16), name, resizingMode, flags | B_WILL_DRAW | B_FULL_UPDATE_ON_RESIZE),
      fTarget(nullptr),
      fBorder(border),
      fBorders(kAllSides)
{
    _Init(target, horizontal, vertical);
}

BScrollView::BScrollView(const char* name, BView* target, uint32 flags, bool horizontal,
                         bool vertical, border_style border)
    : BView(name, flags | B_WILL_DRAW | B_FULL_UPDATE_ON_RESIZE),
      fTarget(nullptr),
      fBorder(border),
      fBorders(kAllSides)
{
    _Init(target, horizontal, vertical);
}

void BScrollView::_Init(BView* target, bool horizontal, bool vertical)
{
    const BRect inner = target != nullptr ? target->Frame() : BRect(0, 0, 16, 16);
    if (horizontal)
        fHorizontal =
            new BScrollBar(BRect(), kHorizontalName, nullptr, 0, kFirstRange, B_HORIZONTAL);
    if (vertical)
        fVertical = new BScrollBar(BRect(), kVerticalName, nullptr, 0, kFirstRange, B_VERTICAL);
    const BRect frame = _FrameAround(inner);
    MoveTo(frame.LeftTop());
    ResizeTo(frame.Width(), frame.Height());
    _PlaceBars(inner.OffsetByCopy(-frame.left, -frame.top));
    for (BScrollBar* bar : {fHorizontal, fVertical}) {
        if (bar != nullptr)
            AddChild(bar);
    }
    if (target != nullptr)
        SetTarget(target);
}

BScrollView::BScrollView(BMessage* archive)
    : BView(archive), fTarget(nullptr), fBorder(B_FANCY_BORDER), fBorders(kAllSides)
{
    if (archive == nullptr)
        return;
    fBorder = BPrivate::enum_up_to(archive->GetInt32("_style", fBorder), B_NO_BORDER, fBorder);
    int32 sides;
    if (archive->FindInt32("_borders", &sides) == B_OK)
        fBorders = static_cast<uint32>(sides) & kAllSides;
    fHorizontal = dynamic_cast<BScrollBar*>(FindView(kHorizontalName));
    fVertical = dynamic_cast<BScrollBar*>(FindView(kVerticalName));
    bool has_none;
    if (archive->FindBool("_no_target_", &has_none) != B_OK || !has_none)
        SetTarget(ChildAt(0));
}

BScrollView::~BScrollView() = default;

BArchivable* BScrollView::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BScrollView") ? new (std::nothrow) BScrollView(archive)
                                                          : nullptr;
}

status_t BScrollView::Archive(BMessage* archive, bool deep) const
{
    status_t status = BView::Archive(archive, deep);
    if (status == B_OK && fBorder != B_FANCY_BORDER)
        status = archive->AddInt32("_style", fBorder);
    if (status == B_OK && fBorders != kAllSides)
        status = archive->AddInt32("_borders", static_cast<int32>(fBorders));
    if (status == B_OK && (Target() == nullptr || !deep))
        status = archive->AddBool("_no_target_", true);
    return status;
}

status_t BScrollView::AllUnarchived(const BMessage* archive)
{
    return BView::AllUnarchived(archive);
}

// --- where the parts are

// A rectangle that is larger at the sides which are among `sides`, or smaller.
static BRect grown(BRect rect, uint32 sides, float by)
{
    rect.left -= (sides & kLeft) != 0 ? by : 0;
    rect.right += (sides & kRight) != 0 ? by : 0;
    rect.top -= (sides & kTop) != 0 ? by : 0;
    rect.bottom += (sides & kBottom) != 0 ? by : 0;
    return rect;
}

BRect BScrollView::_FrameAround(BRect target) const
{
    const float gap = fBorder == B_NO_BORDER ? 1 : 0;
    BRect frame = grown(target, fBorders, Look::BorderWidth(fBorder));
    if (fVertical != nullptr)
        frame.right += B_V_SCROLL_BAR_WIDTH + gap;
    if (fHorizontal != nullptr)
        frame.bottom += B_H_SCROLL_BAR_HEIGHT + gap;
    return frame;
}

// What lies inside of border and bars.
BRect BScrollView::_Inside(BRect frame) const
{
    const float gap = fBorder == B_NO_BORDER ? 1 : 0;
    BRect inner = grown(frame, fBorders, -Look::BorderWidth(fBorder));
    if (fVertical != nullptr)
        inner.right -= B_V_SCROLL_BAR_WIDTH + gap;
    if (fHorizontal != nullptr)
        inner.bottom -= B_H_SCROLL_BAR_HEIGHT + gap;
    return inner;
}

// The bars lie over the inner line of the border.
void BScrollView::_PlaceBars(BRect target)
{
    if (fHorizontal != nullptr) {
        fHorizontal->MoveTo(target.left - 1, target.bottom + 1);
        fHorizontal->ResizeTo(target.Width() + 2, B_H_SCROLL_BAR_HEIGHT);
    }
    if (fVertical != nullptr) {
        fVertical->MoveTo(target.right + 1, target.top - 1);
        fVertical->ResizeTo(B_V_SCROLL_BAR_WIDTH, target.Height() + 2);
    }
}

// The target stays where it is; the frame changes around it.
void BScrollView::_Change(border_style border, uint32 borders)
{
    if (border == fBorder && borders == fBorders)
        return;
    BPrivate::ViewLock lock(this);
    const BRect inner = _Inside(Frame());
    fBorder = border;
    fBorders = borders;
    const BRect frame = _FrameAround(inner);
    const BRect place = inner.OffsetByCopy(-frame.left, -frame.top);
    BView* target = Target();
    const uint32 mode = target != nullptr ? target->ResizingMode() : 0;
    if (target != nullptr)
        target->SetResizingMode(B_FOLLOW_NONE);
    MoveTo(frame.LeftTop());
    ResizeTo(frame.Width(), frame.Height());
    if (target != nullptr) {
        target->MoveTo(place.LeftTop());
        target->SetResizingMode(mode);
    }
    _PlaceBars(place);
    SetBorderHighlighted(fHighlighted);
    Invalidate();
}

void BScrollView::SetBorder(border_style border) { _Change(border, fBorders); }
void BScrollView::SetBorders(uint32 borders) { _Change(fBorder, borders & kAllSides); }
uint32 BScrollView::Borders() const { return fBorders; }
border_style BScrollView::Border() const { return fBorder; }

void BScrollView::GetPreferredSize(float* _width, float* _height)
{
    BRect frame(0, 0, 16, 16);
    if (BView* target = Target()) {
        float width, height;
        target->GetPreferredSize(&width, &height);
        frame.Set(0, 0, width, height);
    }
    frame = _FrameAround(frame);
    if (_width != nullptr)
        *_width = frame.Width();
    if (_height != nullptr)
        *_height = frame.Height();
}

// --- the target

// It may have been taken out or deleted by whoever knows it.
BView* BScrollView::Target() const
{
    for (BView* child = ChildAt(0); child != nullptr; child = child->NextSibling()) {
        if (child == fTarget)
            return child;
    }
    return nullptr;
}

void BScrollView::SetTarget(BView* target)
{
    BPrivate::ViewLock lock(this);
    BView* before = Target();
    if (before == target && before != nullptr)
        target = before;
    else if (before != nullptr) {
        before->TargetedByScrollView(nullptr);
        before->RemoveSelf();
    }
    fTarget = target;
    if (target != nullptr && target->Parent() != this) {
        target->MoveTo(_Inside(Bounds()).LeftTop());
        AddChild(target, ChildAt(0));
    }
    for (BScrollBar* bar : {fHorizontal, fVertical}) {
        if (bar != nullptr)
            bar->SetTarget(target);
    }
    if (target != nullptr)
        target->TargetedByScrollView(this);
}

BScrollBar* BScrollView::ScrollBar(orientation direction) const
{
    return direction == B_HORIZONTAL ? fHorizontal : direction == B_VERTICAL ? fVertical : nullptr;
}

// --- drawing

void BScrollView::AttachedToWindow() { BPrivate::adopt_ground(this); }

void BScrollView::Draw(BRect)
{
    const bool focused = fHighlighted && Window() != nullptr && Window()->IsActive();
    // The sides that have none are outside of what shows.
    const BRect frame = grown(Bounds(), kAllSides & ~fBorders, Look::BorderWidth(fBorder));
    Look(this).DrawBorder(frame, fBorder, focused ? uint32(Look::kFocused) : 0);
}

void BScrollView::WindowActivated(bool active)
{
    BView::WindowActivated(active);
    if (fHighlighted)
        Invalidate();
}

status_t BScrollView::SetBorderHighlighted(bool highlight)
{
    if (highlight && fBorder != B_FANCY_BORDER)
        return B_ERROR;
    if (highlight != fHighlighted) {
        fHighlighted = highlight;
        Invalidate();
    }
    return B_OK;
}

bool BScrollView::IsBorderHighlighted() const { return fHighlighted; }

// --- the rest is the view's

void BScrollView::AllAttached() { BView::AllAttached(); }
void BScrollView::AllDetached() { BView::AllDetached(); }
void BScrollView::DetachedFromWindow() { BView::DetachedFromWindow(); }
void BScrollView::FrameMoved(BPoint newPosition) { BView::FrameMoved(newPosition); }
void BScrollView::FrameResized(float width, float height) { BView::FrameResized(width, height); }
void BScrollView::MessageReceived(BMessage* message) { BView::MessageReceived(message); }
void BScrollView::MouseDown(BPoint where) { BView::MouseDown(where); }
void BScrollView::MouseUp(BPoint where) { BView::MouseUp(where); }

void BScrollView::MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage)
{
    BView::MouseMoved(where, code, dragMessage);
}

void BScrollView::ResizeToPreferred() { BView::ResizeToPreferred(); }
void BScrollView::MakeFocus(bool focus) { BView::MakeFocus(focus); }
BSize BScrollView::MinSize() { return BView::MinSize(); }
BSize BScrollView::MaxSize() { return BView::MaxSize(); }
BSize BScrollView::PreferredSize() { return BView::PreferredSize(); }

BHandler* BScrollView::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                        int32 what, const char* property)
{
    return BView::ResolveSpecifier(message, index, specifier, what, property);
}

status_t BScrollView::GetSupportedSuites(BMessage* message)
{
    return BView::GetSupportedSuites(message);
}

status_t BScrollView::Perform(perform_code d, void* arg) { return BView::Perform(d, arg); }
void BScrollView::LayoutInvalidated(bool descendants) { BView::LayoutInvalidated(descendants); }
void BScrollView::DoLayout() { BView::DoLayout(); }
