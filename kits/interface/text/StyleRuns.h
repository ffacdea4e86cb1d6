#ifndef INTERFACE_STYLE_RUNS_H
#define INTERFACE_STYLE_RUNS_H

// Which style each byte of a text has, as numbers; and the styles behind the numbers. Runs lie
// around a gap where the text was changed last, so that typing moves no run that it does not
// touch. Where memory fails, all is as it was. One thread.

#include <Font.h>
#include <SupportDefs.h>

#include <memory>
#include <unordered_map>
#include <vector>

#include "interface/text/GlyphWidths.h"

namespace [[gnu::visibility("hidden")]] BPrivate {

struct TextStyle {
    BFont font;
    rgb_color color;
    float ascent;  // pixels
    float height;
    GlyphWidths* widths;
};

// Styles are found by what they are, and stay.
class StyleTable {
public:
    int32 Find(const BFont& font, rgb_color color);
    const TextStyle& At(int32 style) const { return *fStyles[size_t(style)]; }

private:
    static uint64 _Hash(const BFont& font, rgb_color color);

    std::vector<std::unique_ptr<TextStyle>> fStyles;
    std::vector<std::unique_ptr<GlyphWidths>> fWidths;  // one a font
    std::unordered_multimap<uint64, int32> fByHash;
};

struct StyleRun {
    int32 length;
    int32 style;

    bool operator==(const StyleRun&) const = default;
};

class StyleRuns {
public:
    // A run as it lies in the text.
    struct Place {
        int32 index;
        int32 from, to;
        int32 style;
    };

    explicit StyleRuns(int32 style) : fBefore{{0, style}} { _Reserve(0); }

    int32 Length() const { return fLength; }
    int32 CountRuns() const { return int32(fBefore.size() + fAfter.size()); }
    // The run of a byte; the text's end is in the last one.
    Place At(int32 offset) const;
    Place AtIndex(int32 index) const;

    // What is inserted has the style of the byte before it, or of the text's start. Neither needs
    // memory.
    void Insert(int32 offset, int32 length);
    void Remove(int32 from, int32 to);
    void Set(int32 from, int32 to, int32 style);
    // Of part of the text, in order; and back again.
    std::vector<StyleRun> Copy(int32 from, int32 to) const;
    void Put(int32 from, const std::vector<StyleRun>& runs);
    void Reset(int32 length, int32 style);

private:
    struct Start {
        int32 at;  // from the text's start before the gap, from its end behind it
        int32 style;
    };

    int32 _From(int32 index) const;
    void _Reserve(size_t more);
    void _MoveGap(int32 offset);
    void _Join();

    // Each has room for all of them.
    std::vector<Start> fBefore;  // the first one is at 0 and stays there
    std::vector<Start> fAfter;   // the last one follows the gap
    int32 fLength = 0;
};

}  // namespace BPrivate

#endif  // INTERFACE_STYLE_RUNS_H
