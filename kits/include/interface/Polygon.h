#ifndef _POLYGON_H
#define _POLYGON_H

#include <Rect.h>
#include <SupportDefs.h>

class BPoint;

class BPolygon {
public:
    BPolygon(const BPoint* points, int32 count);
    BPolygon(const BPolygon& other);
    BPolygon(const BPolygon* other);
    BPolygon();
    virtual ~BPolygon();
    BPolygon& operator=(const BPolygon& other);
    BRect Frame() const;
    void AddPoints(const BPoint* points, int32 count);
    int32 CountPoints() const;
    void MapTo(BRect source, BRect destination);
    void PrintToStream() const;

private:
};

#endif  // _POLYGON_H
