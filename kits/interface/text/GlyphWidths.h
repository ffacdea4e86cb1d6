#ifndef INTERFACE_GLYPH_WIDTHS_H
#define INTERFACE_GLYPH_WIDTHS_H

// How wide the characters of one font are, looked up once each. Characters whose width depends on
// their neighbours are measured together with them. One thread.

#include <Font.h>
#include <SupportDefs.h>

#include <memory>
#include <vector>

#include <server/text/Fonts.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

class GlyphWidths {
public:
    explicit GlyphWidths(const BFont& font);

    const BFont& Font() const { return fFont; }
    const server::FontSpec& Spec() const { return fSpec; }
    // Of characters below 128; all are known, and positive or 0, if IsSimple().
    const float* Ascii() const { return fAscii; }
    bool IsSimple() const { return fSimple; }

    // Pixels of a character, negative if it depends on what stands beside it.
    float Of(uint32 code);
    // Of a text without tabs, line feeds and zero bytes.
    float Sum(const char* text, int32 length);
    // Where the caret before each byte's character stands, `length` + 1 places: behind the
    // character before it on the line, or how wide the text before it is. They differ where letters
    // are read from the right.
    enum class Along { Line, Text };
    void Starts(const char* text, int32 length, Along along, std::vector<float>* starts);
    // What the characters that begin at bytes `from` to before `to` take up of the line, from left
    // to right: several parts where some letters are read from the right.
    struct Span {
        float left;
        float right;
    };
    std::vector<Span> Spans(const char* text, int32 length, int32 from, int32 to) const;
    // The character that `x` is nearest to, and which side of it: before or behind it in the text.
    struct Side {
        int32 offset;
        bool behind;
        float x;  // where that side stands on the line
    };
    Side SideAt(const char* text, int32 length, float x) const;

private:
    static const uint32 kPage = 256;

    float _Measure(uint32 code) const;

    BFont fFont;
    server::FontSpec fSpec;
    bool fSimple;  // widths of characters stand for themselves
    float fAscii[128];
    std::vector<std::unique_ptr<float[]>> fPages;
};

}  // namespace BPrivate

#endif  // INTERFACE_GLYPH_WIDTHS_H
