#include "painter/board.h"

using namespace server;

std::vector<Shape> random_shapes(std::mt19937& random)
{
    const auto in = [&](int low, int high) {
        return float(std::uniform_int_distribution<int>(low, high)(random));
    };
    const auto place = [&] { return BPoint(in(-40, 140), in(-40, 120)); };
    const auto places = [&](int count) {
        std::vector<BPoint> points(count);
        for (BPoint& point : points)
            point = place();
        return points;
    };
    std::vector<Shape> shapes;
    const auto add = [&](const char* name, Draw draw) { shapes.push_back({name, draw}); };

    const BPoint a = place(), b = place();
    const float rx = in(0, 60), ry = in(0, 60), from = in(-400, 400), arc = in(-400, 400);
    const BRect box(std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y));
    add("line", [=](auto& t, auto& p) { return StrokeLine(t, p, a, b); });
    add("row", [=](auto& t, auto& p) { return StrokeLine(t, p, a, BPoint(b.x, a.y)); });
    add("column", [=](auto& t, auto& p) { return StrokeLine(t, p, a, BPoint(a.x, b.y)); });
    add("diagonal",
        [=](auto& t, auto& p) { return StrokeLine(t, p, a, a + BPoint(rx, arc < 0 ? -rx : rx)); });
    add("rect", [=](auto& t, auto& p) { return StrokeRect(t, p, box); });
    add("filled rect", [=](auto& t, auto& p) { return FillRect(t, p, box); });
    add("round rect", [=](auto& t, auto& p) { return StrokeRoundRect(t, p, box, rx, ry); });
    add("filled round rect", [=](auto& t, auto& p) { return FillRoundRect(t, p, box, rx, ry); });
    add("ellipse", [=](auto& t, auto& p) { return StrokeEllipse(t, p, a, rx, ry); });
    add("filled ellipse", [=](auto& t, auto& p) { return FillEllipse(t, p, a, rx, ry); });
    add("circle", [=](auto& t, auto& p) { return StrokeEllipse(t, p, a, rx / 2, rx / 2); });
    add("arc", [=](auto& t, auto& p) { return StrokeArc(t, p, a, rx, ry, from, arc); });
    add("filled arc", [=](auto& t, auto& p) { return FillArc(t, p, a, rx, ry, from, arc); });
    for (int count : {1, 2, 3, 5, 10, 40}) {
        const std::vector<BPoint> points = places(count);
        add("polygon",
            [=](auto& t, auto& p) { return StrokePolygon(t, p, points.data(), count, true); });
        add("open polygon",
            [=](auto& t, auto& p) { return StrokePolygon(t, p, points.data(), count, false); });
        add("filled polygon",
            [=](auto& t, auto& p) { return FillPolygon(t, p, points.data(), count); });
    }
    const std::vector<BPoint> curve = places(4);
    add("curve", [=](auto& t, auto& p) { return StrokeBezier(t, p, curve.data()); });
    add("filled curve", [=](auto& t, auto& p) { return FillBezier(t, p, curve.data()); });
    const std::vector<BPoint> path = places(9);
    const auto ops = [=] {
        static const uint8 kOps[] = {kPathMoveTo, kPathLineTo, kPathBezierTo,
                                     kPathClose,  kPathMoveTo, kPathLineTo,
                                     kPathLineTo, kPathClose,  kPathLineTo};
        return PathOps{kOps, 9, path.data(), 9};
    };
    add("path", [=](auto& t, auto& p) { return StrokePath(t, p, ops()); });
    add("filled path", [=](auto& t, auto& p) { return FillPath(t, p, ops()); });
    BRegion region(box);
    region.Include(BRect(a.x + 5, a.y - 20, a.x + 30, a.y + 20));
    region.Exclude(BRect(b.x, b.y, b.x + 10, b.y + 10));
    add("region", [=](auto& t, auto& p) { return FillRegion(t, p, region); });
    return shapes;
}
