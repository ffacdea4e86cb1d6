#ifndef SERVER_FONTS_H
#define SERVER_FONTS_H

// Installed fonts, metrics, and text as pixels. All functions may be called from any thread; the
// caches behind them have locks of their own, which are never held across a call back.

#include <Font.h>

#include <server/painter/Painter.h>

#include <vector>

namespace server {

enum DefaultStyle : uint16 { kPlainStyle, kBoldStyle, kFixedStyle };

// What of a BFont decides how its glyphs look.
struct FontSpec {
    uint16 family = 0;  // 0 has the default fonts as its styles: kPlainStyle ...
    uint16 style = 0;
    uint16 face = 0;      // B_BOLD_FACE ...: synthesised where the style does not bring it
    float size = 12.0f;   // pixels
    float shear = 90.0f;  // degrees
    float rotation = 0.0f;
    uint8 spacing = 0;   // B_BITMAP_SPACING ...
    uint8 encoding = 0;  // B_UNICODE_UTF8 ...
    uint32 flags = 0;    // B_DISABLE_ANTIALIASING ...
    float falseBoldWidth = 0.0f;
};

// Text ends after `length` bytes or before a zero byte. Bytes that are no UTF-8 count as Latin-1
// characters; a tab is as wide as a space, other control characters have no width and are not
// drawn. Text of whole-pixel spacing is as wide as its parts together.

// Width of `length` bytes in pixels.
float StringWidth(const FontSpec& font, const char* text, int32 length,
                  const escapement_delta* delta);
// Draws on the baseline at `pen` and returns the box changed; `pen` moves to the end of the text.
clipping_rect DrawString(const Target& target, const Paint& paint, const FontSpec& font,
                         const char* text, int32 length, const escapement_delta* delta,
                         BPoint* pen);
// Draws each character at a place of its own; the last one follows on when places run out.
clipping_rect DrawStringAt(const Target& target, const Paint& paint, const FontSpec& font,
                           const char* text, int32 length, const BPoint* places, int32 placeCount,
                           BPoint* pen);
void FontHeight(const FontSpec& font, font_height* height);

// One character of a text, in pixels; y down.
struct CharacterMetrics {
    float start = 0.0f;    // from the start of the text along the baseline
    float advance = 0.0f;  // 0 for what is drawn together with the character before
    bool turned = false;   // read from the right
    float left = 0.0f;     // of the outline, from the character's start; right < left if blank
    float right = -1.0f;
    BRect box;  // from the character's start; not valid if blank
};
enum class Boxes { None, Screen, Outline };  // Screen: the pixels' box
// Measures up to `count` characters and returns how many there were before the text's end.
int32 MeasureCharacters(const FontSpec& font, const char* text, int32 count,
                        const escapement_delta* delta, Boxes boxes, CharacterMetrics* metrics);
// The first character's code and size in bytes (at least 1).
int32 NextCharacter(const FontSpec& font, const char* text, int32 length, uint32* code);
bool HasGlyph(const FontSpec& font, uint32 code, bool useFallbacks);
// A character's outline at the origin, y down. False when it has none.
bool GlyphOutline(const FontSpec& font, uint32 code, std::vector<uint8>* ops,
                  std::vector<BPoint>* points);
// The box that holds every glyph of the font.
BRect FontBox(const FontSpec& font);

// Installed families are numbered by name and styles within a family; a style's ids stay the same
// for the life of the process.
struct FontInfo {
    font_family family = "";
    font_style style = "";
    uint16 familyId = 0;
    uint16 styleId = 0;
    uint16 face = B_REGULAR_FACE;
    bool fixed = false;
    bool fullAndHalfFixed = false;
    bool rightToLeft = false;
    bool postScript = false;
};
int32 CountFontFamilies();
bool FontFamilyAt(int32 index, FontInfo* info);
int32 CountFontStyles(const char* family);
bool FontStyleAt(const char* family, int32 index, FontInfo* info);
// What stands behind two ids; unknown ones give the plain font. False when no font is installed.
bool GetFontInfo(uint16 family, uint16 style, FontInfo* info);
// The style of that name, or the nearest one of the family; null names keep those of `info`.
// B_NAME_NOT_FOUND, and `info` unchanged, for an unknown family.
status_t FindFontStyle(const char* family, const char* style, FontInfo* info);
status_t FindFontFace(const char* family, uint16 face, FontInfo* info);
// How many characters from `first` to `last` the font has itself.
int32 CountGlyphs(uint16 family, uint16 style, uint32 first, uint32 last);
// True if fonts came or went; takes the change over unless `checkOnly`.
bool RefreshFonts(bool checkOnly);
status_t LoadFontFile(const char* path, uint16 index, uint16 instance, FontInfo* info);
status_t UnloadFontFile(uint16 family, uint16 style);

}  // namespace server

#endif  // SERVER_FONTS_H
