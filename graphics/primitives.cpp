// The drawing calls: shapes, text, and copying. Each resolves its target, draws through the view,
// and says what changed. Any thread.

#include "graphics/raster_port.h"

#include "graphics/icons.h"
#include "plinth.h"

#include <Bitmap.h>
#include <Region.h>

#include <algorithm>
#include <memory>
#include <new>

static BRect box_around(int32_t cx, int32_t cy, int32_t rx, int32_t ry)
{
    return BRect(static_cast<float>(static_cast<int64_t>(cx) - rx),
                 static_cast<float>(static_cast<int64_t>(cy) - ry),
                 static_cast<float>(static_cast<int64_t>(cx) + rx),
                 static_cast<float>(static_cast<int64_t>(cy) + ry));
}

static BRect box_of(const BPoint* points, int32_t count)
{
    BRect box(points[0], points[0]);
    for (int32_t i = 1; i < count; i++) {
        box.left = std::min(box.left, points[i].x);
        box.top = std::min(box.top, points[i].y);
        box.right = std::max(box.right, points[i].x);
        box.bottom = std::max(box.bottom, points[i].y);
    }
    return box;
}

// How far a stroke may reach beyond the shape: half the pen, as much longer at a mitred corner as
// the limit allows.
static BRect stroked(const BView& view, BRect box)
{
    const float pen = view.PenSize();
    if (pen > 1.0f)
        box.InsetBy(-pen * kMiterLimit / 2 - 1, -pen * kMiterLimit / 2 - 1);
    return box;
}

// The frame of all shapes: resolve, draw, refresh `box`.
template <class Draw>
static inline void fill(intptr_t target, const char* call, BRect box, Draw draw)
{
    on_port(target, call, [&](RasterPort& port) {
        draw(port.View());
        port.Refresh(box);
    });
}

template <class Draw>
static inline void stroke(intptr_t target, const char* call, BRect box, Draw draw)
{
    on_port(target, call, [&](RasterPort& port) {
        draw(port.View());
        port.Refresh(stroked(port.View(), box));
    });
}

// --- rectangles and ellipses

extern "C" void FRectangle(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h)
{
    const BRect rect = rect_of(x, y, w, h);
    fill(target, __func__, rect, [&](BView& view) { view.FillRect(rect); });
}

extern "C" void Rectangle(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h)
{
    const BRect rect = rect_of(x, y, w, h);
    stroke(target, __func__, rect, [&](BView& view) { view.StrokeRect(rect); });
}

extern "C" void SetStrokeRectangle(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h,
                                   int32_t rx, int32_t ry)
{
    const BRect rect = rect_of(x, y, w, h);
    stroke(target, __func__, rect, [&](BView& view) {
        view.StrokeRoundRect(rect, static_cast<float>(rx), static_cast<float>(ry));
    });
}

extern "C" void SetStrokeFill(intptr_t target, int32_t x, int32_t y, int32_t w, int32_t h,
                              int32_t rx, int32_t ry)
{
    const BRect rect = rect_of(x, y, w, h);
    fill(target, __func__, rect, [&](BView& view) {
        view.FillRoundRect(rect, static_cast<float>(rx), static_cast<float>(ry));
    });
}

static void stroke_ellipse(intptr_t target, const char* call, int32_t cx, int32_t cy, int32_t rx,
                           int32_t ry)
{
    stroke(target, call, box_around(cx, cy, rx, ry), [&](BView& view) {
        view.StrokeEllipse(point_of(cx, cy), static_cast<float>(rx), static_cast<float>(ry));
    });
}

static void fill_ellipse(intptr_t target, const char* call, int32_t cx, int32_t cy, int32_t rx,
                         int32_t ry)
{
    fill(target, call, box_around(cx, cy, rx, ry), [&](BView& view) {
        view.FillEllipse(point_of(cx, cy), static_cast<float>(rx), static_cast<float>(ry));
    });
}

extern "C" void Ellipse(intptr_t target, int32_t cx, int32_t cy, int32_t rx, int32_t ry)
{
    stroke_ellipse(target, __func__, cx, cy, rx, ry);
}

extern "C" void FEllipse(intptr_t target, int32_t cx, int32_t cy, int32_t rx, int32_t ry)
{
    fill_ellipse(target, __func__, cx, cy, rx, ry);
}

extern "C" void Circle(intptr_t target, int32_t cx, int32_t cy, int32_t r)
{
    stroke_ellipse(target, __func__, cx, cy, r, r);
}

extern "C" void FCircle(intptr_t target, int32_t cx, int32_t cy, int32_t r)
{
    fill_ellipse(target, __func__, cx, cy, r, r);
}

extern "C" void Arc(intptr_t target, int32_t cx, int32_t cy, int32_t rx, int32_t ry, int32_t start,
                    int32_t arc)
{
    stroke(target, __func__, box_around(cx, cy, rx, ry), [&](BView& view) {
        view.StrokeArc(point_of(cx, cy), static_cast<float>(rx), static_cast<float>(ry),
                       static_cast<float>(start), static_cast<float>(arc));
    });
}

extern "C" void FArc(intptr_t target, int32_t cx, int32_t cy, int32_t rx, int32_t ry, int32_t start,
                     int32_t arc)
{
    fill(target, __func__, box_around(cx, cy, rx, ry), [&](BView& view) {
        view.FillArc(point_of(cx, cy), static_cast<float>(rx), static_cast<float>(ry),
                     static_cast<float>(start), static_cast<float>(arc));
    });
}

// --- lines and polygons

extern "C" void Triangle(intptr_t target, int32_t x1, int32_t y1, int32_t x2, int32_t y2,
                         int32_t x3, int32_t y3)
{
    const BPoint corners[] = {point_of(x1, y1), point_of(x2, y2), point_of(x3, y3)};
    stroke(target, __func__, box_of(corners, 3),
           [&](BView& view) { view.StrokeTriangle(corners[0], corners[1], corners[2]); });
}

extern "C" void FTriangle(intptr_t target, int32_t x1, int32_t y1, int32_t x2, int32_t y2,
                          int32_t x3, int32_t y3)
{
    const BPoint corners[] = {point_of(x1, y1), point_of(x2, y2), point_of(x3, y3)};
    fill(target, __func__, box_of(corners, 3),
         [&](BView& view) { view.FillTriangle(corners[0], corners[1], corners[2]); });
}

extern "C" void Line(intptr_t target, int32_t x1, int32_t y1, int32_t x2, int32_t y2)
{
    const BPoint ends[] = {point_of(x1, y1), point_of(x2, y2)};
    stroke(target, __func__, box_of(ends, 2),
           [&](BView& view) { view.StrokeLine(ends[0], ends[1]); });
}

extern "C" void LineTo(intptr_t target, int32_t x, int32_t y)
{
    on_port(target, __func__, [=](RasterPort& port) {
        const BPoint ends[] = {port->PenLocation(), point_of(x, y)};
        port->StrokeLine(ends[1]);
        port.Refresh(stroked(port.View(), box_of(ends, 2)));
    });
}

extern "C" void MoveTo(intptr_t target, int32_t x, int32_t y)
{
    on_port(target, __func__, [=](RasterPort& port) { port->MovePenTo(point_of(x, y)); });
}

extern "C" void GetCurrentPos(intptr_t target, int32_t xy[2])
{
    RasterPort port(target, __func__);
    if (!port || xy == nullptr)
        return;
    const BPoint pen = port->PenLocation();
    xy[0] = truncated(pen.x);
    xy[1] = truncated(pen.y);
}

// The points of a call as the platform's, without an allocation while they are few.
class PointList {
public:
    PointList(const int16_t* pairs, int32_t count)
    {
        if (pairs == nullptr || count < 1)
            return;
        fPoints = fFew;
        if (count > kFew) {
            fMany.reset(new (std::nothrow) BPoint[count]);
            fPoints = fMany.get();
        }
        if (fPoints == nullptr)
            return;
        fCount = count;
        for (int32_t i = 0; i < count; i++)
            fPoints[i].Set(pairs[2 * i], pairs[2 * i + 1]);
    }

    int32_t Count() const { return fCount; }
    const BPoint* Points() const { return fPoints; }
    BRect Box() const { return box_of(fPoints, fCount); }

private:
    static const int32_t kFew = 64;

    BPoint fFew[kFew];
    std::unique_ptr<BPoint[]> fMany;
    BPoint* fPoints = nullptr;
    int32_t fCount = 0;
};

extern "C" void FillPolygon(intptr_t target, int32_t count, const int16_t* points)
{
    const PointList corners(points, count);
    if (corners.Count() == 0)
        return;
    fill(target, __func__, corners.Box(),
         [&](BView& view) { view.FillPolygon(corners.Points(), corners.Count()); });
}

extern "C" void StrokePolygon(intptr_t target, int32_t count, const int16_t* points, int32_t closed)
{
    const PointList corners(points, count);
    if (corners.Count() == 0)
        return;
    stroke(target, __func__, corners.Box(), [&](BView& view) {
        view.StrokePolygon(corners.Points(), corners.Count(), closed != 0);
    });
}

extern "C" void PolyDraw(intptr_t target, int32_t count, const int16_t* points)
{
    const PointList corners(points, count);
    if (corners.Count() < 2)
        return;
    stroke(target, __func__, corners.Box(), [&](BView& view) {
        const BPoint* corner = corners.Points();
        const rgb_color color = view.HighColor();
        view.BeginLineArray(corners.Count() - 1);
        for (int32_t i = 1; i < corners.Count(); i++)
            view.AddLine(corner[i - 1], corner[i], color);
        view.EndLineArray();
    });
}

// The curve drawn last.
static thread_local BPoint sBezier[4] = {BPoint(0.1f, 0.9f), BPoint(0.3f, 0.6f), BPoint(100, 15),
                                         BPoint(140, 96)};

static bool take_bezier(const int16_t* points)
{
    if (points == nullptr)
        return false;
    for (int i = 0; i < 4; i++)
        sBezier[i].Set(points[2 * i], points[2 * i + 1]);
    return true;
}

extern "C" void FillBezier(intptr_t target, const int16_t* points)
{
    if (take_bezier(points))
        fill(target, __func__, box_of(sBezier, 4), [](BView& view) { view.FillBezier(sBezier); });
}

extern "C" void StrokeBezier(intptr_t target, const int16_t* points)
{
    if (take_bezier(points))
        stroke(target, __func__, box_of(sBezier, 4),
               [](BView& view) { view.StrokeBezier(sBezier); });
}

// --- text

// Where a text may have left pixels: around the line that it stands on, at any angle. Accents,
// slanted letters and those of other fonts reach out of its own height.
static BRect text_box(BPoint start, BPoint end, const font_height& height)
{
    BRect box(std::min(start.x, end.x), std::min(start.y, end.y), std::max(start.x, end.x),
              std::max(start.y, end.y));
    const float line = height.ascent + height.descent + height.leading;
    box.InsetBy(-2 * line, -2 * line);
    return box;
}

extern "C" void Text(intptr_t target, const char* text)
{
    if (text == nullptr || *text == '\0')
        return;
    on_port(target, __func__, [=](RasterPort& port) {
        font_height height;
        port->GetFontHeight(&height);
        BPoint start = port->PenLocation();
        start.y += height.ascent + height.descent + height.leading;
        port->MovePenTo(start);
        port->DrawString(text);
        // Kept on purpose: it shows, too, what WritePixel left.
        port.RefreshAll(text_box(start, port->PenLocation(), height));
        port->MovePenTo(start);
    });
}

extern "C" int32_t GetTextWidth(intptr_t target, const char* text)
{
    if (text == nullptr)
        return 0;
    return ask_port(target, __func__,
                    [=](RasterPort& port) { return rounded(port->StringWidth(text)); });
}

// --- areas

extern "C" void Clear(intptr_t target)
{
    on_port(target, __func__, [=](RasterPort& port) {
        const BRect bounds = port.WindowBounds();
        const rgb_color high = port->HighColor();
        port->SetHighColor(port->ViewColor());
        port->FillRect(bounds);
        port->SetHighColor(high);
        port.Refresh(bounds);
    });
}

extern "C" void Blit(intptr_t target, int32_t sx, int32_t sy, int32_t w, int32_t h, int32_t dx,
                     int32_t dy)
{
    const BRect to = rect_of(dx, dy, w, h);
    fill(target, __func__, to, [&](BView& view) { view.CopyBits(rect_of(sx, sy, w, h), to); });
}

// Draws an image in a mode, which is then as before.
static void draw_image(BView& view, const BBitmap& image, BRect to, drawing_mode mode,
                       uint32 options)
{
    const drawing_mode before = view.DrawingMode();
    view.SetDrawingMode(mode);
    view.DrawBitmap(&image, image.Bounds(), to, options);
    view.SetDrawingMode(before);
}

extern "C" void DrawIcon(intptr_t target, int32_t ident, int32_t x, int32_t y, int32_t selected)
{
    RasterPort port(target, __func__);
    ImagesLock images;
    const BBitmap* image = icon_image(images, ident, selected != 0);
    if (!port || image == nullptr)
        return;
    const BRect bounds = image->Bounds();
    const BRect to = rect_of(x, y, bounds.IntegerWidth(), bounds.IntegerHeight());
    draw_image(port.View(), *image, to, B_OP_OVER, 0);
    port.Refresh(to);
}

extern "C" void DrawImage(intptr_t target, int32_t ident, int32_t x, int32_t y, int32_t width,
                          int32_t height)
{
    if (width < 0 || height < 0)
        return;
    RasterPort port(target, __func__);
    ImagesLock images;
    const BBitmap* image = icon_image(images, ident, false);
    if (!port || image == nullptr)
        return;
    const BRect bounds = image->Bounds();
    const BRect to = rect_of(x, y, width != 0 ? width - 1 : bounds.IntegerWidth(),
                             height != 0 ? height - 1 : bounds.IntegerHeight());
    if (image->ColorSpace() == B_RGB32) {
        draw_image(port.View(), *image, to, B_OP_COPY, B_FILTER_BITMAP_BILINEAR);
    } else {
        source_alpha source;
        alpha_function function;
        port->GetBlendingMode(&source, &function);
        // Into an image, which may be transparent itself, both are laid over one another.
        const bool is_image = port.Window() == nullptr && port.Raster() != nullptr;
        port->SetBlendingMode(B_PIXEL_ALPHA, is_image ? B_ALPHA_COMPOSITE : B_ALPHA_OVERLAY);
        draw_image(port.View(), *image, to, B_OP_ALPHA, B_FILTER_BITMAP_BILINEAR);
        port->SetBlendingMode(source, function);
    }
    port.Refresh(to);
}

// A black line and a white one, shifted by `step`, in copy mode; the pen stays as it was.
static void draw_separator(intptr_t target, const char* call, BPoint from, BPoint to, BPoint step)
{
    const rgb_color black = {0, 0, 0, 255};
    const rgb_color white = {255, 255, 255, 255};
    stroke(target, call, BRect(from, to + step), [&](BView& view) {
        const drawing_mode mode = view.DrawingMode();
        const rgb_color high = view.HighColor();
        const BPoint pen = view.PenLocation();
        view.SetDrawingMode(B_OP_COPY);
        view.SetHighColor(black);
        view.StrokeLine(from, to);
        view.SetHighColor(white);
        view.StrokeLine(from + step, to + step);
        view.SetDrawingMode(mode);
        view.SetHighColor(high);
        view.MovePenTo(pen);
    });
}

extern "C" void DrawSeparatorHoriz(intptr_t target, int32_t x, int32_t y, int32_t length)
{
    const BRect line = rect_of(x, y, length, 0);
    draw_separator(target, __func__, line.LeftTop(), line.RightBottom(), BPoint(0, 1));
}

extern "C" void DrawSeparatorVert(intptr_t target, int32_t x, int32_t y, int32_t length)
{
    const BRect line = rect_of(x, y, 0, length);
    draw_separator(target, __func__, line.LeftTop(), line.RightBottom(), BPoint(1, 0));
}
