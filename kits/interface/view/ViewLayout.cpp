// Preferred sizes, and the calls of a layout system, which this host's views take no part in: sizes
// are kept and told, and move nothing.

#include <View.h>

#include <interface/view/ViewPrivate.h>

void BView::GetPreferredSize(float* _width, float* _height)
{
    if (_width != nullptr)
        *_width = fData->bounds.Width();
    if (_height != nullptr)
        *_height = fData->bounds.Height();
}

void BView::ResizeToPreferred()
{
    float width = 0, height = 0;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

// `set` where it has a value, else `otherwise`.
static BSize chosen(BSize set, BSize otherwise)
{
    return BSize(set.IsWidthSet() ? set.width : otherwise.width,
                 set.IsHeightSet() ? set.height : otherwise.height);
}

BSize BView::MinSize()
{
    float width = 0, height = 0;
    GetPreferredSize(&width, &height);
    return chosen(fData->Extras().minSize, BSize(width, height));
}

BSize BView::MaxSize()
{
    return chosen(fData->Extras().maxSize, BSize(B_SIZE_UNLIMITED, B_SIZE_UNLIMITED));
}

BSize BView::PreferredSize()
{
    float width = 0, height = 0;
    GetPreferredSize(&width, &height);
    return chosen(fData->Extras().preferredSize, BSize(width, height));
}

BAlignment BView::LayoutAlignment() { return fData->Extras().alignment; }

void BView::SetExplicitMinSize(BSize size) { fData->NeedExtras().minSize = size; }

void BView::SetExplicitMaxSize(BSize size) { fData->NeedExtras().maxSize = size; }

void BView::SetExplicitPreferredSize(BSize size) { fData->NeedExtras().preferredSize = size; }

void BView::SetExplicitSize(BSize size)
{
    BPrivate::ViewExtras& extras = fData->NeedExtras();
    extras.minSize = extras.maxSize = extras.preferredSize = size;
}

void BView::SetExplicitAlignment(BAlignment alignment)
{
    fData->NeedExtras().alignment = alignment;
}

BSize BView::ExplicitMinSize() const { return fData->Extras().minSize; }

BSize BView::ExplicitMaxSize() const { return fData->Extras().maxSize; }

BSize BView::ExplicitPreferredSize() const { return fData->Extras().preferredSize; }

BAlignment BView::ExplicitAlignment() const { return fData->Extras().alignment; }

bool BView::HasHeightForWidth() { return false; }

void BView::GetHeightForWidth(float, float* min, float* max, float* preferred)
{
    if (min != nullptr)
        *min = MinSize().height;
    if (max != nullptr)
        *max = MaxSize().height;
    if (preferred != nullptr)
        *preferred = PreferredSize().height;
}

void BView::SetLayout(BLayout* layout) { fData->NeedExtras().layout = layout; }

BLayout* BView::GetLayout() const { return fData->Extras().layout; }

void BView::EnableLayoutInvalidation()
{
    if (fData->Extras().layoutDisabled > 0)
        fData->extras->layoutDisabled--;
}

void BView::DisableLayoutInvalidation() { fData->NeedExtras().layoutDisabled++; }

bool BView::IsLayoutInvalidationDisabled() { return fData->Extras().layoutDisabled > 0; }

bool BView::IsLayoutValid() const { return true; }

void BView::InvalidateLayout(bool) {}
void BView::ResetLayoutInvalidation() {}
void BView::Layout(bool) {}
void BView::Relayout() {}
void BView::LayoutInvalidated(bool) {}
void BView::DoLayout() {}
void BView::LayoutChanged() {}
