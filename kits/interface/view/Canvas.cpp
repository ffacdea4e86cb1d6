// Back buffers of windows: their memory, the update cycle, and the way to the screen.

#include <interface/view/Canvas.h>

#include <Bitmap.h>
#include <View.h>
#include <Window.h>

#include <interface/drawing/BitmapSurface.h>
#include <interface/drawing/FinePicture.h>
#include <interface/geometry/RegionAccess.h>
#include <interface/view/ViewPrivate.h>
#include <server/painter/Painter.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

namespace BPrivate {

Canvas::Canvas(BWindow* window, server::ScreenWindow* display)
    : fWindow(window), fDisplay(display), fOffscreen(false)
{
    if (display != nullptr)
        fSurface.scale = display->Scale();
}

Canvas::Canvas(BWindow* window, const server::Surface& bitmap)
    : fWindow(window),
      fDisplay(nullptr),
      fOffscreen(true),
      fSurface(bitmap),
      fFine(FinePicture::Make(bitmap, server::ScreenScale(), FinePicture::Bitmap::New).release()),
      fWidth(bitmap.width),
      fHeight(bitmap.height),
      fDirty{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}
{
}

Canvas::~Canvas() { delete fFine.load(); }

FinePicture* Canvas::FineIn(float scale)
{
    FinePicture* there = Fine();
    if (there != nullptr || !fOffscreen)
        return there;
    auto made = FinePicture::Make(fSurface, scale, FinePicture::Bitmap::InUse);
    if (made != nullptr && fFine.compare_exchange_strong(there, made.get()))
        return made.release();
    return there;
}

// Rows start on cache lines, and never a multiple of a page apart: columns would all fall into
// the same cache sets.
static int64 padded_row(int64 bytes)
{
    bytes = (bytes + 63) & ~int64(63);
    return bytes % 4096 == 0 ? bytes + 64 : bytes;
}

bool Canvas::Resize(int32 width, int32 height)
{
    if (width < 1 || height < 1 || fOffscreen)
        return false;
    const clipping_rect old = Bounds();
    if (!_ResizePixels(server::first_pixel(width, Scale()), server::first_pixel(height, Scale())))
        return false;
    fWidth = width;
    fHeight = height;
    NextGeneration();

    if (!is_empty(fDirty))
        fDirty = intersect(fDirty, _Pixels());
    if (is_empty(fDirty))
        fDirty = {0, 0, -1, -1};
    BRegion bounds;
    bounds.Set(Bounds());
    fInvalid.IntersectWith(&bounds);
    if (!is_empty(old))
        bounds.Exclude(old);
    for (int32 i = 0; i < bounds.CountRects(); i++)
        _Clear(server::pixels_of(bounds.RectAtInt(i), Scale()));
    Invalidate(bounds);
    return true;
}

bool Canvas::_ResizePixels(int32 width, int32 height)
{
    const int64 capacity = int64(fCapacityWidth) * fCapacityHeight;
    const bool fits = width <= fCapacityWidth && height <= fCapacityHeight;
    if (!fits || int64(width) * height < capacity / 8) {
        // A window that grows once will grow again: leave some room then.
        const bool grows = fBuffer != nullptr && !fits;
        const int64 roomWidth = grows && width > fSurface.width ? int64(width) + 256 : width;
        const int64 roomHeight = grows && height > fSurface.height ? int64(height) + 256 : height;
        const int64 row = padded_row(roomWidth * 4);
        if (row > INT32_MAX / roomHeight)
            return false;
        server::PixelBuffer buffer = server::make_pixels(size_t(row * roomHeight));
        if (buffer == nullptr)
            return false;
        const int32 keptRows = std::min(height, fSurface.height);
        const size_t keptBytes = size_t(std::min(width, fSurface.width)) * 4;
        for (int32 y = 0; y < keptRows; y++) {
            memcpy(buffer.get() + size_t(y) * size_t(row),
                   fSurface.bits + size_t(y) * size_t(fSurface.bytesPerRow), keptBytes);
        }
        fBuffer = std::move(buffer);
        fCapacityWidth = int32(roomWidth);
        fCapacityHeight = int32(roomHeight);
        fSurface.bits = fBuffer.get();
        fSurface.bytesPerRow = int32(row);
    }
    fSurface.width = width;
    fSurface.height = height;
    return true;
}

void Canvas::FollowScale()
{
    const float scale = fDisplay != nullptr ? fDisplay->Scale() : 1;
    if (scale == Scale() || fOffscreen ||
        !_ResizePixels(server::first_pixel(fWidth, scale), server::first_pixel(fHeight, scale)))
        return;
    fSurface.scale = scale;
    NextGeneration();
    fDirty = {0, 0, -1, -1};
    _Clear(_Pixels());
    Invalidate(Bounds());
}

bool Canvas::CanMove(int32 dx, int32 dy) const
{
    const float x = float(dx) * Scale(), y = float(dy) * Scale();
    return x == std::floor(x) && y == std::floor(y);
}

// Rectangles of pixels.
void Canvas::_Clear(const clipping_rect& rect)
{
    for (int32 y = rect.top; y <= rect.bottom; y++) {
        memset(fSurface.bits + size_t(y) * size_t(fSurface.bytesPerRow) + size_t(rect.left) * 4,
               0xFF, size_t(rect.right - rect.left + 1) * 4);
    }
    Touched(rect);
}

server::Target PixelClip::Set(const BRegion& region, server::Surface* surface)
{
    server::Target target{surface, RegionAccess::Rects(region), region.CountRects(),
                          server::pixels_of(region.FrameInt(), surface->scale)};
    if (surface->scale == 1)
        return target;
    fRects.assign(target.clip, target.clip + target.count);
    for (clipping_rect& rect : fRects)
        rect = server::pixels_of(rect, surface->scale);
    target.clip = fRects.data();
    return target;
}

// Waiting for Draw().

static const int32 kMostInvalidRects = 16;

void Canvas::Invalidate(const clipping_rect& rect)
{
    const clipping_rect held = intersect(rect, Bounds());
    if (fOffscreen || is_empty(held))
        return;
    fInvalid.Include(held);
    _KeepInvalidSimple();
    fWindow->_ScheduleUpdate();
}

void Canvas::Invalidate(const BRegion& region)
{
    if (fOffscreen || region.CountRects() == 0)
        return;
    BRegion held;
    held.Set(Bounds());
    held.IntersectWith(&region);
    if (held.CountRects() == 0)
        return;
    fInvalid.Include(&held);
    _KeepInvalidSimple();
    fWindow->_ScheduleUpdate();
}

// Many scattered pieces cost more to keep apart than to draw as one.
void Canvas::_KeepInvalidSimple()
{
    if (fInvalid.CountRects() > kMostInvalidRects)
        fInvalid.Set(fInvalid.FrameInt());
}

void Canvas::MoveInvalid(const clipping_rect& area, int32 dx, int32 dy)
{
    if (!fInvalid.Intersects(area) && !fInvalid.Intersects(moved(area, dx, dy)))
        return;
    BRegion along;
    along.Set(area);
    along.IntersectWith(&fInvalid);
    along.OffsetBy(dx, dy);
    fInvalid.Exclude(moved(area, dx, dy));
    fInvalid.Include(&along);
}

void Canvas::Update(BView* top)
{
    if (fOffscreen || top == nullptr || fInvalid.CountRects() == 0)
        return;
    BRegion region;
    region.MoveFrom(fInvalid);
    // A Draw() may run another update.
    const BRegion* outer = fUpdate;
    fUpdate = &region;
    _CountUp(&fGeneration);
    _DrawView(top);
    fUpdate = outer;
    _CountUp(&fGeneration);
}

void Canvas::_DrawView(BView* view)
{
    ViewRef self(view);
    ViewData& data = *self.Data();
    if (!data.Shows(*fUpdate))
        return;
    int32 x, y;
    data.Offset(&x, &y);

    BRegion dirty(data.OwnVisible());
    dirty.IntersectWith(fUpdate);
    const BRect updateRect = dirty.Frame().OffsetByCopy(-x, -y);
    auto still_here = [&] { return self.View() != nullptr && data.canvas == this; };
    auto call = [&](void (BView::*draw)(BRect)) {
        const int32 depth = data.stateDepth;
        data.PushState();
        (view->*draw)(updateRect);
        if (still_here())
            ViewPrivate::RestoreState(view, depth);
    };
    if (dirty.CountRects() > 0) {
        _DrawBackground(view, dirty);
        if ((data.flags & B_WILL_DRAW) != 0)
            call(&BView::Draw);
    }
    if (!still_here())
        return;
    std::vector<ViewRef> children;
    const clipping_rect changed = fUpdate->FrameInt();
    for (BView* child = data.first; child != nullptr; child = ViewPrivate::Data(child).next) {
        clipping_rect frame;
        if (ViewPrivate::Data(child).ClippedFrame(&frame) && !is_empty(intersect(frame, changed)))
            children.emplace_back(child);
    }
    for (const ViewRef& child : children) {
        if (child.View() != nullptr && child.Data()->canvas == this && child.Data()->parent == view)
            _DrawView(child.View());
    }
    if (dirty.CountRects() > 0 && still_here() && (data.flags & B_DRAW_ON_CHILDREN) != 0)
        call(&BView::DrawAfterChildren);
}

// Where the picture of a background lies in the view.
static BRect background_place(const ViewData& data, const ViewBitmap& background)
{
    BRect place = background.target;
    const BRect& bounds = data.bounds;
    auto side = [&](int shift) { return background.follow >> shift & 0xF; };
    if (side(8) == 4)
        place.OffsetTo(bounds.right - place.Width(), place.top);
    else if (side(8) == 5)
        place.OffsetTo(std::floor((bounds.Width() - place.Width()) / 2), place.top);
    else if (side(0) == 4)
        place.right = bounds.right;
    if (side(12) == 3)
        place.OffsetTo(place.left, bounds.bottom - place.Height());
    else if (side(12) == 5)
        place.OffsetTo(place.left, std::floor((bounds.Height() - place.Height()) / 2));
    else if (side(4) == 3)
        place.bottom = bounds.bottom;
    return place;
}

void Canvas::_DrawBackground(BView* view, const BRegion& dirty)
{
    const ViewData& data = ViewPrivate::Data(view);
    PixelClip clip;
    const server::Target target = clip.Set(dirty, &fSurface);
    server::Paint paint;
    if (data.viewColor != B_TRANSPARENT_COLOR) {
        // What is filled is the clipping: it needs not be cut by itself, piece by piece.
        const clipping_rect& frame = target.bounds;
        paint.high = data.viewColor;
        Touched(server::FillRegion({&fSurface, &frame, 1, frame}, paint, dirty));
    }
    const ViewBitmap* background = data.Extras().background.get();
    if (background == nullptr)
        return;
    int32 x, y;
    data.Offset(&x, &y);
    const BRect place = background_place(data, *background).OffsetByCopy(x, y);
    if (!place.IsValid())
        return;
    const server::Surface pixels = surface_of(*background->bitmap);
    const BRect source = background->source.OffsetByCopy(-background->bitmap->Bounds().LeftTop());
    const float width = place.Width() + 1, height = place.Height() + 1;
    const clipping_rect shown = dirty.FrameInt();
    BRect tiles = place;
    paint.mode = B_OP_OVER;
    if ((background->options & B_TILE_BITMAP_X) != 0) {
        tiles.left += std::floor((shown.left - place.left) / width) * width;
        tiles.right = shown.right;
    }
    if ((background->options & B_TILE_BITMAP_Y) != 0) {
        tiles.top += std::floor((shown.top - place.top) / height) * height;
        tiles.bottom = shown.bottom;
    }
    for (float top = tiles.top; top <= tiles.bottom; top += height) {
        for (float left = tiles.left; left <= tiles.right; left += width) {
            Touched(server::DrawBitmap(
                target, paint, pixels, source, BRect(left, top, left + width - 1, top + height - 1),
                filter_options(*background->bitmap, background->options, Scale())));
        }
    }
}

// Waiting for the screen.

void Canvas::_GrowDirty(const clipping_rect& box)
{
    const clipping_rect held = intersect(box, _Pixels());
    if (is_empty(held))
        return;
    if (!is_empty(fDirty)) {
        fDirty = {std::min(fDirty.left, held.left), std::min(fDirty.top, held.top),
                  std::max(fDirty.right, held.right), std::max(fDirty.bottom, held.bottom)};
        return;
    }
    fDirty = held;
    if (fDisplay != nullptr)
        fWindow->_SchedulePresent();
}

void Canvas::Present(bool force, bigtime_t* next_us)
{
    bigtime_t next = B_INFINITE_TIMEOUT;
    if (NeedsPresent()) {
        const bigtime_t now = system_time();
        const bigtime_t due = fLastPresent + server::FrameInterval();
        if (!force && now < due) {
            next = due;
        } else {
            fLastPresent = now;
            const clipping_rect box = std::exchange(fDirty, {0, 0, -1, -1});
            fDisplay->Present(fSurface, &box, 1);
        }
    }
    if (next_us != nullptr)
        *next_us = next;
}

}  // namespace BPrivate
