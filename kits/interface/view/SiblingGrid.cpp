// A grid over rectangles that finds those at a place.

#include <interface/view/SiblingGrid.h>

#include <Region.h>

#include <algorithm>
#include <cmath>

#include <interface/geometry/RegionAccess.h>
#include <interface/view/ViewPrivate.h>

namespace BPrivate {

static clipping_rect around(const std::vector<clipping_rect>& rects)
{
    clipping_rect frame = kEmptyBox;
    for (const clipping_rect& rect : rects)
        frame = unite(frame, rect);
    return frame;
}

SiblingGrid::SiblingGrid(std::vector<clipping_rect> rects)
    : fRects(std::move(rects)),
      fFrame(around(fRects)),
      fFirst(fRects.size()),
      fSide(std::clamp(static_cast<int32>(std::sqrt(fRects.size()) / 3), int32{2}, int32{32})),
      fStarts(size_t(fSide * fSide + 1), 0)
{
    const auto each_cell = [this](auto act) {
        for (size_t place = 0; place < fRects.size(); place++) {
            if (is_empty(fRects[place]))
                continue;
            const Cells cells = _Under(fRects[place]);
            fFirst[place] = {cells.top, cells.left};
            for (int32 row = cells.top; row <= cells.bottom; row++) {
                for (int32 column = cells.left; column <= cells.right; column++)
                    act(row * fSide + column, static_cast<int32>(place));
            }
        }
    };
    each_cell([this](int32 cell, int32) { fStarts[size_t(cell) + 1]++; });
    for (size_t cell = 1; cell < fStarts.size(); cell++)
        fStarts[cell] += fStarts[cell - 1];
    fPlaces.resize(size_t(fStarts.back()));
    std::vector<int32> ends(fStarts.begin(), fStarts.end() - 1);
    each_cell([&](int32 cell, int32 place) { fPlaces[size_t(ends[size_t(cell)]++)] = place; });
}

// The cells that a rectangle within the frame touches.
SiblingGrid::Cells SiblingGrid::_Under(const clipping_rect& rect) const
{
    const auto cell = [this](int32 at, int32 first, int32 last) {
        const int64 size = int64(last) - first + 1;
        return static_cast<int32>((int64(at) - first) * fSide / size);
    };
    return {cell(rect.left, fFrame.left, fFrame.right), cell(rect.top, fFrame.top, fFrame.bottom),
            cell(rect.right, fFrame.left, fFrame.right),
            cell(rect.bottom, fFrame.top, fFrame.bottom)};
}

void SiblingGrid::Exclude(int32 place, BRegion* region) const
{
    const clipping_rect held = intersect(region->FrameInt(), fFrame);
    if (region->CountRects() == 0 || is_empty(held))
        return;
    const Cells cells = _Under(held);
    for (int32 row = cells.top; row <= cells.bottom; row++) {
        for (int32 column = cells.left; column <= cells.right; column++) {
            const auto cell = size_t(row * fSide + column);
            const auto end = fPlaces.begin() + fStarts[cell + 1];
            for (auto at = std::lower_bound(fPlaces.begin() + fStarts[cell], end, place); at != end;
                 ++at) {
                // Each is taken out once, in the first of its cells that the region touches.
                const Cell& first = fFirst[size_t(*at)];
                if (row != std::max(first.row, cells.top) ||
                    column != std::max(first.column, cells.left))
                    continue;
                const clipping_rect& rect = fRects[size_t(*at)];
                if (!region->Intersects(rect))
                    continue;
                region->Exclude(rect);
                if (region->CountRects() == 0)
                    return;
            }
        }
    }
}

}  // namespace BPrivate
