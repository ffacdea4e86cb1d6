#ifndef _REGION_H
#define _REGION_H

#include <Point.h>
#include <Rect.h>
#include <Size.h>
#include <SupportDefs.h>

// A rectangle of whole pixels, right and bottom included.
struct clipping_rect {
    int32 left;
    int32 top;
    int32 right;
    int32 bottom;
};

namespace BPrivate {
class RegionAccess;
}

// A set of pixels, kept as disjoint rectangles in bands: rectangles with the same top have the same
// bottom, bands run downwards, rectangles of a band to the right, and neighbours that could be one
// rectangle are. BRects are widened to whole pixels. Coordinates beyond +-2^30 are cut there.
// When memory runs out an operation leaves the region as it was.
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
    // Takes over the rectangles of `other`, which is empty afterwards.
    void MoveFrom(BRegion& other);

    BRect Frame() const;  // invalid if the region is empty
    clipping_rect FrameInt() const { return fBounds; }
    // An index out of range gives an invalid rectangle.
    BRect RectAt(int32 index);
    BRect RectAt(int32 index) const;
    clipping_rect RectAtInt(int32 index);
    clipping_rect RectAtInt(int32 index) const;
    int32 CountRects() { return fCount; }
    int32 CountRects() const { return fCount; }

    bool Intersects(BRect rect) const;
    bool Intersects(clipping_rect clipping) const;
    bool Contains(BPoint point) const;
    bool Contains(int32 x, int32 y);
    bool Contains(int32 x, int32 y) const;
    void PrintToStream() const;

    void OffsetBy(const BPoint& point);  // rounded to whole pixels
    void OffsetBy(int32 x, int32 y);
    void ScaleBy(BSize scale);  // rectangles that come out thinner than a pixel may vanish
    void ScaleBy(float x, float y);
    void MakeEmpty();

    void Include(BRect rect);
    void Include(clipping_rect clipping);
    void Include(const BRegion* region);
    void Exclude(BRect rect);
    void Exclude(clipping_rect clipping);
    void Exclude(const BRegion* region);
    void IntersectWith(const BRegion* region);
    // Keeps what belongs to exactly one of the two.
    void ExclusiveInclude(const BRegion* region);

private:
    friend class BPrivate::RegionAccess;

    const clipping_rect* _Rects() const { return fCount > 1 ? fRects : &fBounds; }
    template <class Keep>
    void _Combine(const clipping_rect* others, int32 count, Keep keep);
    void _TakeBands(int32 count);
    bool _Reserve(int32 count);

    clipping_rect fBounds;  // the rectangle itself if there is but one; (0, 0, -1, -1) if none
    clipping_rect* fRects = nullptr;  // malloc'ed; in use only for two and more
    int32 fCount = 0;
    int32 fCapacity = 0;
};

#endif  // _REGION_H
