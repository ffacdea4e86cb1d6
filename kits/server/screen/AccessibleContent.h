#ifndef SERVER_ACCESSIBLE_CONTENT_H
#define SERVER_ACCESSIBLE_CONTENT_H

// A text as screen readers have it: units of UTF-16 for bytes that may be no UTF-8. It is in
// pieces, which one version shares with the next, so that a change of a book costs a page.

#include <memory>
#include <string>
#include <vector>

#include <SupportDefs.h>

namespace server {

struct AccessiblePiece {
    std::u16string units;
    int32 bytes;  // of the view's text
};

class AccessibleContent {
public:
    using Piece = std::shared_ptr<const AccessiblePiece>;
    struct Place {
        int32 byte = 0, unit = 0;
    };

    // While it is made.
    void Append(Piece piece);

    int32 Units() const { return fEnds.empty() ? 0 : fEnds.back().unit; }
    int32 Bytes() const { return fEnds.empty() ? 0 : fEnds.back().byte; }
    std::u16string Part(int32 from, int32 to) const;
    std::u16string All() const { return Part(0, Units()); }

    int32 CountPieces() const { return static_cast<int32>(fPieces.size()); }
    const Piece& PieceAt(int32 index) const { return fPieces[static_cast<size_t>(index)]; }
    Place StartOf(int32 index) const
    {
        return index > 0 ? fEnds[static_cast<size_t>(index) - 1] : Place();
    }
    // The piece with that byte; the last one for the text's end, -1 without any.
    int32 PieceWith(int32 byte) const;

    // How many units at the start and at the end stand in pieces of both texts.
    void FindShared(const AccessibleContent& other, int32* start, int32* end) const;

private:
    std::vector<Piece> fPieces;
    std::vector<Place> fEnds;  // of each
};

}  // namespace server

#endif  // SERVER_ACCESSIBLE_CONTENT_H
