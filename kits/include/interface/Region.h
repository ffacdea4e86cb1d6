#ifndef _REGION_H
#define _REGION_H

#include <Point.h>
#include <Rect.h>
#include <Size.h>
#include <SupportDefs.h>

struct clipping_rect {
    int32 left;
    int32 top;
    int32 right;
    int32 bottom;
};

class BRegion {
public:
    BRegion();
    BRegion(const BRegion& other);
    BRegion(const BRect rect);
    BRegion(BRegion&& other);
    virtual ~BRegion();
    BRegion& operator=(const BRegion& other);
    BRegion& operator=(BRegion&& other);
    bool operator==(const BRegion& other) const;
    void Set(BRect rect);
    void Set(clipping_rect clipping);
    void MoveFrom(BRegion& other);
    BRect Frame() const;
    clipping_rect FrameInt() const;
    BRect RectAt(int32 index);
    BRect RectAt(int32 index) const;
    clipping_rect RectAtInt(int32 index);
    clipping_rect RectAtInt(int32 index) const;
    int32 CountRects();
    int32 CountRects() const;
    bool Intersects(BRect rect) const;
    bool Intersects(clipping_rect clipping) const;
    bool Contains(BPoint point) const;
    bool Contains(int32 x, int32 y);
    bool Contains(int32 x, int32 y) const;
    void PrintToStream() const;
    void OffsetBy(const BPoint& point);
    void OffsetBy(int32 x, int32 y);
    void ScaleBy(BSize scale);
    void ScaleBy(float x, float y);
    void MakeEmpty();
    void Include(BRect rect);
    void Include(clipping_rect clipping);
    void Include(const BRegion* region);
    void Exclude(BRect rect);
    void Exclude(clipping_rect clipping);
    void Exclude(const BRegion* region);
    void IntersectWith(const BRegion* region);
    void ExclusiveInclude(const BRegion* region);

private:
};

#endif  // _REGION_H
