// Frames and coordinates of views: moving, resizing, scrolling, hiding, and what has to be drawn
// anew for it.

#include <View.h>

#include <AppDefs.h>
#include <Message.h>
#include <Window.h>

#include <interface/geometry/RegionAccess.h>
#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>

#include <cmath>

namespace BPrivate {

bool ViewData::IsVisible() const
{
    for (const ViewData* data = this; data->hidden <= 0; data = data->parent->fData) {
        if (data->parent == nullptr)
            return data->isTop;
    }
    return false;
}

void ViewData::Offset(int32* x, int32* y) const
{
    double sumX = 0, sumY = 0;
    for (const ViewData* data = this;; data = data->parent->fData) {
        sumX -= data->bounds.left;
        sumY -= data->bounds.top;
        if (data->parent == nullptr)
            break;
        sumX += data->leftTop.x;
        sumY += data->leftTop.y;
    }
    const double limit = 1 << 30;
    *x = int32(std::clamp(sumX, -limit, limit));
    *y = int32(std::clamp(sumY, -limit, limit));
}

// Among many siblings all of the frame: to look at each costs more than to draw some of them.
void ViewData::InvalidateVisible(bool with_children) const
{
    if (canvas == nullptr || canvas->IsOffscreen())
        return;
    clipping_rect frame;
    if (with_children && parent != nullptr && parent->fData->children > kFewChildren) {
        if (ClippedFrame(&frame))
            canvas->Invalidate(frame);
        return;
    }
    BRegion region;
    if (Visible(&region, with_children))
        canvas->Invalidate(region);
}

void ViewData::TreeChanged()
{
    if (canvas != nullptr)
        canvas->NextGeneration();
    TellReader();
}

// How far an edge goes when the side it keeps its distance to moves.
static float edge_shift(uint32 side, float oldSize, float newSize)
{
    switch (side & 0xF) {
        case 3:
        case 4:
            return newSize - oldSize;
        case 5:  // rounded as places, not as steps, so that it comes back when the size does
            return std::floor(newSize / 2) - std::floor(oldSize / 2);
        default:
            return 0;
    }
}

void ViewPrivate::Follow(BView* child, float oldWidth, float oldHeight, float width, float height,
                         Repaint repaint)
{
    const ViewData& data = *child->fData;
    const uint32 mode = data.resizingMode;
    const float top = edge_shift(mode >> 12, oldHeight, height);
    const float left = edge_shift(mode >> 8, oldWidth, width);
    const float bottom = edge_shift(mode >> 4, oldHeight, height);
    const float right = edge_shift(mode, oldWidth, width);
    Reshape(child, BPoint(data.leftTop.x + left, data.leftTop.y + top),
            data.bounds.Width() + right - left, data.bounds.Height() + bottom - top, repaint);
}

static void tell(BView* view, ViewData& data, uint32 what)
{
    if ((data.flags & B_FRAME_EVENTS) == 0 || data.window == nullptr || data.canvas->IsOffscreen())
        return;
    bool& told = what == B_VIEW_MOVED ? data.moveTold : data.resizeTold;
    if (told)
        return;
    BMessage message(what);
    message.AddInt64("when", system_time());
    if (what == B_VIEW_MOVED) {
        message.AddPoint("where", data.leftTop);
    } else {
        message.AddInt32("width", int32(data.bounds.Width()));
        message.AddInt32("height", int32(data.bounds.Height()));
    }
    told = data.window.load()->PostMessage(&message, view) == B_OK;
}

void ViewPrivate::FrameChanged(BView* view, uint32 what)
{
    ViewData& data = *view->fData;
    (what == B_VIEW_MOVED ? data.moveTold : data.resizeTold) = false;
    if (what == B_VIEW_MOVED)
        view->FrameMoved(data.leftTop);
    else
        view->FrameResized(data.bounds.Width(), data.bounds.Height());
}

void ViewPrivate::Reshape(BView* view, BPoint leftTop, float width, float height, Repaint repaint)
{
    ViewData& data = *view->fData;
    const float oldWidth = data.bounds.Width(), oldHeight = data.bounds.Height();
    leftTop = whole_pixels(leftTop);
    width = whole_pixels(width);
    height = whole_pixels(height);
    const bool moves = leftTop != data.leftTop;
    const bool resizes = width != oldWidth || height != oldHeight;
    if (!moves && !resizes)
        return;
    BRegion before;
    const bool shows = repaint == Repaint::Yes && data.canvas != nullptr &&
                       !data.canvas->IsOffscreen() && data.IsVisible();
    if (shows)
        data.Visible(&before, true);
    data.leftTop = leftTop;
    data.bounds.right = data.bounds.left + width;
    data.bounds.bottom = data.bounds.top + height;
    data.TreeChanged();
    if (shows) {
        BRegion after;
        data.Visible(&after, true);
        if (moves) {
            before.Include(&after);
            data.canvas->Invalidate(before);
        } else {
            before.ExclusiveInclude(&after);
            data.canvas->Invalidate(before);
            if ((data.flags & B_FULL_UPDATE_ON_RESIZE) != 0)
                data.InvalidateVisible(false);
        }
    }
    if (resizes) {
        for (BView* child = data.first; child != nullptr; child = child->fData->next) {
            Follow(child, oldWidth, oldHeight, width, height,
                   shows && !moves ? Repaint::Yes : Repaint::No);
        }
    }
    if (moves)
        tell(view, data, B_VIEW_MOVED);
    if (resizes)
        tell(view, data, B_VIEW_RESIZED);
}

void ViewPrivate::MovePixels(BView* view, const BRegion& area, int32 dx, int32 dy)
{
    Canvas& canvas = *view->fData->canvas;
    const clipping_rect frame = area.FrameInt();
    if (area.CountRects() != 1 || !canvas.CanMove(dx, dy)) {
        canvas.Invalidate(area);
        return;
    }
    const clipping_rect target = intersect(frame, moved(frame, dx, dy));
    BRegion exposed(area);
    if (!is_empty(target)) {
        const clipping_rect source = moved(target, -dx, -dy);
        const clipping_rect clip = server::pixels_of(frame, canvas.Scale());
        server::Target pixels{&canvas.Pixels(), &clip, 1, clip};
        canvas.Touched(server::CopyRect(pixels,
                                        BRect(source.left, source.top, source.right, source.bottom),
                                        BPoint(target.left, target.top)));
        canvas.MoveInvalid(source, dx, dy);
        exposed.Exclude(target);
    }
    canvas.Invalidate(exposed);
}

void ViewPrivate::SetFrame(BView* view, BPoint leftTop, float width, float height)
{
    ViewLock lock(view);
    ViewData& data = *view->fData;
    leftTop = whole_pixels(leftTop);
    const bool resizes =
        whole_pixels(width) != data.bounds.Width() || whole_pixels(height) != data.bounds.Height();
    BRegion before, after;
    const bool shows = !resizes && data.canvas != nullptr && !data.canvas->IsOffscreen() &&
                       data.Visible(&before, true);
    if (!shows) {
        Reshape(view, leftTop, width, height, Repaint::Yes);
        return;
    }
    const int32 dx = int32(leftTop.x - data.leftTop.x), dy = int32(leftTop.y - data.leftTop.y);
    Reshape(view, leftTop, width, height, Repaint::No);
    data.Visible(&after, true);
    if (before.CountRects() == 1 && after.CountRects() == 1 && !data.canvas->UpdateRegion() &&
        data.canvas->CanMove(dx, dy)) {
        // The pixels go along as far as they show before and after.
        const clipping_rect from = intersect(before.FrameInt(), moved(after.FrameInt(), -dx, -dy));
        if (!is_empty(from)) {
            const clipping_rect to = moved(from, dx, dy);
            const clipping_rect clip = server::pixels_of(to, data.canvas->Scale());
            server::Target pixels{&data.canvas->Pixels(), &clip, 1, clip};
            data.canvas->Touched(
                server::CopyRect(pixels, BRect(from.left, from.top, from.right, from.bottom),
                                 BPoint(to.left, to.top)));
            data.canvas->MoveInvalid(from, dx, dy);
            before.Include(&after);
            before.Exclude(to);
            data.canvas->Invalidate(before);
            return;
        }
    }
    before.Include(&after);
    data.canvas->Invalidate(before);
}

void ViewPrivate::ResizeTop(BView* top, float width, float height)
{
    Reshape(top, BPoint(0, 0), width, height, Repaint::Yes);
}

BPoint ViewPrivate::ToView(const BView* view, BPoint windowPoint)
{
    int32 x, y;
    view->fData->Offset(&x, &y);
    return BPoint(windowPoint.x - x, windowPoint.y - y);
}

BPoint ViewPrivate::FromView(const BView* view, BPoint viewPoint)
{
    int32 x, y;
    view->fData->Offset(&x, &y);
    return BPoint(viewPoint.x + x, viewPoint.y + y);
}

BRect ViewPrivate::FromView(const BView* view, BRect viewRect)
{
    int32 x, y;
    view->fData->Offset(&x, &y);
    return viewRect.OffsetByCopy(x, y);
}

// A view holds the points of its pixels: 10.5 lies in the last pixel of bounds that end at 10.
static bool holds(const BRect& bounds, BPoint point)
{
    return point.x >= bounds.left && point.x < bounds.right + 1 && point.y >= bounds.top &&
           point.y < bounds.bottom + 1;
}

static BView* under(BView* view, BPoint point)
{
    const ViewData& data = ViewPrivate::Data(view);
    for (BView* child = data.last; child != nullptr; child = ViewPrivate::Data(child).previous) {
        const ViewData& childData = ViewPrivate::Data(child);
        const BPoint inside = point - childData.leftTop + childData.bounds.LeftTop();
        if (childData.hidden <= 0 && holds(childData.bounds, inside))
            return under(child, inside);
    }
    return view;
}

BView* ViewPrivate::Under(BView* top, BPoint windowPoint)
{
    const ViewData& data = *top->fData;
    const BPoint point = windowPoint + data.bounds.LeftTop();
    return data.hidden <= 0 && holds(data.bounds, point) ? under(top, point) : nullptr;
}

void ViewPrivate::SetScrollBar(BView* view, orientation direction, const ScrollBarLink& link)
{
    if (direction != B_HORIZONTAL && direction != B_VERTICAL)
        return;
    if (view->fData->bars == nullptr)
        view->fData->bars = std::make_unique<ScrollBarLink[]>(2);
    view->fData->bars[direction] = link;
}

void ViewPrivate::ForgetScrollBars(BView* view)
{
    for (int direction = 0; view->fData->bars != nullptr && direction < 2; direction++) {
        const ScrollBarLink gone = std::exchange(view->fData->bars[direction], ScrollBarLink());
        if (gone.target_gone != nullptr)
            gone.target_gone(gone.bar);
    }
}

}  // namespace BPrivate

using BPrivate::ViewLock;
using BPrivate::ViewPrivate;
using BPrivate::whole_pixels;

BRect BView::Bounds() const { return fData->bounds; }

BRect BView::Frame() const { return fData->bounds.OffsetToCopy(fData->leftTop); }

BPoint BView::LeftTop() const { return fData->bounds.LeftTop(); }

// Coordinates. A view without window has no place on the screen: nothing is converted.

static BPoint screen_shift(const BView* view)
{
    BWindow* window = view->Window();
    if (window == nullptr)
        return BPoint();
    return window->ConvertToScreen(ViewPrivate::FromView(view, BPoint()));
}

static BPoint parent_shift(const BView* view)
{
    const BPrivate::ViewData& data = ViewPrivate::Data(view);
    return data.parent != nullptr ? data.leftTop - data.bounds.LeftTop() : BPoint();
}

void BView::ConvertToScreen(BPoint* point) const { *point += screen_shift(this); }

BPoint BView::ConvertToScreen(BPoint point) const { return point + screen_shift(this); }

void BView::ConvertFromScreen(BPoint* point) const { *point -= screen_shift(this); }

BPoint BView::ConvertFromScreen(BPoint point) const { return point - screen_shift(this); }

void BView::ConvertToScreen(BRect* rect) const { rect->OffsetBy(screen_shift(this)); }

BRect BView::ConvertToScreen(BRect rect) const { return rect.OffsetByCopy(screen_shift(this)); }

void BView::ConvertFromScreen(BRect* rect) const { rect->OffsetBy(-screen_shift(this)); }

BRect BView::ConvertFromScreen(BRect rect) const { return rect.OffsetByCopy(-screen_shift(this)); }

void BView::ConvertToParent(BPoint* point) const { *point += parent_shift(this); }

BPoint BView::ConvertToParent(BPoint point) const { return point + parent_shift(this); }

void BView::ConvertFromParent(BPoint* point) const { *point -= parent_shift(this); }

BPoint BView::ConvertFromParent(BPoint point) const { return point - parent_shift(this); }

void BView::ConvertToParent(BRect* rect) const { rect->OffsetBy(parent_shift(this)); }

BRect BView::ConvertToParent(BRect rect) const { return rect.OffsetByCopy(parent_shift(this)); }

void BView::ConvertFromParent(BRect* rect) const { rect->OffsetBy(-parent_shift(this)); }

BRect BView::ConvertFromParent(BRect rect) const { return rect.OffsetByCopy(-parent_shift(this)); }

// Moving and resizing.

void BView::MoveBy(float dh, float dv)
{
    MoveTo(fData->leftTop.x + whole_pixels(dh), fData->leftTop.y + whole_pixels(dv));
}

void BView::MoveTo(BPoint where) { MoveTo(where.x, where.y); }

void BView::MoveTo(float x, float y)
{
    if (!fData->isTop)
        ViewPrivate::SetFrame(this, BPoint(x, y), fData->bounds.Width(), fData->bounds.Height());
}

void BView::ResizeBy(float dh, float dv)
{
    ResizeTo(fData->bounds.Width() + whole_pixels(dh), fData->bounds.Height() + whole_pixels(dv));
}

void BView::ResizeTo(float width, float height)
{
    if (!fData->isTop)
        ViewPrivate::SetFrame(this, fData->leftTop, width, height);
}

void BView::ResizeTo(BSize size) { ResizeTo(size.width, size.height); }

void BView::SetResizingMode(uint32 mode) { fData->resizingMode = mode & 0xFFFF; }

uint32 BView::ResizingMode() const { return fData->resizingMode; }

void BView::SetFlags(uint32 flags)
{
    ViewLock lock(this);
    const uint32 changed = fData->flags ^ flags;
    fData->flags = flags;
    fData->TreeChanged();  // who clips whom
    if ((changed & B_INPUT_METHOD_AWARE) != 0 && IsFocus())
        BPrivate::tell_typing(*BPrivate::WindowData::Of(fData->window));
}

uint32 BView::Flags() const { return fData->flags; }

// Scrolling.

void BView::ScrollBy(float dh, float dv)
{
    ScrollTo(fData->bounds.left + whole_pixels(dh), fData->bounds.top + whole_pixels(dv));
}

void BView::ScrollTo(float x, float y) { ScrollTo(BPoint(x, y)); }

void BView::ScrollTo(BPoint where)
{
    ViewLock lock(this);
    where = BPrivate::scroll_place(where);
    const BPoint old = fData->bounds.LeftTop();
    if (where == old)
        return;
    BRegion area;
    const bool shows =
        fData->canvas != nullptr && !fData->canvas->IsOffscreen() && fData->Visible(&area, true);
    fData->bounds.OffsetTo(where);
    fData->TreeChanged();
    if (shows)
        ViewPrivate::MovePixels(this, area, int32(old.x - where.x), int32(old.y - where.y));
    if (fData->bars == nullptr)
        return;
    const BPrivate::ScrollBarLink horizontal = fData->bars[B_HORIZONTAL];
    const BPrivate::ScrollBarLink vertical = fData->bars[B_VERTICAL];
    if (horizontal.scrolled != nullptr && where.x != old.x)
        horizontal.scrolled(horizontal.bar, where.x);
    if (vertical.scrolled != nullptr && where.y != old.y)
        vertical.scrolled(vertical.bar, where.y);
}

BScrollBar* BView::ScrollBar(orientation direction) const
{
    const bool is_one = direction == B_HORIZONTAL || direction == B_VERTICAL;
    return is_one && fData->bars != nullptr ? fData->bars[direction].bar : nullptr;
}

status_t BView::ScrollWithMouseWheelDelta(BScrollBar* bar, float delta)
{
    for (int direction = 0; fData->bars != nullptr && direction < 2; direction++) {
        const BPrivate::ScrollBarLink& link = fData->bars[direction];
        if (bar != nullptr && link.bar == bar && link.wheel != nullptr)
            return link.wheel(bar, delta);
    }
    return B_BAD_VALUE;
}

// Hiding.

void BView::Show()
{
    ViewLock lock(this);
    if (--fData->hidden == 0) {
        fData->TreeChanged();
        fData->InvalidateVisible(true);
    }
}

void BView::Hide()
{
    ViewLock lock(this);
    if (fData->hidden == 0)
        fData->InvalidateVisible(true);
    if (fData->hidden++ == 0)
        fData->TreeChanged();
}

bool BView::IsHidden() const { return IsHidden(nullptr); }

bool BView::IsHidden(const BView* looking_from) const
{
    for (const BView* view = this; view->fData->hidden <= 0; view = view->fData->parent) {
        if (view == looking_from)
            return false;
        if (view->fData->parent == nullptr) {
            BWindow* window = view->fData->window;
            return looking_from == nullptr && window != nullptr && !window->IsOffscreenWindow() &&
                   window->IsHidden();
        }
    }
    return true;
}
