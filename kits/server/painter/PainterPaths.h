#ifndef SERVER_PAINTER_PATHS_H
#define SERVER_PAINTER_PATHS_H

// Shapes that are turned into polygons before they become pixels.

#include <server/painter/Painter.h>

#include "server/painter/PainterRaster.h"

#include <vector>

namespace server {

inline bool is_thin(const Paint& paint) { return !(paint.penSize > 1.0f); }

inline bool has_transform(const Paint& paint)
{
    return paint.transform != nullptr && !paint.transform->IsIdentity();
}

// How many pixels a wide pen covers before and after the one it is on.
struct PenReach {
    explicit PenReach(float size)
    {
        const int64 whole = int64(std::min(double(size), 1e9) + 0.5);
        before = whole / 2;
        after = whole - 1 - before;
    }
    int64 before, after;
};

struct DPoint {
    double x, y;
};

// A polygon of several parts, in pixels; whole numbers are the centres of pixels.
class Outline {
public:
    void MoveTo(DPoint point) { fParts.push_back(int32(fPoints.size())), fPoints.push_back(point); }
    void LineTo(DPoint point) { fPoints.push_back(point); }
    bool IsEmpty() const { return fPoints.empty(); }
    int32 CountParts() const { return int32(fParts.size()); }
    const DPoint* Part(int32 index, int32* count) const
    {
        const int32 end = index + 1 < CountParts() ? fParts[index + 1] : int32(fPoints.size());
        *count = end - fParts[index];
        return fPoints.data() + fParts[index];
    }
    // Every part runs the same way round afterwards, so that overlapping parts add up.
    void Orient();

private:
    std::vector<DPoint> fPoints;
    std::vector<int32> fParts;
};

// A row of lines to stroke.
struct Polyline {
    std::vector<DPoint> points;
    bool closed = false;
    bool smooth = false;  // inner joins belong to a curve and are rounded
};

// Thin lines, or the wide pen's outline filled.
clipping_rect stroke_polylines(const Target& target, const Paint& paint,
                               const std::vector<Polyline>& lines);
// Pixels whose centre is inside.
clipping_rect fill_outline(const Target& target, const Brush& brush, const Outline& outline,
                           int32 fillRule);
// Pixels inside and those of the thin outline, corners rounded to pixels.
clipping_rect fill_corners(const Target& target, const Paint& paint, const Outline& outline);
// The same with an outline as thick as a unit.
clipping_rect fill_with_rim(const Target& target, const Paint& paint, const Outline& outline);
clipping_rect fill_transformed_rect(const Target& target, const Paint& paint, const BRect& rect);

// Appends points along a cubic curve, but for its first one, as close as pixels need them.
void flatten_bezier(const DPoint points[4], std::vector<DPoint>* line);
// Points along an ellipse, angles in degrees; an arc of 360 is not closed by a last point.
std::vector<DPoint> ellipse_points(DPoint center, double xRadius, double yRadius, double start,
                                   double arc);
// The area a wide pen covers.
void widen(const Paint& paint, const Polyline& line, Outline* outline);

DPoint transformed(const Paint& paint, double x, double y);

// Formats.
void read_pixels(const Surface& surface, int32 x, int32 y, int32 count, uint32* pixels);
void write_pixels(const Surface& surface, int32 x, int32 y, int32 count, const uint32* pixels);

}  // namespace server

#endif  // SERVER_PAINTER_PATHS_H
