// A text with its styles: edits, lines broken to a width, and places on lines.

#include "interface/text/TextBody.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <string_view>

#include <server/text/Characters.h>
#include <server/text/LineOrder.h>
#include <support/ValidUTF8.h>

namespace BPrivate {

// What is looked at in one go.
static const int32 kPieceBytes = 1024;
// A line that is not broken and has as many bytes is measured in parts.
static const int32 kLongLine = 8 * kPieceBytes;
// How far back a character may begin.
static const int32 kCharacterBytes = 256;
static const char kDot[] = "\xE2\x80\xA2";

TextBody::TextBody(const BFont& font, rgb_color color) : fRuns(fStyles.Find(font, color))
{
    Break();
}

const TextStyle& TextBody::StyleAt(int32 offset) const
{
    return fStyles.At(fRuns.At(offset).style);
}

// ---- Characters

uint32 TextBody::CharacterAt(int32 offset, int32* end) const
{
    uint32 code = 0;
    size_t size = 0;
    char bytes[4];
    const int32 length = fBuffer.Copy(offset, sizeof(bytes), bytes);
    if (length > 0)
        size = next_character(std::string_view(bytes, size_t(length)), &code);
    if (end != nullptr)
        *end = offset + int32(size);
    return code;
}

uint32 TextBody::CharacterBefore(int32 offset, int32* start) const
{
    // Bytes that belong together are the longest that do.
    for (int32 back = std::min(offset, int32(4)); back > 1; back--) {
        int32 end;
        const uint32 code = CharacterAt(offset - back, &end);
        if (end == offset) {
            if (start != nullptr)
                *start = offset - back;
            return code;
        }
    }
    if (start != nullptr)
        *start = std::max(offset - 1, int32(0));
    return fBuffer.At(offset - 1);
}

// A byte in front of an offset where a character surely begins, not far away.
int32 TextBody::_Window(int32 offset) const
{
    int32 start = std::max(offset - kCharacterBytes, int32(0));
    for (int32 at = offset; at > start; at--) {
        if (fBuffer.At(at) < 0x80 && fBuffer.At(at - 1) < 0x80 && fBuffer.At(at) != '\n')
            return at;
    }
    while (start > 0 && start < offset && utf8_continues(char(fBuffer.At(start))))
        start++;
    return start;
}

int32 TextBody::Previous(int32 offset) const
{
    if (offset <= 1)
        return 0;
    const int32 start = _Window(offset - 1);
    const char* text = fBuffer.Bytes(start, offset - start, &fWindow);
    return start + server::GraphemeBefore(text, offset - start);
}

int32 TextBody::Next(int32 offset) const
{
    const int32 length = std::min(Length() - offset, kCharacterBytes);
    if (length <= 0)
        return Length();
    return offset + server::GraphemeLength(fBuffer.Bytes(offset, length, &fWindow), length);
}

int32 TextBody::Aligned(int32 offset) const
{
    if (offset <= 0 || offset >= Length())
        return std::clamp(offset, int32(0), Length());
    for (int32 at = _Window(offset);;) {
        const int32 next = Next(at);
        if (next > offset)
            return at;
        at = next;
    }
}

// ---- Pieces of lines

// The piece that begins at an offset before `end`.
int32 TextBody::_PieceAt(int32 offset, int32 end, float x, TextPiece* piece) const
{
    const StyleRuns::Place run = fRuns.At(offset);
    const int32 limit = std::min(std::min(end, run.to), offset + kPieceBytes);
    const char* bytes = fBuffer.Bytes(offset, limit - offset, &fCopy);
    const std::string_view text(bytes, size_t(limit - offset));
    *piece = {offset, 1, run.style, bytes, 0, x, 0};
    if (text[0] == '\t' && !fHidden) {
        piece->width = _TabWidth(x);
        return 1;
    }
    if (text[0] == '\n' || text[0] == '\0')
        return 1;
    size_t length = 0;
    while (length < text.size() && text[length] != '\n' && text[length] != '\0' &&
           (text[length] != '\t' || fHidden))
        length++;
    // Not within a character, unless a style ends there.
    if (length == size_t(kPieceBytes)) {
        while (length > kPieceBytes / 2 && text[length - 1] != ' ')
            length--;
        if (text[length - 1] != ' ')
            length = size_t(server::GraphemeBefore(bytes, kPieceBytes));
    }
    length = std::max<size_t>(length, 1);
    piece->length = piece->drawn = int32(length);
    GlyphWidths& widths = *fStyles.At(run.style).widths;
    if (fHidden) {
        fDots.clear();
        for (size_t at = 0; at < length; fDots += kDot)
            at += size_t(server::GraphemeLength(bytes + at, int32(length - at)));
        piece->bytes = fDots.data();
        piece->drawn = int32(fDots.size());
    }
    piece->width = widths.Sum(piece->bytes, piece->drawn);
    return piece->length;
}

// Where each byte of a piece is drawn, into fStarts.
void TextBody::_PlaceStarts(const TextPiece& piece, GlyphWidths::Along along) const
{
    GlyphWidths& widths = *fStyles.At(piece.style).widths;
    if (piece.drawn == 0) {
        fStarts.assign(size_t(piece.length) + 1, 0);
        fStarts.back() = piece.width;
    } else if (!fHidden) {
        widths.Starts(piece.bytes, piece.length, along, &fStarts);
    } else {
        const char* bytes = fBuffer.Bytes(piece.offset, piece.length, &fCopy);
        const float dot = widths.Sum(kDot, sizeof(kDot) - 1);
        fStarts.clear();
        float x = 0;
        for (int32 at = 0; at < piece.length; x += dot) {
            const int32 size = server::GraphemeLength(bytes + at, piece.length - at);
            fStarts.insert(fStarts.end(), size_t(size), x);
            at += size;
        }
        fStarts.push_back(x);
    }
}

static bool turns(std::string_view text)
{
    const uint8 kFirst = 0xD6;  // no letter that turns begins with a lower byte
    while (!text.empty()) {
        if (uint8(text[0]) < kFirst) {
            text.remove_prefix(1);
            continue;
        }
        uint32 code;
        text.remove_prefix(next_character(text, &code));
        if (server::TurnsOrder(code))
            return true;
    }
    return false;
}

static bool turns(const TextPiece& piece)
{
    return turns(std::string_view(piece.bytes, size_t(piece.drawn)));
}

float TextBody::XAt(const LineTable::Place& line, int32 offset, GlyphWidths::Along along) const
{
    const int32 end = line.offset + line.line.length;
    const LongLine::Place part =
        _IsLong(line) ? fLong.AtOffset(offset) : LongLine::Place{line.offset, end, 0};
    float x = part.x;
    _EachPieceFrom(part, end, [&](const TextPiece& piece) {
        if (offset == piece.offset && offset > part.offset)
            return false;  // behind the piece before
        const int32 behind = piece.offset + piece.length;
        const bool turned = offset <= behind && along == GlyphWidths::Along::Line && turns(piece);
        if (offset >= behind && !turned) {
            x = piece.x + piece.width;
            return true;
        }
        x = piece.x;
        if (offset > piece.offset || turned) {
            _PlaceStarts(piece, along);
            x += fStarts[size_t(offset - piece.offset)];
        }
        return offset == behind;
    });
    return x;
}

// A line of a whole file is not looked through.
bool TextBody::Turns(const LineTable::Place& line) const
{
    return !fHidden && !_IsLong(line) &&
           turns({fBuffer.Bytes(line.offset, line.line.length, &fCopy), size_t(line.line.length)});
}

std::vector<GlyphWidths::Span> TextBody::Spans(const LineTable::Place& line, int32 from,
                                               int32 to) const
{
    std::vector<GlyphWidths::Span> spans;
    EachPiece(line, 0, [&](const TextPiece& piece) {
        const int32 end = piece.offset + piece.length;
        if (from >= end || to <= piece.offset || piece.width <= 0)
            return to > piece.offset;
        if (piece.drawn == 0 || (from <= piece.offset && to >= end)) {
            spans.push_back({piece.x, piece.x + piece.width});
            return true;
        }
        const GlyphWidths& widths = *fStyles.At(piece.style).widths;
        for (const GlyphWidths::Span& part :
             widths.Spans(piece.bytes, piece.drawn, from - piece.offset, to - piece.offset))
            spans.push_back({piece.x + part.left, piece.x + part.right});
        return true;
    });
    return spans;
}

int32 TextBody::OffsetAt(const LineTable::Place& line, float x) const
{
    // The place behind a line's end is at the start of the next one, but for the last line.
    const int32 last = line.offset + line.line.length;
    const bool ends = last == Length() && (last == line.offset || fBuffer.At(last - 1) != '\n');
    int32 found = line.offset;
    float nearest = INFINITY;
    const auto consider = [&](int32 offset, float place) {
        if (std::fabs(place - x) < nearest) {
            nearest = std::fabs(place - x);
            found = offset;
        }
    };
    EachPiece(line, x, [&](const TextPiece& piece) {
        if (turns(piece)) {
            const GlyphWidths& widths = *fStyles.At(piece.style).widths;
            const GlyphWidths::Side side = widths.SideAt(piece.bytes, piece.drawn, x - piece.x);
            const int32 at = piece.offset + side.offset;
            if (x <= piece.x + piece.width)
                nearest = INFINITY;  // on the piece, so no other is nearer
            consider(side.behind ? Next(at) : at, piece.x + side.x);
            return x > piece.x + piece.width;
        }
        if (x > piece.x + piece.width) {
            // Behind all of it: its end is what may be near.
            consider(piece.offset + piece.length, piece.x + piece.width);
            return true;
        }
        _PlaceStarts(piece);
        const std::vector<float> starts(fStarts);
        for (int32 at = piece.offset; at < piece.offset + piece.length; at = Next(at))
            consider(at, piece.x + starts[size_t(at - piece.offset)]);
        consider(piece.offset + piece.length, piece.x + piece.width);
        return x > piece.x + piece.width;
    });
    if (found == last && !ends && last > line.offset)
        found = Previous(last);
    return std::min(Aligned(found), last);
}

// ---- Breaking lines

// One line being measured.
struct TextBody::Breaker {
    TextBody& body;
    const int32 start;
    const float limit = body.fWidth;
    int32 at = start;
    float x = 0;
    bool over = false;  // the character at `at` does not fit

    // Goes on to the line's end, or to what does not fit. The quick way is for characters that
    // stand for themselves; false if there are others.
    bool Quickly();
    void Slowly();
    bool Run(const StyleRuns::Place& run);
    bool PassesLimit(const TextPiece& piece);
    int32 Back() const;

    // True if the line goes on behind the character, which may hang over if it is a blank.
    bool Fits(float width, uint32 code)
    {
        over = limit > 0 && x + width > limit && at > start && code != ' ' &&
               server::ClassOf(code) != server::CharacterClass::Blank;
        return !over;
    }
};

// To the end of a style's run, of the line or of what fits; false at a character that has to be
// measured with others.
bool TextBody::Breaker::Run(const StyleRuns::Place& run)
{
    GlyphWidths& widths = *body.fStyles.At(run.style).widths;
    const float* ascii = widths.Ascii();
    const float quick = limit > 0 ? limit : INFINITY;
    while (at < run.to) {
        const int32 length = std::min(run.to - at, kPieceBytes);
        const char* text = body.fBuffer.Bytes(at, length, &body.fCopy);
        const int32 from = at;
        while (at < from + length) {
            uint32 code = uint8(text[at - from]);
            if (code < 0x80 && code > 0x1F && x + ascii[code] <= quick) {
                x += ascii[code];
                at++;
                continue;
            }
            size_t size = 1;
            float width = 0;
            if (code == '\t') {
                width = body._TabWidth(x);
            } else if (code >= 0x80) {
                if (from + length - at < 4 && from + length < run.to)
                    break;  // the character may go on
                size = next_character(
                    std::string_view(text + (at - from), size_t(from + length - at)), &code);
                width = widths.Of(code);
                if (width < 0)
                    return false;
            } else {
                width = ascii[code];
            }
            if (code == '\n') {
                at++;
                return true;
            }
            if (!Fits(width, code))
                return true;
            x += width;
            at += int32(size);
        }
    }
    return true;
}

bool TextBody::Breaker::Quickly()
{
    while (at < body.Length()) {
        const StyleRuns::Place run = body.fRuns.At(at);
        if (body.fHidden || !body.fStyles.At(run.style).widths->IsSimple() || !Run(run))
            return false;
        if (over || body.fBuffer.At(at - 1) == '\n')
            return true;
    }
    return true;
}

bool TextBody::Breaker::PassesLimit(const TextPiece& piece)
{
    if (limit <= 0 || x + piece.width <= limit || piece.drawn == 0)
        return false;
    body._PlaceStarts(piece, GlyphWidths::Along::Text);
    const std::vector<float> starts(body.fStarts);
    const int32 end = piece.offset + piece.length;
    for (int32 next; at < end; at = next) {
        const uint32 code = body.CharacterAt(at, &next);
        next = std::min(next, end);
        x = piece.x;
        if (!Fits(starts[size_t(next - piece.offset)], code))
            return true;
    }
    at = piece.offset;
    return false;
}

void TextBody::Breaker::Slowly()
{
    TextPiece piece;
    at = start;
    x = 0;
    while (at < body.Length()) {
        body._PieceAt(at, body.Length(), x, &piece);
        if (PassesLimit(piece))
            return;
        at = piece.offset + piece.length;
        x = piece.x + piece.width;
        if (piece.drawn == 0 && body.fBuffer.At(piece.offset) == '\n')
            return;
    }
}

// The last place where a line that does not fit may end; where characters do if there is none.
int32 TextBody::Breaker::Back() const
{
    for (int32 end = at; end > start;) {
        int32 before;
        body.CharacterBefore(end, &before);
        if (body.canEndLine ? body.canEndLine(before) : body.fBuffer.At(before) == ' ')
            return end;
        end = before;
    }
    const int32 end = body.Aligned(at);
    return end > start ? end : body.Next(start);
}

float TextBody::_TabWidth(float x) const
{
    return fTabWidth > 0 ? (std::floor(x / fTabWidth) + 1) * fTabWidth - x : 0;
}

// The room that the styles of a line want.
void TextBody::_SetHeight(int32 from, int32 to, TextLine* line) const
{
    float below = 0;
    StyleRuns::Place run = fRuns.At(from < to ? from : std::max(from - 1, int32(0)));
    for (;; run = fRuns.AtIndex(run.index + 1)) {
        const TextStyle& style = fStyles.At(run.style);
        line->ascent = std::max(line->ascent, style.ascent);
        below = std::max(below, style.height - style.ascent);
        if (run.to >= to || run.to >= Length())
            break;
    }
    line->height = line->ascent + below;
}

// ---- Long lines

bool TextBody::_IsLong(const LineTable::Place& line) const
{
    if (fWidth > 0 || line.line.length < kLongLine)
        return false;
    _MeasureLong(line.offset, line.offset + line.line.length);
    return true;
}

void TextBody::_MeasureLong(int32 start, int32 end) const
{
    if (!fLong.Holds(start, end))
        fLong.Begin(start, end);
    fLong.Measure([this](int32 from, int32 to, double x, std::vector<LongLine::Part>* parts) {
        TextPiece piece;
        LongLine::Part part;
        part.x = x;
        for (int32 at = from; at < to; at += piece.length) {
            _PieceAt(at, to, float(x), &piece);
            x += double(piece.width);
            part.length += piece.length;
            part.tabs = part.tabs || (piece.drawn == 0 && fBuffer.At(at) == '\t');
            // No small rest is left.
            const int32 rest = to - at - piece.length;
            if (rest != 0 && (part.length < kPieceBytes || rest < kPieceBytes / 2))
                continue;
            part.width = float(x - part.x);
            parts->push_back(part);
            part = {};
            part.x = x;
        }
    });
}

TextLine TextBody::_BreakAt(int32 start)
{
    const int32 whole = fWidth <= 0 ? fBuffer.LineEnd(start) : start;
    if (whole - start >= kLongLine) {
        _MeasureLong(start, whole);
        TextLine line;
        line.length = whole - start;
        line.width = fLong.Width();
        _SetHeight(start, whole, &line);
        return line;
    }
    Breaker breaker{*this, start};
    if (!breaker.Quickly()) {
        breaker.over = false;
        breaker.Slowly();
    }
    TextLine line;
    int32 end = breaker.at;
    line.width = breaker.x;
    if (breaker.over) {
        end = breaker.Back();
        // Blanks at a break take no room.
        int32 shown = end;
        while (shown > start && fBuffer.At(shown - 1) == ' ')
            shown--;
        line.length = end - start;
        line.width = XAt({0, start, 0, line}, shown, GlyphWidths::Along::Text);
    }
    line.length = end - start;
    _SetHeight(start, end, &line);
    return line;
}

LineChange TextBody::Break()
{
    const int32 before = fLines.CountLines();
    std::vector<TextLine> lines;
    for (int32 at = 0; at < Length(); at += lines.back().length)
        lines.push_back(_BreakAt(at));
    if (Length() == 0 || fBuffer.At(Length() - 1) == '\n')
        lines.push_back(_BreakAt(Length()));
    fLines.Replace(0, before, lines);
    fRough = false;
    return {0, int32(lines.size()), before, false};
}

// The lines after the bytes up to `to` took the place of `removed` others: from the line that may
// end elsewhere to the first that is as it was.
LineChange TextBody::_Rebreak(int32 from, int32 to, int32 removed)
{
    LineTable::Place first = fLines.AtOffset(from);
    if (fWidth > 0 && first.index > 0 && fBuffer.At(first.offset - 1) != '\n')
        first = fLines.At(first.index - 1);
    const int32 shift = to - from - removed;
    LineTable::Place old = first;
    std::vector<TextLine> lines;
    double height = 0;
    int32 at = first.offset;
    int32 end = -1;  // the first old line that stays
    while (at < Length() && end < 0) {
        lines.push_back(_BreakAt(at));
        at += lines.back().length;
        height += double(lines.back().height);
        while (old.offset + shift < at && old.index < fLines.CountLines() - 1)
            old = fLines.At(old.index + 1);
        if (at >= to && at < Length() && old.offset + shift == at && old.offset >= from + removed)
            end = old.index;
    }
    double oldHeight = old.top - first.top;
    if (end < 0) {
        end = fLines.CountLines();
        oldHeight = fLines.Height() - first.top;
        if (Length() == 0 || fBuffer.At(Length() - 1) == '\n') {
            lines.push_back(_BreakAt(Length()));
            height += double(lines.back().height);
        }
    }
    fLines.Replace(first.index, end - first.index, lines);
    const auto count = int32(lines.size());
    return {first.index, count, end - first.index, height == oldHeight};
}

// Breaks the lines of an edit, whatever happens.
LineChange TextBody::_Follow(int32 from, int32 to, int32 removed)
{
    try {
        if (!fRough)
            return _Rebreak(from, to, removed);
    } catch (const std::bad_alloc&) {
    }
    const int32 before = fLines.CountLines();
    const int32 first = fLines.AtOffset(from).index;
    fLines.Join(first, fLines.AtOffset(from + removed).index, to - from - removed);
    try {
        return Break();
    } catch (const std::bad_alloc&) {
        fRough = true;
        return {first, 1, 1 + before - fLines.CountLines(), false};
    }
}

// ---- Edits

bool TextBody::Insert(int32 offset, const char* text, int32 length, LineChange* change)
{
    if (!fBuffer.Insert(offset, text, length))
        return false;
    fRuns.Insert(offset, length);
    fLong.Replace(offset, offset, length);
    *change = _Follow(offset, offset + length, 0);
    return true;
}

void TextBody::Remove(int32 from, int32 to, LineChange* change)
{
    fBuffer.Remove(from, to);
    fRuns.Remove(from, to);
    fLong.Replace(from, to, 0);
    *change = _Follow(from, from, to - from);
}

LineChange TextBody::Rebreak(int32 from, int32 to) { return _Follow(from, to, to - from); }

}  // namespace BPrivate
