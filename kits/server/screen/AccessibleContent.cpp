#include <server/screen/AccessibleContent.h>

#include <algorithm>
#include <utility>

namespace server {

void AccessibleContent::Append(Piece piece)
{
    fEnds.push_back({Bytes() + piece->bytes, Units() + static_cast<int32>(piece->units.size())});
    fPieces.push_back(std::move(piece));
}

std::u16string AccessibleContent::Part(int32 from, int32 to) const
{
    std::u16string part;
    to = std::min(to, Units());
    from = std::max(from, int32(0));
    if (from >= to)
        return part;
    part.reserve(static_cast<size_t>(to - from));
    const auto first =
        std::upper_bound(fEnds.begin(), fEnds.end(), from,
                         [](int32 unit, const Place& end) { return unit < end.unit; });
    for (auto index = static_cast<int32>(first - fEnds.begin()); from < to; index++) {
        const std::u16string& units = PieceAt(index)->units;
        const int32 start = StartOf(index).unit;
        const auto size = static_cast<int32>(units.size());
        part.append(units, static_cast<size_t>(from - start),
                    static_cast<size_t>(std::min(to - start, size) - (from - start)));
        from = start + size;
    }
    return part;
}

int32 AccessibleContent::PieceWith(int32 byte) const
{
    const auto found =
        std::upper_bound(fEnds.begin(), fEnds.end(), byte,
                         [](int32 place, const Place& end) { return place < end.byte; });
    return std::min(static_cast<int32>(found - fEnds.begin()), CountPieces() - 1);
}

void AccessibleContent::FindShared(const AccessibleContent& other, int32* start, int32* end) const
{
    const int32 count = CountPieces(), others = other.CountPieces();
    const int32 least = std::min(count, others);
    int32 first = 0, last = 0;
    while (first < least && PieceAt(first) == other.PieceAt(first))
        first++;
    while (last < least - first && PieceAt(count - 1 - last) == other.PieceAt(others - 1 - last))
        last++;
    *start = StartOf(first).unit;
    *end = Units() - StartOf(count - last).unit;
}

}  // namespace server
