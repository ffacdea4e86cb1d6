// Drawing calls of views that take their pixels from somewhere: bitmaps, and the view itself.

#include <View.h>

#include <Bitmap.h>

#include <interface/drawing/BitmapSurface.h>
#include <interface/drawing/SharpPicture.h>
#include <interface/view/ViewPainting.h>
#include <server/painter/PainterPaths.h>

#include <algorithm>
#include <cmath>

using BPrivate::FinePicture;
using BPrivate::paint_on;
using BPrivate::PictureOp;
using BPrivate::ViewData;
using BPrivate::ViewPrivate;

static const double kMostTiles = 1 << 24;  // as many as a large screen has pixels

static clipping_rect pixels_of(const BRect& rect)
{
    const double limit = 1 << 29;
    auto at = [&](float value) {
        return std::isnan(value) ? 0 : int32(std::clamp(std::floor(double(value)), -limit, limit));
    };
    return {at(rect.left), at(rect.top), at(rect.right), at(rect.bottom)};
}

static BRect to_rect(const clipping_rect& rect)
{
    return BRect(rect.left, rect.top, rect.right, rect.bottom);
}

static clipping_rect stretch_pixels(const server::Target& target, const clipping_rect& from,
                                    const clipping_rect& to)
{
    const clipping_rect nothing = {0, 0, -1, -1};
    const server::Surface& pixels = *target.surface;
    const clipping_rect source = server::pixels_of(from, pixels.scale);
    const clipping_rect held =
        BPrivate::intersect(source, {0, 0, pixels.width - 1, pixels.height - 1});
    if (BPrivate::is_empty(held))
        return nothing;
    BBitmap copy(BRect(0, 0, held.right - held.left, held.bottom - held.top), 0, B_RGBA32);
    if (!copy.IsValid())
        return nothing;
    const int32 width = held.right - held.left + 1;
    auto* row = static_cast<uint8*>(copy.Bits());
    for (int32 y = held.top; y <= held.bottom; y++, row += copy.BytesPerRow())
        server::read_pixels(pixels, held.left, y, width, reinterpret_cast<uint32*>(row));
    return server::DrawBitmap(target, server::Paint(), BPrivate::surface_of(copy),
                              to_rect(BPrivate::moved(source, -held.left, -held.top)), to_rect(to),
                              0);
}

void BView::CopyBits(BRect src, BRect dst)
{
    ViewData& data = *fData;
    if (!data.Begin(PictureOp::CopyBits, src, dst) || !src.IsValid() || !dst.IsValid())
        return;
    const clipping_rect source = pixels_of(data.MapPixels(src));
    const clipping_rect target = pixels_of(data.MapPixels(dst));
    const int32 dx = target.left - source.left, dy = target.top - source.top;
    if (source.right + dx == target.right && source.bottom + dy == target.bottom) {
        paint_on(data, [&](const server::Target& to) {
            return server::CopyRect(to, to_rect(source), BPoint(target.left, target.top));
        });
    } else {
        // Another size: by way of a copy, since the two may overlap.
        paint_on(data,
                 [&](const server::Target& to) { return stretch_pixels(to, source, target); });
    }
    if (data.canvas->IsOffscreen())
        return;
    // What does not show, or waits to be drawn itself, left no picture to copy.
    BRegion missing(to_rect(source));
    missing.Exclude(&data.OwnVisible());
    BRegion waiting(to_rect(source));
    waiting.IntersectWith(&data.canvas->Invalid());
    missing.Include(&waiting);
    // Nor is one right that was to move by parts of pixels.
    if (!data.canvas->CanMove(dx, dy))
        missing.Include(BRect(to_rect(source)));
    missing.OffsetBy(dx, dy);
    BRegion reached(to_rect(target));
    reached.IntersectWith(&data.OwnVisible());
    missing.IntersectWith(&reached);
    data.canvas->Invalidate(missing);
}

namespace {

// Draws a bitmap from its own pixels, or on a surface with a scale from its finer ones.
class BitmapDrawing {
public:
    BitmapDrawing(const ViewData& data, const BBitmap& bitmap, BRect from, BRect to, uint32 options)
        : fData(data),
          fSource(BPrivate::surface_of(bitmap)),
          fFrom(from.OffsetByCopy(-bitmap.Bounds().LeftTop())),
          fTo(data.MapPixels(to)),
          fOptions(options),
          fFineOptions(options)
    {
        const FinePicture* along = data.canvas->Fine();
        const float scale = along != nullptr ? along->Scale() : data.canvas->Scale();
        if (scale == 1)
            return;
        fFineOptions = BPrivate::filter_options(bitmap, options, scale);
        if (FinePicture* fine = ViewPrivate::FineIn(bitmap, scale))
            _TakePart(*fine, scale);
        else
            _MakeSharp(bitmap, scale);
    }

    clipping_rect operator()(const server::Target& target) const
    {
        const float scale = target.surface->scale;
        const server::Paint& paint = fData.state.paint;
        clipping_rect changed = {0, 0, -1, -1};
        if (scale != 1 && fLive != nullptr &&
            fLive->Show(fSource, fLiveUnits, scale, [&](const server::Surface& pixels) {
                changed = server::DrawBitmap(target, paint, pixels, fPartFrom, fTo, fFineOptions);
            }))
            return changed;
        if (scale != 1 && fPart.surface.bits != nullptr)
            return server::DrawBitmap(target, paint, fPart.surface, fPartFrom, fTo, fFineOptions);
        return server::DrawBitmap(target, paint, fSource, fFrom, fTo,
                                  scale != 1 ? fFineOptions : fOptions);
    }

private:
    // Copied where it may be drawn onto the same bitmap.
    void _TakePart(FinePicture& fine, float scale)
    {
        const clipping_rect units = pixels_of(fFrom),
                            all = {0, 0, fSource.width - 1, fSource.height - 1};
        const bool isWhole = to_rect(units) == fFrom;
        const clipping_rect held = BPrivate::intersect(units, all);
        if (!isWhole || BPrivate::is_empty(held) || BPrivate::is_empty(units))
            return;
        if (!fData.canvas->IsOffscreen()) {
            fLive = &fine;
            fLiveUnits = held;
            fPartFrom = to_rect(server::pixels_of(units, scale));
            return;
        }
        fPart = fine.Copy(fSource, held, scale);
        const clipping_rect from = server::pixels_of(units, scale);
        const clipping_rect origin = server::pixels_of(held, scale);
        fPartFrom = to_rect(BPrivate::moved(from, -origin.left, -origin.top));
    }

    // All of a bitmap that was a drawing, in the pixels that it is going to cover.
    void _MakeSharp(const BBitmap& bitmap, float scale)
    {
        if (fFrom != bitmap.Bounds().OffsetToCopy(0, 0) || !fTo.IsValid())
            return;
        const clipping_rect box = server::pixels_of(pixels_of(fTo), scale);
        const int32 width = box.right - box.left + 1, height = box.bottom - box.top + 1;
        fSharp = BPrivate::sharp_pixels(bitmap, width, height);
        if (fSharp == nullptr)
            return;
        auto* bits = reinterpret_cast<uint8*>(const_cast<uint32*>(fSharp->data()));
        fPart.surface = {bits, width * 4, width, height, B_RGBA32};
        fPartFrom = BRect(0, 0, float(width - 1), float(height - 1));
    }

    const ViewData& fData;
    const server::Surface fSource;
    const BRect fFrom, fTo;
    const uint32 fOptions;  // as they were given
    uint32 fFineOptions;
    FinePicture* fLive = nullptr;  // drawn as it is; null: the part
    clipping_rect fLiveUnits;
    FinePicture::Part fPart;
    std::shared_ptr<const std::vector<uint32>> fSharp;  // else the part's pixels
    BRect fPartFrom;
};

}  // namespace

void BView::DrawBitmapAsync(const BBitmap* aBitmap, BRect bitmapRect, BRect viewRect,
                            uint32 options)
{
    ViewData& data = *fData;
    if (aBitmap == nullptr || !aBitmap->IsValid())
        return;
    if ((options & B_TILE_BITMAP) == B_TILE_BITMAP) {
        DrawTiledBitmapAsync(aBitmap, viewRect);
        return;
    }
    if (data.recording != nullptr) {
        data.recording->AddBitmap(PictureOp::DrawBitmap, *aBitmap, bitmapRect, viewRect, options);
        return;
    }
    if (!data.Ready() && !data.MakeReady())
        return;
    paint_on(data, BitmapDrawing(data, *aBitmap, bitmapRect, viewRect, options));
}

void BView::DrawBitmapAsync(const BBitmap* aBitmap, BRect bitmapRect, BRect viewRect)
{
    DrawBitmapAsync(aBitmap, bitmapRect, viewRect, 0);
}

void BView::DrawBitmapAsync(const BBitmap* aBitmap, BRect viewRect)
{
    if (aBitmap != nullptr)
        DrawBitmapAsync(aBitmap, aBitmap->Bounds(), viewRect, 0);
}

void BView::DrawBitmapAsync(const BBitmap* aBitmap, BPoint where)
{
    if (aBitmap != nullptr)
        DrawBitmapAsync(aBitmap, aBitmap->Bounds().OffsetToCopy(where));
}

void BView::DrawBitmapAsync(const BBitmap* aBitmap) { DrawBitmapAsync(aBitmap, fData->state.pen); }

void BView::DrawBitmap(const BBitmap* aBitmap, BRect bitmapRect, BRect viewRect, uint32 options)
{
    DrawBitmapAsync(aBitmap, bitmapRect, viewRect, options);
}

void BView::DrawBitmap(const BBitmap* aBitmap, BRect bitmapRect, BRect viewRect)
{
    DrawBitmapAsync(aBitmap, bitmapRect, viewRect, 0);
}

void BView::DrawBitmap(const BBitmap* aBitmap, BRect viewRect)
{
    DrawBitmapAsync(aBitmap, viewRect);
}

void BView::DrawBitmap(const BBitmap* aBitmap, BPoint where) { DrawBitmapAsync(aBitmap, where); }

void BView::DrawBitmap(const BBitmap* aBitmap) { DrawBitmapAsync(aBitmap); }

// Where the tile begins that holds `from`, of those that start at `origin` less the phase.
static double first_tile(float origin, float phase, float from, double size)
{
    const double inside = std::fmod(double(from) - (double(origin) - double(phase)), size);
    return double(from) - (inside < 0 ? inside + size : inside);
}

void BView::DrawTiledBitmapAsync(const BBitmap* aBitmap, BRect viewRect, BPoint phase)
{
    ViewData& data = *fData;
    if (aBitmap == nullptr || !aBitmap->IsValid())
        return;
    if (data.recording != nullptr) {
        // As one call, with the phase where the part of the bitmap stands otherwise.
        data.recording->AddBitmap(PictureOp::DrawBitmap, *aBitmap, BRect(phase, phase), viewRect,
                                  B_TILE_BITMAP);
        return;
    }
    if (!data.Ready() && !data.MakeReady())
        return;
    // Only tiles that can show.
    const clipping_rect shown = data.drawable->FrameInt();
    const BRect area = viewRect & BRect(data.Unmap(BPoint(shown.left, shown.top)),
                                        data.Unmap(BPoint(shown.right, shown.bottom)));
    const BRect bounds = aBitmap->Bounds();
    const double width = double(bounds.Width()) + 1, height = double(bounds.Height()) + 1;
    const double left = first_tile(viewRect.left, phase.x, area.left, width);
    const double top = first_tile(viewRect.top, phase.y, area.top, height);
    const double count = ((area.right - left) / width + 1) * ((area.bottom - top) / height + 1);
    // Also false for what is no number.
    if (!area.IsValid() || !(count <= kMostTiles))
        return;
    for (double y = top; y <= area.bottom; y += height) {
        for (double x = left; x <= area.right; x += width) {
            const BRect whole(float(x), float(y), float(x + width - 1), float(y + height - 1));
            const BRect tile = whole & viewRect;
            DrawBitmapAsync(aBitmap,
                            tile.OffsetByCopy(bounds.left - whole.left, bounds.top - whole.top),
                            tile, 0);
        }
    }
}

void BView::DrawTiledBitmap(const BBitmap* aBitmap, BRect viewRect, BPoint phase)
{
    DrawTiledBitmapAsync(aBitmap, viewRect, phase);
}
