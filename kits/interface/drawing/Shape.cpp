// BShape keeps its operations as they were given; arcs turn into curves when it is drawn.

#include <Shape.h>

#include <Message.h>

#include <algorithm>
#include <cmath>
#include <new>

#include "interface/drawing/ShapeData.h"

using BPrivate::ShapeData;

namespace {

const char* const kOpsField = "ops";
const char* const kPointsField = "pts";

// Runs a change that may allocate and turns failure into a status.
template <class Change>
status_t change(ShapeData* data, Change apply)
{
    if (data == nullptr)
        return B_NO_MEMORY;
    try {
        apply(*data);
        return B_OK;
    } catch (const std::bad_alloc&) {
        return B_NO_MEMORY;
    }
}

void add(ShapeData& data, ShapeData::Op op, const BPoint* points, int32 count)
{
    data.points.reserve(data.points.size() + count);
    data.ops.push_back(op);
    data.points.insert(data.points.end(), points, points + count);
    if (count > 0)
        data.current = points[count - 1];
    if (op == ShapeData::kMoveTo)
        data.start = data.current;
    else if (op == ShapeData::kClose)
        data.current = data.start;
}

int32 arc_flags(const BPoint* points)
{
    const float flags = points[1].y;  // an archive may hold anything
    return flags >= 0 && flags <= 3 ? int32(flags) : 0;
}

BRect box_of(const std::vector<BPoint>& points)
{
    if (points.empty())
        return BRect();
    BRect box(points[0], points[0]);
    for (const BPoint& point : points) {
        box.left = std::min(box.left, point.x);
        box.top = std::min(box.top, point.y);
        box.right = std::max(box.right, point.x);
        box.bottom = std::max(box.bottom, point.y);
    }
    return box;
}

// Cubic curves along an elliptical arc between two points of it, each at most a quarter turn.
class ArcCurves {
public:
    ArcCurves(BPoint from, BPoint to, double rx, double ry, double degrees, bool largeArc,
              bool counterClockwise)
    {
        fRx = std::abs(rx);
        fRy = std::abs(ry);
        fCos = std::cos(degrees * M_PI / 180);
        fSin = std::sin(degrees * M_PI / 180);
        if (!(fRx > 0) || !(fRy > 0) || from == to || !std::isfinite(fRx * fRy * fCos))
            return;
        // In the ellipse's own frame, where it is the unit circle.
        const double halfX = (double(from.x) - to.x) / 2, halfY = (double(from.y) - to.y) / 2;
        double x = (fCos * halfX + fSin * halfY) / fRx;
        double y = (-fSin * halfX + fCos * halfY) / fRy;
        const double distance = x * x + y * y;
        if (!std::isfinite(distance))
            return;
        if (distance > 1) {  // too small to reach both points: grown until it does
            const double grow = std::sqrt(distance);
            fRx *= grow;
            fRy *= grow;
            x /= grow;
            y /= grow;
        }
        // Screen coordinates run downwards: clockwise as seen is towards greater angles.
        double height = std::sqrt(std::max(0.0, 1 / (x * x + y * y) - 1));
        if (largeArc != counterClockwise)
            height = -height;
        const double centerX = height * y, centerY = -height * x;
        fStart = std::atan2(y - centerY, x - centerX);
        fSweep = std::atan2(-y - centerY, -x - centerX) - fStart;
        if (counterClockwise && fSweep > 0)
            fSweep -= 2 * M_PI;
        else if (!counterClockwise && fSweep < 0)
            fSweep += 2 * M_PI;
        fCenterX = (double(from.x) + to.x) / 2 + fCos * centerX * fRx - fSin * centerY * fRy;
        fCenterY = (double(from.y) + to.y) / 2 + fSin * centerX * fRx + fCos * centerY * fRy;
        fCount = std::max(1, int(std::ceil(std::abs(fSweep) / (M_PI / 2) - 1e-6)));
    }

    int Count() const { return fCount; }  // 0: a straight line does
    void Curve(int index, BPoint points[3]) const
    {
        const double step = fSweep / fCount;
        const double a = fStart + step * index, b = a + step;
        const double k = 4.0 / 3 * std::tan(step / 4);
        points[0] = At(std::cos(a) - k * std::sin(a), std::sin(a) + k * std::cos(a));
        points[1] = At(std::cos(b) + k * std::sin(b), std::sin(b) - k * std::cos(b));
        points[2] = At(std::cos(b), std::sin(b));
    }

private:
    BPoint At(double x, double y) const
    {
        return BPoint(fCenterX + fCos * x * fRx - fSin * y * fRy,
                      fCenterY + fSin * x * fRx + fCos * y * fRy);
    }

    double fRx, fRy, fCos, fSin;
    double fCenterX = 0, fCenterY = 0, fStart = 0, fSweep = 0;
    int fCount = 0;
};

}  // namespace

int32 ShapeData::PointsOf(Op op)
{
    static const int32 kPoints[] = {1, 1, 3, 0, 3};
    return kPoints[op];
}

bool ShapeData::AppendPath(BPoint origin, float scale, std::vector<uint8>* pathOps,
                           std::vector<BPoint>* pathPoints) const
{
    const auto placed = [&](BPoint point) {
        return BPoint(point.x * scale, point.y * scale) + origin;
    };
    try {
        BPoint pen, begin;
        const BPoint* next = points.data();
        for (Op op : ops) {
            const int32 count = PointsOf(op);
            const BPoint end = count > 0 ? next[count - 1] : begin;
            if (op == kMoveTo)
                begin = end;
            if (pathOps->empty() && op != kMoveTo) {
                pathOps->push_back(kMoveTo);
                pathPoints->push_back(placed(pen));
            }
            if (op == kArcTo) {
                const int32 flags = arc_flags(next);
                const ArcCurves arc(pen, end, next[0].x, next[0].y, next[1].x,
                                    (flags & kLargeArc) != 0, (flags & kCounterClockwise) != 0);
                for (int i = 0; i < arc.Count(); i++) {
                    BPoint curve[3];
                    arc.Curve(i, curve);
                    if (i == arc.Count() - 1)
                        curve[2] = end;
                    pathOps->push_back(kBezierTo);
                    for (BPoint point : curve)
                        pathPoints->push_back(placed(point));
                }
                if (arc.Count() == 0) {
                    pathOps->push_back(kLineTo);
                    pathPoints->push_back(placed(end));
                }
            } else {
                pathOps->push_back(op);
                for (int32 i = 0; i < count; i++)
                    pathPoints->push_back(placed(next[i]));
            }
            pen = end;
            next += count;
        }
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

BShape::BShape() : fData(new (std::nothrow) ShapeData) {}

BShape::BShape(const BShape& other) : BShape() { *this = other; }

BShape::BShape(BShape&& other) : BShape() { MoveFrom(other); }

BShape::BShape(BMessage* archive) : BArchivable(archive), fData(new (std::nothrow) ShapeData)
{
    if (archive == nullptr)
        return;
    // Operations without their points, or of no known kind, end the shape.
    int32 op, point = 0;
    for (int32 i = 0; archive->FindInt32(kOpsField, i, &op) == B_OK; i++) {
        if (op < ShapeData::kMoveTo || op > ShapeData::kArcTo)
            return;
        BPoint points[3];
        const int32 count = ShapeData::PointsOf(ShapeData::Op(op));
        for (int32 k = 0; k < count; k++) {
            if (archive->FindPoint(kPointsField, point++, &points[k]) != B_OK)
                return;
        }
        const auto append = [&](ShapeData& data) { add(data, ShapeData::Op(op), points, count); };
        if (change(fData, append) != B_OK)
            return;
    }
}

BShape::~BShape() { delete fData; }

BArchivable* BShape::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BShape") ? new (std::nothrow) BShape(archive) : nullptr;
}

status_t BShape::Archive(BMessage* archive, bool deep) const
{
    status_t status = BArchivable::Archive(archive, deep);
    if (status != B_OK || fData == nullptr)
        return status;
    for (size_t i = 0; i < fData->ops.size() && status == B_OK; i++)
        status = archive->AddInt32(kOpsField, fData->ops[i]);
    for (size_t i = 0; i < fData->points.size() && status == B_OK; i++)
        status = archive->AddPoint(kPointsField, fData->points[i]);
    return status;
}

BShape& BShape::operator=(const BShape& other)
{
    if (this != &other && other.fData != nullptr) {
        change(fData, [&](ShapeData& data) {
            ShapeData copy(*other.fData);
            std::swap(data, copy);
        });
    }
    return *this;
}

BShape& BShape::operator=(BShape&& other)
{
    MoveFrom(other);
    return *this;
}

bool BShape::operator==(const BShape& other) const
{
    if (fData == nullptr || other.fData == nullptr)
        return fData == other.fData;
    return fData->ops == other.fData->ops && fData->points == other.fData->points;
}

bool BShape::operator!=(const BShape& other) const { return !(*this == other); }

void BShape::Clear()
{
    change(fData, [](ShapeData& data) { data = ShapeData(); });
}

void BShape::MoveFrom(BShape& other)
{
    if (this == &other)
        return;
    std::swap(fData, other.fData);
    other.Clear();
}

BRect BShape::Bounds() const
{
    if (fData == nullptr)
        return BRect();
    if (std::count(fData->ops.begin(), fData->ops.end(), ShapeData::kArcTo) == 0)
        return box_of(fData->points);
    std::vector<uint8> ops;
    std::vector<BPoint> points;
    fData->AppendPath(BPoint(), 1, &ops, &points);
    return box_of(points);
}

BPoint BShape::CurrentPosition() const { return fData != nullptr ? fData->current : BPoint(); }

status_t BShape::AddShape(const BShape* other)
{
    if (other == nullptr)
        return B_BAD_VALUE;
    if (other->fData == nullptr)
        return B_NO_MEMORY;
    return change(fData, [&](ShapeData& data) {
        const ShapeData more = *other->fData;  // a copy: it may be the same shape
        data.points.reserve(data.points.size() + more.points.size());
        data.ops.insert(data.ops.end(), more.ops.begin(), more.ops.end());
        data.points.insert(data.points.end(), more.points.begin(), more.points.end());
        if (!more.ops.empty()) {
            data.start = more.start;
            data.current = more.current;
        }
    });
}

status_t BShape::MoveTo(BPoint point)
{
    return change(fData, [&](ShapeData& data) {
        if (!data.ops.empty() && data.ops.back() == ShapeData::kMoveTo) {
            data.points.back() = data.start = data.current = point;  // the last move counts
            return;
        }
        add(data, ShapeData::kMoveTo, &point, 1);
    });
}

status_t BShape::LineTo(BPoint linePoint)
{
    return change(fData, [&](ShapeData& data) { add(data, ShapeData::kLineTo, &linePoint, 1); });
}

status_t BShape::BezierTo(BPoint controlPoints[3])
{
    if (controlPoints == nullptr)
        return B_BAD_VALUE;
    return BezierTo(controlPoints[0], controlPoints[1], controlPoints[2]);
}

status_t BShape::BezierTo(const BPoint& control1, const BPoint& control2, const BPoint& endPoint)
{
    const BPoint points[] = {control1, control2, endPoint};
    return change(fData, [&](ShapeData& data) { add(data, ShapeData::kBezierTo, points, 3); });
}

status_t BShape::ArcTo(float rx, float ry, float angle, bool largeArc, bool counterClockWise,
                       const BPoint& point)
{
    const int32 flags = (largeArc ? ShapeData::kLargeArc : 0) |
                        (counterClockWise ? ShapeData::kCounterClockwise : 0);
    const BPoint points[] = {BPoint(rx, ry), BPoint(angle, flags), point};
    return change(fData, [&](ShapeData& data) { add(data, ShapeData::kArcTo, points, 3); });
}

status_t BShape::Close()
{
    return change(fData, [](ShapeData& data) {
        if (data.ops.empty() || data.ops.back() != ShapeData::kClose)
            add(data, ShapeData::kClose, nullptr, 0);
    });
}

BShapeIterator::BShapeIterator() = default;

BShapeIterator::~BShapeIterator() = default;

status_t BShapeIterator::IterateMoveTo(BPoint*) { return B_OK; }

status_t BShapeIterator::IterateLineTo(int32, BPoint*) { return B_OK; }

status_t BShapeIterator::IterateBezierTo(int32, BPoint*) { return B_OK; }

status_t BShapeIterator::IterateClose() { return B_OK; }

status_t BShapeIterator::IterateArcTo(float&, float&, float&, bool, bool, BPoint&) { return B_OK; }

status_t BShapeIterator::Iterate(BShape* shape)
{
    if (shape == nullptr)
        return B_BAD_VALUE;
    if (shape->fData == nullptr)
        return B_NO_MEMORY;
    // Hooks may change the points, and even the shape: they get their own copy.
    std::vector<ShapeData::Op> ops;
    std::vector<BPoint> points;
    const status_t copied = change(shape->fData, [&](ShapeData& data) {
        ops = data.ops;
        points = data.points;
    });
    status_t status = copied;
    BPoint* next = points.data();
    for (size_t i = 0; i < ops.size() && status == B_OK;) {
        const ShapeData::Op op = ops[i];
        size_t run = 1;
        if (op == ShapeData::kLineTo || op == ShapeData::kBezierTo) {
            while (i + run < ops.size() && ops[i + run] == op)
                run++;
        }
        switch (op) {
            case ShapeData::kMoveTo:
                status = IterateMoveTo(next);
                break;
            case ShapeData::kLineTo:
                status = IterateLineTo(int32(run), next);
                break;
            case ShapeData::kBezierTo:
                status = IterateBezierTo(int32(run), next);
                break;
            case ShapeData::kClose:
                status = IterateClose();
                break;
            case ShapeData::kArcTo: {
                const int32 flags = arc_flags(next);
                status = IterateArcTo(next[0].x, next[0].y, next[1].x,
                                      (flags & ShapeData::kLargeArc) != 0,
                                      (flags & ShapeData::kCounterClockwise) != 0, next[2]);
                break;
            }
        }
        next += ShapeData::PointsOf(op) * run;
        i += run;
    }
    return status;
}
