// Frames with scroll bars around another view.

#include <ScrollView.h>

#include <Message.h>
#include <Window.h>

#include <interface/controls/ControlPrivate.h>
#include <interface/view/ViewPrivate.h>

using BPrivate::Look;

static const char* const kHorizontalName = "_HSB_";
static const char* const kVerticalName = "_VSB_";
static const float kFirstRange = 1000;  // until the target says what there is to be scrolled

BScrollView::BScrollView(const char* name, BView* target, uint32 resizingMode, uint32 flags,
                         bool horizontal, bool vertical, border_style border)
    : BView(BRect(0, 0, 16, 16), name, resizingMode, flags | B_WILL_DRAW | B_FULL_UPDATE_ON_RESIZE),
      fTarget(nullptr),
      fBorder(border)
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
    const float width = Look::BorderWidth(fBorder);
    _PlaceBars(inner.OffsetToCopy(width, width));
    for (BScrollBar* bar : {fHorizontal, fVertical}) {
        if (bar != nullptr)
            AddChild(bar);
    }
    if (target != nullptr)
        SetTarget(target);
}

BScrollView::BScrollView(BMessage* archive)
    : BView(archive), fTarget(nullptr), fBorder(B_FANCY_BORDER)
{
    if (archive == nullptr)
        return;
    int32 style;
    if (archive->FindInt32("_style", &style) == B_OK)
        fBorder = static_cast<border_style>(style);
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
    if (status == B_OK && (Target() == nullptr || !deep))
        status = archive->AddBool("_no_target_", true);
    return status;
}

// --- where the parts are

BRect BScrollView::_FrameAround(BRect target) const
{
    const float border = Look::BorderWidth(fBorder);
    const float gap = fBorder == B_NO_BORDER ? 1 : 0;
    BRect frame = target.InsetByCopy(-border, -border);
    if (fVertical != nullptr)
        frame.right += B_V_SCROLL_BAR_WIDTH + gap;
    if (fHorizontal != nullptr)
        frame.bottom += B_H_SCROLL_BAR_HEIGHT + gap;
    return frame;
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

void BScrollView::SetBorder(border_style border)
{
    if (border == fBorder)
        return;
    BPrivate::ViewLock lock(this);
    const float before = Look::BorderWidth(fBorder);
    const float width = Look::BorderWidth(border);
    // What lies inside of frame and bars, in the parent.
    BRect inner = Frame();
    const float gap = fBorder == B_NO_BORDER ? 1 : 0;
    inner.InsetBy(before, before);
    if (fVertical != nullptr)
        inner.right -= B_V_SCROLL_BAR_WIDTH + gap;
    if (fHorizontal != nullptr)
        inner.bottom -= B_H_SCROLL_BAR_HEIGHT + gap;
    fBorder = border;
    const BRect frame = _FrameAround(inner);
    BView* target = Target();
    const uint32 mode = target != nullptr ? target->ResizingMode() : 0;
    if (target != nullptr)
        target->SetResizingMode(B_FOLLOW_NONE);
    MoveTo(frame.LeftTop());
    ResizeTo(frame.Width(), frame.Height());
    if (target != nullptr) {
        target->MoveTo(width, width);
        target->SetResizingMode(mode);
    }
    _PlaceBars(inner.OffsetToCopy(width, width));
    SetBorderHighlighted(fHighlighted);
    Invalidate();
}

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
        const float width = Look::BorderWidth(fBorder);
        target->MoveTo(width, width);
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
    Look(this).DrawBorder(Bounds(), fBorder, focused ? uint32(Look::kFocused) : 0);
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
