// Drawing calls of views. Each maps its places into the window, paints at once on the caller's
// thread, and tells the canvas what changed; during a recording it only notes the call.

#include <View.h>

#include <Gradient.h>
#include <Picture.h>
#include <Polygon.h>
#include <Shape.h>

#include <interface/drawing/ShapeData.h>
#include <interface/view/ViewPainting.h>

#include <cmath>
#include <cstring>

using BPrivate::paint_on;
using BPrivate::PictureOp;
using BPrivate::Span;
using BPrivate::ViewData;
using BPrivate::ViewPrivate;

namespace {

// Mapped points: a few on the stack.
class MappedPoints {
public:
    MappedPoints(const ViewData& data, const BPoint* points, int32 count)
    {
        if (count > kFew) {
            fMany.resize(count);
            fPoints = fMany.data();
        }
        for (int32 i = 0; i < count; i++)
            fPoints[i] = data.Map(points[i]);
    }
    operator const BPoint*() const { return fPoints; }

private:
    static const int32 kFew = 32;

    BPoint fFew[kFew];
    std::vector<BPoint> fMany;
    BPoint* fPoints = fFew;
};

// A length in the view's coordinates.
struct Length {
    float value;
};

// The arguments of a call as the server takes them.
BPoint in_window(const ViewData& data, const BPoint& point) { return data.Map(point); }
BRect in_window(const ViewData& data, const BRect& rect) { return data.Map(rect); }
float in_window(const ViewData& data, const Length& length) { return length.value * data.scale; }
MappedPoints in_window(const ViewData& data, const Span<BPoint>& points)
{
    return MappedPoints(data, points.values, points.count);
}
template <class Plain>
Plain in_window(const ViewData&, const Plain& value)
{
    return value;
}

// The frame of the drawing calls: notes one in a picture that is being recorded, or paints it.
template <class ServerCall, class... Arguments>
inline void draw(ViewData& data, PictureOp op, ServerCall paint, const ::pattern& pattern,
                 const Arguments&... arguments)
{
    if (!data.Begin(op, arguments..., pattern))
        return;
    data.state.paint.pattern = pattern;
    paint_on(data, [&](const server::Target& target) {
        return paint(target, data.state.paint, in_window(data, arguments)...);
    });
}

BPoint center_of(const BRect& rect)
{
    return BPoint((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
}

}  // namespace

// Lines.

void BView::StrokeLine(BPoint toPoint, ::pattern pattern)
{
    StrokeLine(fData->state.pen, toPoint, pattern);
}

void BView::StrokeLine(BPoint start, BPoint end, ::pattern pattern)
{
    fData->state.pen = end;
    draw(*fData, PictureOp::StrokeLine, server::StrokeLine, pattern, start, end);
}

void BView::StrokeLine(BPoint toPoint, const BGradient& gradient)
{
    StrokeLine(fData->state.pen, toPoint, gradient);
}

void BView::StrokeLine(BPoint start, BPoint end, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeLine(start, end); });
}

void BView::BeginLineArray(int32 count)
{
    if (count < 0)
        return;
    fData->lineArray = std::make_unique<BPrivate::LineArray>();
    fData->lineArray->limit = size_t(count);
}

void BView::AddLine(BPoint start, BPoint end, rgb_color color)
{
    BPrivate::LineArray* array = fData->lineArray.get();
    if (array != nullptr && array->lines.size() < array->limit)
        array->lines.push_back({start, end, color});
}

void BView::EndLineArray()
{
    ViewData& data = *fData;
    const std::unique_ptr<BPrivate::LineArray> array = std::move(data.lineArray);
    if (array == nullptr || array->lines.empty())
        return;
    const Span<BPrivate::LineArray::Line> span{array->lines.data(), int32(array->lines.size())};
    if (!data.Begin(PictureOp::LineArray, span))
        return;
    server::Paint& paint = data.state.paint;
    const rgb_color high = paint.high;
    paint.pattern = B_SOLID_HIGH;
    for (const BPrivate::LineArray::Line& line : array->lines) {
        paint.high = line.color;
        paint_on(data, [&](const server::Target& target) {
            return server::StrokeLine(target, paint, data.Map(line.start), data.Map(line.end));
        });
    }
    paint.high = high;
}

// Polygons.

void BView::StrokePolygon(const BPolygon* polygon, bool closed, ::pattern pattern)
{
    if (polygon != nullptr)
        StrokePolygon(polygon->fPoints, polygon->fCount, closed, pattern);
}

void BView::StrokePolygon(const BPoint* pointArray, int32 numPoints, bool closed, ::pattern pattern)
{
    if (pointArray == nullptr || numPoints < 1)
        return;
    const auto paint = [=](auto& target, auto& paint, const BPoint* points, bool closed) {
        return server::StrokePolygon(target, paint, points, numPoints, closed);
    };
    draw(*fData, PictureOp::StrokePolygon, paint, pattern, Span<BPoint>{pointArray, numPoints},
         closed);
}

// With bounds the polygon is fitted into them.
static BPolygon fitted(const BPoint* points, int32 count, BRect bounds)
{
    BPolygon polygon(points, count);
    polygon.MapTo(polygon.Frame(), bounds);
    return polygon;
}

void BView::StrokePolygon(const BPoint* pointArray, int32 numPoints, BRect bounds, bool closed,
                          ::pattern pattern)
{
    const BPolygon polygon = fitted(pointArray, numPoints, bounds);
    StrokePolygon(&polygon, closed, pattern);
}

void BView::StrokePolygon(const BPolygon* polygon, bool closed, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokePolygon(polygon, closed); });
}

void BView::StrokePolygon(const BPoint* pointArray, int32 numPoints, bool closed,
                          const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient,
                              [&] { StrokePolygon(pointArray, numPoints, closed); });
}

void BView::StrokePolygon(const BPoint* pointArray, int32 numPoints, BRect bounds, bool closed,
                          const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient,
                              [&] { StrokePolygon(pointArray, numPoints, bounds, closed); });
}

void BView::FillPolygon(const BPolygon* polygon, ::pattern pattern)
{
    if (polygon != nullptr)
        FillPolygon(polygon->fPoints, polygon->fCount, pattern);
}

void BView::FillPolygon(const BPoint* pointArray, int32 numPoints, ::pattern pattern)
{
    if (pointArray == nullptr || numPoints < 1)
        return;
    const auto paint = [=](auto& target, auto& paint, const BPoint* points) {
        return server::FillPolygon(target, paint, points, numPoints);
    };
    draw(*fData, PictureOp::FillPolygon, paint, pattern, Span<BPoint>{pointArray, numPoints});
}

void BView::FillPolygon(const BPoint* pointArray, int32 numPoints, BRect bounds, ::pattern pattern)
{
    const BPolygon polygon = fitted(pointArray, numPoints, bounds);
    FillPolygon(&polygon, pattern);
}

void BView::FillPolygon(const BPolygon* polygon, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillPolygon(polygon); });
}

void BView::FillPolygon(const BPoint* pointArray, int32 numPoints, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillPolygon(pointArray, numPoints); });
}

void BView::FillPolygon(const BPoint* pointArray, int32 numPoints, BRect bounds,
                        const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillPolygon(pointArray, numPoints, bounds); });
}

void BView::StrokeTriangle(BPoint point1, BPoint point2, BPoint point3, ::pattern pattern)
{
    const BPoint points[] = {point1, point2, point3};
    StrokePolygon(points, 3, true, pattern);
}

void BView::StrokeTriangle(BPoint point1, BPoint point2, BPoint point3, BRect, ::pattern pattern)
{
    StrokeTriangle(point1, point2, point3, pattern);
}

void BView::StrokeTriangle(BPoint point1, BPoint point2, BPoint point3, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeTriangle(point1, point2, point3); });
}

void BView::StrokeTriangle(BPoint point1, BPoint point2, BPoint point3, BRect,
                           const BGradient& gradient)
{
    StrokeTriangle(point1, point2, point3, gradient);
}

void BView::FillTriangle(BPoint point1, BPoint point2, BPoint point3, ::pattern pattern)
{
    const BPoint points[] = {point1, point2, point3};
    FillPolygon(points, 3, pattern);
}

void BView::FillTriangle(BPoint point1, BPoint point2, BPoint point3, BRect, ::pattern pattern)
{
    FillTriangle(point1, point2, point3, pattern);
}

void BView::FillTriangle(BPoint point1, BPoint point2, BPoint point3, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillTriangle(point1, point2, point3); });
}

void BView::FillTriangle(BPoint point1, BPoint point2, BPoint point3, BRect,
                         const BGradient& gradient)
{
    FillTriangle(point1, point2, point3, gradient);
}

// Rectangles and regions.

void BView::StrokeRect(BRect rect, ::pattern pattern)
{
    draw(*fData, PictureOp::StrokeRect, server::StrokeRect, pattern, rect);
}

void BView::StrokeRect(BRect rect, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeRect(rect); });
}

void BView::FillRect(BRect rect, ::pattern pattern)
{
    draw(*fData, PictureOp::FillRect, server::FillRect, pattern, rect);
}

void BView::FillRect(BRect rect, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillRect(rect); });
}

void BView::FillRegion(BRegion* region, ::pattern pattern)
{
    ViewData& data = *fData;
    if (region == nullptr)
        return;
    if (data.recording != nullptr) {
        for (int32 i = 0; i < region->CountRects(); i++)
            FillRect(region->RectAt(i), pattern);
        return;
    }
    if (!data.Begin(PictureOp::FillRegion))
        return;
    data.state.paint.pattern = pattern;
    if (data.scale == 1 && data.mapX == std::floor(data.mapX) &&
        data.mapY == std::floor(data.mapY)) {
        BRegion mapped(*region);
        mapped.OffsetBy(int32(data.mapX), int32(data.mapY));
        paint_on(data, [&](const server::Target& target) {
            return server::FillRegion(target, data.state.paint, mapped);
        });
        return;
    }
    for (int32 i = 0; i < region->CountRects(); i++) {
        paint_on(data, [&](const server::Target& target) {
            return server::FillRect(target, data.state.paint, data.MapPixels(region->RectAt(i)));
        });
    }
}

void BView::FillRegion(BRegion* region, const BGradient& gradient)
{
    if (region != nullptr && fData->recording != nullptr) {
        for (int32 i = 0; i < region->CountRects(); i++)
            FillRect(region->RectAt(i), gradient);
        return;
    }
    ViewPrivate::WithGradient(this, gradient, [&] { FillRegion(region); });
}

void BView::InvertRect(BRect rect)
{
    ViewData& data = *fData;
    if (data.Begin(PictureOp::InvertRect, rect))
        paint_on(data, [&](const server::Target& target) {
            return server::InvertRect(target, data.Map(rect));
        });
}

void BView::StrokeRoundRect(BRect rect, float xRadius, float yRadius, ::pattern pattern)
{
    draw(*fData, PictureOp::StrokeRoundRect, server::StrokeRoundRect, pattern, rect,
         Length{xRadius}, Length{yRadius});
}

void BView::StrokeRoundRect(BRect rect, float xRadius, float yRadius, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeRoundRect(rect, xRadius, yRadius); });
}

void BView::FillRoundRect(BRect rect, float xRadius, float yRadius, ::pattern pattern)
{
    draw(*fData, PictureOp::FillRoundRect, server::FillRoundRect, pattern, rect, Length{xRadius},
         Length{yRadius});
}

void BView::FillRoundRect(BRect rect, float xRadius, float yRadius, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillRoundRect(rect, xRadius, yRadius); });
}

// Ellipses and arcs.

void BView::StrokeEllipse(BPoint center, float xRadius, float yRadius, ::pattern pattern)
{
    draw(*fData, PictureOp::StrokeEllipse, server::StrokeEllipse, pattern, center, Length{xRadius},
         Length{yRadius});
}

void BView::StrokeEllipse(BRect rect, ::pattern pattern)
{
    StrokeEllipse(center_of(rect), rect.Width() / 2, rect.Height() / 2, pattern);
}

void BView::StrokeEllipse(BPoint center, float xRadius, float yRadius, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeEllipse(center, xRadius, yRadius); });
}

void BView::StrokeEllipse(BRect rect, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeEllipse(rect); });
}

void BView::FillEllipse(BPoint center, float xRadius, float yRadius, ::pattern pattern)
{
    draw(*fData, PictureOp::FillEllipse, server::FillEllipse, pattern, center, Length{xRadius},
         Length{yRadius});
}

void BView::FillEllipse(BRect rect, ::pattern pattern)
{
    FillEllipse(center_of(rect), rect.Width() / 2, rect.Height() / 2, pattern);
}

void BView::FillEllipse(BPoint center, float xRadius, float yRadius, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillEllipse(center, xRadius, yRadius); });
}

void BView::FillEllipse(BRect rect, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillEllipse(rect); });
}

void BView::StrokeArc(BPoint center, float xRadius, float yRadius, float startAngle, float arcAngle,
                      ::pattern pattern)
{
    draw(*fData, PictureOp::StrokeArc, server::StrokeArc, pattern, center, Length{xRadius},
         Length{yRadius}, startAngle, arcAngle);
}

void BView::StrokeArc(BRect rect, float startAngle, float arcAngle, ::pattern pattern)
{
    StrokeArc(center_of(rect), rect.Width() / 2, rect.Height() / 2, startAngle, arcAngle, pattern);
}

void BView::StrokeArc(BPoint center, float xRadius, float yRadius, float startAngle, float arcAngle,
                      const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient,
                              [&] { StrokeArc(center, xRadius, yRadius, startAngle, arcAngle); });
}

void BView::StrokeArc(BRect rect, float startAngle, float arcAngle, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeArc(rect, startAngle, arcAngle); });
}

void BView::FillArc(BPoint center, float xRadius, float yRadius, float startAngle, float arcAngle,
                    ::pattern pattern)
{
    draw(*fData, PictureOp::FillArc, server::FillArc, pattern, center, Length{xRadius},
         Length{yRadius}, startAngle, arcAngle);
}

void BView::FillArc(BRect rect, float startAngle, float arcAngle, ::pattern pattern)
{
    FillArc(center_of(rect), rect.Width() / 2, rect.Height() / 2, startAngle, arcAngle, pattern);
}

void BView::FillArc(BPoint center, float xRadius, float yRadius, float startAngle, float arcAngle,
                    const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient,
                              [&] { FillArc(center, xRadius, yRadius, startAngle, arcAngle); });
}

void BView::FillArc(BRect rect, float startAngle, float arcAngle, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillArc(rect, startAngle, arcAngle); });
}

// Curves and shapes.

void BView::StrokeBezier(BPoint* controlPoints, ::pattern pattern)
{
    if (controlPoints != nullptr)
        draw(*fData, PictureOp::StrokeBezier, server::StrokeBezier, pattern,
             Span<BPoint>{controlPoints, 4});
}

void BView::StrokeBezier(BPoint* controlPoints, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeBezier(controlPoints); });
}

void BView::FillBezier(BPoint* controlPoints, ::pattern pattern)
{
    if (controlPoints != nullptr)
        draw(*fData, PictureOp::FillBezier, server::FillBezier, pattern,
             Span<BPoint>{controlPoints, 4});
}

void BView::FillBezier(BPoint* controlPoints, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillBezier(controlPoints); });
}

// Strokes or fills a shape that starts at the pen.
template <class Draw>
static void draw_shape(ViewData& data, PictureOp op, const BShape* shape, ::pattern pattern,
                       Draw draw)
{
    const BPrivate::ShapeData* parts = shape != nullptr ? BPrivate::ShapeData::Of(*shape) : nullptr;
    if (parts == nullptr)
        return;
    if (data.recording != nullptr) {
        data.recording->AddShape(op, *shape, false);
        data.recording->Put(pattern);
        return;
    }
    if (!data.Ready() && !data.MakeReady())
        return;
    std::vector<uint8> ops;
    std::vector<BPoint> points;
    if (!parts->AppendPath(data.Map(data.state.pen), data.scale, &ops, &points))
        return;
    data.state.paint.pattern = pattern;
    const server::PathOps path{ops.data(), int32(ops.size()), points.data(), int32(points.size())};
    paint_on(data,
             [&](const server::Target& target) { return draw(target, data.state.paint, path); });
}

void BView::StrokeShape(BShape* shape, ::pattern pattern)
{
    draw_shape(*fData, PictureOp::StrokeShape, shape, pattern, server::StrokePath);
}

void BView::StrokeShape(BShape* shape, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { StrokeShape(shape); });
}

void BView::FillShape(BShape* shape, ::pattern pattern)
{
    draw_shape(*fData, PictureOp::FillShape, shape, pattern, server::FillPath);
}

void BView::FillShape(BShape* shape, const BGradient& gradient)
{
    ViewPrivate::WithGradient(this, gradient, [&] { FillShape(shape); });
}

// Text.

void BView::DrawChar(char aChar) { DrawString(&aChar, 1); }

void BView::DrawChar(char aChar, BPoint location) { DrawString(&aChar, 1, location); }

void BView::DrawString(const char* string, escapement_delta* delta)
{
    if (string != nullptr)
        DrawString(string, int32(strlen(string)), fData->state.pen, delta);
}

void BView::DrawString(const char* string, BPoint location, escapement_delta* delta)
{
    if (string != nullptr)
        DrawString(string, int32(strlen(string)), location, delta);
}

void BView::DrawString(const char* string, int32 length, escapement_delta* delta)
{
    DrawString(string, length, fData->state.pen, delta);
}

// A program's length may reach beyond the terminator.
static int32 text_length(const char* string, int32 length)
{
    return string != nullptr && length > 0 ? int32(strnlen(string, size_t(length))) : 0;
}

void BView::DrawString(const char* string, int32 length, BPoint location, escapement_delta* delta)
{
    ViewData& data = *fData;
    length = text_length(string, length);
    if (length == 0)
        return;
    data.state.pen = location;
    escapement_delta escapement = {0, 0};
    if (delta != nullptr)
        escapement = *delta;
    if (!data.Begin(PictureOp::DrawString, location, escapement, Span<char>{string, length})) {
        // The pen moves all the same.
        escapement_delta* use = delta != nullptr ? &escapement : nullptr;
        server::FontSpec font = data.state.fontSpec;
        font.size = data.state.font.Size();
        data.state.pen.x += server::StringWidth(font, string, length, use);
        return;
    }
    escapement.nonspace *= data.scale;
    escapement.space *= data.scale;
    data.state.paint.pattern = B_SOLID_HIGH;
    BPoint pen;
    paint_on(data, [&](const server::Target& target) {
        pen = data.Map(location);
        return server::DrawString(target, data.state.paint, data.state.fontSpec, string, length,
                                  delta != nullptr ? &escapement : nullptr, &pen);
    });
    data.state.pen = data.Unmap(pen);
}

void BView::DrawString(const char* string, const BPoint* locations, int32 locationCount)
{
    if (string != nullptr)
        DrawString(string, int32(strlen(string)), locations, locationCount);
}

void BView::DrawString(const char* string, int32 length, const BPoint* locations,
                       int32 locationCount)
{
    ViewData& data = *fData;
    length = text_length(string, length);
    if (length == 0 || locations == nullptr || locationCount < 1 ||
        !data.Begin(PictureOp::DrawStringAt, Span<BPoint>{locations, locationCount},
                    Span<char>{string, length}))
        return;
    data.state.paint.pattern = B_SOLID_HIGH;
    BPoint pen;
    const MappedPoints places(data, locations, locationCount);
    paint_on(data, [&](const server::Target& target) {
        pen = data.Map(locations[0]);
        return server::DrawStringAt(target, data.state.paint, data.state.fontSpec, string, length,
                                    places, locationCount, &pen);
    });
    data.state.pen = data.Unmap(pen);
}

// Layers are drawn as what they hold.
void BView::BeginLayer(uint8) {}
void BView::EndLayer() {}
