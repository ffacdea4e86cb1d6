#ifndef _SHAPE_H
#define _SHAPE_H

#include <Point.h>
#include <Rect.h>
#include <Archivable.h>
#include <SupportDefs.h>

class BMessage;

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
    BRect Bounds() const;
    BPoint CurrentPosition() const;
    status_t AddShape(const BShape* other);
    status_t MoveTo(BPoint point);
    status_t LineTo(BPoint linePoint);
    status_t BezierTo(BPoint controlPoints[3]);
    status_t BezierTo(const BPoint& control1, const BPoint& control2, const BPoint& endPoint);
    status_t ArcTo(float rx, float ry, float angle, bool largeArc, bool counterClockWise, const BPoint& point);
    status_t Close();

private:
};

class BShapeIterator {
public:
    BShapeIterator();
    virtual ~BShapeIterator();
    virtual status_t IterateMoveTo(BPoint* point);
    virtual status_t IterateLineTo(int32 lineCount, BPoint* linePoints);
    virtual status_t IterateBezierTo(int32 bezierCount, BPoint* bezierPoints);
    virtual status_t IterateClose();
    virtual status_t IterateArcTo(float& rx, float& ry, float& angle, bool largeArc, bool counterClockWise, BPoint& point);
    status_t Iterate(BShape* shape);

private:
};

#endif  // _SHAPE_H
