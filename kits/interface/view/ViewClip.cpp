// What of a view shows and may be drawn on: the tree's clipping, the program's, and the update's.

#include <View.h>

#include <Message.h>
#include <MessageRunner.h>
#include <Picture.h>
#include <Shape.h>

#include <interface/drawing/BitmapSurface.h>
#include <interface/geometry/RegionAccess.h>
#include <interface/drawing/ShapeData.h>
#include <interface/view/ViewPrivate.h>

#include <cmath>
#include <cstring>

namespace BPrivate {

static const int32 kFewRects = 16;  // of what waits to be drawn
static const clipping_rect kEverything = {-(1 << 29), -(1 << 29), 1 << 29, 1 << 29};

// True only if all of the rectangle is in a region of few parts, which do not overlap.
static bool covers(const BRegion& region, const clipping_rect& rect)
{
    const auto area = [](const clipping_rect& of) {
        return is_empty(of) ? 0 : int64(of.right - of.left + 1) * int64(of.bottom - of.top + 1);
    };
    const int32 parts = region.CountRects();
    if (parts > kFewRects)
        return false;
    int64 left = area(rect);
    for (int32 i = 0; i < parts && left > 0; i++)
        left -= area(intersect(region.RectAtInt(i), rect));
    return left == 0;
}

// True if two regions, of which the first has few parts, share a pixel.
static bool intersect(const BRegion& a, const BRegion& b)
{
    for (int32 i = 0; i < a.CountRects(); i++) {
        if (b.Intersects(a.RectAtInt(i)))
            return true;
    }
    return false;
}

static clipping_rect rect_at(const BRect& rect, double x, double y)
{
    const double limit = 1 << 30;
    return {int32(std::clamp(rect.left + x, -limit, limit)),
            int32(std::clamp(rect.top + y, -limit, limit)),
            int32(std::clamp(rect.right + x, -limit, limit)),
            int32(std::clamp(rect.bottom + y, -limit, limit))};
}

static bool covers(const ViewData& data)
{
    return data.hidden <= 0 && (data.flags & B_TRANSPARENT_BACKGROUND) == 0;
}

static clipping_rect frame_at(const ViewData& data, double x, double y)
{
    return rect_at(data.bounds.OffsetToCopy(data.leftTop), x, y);
}

// The frames of all children, empty where one covers nothing.
static std::vector<clipping_rect> covered(BView* first, int32 count, double x, double y)
{
    std::vector<clipping_rect> rects;
    rects.reserve(size_t(count));
    for (BView* view = first; view != nullptr; view = ViewPrivate::Data(view).next) {
        ViewData& data = ViewPrivate::Data(view);
        data.place = static_cast<int32>(rects.size());
        rects.push_back(covers(data) ? frame_at(data, x, y) : clipping_rect{0, 0, -1, -1});
    }
    return rects;
}

static const int32 kFewQuestions = 8;  // a grid costs as much as some walks
static const int32 kFewTogether = 8;

// Two halves at a time, so that most of them are joined while they are small.
static BRegion united(const clipping_rect* rects, size_t count)
{
    BRegion region;
    if (count == 1) {
        region.Set(*rects);
    } else if (count > 1) {
        region = united(rects, count / 2);
        const BRegion rest = united(rects + count / 2, count - count / 2);
        region.Include(&rest);
    }
    return region;
}

static void exclude_together(std::vector<clipping_rect>&& rects, BRegion* region)
{
    const clipping_rect frame = region->FrameInt();
    std::erase_if(rects, [&](const clipping_rect& rect) {
        return is_empty(rect) || is_empty(intersect(rect, frame));
    });
    const BRegion all = united(rects.data(), rects.size());
    region->Exclude(&all);
}

void ViewData::ExcludeChildren(BRegion* region, BView* child, double x, double y) const
{
    if (child == first && children > kFewTogether) {
        try {
            exclude_together(covered(first, children, x, y), region);
            return;
        } catch (const std::bad_alloc&) {  // each is looked at
        }
    }
    if (canvas != nullptr && children > kFewChildren && child != nullptr) {
        if (gridAt != canvas->TreeGeneration()) {
            grid = nullptr;
            gridAsked = 0;
            gridAt = canvas->TreeGeneration();
        }
        if (grid == nullptr && ++gridAsked > kFewQuestions) {
            try {
                grid = std::make_unique<SiblingGrid>(covered(first, children, x, y));
            } catch (const std::bad_alloc&) {  // each is looked at
            }
        }
        if (grid != nullptr) {
            grid->Exclude(ViewPrivate::Data(child).place, region);
            return;
        }
    }
    for (; child != nullptr && region->CountRects() > 0; child = ViewPrivate::Data(child).next) {
        const ViewData& data = ViewPrivate::Data(child);
        if (!covers(data))
            continue;
        const clipping_rect rect = frame_at(data, x, y);
        if (!is_empty(rect) && !is_empty(intersect(rect, region->FrameInt())))
            region->Exclude(rect);
    }
}

// The view's rectangle in the window, cut by those above; (x, y) is where its (0, 0) lies there.
static bool clipped(const ViewData& data, clipping_rect* frame, double* x, double* y)
{
    if (data.hidden > 0)
        return false;
    if (data.parent == nullptr) {
        if (!data.isTop || data.canvas == nullptr)
            return false;
        *x = -data.bounds.left;
        *y = -data.bounds.top;
        *frame = intersect(rect_at(data.bounds, *x, *y), data.canvas->Bounds());
        return !is_empty(*frame);
    }
    if (!clipped(ViewPrivate::Data(data.parent), frame, x, y))
        return false;
    *frame = intersect(*frame, frame_at(data, *x, *y));
    *x += data.leftTop.x - data.bounds.left;
    *y += data.leftTop.y - data.bounds.top;
    return !is_empty(*frame);
}

bool ViewData::ClippedFrame(clipping_rect* frame) const
{
    double x, y;
    return clipped(*this, frame, &x, &y);
}

// What shows of the view and all in it.
static bool showing(const ViewData& data, BRegion* region, double* x, double* y)
{
    if (data.parent == nullptr) {
        clipping_rect frame;
        if (!clipped(data, &frame, x, y))
            return false;
        region->Set(frame);
        return true;
    }
    if (data.hidden > 0 || !showing(ViewPrivate::Data(data.parent), region, x, y))
        return false;
    const clipping_rect rect = frame_at(data, *x, *y);
    if (is_empty(rect) || is_empty(intersect(rect, region->FrameInt())))
        return false;
    if (region->CountRects() == 1) {
        region->Set(intersect(rect, region->FrameInt()));
    } else {
        const BRegion own{BRect(rect.left, rect.top, rect.right, rect.bottom)};
        region->IntersectWith(&own);
    }
    ViewPrivate::Data(data.parent).ExcludeChildren(region, data.next, *x, *y);
    *x += data.leftTop.x - data.bounds.left;
    *y += data.leftTop.y - data.bounds.top;
    return region->CountRects() > 0;
}

bool ViewData::Visible(BRegion* region, bool with_children) const
{
    double x, y;
    if (!showing(*this, region, &x, &y)) {
        region->MakeEmpty();
        return false;
    }
    if (!with_children)
        ExcludeChildren(region, first, x, y);
    return region->CountRects() > 0;
}

const BRegion& ViewData::OwnVisible()
{
    if (visibleAt != canvas->TreeGeneration()) {
        Visible(&visible, (flags & B_DRAW_ON_CHILDREN) != 0);
        visibleAt = canvas->TreeGeneration();
    }
    return visible;
}

const BRegion& ViewData::WholeVisible()
{
    if (first == nullptr)
        return OwnVisible();
    if (whole == nullptr)
        whole = std::make_unique<BRegion>();
    if (wholeAt != canvas->TreeGeneration()) {
        Visible(whole.get(), true);
        wholeAt = canvas->TreeGeneration();
    }
    return *whole;
}

bool ViewData::Shows(const BRegion& region)
{
    return intersect(OwnVisible(), region) || intersect(WholeVisible(), region);
}

void DrawState::ClipInView(BRegion* region) const
{
    if (baseClip)
        region->IntersectWith(baseClip.get());
    if (viewClip)
        region->IntersectWith(viewClip.get());
    if (clip) {
        BRegion own(*clip);
        if (FullScale() != 1)
            own.ScaleBy(FullScale(), FullScale());
        own.OffsetBy(FullOrigin());
        region->IntersectWith(&own);
    }
}

bool ViewData::MakeReady()
{
    if (canvas == nullptr)
        return false;
    int32 x, y;
    Offset(&x, &y);
    const BPoint origin = state.FullOrigin();
    scale = state.FullScale();
    mapX = origin.x + x;
    mapY = origin.y + y;

    server::Paint& paint = state.paint;
    paint.penSize = state.penSize * scale;
    paint.patternPhase = BPoint(std::floor(mapX), std::floor(mapY));
    paint.transform = nullptr;
    if (state.IsTransformed() && scale != 0) {
        // The painter is given mapped places: undo the mapping, then do the whole.
        const BAffineTransform unmap(1 / scale, 0, 0, 1 / scale, -mapX / scale, -mapY / scale);
        paintTransform = std::make_unique<BAffineTransform>(
            composed(BAffineTransform(1, 0, 0, 1, x, y), composed(state.Full(), unmap)));
        paint.transform = paintTransform.get();
    }
    state.fontSpec.size = state.font.Size() * scale;

    const BRegion* region = &OwnVisible();
    const BRegion* update = canvas->UpdateRegion();
    if (update != nullptr || state.clip || state.viewClip || state.baseClip) {
        clip = *region;
        if (update != nullptr)
            clip.IntersectWith(update);
        clip.OffsetBy(-x, -y);
        state.ClipInView(&clip);
        clip.OffsetBy(x, y);
        region = &clip;
    }
    drawable = region;
    target = pixelClip.Set(*region, &canvas->Pixels());
    readyAt = *generation;
    return target.count > 0;
}

void ViewData::NarrowClip(const BRegion& region, bool inverse)
{
    auto narrowed = std::make_shared<BRegion>();
    if (state.viewClip)
        *narrowed = *state.viewClip;
    else
        narrowed->Set(kEverything);
    if (inverse)
        narrowed->Exclude(&region);
    else
        narrowed->IntersectWith(&region);
    state.viewClip = std::move(narrowed);
    Outdate();
}

BRegion opaque_region(const server::Surface& mask, int32 x, int32 y)
{
    BRegion region, rows;
    std::vector<std::pair<int32, int32>> runs, runsAbove;
    int32 firstRow = 0;
    auto add_rows = [&](int32 end) {
        for (auto [left, right] : runsAbove)
            region.Include(clipping_rect{x + left, y + firstRow, x + right, y + end - 1});
    };
    for (int32 row = 0; row < mask.height; row++) {
        const uint8* alpha = mask.bits + size_t(row) * mask.bytesPerRow + 3;
        runs.clear();
        for (int32 column = 0; column < mask.width; column++) {
            if (alpha[column * 4] == 0)
                continue;
            const int32 left = column;
            while (column + 1 < mask.width && alpha[(column + 1) * 4] != 0)
                column++;
            runs.emplace_back(left, column);
        }
        if (runs != runsAbove) {
            add_rows(row);
            runsAbove.swap(runs);
            firstRow = row;
        }
    }
    add_rows(mask.height);
    return region;
}

// The pixels of the view that a drawing of it touches. `draw` gets a view of a bitmap that shows
// `area`, whose state has the same mapping.
template <class Draw>
static BRegion drawn_region(const ViewData& data, BRect area, Draw draw)
{
    // What lies far outside can not come into the view without another clipping.
    area = area & data.bounds.InsetByCopy(-4096, -4096);
    BRect pixels(std::floor(area.left), std::floor(area.top), std::ceil(area.right),
                 std::ceil(area.bottom));
    if (!pixels.IsValid())
        return BRegion();
    BBitmap bitmap(pixels.OffsetToCopy(B_ORIGIN), B_BITMAP_ACCEPTS_VIEWS, B_RGBA32);
    if (!bitmap.IsValid() || !bitmap.Lock())
        return BRegion();
    memset(bitmap.Bits(), 0, bitmap.BitsLength());
    BView* view = new BView(bitmap.Bounds(), nullptr, B_FOLLOW_NONE, 0);
    bitmap.AddChild(view);
    ViewData& canvasData = ViewPrivate::Data(view);
    const DrawState& state = data.state;
    DrawState& copy = canvasData.state;
    copy = state;
    copy.clip = copy.viewClip = copy.baseClip = nullptr;
    copy.baseOrigin -= pixels.LeftTop();
    if (copy.IsTransformed()) {
        DrawState::Transforms moved = *copy.transforms;
        moved.base.tx -= pixels.left;
        moved.base.ty -= pixels.top;
        copy.transforms = std::make_shared<DrawState::Transforms>(moved);
    }
    copy.paint.mode = B_OP_COPY;
    copy.paint.high = {0, 0, 0, 255};
    canvasData.Outdate();
    draw(view);
    BRegion region = opaque_region(surface_of(bitmap), int32(pixels.left), int32(pixels.top));
    bitmap.Unlock();
    return region;
}

// Around a rectangle of the state, in the view's coordinates.
static BRect in_view(const DrawState& state, BRect rect)
{
    if (!state.IsTransformed()) {
        const BPoint origin = state.FullOrigin();
        const float scale = state.FullScale();
        return BRect(rect.left * scale + origin.x, rect.top * scale + origin.y,
                     rect.right * scale + origin.x, rect.bottom * scale + origin.y);
    }
    const BAffineTransform full = state.Full();
    BRect around;
    for (BPoint corner : {rect.LeftTop(), rect.RightTop(), rect.LeftBottom(), rect.RightBottom()}) {
        const BPoint p = full.Apply(corner);
        around = around | BRect(p, p);
    }
    return around;
}

static void clip_to_rect(ViewData& data, BRect rect, bool inverse)
{
    const BRect area = in_view(data.state, rect);
    if (data.state.IsTransformed()) {
        data.NarrowClip(drawn_region(data, area, [&](BView* view) { view->FillRect(rect); }),
                        inverse);
    } else {
        data.NarrowClip(area.IsValid() ? BRegion(area) : BRegion(), inverse);
    }
}

static void clip_to_shape(ViewData& data, BShape* shape, bool inverse)
{
    BRegion region;
    if (shape != nullptr) {
        const BRect area = in_view(data.state, shape->Bounds());
        region = drawn_region(data, area, [&](BView* view) {
            view->MovePenTo(0, 0);
            view->FillShape(shape);
        });
    }
    data.NarrowClip(region, inverse);
}

static void clip_to_picture(ViewData& data, const PictureData& picture, BPoint where, bool inverse)
{
    const auto draw = [&](BView* view) { PictureData::PlayAt(picture, view, where, 1); };
    data.NarrowClip(drawn_region(data, data.bounds, draw), inverse);
}

void ViewPrivate::ClipToPicture(BView* view, const std::shared_ptr<const PictureData>& picture,
                                BPoint where, bool inverse)
{
    ViewData& data = *view->fData;
    if (data.recording != nullptr)
        data.recording->AddClip(picture, where, inverse);
    if (picture != nullptr) {
        clip_to_picture(data, *picture, where, inverse);
    } else {
        data.state.viewClip = nullptr;
        data.Outdate();
    }
}

}  // namespace BPrivate

using BPrivate::PictureOp;
using BPrivate::ViewData;

void BView::GetClippingRegion(BRegion* region) const
{
    if (region == nullptr)
        return;
    region->MakeEmpty();
    if (!fData->Ready() && !fData->MakeReady())
        return;
    int32 x, y;
    fData->Offset(&x, &y);
    *region = *fData->drawable;
    region->OffsetBy(-x, -y);
    if (fData->recording != nullptr)
        fData->Outdate();
}

void BView::ConstrainClippingRegion(BRegion* region)
{
    BPrivate::DrawState& state = fData->state;
    state.clip = region != nullptr ? std::make_shared<BRegion>(*region) : nullptr;
    if (region == nullptr)
        state.viewClip = nullptr;
    fData->Outdate();
    if (fData->recording != nullptr)
        fData->recording->AddRegion(PictureOp::ClipRegion, region);
}

void BView::ClipToRect(BRect rect)
{
    fData->Recorded(PictureOp::ClipToRect, rect);
    clip_to_rect(*fData, rect, false);
}

void BView::ClipToInverseRect(BRect rect)
{
    fData->Recorded(PictureOp::ClipToInverseRect, rect);
    clip_to_rect(*fData, rect, true);
}

void BView::ClipToShape(BShape* shape)
{
    if (fData->recording != nullptr && shape != nullptr)
        fData->recording->AddShape(PictureOp::ClipToShape, *shape, false);
    clip_to_shape(*fData, shape, false);
}

void BView::ClipToInverseShape(BShape* shape)
{
    if (fData->recording != nullptr && shape != nullptr)
        fData->recording->AddShape(PictureOp::ClipToShape, *shape, true);
    clip_to_shape(*fData, shape, true);
}

void BView::ClipToPicture(BPicture* picture, BPoint where, bool)
{
    BPrivate::ViewPrivate::ClipToPicture(this, picture != nullptr ? picture->fData : nullptr, where,
                                         false);
}

void BView::ClipToInversePicture(BPicture* picture, BPoint where, bool)
{
    BPrivate::ViewPrivate::ClipToPicture(this, picture != nullptr ? picture->fData : nullptr, where,
                                         true);
}

// Asking for a Draw().

// As the C library's, without a call for each.
static inline float floor_of(float value)
{
    if (!(std::fabs(value) < 1 << 23))
        return value;  // whole, or none at all
    const float whole = static_cast<float>(static_cast<int32>(value));
    return whole - (whole > value);
}

static inline float ceil_of(float value) { return -floor_of(-value); }

void BView::Invalidate(BRect invalRect)
{
    BPrivate::Canvas* canvas = fData->canvas;
    if (canvas == nullptr || canvas->IsOffscreen() || !invalRect.IsValid())
        return;
    fData->TellReader();
    int32 x, y;
    fData->Offset(&x, &y);
    const BRect whole(floor_of(invalRect.left), floor_of(invalRect.top), ceil_of(invalRect.right),
                      ceil_of(invalRect.bottom));
    const clipping_rect rect = BPrivate::rect_at(whole, x, y);
    const BRegion& visible = fData->WholeVisible();
    const clipping_rect shown = BPrivate::intersect(rect, visible.FrameInt());
    if (visible.CountRects() == 0 || BPrivate::covers(canvas->Invalid(), shown))
        return;
    if (visible.CountRects() == 1) {
        canvas->Invalidate(shown);
        return;
    }
    BRegion region{BRect(rect.left, rect.top, rect.right, rect.bottom)};
    region.IntersectWith(&visible);
    canvas->Invalidate(region);
}

void BView::Invalidate(const BRegion* invalRegion)
{
    BPrivate::Canvas* canvas = fData->canvas;
    if (invalRegion == nullptr || canvas == nullptr || canvas->IsOffscreen())
        return;
    int32 x, y;
    fData->Offset(&x, &y);
    BRegion region(*invalRegion);
    region.OffsetBy(x, y);
    region.IntersectWith(&fData->WholeVisible());
    canvas->Invalidate(region);
}

void BView::Invalidate()
{
    BPrivate::Canvas* canvas = fData->canvas;
    if (canvas == nullptr || canvas->IsOffscreen())
        return;
    // One that changes again and again is waiting already.
    if (!BPrivate::covers(canvas->Invalid(), fData->WholeVisible().FrameInt()))
        Invalidate(fData->bounds);
}

void BView::DelayedInvalidate(bigtime_t delay) { DelayedInvalidate(delay, fData->bounds); }

void BView::DelayedInvalidate(bigtime_t delay, BRect invalRect)
{
    if (delay <= 0) {
        Invalidate(invalRect);
        return;
    }
    BMessage message(BPrivate::kInvalidateLater);
    message.AddRect("rect", invalRect);
    BMessageRunner::StartSending(BMessenger(this), &message, delay, 1);
}
