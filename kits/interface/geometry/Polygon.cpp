#include <Polygon.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

BPolygon::BPolygon(const BPoint* points, int32 count) { AddPoints(points, count); }

BPolygon::BPolygon(const BPolygon& other) { *this = other; }

BPolygon::BPolygon(const BPolygon* other)
{
    if (other != nullptr)
        *this = *other;
}

BPolygon::BPolygon() = default;

BPolygon::~BPolygon() { free(fPoints); }

BPolygon& BPolygon::operator=(const BPolygon& other)
{
    if (this == &other)
        return *this;
    fCount = 0;
    fBounds = BRect();
    AddPoints(other.fPoints, other.fCount);
    return *this;
}

BRect BPolygon::Frame() const { return fBounds; }

void BPolygon::AddPoints(const BPoint* points, int32 count)
{
    if (points == nullptr || count < 1 || count > INT32_MAX - fCount)
        return;
    const size_t total = size_t(fCount) + count;
    void* grown = realloc(static_cast<void*>(fPoints), total * sizeof(BPoint));
    if (grown == nullptr)
        return;
    fPoints = static_cast<BPoint*>(grown);
    std::copy_n(points, count, fPoints + fCount);
    fCount += count;
    _UpdateBounds();
}

void BPolygon::MapTo(BRect source, BRect destination)
{
    const float width = source.Width();
    const float height = source.Height();
    for (int32 i = 0; i < fCount; i++) {
        BPoint& point = fPoints[i];
        point.x = destination.left +
                  (width != 0 ? (point.x - source.left) * destination.Width() / width : 0);
        point.y = destination.top +
                  (height != 0 ? (point.y - source.top) * destination.Height() / height : 0);
    }
    _UpdateBounds();
}

void BPolygon::PrintToStream() const
{
    for (int32 i = 0; i < fCount; i++)
        fPoints[i].PrintToStream();
}

void BPolygon::_UpdateBounds()
{
    if (fCount == 0) {
        fBounds = BRect();
        return;
    }
    fBounds = BRect(fPoints[0], fPoints[0]);
    for (int32 i = 1; i < fCount; i++) {
        fBounds.left = std::min(fBounds.left, fPoints[i].x);
        fBounds.top = std::min(fBounds.top, fPoints[i].y);
        fBounds.right = std::max(fBounds.right, fPoints[i].x);
        fBounds.bottom = std::max(fBounds.bottom, fPoints[i].y);
    }
}
