// Boxes around groups of views.

#include <Box.h>

#include <Message.h>
#include <Window.h>

#include <algorithm>
#include <cmath>

#include <interface/controls/ControlPrivate.h>
#include <interface/view/ViewPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::Look;

static const char* const kLabelView = "_lblview";

BBox::BBox(BRect frame, const char* name, uint32 resizingMode, uint32 flags, border_style border)
    : BView(frame, name, resizingMode, flags | B_WILL_DRAW | B_FULL_UPDATE_ON_RESIZE),
      fStyle(border)
{
    SetFont(be_bold_font);
}

BBox::BBox(const char* name, uint32 flags, border_style border, BView* child)
    : BBox(BRect(), name, B_FOLLOW_LEFT_TOP, flags, border)
{
    if (child == nullptr)
        return;
    const BRect inner = InnerFrame();  // of no size
    child->MoveTo(inner.LeftTop());
    ResizeTo(child->Bounds().Width() - inner.Width() + Bounds().Width(),
             child->Bounds().Height() - inner.Height() + Bounds().Height());
    AddChild(child);
}

BBox::BBox(border_style border, BView* child)
    : BBox(nullptr, B_WILL_DRAW | B_FRAME_EVENTS | B_NAVIGABLE_JUMP, border, child)
{
}

BBox::BBox(BMessage* archive) : BView(archive), fStyle(B_FANCY_BORDER)
{
    if (archive == nullptr)
        return;
    fStyle = BPrivate::enum_up_to(archive->GetInt32("_style", fStyle), B_NO_BORDER, fStyle);
    const char* label;
    if (archive->FindString("_label", &label) == B_OK)
        SetLabel(label);
    bool has_view;
    if (archive->FindBool(kLabelView, &has_view) == B_OK && has_view)
        fLabelView = ChildAt(0);
}

BBox::~BBox() = default;

BArchivable* BBox::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BBox") ? new (std::nothrow) BBox(archive) : nullptr;
}

status_t BBox::Archive(BMessage* archive, bool deep) const
{
    status_t status = BView::Archive(archive, deep);
    if (status == B_OK && fHasLabel)
        status = archive->AddString("_label", fLabel.String());
    if (status == B_OK && deep && LabelView() != nullptr)
        status = archive->AddBool(kLabelView, true);
    if (status == B_OK && fStyle != B_FANCY_BORDER)
        status = archive->AddInt32("_style", fStyle);
    return status;
}

void BBox::SetBorder(border_style border)
{
    if (border == fStyle)
        return;
    fStyle = border;
    Invalidate();
}

border_style BBox::Border() const { return fStyle; }

// --- the label

// The view may have been taken out or deleted by whoever knows it.
BView* BBox::LabelView() const
{
    for (BView* child = ChildAt(0); child != nullptr; child = child->NextSibling()) {
        if (child == fLabelView)
            return child;
    }
    return nullptr;
}

const char* BBox::Label() const { return fHasLabel ? fLabel.String() : nullptr; }

// No label is left; a view that was one is out of the box.
BView* BBox::_TakeLabelView()
{
    BView* view = LabelView();
    if (view != nullptr)
        view->RemoveSelf();
    fLabelView = nullptr;
    fLabel = "";
    fHasLabel = false;
    Invalidate();
    return view;
}

void BBox::SetLabel(const char* string)
{
    BPrivate::ViewLock lock(this);
    delete _TakeLabelView();
    if (string == nullptr)
        return;
    fLabel = string;
    fHasLabel = true;
}

status_t BBox::SetLabel(BView* viewLabel)
{
    BPrivate::ViewLock lock(this);
    if (viewLabel != nullptr && viewLabel == LabelView())
        return B_OK;
    if (viewLabel != nullptr && (viewLabel->Parent() != nullptr || viewLabel->Window() != nullptr))
        return B_BAD_VALUE;
    BView* before = _TakeLabelView();
    if (viewLabel == nullptr)
        return B_OK;
    delete before;
    fLabelView = viewLabel;
    viewLabel->MoveTo(Look(this).GroupLabelStart(), 0);
    AddChild(viewLabel, ChildAt(0));
    return B_OK;
}

// --- measures

BRect BBox::_LabelFrame() const
{
    if (const BView* view = LabelView())
        return view->Frame();
    if (!fHasLabel)
        return BRect();
    const Look look(const_cast<BBox*>(this));
    const float start = look.GroupLabelStart();
    return BRect(start, 0, start + look.TextWidth(fLabel.String()) - 1, look.TextHeight());
}

float BBox::_LabelHeight() const
{
    const BRect frame = _LabelFrame();
    return frame.IsValid() ? frame.bottom + 1 : 0;
}

float BBox::TopBorderOffset()
{
    return std::max(0.0f, std::floor((_LabelHeight() - Look::GroupInset(fStyle)) / 2));
}

BRect BBox::InnerFrame()
{
    const float inset = Look::GroupInset(fStyle);
    BRect inner = Bounds().InsetByCopy(inset, inset);
    inner.top = Bounds().top + std::max(inset, _LabelHeight());
    return inner;
}

void BBox::GetPreferredSize(float* _width, float* _height)
{
    const float inset = Look::GroupInset(fStyle);
    BRect all = _LabelFrame();
    for (BView* child = ChildAt(0); child != nullptr; child = child->NextSibling())
        all = all.IsValid() ? all | child->Frame() : child->Frame();
    if (_width != nullptr)
        *_width = all.IsValid() ? all.right + inset : 2 * inset;
    if (_height != nullptr)
        *_height = all.IsValid() ? all.bottom + inset : 2 * inset;
}

// --- hooks

void BBox::AttachedToWindow() { BPrivate::adopt_ground(this); }

void BBox::Draw(BRect)
{
    const Look look(this);
    BRect frame = Bounds();
    frame.top += TopBorderOffset();
    look.DrawGroup(frame, fStyle);
    if (!fHasLabel && LabelView() == nullptr)
        return;
    BRect label = _LabelFrame();
    const float gap = std::ceil(look.LabelSpacing() / 2);
    label.right = std::min(label.right, frame.right - look.GroupLabelStart());
    look.Fill(label.InsetByCopy(-gap, 0), look.Base());
    if (fHasLabel)
        look.DrawLabel(fLabel.String(), label, B_ALIGN_LEFT, 0);
}
