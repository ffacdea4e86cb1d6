#ifndef INTERFACE_SHAPE_DATA_H
#define INTERFACE_SHAPE_DATA_H

#include <Shape.h>

#include <vector>

namespace BPrivate {

// What a BShape consists of.
struct [[gnu::visibility("hidden")]] ShapeData
{
    // Each op takes 1, 1, 3, 0 or 3 points. The first four are numbered as server::PathOp. An arc
    // has (rx, ry), (angle, flags) and its end.
    enum Op : uint8 { kMoveTo, kLineTo, kBezierTo, kClose, kArcTo };
    static const int32 kLargeArc = 1, kCounterClockwise = 2;  // flags of an arc

    static int32 PointsOf(Op op);
    static const ShapeData* Of(const BShape& shape) { return shape.fData; }

    // Appends the shape as move, line, Bezier and close operations: each point is scaled, then
    // moved to `origin`. An arc becomes curves. False when memory runs out.
    bool AppendPath(BPoint origin, float scale, std::vector<uint8>* pathOps,
                    std::vector<BPoint>* pathPoints) const;

    std::vector<Op> ops;
    std::vector<BPoint> points;
    BPoint start;    // of the open part
    BPoint current;  // the pen
};

}  // namespace BPrivate

#endif  // INTERFACE_SHAPE_DATA_H
