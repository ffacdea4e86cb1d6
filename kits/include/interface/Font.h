#ifndef _FONT_H
#define _FONT_H

#include <InterfaceDefs.h>

// Fonts: what text looks like and how much room it takes. Sizes are pixels. A BFont may be used by
// one thread at a time; the default fonts and all measuring by any number of threads.

#include <Point.h>
#include <Rect.h>
#include <OS.h>
#include <String.h>
#include <SupportDefs.h>
#include <UnicodeBlockObjects.h>

class BShape;

// Bytes of a name, its terminating zero byte not counted.
#define B_FONT_FAMILY_LENGTH 63
#define B_FONT_STYLE_LENGTH 63

// SetSpacing()
enum {
    B_CHAR_SPACING = 0,    // exact widths, kerned
    B_STRING_SPACING = 1,  // the same, each character on a whole pixel
    B_BITMAP_SPACING = 2,  // whole-pixel widths: the default
    B_FIXED_SPACING = 3    // every character as wide as an M
};

// SetFlags()
enum { B_DISABLE_ANTIALIASING = 1, B_FORCE_ANTIALIASING = 2 };

// TruncateString()
enum {
    B_NO_TRUNCATION = 0xFFFFFFFF,
    B_TRUNCATE_END = 0,
    B_TRUNCATE_BEGINNING = 1,
    B_TRUNCATE_MIDDLE = 2,
    B_TRUNCATE_SMART = 3  // where a set of strings is alike
};

// SetEncoding()
enum {
    B_UNICODE_UTF8 = 0,
    B_ISO_8859_1 = 1,
    B_ISO_8859_2 = 2,
    B_ISO_8859_3 = 3,
    B_ISO_8859_4 = 4,
    B_ISO_8859_5 = 5,
    B_ISO_8859_6 = 6,
    B_ISO_8859_7 = 7,
    B_ISO_8859_8 = 8,
    B_ISO_8859_9 = 9,
    B_ISO_8859_10 = 10,
    B_MACINTOSH_ROMAN = 11
};

// Flags of families and styles.
enum { B_HAS_TUNED_FONT = 1, B_IS_FIXED = 2 };

// SetFace()
enum {
    B_ITALIC_FACE = 1,
    B_UNDERSCORE_FACE = 2,
    B_NEGATIVE_FACE = 4,
    B_OUTLINED_FACE = 8,
    B_STRIKEOUT_FACE = 16,
    B_BOLD_FACE = 32,
    B_REGULAR_FACE = 64,
    B_CONDENSED_FACE = 128,
    B_LIGHT_FACE = 0x100,
    B_HEAVY_FACE = 0x200
};

enum font_direction { B_FONT_LEFT_TO_RIGHT = 0, B_FONT_RIGHT_TO_LEFT = 1 };

enum font_metric_mode {
    B_SCREEN_METRIC = 0,   // the pixels drawn
    B_PRINTING_METRIC = 1  // the outline
};

enum font_file_format { B_TRUETYPE_WINDOWS = 0, B_POSTSCRIPT_TYPE1_WINDOWS = 1 };

typedef char font_family[B_FONT_FAMILY_LENGTH + 1];
typedef char font_style[B_FONT_STYLE_LENGTH + 1];

// From a character's boundaries to its outline, in font sizes; positive is inside.
struct edge_info {
    float left;
    float right;
};

// Pixels above and below the baseline, and between lines.
struct font_height {
    float ascent;
    float descent;
    float leading;
};

// Pixels added to each character's width.
struct escapement_delta {
    float nonspace;
    float space;
};

struct font_cache_info {
    int32 sheared_font_penalty;
    int32 rotated_font_penalty;
    float oversize_threshold;
    int32 oversize_penalty;
    int32 cache_size;
    float spacing_size_threshold;
};

struct tuned_font_info {
    float size;
    float shear;
    float rotation;
    uint32 flags;
    uint16 face;
};

class BFont {
public:
    // A copy of the plain font.
    constexpr BFont() = default;
    constexpr BFont(const BFont& font) = default;
    BFont(const BFont* font);

    // Names are compared without regard to case; null keeps the family or the style. A family that
    // lacks the style gives its nearest one. An unknown family changes nothing and gives
    // B_NAME_NOT_FOUND.
    status_t SetFamilyAndStyle(const font_family family, const font_style style);
    // What FamilyAndStyle() gave; unknown codes become the plain font.
    void SetFamilyAndStyle(uint32 code);
    // Picks the family's nearest style. Face() gives `face` back as it was set: what the style does
    // not bring itself is drawn all the same.
    status_t SetFamilyAndFace(const font_family family, uint16 face);
    void SetSize(float size);
    void SetShear(float shear);        // degrees between baseline and stems, 90 is upright
    void SetRotation(float rotation);  // degrees, counter-clockwise
    void SetFalseBoldWidth(float width);
    void SetSpacing(uint8 spacing);
    void SetEncoding(uint8 encoding);
    void SetFace(uint16 face);
    void SetFlags(uint32 flags);

    void GetFamilyAndStyle(font_family* family, font_style* style) const;
    uint32 FamilyAndStyle() const;
    float Size() const { return fSize; }
    float Shear() const { return fShear; }
    float Rotation() const { return fRotation; }
    float FalseBoldWidth() const { return fFalseBoldWidth; }
    uint8 Spacing() const { return fSpacing; }
    uint8 Encoding() const { return fEncoding; }
    uint16 Face() const { return fFace; }
    uint32 Flags() const { return fFlags; }

    font_direction Direction() const;
    bool IsFixed() const;
    bool IsFullAndHalfFixed() const;
    // Room for every character of the font at its size.
    BRect BoundingBox() const;
    unicode_block Blocks() const;
    // True if the font has characters from `start` to `end`.
    bool IncludesBlock(uint32 start, uint32 end) const;
    font_file_format FileFormat() const;
    // There are no tuned fonts: the count is 0.
    int32 CountTuned() const;
    void GetTunedInfo(int32 index, tuned_font_info* info) const;

    // Cuts strings that are wider than `width` and puts an ellipsis in place of what is gone; empty
    // where not even that fits. The char buffers need room for three bytes more than the string.
    void TruncateString(BString* inOut, uint32 mode, float width) const;
    void GetTruncatedStrings(const char* stringArray[], int32 numStrings, uint32 mode, float width,
                             BString resultArray[]) const;
    void GetTruncatedStrings(const char* stringArray[], int32 numStrings, uint32 mode, float width,
                             char* resultArray[]) const;

    // Pixels. Text ends after `length` bytes or before a zero byte.
    float StringWidth(const char* string) const;
    float StringWidth(const char* string, int32 length) const;
    // A null `lengthArray` takes each string whole.
    void GetStringWidths(const char* stringArray[], const int32 lengthArray[], int32 numStrings,
                         float widthArray[]) const;

    // Widths of single characters, in font sizes: multiplied by Size() they add up to the width of
    // the text. What lies behind the end of the text is 0.
    void GetEscapements(const char charArray[], int32 numChars, float escapementArray[]) const;
    void GetEscapements(const char charArray[], int32 numChars, escapement_delta* delta,
                        float escapementArray[]) const;
    // As steps of the pen, y down, along the turned baseline.
    void GetEscapements(const char charArray[], int32 numChars, escapement_delta* delta,
                        BPoint escapementArray[]) const;
    void GetEscapements(const char charArray[], int32 numChars, escapement_delta* delta,
                        BPoint escapementArray[], BPoint offsetArray[]) const;
    // `numBytes` counts characters.
    void GetEdges(const char charArray[], int32 numBytes, edge_info edgeArray[]) const;
    void GetHeight(font_height* height) const;

    // Boxes in pixels from the pen, y down; not valid for what leaves no mark. As glyphs: each from
    // its own start; as string: all from the start of the text.
    void GetBoundingBoxesAsGlyphs(const char charArray[], int32 numChars, font_metric_mode mode,
                                  BRect boundingBoxArray[]) const;
    void GetBoundingBoxesAsString(const char charArray[], int32 numChars, font_metric_mode mode,
                                  escapement_delta* delta, BRect boundingBoxArray[]) const;
    void GetBoundingBoxesForStrings(const char* stringArray[], int32 numStrings,
                                    font_metric_mode mode, escapement_delta deltas[],
                                    BRect boundingBoxArray[]) const;
    // Outlines in pixels from the pen, y down, put into the caller's shapes.
    void GetGlyphShapes(const char charArray[], int32 numChars, BShape* glyphShapeArray[]) const;
    void GetHasGlyphs(const char charArray[], int32 numChars, bool hasArray[]) const;
    // With fallbacks: whether any installed font lends the character.
    void GetHasGlyphs(const char charArray[], int32 numChars, bool hasArray[],
                      bool useFallbacks) const;

    BFont& operator=(const BFont& font) = default;
    bool operator==(const BFont& font) const;
    bool operator!=(const BFont& font) const;
    void PrintToStream() const;

    // Makes the font of a file, or of a file's bytes in an area, this font and a font of the
    // process. B_BAD_VALUE for what is no font.
    status_t LoadFont(const char* path);
    status_t LoadFont(const char* path, uint16 index, uint16 instance);
    status_t LoadFont(const area_id fontAreaID, size_t size = 0, size_t offset = 0);
    status_t LoadFont(const area_id fontAreaID, size_t size, size_t offset, uint16 index,
                      uint16 instance);
    // Takes a font that LoadFont() gave back out of the lists; this font becomes the plain font.
    status_t UnloadFont();

private:
    friend struct FontAccess;

    void _SetStyle(uint16 family, uint16 style, uint16 face);

    uint16 fFamily = 0;  // 0: the default fonts, with fStyle telling which
    uint16 fStyle = 0;
    uint16 fFace = B_REGULAR_FACE;
    uint8 fSpacing = B_BITMAP_SPACING;
    uint8 fEncoding = B_UNICODE_UTF8;
    float fSize = 12.0f;
    float fShear = 90.0f;
    float fRotation = 0.0f;
    float fFalseBoldWidth = 0.0f;
    uint32 fFlags = 0;
};

extern const BFont* be_plain_font;
extern const BFont* be_bold_font;
extern const BFont* be_fixed_font;

// Installed families by index from 0, in the order of their names, and the styles of each.
int32 count_font_families();
status_t get_font_family(int32 index, font_family* name, uint32* flags = NULL);
int32 count_font_styles(font_family name);
status_t get_font_style(font_family family, int32 index, font_style* name, uint32* flags = NULL);
status_t get_font_style(font_family family, int32 index, font_style* name, uint16* face,
                        uint32* flags = NULL);
// True if fonts were installed or removed since the last call; with `checkOnly` the lists stay.
bool update_font_families(bool checkOnly);

#endif  // _FONT_H
