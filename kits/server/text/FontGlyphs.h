#ifndef SERVER_FONT_GLYPHS_H
#define SERVER_FONT_GLYPHS_H

// Font files, and their glyphs as pixels and outlines. Everything here is used with the font lock
// held; a finished Glyph never changes and may be read by any thread.

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_SIZES_H
#include <hb.h>

#include <memory>
#include <unordered_map>
#include <vector>

#include <server/text/FontCatalog.h>
#include <server/text/Fonts.h>

namespace server {

// Sizes beyond this are drawn as this: the rasteriser's own coordinates end not far above.
constexpr float kLargestSize = 10000.0f;
// Glyphs above this height are not kept but drawn into the clipping each time.
constexpr float kLargestKeptSize = 200.0f;

struct Glyph {
    int32 left = 0, top = 0;  // from the pen to the left top pixel, y down
    int32 width = 0, height = 0;
    std::unique_ptr<uint8[]> bits;  // coverage, `width` bytes a row
};

// An open font file.
class FontFile {
public:
    static std::shared_ptr<FontFile> Open(FontStyle& style);
    ~FontFile();

    FT_Face Face() const { return fFace; }
    // Null where shaping has no tables to work on.
    hb_face_t* Shaper();
    uint32 GlyphFor(uint32 character) const;

private:
    FontFile() = default;

    FT_Face fFace = nullptr;
    hb_face_t* fShaper = nullptr;
    bool fTriedShaper = false;
    bool fSymbols = false;  // has its characters at U+F000
};

// Where on the pixel grid a glyph starts.
struct GlyphPhase {
    uint8 x = 0, y = 0;    // quarters of a pixel
    bool centred = false;  // the rounding of its width shared out on both sides
};

// A style at one size, slant, rotation and weight.
class ScaledFont {
public:
    // Null when the font has no size or cannot be read.
    static std::shared_ptr<ScaledFont> Get(const FontSpec& spec, FontStyle* style);
    static void ForgetAll();
    ~ScaledFont();

    uint32 GlyphFor(uint32 character);
    float Advance(uint32 glyph);  // along the baseline, not rounded, pixels
    hb_font_t* Shaper();          // scaled by 64
    float Pixels() const { return fPixels; }
    float SyntheticWeight() const { return fBold; }
    FontStyle& Style() const { return *fStyle; }
    FontFile& File() const { return *fFile; }

    std::shared_ptr<const Glyph> Raster(uint32 glyph, GlyphPhase phase);
    // The part of a glyph inside `bounds`, drawn anew; false when there is none. `matrix` is laid
    // over the font's own transformation, (x, y) is the pen; y down.
    bool RasterClipped(uint32 glyph, const FT_Matrix& matrix, double x, double y,
                       const clipping_rect& bounds, clipping_rect* box, std::vector<uint8>* bits);
    // The glyph's outline, transformed, y up in 1/64 pixels; valid until the next call.
    FT_Outline* Outline(uint32 glyph, bool hinted);

private:
    ScaledFont() = default;
    void _Activate();

    FontStyle* fStyle = nullptr;
    std::shared_ptr<FontFile> fFile;
    FT_Size fSize = nullptr;
    hb_font_t* fShaper = nullptr;
    FT_Matrix fMatrix = {};
    bool fTransformed = false;
    bool fMono = false;
    bool fHinted = false;
    bool fOutlined = false;
    float fPixels = 0.0f;
    float fBold = 0.0f;  // pixels added to a stem
    uint32 fAscii[128];  // glyphs; ~0 while not looked up
    std::unordered_map<uint32, float> fAdvances;
    std::unordered_map<uint64, std::shared_ptr<const Glyph>> fGlyphs;
};

}  // namespace server

#endif  // SERVER_FONT_GLYPHS_H
