#ifndef SERVER_PAINTER_SCAN_H
#define SERVER_PAINTER_SCAN_H

// Polygons as rows of pixels. PolygonScan works on whole-number corners and covers the inside and
// the thin lines around it; OutlineScan works on fractions and covers pixel centres.

#include "server/painter/PainterLines.h"
#include "server/painter/PainterPaths.h"

namespace server {

// An array that lives on the stack while it is small.
template <class Item, int32 kInline>
class SmallArray {
public:
    explicit SmallArray(int32 capacity)
    {
        if (capacity > kInline) {
            fHeap.reset(new (std::nothrow) Item[capacity]);
            fItems = fHeap.get();
        }
    }
    SmallArray(const SmallArray&) = delete;
    bool Valid() const { return fItems != nullptr; }
    Item& operator[](int32 index) { return fItems[index]; }
    Item* Begin() { return fItems; }

private:
    union {
        Item fInline[kInline];
    };
    std::unique_ptr<Item[]> fHeap;
    Item* fItems = fInline;
};

struct Run {
    int64 left, right;
};

// One side of a polygon on its way down.
class Side {
public:
    Side() = default;
    Side(int64 x0, int64 y0, int64 x1, int64 y1)
        : fX0(x0), fX1(x1), fTop(y0), fBottom(y1), fWinding(1)
    {
        if (fTop > fBottom) {
            std::swap(fTop, fBottom);
            std::swap(fX0, fX1);
            fWinding = -1;
        }
    }

    int64 Top() const { return fTop; }
    int64 Bottom() const { return fBottom; }
    int64 Left() const { return std::min(fX0, fX1); }
    int64 Right() const { return std::max(fX0, fX1); }
    int32 Winding() const { return fWinding; }

    // Steps to row `y`, anywhere between top and bottom.
    void Start(int64 y)
    {
        const int64 dx = fX1 - fX0, dy = fBottom - fTop;
        fRow = y;
        if (dy == 0)
            return;
        fSlope = double(dx) / double(dy);
        fFlat = std::abs(dx) > dy;
        fScale = 2 * dy;
        _Step(2 * dx, &fStep, &fStepRest);
        // A steep side's pixel of row k is floor((2 * dx * k + dy) / (2 * dy)), as ThinLine has it.
        // The run of a flat one begins where that formula, solved for x, steps into the row.
        const int64 k = y - fTop;
        if (!fFlat) {
            _Place(k, 2 * dx, dy);
        } else if (dx > 0) {
            _Place(k, 2 * dx, -dx + fScale - 1);
        } else {
            _Place(k, 2 * dx, -dx);
            _Advance();
        }
    }
    // The pixels of the thin line in the present row.
    Run Pixels() const
    {
        if (fTop == fBottom)
            return {Left(), Right()};
        if (!fFlat)
            return {fPlace, fPlace};
        if (fX1 > fX0) {
            const int64 left = fRow == fTop ? fX0 : fPlace;
            return {left, fRow == fBottom ? fX1 : _NextPlace() - 1};
        }
        const int64 right = fRow == fTop ? fX0 : fLast;
        return {fRow == fBottom ? fX1 : fPlace + 1, right};
    }
    double Crossing() const { return double(fX0) + fSlope * double(fRow - fTop); }
    bool Crosses() const { return fRow < fBottom; }
    void Next()
    {
        fRow++;
        if (fTop == fBottom)
            return;
        _Advance();
    }

private:
    void _Step(int64 value, int64* whole, int64* rest) const
    {
        *whole = floor_div(value, fScale);
        *rest = value - *whole * fScale;
    }
    void _Advance()
    {
        fLast = fPlace;
        fPlace = _NextPlace();
        fRest += fStepRest;
        if (fRest >= fScale)
            fRest -= fScale;
    }
    int64 _NextPlace() const { return fPlace + fStep + (fRest + fStepRest >= fScale); }
    void _Place(int64 k, int64 factor, int64 start)
    {
        const __int128 value = __int128(factor) * k + start;
        __int128 whole;
        if (value == __int128(int64(value)))
            whole = floor_div<int64>(int64(value), fScale);
        else
            whole = floor_div<__int128>(value, fScale);
        fRest = int64(value - whole * fScale);
        fPlace = fX0 + int64(whole);
    }

    int64 fX0, fX1, fTop, fBottom;
    int32 fWinding;
    bool fFlat = false;
    int64 fRow = 0;
    double fSlope = 0;
    int64 fScale = 1, fStep = 0, fStepRest = 0;
    int64 fPlace = 0, fRest = 0;  // where the row's pixels begin; left of them if dx < 0
    int64 fLast = 0;              // fPlace of the row above
};

// Fills and outlines the polygon of `count` sides in one go, no pixel twice.
template <class Pen>
class PolygonScan {
public:
    PolygonScan(const Pen& pen, const clipping_rect& box, Side* sides, const int32* order,
                int32 count, bool evenOdd, int32* active, Run* runs)
        : fPen(pen),
          fBox(box),
          fSides(sides),
          fOrder(order),
          fCount(count),
          fEvenOdd(evenOdd),
          fActive(active),
          fRuns(runs)
    {
    }

    void Draw()
    {
        int32 next = 0;
        for (int64 y = fBox.top; y <= fBox.bottom; y++) {
            int32 kept = 0;
            for (int32 i = 0; i < fActiveCount; i++) {
                if (fSides[fActive[i]].Bottom() >= y)
                    fActive[kept++] = fActive[i];
            }
            fActiveCount = kept;
            for (; next < fCount && fSides[fOrder[next]].Top() <= y; next++) {
                Side& side = fSides[fOrder[next]];
                if (side.Bottom() < y)
                    continue;
                side.Start(y);
                fActive[fActiveCount++] = fOrder[next];
            }
            if (fActiveCount == 0 && next == fCount)
                return;
            _DrawRow(int32(y));
            for (int32 i = 0; i < fActiveCount; i++)
                fSides[fActive[i]].Next();
        }
    }

private:
    void _DrawRow(int32 y)
    {
        if (fActiveCount == 2) {
            const Side& a = fSides[fActive[0]];
            const Side& b = fSides[fActive[1]];
            if (a.Crosses() && b.Crosses()) {
                const Run first = a.Pixels(), second = b.Pixels();
                draw_run(fPen, fBox, y, std::min(first.left, second.left),
                         std::max(first.right, second.right));
                return;
            }
        }
        _SortActive();
        const int32 count = _CollectRuns();
        for (int32 i = 0; i < count;) {
            Run run = fRuns[i++];
            while (i < count && fRuns[i].left <= run.right + 1)
                run.right = std::max(run.right, fRuns[i++].right);
            draw_run(fPen, fBox, y, run.left, run.right);
        }
    }

    void _SortActive()
    {
        sort_nearly_sorted(fActive, fActiveCount,
                           [this](int32 side) { return fSides[side].Crossing(); });
    }

    // The pixels of the sides and the insides between them, sorted by their left ends.
    int32 _CollectRuns()
    {
        int32 count = 0, winding = 0;
        int64 insideFrom = 0;
        for (int32 i = 0; i < fActiveCount; i++) {
            const Side& side = fSides[fActive[i]];
            const Run pixels = side.Pixels();
            fRuns[count++] = pixels;
            if (!side.Crosses())
                continue;
            const bool wasInside = _Inside(winding);
            winding += side.Winding();
            if (!wasInside)
                insideFrom = pixels.left;
            else if (!_Inside(winding) && insideFrom < pixels.right)
                fRuns[count++] = {insideFrom, pixels.right};
        }
        sort_nearly_sorted(fRuns, count, [](const Run& run) { return run.left; });
        return count;
    }
    bool _Inside(int32 winding) const { return fEvenOdd ? (winding & 1) != 0 : winding != 0; }

    const Pen& fPen;
    const clipping_rect fBox;
    Side* fSides;
    const int32* fOrder;  // by their tops
    int32 fCount;
    bool fEvenOdd;
    int32* fActive;  // room for all sides
    int32 fActiveCount = 0;
    Run* fRuns;  // room for two a side
};

}  // namespace server

#endif  // SERVER_PAINTER_SCAN_H
