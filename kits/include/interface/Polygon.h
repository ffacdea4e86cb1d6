#ifndef _POLYGON_H
#define _POLYGON_H

#include <InterfaceDefs.h>
#include <Point.h>
#include <Rect.h>
#include <SupportDefs.h>

// A list of corners. BView draws it open or closed.
class BPolygon {
public:
    BPolygon(const BPoint* points, int32 count);
    BPolygon(const BPolygon& other);
    BPolygon(const BPolygon* other);
    BPolygon();
    virtual ~BPolygon();

    BPolygon& operator=(const BPolygon& other);

    BRect Frame() const;  // invalid without points
    // Nothing happens with a null pointer, a count below 1, or when memory runs out.
    void AddPoints(const BPoint* points, int32 count);
    int32 CountPoints() const { return fCount; }
    // Moves and stretches the points as it takes to turn `source` into `destination`.
    void MapTo(BRect source, BRect destination);
    void PrintToStream() const;

private:
    friend class BView;

    void _UpdateBounds();

    BRect fBounds;
    BPoint* fPoints = nullptr;  // malloc'ed
    int32 fCount = 0;
};

#endif  // _POLYGON_H
