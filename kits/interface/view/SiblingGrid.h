#ifndef INTERFACE_SIBLING_GRID_H
#define INTERFACE_SIBLING_GRID_H

#include <Region.h>
#include <SupportDefs.h>

#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

// Rectangles in their order, of which those behind some place are taken out of a region without a
// look at each: what shows of a view with many siblings in front of it.
class SiblingGrid {
public:
    explicit SiblingGrid(std::vector<clipping_rect> rects);

    // Takes the rectangles from the one at `place` on out of the region.
    void Exclude(int32 place, BRegion* region) const;

private:
    struct Cells {
        int32 left, top, right, bottom;
    };

    struct Cell {
        int32 row, column;
    };

    Cells _Under(const clipping_rect& rect) const;

    const std::vector<clipping_rect> fRects;
    clipping_rect fFrame;        // around all
    std::vector<Cell> fFirst;    // of each rectangle's cells
    int32 fSide;                 // cells in a row and in a column
    std::vector<int32> fStarts;  // of each cell's places, row by row, and the end
    std::vector<int32> fPlaces;  // of the rectangles that touch the cell, rising
};

}  // namespace BPrivate

#endif  // INTERFACE_SIBLING_GRID_H
