#ifndef _SHAPE_H
#define _SHAPE_H

#include <Archivable.h>
#include <List.h>
#include <Point.h>
#include <Rect.h>
#include <SupportDefs.h>

class BMessage;

namespace BPrivate {
struct ShapeData;
}

// A path of lines, cubic Bezier curves and elliptical arcs, in one or more parts. The pen starts
// at (0, 0). Calls that add to it return B_NO_MEMORY, with the shape unchanged, or B_OK.
class BShape : public BArchivable {
public:
    BShape();
    BShape(const BShape& other);
    BShape(BShape&& other);
    BShape(BMessage* archive);
    virtual ~BShape();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    BShape& operator=(const BShape& other);
    BShape& operator=(BShape&& other);
    bool operator==(const BShape& other) const;
    bool operator!=(const BShape& other) const;

    void Clear();
    void MoveFrom(BShape& other);
    // Around all points and control points; invalid for an empty shape.
    BRect Bounds() const;
    BPoint CurrentPosition() const;
    status_t AddShape(const BShape* other);

    status_t MoveTo(BPoint point);
    status_t LineTo(BPoint linePoint);
    status_t BezierTo(BPoint controlPoints[3]);
    status_t BezierTo(const BPoint& control1, const BPoint& control2, const BPoint& endPoint);
    // An arc of an ellipse with these radii, turned by `angle` degrees, to `point`.
    status_t ArcTo(float rx, float ry, float angle, bool largeArc, bool counterClockWise,
                   const BPoint& point);
    status_t Close();

private:
    friend class BShapeIterator;
    friend struct BPrivate::ShapeData;

    BPrivate::ShapeData* fData;  // never null but after a failed allocation
};

// Walks through a shape: one hook call for each operation, lines and curves in a row together.
// A hook's answer other than B_OK ends the walk.
class BShapeIterator {
public:
    BShapeIterator();
    virtual ~BShapeIterator();

    virtual status_t IterateMoveTo(BPoint* point);
    virtual status_t IterateLineTo(int32 lineCount, BPoint* linePoints);
    virtual status_t IterateBezierTo(int32 bezierCount, BPoint* bezierPoints);  // 3 points each
    virtual status_t IterateClose();
    virtual status_t IterateArcTo(float& rx, float& ry, float& angle, bool largeArc,
                                  bool counterClockWise, BPoint& point);

    // B_BAD_VALUE for a null shape, else the last hook's answer.
    status_t Iterate(BShape* shape);
};

#endif  // _SHAPE_H
