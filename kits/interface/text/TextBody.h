#ifndef INTERFACE_TEXT_BODY_H
#define INTERFACE_TEXT_BODY_H

// A text with its styles, broken into lines: what of a text view has no window. Offsets that come
// in are right. Where memory fails, a change is made whole or not at all. One thread.

#include <InterfaceDefs.h>
#include <SupportDefs.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "interface/text/GlyphWidths.h"
#include "interface/text/LineTable.h"
#include "interface/text/LongLine.h"
#include "interface/text/StyleRuns.h"
#include "interface/text/TextBuffer.h"

namespace [[gnu::visibility("hidden")]] BPrivate {

// Lines that are not as they were: `count` of them from `first` on took the place of `before`.
struct LineChange {
    int32 first;
    int32 count;
    int32 before;
    bool sameHeight;  // as a whole
};

// A part of a line that is drawn in one go.
struct TextPiece {
    int32 offset;
    int32 length;
    int32 style;
    const char* bytes;  // what is drawn, for a hidden text not what there is
    int32 drawn;        // bytes of it; 0 for tabs and what cannot be seen
    float x;            // from the line's start
    float width;
};

class TextBody {
public:
    TextBody(const BFont& font, rgb_color color);

    const TextBuffer& Buffer() const { return fBuffer; }
    TextChange TakeChange() { return fBuffer.TakeChange(); }
    const StyleTable& Styles() const { return fStyles; }
    const StyleRuns& Runs() const { return fRuns; }
    const LineTable& Lines() const { return fLines; }
    int32 Length() const { return fBuffer.Length(); }
    const char* Text() { return fBuffer.Text(); }
    int32 StyleFor(const BFont& font, rgb_color color) { return fStyles.Find(font, color); }
    const TextStyle& StyleAt(int32 offset) const;

    // Asked for each place where a line might end, about the character at an offset.
    std::function<bool(int32)> canEndLine;

    // How lines are broken; the lines are to be broken anew by Break() after.
    void SetWidth(float width) { fWidth = width; }  // 0 and less: not at all
    float Width() const { return fWidth; }
    void SetTabWidth(float width)
    {
        fTabWidth = width;
        fLong.Forget();
    }
    float TabWidth() const { return fTabWidth; }
    void SetHidden(bool hidden)
    {
        fHidden = hidden;
        fLong.Forget();
    }
    LineChange Break();
    bool IsRough() const { return fRough; }

    // Edits. Lines that can not be broken for want of memory become one, which is rough: Break()
    // mends it, and so does the next edit. False, and nothing changed, without memory.
    bool Insert(int32 offset, const char* text, int32 length, LineChange* change);
    void Remove(int32 from, int32 to, LineChange* change);
    // Styles, for which the lines are to be broken anew by Rebreak() after.
    void SetStyle(int32 from, int32 to, int32 style)
    {
        fRuns.Set(from, to, style);
        fLong.Replace(from, to, to - from);
    }
    void PutRuns(int32 from, const std::vector<StyleRun>& runs)
    {
        fRuns.Put(from, runs);
        fLong.Forget();
    }
    void SetOnlyStyle(int32 style)
    {
        fRuns.Reset(Length(), style);
        fLong.Forget();
    }
    LineChange Rebreak(int32 from, int32 to);

    // The pieces of a line, as long as `visit` is true. Of a long one those that end before `x`,
    // from its start, may be left out.
    template <class Visit>
    void EachPiece(const LineTable::Place& line, float x, Visit visit) const;

    // From a line's start to the caret before a byte in it, or how wide the text before that is.
    float XAt(const LineTable::Place& line, int32 offset,
              GlyphWidths::Along along = GlyphWidths::Along::Line) const;
    // Whether letters of a line are read from the right, so that a part of its text may stand in
    // several places; and these, as distances from its start, from left to right.
    bool Turns(const LineTable::Place& line) const;
    std::vector<GlyphWidths::Span> Spans(const LineTable::Place& line, int32 from, int32 to) const;
    // The place between characters of a line that is nearest to a distance from its start.
    int32 OffsetAt(const LineTable::Place& line, float x) const;

    // Borders of what a reader calls a character: at or before, before and behind an offset.
    int32 Aligned(int32 offset) const;
    int32 Previous(int32 offset) const;
    int32 Next(int32 offset) const;
    // The character at a byte, and the byte behind it; of the text's end 0. For a byte within a
    // character, the character that it begins itself.
    uint32 CharacterAt(int32 offset, int32* end = nullptr) const;
    // The one that ends there, and where it begins.
    uint32 CharacterBefore(int32 offset, int32* start = nullptr) const;

private:
    struct Breaker;

    TextLine _BreakAt(int32 start);
    bool _IsLong(const LineTable::Place& line) const;
    void _MeasureLong(int32 start, int32 end) const;
    template <class Visit>
    void _EachPieceFrom(LongLine::Place part, int32 end, Visit visit) const;
    int32 _PieceAt(int32 offset, int32 end, float x, TextPiece* piece) const;
    float _TabWidth(float x) const;
    void _SetHeight(int32 from, int32 to, TextLine* line) const;
    LineChange _Rebreak(int32 from, int32 to, int32 removed);
    LineChange _Follow(int32 from, int32 to, int32 removed);
    void _PlaceStarts(const TextPiece& piece,
                      GlyphWidths::Along along = GlyphWidths::Along::Line) const;
    int32 _Window(int32 offset) const;

    TextBuffer fBuffer;
    StyleTable fStyles;
    StyleRuns fRuns;
    LineTable fLines;
    float fWidth = 0;
    float fTabWidth = 28;
    bool fHidden = false;
    bool fRough = false;                        // some lines are not broken where they should be
    mutable LongLine fLong;                     // the one that was looked at last
    mutable std::string fCopy, fDots, fWindow;  // rooms of the moment
    mutable std::vector<float> fStarts;
};

// From a part of a long line on, or all of another one, which is its own only part.
template <class Visit>
void TextBody::_EachPieceFrom(LongLine::Place part, int32 end, Visit visit) const
{
    TextPiece piece;
    for (int32 at = part.offset;;) {
        float x = part.x;
        for (; at < std::min(part.end, end); at = piece.offset + piece.length) {
            _PieceAt(at, std::min(part.end, end), x, &piece);
            x += piece.width;
            if (!visit(piece))
                return;
        }
        if (at >= end)
            return;
        part = fLong.AtOffset(at);
    }
}

template <class Visit>
void TextBody::EachPiece(const LineTable::Place& line, float x, Visit visit) const
{
    const int32 end = line.offset + line.line.length;
    _EachPieceFrom(_IsLong(line) ? fLong.AtX(x) : LongLine::Place{line.offset, end, 0}, end, visit);
}

}  // namespace BPrivate

#endif  // INTERFACE_TEXT_BODY_H
