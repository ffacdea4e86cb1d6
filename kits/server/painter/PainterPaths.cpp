// Curves as short lines, wide pens as outlines, and everything that a transformation turns.

#include "server/painter/PainterPaths.h"

#include "server/painter/PainterLines.h"
#include "server/painter/PainterUnits.h"

namespace server {

namespace {

const double kTolerance = 0.1;  // pixels between a curve and its lines
const int kMostSteps = 1000;

bool is_finite(const DPoint& point) { return std::isfinite(point.x) && std::isfinite(point.y); }

int curve_steps(double steps)
{
    return steps < kMostSteps ? std::max(1, int(std::ceil(steps))) : kMostSteps;
}

DPoint to_dpoint(const BPoint& point) { return {point.x, point.y}; }

// One side of an outline, between rows of pixel centres.
struct Edge {
    double x, y, slope;
    int32 first, last;  // rows
    int32 winding;
};

// A polygon of fractional points: a row's pixels are those whose centre is inside.
class OutlineScan {
public:
    OutlineScan(const Outline& outline, const clipping_rect& box, bool evenOdd)
        : fBox(box), fEvenOdd(evenOdd)
    {
        for (int32 part = 0; part < outline.CountParts(); part++) {
            int32 count;
            const DPoint* points = outline.Part(part, &count);
            for (int32 i = 0; i < count; i++)
                _AddEdge(points[i], points[i + 1 < count ? i + 1 : 0]);
        }
        std::sort(fEdges.begin(), fEdges.end(),
                  [](const Edge& a, const Edge& b) { return a.first < b.first; });
    }

    template <class Pen>
    void Draw(const Pen& pen, const clipping_rect& part)
    {
        std::vector<Crossing> active;
        size_t next = 0;
        for (int32 y = part.top; y <= part.bottom; y++) {
            std::erase_if(active, [&](const Crossing& item) { return item.edge->last < y; });
            for (; next < fEdges.size() && fEdges[next].first <= y; next++) {
                if (fEdges[next].last >= y)
                    active.push_back({&fEdges[next], 0});
            }
            for (Crossing& item : active)
                item.x = item.edge->x + (y - item.edge->y) * item.edge->slope;
            sort_nearly_sorted(active.data(), int32(active.size()),
                               [](const Crossing& item) { return item.x; });
            _DrawRow(pen, part, y, active);
        }
    }

private:
    struct Crossing {
        const Edge* edge;
        double x;
    };

    void _AddEdge(DPoint from, DPoint to)
    {
        int32 winding = 1;
        if (from.y > to.y) {
            std::swap(from, to);
            winding = -1;
        }
        const double first = std::max(std::ceil(from.y), double(fBox.top));
        const double last = std::min(std::ceil(to.y) - 1, double(fBox.bottom));
        if (first <= last)
            fEdges.push_back({from.x, from.y, (to.x - from.x) / (to.y - from.y), int32(first),
                              int32(last), winding});
    }

    template <class Pen>
    void _DrawRow(const Pen& pen, const clipping_rect& part, int32 y,
                  const std::vector<Crossing>& active) const
    {
        int32 winding = 0;
        int64 left = 0, done = INT64_MIN;
        for (const Crossing& item : active) {
            const bool wasInside = _Inside(winding);
            winding += item.edge->winding;
            const bool inside = _Inside(winding);
            if (inside == wasInside)
                continue;
            const double x = std::clamp(item.x, part.left - 1.0, part.right + 2.0);
            const int64 pixel = int64(std::ceil(x));
            if (inside) {
                left = std::max(pixel, done);
            } else if (left < pixel) {
                draw_run(pen, part, y, left, pixel - 1);
                done = pixel;
            }
        }
    }
    bool _Inside(int32 winding) const { return fEvenOdd ? (winding & 1) != 0 : winding != 0; }

    clipping_rect fBox;
    bool fEvenOdd;
    std::vector<Edge> fEdges;
};

// Adds the area of a wide line piece by piece; every piece is convex.
class Widener {
public:
    Widener(const Paint& paint, const Polyline& line, Outline* outline)
        : fPaint(paint), fHalf(std::min(double(paint.penSize), 1e6) / 2), fOutline(outline)
    {
        for (const DPoint& point : line.points) {
            if (fPoints.empty() || point.x != fPoints.back().x || point.y != fPoints.back().y)
                fPoints.push_back(point);
        }
        fClosed = line.closed;
        fSmooth = line.smooth;
        if (fClosed && fPoints.size() > 1 && fPoints.front().x == fPoints.back().x &&
            fPoints.front().y == fPoints.back().y)
            fPoints.pop_back();
        fClosed = fClosed && fPoints.size() > 2;
    }

    void Run()
    {
        const size_t count = fPoints.size();
        if (count == 1)
            _AddDot(fPoints[0]);
        if (count < 2)
            return;
        const size_t segments = fClosed ? count : count - 1;
        for (size_t i = 0; i < segments; i++)
            _AddSegment(fPoints[i], fPoints[(i + 1) % count], !fClosed && i == 0,
                        !fClosed && i + 1 == segments);
        for (size_t i = fClosed ? 0 : 1; i < (fClosed ? count : count - 1); i++)
            _AddJoin(fPoints[(i + count - 1) % count], fPoints[i], fPoints[(i + 1) % count]);
        if (!fClosed && fPaint.cap == B_ROUND_CAP) {
            _AddCircle(fPoints.front());
            _AddCircle(fPoints.back());
        }
    }

private:
    static DPoint _Direction(const DPoint& from, const DPoint& to)
    {
        const double dx = to.x - from.x, dy = to.y - from.y;
        const double length = std::hypot(dx, dy);
        return {dx / length, dy / length};
    }
    void _Add(std::initializer_list<DPoint> corners)
    {
        bool first = true;
        for (const DPoint& corner : corners) {
            first ? fOutline->MoveTo(corner) : fOutline->LineTo(corner);
            first = false;
        }
    }
    void _AddCircle(const DPoint& center)
    {
        bool first = true;
        for (const DPoint& point : ellipse_points(center, fHalf, fHalf, 0, 360)) {
            first ? fOutline->MoveTo(point) : fOutline->LineTo(point);
            first = false;
        }
    }
    void _AddDot(const DPoint& at)
    {
        if (fPaint.cap == B_ROUND_CAP) {
            _AddCircle(at);
            return;
        }
        _Add({{at.x - fHalf, at.y - fHalf},
              {at.x + fHalf, at.y - fHalf},
              {at.x + fHalf, at.y + fHalf},
              {at.x - fHalf, at.y + fHalf}});
    }
    // How far an end reaches beyond its point: with a butt cap just over the point's own unit.
    double _Overhang(bool end) const
    {
        if (!end)
            return fPaint.join == B_SQUARE_JOIN ? fHalf : 0;
        return fPaint.cap == B_SQUARE_CAP ? fHalf
               : fPaint.cap == B_BUTT_CAP ? double(fPaint.unit) / 2
                                          : 0;
    }
    void _AddSegment(DPoint from, DPoint to, bool isFirst, bool isLast)
    {
        const DPoint along = _Direction(from, to);
        const double before = _Overhang(isFirst), after = _Overhang(isLast);
        from.x -= along.x * before, from.y -= along.y * before;
        to.x += along.x * after, to.y += along.y * after;
        const double x = -along.y * fHalf, y = along.x * fHalf;
        _Add({{from.x + x, from.y + y},
              {to.x + x, to.y + y},
              {to.x - x, to.y - y},
              {from.x - x, from.y - y}});
    }
    void _AddJoin(const DPoint& before, const DPoint& at, const DPoint& after)
    {
        const DPoint in = _Direction(before, at), out = _Direction(at, after);
        const double cross = in.x * out.y - in.y * out.x;
        const double dot = in.x * out.x + in.y * out.y;
        if (std::abs(cross) < 1e-9 && dot > 0)
            return;
        const double side = (cross > 0 ? -1 : 1) * fHalf;  // the outer one
        const DPoint first = {at.x - in.y * side, at.y + in.x * side};
        const DPoint second = {at.x - out.y * side, at.y + out.x * side};
        const bool rounded = fSmooth || fPaint.join == B_ROUND_JOIN;
        if (rounded && dot < 0.95) {
            _AddCircle(at);
        } else if (!fSmooth && fPaint.join == B_MITER_JOIN &&
                   2 <= (1 + dot) * fPaint.miterLimit * fPaint.miterLimit) {
            // The tip lies on the bisector, at half the pen's width over cos(turn / 2).
            const double reach = side / (1 + dot);
            const DPoint tip = {at.x - (in.y + out.y) * reach, at.y + (in.x + out.x) * reach};
            _Add({at, first, tip, second});
        } else if (fSmooth || (fPaint.join != B_BUTT_JOIN && fPaint.join != B_SQUARE_JOIN)) {
            _Add({at, first, second});
        }
    }

    const Paint& fPaint;
    const double fHalf;
    std::vector<DPoint> fPoints;
    bool fClosed, fSmooth;
    Outline* fOutline;
};

// Splits path operations into their parts.
template <class Part>
bool for_each_part(const PathOps& path, Part part)
{
    if ((path.ops == nullptr && path.opCount > 0) ||
        (path.points == nullptr && path.pointCount > 0))
        return false;
    std::vector<DPoint> points;
    DPoint start = {0, 0};
    bool closed = false;
    const auto finish = [&] {
        if (!points.empty())
            part(points, closed);
        points.clear();
        closed = false;
    };
    int32 used = 0;
    for (int32 i = 0; i < path.opCount; i++) {
        const uint8 op = path.ops[i];
        const int32 needs = op == kPathClose ? 0 : op == kPathBezierTo ? 3 : 1;
        if (op > kPathClose || path.pointCount - used < needs)
            break;
        DPoint next[4];
        for (int32 k = 0; k < needs; k++) {
            next[k + 1] = to_dpoint(path.points[used++]);
            if (!is_finite(next[k + 1]))
                return false;
        }
        if (op == kPathMoveTo || (closed && op != kPathClose))
            finish();
        if (op == kPathMoveTo) {
            start = next[1];
        } else if (points.empty()) {
            points.push_back(start);
        }
        if (op == kPathBezierTo) {
            next[0] = points.back();
            flatten_bezier(next, &points);
        } else if (op == kPathClose) {
            closed = true;
        } else {
            points.push_back(next[1]);
        }
    }
    finish();
    return true;
}

bool has_curves(const PathOps& path)
{
    const int32 count = path.ops != nullptr ? std::max(path.opCount, 0) : 0;
    const uint8* end = path.ops + count;
    return std::find(path.ops, end, uint8(kPathBezierTo)) != end;
}

}  // namespace

DPoint transformed(const Paint& paint, double x, double y)
{
    if (paint.transform != nullptr)
        paint.transform->Apply(&x, &y);
    return {x == x ? x : 0, y == y ? y : 0};
}

void Outline::Orient()
{
    for (int32 part = 0; part < CountParts(); part++) {
        int32 count;
        Part(part, &count);
        DPoint* points = fPoints.data() + fParts[part];
        double area = 0;
        for (int32 i = 0, last = count - 1; i < count; last = i++)
            area += (points[last].x - points[0].x) * (points[i].y - points[0].y) -
                    (points[i].x - points[0].x) * (points[last].y - points[0].y);
        if (area < 0)
            std::reverse(points, points + count);
    }
}

void flatten_bezier(const DPoint points[4], std::vector<DPoint>* line)
{
    const auto bend = [](const DPoint& a, const DPoint& b, const DPoint& c) {
        return std::hypot(a.x - 2 * b.x + c.x, a.y - 2 * b.y + c.y);
    };
    const double most =
        std::max(bend(points[0], points[1], points[2]), bend(points[1], points[2], points[3]));
    const int steps = curve_steps(std::sqrt(0.75 * most / kTolerance));
    for (int i = 1; i < steps; i++) {
        const double t = double(i) / steps, s = 1 - t;
        const double a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
        line->push_back({a * points[0].x + b * points[1].x + c * points[2].x + d * points[3].x,
                         a * points[0].y + b * points[1].y + c * points[2].y + d * points[3].y});
    }
    line->push_back(points[3]);
}

std::vector<DPoint> ellipse_points(DPoint center, double xRadius, double yRadius, double start,
                                   double arc)
{
    const double radius = std::max({xRadius, yRadius, 0.5});
    // A chord of angle a is radius * (1 - cos(a / 2)) away from its arc.
    const double step = 2 * std::acos(std::max(0.0, 1 - kTolerance / radius));
    const double sweep = arc * M_PI / 180;
    const int steps =
        std::max(curve_steps(step > 0 ? sweep / step : kMostSteps), arc >= 360 ? 8 : 1);
    std::vector<DPoint> points;
    for (int i = 0; i < steps + (arc < 360); i++) {
        const double angle = start * M_PI / 180 + sweep * i / steps;
        points.push_back(
            {center.x + xRadius * std::cos(angle), center.y - yRadius * std::sin(angle)});
    }
    return points;
}

void widen(const Paint& paint, const Polyline& line, Outline* outline)
{
    Widener(paint, line, outline).Run();
}

namespace {

// Around the points of an outline, grown by `room`; empty if one of them is no place.
clipping_rect reach_of(const Outline& outline, double room)
{
    double left = INFINITY, top = INFINITY, right = -INFINITY, bottom = -INFINITY;
    for (int32 part = 0; part < outline.CountParts(); part++) {
        int32 count;
        const DPoint* points = outline.Part(part, &count);
        for (int32 i = 0; i < count; i++) {
            if (!is_finite(points[i]))
                return kNoPixels;
            left = std::min(left, points[i].x), right = std::max(right, points[i].x);
            top = std::min(top, points[i].y), bottom = std::max(bottom, points[i].y);
        }
    }
    if (left > right)
        return kNoPixels;
    return box_of(pixel_at(left - room), pixel_at(top - room), pixel_at(right + room),
                  pixel_at(bottom + room));
}

// The points as the paint transforms them.
Outline placed_outline(const Paint& paint, const Outline& outline)
{
    Outline placed;
    for (int32 part = 0; part < outline.CountParts(); part++) {
        int32 count;
        const DPoint* points = outline.Part(part, &count);
        for (int32 i = 0; i < count; i++) {
            const DPoint point = transformed(paint, points[i].x, points[i].y);
            i == 0 ? placed.MoveTo(point) : placed.LineTo(point);
        }
    }
    return placed;
}

}  // namespace

clipping_rect fill_outline(const Target& target, const Brush& brush, const Outline& outline,
                           int32 fillRule)
{
    const clipping_rect reach = reach_of(outline, 0);
    const clipping_rect touched = touched_box(target, reach);
    if (is_empty(touched))
        return kNoPixels;
    OutlineScan scan(outline, touched, fillRule == B_EVEN_ODD);
    return paint_shape(target, brush, reach,
                       [&](const auto& pen, const clipping_rect& box) { scan.Draw(pen, box); });
}

clipping_rect fill_with_rim(const Target& target, const Paint& paint, const Outline& outline)
{
    const Outline inside = placed_outline(paint, outline);
    // The rim is not turned into a thicker one by a transformation: it follows the placed points.
    Paint rim;
    rim.unit = paint.unit;
    rim.penSize = std::round(paint.unit);
    rim.join = B_SQUARE_JOIN;
    Outline around;
    for (int32 part = 0; part < inside.CountParts(); part++) {
        int32 count;
        const DPoint* points = inside.Part(part, &count);
        widen(rim, {{points, points + count}, true, false}, &around);
    }
    around.Orient();
    const clipping_rect reach = reach_of(inside, double(paint.unit) * 2);
    const clipping_rect touched = touched_box(target, reach);
    if (is_empty(touched))
        return kNoPixels;
    OutlineScan shape(inside, touched, paint.fillRule == B_EVEN_ODD);
    OutlineScan edge(around, touched, false);
    return paint_parts(target, Brush(paint), reach, [&](const auto& pen, const clipping_rect& box) {
        shape.Draw(pen, box);
        edge.Draw(pen, box);
    });
}

clipping_rect fill_transformed_rect(const Target& target, const Paint& paint, const BRect& rect)
{
    if (is_nan(rect) || !rect.IsValid())
        return kNoPixels;
    // A rectangle covers its last pixels whole: it is turned by its outer edges.
    const double corners[][2] = {{rect.left, rect.top},
                                 {rect.right + 1.0, rect.top},
                                 {rect.right + 1.0, rect.bottom + 1.0},
                                 {rect.left, rect.bottom + 1.0}};
    Outline outline;
    for (const auto& corner : corners) {
        DPoint point = transformed(paint, corner[0], corner[1]);
        point.x -= 0.5;
        point.y -= 0.5;
        outline.IsEmpty() ? outline.MoveTo(point) : outline.LineTo(point);
    }
    return fill_outline(target, Brush(paint), outline, B_NONZERO);
}

clipping_rect stroke_polylines(const Target& target, const Paint& paint,
                               const std::vector<Polyline>& lines)
{
    if (!is_thin(paint)) {
        Outline outline;
        for (const Polyline& line : lines)
            widen(paint, line, &outline);
        Outline placed = placed_outline(paint, outline);
        placed.Orient();
        return fill_outline(target, Brush(paint), placed, B_NONZERO);
    }
    std::vector<ThinLine> segments;
    clipping_rect reach = kNoPixels;
    for (const Polyline& line : lines) {
        const size_t count = line.points.size();
        const auto add = [&](const DPoint& from, const DPoint& to) {
            const DPoint a = transformed(paint, from.x, from.y);
            const DPoint b = transformed(paint, to.x, to.y);
            segments.emplace_back(pixel_at(a.x), pixel_at(a.y), pixel_at(b.x), pixel_at(b.y));
            reach = unite(reach, segments.back().Reach());
        };
        for (size_t i = 1; i < count; i++)
            add(line.points[i - 1], line.points[i]);
        if (count == 1 || (count > 1 && line.closed))
            add(line.points[count - 1], line.points[0]);
    }
    return paint_parts(target, Brush(paint), reach, [&](const auto& pen, const clipping_rect& box) {
        for (const ThinLine& segment : segments)
            segment.Draw(pen, box);
    });
}

clipping_rect StrokeBezier(const Target& target, const Paint& paint, const BPoint points[4])
{
    if (points == nullptr)
        return kNoPixels;
    const uint8 ops[] = {kPathMoveTo, kPathBezierTo};
    return StrokePath(target, paint, {ops, 2, points, 4});
}

clipping_rect FillBezier(const Target& target, const Paint& paint, const BPoint points[4])
{
    if (points == nullptr)
        return kNoPixels;
    const uint8 ops[] = {kPathMoveTo, kPathBezierTo};
    return FillPath(target, paint, {ops, 2, points, 4});
}

clipping_rect StrokePath(const Target& target, const Paint& paint, const PathOps& path)
{
    if (is_scaled(target))
        return scaled::StrokePath(target, paint, path);
    std::vector<Polyline> lines;
    const bool smooth = has_curves(path);
    const bool whole = for_each_part(path, [&](const std::vector<DPoint>& points, bool closed) {
        lines.push_back({points, closed, smooth && paint.join == B_ROUND_JOIN});
    });
    return whole ? stroke_polylines(target, paint, lines) : kNoPixels;
}

clipping_rect FillPath(const Target& target, const Paint& paint, const PathOps& path)
{
    if (is_scaled(target))
        return scaled::FillPath(target, paint, path);
    Outline outline;
    const bool whole = for_each_part(path, [&](const std::vector<DPoint>& points, bool) {
        outline.MoveTo(points[0]);
        for (size_t i = 1; i < points.size(); i++)
            outline.LineTo(points[i]);
    });
    return whole ? fill_corners(target, paint, outline) : kNoPixels;
}

}  // namespace server
