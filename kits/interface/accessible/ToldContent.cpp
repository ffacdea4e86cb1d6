#include <interface/accessible/ToldContent.h>

#include <algorithm>
#include <string>

#include <interface/accessible/TextUnits.h>

namespace BPrivate {

using server::AccessibleContent;
using server::AccessiblePiece;

static const int32 kMostBytes = 16384;  // of a piece
static const int32 kFewBytes = kMostBytes / 4;
static const int32 kLongest = 4;  // bytes of a character, on which those behind it may depend

static int32 bytes_of_piece(int32 left)
{
    if (left <= kMostBytes)
        return left;
    return left < 2 * kMostBytes ? left / 2 : kMostBytes;
}

// The characters that begin in a part of the text, which may go on behind it.
static AccessibleContent::Piece read_piece(const TextBuffer& text, bool hidden, int32 from,
                                           int32 to)
{
    std::string copy;
    const int32 length = std::min(to + kLongest - 1, text.Length()) - from;
    const TextUnits units({text.Bytes(from, length, &copy), static_cast<size_t>(length)}, hidden);
    auto piece = std::make_shared<AccessiblePiece>();
    piece->units = units.UpTo(to - from, &piece->bytes);
    return piece;
}

ToldContent tell_content(const TextBuffer& text, bool hidden, const ToldContent& before,
                         const TextChange& change)
{
    static const AccessibleContent kNothing;
    const AccessibleContent& old = before != nullptr ? *before : kNothing;
    auto content = std::make_shared<AccessibleContent>();
    const int32 count = old.CountPieces(), length = text.Length();
    int32 next = 0;  // piece of the old text
    while (next < count && old.StartOf(next + 1).byte + kLongest <= change.before)
        content->Append(old.PieceAt(next++));
    while (next < count && old.Bytes() - old.StartOf(next).byte > change.behind)
        next++;
    const auto place = [&](int32 piece) {
        return piece < count ? length - (old.Bytes() - old.StartOf(piece).byte) : length;
    };
    while (content->Bytes() < length) {
        const int32 at = content->Bytes();
        // A character may have begun to reach into what stays; and small pieces are joined.
        while (next < count && place(next) != at && place(next) < at + kFewBytes)
            next++;
        if (next < count && place(next) == at)
            content->Append(old.PieceAt(next++));
        else
            content->Append(read_piece(text, hidden, at, at + bytes_of_piece(place(next) - at)));
    }
    return content;
}

int32 told_unit_at(const AccessibleContent& content, const TextBuffer& text, bool hidden,
                   int32 byte)
{
    const int32 piece = content.PieceWith(byte);
    if (piece < 0)
        return 0;
    const AccessibleContent::Place start = content.StartOf(piece);
    const int32 length = content.PieceAt(piece)->bytes;
    std::string copy;
    const TextUnits units({text.Bytes(start.byte, length, &copy), static_cast<size_t>(length)},
                          hidden);
    return start.unit + units.UnitAt(byte - start.byte);
}

}  // namespace BPrivate
